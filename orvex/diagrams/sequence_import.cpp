#include "orvex/diagrams/sequence_import.h"

#include "orvex/diagrams/diagram_parse.h"

namespace Orvex {

bool QVLImportSequence(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat == TQVLDiagramFormat::dgAuto) aFormat = QVLDetectDiagramFormat(aText);
    const bool taken = aFormat == TQVLDiagramFormat::dgPlantUML ? QVLImportPlantUMLSequence(aText, aModel)
                                                                : QVLImportMermaidSequence(aText, aModel);
    if (taken && aModel.Participants().empty())
        aModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsError, 0, "DIAGRAM_EMPTY_RESULT",
                             "The diagram did not produce any renderable element.", "");
    return taken;
}

std::unique_ptr<TORXDiagramModel> QVLParseWithSequenceImport(std::string_view aText,
                                                             TQVLDiagramFormat aFormat) {
    auto model = std::make_unique<TORXDiagramModel>();
    if (QVLImportSequence(aText, aFormat, *model)) return model;
    return QVLParseDiagram(aText, aFormat);
}

}  // namespace Orvex
