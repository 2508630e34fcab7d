// The editor's file and layer actions run the MCP server's own tools, so that a person and an agent change
// the drawing through the same code.
#pragma once

#include "host/editor/edit_session.h"

namespace Orvex {
class TORXMCPServer;
}

namespace Orvex::Host {

// Calls aServer's tools on aDocument (both must outlive the caller); a tool the server lacks is reported
// as an error result.
TToolCaller ToolCallerOf(TORXMCPServer& aServer, TORXBaseLabel& aDocument);

}  // namespace Orvex::Host
