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
    // spares its router the most, and crossing reduction is cut short; above LayeredAbove nodes or
    // LayeredAboveEdges edges the plain layered layout (layered_layout.h) takes over.
    std::size_t QuickOrderingAbove = 150;
    std::size_t StraightEdgesAbove = 250;
    std::size_t LayeredAbove = 400;
    std::size_t LayeredAboveEdges = 1000;
    // Graphviz's work (nodes plus the ranks the edges span, graphviz_settings.h) above which the plain
    // layout takes over, and above which Graphviz runs in a child process given TimeBudget seconds, after
    // which the plain layout is used instead. A budget of 0 runs Graphviz in this process without a limit.
    std::size_t LayeredAboveWork = 10000;
    std::size_t IsolateAboveWork = 300;
    double TimeBudget = 2.0;
};

// aSizes holds one box size per model node (mm). Edges whose ends are not both nodes get no route.
TGraphLayout LayoutGraph(const TORXDiagramModel& aModel, const std::vector<TLayoutSize>& aSizes,
                         const TGraphLayoutOptions& aOptions = {});

}  // namespace Orvex
