// The Cairo family: a document whose items paint themselves with Cairo and Pango. A host loads a drawing
// into TORXCairoLabel, binds a Cairo context to a TCairoDraw and lets the items paint on it; export.h does
// exactly that for PNG and PDF files.
#pragma once

#include "orvex/document/headless.h"
#include "orvex/render/draw_context.h"

struct _cairo;  // cairo_t, kept out of this header so that embedders need no Cairo headers

namespace Orvex {

// A draw context bound to a Cairo context. While one lives it is the surface the Cairo items paint on;
// handed any other TORXBaseDraw they paint nothing. Contexts nest (the innermost is the active one) and
// belong to the thread that created them.
class TCairoDraw : public TORXBaseDraw {
  public:
    explicit TCairoDraw(_cairo* context);  // the context is not owned and must outlive this object
    ~TCairoDraw();
    TCairoDraw(const TCairoDraw&) = delete;
    TCairoDraw& operator=(const TCairoDraw&) = delete;

    _cairo* Context() const { return fContext; }
    // The Cairo draw that surface is, when it is the active one on this thread; nullptr otherwise.
    static TCairoDraw* Active(TORXBaseDraw& surface);

  private:
    _cairo* fContext;
    TCairoDraw* fPrevious;  // the context active before this one
};

// Pango's glyph metrics for texts laid out while one lives, whatever kind of document lays them out: a
// host that writes the same drawing as SVG and as PNG keeps one for its whole run, so that both place
// captions alike.
class TPangoMetricsScope {
  public:
    TPangoMetricsScope();
    ~TPangoMetricsScope();
    TPangoMetricsScope(const TPangoMetricsScope&) = delete;
    TPangoMetricsScope& operator=(const TPangoMetricsScope&) = delete;
};

// Derives the headless document so that kinds without painting code, and link binding after reads, work
// as there; every kind that has painting code gets its Cairo class from the factory. Its own texts are
// measured with Pango (its services' text metrics), so that they are laid out with the glyph widths they
// are painted with; while a Cairo document lives, Pango also supplies the process-wide text metrics.
class TORXCairoLabel : public TORXHeadlessLabel {
  public:
    TORXCairoLabel();
    ~TORXCairoLabel() override;
    std::unique_ptr<TORXBaseItem> MakeItem(TQVLItemType type) override;  // nullptr outside the known kinds
};

}  // namespace Orvex
