// The chart readers of the full importer. Each takes one chart type in one or both languages and fills
// the model with its chart data; the model's kind is then dkChart.
#pragma once

#include <string_view>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

// True when one of the chart readers took the text; the model is then complete, diagnostics included.
bool QVLImportChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);

// For a text of a kind that no reader draws as what it is yet (PlantUML ditaa, regex, wire, ...), and that
// therefore went to the core model: adds the warning CHART_NOT_DRAWN, so the user knows the boxes are a
// stand-in.
void QVLNoteUndrawnChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);

// One reader: false, leaving the model untouched, when the text is not its chart type.
using TQVLChartReader = bool (*)(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);

// The readers, one per chart type (each in its own file).
bool QVLReadPieChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadMermaidGantt(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadPlantUMLGantt(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadGitGraph(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadTimeline(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadJourney(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadKanban(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadXYChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadQuadrantChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadPacketChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadSankeyChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadRadarChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadTreemapChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
bool QVLReadVennChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
// PlantUML @startjson and @startyaml: a tree of tables.
bool QVLReadDataTreeChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
// PlantUML timing diagrams: lanes of states over time.
bool QVLReadTimingChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
// PlantUML nwdiag: networks and the hosts on them.
bool QVLReadNetworkChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
// PlantUML salt: a wireframe of widgets in grids.
bool QVLReadSaltChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);

}  // namespace Orvex
