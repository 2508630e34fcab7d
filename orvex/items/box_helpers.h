// Pieces the box-shaped item kinds share: picking and snapping on a rectangle, and the SVG of a
// rectangle, a font and a quarter turn.
#pragma once

#include <cstdint>
#include <string>

#include "orvex/document/base_item.h"
#include "orvex/document/layer.h"

namespace Orvex {

// Within tolerance of the rectangle's outline, or anywhere inside it when solid.
bool PickBox(const TQVLRect& r, std::int64_t x, std::int64_t y, std::int32_t tolerance, bool solid);
// Corners for end points, side middles for mid points, the centre for snCenter.
bool SnapBox(TORXBaseItem* item, const TQVLRect& r, std::int64_t x, std::int64_t y, std::int32_t tolerance,
             TQVLSnap snap, TQVLRef& ref);
std::string SvgFontAttributes(const TQVLFont& font, TQVLUnits unit);  // family, size, fill, weight, style
std::string SvgRotation(TQVLAngle angle, const TQVLRect& box, TQVLUnits unit);  // about the box's centre
std::string SvgBoxRect(const TQVLRect& r, float radiusMM, TQVLUnits unit, const std::string& paint);
// Drops extents that are still -1 in favour of the rectangle's.
void FitRect(const TQVLRect& r, std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY, std::int64_t& maxY);

}  // namespace Orvex
