// File tools inside a files folder, their refusals of paths that leave it, and the inline mode.
#include <gtest/gtest.h>

#include <sys/stat.h>

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
    Ok("add_shape", {{"kind", "circle"}, {"cx", 5}, {"cy", 5}, {"radius", 2}});
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
    Ok("add_shape", {{"kind", "circle"}, {"cx", 5}, {"cy", 5}, {"radius", 2}});
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

// A second hard link inside the folder may point outside it; a FIFO would block the main thread.
TEST_F(FilesRootTest, HardLinksAndFifosAreRefusedAtOnceAndLeftAlone) {
    const fs::path outside = Folder() / "outside.json";
    std::ofstream(outside) << "{}";
    fs::create_hard_link(outside, Folder() / "root" / "hard.json");
    ASSERT_EQ(::mkfifo((Folder() / "root" / "pipe.json").c_str(), 0600), 0);
    Ok("add_shape", {{"kind", "circle"}, {"cx", 5}, {"cy", 5}, {"radius", 2}});
    EXPECT_EQ(Refused("save_drawing", {{"path", "hard.json"}}),
              "cannot write \"hard.json\": cannot be written (a file with other hard links)");
    EXPECT_EQ(Refused("export_document", {{"format", "json"}, {"path", "hard.json"}}),
              "cannot write \"hard.json\": cannot be written (a file with other hard links)");
    EXPECT_EQ(Refused("save_drawing", {{"path", "pipe.json"}}),
              "cannot write \"pipe.json\": cannot be written (not a regular file)");
    EXPECT_EQ(Refused("export_document", {{"format", "json"}, {"path", "pipe.json"}}),
              "cannot write \"pipe.json\": cannot be written (not a regular file)");
    EXPECT_EQ(Refused("load_drawing", {{"path", "pipe.json"}}), "no file \"pipe.json\" in the files folder");
    std::ifstream in(outside);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "{}");
    EXPECT_TRUE(fs::is_fifo(Folder() / "root" / "pipe.json"));
}

TEST_F(FilesRootTest, LoadingNamesTheEntriesItSkipped) {
    std::ofstream(Folder() / "root" / "odd.json") << R"({"Items":[{"Type":2},"stray"]})";
    const TJSON loaded = Ok("load_drawing", {{"path", "odd.json"}});
    EXPECT_EQ(loaded["items_count"], 1);
    ASSERT_EQ(loaded["warnings"].size(), 1u);
    EXPECT_NE(
        loaded["warnings"][0].get<std::string>().find("Items[1] is a string, not an item object; skipped"),
        std::string::npos);
}

TEST_F(FilesRootTest, LoadingAMissingOrBrokenFileLeavesTheDrawing) {
    Ok("add_shape", {{"kind", "circle"}, {"cx", 5}, {"cy", 5}, {"radius", 2}});
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
    const TJSON png = Call("export_document", {{"format", "png"}});
    ASSERT_FALSE(png.value("isError", false)) << png.dump();
    EXPECT_EQ(png["content"][0]["type"], "image");
    EXPECT_EQ(png["content"][0]["mimeType"], "image/png");
    EXPECT_TRUE(
        png["content"][0]["data"].get<std::string>().starts_with("iVBORw0KGgo"));  // the PNG signature
    const TJSON pdf = Call("export_document", {{"format", "pdf"}});
    ASSERT_FALSE(pdf.value("isError", false)) << pdf.dump();
    EXPECT_EQ(pdf["content"][0]["resource"]["mimeType"], "application/pdf");
    EXPECT_TRUE(pdf["content"][0]["resource"]["blob"].get<std::string>().starts_with("JVBERi"));  // "%PDF"
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
    EXPECT_EQ(
        Text(bad),
        "Error: the diagram has errors; fix them and load it again:\ntext: error DIAGRAM_NOT_RECOGNIZED: The "
        "text is not a diagram: it has no statements.");
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

    // With preview, items, diagnostics and the picture come back in one answer.
    const TJSON seen =
        Call("load_diagram", {{"text", "flowchart TD\n  A --> B\n"}, {"preview", true}, {"mode", "add"}});
    ASSERT_FALSE(seen.value("isError", false)) << seen.dump();
    EXPECT_EQ(seen["structuredContent"]["items_created"], 2);
    EXPECT_TRUE(seen["structuredContent"]["diagnostics"].is_array());
    EXPECT_EQ(seen["structuredContent"]["preview"]["format"], "png");
    EXPECT_EQ(seen["structuredContent"]["preview"]["item_count"], 4);
    ASSERT_EQ(seen["content"].size(), 2u);
    EXPECT_EQ(seen["content"][1]["mimeType"], "image/png");
    QVLSetDiagramLoader(saved);
}

TEST_F(InlineFilesTest, RenderPreviewStaysWithinItsByteBudget) {
    for (int i = 0; i < 12; ++i)
        Ok("add_flow",
           {{"x", 10 + 15 * (i % 4)}, {"y", 10 + 20 * (i / 4)}, {"text", "Step " + std::to_string(i)}});
    const TJSON full = Call("render_preview");
    ASSERT_FALSE(full.value("isError", false)) << full.dump();
    EXPECT_EQ(full["content"][0]["type"], "image");
    EXPECT_EQ(full["structuredContent"]["format"], "png");
    EXPECT_EQ(full["structuredContent"]["scale"], 1.0);
    EXPECT_EQ(full["structuredContent"]["item_count"], 12);
    EXPECT_EQ(TJSON::parse(full["content"][1]["text"].get<std::string>()), full["structuredContent"]);

    constexpr std::int64_t kBudget = 10'000;
    const TJSON large = Ok("render_preview", {{"scale", 4}});
    ASSERT_GT(large["byte_size"].get<std::int64_t>(), kBudget);
    const TJSON fitted = Call("render_preview", {{"scale", 4}, {"max_bytes", kBudget}});
    ASSERT_FALSE(fitted.value("isError", false)) << fitted.dump();
    EXPECT_LE(fitted["structuredContent"]["byte_size"].get<std::int64_t>(), kBudget);
    EXPECT_LT(fitted["structuredContent"]["scale"].get<double>(), 4.0);  // shrunk to fit the budget
}

}  // namespace
}  // namespace Orvex::Testing
