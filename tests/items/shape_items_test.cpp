#include <gtest/gtest.h>

#include "orvex/document/document.h"
#include "orvex/items/shape_items.h"
#include "tests/items/item_test_support.h"

namespace Orvex {
namespace {

using namespace ItemTest;

template <class T>
T* Box(TORXBaseLabel& doc, TQVLItemType type, std::int64_t x1, std::int64_t y1, std::int64_t x2,
       std::int64_t y2) {
    T* item = Create<T>(doc, type);
    item->SetBase(1, x1, y1);
    item->SetBase(2, x2, y2);
    return item;
}

TEST(ShapeItems, EveryKindReadsBackWhatItWrote) {
    TORXHeadlessLabel doc;
    auto* rect = Box<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, 1000, 2000, 41000, 22000);
    rect->SetRadio(2.5f);
    rect->SetFilled(true);
    auto* poly = Create<TORXBasePolygon>(doc, TQVLItemType::itPolygon);
    for (auto [x, y] : {std::pair{0, 0}, {5000, 0}, {2500, 4330}}) poly->InsertPoint(x, y, 99);
    poly->SetLineType(TQVLineType::ii33);
    auto* bez = Create<TORXBaseBezier>(doc, TQVLItemType::itBezier);
    for (auto [x, y] : {std::pair{0, 0}, {1000, 3000}, {4000, 3000}, {5000, 0}}) bez->InsertPoint(x, y, 99);
    bez->SetFromType(TQVLTermType::ttFillCircle);
    auto* circle = Box<TORXBaseCircle>(doc, TQVLItemType::itCircle, 0, 0, 8000, 8000);
    circle->SetLineType(TQVLineType::ii11);
    Box<TORXBaseEllipse>(doc, TQVLItemType::itEllipse, 0, 0, 8000, 3000)->SetBackColor(0x80102030);
    auto* sector = Box<TORXBaseSector>(doc, TQVLItemType::itSector, 0, 0, 6000, 6000);
    sector->SetAngleStart(30.25f);
    sector->SetAngleGap(-120.0f);
    sector->RotateRight();
    ExpectRoundTrip(doc);
    EXPECT_EQ(rect->WriteJson()["Radio"], 2.5);
}

TEST(ShapeItems, SettersRecordOneUndoStepEach) {
    TORXHeadlessLabel doc;
    auto* rect = Box<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, 0, 0, 40000, 20000);
    const TSetterCase rectCases[] = {
        {"Radio", [](TORXBaseItem& i) { dynamic_cast<TORXBaseRectangle&>(i).SetRadio(3.0f); }},
        {"LineType", [](TORXBaseItem& i) { dynamic_cast<TORXBoxShape&>(i).SetLineType(TQVLineType::ii42); }},
        {"Filled", [](TORXBaseItem& i) { dynamic_cast<TORX2DItem&>(i).SetFilled(true); }},
        {"BackColor", [](TORXBaseItem& i) { dynamic_cast<TORX2DItem&>(i).SetBackColor(0xFF00FF00); }},
    };
    for (const auto& c : rectCases) ExpectSetterUndo(doc, *rect, c);

    auto* circle = Box<TORXBaseCircle>(doc, TQVLItemType::itCircle, 10000, 10000, 20000, 20000);
    const TSetterCase circleCases[] = {
        {"Radio", [](TORXBaseItem& i) { dynamic_cast<TORXBaseCircle&>(i).SetRadio(8.0f); }},
        {"CenterX", [](TORXBaseItem& i) { dynamic_cast<TORXBaseCircle&>(i).SetCenterX(30.0f); }},
        {"CenterY", [](TORXBaseItem& i) { dynamic_cast<TORXBaseCircle&>(i).SetCenterY(2.0f); }},
    };
    for (const auto& c : circleCases) ExpectSetterUndo(doc, *circle, c);

