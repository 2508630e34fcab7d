// Private to host/paint: the Cairo pieces every painter is made of. A TPainter turns base units and
// millimetres into device units for one pass; the free functions set pens and fill and stroke the
// current path, draw terminators and build the outlines the shapes share.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/render/draw_context.h"

namespace Orvex {

class TORXBaseItem;

namespace Paint {

struct TDev {
    double X = 0.0;
    double Y = 0.0;
};

// One pass of one item. The print pass places on whole printer pixels and keeps a zero pen at zero; the
// screen passes draw in fractions and never thinner than one pixel.
struct TPainter {
    cairo_t* Cr;
    const TORXBaseDraw& Draw;
    bool Print;

    double X(std::int64_t base) const;
    double Y(std::int64_t base) const;
    TDev Pt(std::int64_t x, std::int64_t y) const { return {X(x), Y(y)}; }
    TDev Pt(const TQVLPto& p) const { return {X(p.X), Y(p.Y)}; }
    double Len(std::int64_t base) const;  // a distance, without the screen's one-pixel floor
    double MM(float mm) const;            // millimetres to device units, no floor
    double PenPx(float mm) const;         // a pen width: the pass's rule for thin pens
};

void SetColor(cairo_t* cr, TAlphaColor color);

// Sets colour, width and dash pattern of the pen; false when the pen would leave no mark (transparent,
// or zero wide on paper), so the caller skips the stroke. Dashes are multiples of the pen width, at least
// a millimetre per unit so that a thin pen's dashes stay visible.
bool SetPen(const TPainter& p, TAlphaColor color, float widthMM, TQVLineType type);

// Fills the current path with back (when fill) and strokes it with the pen; the path is consumed.
void FillAndStroke(const TPainter& p, bool fill, TAlphaColor back, TAlphaColor pen, float widthMM,
                   TQVLineType type);
void StrokePath(const TPainter& p, TAlphaColor pen, float widthMM, TQVLineType type);

// A terminator at tip, for a line arriving with the direction angle (radians, device space); size is
// the terminator's length in device units.
void DrawTerminator(const TPainter& p, TQVLTermType type, TDev tip, double angle, double size,
                    TAlphaColor color, double penPx);
// The point where a line should end so that a filled head is not blunted by the line's own cap.
TDev TerminatorBase(TQVLTermType type, TDev tip, double angle, double size);

// Outlines as new sub-paths.
void RectPath(cairo_t* cr, double x, double y, double w, double h, double radius);
void EllipsePath(cairo_t* cr, double cx, double cy, double rx, double ry);
void PolyPath(cairo_t* cr, const std::vector<TDev>& points, bool closed);

// The item's quarter-turn rotation about the centre of its device box, as a Cairo transform.
void RotateAbout(cairo_t* cr, TQVLAngle angle, double cx, double cy);

}  // namespace Paint
}  // namespace Orvex
