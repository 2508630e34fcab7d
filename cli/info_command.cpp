// `orvex info FILE.json`: a summary of a drawing for people: mode, units, layers, items by kind, bounds.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"

namespace OrvexCli {
namespace {

int Info(const std::string& fileName) {
    Orvex::TORXHeadlessLabel document;
    const auto loaded = Orvex::LoadDrawingFile(fileName, document);
    if (!loaded) {
        fmt::print(stderr, "orvex: {}\n", loaded.Message);
        return loaded.Code == Orvex::QVLErr::kNoFile ? kExitUsage : kExitInvalid;
    }
    PrintReadWarnings(loaded.Value.Warnings);
    const Orvex::TQVLDrawingSummary s = Orvex::SummarizeDrawing(document);
    const auto unit = Orvex::UnitFactor(s.Units);
    const auto inUnit = [unit](std::int64_t v) { return static_cast<double>(v) / static_cast<double>(unit); };
    fmt::print("file:   {}\n", fileName);
    fmt::print("mode:   {}\n", Orvex::EditorModeName(s.Mode));
    fmt::print("units:  {}\n", Orvex::SymUnit(s.Units, false));
    fmt::print("layers: {}\n", s.Layers);
    fmt::print("items:  {}\n", s.Items);
    for (const auto& [kind, count] : s.ItemsByKind) fmt::print("  {:<12} {}\n", kind, count);
    if (s.Items == 0)
        fmt::print("bounds: none\n");
    else
        fmt::print("bounds: {:g}, {:g} to {:g}, {:g} {}\n", inUnit(s.Bounds.Left), inUnit(s.Bounds.Top),
                   inUnit(s.Bounds.Right), inUnit(s.Bounds.Bottom), Orvex::SymUnit(s.Units, false));
    return kExitOk;
}

}  // namespace

void RegisterInfo(CLI::App& app, TCommandRegistry& commands) {
    auto file = std::make_shared<std::string>();
    auto* sub = app.add_subcommand("info", "Summarise a drawing (.json): mode, units, layers, items, bounds");
    sub->add_option("file", *file, "Drawing to read")->required();
    commands.Add(sub, [file] { return Info(*file); });
}

}  // namespace OrvexCli
