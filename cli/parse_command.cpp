// `orvex parse INPUT|- [--format auto|mermaid|plantuml] [--core] [--strict] [--time [--repeat N]]`: the
// diagram model and its diagnostics as JSON on stdout: the full importer's model, or with --core exactly
// the core parser's. --time reports on stderr how long each parse took, alone,
// so that comparisons with other parsers leave out reading the file and writing the JSON.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_json.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/diagrams/sequence_import.h"
#include "orvex/io/json.h"

namespace OrvexCli {
namespace {

struct TParseOptions {
    std::string Input;
    std::string Format = "auto";
    bool Strict = false;
    bool Core = false;
    bool Time = false;
    int Repeat = 1;
};

// Parses the text Repeat times, printing "parse_ms=<wall> cpu_ms=<processor>" per run on stderr; the last
// model stays. Processor time is what a comparison on a busy machine should read.
std::unique_ptr<Orvex::TORXDiagramModel> TimedParse(const TParseOptions& options, const std::string& text,
                                                    Orvex::TQVLDiagramFormat format) {
    std::unique_ptr<Orvex::TORXDiagramModel> model;
    for (int run = 0; run < options.Repeat; ++run) {
        const std::clock_t cpuStart = std::clock();
        const auto start = std::chrono::steady_clock::now();
        model = Orvex::QVLImportDiagram(text, format, {.Core = options.Core});
        const auto end = std::chrono::steady_clock::now();
        const double cpuMs = 1000.0 * static_cast<double>(std::clock() - cpuStart) / CLOCKS_PER_SEC;
        fmt::print(stderr, "parse_ms={:.3f} cpu_ms={:.3f}\n",
                   std::chrono::duration<double, std::milli>(end - start).count(), cpuMs);
    }
    return model;
}

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
    if (options.Strict && options.Core) {
        try {
            model = QVLParseDiagram(text, format, true);
        } catch (const EQVLDiagramParseError& e) {
            fmt::print(stderr, "{}\n", e.what());
            return kExitInvalid;
        }
    } else if (options.Time) {
        model = TimedParse(options, text, format);
    } else {
        model = QVLImportDiagram(text, format, {.Core = options.Core});
    }
    if (options.Strict && !options.Core) {
        for (const auto& d : model->Diagnostics()) {
            if (d.Severity <= TQVLDiagramDiagnosticSeverity::dsInfo) continue;
            const std::string linePart = d.Line >= 1 ? fmt::format(" at line {}", d.Line) : std::string();
            fmt::print(stderr, "{}{}: {}\n", d.Code, linePart, d.MessageText);
            return kExitInvalid;
        }
    }
    // Captions keep the source's bytes; a stray invalid sequence must not stop the output.
    const TJSON out =
        options.Core ? QVLDiagramModelToJson(*model, format) : QVLDiagramModelToJsonFull(*model, format);
    const std::string json = out.dump(-1, ' ', false, TJSON::error_handler_t::replace);
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
    sub->add_flag("--core", options->Core,
                  "Print exactly the core parser's model, without what the full importer adds");
    sub->add_flag("--strict", options->Strict, "Fail on the first warning or error, printing no JSON");
    sub->add_flag("--time", options->Time, "Report each parse's duration on stderr (parse_ms=...)");
    sub->add_option("--repeat", options->Repeat, "With --time: parse this many times (the first warms up)")
        ->check(CLI::Range(1, 1000));
    commands.Add(sub, [options] { return RunParse(*options); });
}

}  // namespace OrvexCli
