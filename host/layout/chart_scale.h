// A value axis: the range a chart shows and round tick values within it, so that axes of XY and radar
// charts read "0, 2000, 4000" rather than "0, 1833.3, 3666.7".
#pragma once

#include <vector>

namespace Orvex {

struct TChartScale {
    double Low = 0;
    double High = 1;
    // Where aValue lies along the scale: 0 at Low, 1 at High (outside 0..1 for values out of range).
    double Fraction(double aValue) const { return (aValue - Low) / (High - Low); }
};

// A scale over aLow..aHigh; an empty or inverted range is widened so that the scale never divides by
// zero.
TChartScale ChartScaleOf(double aLow, double aHigh);

// Round tick values (steps of 1, 2 or 5 times a power of ten) within the scale, about aCount of them.
std::vector<double> ChartTicks(const TChartScale& aScale, int aCount = 5);

}  // namespace Orvex
