// Sequence placement in two passes: first the distances between lifelines that every text, frame label
// and box title needs, then the rows from top to bottom, keeping the open activations and fragments as
// stacks so that each event costs only the depth of what is open around it.
//
// [SECTION] Helpers   [SECTION] Columns   [SECTION] Rows   [SECTION] Entry
#include "host/layout/sequence_layout.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>
#include <unordered_map>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {
namespace {

//-----------------------------------------------------------------------------------------------------
// [SECTION] Helpers
//-----------------------------------------------------------------------------------------------------

using E = TQVLSeqEventType;
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr int kEdgeLeft = -2;  // found messages come from the left edge, lost ones go to the right
constexpr int kEdgeRight = -3;

TLayoutSize Padded(TLayoutSize text) {
    return {text.Width + 2 * kTextPaddingX, text.Height + 2 * kTextPaddingY};
}

std::string Shown(const TQVLSeqEvent& ev) {
    if (ev.Number.empty()) return ev.Text;
    return ev.Text.empty() ? ev.Number : ev.Number + " " + ev.Text;
}

std::string FrameTag(const TQVLSeqEvent& ev) {
    // A PlantUML group shows its label in the tag; the other operators show their name.
    if (ev.Fragment == "group" && !ev.Text.empty()) return ev.Text;
    return ev.Fragment;
}

std::string FrameCondition(const TQVLSeqEvent& ev) {
    if (ev.Fragment == "group" || ev.Fragment == "rect" || ev.Fragment == "ref" || ev.Text.empty()) return {};
    return "[" + ev.Text + "]";
}

struct TSpacing {
    std::size_t Left;
    std::size_t Right;
    double Distance;  // the least distance between the two lifelines
};

class TSeqPlacer {
  public:
    TSeqPlacer(const TORXDiagramModel& model, const TTextMeasure& measure, const TSequenceOptions& options)
        : fModel(model),
          fMeasure(measure),
          fOpt(options),
          fParts(model.Participants()),
          fEvents(model.SeqEvents()) {
        for (std::size_t i = 0; i < fParts.size(); ++i) fIndex.emplace(fParts[i].ID, static_cast<int>(i));
    }

    TSequenceLayout Run() {
        if (fParts.empty()) return fOut;
        Measure();
        Columns();
        Rows();
        Finish();
        return std::move(fOut);
    }

  private:
    int IndexOf(const std::string& id) const {
        if (id == "[") return kEdgeLeft;
        if (id == "]") return kEdgeRight;
        const auto found = fIndex.find(id);
        return found == fIndex.end() ? -1 : found->second;
    }

    //-------------------------------------------------------------------------------------------------
    // [SECTION] Columns
    //-------------------------------------------------------------------------------------------------

    void Measure() {
        const std::size_t count = fParts.size();
        fHeads.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            const TLayoutSize text = fMeasure(fParts[i].Display);
            if (QVLSeqRoleIsSymbol(fParts[i].Role)) {
                fHeads[i] = {std::max(text.Width + 2, fOpt.SymbolHeight),
                             fOpt.SymbolHeight + 1 + text.Height};
            } else {
                const TQVLFlowType shape =
                    fParts[i].Role == "queue" ? TQVLFlowType::ftTerminator : TQVLFlowType::ftProcess;
                const TLayoutSize s = FlowBoxSize(shape, text);
                fHeads[i] = {std::max(s.Width, fOpt.MinParticipantWidth),
                             std::max(s.Height, fOpt.MinParticipantHeight)};
            }
            fHeadHeight = std::max(fHeadHeight, fHeads[i].Height);
        }
    }

