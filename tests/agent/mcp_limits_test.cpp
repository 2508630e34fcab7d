// The server's own limits without sockets: requests without an id, bytes after the JSON, batch length,
// batches under versions that have none, answer size, and the checks made before a body is read.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/agent/mcp_server.h"
#include "tests/agent/mcp_test_support.h"

using namespace Orvex;
using namespace Orvex::Testing;

namespace {

class MCPLimits : public ::testing::Test {
  protected:
    MCPLimits() {
        fServer.SetLabel(FakeLabel());
        fServer.RegisterTool("add_count", "Counts", nullptr, [this](TORXBaseLabel&, const TJSON&) {
            return TextResult(std::to_string(++fCalls));
        });
    }
    TJSON Call(TJSON aId = 1) const { return Rpc("tools/call", {{"name", "add_count"}}, std::move(aId)); }

    TORXMCPServer fServer;
    std::atomic<int> fCalls{0};
};

TEST_F(MCPLimits, RequestsWithoutIdAreRefusedAndNeverRun) {
    TJSON noId = Call();
    noId.erase("id");
    const auto refused = fServer.DoCommandGet(Post(noId.dump()));
    EXPECT_EQ(refused.Status, 400);
    EXPECT_EQ(
        refused.Body,
        R"({"jsonrpc":"2.0","id":null,"error":{"code":-32600,"message":"Invalid request: a request needs an id"}})");
    EXPECT_EQ(fServer.DoCommandGet(Post(Call(nullptr).dump())).Status, 400);
    TJSON unknown = Rpc("no/such/method");
    unknown.erase("id");
    EXPECT_EQ(fServer.DoCommandGet(Post(unknown.dump())).Status, 400);
    EXPECT_EQ(fCalls, 0);

    // Notifications carry no id by nature.
    EXPECT_EQ(fServer.DoCommandGet(Post(R"({"jsonrpc":"2.0","method":"notifications/cancelled"})")).Status,
              202);
    // In a batch the element is refused in place and the others run.
    const auto batch = fServer.DoCommandGet(Post(TJSON::array({noId, Call(7)}).dump()));
    EXPECT_EQ(batch.Status, 200);
    const TJSON answers = ParseBody(batch);
    ASSERT_EQ(answers.size(), 2u);
    EXPECT_EQ(answers[0]["error"]["code"], -32600);
    EXPECT_EQ(answers[1]["id"], 7);
    EXPECT_EQ(fCalls, 1);
}

TEST_F(MCPLimits, BytesAfterTheJsonAreAParseError) {
    const std::string valid = Call().dump();
    for (const std::string& body : {valid + std::string(1, '\0') + "junk", valid + std::string(1, '\0'),
                                    valid + " junk", valid + valid}) {
        SCOPED_TRACE(body);
        const auto response = fServer.DoCommandGet(Post(body));
        EXPECT_EQ(response.Status, 400);
        EXPECT_EQ(ParseBody(response)["error"]["code"], -32700);
    }
    EXPECT_EQ(fCalls, 0);
    // An escaped NUL inside a string is JSON.
    EXPECT_EQ(fServer.DoCommandGet(Post(R"({"jsonrpc":"2.0","id":"a\u0000b","method":"ping"})")).Status, 200);
}

TEST_F(MCPLimits, LongBatchesAreRefusedBeforeAnyElementRuns) {
    fServer.SetMaxBatchRequests(3);
    // Commas and brackets inside strings and nested values do not count as elements.
    TJSON tricky = Call(2);
    tricky["params"]["arguments"] = {{"text", "a,b],[c"}, {"list", {1, 2, 3, 4, 5}}};
    const auto fits = fServer.DoCommandGet(Post(TJSON::array({Call(1), tricky, Call(3)}).dump()));
    EXPECT_EQ(fits.Status, 200);
    EXPECT_EQ(fCalls, 3);

    const auto refused =
        fServer.DoCommandGet(Post(TJSON::array({Call(1), Call(2), Call(3), Call(4)}).dump()));
    EXPECT_EQ(refused.Status, 400);
    EXPECT_EQ(ParseBody(refused)["error"]["message"], "Batch too large: at most 3 requests");
    EXPECT_EQ(fCalls, 3);

    // Millions of tiny elements within the body limit are refused on their count, before parsing.
    fServer.SetMaxBatchRequests(kDefaultMaxBatchRequests);
    std::string tiny = "[";
    for (int i = 0; i < 2'000'000; ++i) tiny += "{},";
    tiny.back() = ']';
    const auto many = fServer.DoCommandGet(Post(tiny));
    EXPECT_EQ(many.Status, 400);
    EXPECT_EQ(ParseBody(many)["error"]["message"], "Batch too large: at most 256 requests");
}

TEST_F(MCPLimits, BatchesAreRefusedUnderVersionsThatHaveNone) {
    const std::string batch = TJSON::array({Rpc("ping")}).dump();
    for (const char* version : {"2026-07-28", "2025-11-25", "2025-06-18"}) {
        SCOPED_TRACE(version);
        const auto response = fServer.DoCommandGet(Post(batch, {{"MCP-Protocol-Version", version}}));
        EXPECT_EQ(response.Status, 400);
        EXPECT_EQ(ParseBody(response)["error"]["message"],
                  std::string("JSON-RPC batches are not supported by MCP ") + version);
    }
    for (const char* version : {"2025-03-26", "2024-11-05", ""}) {
        SCOPED_TRACE(version);
        EXPECT_EQ(fServer.DoCommandGet(Post(batch, {{"MCP-Protocol-Version", version}})).Status, 200);
    }
}

TEST_F(MCPLimits, AnswersBeyondTheResponseLimitBecomeErrors) {
    const std::string listed = fServer.DoCommandGet(Post(Rpc("tools/list").dump())).Body;
    // Room for one tool list and a short answer, not for two lists.
    fServer.SetMaxResponseBytes(static_cast<std::int32_t>(listed.size() + 200));
    EXPECT_EQ(fServer.DoCommandGet(Post(Rpc("tools/list").dump())).Status, 200);

    // A batch's answers count together; the elements after the limit do not run.
    TJSON batch =
        TJSON::array({Rpc("tools/list", nullptr, 1), Call(2), Rpc("tools/list", nullptr, 3), Call(4)});
    const auto response = fServer.DoCommandGet(Post(batch.dump()));
    EXPECT_EQ(response.Status, 500);
    EXPECT_EQ(ParseBody(response)["error"]["message"],
              "Response too large: 3 of 4 requests of the batch ran");
    EXPECT_EQ(fCalls, 1);

    fServer.SetMaxResponseBytes(10);
    const auto single = fServer.DoCommandGet(Post(Rpc("tools/list").dump()));
    EXPECT_EQ(single.Status, 500);
    EXPECT_EQ(ParseBody(single)["error"]["code"], -32603);
}

TEST_F(MCPLimits, HeadChecksComeBeforeTheBody) {
    fServer.SetAuthToken("s3cret");
    TMCPHttpRequest head = Post("");
    head.BodySize = 1ULL << 40;  // declared, never read
    TMCPHttpResponse answer;
    EXPECT_FALSE(fServer.AdmitRequestHead(head, answer));
    EXPECT_EQ(answer.Status, 401);

    head.Headers = {{"Authorization", "Bearer s3cret"}, {"Origin", "http://evil.example"}};
    EXPECT_FALSE(fServer.AdmitRequestHead(head, answer));
    EXPECT_EQ(answer.Status, 403);

    head.Headers = {{"Authorization", "Bearer s3cret"}, {"Origin", "http://localhost:3001"}};
    EXPECT_FALSE(fServer.AdmitRequestHead(head, answer));
    EXPECT_EQ(answer.Status, 413);
    EXPECT_EQ(FindHeader(answer.Headers, "Access-Control-Allow-Origin"), "http://localhost:3001");

    head.BodySize = 100;
    EXPECT_TRUE(fServer.AdmitRequestHead(head, answer));
    EXPECT_EQ(FindHeader(answer.Headers, "Access-Control-Allow-Methods"), "POST, OPTIONS");
}

}  // namespace
