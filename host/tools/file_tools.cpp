// load_drawing, save_drawing and export_document. With a files folder they read and write
// files inside it; without one they refuse paths and carry the content in the call and in the result.
#include <fmt/format.h>

#include "host/paint/export.h"
#include "host/tools/files_root.h"
#include "host/tools/preview.h"
#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/core/safe_file.h"
#include "orvex/core/text.h"
#include "orvex/document/document.h"
#include "orvex/formats/drawing_file.h"

namespace Orvex::Host {

namespace {

namespace fs = std::filesystem;

// The file a "path" argument names, or nullopt when the call works inline.
std::optional<fs::path> FilePath(const TToolOptions& aOptions, const TJSON& aArgs) {
    if (!aArgs.contains("path")) return std::nullopt;
    if (!aOptions.FilesRoot)
        throw EToolArgument(
            "file paths are disabled: the server runs without a files folder (--files-root); "
            "work inline instead");
    return ResolveInsideRoot(*aOptions.FilesRoot, aArgs["path"].get<std::string>());
}

std::string RelativeName(const TToolOptions& aOptions, const fs::path& aFile) {
    return fs::relative(aFile, fs::canonical(*aOptions.FilesRoot)).generic_string();
}

// Content that travels in the answer, with its size as the structured part.
TJSON InlineResult(std::string aText, TJSON aInfo) {
    aInfo["bytes"] = aText.size();
    return {{"content", TJSON::array({{{"type", "text"}, {"text", std::move(aText)}}})},
            {"structuredContent", std::move(aInfo)}};
}

// A path whose extension does not say what the file holds is refused before anything is read or written.
void CheckExtension(const TJSON& aArgs, std::string_view aExtension, std::string_view aWhat) {
    if (!aArgs.contains("path")) return;
    const auto& path = aArgs["path"].get_ref<const std::string&>();
    const std::string extension = Qvl::Utils::ToLowerAscii(fs::path(path).extension().string());
    if (extension != aExtension)
        throw EToolArgument(fmt::format("path \"{}\" must end in {} ({})", path, aExtension, aWhat));
}

// Why a file in the files folder could not be written, naming it as the caller did: the server's own
// folders are none of the caller's business. aMessage is the writer's own, which starts with the full path.
std::string WriteFailure(const TToolOptions& aOptions, const fs::path& aFile, std::string_view aMessage) {
    const std::string name = RelativeName(aOptions, aFile);
    std::error_code ec;
    if (!fs::is_directory(aFile.parent_path(), ec))
        return fmt::format("cannot write \"{}\": its folder does not exist in the files folder", name);
    if (fs::is_directory(aFile, ec)) return fmt::format("cannot write \"{}\": it is a folder", name);
    const std::string full = aFile.string();
    if (aMessage.starts_with(full) && aMessage.size() > full.size())
        return fmt::format("cannot write \"{}\"{}", name, aMessage.substr(full.size()));
    return fmt::format("cannot write \"{}\": permission denied or the disk is full", name);
}

void WriteText(const TToolOptions& aOptions, const fs::path& aFile, std::string_view aText) {
    if (const auto written = WriteFileAtomic(aFile.string(), aText); !written)
        throw EToolArgument(WriteFailure(aOptions, aFile, written.Message));
}

TJSON Summary(const TORXBaseLabel& aDoc) {
    return {{"units", UnitName(aDoc.Units())},
            {"editor_mode", EditorModeName(aDoc.EditorMode())},
            {"items_count", aDoc.GetItemsCount()},
            {"layers_count", aDoc.GetLayersCount()}};
}

TJSON LoadDrawing(const TToolOptions& aOptions, TORXBaseLabel& aDoc, const TJSON& aArgs) {
    if (aArgs.contains("path") == aArgs.contains("json"))
        throw EToolArgument(
            "give exactly one of \"path\" (a file in the files folder) or \"json\" (the drawing text)");
    const auto file = FilePath(aOptions, aArgs);
    CheckExtension(aArgs, ".json", "a drawing file");
    if (file && !fs::is_regular_file(*file))
        throw EToolArgument(
            fmt::format("no file \"{}\" in the files folder", aArgs["path"].get<std::string>()));
    // Both loaders leave the document as it was when the drawing cannot be read.
    const TQVLFileResult loaded = file ? LoadDrawingFile(file->string(), aDoc)
                                       : LoadDrawingText(aArgs["json"].get<std::string>(), "json", aDoc);
    if (!loaded) return ErrorResult(loaded.Message);
    TJSON summary = Summary(aDoc);
    if (!loaded.Value.Warnings.empty()) summary["warnings"] = loaded.Value.Warnings;
    return StructuredResult(std::move(summary));
}

TJSON SaveDrawing(const TToolOptions& aOptions, TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const auto file = FilePath(aOptions, aArgs);
    CheckExtension(aArgs, ".json", "the drawing is saved in the JSON drawing format");
    if (!file) return InlineResult(aDoc.GetJsonString(2), {{"format", "json"}});
    if (const auto saved = SaveDrawingFile(file->string(), aDoc); !saved)
        return ErrorResult(WriteFailure(aOptions, *file, saved.Message));
    return StructuredResult({{"path", RelativeName(aOptions, *file)}, {"bytes", fs::file_size(*file)}});
}

// PNG (the export pass at 96 dpi) or PDF (one vector page) as bytes; inline they travel base64-encoded, as
// an image content or an embedded resource.
TJSON ExportPicture(const TToolOptions& aOptions, TORXBaseLabel& aDoc, const TJSON& aArgs,
                    const std::string& aFormat) {
    const auto file = FilePath(aOptions, aArgs);
    std::vector<std::uint8_t> bytes;
    std::string error;
    const bool painted = aFormat == "pdf" ? EncodePdf(aDoc, bytes, error) : [&] {
        TQVLRasterOptions options;
        options.Dpi = aArgs.value("dpi", 96);
        return CheckRasterOptions(aDoc, options, error) && EncodePng(aDoc, options, bytes, error);
    }();
    if (!painted) return ErrorResult(fmt::format("the {} could not be painted: {}", aFormat, error));
    const std::string_view data(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (file) {
        WriteText(aOptions, *file, data);
        return StructuredResult(
            {{"path", RelativeName(aOptions, *file)}, {"format", aFormat}, {"bytes", bytes.size()}});
    }
    const std::string encoded = Qvl::Utils::Base64Encode(data);
    TJSON content =
        aFormat == "png"
            ? TJSON{{"type", "image"}, {"data", encoded}, {"mimeType", "image/png"}}
            : TJSON{{"type", "resource"},
                    {"resource",
                     {{"uri", "orvex://drawing.pdf"}, {"mimeType", "application/pdf"}, {"blob", encoded}}}};
    return {{"content", TJSON::array({std::move(content)})},
            {"structuredContent", {{"format", aFormat}, {"bytes", bytes.size()}}}};
}

TJSON ExportDocument(const TToolOptions& aOptions, TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const std::string format = aArgs["format"].get<std::string>();
    FilePath(aOptions, aArgs);  // a path that is refused as such is reported before its extension
    CheckExtension(aArgs, "." + format, fmt::format("the format asked for is {}", format));
    if (aArgs.contains("dpi") && format != "png") throw EToolArgument("\"dpi\" applies to png only");
    if (format == "png" || format == "pdf") return ExportPicture(aOptions, aDoc, aArgs, format);
    const auto file = FilePath(aOptions, aArgs);
    const std::string text =
        format == "svg" ? aDoc.SVG(TQVLExportSVG::esFile, 1.0f, false) : aDoc.GetJsonString(2);
    if (!file) return InlineResult(text, {{"format", format}});
    WriteText(aOptions, *file, text);
    return StructuredResult(
        {{"path", RelativeName(aOptions, *file)}, {"format", format}, {"bytes", text.size()}});
}

}  // namespace

void RegisterFileTools(TToolRegistry& aRegistry) {
    const TToolOptions options = aRegistry.Options();
    const bool files = options.FilesRoot.has_value();
    const std::shared_ptr<TToolSession> session = aRegistry.Session();
    const std::string where = files
                                  ? "path is relative to the files folder (no \"..\", absolute path or link)."
                                  : "No files folder: content goes inline.";
    aRegistry.Add(
        "load_drawing",
        "Replace the drawing and its undo history with a JSON drawing: path (.json) or json "
        "(save_drawing's text). " +
            where,
        ObjectSchema({{"path", StringProp("")}, {"json", StringProp("")}}),
        [options, session](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            *session = TToolSession{};
            return LoadDrawing(options, aDoc, aArgs);
        },
        ObjectResultSchema());
    aRegistry.Add(
        "save_drawing", "Save the JSON drawing to path (.json), else return it. " + where,
        ObjectSchema({{"path", StringProp("")}}),
        [options](TORXBaseLabel& aDoc, const TJSON& aArgs) { return SaveDrawing(options, aDoc, aArgs); },
        ObjectResultSchema());
    aRegistry.Add(
        "export_document",
        "Export svg, json, png (96 dpi unless dpi) or pdf to path (with the format's extension), "
        "else return it (png as image, pdf as base64 resource). " +
            where,
        ObjectSchema({{"format", EnumProp("", {"svg", "json", "png", "pdf"})},
                      {"path", StringProp("")},
                      {"dpi", IntegerProp("", 1, 2400)}},
                     {"format"}),
        [options](TORXBaseLabel& aDoc, const TJSON& aArgs) { return ExportDocument(options, aDoc, aArgs); },
        ObjectResultSchema());
}

}  // namespace Orvex::Host
