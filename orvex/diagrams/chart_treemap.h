// Treemap data: a forest of sections and leaves, nested by indentation; a leaf has a value, a section
// weighs what its leaves weigh.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"
#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

struct TQVLTreemapChart final : TQVLChart {
    struct TNode {
        std::string Name;
        bool Leaf = false;
        double Value = 0;  // a leaf's own value
        std::string Class;
        std::vector<TNode> Children;

        // A leaf's value, or the sum of the leaves below a section.
        double Total() const;
    };
    std::vector<TNode> Roots;
    std::map<std::string, TQVLDiagStyle> Classes;

    std::string_view Type() const override { return "treemap"; }
    // "nodes": [{"name", "value" (leaves), "class" (when set), "children" (sections)}].
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
