// Edits that once walked the whole drawing: moving one element of a 100,000-item flowchart (its links
// found through the document's index), and a long polyline added through the MCP pipeline with the
// standard tools (its bounds computed once after its points).
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/drawing_server.h"
#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/document/headless.h"
#include "orvex/io/json.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"

namespace {

using namespace Orvex;

constexpr int kFlows = 50'000;  // and kFlows - 1 links between neighbours: 99,999 items

struct TFlowchart {
    TORXHeadlessLabel Document;
    std::vector<TORXBaseFlow*> Flows;
};

TFlowchart& Flowchart() {
    static const std::unique_ptr<TFlowchart> chart = [] {
        auto c = std::make_unique<TFlowchart>();
        TORXHeadlessLabel& doc = c->Document;
        doc.SetOptions({TOrvexOption::loUniqueID});  // nothing to undo: building needs no history
        doc.SetEditorMode(TQVLEditorMode::emFlowChart);
        const std::int64_t mm = SetBaseValue(1.0f);
        doc.BeginUpdate(true);
        for (int i = 0; i < kFlows; ++i) {
            auto* flow = doc.AddNew<THeadlessItem<TORXBaseFlow>>(false);
            const std::int64_t x = (i % 250) * 40 * mm;
            const std::int64_t y = (i / 250) * 30 * mm;
            flow->SetBase(1, x, y);
            flow->SetBase(2, x + 25 * mm, y + 15 * mm);
            c->Flows.push_back(flow);
        }
        for (int i = 1; i < kFlows; ++i) {
            auto* link = doc.AddNew<THeadlessItem<TORXBaseLink>>(TQVLinkType::ltRoundCorner, false);
            link->Bind(c->Flows[static_cast<std::size_t>(i - 1)], -1, c->Flows[static_cast<std::size_t>(i)],
                       -1);
        }
        doc.EndUpdate();
        return c;
    }();
    return *chart;
}

// A different element each time, as an editing session would move them, each in its own batch with the
// recalculation of its two links at the batch's end.
void BM_MoveFlowIn100kFlowchart(benchmark::State& state) {
    TFlowchart& chart = Flowchart();
    TORXHeadlessLabel& doc = chart.Document;
    const std::int64_t mm = SetBaseValue(1.0f);
    std::size_t next = 1;
    std::int64_t dy = mm;
    const std::size_t builds = doc.FlowLinkIndexBuilds();
    for (auto _ : state) {
        doc.BeginUpdate(true);
        chart.Flows[next]->BaseMove(0, 0, 0, dy, TQVLMoveOpt::moMove, false);
        doc.EndUpdate();
        if (++next == chart.Flows.size()) next = 1, dy = -dy;
    }
    if (doc.GetItemsCount() != 2 * kFlows - 1) state.SkipWithError("items were lost");
    state.counters["index_builds"] = static_cast<double>(doc.FlowLinkIndexBuilds() - builds);
}
BENCHMARK(BM_MoveFlowIn100kFlowchart)->Unit(benchmark::kMicrosecond);

std::string AddPolylineRequest(int aPoints) {
    TJSON points = TJSON::array();
    for (int i = 0; i < aPoints; ++i)
        points.push_back({{"x", (i % 1000) * 0.25}, {"y", (i / 1000) * 0.5 + (i % 7) * 0.1}});
    TJSON call = {
        {"jsonrpc", "2.0"},
        {"id", 1},
        {"method", "tools/call"},
        {"params",
         {{"name", "add_shape"}, {"arguments", {{"kind", "polyline"}, {"points", std::move(points)}}}}}};
    return call.dump();
}

// The whole request as an agent sends it: parsing, the tool's arguments, the item, its bounds and the
// answer; a fresh drawing each time so that only the one polyline is in it.
void BM_AddPolylineThroughMcp(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    TMCPHttpRequest request;
    request.Method = "POST";
    request.Path = "/mcp";
    request.ContentType = "application/json";
    request.HasBody = true;
    request.Body = AddPolylineRequest(count);
    for (auto _ : state) {
        state.PauseTiming();
        auto document = std::make_unique<TORXHeadlessLabel>();
        TInlineRunner runner;
        TORXMCPServer server;
        server.SetMaxRequestBytes(0);
        server.SetMaxResponseBytes(0);
        Host::BindDrawingServer(server, *document, runner, {});
        server.RegisterDefaultTools();
        state.ResumeTiming();
        const auto response = server.DoCommandGet(request);
        state.PauseTiming();
        if (response.Status != 200 || response.Body.find("\"isError\":true") != std::string::npos ||
            document->GetItemsCount() != 1 ||
            document->GetItem(0)->WriteJson()["Points"].size() != static_cast<std::size_t>(count))
            state.SkipWithError(response.Body.substr(0, 300).c_str());
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_AddPolylineThroughMcp)
    ->Arg(80'000)
    ->Arg(2'000'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

}  // namespace
