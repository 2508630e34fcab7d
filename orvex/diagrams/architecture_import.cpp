// The full reader of Mermaid architecture diagrams: groups are containers (nested with "in"), services
// and junctions their members, and edges keep their arrows and the sides they leave and reach.
#include <string>
#include <vector>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/architecture_import.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;

TQVLFlowType IconShape(std::string_view icon) {
    const std::string lower = Qvl::Utils::ToLowerAscii(icon);
    if (lower == "database" || lower == "disk") return TQVLFlowType::ftDatabase;
    if (lower == "internet" || lower == "cloud") return TQVLFlowType::ftEllipse;
    return TQVLFlowType::ftProcess;
}

// "L", "R", "T", "B": where the edge meets the element, as a placement hint for the target.
std::string SideHint(std::string_view fromSide, std::string_view toSide) {
    if (fromSide == "R" && toSide == "L") return "right";
    if (fromSide == "L" && toSide == "R") return "left";
    if (fromSide == "B" && toSide == "T") return "down";
    if (fromSide == "T" && toSide == "B") return "up";
    return {};
}

}  // namespace

void QVLReadArchitecture(std::string_view aText, TORXDiagramModel& aModel) {
    static const TRegex kItem(
        R"(^(group|service)\s+([\w.-]+)(?:\(([^)]*)\))?(?:\[([^\]]*)\])?(?:\s+in\s+([\w.-]+))?$)",
        {TRegexFlag::rfCaseless});
    static const TRegex kJunction(R"(^junction\s+([\w.-]+)(?:\s+in\s+([\w.-]+))?$)",
                                  {TRegexFlag::rfCaseless});
    static const TRegex kEdge(
        R"(^([\w.-]+)(\{group\})?:([TBLR])\s*(<)?-(?:-|\.)?(>)?\s*([TBLR]):([\w.-]+)(\{group\})?$)",
        {TRegexFlag::rfCaseless});
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdLeftRight;
    aModel.fTitle = QVLFrontMatterValue(aText, "title");
    const auto lines = QVLSplitDiagramLines(aText);
    bool header = false;
    TRegexMatch m;
    auto place = [&](const std::string& id, const std::string& parent) {
        if (parent.empty()) return;
        TQVLDiagGroup* group = aModel.FindGroup(parent);
        if (group == nullptr) {
            TQVLDiagGroup added;
            added.ID = parent;
            added.Text = parent;
            group = &aModel.AddGroup(std::move(added));
        }
        group->Members.push_back(id);
        if (TQVLDiagNode* node = aModel.FindNode(id)) node->Group = parent;
    };
    for (std::size_t i = QVLFrontMatterEnd(lines); i < lines.size(); ++i) {
        const std::string_view t = Trim(lines[i]);
        const auto lineNo = static_cast<std::int32_t>(i + 1);
        if (t.empty() || t.starts_with("%%")) continue;
        if (!header) {
            header = true;
            continue;
        }
        if (kItem.Match(t, m)) {
            const std::string id(m.Group(2));
            const std::string text = QVLPlainCaption(m.Matched(4) ? m.Group(4) : m.Group(2));
            const std::string parent(m.Group(5));
            if (Qvl::Utils::SameTextIgnoringCase(m.Group(1), "group")) {
                TQVLDiagGroup group;
                group.ID = id;
                group.Text = text;
                group.Parent = parent;
                aModel.AddGroup(std::move(group));
            } else {
                aModel.AddNode(id, text, IconShape(m.Group(3)), true);
                place(id, parent);
            }
        } else if (kJunction.Match(t, m)) {
            aModel.AddNode(m.Group(1), "", TQVLFlowType::ftStart, true);
            if (TQVLDiagNode* node = aModel.FindNode(m.Group(1))) node->Text.clear();
            place(std::string(m.Group(1)), std::string(m.Group(2)));
        } else if (kEdge.Match(t, m)) {
            TQVLDiagEdge edge;
            edge.FromID = m.Group(1);
            edge.ToID = m.Group(7);
            // "{group}" makes the edge leave or reach the service's group rather than the service.
            if (m.Matched(2))
                if (const TQVLDiagNode* node = aModel.FindNode(edge.FromID);
                    node != nullptr && !node->Group.empty())
                    edge.FromID = node->Group;
            if (m.Matched(8))
                if (const TQVLDiagNode* node = aModel.FindNode(edge.ToID);
                    node != nullptr && !node->Group.empty())
                    edge.ToID = node->Group;
            edge.FromArrow = m.Matched(4) ? TQVLDiagEdgeArrow::eaArrow : TQVLDiagEdgeArrow::eaNone;
            edge.Arrow = m.Matched(5) ? TQVLDiagEdgeArrow::eaArrow : TQVLDiagEdgeArrow::eaNone;
            edge.Hint = SideHint(m.Group(3), m.Group(6));
            aModel.MutableEdges().push_back(std::move(edge));
        } else if (Qvl::Utils::StartsWithIgnoringCase(t, "align")) {
            aModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsInfo, lineNo, "ALIGN_IGNORED",
                                 "Alignment lines are not drawn.", t);
        } else if (Qvl::Utils::StartsWithIgnoringCase(t, "title")) {
            aModel.fTitle = QVLPlainCaption(Trim(t.substr(5)));
        } else {
            aModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsWarning, lineNo,
                                 "MERMAID_UNRECOGNIZED_LINE", "The line was not recognized and was ignored.",
                                 t);
        }
    }
    if (aModel.Nodes().empty() && aModel.Groups().empty())
        aModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsError, 0, "DIAGRAM_EMPTY_RESULT",
                             "The diagram did not produce any renderable element.", "");
}

}  // namespace Orvex
