#include "orvex/diagrams/diagram_parse.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <fmt/format.h>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/mermaid_parser.h"
#include "orvex/diagrams/plantuml_parser.h"
#include "orvex/document/document.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;

std::atomic<TQVLDiagramLoader> gDiagramLoader{nullptr};

}  // namespace

TQVLDiagramFormat QVLDetectDiagramFormat(std::string_view aText) {
    static const TRegex kMarker(
        R"(@start(?:uml|mindmap|gantt|wbs|json|yaml|chronology|salt|ebnf|regex|files|ditaa|chen)\b)",
        {TRegexFlag::rfCaseless});
    return kMarker.Match(aText) ? TQVLDiagramFormat::dgPlantUML : TQVLDiagramFormat::dgMermaid;
}

TQVLDiagramFormat QVLDiagramFormatFromExt(std::string_view aFileName) {
    const std::size_t slash = aFileName.find_last_of("/\\");
    const std::string_view name = slash == std::string_view::npos ? aFileName : aFileName.substr(slash + 1);
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) return TQVLDiagramFormat::dgAuto;
    const std::string ext = Qvl::Utils::ToLowerAscii(name.substr(dot));
    if (ext == ".mmd" || ext == ".mermaid") return TQVLDiagramFormat::dgMermaid;
    if (ext == ".puml" || ext == ".plantuml" || ext == ".pu" || ext == ".iuml" || ext == ".wsd")
        return TQVLDiagramFormat::dgPlantUML;
    return TQVLDiagramFormat::dgAuto;
}

std::unique_ptr<TORXDiagramModel> QVLParseDiagram(std::string_view aText, TQVLDiagramFormat aFormat,
                                                  bool aRaiseOnError) {
    if (aFormat == TQVLDiagramFormat::dgAuto) aFormat = QVLDetectDiagramFormat(aText);
    auto model = std::make_unique<TORXDiagramModel>();
    if (aFormat == TQVLDiagramFormat::dgPlantUML)
        TORXPlantUMLParser::Parse(aText, *model);
    else
        TORXMermaidParser::Parse(aText, *model);
    if (model->Nodes().empty() && model->Participants().empty())
        model->AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsError, 0, "DIAGRAM_EMPTY_RESULT",
                             "The diagram did not produce any renderable element.", "");
    if (aRaiseOnError) {
        for (const auto& d : model->Diagnostics()) {
            if (d.Severity <= TQVLDiagramDiagnosticSeverity::dsInfo) continue;
            const std::string linePart = d.Line >= 1 ? fmt::format(" at line {}", d.Line) : std::string();
            throw EQVLDiagramParseError(fmt::format("{}{}: {}", d.Code, linePart, d.MessageText));
        }
    }
    return model;
}

std::unique_ptr<TORXDiagramModel> QVLParseDiagram(std::string_view aText, TQVLDiagramFormat aFormat) {
    return QVLParseDiagram(aText, aFormat, false);
}

void QVLSetDiagramLoader(TQVLDiagramLoader aLoader) {
    gDiagramLoader.store(aLoader);
}

TQVLDiagramLoader QVLGetDiagramLoader() {
    return gDiagramLoader.load();
}

TQVLDiagramLoaderFunc QVLDiagramLoaderOf(const TORXBaseLabel& aDocument) {
    if (aDocument.Services().DiagramLoader) return aDocument.Services().DiagramLoader;
    if (const TQVLDiagramLoader loader = gDiagramLoader.load()) return loader;
    return {};
}

bool QVLLoadDiagramText(TORXBaseLabel& aDocument, std::string_view aText, TQVLDiagramFormat aFormat) {
    // Through a copy: a loader may replace the document's services while it runs.
    const TQVLDiagramLoaderFunc loader = QVLDiagramLoaderOf(aDocument);
    return loader && loader(aDocument, aText, aFormat);
}

bool QVLReadDiagramFile(const std::string& aFileName, std::string& aText) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(aFileName, error)) return false;
    std::ifstream in(aFileName, std::ios::binary);
    if (!in) return false;
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad()) return false;
    aText = Qvl::Utils::DecodeTextFile(bytes);
    return true;
}

TQVLDiagramFormat QVLResolveFileFormat(std::string_view aFileName, TQVLDiagramFormat aFormat) {
    return aFormat == TQVLDiagramFormat::dgAuto ? QVLDiagramFormatFromExt(aFileName) : aFormat;
}

bool QVLLoadDiagramFile(TORXBaseLabel& aDocument, const std::string& aFileName, TQVLDiagramFormat aFormat) {
    std::string text;
    if (!QVLReadDiagramFile(aFileName, text)) return false;
    return QVLLoadDiagramText(aDocument, text, QVLResolveFileFormat(aFileName, aFormat));
}

}  // namespace Orvex
