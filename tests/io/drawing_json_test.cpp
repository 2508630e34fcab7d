#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "host/paint/cairo_label.h"
#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"

namespace Orvex {
namespace {

std::vector<std::string> Keys(const TJSON& obj) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : obj.items()) keys.push_back(key);
    return keys;
}

TJSON Envelope(int mode, TJSON items) {
    return TJSON{{"Version", 3200},
                 {"EditorMode", mode},
                 {"Units", 0},
                 {"Angle", 0},
                 {"Layers", TJSON::array({TJSON{{"Name", "A"}}, TJSON{{"Name", "B"}}, TJSON{{"Name", "C"}}})},
                 {"Items", std::move(items)}};
}

TJSON Points(int n) {
    TJSON points = TJSON::array();
    for (int i = 0; i < n; ++i) points.push_back(TJSON{{"X", i + 0.5}, {"Y", 2 * i}});
    return points;
}

TEST(DrawingJsonTest, EnvelopeAndCommonKeysComeInTheirOrder) {
    TORXHeadlessLabel doc;
    doc.SetEditorMode(TQVLEditorMode::emDrawing);
    doc.CreateItem(TQVLItemType::itPoint);  // a kind without keys of its own
    doc.AddCounter()->fName = "N";
    const TJSON obj = doc.GetJson();
    EXPECT_EQ(Keys(obj), (std::vector<std::string>{"Version", "EditorMode", "Units", "Angle", "Measures",
                                                   "BackSurface", "Settings", "PrintInfo", "Data", "Symbols",
                                                   "Layers", "DimStyles", "Counters", "Items"}));
    EXPECT_EQ(obj["Version"], 3200);
    EXPECT_EQ(Keys(obj["Items"][0]),
              (std::vector<std::string>{"Type", "TypeName", "InID", "ID", "Layer", "Angle", "Color",
                                        "PenWidth", "Options", "Points"}));
    EXPECT_EQ(Keys(obj["Items"][0]["Color"]), (std::vector<std::string>{"R", "G", "B", "A"}));
    EXPECT_EQ(Keys(obj["Settings"]),
              (std::vector<std::string>{"TermColor", "FillTermColor", "TermSize", "LinkGap"}));
    EXPECT_EQ(Keys(obj["PrintInfo"]),
              (std::vector<std::string>{"NumLabels", "Repetition", "PrinterOrientation"}));
    EXPECT_EQ(Keys(obj["Counters"][0]), (std::vector<std::string>{"Name", "NumFrom", "NumTo", "Step",
                                                                  "Repeat", "Format", "Before", "After"}));
    EXPECT_EQ(Keys(obj["Layers"][0]).size(), 11u);
    EXPECT_EQ(Keys(obj["DimStyles"][0]).size(), 24u);
    EXPECT_EQ(Keys(obj["Measures"]).size(), 26u);
    EXPECT_EQ(Keys(obj["Data"]).size(), 13u);
}

TEST(DrawingJsonTest, LabellingModeWritesAndReadsNoDimStyles) {
    TORXHeadlessLabel doc;
    EXPECT_FALSE(doc.GetJson().contains("DimStyles"));
    TJSON file = Envelope(0, TJSON::array());
    file["DimStyles"] =
        TJSON::array({TJSON{{"ID", 4}, {"Name", "Mine"}}, TJSON{{"ID", 5}, {"Name", "Other"}}});
    doc.ReadJson(file);
    ASSERT_EQ(doc.GetDimStylesCount(), 1);
    EXPECT_EQ(doc.GetDimStyle(1)->fName, "Default");
    file["EditorMode"] = 2;
    doc.ReadJson(file);
    ASSERT_EQ(doc.GetDimStylesCount(), 2);
    EXPECT_EQ(doc.GetDimStyle(1)->fName, "Mine");
    EXPECT_EQ(doc.GetDimStyleById(5)->fName, "Other");
}

TEST(DrawingJsonTest, OldFilesHaveNoDocumentAngle) {
    TORXHeadlessLabel doc;
    TJSON file = Envelope(0, TJSON::array());
    file["Angle"] = 2;
    file["Version"] = 3000;
    doc.ReadJson(file);
    EXPECT_EQ(doc.Angle(), TQVLAngle::ag0);
    file["Version"] = 3100;
    doc.ReadJson(file);
    EXPECT_EQ(doc.Angle(), TQVLAngle::ag180);
}

TEST(DrawingJsonTest, PointListsTakeTheirLengthFixedKindsKeepTheirs) {
    TORXHeadlessLabel doc;
    doc.ReadJson(Envelope(0, TJSON::array({TJSON{{"Type", 4}, {"InID", 1}, {"Points", Points(5)}},
                                           TJSON{{"Type", 2}, {"InID", 2}, {"Points", Points(3)}},
                                           TJSON{{"Type", 3}, {"InID", 3}, {"Points", Points(1)}}})));
    ASSERT_EQ(doc.GetItemsCount(), 3);
    EXPECT_EQ(doc.GetItem(0)->NumPoints(), 5);
    EXPECT_EQ(doc.GetItem(0)->GetPoint(5), (TQVLPto{4500, 8000}));
    EXPECT_EQ(doc.GetItem(1)->NumPoints(), 2);
    EXPECT_EQ(doc.GetItem(2)->NumPoints(), 4);  // the rest keep their created values
    EXPECT_EQ(doc.GetItem(2)->GetPoint(1), (TQVLPto{500, 0}));
    EXPECT_EQ(doc.GetItem(2)->GetPoint(2), (TQVLPto{0, 0}));
    EXPECT_TRUE(doc.IsUndoEmpty());  // reading records nothing
}

