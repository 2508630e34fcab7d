// Whether an item's caption fits the box it is drawn in: a flow element's caption and a paragraph's lines
// are cut off where the box ends, so the tools grow the box or say so rather than lose text unseen.
#pragma once

#include <cstdint>

namespace Orvex {
class TORXBaseItem;
}  // namespace Orvex

namespace Orvex::Host {

struct TCaptionRoom {
    std::int64_t NeededWidth = 0;  // base units
    std::int64_t NeededHeight = 0;
    std::int64_t Width = 0;  // what the box gives
    std::int64_t Height = 0;
    bool Fits() const { return NeededWidth <= Width && NeededHeight <= Height; }
};

// The room a flow element's caption needs (its font, its shape's text area) beside what its box gives.
TCaptionRoom FlowCaptionRoom(const TORXBaseItem& aFlow);

// True when part of the item's caption is cut off: a flow element's caption, or a paragraph's lines beyond
// its height. False for every other kind (texts size themselves to their content).
bool CaptionClipped(const TORXBaseItem& aItem);

}  // namespace Orvex::Host
