// TDraw2D: the stateless plane geometry that items use for picking, snapping, trimming and SVG output and
// that a host's renderer uses for painting (arrow heads, offsets, arcs through three points,
// intersections, hit tests with a tolerance).
//
// Conventions shared by every routine below:
// - Coordinates are base units (std::int64_t) unless a form takes float or double values.
// - Angles are radians measured as atan2(dy, dx) in the stored coordinates. "Counter-clockwise" (ccw)
//   means increasing angle; on a screen whose y axis points down it looks clockwise.
// - An arc is (centre, radius, start angle, end angle, ccw): it runs from the start angle to the end angle
//   in the given direction (see ArcContainsAngle); equal start and end angles make a single point when
//   ccw and a full circle when clockwise.
// - Integer results of real-valued geometry are rounded half away from zero.
// - A routine that has no answer (parallel lines, coincident points, zero radius) returns false or a
//   count of 0 and never divides by zero.
// - "Left" and "right" of a segment are as seen on a y-down screen looking from the first point to the
//   second; VectorPerpendicular (-dy, dx) points to the right.
//
// [SECTION] Float rectangle
// [SECTION] Arrow heads
// [SECTION] Offsets
// [SECTION] Circles and arcs
// [SECTION] Intersections and trimming
// [SECTION] Hit tests
// [SECTION] Vectors and rotation
// [SECTION] Rectangles
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "orvex/core/types.h"

namespace Orvex {

// [SECTION] Float rectangle ------------------------------------------------------------------------------

// A rectangle in device units (single precision), as a host's renderer holds it.
struct TRectF {
    float Left = 0.0f;
    float Top = 0.0f;
    float Right = 0.0f;
    float Bottom = 0.0f;

    constexpr float Width() const { return Right - Left; }
    constexpr float Height() const { return Bottom - Top; }
    friend constexpr bool operator==(const TRectF&, const TRectF&) = default;
};

class TDraw2D {
  public:
    TDraw2D() = delete;

    // [SECTION] Arrow heads --------------------------------------------------------------------------------
    // The head sits at (x2, y2), pointing from (x1, y1) towards it; the opening angle is 2 pi / divisor and
    // the barbs are size long. True only when size > 0 (and divisor > 0); the barb ends are filled in
    // every case, so with size 0 both equal the tip. (ax1, ay1) is the right barb, (ax2, ay2) the left.
    static constexpr float kArrowDivisor = 6.0f;  // a 60 degree opening, 30 degrees either side of the shaft

    static bool DrawArrow(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                          std::int64_t size, std::int64_t& ax1, std::int64_t& ay1, std::int64_t& ax2,
                          std::int64_t& ay2, float divisor);
    static bool DrawArrow(float x1, float y1, float x2, float y2, float size, float& ax1, float& ay1,
                          float& ax2, float& ay2, float divisor);
    // Tip and shaft direction given directly: angle is the direction of travel into the tip.
    static bool DrawArrow(std::int64_t x, std::int64_t y, double angle, std::int64_t size, std::int64_t& ax1,
                          std::int64_t& ay1, std::int64_t& ax2, std::int64_t& ay2, float divisor);
    static bool DrawArrow(float x, float y, double angle, float size, float& ax1, float& ay1, float& ax2,
                          float& ay2, float divisor);

    // Head at the arc point of the given angle, arriving along the arc in its direction of travel. The shaft
    // is the chord from the arc point size behind the tip, so the head hugs small arcs; (tx, ty) is the tip.
    static bool DrawArrowArc(std::int64_t cx, std::int64_t cy, std::int64_t radius, double angle, bool ccw,
                             std::int64_t size, std::int64_t& tx, std::int64_t& ty, std::int64_t& ax1,
                             std::int64_t& ay1, std::int64_t& ax2, std::int64_t& ay2, float divisor);

    // A diagonal tick through (x2, y2), 45 degrees off the shaft, reaching size either side of the tip.
    // DrawLeft leans its forward end to the left of the travel direction, DrawRight to the right.
    // (ax1, ay1) is the end behind the tip, (ax2, ay2) the end ahead of it. True only when size > 0.
    static bool DrawLeft(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                         std::int64_t size, std::int64_t& ax1, std::int64_t& ay1, std::int64_t& ax2,
                         std::int64_t& ay2);
    static bool DrawRight(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                          std::int64_t size, std::int64_t& ax1, std::int64_t& ay1, std::int64_t& ax2,
                          std::int64_t& ay2);

