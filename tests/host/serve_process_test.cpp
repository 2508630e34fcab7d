// `orvex serve` as a process: HTTP on a free loopback port, a bearer token from the environment, a clean
// stop on SIGTERM that saves the drawing.
#include <gtest/gtest.h>
#include <httplib.h>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <regex>
#include <thread>

#include "orvex/io/json.h"

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

TEST(ServeProcessTest, ServesOverHttpAndSavesOnSigterm) {
    const fs::path folder = fs::temp_directory_path() / ("orvex_serve_" + std::to_string(::getpid()));
    fs::remove_all(folder);
    fs::create_directories(folder);
    const fs::path drawing = folder / "drawing.json";
    const fs::path log = folder / "stderr.txt";

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 2, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    std::vector<std::string> args{ORVEX_CLI_PATH, "serve",          "--port",        "0",
                                  "--drawing",    drawing.string(), "--save-on-exit"};
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    std::vector<std::string> env{"ORVEX_MCP_TOKEN=secret-token"};
    for (char** e = environ; *e != nullptr; ++e)
        if (std::string_view(*e).rfind("ORVEX_MCP_TOKEN=", 0) != 0) env.emplace_back(*e);
    std::vector<char*> envp;
    for (auto& e : env) envp.push_back(e.data());
    envp.push_back(nullptr);
    pid_t pid = 0;
    ASSERT_EQ(posix_spawn(&pid, ORVEX_CLI_PATH, &actions, nullptr, argv.data(), envp.data()), 0);
    posix_spawn_file_actions_destroy(&actions);
    // Kills the server if the test ends before it was reaped, so no process outlives a failure.
    bool reaped = false;
    struct Reaper {
        pid_t Pid;
        const bool& Reaped;
        ~Reaper() {
            if (Reaped) return;
            kill(Pid, SIGKILL);
            waitpid(Pid, nullptr, 0);
        }
    } reaper{pid, reaped};

    int port = 0;
    static const std::regex listening(R"(listening on http://127\.0\.0\.1:(\d+)/mcp)");
    for (int i = 0; i < 500 && port == 0; ++i) {
        std::smatch m;
        const std::string text = ReadAll(log);
        if (std::regex_search(text, m, listening))
            port = std::stoi(m[1]);
        else
            std::this_thread::sleep_for(20ms);
    }
    ASSERT_NE(port, 0) << ReadAll(log);

    httplib::Client client("127.0.0.1", port);
    client.set_read_timeout(10, 0);
    const auto post = [&](const TJSON& aBody, const std::string& aToken = "secret-token") {
        httplib::Headers headers{{"Authorization", "Bearer " + aToken}};
        return client.Post("/mcp", headers, aBody.dump(), "application/json");
    };
    const auto rpc = [](int aId, const std::string& aMethod, TJSON aParams) {
        return TJSON{{"jsonrpc", "2.0"}, {"id", aId}, {"method", aMethod}, {"params", std::move(aParams)}};
    };

    auto refused = post(rpc(1, "tools/list", TJSON::object()), "wrong");
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->status, 401);

    auto init = post(rpc(1, "initialize", {{"protocolVersion", "2025-11-25"}}));
    ASSERT_TRUE(init);
    EXPECT_EQ(TJSON::parse(init->body)["result"]["serverInfo"]["name"], "Orvex-mcp");
    auto list = post(rpc(2, "tools/list", TJSON::object()));
    ASSERT_TRUE(list);
    EXPECT_GT(TJSON::parse(list->body)["result"]["tools"].size(), 20u);
    auto call = post(
        rpc(3, "tools/call", {{"name", "add_flow"}, {"arguments", {{"x", 5}, {"y", 5}, {"text", "Saved"}}}}));
    ASSERT_TRUE(call);
    EXPECT_EQ(TJSON::parse(call->body)["result"]["structuredContent"]["index"], 0);

    client.stop();
    const auto stopping = std::chrono::steady_clock::now();
    ASSERT_EQ(kill(pid, SIGTERM), 0);
    const int code = WaitExit(pid, 10000ms);
    reaped = code >= 0;
    EXPECT_EQ(code, 0) << ReadAll(log);
    EXPECT_LT(std::chrono::steady_clock::now() - stopping, 3s);
    const TJSON saved = TJSON::parse(ReadAll(drawing));
    ASSERT_EQ(saved["Items"].size(), 1u);
    EXPECT_EQ(saved["Items"][0]["Text"], "Saved");
    EXPECT_NE(ReadAll(log).find("MCP server stopped"), std::string::npos);
    fs::remove_all(folder);
}

}  // namespace
}  // namespace Orvex::Testing
