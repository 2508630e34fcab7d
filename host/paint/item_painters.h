// Private to host/paint: the Cairo item classes. One template makes any item kind paint: its Draw and Print
// find the active Cairo context and hand the item to the PaintItem overload of its kind, so a new kind
// needs one PaintItem function and one line in CreateCairoItem.
#pragma once

#include <vector>

#include "host/paint/cairo_label.h"
#include "host/paint/cairo_paint.h"
#include "orvex/document/document.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/poly_items.h"
#include "orvex/items/rich_text_item.h"
#include "orvex/items/shape_items.h"
#include "orvex/items/text_items.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {

// One function per kind. They paint in device units on p.Cr, which the caller saves and restores.
void PaintItem(const TORXBaseLine& item, const Paint::TPainter& p);
void PaintItem(const TORXBasePolyLine& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseArc& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseArrowLine& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseDim& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseBezier& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseRectangle& item, const Paint::TPainter& p);
void PaintItem(const TORXBasePolygon& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseCircle& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseEllipse& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseSector& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseText& item, const Paint::TPainter& p);
void PaintItem(const TORXBasePara& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseRichText& item, const Paint::TPainter& p);
void PaintItem(const TORXDataPoly& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseFlow& item, const Paint::TPainter& p);
void PaintItem(const TORXBaseLink& item, const Paint::TPainter& p);

namespace Paint {

// A box item's rectangle on the device, and in base units, normalised.
struct TDevBox {
    double X = 0.0;
    double Y = 0.0;
    double W = 0.0;
    double H = 0.0;
};
TDevBox ItemBox(const TPainter& p, const TORXBaseItem& item);
TQVLRect ItemRect(const TORXBaseItem& item);
void FillBox(const TPainter& p, const TDevBox& box, float radiusMM, TAlphaColor color);
// Lines placed in base units (baseline starts), in font; scaleX stretches each from its left end.
void PaintLines(const TPainter& p, const std::vector<TTextLinePos>& lines, const TQVLFont& font,
                double scaleX);
void PaintCode(const TPainter& p, const TORXBasePoly& item, const TDevBox& box);
// A container's frame, band and outline (its caption is painted as the element's text).
void PaintContainerFrame(const TORXBaseFlow& item, const TPainter& p);

// The item kinds that have painting code, created on document; nullptr for the others.
std::unique_ptr<TORXBaseItem> CreateCairoItem(TORXBaseLabel* document, TQVLItemType type);

// Pango's metrics are the process-wide ones while at least one Cairo document lives.
void RetainTextMetrics();
void ReleaseTextMetrics();
const ITextMetrics& PangoTextMetrics();  // what a Cairo document lays its own texts out with

}  // namespace Paint

template <class TKind>
class TCairoItem final : public TKind {
  public:
    using TKind::TKind;
    void Draw(TORXBaseDraw& surface) override { PaintOn(surface, false); }
    void Print(TORXBaseDraw& surface) override { PaintOn(surface, true); }

  private:
    void PaintOn(TORXBaseDraw& surface, bool print) {
        TCairoDraw* draw = TCairoDraw::Active(surface);
        if (draw == nullptr) return;
        cairo_t* cr = draw->Context();
        cairo_save(cr);
        PaintItem(static_cast<const TKind&>(*this), Paint::TPainter{cr, surface, print});
        cairo_restore(cr);
    }
};

}  // namespace Orvex
