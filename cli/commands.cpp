#include "cli/commands.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <cstdio>

namespace OrvexCli {

int TCommandRegistry::Run(const CLI::App& app) const {
    for (const auto& [sub, run] : fCommands)
        if (sub->parsed()) return run();
    (void)app;
    return kExitUsage;
}

void RegisterCommands(CLI::App& app, TCommandRegistry& commands) {
    RegisterReference(app, commands);
    RegisterAnimate(app, commands);
    RegisterParse(app, commands);
    RegisterConvert(app, commands);
    RegisterInfo(app, commands);
    RegisterServe(app, commands);
    RegisterChat(app, commands);
    RegisterEdit(app, commands);
}

void PrintReadWarnings(const std::vector<std::string>& warnings) {
    for (const auto& warning : warnings) fmt::print(stderr, "orvex: warning: {}\n", warning);
}

}  // namespace OrvexCli