    auto* ellipse = Box<TORXBaseEllipse>(doc, TQVLItemType::itEllipse, 0, 0, 10000, 4000);
    const TSetterCase ellipseCases[] = {
        {"RadioX", [](TORXBaseItem& i) { dynamic_cast<TORXBaseEllipse&>(i).SetRadioX(9.0f); }},
        {"RadioY", [](TORXBaseItem& i) { dynamic_cast<TORXBaseEllipse&>(i).SetRadioY(1.0f); }},
        {"CenterX", [](TORXBaseItem& i) { dynamic_cast<TORXBaseEllipse&>(i).SetCenterX(50.0f); }},
    };
    for (const auto& c : ellipseCases) ExpectSetterUndo(doc, *ellipse, c);

    auto* sector = Box<TORXBaseSector>(doc, TQVLItemType::itSector, 0, 0, 10000, 10000);
    const TSetterCase sectorCases[] = {
        {"AngleStart", [](TORXBaseItem& i) { dynamic_cast<TORXBaseSector&>(i).SetAngleStart(-45.0f); }},
        {"AngleGap", [](TORXBaseItem& i) { dynamic_cast<TORXBaseSector&>(i).SetAngleGap(270.0f); }},
    };
    for (const auto& c : sectorCases) ExpectSetterUndo(doc, *sector, c);

    auto* bez = Create<TORXBaseBezier>(doc, TQVLItemType::itBezier);
    ExpectSetterUndo(doc, *bez, {"Bezier ToType", [](TORXBaseItem& i) {
                                     dynamic_cast<TORXBaseBezier&>(i).SetToType(TQVLTermType::ttArrow);
                                 }});
}

TEST(ShapeItems, RectangleRadiusIsLimitedByHalfTheHeightOnly) {
    TORXHeadlessLabel doc;
    auto* wide = Box<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, 0, 0, 40000, 8000);
    EXPECT_EQ(wide->GetMMRadio(), 0.0f);
    wide->SetRadio(10.0f);
    EXPECT_EQ(wide->BaseRadio(), 4000);
    auto* tall = Box<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, 0, 0, 8000, 40000);
    tall->SetRadio(10.0f);
    EXPECT_EQ(tall->BaseRadio(), 10000);
    EXPECT_EQ(tall->GetRadio(), 10.0f);
}

TEST(ShapeItems, SectorStartIsClampedAndCorrectedByTheTurn) {
    TORXHeadlessLabel doc;
    auto* sector = Box<TORXBaseSector>(doc, TQVLItemType::itSector, 0, 0, 10000, 10000);
    sector->SetAngleStart(-400.0f);
    EXPECT_EQ(sector->StartAngle(), -359.0f);
    sector->SetAngleStart(720.0f);
    EXPECT_EQ(sector->StartAngle(), 360.0f);
    sector->SetAngleStart(30.0f);
    sector->RotateRight();
    sector->RotateRight();
    EXPECT_EQ(sector->EffectiveStart(), -150.0f);
    doc.Undo();
    EXPECT_EQ(sector->EffectiveStart(), -60.0f);
}

TEST(ShapeItems, FilledCirclePickUsesTheDiamondAndThe32BitSquare) {
    TORXHeadlessLabel doc;
    auto* small = Box<TORXBaseCircle>(doc, TQVLItemType::itCircle, 0, 0, 2000, 2000);
    small->SetFilled(true);
    // On the diamond |dx| + |dy| = radius + tol, outside the circle proper: a hit.
    EXPECT_TRUE(small->Pick(1800, 1800, 600, false));
    EXPECT_FALSE(small->Pick(1800, 1800, 500, false));
    small->SetBackColor(0x00FFFFFF);  // a transparent fill counts as no fill: the outline only
    EXPECT_FALSE(small->Pick(1000, 1000, 10, false));
    EXPECT_TRUE(small->Pick(1000, 5, 10, false));

    // Above 46340 the square of the radius wraps negative: the inside off the diamond does not pick.
    auto* big = Box<TORXBaseCircle>(doc, TQVLItemType::itCircle, 0, 0, 100000, 100000);
    big->SetFilled(true);
    EXPECT_TRUE(big->Pick(60000, 60000, 0, false));       // within the diamond
    EXPECT_FALSE(big->Pick(80000, 80000, 0, false));      // inside the circle, outside the diamond
    EXPECT_FALSE(big->Pick(100000, 50000, 5000, false));  // the right edge is outside the bounds
}

