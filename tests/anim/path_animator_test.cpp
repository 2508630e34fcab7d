#include "orvex/anim/path_animator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Orvex;

namespace {

constexpr double kPi = std::numbers::pi;

TPathSegment Line(double x0, double y0, double x1, double y1, double speed = 1.0) {
    TPathSegment s;
    s.StartPoint = {x0, y0}, s.EndPoint = {x1, y1}, s.SpeedFactor = speed;
    return s;
}

TPathSegment Round(TPoint2D centre, double rx, double ry, double startAngle, double endAngle) {
    TPathSegment s;
    s.StartPoint = centre, s.Radius = rx, s.RadiusY = ry, s.StartAngle = startAngle, s.EndAngle = endAngle;
    return s;
}

TPathSegment Bezier(TPoint2D p0, TPoint2D p1, TPoint2D p2, TPoint2D p3) {
    TPathSegment s;
    s.StartPoint = p0, s.ControlPoint1 = p1, s.ControlPoint2 = p2, s.EndPoint = p3;
    return s;
}

// A Bézier whose control points split a straight line in thirds, so it runs at an even pace by itself.
TPathSegment StraightBezier(TPoint2D from, double headingDegrees, double length) {
    const double a = headingDegrees * kPi / 180.0;
    const auto at = [&](double f) {
        return TPoint2D{from.X + std::cos(a) * length * f, from.Y + std::sin(a) * length * f};
    };
    return Bezier(at(0), at(1.0 / 3), at(2.0 / 3), at(1));
}

TPathAnimator Make(TPathType type, const std::vector<TPathSegment>& segments, double totalTime = 1.0) {
    TPathAnimator a;
    a.SetPath(type, segments);
    a.SetTiming(totalTime, 1.0);
    return a;
}

struct TPose {
    double X = -1, Y = -1, R = -1;
    bool Ok = false;
};

TPose At(const TPathAnimator& a, double time) {
    TPose p;
    p.Ok = a.CalculatePosition(time, p.X, p.Y, p.R);
    return p;
}

template <typename F>
void ExpectOutOfRange(F&& f, const std::string& message) {
    try {
        f();
        ADD_FAILURE() << "expected an exception: " << message;
    } catch (const std::out_of_range& e) {
        EXPECT_EQ(e.what(), message);
    }
}

}  // namespace

TEST(PathAnimator, RunsForwardAndBackWithTimeScaleAndRemainder) {
    TPathAnimator a = Make(TPathType::ptLine, {Line(0, 0, 10, 0)}, 2.0);
    double x = 0, y = 0, r = 0, rest = -1;
    EXPECT_TRUE(a.Update(1.0, x, y, r, rest));
    EXPECT_DOUBLE_EQ(x, 5.0);
    EXPECT_DOUBLE_EQ(y, 0.0);
    EXPECT_DOUBLE_EQ(r, 0.0);
    EXPECT_EQ(rest, 0.0);
    EXPECT_FALSE(a.Update(1.5, x, y, r, rest));
    EXPECT_DOUBLE_EQ(x, 10.0);
    EXPECT_DOUBLE_EQ(rest, 0.5);

    a.SetReverse(true);
    EXPECT_EQ(a.GetCurrentTime(), 2.0);  // flipping the direction does not move the point
    a.UpdateTimeScale(2.0);
    EXPECT_TRUE(a.Update(0.25, x, y, r, rest));
    EXPECT_DOUBLE_EQ(x, 7.5);
    EXPECT_FALSE(a.Update(1.0, x, y, r, rest));  // 1.5 s of path left at double speed is 0.75 s
    EXPECT_DOUBLE_EQ(x, 0.0);
    EXPECT_DOUBLE_EQ(rest, 0.25);
    a.Reset();
    EXPECT_EQ(a.GetCurrentTime(), 2.0);  // the start of a reverse run is the end

    a.SetTiming(8.0, 1.0);  // keeps the progress
    EXPECT_EQ(a.GetCurrentTime(), 8.0);
}

