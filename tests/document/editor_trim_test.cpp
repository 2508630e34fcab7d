#include <gtest/gtest.h>

#include "orvex/document/trim_extend.h"
#include "orvex/items/line_items.h"
#include "tests/document/editor_fixture.h"

namespace Orvex::Testing {
namespace {

using A = TQVLEdAction;

// Trim and extend with every other item as a boundary: Enter before any boundary is picked.
void AllBoundaries(TORXBaseLabel& doc, A action) {
    doc.SetAction(action);
    doc.KeyEditor(TQVLEdKey::ekEnter, {});
}

TEST_F(TEditorTest, TrimCutsTheSpanBetweenTheCrossingsAroundThePick) {
    Line(0, 20, 100, 20);
    Line(30, 0, 30, 40);
    Line(60, 0, 60, 40);
    const std::string start = Json();
    AllBoundaries(doc, A::eaTrim);
    EXPECT_EQ(doc.EdState(), TQVLEdState::edTrim);
    Click(45, 20);  // between the two crossings: the line splits in two
    ASSERT_EQ(Items().size(), 4u);
    EXPECT_EQ(Points(Items()[0]), (TPts{{0, 20}, {30, 20}}));
    EXPECT_EQ(Points(Items()[3]), (TPts{{60, 20}, {100, 20}}));
    EXPECT_EQ(Items()[3]["ID"].get<std::string>(), "Line004");
    const std::string trimmed = Json();
    Click(80, 20);  // the piece's only crossing is its own end: nothing to cut
    EXPECT_EQ(Json(), trimmed);
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TEditorTest, TrimAgainstChosenBoundariesOnly) {
    Line(0, 20, 100, 20);
    Line(30, 0, 30, 40);
    Line(60, 0, 60, 40);
    doc.SetAction(A::eaTrim);
    Click(60, 5);  // the boundary
    EXPECT_EQ(doc.EdState(), TQVLEdState::edPickNextRef);
    EXPECT_EQ(doc.GetItem(2)->State(), TQVLItemState::isRef);
    Key(TQVLEdKey::ekEnter);
    Click(20, 20);  // the line at 30 is no boundary now: everything left of 60 goes
    EXPECT_EQ(Points(Items()[0]), (TPts{{60, 20}, {100, 20}}));
    EXPECT_TRUE(Key(TQVLEdKey::ekEscape));
    EXPECT_EQ(doc.GetItem(2)->State(), TQVLItemState::isNormal);
}

TEST_F(TEditorTest, TrimsPolylinesAndArcsAgainstCirclesAndRectangles) {
    Add(TQVLItemType::itPolyLine, {{0, 10}, {50, 10}, {50, 60}});
    Add(TQVLItemType::itCircle, {{40, 30}, {60, 50}});  // crosses the vertical leg at 30 and 50
    AllBoundaries(doc, A::eaTrim);
    Click(50, 40);
    ASSERT_EQ(Items().size(), 3u);
    EXPECT_EQ(Points(Items()[0]), (TPts{{0, 10}, {50, 10}, {50, 30}}));
    EXPECT_EQ(Points(Items()[2]), (TPts{{50, 50}, {50, 60}}));

    doc.New();
    auto* arc = dynamic_cast<TORXBaseArc*>(doc.CreateItem(TQVLItemType::itArc));
    arc->SetCircle(B(50), B(50), B(20));
    arc->SetStartAngle(0.0f);
    arc->SetEndAngle(180.0f);                               // the upper half, counter-clockwise on screen
    Add(TQVLItemType::itRectangle, {{45, 0}, {100, 100}});  // its left edge crosses the arc at 104.5 degrees
    doc.EndUpdate();
    AllBoundaries(doc, A::eaTrim);
    Click(69, 45);  // on the arc near 15 degrees, inside the box: from the start to the crossing goes
    EXPECT_NEAR(arc->StartAngle(), 104.48f, 0.01f);
    EXPECT_FLOAT_EQ(arc->EndAngle(), 180.0f);
}

TEST_F(TEditorTest, ExtendGrowsTheNearerEndToTheNextBoundary) {
    Line(10, 20, 30, 20);
    Add(TQVLItemType::itCircle, {{50, 10}, {70, 30}});
    Line(0, 0, 0, 40);
    const std::string start = Json();
    AllBoundaries(doc, A::eaExtend);
    EXPECT_EQ(doc.EdState(), TQVLEdState::edExtend);
    Click(28, 20);
    EXPECT_EQ(Points(Items()[0]), (TPts{{10, 20}, {50, 20}}));
    Click(12, 20);
    EXPECT_EQ(Points(Items()[0]), (TPts{{0, 20}, {50, 20}}));
    Click(1, 20);  // nothing beyond the left end any more: but the pick is on the boundary line
    doc.Undo();
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TEditorTest, JoinMeetsTwoLinesAtACorner) {
    Line(10, 10, 40, 10);
    Line(50, 20, 50, 60);
    const std::string start = Json();
    doc.SetAction(A::eaJoin);
    Click(35, 10);
    EXPECT_EQ(doc.EdState(), TQVLEdState::edPickSecond);
    Click(50, 25);
    EXPECT_EQ(Points(Items()[0]), (TPts{{10, 10}, {50, 10}}));
    EXPECT_EQ(Points(Items()[1]), (TPts{{50, 10}, {50, 60}}));
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TEditorTest, ParallelCopiesAtThePickedDistance) {
    Line(10, 10, 50, 10);
    Add(TQVLItemType::itCircle, {{70, 10}, {90, 30}});
    const std::string start = Json();
    doc.SetAction(A::eaEquidist);
    Click(30, 10);
    EXPECT_EQ(doc.EdState(), TQVLEdState::edPickSide);
    Click(30, 25);
    ASSERT_EQ(Items().size(), 3u);
    EXPECT_EQ(Points(Items()[2]), (TPts{{10, 25}, {50, 25}}));
    Click(80, 10);
    EXPECT_EQ(doc.EdState(), TQVLEdState::edPickSide);
    Click(80, 5);  // 15 from the centre
    ASSERT_EQ(Items().size(), 4u);
    EXPECT_EQ(Points(Items()[3]), (TPts{{65, 5}, {95, 35}}));
    doc.Undo();
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST(TrimGeometryTest, CrossingsOfLinesWithSegmentsEllipsesAndArcs) {
    TTrimEdge segment;
    segment.A = {5, -10}, segment.B = {5, 10};
    EXPECT_EQ(LineCrossings({0, 0}, {10, 0}, segment), (std::vector<double>{0.5}));
    segment.B = {5, -1};  // ends short of the line
    EXPECT_TRUE(LineCrossings({0, 0}, {10, 0}, segment).empty());
    TTrimEdge ellipse;
    ellipse.Straight = false;
    ellipse.Center = {0, 0}, ellipse.Rx = 20, ellipse.Ry = 10;
    EXPECT_EQ(LineCrossings({-40, 0}, {40, 0}, ellipse), (std::vector<double>{0.25, 0.75}));
    ellipse.Full = false;  // only the lower half (y > 0 is down): angles 0 to pi, increasing
    ellipse.Start = 0.0, ellipse.End = 3.14159265358979, ellipse.Ccw = true;
    EXPECT_EQ(LineCrossings({0, -40}, {0, 40}, ellipse), (std::vector<double>{0.625}));
    EXPECT_TRUE(TrimPath({{0, 0}, {10, 0}}, {}, {5, 0}).Pieces.empty());
}

}  // namespace
}  // namespace Orvex::Testing
