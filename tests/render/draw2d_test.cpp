// Arrow heads, offsets, hit tests, vectors, rotation and rectangles of TDraw2D.
#include "orvex/render/draw2d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <vector>

using namespace Orvex;

namespace {

constexpr double kPi = std::numbers::pi;

TEST(Draw2DArrow, BarbsLieEitherSideOfTheShaftBehindTheTip) {
    std::int64_t ax1, ay1, ax2, ay2;
    EXPECT_TRUE(TDraw2D::DrawArrow(std::int64_t{0}, 0, 100, 0, 10, ax1, ay1, ax2, ay2, 4.0f));
    EXPECT_EQ(ax1, 93);  // 100 - 10 cos(pi/4), rounded
    EXPECT_EQ(ay1, 7);   // below on screen: the right of a rightward shaft
    EXPECT_EQ(ax2, 93);
    EXPECT_EQ(ay2, -7);

    // Downwards with the usual 60 degree opening; the tip-and-angle form agrees with the segment form.
    std::int64_t bx1, by1, bx2, by2;
    EXPECT_TRUE(
        TDraw2D::DrawArrow(std::int64_t{0}, 0, 0, 100, 10, ax1, ay1, ax2, ay2, TDraw2D::kArrowDivisor));
    EXPECT_TRUE(
        TDraw2D::DrawArrow(std::int64_t{0}, 100, kPi / 2, 10, bx1, by1, bx2, by2, TDraw2D::kArrowDivisor));
    EXPECT_EQ((std::vector<std::int64_t>{ax1, ay1, ax2, ay2}), (std::vector<std::int64_t>{-5, 91, 5, 91}));
    EXPECT_EQ((std::vector<std::int64_t>{bx1, by1, bx2, by2}), (std::vector<std::int64_t>{-5, 91, 5, 91}));

    float fx1, fy1, fx2, fy2;
    EXPECT_TRUE(TDraw2D::DrawArrow(0.0f, 0.0f, 100.0f, 0.0f, 10.0f, fx1, fy1, fx2, fy2, 4.0f));
    EXPECT_NEAR(fx1, 92.928932f, 1e-4f);
    EXPECT_NEAR(fy1, 7.0710678f, 1e-4f);
}

TEST(Draw2DArrow, SizeZeroReturnsFalseAndFillsTheTip) {
    std::int64_t ax1 = -1, ay1 = -1, ax2 = -1, ay2 = -1;
    EXPECT_FALSE(TDraw2D::DrawArrow(std::int64_t{3}, 4, 30, 40, 0, ax1, ay1, ax2, ay2, 6.0f));
    EXPECT_EQ((std::vector<std::int64_t>{ax1, ay1, ax2, ay2}), (std::vector<std::int64_t>{30, 40, 30, 40}));
    float fx1 = -1, fy1 = -1, fx2 = -1, fy2 = -1;
    EXPECT_FALSE(TDraw2D::DrawArrow(7.5f, 2.5f, 1.0, 0.0f, fx1, fy1, fx2, fy2, 6.0f));
    EXPECT_EQ((std::vector<float>{fx1, fy1, fx2, fy2}), (std::vector<float>{7.5f, 2.5f, 7.5f, 2.5f}));
    // No opening at all is no head either, and no division by zero.
    EXPECT_FALSE(TDraw2D::DrawArrow(std::int64_t{0}, 0, 10, 0, 5, ax1, ay1, ax2, ay2, 0.0f));
    EXPECT_EQ(ax1, 10);
}

TEST(Draw2DArrow, ArcHeadFollowsTheDirectionOfTravel) {
    std::int64_t tx, ty, ax1, ay1, ax2, ay2;
    ASSERT_TRUE(TDraw2D::DrawArrowArc(0, 0, 1000, 0.0, true, 50, tx, ty, ax1, ay1, ax2, ay2, 6.0f));
    EXPECT_EQ(tx, 1000);
    EXPECT_EQ(ty, 0);
    EXPECT_LT(ay1, 0);  // travelling towards +y, so the barbs trail at negative y
    EXPECT_LT(ay2, 0);
    ASSERT_TRUE(TDraw2D::DrawArrowArc(0, 0, 1000, 0.0, false, 50, tx, ty, ax1, ay1, ax2, ay2, 6.0f));
    EXPECT_GT(ay1, 0);
    EXPECT_GT(ay2, 0);
}

TEST(Draw2DArrow, DiagonalTicksLeanToTheirSide) {
    std::int64_t ax1, ay1, ax2, ay2;
    EXPECT_TRUE(TDraw2D::DrawLeft(0, 0, 100, 0, 10, ax1, ay1, ax2, ay2));
    EXPECT_EQ((std::vector<std::int64_t>{ax1, ay1, ax2, ay2}), (std::vector<std::int64_t>{93, 7, 107, -7}));
    EXPECT_TRUE(TDraw2D::DrawRight(0, 0, 100, 0, 10, ax1, ay1, ax2, ay2));
    EXPECT_EQ((std::vector<std::int64_t>{ax1, ay1, ax2, ay2}), (std::vector<std::int64_t>{93, -7, 107, 7}));
    EXPECT_FALSE(TDraw2D::DrawLeft(0, 0, 100, 0, 0, ax1, ay1, ax2, ay2));
}

TEST(Draw2DOffset, ParallelLinesMoveToTheRight) {
    std::int64_t x1, y1, x2, y2;
    EXPECT_TRUE(TDraw2D::DrawParallelLine(0, 0, 100, 0, 10, x1, y1, x2, y2));
    EXPECT_EQ((std::vector<std::int64_t>{x1, y1, x2, y2}), (std::vector<std::int64_t>{0, 10, 100, 10}));
    EXPECT_FALSE(TDraw2D::DrawParallelLine(5, 5, 5, 5, 10, x1, y1, x2, y2));
    EXPECT_EQ((std::vector<std::int64_t>{x1, y1, x2, y2}), (std::vector<std::int64_t>{5, 5, 5, 5}));
    float f1, g1, f2, g2;
    EXPECT_TRUE(TDraw2D::DrawParallelLine(0.0f, 0.0f, 0.0f, 10.0f, 2.0f, f1, g1, f2, g2));
    EXPECT_EQ((std::vector<float>{f1, g1, f2, g2}), (std::vector<float>{-2.0f, 0.0f, -2.0f, 10.0f}));

    EXPECT_TRUE(TDraw2D::DrawParalLine(0, 0, 100, 100, 100, 0, x1, y1, x2, y2));
    EXPECT_EQ((std::vector<std::int64_t>{x1, y1, x2, y2}), (std::vector<std::int64_t>{50, -50, 150, 50}));

    std::int64_t mx, my;
    EXPECT_TRUE(TDraw2D::PosMidParal(0, 0, 100, 0, -20, mx, my));
    EXPECT_EQ(mx, 50);
    EXPECT_EQ(my, -20);
}

TEST(Draw2DOffset, PolygonOffsetMitresCornersAndSkipsRepeatedPoints) {
    std::vector<TQVLPto64> out;
    const std::vector<TQVLPto64> ell = {{0, 0}, {100, 0}, {100, 100}};
    ASSERT_TRUE(TDraw2D::PoligonParalel(ell, 10, false, out));
    EXPECT_EQ(out, (std::vector<TQVLPto64>{{0, 10}, {90, 10}, {90, 100}}));

    const std::vector<TQVLPto64> square = {{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 0}};
    ASSERT_TRUE(TDraw2D::PoligonParalel(square, 10, true, out));
    EXPECT_EQ(out, (std::vector<TQVLPto64>{{10, 10}, {90, 10}, {90, 90}, {10, 90}}));

    const std::vector<TQVLPto64> straight = {{0, 0}, {50, 0}, {50, 0}, {100, 0}};
    ASSERT_TRUE(TDraw2D::PoligonParalel(straight, 5, false, out));
    EXPECT_EQ(out, (std::vector<TQVLPto64>{{0, 5}, {50, 5}, {100, 5}}));

    const std::vector<TQVLPto64> one = {{3, 3}, {3, 3}};
    EXPECT_FALSE(TDraw2D::PoligonParalel(one, 5, false, out));
    EXPECT_TRUE(out.empty());
}

TEST(Draw2DOffset, EquidistantArcsKeepTheirCentre) {
    std::int64_t q[6];
    ASSERT_TRUE(TDraw2D::EquidistArc(100, 0, 0, 100, -100, 0, 50, q[0], q[1], q[2], q[3], q[4], q[5]));
    EXPECT_EQ((std::vector<std::int64_t>(q, q + 6)), (std::vector<std::int64_t>{150, 0, 0, 150, -150, 0}));
    EXPECT_FALSE(TDraw2D::EquidistArc(100, 0, 0, 100, -100, 0, -100, q[0], q[1], q[2], q[3], q[4], q[5]));
    EXPECT_FALSE(TDraw2D::EquidistArc(0, 0, 5, 5, 10, 10, 1, q[0], q[1], q[2], q[3], q[4], q[5]));

    TPoint2D a, b, c;
    ASSERT_TRUE(TDraw2D::EquidistArc({10, 0}, {0, 10}, {-10, 0}, -5.0, a, b, c));
    EXPECT_NEAR(b.Y, 5.0, 1e-12);

    std::int64_t r;
    TQVLPto64 s, e;
    ASSERT_TRUE(TDraw2D::EquidistArc(0, 0, 100, 0.0, kPi / 2, 20, r, s, e));
    EXPECT_EQ(r, 120);
    EXPECT_EQ(s, TQVLPto64(120, 0));
    EXPECT_EQ(e, TQVLPto64(0, 120));
}

TEST(Draw2DHit, GripTestIsStrictOnBothAxes) {
    struct Case {
        std::int64_t px, py;
        bool hit;
    };
    for (const Case& c : {Case{4, 4, true}, Case{-4, -4, true}, Case{5, 0, false}, Case{0, -5, false},
                          Case{-5, 4, false}, Case{4, 5, false}}) {
        SCOPED_TRACE(testing::Message() << c.px << "," << c.py);
        EXPECT_EQ(TDraw2D::CursorOnPos(0, 0, c.px, c.py, 5), c.hit);
        EXPECT_EQ(TDraw2D::CursorOnPosS(0, 0, static_cast<float>(c.px), static_cast<float>(c.py), 5), c.hit);
    }
    EXPECT_TRUE(TDraw2D::CursorOnPosS(0, 0, 4.99f, 0.0f, 5));
}

TEST(Draw2DHit, OutlinesAcceptDistancesUpToTheTolerance) {
    EXPECT_TRUE(TDraw2D::PointInLine(0, 0, 100, 0, 50, 5, 5));
    EXPECT_FALSE(TDraw2D::PointInLine(0, 0, 100, 0, 50, 6, 5));
    EXPECT_TRUE(TDraw2D::PointInLine(0, 0, 100, 0, 103, 4, 5));  // round end, exactly 5 away
    EXPECT_FALSE(TDraw2D::PointInLine(0, 0, 100, 0, 104, 4, 5));
    EXPECT_TRUE(TDraw2D::PointInLine(7, 7, 7, 7, 10, 11, 5));  // a point-like line

    EXPECT_TRUE(TDraw2D::PointOnSegment(0, 0, 10, 5, 4, 2));
    EXPECT_FALSE(TDraw2D::PointOnSegment(0, 0, 10, 5, 12, 6));
    EXPECT_FALSE(TDraw2D::PointOnSegment(0, 0, 10, 5, 5, 3));

    EXPECT_TRUE(TDraw2D::PointInCircle(0, 0, 5, 3, 4));
    EXPECT_FALSE(TDraw2D::PointInCircle(0, 0, 5, 4, 4));
    EXPECT_TRUE(TDraw2D::PointOnCircle(0, 0, 5, 0, 6, 1));
    EXPECT_FALSE(TDraw2D::PointOnCircle(0, 0, 5, 0, 7, 1));
    EXPECT_FALSE(TDraw2D::PointOnCircle(0, 0, 5, 0, 3, 1));
    EXPECT_TRUE(TDraw2D::PointOnCircle(0, 0, 5, 0, 0, 10));

    // Quarter arc from +x to +y; its ends are round.
    EXPECT_TRUE(TDraw2D::PointInArc(0, 0, 100, 0.0, kPi / 2, true, 70, 70, 3));
    EXPECT_FALSE(TDraw2D::PointInArc(0, 0, 100, 0.0, kPi / 2, true, -100, 0, 3));
    EXPECT_TRUE(TDraw2D::PointInArc(0, 0, 100, 0.0, kPi / 2, true, 101, -2, 3));
    EXPECT_TRUE(TDraw2D::PointInArc(0, 0, 100, 0.0, kPi / 2, false, -100, 0, 3));

    const std::vector<TQVLPto64> curve = {{0, 0}, {0, 100}, {100, 100}, {100, 0}};
    EXPECT_TRUE(TDraw2D::PointInBezier(curve, 50, 76, 2));
    EXPECT_FALSE(TDraw2D::PointInBezier(curve, 50, 50, 2));
}

TEST(Draw2DHit, EllipseTestsAreExactAndTheBandUsesHalfTheTolerance) {
    EXPECT_TRUE(TDraw2D::PointInEllipse(0, 0, 10, 5, 10, 0));
    EXPECT_TRUE(TDraw2D::PointInEllipse(0, 0, 10, 5, 6, 4));  // 0.36 + 0.64, exactly on the outline
    EXPECT_FALSE(TDraw2D::PointInEllipse(0, 0, 10, 5, 7, 4));
    EXPECT_FALSE(TDraw2D::PointInEllipse(0, 0, 0, 5, 0, 0));

    struct Case {
        std::int64_t px, py;
        bool on;
    };
    // tol 11 halves to 5: the band runs from radius 95 (excluded) to 105 (included) along x.
    for (const Case& c : {Case{100, 0, true}, Case{105, 0, true}, Case{106, 0, false}, Case{95, 0, false},
                          Case{96, 0, true}, Case{0, 55, true}, Case{0, 45, false}, Case{0, 0, false}}) {
        SCOPED_TRACE(testing::Message() << c.px << "," << c.py);
        EXPECT_EQ(TDraw2D::PointOnEllipse(0, 0, 100, 50, c.px, c.py, 11), c.on);
        EXPECT_EQ(TDraw2D::PointOnEllipse(0, 0, 100, 50, c.px, c.py, 10), c.on);
    }
    // A tolerance of 1 halves to nothing, leaving no band at all.
    EXPECT_FALSE(TDraw2D::PointOnEllipse(0, 0, 100, 50, 100, 0, 1));
    // A band wider than the ellipse: the shrunk ellipse is empty, so the centre is on the outline.
    EXPECT_TRUE(TDraw2D::PointOnEllipse(0, 0, 4, 4, 0, 0, 10));
}

TEST(Draw2DHit, SideOfALine) {
    EXPECT_EQ(TDraw2D::PointSide(0, 0, 10, 0, 5, 5), 1);
    EXPECT_EQ(TDraw2D::PointSide(0, 0, 10, 0, 5, -5), -1);
    EXPECT_EQ(TDraw2D::PointSide(0, 0, 10, 0, 20, 0), 0);

    EXPECT_TRUE(TDraw2D::PosPoint(0, 10, 10, 10, 50, 5));  // horizontal: above
    EXPECT_FALSE(TDraw2D::PosPoint(0, 10, 10, 10, 50, 10));
    EXPECT_TRUE(TDraw2D::PosPoint(10, 0, 10, 10, 11, 50));  // vertical: right of it
    EXPECT_FALSE(TDraw2D::PosPoint(10, 0, 10, 10, 10, 50));
    EXPECT_TRUE(TDraw2D::PosPoint(0, 0, 10, 10, 5, 4));  // slope 1: the line's y there exceeds py
    EXPECT_FALSE(TDraw2D::PosPoint(0, 0, 10, 10, 5, 5));
    EXPECT_TRUE(TDraw2D::PosPoint(3, 3, 3, 3, 0, 2));  // a point-line counts as horizontal
}

TEST(Draw2DVector, DistancePointToLineIsIntegerAndSafeOnAPointLine) {
    EXPECT_EQ(TDraw2D::DistancePointToLine(5, 7, 0, 0, 10, 0), 7);
    EXPECT_EQ(TDraw2D::DistancePointToLine(4, -3, 0, 0, 3, 4), 5);
    EXPECT_EQ(TDraw2D::DistancePointToLine(1, 0, 0, 0, 3, 4), 0);    // 4 div 5
    EXPECT_EQ(TDraw2D::DistancePointToLine(0, 10, 0, 0, 1, 1), 10);  // divides by Int64Sqrt(2) = 1, not 1.414
    EXPECT_EQ(TDraw2D::DistancePointToLine(9, 9, 4, 4, 4, 4), 0);
}

TEST(Draw2DVector, Int64SqrtIsTheExactFloor) {
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    struct Case {
        std::int64_t v, root;
    };
    for (const Case& c :
         {Case{0, 0}, Case{1, 1}, Case{15, 3}, Case{16, 4}, Case{-5, 0},
          Case{1'000'000'000'000'000'000, 1'000'000'000}, Case{999'999'999'999'999'999, 999'999'999},
          Case{std::int64_t{1} << 62, std::int64_t{1} << 31},
          Case{(std::int64_t{1} << 62) - 1, (std::int64_t{1} << 31) - 1},
          Case{9'223'372'030'926'249'001, 3'037'000'499}, Case{9'223'372'030'926'249'000, 3'037'000'498},
          Case{kMax, 3'037'000'499}}) {
        SCOPED_TRACE(c.v);
        EXPECT_EQ(TDraw2D::Int64Sqrt(c.v), c.root);
    }
}

TEST(Draw2DVector, ProductsAnglesAndPerpendiculars) {
    const std::int64_t big = std::int64_t{1} << 40;
    EXPECT_EQ(TDraw2D::CrossProduct(big, 0, 0, big), std::ldexp(1.0, 80));
    EXPECT_EQ(TDraw2D::DotProduct(std::int64_t{3}, 4, 3, 4), 25.0);
    EXPECT_EQ(TDraw2D::Distance(std::int64_t{0}, 0, 3, 4), 5.0);
    EXPECT_EQ(TDraw2D::Magnitude(TPoint2D(-3, 4)), 5.0);
    EXPECT_EQ(TDraw2D::VectorPerpendicular(std::int64_t{1}, 2, 4, 6), TQVLPto64(-4, 3));
    EXPECT_EQ(TDraw2D::VectorPerpendicular(1.0f, 2.0f, 4.0f, 6.0f), (TQVLSPoint{-4.0f, 3.0f}));
    EXPECT_NEAR(TDraw2D::AnglePointToLine(0, 0, 10, 0, 0, 10), kPi / 2, 1e-12);
    EXPECT_NEAR(TDraw2D::AnglePointToLine(0, 0, 10, 0, 0, -10), -kPi / 2, 1e-12);
}

TEST(Draw2DRotation, QuarterTurnsTakePlusXToPlusY) {
    struct Case {
        TQVLAngle angle;
        TQVLPto64 expected;
    };
    for (const Case& c : {Case{TQVLAngle::ag0, {10, 5}}, Case{TQVLAngle::ag90, {5, 10}},
                          Case{TQVLAngle::ag180, {0, 5}}, Case{TQVLAngle::ag270, {5, 0}}}) {
        SCOPED_TRACE(static_cast<int>(c.angle));
        EXPECT_EQ(TDraw2D::RotatePoint(10, 5, 5, 5, c.angle), c.expected);
        EXPECT_EQ(TDraw2D::RotatePoint(10, 5, 5, 5, static_cast<int>(c.angle) * kPi / 2), c.expected);
    }
    const TPoint2D p = TDraw2D::RotatePoint(TPoint2D(10, 0), TPoint2D(0, 0), kPi);
    EXPECT_NEAR(p.X, -10.0, 1e-12);
    EXPECT_NEAR(p.Y, 0.0, 1e-12);

    EXPECT_EQ(TDraw2D::Rotate({0, 0, 20, 10}, 0, 0, TQVLAngle::ag90), (TRectF{-10, 0, 0, 20}));
    EXPECT_EQ(TDraw2D::Rotate({0, 0, 20, 10}, 0, 0, TQVLAngle::ag180), (TRectF{-20, -10, 0, 0}));
    EXPECT_EQ(TDraw2D::Rotate({0, 0, 20, 10}, 10, 5, TQVLAngle::ag270), (TRectF{5, -5, 15, 15}));
}

TEST(Draw2DRotation, OrderPointsUsesThreeCompareAndSwaps) {
    std::vector<TQVLPto64> p = {{3, 0}, {1, 1}, {2, 2}};
    TDraw2D::OrderPoints(p);
    EXPECT_EQ(p, (std::vector<TQVLPto64>{{1, 1}, {2, 2}, {3, 0}}));
    // The swap network is not stable: the first-third swap carries (1, 5) behind (1, 3).
    p = {{1, 5}, {1, 3}, {0, 0}};
    TDraw2D::OrderPoints(p);
    EXPECT_EQ(p, (std::vector<TQVLPto64>{{0, 0}, {1, 3}, {1, 5}}));
}

TEST(Draw2DRect, CentredRectanglesAndSlots) {
    EXPECT_EQ(TDraw2D::CenteredRect(TQVLRect(0, 0, 10, 10), 3, 4), TQVLRect(3, 3, 6, 7));
    EXPECT_EQ(TDraw2D::CenteredRect(TQVLRect(0, 0, 10, 10), 13, 10), TQVLRect(-2, 0, 11, 10));
    EXPECT_EQ(TDraw2D::CenteredRect(TRectF{0, 0, 10, 10}, 4, 2), (TRectF{3, 4, 7, 6}));

    EXPECT_EQ(TDraw2D::CalculateSlotPolygon(0, 0, 100, 0, 20, 2),
              (std::vector<TQVLPto64>{{100, -10}, {110, 0}, {100, 10}, {0, 10}, {-10, 0}, {0, -10}}));
    EXPECT_EQ(TDraw2D::CalculateSlotPolygon(0, 0, 0, 0, 20, 2),
              (std::vector<TQVLPto64>{{10, 0}, {0, 10}, {-10, 0}, {0, -10}}));
    EXPECT_TRUE(TDraw2D::CalculateSlotPolygon(0, 0, 100, 0, 0, 8).empty());
}

}  // namespace
