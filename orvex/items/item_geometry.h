// Private to the line and shape kinds: the small geometry they share, angles as users enter them, snapping
// to segments and to the document's intersection points, point lists for SVG.
#pragma once

#include <cstdint>
#include <numbers>
#include <span>
#include <string>

#include "orvex/core/types.h"
#include "orvex/document/base_item.h"
#include "orvex/io/json_fwd.h"

namespace Orvex::ItemGeo {

inline double Rad(double degrees) {
    return degrees * std::numbers::pi / 180.0;
}
inline double Deg(double radians) {
    return radians * 180.0 / std::numbers::pi;
}
double NormDeg(double degrees);  // into [0, 360)

// Angles of items are entered as on paper: counter-clockwise on screen from +x, with y growing downwards.
TQVLPto64 PolarPoint(std::int64_t cx, std::int64_t cy, double radius, double degrees);
double ScreenAngle(std::int64_t cx, std::int64_t cy, std::int64_t x, std::int64_t y);  // degrees, [0, 360)
// The same arc in TDraw2D's convention (atan2 of stored coordinates): start and end radians and direction.
struct TArcD2 {
    double Start = 0.0;
    double End = 0.0;
    bool Ccw = true;
};
TArcD2 ToDraw2D(double startDeg, double sweepDeg);  // sweepDeg > 0 runs counter-clockwise on screen
bool AngleInSweep(double angleDeg, double startDeg, double sweepDeg);
// Tight bounds of the arc of a circle, ends and the axis extremes it passes.
TQVLRect ArcBounds(std::int64_t cx, std::int64_t cy, std::int64_t radius, double startDeg, double sweepDeg);

TQVLPto64 NearestOnSegment(const TQVLPto64& a, const TQVLPto64& b, std::int64_t x, std::int64_t y);
bool NearPoint(TORXBaseItem* item, std::int64_t x, std::int64_t y, std::int32_t tolerance, const TQVLPto64& p,
               std::int32_t index, TQVLRef& ref);
// Snap to the nearest point of a chain of segments (closed: last to first too).
bool SnapNearestOnChain(TORXBaseItem* item, std::span<const TQVLPto64> points, bool closed, std::int64_t x,
                        std::int64_t y, std::int32_t tolerance, TQVLRef& ref);
bool SnapMidOfChain(TORXBaseItem* item, std::span<const TQVLPto64> points, bool closed, std::int64_t x,
                    std::int64_t y, std::int32_t tolerance, TQVLRef& ref);
bool PickChain(std::span<const TQVLPto64> points, bool closed, std::int64_t x, std::int64_t y,
               std::int64_t tolerance);
// A crossing with another item, from the document's intersection list.
bool SnapIntersection(TORXBaseItem* item, std::int64_t x, std::int64_t y, std::int32_t tolerance,
                      TQVLRef& ref);
// Every snap of a chain of segments (polylines, polygons): end points and the centre from the base search
// over the points, midpoints and the nearest point along the chain, crossings from the intersection list.
bool SnapOnChain(TORXBaseItem* item, std::span<const TQVLPto64> points, bool closed, std::int64_t x,
                 std::int64_t y, std::int32_t tolerance, TQVLSnap snap, TQVLRef& ref);

std::vector<TQVLPto64> ToPto64(const TQVLPtoA& points);
std::string SvgPointList(std::span<const TQVLPto64> points, TQVLUnits unit);  // "x,y x,y ..."
std::string SvgXY(const TQVLPto64& p, TQVLUnits unit);                        // "x,y"

// One {"Name", "Value"} entry of an item's inspector list.
void AddInspector(TJSON& array, const char* name, TJSON value);

}  // namespace Orvex::ItemGeo
