// The live view: versions published by the main thread, and the loopback server that hands them to pages,
// at once or by long poll.
#include <gtest/gtest.h>
#include <httplib.h>

#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <string>
#include <thread>

#include "host/live_view.h"
#include "tests/host/tool_test_support.h"

namespace Orvex::Testing {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

TEST(LiveViewStoreTest, CountsOnlyDistinctDrawings) {
    Host::TLiveViewStore store;
    EXPECT_EQ(store.Current().Version, 0u);
    EXPECT_TRUE(store.Current().SVG->empty());
    EXPECT_TRUE(store.Publish("<svg/>", 0));
    EXPECT_FALSE(store.Publish("<svg/>", 0));
    EXPECT_EQ(store.Current().Version, 1u);
    EXPECT_TRUE(store.Publish("<svg><rect/></svg>", 1));
    EXPECT_TRUE(store.Publish("<svg/>", 0));  // back to an earlier drawing is still a change
    const auto current = store.Current();
    EXPECT_EQ(current.Version, 3u);
    EXPECT_EQ(current.Items, 0u);
    EXPECT_EQ(*current.SVG, "<svg/>");
}

TEST(LiveViewStoreTest, WaitNewerAnswersAtOnceForAnyOtherVersion) {
    Host::TLiveViewStore store;
    store.Publish("<svg/>", 0);
    store.Publish("<svg><rect/></svg>", 1);
    struct Case {
        const char* Name;
        std::uint64_t After;
    } cases[] = {{"a new page", 0}, {"one behind", 1}, {"a page left open across a restart", 41}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        const auto start = Clock::now();
        const auto newer = store.WaitNewer(c.After, 5s);
        EXPECT_LT(Clock::now() - start, 1s);
        ASSERT_TRUE(newer.has_value());
        EXPECT_EQ(newer->Version, 2u);
        EXPECT_EQ(newer->Items, 1u);
    }
}

TEST(LiveViewStoreTest, WaitNewerTimesOutWakesOnPublishAndOnClose) {
    Host::TLiveViewStore store;
    auto start = Clock::now();
    EXPECT_FALSE(store.WaitNewer(0, 50ms).has_value());  // nothing published yet
    store.Publish("<svg/>", 0);
    EXPECT_FALSE(store.WaitNewer(1, 50ms).has_value());
    EXPECT_GE(Clock::now() - start, 100ms);

    auto waiter = std::async(std::launch::async, [&] { return store.WaitNewer(1, 10s); });
    std::this_thread::sleep_for(50ms);
    start = Clock::now();
    store.Publish("<svg><text>Hi</text></svg>", 1);
    const auto newer = waiter.get();
    EXPECT_LT(Clock::now() - start, 2s);
    ASSERT_TRUE(newer.has_value());
    EXPECT_EQ(newer->Version, 2u);

    waiter = std::async(std::launch::async, [&] { return store.WaitNewer(2, 10s); });
    std::this_thread::sleep_for(50ms);
    start = Clock::now();
    store.Close();
    EXPECT_FALSE(waiter.get().has_value());
    EXPECT_LT(Clock::now() - start, 2s);
    EXPECT_TRUE(store.Closed());
}

// A live view of the fixture's headless drawing on a free loopback port, stopped when the test ends.
class LiveViewTest : public ToolsTest {
  protected:
    void SetUp() override {
        fView.SetLongPollTimeout(1s);
        fView.Update(fDoc);
        ASSERT_NE(fView.Start(0), 0);
        fClient = std::make_unique<httplib::Client>("127.0.0.1", fView.BoundPort());
        fClient->set_read_timeout(10, 0);
    }
    void TearDown() override { fView.Stop(); }

