#include "orvex/diagrams/diagram_json.h"

#include <array>

#include "orvex/core/color.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

template <std::size_t N, typename E>
std::string_view NameOf(const std::array<std::string_view, N>& names, E value) {
    const auto index = static_cast<std::size_t>(value);
    return index < N ? names[index] : std::string_view{};
}

}  // namespace

std::string_view QVLDiagramFormatName(TQVLDiagramFormat aValue) {
    static constexpr std::array<std::string_view, 3> kNames{"dgAuto", "dgMermaid", "dgPlantUML"};
    return NameOf(kNames, aValue);
}

std::string_view QVLDiagramKindName(TQVLDiagramKind aValue) {
    static constexpr std::array<std::string_view, 5> kNames{"dkFlowChart", "dkSequence", "dkMindMap",
                                                            "dkIshikawa", "dkChart"};
    return NameOf(kNames, aValue);
}

std::string_view QVLFlowDirectionName(TQVLFlowDirection aValue) {
    static constexpr std::array<std::string_view, 2> kNames{"fdTopDown", "fdLeftRight"};
    return NameOf(kNames, aValue);
}

std::string_view QVLFlowTypeName(TQVLFlowType aValue) {
    static constexpr std::array<std::string_view, kFlowTypeCount> kNames{
        "ftTerminator",  "ftProcess",  "ftDocument",   "ftMultiDocument", "ftDecision",
        "ftData",        "ftDatabase", "ftPredefined", "ftManualInput",   "ftManualOperation",
        "ftPreparation", "ftEllipse",  "ftStart",      "ftStep",          "ftEnd"};
    return NameOf(kNames, aValue);
}

std::string_view QVLDiagEdgeArrowName(TQVLDiagEdgeArrow aValue) {
    static constexpr std::array<std::string_view, 13> kNames{
        "eaArrow",       "eaNone",        "eaCross",       "eaCircle",   "eaRhombus",
        "eaFillRhombus", "eaTriangle",    "eaOpenArrow",   "eaLollipop", "eaCrowOnlyOne",
        "eaCrowZeroOne", "eaCrowOneMany", "eaCrowZeroMany"};
    return NameOf(kNames, aValue);
}

std::string_view QVLSeqEventTypeName(TQVLSeqEventType aValue) {
    static constexpr std::array<std::string_view, 12> kNames{
        "seMessage",     "seNote",    "seActivate", "seDeactivate", "seFragmentStart", "seFragmentElse",
        "seFragmentEnd", "seDivider", "seDelay",    "seCreate",     "seDestroy",       "seAutonumber"};
    return NameOf(kNames, aValue);
}

std::string_view QVLSeqArrowName(TQVLSeqArrow aValue) {
    static constexpr std::array<std::string_view, 4> kNames{"saFilled", "saOpen", "saCross", "saNone"};
    return NameOf(kNames, aValue);
}

std::string_view QVLDiagnosticSeverityName(TQVLDiagramDiagnosticSeverity aValue) {
    static constexpr std::array<std::string_view, 3> kNames{"dsInfo", "dsWarning", "dsError"};
    return NameOf(kNames, aValue);
}

TJSON QVLDiagramModelToJson(const TORXDiagramModel& aModel, TQVLDiagramFormat aFormat) {
    TJSON out = TJSON::object();
    out["format"] = QVLDiagramFormatName(aFormat);
    out["kind"] = QVLDiagramKindName(aModel.Kind());
    out["direction"] = QVLFlowDirectionName(aModel.Direction());
    out["title"] = aModel.Title();
    TJSON nodes = TJSON::array();
    for (const auto& n : aModel.Nodes()) {
        TJSON node = TJSON::object();
        node["id"] = n.ID;
        node["inId"] = n.InId;
        node["text"] = n.Text;
        node["shape"] = QVLFlowTypeName(n.Shape);
        node["hasShape"] = n.HasShape;
        node["side"] = n.Side;
        node["backColor"] = Qvl::Utils::AlphaColorToHex(n.BackColor);
        node["hasBackColor"] = n.HasBackColor;
        nodes.push_back(std::move(node));
    }
    out["nodes"] = std::move(nodes);
    TJSON edges = TJSON::array();
    for (const auto& e : aModel.Edges()) {
        TJSON edge = TJSON::object();
        edge["from"] = e.FromID;
        edge["to"] = e.ToID;
        edge["text"] = e.Text;
        edge["dotted"] = e.Dotted;
        edge["fromArrow"] = QVLDiagEdgeArrowName(e.FromArrow);
        edge["arrow"] = QVLDiagEdgeArrowName(e.Arrow);
        edges.push_back(std::move(edge));
    }
    out["edges"] = std::move(edges);
    TJSON participants = TJSON::array();
    for (const auto& p : aModel.Participants())
        participants.push_back({{"id", p.ID}, {"display", p.Display}});
    out["participants"] = std::move(participants);
    TJSON events = TJSON::array();
    for (const auto& ev : aModel.SeqEvents()) {
        TJSON event = TJSON::object();
        event["type"] = QVLSeqEventTypeName(ev.EventType);
        event["from"] = ev.FromActor;
        event["to"] = ev.ToActor;
        event["text"] = ev.Text;
        event["dotted"] = ev.Dotted;
        event["arrow"] = QVLSeqArrowName(ev.Arrow);
        event["notePosition"] = ev.NotePosition;
        events.push_back(std::move(event));
    }
    out["events"] = std::move(events);
    TJSON diagnostics = TJSON::array();
    for (const auto& d : aModel.Diagnostics()) {
        TJSON diagnostic = TJSON::object();
        diagnostic["severity"] = QVLDiagnosticSeverityName(d.Severity);
        diagnostic["line"] = d.Line;
        diagnostic["code"] = d.Code;
        diagnostic["message"] = d.MessageText;
        diagnostic["source"] = d.SourceText;
        diagnostics.push_back(std::move(diagnostic));
    }
    out["diagnostics"] = std::move(diagnostics);
    return out;
}