TEST(DrawingJsonTest, LayerIndexOutOfRangeFallsBackToLayerOne) {
    TORXHeadlessLabel doc;
    doc.ReadJson(
        Envelope(0, TJSON::array({TJSON{{"Type", 2}, {"Layer", 7}}, TJSON{{"Type", 2}, {"Layer", -1}},
                                  TJSON{{"Type", 2}, {"Layer", 2}}, TJSON{{"Type", 2}}})));
    ASSERT_EQ(doc.GetLayersCount(), 3);
    // The read ends sorted by layer: the three items that fell back to layer 1 come first.
    EXPECT_EQ(doc.GetItem(0)->Layer(), doc.GetLayer(1));
    EXPECT_EQ(doc.GetItem(1)->Layer(), doc.GetLayer(1));
    EXPECT_EQ(doc.GetItem(2)->Layer(), doc.GetLayer(1));
    EXPECT_EQ(doc.GetItem(3)->Layer(), doc.GetLayer(3));
}

TEST(DrawingJsonTest, IdsReadRaiseTheCounter) {
    TORXHeadlessLabel doc;
    doc.ReadJson(Envelope(0, TJSON::array({TJSON{{"Type", 2}, {"InID", 41}, {"ID", "Line041"}},
                                           TJSON{{"Type", 2}, {"InID", 7}, {"ID", "Line007"}}})));
    EXPECT_GE(doc.CreateItem(TQVLItemType::itLine)->InID(), 42);
    EXPECT_EQ(doc.GetItem(0)->ID(), "Line041");
}

TEST(DrawingJsonTest, SymbolItemsHaveNoLookKeys) {
    TORXHeadlessLabel doc;
    const TJSON symbol = doc.CreateItem(TQVLItemType::itSymbol)->WriteJson();
    EXPECT_FALSE(symbol.contains("Angle"));
    EXPECT_FALSE(symbol.contains("Color"));
    EXPECT_FALSE(symbol.contains("PenWidth"));
    EXPECT_TRUE(symbol.contains("Options"));

    // Nor does a symbol read from an object that has them, or they would pass through as unknown keys.
    doc.ReadJson(Envelope(2, TJSON::array({TJSON{{"Type", 24},
                                                 {"Angle", 1},
                                                 {"Color", TJSONUtils::SetAlphaColor(0xFF0000FF)},
                                                 {"PenWidth", 0.5},
                                                 {"Symbol", "Valve"}}})));
    ASSERT_EQ(doc.GetItemsCount(), 1);
    const TJSON read = doc.GetItem(0)->WriteJson();
    EXPECT_FALSE(read.contains("Angle"));
    EXPECT_FALSE(read.contains("Color"));
    EXPECT_FALSE(read.contains("PenWidth"));
    EXPECT_EQ(read["Symbol"], "Valve");
}

TEST(DrawingJsonTest, ColourComponentsDefaultToZeroAlphaIncluded) {
    struct TCase {
        const char* Name;
        TJSON Obj;
        TAlphaColor Expected;
    };
    const TCase cases[] = {
        {"no alpha", TJSON{{"R", 255}, {"G", 128}, {"B", 1}}, 0x00FF8001},
        {"no red", TJSON{{"G", 2}, {"B", 3}, {"A", 255}}, 0xFF000203},
        {"empty", TJSON::object(), 0},
        {"wrong types", TJSON{{"R", "x"}, {"G", true}, {"A", 300}}, 0xFF000100},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        EXPECT_EQ(TJSONUtils::GetAlphaColor(c.Obj), c.Expected);
    }
    EXPECT_EQ(TJSONUtils::SetAlphaColor(0x80102030).dump(), R"({"R":16,"G":32,"B":48,"A":128})");
}

TEST(DrawingJsonTest, ReadingIsTolerantOfMissingAndMistypedKeys) {
    TORXHeadlessLabel doc;
    TJSON file{{"Version", "new"},
               {"Units", "mm"},
               {"Layers", 5},
               {"Measures", TJSON::array()},
               {"Items", TJSON::array({TJSON{{"Type", 2}, {"Points", "none"}, {"Options", 1}},
                                       TJSON{{"Type", 99}}, TJSON{{"Type", "Line"}}, 17})}};
    doc.ReadJson(file);
    EXPECT_EQ(doc.GetLayersCount(), 1);  // items need a layer: one is made
    EXPECT_EQ(doc.Units(), TQVLUnits::unMM);
    // Kind 99 and the bare number are skipped, each with a warning naming it; a mistyped kind reads as 0.
    ASSERT_EQ(doc.GetItemsCount(), 2);
    EXPECT_TRUE(doc.GetItem(0)->Options().IsEmpty());
    EXPECT_EQ(doc.GetItem(1)->ItemType(), TQVLItemType::itUndefined);
    EXPECT_EQ(doc.ReadWarnings(),
              (std::vector<std::string>{"Items[1] has the unknown item type 99; skipped",
                                        "Items[3] is a number, not an item object; skipped"}));
}