    // [SECTION] Offsets ------------------------------------------------------------------------------------
    // A positive distance moves towards VectorPerpendicular (the right side), a negative one to the left.
    // A zero-length segment has no direction: false, and the outputs are the input unchanged.

    static bool DrawParallelLine(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                 std::int64_t distance, std::int64_t& px1, std::int64_t& py1,
                                 std::int64_t& px2, std::int64_t& py2);
    static bool DrawParallelLine(float x1, float y1, float x2, float y2, float distance, float& px1,
                                 float& py1, float& px2, float& py2);
    // The segment moved across itself until its line passes through (px, py); the ends stay opposite the
    // original ends.
    static bool DrawParalLine(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                              std::int64_t px, std::int64_t py, std::int64_t& qx1, std::int64_t& qy1,
                              std::int64_t& qx2, std::int64_t& qy2);
    // Midpoint of the parallel at distance: where a label stands beside a line. A zero-length segment gives
    // its own point and false.
    static bool PosMidParal(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                            std::int64_t distance, std::int64_t& mx, std::int64_t& my);
    static bool PosMidParal(float x1, float y1, float x2, float y2, float distance, float& mx, float& my);
    // The polyline (or closed polygon) offset by distance: each vertex moves to the meeting point of its two
    // offset edges (a sharp mitre); where the edges run straight on or turn back, it moves along the normal.
    // Repeated points are dropped first. False, with result empty, for fewer than two distinct points.
    static bool PoligonParalel(std::span<const TQVLPto64> points, std::int64_t distance, bool closed,
                               std::vector<TQVLPto64>& result);
    // The arc through three points (start, middle, end) moved outwards from its centre by distance (inwards
    // when negative). False when the points are collinear or the new radius would not be positive.
    static bool EquidistArc(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                            std::int64_t x3, std::int64_t y3, std::int64_t distance, std::int64_t& qx1,
                            std::int64_t& qy1, std::int64_t& qx2, std::int64_t& qy2, std::int64_t& qx3,
                            std::int64_t& qy3);
    static bool EquidistArc(const TPoint2D& p1, const TPoint2D& p2, const TPoint2D& p3, double distance,
                            TPoint2D& q1, TPoint2D& q2, TPoint2D& q3);
    // The concentric arc of a centred arc: its radius and its start and end points.
    static bool EquidistArc(std::int64_t cx, std::int64_t cy, std::int64_t radius, double startAngle,
                            double endAngle, std::int64_t distance, std::int64_t& newRadius, TQVLPto64& start,
                            TQVLPto64& end);

    // [SECTION] Circles and arcs ---------------------------------------------------------------------------

    // The circle on the segment as diameter. False when the two points coincide.
    static bool CircleTwoPoints(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                std::int64_t& cx, std::int64_t& cy, std::int64_t& radius);
    static bool CircleTwoPoints(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                TPoint2D& center, double& radius);
    // The circle through three points. False when they are collinear (two equal points included); the
    // collinearity test is exact.
    static bool CircleThreePoints(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                  std::int64_t x3, std::int64_t y3, std::int64_t& cx, std::int64_t& cy,
                                  std::int64_t& radius);
    static bool CircleThreePoints(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                  std::int64_t x3, std::int64_t y3, TPoint2D& center, double& radius);
    // The arc from the first point through the second to the third: centre, radius, start and end angles
    // (normalised to [0, 2 pi)) and its direction. False when the points are collinear.
    static bool ArcThreePoints(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                               std::int64_t x3, std::int64_t y3, std::int64_t& cx, std::int64_t& cy,
                               std::int64_t& radius, double& startAngle, double& endAngle, bool& ccw);
    static bool ArcThreePoints(const TPoint2D& p1, const TPoint2D& p2, const TPoint2D& p3, TPoint2D& center,
                               double& radius, double& startAngle, double& endAngle, bool& ccw);