TEST(PathAnimator, ArgumentErrorsCarryTheirMessagesAndChangeNothing) {
    TPathAnimator a = Make(TPathType::ptLine, {Line(0, 0, 10, 0)}, 2.0);
    double x = 0, y = 0, r = 0;
    a.Update(0.5, x, y, r);
    const std::string total = "TotalTime must be greater than zero";
    const std::string scale = "TimeScale must be greater than zero";
    const std::string progress = "Progress must be between zero and one";
    ExpectOutOfRange([&] { a.SetTiming(0, 1); }, total);
    ExpectOutOfRange([&] { a.SetTiming(-1, 0); }, total);  // the total time is checked first
    ExpectOutOfRange([&] { a.SetTiming(NAN, 1); }, total);
    ExpectOutOfRange([&] { a.SetTiming(5, 0); }, scale);
    ExpectOutOfRange([&] { a.UpdateTimeScale(0); }, scale);
    ExpectOutOfRange([&] { a.Seek(1.5, x, y, r); }, progress);
    ExpectOutOfRange([&] { a.Seek(-0.01, x, y, r); }, progress);
    ExpectOutOfRange([&] { a.GetCrossedWaypoints(0.0, 2.0); }, progress);
    ExpectOutOfRange([&] { a.Update(-0.1, x, y, r); }, "DeltaTime must be zero or greater");
    EXPECT_EQ(a.GetTotalTime(), 2.0);
    EXPECT_EQ(a.GetTimeScale(), 1.0);
    EXPECT_EQ(a.GetCurrentTime(), 0.5);
}

TEST(PathAnimator, PositionQueriesOutsideTheRunReturnFalseAndLeaveTheOutputs) {
    TPathAnimator idle;
    idle.SetPath(TPathType::ptLine, {Line(0, 0, 10, 0)});
    EXPECT_EQ(At(idle, 0.0).X, -1);
    EXPECT_FALSE(At(idle, 0.0).Ok);
    double x = 0, y = 0, r = 0;
    EXPECT_FALSE(idle.Seek(0.5, x, y, r));

    const TPathAnimator a = Make(TPathType::ptLine, {Line(0, 0, 10, 0)}, 2.0);
    EXPECT_FALSE(At(a, -0.001).Ok);
    EXPECT_FALSE(At(a, 2.001).Ok);
    EXPECT_TRUE(At(a, 2.0).Ok);
    EXPECT_FALSE(At(Make(TPathType::ptLine, {}, 2.0), 1.0).Ok);
}

TEST(PathAnimator, EasingCurvesAndTheirInverse) {
    struct TCase {
        TPathEasing Easing;
        double At25, At50, At75;
    };
    const TCase cases[] = {
        {TPathEasing::peLinear, 0.25, 0.5, 0.75},           {TPathEasing::peEaseIn, 0.0625, 0.25, 0.5625},
        {TPathEasing::peEaseOut, 0.4375, 0.75, 0.9375},     {TPathEasing::peEaseInOut, 0.125, 0.5, 0.875},
        {TPathEasing::peSmoothStep, 0.15625, 0.5, 0.84375},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.Easing));
        TPathAnimator a;
        a.SetEasing(c.Easing);
        EXPECT_DOUBLE_EQ(a.ApplyEasing(0.25), c.At25);
        EXPECT_DOUBLE_EQ(a.ApplyEasing(0.5), c.At50);
        EXPECT_DOUBLE_EQ(a.ApplyEasing(0.75), c.At75);
        EXPECT_EQ(a.ApplyEasing(-3.0), 0.0);
        EXPECT_EQ(a.ApplyEasing(7.0), 1.0);
        for (double p : {0.0, 0.1, 0.5, 0.9, 1.0}) EXPECT_NEAR(a.ApplyEasing(a.InverseEasing(p)), p, 1e-12);
    }

    // Seeking takes an eased progress: a quarter of the way under ease-in is half the time.
    TPathAnimator a = Make(TPathType::ptLine, {Line(0, 0, 10, 0)}, 2.0);
    a.SetEasing(TPathEasing::peEaseIn);
    double x = 0, y = 0, r = 0;
    a.Update(1.0, x, y, r);
    EXPECT_DOUBLE_EQ(a.GetProgress(), 0.5);
    EXPECT_DOUBLE_EQ(a.GetPathProgress(), 0.25);
    a.Reset();
    EXPECT_TRUE(a.Seek(0.25, x, y, r));
    EXPECT_NEAR(a.GetCurrentTime(), 1.0, 1e-12);
    EXPECT_NEAR(x, 2.5, 1e-10);
}

