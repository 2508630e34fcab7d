// `orvex convert` on diagram files: a laid-out drawing, or the diagnostics and nothing written.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "orvex/io/json.h"

namespace {

namespace fs = std::filesystem;

std::string Slurp(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

int RunOrvex(const std::string& arguments, const fs::path& errFile) {
    const std::string command = std::string(ORVEX_CLI_PATH) + " " + arguments + " 2>" + errFile.string();
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(LayoutCli, ConvertLaysOutADiagramIntoADrawing) {
    const fs::path dir = fs::temp_directory_path() / ("orvex_layout_cli_" + std::to_string(::getpid()));
    fs::create_directories(dir);
    const fs::path out = dir / "flow.json";
    ASSERT_EQ(RunOrvex("convert " + std::string(ORVEX_SOURCE_DIR) + "/examples/mermaid/flowchart.mmd -o " +
                           out.string(),
                       dir / "err.txt"),
              0)
        << Slurp(dir / "err.txt");
    const Orvex::TJSON drawing = Orvex::TJSON::parse(Slurp(out));
    EXPECT_EQ(drawing["EditorMode"], 1);
    EXPECT_FALSE(drawing["Items"].empty());
    fs::remove_all(dir);
}

TEST(LayoutCli, ConvertOfAnEmptyDiagramPrintsItsDiagnosticsAndWritesNothing) {
    const fs::path dir = fs::temp_directory_path() / ("orvex_layout_cli_empty_" + std::to_string(::getpid()));
    fs::create_directories(dir);
    const fs::path in = dir / "empty.mmd";
    std::ofstream(in) << "flowchart TD\n";
    const fs::path out = dir / "empty.json";
    EXPECT_EQ(RunOrvex("convert " + in.string() + " -o " + out.string(), dir / "err.txt"), 1);
    EXPECT_EQ(Slurp(dir / "err.txt"), "orvex: " + in.string() +
                                          ":0: error DIAGRAM_EMPTY_RESULT: The diagram did not produce any "
                                          "renderable element.\n");
    EXPECT_FALSE(fs::exists(out));
    fs::remove_all(dir);
}

TEST(LayoutCli, ConvertExplainsARefusalWithEveryFindingOnceAndAMissingFileAsUsage) {
    const fs::path dir =
        fs::temp_directory_path() / ("orvex_layout_cli_findings_" + std::to_string(::getpid()));
    fs::create_directories(dir);
    const fs::path in = dir / "bad.mmd";
    std::ofstream(in) << "flowchart TD\n  ??? nonsense\n";
    const fs::path out = dir / "bad.svg";
    EXPECT_EQ(RunOrvex("convert " + in.string() + " -o " + out.string(), dir / "err.txt"), 1);
    const std::string err = Slurp(dir / "err.txt");
    const std::string warning = "orvex: " + in.string() + ":2: warning MERMAID_UNRECOGNIZED_LINE: ";
    const std::string error = "orvex: " + in.string() + ":0: error DIAGRAM_EMPTY_RESULT: ";
    ASSERT_NE(err.find(warning), std::string::npos) << err;
    EXPECT_EQ(err.find(warning, err.find(warning) + 1), std::string::npos)
        << err;  // once, not once per parse
    EXPECT_LT(err.find(warning), err.find(error)) << err;
    EXPECT_FALSE(fs::exists(out));

    const fs::path missing = dir / "missing.mmd";
    EXPECT_EQ(RunOrvex("convert " + missing.string() + " -o " + out.string(), dir / "err.txt"), 2);
    EXPECT_EQ(Slurp(dir / "err.txt"), "orvex: " + missing.string() + ": cannot read the file\n");
    fs::remove_all(dir);
}

}  // namespace
