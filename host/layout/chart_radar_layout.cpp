// A radar chart: one spoke per axis clockwise from twelve o'clock, a graticule of rings (circles or
// polygons) at the ticks, each curve as a closed outline through its values, and a legend.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/layout/chart_layout.h"
#include "orvex/diagrams/chart_radar.h"

namespace Orvex {
namespace {

constexpr double kRadiusMM = 45.0;
constexpr double kLabelGapMM = 3.0;
constexpr double kLegendGapMM = 14.0;
constexpr double kSwatchMM = 4.0;
constexpr double kLegendRowMM = 6.5;
constexpr TAlphaColor kGridColor = 0xFFC8C8C8u;

}  // namespace

TLayoutSize DrawRadarChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& radar = static_cast<const TQVLRadarChart&>(aChart);
    const std::size_t count = radar.Axes.size();
    // Room around the circle for the axis labels, the widest on either side.
    double side = 0;
    for (const auto& axis : radar.Axes) side = std::max(side, aCanvas.Measure(axis.Label).Width);
    const double labelHeight = aCanvas.Measure("0").Height;
    const TLayoutPoint centre{aOrigin.X + side + kLabelGapMM + kRadiusMM,
                              aOrigin.Y + labelHeight + kLabelGapMM + kRadiusMM};
    const auto spoke = [&](std::size_t i, double fraction) -> TLayoutPoint {
        const double angle = 2 * std::numbers::pi * static_cast<double>(i) /
                             static_cast<double>(std::max<std::size_t>(count, 1));
        return {centre.X + kRadiusMM * fraction * std::sin(angle),
                centre.Y - kRadiusMM * fraction * std::cos(angle)};
    };

    const TChartPaint grid{.Fill = {}, .Stroke = kGridColor, .PenMM = 0.25f};
    for (int t = 1; t <= radar.Ticks; ++t) {
        const double fraction = static_cast<double>(t) / radar.Ticks;
        if (radar.PolygonGraticule && count >= 3) {
            std::vector<TLayoutPoint> ring;
            for (std::size_t i = 0; i < count; ++i) ring.push_back(spoke(i, fraction));
            aCanvas.Polygon(ring, grid);
        } else {
            aCanvas.Circle(centre, kRadiusMM * fraction, grid);
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        aCanvas.Line(centre, spoke(i, 1), grid);
        // Labels sit beyond the spoke's end, on the side it points to.
        const TLayoutPoint end = spoke(i, 1);
        const double dx = end.X - centre.X;
        const double dy = end.Y - centre.Y;
        const TChartAlign h = std::abs(dx) < 1e-6 ? TChartAlign::caCenter
                              : dx > 0            ? TChartAlign::caStart
                                                  : TChartAlign::caEnd;
        const TChartAlign v = std::abs(dy) < kRadiusMM * 0.2 ? TChartAlign::caCenter
                              : dy > 0                       ? TChartAlign::caStart
                                                             : TChartAlign::caEnd;
        const double reach = kRadiusMM + kLabelGapMM;
        aCanvas.Text({centre.X + dx / kRadiusMM * reach, centre.Y + dy / kRadiusMM * reach},
                     radar.Axes[i].Label, {.Horizontal = h, .Vertical = v});
    }

    const double low = radar.Min;
    const double span = std::max(radar.Top() - low, 1e-12);
    for (std::size_t k = 0; k < radar.Curves.size(); ++k) {
        const auto& curve = radar.Curves[k];
        std::vector<TLayoutPoint> outline;
        for (std::size_t i = 0; i < std::min(count, curve.Values.size()); ++i)
            outline.push_back(spoke(i, std::clamp((curve.Values[i] - low) / span, 0.0, 1.0)));
        const TAlphaColor color = ChartSeriesColor(k);
        const TAlphaColor stroke = (color & 0x00FFFFFFu) | 0xFF000000u;
        if (outline.size() >= 3)
            aCanvas.Polygon(outline, {.Fill = {}, .Stroke = stroke, .PenMM = 0.7f});
        else if (outline.size() == 2)
            aCanvas.Line(outline[0], outline[1], {.Fill = {}, .Stroke = stroke, .PenMM = 0.7f});
        for (const TLayoutPoint& p : outline) aCanvas.Circle(p, 0.9, {.Fill = stroke, .Stroke = stroke});
    }

    double right = centre.X + kRadiusMM + kLabelGapMM + side;
    double bottom = centre.Y + kRadiusMM + kLabelGapMM + labelHeight;
    if (radar.ShowLegend) {
        const double x = right + kLegendGapMM;
        double y = aOrigin.Y + labelHeight + kLabelGapMM;
        for (std::size_t k = 0; k < radar.Curves.size(); ++k) {
            aCanvas.Rect({x, y, kSwatchMM, kSwatchMM, true}, {.Fill = ChartSeriesColor(k)});
            aCanvas.Text({x + kSwatchMM + 2, y + kSwatchMM / 2}, radar.Curves[k].Label,
                         {.Vertical = TChartAlign::caCenter});
            right = std::max(right, x + kSwatchMM + 2 + aCanvas.Measure(radar.Curves[k].Label).Width);
            y += kLegendRowMM;
        }
        bottom = std::max(bottom, y);
    }
    return {right - aOrigin.X, bottom - aOrigin.Y};
}

}  // namespace Orvex