    Host::TLiveView fView;
    std::unique_ptr<httplib::Client> fClient;
};

TEST_F(LiveViewTest, ServesThePageAndTheCurrentDrawing) {
    const auto page = fClient->Get("/");
    ASSERT_TRUE(page);
    EXPECT_EQ(page->status, 200);
    EXPECT_EQ(page->get_header_value("Content-Type"), "text/html; charset=utf-8");
    EXPECT_EQ(page->get_header_value("Cache-Control"), "no-store");
    EXPECT_NE(page->get_header_value("Content-Security-Policy").find("default-src 'none'"),
              std::string::npos);
    EXPECT_NE(page->body.find("/drawing.svg?after="), std::string::npos);
    // Self-contained: nothing is fetched from anywhere but this server.
    EXPECT_EQ(page->body.find("src=\"http"), std::string::npos);
    EXPECT_EQ(page->body.find("href=\"http"), std::string::npos);

    Ok("add_flow", {{"x", 20}, {"y", 10}, {"text", "Start"}});
    EXPECT_TRUE(fView.Update(fDoc));
    EXPECT_FALSE(fView.Update(fDoc));  // the same drawing is not a new version
    const auto svg = fClient->Get("/drawing.svg");
    ASSERT_TRUE(svg);
    EXPECT_EQ(svg->status, 200);
    EXPECT_EQ(svg->get_header_value("Content-Type"), "image/svg+xml");
    EXPECT_EQ(svg->get_header_value("Cache-Control"), "no-store");
    EXPECT_EQ(svg->get_header_value("X-Drawing-Version"), "2");
    EXPECT_EQ(svg->get_header_value("X-Drawing-Items"), "1");
    EXPECT_EQ(svg->body, fDoc.SVG(TQVLExportSVG::esFile, 1.0f, true));
    EXPECT_NE(svg->body.find("Start"), std::string::npos);
}

TEST_F(LiveViewTest, LongPollAnswersWhenTheDrawingChanges) {
    // Nothing new: 204 after the long-poll timeout.
    auto start = Clock::now();
    const auto idle = fClient->Get("/drawing.svg?after=1");
    ASSERT_TRUE(idle);
    EXPECT_EQ(idle->status, 204);
    EXPECT_GE(Clock::now() - start, 900ms);

    // Whether the request arrives before the change or after it, it answers with the change.
    auto waiting = std::async(std::launch::async, [&] { return fClient->Get("/drawing.svg?after=1"); });
    std::this_thread::sleep_for(100ms);
    start = Clock::now();
    Ok("add_shape", {{"kind", "text"}, {"x", 5}, {"y", 5}, {"text", "Watched"}});
    ASSERT_TRUE(fView.Update(fDoc));
    const auto changed = waiting.get();
    ASSERT_TRUE(changed);
    EXPECT_LT(Clock::now() - start, 1s);
    EXPECT_EQ(changed->status, 200);
    EXPECT_EQ(changed->get_header_value("X-Drawing-Version"), "2");
    EXPECT_NE(changed->body.find("Watched"), std::string::npos);
}

TEST_F(LiveViewTest, RefusesWhatIsNotAReadOfTheDrawing) {
    struct Case {
        const char* Name;
        std::string Method;
        std::string Path;
        httplib::Headers Headers;
        int Status;
    } cases[] = {
        {"a word for a version", "GET", "/drawing.svg?after=new", {}, 400},
        {"a negative version", "GET", "/drawing.svg?after=-1", {}, 400},
        {"an empty version", "GET", "/drawing.svg?after=", {}, 400},
        {"a version past 64 bits", "GET", "/drawing.svg?after=18446744073709551616", {}, 400},
        {"another path", "GET", "/mcp", {}, 404},
        {"a path below the drawing", "GET", "/drawing.svg/x", {}, 404},
        {"a write", "POST", "/", {}, 404},
        {"a delete", "DELETE", "/drawing.svg", {}, 404},
        {"a foreign host name", "GET", "/drawing.svg", {{"Host", "attacker.example:80"}}, 403},
        {"localhost", "GET", "/drawing.svg", {{"Host", "localhost:1"}}, 200},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        httplib::Request request;
        request.method = c.Method;
        request.path = c.Path;
        request.headers = c.Headers;
        const auto answer = fClient->send(request);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, c.Status);
    }
}

TEST(LiveViewServerTest, StopReleasesAWaitingPageAndThePort) {
    TORXHeadlessLabel doc;
    Host::TLiveView view;
    view.Update(doc);
    const auto port = view.Start(0);
    httplib::Client client("127.0.0.1", port);
    client.set_read_timeout(30, 0);
    auto waiting = std::async(std::launch::async, [&] { return client.Get("/drawing.svg?after=1"); });
    std::this_thread::sleep_for(100ms);

    Host::TLiveView rival;
    EXPECT_THROW(rival.Start(port), std::runtime_error);

    const auto start = Clock::now();
    view.Stop();
    EXPECT_LT(Clock::now() - start, 3s);
    const auto answer = waiting.get();
    if (answer) {
        EXPECT_EQ(answer->status, 204);
    }
    EXPECT_EQ(view.BoundPort(), 0);
    EXPECT_EQ(rival.Start(port), port);
}

TEST(LiveViewCliTest, ViewPortNeedsAPortNumber) {
    for (const char* args : {"--view-port", "--view-port 65536", "--view-port x"}) {
        SCOPED_TRACE(args);
        const std::string command =
            std::string(ORVEX_CLI_PATH) + " serve " + args + " </dev/null 2>/dev/null";
        const int status = std::system(command.c_str());
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 2);
    }
}

}  // namespace
}  // namespace Orvex::Testing
