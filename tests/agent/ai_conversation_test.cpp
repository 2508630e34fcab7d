// The agent loop over a scripted provider: tool turns, retries, the turn limit, usage totals; the tool
// outcome adapters; and the environment helpers.
#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "orvex/agent/ai_conversation.h"
#include "orvex/agent/ai_environment.h"
#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/core/text.h"
#include "tests/agent/ai_test_support.h"
#include "tests/agent/mcp_test_support.h"

using namespace Orvex;
using namespace Orvex::Testing;
using namespace std::chrono_literals;

namespace {

TAIHttpResult AnthropicToolTurn(const std::string& aId, const std::string& aName, int aX) {
    return Ok({{"content",
                TJSON::array({{{"type", "tool_use"}, {"id", aId}, {"name", aName}, {"input", {{"x", aX}}}}})},
               {"stop_reason", "tool_use"},
               {"usage", {{"input_tokens", 10}, {"output_tokens", 2}}}});
}

TAIHttpResult AnthropicText(const std::string& aText) {
    return Ok({{"content", TJSON::array({{{"type", "text"}, {"text", aText}}})},
               {"stop_reason", "end_turn"},
               {"usage", {{"input_tokens", 30}, {"output_tokens", 5}}}});
}

class AIConversation : public ::testing::Test {
  protected:
    AIConversation() {
        fConversation.SetSleep([this](std::chrono::milliseconds aPause) { fPauses.push_back(aPause); });
        fConversation.SetOnText([this](const std::string& aText) { fTexts.push_back(aText); });
        fConversation.SetOnToolCall([this](const std::string& aLine) { fLines.push_back(aLine); });
    }

    TAIToolOutcome RunTool(const std::string& aName, const TJSON& aArguments) {
        fCalls.push_back(aName + aArguments.dump());
        if (aName == "explode") throw std::runtime_error("boom\nsecond line");
        return {"ok " + aName, false};
    }

    TORXMCPServer fServer;
    TMCPAIClient fClient{fServer};
    TAIConversation fConversation{
        fClient, "system text", TJSON::array({{{"name", "t"}}}),
        [this](const std::string& aName, const TJSON& aArguments) { return RunTool(aName, aArguments); }};
    std::vector<std::chrono::milliseconds> fPauses;
    std::vector<std::string> fTexts;
    std::vector<std::string> fLines;
    std::vector<std::string> fCalls;
};

TEST_F(AIConversation, RunsToolCallsUntilTheModelAnswers) {
    TAIHttpResult twoCalls = Ok(TJSON::parse(R"({"content":[{"type":"text","text":"On it"},
        {"type":"tool_use","id":"a","name":"add_shape","input":{"x":1}},
        {"type":"tool_use","id":"b","name":"explode","input":{}}],"stop_reason":"tool_use",
        "usage":{"input_tokens":100,"output_tokens":20}})"));
    auto& transport = Script(fClient, {twoCalls, AnthropicText("Done")});

    const TAIConversationResult result = fConversation.Run("Draw a box");
    EXPECT_TRUE(result.Ok);
    EXPECT_EQ(result.ErrorMessage, "");
    EXPECT_EQ(result.Text, "Done");
    EXPECT_EQ(result.Turns, 2);
    EXPECT_EQ(result.ToolCalls, 2);
    EXPECT_EQ(result.Usage.InputTokens, 130);
    EXPECT_EQ(result.Usage.OutputTokens, 25);
    EXPECT_EQ(fCalls, (std::vector<std::string>{R"(add_shape{"x":1})", "explode{}"}));
    EXPECT_EQ(fTexts, (std::vector<std::string>{"On it", "Done"}));
    EXPECT_EQ(fLines, (std::vector<std::string>{R"(add_shape {"x":1})", "explode {} -> Error: boom"}));

    // The second request carries the whole exchange, the system prompt and the tools.
    ASSERT_EQ(transport.Posted.size(), 2U);
    const TJSON second = TJSON::parse(transport.Posted[1].Body);
    EXPECT_EQ(second["system"], "system text");
    EXPECT_EQ(second["tools"][0]["name"], "t");
    const TJSON& messages = second["messages"];
    ASSERT_EQ(messages.size(), 4U);
    EXPECT_EQ(messages[1]["content"].size(), 3U);
    EXPECT_EQ(messages[2]["content"][0],
              TJSON::parse(R"({"type":"tool_result","tool_use_id":"a","content":"ok add_shape"})"));
    EXPECT_EQ(messages[3]["content"][0]["is_error"], true);
    EXPECT_EQ(messages[3]["content"][0]["content"], "Error: boom\nsecond line");

