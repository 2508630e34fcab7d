// The AI client end to end through libcurl against fake providers served on 127.0.0.1.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "orvex/agent/ai_client.h"
#include "orvex/agent/ai_conversation.h"
#include "orvex/agent/ai_messages.h"
#include "orvex/agent/mcp_server.h"

using namespace Orvex;
using namespace std::chrono_literals;

namespace {

struct TReceived {
    std::string Path;
    httplib::Headers Headers;
    TJSON Body;
};

// A provider that answers every POST from a script (the last answer repeats) and records what it got.
// The destructor stops and joins the server, so a failing test never leaves it running.
class TFakeProvider {
  public:
    explicit TFakeProvider(std::vector<std::pair<int, std::string>> aAnswers)
        : fAnswers(std::move(aAnswers)) {
        fServer.Post(".*", [this](const httplib::Request& aRequest, httplib::Response& aResponse) {
            std::lock_guard lock(fMutex);
            fReceived.push_back(
                {aRequest.path, aRequest.headers, TJSON::parse(aRequest.body, nullptr, false)});
            const auto& [status, body] = fAnswers[std::min(fReceived.size(), fAnswers.size()) - 1];
            aResponse.status = status;
            aResponse.set_content(body, "application/json");
        });
        fPort = fServer.bind_to_any_port("127.0.0.1");  // listening from here on; accepts queue until run
        fThread = std::thread([this] { fServer.listen_after_bind(); });
    }
    ~TFakeProvider() {
        fServer.stop();
        fThread.join();
    }
    TFakeProvider(const TFakeProvider&) = delete;
    TFakeProvider& operator=(const TFakeProvider&) = delete;

    std::string BaseUrl() const { return "http://127.0.0.1:" + std::to_string(fPort); }
    std::vector<TReceived> Received() {
        std::lock_guard lock(fMutex);
        return fReceived;
    }

  private:
    httplib::Server fServer;
    std::vector<std::pair<int, std::string>> fAnswers;
    std::mutex fMutex;
    std::vector<TReceived> fReceived;
    int fPort = 0;
    std::thread fThread;
};

class AILoopback : public ::testing::Test {
  protected:
    AILoopback() {
        fServer.SetAIApiKey("sk-loop");
        fServer.SetAIModel("m1");
        TAIHttpOptions options;
        options.ConnectTimeout = 2000ms;
        options.TotalTimeout = 10000ms;
        fClient.SetTransport(MakeCurlTransport(options));
    }

    TORXMCPServer fServer;
    TMCPAIClient fClient{fServer};
};

TEST_F(AILoopback, AnthropicTextAnswer) {
    TFakeProvider provider(
        {{200, R"({"content":[{"type":"text","text":"Hello there"}],"stop_reason":"end_turn",)"
               R"("usage":{"input_tokens":9,"output_tokens":3}})"}});
    fClient.SetBaseUrl(provider.BaseUrl());
    const TAIResponse response = fClient.Send(TJSON::array({MakeUserMessage("Hi")}), "sys", TJSON::array());
    EXPECT_EQ(response.ErrorMessage, "");
    EXPECT_EQ(response.Text, "Hello there");
    EXPECT_EQ(response.StopReason, "end_turn");
    EXPECT_EQ(response.Usage.OutputTokens, 3);
    const auto received = provider.Received();
    ASSERT_EQ(received.size(), 1U);
    EXPECT_EQ(received[0].Path, "/v1/messages");
    const auto header = [&](const char* aName) {
        const auto it = received[0].Headers.find(aName);
        return it == received[0].Headers.end() ? std::string() : it->second;
    };
    EXPECT_EQ(header("x-api-key"), "sk-loop");
    EXPECT_EQ(header("anthropic-version"), "2023-06-01");
    EXPECT_EQ(header("Content-Type"), "application/json");
    EXPECT_EQ(received[0].Body["system"], "sys");
}

TEST_F(AILoopback, OpenRouterTurnWithSeveralCallsEchoesReasoning) {
    fServer.SetAIProvider(TMCPAIProvider::aiOpenRouter);
    TFakeProvider provider({
        {200, R"({"choices":[{"finish_reason":"tool_calls","message":{"role":"assistant","content":"",
            "reasoning_details":[{"type":"reasoning.encrypted","data":"opaque=="}],
            "tool_calls":[{"id":"c1","type":"function","function":{"name":"add_box","arguments":"{\"w\":10}"}},
                          {"id":"c2","type":"function","function":{"name":"add_box","arguments":"{\"w\":20}"}},
                          {"id":"c3","type":"function","function":{"name":"count","arguments":""}}]}}],
            "usage":{"prompt_tokens":100,"completion_tokens":30}})"},
        {200, R"({"choices":[{"finish_reason":"stop","message":{"content":"Two boxes."}}],
            "usage":{"prompt_tokens":200,"completion_tokens":5}})"},
    });
    fClient.SetBaseUrl(provider.BaseUrl());
    std::vector<std::string> lines;
    TAIConversation conversation(fClient, "Draw well",
                                 TJSON::array({{{"name", "add_box"}, {"description", "d"}}}),
                                 [](const std::string& aName, const TJSON& aArguments) {
                                     return TAIToolOutcome{aName + " " + aArguments.dump(), false};
                                 });
    conversation.SetOnToolCall([&lines](const std::string& aLine) { lines.push_back(aLine); });
    const TAIConversationResult result = conversation.Run("Two boxes");
    EXPECT_TRUE(result.Ok) << result.ErrorMessage;
    EXPECT_EQ(result.Text, "Two boxes.");
    EXPECT_EQ(result.Usage.InputTokens, 300);
    EXPECT_EQ(lines.size(), 3U);

    const auto received = provider.Received();
    ASSERT_EQ(received.size(), 2U);
    EXPECT_EQ(received[0].Path, "/api/v1/chat/completions");
    EXPECT_EQ(received[0].Headers.find("Authorization")->second, "Bearer sk-loop");
    EXPECT_EQ(received[0].Body["reasoning"], TJSON::parse(R"({"enabled":true})"));
    const TJSON& messages = received[1].Body["messages"];
    ASSERT_EQ(messages.size(), 6U);  // system, user, assistant, three tool results
    EXPECT_EQ(messages[2]["reasoning_details"][0]["data"], "opaque==");
    EXPECT_EQ(messages[3],
              TJSON::parse(R"({"role":"tool","tool_call_id":"c1","content":"add_box {\"w\":10}"})"));
    EXPECT_EQ(messages[5]["content"], "count {}");
}

