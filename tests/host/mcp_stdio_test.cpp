// The stdio transport over string streams: one message per line in, one response per line out.
#include <gtest/gtest.h>

#include <sstream>

#include "host/mcp_stdio.h"
#include "tests/host/tool_test_support.h"

namespace Orvex::Testing {
namespace {

using StdioTest = ToolsTest;

std::vector<TJSON> Lines(const std::string& aText) {
    std::vector<TJSON> lines;
    std::istringstream in(aText);
    for (std::string line; std::getline(in, line);) lines.push_back(TJSON::parse(line));
    return lines;
}

TEST_F(StdioTest, AnswersEachRequestOnItsOwnLineAndNotificationsNotAtAll) {
    std::istringstream in(
        R"({"jsonrpc":"2.0","id":1,"method":"initialize","params":{"protocolVersion":"2025-06-18"}})"
        "\n"
        R"({"jsonrpc":"2.0","method":"notifications/initialized"})"
        "\n\n"
        R"({"jsonrpc":"2.0","id":2,"method":"tools/call","params":{"name":"add_flow","arguments":{"x":1,"y":2,"text":"S"}}})"
        "\r\n"
        R"({"jsonrpc":"2.0","id":3,"method":"tools/list"})"
        "\n");
    std::ostringstream out;
    Host::ServeStdio(fServer, in, out);
    const auto lines = Lines(out.str());
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0]["result"]["protocolVersion"], "2025-06-18");
    EXPECT_EQ(lines[1]["id"], 2);
    EXPECT_EQ(lines[1]["result"]["structuredContent"]["kind"], "flow");
    EXPECT_GT(lines[2]["result"]["tools"].size(), 20u);
    EXPECT_EQ(fDoc.GetItemsCount(), 1);
    EXPECT_TRUE(fServer.Initialized());
}

TEST_F(StdioTest, MalformedLinesGetJsonRpcErrors) {
    struct Case {
        std::string Line;
        std::optional<std::string> Response;
    };
    const Case cases[] = {
        {"{not json", R"({"jsonrpc":"2.0","id":null,"error":{"code":-32700,"message":"Parse error"}})"},
        {"[]", R"({"jsonrpc":"2.0","id":null,"error":{"code":-32600,"message":"Empty batch"}})"},
        {"42", R"({"jsonrpc":"2.0","id":null,"error":{"code":-32600,"message":"Invalid request"}})"},
        {R"([{"jsonrpc":"2.0","method":"notifications/x"}])", std::nullopt},
        {R"([{"jsonrpc":"2.0","id":7,"method":"ping"},1])",
         R"([{"jsonrpc":"2.0","id":7,"result":{}},{"jsonrpc":"2.0","id":null,"error":{"code":-32600,"message":"Invalid request"}}])"},
        {"   ", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Line);
        EXPECT_EQ(Host::HandleJsonRpcLine(fServer, c.Line), c.Response);
    }
}

TEST_F(StdioTest, ModernRequestsAreServedWithoutHeaders) {
    const TJSON meta = {{"io.modelcontextprotocol/protocolVersion", "2026-07-28"},
                        {"io.modelcontextprotocol/clientCapabilities", TJSON::object()}};
    const TJSON discover = {
        {"jsonrpc", "2.0"}, {"id", 1}, {"method", "server/discover"}, {"params", {{"_meta", meta}}}};
    const TJSON answer = TJSON::parse(*Host::HandleJsonRpcLine(fServer, discover.dump()));
    EXPECT_EQ(answer["result"]["supportedVersions"][0], "2026-07-28");
    EXPECT_EQ(answer["result"]["resultType"], "complete");

    TJSON old = discover;
    old["params"]["_meta"]["io.modelcontextprotocol/protocolVersion"] = "2030-01-01";
    const TJSON refused = TJSON::parse(*Host::HandleJsonRpcLine(fServer, old.dump()));
    EXPECT_EQ(refused["error"]["code"], -32022);
    EXPECT_EQ(refused["error"]["data"]["requested"], "2030-01-01");
}

}  // namespace
}  // namespace Orvex::Testing
