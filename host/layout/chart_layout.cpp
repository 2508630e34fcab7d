#include "host/layout/chart_layout.h"

#include <algorithm>
#include <array>
#include <utility>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {
namespace {

constexpr float kTitleHeightMM = 5.0f;
constexpr double kTitleGapMM = 4.0;

constexpr auto kDrawers = std::to_array<std::pair<std::string_view, TChartDrawer>>({
    {"pie", &DrawPieChart},
    {"gantt", &DrawGanttChart},
    {"gitgraph", &DrawGitGraph},
    {"timeline", &DrawTimeline},
    {"journey", &DrawJourney},
    {"kanban", &DrawKanban},
    {"xychart", &DrawXYChart},
    {"quadrant", &DrawQuadrantChart},
    {"packet", &DrawPacketChart},
    {"sankey", &DrawSankeyChart},
    {"radar", &DrawRadarChart},
    {"treemap", &DrawTreemapChart},
    {"venn", &DrawVennChart},
    {"json", &DrawDataTreeChart},
    {"yaml", &DrawDataTreeChart},
    {"timing", &DrawTimingChart},
    {"nwdiag", &DrawNetworkChart},
    {"salt", &DrawSaltChart},
});

TChartDrawer DrawerOf(std::string_view type) {
    for (const auto& [name, drawer] : kDrawers)
        if (name == type) return drawer;
    return nullptr;
}

}  // namespace

bool PlaceChart(TORXBaseLabel& aDocument, const TORXDiagramModel& aModel, TQVLDiagramPlacement* aPlacement,
                double aLeft, double aTop) {
    const TQVLChart* chart = aModel.Chart();
    if (chart == nullptr) return false;
    const TChartDrawer draw = DrawerOf(chart->Type());
    if (draw == nullptr) return false;
    TChartCanvas canvas(aDocument, aPlacement);
    const TChartTextStyle titleStyle{.Height = kTitleHeightMM, .Bold = true};
    const TLayoutSize titleSize = canvas.Measure(aModel.Title(), titleStyle);
    const double top = aModel.Title().empty() ? aTop : aTop + titleSize.Height + kTitleGapMM;
    const TLayoutSize extent = draw(canvas, *chart, {aLeft, top});
    // The title is centred over what the chart drew.
    const double titleLeft = aLeft + std::max(0.0, (extent.Width - titleSize.Width) / 2);
    canvas.Text({titleLeft, aTop}, aModel.Title(), titleStyle);
    return !canvas.Failed();
}

}  // namespace Orvex
