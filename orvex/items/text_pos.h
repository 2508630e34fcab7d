// Where a label stands relative to its line or box; shared by the arrow line and the paragraph.
#pragma once

#include <cstdint>

namespace Orvex {

// Ordinals are stored: never reorder.
enum class TQVLTextPos : std::uint8_t { tpAbove, tpBelow, tpMiddle, tpMiddleRemove, tpHorz, tpVert };

}  // namespace Orvex
