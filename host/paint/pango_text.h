// Private to host/paint: text through Pango. Layouts are sized in device units with metric hinting off,
// so that a text is exactly as wide on screen, on paper and in the text metrics the items place with.
#pragma once

#include <pango/pangocairo.h>

#include <memory>
#include <string_view>

#include "host/paint/cairo_paint.h"
#include "orvex/document/layer.h"

namespace Orvex::Paint {

struct TLayoutDeleter {
    void operator()(PangoLayout* layout) const { g_object_unref(layout); }
};
using TLayoutPtr = std::unique_ptr<PangoLayout, TLayoutDeleter>;

// A layout of one text in font whose height is fontPx device units. Underline and strikeout come from
// the font.
TLayoutPtr MakeLayout(cairo_t* cr, const TQVLFont& font, double fontPx, std::string_view text);
// The same for measuring without a device: a context of its own.
TLayoutPtr MakeMeasureLayout(const TQVLFont& font, double fontPx, std::string_view text);

struct TTextExtent {
    double Width = 0.0;   // logical advance, device units
    double Height = 0.0;  // logical height of all lines
    double Ascent = 0.0;  // top of the first line to its baseline
};
TTextExtent Extent(PangoLayout* layout);

// Draws the layout with its first baseline at (x, baselineY).
void ShowLayout(cairo_t* cr, PangoLayout* layout, double x, double baselineY, TAlphaColor color);

}  // namespace Orvex::Paint
