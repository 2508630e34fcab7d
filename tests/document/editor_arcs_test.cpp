#include <gtest/gtest.h>

#include <functional>

#include "orvex/items/line_items.h"
#include "tests/document/editor_fixture.h"

namespace Orvex::Testing {
namespace {

using A = TQVLEdAction;
using T = TQVLItemType;

class TArcEditTest : public TEditorTest {
  protected:
    // Screen degrees, counter-clockwise as seen.
    TORXBaseArc* Arc(double cx, double cy, double r, float start, float end) {
        auto* arc = dynamic_cast<TORXBaseArc*>(doc.CreateItem(T::itArc));
        arc->SetCircle(B(cx), B(cy), B(r));
        arc->SetStartAngle(start);
        arc->SetEndAngle(end);
        doc.EndUpdate();
        return arc;
    }
    void AllBoundaries(A action) {
        doc.SetAction(action);
        Key(TQVLEdKey::ekEnter);
    }
};

// The arc about (50, 50) with radius 20 from 0 to 90 degrees ends at (50, 30); each boundary crosses its
// circle beyond that end first at the angle given.
TEST_F(TArcEditTest, ExtendGrowsAnArcAlongItsCircleToEachKindOfBoundary) {
    struct TCase {
        const char* Name;
        std::function<void()> Boundary;
        double End;
    };
    const TCase cases[] = {
        {"line", [&] { Line(40, 0, 40, 100); }, 120.0},
        {"rectangle",
         [&] {
             Add(T::itRectangle, {{0, 0}, {40, 100}});
         },
         120.0},
        {"polyline",
         [&] {
             Add(T::itPolyLine, {{0, 0}, {40, 0}, {40, 100}});
         },
         120.0},
        {"circle",
         [&] {
             Add(T::itCircle, {{15, 15}, {45, 45}});
         },
         104.52},
        {"ellipse",
         [&] {
             Add(T::itEllipse, {{15, 25}, {45, 45}});
         },
         108.21},
        // Only the part of the circle from 200 to 300 degrees is there: the nearer crossing is not on it.
        {"arc", [&] { Arc(30, 30, 15, 200.0f, 300.0f); }, 165.48},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        doc.New();
        TORXBaseArc* arc = Arc(50, 50, 20, 0.0f, 90.0f);
        c.Boundary();
        const std::string start = Json();
        AllBoundaries(A::eaExtend);
        Click(50, 30.2);  // near the end
        EXPECT_NEAR(arc->EndAngle(), c.End, 0.02);
        EXPECT_FLOAT_EQ(arc->StartAngle(), 0.0f);
        doc.Undo();
        EXPECT_EQ(Json(), start);
    }
}

TEST_F(TArcEditTest, ExtendGrowsTheStartBackwardsAndNothingWithoutABoundary) {
    TORXBaseArc* arc = Arc(50, 50, 20, 0.0f, 90.0f);
    Line(0, 60, 100, 60);  // crosses the circle at 210 and 330 degrees
    AllBoundaries(A::eaExtend);
    Click(69.8, 50);  // near the start
    EXPECT_NEAR(arc->StartAngle(), 330.0, 0.02);
    EXPECT_FLOAT_EQ(arc->EndAngle(), 90.0f);
    EXPECT_FLOAT_EQ(arc->SweepAngle(), 120.0f);
    const std::string grown = Json();
    Click(50, 30.2);  // the end: 210 degrees lies beyond it, after the start
    EXPECT_NEAR(arc->EndAngle(), 210.0, 0.02);
    doc.Undo();
    EXPECT_EQ(Json(), grown);

    doc.New();
    Arc(50, 50, 20, 0.0f, 90.0f);
    Line(0, 100, 100, 100);  // misses the circle
    const std::string alone = Json();
    AllBoundaries(A::eaExtend);
    Click(50, 30.2);
    EXPECT_EQ(Json(), alone);
}

TEST_F(TArcEditTest, JoinMeetsAnArcAndALineAtTheNearerCrossing) {
    TORXBaseArc* arc = Arc(50, 50, 20, 0.0f, 90.0f);
    Line(40, 60, 40, 80);  // its line crosses the circle at 120 and 240 degrees
    const std::string start = Json();
    doc.SetAction(A::eaJoin);
    Click(40, 61);  // the line first, near its upper end
    Click(50, 30.2);
    EXPECT_NEAR(arc->EndAngle(), 120.0, 0.02);
    const TPts line = Points(Items()[1]);
    EXPECT_NEAR(line[0].first, 40, 0.001);
    EXPECT_NEAR(line[0].second, 32.679, 0.001);
    EXPECT_EQ(line[1], (std::pair<double, double>{40, 80}));
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TArcEditTest, JoinMeetsTwoArcs) {
    TORXBaseArc* first = Arc(50, 50, 20, 0.0f, 90.0f);
    TORXBaseArc* second = Arc(80, 50, 20, 180.0f, 270.0f);  // the circles cross at (65, 50 -+ 13.2)
    const std::string start = Json();
    doc.SetAction(A::eaJoin);
    Click(50, 30.2);  // the first arc's end
    Click(60.2, 50);  // the second arc's start
    EXPECT_NEAR(first->EndAngle(), 41.41, 0.02);
    EXPECT_NEAR(second->StartAngle(), 138.59, 0.02);
    EXPECT_FLOAT_EQ(second->EndAngle(), 270.0f);
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TArcEditTest, CurvesAndPolygonsCutLines) {
    Line(0, 50, 100, 50);
    Add(T::itBezier, {{20, 20}, {20, 80}, {80, 80}, {80, 20}});  // crosses the line near 26.9 and 73.1
    const std::string start = Json();
    AllBoundaries(A::eaTrim);
    Click(50, 50);
    ASSERT_EQ(Items().size(), 3u);
    EXPECT_NEAR(Points(Items()[0])[1].first, 26.906, 0.05);
    EXPECT_NEAR(Points(Items()[2])[0].first, 73.094, 0.05);
    doc.Undo();
    EXPECT_EQ(Json(), start);

    doc.New();
    Line(0, 50, 100, 50);
    Add(T::itPolygon, {{30, 40}, {50, 60}, {70, 40}});  // crosses the line at 40 and 60
    AllBoundaries(A::eaTrim);
    Click(10, 50);
    EXPECT_EQ(Points(Items()[0]), (TPts{{40, 50}, {100, 50}}));
}

TEST_F(TArcEditTest, TrimOpensAPolygonIntoAPolyline) {
    Add(T::itPolygon, {{10, 10}, {50, 10}, {50, 50}, {10, 50}});
    Line(30, 0, 30, 60);  // crosses the top and the bottom side
    const std::string start = Json();
    AllBoundaries(A::eaTrim);
    Click(20, 10);  // the left part of the outline goes, round past the first corner
    ASSERT_EQ(Items().size(), 2u);
    EXPECT_EQ(Items()[0]["Type"].get<int>() & 0xFF, static_cast<int>(T::itPolyLine));
    EXPECT_EQ(Points(Items()[0]), (TPts{{30, 10}, {50, 10}, {50, 50}, {30, 50}}));
    doc.Undo();
    EXPECT_EQ(Json(), start);

    doc.New();
    Add(T::itPolygon, {{10, 10}, {50, 10}, {50, 50}, {10, 50}});
    Line(30, 0, 30, 20);  // one crossing only: nothing can be cut away
    const std::string once = Json();
    AllBoundaries(A::eaTrim);
    Click(20, 10);
    EXPECT_EQ(Json(), once);
}

TEST_F(TArcEditTest, TrimsArcsAgainstEllipses) {
    TORXBaseArc* arc = Arc(50, 50, 20, 0.0f, 150.0f);
    Add(T::itEllipse, {{15, 25}, {45, 45}});  // crosses the arc at 108.2 degrees (and its circle at 165.5)
    AllBoundaries(A::eaTrim);
    const std::string start = Json();
    Click(34.68, 37.14);  // on the arc at 140 degrees: from the crossing to the end goes
    EXPECT_NEAR(arc->EndAngle(), 108.21, 0.02);
    EXPECT_FLOAT_EQ(arc->StartAngle(), 0.0f);
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TArcEditTest, TangentSnapTouchesEllipses) {
    Add(T::itEllipse, {{50, 0}, {90, 20}});  // centre (70, 10), radii 20 and 10
    ed.fSnap = {TQVLSnapMode::smTangent};
    // From the corner of the ellipse's box the lines touch it at its bottom and its right end.
    const TQVLPto64 from{B(90), B(20)};
    struct TCase {
        double X, Y, WantX, WantY;
    };
    const TCase cases[] = {{70.2, 20.3, 70, 20}, {90.3, 10.2, 90, 10}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.X);
        std::int64_t x = B(c.X);
        std::int64_t y = B(c.Y);
        TQVLSnapHit hit;
        ASSERT_TRUE(ed.SearchPoint(x, y, hit, &from));
        EXPECT_EQ(hit.Mode, TQVLSnapMode::smTangent);
        EXPECT_EQ(x, B(c.WantX));
        EXPECT_EQ(y, B(c.WantY));
    }
    std::int64_t x = B(80);
    std::int64_t y = B(10);
    TQVLSnapHit hit;
    const TQVLPto64 inside{B(75), B(10)};  // no tangent from inside the ellipse
    EXPECT_FALSE(ed.SearchPoint(x, y, hit, &inside));

    // A line drawn from outside ends exactly on the touching point.
    doc.SetAction(A::eaLine);
    Click(90, 40);
    Click(54.2, 16.2);  // near where the line from (90, 40) touches it
    EXPECT_EQ(Points(Items()[1]), (TPts{{90, 40}, {54, 16}}));
}

}  // namespace
}  // namespace Orvex::Testing
