// A plain layered layout for graphs too large for the Graphviz route: ranks by longest path, a few
// barycentre sweeps against crossings, boxes packed in their rank, straight edges. Linear in the graph's
// size per sweep, so thousands of nodes take milliseconds.
#pragma once

#include <vector>

#include "host/layout/layout_types.h"

namespace Orvex {
class TORXDiagramModel;
struct TGraphLayoutOptions;

TGraphLayout LayoutLayered(const TORXDiagramModel& aModel, const std::vector<TLayoutSize>& aSizes,
                           const TGraphLayoutOptions& aOptions);

}  // namespace Orvex
