#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

struct TRun {
    int Status;
    std::string Out;
};

TRun RunCli(const std::string& args) {
    const std::string command = std::string(ORVEX_CLI_PATH) + " " + args + " 2>&1";
    TRun run{-1, {}};
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    char buffer[512];
    while (fgets(buffer, sizeof buffer, pipe) != nullptr) run.Out += buffer;
    const int status = pclose(pipe);
    run.Status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

std::string ReadAll(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

class CliConvertTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fDir = std::filesystem::temp_directory_path() /
               ("orvex_cli_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(fDir);
    }
    void TearDown() override { std::filesystem::remove_all(fDir); }
    std::filesystem::path fDir;
};

TEST_F(CliConvertTest, ConvertRoundTripsTheExampleByteForByte) {
    const std::string example = std::string(ORVEX_SOURCE_DIR) + "/examples/drawings/bracket.json";
    const auto out = fDir / "out.json";
    const TRun run = RunCli("convert " + example + " -o " + out.string());
    EXPECT_EQ(run.Status, 0) << run.Out;
    EXPECT_EQ(ReadAll(out), ReadAll(example));
}

TEST_F(CliConvertTest, CompactInputComesOutIndentedAndStable) {
    const auto in = fDir / "in.json";
    std::ofstream(in)
        << R"({"Version":3200,"Items":[{"Type":7,"Points":[{"X":1,"Y":2},{"X":3.14159,"Y":4}]}]})";
    const auto once = fDir / "once.json";
    const auto twice = fDir / "twice.json";
    ASSERT_EQ(RunCli("convert " + in.string() + " -o " + once.string()).Status, 0);
    ASSERT_EQ(RunCli("convert " + once.string() + " -o " + twice.string()).Status, 0);
    const std::string text = ReadAll(once);
    EXPECT_NE(text.find("\n  \"EditorMode\": 0,"), std::string::npos);
    EXPECT_NE(text.find("3.142"), std::string::npos);
    EXPECT_EQ(ReadAll(twice), text);
}

TEST_F(CliConvertTest, BadInputExitsOneWithOneLineAndWritesNothing) {
    struct TCase {
        const char* Name;
        const char* Text;
        const char* Problem;
    };
    const TCase cases[] = {{"text", "hello", "not a JSON document"}, {"array", "[1,2]", "not a JSON object"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        const auto in = fDir / (std::string(c.Name) + ".json");
        const auto out = fDir / (std::string(c.Name) + "_out.json");
        std::ofstream(in) << c.Text;
        for (const std::string& command :
             {"convert " + in.string() + " -o " + out.string(), "info " + in.string()}) {
            const TRun run = RunCli(command);
            EXPECT_EQ(run.Status, 1);
            EXPECT_EQ(run.Out, "orvex: " + in.string() + ": " + c.Problem + "\n");
        }
        EXPECT_FALSE(std::filesystem::exists(out));
    }
}

TEST_F(CliConvertTest, InfoSummarisesTheExample) {
    const TRun run = RunCli("info " + std::string(ORVEX_SOURCE_DIR) + "/examples/drawings/bracket.json");
    EXPECT_EQ(run.Status, 0);
    EXPECT_NE(run.Out.find("mode:   drawing\n"), std::string::npos);
    EXPECT_NE(run.Out.find("units:  mm\n"), std::string::npos);
    EXPECT_NE(run.Out.find("layers: 2\n"), std::string::npos);
    EXPECT_NE(run.Out.find("  Rectangle    1\n"), std::string::npos);
    EXPECT_NE(run.Out.find("bounds: 0, 10 to 110, 69.586 mm\n"), std::string::npos);
}

}  // namespace
