// The host's standard MCP tools: inspecting the drawing, adding and changing items and layers, files,
// diagrams, batching and undo. A server gets them through RegisterStandardTools, through its own
// registration (StandardToolsRegistration), or through the process-wide registration procedure that
// InstallStandardTools sets.
#pragma once

#include <filesystem>
#include <optional>

#include "orvex/agent/mcp_server.h"

namespace Orvex::Host {

struct TToolOptions {
    // File tools read and write only inside this folder; without it they work inline (content in the
    // call and in the result) and refuse file paths.
    std::optional<std::filesystem::path> FilesRoot;
};

void RegisterStandardTools(TORXMCPServer& aServer, const TToolOptions& aOptions);

// A registration for one server (TORXMCPServer::SetToolsRegistration) that keeps its own options, so that
// servers with different files folders live side by side.
TMCPToolsRegistration StandardToolsRegistration(TToolOptions aOptions);

// Stores the options and makes RegisterStandardTools the registration of every server that has none of
// its own.
void InstallStandardTools(const TToolOptions& aOptions);

// EndUpdate and Refresh of the document, as the server calls them after a tool that changes the drawing.
TMCPDocumentHooks MakeDocumentHooks();

}  // namespace Orvex::Host
