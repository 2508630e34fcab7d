// tools/list is answered from text written once per registration: it must be the very bytes the JSON-RPC
// layer would write, in both protocol generations, and follow registrations.
#include <gtest/gtest.h>

#include <string>

#include "orvex/agent/mcp_jsonrpc.h"
#include "tests/agent/mcp_test_support.h"

namespace Orvex {
namespace {

using namespace Testing;

void AddTool(TORXMCPServer& server, const std::string& name) {
    server.RegisterTool(name, "Draws \"quoted\" things \xE2\x80\x94 in mm",
                        {{"type", "object"}, {"properties", {{"size", {{"type", "number"}}}}}},
                        [](TORXBaseLabel&, const TJSON&) { return TJSON::object(); });
}

TEST(MCPToolsListTest, TheWrittenAnswerEqualsTheJsonRpcLayers) {
    TORXMCPServer server;
    AddTool(server, "get_drawing_info");
    AddTool(server, "add_rectangle");
    struct TCase {
        const char* Name;
        TJSON Body;
        TMCPHeaders Headers;
        bool Modern;
    };
    const auto modern = Modern("tools/list");
    const TCase cases[] = {
        {"number id", Rpc("tools/list", nullptr, 7), {{"MCP-Protocol-Version", "2025-06-18"}}, false},
        {"text id", Rpc("tools/list", nullptr, "a\"b"), {}, false},
        {"object id", Rpc("tools/list", nullptr, {{"n", 1}}), {}, false},
        {"modern", modern.Body, modern.Headers, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        const auto response = server.DoCommandGet(Post(c.Body.dump(), c.Headers));
        EXPECT_EQ(response.Status, 200);
        EXPECT_EQ(response.ContentType, "application/json");
        const auto expected = server.ProcessJsonRpc(c.Body, c.Modern);
        ASSERT_TRUE(expected.has_value());
        EXPECT_EQ(response.Body, DumpCompact(*expected));
    }
}

TEST(MCPToolsListTest, ARegistrationAfterAnAnswerIsListed) {
    TORXMCPServer server;
    AddTool(server, "first");
    const auto list = [&] {
        return ParseBody(server.DoCommandGet(Post(Rpc("tools/list").dump())))["result"];
    };
    EXPECT_EQ(list()["tools"].size(), 1u);
    AddTool(server, "second");
    const auto tools = list()["tools"];
    ASSERT_EQ(tools.size(), 2u);
    EXPECT_EQ(tools[1]["name"], "second");
    // Not a list request: the JSON-RPC layer answers as before.
    std::string body;
    EXPECT_FALSE(server.AnswerToolsList(Rpc("tools/call"), false, body));
    EXPECT_FALSE(server.AnswerToolsList(TJSON{{"jsonrpc", "1.0"}, {"method", "tools/list"}}, false, body));
    EXPECT_TRUE(body.empty());
}

}  // namespace
}  // namespace Orvex