    // Positive sweep from a0 to a1 in the given direction, for angles in [0, 2 pi); equal angles give 0.
    static double ArcSweep(double a0, double a1, bool ccw);
    // With a0 > a1 the bounds swap and the direction inverts, so for angles in [0, 2 pi) this is exactly
    // "a lies on the arc from a0 to a1 in the given direction", ends included.
    static bool ArcContainsAngle(double a0, double a1, double a, bool ccw);
    // Radius, start and end angles (normalised) and the positive sweep of the arc about (cx, cy) from the
    // first point towards the angle of the second. False when the first point is the centre.
    static bool ArcParam(std::int64_t cx, std::int64_t cy, std::int64_t x1, std::int64_t y1, std::int64_t x2,
                         std::int64_t y2, bool ccw, double& radius, double& startAngle, double& endAngle,
                         double& sweep);
    // The arc as a polyline of segments chords (segments + 1 points, both ends included); segments < 1
    // counts as 1.
    static std::vector<TPoint2D> ArcSegment(double cx, double cy, double radius, double startAngle,
                                            double endAngle, bool ccw, int segments);
    // Direction of the segment from the first point to the second, in [0, 2 pi); 0 for a zero-length one.
    static double AngleSegment(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2);
    // a lies on the arc that starts at start and turns by sweep (ccw when positive); |sweep| >= 2 pi is a
    // full circle.
    static bool IsAngleWithinArc(double a, double start, double sweep);
    // The signed shortest turn from a to b, in (-pi, pi].
    static double AngleDiff(double a, double b);
    // The counter-clockwise turn from a0 to a1, in [0, 2 pi).
    static double SweepCCW(double a0, double a1);
    // Into [0, 2 pi).
    static double NormalizeAngle(double a);
    // Flattens a cubic Bezier chain p0 (c1 c2 p)...: segments chords per cubic (segments < 1 counts as 1).
    // Points left over after the last complete cubic are joined by straight lines. First point included.
    static std::vector<TPoint2D> CurvePoints(std::span<const TQVLPto64> points, int segments);

    // [SECTION] Intersections and trimming -----------------------------------------------------------------
    // "Line" means the infinite line through two points unless a routine says segment. Multiple results come
    // ordered along the first line's direction (from its first point towards its second).

    // Meeting point of two lines. False when either is zero-length or they are parallel or collinear.
    static bool IntersectLines(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                               std::int64_t x3, std::int64_t y3, std::int64_t x4, std::int64_t y4,
                               std::int64_t& x, std::int64_t& y);

    // Extension (the extend tool): the segment (x1, y1)-(x2, y2) grows at one end until it meets the
    // boundary. Only crossings beyond the segment's ends count; the nearest one beyond an end wins (beyond
    // the second end on a tie) and that end moves onto it. False, with nothing changed, when there is none.
    // ExtendLines' boundary is the segment (x3, y3)-(x4, y4), ends included.
    static bool ExtendLines(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                            std::int64_t x3, std::int64_t y3, std::int64_t x4, std::int64_t y4);
    static bool ExtendLineToCircle(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                                   std::int64_t cx, std::int64_t cy, std::int64_t radius);
    static bool ExtendLineToEllipse(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                                    std::int64_t cx, std::int64_t cy, std::int64_t rx, std::int64_t ry);
    static bool ExtendLineToRectangle(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                                      const TQVLRect& rect);  // the rectangle's outline
    static bool ExtendLineToPolyline(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                                     std::span<const TQVLPto64> points, bool closed);
    static bool ExtendLineToArc(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                                std::int64_t cx, std::int64_t cy, std::int64_t radius, double startAngle,
                                double endAngle, bool ccw);
    // Trimming: among the arc's crossings strictly inside the segment, the one nearest to the pick point
    // (projected on the segment) cuts it, and the side the pick lies on is removed (towards the second end
    // when the pick projects exactly onto the crossing). False, with nothing changed, when no crossing.
    static bool TrimLineAtArc(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                              std::int64_t cx, std::int64_t cy, std::int64_t radius, double startAngle,
                              double endAngle, bool ccw, std::int64_t pickX, std::int64_t pickY);
    // A corner: each segment's end nearer to the two lines' meeting point moves onto it. False when parallel.
    static bool JoinLines(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                          std::int64_t& x3, std::int64_t& y3, std::int64_t& x4, std::int64_t& y4);

