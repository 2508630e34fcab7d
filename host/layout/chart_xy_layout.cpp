// An XY chart: a plot area with the category axis along the bottom (along the left when horizontal) and
// the value axis across it, bars side by side within each category's band, lines through the band
// centres, and a legend when the series are named.
#include <algorithm>
#include <cmath>

#include "host/layout/chart_layout.h"
#include "host/layout/chart_scale.h"
#include "orvex/diagrams/chart_xy.h"

namespace Orvex {
namespace {

// The plot keeps its landscape shape in either orientation: a horizontal chart turns its axes, not the
// page.
constexpr double kPlotWidthMM = 130.0;
constexpr double kPlotHeightMM = 80.0;
constexpr double kTickMM = 1.5;
constexpr double kGapMM = 2.0;
constexpr double kBarShare = 0.7;  // of a band, the rest is the gap between categories
constexpr float kLabelHeight = 3.0f;
constexpr float kSmallestLabel = 2.2f;
constexpr double kLegendRowMM = 6.0;
constexpr double kSwatchMM = 4.0;

const TChartTextStyle kAxisTitleStyle{.Height = 3.5f, .Bold = true};

// The category labels along the category axis: the names, or the numbers of a numeric axis.
std::vector<std::string> CategoryLabels(const TQVLXYChart& chart, std::size_t count) {
    const auto& axis = chart.XAxis;
    if (!axis.Numeric) return axis.Categories;
    std::vector<std::string> labels;
    const double low = axis.Min.value_or(1);
    const double high = axis.Max.value_or(static_cast<double>(count));
    for (std::size_t i = 0; i < count; ++i)
        labels.push_back(ChartNumber(
            count < 2 ? low : low + (high - low) * static_cast<double>(i) / static_cast<double>(count - 1)));
    return labels;
}

// The value range: the axis's bounds, written or taken from the data by the reader.
TChartScale ValueScale(const TQVLXYChart& chart) {
    const double low = chart.YAxis.Min.value_or(0);
    const double high = chart.YAxis.Max.value_or(low + 1);
    return ChartScaleOf(low, high);
}

}  // namespace

TLayoutSize DrawXYChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& xy = static_cast<const TQVLXYChart&>(aChart);
    std::size_t count = xy.XAxis.Numeric ? 0 : xy.XAxis.Categories.size();
    for (const auto& s : xy.Series) count = std::max(count, s.Values.size());
    const std::vector<std::string> categories = CategoryLabels(xy, count);
    const TChartScale scale = ValueScale(xy);
    const std::vector<double> ticks = ChartTicks(scale, 8);
    const TChartTextStyle label{.Height = kLabelHeight};

    // Room for the labels beside the left axis and below the bottom one.
    const auto widest = [&](const auto& texts) {
        double w = 0;
        for (const auto& t : texts) w = std::max(w, aCanvas.Measure(t, label).Width);
        return w;
    };
    std::vector<std::string> tickLabels;
    for (const double t : ticks) tickLabels.push_back(ChartNumber(t));
    const double leftLabels = xy.Horizontal ? widest(categories) : widest(tickLabels);
    const double labelHeight = aCanvas.Measure("0", label).Height;
    const std::string& leftTitle = xy.Horizontal ? xy.XAxis.Title : xy.YAxis.Title;
    const std::string& bottomTitle = xy.Horizontal ? xy.YAxis.Title : xy.XAxis.Title;
    const double titleHeight = aCanvas.Measure("0", kAxisTitleStyle).Height;
    const double top = aOrigin.Y + (leftTitle.empty() ? 0 : titleHeight + kGapMM);
    const TLayoutBox plot{aOrigin.X + leftLabels + kTickMM + kGapMM, top, kPlotWidthMM, kPlotHeightMM, true};

    // Positions: along the category axis from its start, and along the value axis from its low end.
    const double categoryLength = xy.Horizontal ? plot.Height : plot.Width;
    const double valueLength = xy.Horizontal ? plot.Width : plot.Height;
    const double band = categoryLength / static_cast<double>(std::max<std::size_t>(count, 1));
    // Where value i of a series of n values stands along the category axis: in its category's band, or on
    // a numeric axis spread evenly from the axis's low end to its high end, whatever the series' length.
    const auto centreOf = [&](std::size_t n, std::size_t i) {
        if (!xy.XAxis.Numeric || n < 2) return band * (static_cast<double>(i) + 0.5);
        return band / 2 + (categoryLength - band) * static_cast<double>(i) / static_cast<double>(n - 1);
    };
    const auto at = [&](double along, double value) -> TLayoutPoint {
        const double v = std::clamp(scale.Fraction(value), 0.0, 1.0) * valueLength;
        return xy.Horizontal ? TLayoutPoint{plot.X + v, plot.Y + along}
                             : TLayoutPoint{plot.X + along, plot.Bottom() - v};
    };

