#include "host/layout/chart_text_wrap.h"

#include <cmath>

#include "host/layout/layout_types.h"
#include "orvex/core/units.h"
#include "orvex/document/layer.h"
#include "orvex/items/text_metrics.h"
#include "orvex/items/text_place.h"

namespace Orvex {

std::string ChartWrap(std::string_view aText, double aWidthMM, const TChartTextStyle& aStyle) {
    TQVLFont font;
    font.FontHeight = aStyle.Height;
    font.Bold = aStyle.Bold;
    font.Italic = aStyle.Italic;
    std::string plain;  // WrapText breaks at "\n" only
    for (const char c : aText)
        if (c != '\r') plain += c;
    const std::int64_t width = BaseFromMM(aWidthMM);
    std::string out;
    for (const std::string& line : WrapText(plain, font, width, QVLTextMetrics())) {
        if (!out.empty()) out += "\r\n";
        out += line;
    }
    return out;
}

}  // namespace Orvex
