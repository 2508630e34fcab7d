#include "host/layout/chart_scale.h"

#include <algorithm>
#include <cmath>

namespace Orvex {

TChartScale ChartScaleOf(double aLow, double aHigh) {
    if (aHigh < aLow) std::swap(aLow, aHigh);
    if (aHigh - aLow <= 1e-12) {
        const double pad = aLow == 0 ? 1 : std::abs(aLow) * 0.1;
        return {aLow - pad, aHigh + pad};
    }
    return {aLow, aHigh};
}

std::vector<double> ChartTicks(const TChartScale& aScale, int aCount) {
    const double span = aScale.High - aScale.Low;
    const double rough = span / std::max(1, aCount);
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    // The multiplier nearest (geometrically) to the rough step: 1, 2, 5 or 10.
    const double error = rough / power;
    const double step = power * (error >= std::sqrt(50.0)   ? 10
                                 : error >= std::sqrt(10.0) ? 5
                                 : error >= std::sqrt(2.0)  ? 2
                                                            : 1);
    std::vector<double> ticks;
    const double first = std::ceil(aScale.Low / step - 1e-9) * step;
    for (int i = 0;; ++i) {
        const double t = first + i * step;  // multiplied, not summed, so that errors do not pile up
        if (t > aScale.High + step * 1e-9) break;
        ticks.push_back(std::abs(t) < step * 1e-9 ? 0 : t);
    }
    return ticks;
}

}  // namespace Orvex
