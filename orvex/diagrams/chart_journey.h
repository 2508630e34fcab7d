// User journey data: sections in order, each with its tasks, each task with its score (1 to 5 as a rule)
// and the actors taking part.
#pragma once

#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLJourney final : TQVLChart {
    struct TTask {
        std::string Text;
        double Score = 0;
        std::vector<std::string> Actors;
    };
    struct TSection {
        std::string Name;  // "" for the tasks before any section
        std::vector<TTask> Tasks;
    };
    std::vector<TSection> Sections;

    std::string_view Type() const override { return "journey"; }
    // "sections": [{"name", "tasks": [{"text", "score", "actors"}]}].
    void WriteJson(TJSON& aOut) const override;

    // Every actor once, in order of first appearance.
    std::vector<std::string> Actors() const;
};

}  // namespace Orvex