    void Columns() {
        const std::size_t count = fParts.size();
        std::vector<TSpacing> spacing;
        for (std::size_t i = 1; i < count; ++i) {
            double gap = fOpt.ParticipantGap;
            if (fParts[i].Group != fParts[i - 1].Group) gap += 2 * fOpt.BoxPadding;
            spacing.push_back({i - 1, i, (fHeads[i - 1].Width + fHeads[i].Width) / 2 + gap});
        }
        const double clearance = 2 * fOpt.TextClearance + fOpt.ActivationWidth;
        struct TCoverSpan {
            int Low = std::numeric_limits<int>::max();
            int High = -1;
            double Label = 0;
        };
        std::vector<TCoverSpan> open;
        auto cover = [&](int p) {
            if (p < 0) return;
            for (TCoverSpan& f : open) {
                f.Low = std::min(f.Low, p);
                f.High = std::max(f.High, p);
            }
        };
        for (const TQVLSeqEvent& ev : fEvents) {
            const int from = IndexOf(ev.FromActor);
            const int to = ev.ToActor.empty() ? -1 : IndexOf(ev.ToActor);
            switch (ev.EventType) {
                case E::seMessage: {
                    const double need = fMeasure(Shown(ev)).Width + clearance;
                    cover(from);
                    cover(to);
                    if (from == kEdgeLeft || to == kEdgeLeft) fLeftRoom = std::max(fLeftRoom, need);
                    if (from == kEdgeRight || to == kEdgeRight) fRightRoom = std::max(fRightRoom, need);
                    if (from < 0 || to < 0) break;
                    const auto f = static_cast<std::size_t>(from);
                    const auto t = static_cast<std::size_t>(to);
                    if (f == t) {
                        if (f + 1 < count)
                            spacing.push_back(
                                {f, f + 1, fOpt.SelfLoopWidth + need + fHeads[f + 1].Width / 2});
                        else
                            fRightRoom = std::max(fRightRoom, fOpt.SelfLoopWidth + need);
                    } else {
                        spacing.push_back({std::min(f, t), std::max(f, t), need});
                    }
                    break;
                }
                case E::seNote: {
                    if (from < 0) break;
                    cover(from);
                    cover(to);
                    const auto f = static_cast<std::size_t>(from);
                    const double noteWidth = NoteSize(ev).Width + 2 * fOpt.NoteOffset;
                    if (ev.NotePosition == "right of") {
                        if (f + 1 < count)
                            spacing.push_back({f, f + 1, noteWidth});
                        else
                            fRightRoom = std::max(fRightRoom, noteWidth);
                    } else if (ev.NotePosition == "left of") {
                        if (f > 0)
                            spacing.push_back({f - 1, f, noteWidth});
                        else
                            fLeftRoom = std::max(fLeftRoom, noteWidth);
                    }
                    break;
                }
                case E::seActivate:
                case E::seCreate:
                case E::seDestroy:
                    cover(from);
                    break;
                case E::seFragmentStart: {
                    TCoverSpan frame;
                    frame.Label = TagSize(FrameTag(ev)).Width + fMeasure(FrameCondition(ev)).Width + 2;
                    open.push_back(frame);
                    cover(from);
                    cover(to);
                    break;
                }
                case E::seFragmentElse:
                    if (!open.empty())
                        open.back().Label =
                            std::max(open.back().Label, fMeasure("[" + ev.Text + "]").Width + 2);
                    break;
                case E::seFragmentEnd: {
                    if (open.empty()) break;
                    const TCoverSpan frame = open.back();
                    open.pop_back();
                    if (frame.High < 0) break;
                    cover(frame.Low);
                    cover(frame.High);
                    const auto low = static_cast<std::size_t>(frame.Low);
                    const auto high = static_cast<std::size_t>(frame.High);
                    const double reach = frame.Label - 2 * fOpt.FramePadding;
                    if (high > low)
                        spacing.push_back({low, high, reach});
                    else if (low + 1 < count)
                        spacing.push_back({low, low + 1, reach + fHeads[low + 1].Width / 2});
                    break;
                }
                default:
                    break;
            }
        }
        // Box titles need their members' span.
        for (const TQVLDiagGroup& g : fModel.Groups()) {
            int low = std::numeric_limits<int>::max();
            int high = -1;
            for (const std::string& m : g.Members) {
                const int p = IndexOf(m);
                if (p < 0) continue;
                low = std::min(low, p);
                high = std::max(high, p);
            }
            if (high > low)
                spacing.push_back({static_cast<std::size_t>(low), static_cast<std::size_t>(high),
                                   fMeasure(g.Text).Width + 2 * kTextPaddingX - 2 * fOpt.BoxPadding -
                                       (fHeads[static_cast<std::size_t>(low)].Width +
                                        fHeads[static_cast<std::size_t>(high)].Width) /
                                           2});
        }
        std::sort(spacing.begin(), spacing.end(),
                  [](const TSpacing& a, const TSpacing& b) { return a.Right < b.Right; });
        fCenters.assign(count, 0);
        const double leftEdge = fOpt.Margin + (fLeftRoom > 0 ? fLeftRoom + fOpt.EdgeRoom : 0);
        fCenters[0] = std::max(leftEdge, fOpt.Margin + (fParts[0].Group.empty() ? 0 : fOpt.BoxPadding)) +
                      fHeads[0].Width / 2;
        for (const TSpacing& s : spacing)
            fCenters[s.Right] = std::max(fCenters[s.Right], fCenters[s.Left] + s.Distance);
        fLeftX = fOpt.Margin;
        fRightX = fCenters[count - 1] + fHeads[count - 1].Width / 2;
        if (fRightRoom > 0) fRightX = std::max(fRightX, fCenters[count - 1] + fRightRoom + fOpt.EdgeRoom);
        if (!fParts[count - 1].Group.empty()) fRightX += fOpt.BoxPadding;
    }

