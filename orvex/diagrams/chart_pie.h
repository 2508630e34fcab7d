// Pie chart data: the slices in source order, and whether the values are shown beside the labels.
#pragma once

#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLPieChart final : TQVLChart {
    struct TSlice {
        std::string Label;
        double Value = 0;
    };
    bool ShowData = false;
    std::vector<TSlice> Slices;

    std::string_view Type() const override { return "pie"; }
    // "showData", "slices": [{"label", "value"}].
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
