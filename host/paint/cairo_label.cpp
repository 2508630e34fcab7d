#include "host/paint/cairo_label.h"

#include <utility>

#include "host/paint/item_painters.h"

namespace Orvex {

namespace {
thread_local TCairoDraw* gActiveDraw = nullptr;
}  // namespace

TCairoDraw::TCairoDraw(_cairo* context) : fContext(context), fPrevious(gActiveDraw) {
    gActiveDraw = this;
}

TCairoDraw::~TCairoDraw() {
    gActiveDraw = fPrevious;
}

TCairoDraw* TCairoDraw::Active(TORXBaseDraw& surface) {
    return gActiveDraw != nullptr && static_cast<TORXBaseDraw*>(gActiveDraw) == &surface ? gActiveDraw
                                                                                         : nullptr;
}

TPangoMetricsScope::TPangoMetricsScope() {
    Paint::RetainTextMetrics();
}

TPangoMetricsScope::~TPangoMetricsScope() {
    Paint::ReleaseTextMetrics();
}

TORXCairoLabel::TORXCairoLabel() {
    Paint::RetainTextMetrics();
    // Its own as well, so that its texts are measured as they are painted whatever the process-wide
    // metrics become later.
    TQVLDocumentServices services;
    services.TextMetrics = &Paint::PangoTextMetrics();
    SetServices(std::move(services));
}

TORXCairoLabel::~TORXCairoLabel() {
    Paint::ReleaseTextMetrics();
}

std::unique_ptr<TORXBaseItem> TORXCairoLabel::MakeItem(TQVLItemType type) {
    if (auto item = Paint::CreateCairoItem(this, type)) return item;
    return TORXHeadlessLabel::MakeItem(type);
}

}  // namespace Orvex
