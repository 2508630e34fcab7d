#include <gtest/gtest.h>

#include <cmath>
#include <locale>
#include <numbers>

#include "orvex/document/document.h"
#include "orvex/items/line_items.h"
#include "orvex/items/number_format.h"
#include "tests/items/item_test_support.h"

namespace Orvex {
namespace {

using namespace ItemTest;

std::vector<std::string> KindKeys(const TJSON& obj) {
    std::vector<std::string> keys;
    bool after = false;
    for (const auto& [key, value] : obj.items()) {
        if (after) keys.push_back(key);
        if (key == "Points") after = true;
    }
    return keys;
}

TEST(LineItems, KindKeysFollowTheCommonKeysInOrder) {
    TORXHeadlessLabel doc;
    using K = std::vector<std::string>;
    const K term{"FromType", "ToType", "FromColor", "ToColor", "SizeFrom", "SizeTo"};
    const auto with = [&](K head, const K& tail) {
        head.insert(head.end(), tail.begin(), tail.end());
        return head;
    };
    EXPECT_EQ(KindKeys(doc.CreateItem(TQVLItemType::itLine)->WriteJson()), K{"LineType"});
    EXPECT_EQ(KindKeys(doc.CreateItem(TQVLItemType::itPolyLine)->WriteJson()), with({"LineType"}, term));
    EXPECT_EQ(KindKeys(doc.CreateItem(TQVLItemType::itArc)->WriteJson()),
              with({"LineType", "StartAngle", "EndAngle", "SweepAngle", "ClockWise"}, term));
    EXPECT_EQ(KindKeys(doc.CreateItem(TQVLItemType::itArrowLine)->WriteJson()),
              with(with({"LineType"}, term),
                   {"Text", "Font", "FontHeight", "FontColor", "Bold", "Italic", "Underline", "Strikeout",
                    "TextAngle", "TextPos", "TextMeasure", "Format", "Data", "Field", "FillType", "Name"}));
    EXPECT_EQ(KindKeys(doc.CreateItem(TQVLItemType::itDim)->WriteJson()),
              (K{"DimType", "DimExt", "IdDimStyle", "Text", "TextAngle", "TextMeasure"}));
}

TEST(LineItems, TheLayerConstructorPlacesTheNewItem) {
    TORXHeadlessLabel doc;
    TORXLayer* second = doc.AddLayer();
    auto* dim = doc.AddNew<THeadlessItem<TORXBaseDim>>(second, false);
    EXPECT_EQ(dim->Layer(), second);
    EXPECT_EQ(doc.GetItem(doc.GetItemsCount() - 1), dim);
    EXPECT_EQ(dim->NumPoints(), 10);
}

TEST(LineItems, EveryKindReadsBackWhatItWrote) {
    TORXHeadlessLabel doc;
    doc.SetEditorMode(TQVLEditorMode::emDrawing);
    auto* line = Create<TORXBaseLine>(doc, TQVLItemType::itLine);
    line->SetBase(2, 30000, 12345);
    line->SetLineType(TQVLineType::ii41);
    auto* poly = Create<TORXBasePolyLine>(doc, TQVLItemType::itPolyLine);
    for (int i = 0; i < 5; ++i) poly->InsertPoint(1000 * i, 500 * i * i, 99);
    poly->SetToType(TQVLTermType::ttFillRhombus);
    poly->SetToColor(0x80FF0000);
    poly->SetBaseSizeFrom(1250);
    auto* arc = Create<TORXBaseArc>(doc, TQVLItemType::itArc);
    arc->SetCircle(20000, 20000, 5000);
    arc->SetStartAngle(30.5f);
    arc->SetEndAngle(300.0f);
    arc->SetClockWise(true);
    auto* arrow = Create<TORXBaseArrowLine>(doc, TQVLItemType::itArrowLine);
    arrow->SetBase(2, 40000, 0);
    arrow->SetText("A <b> & \"c\"");
    arrow->SetTextPos(TQVLTextPos::tpBelow);
    arrow->SetData(2, "=Price", "0.0");
    auto* dim = Create<TORXBaseDim>(doc, TQVLItemType::itDim);
    dim->SetLinear(TQVDimType::dmtAligned, {0, 0}, {30000, 40000}, -5000);
    dim->SetTextAngle(15.0f);
    ExpectRoundTrip(doc);
    EXPECT_EQ(arc->SweepAngle(), 90.5f);  // clockwise from 30.5 to 300
}

TEST(LineItems, SettersRecordOneUndoStepEach) {
    TORXHeadlessLabel doc;
    const auto term = [](auto fn) { return [fn](TORXBaseItem& i) { fn(dynamic_cast<TORXTermLine&>(i)); }; };
    const auto arrow = [](auto fn) {
        return [fn](TORXBaseItem& i) { fn(dynamic_cast<TORXBaseArrowLine&>(i)); };
    };
    const auto arc = [](auto fn) { return [fn](TORXBaseItem& i) { fn(dynamic_cast<TORXBaseArc&>(i)); }; };
    const auto dim = [](auto fn) { return [fn](TORXBaseItem& i) { fn(dynamic_cast<TORXBaseDim&>(i)); }; };
    auto* a = Create<TORXBaseArrowLine>(doc, TQVLItemType::itArrowLine);
    a->SetBase(2, 20000, 10000);
    const TSetterCase arrowCases[] = {
        {"LineType", term([](TORXTermLine& t) { t.SetLineType(TQVLineType::ii22); })},
        {"FromType", term([](TORXTermLine& t) { t.SetFromType(TQVLTermType::ttCircle); })},
        {"ToType", term([](TORXTermLine& t) { t.SetToType(TQVLTermType::ttCross); })},
        {"FromColor", term([](TORXTermLine& t) { t.SetFromColor(0xFF00FF00); })},
        {"ToColor", term([](TORXTermLine& t) { t.SetToColor(0xFF0000FF); })},
        {"SizeFrom", term([](TORXTermLine& t) { t.SetSizeFrom(4.0f); })},
        {"SizeTo", term([](TORXTermLine& t) { t.SetBaseSizeTo(777); })},
        {"Text", arrow([](TORXBaseArrowLine& l) { l.SetText("hello"); })},
        {"Font", arrow([](TORXBaseArrowLine& l) { l.SetFont("Courier"); })},
        {"FontHeight", arrow([](TORXBaseArrowLine& l) { l.SetFontHeight(7.0f); })},
        {"FontColor", arrow([](TORXBaseArrowLine& l) { l.SetFontColor(0xFF123456); })},
        {"Bold", arrow([](TORXBaseArrowLine& l) { l.SetBold(true); })},
        {"Strikeout", arrow([](TORXBaseArrowLine& l) { l.SetStrikeout(true); })},
        {"TextAngle", arrow([](TORXBaseArrowLine& l) { l.SetTextAngle(45.0f); })},
        {"TextPos", arrow([](TORXBaseArrowLine& l) { l.SetTextPos(TQVLTextPos::tpVert); })},
        {"TextMeasure", arrow([](TORXBaseArrowLine& l) { l.SetTextMeasure(true); })},
        {"Format", arrow([](TORXBaseArrowLine& l) { l.SetFormat("0.000"); })},
        {"Name", arrow([](TORXBaseArrowLine& l) { l.SetDataName("prices"); })},
    };
    for (const auto& c : arrowCases) ExpectSetterUndo(doc, *a, c);

    auto* r = Create<TORXBaseArc>(doc, TQVLItemType::itArc);
    r->SetCircle(10000, 10000, 3000);
    const TSetterCase arcCases[] = {
        {"StartAngle", arc([](TORXBaseArc& x) { x.SetStartAngle(45.0f); })},
        {"EndAngle", arc([](TORXBaseArc& x) { x.SetEndAngle(200.0f); })},
        {"ClockWise", arc([](TORXBaseArc& x) { x.SetClockWise(true); })},
        {"PX", arc([](TORXBaseArc& x) { x.SetPX(1, 5.5f); })},
        {"PY", arc([](TORXBaseArc& x) { x.SetPY(2, 17.0f); })},
    };
    for (const auto& c : arcCases) ExpectSetterUndo(doc, *r, c);

    auto* d = Create<TORXBaseDim>(doc, TQVLItemType::itDim);
    d->SetLinear(TQVDimType::dmtHorz, {0, 0}, {10000, 0}, -5000);
    const TSetterCase dimCases[] = {
        {"DimType", dim([](TORXBaseDim& x) { x.SetDimType(TQVDimType::dmtRadial1); })},
        {"DimExt", dim([](TORXBaseDim& x) { x.SetDimExt(3); })},
        {"IdDimStyle", dim([](TORXBaseDim& x) { x.SetIdDimStyle(9); })},
        {"Text", dim([](TORXBaseDim& x) { x.SetText("typed"); })},
        {"TextAngle", dim([](TORXBaseDim& x) { x.SetTextAngle(90.0f); })},
        {"TextMeasure", dim([](TORXBaseDim& x) { x.SetTextMeasure(false); })},
    };
    for (const auto& c : dimCases) ExpectSetterUndo(doc, *d, c);

    auto* l = Create<TORXBaseLine>(doc, TQVLItemType::itLine);
    ExpectSetterUndo(doc, *l, {"Line LineType", [](TORXBaseItem& i) {
                                   dynamic_cast<TORXBaseLine&>(i).SetLineType(TQVLineType::ii0505);
                               }});
}

// [SECTION] Dimension texts

TQVLPto64 OnCircle(const TQVLPto64& c, double r, double degrees) {
    const double a = degrees * std::numbers::pi / 180.0;
    return {c.X + std::llround(r * std::cos(a)), c.Y + std::llround(r * std::sin(a))};
}

TEST(LineItems, AngularDimensionMeasuresTheSweepThatHoldsItsArcPoint) {
    TORXHeadlessLabel doc;
    auto* dim = Create<TORXBaseDim>(doc, TQVLItemType::itDim);
    // A metre of radius keeps the rounding of the points to whole micrometres far below 0.005 degrees.
    const TQVLPto64 c{2000000, 2000000};
    const double r = 1000000;
    dim->SetAngular(c, OnCircle(c, r, 350), OnCircle(c, r, 10), OnCircle(c, r, 0));
    EXPECT_EQ(dim->DisplayText(), "20.00\xC2\xB0");
    dim->SetAngular(c, OnCircle(c, r, 350), OnCircle(c, r, 10), OnCircle(c, r, 180));
    EXPECT_EQ(dim->DisplayText(), "340.00\xC2\xB0");
    // Collinear arc points have no circle: the stored centre (point 8) serves.
    dim->SetAngular({50000, 50000}, {60000, 50000}, {40000, 50000}, {55000, 50000});
    EXPECT_EQ(dim->DisplayText(), "180.00\xC2\xB0");
}

TEST(LineItems, AngularDimensionReadFromAFileKeepsItsArms) {
    TORXHeadlessLabel doc;
    TJSON points = TJSON::array();
    const double pts[10][2] = {{0, 0},   {0, 0},           {0, 0},   {0, 0}, {30, 10},
                               {10, 30}, {24.142, 24.142}, {10, 10}, {0, 0}, {0, 0}};
    for (const auto& p : pts) points.push_back(TJSON{{"X", p[0]}, {"Y", p[1]}});
    const TJSON file = {{"Version", 3200},
                        {"Items", TJSON::array({TJSON{{"Type", 26},
                                                      {"InID", 4},
                                                      {"Options", {{"Visible", true}}},
                                                      {"Points", points},
                                                      {"DimType", 7},
                                                      {"TextMeasure", true}}})}};
    doc.ReadJson(file);
    auto* dim = dynamic_cast<TORXBaseDim*>(doc.GetItem(0));
    ASSERT_NE(dim, nullptr);
    EXPECT_EQ(dim->GetPoint(5), (TQVLPto{30000, 10000}));
    EXPECT_EQ(dim->DisplayText(), "90.00\xC2\xB0");
}

// The painted text (DisplayText) and the SVG's text must show the same measure after the unit changes.
TEST(LineItems, DimensionTextFollowsTheDocumentUnit) {
    TORXHeadlessLabel doc;
    auto* dim = Create<TORXBaseDim>(doc, TQVLItemType::itDim);
    dim->SetLinear(TQVDimType::dmtHorz, {0, 0}, {25400, 0}, -5000);
    EXPECT_EQ(dim->DisplayText(), "25.40");
    const TQVLRect before = dim->BoundsRect();
    doc.SetUnits(TQVLUnits::unINCH);
    EXPECT_EQ(dim->DisplayText(), "1.00");
    std::vector<std::string> defs;
    std::vector<std::string> body;
    dim->WriteSVG(defs, body, TQVLExportSVG::esFile, 1.0f, false);
    std::string svg;
    for (const auto& part : body) svg += part;
    EXPECT_NE(svg.find(">1.00</text>"), std::string::npos) << svg;
    EXPECT_NE(dim->BoundsRect(), before);  // a shorter text takes less room
    doc.SetUnits(TQVLUnits::unCM);
    EXPECT_EQ(dim->DisplayText(), "2.54");
}

TEST(LineItems, RadialAndDiameterTextsTakeTheirPrefixes) {
    TORXHeadlessLabel doc;
    auto* dim = Create<TORXBaseDim>(doc, TQVLItemType::itDim);
    dim->SetRadial(TQVDimType::dmtDiameter2, {0, 0}, {5000, 0});
    EXPECT_EQ(dim->DisplayText(),
              "\xC3\x98"
              "10.00");  // points span a radius
    dim->SetRadial(TQVDimType::dmtDiameter1, {0, 0}, {10000, 0});
    EXPECT_EQ(dim->DisplayText(),
              "\xC3\x98"
              "10.00");
    dim->SetRadial(TQVDimType::dmtRadial2, {0, 0}, {0, 2500});
    EXPECT_EQ(dim->DisplayText(), "R2.50");
    dim->SetLinear(TQVDimType::dmtHorz, {0, 0}, {25400, 9000}, 3000);
    EXPECT_EQ(dim->DisplayText(), "25.40");
    doc.SetUnits(TQVLUnits::unINCH);
    dim->CalcValues(0);
    EXPECT_EQ(dim->DisplayText(), "1.00");
}

TEST(LineItems, StyleOverridesPrefixAndFormatButTheLinearSuffixHasNoDefault) {
    TORXHeadlessLabel doc;
    TORXDimStyle* style = doc.GetDimStyle(1);
    ASSERT_NE(style, nullptr);
    style->fPrefix = "L=";
    style->fFormat = "0.0";
    auto* dim = Create<TORXBaseDim>(doc, TQVLItemType::itDim);
    dim->SetIdDimStyle(style->fID);
    dim->SetRadial(TQVDimType::dmtRadial1, {0, 0}, {3000, 4000});
    EXPECT_EQ(dim->DisplayText(), "L=5.0");
    style->fSuffix = " mm";
    dim->SetAngular({0, 0}, {10000, 0}, {0, 10000}, {7071, 7071});
    EXPECT_EQ(dim->DisplayText(), "L=90.0 mm");
}

TEST(LineItems, UserTextStaysWhenTheGeometryChanges) {
    TORXHeadlessLabel doc;
    auto* dim = Create<TORXBaseDim>(doc, TQVLItemType::itDim);
    dim->SetText("see detail A");
    dim->SetTextMeasure(false);
    dim->SetLinear(TQVDimType::dmtVert, {0, 0}, {0, 80000}, 5000);
    EXPECT_EQ(dim->DisplayText(), "see detail A");
}

struct TCommaPunct : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
};

TEST(LineItems, NumbersFollowThePatternAndTheGlobalLocale) {
    EXPECT_EQ(FormatNumber(12.3456, ""), "12.35");
    EXPECT_EQ(FormatNumber(-0.001, "0.00"), "0.00");
    EXPECT_EQ(FormatNumber(3.5, "0.###"), "3.5");
    EXPECT_EQ(FormatNumber(7.0, "00"), "07");
    EXPECT_EQ(FormatNumber(1234567.891, "#,##0.0"), "1,234,567.9");
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new TCommaPunct));
    const std::string comma = FormatNumber(1234.5, "#,##0.00");
    std::locale::global(previous);
    EXPECT_EQ(comma, "1.234,50");
}

