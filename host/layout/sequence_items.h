// The items of a laid-out sequence diagram, created back to front: boxes and coloured bands, lifelines,
// activation bars, fragment frames, participant heads and feet drawn as their kind, dividers, delays,
// messages, notes, destructions and the title.
#pragma once

#include "host/layout/layout_types.h"

namespace Orvex {
class TORXBaseLabel;
class TORXDiagramModel;
struct TQVLDiagramPlacement;

// False when the document cannot create the items a sequence diagram needs. aPlacement, when given,
// receives each participant's head item and each message's arrow.
bool PlaceSequenceItems(TORXBaseLabel& aDocument, const TORXDiagramModel& aModel,
                        const TTextMeasure& aMeasure, TQVLDiagramPlacement* aPlacement = nullptr);

}  // namespace Orvex
