// Timeline data: sections in order, each with its periods, each period with its events as written.
#pragma once

#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLTimeline final : TQVLChart {
    struct TPeriod {
        std::string Text;
        std::vector<std::string> Events;
    };
    struct TSection {
        std::string Name;  // "" for the periods before any section
        std::vector<TPeriod> Periods;
    };
    std::vector<TSection> Sections;

    std::string_view Type() const override { return "timeline"; }
    // "sections": [{"name", "periods": [{"text", "events"}]}].
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
