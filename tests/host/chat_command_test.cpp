// `orvex chat` as a process against a fake provider on loopback: the model's tool calls land in the drawing
// it saves, its text goes to stdout, and the usage and every call are reported on stderr.
#include <gtest/gtest.h>
#include <httplib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "orvex/document/headless.h"
#include "orvex/document/item_types.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/io/json.h"

namespace Orvex::Testing {
namespace {

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& aFile) {
    std::ifstream in(aFile);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

struct TRun {
    int Exit = -1;
    std::string Out;
    std::string Err;
};

// Runs `orvex chat` through the shell with aEnv prepended and the key variables cleared, so that the
// developer's own keys never reach the fake (or a real) provider.
TRun RunChat(const fs::path& aFolder, const std::string& aEnv, const std::string& aArgs) {
    const fs::path out = aFolder / "stdout.txt";
    const fs::path err = aFolder / "stderr.txt";
    const std::string command = "env -u ORVEX_AI_API_KEY -u ANTHROPIC_API_KEY -u ORVEX_AI_BASE_URL " + aEnv +
                                " timeout 60 '" + ORVEX_CLI_PATH + "' chat " + aArgs + " >'" + out.string() +
                                "' 2>'" + err.string() + "'";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadAll(out), ReadAll(err)};
}

TJSON ToolUse(const std::string& aId, const std::string& aName, TJSON aInput) {
    return {{"type", "tool_use"}, {"id", aId}, {"name", aName}, {"input", std::move(aInput)}};
}

TJSON Answer(TJSON aContent, const std::string& aStop, int aIn, int aOut) {
    return {{"content", std::move(aContent)},
            {"stop_reason", aStop},
            {"usage", {{"input_tokens", aIn}, {"output_tokens", aOut}}}};
}

// The ids of the elements add_flow reported, read from the tool results the request carries.
std::vector<std::int64_t> FlowIdsFrom(const TJSON& aRequest) {
    std::vector<std::int64_t> ids;
    for (const auto& message : aRequest["messages"]) {
        if (!message["content"].is_array()) continue;
        for (const auto& block : message["content"]) {
            if (block.value("type", "") != "tool_result") continue;
            std::string text;
            if (block["content"].is_string()) {
                text = block["content"].get<std::string>();
            } else {
                for (const auto& part : block["content"]) text += part.value("text", "");
            }
            const TJSON result = TJSON::parse(text, nullptr, false);
            if (result.is_object() && result.contains("id")) ids.push_back(result["id"].get<std::int64_t>());
        }
    }
    return ids;
}

// A provider speaking the Anthropic messages shape: two elements, then a link between them, then text.
class TFakeAnthropic {
  public:
    TFakeAnthropic() {
        fServer.Post("/v1/messages", [this](const httplib::Request& aRequest, httplib::Response& aResponse) {
            std::lock_guard lock(fMutex);
            const TJSON body = TJSON::parse(aRequest.body, nullptr, false);
            fRequests.push_back(body);
            TJSON answer;
            if (fRequests.size() == 1) {
                // Sent as one cacheable text block.
                fSystem = body["system"][0].value("text", "");
                fCached = body["system"][0].contains("cache_control") &&
                          body["tools"].back().contains("cache_control");
                fToolCount = body.contains("tools") ? body["tools"].size() : 0;
                answer =
                    Answer(TJSON::array({{{"type", "text"}, {"text", "Adding two steps."}},
                                         ToolUse("t1", "add_flow", {{"x", 10}, {"y", 10}, {"text", "A"}}),
                                         ToolUse("t2", "add_flow", {{"x", 10}, {"y", 60}, {"text", "B"}})}),
                           "tool_use", 100, 20);
            } else if (fRequests.size() == 2) {
                const auto ids = FlowIdsFrom(body);
                const TJSON input = ids.size() == 2 ? TJSON{{"from_id", ids[0]}, {"to_id", ids[1]}}
                                                    : TJSON{{"from_id", 0}, {"to_id", 0}};
                answer = Answer(TJSON::array({ToolUse("t3", "add_link", input)}), "tool_use", 200, 10);
            } else {
                answer = Answer(TJSON::array({{{"type", "text"}, {"text", "Linked A to B."}}}), "end_turn",
                                300, 5);
            }
            aResponse.set_content(answer.dump(), "application/json");
        });
        fPort = fServer.bind_to_any_port("127.0.0.1");
        fThread = std::thread([this] { fServer.listen_after_bind(); });
    }
    ~TFakeAnthropic() {
        fServer.stop();
        fThread.join();
    }
    TFakeAnthropic(const TFakeAnthropic&) = delete;
    TFakeAnthropic& operator=(const TFakeAnthropic&) = delete;

