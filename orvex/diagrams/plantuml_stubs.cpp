#include "orvex/diagrams/plantuml_parser.h"

namespace Orvex {
void TORXPlantUMLParser::ParseSequence(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseActivity(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseState(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseMindMap(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseArchimate(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseStructure(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseC4(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseTiming(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseNetwork(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseChronology(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseData(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseSalt(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseGrammar(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseFiles(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseDitaa(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseChen(const TLines&, TORXDiagramModel&) {}
void TORXPlantUMLParser::ParseGantt(const TLines&, TORXDiagramModel&) {}
}
