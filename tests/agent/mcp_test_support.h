// Shared pieces of the MCP server tests: a stand-in document, request builders and response parsing.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>

#include "orvex/agent/mcp_server.h"
#include "orvex/io/json.h"

namespace Orvex::Testing {

// The server only passes the document on to tool handlers, which compare its address.
inline TORXBaseLabel* FakeLabel() {
    alignas(std::max_align_t) static std::byte storage[64];
    return reinterpret_cast<TORXBaseLabel*>(storage);
}

inline TMCPHttpRequest Post(std::string aBody, TMCPHeaders aHeaders = {}) {
    TMCPHttpRequest request;
    request.Method = "POST";
    request.Path = "/mcp";
    request.Headers = std::move(aHeaders);
    request.ContentType = "application/json";
    request.HasBody = true;
    request.Body = std::move(aBody);
    return request;
}

inline TJSON Rpc(const std::string& aMethod, TJSON aParams = nullptr, TJSON aId = 1) {
    TJSON request = {{"jsonrpc", "2.0"}, {"id", std::move(aId)}, {"method", aMethod}};
    if (!aParams.is_null()) request["params"] = std::move(aParams);
    return request;
}

// A request in the modern protocol with the metadata and headers it needs to pass validation.
struct TModernCall {
    TJSON Body;
    TMCPHeaders Headers;
};

inline TModernCall Modern(const std::string& aMethod, TJSON aParams = TJSON::object()) {
    aParams["_meta"] = {{"io.modelcontextprotocol/protocolVersion", "2026-07-28"},
                        {"io.modelcontextprotocol/clientCapabilities", TJSON::object()}};
    TModernCall call;
    call.Headers = {{"MCP-Protocol-Version", "2026-07-28"},
                    {"Mcp-Method", aMethod},
                    {"Accept", "application/json, text/event-stream"}};
    if (aParams.contains("name")) call.Headers.emplace_back("Mcp-Name", aParams["name"].get<std::string>());
    call.Body = Rpc(aMethod, std::move(aParams));
    return call;
}

inline TJSON ParseBody(const TMCPHttpResponse& aResponse) {
    return TJSON::parse(aResponse.Body);
}

inline TJSON TextResult(const std::string& aText) {
    return {{"content", TJSON::array({{{"type", "text"}, {"text", aText}}})}};
}

}  // namespace Orvex::Testing
