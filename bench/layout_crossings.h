// Edge crossings of a laid-out graph, the usual measure of a layered drawing's quality.
#pragma once

#include <cstddef>

#include "host/layout/layout_types.h"

namespace OrvexBench {

// Pairs of route segments of different edges that cross properly (touching ends, as at a shared node,
// do not count). Quadratic in the segments: meant for graphs of a few thousand edges.
std::size_t CountCrossings(const Orvex::TGraphLayout& layout);

}  // namespace OrvexBench
