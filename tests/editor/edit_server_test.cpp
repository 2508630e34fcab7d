// The editor page's HTTP side: who may reach it, the API's answers and the frame stream.
#include <gtest/gtest.h>
#include <httplib.h>

#include <string>

#include "host/editor/edit_server.h"
#include "host/editor/edit_session.h"
#include "orvex/agent/main_thread.h"
#include "orvex/document/headless.h"
#include "orvex/io/json.h"

namespace Orvex::Testing {
namespace {

class EditServerTest : public ::testing::Test {
  protected:
    void Start(std::string aToken = {}) {
        fSession.Publish();
        Host::TEditServerOptions options;
        options.Token = std::move(aToken);
        options.AllowedOrigins = "https://trusted.example";
        fPort = fServer.Start(options);
        fClient = std::make_unique<httplib::Client>("127.0.0.1", fPort);
        fClient->set_read_timeout(5, 0);
    }
    httplib::Result Api(const std::string& aBody, httplib::Headers aHeaders = {}) {
        return fClient->Post("/api", aHeaders, aBody, "application/json");
    }

    TORXHeadlessLabel fDoc;
    TInlineRunner fRunner;  // the session runs on the connection's thread, one request at a time
    Host::TEditSession fSession{fDoc, [](const std::string&, const TJSON&) { return TJSON::object(); }, {}};
    Host::TEditServer fServer{fSession, fRunner};
    std::uint16_t fPort = 0;
    std::unique_ptr<httplib::Client> fClient;
};

TEST_F(EditServerTest, ServesThePageAndRunsRequests) {
    Start();
    const auto page = fClient->Get("/");
    ASSERT_TRUE(page);
    EXPECT_EQ(page->status, 200);
    EXPECT_NE(page->body.find("<script>"), std::string::npos);
    EXPECT_NE(page->get_header_value("Content-Security-Policy").find("default-src 'none'"),
              std::string::npos);

    auto answer = Api(R"({"op":"tool","name":"rectangle"})");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200) << answer->body;
    EXPECT_EQ(fDoc.GetAction(), TQVLEdAction::eaRectangle);

    answer = Api(R"({"op":"tool","name":"lasso"})");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 400);
    EXPECT_EQ(TJSON::parse(answer->body)["error"], "unknown tool \"lasso\"");
    answer = Api("{not json");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 400);
    const auto catalog = Api(R"({"op":"catalog"})");
    ASSERT_TRUE(catalog);
    EXPECT_EQ(TJSON::parse(catalog->body)["tools"].size(), 47u);  // every tool of the editor but "none"
}

TEST_F(EditServerTest, RefusesOtherSitesAndRequestsWithoutTheToken) {
    Start("s3cret");
    struct Case {
        const char* Name;
        std::string Path;
        httplib::Headers Headers;
        int Status;
    } cases[] = {
        {"page without token", "/", {}, 401},
        {"page with the token in its address", "/?token=s3cret", {}, 200},
        {"page with a wrong token", "/?token=s3cre", {}, 401},
        {"API with the bearer token", "/api", {{"Authorization", "Bearer s3cret"}}, 200},
        {"API with the token in the address only", "/api?token=s3cret", {}, 401},
        {"another site's page",
         "/api",
         {{"Authorization", "Bearer s3cret"}, {"Origin", "https://evil.example"}},
         403},
        {"an origin allowed by name",
         "/api",
         {{"Authorization", "Bearer s3cret"}, {"Origin", "https://trusted.example"}},
         200},
        {"a name resolved to loopback",
         "/api",
         {{"Authorization", "Bearer s3cret"}, {"Host", "evil.example"}},
         403},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        const auto answer = c.Path.starts_with("/api")
                                ? fClient->Post(c.Path, c.Headers, R"({"op":"state"})", "application/json")
                                : fClient->Get(c.Path, c.Headers);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, c.Status) << answer->body;
    }
    EXPECT_NE(fServer.Url().find("?token=s3cret"), std::string::npos);
}

TEST_F(EditServerTest, NeedsATokenBeyondLoopback) {
    Host::TEditServerOptions options;
    options.Bind = "0.0.0.0";
    EXPECT_THROW(fServer.Start(options), std::runtime_error);
}

TEST_F(EditServerTest, StreamSendsTheDrawingOnceThenOnlyWhatChanged) {
    Start();
    std::vector<TJSON> lines;
    std::string buffer;
    httplib::Client streamer("127.0.0.1", fPort);
    streamer.set_read_timeout(5, 0);
    std::thread changer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        fRunner.RunSync([&] {
            fSession.Handle({{"op", "settings"}, {"grid", true}});
            fSession.Publish();
        });
    });
    const auto answer = streamer.Get("/stream", [&](const char* aData, std::size_t aLength) {
        buffer.append(aData, aLength);
        for (auto end = buffer.find('\n'); end != std::string::npos; end = buffer.find('\n')) {
            if (end > 0) lines.push_back(TJSON::parse(buffer.substr(0, end)));
            buffer.erase(0, end + 1);
        }
        return lines.size() < 2;  // two frames, then the client hangs up
    });
    changer.join();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(lines[0].contains("drawing"));
    EXPECT_NE(lines[0]["drawing"].get<std::string>().find("<svg"), std::string::npos);
    EXPECT_FALSE(lines[1].contains("drawing"));  // only the grid over it changed
    EXPECT_NE(lines[1]["overlay"].get<std::string>().find("class=\"grid\""), std::string::npos);
    EXPECT_TRUE(lines[1]["state"]["grid"].get<bool>());
    fServer.Stop();  // ends with no stream left open
}

}  // namespace
}  // namespace Orvex::Testing
