// A quadrant chart: a square of four titled quadrants (1 top right, 2 top left, 3 bottom left, 4 bottom
// right), the axis labels at the low and high halves of each axis, and every point as a dot at its
// coordinates with its name below.
#include <algorithm>
#include <array>

#include "host/layout/chart_layout.h"
#include "orvex/diagrams/chart_quadrant.h"

namespace Orvex {
namespace {

constexpr double kSideMM = 110.0;
constexpr double kGapMM = 2.5;
constexpr double kPixelMM = 0.3;  // a pixel of the diagram text's radius and stroke widths
constexpr double kDefaultRadiusPx = 5;
constexpr float kLabelHeight = 3.0f;
constexpr TAlphaColor kPointColor = 0xFF3B5BA5u;
// Soft, distinct tints so that the quadrants read apart and the points stay visible on them.
constexpr std::array<TAlphaColor, 4> kQuadrantFills{0xFFE3E8F8u, 0xFFEAF3E3u, 0xFFF8EFE0u, 0xFFF5E4EEu};

}  // namespace

TLayoutSize DrawQuadrantChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& chart = static_cast<const TQVLQuadrantChart&>(aChart);
    const TChartTextStyle axisStyle{
        .Height = 3.5f, .Horizontal = TChartAlign::caEnd, .Vertical = TChartAlign::caCenter};
    double yLabels = 0;
    for (const std::string& label : chart.YAxis)
        if (!label.empty()) yLabels = std::max(yLabels, aCanvas.Measure(label, axisStyle).Width + kGapMM);
    const TLayoutBox square{aOrigin.X + yLabels, aOrigin.Y, kSideMM, kSideMM, true};
    const double half = kSideMM / 2;

    // Quadrant n's top-left corner, counter-clockwise from the top right as the chart numbers them.
    const std::array<TLayoutPoint, 4> corners{TLayoutPoint{square.X + half, square.Y},
                                              {square.X, square.Y},
                                              {square.X, square.Y + half},
                                              {square.X + half, square.Y + half}};
    for (std::size_t q = 0; q < 4; ++q) {
        aCanvas.Rect({corners[q].X, corners[q].Y, half, half, true},
                     {.Fill = kQuadrantFills[q], .Stroke = kOpaqueWhite, .PenMM = 0.5f});
        // With points present the title moves to the top of its quadrant, out of their way.
        const double y = chart.Points.empty() ? corners[q].Y + half / 2 : corners[q].Y + kGapMM;
        aCanvas.Text({corners[q].X + half / 2, y}, chart.Quadrants[q],
                     {.Height = 4.0f,
                      .Bold = true,
                      .Horizontal = TChartAlign::caCenter,
                      .Vertical = chart.Points.empty() ? TChartAlign::caCenter : TChartAlign::caStart});
    }

    // A low label alone names the whole axis; with a high label each names its half.
    const bool xBoth = !chart.XAxis[1].empty();
    const double xLabelY = square.Bottom() + kGapMM;
    const TChartTextStyle below{.Height = 3.5f, .Horizontal = TChartAlign::caCenter};
    aCanvas.Text({square.X + (xBoth ? half / 2 : half), xLabelY}, chart.XAxis[0], below);
    aCanvas.Text({square.X + half + half / 2, xLabelY}, chart.XAxis[1], below);
    const bool yBoth = !chart.YAxis[1].empty();
    aCanvas.Text({square.X - kGapMM, square.Y + (yBoth ? half + half / 2 : half)}, chart.YAxis[0], axisStyle);
    aCanvas.Text({square.X - kGapMM, square.Y + half / 2}, chart.YAxis[1], axisStyle);

    double right = square.Right();
    for (const auto& point : chart.Points) {
        const auto style = chart.StyleOf(point);
        const double radius = style.Radius.value_or(kDefaultRadiusPx) * kPixelMM;
        const TLayoutPoint at{square.X + point.X * kSideMM, square.Bottom() - point.Y * kSideMM};
        const TAlphaColor fill = style.Color.value_or(kPointColor);
        const double stroke = style.StrokeWidth.value_or(0) * kPixelMM;
        aCanvas.Circle(
            at, radius,
            {.Fill = fill, .Stroke = style.StrokeColor.value_or(fill), .PenMM = static_cast<float>(stroke)});
        aCanvas.Text({at.X, at.Y + radius + 0.8}, point.Text,
                     {.Height = kLabelHeight, .Horizontal = TChartAlign::caCenter});
        right = std::max(right, at.X + aCanvas.Measure(point.Text, {.Height = kLabelHeight}).Width / 2);
    }
    const double labelHeight = aCanvas.Measure("0", below).Height;
    return {right - aOrigin.X, xLabelY + labelHeight - aOrigin.Y};
}

}  // namespace Orvex
