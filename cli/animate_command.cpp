// `orvex animate PATH.json [--fps N]`: runs a path animation as a host would, one Update per frame, and
// prints every frame as a CSV row so that a run can be inspected, plotted or compared.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "orvex/anim/path_animator.h"
#include "orvex/anim/path_file.h"

namespace OrvexCli {
namespace {

// A frame that would stop this close short of the end finishes the run instead, so that rounding in the
// frame steps never adds a row a few nanoseconds before the last one.
constexpr double kEndSnapSeconds = 1e-9;

// Six decimals, trailing zeros dropped, no locale: "0.5", "10", "-1.570796".
std::string FormatNumber(double value) {
    std::string text = fmt::format("{:.6f}", value);
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    if (text == "-0") text = "0";
    return text;
}

std::string JoinWaypoints(const std::vector<int>& waypoints) {
    std::string text;
    for (const int k : waypoints) {
        if (!text.empty()) text += ';';
        text += std::to_string(k);
    }
    return text;
}

struct TRow {
    double Time = 0.0;
    double X = 0.0;
    double Y = 0.0;
    double Rotation = 0.0;
    double Progress = 0.0;
    double PathProgress = 0.0;
    std::vector<int> Waypoints;
};

void PrintRow(const TRow& row) {
    fmt::print("{},{},{},{},{},{},{}\n", FormatNumber(row.Time), FormatNumber(row.X), FormatNumber(row.Y),
               FormatNumber(row.Rotation), FormatNumber(row.Progress), FormatNumber(row.PathProgress),
               JoinWaypoints(row.Waypoints));
}

// Wall time until the run ends in its current direction.
double WallTimeLeft(const Orvex::TPathAnimator& animator) {
    const double time = animator.GetCurrentTime();
    const double left = animator.IsReverse() ? time : animator.GetTotalTime() - time;
    return left / animator.GetTimeScale();
}

int Animate(const std::string& fileName, int fps) {
    const Orvex::TPathFileResult read = Orvex::ReadPathFile(fileName);
    if (!read.Ok()) {
        std::fprintf(stderr, "%s\n", read.Message.c_str());
        return read.Code == Orvex::QVLErr::kNoFile ? kExitUsage : kExitInvalid;
    }
    Orvex::TPathAnimator animator;
    try {
        Orvex::ApplyPathFile(read.Value, animator);
    } catch (const std::out_of_range& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return kExitInvalid;
    }

    const double step = 1.0 / fps;
    const double duration = WallTimeLeft(animator);
    TRow row;
    animator.Update(0.0, row.X, row.Y, row.Rotation);
    row.Progress = animator.GetProgress();
    row.PathProgress = animator.GetPathProgress();
    fmt::print("time,x,y,rotation,progress,path_progress,waypoints\n");
    PrintRow(row);

    for (long frame = 1;; ++frame) {
        double delta = step;
        const double left = WallTimeLeft(animator);
        if (left - delta < kEndSnapSeconds) delta = std::max(delta, left);
        const double before = row.Progress;
        const bool running = animator.Update(delta, row.X, row.Y, row.Rotation);
        row.Time = running ? static_cast<double>(frame) * step : duration;
        row.Progress = animator.GetProgress();
        row.PathProgress = animator.GetPathProgress();
        row.Waypoints = animator.GetCrossedWaypoints(before, row.Progress);
        PrintRow(row);
        if (!running) break;
    }
    return kExitOk;
}

}  // namespace

void RegisterAnimate(CLI::App& app, TCommandRegistry& commands) {
    auto* sub = app.add_subcommand("animate", "Sample a path animation frame by frame and print it as CSV");
    auto fileName = std::make_shared<std::string>();
    auto fps = std::make_shared<int>(30);
    sub->add_option("PATH.json", *fileName, "The path animation file")->required();
    sub->add_option("--fps", *fps, "Frames per second")->check(CLI::Range(1, 1000))->capture_default_str();
    commands.Add(sub, [fileName, fps] { return Animate(*fileName, *fps); });
}

}  // namespace OrvexCli
