// A pie: sectors clockwise from twelve o'clock in source order, each labelled with its share, and a legend
// to the right naming every slice (with its value when the text asks for showData).
#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/layout/chart_layout.h"
#include "orvex/diagrams/chart_pie.h"

namespace Orvex {
namespace {

constexpr double kRadiusMM = 40.0;
constexpr double kLegendGapMM = 12.0;
constexpr double kSwatchMM = 4.0;
constexpr double kLegendRowMM = 6.5;
constexpr double kSmallestLabelledShare = 0.03;  // narrower sectors have no room for their percentage

TLayoutPoint OnCircle(TLayoutPoint center, double radius, double degrees) {
    const double a = degrees * std::numbers::pi / 180.0;
    return {center.X + radius * std::cos(a), center.Y - radius * std::sin(a)};
}

}  // namespace

TLayoutSize DrawPieChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& pie = static_cast<const TQVLPieChart&>(aChart);
    double total = 0;
    for (const auto& slice : pie.Slices) total += slice.Value;

    const TLayoutPoint center{aOrigin.X + kRadiusMM, aOrigin.Y + kRadiusMM};
    if (total <= 0) aCanvas.Circle(center, kRadiusMM, {.Fill = kOpaqueWhite});
    double done = 0;  // the share of the turn already drawn
    for (std::size_t i = 0; i < pie.Slices.size() && total > 0; ++i) {
        const double share = pie.Slices[i].Value / total;
        if (share <= 0) continue;
        // Clockwise on screen: each sector starts where the next one will end.
        const double start = 90.0 - 360.0 * (done + share);
        aCanvas.Sector(center, kRadiusMM, start, 360.0 * share,
                       {.Fill = ChartSeriesColor(i), .Stroke = kOpaqueWhite, .PenMM = 0.5f});
        if (share >= kSmallestLabelledShare) {
            const TLayoutPoint at = OnCircle(center, kRadiusMM * 0.66, 90.0 - 360.0 * (done + share / 2));
            aCanvas.Text(at, ChartNumber(share * 100.0, 0) + "%",
                         {.Horizontal = TChartAlign::caCenter, .Vertical = TChartAlign::caCenter});
        }
        done += share;
    }

    const double legendX = aOrigin.X + 2 * kRadiusMM + kLegendGapMM;
    double legendY =
        std::max(aOrigin.Y, center.Y - kLegendRowMM * static_cast<double>(pie.Slices.size()) / 2);
    double widest = 0;
    for (std::size_t i = 0; i < pie.Slices.size(); ++i) {
        const auto& slice = pie.Slices[i];
        aCanvas.Rect({legendX, legendY, kSwatchMM, kSwatchMM, true}, {.Fill = ChartSeriesColor(i)});
        const std::string caption =
            pie.ShowData ? slice.Label + " [" + ChartNumber(slice.Value) + "]" : slice.Label;
        aCanvas.Text({legendX + kSwatchMM + 2, legendY + kSwatchMM / 2}, caption,
                     {.Vertical = TChartAlign::caCenter});
        widest = std::max(widest, aCanvas.Measure(caption).Width);
        legendY += kLegendRowMM;
    }
    const double height = std::max(2 * kRadiusMM, legendY - aOrigin.Y);
    return {2 * kRadiusMM + kLegendGapMM + kSwatchMM + 2 + widest, height};
}

}  // namespace Orvex