// [SECTION] Picking, snapping, turning

TEST(LineItems, PickFollowsTheOutlineOnly) {
    TORXHeadlessLabel doc;
    auto* line = Create<TORXBaseLine>(doc, TQVLItemType::itLine);
    line->SetBase(1, 0, 0);
    line->SetBase(2, 10000, 10000);
    line->SetPenWidth(0);
    EXPECT_TRUE(line->Pick(5000, 5100, 100, false));
    EXPECT_FALSE(line->Pick(9000, 1000, 100, false));  // inside the bounds, far from the segment

    auto* arc = Create<TORXBaseArc>(doc, TQVLItemType::itArc);
    arc->SetCircle(50000, 50000, 10000);
    arc->SetStartAngle(0.0f);
    arc->SetEndAngle(90.0f);  // the upper right quarter on screen
    arc->SetPenWidth(0);
    EXPECT_TRUE(arc->Pick(57071, 42929, 50, false));
    EXPECT_FALSE(arc->Pick(57071, 57071, 50, false));  // the same radius below the centre
    EXPECT_FALSE(arc->Pick(50000, 50000, 50, false));

    auto* poly = Create<TORXBasePolyLine>(doc, TQVLItemType::itPolyLine);
    for (auto [x, y] : {std::pair{0, 0}, {10000, 0}, {10000, 10000}}) poly->InsertPoint(x, y, 99);
    EXPECT_TRUE(poly->Pick(10040, 5000, 50, false));
    EXPECT_FALSE(poly->Pick(5000, 5000, 50, false));  // the chain is open: no edge back to the start
}

