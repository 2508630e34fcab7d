// Placing text inside an item's box: alignment, padding, quarter turns, interline spacing and line
// breaking, in base units, plus the conversions of the results to screen and printer pixels.
//
// A turned text is laid out in its own frame: the item's box turned back about its centre (the extents
// swap for a quarter turn), so lines run left to right there; a painter or SVG writer then turns the
// frame by the item's angle about the box's centre (ag90 a quarter turn clockwise on screen).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/document/layer.h"
#include "orvex/render/draw2d.h"
#include "orvex/render/draw_context.h"

namespace Orvex {

class ITextMetrics;

// One line placed in the text's frame: X its left end, Y its baseline, Width its advance (base units).
struct TTextLinePos {
    std::string Text;
    std::int64_t X = 0;
    std::int64_t Y = 0;
    std::int64_t Width = 0;
    friend bool operator==(const TTextLinePos&, const TTextLinePos&) = default;
};

// The box as the text sees it: turned back about its centre by the angle.
TQVLRect AdjustRect(const TQVLRect& box, TQVLAngle angle);
TRectF AdjustRect(const TRectF& box, TQVLAngle angle);
// A width x height block aligned inside the frame (haJustify places like haLeft).
TQVLRect AdjustRectPos(const TQVLRect& frame, std::int64_t width, std::int64_t height, TQVLHorzAlign h,
                       TQVLVertAlign v);
// The top-left corner of a width x height block whose alignment point is (x, y): haLeft / vaTop put the
// point at the block's left / top edge, haCenter / vaCenter at its middle, haRight / vaBottom at its end.
TQVLPto64 AdjustPos(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height, TQVLHorzAlign h,
                    TQVLVertAlign v);

// The words of text broken into lines no wider than width (a longer word stands alone); "\n" always
// breaks. Width <= 0 breaks only at "\n".
std::vector<std::string> WrapText(std::string_view text, const TQVLFont& font, std::int64_t width,
                                  const ITextMetrics& metrics);

// Lines in the box less the paddings, aligned as a block; interline is extra space between lines (base
// units). Justified lines keep their left end; the painter spreads their words to the frame's width.
std::vector<TTextLinePos> PosBaseLinesText(const std::vector<std::string>& lines, const TQVLFont& font,
                                           const TQVLRect& box, TQVLHorzAlign h, TQVLVertAlign v,
                                           TQVLAngle angle, std::int64_t padX, std::int64_t padY,
                                           std::int64_t interline, const ITextMetrics& metrics);
TTextLinePos PosBaseText(std::string_view text, const TQVLFont& font, const TQVLRect& box, TQVLHorzAlign h,
                         TQVLVertAlign v, TQVLAngle angle, std::int64_t padX, std::int64_t padY,
                         const ITextMetrics& metrics);

// Base units to device pixels through the draw context: points, rectangles and point lists on screen,
// and their printer forms (whole pixels).
TQVLSPoint DrawPos(const TORXBaseDraw& draw, std::int64_t x, std::int64_t y);
TRectF DrawTxtPos(const TORXBaseDraw& draw, const TQVLRect& rect);
std::vector<TQVLSPoint> DrawPolyPos(const TORXBaseDraw& draw, const std::vector<TQVLPto64>& points);
TQVLSPoint PosText(const TORXBaseDraw& draw, const TTextLinePos& line);  // the line's baseline start
TPoint PosPrintText(const TORXBaseDraw& draw, const TTextLinePos& line);
TRectF PrintTxtPos(const TORXBaseDraw& draw, const TQVLRect& rect);  // corners on whole printer pixels

}  // namespace Orvex
