// A timeline: its periods side by side along an arrow pointing to the right, each period's events stacked
// beneath it on a dashed drop line, and each section as a band over the periods it holds. Periods share
// their section's colour; a timeline without sections gives every period its own.
#include <algorithm>

#include "host/layout/chart_layout.h"
#include "host/layout/chart_text_wrap.h"
#include "orvex/diagrams/chart_timeline.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/items/flow_items.h"

namespace Orvex {
namespace {

constexpr double kColumnMM = 38.0;
constexpr double kColumnGapMM = 5.0;
constexpr double kRowGapMM = 4.0;
constexpr double kEventGapMM = 3.0;
constexpr double kAxisGapMM = 6.0;
constexpr double kArrowMM = 3.0;
constexpr double kPadMM = 2.0 * kTextPaddingY + 1.0;
constexpr double kWrapMM = kColumnMM - 2.0 * kTextPaddingX - 1.0;

// The colour halfway to white: events are lighter than their period.
TAlphaColor Lighter(TAlphaColor c) {
    auto channel = [c](int shift) { return (((c >> shift) & 0xFFu) + 0xFFu) / 2; };
    return 0xFF000000u | (channel(16) << 16) | (channel(8) << 8) | channel(0);
}

double CaptionHeight(TChartCanvas& canvas, const std::string& caption, const TChartTextStyle& style) {
    return canvas.Measure(caption.empty() ? " " : caption, style).Height + kPadMM;
}

}  // namespace

TLayoutSize DrawTimeline(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& timeline = static_cast<const TQVLTimeline&>(aChart);
    const bool banded = std::any_of(timeline.Sections.begin(), timeline.Sections.end(),
                                    [](const auto& s) { return !s.Name.empty(); });
    const TChartTextStyle sectionStyle{.Bold = true};
    const TChartTextStyle bodyStyle{};

    // Captions first: the rows are as tall as their tallest caption.
    struct TColumn {
        std::size_t Section;
        const TQVLTimeline::TPeriod* Period;  // null for a section without periods
        std::string Caption;
        std::vector<std::string> Events;
    };
    std::vector<TColumn> columns;
    double sectionHeight = 0;
    double periodHeight = 0;
    for (std::size_t s = 0; s < timeline.Sections.size(); ++s) {
        const auto& section = timeline.Sections[s];
        if (banded) {
            const double span =
                kColumnMM * static_cast<double>(std::max<std::size_t>(1, section.Periods.size()));
            sectionHeight = std::max(
                sectionHeight,
                CaptionHeight(aCanvas, ChartWrap(QVLPlainCaption(section.Name), span - 7, sectionStyle),
                              sectionStyle));
        }
        if (section.Periods.empty() && banded) columns.push_back({s, nullptr, {}, {}});
        for (const auto& period : section.Periods) {
            TColumn column{s, &period, ChartWrap(QVLPlainCaption(period.Text), kWrapMM, sectionStyle), {}};
            for (const std::string& e : period.Events)
                column.Events.push_back(ChartWrap(QVLPlainCaption(e), kWrapMM));
            periodHeight = std::max(periodHeight, CaptionHeight(aCanvas, column.Caption, sectionStyle));
            columns.push_back(std::move(column));
        }
    }
    const double width =
        std::max(kColumnMM, static_cast<double>(columns.size()) * (kColumnMM + kColumnGapMM) - kColumnGapMM);
    const double periodTop = aOrigin.Y + (banded ? sectionHeight + kRowGapMM : 0);
    const double axisY = periodTop + periodHeight + kAxisGapMM;

    // Section bands over their columns.
    if (banded) {
        std::size_t first = 0;
        while (first < columns.size()) {
            std::size_t last = first;
            while (last + 1 < columns.size() && columns[last + 1].Section == columns[first].Section) ++last;
            const auto& section = timeline.Sections[columns[first].Section];
            const double x = aOrigin.X + static_cast<double>(first) * (kColumnMM + kColumnGapMM);
            const double w =
                static_cast<double>(last - first + 1) * (kColumnMM + kColumnGapMM) - kColumnGapMM;
            auto* band =
                aCanvas.Box({x, aOrigin.Y, w, sectionHeight, true}, TQVLFlowType::ftProcess,
                            ChartWrap(QVLPlainCaption(section.Name), w - 7, sectionStyle),
                            {.Fill = ChartSeriesColor(columns[first].Section), .Stroke = kOpaqueWhite});
            if (band != nullptr) band->SetBold(true);
            first = last + 1;
        }
    }

    double bottom = axisY;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const TColumn& column = columns[i];
        if (column.Period == nullptr) continue;
        const double x = aOrigin.X + static_cast<double>(i) * (kColumnMM + kColumnGapMM);
        const TAlphaColor colour = ChartSeriesColor(banded ? column.Section : i);
        // The drop line first, so the boxes sit over it.
        double eventsBottom = axisY;
        for (const std::string& e : column.Events)
            eventsBottom += kEventGapMM + CaptionHeight(aCanvas, e, bodyStyle);
        if (!column.Events.empty())
            aCanvas.Line({x + kColumnMM / 2, periodTop + periodHeight}, {x + kColumnMM / 2, eventsBottom},
                         {.Fill = std::nullopt, .Stroke = 0xFF808080u, .Dashed = true});
        auto* period = aCanvas.Box({x, periodTop, kColumnMM, periodHeight, true}, TQVLFlowType::ftProcess,
                                   column.Caption, {.Fill = colour, .Stroke = 0xFF606060u});
        if (period != nullptr) period->SetBold(true);
        double y = axisY + kEventGapMM;
        for (const std::string& e : column.Events) {
            const double h = CaptionHeight(aCanvas, e, bodyStyle);
            aCanvas.Box({x, y, kColumnMM, h, true}, TQVLFlowType::ftProcess, e,
                        {.Fill = Lighter(colour), .Stroke = 0xFF909090u});
            y += h + kEventGapMM;
        }
        bottom = std::max(bottom, y);
    }

    // The axis: time runs to the right.
    const double axisEnd = aOrigin.X + width + kColumnGapMM;
    const TChartPaint axis{.Fill = std::nullopt, .Stroke = kOpaqueBlack, .PenMM = 0.6f};
    aCanvas.Line({aOrigin.X - 2, axisY}, {axisEnd, axisY}, axis);
    aCanvas.Line({axisEnd - kArrowMM, axisY - kArrowMM / 2}, {axisEnd, axisY}, axis);
    aCanvas.Line({axisEnd - kArrowMM, axisY + kArrowMM / 2}, {axisEnd, axisY}, axis);
    return {width + kColumnGapMM, bottom - aOrigin.Y};
}

}  // namespace Orvex
