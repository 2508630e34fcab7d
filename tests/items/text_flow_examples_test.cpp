// The example drawings of labelling and flowchart mode: they load, write back byte for byte, hold every
// text, flow and link kind, and their SVG is well-formed enough for a real renderer.
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "host/paint/cairo_label.h"
#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/io/json.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"

namespace Orvex {
namespace {

std::string ReadText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// The first tag that names an attribute twice (XML forbids it and viewers reject the file), or "".
std::string DuplicateAttribute(const std::string& svg) {
    for (std::size_t pos = svg.find('<'); pos != std::string::npos; pos = svg.find('<', pos + 1)) {
        const std::size_t end = svg.find('>', pos);
        if (end == std::string::npos) return "unterminated tag";
        const std::string tag = svg.substr(pos, end - pos);
        std::set<std::string> names;
        std::size_t at = tag.find(' ');
        while (at != std::string::npos) {
            const std::size_t eq = tag.find('=', at);
            if (eq == std::string::npos) break;
            std::string name = tag.substr(at + 1, eq - at - 1);
            name.erase(0, name.find_first_not_of(' '));
            if (!names.insert(name).second) return tag;
            const std::size_t open = tag.find('"', eq);
            const std::size_t close = open == std::string::npos ? open : tag.find('"', open + 1);
            if (close == std::string::npos) return tag;
            at = tag.find(' ', close);
        }
    }
    return {};
}

struct TExample {
    const char* File;
    TQVLEditorMode Mode;
};

class TextFlowExamplesTest : public ::testing::TestWithParam<TExample> {};

TEST_P(TextFlowExamplesTest, LoadsWritesBackAndRendersAsSvg) {
    const std::string path = std::string(ORVEX_SOURCE_DIR) + "/examples/drawings/" + GetParam().File;
    // The examples are written by the orvex command, which measures texts with Pango.
    const TPangoMetricsScope metrics;
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDrawingFile(path, doc)) << path;
    EXPECT_EQ(doc.EditorMode(), GetParam().Mode);
    const std::string saved = (std::filesystem::temp_directory_path() / GetParam().File).string();
    ASSERT_TRUE(SaveDrawingFile(saved, doc));
    EXPECT_EQ(ReadText(saved), ReadText(path));

    const std::string svg = doc.SVG(TQVLExportSVG::esFile, 1.0f, false);
    EXPECT_EQ(DuplicateAttribute(svg), "");
    if (std::system("command -v rsvg-convert > /dev/null 2>&1") != 0) GTEST_SKIP() << "no rsvg-convert";
    const std::string svgFile = saved + ".svg";
    ASSERT_TRUE(doc.SaveSVG(svgFile, TQVLExportSVG::esFile, 1.0f, false));
    const std::string command = "rsvg-convert -o \"" + saved + ".png\" \"" + svgFile + "\" 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << svgFile;
}

INSTANTIATE_TEST_SUITE_P(Drawings, TextFlowExamplesTest,
                         ::testing::Values(TExample{"shipping_label.json", TQVLEditorMode::emLabelling},
                                           TExample{"order_process.json", TQVLEditorMode::emFlowChart}),
                         [](const ::testing::TestParamInfo<TExample>& aInfo) {
                             std::string name = aInfo.param.File;
                             for (char& c : name)
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             return name;
                         });

TEST(TextFlowExamplesKindsTest, BetweenThemTheExamplesUseEveryKind) {
    std::set<TQVLItemType> kinds;
    std::set<TQVLFlowType> shapes;
    std::set<TQVLinkType> courses;
    bool terminators = false;
    for (const char* file : {"shipping_label.json", "order_process.json"}) {
        TORXHeadlessLabel doc;
        ASSERT_TRUE(LoadDrawingFile(std::string(ORVEX_SOURCE_DIR) + "/examples/drawings/" + file, doc));
        for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i) {
            const TORXBaseItem* item = doc.GetItem(i);
            kinds.insert(item->ItemType());
            if (const auto* flow = dynamic_cast<const TORXBaseFlow*>(item)) shapes.insert(flow->FlowType());
            if (const auto* link = dynamic_cast<const TORXBaseLink*>(item)) {
                courses.insert(link->LinkType());
                terminators = terminators || link->ToType() != TQVLTermType::ttNone;
                EXPECT_NE(link->FromFlow(), nullptr);  // bound after the read
                EXPECT_NE(link->ToFlow(), nullptr);
            }
        }
    }
    for (auto kind : {TQVLItemType::itText, TQVLItemType::itPara, TQVLItemType::itPolyText,
                      TQVLItemType::itRichText, TQVLItemType::itFlow, TQVLItemType::itLink})
        EXPECT_TRUE(kinds.count(kind)) << static_cast<int>(kind);
    EXPECT_GE(shapes.size(), 6u);
    EXPECT_EQ(courses.size(), static_cast<std::size_t>(kLinkTypeCount));
    EXPECT_TRUE(terminators);
}

}  // namespace
}  // namespace Orvex