TEST(LineItems, ArrowLineLabelIsPickedAboveTheLine) {
    TORXHeadlessLabel doc;
    auto* arrow = Create<TORXBaseArrowLine>(doc, TQVLItemType::itArrowLine);
    arrow->SetBase(2, 60000, 0);
    arrow->SetBase(1, 0, 0);
    arrow->SetText("LABEL");
    EXPECT_TRUE(arrow->Pick(30000, -2500, 0, false));        // over the text above the middle
    EXPECT_FALSE(arrow->Pick(30000, 2500, 0, false));        // below the line
    EXPECT_EQ(arrow->GetPoint(3), (TQVLPto{30000, -1050}));  // the label's anchor follows the line
    arrow->SetTextMeasure(true);
    EXPECT_EQ(arrow->LabelText(), "60.00");
}

TEST(LineItems, ArcSnapsToItsEndsAndCentreAndTurnsAsOne) {
    TORXHeadlessLabel doc;
    auto* arc = Create<TORXBaseArc>(doc, TQVLItemType::itArc);
    arc->SetCircle(20000, 20000, 10000);
    arc->SetStartAngle(90.0f);
    arc->SetEndAngle(180.0f);
    TQVLRef ref;
    ASSERT_TRUE(arc->CheckPoint(20100, 10100, 300, TQVLSnap::snEndPoint, ref));
    EXPECT_EQ((std::pair(ref.X, ref.Y)), (std::pair<std::int64_t, std::int64_t>(20000, 10000)));
    ASSERT_TRUE(arc->CheckPoint(19900, 20000, 300, TQVLSnap::snCenter, ref));
    EXPECT_EQ(ref.Index, 0);
    EXPECT_FALSE(arc->CheckPoint(30000, 20000, 300, TQVLSnap::snNearest, ref));  // outside the sweep

    const std::string before = arc->WriteJson().dump();
    arc->RotateRight();
    EXPECT_EQ(arc->StartAngle(), 0.0f);
    EXPECT_EQ(arc->EndAngle(), 90.0f);
    EXPECT_EQ(arc->Angle(), TQVLAngle::ag90);
    doc.Undo();
    EXPECT_EQ(arc->WriteJson().dump(), before);
}

