// `orvex reference`: the tables every drawing rests on (units, paper sizes, message groups), printed for
// people.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <cstdio>

#include "cli/commands.h"
#include "orvex/core/types.h"
#include "orvex/messages/messages.h"

namespace OrvexCli {
namespace {

int PrintReference() {
    using namespace Orvex;
    fmt::print("Units (base unit: 1 micrometre)\n");
    fmt::print("  {:<6} {:>12}  {}\n", "unit", "base units", "short symbol");
    for (int i = 0; i < kUnitCount; ++i) {
        const auto unit = static_cast<TQVLUnits>(i);
        fmt::print("  {:<6} {:>12}  {}\n", SymUnit(unit, false), UnitFactor(unit), SymUnit(unit, true));
    }
    fmt::print("\nPaper sizes\n");
    fmt::print("  {:<18} {:>8} {:>8} {:>6}\n", "name", "width", "height", "code");
    for (const auto& paper : PaperSizes())
        fmt::print("  {:<18} {:>8.2f} {:>8.2f} {:>6}\n", paper.Name, paper.Width, paper.Height, paper.Code);
    fmt::print("\nMessage groups (built-in English texts)\n");
    fmt::print("  {:<6} {:<12} {:>7}\n", "prefix", "section", "entries");
    for (const auto& group : TORXMsg::GetGroups())
        fmt::print("  {:<6} {:<12} {:>7}\n", group.Prefix, group.Section, group.Count);
    return kExitOk;
}

}  // namespace

void RegisterReference(CLI::App& app, TCommandRegistry& commands) {
    auto* sub = app.add_subcommand("reference", "Print the units, paper sizes and message groups");
    commands.Add(sub, PrintReference);
}

}  // namespace OrvexCli