TEST(DrawingJsonTest, PointsAreInTheDocumentUnitRoundedToThreeDecimals) {
    TORXHeadlessLabel doc;
    doc.SetUnits(TQVLUnits::unINCH);
    TORXBaseItem* line = doc.CreateItem(TQVLItemType::itLine);
    line->SetBase(1, 25400, 1000);
    line->SetPenWidth(123);
    const TJSON obj = line->WriteJson();
    EXPECT_EQ(obj["Points"][0].dump(), R"({"X":1.0,"Y":0.039})");
    EXPECT_EQ(obj["PenWidth"].dump(), "0.123");
}

TEST(DrawingJsonTest, PrintInfoIsWrittenButNotRead) {
    TORXHeadlessLabel doc;
    TJSON file = Envelope(0, TJSON::array());
    file["PrintInfo"] = TJSON{{"NumLabels", 9}, {"Repetition", 4}, {"PrinterOrientation", 1}};
    doc.ReadJson(file);
    EXPECT_EQ(doc.PrintInfo().fNumLabels, 1);
    doc.PrintInfo().fNumLabels = 3;
    EXPECT_EQ(doc.GetJson()["PrintInfo"]["NumLabels"], 3);
}

TEST(DrawingJsonTest, WritingWhatWasReadGivesTheSameText) {
    TORXHeadlessLabel built;
    built.SetEditorMode(TQVLEditorMode::emDrawing);
    built.SetUnits(TQVLUnits::unCM);
    built.AddLayer()->fOptions.Include(TQVLayerOp::lopImage);
    built.Measure().fTitle = "Plan \"A\" — ü";
    built.Data().fValList = {"one", "two"};
    built.AddCounter()->fName = "Serial";
    built.AddSymbol()->ReadJson(TJSON{{"Name", "Valve"}, {"Items", TJSON::array()}});
    TORXBaseItem* poly = built.CreateItem(TQVLItemType::itPolyLine);
    poly->InsertPoint(1234, 5678, 1);
    poly->InsertPoint(-10, 3, 2);
    auto* box = dynamic_cast<TORX2DItem*>(built.CreateItem(TQVLItemType::itRectangle));
    box->SetBackColor(0x80FF0000);
    box->SetFilled(true);
    box->SetLayer(built.GetLayer(2));
    const std::string first = built.GetJsonString(2);

    TORXHeadlessLabel read;
    read.ReadJson(TJSON::parse(first));
    EXPECT_EQ(read.GetJsonString(2), first);
    EXPECT_EQ(read.BackImageLayer(), 2);
}

TEST(DrawingJsonTest, KindKeysTheFamilyDoesNotKnowPassThrough) {
    TORXHeadlessLabel doc;
    const TJSON text{{"Type", 16}, {"InID", 1}, {"ID", "Image001"}, {"Text", "Hello"}, {"FontHeight", 5}};
    doc.ReadJson(Envelope(0, TJSON::array({text})));
    const TJSON out = doc.GetItem(0)->WriteJson();
    EXPECT_EQ(out["Text"], "Hello");
    EXPECT_EQ(out["FontHeight"], 5);
    EXPECT_EQ(Keys(out).back(), "FontHeight");
}

TEST(DrawingFileTest, NotJsonOrNotAnObjectIsRefusedAndTheDocumentKept) {
    TORXHeadlessLabel doc;
    doc.CreateItem(TQVLItemType::itLine);
    const auto notJson = LoadDrawingText("{oops", "a.json", doc);
    EXPECT_EQ(notJson.Code, QVLErr::kNoJson);
    EXPECT_EQ(notJson.Message, "a.json: not a JSON document");
    const auto array = LoadDrawingText("[1, 2]", "b.json", doc);
    EXPECT_EQ(array.Message, "b.json: not a JSON object");
    EXPECT_EQ(doc.GetItemsCount(), 1);
    EXPECT_EQ(LoadDrawingFile("/nonexistent/c.json", doc).Code, QVLErr::kNoFile);
}

TEST(DrawingFileTest, ExampleDrawingIsAFixedPoint) {
    const std::string path = std::string(ORVEX_SOURCE_DIR) + "/examples/drawings/bracket.json";
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    // The examples are written by the orvex command, which measures texts with Pango.
    const TPangoMetricsScope metrics;
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDrawingFile(path, doc));
    EXPECT_EQ(doc.GetJsonString(2) + "\n", text.str());
    const TQVLDrawingSummary s = SummarizeDrawing(doc);
    EXPECT_EQ(s.Mode, TQVLEditorMode::emDrawing);
    EXPECT_EQ(s.Items, 4);
    EXPECT_EQ(s.ItemsByKind.at("Polyline"), 1);
}

}  // namespace
}  // namespace Orvex
