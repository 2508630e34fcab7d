// The marks the editor page shows over the drawing, painted from what the engine's editor exposes: the
// grid, the tool's rubber lines and box, the rubber band, reference lines and alignment guides, trim and
// extend boundaries, selection handles, the snap mark and the caret of a text edited in place. The result
// is SVG elements in the drawing SVG's own coordinates (the document's unit), so that the page lays it over
// the drawing as it is and adds no geometry of its own.
#pragma once

#include <optional>
#include <string>

#include "orvex/document/editor_tools.h"

namespace Orvex {
class TORXBaseLabel;
}

namespace Orvex::Host {

struct TOverlayView {
    double PixelsPerUnit =
        96.0 / Qvl::Types::kMMPerInch;  // screen pixels per SVG unit: marks keep their size on screen
    bool Grid = false;
    std::optional<TQVLSnapHit> Snap;  // where the last pointer position snapped
};

std::string EditOverlaySVG(TORXBaseLabel& aDocument, const TOverlayView& aView);

}  // namespace Orvex::Host
