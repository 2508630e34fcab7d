// XY chart data: two axes (categories or a numeric range) and bar and line series over the categories.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLXYChart final : TQVLChart {
    // Either categories or a numeric range; a range is unknown (no data, no bounds) until set.
    struct TAxis {
        std::string Title;
        std::vector<std::string> Categories;
        bool Numeric = false;
        std::optional<double> Min;
        std::optional<double> Max;
    };
    struct TSeries {
        bool Line = false;  // a polyline; a bar series otherwise
        std::string Title;
        std::vector<double> Values;
        std::vector<std::string> Labels;  // per value, written `12 "peak"`; empty when no value has one
    };
    bool Horizontal = false;
    TAxis XAxis;  // the category axis, drawn vertically when Horizontal
    TAxis YAxis;  // the value axis
    std::vector<TSeries> Series;

    std::string_view Type() const override { return "xychart"; }
    // "horizontal", "xAxis", "yAxis" ({"title", "categories"} or {"title", "min", "max"}), "series":
    // [{"type", "values", "title"[, "labels"]}].
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
