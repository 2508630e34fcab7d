// The MCP stdio transport: a client launches the server as a process and exchanges one JSON-RPC message
// per line over its standard input and output. The same dispatcher serves it as the HTTP transport.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

namespace Orvex {
class TORXMCPServer;
}

namespace Orvex::Host {

// The response line to one input line (compact JSON without the newline), or nullopt when there is none:
// a blank line, a notification, a batch of notifications.
std::optional<std::string> HandleJsonRpcLine(TORXMCPServer& aServer, std::string_view aLine);

// Answers line after line until aIn ends. Writes only protocol messages to aOut, each flushed at once.
void ServeStdio(TORXMCPServer& aServer, std::istream& aIn, std::ostream& aOut);

}  // namespace Orvex::Host
