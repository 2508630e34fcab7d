// Sequence layout -> items. Creation order is z-order: what must stay behind (boxes, bands, lifelines)
// comes first, the texts last.
//
// [SECTION] Item helpers   [SECTION] Participant kinds   [SECTION] Entry
#include "host/layout/sequence_items.h"

#include <cmath>
#include <string>

#include "host/layout/diagram_loader.h"
#include "host/layout/sequence_layout.h"
#include "orvex/core/color.h"
#include "orvex/diagrams/diagram_model.h"
#include "orvex/document/document.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/shape_items.h"
#include "orvex/items/text_items.h"

namespace Orvex {
namespace {

//-----------------------------------------------------------------------------------------------------
// [SECTION] Item helpers
//-----------------------------------------------------------------------------------------------------

constexpr TQVLineType kDashed = TQVLineType::ii22;
constexpr TAlphaColor kNoteColor = 0xFFFFF8C4u;  // pale yellow
constexpr TAlphaColor kBoxColor = 0x40C8D2E6u;   // translucent grey-blue behind boxed participants
constexpr TAlphaColor kBandColor = 0x40B4C8E6u;  // a rect without a colour of its own
constexpr TAlphaColor kTagColor = 0xFFEEEEEEu;   // the operator tag of a frame
constexpr TAlphaColor kDividerColor = 0xFFE8E8E8u;
constexpr TAlphaColor kActivationColor = 0xFFF4F4F4u;

template <class T>
T* Create(TORXBaseLabel& doc, TQVLItemType type) {
    return dynamic_cast<T*>(doc.CreateItem(type));
}

template <class T>
T* Boxed(TORXBaseLabel& doc, TQVLItemType type, const TLayoutBox& box) {
    T* item = Create<T>(doc, type);
    if (item == nullptr) return nullptr;
    item->SetBase(1, BaseFromMM(box.X), BaseFromMM(box.Y));
    item->SetBase(2, BaseFromMM(box.Right()), BaseFromMM(box.Bottom()));
    return item;
}

void Fill(TORX2DItem* item, TAlphaColor color) {
    if (item == nullptr) return;
    item->SetBackColor(color);
    item->SetFilled(true);
}

TORXBaseLine* Line(TORXBaseLabel& doc, TLayoutPoint from, TLayoutPoint to,
                   TQVLineType type = TQVLineType::iiSolid) {
    auto* line = Create<TORXBaseLine>(doc, TQVLItemType::itLine);
    if (line == nullptr) return nullptr;
    line->SetBase(1, BaseFromMM(from.X), BaseFromMM(from.Y));
    line->SetBase(2, BaseFromMM(to.X), BaseFromMM(to.Y));
    line->SetLineType(type);
    return line;
}

TORXBaseText* Text(TORXBaseLabel& doc, double x, double y, const std::string& text) {
    if (text.empty()) return nullptr;
    auto* item = Create<TORXBaseText>(doc, TQVLItemType::itText);
    if (item == nullptr) return nullptr;
    item->SetBase(1, BaseFromMM(x), BaseFromMM(y));
    item->SetText(text);
    return item;
}

void Bold(TORXBaseText* text) {
    if (text != nullptr) text->SetBold(true);
}

TQVLTermType Term(TQVLSeqArrow arrow) {
    switch (arrow) {
        case TQVLSeqArrow::saFilled:
            return TQVLTermType::ttFillArrow;
        case TQVLSeqArrow::saOpen:
            return TQVLTermType::ttArrow;
        case TQVLSeqArrow::saCross:
            return TQVLTermType::ttCross;
        case TQVLSeqArrow::saNone:
            return TQVLTermType::ttNone;
    }
    return TQVLTermType::ttNone;
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Participant kinds
//-----------------------------------------------------------------------------------------------------

// A head: a box holding the caption, or a symbol with the caption beneath.
// aItemID receives the item that stands for the participant: its box, or the caption under its symbol.
bool Head(TORXBaseLabel& doc, const TQVLSeqParticipant& p, const TLayoutBox& box, const TTextMeasure& measure,
          double symbolHeight, std::int32_t& aItemID) {
    const std::string& role = p.Role;
    const bool coloured = p.Style.Fill.has_value();
    if (!QVLSeqRoleIsSymbol(role)) {
        if (role == "collections") {
            // A second sheet behind, up and to the right.
            TLayoutBox back = box;
            back.X += 1.5;
            back.Y -= 1.5;
            Fill(Boxed<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, back),
                 coloured ? *p.Style.Fill : kOpaqueWhite);
        }
        auto* flow = Boxed<TORXBaseFlow>(doc, TQVLItemType::itFlow, box);
        if (flow == nullptr) return false;
        flow->SetFlowType(role == "queue" ? TQVLFlowType::ftTerminator : TQVLFlowType::ftProcess);
        flow->SetText(p.Display);
        aItemID = flow->InID();
        if (coloured) Fill(flow, *p.Style.Fill);
        if (role == "queue") {
            const double r = box.Height / 2;
            Boxed<TORXBaseEllipse>(doc, TQVLItemType::itEllipse,
                                   {box.Right() - r - r / 3, box.Y, 2 * r / 3, box.Height, true});
        }
        return true;
    }
    const double cx = box.Center().X;
    const double top = box.Y;
    const double h = symbolHeight;
    const TLayoutSize caption = measure(p.Display);
    if (const auto* text = Text(doc, cx - caption.Width / 2, top + h + 1, p.Display)) aItemID = text->InID();
    const TAlphaColor fill = coloured ? *p.Style.Fill : kOpaqueWhite;
    if (role == "actor") {
        const double r = h * 0.14;
        Fill(Boxed<TORXBaseCircle>(doc, TQVLItemType::itCircle, {cx - r, top, 2 * r, 2 * r, true}), fill);
        const double neck = top + 2 * r;
        const double hip = top + h * 0.62;
        Line(doc, {cx, neck}, {cx, hip});
        Line(doc, {cx - h * 0.28, neck + h * 0.12}, {cx + h * 0.28, neck + h * 0.12});
        Line(doc, {cx, hip}, {cx - h * 0.25, top + h});
        Line(doc, {cx, hip}, {cx + h * 0.25, top + h});
        return true;
    }
    if (role == "database") {
        auto* flow = Boxed<TORXBaseFlow>(doc, TQVLItemType::itFlow, {cx - h * 0.4, top, h * 0.8, h, true});
        if (flow == nullptr) return false;
        flow->SetFlowType(TQVLFlowType::ftDatabase);
        Fill(flow, fill);
        return true;
    }
    const double r = h * 0.36;
    const double cy = top + h / 2;
    const double circleX = role == "boundary" ? cx + r * 0.35 : cx;
    Fill(Boxed<TORXBaseCircle>(doc, TQVLItemType::itCircle, {circleX - r, cy - r, 2 * r, 2 * r, true}), fill);
    if (role == "boundary") {
        const double barX = circleX - r * 1.8;
        Line(doc, {barX, cy - r}, {barX, cy + r});
        Line(doc, {barX, cy}, {circleX - r, cy});
    } else if (role == "control") {
        // The arrow head on top of the circle, pointing left.
        Line(doc, {cx - r * 0.1, cy - r}, {cx + r * 0.4, cy - r - r * 0.35});
        Line(doc, {cx - r * 0.1, cy - r}, {cx + r * 0.4, cy - r + r * 0.35});
    } else if (role == "entity") {
        Line(doc, {cx - r, cy + r}, {cx + r, cy + r});
    }
    return true;
}

void Note(TORXBaseLabel& doc, const TQVLSeqEvent& ev, const TLayoutBox& box) {
    const TAlphaColor fill = ev.Style.Fill ? *ev.Style.Fill : kNoteColor;
    if (ev.Variant == "hnote") {
        auto* flow = Boxed<TORXBaseFlow>(doc, TQVLItemType::itFlow, box);
        if (flow == nullptr) return;
        flow->SetFlowType(TQVLFlowType::ftPreparation);
        flow->SetText(ev.Text);
        Fill(flow, fill);
        return;
    }
    // The sheet with its outline, then the text on it.
    Fill(Boxed<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, box), fill);
    auto* note = Boxed<TORXBasePara>(doc, TQVLItemType::itPara, box);
    if (note == nullptr) return;
    note->SetPaddingX(static_cast<float>(kTextPaddingX));
    note->SetPaddingY(static_cast<float>(kTextPaddingY));
    note->SetText(ev.Text);
    if (ev.Variant != "rnote") {
        // The folded corner of a note sheet.
        const double fold = std::min(2.5, box.Height / 3);
        Line(doc, {box.Right() - fold, box.Y}, {box.Right(), box.Y + fold});
    }
}

void Frame(TORXBaseLabel& doc, const TSeqFrameLayout& f) {
    auto* frame = Boxed<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, f.Box);
    if (frame == nullptr) return;
    if (!f.Tag.empty()) {
        Fill(Boxed<TORXBaseRectangle>(doc, TQVLItemType::itRectangle, f.TagBox), kTagColor);
        Bold(Text(doc, f.TagBox.X + kTextPaddingX, f.TagBox.Y + 1, f.Tag));
        if (f.ConditionBox.Placed) Text(doc, f.ConditionBox.X, f.ConditionBox.Y, f.Condition);
    }
    for (const TSeqSeparatorLayout& s : f.Separators)
        Line(doc, {f.Box.X, s.Y}, {f.Box.Right(), s.Y}, kDashed);
}

}  // namespace