    aCanvas.Rect(plot, {.Fill = {}, .Stroke = 0xFFBFBFBFu});
    const TChartPaint grid{.Fill = {}, .Stroke = 0xFFE0E0E0u, .PenMM = 0.2f};
    for (std::size_t i = 0; i < ticks.size(); ++i) {
        const TLayoutPoint from = at(0, ticks[i]);
        const TLayoutPoint to = at(categoryLength, ticks[i]);
        aCanvas.Line(from, to, grid);
        if (xy.Horizontal) {
            aCanvas.Line({from.X, plot.Bottom()}, {from.X, plot.Bottom() + kTickMM});
            aCanvas.Text({from.X, plot.Bottom() + kTickMM + 0.5}, tickLabels[i],
                         {.Height = kLabelHeight, .Horizontal = TChartAlign::caCenter});
        } else {
            aCanvas.Line({plot.X - kTickMM, from.Y}, {plot.X, from.Y});
            aCanvas.Text({plot.X - kTickMM - 0.5, from.Y}, tickLabels[i],
                         {.Height = kLabelHeight,
                          .Horizontal = TChartAlign::caEnd,
                          .Vertical = TChartAlign::caCenter});
        }
    }
    // Category names under the bands: smaller when they are wider than their band, and on two staggered
    // rows when even that does not make them fit.
    TChartTextStyle under{.Height = kLabelHeight, .Horizontal = TChartAlign::caCenter};
    bool staggered = false;
    if (!xy.Horizontal) {
        while (under.Height > kSmallestLabel &&
               widest(categories) * under.Height / kLabelHeight > band * 0.95)
            under.Height -= 0.2f;
        staggered = widest(categories) * under.Height / kLabelHeight > band * 0.95;
    }
    for (std::size_t i = 0; i < categories.size(); ++i) {
        const double centre = band * (static_cast<double>(i) + 0.5);
        if (xy.Horizontal) {
            aCanvas.Text({plot.X - kTickMM - 0.5, plot.Y + centre}, categories[i],
                         {.Height = kLabelHeight,
                          .Horizontal = TChartAlign::caEnd,
                          .Vertical = TChartAlign::caCenter});
            continue;
        }
        const double row = staggered && i % 2 == 1 ? labelHeight : 0;
        aCanvas.Text({plot.X + centre, plot.Bottom() + kTickMM + 0.5 + row}, categories[i], under);
    }

    // Bars grow from zero when zero is on the scale, else from the scale's low end.
    const double base = std::clamp(0.0, scale.Low, scale.High);
    std::size_t barSeries = 0;
    for (const auto& s : xy.Series) barSeries += s.Line ? 0 : 1;
    const double barWidth = band * kBarShare / static_cast<double>(std::max<std::size_t>(barSeries, 1));
    std::size_t barIndex = 0;
    for (std::size_t k = 0; k < xy.Series.size(); ++k) {
        const auto& series = xy.Series[k];
        const TAlphaColor color = ChartSeriesColor(k);
        if (series.Line) {
            std::vector<TLayoutPoint> points;
            for (std::size_t i = 0; i < series.Values.size(); ++i)
                points.push_back(at(centreOf(series.Values.size(), i), series.Values[i]));
            for (std::size_t i = 0; i < series.Labels.size() && i < points.size(); ++i)
                aCanvas.Text({points[i].X, points[i].Y - 1.2}, series.Labels[i],
                             {.Height = kLabelHeight,
                              .Horizontal = TChartAlign::caCenter,
                              .Vertical = TChartAlign::caEnd});
            if (points.size() == 1)
                aCanvas.Circle(points.front(), 0.8, {.Fill = color, .Stroke = color});
            else
                aCanvas.Polyline(points, {.Fill = {}, .Stroke = color, .PenMM = 0.7f});
            continue;
        }
        const double offset = -band * kBarShare / 2 + barWidth * static_cast<double>(barIndex++);
        for (std::size_t i = 0; i < series.Values.size(); ++i) {
            const double start = centreOf(series.Values.size(), i) + offset;
            const TLayoutPoint a = at(start, base);
            const TLayoutPoint b = at(start + barWidth, series.Values[i]);
            aCanvas.Rect(
                {std::min(a.X, b.X), std::min(a.Y, b.Y), std::abs(b.X - a.X), std::abs(b.Y - a.Y), true},
                {.Fill = color, .Stroke = color});
        }
    }

    if (!leftTitle.empty()) aCanvas.Text({plot.X, aOrigin.Y}, leftTitle, kAxisTitleStyle);
    const double bottomLabels = (staggered ? 2 : 1) * labelHeight;
    double bottom = plot.Bottom() + kTickMM + 0.5 + bottomLabels;
    if (!bottomTitle.empty()) {
        aCanvas.Text({plot.X + plot.Width / 2, bottom + kGapMM}, bottomTitle,
                     {.Height = kAxisTitleStyle.Height, .Bold = true, .Horizontal = TChartAlign::caCenter});
        bottom += kGapMM + titleHeight;
    }

    // The legend names the series that have names.
    double right = plot.Right();
    double legendY = plot.Y;
    for (std::size_t k = 0; k < xy.Series.size(); ++k) {
        if (xy.Series[k].Title.empty()) continue;
        const double x = plot.Right() + 3 * kGapMM;
        aCanvas.Rect({x, legendY, kSwatchMM, kSwatchMM, true}, {.Fill = ChartSeriesColor(k)});
        aCanvas.Text({x + kSwatchMM + kGapMM, legendY + kSwatchMM / 2}, xy.Series[k].Title,
                     {.Vertical = TChartAlign::caCenter});
        right = std::max(right, x + kSwatchMM + kGapMM + aCanvas.Measure(xy.Series[k].Title).Width);
        legendY += kLegendRowMM;
    }
    return {right - aOrigin.X, std::max(bottom, legendY) - aOrigin.Y};
}

}  // namespace Orvex
