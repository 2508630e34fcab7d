// `orvex parse INPUT|- [--format auto|mermaid|plantuml] [--strict]`: the diagram model and its
// diagnostics as JSON on stdout.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <cstdio>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_json.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/io/json.h"

namespace OrvexCli {
namespace {

struct TParseOptions {
    std::string Input;
    std::string Format = "auto";
    bool Strict = false;
};

int RunParse(const TParseOptions& options) {
    using namespace Orvex;
    std::string text;
    TQVLDiagramFormat format = TQVLDiagramFormat::dgAuto;
    if (options.Format == "mermaid") format = TQVLDiagramFormat::dgMermaid;
    if (options.Format == "plantuml") format = TQVLDiagramFormat::dgPlantUML;
    if (options.Input == "-") {
        const std::string bytes{std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
        text = Qvl::Utils::DecodeTextFile(bytes);
    } else {
        if (!QVLReadDiagramFile(options.Input, text)) {
            fmt::print(stderr, "orvex parse: cannot read {}\n", options.Input);
            return kExitUsage;
        }
        format = QVLResolveFileFormat(options.Input, format);
    }
    if (format == TQVLDiagramFormat::dgAuto) format = QVLDetectDiagramFormat(text);

    std::unique_ptr<TORXDiagramModel> model;
    if (options.Strict) {
        try {
            model = QVLParseDiagram(text, format, true);
        } catch (const EQVLDiagramParseError& e) {
            fmt::print(stderr, "{}\n", e.what());
            return kExitInvalid;
        }
    } else {
        model = QVLParseDiagram(text, format);
    }
    // Captions keep the source's bytes; a stray invalid sequence must not stop the output.
    const std::string json =
        QVLDiagramModelToJson(*model, format).dump(-1, ' ', false, TJSON::error_handler_t::replace);
    fmt::print("{}\n", json);
    return model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsError) ? kExitInvalid : kExitOk;
}

}  // namespace

void RegisterParse(CLI::App& app, TCommandRegistry& commands) {
    auto options = std::make_shared<TParseOptions>();
    auto* sub =
        app.add_subcommand("parse", "Parse a Mermaid or PlantUML diagram and print its model as JSON");
    sub->add_option("input", options->Input, "Diagram file, or - for standard input")->required();
    sub->add_option("--format", options->Format, "Source format (default: from the extension, else detected)")
        ->check(CLI::IsMember({"auto", "mermaid", "plantuml"}));
    sub->add_flag("--strict", options->Strict, "Fail on the first warning or error, printing no JSON");
    commands.Add(sub, [options] { return RunParse(*options); });
}

}  // namespace OrvexCli
