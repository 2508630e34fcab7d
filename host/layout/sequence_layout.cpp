// Sequence placement in two passes: first the distances between lifelines that every text needs, then
// the rows from top to bottom.
#include "host/layout/sequence_layout.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {
namespace {

struct TSpacing {
    std::size_t Left;
    std::size_t Right;
    double Distance;  // the least distance between the two lifelines
};

int ParticipantIndex(const std::vector<TQVLSeqParticipant>& participants, const std::string& id) {
    for (std::size_t i = 0; i < participants.size(); ++i)
        if (participants[i].ID == id) return static_cast<int>(i);
    return -1;
}

TLayoutSize Padded(TLayoutSize text) {
    return {text.Width + 2 * kTextPaddingX, text.Height + 2 * kTextPaddingY};
}

}  // namespace

TSequenceLayout LayoutSequence(const TORXDiagramModel& aModel, const TTextMeasure& aMeasure,
                               const TSequenceOptions& aOptions) {
    TSequenceLayout result;
    const auto& participants = aModel.Participants();
    const auto& events = aModel.SeqEvents();
    const std::size_t count = participants.size();
    if (count == 0) return result;

    std::vector<TLayoutSize> boxes(count);
    double boxHeight = aOptions.MinParticipantHeight;
    for (std::size_t i = 0; i < count; ++i) {
        const TLayoutSize s = Padded(aMeasure(participants[i].Display));
        boxes[i] = {std::max(s.Width, aOptions.MinParticipantWidth), s.Height};
        boxHeight = std::max(boxHeight, s.Height);
    }

    // Pass 1: what each event asks of the distance between two lifelines.
    std::vector<TSpacing> spacing;
    for (std::size_t i = 1; i < count; ++i)
        spacing.push_back({i - 1, i, (boxes[i - 1].Width + boxes[i].Width) / 2 + aOptions.ParticipantGap});
    struct TEventInfo {
        int From = -1;
        int To = -1;
        TLayoutSize Text;
    };
    std::vector<TEventInfo> info(events.size());
    for (std::size_t e = 0; e < events.size(); ++e) {
        const TQVLSeqEvent& ev = events[e];
        TEventInfo& in = info[e];
        in.From = ParticipantIndex(participants, ev.FromActor);
        in.To = ev.ToActor.empty() ? -1 : ParticipantIndex(participants, ev.ToActor);
        in.Text = aMeasure(ev.Text);
        if (in.From < 0) continue;
        const auto from = static_cast<std::size_t>(in.From);
        if (ev.EventType == TQVLSeqEventType::seMessage) {
            if (in.To < 0) continue;
            const auto to = static_cast<std::size_t>(in.To);
            const double need = in.Text.Width + 2 * aOptions.TextClearance;
            if (from == to) {
                if (from + 1 < count)
                    spacing.push_back(
                        {from, from + 1, aOptions.SelfLoopWidth + need + boxes[from + 1].Width / 2});
            } else {
                spacing.push_back({std::min(from, to), std::max(from, to), need});
            }
        } else {
            const double noteWidth = Padded(in.Text).Width + 2 * aOptions.NoteOffset;
            if (ev.NotePosition == "right of" && from + 1 < count)
                spacing.push_back({from, from + 1, noteWidth});
            else if (ev.NotePosition == "left of" && from > 0)
                spacing.push_back({from - 1, from, noteWidth});
        }
    }
    std::sort(spacing.begin(), spacing.end(),
              [](const TSpacing& a, const TSpacing& b) { return a.Right < b.Right; });
    std::vector<double> centers(count, 0);
    centers[0] = aOptions.Margin + boxes[0].Width / 2;
    // Notes left of the first lifeline need room before it as well.
    for (std::size_t e = 0; e < events.size(); ++e)
        if (events[e].EventType == TQVLSeqEventType::seNote && info[e].From == 0 &&
            events[e].NotePosition == "left of")
            centers[0] =
                std::max(centers[0], aOptions.Margin + Padded(info[e].Text).Width + aOptions.NoteOffset);
    for (const TSpacing& s : spacing)
        centers[s.Right] = std::max(centers[s.Right], centers[s.Left] + s.Distance);

    const double top = aOptions.Margin;
    for (std::size_t i = 0; i < count; ++i)
        result.Participants.push_back({centers[i] - boxes[i].Width / 2,
                                       top + (boxHeight - boxes[i].Height) / 2, boxes[i].Width,
                                       boxes[i].Height, true});

    // Pass 2: the rows.
    double y = top + boxHeight + aOptions.RowGap * 2;
    double right = centers[count - 1] + boxes[count - 1].Width / 2;
    for (std::size_t e = 0; e < events.size(); ++e) {
        const TQVLSeqEvent& ev = events[e];
        const TEventInfo& in = info[e];
        if (in.From < 0) continue;
        const double fromX = centers[static_cast<std::size_t>(in.From)];
        if (ev.EventType == TQVLSeqEventType::seMessage) {
            if (in.To < 0) continue;
            const double toX = centers[static_cast<std::size_t>(in.To)];
            TSeqMessageLayout m;
            m.Event = static_cast<int>(e);
            m.From = in.From;
            m.To = in.To;
            if (in.From == in.To) {
                // Out to the right, down, and back with the head: the text stands inside the loop.
                const double outX = fromX + aOptions.SelfLoopWidth + in.Text.Width;
                const double bottom = y + in.Text.Height + aOptions.RowGap;
                m.Points = {{fromX, y}, {outX, y}, {outX, bottom}, {fromX, bottom}};
                m.TextBox = {fromX + aOptions.TextClearance / 2, y + 1, in.Text.Width, in.Text.Height, true};
                right = std::max(right, outX);
                y = bottom;
            } else {
                const double arrowY = y + in.Text.Height + 1;
                m.Points = {{fromX, arrowY}, {toX, arrowY}};
                m.TextBox = {(fromX + toX - in.Text.Width) / 2, y, in.Text.Width, in.Text.Height, true};
                y = arrowY;
            }
            result.Messages.push_back(std::move(m));
        } else {
            const TLayoutSize size = Padded(in.Text);
            TLayoutBox box{0, y, size.Width, size.Height, true};
            if (ev.NotePosition == "right of") {
                box.X = fromX + aOptions.NoteOffset;
            } else if (ev.NotePosition == "left of") {
                box.X = fromX - aOptions.NoteOffset - size.Width;
            } else {
                // Over one lifeline, or spanning two: at least from one to the other.
                const double otherX = in.To >= 0 ? centers[static_cast<std::size_t>(in.To)] : fromX;
                const double spanLeft = std::min(fromX, otherX) - aOptions.NoteOffset;
                const double spanRight = std::max(fromX, otherX) + aOptions.NoteOffset;
                box.Width = std::max(size.Width, spanRight - spanLeft);
                box.X = (spanLeft + spanRight - box.Width) / 2;
            }
            right = std::max(right, box.Right());
            result.Notes.push_back({static_cast<int>(e), box});
            y += size.Height;
        }
        y += aOptions.RowGap;
    }
    const double bottom = y + aOptions.RowGap;
    for (std::size_t i = 0; i < count; ++i) {
        const TLayoutBox& box = result.Participants[i];
        result.Lifelines.push_back({{centers[i], box.Bottom()}, {centers[i], bottom}});
    }
    result.Extent = {right + aOptions.Margin, bottom + aOptions.Margin};
    return result;
}

}  // namespace Orvex