    // A hexagonal note needs the room of its slanted ends.
    TLayoutSize NoteSize(const TQVLSeqEvent& ev) const {
        const TLayoutSize text = fMeasure(ev.Text);
        return ev.Variant == "hnote" ? FlowBoxSize(TQVLFlowType::ftPreparation, text) : Padded(text);
    }

    TLayoutSize TagSize(const std::string& tag) const {
        const TLayoutSize text = fMeasure(tag);
        return {text.Width + 2 * kTextPaddingX + 2, text.Height + 2};
    }

    //-------------------------------------------------------------------------------------------------
    // [SECTION] Rows
    //-------------------------------------------------------------------------------------------------

    struct TOpenBar {
        double Top = 0;
        int Event = -1;
    };
    struct TOpenFrame {
        std::size_t Layout = 0;  // index in fFrames
        double MinX = kInf;
        double MaxX = -kInf;
    };

    double LifelineX(int p) const {
        if (p == kEdgeLeft) return fLeftX;
        if (p == kEdgeRight) return fRightX;
        return fCenters[static_cast<std::size_t>(p)];
    }

    // Where a message meets a lifeline: the edge of its innermost bar on the side the message comes from.
    double Attach(int p, double toward, int extraDepth) const {
        if (p < 0) return LifelineX(p);
        const double center = LifelineX(p);
        const int depth = static_cast<int>(fBars[static_cast<std::size_t>(p)].size()) + extraDepth;
        if (depth <= 0) return center;
        const double shift = (depth - 1) * fOpt.ActivationOffset;
        return toward >= center ? center + shift + fOpt.ActivationWidth / 2
                                : center + shift - fOpt.ActivationWidth / 2;
    }

    void Extend(double minX, double maxX) {
        for (TOpenFrame& f : fOpen) {
            f.MinX = std::min(f.MinX, minX);
            f.MaxX = std::max(f.MaxX, maxX);
        }
    }

    bool ActivatesNext(std::size_t e, int p) const {
        return e + 1 < fEvents.size() && fEvents[e + 1].EventType == E::seActivate &&
               IndexOf(fEvents[e + 1].FromActor) == p;
    }

    // The row an activation or destruction belongs to: the arrow just drawn when it involves p.
    double AnchorY(std::size_t e, int p) const {
        for (std::size_t k = e; k-- > 0;) {
            const TQVLSeqEvent& prev = fEvents[k];
            if (prev.EventType == E::seActivate || prev.EventType == E::seDeactivate ||
                prev.EventType == E::seDestroy || prev.EventType == E::seCreate)
                continue;
            if (prev.EventType == E::seMessage && k == fLastMessage &&
                (IndexOf(prev.FromActor) == p || IndexOf(prev.ToActor) == p))
                return fLastArrowY;
            break;
        }
        return fY;
    }

    void PlaceHead(std::size_t p, double top) {
        const TLayoutSize s = fHeads[p];
        fOut.Participants[p] = {fCenters[p] - s.Width / 2, top, s.Width, s.Height, true};
        fLifeTop[p] = top + s.Height;
    }