TEST(LineItems, HorizontalDimensionTurnsIntoAVerticalOne) {
    TORXHeadlessLabel doc;
    auto* dim = Create<TORXBaseDim>(doc, TQVLItemType::itDim);
    dim->SetLinear(TQVDimType::dmtHorz, {10000, 10000}, {40000, 10000}, -8000);
    dim->RotateLeft();
    EXPECT_EQ(dim->DimType(), TQVDimType::dmtVert);
    EXPECT_EQ(dim->DisplayText(), "30.00");
    EXPECT_TRUE(dim->Pick(dim->GetPointX(1), (dim->GetPointY(1) + dim->GetPointY(2)) / 2 + 3000, 100, false));
}

TEST(LineItems, DimensionsFitWhatTheyDrawNotTheirUnusedPoints) {
    TORXHeadlessLabel doc;
    auto* linear = Create<TORXBaseDim>(doc, TQVLItemType::itDim);
    linear->SetLinear(TQVDimType::dmtHorz, {100000, 100000}, {150000, 100000}, -10000);
    auto* radial = Create<TORXBaseDim>(doc, TQVLItemType::itDim);
    radial->SetRadial(TQVDimType::dmtRadial1, {200000, 200000}, {220000, 200000});
    auto* angular = Create<TORXBaseDim>(doc, TQVLItemType::itDim);
    const TQVLPto64 c{300000, 300000};
    angular->SetAngular(c, OnCircle(c, 20000, 0), OnCircle(c, 20000, 60), OnCircle(c, 20000, 30));
    for (const auto* dim : {linear, radial, angular}) {
        SCOPED_TRACE(static_cast<int>(dim->DimType()));
        std::int64_t minX = -1, maxX = -1, minY = -1, maxY = -1;
        dim->CheckFit(minX, maxX, minY, maxY);
        // Nothing reaches back towards the origin, and the measured features lie inside.
        EXPECT_GT(minX, 80000);
        EXPECT_GT(minY, 80000);
        EXPECT_GE(maxX, dim->GetPointX(2));
        EXPECT_GT(maxY, minY);
    }
}