    // Crossings of two circles: 0, 1 (tangent; both outputs the same point) or 2. The first point lies to
    // the right (VectorPerpendicular side) of the line from the first centre to the second. Concentric
    // circles give 0 even when equal.
    static int CircleCircleIntersections(const TPoint2D& c1, double r1, const TPoint2D& c2, double r2,
                                         TPoint2D& p1, TPoint2D& p2);
    // The same in base units; true for one or two crossings.
    static bool CircleCrossCircle(std::int64_t cx1, std::int64_t cy1, std::int64_t r1, std::int64_t cx2,
                                  std::int64_t cy2, std::int64_t r2, std::int64_t& x1, std::int64_t& y1,
                                  std::int64_t& x2, std::int64_t& y2);
    // Crossings of a line with a circle or an axis-aligned ellipse: 0, 1 (tangent; both outputs equal) or 2,
    // ordered along the line. A zero-length line or a non-positive radius gives 0.
    static int LineCrossCircle(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                               std::int64_t cx, std::int64_t cy, std::int64_t radius, TPoint2D& p1,
                               TPoint2D& p2);
    static int LineCrossEllipse(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                std::int64_t cx, std::int64_t cy, std::int64_t rx, std::int64_t ry,
                                TPoint2D& p1, TPoint2D& p2);
    // The segment has a point inside the rectangle or on its edges (rectangle selection of lines).
    static bool LineCrossRect(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                              const TQVLRect& rect);
    // The part of the segment inside the rectangle (edges included): entry and exit points in the segment's
    // direction; an end inside the rectangle is its own entry or exit. False when the segment misses it.
    static bool RectangleIntersectLine(const TQVLRect& rect, std::int64_t x1, std::int64_t y1,
                                       std::int64_t x2, std::int64_t y2, TPoint2D& entry, TPoint2D& exit);
    // The arc (a curve, not a sector) has a point inside the rectangle or on its edges.
    static bool ArcIntersectsRect(std::int64_t cx, std::int64_t cy, std::int64_t radius, double startAngle,
                                  double endAngle, bool ccw, const TQVLRect& rect);
    // The ellipse's area (outline included) shares a point with the rectangle (edges included).
    static bool EllipseIntersectsRect(std::int64_t cx, std::int64_t cy, std::int64_t rx, std::int64_t ry,
                                      const TQVLRect& rect);
    // Foot of the perpendicular from (px, py) on the line. False for a zero-length line.
    static bool LinePerpenFromPoint(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                    std::int64_t px, std::int64_t py, std::int64_t& fx, std::int64_t& fy);

    // [SECTION] Hit tests ----------------------------------------------------------------------------------
    // Grip tests (CursorOnPos, CursorOnPosS) are strict; tolerance tests on outlines accept a distance up to
    // and including tol. Integer tests are exact (128-bit products).

    static bool CursorOnPos(std::int64_t x, std::int64_t y, std::int64_t px, std::int64_t py,
                            std::int64_t tol);
    static bool CursorOnPosS(std::int64_t x, std::int64_t y, float px, float py, std::int64_t tol);
    // Within tol of the segment (round ends).
    static bool PointInLine(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                            std::int64_t px, std::int64_t py, std::int64_t tol);
    // Exactly on the segment, ends included.
    static bool PointOnSegment(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                               std::int64_t px, std::int64_t py);
    // Within tol of the arc's curve, or of either end point.
    static bool PointInArc(std::int64_t cx, std::int64_t cy, std::int64_t radius, double startAngle,
                           double endAngle, bool ccw, std::int64_t px, std::int64_t py, std::int64_t tol);
    // Within tol of the flattened Bezier chain (as CurvePoints with 32 chords per cubic).
    static bool PointInBezier(std::span<const TQVLPto64> points, std::int64_t px, std::int64_t py,
                              std::int64_t tol);
    static bool PointInCircle(std::int64_t cx, std::int64_t cy, std::int64_t radius, std::int64_t px,
                              std::int64_t py);  // inside or on the outline
    static bool PointOnCircle(std::int64_t cx, std::int64_t cy, std::int64_t radius, std::int64_t px,
                              std::int64_t py, std::int64_t tol);  // within tol of the outline
    // ((px - cx) / rx)^2 + ((py - cy) / ry)^2 <= 1, evaluated exactly; a radius <= 0 makes an empty ellipse.
    static bool PointInEllipse(std::int64_t cx, std::int64_t cy, std::int64_t rx, std::int64_t ry,
                               std::int64_t px, std::int64_t py);
    // Inside the ellipse grown by tol div 2 and outside the one shrunk by it (an empty inner one counts as
    // outside).
    static bool PointOnEllipse(std::int64_t cx, std::int64_t cy, std::int64_t rx, std::int64_t ry,
                               std::int64_t px, std::int64_t py, std::int64_t tol);
    // +1 right of the directed line (VectorPerpendicular side), -1 left, 0 on it; exact.
    static int PointSide(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t px,
                         std::int64_t py);
    // Horizontal line: py < y1. Vertical line: px > x1. Otherwise m * px + (y1 - m * x1) > py with m the
    // slope (a point on the line gives false).
    static bool PosPoint(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t px,
                         std::int64_t py);

