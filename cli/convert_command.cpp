// `orvex convert IN.json|IN.mmd|IN.puml -o OUT.json|OUT.svg`: reads a drawing, or lays out a diagram,
// and writes it, indented, or as SVG; the extensions choose.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/document/headless.h"
#include "orvex/io/drawing_file.h"

namespace OrvexCli {
namespace {

struct TConvertArgs {
    std::string Input;
    std::string Output;
};

// A Mermaid or PlantUML file goes through the registered layout; when it does not place, the parser's
// findings say why, one per line.
int LoadDiagram(const std::string& input, Orvex::TORXHeadlessLabel& document) {
    std::string text;
    if (!Orvex::QVLReadDiagramFile(input, text)) {
        fmt::print(stderr, "orvex: {}: cannot read the file\n", input);
        return kExitUsage;
    }
    if (document.LoadFromDiagram(input, Orvex::TQVLDiagramFormat::dgAuto)) return kExitOk;
    const auto model =
        Orvex::QVLParseDiagram(text, Orvex::QVLResolveFileFormat(input, Orvex::TQVLDiagramFormat::dgAuto));
    static constexpr const char* kSeverity[] = {"info", "warning", "error"};
    for (const auto& d : model->Diagnostics())
        fmt::print(stderr, "orvex: {}:{}: {} {}: {}\n", input, d.Line,
                   kSeverity[static_cast<int>(d.Severity)], d.Code, d.MessageText);
    if (!model->HasDiagnostics(Orvex::TQVLDiagramDiagnosticSeverity::dsError))
        fmt::print(stderr, "orvex: {}: the diagram could not be placed\n", input);
    return kExitInvalid;
}

int Convert(const TConvertArgs& args) {
    // Refused before reading, so a mistyped output name costs nothing and overwrites nothing.
    if (Orvex::DrawingFormatFromExt(args.Output) == Orvex::TQVLDrawingFormat::dfUnknown) {
        fmt::print(stderr, "orvex: {}: unknown output format (use .json or .svg)\n", args.Output);
        return kExitUsage;
    }
    Orvex::TORXHeadlessLabel document;
    if (Orvex::QVLDiagramFormatFromExt(args.Input) != Orvex::TQVLDiagramFormat::dgAuto) {
        if (const int status = LoadDiagram(args.Input, document); status != kExitOk) return status;
    } else if (const auto loaded = Orvex::LoadDrawingFile(args.Input, document); !loaded) {
        fmt::print(stderr, "orvex: {}\n", loaded.Message);
        return loaded.Error == Orvex::TQVLFileError::feRead ? kExitUsage : kExitInvalid;
    }
    if (const auto saved = Orvex::SaveDrawingAs(args.Output, document); !saved) {
        fmt::print(stderr, "orvex: {}\n", saved.Message);
        return kExitUsage;
    }
    return kExitOk;
}

}  // namespace

void RegisterConvert(CLI::App& app, TCommandRegistry& commands) {
    auto args = std::make_shared<TConvertArgs>();
    auto* sub = app.add_subcommand(
        "convert",
        "Read a drawing (.json) or a diagram (.mmd, .puml) and write it as .json (indented) or .svg");
    sub->add_option("input", args->Input, "Drawing or diagram to read")->required();
    sub->add_option("-o,--output", args->Output, "File to write: .json or .svg")->required();
    commands.Add(sub, [args] { return Convert(*args); });
}

}  // namespace OrvexCli
