// The `orvex` command: argument parsing and wiring only. Each subcommand lives in its own file and
// registers itself here.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>

#include "cli/commands.h"
#include "host/layout/diagram_loader.h"
#include "host/paint/cairo_label.h"
#include "orvex/version.h"

int main(int argc, char** argv) {
    Orvex::RegisterDiagramLayout();  // diagram files become drawings wherever a command reads one
    // Texts are measured with the fonts they are painted with, so a drawing saved as JSON or SVG places
    // its captions exactly as its PNG does.
    const Orvex::TPangoMetricsScope metrics;
    CLI::App app{"Orvex: convert, paint, animate and serve 2D drawings and text diagrams", "orvex"};
    app.set_version_flag("--version", std::string("orvex ") + Orvex::kVersion);
    app.require_subcommand(0, 1);

    OrvexCli::TCommandRegistry commands;
    OrvexCli::RegisterCommands(app, commands);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e) == 0 ? 0 : OrvexCli::kExitUsage;
    }
    if (app.get_subcommands().empty()) {
        std::fputs(app.help().c_str(), stdout);
        return 0;
    }
    try {
        return commands.Run(app);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "orvex: %s\n", e.what());
        return OrvexCli::kExitUsage;
    }
}
