// Radar chart data: the axes around the centre, curves with one value per axis, and the scale and look
// options.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLRadarChart final : TQVLChart {
    struct TAxis {
        std::string Name;
        std::string Label;
    };
    struct TCurve {
        std::string Name;
        std::string Label;
        std::vector<double> Values;  // in the axes' order
    };
    std::vector<TAxis> Axes;
    std::vector<TCurve> Curves;
    double Min = 0;
    std::optional<double> Max;  // the largest value when the text sets none
    int Ticks = 5;
    bool PolygonGraticule = false;  // circles otherwise
    bool ShowLegend = true;

    // The top of the scale: Max, else the largest value (at least Min + 1 when there is none).
    double Top() const;

    std::string_view Type() const override { return "radar"; }
    // "axes": [{"name", "label"}], "curves": [{"name", "label", "values"}], "min", "max", "ticks",
    // "graticule", "showLegend".
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