//-----------------------------------------------------------------------------------------------------
// [SECTION] Entry
//-----------------------------------------------------------------------------------------------------

bool PlaceSequenceItems(TORXBaseLabel& aDocument, const TORXDiagramModel& aModel,
                        const TTextMeasure& aMeasure, TQVLDiagramPlacement* aPlacement) {
    const TSequenceOptions options;
    const TSequenceLayout layout = LayoutSequence(aModel, aMeasure, options);
    const auto& events = aModel.SeqEvents();
    const auto& parts = aModel.Participants();
    auto event = [&](int index) -> const TQVLSeqEvent& { return events[static_cast<std::size_t>(index)]; };

    for (const TSeqGroupLayout& g : layout.Groups) {
        const TQVLDiagGroup& group = aModel.Groups()[static_cast<std::size_t>(g.Group)];
        auto* box = Boxed<TORXBaseRectangle>(aDocument, TQVLItemType::itRectangle, g.Box);
        Fill(box, group.Style.Fill ? *group.Style.Fill : kBoxColor);
        if (box != nullptr) box->SetColor(0x80808080u);
        if (g.TitleBox.Placed) Text(aDocument, g.TitleBox.X, g.TitleBox.Y, group.Text);
    }
    // Coloured fragments and Mermaid's rect stand behind everything else, outer ones first.
    for (auto f = layout.Frames.rbegin(); f != layout.Frames.rend(); ++f) {
        const TQVLSeqEvent& ev = event(f->Event);
        if (ev.Fragment != "rect" && !ev.Style.Fill) continue;
        auto* band = Boxed<TORXBaseRectangle>(aDocument, TQVLItemType::itRectangle, f->Box);
        Fill(band, ev.Style.Fill ? *ev.Style.Fill : kBandColor);
        if (band != nullptr) band->SetColor(0x00000000u);
    }
    for (const TLayoutSegment& life : layout.Lifelines) Line(aDocument, life.From, life.To, kDashed);
    for (const TSeqActivationLayout& a : layout.Activations) {
        const TQVLSeqEvent& ev = event(a.Event);
        Fill(Boxed<TORXBaseRectangle>(aDocument, TQVLItemType::itRectangle, a.Box),
             ev.Style.Fill ? *ev.Style.Fill : kActivationColor);
    }
    for (const TSeqFrameLayout& f : layout.Frames) {
        const TQVLSeqEvent& ev = event(f.Event);
        if (ev.Fragment == "rect") continue;
        Frame(aDocument, f);
        for (const TSeqSeparatorLayout& s : f.Separators)
            if (s.TextBox.Placed) Text(aDocument, s.TextBox.X, s.TextBox.Y, "[" + event(s.Event).Text + "]");
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
        std::int32_t head = 0;
        std::int32_t foot = 0;
        if (!Head(aDocument, parts[i], layout.Participants[i], aMeasure, options.SymbolHeight, head))
            return false;
        if (layout.Footers[i].Placed &&
            !Head(aDocument, parts[i], layout.Footers[i], aMeasure, options.SymbolHeight, foot))
            return false;
        if (aPlacement != nullptr) aPlacement->Nodes.push_back({parts[i].ID, head});
    }
    for (const TSeqBandLayout& d : layout.Dividers) {
        const TLayoutBox& b = d.Box;
        Line(aDocument, {b.X, b.Center().Y - 0.5}, {b.Right(), b.Center().Y - 0.5});
        Line(aDocument, {b.X, b.Center().Y + 0.5}, {b.Right(), b.Center().Y + 0.5});
        const std::string& text = event(d.Event).Text;
        if (text.empty()) continue;
        const TLayoutSize size = aMeasure(text);
        const TLayoutBox label{b.Center().X - size.Width / 2 - kTextPaddingX, b.Y,
                               size.Width + 2 * kTextPaddingX, b.Height, true};
        auto* back = Boxed<TORXBaseRectangle>(aDocument, TQVLItemType::itRectangle, label);
        Fill(back, kDividerColor);
        Bold(Text(aDocument, label.X + kTextPaddingX, label.Center().Y - size.Height / 2, text));
    }
    for (const TSeqBandLayout& d : layout.Delays) {
        const std::string& text = event(d.Event).Text;
        if (text.empty()) continue;
        const TLayoutSize size = aMeasure(text);
        auto* item =
            Text(aDocument, d.Box.Center().X - size.Width / 2, d.Box.Center().Y - size.Height / 2, text);
        if (item != nullptr && event(d.Event).EventType == TQVLSeqEventType::seDelay) item->SetItalic(true);
    }
    for (const TSeqMessageLayout& m : layout.Messages) {
        const TQVLSeqEvent& ev = event(m.Event);
        const TQVLineType type = ev.Dotted ? kDashed : TQVLineType::iiSolid;
        const std::size_t last = m.Points.size() - 1;
        // A message to its own sender goes out and down as plain lines; the last leg carries the head.
        for (std::size_t k = 1; k < last; ++k) {
            auto* leg = Line(aDocument, m.Points[k - 1], m.Points[k], type);
            if (leg != nullptr && ev.Style.Stroke) leg->SetColor(*ev.Style.Stroke);
        }
        auto* arrow = Create<TORXBaseArrowLine>(aDocument, TQVLItemType::itArrowLine);
        if (arrow == nullptr) return false;
        if (aPlacement != nullptr) aPlacement->Edges.push_back({ev.FromActor, ev.ToActor, arrow->InID()});
        arrow->SetBase(1, BaseFromMM(m.Points[last - 1].X), BaseFromMM(m.Points[last - 1].Y));
        arrow->SetBase(2, BaseFromMM(m.Points[last].X), BaseFromMM(m.Points[last].Y));
        arrow->SetFromType(ev.FromCircle && last == 1 ? TQVLTermType::ttCircle
                           : last == 1                ? Term(ev.FromArrow)
                                                      : TQVLTermType::ttNone);
        arrow->SetToType(ev.ToCircle ? TQVLTermType::ttCircle : Term(ev.Arrow));
        arrow->SetLineType(type);
        if (ev.Style.Stroke) {
            arrow->SetColor(*ev.Style.Stroke);
            arrow->SetToColor(*ev.Style.Stroke);
            arrow->SetFromColor(*ev.Style.Stroke);
        }
        if (last == 1) {
            arrow->SetText(m.Text);
            arrow->SetTextPos(TQVLTextPos::tpAbove);
        } else {
            // A self message's text stands inside its loop, not along the short last leg.
            Text(aDocument, m.TextBox.X, m.TextBox.Y, m.Text);
        }
    }
    for (const TSeqNoteLayout& n : layout.Notes) Note(aDocument, event(n.Event), n.Box);
    for (const TLayoutPoint& p : layout.Destroys) {
        constexpr double kArm = 2.5;
        Line(aDocument, {p.X - kArm, p.Y - kArm}, {p.X + kArm, p.Y + kArm});
        Line(aDocument, {p.X - kArm, p.Y + kArm}, {p.X + kArm, p.Y - kArm});
    }
    if (layout.Title.Placed) {
        Bold(Text(aDocument, layout.Title.X, layout.Title.Y, aModel.Title()));
    }
    return true;
}

}  // namespace Orvex
