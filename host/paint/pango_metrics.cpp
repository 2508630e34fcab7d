// Pango's glyph metrics behind the library's text-metrics interface, for as long as a Cairo document lives.
#include <cmath>

#include "host/paint/item_painters.h"
#include "host/paint/pango_text.h"
#include "orvex/items/text_metrics.h"

namespace Orvex::Paint {

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
