#include "orvex/diagrams/diagram_model.h"

#include <algorithm>

namespace Orvex {

void TORXDiagramModel::Clear() {
    fKind = TQVLDiagramKind::dkFlowChart;
    fDirection = TQVLFlowDirection::fdTopDown;
    fTitle.clear();
    fNodes.clear();
    fNodeIndex.clear();
    fEdges.clear();
    fParticipants.clear();
    fSeqEvents.clear();
    fDiagnostics.clear();
    fGroups.clear();
    fChart.reset();
}

TQVLDiagGroup& TORXDiagramModel::AddGroup(TQVLDiagGroup aGroup) {
    fGroups.push_back(std::move(aGroup));
    return fGroups.back();
}

TQVLDiagGroup* TORXDiagramModel::FindGroup(std::string_view aID) {
    const auto found =
        std::find_if(fGroups.begin(), fGroups.end(), [&](const auto& g) { return g.ID == aID; });
    return found == fGroups.end() ? nullptr : &*found;
}

TQVLDiagNode* TORXDiagramModel::FindNode(std::string_view aID) {
    const int index = NodeIndexOf(aID);
    return index < 0 ? nullptr : &fNodes[static_cast<std::size_t>(index)];
}

int TORXDiagramModel::AddNode(std::string_view aID, std::string_view aText, TQVLFlowType aShape,
                              bool aHasShape, std::int8_t aSide, TAlphaColor aBackColor, bool aHasBackColor) {
    if (aID.empty()) return -1;
    const std::string id(aID);
    if (const auto found = fNodeIndex.find(id); found != fNodeIndex.end()) {
        TQVLDiagNode& node = fNodes[static_cast<std::size_t>(found->second)];
        if (!aHasShape || node.HasShape) {
            if (node.Text == node.ID && !aText.empty() && aText != aID) node.Text = aText;
        } else {
            node.Shape = aShape;
            node.HasShape = true;
            if (!aText.empty()) node.Text = aText;
        }
        return found->second;
    }
    TQVLDiagNode node;
    node.ID = id;
    node.Text = !aText.empty() ? std::string(aText) : (aHasShape ? std::string() : id);
    node.Shape = aShape;
    node.HasShape = aHasShape;
    node.Side = aSide;
    node.BackColor = aBackColor;
    node.HasBackColor = aHasBackColor;
    const int index = static_cast<int>(fNodes.size());
    fNodes.push_back(std::move(node));
    fNodeIndex.emplace(id, index);
    return index;
}

int TORXDiagramModel::NodeIndexOf(std::string_view aID) const {
    const auto found = fNodeIndex.find(std::string(aID));
    return found == fNodeIndex.end() ? -1 : found->second;
}

void TORXDiagramModel::SetNodeInId(std::string_view aID, std::int32_t aInId) {
    const int index = NodeIndexOf(aID);
    if (index >= 0) fNodes[static_cast<std::size_t>(index)].InId = aInId;
}

std::int32_t TORXDiagramModel::GetNodeInId(std::string_view aID) const {
    const int index = NodeIndexOf(aID);
    return index < 0 ? 0 : fNodes[static_cast<std::size_t>(index)].InId;
}

void TORXDiagramModel::AddEdge(std::string_view aFrom, std::string_view aTo, std::string_view aText,
                               bool aDotted, TQVLDiagEdgeArrow aArrow) {
    if (aFrom.empty() || aTo.empty()) return;
    TQVLDiagEdge edge;
    edge.FromID = aFrom;
    edge.ToID = aTo;
    edge.Text = aText;
    edge.Dotted = aDotted;
    edge.FromArrow = TQVLDiagEdgeArrow::eaNone;
    edge.Arrow = aArrow;
    fEdges.push_back(std::move(edge));
}

void TORXDiagramModel::AddParticipant(std::string_view aID, std::string_view aDisplay) {
    if (aID.empty()) return;
    for (auto& participant : fParticipants) {
        if (participant.ID != aID) continue;
        if (!aDisplay.empty() && aDisplay != aID) participant.Display = aDisplay;
        return;
    }
    TQVLSeqParticipant participant;
    participant.ID = aID;
    participant.Display = aDisplay.empty() ? aID : aDisplay;
    fParticipants.push_back(std::move(participant));
}

void TORXDiagramModel::AddSeqEvent(const TQVLSeqEvent& aEvent) {
    fSeqEvents.push_back(aEvent);
}

void TORXDiagramModel::AddDiagnostic(TQVLDiagramDiagnosticSeverity aSeverity, std::int32_t aLine,
                                     std::string_view aCode, std::string_view aMessage,
                                     std::string_view aSource) {
    fDiagnostics.push_back(
        {aSeverity, aLine, std::string(aCode), std::string(aMessage), std::string(aSource)});
}

bool TORXDiagramModel::HasDiagnostics(TQVLDiagramDiagnosticSeverity aMinimumSeverity) const {
    return std::any_of(fDiagnostics.begin(), fDiagnostics.end(),
                       [&](const TQVLDiagramDiagnostic& d) { return d.Severity >= aMinimumSeverity; });
}

}  // namespace Orvex
