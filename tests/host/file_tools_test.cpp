// File tools inside a files folder, their refusals of paths that leave it, and the inline mode.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "orvex/diagrams/diagram_parse.h"
#include "tests/host/tool_test_support.h"

namespace Orvex::Testing {
namespace {

namespace fs = std::filesystem;

Host::TToolOptions RootedAt(const fs::path& aRoot) {
    Host::TToolOptions options;
    options.FilesRoot = aRoot;
    return options;
}

class FilesRootTest : public ToolsTest {
  protected:
    FilesRootTest() : ToolsTest(RootedAt(Folder() / "root")) {
        fs::remove_all(Folder());
        fs::create_directories(Folder() / "root" / "sub");
    }
    ~FilesRootTest() override { fs::remove_all(Folder()); }
    static fs::path Folder() {
        return fs::temp_directory_path() / ("orvex_tools_" + std::to_string(::getpid()));
    }
};

TEST_F(FilesRootTest, SaveLoadAndExportStayInsideTheFolder) {
    Ok("add_circle", {{"cx", 5}, {"cy", 5}, {"radius", 2}});
    const TJSON saved = Ok("save_drawing", {{"path", "sub/one.json"}});
    EXPECT_EQ(saved["path"], "sub/one.json");
    EXPECT_TRUE(fs::exists(Folder() / "root" / "sub" / "one.json"));
    const TJSON svg = Ok("export_document", {{"format", "svg"}, {"path", "pic.svg"}});
    EXPECT_EQ(svg["format"], "svg");
    std::ifstream in(Folder() / "root" / "pic.svg");
    std::string head(5, '\0');
    in.read(head.data(), 5);
    EXPECT_EQ(head, "<?xml");

    Ok("clear_drawing");
    EXPECT_EQ(Ok("load_drawing", {{"path", "sub/one.json"}})["items_count"], 1);
    EXPECT_EQ(fDoc.GetItemsCount(), 1);
}

TEST_F(FilesRootTest, PathsThatLeaveTheFolderAreRefused) {
    const fs::path outside = Folder() / "outside.json";
    std::ofstream(outside) << "{}";
    fs::create_symlink(outside, Folder() / "root" / "link.json");
    fs::create_directory_symlink(Folder(), Folder() / "root" / "up");
    struct Case {
        std::string Path;
        std::string Message;
    };
    const Case cases[] = {
        {"../outside.json", "path \"../outside.json\" steps out with \"..\"; stay inside the files folder"},
        {"sub/../../outside.json",
         "path \"sub/../../outside.json\" steps out with \"..\"; stay inside the files folder"},
        {outside.string(),
         "path \"" + outside.string() + "\" is absolute; give a path relative to the files folder"},
        {"link.json", "path \"link.json\" goes through a symbolic link; links are refused"},
        {"up/outside.json", "path \"up/outside.json\" goes through a symbolic link; links are refused"},
        {"", "argument \"path\" must not be empty"},
        {".", "path \".\" names the files folder itself"},
    };
    Ok("add_circle", {{"cx", 5}, {"cy", 5}, {"radius", 2}});
    const std::string before = fDoc.GetJsonString();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Path);
        EXPECT_EQ(Refused("load_drawing", {{"path", c.Path}}), c.Message);
        EXPECT_EQ(Refused("save_drawing", {{"path", c.Path}}), c.Message);
        EXPECT_EQ(Refused("export_document", {{"format", "json"}, {"path", c.Path}}), c.Message);
    }
    EXPECT_EQ(fDoc.GetJsonString(), before);
    std::ifstream in(outside);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "{}");
}

TEST_F(FilesRootTest, LoadingAMissingOrBrokenFileLeavesTheDrawing) {
    Ok("add_circle", {{"cx", 5}, {"cy", 5}, {"radius", 2}});
    std::ofstream(Folder() / "root" / "broken.json") << "{ nope";
    const std::string before = fDoc.GetJsonString();
    EXPECT_EQ(Refused("load_drawing", {{"path", "none.json"}}), "no file \"none.json\" in the files folder");
    EXPECT_FALSE(Refused("load_drawing", {{"path", "broken.json"}}).empty());
    EXPECT_EQ(fDoc.GetJsonString(), before);
}