TEST(ShapeItems, OtherShapesPickTheirOutlineOrTheirInside) {
    TORXHeadlessLabel doc;
    auto* rect = Box<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, 0, 0, 20000, 10000);
    rect->SetPenWidth(0);
    rect->SetRadio(5.0f);
    EXPECT_TRUE(rect->Pick(10000, 10040, 50, false));  // just outside the bottom edge
    EXPECT_FALSE(rect->Pick(10000, 5000, 50, false));
    EXPECT_FALSE(rect->Pick(100, 100, 50, false));  // the rounded corner cuts this off
    rect->SetFilled(true);
    EXPECT_TRUE(rect->Pick(10000, 5000, 50, false));

    auto* ellipse = Box<TORXBaseEllipse>(doc, TQVLItemType::itEllipse, 0, 0, 20000, 10000);
    EXPECT_TRUE(ellipse->Pick(10000, 20, 100, false));
    EXPECT_FALSE(ellipse->Pick(10000, 5000, 100, false));
    ellipse->SetFilled(true);
    EXPECT_TRUE(ellipse->Pick(10000, 5000, 100, false));

    auto* poly = Create<TORXBasePolygon>(doc, TQVLItemType::itPolygon);
    for (auto [x, y] : {std::pair{0, 0}, {10000, 0}, {10000, 10000}}) poly->InsertPoint(x, y, 99);
    EXPECT_TRUE(poly->Pick(5000, 5000, 10, false));  // on the closing edge
    EXPECT_FALSE(poly->Pick(8000, 2000, 10, false));

    auto* sector = Box<TORXBaseSector>(doc, TQVLItemType::itSector, 0, 0, 20000, 20000);
    sector->SetAngleGap(90.0f);  // from 0 to 90: the upper right quarter on screen
    sector->SetFilled(true);
    EXPECT_TRUE(sector->Pick(14000, 6000, 0, false));
    EXPECT_FALSE(sector->Pick(6000, 14000, 0, false));
}

TEST(ShapeItems, TurnedBoxesKeepPointOneTopLeftAndUndoAsOne) {
    TORXHeadlessLabel doc;
    auto* rect = Box<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, 0, 0, 40000, 10000);
    const std::string before = rect->WriteJson().dump();
    rect->RotateRight();
    EXPECT_EQ(rect->Points(), (TQVLPtoA{{15000, -15000}, {25000, 25000}}));
    doc.Undo();
    EXPECT_EQ(rect->WriteJson().dump(), before);

    auto* bez = Create<TORXBaseBezier>(doc, TQVLItemType::itBezier);
    for (auto [x, y] : {std::pair{0, 0}, {0, 10000}, {10000, 10000}, {10000, 0}}) bez->InsertPoint(x, y, 99);
    EXPECT_TRUE(bez->Pick(5000, 7550, 100, false));    // the curve's middle, three quarters of the way up
    EXPECT_FALSE(bez->Pick(5000, 10000, 100, false));  // on the control polygon only
}