    std::string BaseUrl() const { return "http://127.0.0.1:" + std::to_string(fPort); }
    std::size_t RequestCount() {
        std::lock_guard lock(fMutex);
        return fRequests.size();
    }
    std::string System() {
        std::lock_guard lock(fMutex);
        return fSystem;
    }
    std::size_t ToolCount() {
        std::lock_guard lock(fMutex);
        return fToolCount;
    }
    bool Cached() {
        std::lock_guard lock(fMutex);
        return fCached;
    }

  private:
    httplib::Server fServer;
    std::mutex fMutex;
    std::vector<TJSON> fRequests;
    std::string fSystem;
    std::size_t fToolCount = 0;
    bool fCached = false;
    int fPort = 0;
    std::thread fThread;
};

class ChatCommandTest : public ::testing::Test {
  protected:
    ChatCommandTest() {
        fs::remove_all(fFolder);
        fs::create_directories(fFolder);
    }
    ~ChatCommandTest() override { fs::remove_all(fFolder); }

    const fs::path fFolder = fs::temp_directory_path() / ("orvex_chat_" + std::to_string(::getpid()));
};

TEST_F(ChatCommandTest, ToolCallsBuildTheSavedDrawing) {
    TFakeAnthropic provider;
    const fs::path drawing = fFolder / "out.json";
    const TRun run = RunChat(fFolder, "ORVEX_AI_API_KEY=sk-test ORVEX_AI_BASE_URL=" + provider.BaseUrl(),
                             "'Two linked steps' -o '" + drawing.string() + "'");
    ASSERT_EQ(run.Exit, 0) << run.Err;
    EXPECT_EQ(run.Out, "Adding two steps.\nLinked A to B.\n");
    EXPECT_NE(run.Err.find("orvex chat: add_flow {"), std::string::npos) << run.Err;
    EXPECT_NE(run.Err.find("orvex chat: add_link {"), std::string::npos) << run.Err;
    EXPECT_NE(run.Err.find("orvex chat: tokens: 600 input, 35 output\n"), std::string::npos) << run.Err;
    EXPECT_EQ(provider.RequestCount(), 3U);
    EXPECT_FALSE(provider.System().empty());
    EXPECT_TRUE(provider.Cached());
    EXPECT_GT(provider.ToolCount(), 10U);

    TORXHeadlessLabel document;
    ASSERT_TRUE(LoadDrawingFile(drawing.string(), document));
    std::vector<std::int32_t> flows;
    const TJSON* link = nullptr;
    TJSON linkJson;
    for (std::int32_t i = 0; i < document.GetItemsCount(); ++i) {
        const TORXBaseItem* item = document.GetItem(i);
        if (item->ItemType() == TQVLItemType::itFlow) flows.push_back(item->InID());
        if (item->ItemType() == TQVLItemType::itLink) {
            linkJson = item->WriteJson();
            link = &linkJson;
        }
    }
    ASSERT_EQ(flows.size(), 2U);
    ASSERT_NE(link, nullptr) << run.Err;
    EXPECT_EQ((*link)["FromID"], flows[0]);
    EXPECT_EQ((*link)["ToID"], flows[1]);
}

// Each provider's fake asks for a preview, then answers; the second request must carry the picture in
// that provider's own shape.
struct TImageProvider {
    std::string Name;
    std::string Path;  // a pattern: Gemini's path holds the model
    TJSON CallPreview;
    TJSON Answer;
    std::function<bool(const TJSON&)> HasPicture;
};

bool AnyPart(const TJSON& aValue, const std::function<bool(const TJSON&)>& aTest) {
    if (aTest(aValue)) return true;
    if (aValue.is_structured())
        for (const auto& inner : aValue)
            if (AnyPart(inner, aTest)) return true;
    return false;
}

TEST_F(ChatCommandTest, PreviewsReachEveryProviderAsPictures) {
    const TJSON openAICall = {{"choices",
                               {{{"message",
                                  {{"content", ""},
                                   {"tool_calls",
                                    {{{"id", "t1"},
                                      {"type", "function"},
                                      {"function", {{"name", "render_preview"}, {"arguments", "{}"}}}}}}}},
                                 {"finish_reason", "tool_calls"}}}}};
    const TJSON openAIAnswer = {
        {"choices", {{{"message", {{"content", "Seen."}}}, {"finish_reason", "stop"}}}}};
    const auto openAIPicture = [](const TJSON& aBody) {
        return AnyPart(aBody["messages"], [](const TJSON& v) {
            return v.is_object() && v.value("type", "") == "image_url" &&
                   v["image_url"].value("url", "").starts_with("data:image/png;base64,");
        });
    };
    const std::vector<TImageProvider> providers = {
        {"anthropic", "/v1/messages",
         Answer(TJSON::array({ToolUse("t1", "render_preview", TJSON::object())}), "tool_use", 1, 1),
         Answer(TJSON::array({{{"type", "text"}, {"text", "Seen."}}}), "end_turn", 1, 1),
         [](const TJSON& aBody) {
             return AnyPart(aBody["messages"], [](const TJSON& v) {
                 return v.is_object() && v.value("type", "") == "image" && v.contains("source");
             });
         }},
        {"openai", "/v1/chat/completions", openAICall, openAIAnswer, openAIPicture},
        {"openrouter", "/api/v1/chat/completions", openAICall, openAIAnswer, openAIPicture},
        {"gemini",
         "/v1beta/models/.*",
         {{"candidates",
           {{{"content",
              {{"parts", {{{"functionCall", {{"name", "render_preview"}, {"args", TJSON::object()}}}}}}}}}}}},
         {{"candidates", {{{"content", {{"parts", {{{"text", "Seen."}}}}}}}}}},
         [](const TJSON& aBody) {
             return AnyPart(aBody["contents"], [](const TJSON& v) {
                 return v.is_object() && v.contains("inlineData") &&
                        v["inlineData"].value("mimeType", "") == "image/png";
             });
         }},
    };
    for (const auto& provider : providers) {
        SCOPED_TRACE(provider.Name);
        httplib::Server server;
        std::mutex mutex;
        std::vector<TJSON> requests;
        server.Post(provider.Path, [&](const httplib::Request& aRequest, httplib::Response& aResponse) {
            std::lock_guard lock(mutex);
            requests.push_back(TJSON::parse(aRequest.body, nullptr, false));
            aResponse.set_content((requests.size() == 1 ? provider.CallPreview : provider.Answer).dump(),
                                  "application/json");
        });
        const int port = server.bind_to_any_port("127.0.0.1");
        std::thread thread([&server] { server.listen_after_bind(); });
        const TRun run =
            RunChat(fFolder, "ORVEX_AI_API_KEY=k ORVEX_AI_BASE_URL=http://127.0.0.1:" + std::to_string(port),
                    "'Look' --provider " + provider.Name);
        server.stop();
        thread.join();
        EXPECT_EQ(run.Exit, 0) << run.Err;
        EXPECT_EQ(run.Out, "Seen.\n");
        ASSERT_EQ(requests.size(), 2u) << run.Err;
        EXPECT_FALSE(provider.HasPicture(requests[0]));
        EXPECT_TRUE(provider.HasPicture(requests[1])) << requests[1].dump().substr(0, 2000);
    }
}

TEST_F(ChatCommandTest, RefusesToStartWithoutItsInputs) {
    struct Case {
        std::string Env;
        std::string Args;
        int Exit;
        std::string Err;
    };
    const Case cases[] = {
        {"", "'Draw'", 2, "orvex: no API key: set ORVEX_AI_API_KEY or ANTHROPIC_API_KEY\n"},
        {"ORVEX_AI_API_KEY=", "'Draw'", 2, "orvex: no API key: set ORVEX_AI_API_KEY or ANTHROPIC_API_KEY\n"},
        {"ORVEX_AI_API_KEY=k", "'Draw' --provider cohere", 2,
         "orvex: unknown provider cohere (anthropic, openai, gemini or openrouter)\n"},
        {"ORVEX_AI_API_KEY=k", "'Draw' -o out.gif", 2,
         "orvex: out.gif: the output must end in .json, .svg, .png or .pdf\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.Env + " " + c.Args);
        const TRun run = RunChat(fFolder, c.Env, c.Args);
        EXPECT_EQ(run.Exit, c.Exit);
        EXPECT_EQ(run.Err, c.Err);
        EXPECT_EQ(run.Out, "");
    }
}

TEST_F(ChatCommandTest, ApiFailureExitsOneWithTheErrorOnOneLine) {
    httplib::Server server;
    server.Post("/v1/messages", [](const httplib::Request&, httplib::Response& aResponse) {
        aResponse.status = 401;
        aResponse.set_content("{\"error\":\n\"bad key\"}", "application/json");
    });
    const int port = server.bind_to_any_port("127.0.0.1");
    std::thread thread([&server] { server.listen_after_bind(); });
    struct TStop {
        httplib::Server& Server;
        std::thread& Thread;
        ~TStop() {
            Server.stop();
            Thread.join();
        }
    } stop{server, thread};
    const TRun run = RunChat(
        fFolder, "ORVEX_AI_API_KEY=k ORVEX_AI_BASE_URL=http://127.0.0.1:" + std::to_string(port), "'Draw'");
    EXPECT_EQ(run.Exit, 1);
    EXPECT_EQ(run.Err,
              "orvex chat: tokens: 0 input, 0 output\n"
              "orvex: API error 401: {\"error\": \"bad key\"}\n");
}

}  // namespace
}  // namespace Orvex::Testing
