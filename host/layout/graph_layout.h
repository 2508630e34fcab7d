// The layered layout of flowchart-like diagrams: node boxes of the given sizes placed in ranks along the
// model's direction, and edge routes that avoid the boxes.
#pragma once

#include <cstddef>
#include <vector>

#include "host/layout/layout_types.h"

namespace Orvex {
class TORXDiagramModel;

struct TGraphLayoutOptions {
    double NodeSep = 8.0;   // mm between neighbours in a rank
    double RankSep = 14.0;  // mm between ranks
    double Margin = kLayoutMargin;
    // Graphviz's time grows faster than the graph: above the first size edges are drawn straight, which
    // spares its router the most, and crossing reduction is cut short; above LayeredAbove the plain
    // layered layout (layered_layout.h) takes over.
    std::size_t QuickOrderingAbove = 150;
    std::size_t StraightEdgesAbove = 250;
    std::size_t LayeredAbove = 400;
};

// aSizes holds one box size per model node (mm). Edges whose ends are not both nodes get no route.
TGraphLayout LayoutGraph(const TORXDiagramModel& aModel, const std::vector<TLayoutSize>& aSizes,
                         const TGraphLayoutOptions& aOptions = {});

}  // namespace Orvex