    // The answer joins the conversation, so a follow-up continues it.
    EXPECT_EQ(fConversation.Messages().back(), TJSON::parse(R"({"role":"assistant","content":"Done"})"));
    Script(fClient, {AnthropicText("Again")});
    EXPECT_TRUE(fConversation.Run("more").Ok);
    EXPECT_EQ(fConversation.Messages().size(), 7U);
    EXPECT_EQ(fConversation.TotalUsage().InputTokens, 160);
}

TEST_F(AIConversation, RetriesTransientFailuresWithGrowingPauses) {
    struct Case {
        const char* name;
        std::vector<TAIHttpResult> answers;
        bool ok;
        std::size_t posts;
        std::size_t pauses;
    };
    const std::vector<Case> cases = {
        {"recovers", {{429, "", {}}, {503, "", {}}, {0, "", "reset"}, AnthropicText("x")}, true, 4, 3},
        {"gives up", {{500, "down", {}}}, false, 4, 3},
        {"client error", {{400, "bad", {}}, AnthropicText("x")}, false, 1, 0},
        {"bad body", {{200, "nope", {}}, AnthropicText("x")}, false, 1, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        fPauses.clear();
        auto& transport = Script(fClient, c.answers);
        const TAIConversationResult result = fConversation.Run("hi");
        EXPECT_EQ(result.Ok, c.ok);
        EXPECT_EQ(transport.Posted.size(), c.posts);
        ASSERT_EQ(fPauses.size(), c.pauses);
        if (c.pauses == 3) {
            EXPECT_EQ(fPauses, (std::vector<std::chrono::milliseconds>{1000ms, 2000ms, 4000ms}));
        }
    }
    Script(fClient, {{502, "gateway", {}}});
    EXPECT_EQ(fConversation.Run("hi").ErrorMessage, "API error 502: gateway");
}

TEST_F(AIConversation, StopsAtTheTurnLimit) {
    fConversation.SetTurnLimit(3);
    auto& transport = Script(fClient, {AnthropicToolTurn("a", "add_shape", 1)});
    const TAIConversationResult result = fConversation.Run("loop forever");
    EXPECT_FALSE(result.Ok);
    EXPECT_TRUE(result.TurnLimitReached);
    EXPECT_EQ(result.ErrorMessage, "Stopped after 3 turns");
    EXPECT_EQ(transport.Posted.size(), 3U);
    EXPECT_EQ(result.ToolCalls, 3);
    EXPECT_EQ(result.Usage.InputTokens, 30);
    EXPECT_EQ(TAIConversation::kDefaultTurnLimit, 20);
}

TEST_F(AIConversation, ToolCallLinesAreShortAndSingle) {
    const TJSON big = {{"text", std::string(300, 'a')}};
    const std::string line = FormatToolCallLine("add_text", big, {"", false});
    EXPECT_EQ(line.substr(0, 9), "add_text ");
    EXPECT_EQ(line.size(), 9U + 160U + 3U);
    EXPECT_EQ(line.substr(line.size() - 3), "...");
    // A cut never splits a character: 7 bytes of key, then two-byte characters across byte 160.
    std::string accented;
    for (int i = 0; i < 100; ++i) accented += "\xC3\xA9";
    const std::string line2 = FormatToolCallLine("x", {{"tt", accented}}, {"boom", true});
    EXPECT_TRUE(Qvl::Utils::IsValidUtf8(line2));
    EXPECT_EQ(line2.substr(line2.size() - 11), "... -> boom");
}

TEST(AIToolOutcome, AdaptsToolResultsAndErrors) {
    EXPECT_EQ(ToolOutcomeFromResponse(MakeError(1, -32602, "Unknown tool: x")).Text,
              "Error: Unknown tool: x");
    EXPECT_TRUE(ToolOutcomeFromResponse(MakeError(1, -32602, "x")).IsError);

    const TJSON mixed = MakeResult(1, TJSON::parse(R"({"content":[{"type":"text","text":"a"},
        {"type":"image","data":"..","mimeType":"image/png"},{"type":"text","text":"b"}],"isError":true})"));
    const TAIToolOutcome outcome = ToolOutcomeFromResponse(mixed);
    EXPECT_EQ(outcome.Text, "a\n[image content]\nb");
    EXPECT_TRUE(outcome.IsError);

    const TJSON structured = MakeResult(1, TJSON::parse(R"({"content":[],"structuredContent":{"n":1}})"));
    EXPECT_EQ(ToolOutcomeFromResponse(structured).Text, R"({"n":1})");
    EXPECT_FALSE(ToolOutcomeFromResponse(structured).IsError);
}

