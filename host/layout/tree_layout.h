// Trees grown sideways from their root: mind maps, tree maps and tree views. The root's children go
// right, or left when their Side is negative; every level stands in its own column.
#pragma once

#include <vector>

#include "host/layout/layout_types.h"

namespace Orvex {
class TORXDiagramModel;

struct TTreeLayoutOptions {
    double LevelGap = 14.0;   // mm between the columns of two levels
    double SiblingGap = 4.0;  // mm between boxes stacked in one column
    double TreeGap = 10.0;    // mm between two trees of a forest
    double Margin = kLayoutMargin;
};

// The parent of a node is the source of the first edge that reaches it (edges run parent to child);
// with aReversed the target is the parent instead. A node on a cycle without a root becomes a root.
TGraphLayout LayoutTree(const TORXDiagramModel& aModel, const std::vector<TLayoutSize>& aSizes,
                        bool aReversed = false, const TTreeLayoutOptions& aOptions = {});

// The parent index of every node (-1 for roots) under the rule above; also the basis of the fishbone.
std::vector<int> TreeParents(const TORXDiagramModel& aModel, bool aReversed);

}  // namespace Orvex
