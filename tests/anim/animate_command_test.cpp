// `orvex animate` end to end: the CSV a run produces and the exit codes of bad input.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct TRun {
    int Exit = -1;
    std::string Out;
    std::string Err;
};

class AnimateCommand : public ::testing::Test {
  protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        fDir =
            fs::temp_directory_path() / ("orvex_animate_" + std::to_string(::getpid()) + "_" + info->name());
        fs::create_directories(fDir);
    }
    void TearDown() override { fs::remove_all(fDir); }

    std::string WritePath(const std::string& json) {
        const fs::path file = fDir / "path.json";
        std::ofstream(file) << json;
        return file.string();
    }

    TRun Run(const std::string& args) {
        const fs::path out = fDir / "out.txt";
        const fs::path err = fDir / "err.txt";
        const std::string command = std::string("'") + ORVEX_CLI_PATH + "' animate " + args + " >'" +
                                    out.string() + "' 2>'" + err.string() + "'";
        const int status = std::system(command.c_str());
        TRun run;
        run.Exit = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        run.Out = Slurp(out);
        run.Err = Slurp(err);
        return run;
    }

    static std::string Slurp(const fs::path& file) {
        std::ifstream in(file);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

    static std::vector<std::string> Lines(const std::string& text) {
        std::vector<std::string> lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) lines.push_back(line);
        return lines;
    }

    fs::path fDir;
};

constexpr const char* kLine = R"({"type":"ptLine","totalTime":1,"segments":[{"end":[10,0]}]})";

}  // namespace

TEST_F(AnimateCommand, PrintsOneRowPerFrameUpToTheEnd) {
    const TRun run = Run(WritePath(kLine) + " --fps 4");
    EXPECT_EQ(run.Exit, 0) << run.Err;
    EXPECT_EQ(run.Out,
              "time,x,y,rotation,progress,path_progress,waypoints\n"
              "0,0,0,0,0,0,\n"
              "0.25,2.5,0,0,0.25,0.25,\n"
              "0.5,5,0,0,0.5,0.5,\n"
              "0.75,7.5,0,0,0.75,0.75,\n"
              "1,10,0,0,1,1,1\n");
}

TEST_F(AnimateCommand, FrameStepsThatDoNotAddUpExactlyStillEndOnTheLastFrame) {
    // A tenth of a second does not add up to 0.3 in binary; the run must still end on the fourth frame.
    const TRun run =
        Run(WritePath(R"({"type":"ptLine","totalTime":0.3,"segments":[{"end":[3,0]}]})") + " --fps 10");
    ASSERT_EQ(run.Exit, 0) << run.Err;
    const auto lines = Lines(run.Out);
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines.back(), "0.3,3,0,0,1,1,1");

    const TRun thirty = Run(WritePath(R"({"type":"ptCircle","totalTime":2,"segments":[{"radius":1}]})"));
    EXPECT_EQ(Lines(thirty.Out).size(), 62u);  // header and frames 0 … 60 at the default 30 fps
}

TEST_F(AnimateCommand, ReverseRunsWithTimeScaleReportWaypointsBackwards) {
    const TRun run = Run(WritePath(R"({"type":"ptPolyline","totalTime":2,"timeScale":2,"reverse":true,
        "segments":[{"end":[10,0]},{"start":[10,0],"end":[20,0]}]})") +
                         " --fps 4");
    ASSERT_EQ(run.Exit, 0) << run.Err;
    const auto lines = Lines(run.Out);
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[1], "0,20,0,0,1,1,");
    EXPECT_EQ(lines[3], "0.5,10,0,0,0.5,0.5,1");
    EXPECT_EQ(lines[5], "1,0,0,0,0,0,0");
}

TEST_F(AnimateCommand, BadInputExitCodes) {
    struct TCase {
        const char* Name;
        std::string Args;
        int Exit;
        std::string Err;  // the whole of stderr when not empty
    };
    const std::string zeroTime = WritePath(R"({"type":"ptLine","totalTime":0,"segments":[{"end":[10,0]}]})");
    const TCase cases[] = {
        {"argument error", zeroTime, 1, "TotalTime must be greater than zero\n"},
        {"missing file", (fDir / "missing.json").string(), 2, ""},
        {"bad fps", zeroTime + " --fps 0", 2, ""},
        {"no file", "", 2, ""},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Name);
        const TRun run = Run(c.Args);
        EXPECT_EQ(run.Exit, c.Exit);
        EXPECT_TRUE(run.Out.empty());
        EXPECT_FALSE(run.Err.empty());
        if (!c.Err.empty()) {
            EXPECT_EQ(run.Err, c.Err);
        }
    }
    const TRun unknown =
        Run(WritePath(R"({"type":"ptLine","easing":"peSpring","totalTime":1,"segments":[{}]})"));
    EXPECT_EQ(unknown.Exit, 1);
    EXPECT_EQ(unknown.Err, "unknown easing \"peSpring\"\n");
}
