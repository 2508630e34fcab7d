// Circles, arcs, angles, intersections, extension and trimming of TDraw2D.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include "orvex/render/draw2d.h"

using namespace Orvex;

namespace {

constexpr double kPi = std::numbers::pi;

void ExpectPoint(const TPoint2D& p, double x, double y) {
    EXPECT_NEAR(p.X, x, 1e-9);
    EXPECT_NEAR(p.Y, y, 1e-9);
}

TEST(Draw2DCircle, ThroughTwoAndThreePoints) {
    std::int64_t cx, cy, r;
    ASSERT_TRUE(TDraw2D::CircleTwoPoints(0, 0, 10, 0, cx, cy, r));
    EXPECT_EQ((std::vector<std::int64_t>{cx, cy, r}), (std::vector<std::int64_t>{5, 0, 5}));
    EXPECT_FALSE(TDraw2D::CircleTwoPoints(4, 4, 4, 4, cx, cy, r));

    TPoint2D c;
    double rd = 0.0;
    ASSERT_TRUE(TDraw2D::CircleThreePoints(0, 0, 10, 0, 0, 10, c, rd));
    ExpectPoint(c, 5, 5);
    EXPECT_NEAR(rd, std::sqrt(50.0), 1e-12);
    ASSERT_TRUE(TDraw2D::CircleThreePoints(0, 0, 10, 0, 0, 10, cx, cy, r));
    EXPECT_EQ((std::vector<std::int64_t>{cx, cy, r}), (std::vector<std::int64_t>{5, 5, 7}));

    EXPECT_FALSE(TDraw2D::CircleThreePoints(0, 0, 5, 5, 10, 10, cx, cy, r));
    EXPECT_FALSE(TDraw2D::CircleThreePoints(0, 0, 0, 0, 3, 4, cx, cy, r));
    // Nearly collinear but not quite: the exact test still finds the (huge) circle.
    EXPECT_TRUE(TDraw2D::CircleThreePoints(0, 0, 1'000'000'000, 1, 2'000'000'000, 0, c, rd));

    // Far from the origin the centre still comes out to the base unit.
    ASSERT_TRUE(TDraw2D::CircleThreePoints(1'500'000'000, -2'000'000'000, 1'000'000'000, -1'500'000'000,
                                           500'000'000, -2'000'000'000, cx, cy, r));
    EXPECT_EQ((std::vector<std::int64_t>{cx, cy, r}),
              (std::vector<std::int64_t>{1'000'000'000, -2'000'000'000, 500'000'000}));
}

TEST(Draw2DCircle, ArcThroughThreePointsKnowsItsDirection) {
    std::int64_t cx, cy, r;
    double a0, a1;
    bool ccw = false;
    ASSERT_TRUE(TDraw2D::ArcThreePoints(100, 0, 0, 100, -100, 0, cx, cy, r, a0, a1, ccw));
    EXPECT_EQ((std::vector<std::int64_t>{cx, cy, r}), (std::vector<std::int64_t>{0, 0, 100}));
    EXPECT_TRUE(ccw);
    EXPECT_NEAR(a0, 0.0, 1e-12);
    EXPECT_NEAR(a1, kPi, 1e-12);
    ASSERT_TRUE(TDraw2D::ArcThreePoints(-100, 0, 0, 100, 100, 0, cx, cy, r, a0, a1, ccw));
    EXPECT_FALSE(ccw);
    EXPECT_NEAR(a0, kPi, 1e-12);

    TPoint2D c;
    double rd;
    ASSERT_TRUE(TDraw2D::ArcThreePoints({0, -10}, {10, 0}, {0, 10}, c, rd, a0, a1, ccw));
    ExpectPoint(c, 0, 0);
    EXPECT_TRUE(ccw);
    EXPECT_NEAR(a0, 1.5 * kPi, 1e-12);  // normalised, not -pi/2
    EXPECT_FALSE(TDraw2D::ArcThreePoints({0, 0}, {1, 1}, {2, 2}, c, rd, a0, a1, ccw));
}

TEST(Draw2DAngle, SweepInBothDirections) {
    struct Case {
        double a0, a1;
        bool ccw;
        double sweep;
    };
    for (const Case& c : {Case{0, kPi / 2, true, kPi / 2}, Case{kPi / 2, 0, true, 1.5 * kPi},
                          Case{0, kPi / 2, false, 1.5 * kPi}, Case{kPi / 2, 0, false, kPi / 2},
                          Case{1, 1, true, 0}, Case{1, 1, false, 0}}) {
        SCOPED_TRACE(testing::Message() << c.a0 << " -> " << c.a1 << (c.ccw ? " ccw" : " cw"));
        EXPECT_NEAR(TDraw2D::ArcSweep(c.a0, c.a1, c.ccw), c.sweep, 1e-12);
    }
    EXPECT_NEAR(TDraw2D::SweepCCW(1.5 * kPi, 0.5 * kPi), kPi, 1e-12);
}

TEST(Draw2DAngle, ArcContainsAngleSwapsReversedBounds) {
    EXPECT_TRUE(TDraw2D::ArcContainsAngle(1, 2, 1.5, true));
    EXPECT_TRUE(TDraw2D::ArcContainsAngle(1, 2, 2, true));  // ends included
    EXPECT_FALSE(TDraw2D::ArcContainsAngle(1, 2, 3, true));
    EXPECT_FALSE(TDraw2D::ArcContainsAngle(1, 2, 1.5, false));
    EXPECT_TRUE(TDraw2D::ArcContainsAngle(1, 2, 3, false));
    // a0 > a1 counter-clockwise answers as the clockwise arc from a1 to a0.
    for (const double a : {0.0, 0.5, 1.0, 1.5, 2.0, 3.0, 6.0}) {
        SCOPED_TRACE(a);
        EXPECT_EQ(TDraw2D::ArcContainsAngle(2, 1, a, true), TDraw2D::ArcContainsAngle(1, 2, a, false));
    }
}

TEST(Draw2DAngle, NormalisingAndDifferences) {
    EXPECT_NEAR(TDraw2D::NormalizeAngle(-kPi / 2), 1.5 * kPi, 1e-12);
    EXPECT_EQ(TDraw2D::NormalizeAngle(2 * kPi), 0.0);
    EXPECT_EQ(TDraw2D::NormalizeAngle(-1e-17), 0.0);  // never exactly 2 pi
    EXPECT_NEAR(TDraw2D::NormalizeAngle(5 * kPi), kPi, 1e-12);
    EXPECT_NEAR(TDraw2D::AngleDiff(0.1, 2 * kPi - 0.1), -0.2, 1e-12);
    EXPECT_NEAR(TDraw2D::AngleDiff(0, kPi), kPi, 1e-12);
    EXPECT_NEAR(TDraw2D::AngleSegment(0, 0, 0, -10), 1.5 * kPi, 1e-12);
    EXPECT_EQ(TDraw2D::AngleSegment(3, 3, 3, 3), 0.0);

    EXPECT_TRUE(TDraw2D::IsAngleWithinArc(0.1, 2 * kPi - 0.2, 0.5));  // across zero
    EXPECT_FALSE(TDraw2D::IsAngleWithinArc(0.4, 2 * kPi - 0.2, 0.5));
    EXPECT_TRUE(TDraw2D::IsAngleWithinArc(-kPi / 4, 0, -kPi / 2));
    EXPECT_FALSE(TDraw2D::IsAngleWithinArc(kPi / 4, 0, -kPi / 2));
    EXPECT_TRUE(TDraw2D::IsAngleWithinArc(3, 0, -2 * kPi));

    double r, a0, a1, sweep;
    ASSERT_TRUE(TDraw2D::ArcParam(0, 0, 10, 0, 0, 10, false, r, a0, a1, sweep));
    EXPECT_EQ(r, 10.0);
    EXPECT_NEAR(a1, kPi / 2, 1e-12);
    EXPECT_NEAR(sweep, 1.5 * kPi, 1e-12);
    EXPECT_FALSE(TDraw2D::ArcParam(0, 0, 0, 0, 0, 10, true, r, a0, a1, sweep));
}

TEST(Draw2DAngle, ArcAndCurveFlattening) {
    std::vector<TPoint2D> p = TDraw2D::ArcSegment(0, 0, 10, 0, kPi / 2, true, 2);
    ASSERT_EQ(p.size(), 3u);
    ExpectPoint(p[1], 10 * std::cos(kPi / 4), 10 * std::sin(kPi / 4));
    ExpectPoint(p[2], 0, 10);
    p = TDraw2D::ArcSegment(0, 0, 10, 0, kPi / 2, false, 2);  // the long way round
    ExpectPoint(p[1], 10 * std::cos(-0.75 * kPi), 10 * std::sin(-0.75 * kPi));
    ExpectPoint(p[2], 0, 10);

    const std::vector<TQVLPto64> chain = {{0, 0}, {0, 100}, {100, 100}, {100, 0}, {200, 0}};
    p = TDraw2D::CurvePoints(chain, 2);
    ASSERT_EQ(p.size(), 4u);
    ExpectPoint(p[1], 50, 75);
    ExpectPoint(p[2], 100, 0);
    ExpectPoint(p[3], 200, 0);  // the left-over point is joined straight
}

TEST(Draw2DIntersect, LinesCrossingParallelAndCollinear) {
    std::int64_t x = -1, y = -1;
    ASSERT_TRUE(TDraw2D::IntersectLines(0, 0, 10, 10, 0, 10, 10, 0, x, y));
    EXPECT_EQ(x, 5);
    EXPECT_EQ(y, 5);
    ASSERT_TRUE(TDraw2D::IntersectLines(0, 0, 3, 1, 0, 1, 3, 0, x, y));  // (1.5, 0.5) rounds away from zero
    EXPECT_EQ(x, 2);
    EXPECT_EQ(y, 1);
    ASSERT_TRUE(TDraw2D::IntersectLines(0, 0, 1, 0, 50, 7, 50, 8, x, y));  // beyond both segments
    EXPECT_EQ(x, 50);
    EXPECT_EQ(y, 0);
    EXPECT_FALSE(TDraw2D::IntersectLines(0, 0, 10, 0, 0, 5, 10, 5, x, y));
    EXPECT_FALSE(TDraw2D::IntersectLines(0, 0, 10, 0, 20, 0, 30, 0, x, y));
    EXPECT_FALSE(TDraw2D::IntersectLines(0, 0, 0, 0, 0, 5, 10, 5, x, y));

    std::int64_t fx, fy;
    ASSERT_TRUE(TDraw2D::LinePerpenFromPoint(0, 0, 10, 0, 3, 7, fx, fy));
    EXPECT_EQ(fx, 3);
    EXPECT_EQ(fy, 0);
    EXPECT_FALSE(TDraw2D::LinePerpenFromPoint(1, 1, 1, 1, 3, 7, fx, fy));
}

TEST(Draw2DIntersect, CirclesAndEllipsesCrossingLinesAndEachOther) {
    TPoint2D p1, p2;
    EXPECT_EQ(TDraw2D::CircleCircleIntersections({0, 0}, 5, {8, 0}, 5, p1, p2), 2);
    ExpectPoint(p1, 4, 3);  // right of the line between the centres
    ExpectPoint(p2, 4, -3);
    EXPECT_EQ(TDraw2D::CircleCircleIntersections({0, 0}, 5, {10, 0}, 5, p1, p2), 1);
    ExpectPoint(p1, 5, 0);
    EXPECT_EQ(TDraw2D::CircleCircleIntersections({0, 0}, 5, {2, 0}, 3, p1, p2), 1);  // inner tangent
    ExpectPoint(p2, 5, 0);
    EXPECT_EQ(TDraw2D::CircleCircleIntersections({0, 0}, 5, {11, 0}, 5, p1, p2), 0);
    EXPECT_EQ(TDraw2D::CircleCircleIntersections({0, 0}, 5, {1, 0}, 2, p1, p2), 0);
    EXPECT_EQ(TDraw2D::CircleCircleIntersections({0, 0}, 5, {0, 0}, 5, p1, p2), 0);

    std::int64_t x1, y1, x2, y2;
    ASSERT_TRUE(TDraw2D::CircleCrossCircle(0, 0, 5, 8, 0, 5, x1, y1, x2, y2));
    EXPECT_EQ((std::vector<std::int64_t>{x1, y1, x2, y2}), (std::vector<std::int64_t>{4, 3, 4, -3}));
    EXPECT_FALSE(TDraw2D::CircleCrossCircle(0, 0, 5, 11, 0, 5, x1, y1, x2, y2));

    EXPECT_EQ(TDraw2D::LineCrossCircle(-10, 0, 10, 0, 0, 0, 5, p1, p2), 2);
    ExpectPoint(p1, -5, 0);
    EXPECT_EQ(TDraw2D::LineCrossCircle(10, 0, -10, 0, 0, 0, 5, p1, p2), 2);  // ordered along the line
    ExpectPoint(p1, 5, 0);
    EXPECT_EQ(TDraw2D::LineCrossCircle(-10, 5, 10, 5, 0, 0, 5, p1, p2), 1);
    ExpectPoint(p1, 0, 5);
    EXPECT_EQ(TDraw2D::LineCrossCircle(-10, 6, 10, 6, 0, 0, 5, p1, p2), 0);
    EXPECT_EQ(TDraw2D::LineCrossCircle(1, 1, 1, 1, 0, 0, 5, p1, p2), 0);

    EXPECT_EQ(TDraw2D::LineCrossEllipse(-100, 0, 100, 0, 0, 0, 20, 10, p1, p2), 2);
    ExpectPoint(p1, -20, 0);
    ExpectPoint(p2, 20, 0);
    EXPECT_EQ(TDraw2D::LineCrossEllipse(20, -50, 20, 50, 0, 0, 20, 10, p1, p2), 1);
    ExpectPoint(p1, 20, 0);
    EXPECT_EQ(TDraw2D::LineCrossEllipse(21, -50, 21, 50, 0, 0, 20, 10, p1, p2), 0);
    EXPECT_EQ(TDraw2D::LineCrossEllipse(-10, 0, 10, 0, 0, 0, 0, 10, p1, p2), 0);
}

TEST(Draw2DIntersect, RectanglesArcsAndEllipsesAgainstRectangles) {
    const TQVLRect box(0, 0, 10, 10);
    EXPECT_TRUE(TDraw2D::LineCrossRect(-5, 5, 15, 5, box));
    EXPECT_TRUE(TDraw2D::LineCrossRect(2, 2, 3, 3, box));
    EXPECT_TRUE(TDraw2D::LineCrossRect(-5, 5, 5, 15, box));  // touches the corner (0, 10)
    EXPECT_FALSE(TDraw2D::LineCrossRect(-5, 6, 5, 16, box));
    EXPECT_FALSE(TDraw2D::LineCrossRect(11, 0, 20, 20, box));

    TPoint2D in, out;
    ASSERT_TRUE(TDraw2D::RectangleIntersectLine(box, -5, 5, 15, 5, in, out));
    ExpectPoint(in, 0, 5);
    ExpectPoint(out, 10, 5);
    ASSERT_TRUE(TDraw2D::RectangleIntersectLine(box, 5, 5, 15, 10, in, out));
    ExpectPoint(in, 5, 5);
    ExpectPoint(out, 10, 7.5);
    EXPECT_FALSE(TDraw2D::RectangleIntersectLine(box, -5, 11, 15, 11, in, out));

    EXPECT_TRUE(TDraw2D::ArcIntersectsRect(0, 0, 10, 0, kPi / 2, true, TQVLRect(5, 5, 20, 20)));
    EXPECT_FALSE(TDraw2D::ArcIntersectsRect(0, 0, 10, kPi, 1.5 * kPi, true, TQVLRect(5, 5, 20, 20)));
    EXPECT_FALSE(TDraw2D::ArcIntersectsRect(0, 0, 10, 0, kPi / 2, true, TQVLRect(-2, -2, 2, 2)));
    EXPECT_TRUE(TDraw2D::ArcIntersectsRect(0, 0, 10, 0, kPi / 2, true, TQVLRect(9, -1, 12, 1)));

    EXPECT_TRUE(TDraw2D::EllipseIntersectsRect(0, 0, 10, 5, TQVLRect(8, 0, 20, 20)));
    EXPECT_FALSE(TDraw2D::EllipseIntersectsRect(0, 0, 10, 5, TQVLRect(8, 4, 20, 20)));
    EXPECT_TRUE(TDraw2D::EllipseIntersectsRect(0, 0, 10, 5, TQVLRect(-1, -1, 1, 1)));
    EXPECT_TRUE(TDraw2D::EllipseIntersectsRect(0, 0, 10, 5, TQVLRect(10, 0, 20, 1)));
}

TEST(Draw2DTrim, ExtendMovesTheNearerEndOntoTheBoundary) {
    struct Case {
        const char* name;
        bool ok;
        std::vector<std::int64_t> after;
    };
    const auto run = [](const Case& c, auto&& extend) {
        SCOPED_TRACE(c.name);
        std::int64_t x1 = 0, y1 = 0, x2 = 10, y2 = 0;
        EXPECT_EQ(extend(x1, y1, x2, y2), c.ok);
        EXPECT_EQ((std::vector<std::int64_t>{x1, y1, x2, y2}), c.after);
    };
    using I = std::int64_t;
    run({"segment ahead", true, {0, 0, 20, 0}},
        [](I& a, I& b, I& c, I& d) { return TDraw2D::ExtendLines(a, b, c, d, 20, -5, 20, 5); });
    run({"segment behind", true, {-20, 0, 10, 0}},
        [](I& a, I& b, I& c, I& d) { return TDraw2D::ExtendLines(a, b, c, d, -20, -5, -20, 5); });
    run({"segment missed", false, {0, 0, 10, 0}},
        [](I& a, I& b, I& c, I& d) { return TDraw2D::ExtendLines(a, b, c, d, 20, 5, 20, 10); });
    run({"crossing inside", false, {0, 0, 10, 0}},
        [](I& a, I& b, I& c, I& d) { return TDraw2D::ExtendLines(a, b, c, d, 5, -5, 5, 5); });
    run({"circle", true, {0, 0, 40, 0}},
        [](I& a, I& b, I& c, I& d) { return TDraw2D::ExtendLineToCircle(a, b, c, d, 50, 0, 10); });
    run({"ellipse", true, {0, 0, 30, 0}},
        [](I& a, I& b, I& c, I& d) { return TDraw2D::ExtendLineToEllipse(a, b, c, d, 50, 0, 20, 5); });
    run({"rectangle", true, {0, 0, 20, 0}}, [](I& a, I& b, I& c, I& d) {
        return TDraw2D::ExtendLineToRectangle(a, b, c, d, TQVLRect(20, -10, 40, 10));
    });
    run({"polyline", true, {0, 0, 30, 0}}, [](I& a, I& b, I& c, I& d) {
        const std::vector<TQVLPto64> pl = {{30, -10}, {30, 10}, {60, 10}};
        return TDraw2D::ExtendLineToPolyline(a, b, c, d, pl, false);
    });
    // Only the right half of the circle exists, so the far crossing is the one reached.
    run({"arc", true, {0, 0, 60, 0}}, [](I& a, I& b, I& c, I& d) {
        return TDraw2D::ExtendLineToArc(a, b, c, d, 50, 0, 10, 1.5 * kPi, kPi / 2, true);
    });
}

TEST(Draw2DTrim, TrimRemovesThePickedSideAndJoinMakesACorner) {
    // Equal bounds clockwise make a full circle.
    std::int64_t x1 = 0, y1 = 0, x2 = 100, y2 = 0;
    ASSERT_TRUE(TDraw2D::TrimLineAtArc(x1, y1, x2, y2, 50, 0, 20, 0, 0, false, 10, 5));
    EXPECT_EQ((std::vector<std::int64_t>{x1, y1, x2, y2}), (std::vector<std::int64_t>{30, 0, 100, 0}));
    x1 = 0, x2 = 100;
    ASSERT_TRUE(TDraw2D::TrimLineAtArc(x1, y1, x2, y2, 50, 0, 20, 0, 0, false, 90, 0));
    EXPECT_EQ((std::vector<std::int64_t>{x1, y1, x2, y2}), (std::vector<std::int64_t>{0, 0, 70, 0}));
    x1 = 0, x2 = 100;
    EXPECT_FALSE(TDraw2D::TrimLineAtArc(x1, y1, x2, y2, 50, 50, 20, 0, 0, false, 90, 0));
    EXPECT_EQ((std::vector<std::int64_t>{x1, y1, x2, y2}), (std::vector<std::int64_t>{0, 0, 100, 0}));

    std::int64_t a = 0, b = 0, c = 8, d = 0, e = 10, f = 2, g = 10, h = 20;
    ASSERT_TRUE(TDraw2D::JoinLines(a, b, c, d, e, f, g, h));
    EXPECT_EQ((std::vector<std::int64_t>{a, b, c, d, e, f, g, h}),
              (std::vector<std::int64_t>{0, 0, 10, 0, 10, 0, 10, 20}));
    EXPECT_FALSE(TDraw2D::JoinLines(a, b, c, d, a, h, c, h));
}

}  // namespace
