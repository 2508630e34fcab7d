// Wiring shared by the hosts that put one drawing behind an MCP server: the standard tools, the document's
// update hooks and the thread the tools run on.
#pragma once

#include <string>

#include "host/tools/register_tools.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/formats/drawing_file.h"

namespace Orvex {
class IMainThreadRunner;
class TORXBaseLabel;
}  // namespace Orvex

namespace Orvex::Host {

// Reads aFileName into aDocument when it names an existing file (otherwise the drawing starts empty), then
// marks the document loaded. An empty name just starts empty.
TQVLFileResult OpenDrawing(const std::string& aFileName, TORXBaseLabel& aDocument);

// Binds aServer to aDocument with the standard tools under aTools as its own registration (the
// process-wide one is left alone), running them through aRunner (not owned; both must outlive the server's
// use of them).
void BindDrawingServer(TORXMCPServer& aServer, TORXBaseLabel& aDocument, IMainThreadRunner& aRunner,
                       const TToolOptions& aTools);

}  // namespace Orvex::Host
