// Where a label stands relative to its line or text box: shared by the line and the text item kinds.
// Ordinals are stored in drawing files: never reorder.
#pragma once

#include <cstdint>

namespace Orvex {

enum class TQVLTextPos : std::uint8_t { tpAbove, tpBelow, tpMiddle, tpMiddleRemove, tpHorz, tpVert };

}  // namespace Orvex
