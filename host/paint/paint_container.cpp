// Painting of a container's frame: a plain or rounded rectangle, filled, with its caption in a tinted title
// band at the top and a line under the band. The caption itself is painted with the flow element's text.
#include <algorithm>
#include <numbers>

#include "host/paint/item_painters.h"
#include "orvex/items/container_frame.h"

namespace Orvex::Paint {

namespace {
// The band: its top corners follow the frame's, its bottom is square.
void BandPath(cairo_t* cr, const TDevBox& b, double r) {
    const double pi = std::numbers::pi;
    r = std::min({r, b.W / 2.0, b.H});
    cairo_new_sub_path(cr);
    cairo_move_to(cr, b.X, b.Y + b.H);
    if (r > 0.0) {
        cairo_arc(cr, b.X + r, b.Y + r, r, pi, 1.5 * pi);
        cairo_arc(cr, b.X + b.W - r, b.Y + r, r, 1.5 * pi, 2.0 * pi);
    } else {
        cairo_line_to(cr, b.X, b.Y);
        cairo_line_to(cr, b.X + b.W, b.Y);
    }
    cairo_line_to(cr, b.X + b.W, b.Y + b.H);
    cairo_close_path(cr);
}
}  // namespace

void PaintContainerFrame(const TORXBaseFlow& item, const TPainter& p) {
    cairo_t* cr = p.Cr;
    const TDevBox k = ItemBox(p, item);
    const double radius = p.Len(ContainerCornerRadius(item));
    if (item.Filled() && AlphaOf(item.BackColor()) != 0) {
        RectPath(cr, k.X, k.Y, k.W, k.H, radius);
        SetColor(cr, item.BackColor());
        cairo_fill(cr);
    }
    const TQVLRect band = ContainerBand(item);
    if (band.GetHeight() > 0) {
        const TDev a = p.Pt(band.Left, band.Top);
        const TDev b = p.Pt(band.Right, band.Bottom);
        const TDevBox strip{a.X, a.Y, b.X - a.X, b.Y - a.Y};
        BandPath(cr, strip, radius);
        SetColor(cr, ContainerBandColor(item));
        cairo_fill(cr);
        if (band.Bottom < item.Box().Bottom) {
            cairo_move_to(cr, strip.X, strip.Y + strip.H);
            cairo_line_to(cr, strip.X + strip.W, strip.Y + strip.H);
            StrokePath(p, item.Color(), item.GetPenWidthMM(), item.LineType());
        }
    }
    RectPath(cr, k.X, k.Y, k.W, k.H, radius);
    StrokePath(p, item.Color(), item.GetPenWidthMM(), item.LineType());
}

}  // namespace Orvex::Paint
