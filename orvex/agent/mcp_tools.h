// The tools an MCP server offers. The host supplies the bodies (a registration procedure that calls
// RegisterTool); the server states what it knows from a tool's name alone: its title, its behaviour hints,
// whether it changes the drawing, and the shape of its structured result.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "orvex/io/json.h"

namespace Orvex {

class TORXBaseLabel;
class TORXMCPServer;

// Runs on the main thread with the bound document and the call's arguments object (valid only during the
// call) and returns a tool result ({"content": [...]}, optionally "isError" and "structuredContent").
// What it throws becomes an error result carrying the exception's message.
using TMCPToolCall = std::function<TJSON(TORXBaseLabel& aLabel, const TJSON& aArguments)>;

struct TMCPToolDef {
    std::string Name;
    std::string Description;
    TJSON InputSchema;  // a null value when the tool gave none
    TMCPToolCall Handler;
    // The shape of the tool's structuredContent as the host declares it; a null value leaves the one
    // BuildToolOutputSchema knows from the name.
    TJSON OutputSchema;
};

using TMCPRegisterProc = void (*)(TORXMCPServer& aServer);

// The process-wide procedure that registers the host's tools on a server that has none; nullptr clears it.
// A server given its own registration (TORXMCPServer::SetToolsRegistration) does not use it.
void MCPSetDefaultToolsRegistration(TMCPRegisterProc aProc);
TMCPRegisterProc MCPDefaultToolsRegistration();

// One server's own registration: it may carry the options its tools are built with.
using TMCPToolsRegistration = std::function<void(TORXMCPServer& aServer)>;

// "get_drawing_info" -> "Get Drawing Info": "-", "." and "_" become blanks and start a word.
std::string ToolTitle(std::string_view aName);
bool ToolChangesDrawing(std::string_view aName);  // EndUpdate and Refresh follow such a tool
TJSON BuildToolAnnotations(std::string_view aName);
TJSON BuildToolOutputSchema(std::string_view aName);  // a null value for the tools without a schema

const std::string& DefaultInstructions();

}  // namespace Orvex
