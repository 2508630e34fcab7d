// The stdio transport against hostile lines: nesting that would overflow the stack when echoed, and lines
// longer than a request may be. The transport answers each and goes on serving.
#include <gtest/gtest.h>

#include <sstream>

#include "host/mcp_stdio.h"
#include "tests/host/tool_test_support.h"

namespace Orvex::Testing {
namespace {

using StdioLimitsTest = ToolsTest;

std::vector<TJSON> Lines(const std::string& aText) {
    std::vector<TJSON> lines;
    std::istringstream in(aText);
    for (std::string line; std::getline(in, line);) lines.push_back(TJSON::parse(line));
    return lines;
}

TEST_F(StdioLimitsTest, ARequestIdNestedFarTooDeepIsAParseErrorNotACrash) {
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    for (const std::string& line :
         {R"({"jsonrpc":"2.0","id":)" + deep + R"(,"method":"ping"})",
          R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"add_flow",)"
          R"("arguments":{"text":)" +
              deep + "}}}"}) {
        EXPECT_EQ(Host::HandleJsonRpcLine(fServer, line),
                  R"({"jsonrpc":"2.0","id":null,"error":{"code":-32700,"message":"Parse error"}})");
    }
}

TEST_F(StdioLimitsTest, AnOverlongLineIsRefusedAndTheNextOneServed) {
    fServer.SetMaxRequestBytes(64);
    std::istringstream in(R"({"jsonrpc":"2.0","id":1,"method":"ping","params":{"pad":")" +
                          std::string(500, 'x') +
                          "\"}}\n"
                          R"({"jsonrpc":"2.0","id":2,"method":"ping"})"
                          "\n");
    std::ostringstream out;
    Host::ServeStdio(fServer, in, out);
    const auto lines = Lines(out.str());
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0]["error"]["code"], -32600);
    EXPECT_EQ(lines[0]["error"]["message"], "Request larger than 64 bytes");
    EXPECT_EQ(lines[1]["id"], 2);
    EXPECT_TRUE(lines[1].contains("result"));
}

}  // namespace
}  // namespace Orvex::Testing
