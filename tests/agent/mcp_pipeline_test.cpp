#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/agent/mcp_server.h"
#include "tests/agent/mcp_test_support.h"

using namespace Orvex;
using namespace Orvex::Testing;

namespace {

const std::string kAllowHeaders =
    "Content-Type, Authorization, Accept, MCP-Protocol-Version, Mcp-Method, Mcp-Name";

std::string ErrorBody(int aCode, const std::string& aMessage, const std::string& aId = "null") {
    return R"({"jsonrpc":"2.0","id":)" + aId + R"(,"error":{"code":)" + std::to_string(aCode) +
           R"(,"message":")" + aMessage + R"("}})";
}

class MCPPipeline : public ::testing::Test {
  protected:
    MCPPipeline() {
        fServer.SetLabel(FakeLabel());
        fServer.SetOnLog([this](TORXMCPServer&, const std::string& aLine) { fLog.push_back(aLine); });
        fServer.RegisterTool("list_items", "Lists the items", nullptr,
                             [](TORXBaseLabel&, const TJSON&) { return TextResult("[]"); });
    }
    TORXMCPServer fServer;
    std::vector<std::string> fLog;
};

struct TRejectCase {
    const char* Name;
    std::function<void(TORXMCPServer&, TMCPHttpRequest&)> Setup;
    int Status;
    std::string Body;  // exact
    bool CorsHeaders;
};

TEST_F(MCPPipeline, RejectsEachBadRequestWithItsStatusAndBody) {
    const std::vector<TRejectCase> cases = {
        {"wrong path", [](auto&, auto& r) { r.Path = "/other"; }, 404,
         R"({"error":"MCP endpoint not found"})", false},
        {"foreign origin",
         [](auto&, auto& r) {
             r.Headers = {{"Origin", "http://evil.example"}};
         },
         403, R"({"error":"Origin not allowed"})", false},
        {"loopback origin, other port",
         [](auto&, auto& r) {
             r.Headers = {{"Origin", "http://localhost:3002"}};
         },
         403, R"({"error":"Origin not allowed"})", false},
        {"loopback origin, no port",
         [](auto&, auto& r) {
             r.Headers = {{"Origin", "http://localhost"}};
         },
         403, R"({"error":"Origin not allowed"})", false},
        {"missing token", [](auto& s, auto&) { s.SetAuthToken("s3cret"); }, 401,
         R"({"error":"Unauthorized"})", true},
        {"two blanks before the token",
         [](auto& s, auto& r) {
             s.SetAuthToken("s3cret");
             r.Headers = {{"Authorization", "Bearer  s3cret"}};
         },
         401, R"({"error":"Unauthorized"})", true},
        {"token of another case",
         [](auto& s, auto& r) {
             s.SetAuthToken("s3cret");
             r.Headers = {{"Authorization", "Bearer S3CRET"}};
         },
         401, R"({"error":"Unauthorized"})", true},
        {"token prefix only",
         [](auto& s, auto& r) {
             s.SetAuthToken("s3cret");
             r.Headers = {{"Authorization", "Bearer s3cre"}};
         },
         401, R"({"error":"Unauthorized"})", true},
        {"DELETE", [](auto&, auto& r) { r.Method = "DELETE"; }, 405,
         R"({"error":"This server does not use transport sessions"})", true},
        {"GET", [](auto&, auto& r) { r.Method = "GET"; }, 405, R"({"error":"Method not allowed"})", true},
        {"too large",
         [](auto& s, auto& r) { s.SetMaxRequestBytes(static_cast<std::int32_t>(r.Body.size() - 1)); }, 413,
         R"({"error":"Request body too large"})", true},
        {"declared too large, not read",
         [](auto&, auto& r) {
             r.Body.clear();
             r.BodySize = 8388609;
         },
         413, R"({"error":"Request body too large"})", true},
        {"empty body", [](auto&, auto& r) { r.Body.clear(); }, 400, R"({"error":"Empty request body"})",
         true},
        {"no body stream", [](auto&, auto& r) { r.HasBody = false; }, 400,
         R"({"error":"Empty request body"})", true},
        {"not JSON", [](auto&, auto& r) { r.Body = "{\"jsonrpc\":"; }, 400, ErrorBody(-32700, "Parse error"),
         true},
        {"nested beyond reason",
         [](auto&, auto& r) { r.Body = std::string(600, '[') + std::string(600, ']'); }, 400,
         ErrorBody(-32700, "Parse error"), true},
        {"scalar", [](auto&, auto& r) { r.Body = "42"; }, 400, ErrorBody(-32600, "Invalid request"), true},
        {"empty batch", [](auto&, auto& r) { r.Body = "[]"; }, 400, ErrorBody(-32600, "Empty batch"), true},
        {"batch in the modern protocol",
         [](auto&, auto& r) {
             r.Body = "[" + Rpc("ping").dump() + "]";
             r.Headers = {{"MCP-Protocol-Version", "2026-07-28"}};
         },
         400, ErrorBody(-32600, "JSON-RPC batches are not supported by MCP 2026-07-28"), true},
        {"modern without JSON content type",
         [](auto&, auto& r) {
             const auto call = Modern("tools/list");
             r.Body = call.Body.dump();
             r.Headers = call.Headers;
             r.ContentType = "text/plain";
         },
         415, ErrorBody(-32600, "Content-Type must be application/json"), true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        TORXMCPServer server;
        auto request = Post(Rpc("tools/list").dump());
        c.Setup(server, request);
        const auto response = server.DoCommandGet(request);
        EXPECT_EQ(response.Status, c.Status);
        EXPECT_EQ(response.ContentType, "application/json");
        EXPECT_EQ(response.Body, c.Body);
        EXPECT_EQ(FindHeader(response.Headers, "Access-Control-Allow-Headers"),
                  c.CorsHeaders ? kAllowHeaders : "");
        EXPECT_EQ(FindHeader(response.Headers, "WWW-Authenticate"), c.Status == 401 ? "Bearer" : "");
    }
}

TEST_F(MCPPipeline, ModernHeaderChecksFailInOrderWithTheirCodes) {
    struct TCase {
        const char* Name;
        std::function<void(TModernCall&)> Break;
        int Code;
        std::string Message;
    };
    const std::vector<TCase> cases = {
        {"no _meta version",
         [](auto& c) { c.Body["params"]["_meta"].erase("io.modelcontextprotocol/protocolVersion"); }, -32020,
         "Header mismatch: protocol version is required in both HTTP header and request _meta"},
        {"_meta version without the header", [](auto& c) { c.Headers.erase(c.Headers.begin()); }, -32020,
         "Header mismatch: protocol version is required in both HTTP header and request _meta"},
        {"header and _meta differ",
         [](auto& c) { c.Body["params"]["_meta"]["io.modelcontextprotocol/protocolVersion"] = "2025-11-25"; },
         -32020, "Header mismatch: MCP-Protocol-Version does not match request _meta"},
        {"older version in both",
         [](auto& c) {
             c.Body["params"]["_meta"]["io.modelcontextprotocol/protocolVersion"] = "2025-11-25";
             c.Headers[0].second = "2025-11-25";
         },
         -32022, "Unsupported protocol version"},
        {"capabilities not an object",
         [](auto& c) { c.Body["params"]["_meta"]["io.modelcontextprotocol/clientCapabilities"] = "all"; },
         -32021, "Missing required client capability metadata"},
        {"method header of other case", [](auto& c) { c.Headers[1].second = "Tools/List"; }, -32020,
         "Header mismatch: Mcp-Method does not match the JSON-RPC method"},
        {"Accept without event stream", [](auto& c) { c.Headers[2].second = "application/json"; }, -32600,
         "Accept must include application/json and text/event-stream"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        auto call = Modern("tools/list");
        c.Break(call);
        const auto response = fServer.DoCommandGet(Post(call.Body.dump(), call.Headers));
        EXPECT_EQ(response.Status, 400);
        const auto body = ParseBody(response);
        EXPECT_EQ(body["id"], 1);
        EXPECT_EQ(body["error"]["code"], c.Code);
        EXPECT_EQ(body["error"]["message"], c.Message);
    }
}

TEST_F(MCPPipeline, ModernToolNameHeaderMayBeBase64) {
    auto call = Modern("tools/call", {{"name", "list_items"}});
    for (const std::string header : {"list_items", "=?base64?bGlzdF9pdGVtcw==?="}) {
        SCOPED_TRACE(header);
        call.Headers.back().second = header;
        const auto response = fServer.DoCommandGet(Post(call.Body.dump(), call.Headers));
        EXPECT_EQ(response.Status, 200);
        EXPECT_EQ(ParseBody(response)["result"]["content"][0]["text"], "[]");
    }
    for (const std::string header : {"list_item", "=?base64?bGlzdF9pdGVt?=", "=?base64?!!!!?=", ""}) {
        SCOPED_TRACE(header);
        call.Headers.back().second = header;
        const auto response = fServer.DoCommandGet(Post(call.Body.dump(), call.Headers));
        EXPECT_EQ(response.Status, 400);
        EXPECT_EQ(ParseBody(response)["error"]["message"],
                  "Header mismatch: Mcp-Name does not match the tool name");
    }
}

TEST_F(MCPPipeline, DecodeMCPHeaderValue) {
    std::string decoded;
    EXPECT_TRUE(TORXMCPServer::DecodeMCPHeaderValue("=?base64?w6TDtsO8?=", decoded));
    EXPECT_EQ(decoded, "äöü");
    EXPECT_TRUE(
        TORXMCPServer::DecodeMCPHeaderValue("=?BASE64?eA==?=", decoded));  // the marker is case-sensitive
    EXPECT_EQ(decoded, "=?BASE64?eA==?=");
    EXPECT_FALSE(TORXMCPServer::DecodeMCPHeaderValue("=?base64?/w==?=", decoded));  // not UTF-8
}

TEST_F(MCPPipeline, ModernMethodNotFoundIs404) {
    const auto call = Modern("initialize");
    const auto response = fServer.DoCommandGet(Post(call.Body.dump(), call.Headers));
    EXPECT_EQ(response.Status, 404);
    EXPECT_EQ(response.Body, ErrorBody(-32601, "Method not found: initialize", "1"));
}

TEST_F(MCPPipeline, UnsupportedVersionHeaderWithoutMetaGets32022) {
    const auto response = fServer.DoCommandGet(
        Post(Rpc("tools/list", nullptr, 7).dump(), {{"MCP-Protocol-Version", "2030-01-01"}}));
    EXPECT_EQ(response.Status, 400);
    EXPECT_EQ(
        response.Body,
        R"({"jsonrpc":"2.0","id":7,"error":{"code":-32022,"message":"Unsupported protocol version","data":)"
        R"({"supported":["2026-07-28","2025-11-25","2025-06-18","2025-03-26","2024-11-05"],)"
        R"("requested":"2030-01-01"}}})");
}

TEST_F(MCPPipeline, PreflightNeedsNoTokenAndEchoesTheOrigin) {
    fServer.SetAuthToken("s3cret");
    TMCPHttpRequest request;
    request.Method = "OPTIONS";
    request.Path = "/MCP";  // the path compares case-insensitively
    request.Headers = {{"origin", "http://127.0.0.1:3001"}, {"Authorization", "Bearer wrong"}};
    const auto response = fServer.DoCommandGet(request);
    EXPECT_EQ(response.Status, 204);
    EXPECT_EQ(response.ContentType, "");
    EXPECT_EQ(response.Body, "");
    const TMCPHeaders expected = {{"Access-Control-Allow-Origin", "http://127.0.0.1:3001"},
                                  {"Vary", "Origin"},
                                  {"Access-Control-Allow-Methods", "POST, OPTIONS"},
                                  {"Access-Control-Allow-Headers", kAllowHeaders}};
    EXPECT_EQ(response.Headers, expected);
}

TEST_F(MCPPipeline, AcceptsOriginsAndTokensAsWritten) {
    fServer.SetAuthToken("s3cret");
    fServer.SetAllowedOrigins(" https://app.example ;http://a b.example;");
    const std::vector<TMCPHeaders> accepted = {
        {{"Authorization", "bearer s3cret"}},
        {{"Authorization", "BEARER s3cret"}, {"Origin", "HTTPS://LOCALHOST:3001"}},
        {{"Authorization", "Bearer s3cret"}, {"Origin", "https://app.example"}},
        {{"Authorization", "Bearer s3cret"},
         {"Origin", "http://a b.example"}},  // blanks do not split entries
    };
    for (const auto& headers : accepted) {
        SCOPED_TRACE(headers.back().second);
        EXPECT_EQ(fServer.DoCommandGet(Post(Rpc("ping").dump(), headers)).Status, 200);
    }
    EXPECT_FALSE(fServer.IsOriginAllowed("http://a"));
    EXPECT_TRUE(fServer.IsOriginAllowed("  "));
}

TEST_F(MCPPipeline, BodyOfExactlyTheLimitIsAccepted) {
    auto request = Post(Rpc("ping").dump());
    fServer.SetMaxRequestBytes(static_cast<std::int32_t>(request.Body.size()));
    EXPECT_EQ(fServer.DoCommandGet(request).Status, 200);
    fServer.SetMaxRequestBytes(0);  // no limit
    request.BodySize = 1ULL << 40;
    EXPECT_EQ(fServer.DoCommandGet(request).Status, 200);
}

TEST_F(MCPPipeline, BatchesAnswerInOrderAndSkipNotifications) {
    const TJSON batch = TJSON::array({Rpc("ping", nullptr, "a"),
                                      5,
                                      {{"jsonrpc", "2.0"}, {"method", "notifications/x"}},
                                      Rpc("prompts/list", nullptr, 2)});
    const auto response = fServer.DoCommandGet(Post(batch.dump()));
    EXPECT_EQ(response.Status, 200);
    EXPECT_EQ(response.Body, R"([{"jsonrpc":"2.0","id":"a","result":{}},)" +
                                 ErrorBody(-32600, "Invalid request") +
                                 R"(,{"jsonrpc":"2.0","id":2,"result":{"prompts":[]}}])");

    // Batches are always handled by the older rules: server/discover is not found in them.
    const auto discover = fServer.DoCommandGet(Post("[" + Rpc("server/discover").dump() + "]"));
    EXPECT_EQ(ParseBody(discover)[0]["error"]["code"], -32601);

    const auto onlyNotifications =
        fServer.DoCommandGet(Post(R"([{"jsonrpc":"2.0","method":"notifications/initialized"}])"));
    EXPECT_EQ(onlyNotifications.Status, 202);
    EXPECT_EQ(onlyNotifications.ContentType, "");
    EXPECT_EQ(onlyNotifications.Body, "");
    EXPECT_TRUE(fServer.Initialized());
}

TEST_F(MCPPipeline, SingleNotificationGets202) {
    const auto response =
        fServer.DoCommandGet(Post(R"({"jsonrpc":"2.0","method":"notifications/whatever"})"));
    EXPECT_EQ(response.Status, 202);
    EXPECT_EQ(response.Body, "");
    EXPECT_EQ(response.ContentType, "");
}

TEST_F(MCPPipeline, LogsSizesInUtf16UnitsOrPayloadsButNeverTheToken) {
    fServer.SetAuthToken("tok-123");
    const TMCPHeaders auth = {{"Authorization", "Bearer tok-123"}};
    const std::string body = R"({"jsonrpc":"2.0","id":1,"method":"ping","x":"😀é"})";
    fServer.DoCommandGet(Post(body, auth));
    ASSERT_EQ(fLog.size(), 1u);
    EXPECT_EQ(fLog[0], "MCP request received (" + std::to_string(body.size() - 3) + " bytes)");

    fLog.clear();
    fServer.SetLogPayloads(true);
    fServer.DoCommandGet(Post(body, auth));
    ASSERT_EQ(fLog.size(), 2u);
    EXPECT_EQ(fLog[0], ">> " + body);
    EXPECT_EQ(fLog[1], R"(<< {"jsonrpc":"2.0","id":1,"result":{}})");
    for (const auto& line : fLog) EXPECT_EQ(line.find("tok-123"), std::string::npos);
}

TEST_F(MCPPipeline, FailureWhileHandlingGives500WithTheMessage) {
    fServer.SetOnLog([this](TORXMCPServer&, const std::string& aLine) {
        fLog.push_back(aLine);
        if (aLine.starts_with("MCP request")) throw std::runtime_error("log sink broke");
    });
    const auto response = fServer.DoCommandGet(Post(Rpc("ping").dump()));
    EXPECT_EQ(response.Status, 500);
    EXPECT_EQ(response.Body, ErrorBody(-32603, "log sink broke"));
    EXPECT_EQ(fLog.back(), "Error: log sink broke");
}

TEST_F(MCPPipeline, EmptyEndpointPathServesEveryPath) {
    fServer.SetEndpointPath(" ");
    auto request = Post(Rpc("ping").dump());
    request.Path = "/anything/else";
    EXPECT_EQ(fServer.DoCommandGet(request).Status, 200);
}

}  // namespace

namespace {

TEST(MCPPipelineModern, DiscoverIsModernEvenWithoutHeaders) {
    TORXMCPServer server;
    const auto response = server.DoCommandGet(Post(Rpc("server/discover").dump()));
    EXPECT_EQ(response.Status, 400);
    EXPECT_EQ(ParseBody(response)["error"]["code"], -32020);

    const auto call = Modern("server/discover");
    const auto answered = server.DoCommandGet(Post(call.Body.dump(), call.Headers));
    EXPECT_EQ(answered.Status, 200);
    EXPECT_EQ(ParseBody(answered)["result"]["cacheScope"], "private");
}

}  // namespace