    // [SECTION] Vectors and rotation -----------------------------------------------------------------------

    // The integer forms multiply exactly and round once, to the returned double.
    static double CrossProduct(const TPoint2D& a, const TPoint2D& b);
    static double CrossProduct(std::int64_t ax, std::int64_t ay, std::int64_t bx, std::int64_t by);
    static double DotProduct(const TPoint2D& a, const TPoint2D& b);
    static double DotProduct(std::int64_t ax, std::int64_t ay, std::int64_t bx, std::int64_t by);
    static double Magnitude(const TPoint2D& v);
    static double Magnitude(std::int64_t x, std::int64_t y);
    static double Distance(const TPoint2D& a, const TPoint2D& b);
    static double Distance(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2);
    // |(y2 - y1) px + (x1 - x2) py + (x2 y1 - x1 y2)| div Int64Sqrt((y2 - y1)^2 + (x1 - x2)^2), in 64-bit
    // integers (wrapping, never trapping, beyond their range); a zero-length line gives 0.
    static std::int64_t DistancePointToLine(std::int64_t px, std::int64_t py, std::int64_t x1,
                                            std::int64_t y1, std::int64_t x2, std::int64_t y2);
    // Signed turn at (x1, y1) from the line's direction to the direction of (px, py), in (-pi, pi]; 0 when
    // either direction is undefined.
    static double AnglePointToLine(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                   std::int64_t px, std::int64_t py);
    // (-(y2 - y1), x2 - x1).
    static TQVLSPoint VectorPerpendicular(float x1, float y1, float x2, float y2);
    static TQVLPto64 VectorPerpendicular(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2);
    // The rectangle turned about (cx, cy) by quarter turns, clockwise on a y-down screen (ag90 takes +x to
    // +y); the result is normalised.
    static TRectF Rotate(const TRectF& rect, float cx, float cy, TQVLAngle angle);
    // Quarter turns (as Rotate), exact.
    static TQVLPto64 RotatePoint(std::int64_t x, std::int64_t y, std::int64_t cx, std::int64_t cy,
                                 TQVLAngle angle);
    // By angle radians (ccw: +x towards +y).
    static TQVLPto64 RotatePoint(std::int64_t x, std::int64_t y, std::int64_t cx, std::int64_t cy,
                                 double angle);
    static TPoint2D RotatePoint(const TPoint2D& p, const TPoint2D& center, double angle);
    // Sorts the first three points by X with three compare-and-swaps (first-second, first-third,
    // second-third); not stable for equal X. Fewer than three points: nothing happens.
    static void OrderPoints(std::span<TQVLPto64> points);
    // Floor of the square root, exact over the whole range; 0 for negative values.
    static std::int64_t Int64Sqrt(std::int64_t value);

    // [SECTION] Rectangles ---------------------------------------------------------------------------------

    // A width x height rectangle with the same centre. In base units the left edge is
    // Left + floor((GetWidth() - width) / 2), and the top edge likewise.
    static TRectF CenteredRect(const TRectF& rect, float width, float height);
    static TQVLRect CenteredRect(const TQVLRect& rect, std::int64_t width, std::int64_t height);
    // Outline of a slot (obround) of the given total width around the centre line (x1, y1)-(x2, y2): two
    // half circles of arcSegments chords each (at least 2), joined by straight sides, in increasing-angle
    // order starting at the second end's left side. A zero-length centre line gives a circle; width <= 0
    // gives an empty outline.
    static std::vector<TQVLPto64> CalculateSlotPolygon(std::int64_t x1, std::int64_t y1, std::int64_t x2,
                                                       std::int64_t y2, std::int64_t width, int arcSegments);
};

}  // namespace Orvex
