// Mermaid treemaps: `"Section"` lines and `"Leaf": value` lines nested by indentation, an optional
// `:::class` after either, and `classDef name fill:#f96,stroke:#333`.
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_text.h"
#include "orvex/diagrams/chart_treemap.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexMatch;
using TNode = TQVLTreemapChart::TNode;
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;
constexpr auto kError = TQVLDiagramDiagnosticSeverity::dsError;

TJSON NodeJson(const TNode& node) {
    TJSON out{{"name", node.Name}};
    if (node.Leaf) out["value"] = node.Value;
    if (!node.Class.empty()) out["class"] = node.Class;
    if (!node.Leaf) {
        TJSON children = TJSON::array();
        for (const TNode& c : node.Children) children.push_back(NodeJson(c));
        out["children"] = std::move(children);
    }
    return out;
}

}  // namespace

double TQVLTreemapChart::TNode::Total() const {
    if (Leaf) return Value;
    double sum = 0;
    for (const TNode& c : Children) sum += c.Total();
    return sum;
}

void TQVLTreemapChart::WriteJson(TJSON& aOut) const {
    TJSON nodes = TJSON::array();
    for (const TNode& n : Roots) nodes.push_back(NodeJson(n));
    aOut["nodes"] = std::move(nodes);
}

bool QVLReadTreemapChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    TQVLChartText text;
    if (!QVLReadChartText(aText, aFormat, {"treemap-beta", "treemap"}, aModel, text)) return false;
    // A value starts like a number, so that the ":::class" of a section is not taken for one.
    static const TRegex kItem(
        R"re(^("[^"]*"|'[^']*')\s*(?:[:,]\s*([+-]?[\d.][^\s:]*))?\s*(?::::\s*([\w-]+))?$)re");
    static const TRegex kClassDef(R"(^classDef\s+([\w-]+)\s+(.*)$)");
    auto chart = std::make_shared<TQVLTreemapChart>();
    QVLChartBareHeader(aModel, text, "TREEMAP_HEADER");

    // The open sections from the outermost in, with their indentation: a line belongs to the nearest
    // one indented less than itself.
    std::vector<std::pair<std::size_t, std::vector<std::size_t>>> open;  // indent, path of child indices
    for (const TQVLChartLine& line : text.Lines) {
        TRegexMatch m;
        if (kClassDef.MatchAt(line.Text, 0, m)) {
            TQVLDiagStyle style;
            for (const std::string& bad : QVLApplyStyleProperties(m.Group(2), style))
                QVLChartNote(aModel, line, kWarning, "TREEMAP_STYLE",
                             "\"" + bad + "\" is not a style this chart draws.");
            chart->Classes[std::string(m.Group(1))] = style;
            continue;
        }
        if (!kItem.MatchAt(line.Text, 0, m)) {
            QVLChartNote(
                aModel, line, kWarning, "TREEMAP_UNRECOGNIZED_LINE",
                "A treemap line is `\"Section\"` or `\"Leaf\": value`, optionally followed by `:::class`.");
            continue;
        }
        TNode node;
        node.Name = QVLPlainCaption(m.Group(1));
        node.Class = std::string(m.Group(3));
        if (m.Matched(2)) {
            node.Leaf = true;
            if (!QVLChartNumber(m.Group(2), node.Value) || node.Value < 0) {
                QVLChartNote(aModel, line, kError, "TREEMAP_VALUE",
                             "A leaf's value is a number of zero or more.");
                continue;
            }
        }
        while (!open.empty() && open.back().first >= line.Indent) open.pop_back();
        std::vector<TNode>* siblings = &chart->Roots;
        std::vector<std::size_t> path;
        if (!open.empty()) {
            path = open.back().second;
            for (const std::size_t step : path) siblings = &(*siblings)[step].Children;
        }
        path.push_back(siblings->size());
        const bool leaf = node.Leaf;
        siblings->push_back(std::move(node));
        if (!leaf) open.emplace_back(line.Indent, std::move(path));
    }
    // Classes may be defined after their use, so they are checked once everything is read.
    std::vector<const TNode*> pending;
    for (const TNode& n : chart->Roots) pending.push_back(&n);
    while (!pending.empty()) {
        const TNode* n = pending.back();
        pending.pop_back();
        if (!n->Class.empty() && !chart->Classes.contains(n->Class))
            aModel.AddDiagnostic(
                kWarning, 0, "TREEMAP_CLASS",
                "\"" + n->Name + "\" names the class \"" + n->Class + "\", which no classDef defines.", "");
        for (const TNode& c : n->Children) pending.push_back(&c);
    }
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
