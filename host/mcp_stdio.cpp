#include "host/mcp_stdio.h"

#include <istream>
#include <ostream>

#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/io/json.h"

namespace Orvex::Host {

namespace {

std::optional<TJSON> HandleObject(TORXMCPServer& aServer, const TJSON& aRequest) {
    // No headers travel over stdio: a modern request is told by its _meta version or by its method, and only
    // that version is held to the modern rules.
    const bool modern = TORXMCPServer::IsModernRequest(aRequest, "");
    const std::string version = TORXMCPServer::GetRequestProtocolVersion(aRequest);
    if (modern && !version.empty() && version != kMCPModernVersion) {
        return MakeUnsupportedProtocolError(aRequest.contains("id") ? aRequest["id"] : TJSON(nullptr),
                                            version);
    }
    return aServer.ProcessJsonRpc(aRequest, modern);
}

}  // namespace

std::optional<std::string> HandleJsonRpcLine(TORXMCPServer& aServer, std::string_view aLine) {
    while (!aLine.empty() && (aLine.back() == '\r' || aLine.back() == ' ' || aLine.back() == '\t'))
        aLine.remove_suffix(1);
    if (aLine.find_first_not_of(" \t") == std::string_view::npos) return std::nullopt;
    try {
        const TJSON request = TJSON::parse(aLine, nullptr, false);
        if (request.is_discarded())
            return DumpCompact(MakeError(nullptr, MCPErrorCode::kParseError, "Parse error"));
        if (request.is_array()) {
            if (request.empty())
                return DumpCompact(MakeError(nullptr, MCPErrorCode::kInvalidRequest, "Empty batch"));
            TJSON responses = TJSON::array();
            for (const auto& element : request) {
                if (!element.is_object()) {
                    responses.push_back(MakeError(nullptr, MCPErrorCode::kInvalidRequest, "Invalid request"));
                    continue;
                }
                if (auto response = aServer.ProcessJsonRpc(element, false))
                    responses.push_back(std::move(*response));
            }
            if (responses.empty()) return std::nullopt;
            return DumpCompact(responses);
        }
        if (!request.is_object())
            return DumpCompact(MakeError(nullptr, MCPErrorCode::kInvalidRequest, "Invalid request"));
        const auto response = HandleObject(aServer, request);
        if (!response) return std::nullopt;
        return DumpCompact(*response);
    } catch (const std::exception& e) {
        aServer.Log(std::string("Error: ") + e.what());
        return DumpCompact(MakeError(nullptr, MCPErrorCode::kInternalError, e.what()));
    }
}

void ServeStdio(TORXMCPServer& aServer, std::istream& aIn, std::ostream& aOut) {
    std::string line;
    while (std::getline(aIn, line)) {
        if (aServer.LogPayloads()) aServer.Log(">> " + line);
        const auto response = HandleJsonRpcLine(aServer, line);
        if (!response) continue;
        if (aServer.LogPayloads()) aServer.Log("<< " + *response);
        aOut << *response << '\n';
        aOut.flush();
    }
}

}  // namespace Orvex::Host
