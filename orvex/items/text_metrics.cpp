#include "orvex/items/text_metrics.h"

#include <atomic>
#include <cmath>

#include "orvex/core/text.h"
#include "orvex/document/document.h"

namespace Orvex {

namespace {
const TApproxTextMetrics kApprox;
std::atomic<const ITextMetrics*> gMetrics{nullptr};
thread_local const ITextMetrics* tScopeMetrics = nullptr;  // the innermost TTextMetricsScope's

std::int64_t HeightBase(const TQVLFont& font) {
    return SetBaseValue(font.FontHeight);
}

bool IsMonospaced(const TQVLFont& font) {
    return Qvl::Utils::StartsWithIgnoringCase(font.Name, "Courier") ||
           Qvl::Utils::StartsWithIgnoringCase(font.Name, "Consolas") ||
           Qvl::Utils::ToLowerAscii(font.Name).find("mono") != std::string::npos;
}
}  // namespace

std::size_t CodePointCount(std::string_view text) {
    std::size_t count = 0;
    for (char c : text)
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++count;
    return count;
}

std::int64_t TApproxTextMetrics::TextWidth(std::string_view text, const TQVLFont& font) const {
    double advance = IsMonospaced(font) ? 0.6 : 0.5;
    if (font.Bold) advance *= 1.1;
    return static_cast<std::int64_t>(std::llround(static_cast<double>(CodePointCount(text)) * advance *
                                                  static_cast<double>(HeightBase(font))));
}

std::int64_t TApproxTextMetrics::LineHeight(const TQVLFont& font) const {
    return static_cast<std::int64_t>(std::llround(1.2 * static_cast<double>(HeightBase(font))));
}

std::int64_t TApproxTextMetrics::Ascent(const TQVLFont& font) const {
    return static_cast<std::int64_t>(std::llround(0.8 * static_cast<double>(HeightBase(font))));
}

const ITextMetrics& QVLTextMetrics() {
    if (tScopeMetrics != nullptr) return *tScopeMetrics;
    const ITextMetrics* metrics = gMetrics.load();
    return metrics != nullptr ? *metrics : kApprox;
}

const ITextMetrics& QVLTextMetrics(const TORXBaseLabel* document) {
    if (document != nullptr && document->Services().TextMetrics != nullptr)
        return *document->Services().TextMetrics;
    return QVLTextMetrics();
}

TTextMetricsScope::TTextMetricsScope(const ITextMetrics& metrics) : fPrevious(tScopeMetrics) {
    tScopeMetrics = &metrics;
}

TTextMetricsScope::~TTextMetricsScope() {
    tScopeMetrics = fPrevious;
}

void QVLSetTextMetrics(const ITextMetrics* metrics) {
    gMetrics.store(metrics);
}

const ITextMetrics* QVLGetTextMetrics() {
    return gMetrics.load();
}

}  // namespace Orvex