TEST(PathAnimator, SegmentLengthsPerPathType) {
    struct TCase {
        const char* Name;
        TPathType Type;
        std::vector<TPathSegment> Segments;
        double Length;
    };
    const TCase cases[] = {
        {"polyline sums", TPathType::ptPolyline, {Line(0, 0, 3, 4), Line(3, 4, 3, 10)}, 11.0},
        {"zero-length line is floored", TPathType::ptLine, {Line(2, 2, 2, 2)}, 1e-6},
        {"circle ignores sign and angles", TPathType::ptCircle, {Round({1, 1}, -5, 0, 10, 20)}, 10 * kPi},
        {"clockwise arc", TPathType::ptArc, {Round({0, 0}, 10, 0, 90, 0)}, 5 * kPi},
        {"arc with equal angles", TPathType::ptArc, {Round({0, 0}, 10, 0, 30, 30)}, 1e-6},
        {"full ellipse from equal angles",
         TPathType::ptEllipse,
         {Round({0, 0}, 5, 5, 45, 45)},
         480 * std::sin(kPi / 48)},
        {"half ellipse", TPathType::ptEllipse, {Round({0, 0}, 5, 5, 0, 180)}, 480 * std::sin(kPi / 96)},
        {"straight Bézier", TPathType::ptBezier, {StraightBezier({0, 0}, 0, 10)}, 10.0},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Name);
        EXPECT_NEAR(Make(c.Type, c.Segments).GetPathLength(), c.Length, 1e-9);
    }
}

TEST(PathAnimator, SpeedFactorsShareTheTime) {
    // 10 at speed 1 and 30 at speed 3 take equally long; the boundary itself belongs to the first segment.
    const TPathAnimator a = Make(TPathType::ptPolyline, {Line(0, 0, 10, 0), Line(10, 0, 10, 30, 3)}, 2.0);
    TPose p = At(a, 1.0);
    EXPECT_DOUBLE_EQ(p.X, 10.0);
    EXPECT_DOUBLE_EQ(p.R, 0.0);
    p = At(a, 1.5);
    EXPECT_DOUBLE_EQ(p.Y, 15.0);
    EXPECT_DOUBLE_EQ(p.R, kPi / 2);
    for (double speed : {0.0, -2.0}) {  // counts as 1
        SCOPED_TRACE(speed);
        EXPECT_DOUBLE_EQ(
            At(Make(TPathType::ptPolyline, {Line(0, 0, 10, 0, speed), Line(10, 0, 20, 0)}), 0.25).X, 5);
    }
}

TEST(PathAnimator, RoundPathsStartWhereTheirAnglesSayAndHeadTheWayTheyTurn) {
    struct TCase {
        const char* Name;
        TPathType Type;
        TPathSegment Segment;
        double Time, X, Y, Rotation;
    };
    const TCase cases[] = {
        {"circle", TPathType::ptCircle, Round({2, 3}, 5, 0, 0, 0), 0.0, 7, 3, kPi / 2},
        {"circle, a quarter on", TPathType::ptCircle, Round({2, 3}, 5, 0, 0, 0), 0.25, 2, 8, kPi},
        {"counter-clockwise arc", TPathType::ptArc, Round({0, 0}, 10, 0, 0, 90), 0.0, 10, 0, kPi / 2},
        {"clockwise arc", TPathType::ptArc, Round({0, 0}, 10, 0, 0, -90), 0.0, 10, 0, -kPi / 2},
        {"arc with equal angles", TPathType::ptArc, Round({0, 0}, 10, 0, 90, 90), 0.0, 0, 10, kPi},
        {"full ellipse", TPathType::ptEllipse, Round({1, 1}, 10, 4, 0, 0), 0.0, 11, 1, kPi / 2},
        {"full ellipse, half way", TPathType::ptEllipse, Round({1, 1}, 10, 4, 0, 0), 0.5, -9, 1, -kPi / 2},
        {"ellipse from the top", TPathType::ptEllipse, Round({0, 0}, 10, 4, 90, 180), 0.0, 0, 4, kPi},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Name);
        const TPose p = At(Make(c.Type, {c.Segment}), c.Time);
        ASSERT_TRUE(p.Ok);
        EXPECT_NEAR(p.X, c.X, 1e-9);
        EXPECT_NEAR(p.Y, c.Y, 1e-9);
        EXPECT_NEAR(std::remainder(p.R - c.Rotation, 2 * kPi), 0.0, 1e-9);
    }
}

