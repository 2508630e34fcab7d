// Sankey data: flows between named nodes, each with a quantity; the nodes are those the flows name, in
// order of first mention.
#pragma once

#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLSankeyChart final : TQVLChart {
    struct TLink {
        std::string Source;
        std::string Target;
        double Value = 0;
    };
    std::vector<TLink> Links;

    // The node names in order of first mention.
    std::vector<std::string> Nodes() const;

    std::string_view Type() const override { return "sankey"; }
    // "links": [{"source", "target", "value"}].
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
