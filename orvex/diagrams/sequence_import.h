// The full importer's reader of sequence diagrams, Mermaid and PlantUML: every message form with its
// activation marks, activations, fragments, boxes, participant kinds, notes, dividers, delays, autonumber,
// create and destroy. What it reads but cannot show becomes a diagnostic with the line and its text.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

// True when the text is a sequence diagram; the model (expected empty) then holds the whole diagram with
// its diagnostics. False for any other diagram, leaving the model for the caller (an ambiguous PlantUML
// text that is not taken may leave its PLANTUML_KIND_AMBIGUOUS note there). dgAuto is detected.
bool QVLImportSequence(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);

// The sequence reader's model when it takes the text, else QVLParseDiagram's.
std::unique_ptr<TORXDiagramModel> QVLParseWithSequenceImport(std::string_view aText,
                                                             TQVLDiagramFormat aFormat);

// The PlantUML decision alone. A text is a sequence diagram when its lines are sequence statements,
// whatever fragments (alt, group, ...) it holds; Ambiguous when it also has lines of another kind, with the
// reason in words.
struct TQVLSequenceVerdict {
    bool IsSequence = false;
    bool Ambiguous = false;
    std::string Reason;
};
TQVLSequenceVerdict QVLJudgePlantUMLSequence(std::string_view aText);

// The two readers; each returns false when the text is not a sequence diagram of its language.
bool QVLImportMermaidSequence(std::string_view aText, TORXDiagramModel& aModel);
bool QVLImportPlantUMLSequence(std::string_view aText, TORXDiagramModel& aModel);

}  // namespace Orvex
