// Mermaid source into a diagram model. Flowcharts and sequence diagrams are read line by line; every other
// kind is recognised by its header line and read whole by a routine of its own. Never throws: problems
// become diagnostics, unusable lines are skipped.
#pragma once

#include <string_view>
#include <vector>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

class TORXMermaidParser {
  public:
    using TLines = std::vector<std::string_view>;

    static void Parse(std::string_view aText, TORXDiagramModel& aModel);

    // One trimmed line without its comment.
    static void ParseFlowLine(std::string_view aLine, TORXDiagramModel& aModel);
    static void ParseSequenceLine(std::string_view aLine, TORXDiagramModel& aModel);
    // A bracketed node shape such as "[Start]" or "{Ok?}": its flow type and cleaned caption.
    static bool DecodeShape(std::string_view aShape, TQVLFlowType& aFlowType, std::string& aText);

    // One per diagram kind; each gets every line after the front matter, its own header line included.
    static void ParseState(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseClass(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseMindMap(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseER(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseRequirements(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseGitGraph(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseTimeline(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseJourney(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseC4(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParsePie(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseSankey(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParsePacket(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseKanban(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseArchitecture(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseTreemap(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseBlock(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseQuadrant(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseXYChart(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseRadar(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseVenn(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseIshikawa(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseTreeView(const TLines& aLines, TORXDiagramModel& aModel);
    static void ParseGantt(const TLines& aLines, TORXDiagramModel& aModel);
};

}  // namespace Orvex
