// The loader: model -> layout (in millimetres) -> items. All item creation happens inside one update
// batch, which the document records as one undo group, so a load is undone in one step.
//
// [SECTION] Measures and mappings
// [SECTION] Item helpers
// [SECTION] Graphs, trees and fishbones
// [SECTION] Sequence diagrams
// [SECTION] Entry
#include "host/layout/diagram_loader.h"

#include <cmath>
#include <string>
#include <vector>

#include "host/layout/fishbone_layout.h"
#include "host/layout/graph_layout.h"
#include "host/layout/sequence_items.h"
#include "host/layout/tree_layout.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/diagrams/sequence_import.h"
#include "orvex/document/document.h"
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

constexpr double kBasePerMM = 1000.0;
constexpr TQVLineType kDashed = TQVLineType::ii22;

std::int64_t Base(double mm) {
    return static_cast<std::int64_t>(std::llround(mm * kBasePerMM));
}

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
    flow->SetBase(1, Base(box.X), Base(box.Y));
    flow->SetBase(2, Base(box.Right()), Base(box.Bottom()));
    flow->SetFlowType(shape);
    flow->SetText(text);
    return flow;
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Graphs, trees and fishbones
//-----------------------------------------------------------------------------------------------------

std::vector<TLayoutSize> FlowSizes(const TORXDiagramModel& model, const TTextMeasure& measure) {
    std::vector<TLayoutSize> sizes;
    sizes.reserve(model.Nodes().size());
    for (const TQVLDiagNode& n : model.Nodes()) sizes.push_back(FlowBoxSize(n.Shape, measure(n.Text)));
    return sizes;
}

void AddLink(TORXBaseLabel& doc, const TQVLDiagEdge& edge, const TLayoutRoute& route,
             const TLayoutBox& fromBox, const TLayoutBox& toBox, const TORXBaseFlow* from,
             const TORXBaseFlow* to, TDiagramPlacement& placement) {
    auto* link = Create<TORXBaseLink>(doc, TQVLItemType::itLink);
    if (link == nullptr) return;
    const bool bends = route.Kind != TRouteKind::rkStraight && route.Points.size() > 2;
    if (bends) {
        // The route's bends become the user points of a polyline; its ends stay on the sides it meets.
        link->SetLinkType(TQVLinkType::ltPolyline);
        for (std::size_t i = 1; i + 1 < route.Points.size(); ++i)
            link->InsertPoint(Base(route.Points[i].X), Base(route.Points[i].Y), link->GetNumLinkPoints() + 1);
        link->Bind(from, SideOf(fromBox, route.Points.front()), to, SideOf(toBox, route.Points.back()));
    } else {
        link->SetLinkType(TQVLinkType::ltDirLine);
        link->Bind(from, route.Points.empty() ? -1 : SideOf(fromBox, route.Points.front()), to,
                   route.Points.empty() ? -1 : SideOf(toBox, route.Points.back()));
    }
    link->SetFromType(EdgeTerm(edge.FromArrow));
    link->SetToType(EdgeTerm(edge.Arrow));
    if (edge.Dotted) link->SetLineType(kDashed);
    // The label belongs to the link, so it moves and goes with it.
    link->SetLabel(edge.Text);
    placement.Edges.push_back({edge.FromID, edge.ToID, link->InID()});
}

bool PlaceGraph(TORXBaseLabel& doc, TORXDiagramModel& model, const TGraphLayout& layout,
                TDiagramPlacement& placement) {
    const auto& nodes = model.Nodes();
    std::vector<TORXBaseFlow*> flows(nodes.size(), nullptr);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!layout.Boxes[i].Placed) continue;
        const TQVLDiagNode& node = nodes[i];
        TORXBaseFlow* flow = AddFlow(doc, layout.Boxes[i], node.Shape, node.Text);
        if (flow == nullptr) return false;
        if (node.HasBackColor) {
            flow->SetBackColor(node.BackColor);
            flow->SetFilled(true);
        }
        flows[i] = flow;
        model.SetNodeInId(node.ID, flow->InID());
        placement.Nodes.push_back({node.ID, flow->InID()});
    }
    for (const TLayoutRoute& route : layout.Routes) {
        const auto from = static_cast<std::size_t>(route.From);
        const auto to = static_cast<std::size_t>(route.To);
        if (flows[from] == nullptr || flows[to] == nullptr) continue;
        AddLink(doc, model.Edges()[static_cast<std::size_t>(route.Edge)], route, layout.Boxes[from],
                layout.Boxes[to], flows[from], flows[to], placement);
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
        return TLayoutSize{static_cast<double>(widest) / kBasePerMM,
                           static_cast<double>(lines * metrics.LineHeight(aFont)) / kBasePerMM};
    };
}

bool LoadDiagramWithLayout(TORXBaseLabel& aDocument, std::string_view aText, TQVLDiagramFormat aFormat) {
    TDiagramPlacement placement;
    return LoadDiagramWithLayout(aDocument, aText, aFormat, placement);
}

bool LoadDiagramWithLayout(TORXBaseLabel& aDocument, std::string_view aText, TQVLDiagramFormat aFormat,
                           TDiagramPlacement& aPlacement) {
    aPlacement = {};
    const std::unique_ptr<TORXDiagramModel> model = QVLParseWithSequenceImport(aText, aFormat);
    if (model == nullptr || model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsError)) return false;
    // A family without flow elements cannot show the diagram: refuse before anything is created.
    const std::int32_t countBefore = aDocument.GetItemsCount();
    const TTextMeasure captionMeasure = FontMeasure(TQVLFont{});

    aDocument.BeginUpdate();
    aDocument.SetEditorMode(TQVLEditorMode::emFlowChart);
    bool placed = false;
    switch (model->Kind()) {
        case TQVLDiagramKind::dkSequence:
            placed = PlaceSequence(aDocument, *model, captionMeasure, aPlacement);
            break;
        case TQVLDiagramKind::dkMindMap:
            placed = PlaceGraph(aDocument, *model, LayoutTree(*model, FlowSizes(*model, captionMeasure)),
                                aPlacement);
            break;
        case TQVLDiagramKind::dkIshikawa:
            placed = PlaceGraph(aDocument, *model, LayoutFishbone(*model, FlowSizes(*model, captionMeasure)),
                                aPlacement);
            break;
        case TQVLDiagramKind::dkFlowChart:
            placed = PlaceGraph(aDocument, *model, LayoutGraph(*model, FlowSizes(*model, captionMeasure)),
                                aPlacement);
            break;
    }
    aDocument.EndUpdate();
    if (!placed && aDocument.GetItemsCount() > countBefore) aDocument.Undo();  // take back a partial load
    if (!placed) aPlacement = {};
    return placed;
}

void RegisterDiagramLayout() {
    QVLSetDiagramLoader(&LoadDiagramWithLayout);
}

}  // namespace Orvex
