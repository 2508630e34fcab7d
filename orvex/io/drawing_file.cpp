#include "orvex/io/drawing_file.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "orvex/core/text.h"
#include "orvex/document/document.h"
#include "orvex/io/json.h"

namespace Orvex {

TQVLFileResult LoadDrawingText(const std::string& text, const std::string& name, TORXBaseLabel& document) {
    const TJSON obj = TJSON::parse(text, nullptr, false);
    if (obj.is_discarded()) return {TQVLFileError::feNotJson, fmt::format("{}: not a JSON document", name)};
    if (!obj.is_object()) return {TQVLFileError::feNotObject, fmt::format("{}: not a JSON object", name)};
    document.ReadJson(obj);
    return {};
}

TQVLFileResult LoadDrawingFile(const std::string& fileName, TORXBaseLabel& document) {
    std::ifstream file(fileName, std::ios::binary);
    if (!file) return {TQVLFileError::feRead, fmt::format("{}: cannot be read", fileName)};
    std::ostringstream text;
    text << file.rdbuf();
    if (file.bad()) return {TQVLFileError::feRead, fmt::format("{}: cannot be read", fileName)};
    return LoadDrawingText(text.str(), fileName, document);
}

TQVLFileResult SaveDrawingFile(const std::string& fileName, const TORXBaseLabel& document, int indent) {
    const std::string text = document.GetJsonString(indent) + "\n";
    std::ofstream file(fileName, std::ios::binary | std::ios::trunc);
    if (!file) return {TQVLFileError::feWrite, fmt::format("{}: cannot be written", fileName)};
    file << text;
    file.close();
    if (!file) return {TQVLFileError::feWrite, fmt::format("{}: cannot be written", fileName)};
    return {};
}

TQVLDrawingFormat DrawingFormatFromExt(const std::string& fileName) {
    const std::string ext = ToLowerAscii(std::filesystem::path(fileName).extension().string());
    if (ext == ".json") return TQVLDrawingFormat::dfJson;
    if (ext == ".svg") return TQVLDrawingFormat::dfSvg;
    return TQVLDrawingFormat::dfUnknown;
}

TQVLFileResult SaveDrawingSVG(const std::string& fileName, const TORXBaseLabel& document) {
    if (!document.SaveSVG(fileName, TQVLExportSVG::esFile, 1.0f, true))
        return {TQVLFileError::feWrite, fmt::format("{}: cannot be written", fileName)};
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
    return {TQVLFileError::feWrite, fmt::format("{}: unknown output format (use .json or .svg)", fileName)};
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
