// The HTTP side of the MCP server as plain records, so that every rule of the transport can be exercised
// without a socket: the socket adapter fills a TMCPHttpRequest and sends back the TMCPHttpResponse that
// TORXMCPServer::DoCommandGet returns.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Orvex {

using TMCPHeaders = std::vector<std::pair<std::string, std::string>>;

struct TMCPHttpRequest {
    std::string Method;
    std::string Path;
    TMCPHeaders Headers;  // as received; looked up case-insensitively, the first of a name wins
    std::string ContentType;
    bool HasBody = false;  // a body stream exists
    std::string Body;      // the body text as read (at most the size limit)
    // How large the body stream is, when known beyond Body: its declared length when the body was not
    // read because it is too large, or the bytes seen when reading stopped at the limit.
    std::optional<std::uint64_t> BodySize;
};

struct TMCPHttpResponse {
    int Status = 200;
    std::string ContentType;  // empty: no content type is sent
    TMCPHeaders Headers;
    std::string Body;
};

std::string_view FindHeader(const TMCPHeaders& aHeaders, std::string_view aName);  // empty when absent

}  // namespace Orvex
