// `orvex convert IN.json|IN.mmd|IN.puml -o OUT.json|OUT.svg|OUT.png|OUT.pdf`: reads a drawing, or lays
// out a diagram, and writes it back indented, as SVG, or painted; the extensions choose.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "cli/convert_picture.h"
#include "host/layout/diagram_loader.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"

namespace OrvexCli {
namespace {

struct TConvertArgs {
    std::string Input;
    std::string Output;
    TPictureArgs Picture;
};

// A Mermaid or PlantUML file is laid out; when it does not place, the findings of that same parse say
// why, one per line.
int LoadDiagram(const std::string& input, Orvex::TORXBaseLabel& document) {
    const Orvex::TQVLDiagramLoadResult loaded =
        Orvex::PlaceDiagramFile(document, input, Orvex::TQVLDiagramFormat::dgAuto);
    if (loaded) return kExitOk;
    if (loaded.Code == Orvex::QVLErr::kNoFile) {
        fmt::print(stderr, "orvex: {}\n", loaded.Message);
        return kExitUsage;
    }
    static constexpr const char* kSeverity[] = {"info", "warning", "error"};
    bool errors = false;
    for (const auto& d : loaded.Value.Diagnostics) {
        fmt::print(stderr, "orvex: {}:{}: {} {}: {}\n", input, d.Line,
                   kSeverity[static_cast<int>(d.Severity)], d.Code, d.MessageText);
        errors = errors || d.Severity == Orvex::TQVLDiagramDiagnosticSeverity::dsError;
    }
    if (!errors) fmt::print(stderr, "orvex: {}: the diagram could not be placed\n", input);
    return kExitInvalid;
}

int Convert(const TConvertArgs& args) {
    // Pictures need a document whose items paint; the other outputs do with the headless family.
    const bool picture = IsPictureOutput(args.Output);
    // Refused before reading, so a mistyped output name costs nothing and overwrites nothing.
    if (!picture && Orvex::DrawingFormatFromExt(args.Output) == Orvex::TQVLDrawingFormat::dfUnknown) {
        fmt::print(stderr, "orvex: {}: unknown output format (use .json, .svg, .png or .pdf)\n", args.Output);
        return kExitUsage;
    }
    const std::unique_ptr<Orvex::TORXBaseLabel> owned =
        picture ? NewPictureDocument() : std::make_unique<Orvex::TORXHeadlessLabel>();
    Orvex::TORXBaseLabel& document = *owned;
    if (Orvex::QVLDiagramFormatFromExt(args.Input) != Orvex::TQVLDiagramFormat::dgAuto) {
        if (const int status = LoadDiagram(args.Input, document); status != kExitOk) return status;
    } else {
        const auto loaded = Orvex::LoadDrawingFile(args.Input, document);
        if (!loaded) {
            fmt::print(stderr, "orvex: {}\n", loaded.Message);
            return loaded.Code == Orvex::QVLErr::kNoFile ? kExitUsage : kExitInvalid;
        }
        PrintReadWarnings(loaded.Value.Warnings);
    }
    if (picture) return WritePicture(document, args.Output, args.Picture);
    if (const auto saved = Orvex::SaveDrawingAs(args.Output, document); !saved) {
        fmt::print(stderr, "orvex: {}\n", saved.Message);
        return kExitUsage;
    }
    return kExitOk;
}

}  // namespace

void RegisterConvert(CLI::App& app, TCommandRegistry& commands) {
    auto args = std::make_shared<TConvertArgs>();
    auto* sub = app.add_subcommand("convert",
                                   "Read a drawing (.json) or a diagram (.mmd, .puml) and write it as .json "
                                   "(indented), .svg, .png or .pdf");
    sub->add_option("input", args->Input, "Drawing or diagram to read")->required();
    sub->add_option("-o,--output", args->Output, "File to write: .json, .svg, .png or .pdf")->required();
    sub->add_option("--dpi", args->Picture.Dpi, "Resolution of a PNG, pixels per inch")->default_val(96);
    sub->add_option("--scale", args->Picture.Scale, "Zoom of a PNG on top of the resolution")
        ->default_val(1.0f);
    commands.Add(sub, [args] { return Convert(*args); });
}

}  // namespace OrvexCli
