#include "host/mcp_stdio.h"

#include <fmt/format.h>

#include <istream>
#include <ostream>
#include <string>

#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/io/json_text.h"

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
        // Depth is limited as for HTTP bodies: a request id nested 100,000 deep would parse, then overflow
        // the stack when the answer echoes it.
        const TJSON request = ParseJsonOrDiscarded(aLine);
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

namespace {

// One line of at most aLimit bytes (without its newline) into aLine; a longer one is read to its end and
// dropped, with aTooLong set, so that one huge message costs no more memory than the limit. False at the end
// of the input when nothing was read.
bool ReadBoundedLine(std::istream& aIn, std::size_t aLimit, std::string& aLine, bool& aTooLong) {
    aLine.clear();
    aTooLong = false;
    std::streambuf* buffer = aIn.rdbuf();
    bool any = false;
    for (;;) {
        const auto c = buffer->sbumpc();
        if (c == std::char_traits<char>::eof()) {
            aIn.setstate(std::ios::eofbit);
            return any;
        }
        any = true;
        if (c == '\n') return true;
        if (aTooLong) continue;
        if (aLine.size() >= aLimit) {
            aTooLong = true;
            aLine.clear();
            aLine.shrink_to_fit();
            continue;
        }
        aLine.push_back(std::char_traits<char>::to_char_type(c));
    }
}

}  // namespace

void ServeStdio(TORXMCPServer& aServer, std::istream& aIn, std::ostream& aOut) {
    // The same limit as an HTTP body; without one, the limit of any JSON text the program reads.
    const std::size_t limit =
        aServer.MaxRequestBytes() > 0 ? static_cast<std::size_t>(aServer.MaxRequestBytes()) : kJSONMaxBytes;
    std::string line;
    bool tooLong = false;
    while (ReadBoundedLine(aIn, limit, line, tooLong)) {
        if (tooLong) {
            aServer.Log(fmt::format("MCP message over {} bytes refused", limit));
            aOut << DumpCompact(MakeError(nullptr, MCPErrorCode::kInvalidRequest,
                                          fmt::format("Request larger than {} bytes", limit)))
                 << '\n';
            aOut.flush();
            continue;
        }
        if (aServer.LogPayloads()) aServer.Log(">> " + line);
        const auto response = HandleJsonRpcLine(aServer, line);
        if (!response) continue;
        if (aServer.LogPayloads()) aServer.Log("<< " + *response);
        aOut << *response << '\n';
        aOut.flush();
    }
}

}  // namespace Orvex::Host