TEST(AIToolOutcome, ServerExecutorRunsRegisteredTools) {
    TORXMCPServer server;
    server.SetLabel(FakeLabel());
    server.RegisterTool("echo", "Echoes", nullptr, [](TORXBaseLabel&, const TJSON& aArguments) {
        return TextResult(aArguments.value("say", std::string("?")));
    });
    const TAIToolExecutor execute = MakeServerToolExecutor(server);
    const TAIToolOutcome echoed = execute("ECHO", {{"say", "hello"}});
    EXPECT_EQ(echoed.Text, "hello");
    EXPECT_FALSE(echoed.IsError);
    const TAIToolOutcome missing = execute("nope", TJSON::object());
    EXPECT_EQ(missing.Text, "Error: Unknown tool: nope");
    EXPECT_TRUE(missing.IsError);
}

TEST(AIEnvironment, KeysAndBaseAddressComeFromTheEnvironment) {
    struct Case {
        const char* name;
        std::map<std::string, std::string> variables;
        TMCPAIProvider provider;
        const char* key;
        const char* variable;
        const char* base;
    };
    const std::vector<Case> cases = {
        {"override wins",
         {{"ORVEX_AI_API_KEY", "k1"}, {"OPENAI_API_KEY", "k2"}},
         TMCPAIProvider::aiOpenAI,
         "k1",
         "ORVEX_AI_API_KEY",
         ""},
        {"empty override is unset",
         {{"ORVEX_AI_API_KEY", " "}, {"GEMINI_API_KEY", "g"}},
         TMCPAIProvider::aiGemini,
         "g",
         "GEMINI_API_KEY",
         ""},
        {"other provider's key is ignored",
         {{"ANTHROPIC_API_KEY", "a"}},
         TMCPAIProvider::aiOpenRouter,
         "",
         "",
         ""},
        {"base address",
         {{"OPENROUTER_API_KEY", "o"}, {"ORVEX_AI_BASE_URL", "http://127.0.0.1:9/"}},
         TMCPAIProvider::aiOpenRouter,
         "o",
         "OPENROUTER_API_KEY",
         "http://127.0.0.1:9/"},
        {"anthropic",
         {{"ANTHROPIC_API_KEY", "a"}},
         TMCPAIProvider::aiAnthropic,
         "a",
         "ANTHROPIC_API_KEY",
         ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto lookup = [&c](std::string_view aName) -> std::optional<std::string> {
            const auto it = c.variables.find(std::string(aName));
            if (it == c.variables.end()) return std::nullopt;
            return it->second;
        };
        const TAIEnvironment environment = ReadAIEnvironment(c.provider, lookup);
        EXPECT_EQ(environment.ApiKey, c.key);
        EXPECT_EQ(environment.KeyVariable, c.variable);
        EXPECT_EQ(environment.BaseUrl, c.base);
    }
}

TEST(AIEnvironment, ProviderNamesRoundTrip) {
    for (const auto provider : {TMCPAIProvider::aiAnthropic, TMCPAIProvider::aiOpenAI,
                                TMCPAIProvider::aiGemini, TMCPAIProvider::aiOpenRouter}) {
        EXPECT_EQ(ParseAIProvider(AIProviderName(provider)), provider);
        EXPECT_FALSE(DefaultAIModel(provider).empty());
    }
    EXPECT_EQ(ParseAIProvider(" OpenRouter "), TMCPAIProvider::aiOpenRouter);
    EXPECT_EQ(ParseAIProvider("claude"), std::nullopt);
}

}  // namespace