// [SECTION] SVG

TEST(LineItems, SvgCarriesDashesMarkersAndEscapedLabels) {
    TORXHeadlessLabel doc;
    std::vector<std::string> defs, body;
    auto* arrow = Create<TORXBaseArrowLine>(doc, TQVLItemType::itArrowLine);
    arrow->SetBase(2, 20000, 0);
    arrow->SetLineType(TQVLineType::ii21);
    arrow->SetFromType(TQVLTermType::ttArrow);
    arrow->SetText("a<b");
    arrow->WriteSVG(defs, body, TQVLExportSVG::esFile, 1.0f, false);
    ASSERT_EQ(body.size(), 2u);
    EXPECT_NE(body[0].find("stroke-dasharray=\"2 1\""), std::string::npos) << body[0];
    EXPECT_NE(body[0].find("marker-start=\"url(#term3_FF000000_5)\""), std::string::npos) << body[0];
    EXPECT_NE(body[0].find("marker-end=\"url(#term4_FF000000_5)\""), std::string::npos) << body[0];
    EXPECT_EQ(defs.size(), 2u);
    EXPECT_NE(body[1].find(">a&lt;b</text>"), std::string::npos) << body[1];

    auto* arc = Create<TORXBaseArc>(doc, TQVLItemType::itArc);
    arc->SetCircle(10000, 10000, 5000);
    arc->SetStartAngle(0.0f);
    arc->SetEndAngle(270.0f);  // large, counter-clockwise on screen: SVG sweep flag 0
    body.clear();
    arc->WriteSVG(defs, body, TQVLExportSVG::esFile, 1.0f, false);
    ASSERT_EQ(body.size(), 1u);
    EXPECT_NE(body[0].find("d=\"M15,10 A5,5 0 1 0 10,15\""), std::string::npos) << body[0];

    // A label that replaces the middle of the line breaks the line around it.
    arrow->SetTextPos(TQVLTextPos::tpMiddleRemove);
    body.clear();
    arrow->WriteSVG(defs, body, TQVLExportSVG::esFile, 1.0f, false);
    EXPECT_EQ(body[0].rfind("<path d=\"M0,0 L5.8,0 M14.2,0 L20,0\"", 0), 0u) << body[0];

    auto* poly = Create<TORXBasePolyLine>(doc, TQVLItemType::itPolyLine);
    poly->InsertPoint(0, 0, 1);
    body.clear();
    poly->WriteSVG(defs, body, TQVLExportSVG::esFile, 1.0f, false);
    EXPECT_TRUE(body.empty());  // one point draws nothing
}

}  // namespace
}  // namespace Orvex
