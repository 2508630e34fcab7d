// Sequence diagrams: participant heads in a row (each drawn as its kind), a lifeline under each, then
// one row per event from top to bottom in source order: messages with their activation bars, notes,
// fragment frames with their separators, dividers, delays, creations and destructions; boxes behind their
// participants and the heads repeated at the foot. Participants stand far enough apart for the texts and
// frame labels between them.
#pragma once

#include <string>
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
    double SymbolHeight = 11.0;     // mm of an actor figure, boundary, control, entity or database symbol
    double ActivationWidth = 3.0;   // mm of an activation bar
    double ActivationOffset = 1.5;  // mm each nested activation moves right
    double FramePadding = 4.0;      // mm a fragment frame reaches past what it holds
    double BoxPadding = 4.0;        // mm a participant box reaches past its heads
    double EdgeRoom = 12.0;         // mm between the diagram's edge and a lifeline for found/lost messages
    double DelayHeight = 8.0;
    double PixelMM = 0.25;  // the size of one pixel of the diagram text ("||45||")
    double Margin = kLayoutMargin;
};

struct TLayoutSegment {
    TLayoutPoint From;
    TLayoutPoint To;
};

struct TSeqMessageLayout {
    int Event = -1;  // index in the model's events
    int From = -1;   // participant indices; -1 for the diagram's edge (found and lost messages)
    int To = -1;
    std::vector<TLayoutPoint> Points;  // the last segment carries the arrow head and the text
    TLayoutBox TextBox;                // where the text stands, above the last segment
    std::string Text;                  // the text shown: the autonumber, then the message's text
};

struct TSeqNoteLayout {
    int Event = -1;
    TLayoutBox Box;
};

struct TSeqActivationLayout {
    int Participant = -1;
    int Event = -1;  // the seActivate event
    int Depth = 0;   // 0 for the outermost bar of a lifeline
    TLayoutBox Box;
};

struct TSeqSeparatorLayout {
    int Event = -1;  // the seFragmentElse event
    double Y = 0;
    TLayoutBox TextBox;
};

// A fragment: its frame, the tag in the top-left corner (the operator, or a group's label) and the
// condition beside it; a Mermaid rect is a band with neither.
struct TSeqFrameLayout {
    int Event = -1;  // the seFragmentStart event
    int Depth = 0;   // nesting level, 0 outermost
    TLayoutBox Box;
    TLayoutBox TagBox;
    std::string Tag;
    TLayoutBox ConditionBox;
    std::string Condition;
    std::vector<TSeqSeparatorLayout> Separators;
};

// A divider, a delay or a reference's text across the diagram.
struct TSeqBandLayout {
    int Event = -1;
    TLayoutBox Box;
};

struct TSeqGroupLayout {
    int Group = -1;  // index in the model's groups
    TLayoutBox Box;
    TLayoutBox TitleBox;
};

struct TSequenceLayout {
    std::vector<TLayoutBox> Participants;  // the heads, parallel to the model's participants
    std::vector<TLayoutBox> Footers;  // the heads repeated under the lifelines; not placed when destroyed
    std::vector<TLayoutSegment> Lifelines;
    std::vector<TSeqMessageLayout> Messages;  // in event order; events naming unknown actors are left out
    std::vector<TSeqNoteLayout> Notes;
    std::vector<TSeqActivationLayout> Activations;
    std::vector<TSeqFrameLayout> Frames;  // in the order they close: inner frames before outer ones
    std::vector<TSeqBandLayout> Dividers;
    std::vector<TSeqBandLayout> Delays;
    std::vector<TLayoutPoint> Destroys;  // the cross at a destroyed lifeline's end
    std::vector<TSeqGroupLayout> Groups;
    TLayoutBox Title;  // not placed when the diagram has none
    TLayoutSize Extent;
};

TSequenceLayout LayoutSequence(const TORXDiagramModel& aModel, const TTextMeasure& aMeasure,
                               const TSequenceOptions& aOptions = {});

// Whether a participant of this role is drawn as a symbol with its caption beneath (actor, boundary,
// control, entity, database) rather than as a box holding the caption.
bool QVLSeqRoleIsSymbol(std::string_view aRole);

}  // namespace Orvex
