// The full diagram importer: what users get when they load a Mermaid or PlantUML text. It refuses texts
// that are not diagrams, hands each family to a reader that keeps containers, styles, titles and every
// link form, and falls back to the core model (QVLParseDiagram) for the families no reader takes.
#pragma once

#include <memory>
#include <string_view>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

struct TQVLImportOptions {
    bool Core = false;  // exactly QVLParseDiagram's model, nothing added
};

// A new model, owned by the caller; dgAuto is resolved by detection. A text that is no diagram at all gets
// the error DIAGRAM_NOT_RECOGNIZED and no elements.
std::unique_ptr<TORXDiagramModel> QVLImportDiagram(std::string_view aText, TQVLDiagramFormat aFormat,
                                                   const TQVLImportOptions& aOptions = {});

// The readers. Each returns true when it took the text; the model is then complete, diagnostics included.
bool QVLImportFlowchart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
// PlantUML component, deployment, use-case, C4 and ArchiMate diagrams, and Mermaid's C4 diagrams.
bool QVLImportStructure(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);

// Mermaid requirement diagrams: requirements and elements with their fields, and their relations.
bool QVLImportRequirementDiagram(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);

// The first word of a Mermaid text after front matter, comments and directives, lower-cased ("" when the
// text has none), and the line it stands on (1-based). Readers use it to tell their kinds.
std::string QVLMermaidHeaderWord(std::string_view aText, std::size_t* aLineNo = nullptr);

}  // namespace Orvex
