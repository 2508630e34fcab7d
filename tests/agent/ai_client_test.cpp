// The AI client's request builders and answer parsers per provider, and the failures of Send, against a
// scripted transport.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orvex/agent/ai_client.h"
#include "orvex/agent/ai_messages.h"
#include "orvex/agent/mcp_server.h"
#include "tests/agent/ai_test_support.h"

using namespace Orvex;
using namespace Orvex::Testing;

namespace {

class AIClient : public ::testing::Test {
  protected:
    AIClient() {
        fServer.SetAIModel("model-x");
        fServer.SetAIMaxTokens(1234);
        fServer.SetAIApiKey("sk-test");
    }

    TJSON Tools() const {
        return TJSON::parse(R"([
          {"name":"add_shape","description":"Adds a shape","input_schema":{"type":"object",
            "properties":{"x":{"type":"number"},"opts":{"type":"object","additionalProperties":false}},
            "additionalProperties":false}},
          {"name":"get_drawing_info","description":"Info","inputSchema":{"type":"object","properties":{}}},
          {"name":"bare","description":"No schema"}])");
    }

    // user text, user image, assistant with two tool uses and reasoning, the two results, assistant text.
    TJSON Conversation() const {
        TJSON messages = TJSON::array();
        messages.push_back(MakeUserMessage("Draw"));
        messages.push_back(MakeUserImageMessage("Like this", "image/png", "iVBO\r\nRw=="));
        TAIToolCall first{"c1", "add_shape", "sig-1", nullptr};
        const TJSON args = {{"x", 1}};
        TAIToolCall second{"c2", "get_drawing_info", "", &args};
        const TJSON reasoning = TJSON::parse(R"([{"type":"reasoning.text","text":"think"}])");
        messages.push_back(MakeAssistantToolUses("Working", std::vector{first, second}, &reasoning));
        messages.push_back(MakeToolResult("c1", "add_shape", "added"));
        messages.push_back(MakeToolResult("c2", "get_drawing_info", "bad", true));
        messages.push_back(MakeAssistantMessage("Done"));
        return messages;
    }

    TORXMCPServer fServer;
    TMCPAIClient fClient{fServer};
};

TEST_F(AIClient, EndpointsFollowTheProviderAndTheBaseAddress) {
    struct Case {
        TMCPAIProvider provider;
        const char* expected;
        const char* overridden;
    };
    const Case cases[] = {
        {TMCPAIProvider::aiAnthropic, "https://api.anthropic.com/v1/messages", "http://h:1/v1/messages"},
        {TMCPAIProvider::aiOpenAI, "https://api.openai.com/v1/chat/completions",
         "http://h:1/v1/chat/completions"},
        {TMCPAIProvider::aiGemini,
         "https://generativelanguage.googleapis.com/v1beta/models/model-x:generateContent",
         "http://h:1/v1beta/models/model-x:generateContent"},
        {TMCPAIProvider::aiOpenRouter, "https://openrouter.ai/api/v1/chat/completions",
         "http://h:1/api/v1/chat/completions"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.expected);
        fServer.SetAIProvider(c.provider);
        fClient.SetBaseUrl("");
        EXPECT_EQ(fClient.GetApiUrl(), c.expected);
        fClient.SetBaseUrl("http://h:1//");
        EXPECT_EQ(fClient.GetApiUrl(), c.overridden);
    }
}

