// Drawing files and JSON texts written to hurt: nesting far past any real drawing, coordinates far out of
// range, entries of the wrong shape. None may crash the reader or a writer, and each refusal says why.
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "orvex/core/numeric.h"
#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/io/json_text.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/svg_style.h"

namespace Orvex {
namespace {

std::string Nested(std::size_t aDepth) {
    return std::string(aDepth, '[') + std::string(aDepth, ']');
}

// A tree nested aDepth arrays deep, built by moves only (a copy would recurse once per level).
TJSON DeepTree(std::size_t aDepth) {
    TJSON value = TJSON::array();
    for (std::size_t i = 1; i < aDepth; ++i) {
        TJSON outer = TJSON::array();
        outer.push_back(std::move(value));
        value = std::move(outer);
    }
    return value;
}

TEST(JsonTextTest, DepthAndSizeAreLimitedBeforeParsing) {
    EXPECT_TRUE(ParseJsonText(Nested(kJSONMaxDepth)));
    const TJSONTextResult deep = ParseJsonText(Nested(kJSONMaxDepth + 1));
    EXPECT_EQ(deep.Error, TJSONTextError::jeTooDeep);
    EXPECT_EQ(deep.Message, "nested deeper than 512 levels");
    EXPECT_TRUE(deep.Value.is_discarded());
    // Brackets inside strings, escaped quotes included, are text, not nesting.
    EXPECT_TRUE(ParseJsonText(R"({"a":")" + std::string(1000, '[') + R"(\"["})"));

    const TJSONTextResult large = ParseJsonText("[1, 2, 3]", {kJSONMaxDepth, 8});
    EXPECT_EQ(large.Error, TJSONTextError::jeTooLarge);
    EXPECT_EQ(large.Message, "larger than 8 bytes");
    EXPECT_EQ(ParseJsonText("{\"a\":}").Message, "not valid JSON");
    EXPECT_TRUE(ParseJsonOrDiscarded("[1] trailing").is_discarded());

    EXPECT_TRUE(JsonTreeNestingWithin(DeepTree(3), 3));
    EXPECT_FALSE(JsonTreeNestingWithin(DeepTree(4), 3));
    EXPECT_TRUE(JsonTreeNestingWithin(TJSON(5), 0));
}

TEST(HostileDrawingTest, DeeplyNestedFilesAreRefusedAndTheDocumentKept) {
    TORXHeadlessLabel doc;
    doc.CreateItem(TQVLItemType::itLine);
    for (const std::string& text : {R"({"Symbols":[{"Name":"deep","Items":)" + Nested(100000) + "}]}",
                                    R"({"Items":[{"Type":2,"Extra":)" + Nested(100000) + "}]}"}) {
        const TQVLFileResult loaded = LoadDrawingText(text, "deep.json", doc);
        EXPECT_EQ(loaded.Code, QVLErr::kLimit);
        EXPECT_EQ(loaded.Message, "deep.json: not read: nested deeper than 512 levels");
    }
    EXPECT_EQ(doc.GetItemsCount(), 1);
}

// A tree handed over by a program never went through a text parser: the reader keeps the symbol empty
// rather than keep a value it could not write back out.
TEST(HostileDrawingTest, ADeepSymbolTreeIsReadAsEmptyWithAWarning) {
    TORXHeadlessLabel doc;
    TJSON symbol = TJSON::object();
    symbol["Name"] = "deep";
    symbol["Items"] = DeepTree(100000);
    TJSON file = TJSON::object();
    file["Version"] = 3200;
    file["Symbols"] = TJSON::array();
    file["Symbols"].push_back(std::move(symbol));
    file["Symbols"].push_back(TJSON{{"Name", "plain"}});
    file["Symbols"].push_back(7);
    doc.ReadJson(file);
    ASSERT_EQ(doc.GetSymbolsCount(), 3);
    EXPECT_EQ(doc.GetSymbol(1)->WriteJson(), TJSON::object());
    EXPECT_EQ(doc.GetSymbol(2)->Name(), "plain");
    EXPECT_EQ(doc.ReadWarnings(),
              (std::vector<std::string>{"Symbols[0] nests deeper than 512 levels; read as empty",
                                        "Symbols[2] is a number, not an object; read as empty"}));
    EXPECT_FALSE(doc.GetJsonString().empty());
}

TEST(HostileDrawingTest, UnusableItemsAreNamedInTheLoadWarnings) {
    TORXHeadlessLabel doc;
    const auto loaded = LoadDrawingText(
        R"({"Items":[null,"text",[1],{"Type":2},{"Type":300},{"Type":99,"TypeName":"Hologram"},true]})",
        "w.json", doc);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(doc.GetItemsCount(), 1);
    EXPECT_EQ(loaded.Value.Warnings,
              (std::vector<std::string>{
                  "w.json: Items[0] is null, not an item object; skipped",
                  "w.json: Items[1] is a string, not an item object; skipped",
                  "w.json: Items[2] is an array, not an item object; skipped",
                  "w.json: Items[4] has the unknown item type 300; skipped",
                  "w.json: Items[5] has the unknown item type 99 (\"Hologram\"); skipped",
                  "w.json: Items[6] is a Boolean, not an item object; skipped",
              }));
    // A clean read clears the warnings of the one before.
    ASSERT_TRUE(LoadDrawingText(R"({"Items":[{"Type":2}]})", "clean.json", doc));
    EXPECT_TRUE(doc.ReadWarnings().empty());
}

TEST(SaturatingMathTest, StopsAtTheRangeInsteadOfWrapping) {
    using namespace Qvl::Utils;
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(SatAdd(kMax, 1), kMax);
    EXPECT_EQ(SatAdd(kMin, -1), kMin);
    EXPECT_EQ(SatAdd(-5, 3), -2);
    EXPECT_EQ(SatSub(kMin, 1), kMin);
    EXPECT_EQ(SatSub(kMax, -1), kMax);
    EXPECT_EQ(SatSub(10, 4), 6);
    EXPECT_EQ(SatMul(kMax / 2, 3), kMax);
    EXPECT_EQ(SatMul(kMax / 2, -3), kMin);
    EXPECT_EQ(SatMul(-7, 6), -42);
    EXPECT_EQ(ClampCoord(kMax), kMaxCoord);
    EXPECT_EQ(ClampCoord(kMin), -kMaxCoord);
    EXPECT_EQ(ClampCoord(-123), -123);
}

// Y = 1e300 once made the text's bounds wrap round to the far negative side; now every coordinate stops at
// the same limit, so the file and the SVG show the same place.
TEST(HostileDrawingTest, FarCoordinatesAreClampedAlikeInEveryOutput) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDrawingText(
        R"({"Version":3200,"Items":[
            {"Type":10,"Text":"far","PaddingY":1e300,"Options":{"Visible":true,"Export":true},
             "Points":[{"X":0,"Y":1e300}]},
            {"Type":6,"Options":{"Visible":true,"Export":true},
             "Points":[{"X":-1e308,"Y":-1e308},{"X":1e308,"Y":1e308}]}]})",
        "far.json", doc));
    ASSERT_EQ(doc.GetItemsCount(), 2);
    const TORXBaseItem& text = *doc.GetItem(0);
    EXPECT_EQ(text.GetPointY(1), Qvl::Utils::kMaxCoord);
    for (std::int32_t i = 1; i <= text.NumPoints(); ++i) {
        EXPECT_LE(std::abs(text.GetPointX(i)), Qvl::Utils::kMaxCoord);
        EXPECT_LE(std::abs(text.GetPointY(i)), Qvl::Utils::kMaxCoord);
    }
    EXPECT_GE(text.BoundsRect().Top, 0);  // no wrap round to the negative side
    // The rectangle's bounds reach the limit (give or take half its pen); nothing wrapped.
    const TQVLRect bounds = doc.ItemsBounds();
    EXPECT_LE(std::abs(bounds.Top + Qvl::Utils::kMaxCoord), 1000);
    EXPECT_LE(std::abs(bounds.Bottom - Qvl::Utils::kMaxCoord), 1000);

    const double limit = TJSONUtils::BaseToUnit(Qvl::Utils::kMaxCoord, TQVLUnits::unMM);
    const TJSON written = doc.GetJson();
    EXPECT_EQ(written["Items"][0]["Points"][0]["Y"], limit);
    EXPECT_EQ(written["Items"][1]["Points"][0]["X"], -limit);
    EXPECT_EQ(written["Items"][1]["Points"][1]["Y"], limit);
    const std::string svg = doc.SVG(TQVLExportSVG::esFile, 1.0f, false);
    const std::string far = SvgLength(Qvl::Utils::kMaxCoord, TQVLUnits::unMM);
    EXPECT_NE(svg.find("\"-" + far + "\""), std::string::npos) << svg;

    // What was written reads back to the same place.
    TORXHeadlessLabel again;
    ASSERT_TRUE(LoadDrawingText(doc.GetJsonString(), "again.json", again));
    EXPECT_EQ(again.GetItem(0)->GetPointY(1), text.GetPointY(1));
}

}  // namespace
}  // namespace Orvex
