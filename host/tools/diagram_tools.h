// What load_diagram does once a diagram is laid out, whichever importer laid it out: place the new items
// beside the drawing's content, grow the page, and describe what was created.
#pragma once

#include <vector>

#include "host/layout/diagram_loader.h"
#include "orvex/core/rect.h"
#include "orvex/io/json.h"

namespace Orvex {
class TORXBaseItem;
class TORXBaseLabel;
}  // namespace Orvex

namespace Orvex::Host {

// aCreated: the items the layout made; aExisting: the bounds of what the drawing held before (used only
// when aHadItems). Moves the new items to the right of that content (below with aBelow), grows the page,
// and returns {nodes (node id -> item id), edges [{from, to, id}], bounds, page}.
TJSON PlaceLoadedDiagram(TORXBaseLabel& aDoc, const TDiagramPlacement& aPlacement,
                         const std::vector<TORXBaseItem*>& aCreated, const Qvl::Types::TQVLRect& aExisting,
                         bool aHadItems, bool aBelow);

}  // namespace Orvex::Host
