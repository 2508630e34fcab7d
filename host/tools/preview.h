// Pictures of the drawing for a model to look at: a PNG held under a byte budget, so that a preview never
// floods a model's context.
#pragma once

#include <cstdint>

#include "orvex/io/json_fwd.h"

namespace Orvex {
class TORXBaseLabel;
}

namespace Orvex::Host {

inline constexpr std::int64_t kDefaultPreviewBytes = 750'000;

// Paints the drawing at 96 dpi times scale, shrinking the scale until the PNG fits maxBytes. Appends an
// image content to result["content"] and returns {format, scale, item_count, byte_size}; throws
// EToolArgument when even the smallest picture does not fit, or painting fails.
TJSON AppendPreview(const TORXBaseLabel& aDoc, double aScale, std::int64_t aMaxBytes, TJSON& aResult);

}  // namespace Orvex::Host
