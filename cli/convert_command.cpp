// `orvex convert IN.json -o OUT.json|OUT.svg`: reads a drawing and writes it back, indented, or as SVG;
// the output's extension chooses.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "orvex/document/headless.h"
#include "orvex/io/drawing_file.h"

namespace OrvexCli {
namespace {

struct TConvertArgs {
    std::string Input;
    std::string Output;
};

int Convert(const TConvertArgs& args) {
    // Refused before reading, so a mistyped output name costs nothing and overwrites nothing.
    if (Orvex::DrawingFormatFromExt(args.Output) == Orvex::TQVLDrawingFormat::dfUnknown) {
        fmt::print(stderr, "orvex: {}: unknown output format (use .json or .svg)\n", args.Output);
        return kExitUsage;
    }
    Orvex::TORXHeadlessLabel document;
    if (const auto loaded = Orvex::LoadDrawingFile(args.Input, document); !loaded) {
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
    auto* sub =
        app.add_subcommand("convert", "Read a drawing (.json) and write it as .json (indented) or .svg");
    sub->add_option("input", args->Input, "Drawing to read")->required();
    sub->add_option("-o,--output", args->Output, "File to write: .json or .svg")->required();
    commands.Add(sub, [args] { return Convert(*args); });
}

}  // namespace OrvexCli
