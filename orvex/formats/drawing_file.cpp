#include "orvex/formats/drawing_file.h"

#include <fmt/format.h>

#include <filesystem>

#include "orvex/core/safe_file.h"
#include "orvex/core/text.h"
#include "orvex/document/document.h"
#include "orvex/io/json_text.h"

namespace Orvex {

TQVLFileResult LoadDrawingText(const std::string& text, const std::string& name, TORXBaseLabel& document) {
    const TJSONTextResult parsed = ParseJsonText(text);
    switch (parsed.Error) {
        case TJSONTextError::jeNone:
            break;
        case TJSONTextError::jeSyntax:
            return TQVLFileResult::Failure(QVLErr::kNoJson, fmt::format("{}: not a JSON document", name));
        case TJSONTextError::jeTooDeep:
        case TJSONTextError::jeTooLarge:
            return TQVLFileResult::Failure(QVLErr::kLimit,
                                           fmt::format("{}: not read: {}", name, parsed.Message));
    }
    if (!parsed.Value.is_object())
        return TQVLFileResult::Failure(QVLErr::kNoJson, fmt::format("{}: not a JSON object", name));
    document.ReadJson(parsed.Value);
    TQVLFileResult result;
    for (const std::string& warning : document.ReadWarnings())
        result.Value.Warnings.push_back(fmt::format("{}: {}", name, warning));
    return result;
}

TQVLFileResult LoadDrawingFile(const std::string& fileName, TORXBaseLabel& document) {
    std::string text;
    if (const auto read = ReadRegularFile(fileName, kJSONMaxBytes, text); !read)
        return TQVLFileResult::Failure(QVLErr::kNoFile, read.Message);
    return LoadDrawingText(text, fileName, document);
}

TQVLFileResult SaveDrawingFile(const std::string& fileName, const TORXBaseLabel& document, int indent) {
    std::string text = document.GetJsonString(indent);
    text += '\n';
    if (const auto written = WriteFileAtomic(fileName, text); !written)
        return TQVLFileResult::Failure(QVLErr::kWrite, written.Message);
    return {};
}

TQVLDrawingFormat DrawingFormatFromExt(const std::string& fileName) {
    const std::string ext = ToLowerAscii(std::filesystem::path(fileName).extension().string());
    if (ext == ".json") return TQVLDrawingFormat::dfJson;
    if (ext == ".svg") return TQVLDrawingFormat::dfSvg;
    return TQVLDrawingFormat::dfUnknown;
}

TQVLFileResult SaveDrawingSVG(const std::string& fileName, const TORXBaseLabel& document) {
    const std::string text = document.SVG(TQVLExportSVG::esFile, 1.0f, true);
    if (const auto written = WriteFileAtomic(fileName, text); !written)
        return TQVLFileResult::Failure(QVLErr::kWrite, written.Message);
    return {};
}

TQVLFileResult SaveDrawingAs(const std::string& fileName, const TORXBaseLabel& document) {
    switch (DrawingFormatFromExt(fileName)) {
        case TQVLDrawingFormat::dfJson:
            return SaveDrawingFile(fileName, document);
        case TQVLDrawingFormat::dfSvg:
            return SaveDrawingSVG(fileName, document);
        case TQVLDrawingFormat::dfUnknown:
            break;
    }
    return TQVLFileResult::Failure(QVLErr::kWrite,
                                   fmt::format("{}: unknown output format (use .json or .svg)", fileName));
}

TQVLDrawingSummary SummarizeDrawing(const TORXBaseLabel& document) {
    TQVLDrawingSummary s;
    s.Mode = document.EditorMode();
    s.Units = document.Units();
    s.Layers = document.GetLayersCount();
    s.Items = document.GetItemsCount();
    for (std::int32_t i = 0; i < s.Items; ++i)
        ++s.ItemsByKind[std::string(NameItem(document.GetItem(i)->ItemType()))];
    s.Bounds = document.ItemsBounds();
    return s;
}

std::string_view EditorModeName(TQVLEditorMode mode) {
    switch (mode) {
        case TQVLEditorMode::emLabelling:
            return "labelling";
        case TQVLEditorMode::emFlowChart:
            return "flowchart";
        case TQVLEditorMode::emDrawing:
            return "drawing";
        case TQVLEditorMode::emInteractive:
            return "interactive";
    }
    return "unknown";
}

}  // namespace Orvex