TEST_F(AIClient, EachProviderGetsItsHeadersAndACompactBody) {
    struct Case {
        TMCPAIProvider provider;
        TAIHttpHeaders headers;
    };
    const Case cases[] = {
        {TMCPAIProvider::aiAnthropic,
         {{"x-api-key", "sk-test"},
          {"anthropic-version", "2023-06-01"},
          {"content-type", "application/json"}}},
        {TMCPAIProvider::aiOpenAI,
         {{"Authorization", "Bearer sk-test"}, {"content-type", "application/json"}}},
        {TMCPAIProvider::aiGemini, {{"x-goog-api-key", "sk-test"}, {"content-type", "application/json"}}},
        {TMCPAIProvider::aiOpenRouter,
         {{"Authorization", "Bearer sk-test"}, {"content-type", "application/json"}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.provider));
        fServer.SetAIProvider(c.provider);
        auto& transport = Script(fClient, {Ok(TJSON::object())});
        const auto response = fClient.Send(TJSON::array({MakeUserMessage("hi")}), "sys", TJSON::array());
        EXPECT_EQ(response.ErrorMessage, "");
        ASSERT_EQ(transport.Posted.size(), 1U);
        EXPECT_EQ(transport.Posted[0].Url, fClient.GetApiUrl());
        EXPECT_EQ(transport.Posted[0].Headers, c.headers);
        EXPECT_EQ(transport.Posted[0].Body, TJSON::parse(transport.Posted[0].Body).dump());
    }
}

TEST_F(AIClient, AnthropicRequestKeepsTheConversationButDropsForeignMembers) {
    const TJSON request = fClient.BuildAnthropicRequest(Conversation(), "Be brief", Tools());
    EXPECT_EQ(request["model"], "model-x");
    EXPECT_EQ(request["max_tokens"], 1234);
    EXPECT_EQ(request["system"], "Be brief");
    EXPECT_EQ(request["tools"], Tools());
    const TJSON& messages = request["messages"];
    ASSERT_EQ(messages.size(), 6U);
    EXPECT_EQ(messages[1]["content"][0]["source"]["data"], "iVBORw==");
    EXPECT_FALSE(messages[2].contains("reasoning_details"));
    EXPECT_FALSE(messages[2]["content"][1].contains("thought_signature"));
    EXPECT_EQ(messages[2]["content"][1]["input"], TJSON::object());
    EXPECT_EQ(messages[3]["content"][0],
              TJSON::parse(R"({"type":"tool_result","tool_use_id":"c1","content":"added"})"));
    EXPECT_EQ(messages[4]["content"][0]["is_error"], true);

    const TJSON bare =
        fClient.BuildAnthropicRequest(TJSON::array({MakeUserMessage("x")}), "", TJSON::array());
    EXPECT_EQ(bare.dump(),
              R"({"model":"model-x","max_tokens":1234,"messages":[{"role":"user","content":"x"}]})");
}

TEST_F(AIClient, AnthropicAnswerGivesTextCallsAndUsage) {
    const TJSON body = TJSON::parse(R"({"id":"msg_1","type":"message","role":"assistant",
      "content":[{"type":"text","text":"Let me "},{"type":"tool_use","id":"tu_1","name":"add_shape","input":{"x":2}},
                 {"type":"text","text":"draw."},{"type":"tool_use","id":"tu_2","name":"list_items"}],
      "stop_reason":"tool_use","usage":{"input_tokens":120,"output_tokens":45}})");
    const TAIResponse response = fClient.ParseAnthropicResponse(body);
    EXPECT_EQ(response.Text, "Let me draw.");
    EXPECT_TRUE(response.HasToolUse);
    EXPECT_EQ(response.StopReason, "tool_use");
    ASSERT_EQ(response.ToolCalls.size(), 2U);
    EXPECT_EQ(response.ToolCalls[0].Id, "tu_1");
    ASSERT_NE(response.ToolCalls[0].Arguments, nullptr);
    EXPECT_EQ(*response.ToolCalls[0].Arguments, TJSON({{"x", 2}}));
    EXPECT_EQ(response.ToolCalls[1].Arguments, nullptr);
    EXPECT_EQ(response.Usage.InputTokens, 120);
    EXPECT_EQ(response.Usage.OutputTokens, 45);

    const TAIResponse plain = fClient.ParseAnthropicResponse(TJSON::parse(R"({"content":"odd"})"));
    EXPECT_EQ(plain.StopReason, "end_turn");
    EXPECT_FALSE(plain.HasToolUse);
    EXPECT_EQ(plain.Usage.InputTokens, 0);
    EXPECT_EQ(fClient.ParseAnthropicResponse(TJSON::parse(R"({"stop_reason":"max_tokens"})")).StopReason,
              "max_tokens");
}

