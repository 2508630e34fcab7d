// `orvex serve` as a process: HTTP on a free loopback port, a bearer token from the environment, a clean
// stop on SIGTERM that saves the drawing, and a second signal that ends it at once.
#include <gtest/gtest.h>
#include <httplib.h>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <thread>
#include <vector>

#include "orvex/io/json.h"
#include "tests/agent/raw_socket.h"

extern char** environ;

namespace Orvex::Testing {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

std::string ReadAll(const fs::path& aFile) {
    std::ifstream in(aFile);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// Waits up to aLimit for the child; -1 while it still runs.
int WaitExit(pid_t aPid, std::chrono::milliseconds aLimit) {
    const auto end = std::chrono::steady_clock::now() + aLimit;
    int status = 0;
    while (std::chrono::steady_clock::now() < end) {
        if (waitpid(aPid, &status, WNOHANG) == aPid)
            return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        std::this_thread::sleep_for(20ms);
    }
    return -1;
}

// `orvex serve` started with aArgs and ORVEX_MCP_TOKEN=secret-token, stderr in aLog; killed when the object
// goes before the test reaped it, so no process outlives a failure.
class ServeProcess {
  public:
    ServeProcess(std::vector<std::string> aArgs, const fs::path& aLog) : fLog(aLog) {
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 2, aLog.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
        aArgs.insert(aArgs.begin(), {ORVEX_CLI_PATH, "serve"});
        std::vector<char*> argv;
        for (auto& a : aArgs) argv.push_back(a.data());
        argv.push_back(nullptr);
        std::vector<std::string> env{"ORVEX_MCP_TOKEN=secret-token"};
        for (char** e = environ; *e != nullptr; ++e)
            if (std::string_view(*e).rfind("ORVEX_MCP_TOKEN=", 0) != 0) env.emplace_back(*e);
        std::vector<char*> envp;
        for (auto& e : env) envp.push_back(e.data());
        envp.push_back(nullptr);
        fSpawned = posix_spawn(&fPid, ORVEX_CLI_PATH, &actions, nullptr, argv.data(), envp.data()) == 0;
        posix_spawn_file_actions_destroy(&actions);
    }
    ~ServeProcess() {
        if (!fSpawned || fReaped) return;
        kill(fPid, SIGKILL);
        waitpid(fPid, nullptr, 0);
    }
    ServeProcess(const ServeProcess&) = delete;
    ServeProcess& operator=(const ServeProcess&) = delete;

    bool Spawned() const { return fSpawned; }

    // The port written right after aPrefix in the log; 0 when none came within ten seconds.
    int WaitForPort(const std::string& aPrefix) const {
        for (int i = 0; i < 500; ++i) {
            const std::string text = ReadAll(fLog);
            const auto at = text.find(aPrefix);
            const auto digits = at == std::string::npos ? at : at + aPrefix.size();
            if (digits < text.size() && std::isdigit(static_cast<unsigned char>(text[digits])))
                return std::stoi(text.substr(digits));
            std::this_thread::sleep_for(20ms);
        }
        return 0;
    }

    // Sends SIGTERM and returns the exit code, -1 when the process did not end within aLimit.
    int Terminate(std::chrono::milliseconds aLimit) {
        if (!Signal(SIGTERM)) return -1;
        return Wait(aLimit);
    }
    bool Signal(int aSignal) const { return kill(fPid, aSignal) == 0; }
    // The exit code, or -1 while the process still runs after aLimit.
    int Wait(std::chrono::milliseconds aLimit) {
        const int code = WaitExit(fPid, aLimit);
        fReaped = code >= 0;
        return code;
    }

  private:
    fs::path fLog;
    pid_t fPid = 0;
    bool fSpawned = false;
    bool fReaped = false;
};

const std::string kListeningLine = "listening on http://127.0.0.1:";

TJSON Rpc(int aId, const std::string& aMethod, TJSON aParams) {
    return TJSON{{"jsonrpc", "2.0"}, {"id", aId}, {"method", aMethod}, {"params", std::move(aParams)}};
}

TEST(ServeProcessTest, ServesOverHttpAndSavesOnSigterm) {
    const fs::path folder = fs::temp_directory_path() / ("orvex_serve_" + std::to_string(::getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    const fs::path drawing = folder / "drawing.json";
    const fs::path log = folder / "stderr.txt";

    ServeProcess serve({"--port", "0", "--drawing", drawing.string(), "--save-on-exit"}, log);
    ASSERT_TRUE(serve.Spawned());
    const int port = serve.WaitForPort(kListeningLine);
    ASSERT_NE(port, 0) << ReadAll(log);

    httplib::Client client("127.0.0.1", port);
    client.set_read_timeout(10, 0);
    const auto post = [&](const TJSON& aBody, const std::string& aToken = "secret-token") {
        httplib::Headers headers{{"Authorization", "Bearer " + aToken}};
        return client.Post("/mcp", headers, aBody.dump(), "application/json");
    };

    auto refused = post(Rpc(1, "tools/list", TJSON::object()), "wrong");
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->status, 401);

    auto init = post(Rpc(1, "initialize", {{"protocolVersion", "2025-11-25"}}));
    ASSERT_TRUE(init);
    EXPECT_EQ(TJSON::parse(init->body)["result"]["serverInfo"]["name"], "Orvex-mcp");
    auto list = post(Rpc(2, "tools/list", TJSON::object()));
    ASSERT_TRUE(list);
    EXPECT_GT(TJSON::parse(list->body)["result"]["tools"].size(), 20u);
    auto call = post(
        Rpc(3, "tools/call", {{"name", "add_flow"}, {"arguments", {{"x", 5}, {"y", 5}, {"text", "Saved"}}}}));
    ASSERT_TRUE(call);
    EXPECT_EQ(TJSON::parse(call->body)["result"]["structuredContent"]["index"], 0);

    client.stop();
    const auto stopping = std::chrono::steady_clock::now();
    EXPECT_EQ(serve.Terminate(10000ms), 0) << ReadAll(log);
    EXPECT_LT(std::chrono::steady_clock::now() - stopping, 3s);
    const TJSON saved = TJSON::parse(ReadAll(drawing));
    ASSERT_EQ(saved["Items"].size(), 1u);
    EXPECT_EQ(saved["Items"][0]["Text"], "Saved");
    EXPECT_NE(ReadAll(log).find("MCP server stopped"), std::string::npos);
    fs::remove_all(folder);
}

// The live view follows what an MCP client does, through the main thread's loop, and stops with the server.
TEST(ServeProcessTest, LiveViewFollowsTheDrawing) {
    const fs::path log =
        fs::temp_directory_path() / ("orvex_serve_view_" + std::to_string(::getpid()) + ".txt");
    ServeProcess serve({"--port", "0", "--view-port", "0"}, log);
    ASSERT_TRUE(serve.Spawned());
    const int port = serve.WaitForPort(kListeningLine);
    const int viewPort = serve.WaitForPort("live view on http://127.0.0.1:");
    ASSERT_NE(port, 0) << ReadAll(log);
    ASSERT_NE(viewPort, 0) << ReadAll(log);

    httplib::Client view("127.0.0.1", viewPort);
    view.set_read_timeout(30, 0);
    const auto before = view.Get("/drawing.svg");
    ASSERT_TRUE(before);
    EXPECT_EQ(before->get_header_value("X-Drawing-Version"), "1");
    EXPECT_EQ(before->get_header_value("X-Drawing-Items"), "0");
    auto waiting = std::async(std::launch::async, [&] { return view.Get("/drawing.svg?after=1"); });

    httplib::Client mcp("127.0.0.1", port);
    mcp.set_read_timeout(10, 0);
    const httplib::Headers auth{{"Authorization", "Bearer secret-token"}};
    ASSERT_TRUE(mcp.Post("/mcp", auth, Rpc(1, "initialize", {{"protocolVersion", "2025-11-25"}}).dump(),
                         "application/json"));
    // A read-only call leaves the drawing as it was: no new version.
    ASSERT_TRUE(
        mcp.Post("/mcp", auth, Rpc(2, "tools/call", {{"name", "list_items"}}).dump(), "application/json"));
    ASSERT_TRUE(mcp.Post(
        "/mcp", auth,
        Rpc(3, "tools/call",
            {{"name", "add_shape"}, {"arguments", {{"kind", "text"}, {"x", 5}, {"y", 5}, {"text", "Live"}}}})
            .dump(),
        "application/json"));
    const auto changed = waiting.get();
    ASSERT_TRUE(changed);
    EXPECT_EQ(changed->status, 200);
    EXPECT_EQ(changed->get_header_value("X-Drawing-Version"), "2");
    EXPECT_EQ(changed->get_header_value("X-Drawing-Items"), "1");
    EXPECT_NE(changed->body.find(">Live</tspan>"), std::string::npos) << changed->body;

    view.stop();
    mcp.stop();
    EXPECT_EQ(serve.Terminate(10000ms), 0) << ReadAll(log);
    fs::remove(log);
}

// A first SIGTERM stops taking connections at once, even while a request keeps the server from stopping;
// a second ends the process at once, saving the drawing first when asked to.
TEST(ServeProcessTest, ASecondSignalEndsAtOnceAndSavesFirst) {
    const fs::path folder = fs::temp_directory_path() / ("orvex_serve_signals_" + std::to_string(::getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    const fs::path drawing = folder / "drawing.json";
    const fs::path log = folder / "stderr.txt";
    ServeProcess serve({"--port", "0", "--drawing", drawing.string(), "--save-on-exit"}, log);
    ASSERT_TRUE(serve.Spawned());
    const int port = serve.WaitForPort(kListeningLine);
    ASSERT_NE(port, 0) << ReadAll(log);
    const auto port16 = static_cast<std::uint16_t>(port);

    httplib::Client client("127.0.0.1", port);
    client.set_read_timeout(10, 0);
    const auto added = client.Post(
        "/mcp", {{"Authorization", "Bearer secret-token"}},
        Rpc(1, "tools/call", {{"name", "add_flow"}, {"arguments", {{"x", 5}, {"y", 5}, {"text", "Kept"}}}})
            .dump(),
        "application/json");
    ASSERT_TRUE(added);
    client.stop();

    // A body that never ends holds its request until the request's deadline, and the stop waits for it.
    TRawSocket slow(port16);
    ASSERT_TRUE(slow.Send(PostHead(100, "Authorization: Bearer secret-token\r\n") + R"({"json)"));
    std::this_thread::sleep_for(200ms);
    ASSERT_TRUE(serve.Signal(SIGTERM));
    const auto signalled = std::chrono::steady_clock::now();
    bool refused = false;
    // New connections are refused long before the held request's deadline; the bound leaves room for a
    // loaded machine.
    while (!refused && std::chrono::steady_clock::now() - signalled < 3s) {
        refused = !TRawSocket(port16).Connected();
        if (!refused) std::this_thread::sleep_for(20ms);
    }
    EXPECT_TRUE(refused);
    EXPECT_LT(std::chrono::steady_clock::now() - signalled, 3s);
    EXPECT_EQ(serve.Wait(300ms), -1) << "the first signal waits for the running request";

    ASSERT_TRUE(serve.Signal(SIGTERM));
    const auto second = std::chrono::steady_clock::now();
    EXPECT_EQ(serve.Wait(5000ms), 0) << ReadAll(log);
    EXPECT_LT(std::chrono::steady_clock::now() - second, 2s);
    const TJSON saved = TJSON::parse(ReadAll(drawing));
    ASSERT_EQ(saved["Items"].size(), 1u);
    EXPECT_EQ(saved["Items"][0]["Text"], "Kept");

    // Without a save to make, the second signal ends the process on the spot.
    ServeProcess unsaved({"--port", "0"}, log);
    ASSERT_TRUE(unsaved.Spawned());
    const int otherPort = unsaved.WaitForPort(kListeningLine);
    ASSERT_NE(otherPort, 0) << ReadAll(log);
    TRawSocket held(static_cast<std::uint16_t>(otherPort));
    ASSERT_TRUE(held.Send(PostHead(100, "Authorization: Bearer secret-token\r\n") + "{"));
    std::this_thread::sleep_for(200ms);
    ASSERT_TRUE(unsaved.Signal(SIGINT));
    EXPECT_EQ(unsaved.Wait(300ms), -1);
    ASSERT_TRUE(unsaved.Signal(SIGINT));
    EXPECT_EQ(unsaved.Wait(2000ms), 128 + SIGINT);
    fs::remove_all(folder);
}

}  // namespace
}  // namespace Orvex::Testing
