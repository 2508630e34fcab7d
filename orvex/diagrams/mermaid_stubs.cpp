#include "orvex/diagrams/mermaid_parser.h"

namespace Orvex {
void TORXMermaidParser::ParseState(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseClass(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseMindMap(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseER(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseRequirements(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseGitGraph(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseTimeline(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseJourney(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseC4(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParsePie(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseSankey(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParsePacket(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseKanban(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseArchitecture(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseTreemap(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseBlock(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseQuadrant(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseXYChart(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseRadar(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseVenn(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseIshikawa(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseTreeView(const TLines&, TORXDiagramModel&) {}
void TORXMermaidParser::ParseGantt(const TLines&, TORXDiagramModel&) {}
}
