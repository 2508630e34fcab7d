// Geometry the editor's snapping and the trim tools read from items: their straight edges and their
// circles, whatever their kind, plus the tangent points of a circle seen from a point.
#pragma once

#include <cstdint>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/document/intersect_segments.h"

namespace Orvex {

class TORXBaseItem;

// The straight edges of the item's outline: consecutive points of point-list and line kinds (closed for
// polygons), the four sides of rectangles and other box kinds; none for round kinds.
std::vector<Detail::TSegment> ItemSegments(const TORXBaseItem& item);

// The item's circle, for circles, arcs and sectors: centre and radius in base units. An arc also gives its
// start and end angles and direction (a full circle has start = end and ccw false).
struct TItemCircle {
    TQVLPto64 Center;
    std::int64_t Radius = 0;
    std::int64_t RadiusY = 0;  // differs from Radius for ellipses
    double Start = 0.0;
    double End = 0.0;
    bool Ccw = false;
    bool Full = true;
};
bool ItemCircle(const TORXBaseItem& item, TItemCircle& circle);
bool ItemArcCircle(const TORXBaseItem& item, TItemCircle& circle);  // arcs and sectors only

// The points where the lines from p touch the circle: 0 when p lies inside it.
int TangentPoints(const TQVLPto64& p, const TQVLPto64& center, std::int64_t radius, TQVLPto64& t1,
                  TQVLPto64& t2);
// The same for an axis-aligned ellipse with radii rx and ry.
int TangentPointsEllipse(const TQVLPto64& p, const TQVLPto64& center, std::int64_t rx, std::int64_t ry,
                         TQVLPto64& t1, TQVLPto64& t2);

}  // namespace Orvex