TEST(PathAnimator, CurvesMoveAtAnEvenPace) {
    struct TCase {
        const char* Name;
        TPathType Type;
        TPathSegment Segment;
    };
    const TCase cases[] = {
        {"flat ellipse", TPathType::ptEllipse, Round({0, 0}, 10, 4, 0, 0)},
        {"lopsided Bézier",
         TPathType::ptBezier,
         {.StartPoint = {0, 0}, .EndPoint = {20, 0}, .ControlPoint1 = {0.5, 8}, .ControlPoint2 = {1, 8}}},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Name);
        const TPathAnimator a = Make(c.Type, {c.Segment});
        std::vector<double> steps;
        for (int i = 1; i <= 80; ++i) {
            const TPose p = At(a, (i - 1) / 80.0), q = At(a, i / 80.0);
            steps.push_back(std::hypot(q.X - p.X, q.Y - p.Y));
        }
        const auto [lo, hi] = std::minmax_element(steps.begin(), steps.end());
        EXPECT_LT(*hi / *lo, 1.05);  // 48 chords pace to a few per cent; uncorrected, the ellipse gives 2.5
    }
}

TEST(PathAnimator, BezierHeadingTurnsThroughAJointTheShortWay) {
    // The first segment heads at 170 degrees and the next at -170: the turn crosses 180, not 0.
    const TPathSegment first = StraightBezier({0, 0}, 170, 10);
    const TPathAnimator a = Make(TPathType::ptBezier, {first, StraightBezier(first.EndPoint, -170, 10)});
    const double r1 = 170 * kPi / 180;
    EXPECT_NEAR(At(a, 0.49).R, r1, 1e-9);                    // before the last 1 %
    EXPECT_NEAR(At(a, 0.4975).R, kPi, 1e-6);                 // half way through the turn
    EXPECT_NEAR(At(a, 0.4999999).R, 190 * kPi / 180, 1e-4);  // the end of the turn, past +pi
    EXPECT_NEAR(At(a, 0.51).R, -r1, 1e-9);                   // the next segment's own heading
    EXPECT_NEAR(At(a, 1.0).R, -r1, 1e-9);                    // no joint after the last segment
}

TEST(PathAnimator, CrossedWaypointsInTheOrderOfTravel) {
    TPathAnimator a =
        Make(TPathType::ptPolyline, {Line(0, 0, 10, 0), Line(10, 0, 20, 0), Line(20, 0, 30, 0)});
    using V = std::vector<int>;
    EXPECT_EQ(a.GetCrossedWaypoints(0.0, 1.0), (V{1, 2, 3}));
    EXPECT_EQ(a.GetCrossedWaypoints(1.0, 0.0), (V{2, 1, 0}));
    EXPECT_EQ(a.GetCrossedWaypoints(0.5, 0.5), V{});
    EXPECT_EQ(a.GetCrossedWaypoints(0.0, 1.0 / 3), V{1});  // arriving on a waypoint crosses it
    EXPECT_EQ(a.GetCrossedWaypoints(1.0 / 3, 0.5), V{});   // leaving it does not cross it again
    EXPECT_EQ(a.GetCrossedWaypoints(0.5, 1.0 / 3), V{1});
    EXPECT_EQ(Make(TPathType::ptLine, {}).GetCrossedWaypoints(0.0, 1.0), V{});
    // Waypoints sit on the eased scale: with ease-in, time progress 0.6 is only 0.36 along the path.
    a.SetEasing(TPathEasing::peEaseIn);
    EXPECT_EQ(a.GetCrossedWaypoints(0.0, 0.6), V{1});
}
