// Pictures of the drawing for a model to look at. A preview always comes back: the picture is scaled down
// until it fits both a pixel and a byte budget, so that a large drawing neither fails nor floods a model's
// context. It may show only a region of the drawing.
#pragma once

#include <cstdint>
#include <optional>

#include "orvex/core/rect.h"
#include "orvex/io/json_fwd.h"

namespace Orvex {
class TORXBaseLabel;
}

namespace Orvex::Host {

inline constexpr std::int64_t kDefaultPreviewBytes = 750'000;
inline constexpr std::int32_t kDefaultPreviewSide = 1600;  // pixels of the longer side

struct TPreviewRequest {
    double Scale = 1.0;  // zoom on 96 dpi; lowered as far as the limits need
    std::int64_t MaxBytes = kDefaultPreviewBytes;
    std::int32_t MaxSide = kDefaultPreviewSide;
    std::optional<Qvl::Types::TQVLRect> Region;  // base units; the whole drawing without it
};

// Appends an image content to result["content"] and returns {format, scale, item_count, byte_size,
// width, height}. Throws EToolArgument only when painting itself fails.
TJSON AppendPreview(const TORXBaseLabel& aDoc, const TPreviewRequest& aRequest, TJSON& aResult);

}  // namespace Orvex::Host
