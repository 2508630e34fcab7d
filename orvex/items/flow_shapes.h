// The fifteen flow shapes inside a box: their outline as a polygon (curves flattened) for picking and
// connection points, their SVG elements, and the part of the box that holds the text.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/items/flow_types.h"

namespace Orvex {

std::vector<TQVLPto64> FlowOutline(TQVLFlowType type, const TQVLRect& box);
// The shape's SVG elements. paint holds the outline's fill and stroke attributes, ink those of the solid
// dots of start and end nodes, line those of the inner lines (predefined process, database).
std::string FlowShapeSVG(TQVLFlowType type, const TQVLRect& box, TQVLUnits unit, const std::string& paint,
                         const std::string& ink, const std::string& line);
TQVLRect FlowTextArea(TQVLFlowType type, const TQVLRect& box);

// Polygon tests over a closed outline.
bool PointInPolygon(const std::vector<TQVLPto64>& polygon, std::int64_t x, std::int64_t y);
bool PointOnPolyline(const std::vector<TQVLPto64>& points, bool closed, std::int64_t x, std::int64_t y,
                     std::int64_t tolerance);

}  // namespace Orvex
