// The diagram model as JSON, for `orvex parse` and for hosts that hand a parsed diagram to other tools.
// Enumeration values appear by name, colours as "#RRGGBBAA"; the key order is fixed.
#pragma once

#include <string_view>

#include "orvex/diagrams/diagram_model.h"
#include "orvex/io/json_fwd.h"

namespace Orvex {

std::string_view QVLDiagramFormatName(TQVLDiagramFormat aValue);
std::string_view QVLDiagramKindName(TQVLDiagramKind aValue);
std::string_view QVLFlowDirectionName(TQVLFlowDirection aValue);
std::string_view QVLFlowTypeName(TQVLFlowType aValue);
std::string_view QVLDiagEdgeArrowName(TQVLDiagEdgeArrow aValue);
std::string_view QVLSeqEventTypeName(TQVLSeqEventType aValue);
std::string_view QVLSeqArrowName(TQVLSeqArrow aValue);
std::string_view QVLDiagnosticSeverityName(TQVLDiagramDiagnosticSeverity aValue);

// {"format", "kind", "direction", "title", "nodes", "edges", "participants", "events", "diagnostics"};
// aFormat is the format that was actually parsed.
TJSON QVLDiagramModelToJson(const TORXDiagramModel& aModel, TQVLDiagramFormat aFormat);

// The same with what the full importer adds: the core keys first, in their order, then on each node
// "group", "role", "style", "compartments"; on each edge "id", "fromText", "toText", "thick", "style"; on
// each participant "role", "group", "style"; on each event "fragment", "variant", "number", "fromArrow",
// "fromCircle", "toCircle", "style"; and at the end "groups", then "chart": null, or the chart data as an
// object whose first key "type" names the chart.
TJSON QVLDiagramModelToJsonFull(const TORXDiagramModel& aModel, TQVLDiagramFormat aFormat);
// Only the keys the text set: "fill", "stroke", "textColor" ("#RRGGBBAA"), "strokeWidth", "dash", "bold",
// "italic".
TJSON QVLDiagStyleToJson(const TQVLDiagStyle& aStyle);

}  // namespace Orvex
