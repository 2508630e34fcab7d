// The loader: model -> layout (in millimetres) -> items. All item creation happens inside one update
// batch, which the document records as one undo group, so a load is undone in one step.
//
// [SECTION] Measures and mappings
// [SECTION] Item helpers
// [SECTION] Graphs, trees and fishbones
// [SECTION] Sequence diagrams
// [SECTION] Entry
#include "host/layout/diagram_loader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/layout/chart_layout.h"
#include "host/layout/fishbone_layout.h"
#include "host/layout/graph_layout.h"
#include "host/layout/sequence_items.h"
#include "host/layout/tree_layout.h"
#include "host/layout/uml_boxes.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/diagrams/sequence_import.h"
#include "orvex/document/document.h"
#include "orvex/items/container_frame.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/text_items.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {
namespace {

//-----------------------------------------------------------------------------------------------------
// [SECTION] Measures and mappings
//-----------------------------------------------------------------------------------------------------

constexpr TQVLineType kDashed = TQVLineType::ii22;
constexpr TAlphaColor kNoteColor = 0xFFFFF8C4u;  // pale yellow, opaque
constexpr TAlphaColor kFrameFill = 0xFFFFFFDEu;  // a container's ground: pale yellow
constexpr TAlphaColor kFrameStroke = 0xFFAAAA33u;
constexpr double kFrameMargin = 4.0;     // mm between a fitted frame and its members
constexpr double kFrameTitleBand = 6.0;  // mm above the members for the title
constexpr double kMarkerSize = 6.0;      // mm: the disc of a start or end marker
constexpr double kForkBarLength = 25.0;  // mm: the bar of a fork or join
constexpr double kForkBarThickness = 2.5;
constexpr double kInnerRingInset = 0.08;  // of the side: the second ring of a double circle
constexpr double kPenMMPerPixel = 0.15;   // a stroke width written in pixels, as a pen
constexpr float kThickPenMM = 0.5f;       // a thick link ("==>")
constexpr float kTitleFontHeight = 5.0f;  // mm
constexpr double kTitleGap = 4.0;         // mm between the title and the diagram
constexpr double kEndLabelOffset = 2.5;   // mm from a link's end to its end label
constexpr double kFigureWidth = 12.0;     // mm: an actor's stick figure
constexpr double kFigureHeight = 19.0;

TQVLTermType EdgeTerm(TQVLDiagEdgeArrow arrow) {
    switch (arrow) {
        case TQVLDiagEdgeArrow::eaArrow:
            return TQVLTermType::ttFillArrow;
        case TQVLDiagEdgeArrow::eaNone:
            return TQVLTermType::ttNone;
        case TQVLDiagEdgeArrow::eaCross:
            return TQVLTermType::ttCross;
        case TQVLDiagEdgeArrow::eaCircle:
            return TQVLTermType::ttCircle;
        case TQVLDiagEdgeArrow::eaRhombus:
            return TQVLTermType::ttRhombus;
        case TQVLDiagEdgeArrow::eaFillRhombus:
            return TQVLTermType::ttFillRhombus;
        case TQVLDiagEdgeArrow::eaTriangle:
            return TQVLTermType::ttTriangle;
        case TQVLDiagEdgeArrow::eaOpenArrow:
            return TQVLTermType::ttArrow;
        case TQVLDiagEdgeArrow::eaLollipop:
            return TQVLTermType::ttCircle;
        case TQVLDiagEdgeArrow::eaCrowOnlyOne:
            return TQVLTermType::ttCrowOnlyOne;
        case TQVLDiagEdgeArrow::eaCrowZeroOne:
            return TQVLTermType::ttCrowZeroOne;
        case TQVLDiagEdgeArrow::eaCrowOneMany:
            return TQVLTermType::ttCrowOneMany;
        case TQVLDiagEdgeArrow::eaCrowZeroMany:
            return TQVLTermType::ttCrowZeroMany;
    }
    return TQVLTermType::ttNone;
}

// The connection point (0 top, 1 right, 2 bottom, 3 left) on whose side a route meets the box.
std::int16_t SideOf(const TLayoutBox& box, TLayoutPoint p) {
    const double distances[4] = {std::abs(p.Y - box.Y), std::abs(p.X - box.Right()),
                                 std::abs(p.Y - box.Bottom()), std::abs(p.X - box.X)};
    std::int16_t best = 0;
    for (std::int16_t i = 1; i < 4; ++i)
        if (distances[i] < distances[best]) best = i;
    return best;
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Item helpers
//-----------------------------------------------------------------------------------------------------

template <class T>
T* Create(TORXBaseLabel& doc, TQVLItemType type) {
    return dynamic_cast<T*>(doc.CreateItem(type));
}

TORXBaseFlow* AddFlow(TORXBaseLabel& doc, const TLayoutBox& box, TQVLFlowType shape,
                      const std::string& text) {
    auto* flow = Create<TORXBaseFlow>(doc, TQVLItemType::itFlow);
    if (flow == nullptr) return nullptr;
    flow->SetBase(1, BaseFromMM(box.X), BaseFromMM(box.Y));
    flow->SetBase(2, BaseFromMM(box.Right()), BaseFromMM(box.Bottom()));
    flow->SetFlowType(shape);
    flow->SetText(text);
    return flow;
}

// A label at one end of a route (a multiplicity or role): a little way along the route and off to its
// side, so that neither the line nor the element covers it.
void AddEndLabel(TORXBaseLabel& doc, TLayoutPoint end, TLayoutPoint toward, const std::string& text,
                 const TTextMeasure& measure) {
    const double dx = toward.X - end.X;
    const double dy = toward.Y - end.Y;
    const double length = std::max(std::hypot(dx, dy), 1e-6);
    const TLayoutSize size = measure(text);
    const double along = kEndLabelOffset + std::max(size.Width, size.Height) / 2;
    const TLayoutPoint at{end.X + dx / length * along - dy / length * kEndLabelOffset,
                          end.Y + dy / length * along + dx / length * kEndLabelOffset};
    auto* item = Create<TORXBaseText>(doc, TQVLItemType::itText);
    if (item == nullptr) return;
    item->SetBase(1, BaseFromMM(at.X - size.Width / 2), BaseFromMM(at.Y - size.Height / 2));
    item->SetText(text);
}

void AddLine(TORXBaseLabel& doc, TLayoutPoint from, TLayoutPoint to, TQVLineType lineType) {
    auto* line = Create<TORXBaseLine>(doc, TQVLItemType::itLine);
    if (line == nullptr) return;
    line->SetBase(1, BaseFromMM(from.X), BaseFromMM(from.Y));
    line->SetBase(2, BaseFromMM(to.X), BaseFromMM(to.Y));
    line->SetLineType(lineType);
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Graphs, trees and fishbones
//-----------------------------------------------------------------------------------------------------

// A start or end circle without a caption is a marker, drawn as a small disc; one with a caption is a
// circle around it.
bool IsMarker(const TQVLDiagNode& n) {
    return (n.Shape == TQVLFlowType::ftStart || n.Shape == TQVLFlowType::ftEnd) && n.Text.empty();
}

std::vector<TLayoutSize> FlowSizes(const TORXDiagramModel& model, const TTextMeasure& measure) {
    std::vector<TLayoutSize> sizes;
    sizes.reserve(model.Nodes().size());
    const bool across = model.Direction() == TQVLFlowDirection::fdLeftRight;
    for (const TQVLDiagNode& n : model.Nodes()) {
        if (HasCompartmentBox(n))
            sizes.push_back(CompartmentBoxSize(n, measure));
        else if (n.Role == "fork" || n.Role == "join")
            sizes.push_back(across ? TLayoutSize{kForkBarThickness, kForkBarLength}
                                   : TLayoutSize{kForkBarLength, kForkBarThickness});
        else if (IsMarker(n))
            sizes.push_back({kMarkerSize, kMarkerSize});
        else if ((n.Role == "choice" && n.Text.empty()) || n.Role == "history")
            sizes.push_back({2 * kMarkerSize, 2 * kMarkerSize});
        else if (n.Role == "actor") {
            const TLayoutSize text = measure(n.Text);
            sizes.push_back(
                {std::max(text.Width + 2 * kTextPaddingX, kFigureWidth), text.Height + kFigureHeight});
        } else
            sizes.push_back(FlowBoxSize(n.Shape, measure(n.Text)));
    }
    return sizes;
}

float PenMM(double pixels) {
    return static_cast<float>(std::max(0.05, pixels * kPenMMPerPixel));
}

// The look a diagram text asked for, on a flow element.
void ApplyStyle(TORXBaseFlow& flow, const TQVLDiagStyle& style) {
    if (style.Fill) {
        flow.SetBackColor(*style.Fill);
        flow.SetFilled(true);
    }
    if (style.Stroke) flow.SetColor(*style.Stroke);
    if (style.StrokeWidth) flow.SetPenWidthMM(PenMM(*style.StrokeWidth));
    if (style.Dash && *style.Dash) flow.SetLineType(kDashed);
    if (style.TextColor) flow.SetFontColor(*style.TextColor);
    if (style.Bold) flow.SetBold(*style.Bold);
    if (style.Italic) flow.SetItalic(*style.Italic);
}

// An actor: a stick figure above its caption. The element itself keeps the caption at its foot and
// takes the links; the figure is drawn with a circle and lines in the element's colour.
void AddFigure(TORXBaseLabel& doc, TORXBaseFlow& flow, const TLayoutBox& box, const TQVLDiagStyle& style) {
    flow.SetVertAlign(TQVLVertAlign::vaBottom);
    const TAlphaColor ink = style.Stroke ? *style.Stroke : kOpaqueBlack;
    const double cx = box.X + box.Width / 2;
    const double top = box.Y + 1.0;
    const double head = 5.0;
    TORXBaseFlow* face = AddFlow(doc, {cx - head / 2, top, head, head, true}, TQVLFlowType::ftEllipse, "");
    if (face != nullptr) {
        face->SetColor(ink);
        if (style.Fill) {
            face->SetBackColor(*style.Fill);
            face->SetFilled(true);
        }
    }
    const double neck = top + head;
    const double hip = neck + 6.0;
    const double foot = hip + 5.0;
    const std::pair<TLayoutPoint, TLayoutPoint> strokes[] = {{{cx, neck}, {cx, hip}},
                                                             {{cx - 4.0, neck + 2.0}, {cx + 4.0, neck + 2.0}},
                                                             {{cx, hip}, {cx - 3.5, foot}},
                                                             {{cx, hip}, {cx + 3.5, foot}}};
    for (const auto& [a, b] : strokes) AddLine(doc, a, b, TQVLineType::iiSolid);
}

// A node's element: a captioned circle is an outlined circle with its caption inside (a double circle
// gets a second ring inside the first), a fork a black bar, the rest the node's own shape.
TORXBaseFlow* AddNodeFlow(TORXBaseLabel& doc, const TQVLDiagNode& node, const TLayoutBox& box) {
    const bool circle =
        (node.Shape == TQVLFlowType::ftStart || node.Shape == TQVLFlowType::ftEnd) && !IsMarker(node);
    TORXBaseFlow* flow = AddFlow(doc, box, circle ? TQVLFlowType::ftEllipse : node.Shape, node.Text);
    if (flow == nullptr) return nullptr;
    if (node.HasBackColor) {
        flow->SetBackColor(node.BackColor);
        flow->SetFilled(true);
    }
    if (node.Role == "fork" || node.Role == "join") {
        flow->SetBackColor(kOpaqueBlack);
        flow->SetFilled(true);
    }
    if (node.Role == "note") {
        flow->SetBackColor(kNoteColor);
        flow->SetFilled(true);
    }
    if (node.Role == "actor") AddFigure(doc, *flow, box, node.Style);
    ApplyStyle(*flow, node.Style);
    if (node.Role == "actor") flow->SetColor(0);  // the figure is the outline
    if (circle && node.Shape == TQVLFlowType::ftEnd) {
        const double inset = std::min(box.Width, box.Height) * kInnerRingInset;
        TORXBaseFlow* ring =
            AddFlow(doc, {box.X + inset, box.Y + inset, box.Width - 2 * inset, box.Height - 2 * inset, true},
                    TQVLFlowType::ftEllipse, "");
        if (ring != nullptr) {
            ring->SetFilled(false);  // the caption inside must show through
            ring->SetColor(flow->Color());
            ring->SetPenWidthMM(flow->GetPenWidthMM());
        }
    }
    return flow;
}

// Where a layout placed no containers (the plain layered layout of very large graphs), each frame is
// fitted around its members, inner containers first.
std::vector<TLayoutBox> FitGroupBoxes(const TORXDiagramModel& model, const std::vector<TLayoutBox>& boxes) {
    const auto& groups = model.Groups();
    std::vector<TLayoutBox> out(groups.size());
    for (int pass = 0; pass < 8; ++pass) {  // a nesting deeper than this stays at what it has
        for (std::size_t g = groups.size(); g-- > 0;) {
            double x0 = 1e300, y0 = 1e300, x1 = -1e300, y1 = -1e300;
            auto take = [&](const TLayoutBox& b) {
                if (!b.Placed) return;
                x0 = std::min(x0, b.X), y0 = std::min(y0, b.Y);
                x1 = std::max(x1, b.Right()), y1 = std::max(y1, b.Bottom());
            };
            for (std::size_t n = 0; n < model.Nodes().size(); ++n)
                if (model.Nodes()[n].Group == groups[g].ID) take(boxes[n]);
            for (std::size_t c = 0; c < groups.size(); ++c)
                if (groups[c].Parent == groups[g].ID) take(out[c]);
            if (x1 < x0) continue;
            out[g] = {x0 - kFrameMargin, y0 - kFrameMargin - kFrameTitleBand, x1 - x0 + 2 * kFrameMargin,
                      y1 - y0 + 2 * kFrameMargin + kFrameTitleBand, true};
        }
    }
    return out;
}

// Moves a whole layout down, to make room above it.
void ShiftDown(TGraphLayout& layout, double dy) {
    for (auto* boxes : {&layout.Boxes, &layout.Groups})
        for (TLayoutBox& b : *boxes) b.Y += dy;
    for (TLayoutRoute& r : layout.Routes)
        for (TLayoutPoint& p : r.Points) p.Y += dy;
    layout.Extent.Height += dy;
}

// The diagram's title, bold and centred above everything else.
double AddTitle(TORXBaseLabel& doc, const std::string& title, double width) {
    TQVLFont font;
    font.Bold = true;
    font.FontHeight = kTitleFontHeight;
    const TLayoutSize size = FontMeasure(font)(title);
    auto* item = Create<TORXBaseText>(doc, TQVLItemType::itText);
    if (item == nullptr) return 0;
    item->SetFontHeight(kTitleFontHeight);
    item->SetBold(true);
    item->SetText(title);
    item->SetBase(1, BaseFromMM(std::max(kLayoutMargin, (width - size.Width) / 2)),
                  BaseFromMM(kLayoutMargin));
    return size.Height + kTitleGap;
}

// A container's frame, behind its members, with its title in the top left corner.
// A container of the document at the cluster's place: its caption is the title in the frame's band, and
// moving or deleting it in the editor or through MCP takes its members along.
TORXBaseFlow* AddFrame(TORXBaseLabel& doc, const TQVLDiagGroup& group, const TLayoutBox& box) {
    TORXBaseFlow* frame = AddFlow(doc, box, TQVLFlowType::ftProcess, group.Text);
    if (frame == nullptr) return nullptr;
    frame->SetContainerFrame(TQVLContainerFrame::cfPlain);
    frame->SetVertAlign(TQVLVertAlign::vaTop);
    frame->SetBold(true);
    frame->SetBackColor(kFrameFill);
    frame->SetFilled(true);
    frame->SetColor(kFrameStroke);
    if (group.Region) frame->SetLineType(kDashed);  // the separator between concurrent regions
    ApplyStyle(*frame, group.Style);
    return frame;
}

// Membership follows the model: each frame joins its parent's, each element its innermost frame's.
void JoinContainers(const TORXDiagramModel& model, const std::vector<TORXBaseFlow*>& frames,
                    const std::vector<TORXBaseFlow*>& flows) {
    std::unordered_map<std::string_view, std::size_t> index;
    for (std::size_t g = 0; g < model.Groups().size(); ++g) index.emplace(model.Groups()[g].ID, g);
    auto frameOf = [&](const std::string& id) -> TORXBaseFlow* {
        const auto found = index.find(id);
        return found == index.end() ? nullptr : frames[found->second];
    };
    for (std::size_t g = 0; g < frames.size(); ++g) {
        TORXBaseFlow* parent = frameOf(model.Groups()[g].Parent);
        if (frames[g] != nullptr && parent != nullptr && parent != frames[g])
            frames[g]->SetContainerID(parent->InID());
    }
    for (std::size_t i = 0; i < flows.size(); ++i) {
        TORXBaseFlow* frame = frameOf(model.Nodes()[i].Group);
        if (flows[i] != nullptr && frame != nullptr) flows[i]->SetContainerID(frame->InID());
    }
}

void AddLink(TORXBaseLabel& doc, const TQVLDiagEdge& edge, const TLayoutRoute& route,
             const TLayoutBox& fromBox, const TLayoutBox& toBox, const TORXBaseFlow* from,
             const TORXBaseFlow* to, const TTextMeasure& labelMeasure, TDiagramPlacement& placement) {
    // An invisible link ("~~~") only shapes the layout.
    if (edge.Style.Stroke && AlphaOf(*edge.Style.Stroke) == 0) return;
    auto* link = Create<TORXBaseLink>(doc, TQVLItemType::itLink);
    if (link == nullptr) return;
    const bool bends = route.Kind != TRouteKind::rkStraight && route.Points.size() > 2;
    if (bends) {
        // The route's bends become the user points of a polyline; its ends stay on the sides it meets.
        link->SetLinkType(TQVLinkType::ltPolyline);
        for (std::size_t i = 1; i + 1 < route.Points.size(); ++i)
            link->InsertPoint(BaseFromMM(route.Points[i].X), BaseFromMM(route.Points[i].Y),
                              link->GetNumLinkPoints() + 1);
        link->Bind(from, SideOf(fromBox, route.Points.front()), to, SideOf(toBox, route.Points.back()));
    } else {
        link->SetLinkType(TQVLinkType::ltDirLine);
        link->Bind(from, route.Points.empty() ? -1 : SideOf(fromBox, route.Points.front()), to,
                   route.Points.empty() ? -1 : SideOf(toBox, route.Points.back()));
    }
    link->SetFromType(EdgeTerm(edge.FromArrow));
    link->SetToType(EdgeTerm(edge.Arrow));
    if (edge.Dotted || (edge.Style.Dash && *edge.Style.Dash)) link->SetLineType(kDashed);
    if (edge.Thick) link->SetPenWidthMM(kThickPenMM);
    if (edge.Style.StrokeWidth) link->SetPenWidthMM(PenMM(*edge.Style.StrokeWidth));
    if (edge.Style.Stroke) {
        link->SetColor(*edge.Style.Stroke);
        link->SetFromColor(*edge.Style.Stroke);
        link->SetToColor(*edge.Style.Stroke);
    }
    // The label belongs to the link, so it moves and goes with it.
    link->SetLabel(edge.Text);
    if (route.Points.size() >= 2) {
        if (!edge.FromText.empty())
            AddEndLabel(doc, route.Points[0], route.Points[1], edge.FromText, labelMeasure);
        const std::size_t last = route.Points.size() - 1;
        if (!edge.ToText.empty())
            AddEndLabel(doc, route.Points[last], route.Points[last - 1], edge.ToText, labelMeasure);
    }
    placement.Edges.push_back({edge.FromID, edge.ToID, link->InID()});
}

bool PlaceGraph(TORXBaseLabel& doc, TORXDiagramModel& model, TGraphLayout layout,
                const TTextMeasure& labelMeasure, TDiagramPlacement& placement) {
    const auto& nodes = model.Nodes();
    const auto& groups = model.Groups();
    if (layout.Groups.size() != groups.size()) layout.Groups = FitGroupBoxes(model, layout.Boxes);
    if (!model.Title().empty()) ShiftDown(layout, AddTitle(doc, model.Title(), layout.Extent.Width));
    // Frames first, outer before inner, so that each lies behind what it holds.
    std::vector<TORXBaseFlow*> frames(groups.size(), nullptr);
    for (std::size_t g = 0; g < groups.size(); ++g)
        if (layout.Groups[g].Placed) frames[g] = AddFrame(doc, groups[g], layout.Groups[g]);
    std::vector<TORXBaseFlow*> flows(nodes.size(), nullptr);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!layout.Boxes[i].Placed) continue;
        TORXBaseFlow* flow = AddNodeFlow(doc, nodes[i], layout.Boxes[i]);
        if (flow == nullptr) return false;
        if (HasCompartmentBox(nodes[i])) AddCompartments(doc, *flow, nodes[i], layout.Boxes[i], labelMeasure);
        flows[i] = flow;
        model.SetNodeInId(nodes[i].ID, flow->InID());
        placement.Nodes.push_back({nodes[i].ID, flow->InID()});
    }
    JoinContainers(model, frames, flows);
    // An end is a node's element, or a container's frame when the link names the container.
    auto end = [&](int node, int group) -> std::pair<TORXBaseFlow*, const TLayoutBox*> {
        if (group >= 0)
            return {frames[static_cast<std::size_t>(group)], &layout.Groups[static_cast<std::size_t>(group)]};
        if (node < 0) return {nullptr, nullptr};
        return {flows[static_cast<std::size_t>(node)], &layout.Boxes[static_cast<std::size_t>(node)]};
    };
    for (const TLayoutRoute& route : layout.Routes) {
        const auto [from, fromBox] = end(route.From, route.FromGroup);
        const auto [to, toBox] = end(route.To, route.ToGroup);
        if (from == nullptr || to == nullptr) continue;
        AddLink(doc, model.Edges()[static_cast<std::size_t>(route.Edge)], route, *fromBox, *toBox, from, to,
                labelMeasure, placement);
    }
    return true;
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Sequence diagrams
//-----------------------------------------------------------------------------------------------------

bool PlaceSequence(TORXBaseLabel& doc, const TORXDiagramModel& model, const TTextMeasure& measure,
                   TDiagramPlacement& placement) {
    return PlaceSequenceItems(doc, model, measure, &placement);
}

}  // namespace

//-----------------------------------------------------------------------------------------------------
// [SECTION] Entry
//-----------------------------------------------------------------------------------------------------

TTextMeasure FontMeasure(const TQVLFont& aFont) {
    return [aFont](std::string_view text) {
        const ITextMetrics& metrics = QVLTextMetrics();
        std::int64_t widest = 0;
        std::int64_t lines = 0;
        std::size_t start = 0;
        while (true) {
            std::size_t end = text.find('\n', start);
            std::string_view line =
                text.substr(start, end == std::string_view::npos ? text.size() - start : end - start);
            if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
            widest = std::max(widest, metrics.TextWidth(line, aFont));
            ++lines;
            if (end == std::string_view::npos) break;
            start = end + 1;
        }
        return TLayoutSize{
            static_cast<double>(widest) / static_cast<double>(kBasePerMM),
            static_cast<double>(lines * metrics.LineHeight(aFont)) / static_cast<double>(kBasePerMM)};
    };
}

bool LoadDiagramWithLayout(TORXBaseLabel& aDocument, std::string_view aText, TQVLDiagramFormat aFormat) {
    return PlaceDiagramText(aDocument, aText, aFormat).Ok();
}

bool LoadDiagramWithLayout(TORXBaseLabel& aDocument, std::string_view aText, TQVLDiagramFormat aFormat,
                           TDiagramPlacement& aPlacement) {
    TQVLDiagramLoadResult loaded = PlaceDiagramText(aDocument, aText, aFormat);
    aPlacement = std::move(loaded.Value.Placement);
    return loaded.Ok();
}

TQVLDiagramLoadResult PlaceDiagramText(TORXBaseLabel& aDocument, std::string_view aText,
                                       TQVLDiagramFormat aFormat) {
    // The layout measures captions through helpers that do not know the document.
    const TTextMetricsScope metrics(QVLTextMetrics(&aDocument));
    TQVLDiagramLoad load;
    load.Format = aFormat == TQVLDiagramFormat::dgAuto ? QVLDetectDiagramFormat(aText) : aFormat;
    const std::unique_ptr<TORXDiagramModel> model = QVLImportDiagram(aText, load.Format);
    load.Diagnostics = model->Diagnostics();
    for (const TQVLDiagramDiagnostic& d : load.Diagnostics) {
        if (d.Severity < TQVLDiagramDiagnosticSeverity::dsError) continue;
        const std::string linePart = d.Line >= 1 ? fmt::format(" at line {}", d.Line) : std::string();
        return TQVLDiagramLoadResult::Failure(
            QVLErr::kInvalid, fmt::format("{}{}: {}", d.Code, linePart, d.MessageText), std::move(load));
    }
    // A family without flow elements cannot show the diagram: refuse before anything is created.
    const std::int32_t countBefore = aDocument.GetItemsCount();
    const TTextMeasure captionMeasure = FontMeasure(TQVLFont{});
    TQVLDiagramPlacement& placement = load.Placement;

    aDocument.BeginUpdate();
    aDocument.SetEditorMode(TQVLEditorMode::emFlowChart);
    bool placed = false;
    switch (model->Kind()) {
        case TQVLDiagramKind::dkSequence:
            placed = PlaceSequence(aDocument, *model, captionMeasure, placement);
            break;
        case TQVLDiagramKind::dkMindMap:
            placed = PlaceGraph(aDocument, *model, LayoutTree(*model, FlowSizes(*model, captionMeasure)),
                                captionMeasure, placement);
            break;
        case TQVLDiagramKind::dkIshikawa:
            placed = PlaceGraph(aDocument, *model, LayoutFishbone(*model, FlowSizes(*model, captionMeasure)),
                                captionMeasure, placement);
            break;
        case TQVLDiagramKind::dkChart:
            placed = PlaceChart(aDocument, *model, &placement);
            break;
        case TQVLDiagramKind::dkFlowChart:
            placed = PlaceGraph(aDocument, *model, LayoutGraph(*model, FlowSizes(*model, captionMeasure)),
                                captionMeasure, placement);
            break;
    }
    aDocument.EndUpdate();
    if (!placed) {
        if (aDocument.GetItemsCount() > countBefore) aDocument.Undo();  // take back a partial load
        load.Placement = {};
        return TQVLDiagramLoadResult::Failure(QVLErr::kInvalid, "the diagram could not be placed",
                                              std::move(load));
    }
    for (std::int32_t i = countBefore; i < aDocument.GetItemsCount(); ++i) {
        const TORXBaseItem& item = *aDocument.GetItem(i);
        placement.Items.push_back(item.InID());
        const TQVLRect& b = item.BoundsRect();
        TQVLRect& all = placement.Bounds;
        if (i == countBefore) {
            all = b;
        } else {
            all.Left = std::min(all.Left, b.Left), all.Top = std::min(all.Top, b.Top);
            all.Right = std::max(all.Right, b.Right), all.Bottom = std::max(all.Bottom, b.Bottom);
        }
    }
    return TQVLDiagramLoadResult::Success(std::move(load));
}

TQVLDiagramLoadResult PlaceDiagramFile(TORXBaseLabel& aDocument, const std::string& aFileName,
                                       TQVLDiagramFormat aFormat) {
    std::string text;
    if (!QVLReadDiagramFile(aFileName, text))
        return TQVLDiagramLoadResult::Failure(QVLErr::kNoFile,
                                              fmt::format("{}: cannot read the file", aFileName));
    return PlaceDiagramText(aDocument, text, QVLResolveFileFormat(aFileName, aFormat));
}

void RegisterDiagramLayout() {
    QVLSetDiagramLoader(&LoadDiagramWithLayout);
}

}  // namespace Orvex
