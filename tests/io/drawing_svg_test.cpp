#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/items/line_items.h"
#include "orvex/items/shape_items.h"

namespace Orvex {
namespace {

std::size_t Count(const std::string& text, const std::string& what) {
    std::size_t n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

TEST(DrawingSvg, ViewBoxCoversTheLabelAndEveryItem) {
    TORXHeadlessLabel doc;
    doc.Measure().fLabelWidth = 50000;
    doc.Measure().fLabelHeight = 20000;
    auto* line = doc.CreateItem(TQVLItemType::itLine);
    line->SetBase(1, -5000, 10000);
    line->SetBase(2, 80000, 10000);  // along an axis: no area, still counted
    const std::string svg = doc.SVG(TQVLExportSVG::esFile, 1.0f, false);
    EXPECT_EQ(
        svg.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
                  "version=\"1.1\" width=\"85.1mm\" height=\"20mm\" viewBox=\"-5.05 0 85.1 20\">",
                  0),
        0u)
        << svg;
    // On a 1:10 drawing the same extent is a tenth of the size on paper, and pens are ten times wider.
    doc.Measure().fDrawScale = 10;
    const std::string scaled = doc.SVG(TQVLExportSVG::esEmbedded, 1.0f, false);
    EXPECT_EQ(scaled.rfind("<svg ", 0), 0u);
    EXPECT_NE(scaled.find("width=\"50.55mm\" height=\"20mm\" viewBox=\"-5.5 0 505.5 200\""),
              std::string::npos)
        << scaled;
    EXPECT_NE(scaled.find("stroke-width=\"1\""), std::string::npos);
}

TEST(DrawingSvg, LayersBecomeGroupsAndHiddenOnesAreLeftOut) {
    TORXHeadlessLabel doc;
    doc.GetLayer(1)->fName = "Outline & <edges>";
    TORXLayer* hidden = doc.AddLayer();
    hidden->fOptions.Exclude(TQVLayerOp::lopVisible);
    TORXLayer* notes = doc.AddLayer();
    notes->fName = "Notes";
    const auto arrow = [&](TORXLayer* layer) {
        auto* item = dynamic_cast<TORXBaseArrowLine*>(doc.CreateItem(TQVLItemType::itArrowLine));
        item->SetBase(2, 10000, 10000);
        item->SetLayer(layer);
        return item;
    };
    arrow(doc.GetLayer(1));
    arrow(hidden);
    arrow(notes);
    arrow(doc.GetLayer(1))->SetOptions(kDefaultItemOptions - TQVLayerOpts{TQVLayerOp::lopExport});
    arrow(doc.GetLayer(1));
    doc.Measure().fLabelName = "Plate";
    doc.BackSurf().fColor = 0xFFFFFFF0;
    const std::string svg = doc.SVG(TQVLExportSVG::esFile, 1.0f, true);
    EXPECT_NE(svg.find("<title>Plate</title>"), std::string::npos);
    EXPECT_NE(svg.find("fill=\"#FFFFF0\"/>\n<g id=\"layer1\" data-name=\"Outline &amp; &lt;edges&gt;\">"),
              std::string::npos)
        << svg;
    EXPECT_NE(svg.find("<g id=\"layer3\" data-name=\"Notes\">"), std::string::npos);
    EXPECT_NE(svg.find("<g id=\"layer1-2\""), std::string::npos);  // layer 1 again, after the notes
    EXPECT_EQ(svg.find("layer2"), std::string::npos);
    EXPECT_EQ(Count(svg, "<path d=\"M0,0 L10,10\""), 3u);
    EXPECT_EQ(Count(svg, "<marker "), 1u);  // one definition serves every arrow head alike
    EXPECT_EQ(Count(svg, "<g "), Count(svg, "</g>"));
}

// [SECTION] The command line and the bundled drawings

struct TRun {
    int Status;
    std::string Out;
};

TRun Shell(const std::string& command) {
    TRun run{-1, {}};
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return run;
    char buffer[512];
    while (fgets(buffer, sizeof buffer, pipe) != nullptr) run.Out += buffer;
    const int status = pclose(pipe);
    run.Status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

class DrawingSvgCli : public ::testing::Test {
  protected:
    void SetUp() override {
        fDir = std::filesystem::temp_directory_path() /
               ("orvex_svg_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(fDir);
    }
    void TearDown() override { std::filesystem::remove_all(fDir); }
    std::filesystem::path fDir;
};

TEST_F(DrawingSvgCli, UnknownOutputExtensionIsAUsageError) {
    const std::string example = std::string(ORVEX_SOURCE_DIR) + "/examples/drawings/bracket.json";
    const auto out = fDir / "out.txt";
    const TRun run = Shell(std::string(ORVEX_CLI_PATH) + " convert " + example + " -o " + out.string());
    EXPECT_EQ(run.Status, 2);
    EXPECT_EQ(run.Out,
              "orvex: " + out.string() + ": unknown output format (use .json, .svg, .png or .pdf)\n");
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(DrawingSvgCli, EveryExampleConvertsToSvgThatLibrsvgRenders) {
    const bool rsvg = Shell("command -v rsvg-convert").Status == 0;
    int examples = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::string(ORVEX_SOURCE_DIR) + "/examples/drawings")) {
        if (entry.path().extension() != ".json") continue;
        SCOPED_TRACE(entry.path().filename().string());
        ++examples;
        const auto svg = fDir / (entry.path().stem().string() + ".SVG");  // the extension ignores case
        const TRun run =
            Shell(std::string(ORVEX_CLI_PATH) + " convert " + entry.path().string() + " -o " + svg.string());
        ASSERT_EQ(run.Status, 0) << run.Out;
        std::ifstream file(svg);
        std::stringstream text;
        text << file.rdbuf();
        EXPECT_EQ(text.str().rfind("<?xml", 0), 0u);
        EXPECT_NE(text.str().find("</svg>\n"), std::string::npos);
        if (!rsvg) continue;
        const auto png = fDir / (entry.path().stem().string() + ".png");
        const TRun render = Shell("rsvg-convert -o " + png.string() + " " + svg.string());
        EXPECT_EQ(render.Status, 0) << render.Out;
        EXPECT_GT(std::filesystem::file_size(png), 0u);
    }
    EXPECT_GE(examples, 2);
}

}  // namespace
}  // namespace Orvex