    void Message(std::size_t e) {
        const TQVLSeqEvent& ev = fEvents[e];
        const int from = IndexOf(ev.FromActor);
        const int to = IndexOf(ev.ToActor);
        if (from == -1 || to == -1) return;
        TSeqMessageLayout m;
        m.Event = static_cast<int>(e);
        m.From = from < 0 ? -1 : from;
        m.To = to < 0 ? -1 : to;
        m.Text = Shown(ev);
        const TLayoutSize text = m.Text.empty() ? TLayoutSize{0, 0} : fMeasure(m.Text);
        const double fromCenter = LifelineX(from);
        const double toCenter = LifelineX(to);
        if (from == to) {
            const double startX = Attach(from, kInf, 0);
            const double outX = fromCenter + fOpt.SelfLoopWidth + text.Width;
            const double top = fY + text.Height + 1;
            const double bottom = top + fOpt.RowGap + 1;
            const double endX = Attach(from, kInf, ActivatesNext(e, from) ? 1 : 0);
            m.Points = {{startX, top}, {outX, top}, {outX, bottom}, {endX, bottom}};
            m.TextBox = {startX + 1, fY, text.Width, text.Height, true};
            Extend(startX, outX);
            fRightX = std::max(fRightX, outX + fOpt.RowGap);
            fLastArrowY = bottom;
            fY = bottom;
        } else {
            double arrowY = fY + text.Height + 1;
            double startX = Attach(from, toCenter, 0);
            double endX = Attach(to, fromCenter, ActivatesNext(e, to) ? 1 : 0);
            if (to >= 0 && fPendingCreate[static_cast<std::size_t>(to)]) {
                // A created participant's head stands at the row of the message that creates it.
                const auto t = static_cast<std::size_t>(to);
                const double h = fHeads[t].Height;
                arrowY = std::max(arrowY, fY + h / 2);
                PlaceHead(t, arrowY - h / 2);
                fPendingCreate[t] = false;
                endX = toCenter + (fromCenter < toCenter ? -1 : 1) * fHeads[t].Width / 2;
                fY = fOut.Participants[t].Bottom() - text.Height - 1;
            }
            m.Points = {{startX, arrowY}, {endX, arrowY}};
            m.TextBox = {(startX + endX - text.Width) / 2, arrowY - 1 - text.Height, text.Width, text.Height,
                         true};
            Extend(std::min(startX, endX), std::max(startX, endX));
            fLastArrowY = arrowY;
            fY = std::max(arrowY, fY + text.Height + 1);
        }
        fLastMessage = e;
        fOut.Messages.push_back(std::move(m));
    }

    void Note(std::size_t e) {
        const TQVLSeqEvent& ev = fEvents[e];
        const int from = IndexOf(ev.FromActor);
        if (from < 0) return;
        const int to = ev.ToActor.empty() ? -1 : IndexOf(ev.ToActor);
        const TLayoutSize size = NoteSize(ev);
        const double fromX = LifelineX(from);
        TLayoutBox box{0, fY, size.Width, size.Height, true};
        if (ev.NotePosition == "right of") {
            box.X = Attach(from, kInf, 0) + fOpt.NoteOffset;
        } else if (ev.NotePosition == "left of") {
            box.X = Attach(from, -kInf, 0) - fOpt.NoteOffset - size.Width;
        } else {
            // Over one lifeline, or spanning two: at least from one to the other.
            const double otherX = to >= 0 ? LifelineX(to) : fromX;
            const double spanLeft = std::min(fromX, otherX) - fOpt.NoteOffset;
            const double spanRight = std::max(fromX, otherX) + fOpt.NoteOffset;
            box.Width = std::max(size.Width, spanRight - spanLeft);
            box.X = (spanLeft + spanRight - box.Width) / 2;
        }
        fLeftX = std::min(fLeftX, box.X);
        fRightX = std::max(fRightX, box.Right());
        Extend(box.X, box.Right());
        fOut.Notes.push_back({static_cast<int>(e), box});
        fY += size.Height;
    }