TJSON QVLDiagStyleToJson(const TQVLDiagStyle& aStyle) {
    TJSON out = TJSON::object();
    if (aStyle.Fill) out["fill"] = Qvl::Utils::AlphaColorToHex(*aStyle.Fill);
    if (aStyle.Stroke) out["stroke"] = Qvl::Utils::AlphaColorToHex(*aStyle.Stroke);
    if (aStyle.TextColor) out["textColor"] = Qvl::Utils::AlphaColorToHex(*aStyle.TextColor);
    if (aStyle.StrokeWidth) out["strokeWidth"] = *aStyle.StrokeWidth;
    if (aStyle.Dash) out["dash"] = *aStyle.Dash;
    if (aStyle.Bold) out["bold"] = *aStyle.Bold;
    if (aStyle.Italic) out["italic"] = *aStyle.Italic;
    return out;
}

TJSON QVLDiagramModelToJsonFull(const TORXDiagramModel& aModel, TQVLDiagramFormat aFormat) {
    TJSON out = QVLDiagramModelToJson(aModel, aFormat);
    // The core writer emits one JSON entry per record, in order, so the i-th entries pair up.
    for (std::size_t i = 0; i < aModel.Nodes().size(); ++i) {
        const auto& n = aModel.Nodes()[i];
        auto& node = out["nodes"][i];
        node["group"] = n.Group;
        node["role"] = n.Role;
        node["style"] = QVLDiagStyleToJson(n.Style);
        TJSON compartments = TJSON::array();
        for (const auto& c : n.Compartments) compartments.push_back(c);
        node["compartments"] = std::move(compartments);
    }
    for (std::size_t i = 0; i < aModel.Edges().size(); ++i) {
        const auto& e = aModel.Edges()[i];
        auto& edge = out["edges"][i];
        edge["id"] = e.ID;
        edge["fromText"] = e.FromText;
        edge["toText"] = e.ToText;
        edge["thick"] = e.Thick;
        edge["style"] = QVLDiagStyleToJson(e.Style);
    }
    for (std::size_t i = 0; i < aModel.Participants().size(); ++i) {
        const auto& p = aModel.Participants()[i];
        auto& participant = out["participants"][i];
        participant["role"] = p.Role;
        participant["group"] = p.Group;
        participant["style"] = QVLDiagStyleToJson(p.Style);
    }
    for (std::size_t i = 0; i < aModel.SeqEvents().size(); ++i) {
        const auto& ev = aModel.SeqEvents()[i];
        auto& event = out["events"][i];
        event["fragment"] = ev.Fragment;
        event["variant"] = ev.Variant;
        event["number"] = ev.Number;
        event["fromArrow"] = QVLSeqArrowName(ev.FromArrow);
        event["fromCircle"] = ev.FromCircle;
        event["toCircle"] = ev.ToCircle;
        event["style"] = QVLDiagStyleToJson(ev.Style);
    }
    TJSON groups = TJSON::array();
    for (const auto& g : aModel.Groups()) {
        TJSON group = TJSON::object();
        group["id"] = g.ID;
        group["text"] = g.Text;
        group["parent"] = g.Parent;
        group["direction"] = g.Direction ? TJSON(QVLFlowDirectionName(*g.Direction)) : TJSON("");
        group["members"] = g.Members;
        group["style"] = QVLDiagStyleToJson(g.Style);
        groups.push_back(std::move(group));
    }
    out["groups"] = std::move(groups);
    if (const TQVLChart* chart = aModel.Chart()) {
        TJSON data = TJSON::object();
        data["type"] = chart->Type();
        chart->WriteJson(data);
        out["chart"] = std::move(data);
    } else {
        out["chart"] = nullptr;
    }
    return out;
}

}  // namespace Orvex
