// The document's diagram imports: thin members over the loader hook, kept beside the parsers so the
// document itself needs nothing of the diagram module.
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/document/document.h"

namespace Orvex {

bool TORXBaseLabel::LoadFromDiagramText(std::string_view text, TQVLDiagramFormat format) {
    return QVLLoadDiagramText(*this, text, format);
}

bool TORXBaseLabel::LoadFromDiagram(const std::string& fileName, TQVLDiagramFormat format) {
    return QVLLoadDiagramFile(*this, fileName, format);
}

}  // namespace Orvex
