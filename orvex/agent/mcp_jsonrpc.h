// JSON-RPC 2.0 envelopes of the MCP protocol layer. The dispatcher itself is TORXMCPServer::ProcessJsonRpc.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orvex/io/json.h"

namespace Orvex {

// The error codes the transport and the protocol layer answer with.
namespace MCPErrorCode {
inline constexpr std::int32_t kParseError = -32700;
inline constexpr std::int32_t kInvalidRequest = -32600;
inline constexpr std::int32_t kMethodNotFound = -32601;
inline constexpr std::int32_t kInvalidParams = -32602;
inline constexpr std::int32_t kInternalError = -32603;
inline constexpr std::int32_t kHeaderMismatch = -32020;
inline constexpr std::int32_t kMissingCapabilities = -32021;
inline constexpr std::int32_t kUnsupportedVersion = -32022;
}  // namespace MCPErrorCode

TJSON MakeResult(const TJSON& aId, TJSON aResult);
TJSON MakeError(const TJSON& aId, std::int32_t aCode, std::string_view aMessage);
TJSON MakeTextContent(std::string_view aText, bool aIsError = false);
// {"error": -32022 "Unsupported protocol version", data: the supported versions and the one requested}.
TJSON MakeUnsupportedProtocolError(const TJSON& aId, std::string_view aRequested);

// Compact text of a response; text that is not valid UTF-8 is replaced rather than refused.
std::string DumpCompact(const TJSON& aValue);

}  // namespace Orvex
