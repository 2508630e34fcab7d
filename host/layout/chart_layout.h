// Charts drawn as charts: each chart type of the full importer has a drawer that turns its chart data into
// the drawing's own items (see chart_canvas.h), below a title when the text has one.
#pragma once

#include <string_view>

#include "host/layout/chart_canvas.h"

namespace Orvex {
class TORXDiagramModel;
class TQVLChart;

// Draws aModel's chart with its top-left corner at (aLeft, aTop) mm. False when the document cannot make
// the items, or when no drawer knows the chart's type.
bool PlaceChart(TORXBaseLabel& aDocument, const TORXDiagramModel& aModel, TQVLDiagramPlacement* aPlacement,
                double aLeft = kLayoutMargin, double aTop = kLayoutMargin);

// One drawer: draws the chart with its top-left corner at aOrigin and returns the extent it used (mm).
using TChartDrawer = TLayoutSize (*)(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);

// The drawers, one per chart type (each in its own file).
TLayoutSize DrawPieChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawGanttChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawGitGraph(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawTimeline(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawJourney(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawKanban(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawXYChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawQuadrantChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawPacketChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawSankeyChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawRadarChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawTreemapChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawVennChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawDataTreeChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawTimingChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawNetworkChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);
TLayoutSize DrawSaltChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin);

}  // namespace Orvex