    void Activate(std::size_t e) {
        const int p = IndexOf(fEvents[e].FromActor);
        if (p < 0) return;
        const double top = AnchorY(e, p);
        fBars[static_cast<std::size_t>(p)].push_back({top, static_cast<int>(e)});
        const double x = LifelineX(p);
        Extend(x - fOpt.ActivationWidth, x + fOpt.ActivationWidth);
    }

    void CloseBar(std::size_t p, double bottom) {
        auto& bars = fBars[p];
        const TOpenBar bar = bars.back();
        bars.pop_back();
        const int depth = static_cast<int>(bars.size());
        const double x = fCenters[p] + depth * fOpt.ActivationOffset - fOpt.ActivationWidth / 2;
        const double height = std::max(bottom - bar.Top, fOpt.RowGap);
        fOut.Activations.push_back(
            {static_cast<int>(p), bar.Event, depth, {x, bar.Top, fOpt.ActivationWidth, height, true}});
        fY = std::max(fY, bar.Top + height);
    }

    void Deactivate(std::size_t e) {
        const int p = IndexOf(fEvents[e].FromActor);
        if (p < 0 || fBars[static_cast<std::size_t>(p)].empty()) return;
        CloseBar(static_cast<std::size_t>(p), AnchorY(e, p));
    }

    void Destroy(std::size_t e) {
        const int p = IndexOf(fEvents[e].FromActor);
        if (p < 0) return;
        const auto i = static_cast<std::size_t>(p);
        const double y = std::max(AnchorY(e, p), fLifeTop[i]);
        while (!fBars[i].empty()) CloseBar(i, y);
        fDestroyedAt[i] = y;
        fOut.Destroys.push_back({fCenters[i], y});
    }

    void Create(std::size_t e) {
        const int p = IndexOf(fEvents[e].FromActor);
        if (p < 0) return;
        const auto i = static_cast<std::size_t>(p);
        // Placed with the message that creates it when that comes next; otherwise here.
        for (std::size_t k = e + 1; k < fEvents.size(); ++k) {
            const TQVLSeqEvent& next = fEvents[k];
            if (next.EventType == E::seCreate) continue;
            if (next.EventType == E::seMessage && IndexOf(next.ToActor) == p &&
                IndexOf(next.FromActor) != p) {
                fPendingCreate[i] = true;
                return;
            }
            break;
        }
        PlaceHead(i, fY);
        fY += fHeads[i].Height;
    }

    void FrameStart(std::size_t e) {
        const TQVLSeqEvent& ev = fEvents[e];
        TSeqFrameLayout frame;
        frame.Event = static_cast<int>(e);
        frame.Depth = static_cast<int>(fOpen.size());
        frame.Box.Y = fY;
        if (ev.Fragment != "rect") {
            frame.Tag = FrameTag(ev);
            frame.Condition = FrameCondition(ev);
        }
        fFrames.push_back(std::move(frame));
        fOpen.push_back({fFrames.size() - 1, kInf, -kInf});
        if (ev.Fragment == "ref") {
            // A reference is a frame of its own over the lifelines it names, its text in the middle.
            const int from = IndexOf(ev.FromActor);
            const int to = ev.ToActor.empty() ? from : IndexOf(ev.ToActor);
            const TLayoutSize text = fMeasure(ev.Text);
            const double tagHeight = TagSize(frame.Tag).Height;
            if (from >= 0 && to >= 0)
                Extend(std::min(LifelineX(from), LifelineX(to)), std::max(LifelineX(from), LifelineX(to)));
            auto& open = fOpen.back();
            const double width = std::max(text.Width + 2 * kTextPaddingX, open.MaxX - open.MinX);
            const double center = open.MaxX > open.MinX ? (open.MinX + open.MaxX) / 2 : fLeftX + width / 2;
            open.MinX = std::min(open.MinX, center - width / 2);
            open.MaxX = std::max(open.MaxX, center + width / 2);
            fOut.Delays.push_back(
                {static_cast<int>(e),
                 {center - text.Width / 2, fY + tagHeight + 1, text.Width, text.Height, true}});
            fY += tagHeight + text.Height + 2;
            return;
        }
        fY += frame.Tag.empty() ? fOpt.RowGap : TagSize(frame.Tag).Height + fOpt.RowGap / 2;
    }

