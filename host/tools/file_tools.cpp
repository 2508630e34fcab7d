// load_drawing, save_drawing, export_document and load_diagram. With a files folder they read and write
// files inside it; without one they refuse paths and carry the content in the call and in the result.
#include <fmt/format.h>

#include <fstream>

#include "host/paint/export.h"
#include "host/tools/files_root.h"
#include "host/tools/preview.h"
#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_json.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/document/document.h"
#include "orvex/io/drawing_file.h"

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

void WriteText(const fs::path& aFile, const std::string& aText) {
    std::ofstream out(aFile, std::ios::binary | std::ios::trunc);
    out << aText;
    out.close();
    if (!out) throw std::runtime_error(fmt::format("cannot write \"{}\"", aFile.filename().string()));
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
    if (file && !fs::is_regular_file(*file))
        throw EToolArgument(
            fmt::format("no file \"{}\" in the files folder", aArgs["path"].get<std::string>()));
    // Both loaders leave the document as it was when the drawing cannot be read.
    const TQVLFileResult loaded = file ? LoadDrawingFile(file->string(), aDoc)
                                       : LoadDrawingText(aArgs["json"].get<std::string>(), "json", aDoc);
    if (!loaded) return ErrorResult(loaded.Message);
    return StructuredResult(Summary(aDoc));
}

TJSON SaveDrawing(const TToolOptions& aOptions, TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const auto file = FilePath(aOptions, aArgs);
    if (!file) return {{"content", TJSON::array({{{"type", "text"}, {"text", aDoc.GetJsonString(2)}}})}};
    if (const auto saved = SaveDrawingFile(file->string(), aDoc); !saved) return ErrorResult(saved.Message);
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
        const TQVLRasterOptions options;
        return CheckRasterOptions(aDoc, options, error) && EncodePng(aDoc, options, bytes, error);
    }();
    if (!painted) return ErrorResult(fmt::format("the {} could not be painted: {}", aFormat, error));
    const std::string_view data(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (file) {
        WriteText(*file, std::string(data));
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
    return {{"content", TJSON::array({std::move(content)})}};
}

TJSON ExportDocument(const TToolOptions& aOptions, TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const std::string format = aArgs["format"].get<std::string>();
    if (format == "png" || format == "pdf") return ExportPicture(aOptions, aDoc, aArgs, format);
    const auto file = FilePath(aOptions, aArgs);
    const std::string text =
        format == "svg" ? aDoc.SVG(TQVLExportSVG::esFile, 1.0f, false) : aDoc.GetJsonString(2);
    if (!file) return {{"content", TJSON::array({{{"type", "text"}, {"text", text}}})}};
    WriteText(*file, text);
    return StructuredResult(
        {{"path", RelativeName(aOptions, *file)}, {"format", format}, {"bytes", text.size()}});
}

TJSON LoadDiagram(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const std::string& text = aArgs["text"].get_ref<const std::string&>();
    const std::string formatName = aArgs.value("format", std::string("auto"));
    const auto format = formatName == "mermaid"    ? TQVLDiagramFormat::dgMermaid
                        : formatName == "plantuml" ? TQVLDiagramFormat::dgPlantUML
                                                   : QVLDetectDiagramFormat(text);
    const auto model = QVLImportDiagram(text, format);
    TJSON result = {{"loaded", false},
                    {"items_created", 0},
                    {"diagnostics", QVLDiagramModelToJson(*model, format)["diagnostics"]}};
    if (model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsError))
        return ErrorResult("the diagram has errors; see diagnostics", std::move(result));
    if (QVLGetDiagramLoader() == nullptr)
        return ErrorResult(
            "no diagram layout is installed; build the diagram with add_flow and add_link instead",
            std::move(result));
    const std::int32_t before = aDoc.GetItemsCount();
    const bool loaded = aDoc.LoadFromDiagramText(text, format);
    const std::int32_t after = aDoc.GetItemsCount();
    result["loaded"] = loaded;
    result["items_created"] = after >= before ? after - before : after;  // a loader may replace the drawing
    if (!loaded) return ErrorResult("the diagram layout could not place this diagram", std::move(result));
    TJSON answer = StructuredResult(result);
    // One call from text to a drawing the model can see: the picture comes in the same answer.
    if (aArgs.value("preview", false)) {
        answer["structuredContent"]["preview"] =
            AppendPreview(aDoc, 1.0, aArgs.value("max_bytes", kDefaultPreviewBytes), answer);
        answer["content"][0]["text"] = answer["structuredContent"].dump();
    }
    return answer;
}

}  // namespace

void RegisterFileTools(TToolRegistry& aRegistry) {
    const TToolOptions options = aRegistry.Options();
    const bool files = options.FilesRoot.has_value();
    const std::string where =
        files ? "path is relative to the server's files folder; \"..\", absolute paths and "
                "symbolic links are refused."
              : "this server has no files folder, so path is refused and content travels inline.";
    aRegistry.Add(
        "load_drawing",
        "Replace the drawing with a saved one (the JSON drawing format), from path or from the json text. "
        "The current drawing and its undo history are lost. " +
            where,
        ObjectSchema({{"path", StringProp("Drawing file (.json) in the files folder.")},
                      {"json", StringProp("The drawing as JSON text, as save_drawing returns it.")}}),
        [options](TORXBaseLabel& aDoc, const TJSON& aArgs) { return LoadDrawing(options, aDoc, aArgs); });
    aRegistry.Add(
        "save_drawing",
        "Save the drawing in the JSON drawing format: to path when given, else return the JSON text. " +
            where,
        ObjectSchema({{"path", StringProp("Target file (.json) in the files folder; overwritten.")}}),
        [options](TORXBaseLabel& aDoc, const TJSON& aArgs) { return SaveDrawing(options, aDoc, aArgs); });
    aRegistry.Add(
        "load_diagram",
        "Build the drawing from a Mermaid or PlantUML diagram (flowchart, sequence, mind map...), laid out "
        "automatically. Returns whether it loaded, how many items it created, and the parser's diagnostics "
        "(severity, line, code, message); fix the text and retry on errors. With preview, the answer also "
        "holds a PNG picture of the result.",
        ObjectSchema({{"text", StringProp("The diagram source text.")},
                      {"format", EnumProp("Diagram language; auto detects it. Default auto.",
                                          {"auto", "mermaid", "plantuml"})},
                      {"preview", BoolProp("Also return a PNG picture of the result. Default false.")},
                      {"max_bytes",
                       IntegerProp("Largest preview PNG, in bytes. Default 750000.", 10'000, 10'000'000)}},
                     {"text"}),
        LoadDiagram);
    aRegistry.Add(
        "export_document",
        "Export the drawing as svg (a standalone SVG page the size of the drawing), json (the drawing "
        "format), png (a 96 dpi picture) or pdf (one vector page): to path when given, else return the "
        "content (png as an image, pdf as a base64 resource). " +
            where,
        ObjectSchema({{"format", EnumProp("Export format.", {"svg", "json", "png", "pdf"})},
                      {"path", StringProp("Target file in the files folder; overwritten.")}},
                     {"format"}),
        [options](TORXBaseLabel& aDoc, const TJSON& aArgs) { return ExportDocument(options, aDoc, aArgs); });
}

}  // namespace Orvex::Host
