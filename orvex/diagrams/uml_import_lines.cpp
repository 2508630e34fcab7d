#include "orvex/diagrams/uml_import_lines.h"

#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"

namespace Orvex {

using Qvl::Utils::Trim;

std::vector<TUmlLine> UmlStatementLines(std::string_view aText, TQVLDiagramFormat aFormat) {
    std::vector<TUmlLine> out;
    const auto lines = QVLSplitDiagramLines(aText);
    const bool mermaid = aFormat == TQVLDiagramFormat::dgMermaid;
    std::size_t i = mermaid ? QVLFrontMatterEnd(lines) : 0;
    bool inBlock = false;
    for (; i < lines.size(); ++i) {
        std::string_view line = Trim(lines[i]);
        if (mermaid) {
            if (inBlock) {
                inBlock = line.find("}%%") == std::string_view::npos;
                continue;
            }
            if (line.starts_with("%%{")) {
                inBlock = line.find("}%%") == std::string_view::npos;
                continue;
            }
            if (line.starts_with("%%")) continue;
        } else {
            if (inBlock) {
                const std::size_t close = line.find("'/");
                if (close == std::string_view::npos) continue;
                inBlock = false;
                line = Trim(line.substr(close + 2));
            }
            if (line.starts_with("/'")) {
                const std::size_t close = line.find("'/", 2);
                if (close == std::string_view::npos) {
                    inBlock = true;
                    continue;
                }
                line = Trim(line.substr(close + 2));
            }
            if (line.starts_with("'") || line.starts_with("@start") || line.starts_with("@end")) continue;
        }
        if (line.empty()) continue;
        out.push_back({line, static_cast<std::int32_t>(i + 1)});
    }
    return out;
}

bool UmlMermaidHeaderIs(std::string_view aText, std::initializer_list<std::string_view> aHeaders,
                        TORXDiagramModel& aModel) {
    const std::string header = QVLMermaidHeaderWord(aText);
    for (const std::string_view wanted : aHeaders) {
        if (header != wanted) continue;
        aModel.fTitle = QVLFrontMatterValue(aText, "title");
        return true;
    }
    return false;
}

std::optional<TUmlPlantUMLContent> UmlPlantUMLContent(std::string_view aText) {
    if (TORXPlantUMLParser::KindFromMarker(aText) != TORXPlantUMLParser::TPumlKind::pkUnknown)
        return std::nullopt;
    TORXDiagramModel scratch;  // the reading's own findings are the core parser's, not the importer's
    TUmlPlantUMLContent content;
    content.Lines = TORXPlantUMLParser::ContentLines(aText, scratch);
    content.Kind = TORXPlantUMLParser::DetectKind(content.Lines);
    return content;
}

void UmlNotDrawn(TORXDiagramModel& aModel, const TUmlLine& aLine, std::string_view aWhy) {
    aModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsWarning, aLine.No, "UNSUPPORTED_STATEMENT",
                         std::string("Not drawn: ") + std::string(aWhy), aLine.Text);
}

bool UmlConsumedMermaid(std::string_view aLine, bool& aInBlock) {
    if (aInBlock) {
        if (aLine.find('}') != std::string_view::npos) aInBlock = false;
        return true;
    }
    if (aLine.starts_with("accTitle") || aLine.starts_with("accDescr")) {
        const std::size_t brace = aLine.find('{');
        aInBlock = brace != std::string_view::npos && aLine.find('}', brace) == std::string_view::npos &&
                   aLine.find(':') == std::string_view::npos;
        return true;
    }
    return false;
}

std::string UmlUnquote(std::string_view aText) {
    aText = Trim(aText);
    if (aText.size() >= 2 &&
        ((aText.front() == '"' && aText.back() == '"') || (aText.front() == '`' && aText.back() == '`')))
        aText = aText.substr(1, aText.size() - 2);
    return std::string(aText);
}

}  // namespace Orvex
