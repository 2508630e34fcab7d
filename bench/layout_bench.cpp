// Layout time of generated flowcharts: a layered graph of N steps in which every step follows one of the
// recent ones and every fifth also joins another, as long hand-written flowcharts do.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "bench/generated_charts.h"
#include "bench/layout_crossings.h"
#include "host/layout/diagram_loader.h"
#include "host/layout/graph_layout.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"

namespace {

using namespace Orvex;

TORXDiagramModel GeneratedFlowchart(int count) {
    TORXDiagramModel model;
    std::mt19937 random(20240607);
    for (int i = 0; i < count; ++i) {
        const std::string id = "n" + std::to_string(i);
        const auto shape = i % 7 == 3 ? TQVLFlowType::ftDecision : TQVLFlowType::ftProcess;
        model.AddNode(id, "Step " + std::to_string(i), shape, true);
        if (i == 0) continue;
        std::uniform_int_distribution<int> recent(std::max(0, i - 8), i - 1);
        model.AddEdge("n" + std::to_string(recent(random)), id, i % 7 == 4 ? "yes" : "", false,
                      TQVLDiagEdgeArrow::eaArrow);
        if (i % 5 == 0 && i > 20) {
            std::uniform_int_distribution<int> earlier(0, i - 10);
            model.AddEdge(id, "n" + std::to_string(earlier(random)), "", true, TQVLDiagEdgeArrow::eaArrow);
        }
    }
    return model;
}

std::vector<TLayoutSize> Sizes(const TORXDiagramModel& model) {
    const TTextMeasure measure = FixedPitchMeasure(2.0, 4.5);
    std::vector<TLayoutSize> sizes;
    for (const TQVLDiagNode& n : model.Nodes()) sizes.push_back(FlowBoxSize(n.Shape, measure(n.Text)));
    return sizes;
}

// What the loader runs: Graphviz up to its limit, the plain layered layout above.
// The crossings counter is the drawing's quality: it must not grow as the layout gets faster.
void BM_LayoutGeneratedFlowchart(benchmark::State& state) {
    const TORXDiagramModel model = GeneratedFlowchart(static_cast<int>(state.range(0)));
    const auto sizes = Sizes(model);
    TGraphLayout layout;
    for (auto _ : state) layout = LayoutGraph(model, sizes);
    state.counters["edges"] = static_cast<double>(model.Edges().size());
    state.counters["crossings"] = static_cast<double>(OrvexBench::CountCrossings(layout));
}
BENCHMARK(BM_LayoutGeneratedFlowchart)
    ->Arg(50)
    ->Arg(100)
    ->Arg(200)
    ->Arg(400)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

// The charts of the side-by-side comparison with Mermaid (bench/peers/mermaid_render.sh), parsed as the
// loader parses them.
void BM_LayoutMermaidChart(benchmark::State& state) {
    const auto model = QVLParseDiagram(OrvexBench::MermaidFlowchart(static_cast<int>(state.range(0))),
                                       TQVLDiagramFormat::dgMermaid);
    const auto sizes = Sizes(*model);
    TGraphLayout layout;
    for (auto _ : state) layout = LayoutGraph(*model, sizes);
    state.counters["crossings"] = static_cast<double>(OrvexBench::CountCrossings(layout));
}
BENCHMARK(BM_LayoutMermaidChart)
    ->Arg(50)
    ->Arg(200)
    ->Arg(500)
    ->Arg(1000)
    ->Arg(2000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

// Diagrams with many edges between few nodes, where dot's time explodes. The first run is the layout
// users get (chosen by edges too); the second leaves the choice to the time budget alone, so its time
// is the budget's.
TORXDiagramModel DenseGraph(int nodes, int edges) {
    TORXDiagramModel model;
    std::mt19937 random(20261125);
    std::uniform_int_distribution<int> any(0, nodes - 1);
    for (int i = 0; i < nodes; ++i)
        model.AddNode("n" + std::to_string(i), "Node " + std::to_string(i), TQVLFlowType::ftProcess, true);
    for (int e = 0; e < edges; ++e)
        model.AddEdge("n" + std::to_string(any(random)), "n" + std::to_string(any(random)), "", false,
                      TQVLDiagEdgeArrow::eaArrow);
    return model;
}

void BM_LayoutDense(benchmark::State& state) {
    const TORXDiagramModel model =
        DenseGraph(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    const auto sizes = Sizes(model);
    TGraphLayoutOptions options;
    if (state.range(2) != 0) {
        options.LayeredAboveEdges = static_cast<std::size_t>(-1);
        options.LayeredAboveWork = static_cast<std::size_t>(-1);
    }
    for (auto _ : state) benchmark::DoNotOptimize(LayoutGraph(model, sizes, options));
}
BENCHMARK(BM_LayoutDense)
    ->ArgNames({"nodes", "edges", "budgetOnly"})
    ->Args({399, 3990, 0})
    ->Args({300, 30000, 0})
    ->Args({399, 3990, 1})
    ->Args({300, 30000, 1})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

// `orvex convert big.mmd -o big.json` (or .svg) without the process: parse, lay out, create the items,
// write the file.
void BM_Convert50kFlowchart(benchmark::State& state) {
    RegisterDiagramLayout();
    const std::string text = OrvexBench::MermaidFlowchart(50000);
    const char* const outputs[] = {"json", "svg"};
    const std::string output =
        std::string(std::getenv("TMPDIR") != nullptr ? std::getenv("TMPDIR") : "/tmp") +
        "/orvex_bench_convert." + outputs[state.range(0)];
    std::size_t items = 0;
    for (auto _ : state) {
        TORXHeadlessLabel document;
        if (!document.LoadFromDiagramText(text, TQVLDiagramFormat::dgMermaid)) state.SkipWithError("no load");
        if (!SaveDrawingAs(output, document)) state.SkipWithError("no save");
        items = static_cast<std::size_t>(document.GetItemsCount());
    }
    std::remove(output.c_str());
    state.counters["items"] = static_cast<double>(items);
}
BENCHMARK(BM_Convert50kFlowchart)
    ->ArgName("svg")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

// Graphviz alone around its limit, to see where the limit should stand.
void BM_LayoutGraphvizOnly(benchmark::State& state) {
    const TORXDiagramModel model = GeneratedFlowchart(static_cast<int>(state.range(0)));
    const auto sizes = Sizes(model);
    TGraphLayoutOptions options;
    options.LayeredAbove = static_cast<std::size_t>(-1);
    for (auto _ : state) benchmark::DoNotOptimize(LayoutGraph(model, sizes, options));
}
BENCHMARK(BM_LayoutGraphvizOnly)->Arg(150)->Arg(250)->Arg(400)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
