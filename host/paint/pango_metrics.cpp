// Pango's glyph metrics behind the library's text-metrics interface, for as long as a Cairo document lives.
#include <cmath>
#include <string>
#include <string_view>
#include <unordered_map>

#include "host/paint/item_painters.h"
#include "host/paint/pango_text.h"
#include "orvex/items/text_metrics.h"

namespace Orvex::Paint {

namespace {

// Texts are measured at a hundred device units per millimetre of font height: large enough that glyph
// advances keep their precision, and with hinting off they scale exactly to any other size.
constexpr double kUnitsPerMM = 100.0;
constexpr double kBasePerUnit = static_cast<double>(kBasePerMM) / kUnitsPerMM;

std::int64_t ToBase(double units) {
    return static_cast<std::int64_t>(std::llround(units * kBasePerUnit));
}

// Laying a text out with Pango costs microseconds, and a diagram of thousands of nodes asks for the line
// height and ascent of the same font with every caption, and for the width of the same words again and
// again while captions wrap. Each thread keeps the answers for the font it measured last (the answers
// never change while the process runs); the widths are forgotten in bulk when they grow many.
struct TMeasureCache {
    TQVLFont Font;
    bool Valid = false;
    std::int64_t LineHeight = -1;
    std::int64_t Ascent = -1;
    std::unordered_map<std::string, std::int64_t> Widths;
};

TMeasureCache& CacheFor(const TQVLFont& font) {
    constexpr std::size_t kMaxWidths = 1u << 16;
    thread_local TMeasureCache cache;
    if (!cache.Valid || !(cache.Font == font) || cache.Widths.size() > kMaxWidths) {
        const bool sameFont = cache.Valid && cache.Font == font;
        cache.Widths.clear();
        if (!sameFont) {
            cache.Font = font;
            cache.LineHeight = cache.Ascent = -1;
            cache.Valid = true;
        }
    }
    return cache;
}

class TPangoTextMetrics final : public ITextMetrics {
  public:
    std::int64_t TextWidth(std::string_view text, const TQVLFont& font) const override {
        if (text.empty()) return 0;
        TMeasureCache& cache = CacheFor(font);
        const auto found = cache.Widths.find(std::string(text));
        if (found != cache.Widths.end()) return found->second;
        const std::int64_t width =
            ToBase(Extent(MakeMeasureLayout(font, font.FontHeight * kUnitsPerMM, text).get()).Width);
        cache.Widths.emplace(std::string(text), width);
        return width;
    }
    std::int64_t LineHeight(const TQVLFont& font) const override {
        TMeasureCache& cache = CacheFor(font);
        if (cache.LineHeight < 0)
            cache.LineHeight =
                ToBase(Extent(MakeMeasureLayout(font, font.FontHeight * kUnitsPerMM, "Ag").get()).Height);
        return cache.LineHeight;
    }
    std::int64_t Ascent(const TQVLFont& font) const override {
        TMeasureCache& cache = CacheFor(font);
        if (cache.Ascent < 0)
            cache.Ascent =
                ToBase(Extent(MakeMeasureLayout(font, font.FontHeight * kUnitsPerMM, "Ag").get()).Ascent);
        return cache.Ascent;
    }
};

const TPangoTextMetrics gPangoMetrics;
int gMetricsUsers = 0;  // live Cairo documents; documents live on the host's main thread

}  // namespace

void RetainTextMetrics() {
    if (gMetricsUsers++ == 0) QVLSetTextMetrics(&gPangoMetrics);
}

void ReleaseTextMetrics() {
    if (--gMetricsUsers == 0 && QVLGetTextMetrics() == &gPangoMetrics) QVLSetTextMetrics(nullptr);
}

const ITextMetrics& PangoTextMetrics() {
    return gPangoMetrics;
}

}  // namespace Orvex::Paint
