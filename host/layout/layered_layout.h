// A plain layered layout for graphs too large for the Graphviz route: ranks by longest path, a few
// barycentre sweeps against crossings, boxes packed in their rank, straight edges. Linear in the graph's
// size per sweep, so thousands of nodes take milliseconds.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "host/layout/layout_types.h"

namespace Orvex {
class TORXDiagramModel;
struct TGraphLayoutOptions;

TGraphLayout LayoutLayered(const TORXDiagramModel& aModel, const std::vector<TLayoutSize>& aSizes,
                           const TGraphLayoutOptions& aOptions);

// The rank of each node by longest path from the sources, the edges that close a cycle left out: what
// the plain layout places by, and what sizes a Graphviz run beforehand. aEdges are node indexes.
std::vector<int> LongestPathRanks(std::size_t aCount, const std::vector<std::pair<int, int>>& aEdges);

}  // namespace Orvex