using InlineFilesTest = ToolsTest;

TEST_F(InlineFilesTest, WithoutAFolderContentTravelsInline) {
    Ok("add_flow", {{"x", 1}, {"y", 2}, {"text", "Inline"}});
    const TJSON saved = Call("save_drawing");
    ASSERT_FALSE(saved.value("isError", false));
    const std::string json = Text(saved);
    EXPECT_EQ(TJSON::parse(json)["Items"].size(), 1u);
    const std::string svg = Text(Call("export_document", {{"format", "svg"}}));
    EXPECT_NE(svg.find("<svg"), std::string::npos);

    Ok("clear_drawing");
    EXPECT_EQ(Ok("load_drawing", {{"json", json}})["items_count"], 1);

    const std::string refused =
        "file paths are disabled: the server runs without a files folder (--files-root); work inline instead";
    EXPECT_EQ(Refused("save_drawing", {{"path", "a.json"}}), refused);
    EXPECT_EQ(Refused("load_drawing", {{"path", "a.json"}}), refused);
    EXPECT_EQ(Refused("load_drawing", TJSON::object()),
              "give exactly one of \"path\" (a file in the files folder) or \"json\" (the drawing text)");
    EXPECT_EQ(
        Refused("export_document", {{"format", "png"}}),
        "png export needs the painting host, which this server does not have; export \"svg\" or \"json\"");
    const std::string before = fDoc.GetJsonString();
    EXPECT_FALSE(Refused("load_drawing", {{"json", "[1, 2]"}}).empty());
    EXPECT_EQ(fDoc.GetJsonString(), before);
}

TEST_F(InlineFilesTest, FileToolArgumentsAreChecked) {
    struct Case {
        std::string Tool;
        TJSON Args;
        std::string Message;
    };
    const Case cases[] = {
        {"load_diagram", TJSON::object(), "missing required argument \"text\""},
        {"load_diagram",
         {{"text", "graph TD"}, {"format", "dot"}},
         "argument \"format\" must be one of \"auto\", \"mermaid\" or \"plantuml\"; got \"dot\""},
        {"export_document", TJSON::object(), "missing required argument \"format\""},
        {"load_drawing", {{"json", 5}}, "argument \"json\" must be a string"},
        {"save_drawing", {{"indent", 2}}, "unknown argument \"indent\"; expected \"path\""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Tool + " " + c.Args.dump());
        EXPECT_EQ(Refused(c.Tool, c.Args), c.Message);
    }
}

TEST_F(InlineFilesTest, LoadDiagramWithoutALayoutReportsDiagnostics) {
    const auto saved = QVLGetDiagramLoader();
    QVLSetDiagramLoader(nullptr);
    const TJSON result = Call("load_diagram", {{"text", "flowchart TD\n  A[Start] --> B[End]\n"}});
    EXPECT_TRUE(result.value("isError", false));
    EXPECT_EQ(Text(result),
              "Error: no diagram layout is installed; build the diagram with add_flow and add_link instead");
    EXPECT_EQ(result["structuredContent"]["loaded"], false);
    EXPECT_TRUE(result["structuredContent"]["diagnostics"].is_array());

    const TJSON bad = Call("load_diagram", {{"text", ""}, {"format", "mermaid"}});
    EXPECT_EQ(Text(bad), "Error: the diagram has errors; see diagnostics");
    EXPECT_FALSE(bad["structuredContent"]["diagnostics"].empty());
    QVLSetDiagramLoader(saved);
}

TEST_F(InlineFilesTest, LoadDiagramCallsTheInstalledLayout) {
    const auto saved = QVLGetDiagramLoader();
    QVLSetDiagramLoader([](TORXBaseLabel& aDoc, std::string_view, TQVLDiagramFormat) {
        aDoc.CreateItem(TQVLItemType::itFlow);
        aDoc.CreateItem(TQVLItemType::itFlow);
        return true;
    });
    const TJSON loaded = Ok("load_diagram", {{"text", "flowchart TD\n  A --> B\n"}});
    EXPECT_EQ(loaded["loaded"], true);
    EXPECT_EQ(loaded["items_created"], 2);
    QVLSetDiagramLoader(saved);
}

}  // namespace
}  // namespace Orvex::Testing
