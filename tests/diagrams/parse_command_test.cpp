// `orvex parse` end to end: the JSON shape, the format choice and the exit codes.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "orvex/diagrams/diagram_json.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/io/json.h"

namespace {

struct TRun {
    int Status = -1;
    std::string Out;
};

// Runs the command through the shell; stderr is folded into stdout only when asked.
TRun RunCli(const std::string& args, bool withStderr = false) {
    const std::string command =
        std::string(ORVEX_CLI_PATH) + " parse " + args + (withStderr ? " 2>&1" : " 2>/dev/null");
    TRun run;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    std::array<char, 4096> buffer{};
    std::size_t n = 0;
    while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0) run.Out.append(buffer.data(), n);
    const int status = pclose(pipe);
    run.Status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

std::string WriteTemp(const std::string& name, const std::string& text) {
    const std::string path = testing::TempDir() + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

}  // namespace

TEST(ParseCommand, PrintsTheModelInItsFixedShape) {
    const std::string path = WriteTemp("orvex_parse_a.mmd", "graph LR\nA[Start] --> B\n???\n");
    const TRun run = RunCli(path + " --core");
    EXPECT_EQ(run.Status, 0);
    auto json = Orvex::TJSON::parse(run.Out);
    std::string keys;
    for (const auto& [key, value] : json.items()) keys += key + ",";
    EXPECT_EQ(keys, "format,kind,direction,title,nodes,edges,participants,events,diagnostics,");
    EXPECT_EQ(json["format"], "dgMermaid");
    EXPECT_EQ(json["direction"], "fdLeftRight");
    EXPECT_EQ(json["nodes"][0].dump(),
              R"({"id":"A","inId":0,"text":"Start","shape":"ftProcess","hasShape":true,"side":0,)"
              R"("backColor":"#00000000","hasBackColor":false})");
    EXPECT_EQ(json["edges"][0].dump(),
              R"({"from":"A","to":"B","text":"","dotted":false,"fromArrow":"eaNone","arrow":"eaArrow"})");
    EXPECT_EQ(json["diagnostics"][0]["code"], "MERMAID_UNRECOGNIZED_LINE");
    EXPECT_EQ(json["diagnostics"][0]["line"], 3);
}

TEST(ParseCommand, FormatComesFromOptionThenExtensionThenDetection) {
    const std::string puml = "@startuml\nAlice -> Bob : hi\n@enduml\n";
    const std::string txt = WriteTemp("orvex_parse_b.txt", puml);
    EXPECT_EQ(Orvex::TJSON::parse(RunCli(txt).Out)["format"], "dgPlantUML");
    const std::string mmd = WriteTemp("orvex_parse_b.mmd", puml);
    EXPECT_EQ(Orvex::TJSON::parse(RunCli(mmd).Out)["format"], "dgMermaid");
    EXPECT_EQ(Orvex::TJSON::parse(RunCli(mmd + " --format plantuml").Out)["format"], "dgPlantUML");
    const TRun stdinRun = RunCli("--core - < " + txt);
    auto json = Orvex::TJSON::parse(stdinRun.Out);
    EXPECT_EQ(json["kind"], "dkSequence");
    EXPECT_EQ(json["events"][0]["type"], "seMessage");
    EXPECT_EQ(json["events"][0]["from"], "Alice");
    EXPECT_EQ(json["events"][0]["to"], "Bob");
    EXPECT_EQ(json["events"][0]["text"], "hi");
}

TEST(ParseCommand, ExitCodes) {
    const std::string empty = WriteTemp("orvex_parse_c.mmd", "%% nothing\n");
    const TRun invalid = RunCli(empty + " --core");
    EXPECT_EQ(invalid.Status, 1);
    EXPECT_EQ(Orvex::TJSON::parse(invalid.Out)["diagnostics"][0]["code"], "DIAGRAM_EMPTY_RESULT");
    // The full importer refuses a text without any statement.
    const TRun refused = RunCli(empty);
    EXPECT_EQ(refused.Status, 1);
    EXPECT_EQ(Orvex::TJSON::parse(refused.Out)["diagnostics"][0]["code"], "DIAGRAM_NOT_RECOGNIZED");

    const std::string warned = WriteTemp("orvex_parse_d.mmd", "graph TD\nA\n???\n");
    EXPECT_EQ(RunCli(warned).Status, 0);
    const TRun strict = RunCli(warned + " --strict", true);
    EXPECT_EQ(strict.Status, 1);
    EXPECT_EQ(strict.Out,
              "MERMAID_UNRECOGNIZED_LINE at line 3: The line was not recognized and was ignored.\n");

    EXPECT_EQ(RunCli(empty + ".missing").Status, 2);
    EXPECT_EQ(RunCli(empty + " --format dot").Status, 2);
}

TEST(ParseCommand, TimeReportsEachRunOnStderrAndStillPrintsTheModel) {
    const std::string path = WriteTemp("orvex_parse_time.mmd", "graph LR\nA --> B\n");
    const TRun quiet = RunCli(path + " --time --repeat 3");
    EXPECT_EQ(quiet.Status, 0);
    EXPECT_EQ(Orvex::TJSON::parse(quiet.Out)["nodes"].size(), 2u);

    const TRun both = RunCli(path + " --time --repeat 3", true);  // the model holds no "parse_ms="
    std::size_t runs = 0;
    for (std::size_t at = both.Out.find("parse_ms="); at != std::string::npos;
         at = both.Out.find("parse_ms=", at + 1)) {
        ++runs;
        EXPECT_GE(std::stod(both.Out.substr(at + 9)), 0.0);
    }
    EXPECT_EQ(runs, 3u);
    EXPECT_EQ(RunCli(path + " --time --repeat 0").Status, 2);
}

TEST(ParseCommand, CoreOutputIsTheCoreParsersAndTheFullOneAddsItsKeys) {
    namespace fs = std::filesystem;
    for (const char* dir : {"mermaid", "plantuml"}) {
        for (const auto& entry : fs::directory_iterator(std::string(ORVEX_SOURCE_DIR) + "/examples/" + dir)) {
            const std::string path = entry.path().string();
            SCOPED_TRACE(path);
            std::ifstream in(path, std::ios::binary);
            const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
            const auto format = Orvex::QVLResolveFileFormat(path, Orvex::TQVLDiagramFormat::dgAuto);
            const auto model = Orvex::QVLParseDiagram(text, format);
            const std::string core = Orvex::QVLDiagramModelToJson(*model, format)
                                         .dump(-1, ' ', false, Orvex::TJSON::error_handler_t::replace);
            EXPECT_EQ(RunCli(path + " --core").Out, core + "\n");
            // The full output starts with the same top-level keys and ends with "groups" and "chart".
            const auto full = Orvex::TJSON::parse(RunCli(path).Out);
            std::string keys;
            for (const auto& [key, value] : full.items()) keys += key + ",";
            EXPECT_EQ(
                keys,
                "format,kind,direction,title,nodes,edges,participants,events,diagnostics,groups,chart,");
        }
    }
    const std::string path =
        WriteTemp("orvex_parse_full.mmd", "graph LR\nsubgraph S [Box]\nA e1@==> B\nend\n");
    const auto json = Orvex::TJSON::parse(RunCli(path).Out);
    EXPECT_EQ(json["nodes"][0]["group"], "S");
    EXPECT_EQ(
        json["edges"][0].dump(),
        R"({"from":"A","to":"B","text":"","dotted":false,"fromArrow":"eaNone","arrow":"eaArrow","id":"e1",)"
        R"("fromText":"","toText":"","thick":true,"style":{}})");
    EXPECT_EQ(json["groups"].dump(),
              R"([{"id":"S","text":"Box","parent":"","direction":"","members":["A","B"],"style":{}}])");
}
