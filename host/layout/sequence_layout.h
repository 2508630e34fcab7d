// Sequence diagrams: participant boxes in a row, a lifeline under each, then one row per event from
// top to bottom in source order. Participants stand far enough apart for the texts between them.
#pragma once

#include <vector>

#include "host/layout/layout_types.h"

namespace Orvex {
class TORXDiagramModel;

struct TSequenceOptions {
    double ParticipantGap = 10.0;  // mm between two participant boxes
    double TextClearance = 6.0;    // mm a message text keeps from the lifelines at its ends
    double RowGap = 4.0;           // mm between two events
    double NoteOffset = 3.0;       // mm between a lifeline and a note beside it
    double SelfLoopWidth = 12.0;   // mm a message to its own sender reaches out
    double MinParticipantWidth = 24.0;
    double MinParticipantHeight = 10.0;
    double Margin = kLayoutMargin;
};

struct TLayoutSegment {
    TLayoutPoint From;
    TLayoutPoint To;
};

struct TSeqMessageLayout {
    int Event = -1;  // index in the model's events
    int From = -1;   // participant indices
    int To = -1;
    std::vector<TLayoutPoint> Points;  // the last segment carries the arrow head and the text
    TLayoutBox TextBox;                // where the text stands, above the last segment
};

struct TSeqNoteLayout {
    int Event = -1;
    TLayoutBox Box;
};

struct TSequenceLayout {
    std::vector<TLayoutBox> Participants;  // parallel to the model's participants
    std::vector<TLayoutSegment> Lifelines;
    std::vector<TSeqMessageLayout> Messages;  // in event order; events naming unknown actors are left out
    std::vector<TSeqNoteLayout> Notes;
    TLayoutSize Extent;
};

TSequenceLayout LayoutSequence(const TORXDiagramModel& aModel, const TTextMeasure& aMeasure,
                               const TSequenceOptions& aOptions = {});

}  // namespace Orvex
