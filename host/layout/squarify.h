// Squarified treemap tiling: rectangles with areas proportional to the weights that fill a box while
// staying as close to squares as the weights allow, so that small and large values stay comparable.
#pragma once

#include <vector>

#include "host/layout/layout_types.h"

namespace Orvex {

// One rectangle per weight, in the weights' order, filling aBox. Zero and negative weights get empty
// rectangles at the box's corner.
std::vector<TLayoutBox> Squarify(const std::vector<double>& aWeights, const TLayoutBox& aBox);

}  // namespace Orvex