    void FrameElse(std::size_t e) {
        if (fOpen.empty()) return;
        const TQVLSeqEvent& ev = fEvents[e];
        TSeqSeparatorLayout sep;
        sep.Event = static_cast<int>(e);
        sep.Y = fY;
        const std::string text = ev.Text.empty() ? std::string() : "[" + ev.Text + "]";
        const TLayoutSize size = fMeasure(text);
        sep.TextBox = {0, fY + 1, size.Width, size.Height, !text.empty()};
        fFrames[fOpen.back().Layout].Separators.push_back(sep);
        fY += (text.empty() ? 0 : size.Height) + 2;
    }

    void FrameEnd() {
        if (fOpen.empty()) return;
        const TOpenFrame open = fOpen.back();
        fOpen.pop_back();
        TSeqFrameLayout& frame = fFrames[open.Layout];
        double minX = open.MinX;
        double maxX = open.MaxX;
        if (minX > maxX) {  // nothing inside: the whole width
            minX = fCenters.front();
            maxX = fCenters.back();
        }
        frame.Box.X = minX - fOpt.FramePadding;
        frame.Box.Width = maxX - minX + 2 * fOpt.FramePadding;
        const TLayoutSize tag = TagSize(frame.Tag);
        const TLayoutSize condition = fMeasure(frame.Condition);
        double label = frame.Tag.empty() ? 0 : tag.Width + 2 + condition.Width;
        for (const TSeqSeparatorLayout& s : frame.Separators) label = std::max(label, s.TextBox.Width + 4);
        frame.Box.Width = std::max(frame.Box.Width, label + 2);
        frame.Box.Height = fY + fOpt.RowGap / 2 - frame.Box.Y;
        frame.Box.Placed = true;
        if (!frame.Tag.empty()) {
            frame.TagBox = {frame.Box.X, frame.Box.Y, tag.Width, tag.Height, true};
            frame.ConditionBox = {frame.TagBox.Right() + 2, frame.Box.Y + 1, condition.Width,
                                  condition.Height, !frame.Condition.empty()};
        }
        for (TSeqSeparatorLayout& s : frame.Separators) s.TextBox.X = frame.Box.X + 2;
        fLeftX = std::min(fLeftX, frame.Box.X - 1);
        fRightX = std::max(fRightX, frame.Box.Right() + 1);
        Extend(frame.Box.X, frame.Box.Right());
        fY = frame.Box.Bottom();
        fOut.Frames.push_back(frame);
    }

    void Band(std::size_t e, std::vector<TSeqBandLayout>& into, double minHeight) {
        const TQVLSeqEvent& ev = fEvents[e];
        const TLayoutSize text = ev.Text.empty() ? TLayoutSize{0, 0} : Padded(fMeasure(ev.Text));
        const double height = std::max(text.Height, minHeight);
        into.push_back(
            {static_cast<int>(e), {0, fY, text.Width, height, true}});  // X once the width is known
        fY += height;
    }