TEST_F(AIClient, OpenAIRequestConvertsEveryKindOfBlock) {
    fServer.SetAIProvider(TMCPAIProvider::aiOpenAI);
    const TJSON request = fClient.BuildOpenAIRequest(Conversation(), "Be brief", Tools());
    EXPECT_FALSE(request.contains("reasoning"));
    const TJSON expected = TJSON::parse(R"([
      {"role":"system","content":"Be brief"},
      {"role":"user","content":"Draw"},
      {"role":"user","content":[{"type":"image_url","image_url":{"url":"data:image/png;base64,iVBORw=="}},
                                {"type":"text","text":"Like this"}]},
      {"role":"assistant","content":"Working","tool_calls":[
        {"id":"c1","type":"function","function":{"name":"add_shape","arguments":"{}"}},
        {"id":"c2","type":"function","function":{"name":"get_drawing_info","arguments":"{\"x\":1}"}}],
       "reasoning_details":[{"type":"reasoning.text","text":"think"}]},
      {"role":"tool","tool_call_id":"c1","content":"added"},
      {"role":"tool","tool_call_id":"c2","content":"bad"},
      {"role":"assistant","content":"Done"}])");
    EXPECT_EQ(request["messages"], expected);
    EXPECT_EQ(request["model"], "model-x");
    EXPECT_EQ(request["max_tokens"], 1234);

    const TJSON& tools = request["tools"];
    ASSERT_EQ(tools.size(), 3U);
    EXPECT_EQ(tools[0]["function"]["parameters"], Tools()[0]["input_schema"]);
    EXPECT_EQ(tools[1]["function"]["parameters"], Tools()[1]["inputSchema"]);
    EXPECT_EQ(tools[2].dump(), R"({"type":"function","function":{"name":"bare","description":"No schema",)"
                               R"("parameters":{"type":"object","properties":{}}}})");

    fServer.SetAIProvider(TMCPAIProvider::aiOpenRouter);
    const TJSON routed = fClient.BuildOpenAIRequest(TJSON::array(), "", TJSON::array());
    EXPECT_EQ(routed.dump(),
              R"({"model":"model-x","max_tokens":1234,"reasoning":{"enabled":true},"messages":[]})");
}

TEST_F(AIClient, OpenAIAnswerParsesArgumentStringsAndKeepsReasoning) {
    const TJSON body = TJSON::parse(R"({"choices":[{"index":0,"finish_reason":"tool_calls","message":{
      "role":"assistant","content":null,
      "reasoning_details":[{"type":"reasoning.encrypted","data":"xyz"}],
      "tool_calls":[
        {"id":"call_1","type":"function","function":{"name":"add_shape","arguments":"{\"x\":3}"}},
        {"id":"call_2","type":"function","function":{"name":"list_items","arguments":""}},
        {"id":"call_3","type":"function","function":{"name":"broken","arguments":"{not json"}}]}}],
      "usage":{"prompt_tokens":10,"completion_tokens":7,"total_tokens":17}})");
    const TAIResponse response = fClient.ParseOpenAIResponse(body);
    EXPECT_TRUE(response.HasToolUse);
    EXPECT_EQ(response.StopReason, "tool_use");
    EXPECT_EQ(response.Text, "");
    ASSERT_NE(response.ReasoningDetails, nullptr);
    EXPECT_EQ((*response.ReasoningDetails)[0]["data"], "xyz");
    ASSERT_EQ(response.ToolCalls.size(), 3U);
    EXPECT_EQ(response.ToolCalls[0].Name, "add_shape");
    EXPECT_EQ(*response.ToolCalls[0].Arguments, TJSON({{"x", 3}}));
    EXPECT_EQ(*response.ToolCalls[1].Arguments, TJSON::object());
    EXPECT_EQ(*response.ToolCalls[2].Arguments, TJSON::object());
    EXPECT_EQ(response.Usage.InputTokens, 10);
    EXPECT_EQ(response.Usage.OutputTokens, 7);

    const TAIResponse text =
        fClient.ParseOpenAIResponse(TJSON::parse(R"({"choices":[{"message":{"content":"Hello"}}]})"));
    EXPECT_EQ(text.Text, "Hello");
    EXPECT_EQ(text.StopReason, "end_turn");
    EXPECT_FALSE(text.HasToolUse);
    EXPECT_EQ(text.ReasoningDetails, nullptr);
}

