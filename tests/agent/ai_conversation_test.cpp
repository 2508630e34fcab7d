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
    EXPECT_EQ(messages[2]["content"][0]["content"], "ok add_shape");
    EXPECT_EQ(messages[3]["content"][0]["is_error"], true);

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
        {"recovers", {Answer(429, ""), Answer(503, ""), NoAnswer("reset"), AnthropicText("x")}, true, 4, 3},
        {"gives up", {Answer(500, "down")}, false, 4, 3},
        {"client error", {Answer(400, "bad"), AnthropicText("x")}, false, 1, 0},
        {"bad body", {Answer(200, "nope"), AnthropicText("x")}, false, 1, 0},
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
    Script(fClient, {Answer(502, "gateway")});
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
}

TEST(AIToolCallLine, ShortensWithoutSplittingCharacters) {
    // 7 bytes of '{"tt":"', then two-byte characters across the 160-byte cut.
    std::string accented;
    for (int i = 0; i < 100; ++i) accented += "\xC3\xA9";
    const std::string line = FormatToolCallLine("x", {{"tt", accented}}, {"boom\nmore", true});
    EXPECT_TRUE(Qvl::Utils::IsValidUtf8(line));
    EXPECT_EQ(line.size(), 2U + 159U + 11U);
    EXPECT_EQ(line.substr(line.size() - 11), "... -> boom");
}

TEST(AIToolOutcome, AdaptsToolResultsAndErrors) {
    EXPECT_EQ(ToolOutcomeFromResponse(MakeError(1, -32602, "Unknown tool: x")).Text,
              "Error: Unknown tool: x");
    EXPECT_TRUE(ToolOutcomeFromResponse(MakeError(1, -32602, "x")).IsError);

    const TJSON mixed = MakeResult(1, TJSON::parse(R"({"content":[{"type":"text","text":"a"},
        {"type":"image","data":"..","mimeType":"image/png"},{"type":"text","text":"b"}],"isError":true})"));
    const TAIToolOutcome outcome = ToolOutcomeFromResponse(mixed);
    EXPECT_EQ(outcome.Text, "a\nb");
    ASSERT_EQ(outcome.Images.size(), 1u);
    EXPECT_EQ(outcome.Images[0].MediaType, "image/png");
    EXPECT_EQ(outcome.Images[0].Data, "..");
    EXPECT_TRUE(outcome.IsError);
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
    const std::map<std::string, std::string> variables = {
        {"ORVEX_AI_BASE_URL", "http://127.0.0.1:9/"}, {"GEMINI_API_KEY", "g"}, {"OPENAI_API_KEY", "o"}};
    std::string overrideKey;
    const auto lookup = [&](std::string_view aName) -> std::optional<std::string> {
        if (aName == kAIApiKeyOverride) return overrideKey;
        const auto it = variables.find(std::string(aName));
        return it == variables.end() ? std::nullopt : std::optional<std::string>(it->second);
    };
    overrideKey = " ";  // blank counts as unset
    TAIEnvironment environment = ReadAIEnvironment(TMCPAIProvider::aiGemini, lookup);
    EXPECT_EQ(environment.ApiKey, "g");
    EXPECT_EQ(environment.KeyVariable, "GEMINI_API_KEY");
    EXPECT_EQ(environment.BaseUrl, "http://127.0.0.1:9/");
    EXPECT_EQ(ReadAIEnvironment(TMCPAIProvider::aiAnthropic, lookup).ApiKey, "");  // another provider's key
    overrideKey = "k";
    environment = ReadAIEnvironment(TMCPAIProvider::aiOpenAI, lookup);
    EXPECT_EQ(environment.ApiKey, "k");
    EXPECT_EQ(environment.KeyVariable, "ORVEX_AI_API_KEY");
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