    void Rows() {
        const std::size_t count = fParts.size();
        fOut.Participants.resize(count);
        fBars.resize(count);
        fLifeTop.assign(count, 0);
        fDestroyedAt.assign(count, -1);
        fPendingCreate.assign(count, false);
        std::vector<bool> created(count, false);
        for (const TQVLSeqEvent& ev : fEvents)
            if (ev.EventType == E::seCreate)
                if (const int p = IndexOf(ev.FromActor); p >= 0) created[static_cast<std::size_t>(p)] = true;

        double top = fOpt.Margin;
        if (!fModel.Title().empty()) {
            const TLayoutSize t = fMeasure(fModel.Title());
            fOut.Title = {0, top, t.Width, t.Height, true};
            top += t.Height + fOpt.RowGap;
        }
        double groupTitle = 0;
        for (const TQVLDiagGroup& g : fModel.Groups())
            if (!g.Text.empty()) groupTitle = std::max(groupTitle, fMeasure(g.Text).Height);
        if (!fModel.Groups().empty()) top += groupTitle + fOpt.BoxPadding;
        fHeadTop = top;
        for (std::size_t i = 0; i < count; ++i)
            if (!created[i]) PlaceHead(i, top + fHeadHeight - fHeads[i].Height);

        fY = top + fHeadHeight + fOpt.RowGap * 2;
        for (std::size_t e = 0; e < fEvents.size(); ++e) {
            const TQVLSeqEvent& ev = fEvents[e];
            switch (ev.EventType) {
                case E::seMessage:
                    Message(e);
                    fY += fOpt.RowGap;
                    break;
                case E::seNote:
                    Note(e);
                    fY += fOpt.RowGap;
                    break;
                case E::seActivate:
                    Activate(e);
                    break;
                case E::seDeactivate:
                    Deactivate(e);
                    break;
                case E::seCreate:
                    Create(e);
                    break;
                case E::seDestroy:
                    Destroy(e);
                    break;
                case E::seFragmentStart:
                    FrameStart(e);
                    break;
                case E::seFragmentElse:
                    FrameElse(e);
                    break;
                case E::seFragmentEnd:
                    FrameEnd();
                    fY += fOpt.RowGap;
                    break;
                case E::seDivider:
                    Band(e, fOut.Dividers, fOpt.RowGap);
                    fY += fOpt.RowGap;
                    break;
                case E::seDelay: {
                    if (ev.Variant == "space") {
                        const double px = ev.Text.empty() ? 0 : std::atof(ev.Text.c_str());
                        fY += px > 0 ? px * fOpt.PixelMM : fOpt.DelayHeight;
                    } else {
                        Band(e, fOut.Delays, fOpt.DelayHeight);
                    }
                    break;
                }
                case E::seAutonumber:
                    break;
            }
        }
        while (!fOpen.empty()) FrameEnd();
        for (std::size_t i = 0; i < count; ++i) {
            if (!fOut.Participants[i].Placed) PlaceHead(i, fY);  // created but never reached
            while (!fBars[i].empty()) CloseBar(i, fY + fOpt.RowGap);
        }
        fY += fOpt.RowGap;
    }

