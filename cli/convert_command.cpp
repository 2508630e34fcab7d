// `orvex convert IN.json -o OUT.json`: reads a drawing and writes it back, indented.
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
    Orvex::TORXHeadlessLabel document;
    if (const auto loaded = Orvex::LoadDrawingFile(args.Input, document); !loaded) {
        fmt::print(stderr, "orvex: {}\n", loaded.Message);
        return loaded.Error == Orvex::TQVLFileError::feRead ? kExitUsage : kExitInvalid;
    }
    if (const auto saved = Orvex::SaveDrawingFile(args.Output, document); !saved) {
        fmt::print(stderr, "orvex: {}\n", saved.Message);
        return kExitUsage;
    }
    return kExitOk;
}

}  // namespace

void RegisterConvert(CLI::App& app, TCommandRegistry& commands) {
    auto args = std::make_shared<TConvertArgs>();
    auto* sub = app.add_subcommand("convert", "Read a drawing (.json) and write it back, indented");
    sub->add_option("input", args->Input, "Drawing to read")->required();
    sub->add_option("-o,--output", args->Output, "File to write")->required();
    commands.Add(sub, [args] { return Convert(*args); });
}

}  // namespace OrvexCli
