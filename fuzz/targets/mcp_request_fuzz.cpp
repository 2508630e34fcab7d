// The MCP server's HTTP pipeline, and for a POST the stdio transport, on arbitrary requests, without sockets.
// The first byte picks the request's shape (bit 0: the modern protocol's headers, bit 1: GET, bit 2: a
// foreign origin, bit 3: a text body type); the rest is the body. Corpus files start with a printable digit
// so they stay readable: '1' is a modern POST, '0' a classic one.
#include <string>

#include "fuzz/targets/fuzz_targets.h"
#include "host/mcp_stdio.h"
#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/io/json_text.h"

namespace Orvex::Fuzz {
namespace {

// Tools that read their arguments the ways real tools do: numbers, texts, arrays and nested objects.
void RegisterProbeTools(TORXMCPServer& aServer) {
    const TJSON schema = {{"type", "object"},
                          {"properties", {{"id", {{"type", "integer"}}}, {"text", {{"type", "string"}}}}}};
    aServer.RegisterTool("get_drawing_info", "Summary of the drawing", {{"type", "object"}},
                         [](TORXBaseLabel&, const TJSON&) { return MakeTextContent("{\"items\":0}"); });
    aServer.RegisterTool("echo", "Echoes its arguments", schema, [](TORXBaseLabel&, const TJSON& aArgs) {
        return MakeTextContent(aArgs.dump(-1, ' ', false, TJSON::error_handler_t::replace));
    });
    aServer.RegisterTool("typed", "Reads typed arguments", schema, [](TORXBaseLabel&, const TJSON& aArgs) {
        return MakeTextContent(std::to_string(aArgs.value("id", 0)) + aArgs.value("text", std::string()));
    });
}

TORXBaseLabel* StandInLabel() {
    alignas(std::max_align_t) static std::byte storage[64];
    return reinterpret_cast<TORXBaseLabel*>(storage);
}

// The Mcp-Method and Mcp-Name headers a modern client sends mirror the body, so that fuzzed bodies reach
// the method handlers instead of stopping at header validation.
void MirrorHeaders(const std::string& aBody, TMCPHeaders& aHeaders) {
    const TJSON body = ParseJsonOrDiscarded(aBody);
    if (!body.is_object()) return;
    if (const auto method = body.find("method"); method != body.end() && method->is_string())
        aHeaders.emplace_back("Mcp-Method", method->get<std::string>());
    if (const auto params = body.find("params"); params != body.end() && params->is_object())
        if (const auto name = params->find("name"); name != params->end() && name->is_string())
            aHeaders.emplace_back("Mcp-Name", name->get<std::string>());
}

}  // namespace

int FuzzMcpRequest(const std::uint8_t* aData, std::size_t aSize) {
    static TORXMCPServer* server = [] {
        auto* s = new TORXMCPServer;
        RegisterProbeTools(*s);
        s->SetLabel(StandInLabel());
        return s;
    }();
    const std::uint8_t shape = aSize > 0 ? aData[0] : 0;
    TMCPHttpRequest request;
    request.Method = (shape & 2) != 0 ? "GET" : "POST";
    request.Path = "/mcp";
    request.ContentType = (shape & 8) != 0 ? "text/plain" : "application/json";
    request.HasBody = aSize > 1;
    if (aSize > 1) request.Body.assign(reinterpret_cast<const char*>(aData + 1), aSize - 1);
    request.Headers = {{"Accept", "application/json, text/event-stream"},
                       {"Content-Type", request.ContentType}};
    if ((shape & 4) != 0) request.Headers.emplace_back("Origin", "http://evil.example");
    if ((shape & 1) != 0) {
        request.Headers.emplace_back("MCP-Protocol-Version", std::string(kMCPModernVersion));
        MirrorHeaders(request.Body, request.Headers);
    }
    const TMCPHttpResponse response = server->DoCommandGet(request);
    FuzzCheck(response.Status >= 100 && response.Status < 600, "an impossible HTTP status");
    if (response.ContentType.starts_with("application/json") && !response.Body.empty())
        FuzzCheck(!ParseJsonOrDiscarded(response.Body).is_discarded(), "a JSON response that is not JSON");
    // The stdio transport reads the same body as one line and answers with one line of JSON, or nothing.
    if (request.Method == "POST" && request.Body.find('\n') == std::string::npos) {
        if (const auto line = Host::HandleJsonRpcLine(*server, request.Body))
            FuzzCheck(!ParseJsonOrDiscarded(*line).is_discarded(), "a stdio answer that is not JSON");
    }
    return 0;
}

}  // namespace Orvex::Fuzz
