// The Cairo item factory, one line per kind that has painting code, and Pango's text metrics.
#include <cmath>

#include "host/paint/item_painters.h"
#include "host/paint/pango_text.h"
#include "orvex/items/text_metrics.h"

namespace Orvex::Paint {

TORXBaseItem* CreateCairoItem(TORXBaseLabel* document, TQVLItemType type) {
    // The document owns every item it creates.
    switch (type) {
        case TQVLItemType::itLine:
            return new TCairoItem<TORXBaseLine>(document);
        case TQVLItemType::itPolyLine:
            return new TCairoItem<TORXBasePolyLine>(document);
        case TQVLItemType::itArc:
            return new TCairoItem<TORXBaseArc>(document);
        case TQVLItemType::itArrowLine:
            return new TCairoItem<TORXBaseArrowLine>(document);
        case TQVLItemType::itDim:
            return new TCairoItem<TORXBaseDim>(document);
        case TQVLItemType::itRectangle:
            return new TCairoItem<TORXBaseRectangle>(document);
        case TQVLItemType::itPolygon:
            return new TCairoItem<TORXBasePolygon>(document);
        case TQVLItemType::itBezier:
            return new TCairoItem<TORXBaseBezier>(document);
        case TQVLItemType::itCircle:
            return new TCairoItem<TORXBaseCircle>(document);
        case TQVLItemType::itEllipse:
            return new TCairoItem<TORXBaseEllipse>(document);
        case TQVLItemType::itSector:
            return new TCairoItem<TORXBaseSector>(document);
        case TQVLItemType::itText:
            return new TCairoItem<TORXBaseText>(document, false);
        case TQVLItemType::itPara:
            return new TCairoItem<TORXBasePara>(document, false);
        case TQVLItemType::itPolyText:
            return new TCairoItem<TORXDataPoly>(document, false);
        case TQVLItemType::itRichText:
            return new TCairoItem<TORXBaseRichText>(document, false);
        case TQVLItemType::itFlow:
            return new TCairoItem<TORXBaseFlow>(document, false);
        case TQVLItemType::itLink:
            return new TCairoItem<TORXBaseLink>(document, false);
        default:
            return nullptr;
    }
}

namespace {

// Texts are measured at a hundred device units per millimetre of font height: large enough that glyph
// advances keep their precision, and with hinting off they scale exactly to any other size.
constexpr double kUnitsPerMM = 100.0;
constexpr double kBasePerUnit = 1000.0 / kUnitsPerMM;

std::int64_t ToBase(double units) {
    return static_cast<std::int64_t>(std::llround(units * kBasePerUnit));
}

class TPangoTextMetrics final : public ITextMetrics {
  public:
    std::int64_t TextWidth(std::string_view text, const TQVLFont& font) const override {
        if (text.empty()) return 0;
        return ToBase(Extent(MakeMeasureLayout(font, font.FontHeight * kUnitsPerMM, text).get()).Width);
    }
    std::int64_t LineHeight(const TQVLFont& font) const override {
        return ToBase(Extent(MakeMeasureLayout(font, font.FontHeight * kUnitsPerMM, "Ag").get()).Height);
    }
    std::int64_t Ascent(const TQVLFont& font) const override {
        return ToBase(Extent(MakeMeasureLayout(font, font.FontHeight * kUnitsPerMM, "Ag").get()).Ascent);
    }
};

const TPangoTextMetrics gPangoMetrics;
int gMetricsUsers = 0;  // live Cairo documents; documents live on the host's main thread

}  // namespace

void RetainTextMetrics() {
    if (gMetricsUsers++ == 0) QVLSetTextMetrics(&gPangoMetrics);
}

void ReleaseTextMetrics() {
    if (--gMetricsUsers == 0 && &QVLTextMetrics() == &gPangoMetrics) QVLSetTextMetrics(nullptr);
}

}  // namespace Orvex::Paint