    void Finish() {
        const std::size_t count = fParts.size();
        const double footTop = fY + fOpt.RowGap;
        double bottom = footTop;
        fOut.Footers.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            const TLayoutBox& head = fOut.Participants[i];
            double end = footTop;
            if (fDestroyedAt[i] >= 0) {
                end = fDestroyedAt[i];
            } else {
                fOut.Footers[i] = {head.X, footTop, head.Width, head.Height, true};
                bottom = std::max(bottom, fOut.Footers[i].Bottom());
            }
            fOut.Lifelines.push_back(
                {{fCenters[i], head.Bottom()}, {fCenters[i], std::max(end, head.Bottom())}});
        }
        for (const TLayoutBox& head : fOut.Participants) {
            fLeftX = std::min(fLeftX, head.X);
            fRightX = std::max(fRightX, head.Right());
        }
        // Boxes behind their participants, from above the heads to below the feet, all equally tall.
        const double feet = bottom;
        for (std::size_t g = 0; g < fModel.Groups().size(); ++g) {
            const TQVLDiagGroup& group = fModel.Groups()[g];
            double low = kInf;
            double high = -kInf;
            for (const std::string& m : group.Members) {
                const int p = IndexOf(m);
                if (p < 0) continue;
                low = std::min(low, fOut.Participants[static_cast<std::size_t>(p)].X);
                high = std::max(high, fOut.Participants[static_cast<std::size_t>(p)].Right());
            }
            if (low > high) continue;
            const TLayoutSize title = fMeasure(group.Text);
            TSeqGroupLayout layout;
            layout.Group = static_cast<int>(g);
            const double y = fHeadTop - fOpt.BoxPadding - (title.Height > 0 ? title.Height : 0);
            layout.Box = {low - fOpt.BoxPadding, y, high - low + 2 * fOpt.BoxPadding,
                          feet + fOpt.BoxPadding - y, true};
            layout.Box.Width = std::max(layout.Box.Width, title.Width + 2 * kTextPaddingX);
            layout.TitleBox = {layout.Box.Center().X - title.Width / 2, y + 1, title.Width, title.Height,
                               !group.Text.empty()};
            fLeftX = std::min(fLeftX, layout.Box.X);
            fRightX = std::max(fRightX, layout.Box.Right());
            bottom = std::max(bottom, layout.Box.Bottom());
            fOut.Groups.push_back(layout);
        }
        // Dividers and delays run across the whole width, their texts in the middle.
        const double mid = (fLeftX + fRightX) / 2;
        for (TSeqBandLayout& d : fOut.Dividers) {
            const double width = d.Box.Width;
            d.Box.X = fLeftX;
            d.Box.Width = std::max(fRightX - fLeftX, width);
            (void)mid;
        }
        for (TSeqBandLayout& d : fOut.Delays) {
            if (fEvents[static_cast<std::size_t>(d.Event)].EventType != E::seDelay)
                continue;  // reference texts
            d.Box.X = mid - d.Box.Width / 2;
        }
        if (fOut.Title.Placed) fOut.Title.X = mid - fOut.Title.Width / 2;
        fLeftX = std::min(fLeftX, fOut.Title.Placed ? fOut.Title.X : fLeftX);
        const double shift = fOpt.Margin - std::min(fLeftX, fOpt.Margin);
        if (shift > 0) Shift(shift);
        fOut.Extent = {fRightX + shift + fOpt.Margin, bottom + fOpt.Margin};
    }

    // Moves everything right when a note or frame reached past the left margin.
    void Shift(double dx) {
        auto box = [dx](TLayoutBox& b) { b.X += dx; };
        auto point = [dx](TLayoutPoint& p) { p.X += dx; };
        for (auto& b : fOut.Participants) box(b);
        for (auto& b : fOut.Footers) box(b);
        for (auto& l : fOut.Lifelines) {
            point(l.From);
            point(l.To);
        }
        for (auto& m : fOut.Messages) {
            for (auto& p : m.Points) point(p);
            box(m.TextBox);
        }
        for (auto& n : fOut.Notes) box(n.Box);
        for (auto& a : fOut.Activations) box(a.Box);
        for (auto& f : fOut.Frames) {
            box(f.Box);
            box(f.TagBox);
            box(f.ConditionBox);
            for (auto& s : f.Separators) box(s.TextBox);
        }
        for (auto& d : fOut.Dividers) box(d.Box);
        for (auto& d : fOut.Delays) box(d.Box);
        for (auto& p : fOut.Destroys) point(p);
        for (auto& g : fOut.Groups) {
            box(g.Box);
            box(g.TitleBox);
        }
        box(fOut.Title);
    }

    const TORXDiagramModel& fModel;
    const TTextMeasure& fMeasure;
    const TSequenceOptions& fOpt;
    const std::vector<TQVLSeqParticipant>& fParts;
    const std::vector<TQVLSeqEvent>& fEvents;
    std::unordered_map<std::string, int> fIndex;
    TSequenceLayout fOut;

    std::vector<TLayoutSize> fHeads;
    double fHeadHeight = 0;
    double fHeadTop = 0;
    std::vector<double> fCenters;
    double fLeftRoom = 0;
    double fRightRoom = 0;
    double fLeftX = 0;
    double fRightX = 0;

    double fY = 0;
    double fLastArrowY = 0;
    std::size_t fLastMessage = static_cast<std::size_t>(-1);
    std::vector<std::vector<TOpenBar>> fBars;
    std::vector<double> fLifeTop;
    std::vector<double> fDestroyedAt;
    std::vector<bool> fPendingCreate;
    std::vector<TSeqFrameLayout> fFrames;
    std::vector<TOpenFrame> fOpen;
};

}  // namespace

//-----------------------------------------------------------------------------------------------------
// [SECTION] Entry
//-----------------------------------------------------------------------------------------------------

bool QVLSeqRoleIsSymbol(std::string_view aRole) {
    return aRole == "actor" || aRole == "boundary" || aRole == "control" || aRole == "entity" ||
           aRole == "database";
}

TSequenceLayout LayoutSequence(const TORXDiagramModel& aModel, const TTextMeasure& aMeasure,
                               const TSequenceOptions& aOptions) {
    return TSeqPlacer(aModel, aMeasure, aOptions).Run();
}

}  // namespace Orvex