TEST_F(AILoopback, GeminiThoughtSignaturesGoBackWithTheirCalls) {
    fServer.SetAIProvider(TMCPAIProvider::aiGemini);
    TFakeProvider provider({
        {200, R"({"candidates":[{"content":{"role":"model","parts":[
            {"functionCall":{"name":"add_box","args":{"w":1}},"thoughtSignature":"SIG-1"},
            {"functionCall":{"name":"add_box","args":{"w":2}}}]}}]})"},
        {200, R"({"candidates":[{"content":{"parts":[{"text":"Done"}]}}]})"},
    });
    fClient.SetBaseUrl(provider.BaseUrl());
    TAIConversation conversation(fClient, "", TJSON::array(),
                                 [](const std::string&, const TJSON& aArguments) {
                                     return TAIToolOutcome{"w=" + aArguments["w"].dump(), false};
                                 });
    const TAIConversationResult result = conversation.Run("Go");
    EXPECT_TRUE(result.Ok) << result.ErrorMessage;
    const auto received = provider.Received();
    ASSERT_EQ(received.size(), 2U);
    EXPECT_EQ(received[0].Path, "/v1beta/models/m1:generateContent");
    EXPECT_EQ(received[0].Headers.find("x-goog-api-key")->second, "sk-loop");
    const TJSON& contents = received[1].Body["contents"];
    ASSERT_EQ(contents.size(), 3U);
    EXPECT_EQ(contents[1]["parts"][0]["thoughtSignature"], "SIG-1");
    EXPECT_EQ(contents[2]["parts"][1], TJSON::parse(R"({"functionResponse":{"name":"add_box",)"
                                                    R"("response":{"content":"w=2"}}})"));
}

TEST_F(AILoopback, FailedAnswersBecomeErrorTexts) {
    const TJSON messages = TJSON::array({MakeUserMessage("Hi")});
    {
        TFakeProvider provider({{401, R"({"error":{"message":"bad key"}})"}});
        fClient.SetBaseUrl(provider.BaseUrl());
        const TAIResponse response = fClient.Send(messages, "", TJSON::array());
        EXPECT_EQ(response.ErrorMessage, R"(API error 401: {"error":{"message":"bad key"}})");
        EXPECT_EQ(response.HttpStatus, 401);
    }
    {
        TFakeProvider provider({{200, "this is not json"}});
        fClient.SetBaseUrl(provider.BaseUrl());
        EXPECT_EQ(fClient.Send(messages, "", TJSON::array()).ErrorMessage, "Failed to parse API response");
    }
}

TEST_F(AILoopback, RefusedConnectionIsAConnectionError) {
    // A socket bound but not listening holds a port on which every connection is refused.
    const int holder = ::socket(AF_INET, SOCK_STREAM, 0);
    ASSERT_GE(holder, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = 0;
    ASSERT_EQ(::bind(holder, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    socklen_t length = sizeof address;
    ASSERT_EQ(::getsockname(holder, reinterpret_cast<sockaddr*>(&address), &length), 0);
    fClient.SetBaseUrl("http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)));

    const auto started = std::chrono::steady_clock::now();
    const TAIResponse response = fClient.Send(TJSON::array({MakeUserMessage("Hi")}), "", TJSON::array());
    ::close(holder);
    EXPECT_EQ(response.ErrorMessage.rfind("Connection error: ", 0), 0U) << response.ErrorMessage;
    EXPECT_GT(response.ErrorMessage.size(), std::string("Connection error: ").size());
    EXPECT_TRUE(response.ConnectionFailed);
    EXPECT_LT(std::chrono::steady_clock::now() - started, 5s);
}

}  // namespace