TEST_F(AIClient, GeminiRequestUsesPartsNamesAndSignatures) {
    fServer.SetAIProvider(TMCPAIProvider::aiGemini);
    const TJSON request = fClient.BuildGeminiRequest(Conversation(), "Be brief", Tools());
    EXPECT_EQ(request["systemInstruction"], TJSON::parse(R"({"parts":[{"text":"Be brief"}]})"));
    // The two user turns merge, and so do the two tool results; empty texts are left out.
    const TJSON expected = TJSON::parse(R"([
      {"role":"user","parts":[{"text":"Draw"},{"inlineData":{"mimeType":"image/png","data":"iVBORw=="}},
                              {"text":"Like this"}]},
      {"role":"model","parts":[{"text":"Working"},
        {"functionCall":{"name":"add_shape","args":{}},"thoughtSignature":"sig-1"},
        {"functionCall":{"name":"get_drawing_info","args":{"x":1}}}]},
      {"role":"user","parts":[{"functionResponse":{"name":"add_shape","response":{"content":"added"}}},
                              {"functionResponse":{"name":"get_drawing_info","response":{"content":"bad"}}}]},
      {"role":"model","parts":[{"text":"Done"}]}])");
    EXPECT_EQ(request["contents"], expected);
    EXPECT_EQ(request["generationConfig"], TJSON::parse(R"({"maxOutputTokens":1234})"));
    const TJSON expectedTools = TJSON::parse(R"([{"functionDeclarations":[
      {"name":"add_shape","description":"Adds a shape","parameters":{"type":"object",
        "properties":{"x":{"type":"number"},"opts":{"type":"object"}}}},
      {"name":"get_drawing_info","description":"Info"},
      {"name":"bare","description":"No schema"}]}])");
    EXPECT_EQ(request["tools"], expectedTools);

    const TJSON bare = fClient.BuildGeminiRequest(TJSON::array({MakeUserMessage("x")}), "", TJSON::array());
    EXPECT_EQ(bare.dump(), R"({"contents":[{"role":"user","parts":[{"text":"x"}]}],)"
                           R"("generationConfig":{"maxOutputTokens":1234}})");
}

TEST_F(AIClient, GeminiAnswerNumbersCallsAndKeepsSignatures) {
    const TJSON body = TJSON::parse(R"({"candidates":[{"content":{"role":"model","parts":[
        {"text":"thinking aloud","thought":true},
        {"text":"Two "},{"functionCall":{"name":"add_shape","args":{"x":1}},"thoughtSignature":"SIG_A"},
        {"text":"calls"},{"functionCall":{"name":"list_items"}}]},"finishReason":"STOP"}],
      "usageMetadata":{"promptTokenCount":50,"candidatesTokenCount":20,"thoughtsTokenCount":5}})");
    const TAIResponse response = fClient.ParseGeminiResponse(body);
    EXPECT_EQ(response.Text, "Two calls");
    EXPECT_TRUE(response.HasToolUse);
    EXPECT_EQ(response.StopReason, "tool_use");
    ASSERT_EQ(response.ToolCalls.size(), 2U);
    EXPECT_EQ(response.ToolCalls[0].Id, "gemini_0");
    EXPECT_EQ(response.ToolCalls[0].ThoughtSignature, "SIG_A");
    EXPECT_EQ(*response.ToolCalls[0].Arguments, TJSON({{"x", 1}}));
    EXPECT_EQ(response.ToolCalls[1].Id, "gemini_1");
    EXPECT_EQ(response.ToolCalls[1].ThoughtSignature, "");
    EXPECT_EQ(*response.ToolCalls[1].Arguments, TJSON::object());
    EXPECT_EQ(response.Usage.InputTokens, 50);
    EXPECT_EQ(response.Usage.OutputTokens, 25);
}

