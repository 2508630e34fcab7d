// The cause-and-effect (fishbone) layout: the effect at the head on the right, a horizontal spine, the
// categories alternately above and below it on slanted bones, and each category's causes stacked along
// its bone, one row each.
#pragma once

#include <vector>

#include "host/layout/layout_types.h"

namespace Orvex {
class TORXDiagramModel;

struct TFishboneOptions {
    double BoneSlant = 0.5;   // horizontal run of a bone per mm of its height
    double RowGap = 3.0;      // mm between two causes on a bone
    double BoneEndGap = 5.0;  // mm kept free at both ends of a bone
    double CauseGap = 2.0;    // mm between a cause and its bone
    double Indent = 8.0;      // mm a cause of a cause stands further out
    double ColumnGap = 8.0;   // mm between the bones of neighbouring columns
    double HeadGap = 12.0;    // mm between the last bone and the effect
    double Margin = kLayoutMargin;
};

// Edges run from cause to what it causes (cause -> category -> effect). The effect is the first node
// that causes nothing; the routes of category and cause edges run along the bones and the spine.
TGraphLayout LayoutFishbone(const TORXDiagramModel& aModel, const std::vector<TLayoutSize>& aSizes,
                            const TFishboneOptions& aOptions = {});

}  // namespace Orvex
