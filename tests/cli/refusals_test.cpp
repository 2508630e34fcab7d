// The command's clear refusals: hostile drawings, unsafe output targets and unsafe server settings end with
// one line on stderr and a usage or invalid-input status, never a crash, a hang or a silent default.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;

struct TRun {
    int Status = -1;
    std::string Out;  // stdout and stderr together
};

// aEnv goes before the command (VAR=value ...); `timeout` ends a command that would hang instead of refusing.
TRun RunCli(const std::string& aEnv, const std::string& aArgs) {
    const std::string command = aEnv + " timeout 20 " + ORVEX_CLI_PATH + " " + aArgs + " 2>&1";
    TRun run;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    char buffer[512];
    while (fgets(buffer, sizeof buffer, pipe) != nullptr) run.Out += buffer;
    const int status = pclose(pipe);
    run.Status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

std::string ReadAll(const fs::path& aFile) {
    std::ifstream in(aFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

class RefusalsTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fDir = fs::temp_directory_path() / ("orvex_refusals_" + std::to_string(::getpid()) + "_" +
                                            ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(fDir);
        fs::create_directories(fDir);
        fDrawing = fDir / "in.json";
        std::ofstream(fDrawing)
            << R"({"Version":3200,"Items":[{"Type":2,"Points":[{"X":1,"Y":2},{"X":3,"Y":4}]}]})";
    }
    void TearDown() override { fs::remove_all(fDir); }
    fs::path fDir;
    fs::path fDrawing;
};

TEST_F(RefusalsTest, DeeplyNestedDrawingsAreInvalidInputNotACrash) {
    const fs::path deep = fDir / "deep.json";
    std::ofstream(deep) << R"({"Symbols":[{"Name":"x","Items":)" << std::string(100000, '[')
                        << std::string(100000, ']') << "}]}";
    for (const std::string& args :
         {"info " + deep.string(), "convert " + deep.string() + " -o " + (fDir / "out.svg").string()}) {
        SCOPED_TRACE(args);
        const TRun run = RunCli("", args);
        EXPECT_EQ(run.Status, 1);
        EXPECT_EQ(run.Out, "orvex: " + deep.string() + ": not read: nested deeper than 512 levels\n");
    }
}

TEST_F(RefusalsTest, SkippedItemsAreNamedOnStderr) {
    std::ofstream(fDrawing) << R"({"Items":[{"Type":2},17,{"Type":250}]})";
    const TRun run = RunCli("", "info " + fDrawing.string());
    EXPECT_EQ(run.Status, 0);
    EXPECT_NE(run.Out.find("orvex: warning: " + fDrawing.string() +
                           ": Items[1] is a number, not an item object; "
                           "skipped\n"),
              std::string::npos)
        << run.Out;
    EXPECT_NE(run.Out.find("Items[2] has the unknown item type 250; skipped"), std::string::npos) << run.Out;
}

TEST_F(RefusalsTest, ConvertRefusesLinkedAndSpecialTargetsAndKeepsThem) {
    const fs::path outside = fDir / "outside.json";
    std::ofstream(outside) << "keep me";
    const fs::path hard = fDir / "hard.json";
    fs::create_hard_link(outside, hard);
    const fs::path fifo = fDir / "pipe.svg";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    for (const fs::path& target : {hard, fifo}) {
        SCOPED_TRACE(target.string());
        const TRun run = RunCli("", "convert " + fDrawing.string() + " -o " + target.string());
        EXPECT_EQ(run.Status, 2) << run.Out;
        EXPECT_NE(run.Out.find(target.string() + ": cannot be written ("), std::string::npos) << run.Out;
    }
    EXPECT_EQ(ReadAll(outside), "keep me");

    const fs::path fine = fDir / "out.json";
    std::ofstream(fine) << "old";
    EXPECT_EQ(RunCli("", "convert " + fDrawing.string() + " -o " + fine.string()).Status, 0);
    EXPECT_NE(ReadAll(fine).find("\"Version\": 3200"), std::string::npos);
}

TEST_F(RefusalsTest, ServeRefusesUnsafeTokensAndLimitsAtStart) {
    struct TCase {
        const char* Name;
        std::string Env;
        std::string Args;
        std::string Message;
    };
    const std::string longToken(32, 'k');
    const TCase cases[] = {
        {"empty token", "ORVEX_MCP_TOKEN=", "serve --port 0",
         "ORVEX_MCP_TOKEN is set but empty; give it a token, or unset it to serve loopback without one"},
        {"blank token over stdio", "ORVEX_MCP_TOKEN=' '", "serve --stdio",
         "ORVEX_MCP_TOKEN is set but empty"},
        {"short token on a public address", "ORVEX_MCP_TOKEN=short", "serve --port 0 --bind 0.0.0.0",
         "serving on 0.0.0.0 needs ORVEX_MCP_TOKEN of at least 32 characters"},
        {"no token on a public address", "env -u ORVEX_MCP_TOKEN", "serve --port 0 --bind 0.0.0.0",
         "serving on 0.0.0.0 needs ORVEX_MCP_TOKEN of at least 32 characters"},
        {"negative request limit", "ORVEX_MCP_TOKEN=" + longToken, "serve --port 0 --max-request-bytes -1",
         "--max-request-bytes"},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Name);
        const TRun run = RunCli(c.Env, c.Args);
        EXPECT_EQ(run.Status, 2) << run.Out;
        EXPECT_NE(run.Out.find(c.Message), std::string::npos) << run.Out;
    }
}

}  // namespace
