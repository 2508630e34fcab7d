// Private to host/paint: the Cairo item classes. One template makes any item kind paint: its Draw and Print
// find the active Cairo context and hand the item to the PaintItem overload of its kind, so a new kind
// needs one PaintItem function and one line in CreateCairoItem.
#pragma once

#include "host/paint/cairo_label.h"
#include "host/paint/cairo_paint.h"
#include "orvex/document/document.h"

namespace Orvex {
namespace Paint {

// The item kinds that have painting code, created on document; nullptr for the others.
TORXBaseItem* CreateCairoItem(TORXBaseLabel* document, TQVLItemType type);

// Pango's metrics serve texts while at least one Cairo document lives.
void RetainTextMetrics();
void ReleaseTextMetrics();

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
        PaintItem(static_cast<const TKind&>(*this), Paint::TPainter{cr, surface, print});  // found through TPainter's namespace
        cairo_restore(cr);
    }
};

}  // namespace Orvex
