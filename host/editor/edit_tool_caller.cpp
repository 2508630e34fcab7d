#include "host/editor/edit_tool_caller.h"

#include <fmt/format.h>

#include "orvex/agent/mcp_server.h"

namespace Orvex::Host {

TToolCaller ToolCallerOf(TORXMCPServer& aServer, TORXBaseLabel& aDocument) {
    return [&aServer, &aDocument](const std::string& aTool, const TJSON& aArgs) -> TJSON {
        for (const auto& tool : aServer.Tools())
            if (tool.Name == aTool && tool.Handler) return tool.Handler(aDocument, aArgs);
        return {
            {"isError", true},
            {"content",
             TJSON::array({{{"type", "text"}, {"text", fmt::format("this server has no tool {}", aTool)}}})}};
    };
}

}  // namespace Orvex::Host