TEST_F(AIClient, SendFailuresCarryTheirExactTexts) {
    std::vector<std::string> log;
    fServer.SetOnLog([&log](TORXMCPServer&, const std::string& aLine) { log.push_back(aLine); });
    const TJSON messages = TJSON::array({MakeUserMessage("hi")});
    // 299 one-unit characters then a character of two UTF-16 units that does not fit in 300.
    const std::string longBody = std::string(299, 'x') + "\xF0\x9F\x98\x80" + "tail";
    struct Case {
        const char* name;
        TAIHttpResult answer;
        std::string expected;
        std::int32_t status;
    };
    const std::vector<Case> cases = {
        {"not found", Answer(404, R"({"error":"no"})"), R"(API error 404: {"error":"no"})", 404},
        {"long body", Answer(500, longBody), "API error 500: " + std::string(299, 'x'), 500},
        {"not json", Answer(200, "<html>"), "Failed to parse API response", 200},
        {"array", Answer(200, "[1,2]"), "Failed to parse API response", 200},
        {"nested too deep",
         Answer(200, R"({"content":)" + std::string(100000, '[') + std::string(100000, ']') + "}"),
         "Failed to parse API response: nested deeper than 512 levels", 200},
        {"refused", NoAnswer("Connection refused"), "Connection error: Connection refused", 0},
        {"throws", NoAnswer("throw"), "Connection error: socket exploded", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Script(fClient, {c.answer});
        const TAIResponse response = fClient.Send(messages, "", TJSON::array());
        EXPECT_EQ(response.ErrorMessage, c.expected);
        EXPECT_EQ(response.HttpStatus, c.status);
        EXPECT_EQ(response.ConnectionFailed, c.status == 0);
        EXPECT_TRUE(response.Text.empty());
        EXPECT_TRUE(response.StopReason.empty());
    }
    // Only answers are logged, by status: never the key or the body.
    EXPECT_EQ(log, (std::vector<std::string>{"AI API status: 404", "AI API status: 500", "AI API status: 200",
                                             "AI API status: 200", "AI API status: 200"}));
}

TEST_F(AIClient, ToolPicturesReachEachProviderInItsOwnShape) {
    const std::vector<TAIToolImage> pictures{{"image/png", "iVBORw=="}};
    TJSON messages = TJSON::array();
    TAIToolCall first{"c1", "render_preview", "", nullptr};
    TAIToolCall second{"c2", "get_drawing_info", "", nullptr};
    messages.push_back(MakeAssistantToolUses("", std::vector{first, second}));
    messages.push_back(MakeToolResultWithImages("c1", "render_preview", "{\"scale\":1}", pictures));
    messages.push_back(MakeToolResult("c2", "get_drawing_info", "info"));

    const TJSON anthropic = fClient.BuildAnthropicRequest(messages, "", TJSON::array());
    const TJSON& blocks = anthropic["messages"][1]["content"][0]["content"];
    EXPECT_EQ(blocks[1]["type"], "image");
    EXPECT_EQ(blocks[1]["source"]["data"], "iVBORw==");

    // Tool messages follow the calls unbroken; the picture comes after them as a user message.
    const TJSON openai = fClient.BuildOpenAIRequest(messages, "", TJSON::array());
    ASSERT_EQ(openai["messages"].size(), 4u);
    EXPECT_EQ(openai["messages"][1]["role"], "tool");
    EXPECT_EQ(openai["messages"][1]["content"], "{\"scale\":1}");
    EXPECT_EQ(openai["messages"][2]["role"], "tool");
    EXPECT_EQ(openai["messages"][3]["role"], "user");
    EXPECT_EQ(openai["messages"][3]["content"][1]["image_url"]["url"], "data:image/png;base64,iVBORw==");
    EXPECT_FALSE(openai["messages"][3].contains("orvex_tool_pictures"));

    const TJSON gemini = fClient.BuildGeminiRequest(messages, "", TJSON::array());
    const TJSON& parts = gemini["contents"][1]["parts"];
    EXPECT_EQ(parts[0]["functionResponse"]["name"], "render_preview");
    EXPECT_EQ(parts[1]["inlineData"]["data"], "iVBORw==");

    // A model without image input reads a note instead.
    auto& transport = Script(fClient, {Ok(TJSON::object())});
    fClient.SetImageInput(false);
    fClient.Send(messages, "", TJSON::array());
    ASSERT_EQ(transport.Posted.size(), 1u);
    EXPECT_EQ(transport.Posted[0].Body.find("iVBORw=="), std::string::npos);
    EXPECT_NE(transport.Posted[0].Body.find("takes no image input"), std::string::npos);
}

TEST_F(AIClient, PromptCachingMarksSystemAndToolsForAnthropic) {
    fClient.SetPromptCaching(true);
    const TJSON request = fClient.BuildAnthropicRequest(TJSON::array(), "Be brief", Tools());
    EXPECT_EQ(request["system"][0]["text"], "Be brief");
    EXPECT_EQ(request["system"][0]["cache_control"]["type"], "ephemeral");
    EXPECT_EQ(request["tools"].back()["cache_control"]["type"], "ephemeral");
    EXPECT_FALSE(request["tools"][0].contains("cache_control"));
}

TEST_F(AIClient, UnknownProviderAndOversizedImagesAreRefusedBeforeSending) {
    auto& transport = Script(fClient, {Ok(TJSON::object())});
    fServer.SetAIProvider(static_cast<TMCPAIProvider>(9));
    EXPECT_EQ(fClient.Send(TJSON::array(), "", TJSON::array()).ErrorMessage, "Unknown AI provider");

    fServer.SetAIProvider(TMCPAIProvider::aiOpenAI);
    fServer.SetMaxAIImageBytes(6);
    const TJSON fits = TJSON::array({MakeUserImageMessage("", "image/png", "AAAAAAAA")});  // 6 bytes
    EXPECT_EQ(fClient.Send(fits, "", TJSON::array()).ErrorMessage, "");
    const TJSON tooLarge = TJSON::array({MakeUserImageMessage("", "image/png", "AAAAAAAAAA==")});  // 7 bytes
    EXPECT_EQ(fClient.Send(tooLarge, "", TJSON::array()).ErrorMessage,
              "Image too large: 7 bytes, the limit is 6 bytes");
    // Also inside a tool result, where Anthropic allows images.
    TJSON nested = MakeToolResult("c", "t", "");
    nested["content"][0]["content"] = TJSON::array({tooLarge[0]["content"][0]});
    EXPECT_NE(fClient.Send(TJSON::array({nested}), "", TJSON::array()).ErrorMessage, "");
    EXPECT_EQ(transport.Posted.size(), 1U);

    fServer.SetMaxAIImageBytes(0);  // no limit
    EXPECT_EQ(fClient.Send(tooLarge, "", TJSON::array()).ErrorMessage, "");
}

}  // namespace
