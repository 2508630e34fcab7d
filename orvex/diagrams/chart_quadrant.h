// Quadrant chart data: two labelled axes, the four quadrants' titles, and points at coordinates 0..1
// with their class and inline style.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "orvex/core/color.h"
#include "orvex/diagrams/chart_model.h"

namespace Orvex {
using Qvl::Types::TAlphaColor;

struct TQVLQuadrantChart final : TQVLChart {
    // What a point's class or its own line sets; the rest is the chart's default look.
    struct TPointStyle {
        std::optional<double> Radius;  // in pixels of the diagram text, as written
        std::optional<TAlphaColor> Color;
        std::optional<TAlphaColor> StrokeColor;
        std::optional<double> StrokeWidth;  // pixels

        bool IsEmpty() const { return !Radius && !Color && !StrokeColor && !StrokeWidth; }
    };
    struct TPoint {
        std::string Text;
        double X = 0;  // 0 at the left, 1 at the right
        double Y = 0;  // 0 at the bottom, 1 at the top
        std::string Class;
        TPointStyle Style;  // the line's own; it wins over the class
    };
    std::array<std::string, 2> XAxis;  // low, high
    std::array<std::string, 2> YAxis;
    std::array<std::string, 4> Quadrants;  // 1 top right, 2 top left, 3 bottom left, 4 bottom right
    std::vector<TPoint> Points;
    std::map<std::string, TPointStyle> Classes;

    // The point's class style with its own style over it.
    TPointStyle StyleOf(const TPoint& aPoint) const;

    std::string_view Type() const override { return "quadrant"; }
    // "xAxis", "yAxis" ([low, high]), "quadrants" (1 to 4), "points": [{"text", "x", "y"[, "style"]}].
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