TEST(ShapeItems, SnapsToCornersQuadrantsAndCentres) {
    TORXHeadlessLabel doc;
    TQVLRef ref;
    auto* rect = Box<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, 0, 0, 20000, 10000);
    ASSERT_TRUE(rect->CheckPoint(19900, 9900, 200, TQVLSnap::snEndPoint, ref));
    EXPECT_EQ(ref.Index, 3);
    ASSERT_TRUE(rect->CheckPoint(10100, 100, 200, TQVLSnap::snMidPoint, ref));
    EXPECT_EQ((std::pair(ref.X, ref.Y)), (std::pair<std::int64_t, std::int64_t>(10000, 0)));
    auto* circle = Box<TORXBaseCircle>(doc, TQVLItemType::itCircle, 0, 0, 20000, 20000);
    ASSERT_TRUE(circle->CheckPoint(10050, 50, 200, TQVLSnap::snEndPoint, ref));
    EXPECT_EQ((std::pair(ref.X, ref.Y)), (std::pair<std::int64_t, std::int64_t>(10000, 0)));
    ASSERT_TRUE(circle->CheckPoint(17000, 3000, 200, TQVLSnap::snNearest, ref));
    EXPECT_EQ((std::pair(ref.X, ref.Y)), (std::pair<std::int64_t, std::int64_t>(17071, 2929)));
}

TEST(ShapeItems, SvgElementsPerKind) {
    TORXHeadlessLabel doc;
    std::vector<std::string> defs;
    const auto svg = [&](const TORXBaseItem* item) {
        std::vector<std::string> body;
        item->WriteSVG(defs, body, TQVLExportSVG::esFile, 1.0f, false);
        return body.empty() ? std::string{} : body[0];
    };
    auto* rect = Box<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, 1000, 2000, 5000, 4000);
    EXPECT_EQ(svg(rect),
              "<rect x=\"1\" y=\"2\" width=\"4\" height=\"2\" fill=\"none\" stroke=\"#000000\" "
              "stroke-width=\"0.1\"/>");
    rect->SetRadio(0.5f);
    EXPECT_NE(svg(rect).find(" rx=\"0.5\""), std::string::npos);
    auto* circle = Box<TORXBaseCircle>(doc, TQVLItemType::itCircle, 0, 0, 4000, 4000);
    circle->SetFilled(true);
    EXPECT_EQ(svg(circle),
              "<circle cx=\"2\" cy=\"2\" r=\"2\" fill=\"#FFFFFF\" stroke=\"#000000\" stroke-width=\"0.1\"/>");
    EXPECT_EQ(svg(Box<TORXBaseEllipse>(doc, TQVLItemType::itEllipse, 0, 0, 4000, 2000))
                  .rfind("<ellipse cx=\"2\" cy=\"1\" "
                         "rx=\"2\" ry=\"1\"",
                         0),
              0u);
    auto* sector = Box<TORXBaseSector>(doc, TQVLItemType::itSector, 0, 0, 4000, 4000);
    EXPECT_EQ(svg(sector).rfind("<path d=\"M2,2 L4,2 A2,2 0 0 0 2,0 Z\"", 0), 0u) << svg(sector);
    sector->SetAngleGap(360.0f);
    EXPECT_EQ(svg(sector).rfind("<circle ", 0), 0u);
    auto* bez = Create<TORXBaseBezier>(doc, TQVLItemType::itBezier);
    bez->InsertPoint(0, 0, 99);
    EXPECT_EQ(svg(bez), "");
    for (auto [x, y] : {std::pair{1000, 2000}, {3000, 2000}, {4000, 0}, {5000, 0}})
        bez->InsertPoint(x, y, 99);
    bez->SetToType(TQVLTermType::ttFillArrow);
    EXPECT_EQ(svg(bez).rfind("<path d=\"M0,0 C1,2 3,2 4,0 L5,0\" fill=\"none\"", 0), 0u) << svg(bez);
    EXPECT_NE(svg(bez).find("marker-end="), std::string::npos);
    auto* poly = Create<TORXBasePolygon>(doc, TQVLItemType::itPolygon);
    for (auto [x, y] : {std::pair{0, 0}, {1500, 0}, {0, 2000}}) poly->InsertPoint(x, y, 99);
    EXPECT_EQ(svg(poly).rfind("<polygon points=\"0,0 1.5,0 0,2\" fill=\"none\"", 0), 0u);
}

}  // namespace
}  // namespace Orvex
