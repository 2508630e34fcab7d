// The pieces every item's SVG is made of: numbers, lengths in the drawing's unit, colours, strokes with
// their dash patterns, fills, escaped text and terminator markers. Every item kind writes through these
// so that the whole document's SVG is consistent.
//
// Coordinates: the document's SVG viewBox is in the drawing's own unit (mm, inch, ...), so items write
// every length through SvgLength with the document's unit.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/render/draw_context.h"

namespace Orvex {

std::string SvgNumber(double value);                       // at most 3 decimals, no trailing zeros, no "-0"
std::string SvgLength(std::int64_t base, TQVLUnits unit);  // base units as a number in the unit
double MillimetresInUnit(double mm, TQVLUnits unit);       // pen widths and font heights are millimetres
std::string SvgEscape(std::string_view text);              // &, <, >, " and ' as entities
std::string SvgColor(TAlphaColor color);                   // "#RRGGBB"; the alpha goes in an opacity

// The dash and gap lengths of a line type, as multiples of the pen width (empty for solid lines): the
// names give them, ii21 being a dash of 2 and a gap of 1.
std::vector<double> DashPattern(TQVLineType type);

// ' stroke="#..." stroke-width="..." [stroke-opacity] [stroke-dasharray]' with a leading space. A pen
// width of 0 is a hair line: the thinnest a viewer draws, 0.1 mm here.
std::string SvgStroke(TAlphaColor color, float penWidthMM, TQVLineType type, TQVLUnits unit);
std::string SvgFill(TAlphaColor color, bool filled);  // ' fill="none"' or ' fill="#..." [fill-opacity]'

// A marker for a terminator drawn at a line's end, oriented along the line. Appends its definition to
// defs once per (kind, colour) and returns the attribute value "url(#id)"; empty for ttNone. The marker
// scales with the stroke width.
std::string SvgTerminatorMarker(TQVLTermType type, TAlphaColor color, std::vector<std::string>& defs);
// The same with a fixed size in the drawing's own unit (the length of an arrow head), independent of the
// pen: for items whose terminators have their own size.
std::string SvgTerminatorMarker(TQVLTermType type, TAlphaColor color, double size,
                                std::vector<std::string>& defs);

// ' font-family="..." font-size="..." [font-weight] [font-style] [text-decoration] fill="..."' for a label;
// the height is in the drawing's unit.
std::string SvgFont(const std::string& family, double height, bool bold, bool italic, bool underline,
                    bool strikeout, TAlphaColor color);

}  // namespace Orvex
