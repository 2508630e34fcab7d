// Captions broken to a chart's column width before they are drawn, so that boxes can be made tall enough
// for them (a box breaks its caption the same way, but only knows its own width).
#pragma once

#include <string>
#include <string_view>

#include "host/layout/chart_canvas.h"

namespace Orvex {

// aText broken into lines no wider than aWidthMM in aStyle (a longer word stands alone), joined with CR LF
// as captions hold their lines; existing line breaks are kept.
std::string ChartWrap(std::string_view aText, double aWidthMM, const TChartTextStyle& aStyle = {});

}  // namespace Orvex
