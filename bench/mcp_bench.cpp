// The MCP request pipeline without sockets: what one tools/list and one tools/call cost the server.
#include <benchmark/benchmark.h>

#include <string>

#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/agent/mcp_server.h"

namespace {

using Orvex::TJSON;

Orvex::TORXBaseLabel* StandInLabel() {
    alignas(std::max_align_t) static std::byte storage[64];
    return reinterpret_cast<Orvex::TORXBaseLabel*>(storage);
}

void RegisterCatalogue(Orvex::TORXMCPServer& aServer) {
    for (const char* name : {"get_drawing_info", "list_items", "get_item", "list_layers", "render_preview",
                             "setup_drawing", "add_flow", "add_link", "modify_item", "delete_item",
                             "load_diagram", "begin_update", "end_update"}) {
        aServer.RegisterTool(name, std::string("The ") + name + " tool",
                             {{"type", "object"}, {"properties", {{"id", {{"type", "integer"}}}}}},
                             [](Orvex::TORXBaseLabel&, const TJSON& aArgs) {
                                 return Orvex::MakeTextContent("ok " + std::to_string(aArgs.value("id", 0)));
                             });
    }
}

Orvex::TMCPHttpRequest PostOf(const TJSON& aBody) {
    Orvex::TMCPHttpRequest request;
    request.Method = "POST";
    request.Path = "/mcp";
    request.Headers = {{"Content-Type", "application/json"},
                       {"Accept", "application/json, text/event-stream"}};
    request.ContentType = "application/json";
    request.HasBody = true;
    request.Body = aBody.dump();
    return request;
}

void BM_PipelineToolsList(benchmark::State& state) {
    Orvex::TORXMCPServer server;
    RegisterCatalogue(server);
    const auto request = PostOf({{"jsonrpc", "2.0"}, {"id", 1}, {"method", "tools/list"}});
    for (auto _ : state) benchmark::DoNotOptimize(server.DoCommandGet(request));
}
BENCHMARK(BM_PipelineToolsList);

void BM_PipelineToolsCall(benchmark::State& state) {
    Orvex::TORXMCPServer server;
    RegisterCatalogue(server);
    server.SetLabel(StandInLabel());
    const auto request =
        PostOf({{"jsonrpc", "2.0"},
                {"id", 7},
                {"method", "tools/call"},
                {"params", {{"name", "add_flow"}, {"arguments", {{"id", 42}, {"text", "Start"}}}}}});
    for (auto _ : state) benchmark::DoNotOptimize(server.DoCommandGet(request));
}
BENCHMARK(BM_PipelineToolsCall);

}  // namespace
