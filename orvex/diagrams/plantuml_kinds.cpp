// The PlantUML diagram kinds that describe interactions, flows and structures: sequence, activity, state,
// mind map (and WBS), ArchiMate, class/component/use-case structures, C4, timing and network diagrams.
// Captions join a name and its details with CR LF, the line break the layout stage draws.
//
// [SECTION] Sequence
// [SECTION] Activity
// [SECTION] State
// [SECTION] Mind map
// [SECTION] ArchiMate and structure
// [SECTION] C4, timing, network
#include <map>
#include <optional>
#include <string>

#include "orvex/core/color.h"
#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/kind_helpers.h"
#include "orvex/diagrams/plantuml_parser.h"
#include "orvex/diagrams/plantuml_relation.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::SameTextIgnoringCase;
using Qvl::Utils::ToLowerAscii;
using Qvl::Utils::Trim;

constexpr auto kCaseless = TRegexFlag::rfCaseless;
constexpr auto kNone = TQVLDiagEdgeArrow::eaNone;
constexpr auto kArrow = TQVLDiagEdgeArrow::eaArrow;

std::string Str(std::string_view s) {
    return std::string(s);
}

// "#Orange", "Orange", "#FFA500" or "#FA0": the colour, or nothing when it is none of these.
std::optional<TAlphaColor> PumlColor(std::string_view text) {
    std::string_view name = Trim(text);
    if (name.starts_with('#')) name.remove_prefix(1);
    if (const auto named = Qvl::Utils::NamedColor(name)) return named;
    std::string hex(name);
    if (hex.size() == 3) hex = {hex[0], hex[0], hex[1], hex[1], hex[2], hex[2]};
    TAlphaColor color = 0;
    if (Qvl::Utils::TryParseColor("#" + hex, color)) return color;
    return std::nullopt;
}

// The caption without the bold, italic, underline and strike tags, in one pass.
std::string WithoutTags(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        bool tag = false;
        for (const std::string_view t : {"<b>", "<i>", "<u>", "<s>", "</b>", "</i>", "</u>", "</s>"}) {
            if (text.size() - i >= t.size() && SameTextIgnoringCase(text.substr(i, t.size()), t)) {
                i += t.size();
                tag = true;
                break;
            }
        }
        if (!tag) out += text[i++];
    }
    return out;
}

}  // namespace

//-----------------------------------------------------------------------------------------------------
// [SECTION] Sequence
//-----------------------------------------------------------------------------------------------------

void TORXPlantUMLParser::ParseSequence(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kParticipant(
        R"re(^(?:participant|actor|boundary|control|entity|database|collections)\s+("[^"]+"|[\w.]+)(?:\s+as\s+([\w.]+))?\s*(?:#\w+)?$)re",
        {kCaseless});
    static const TRegex kMessage(
        R"re(^("[^"]+"|[\w.]+)\s*(--?)(>>|>)([xo]?)\s*("[^"]+"|[\w.]+)\s*:\s*(.*)$)re", {kCaseless});
    static const TRegex kNote(
        R"re(^note\s+(right of|left of|over)\s+("[^"]+"|[\w.]+)\s*(?:,\s*("[^"]+"|[\w.]+)\s*)?:\s*(.*)$)re",
        {kCaseless});
    static const TRegex kNoteStart(
        R"re(^note\s+(right of|left of|over)\s+("[^"]+"|[\w.]+)\s*(?:,\s*("[^"]+"|[\w.]+)\s*)?$)re",
        {kCaseless});
    static const TRegex kNoteEnd(R"(^end\s*note$)", {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkSequence;
    aModel.fDirection = TQVLFlowDirection::fdTopDown;
    TRegexMatch m;
    for (std::size_t i = 0; i < aLines.size(); ++i) {
        const std::string_view t = aLines[i];
        if (kParticipant.Match(t, m)) {
            // The alias is what the participant shows.
            aModel.AddParticipant(QVLCleanCaption(m.Group(1)), m.Group(2));
        } else if (kMessage.Match(t, m)) {
            TQVLSeqEvent event;
            event.FromActor = QVLCleanCaption(m.Group(1));
            event.ToActor = QVLCleanCaption(m.Group(5));
            event.Text = QVLCleanCaption(m.Group(6));
            event.Dotted = m.Group(2) == "--";
            event.Arrow = SameTextIgnoringCase(m.Group(4), "x") ? TQVLSeqArrow::saCross
                          : m.Group(3) == ">>"                  ? TQVLSeqArrow::saFilled
                                                                : TQVLSeqArrow::saOpen;
            aModel.AddParticipant(event.FromActor, "");
            aModel.AddParticipant(event.ToActor, "");
            aModel.AddSeqEvent(event);
        } else if (kNote.Match(t, m) || kNoteStart.Match(t, m)) {
            TQVLSeqEvent event;
            event.EventType = TQVLSeqEventType::seNote;
            event.Arrow = TQVLSeqArrow::saNone;
            event.NotePosition = ToLowerAscii(m.Group(1));
            event.FromActor = QVLCleanCaption(m.Group(2));
            event.ToActor = QVLCleanCaption(m.Group(3));
            if (m.GroupCount() > 4) {
                event.Text = QVLCleanCaption(m.Group(4));
            } else {
                std::vector<std::string> text;
                while (i + 1 < aLines.size() && !kNoteEnd.Match(aLines[i + 1]))
                    text.push_back(QVLCleanCaption(aLines[++i]));
                if (i + 1 < aLines.size()) ++i;  // the "end note" line
                event.Text = JoinLines(text);
            }
            aModel.AddParticipant(event.FromActor, "");
            aModel.AddSeqEvent(event);
        }
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Activity
//-----------------------------------------------------------------------------------------------------

// Wiring: every new node is joined from the open ends of the flow (the "frontier"), which it then
// replaces. An if opens with its decision as the frontier and its "then" label; else restarts from the
// decision with the else label; endif joins the ends of all branches, and the decision itself when there
// was no else (the implicit "no" path). A while decision leads into the body with its "is" label;
// endwhile loops the body's ends back to the decision and leaves from it with the endwhile label. Stop and
// end close the flow: nothing follows them until a new start.
void TORXPlantUMLParser::ParseActivity(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kStart(R"(^start\s*$)", {kCaseless});
    static const TRegex kStop(R"(^(stop|end)\s*$)", {kCaseless});
    static const TRegex kAction(R"(^:(.*)[;\]\|]\s*$)", {kCaseless, TRegexFlag::rfDotAll});
    static const TRegex kIf(R"(^if\s*\((.*?)\)\s*then\s*(?:\((.*?)\))?\s*$)", {kCaseless});
    static const TRegex kElse(R"(^else\s*(?:\((.*?)\))?\s*$)", {kCaseless});
    static const TRegex kEndIf(R"(^endif\s*$)", {kCaseless});
    static const TRegex kWhile(R"(^while\s*\((.*?)\)\s*(?:is\s*\((.*?)\))?\s*$)", {kCaseless});
    static const TRegex kEndWhile(R"(^endwhile\s*(?:\((.*?)\))?\s*$)", {kCaseless});
    static const TRegex kActionEnd(R"([;\]\|]\s*$)");
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdTopDown;

    struct TFrame {
        std::string Decision;
        bool IsWhile = false;
        bool HadElse = false;
        std::vector<std::string> Ends;  // open ends of the finished branches
    };
    TIdCounter ids("activity_");
    std::vector<std::string> frontier;
    std::string label;
    std::vector<TFrame> frames;
    auto add = [&](const std::string& caption, TQVLFlowType type) {
        const std::string id = ids.Next();
        aModel.AddNode(id, caption, type, true);
        for (const auto& from : frontier) aModel.AddEdge(from, id, label, false, kArrow);
        label.clear();
        frontier = {id};
        return id;
    };
    TRegexMatch m;
    for (std::size_t i = 0; i < aLines.size(); ++i) {
        const std::string_view t = aLines[i];
        if (kStart.Match(t)) {
            add("", TQVLFlowType::ftStart);
        } else if (kStop.Match(t)) {
            add("", TQVLFlowType::ftEnd);
            frontier.clear();
        } else if (t.starts_with(':')) {
            // An action may run over several lines up to its closing ";".
            std::string text(t);
            while (!kActionEnd.Match(text) && i + 1 < aLines.size()) text += "\r\n" + Str(aLines[++i]);
            if (kAction.Match(text, m)) add(QVLCleanCaption(m.Group(1)), TQVLFlowType::ftProcess);
        } else if (kIf.Match(t, m)) {
            const std::string decision = add(QVLCleanCaption(m.Group(1)), TQVLFlowType::ftDecision);
            frames.push_back({decision, false, false, {}});
            label = QVLCleanCaption(m.Group(2));
        } else if (kElse.Match(t, m) && !frames.empty() && !frames.back().IsWhile) {
            TFrame& frame = frames.back();
            frame.Ends.insert(frame.Ends.end(), frontier.begin(), frontier.end());
            frame.HadElse = true;
            frontier = {frame.Decision};
            label = QVLCleanCaption(m.Group(1));
        } else if (kEndIf.Match(t) && !frames.empty() && !frames.back().IsWhile) {
            TFrame frame = std::move(frames.back());
            frames.pop_back();
            frame.Ends.insert(frame.Ends.end(), frontier.begin(), frontier.end());
            if (!frame.HadElse) frame.Ends.push_back(frame.Decision);
            frontier = std::move(frame.Ends);
            label.clear();
        } else if (kWhile.Match(t, m)) {
            const std::string decision = add(QVLCleanCaption(m.Group(1)), TQVLFlowType::ftDecision);
            frames.push_back({decision, true, false, {}});
            label = QVLCleanCaption(m.Group(2));
        } else if (kEndWhile.Match(t, m) && !frames.empty() && frames.back().IsWhile) {
            const std::string decision = frames.back().Decision;
            frames.pop_back();
            for (const auto& from : frontier) aModel.AddEdge(from, decision, "", false, kArrow);
            frontier = {decision};
            label = QVLCleanCaption(m.Group(1));
        }
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] State
//-----------------------------------------------------------------------------------------------------

void TORXPlantUMLParser::ParseState(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kState(R"re(^state\s+("[^"]+"|[\w.]+)(?:\s+as\s+([\w.]+))?\s*(\{)?\s*$)re",
                               {kCaseless});
    static const TRegex kTransition(R"(^(\[\*\]|[\w.]+)\s*-{1,2}>\s*(\[\*\]|[\w.]+)\s*(?::\s*(.*))?$)",
                                    {kCaseless});
    static const TRegex kDescription(R"(^([\w.]+)\s*:\s*(.+)$)", {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdTopDown;
    TRegexMatch m;
    for (const std::string_view t : aLines) {
        if (kState.Match(t, m)) {
            const std::string name = QVLCleanCaption(m.Group(1));
            const std::string id = m.Matched(2) ? Str(m.Group(2)) : name;
            aModel.AddNode(id, name == id ? "" : name, TQVLFlowType::ftProcess, name != id);
        } else if (kTransition.Match(t, m)) {
            AddStateTransition(aModel, Str(m.Group(1)), Str(m.Group(2)), QVLCleanCaption(m.Group(3)));
        } else if (kDescription.Match(t, m)) {
            aModel.AddNode(m.Group(1), QVLCleanCaption(m.Group(2)), TQVLFlowType::ftProcess, false);
        }
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Mind map
//-----------------------------------------------------------------------------------------------------

// Sides: items written with "-" go left and "+" right; "*" items follow the last "left side" or
// "right side" line, and stay unplaced (0) before either. The first item is the root.
void TORXPlantUMLParser::ParseMindMap(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kItem(R"(^(\*+|[+-]+)(?:\[([^\]]+)\])?(_)?\s*(.+)$)");
    static const TRegex kStyleNode(R"(^node\s*\{)", {kCaseless});
    static const TRegex kStyleDepth(R"(^:depth\((\d+)\)\s*\{)", {kCaseless});
    static const TRegex kBackground(R"(^BackgroundColor\s+(\S+))", {kCaseless});
    static const TRegex kIcon(R"(^<&[^>]+>)");
    static const TRegex kStereotype(R"(<<[^>]+>>\s*$)");
    aModel.fKind = TQVLDiagramKind::dkMindMap;
    aModel.fDirection = TQVLFlowDirection::fdLeftRight;
    TIdCounter ids("mind_");
    TIndentTree tree;
    std::int8_t side = 0;
    bool inStyle = false;
    int styleDepth = -2;  // -1: every node; n: nodes at that depth (the root is depth 0); -2: none
    std::optional<TAlphaColor> allColor;
    std::map<int, TAlphaColor> depthColor;
    TRegexMatch m;
    for (const std::string_view t : aLines) {
        if (SameTextIgnoringCase(t, "<style>")) {
            inStyle = true;
            continue;
        }
        if (inStyle) {
            if (SameTextIgnoringCase(t, "</style>"))
                inStyle = false;
            else if (kStyleNode.Match(t))
                styleDepth = -1;
            else if (kStyleDepth.Match(t, m))
                styleDepth = m.Group(1).size() < 5 ? std::stoi(Str(m.Group(1))) : -2;
            else if (t.starts_with('}'))
                styleDepth = -2;
            else if (kBackground.Match(t, m) && styleDepth != -2) {
                if (const auto color = PumlColor(m.Group(1))) {
                    if (styleDepth == -1)
                        allColor = color;
                    else
                        depthColor[styleDepth] = *color;
                }
            }
            continue;
        }
        if (SameTextIgnoringCase(t, "left side")) {
            side = -1;
            continue;
        }
        if (SameTextIgnoringCase(t, "right side")) {
            side = 1;
            continue;
        }
        if (!kItem.Match(t, m)) continue;
        const std::string marker(m.Group(1));
        const std::string colorText(m.Group(2));
        std::string caption(m.Group(4));
        const int depth = static_cast<int>(marker.size());
        if (kIcon.Match(caption, m)) caption.erase(0, m.End(0));
        std::string plain = WithoutTags(caption);
        if (kStereotype.Match(plain, m)) plain.erase(m.Start(0));
        std::optional<TAlphaColor> color = colorText.empty() ? std::nullopt : PumlColor(colorText);
        if (!color) {
            if (const auto it = depthColor.find(depth - 1); it != depthColor.end())
                color = it->second;
            else
                color = allColor;
        }
        const std::int8_t itemSide = marker[0] == '-'   ? std::int8_t{-1}
                                     : marker[0] == '+' ? std::int8_t{1}
                                                        : side;
        const std::string id = ids.Next();
        const std::string parent = tree.ParentFor(depth);
        const bool root = ids.Count() == 1;
        aModel.AddNode(id, QVLCleanCaption(plain), root ? TQVLFlowType::ftEllipse : TQVLFlowType::ftProcess,
                       true, root ? std::int8_t{0} : itemSide, color.value_or(0), color.has_value());
        aModel.AddEdge(parent, id, "", false, kNone);
        tree.Push(depth, id);
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] ArchiMate and structure
//-----------------------------------------------------------------------------------------------------

void TORXPlantUMLParser::ParseArchimate(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kRelation(R"(^Rel_(\w+)\s*\(\s*([^,]+)\s*,\s*([^,]+)\s*,\s*([^)]+)\s*\)\s*$)",
                                  {kCaseless});
    static const TRegex kElement(
        R"re(^(?:archimate|rectangle)\s+(?:#[\w-]+\s+)?("[^"]+"|[\w.]+)(?:\s+as\s+([\w.]+))?)re",
        {kCaseless});
    static const TRegex kDirection(R"(_(?:up|down|left|right)$)", {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdLeftRight;
    static const std::map<std::string, TQVLDiagEdgeArrow> kTypes{
        {"association", kNone},
        {"composition", TQVLDiagEdgeArrow::eaFillRhombus},
        {"aggregation", TQVLDiagEdgeArrow::eaRhombus},
        {"realization", kArrow},
        {"influence", kArrow},
        {"access", kArrow},
        {"access_r", kArrow},
        {"access_w", kArrow},
        {"access_rw", kArrow}};
    TRegexMatch m;
    for (const std::string_view t : aLines) {
        if (kRelation.Match(t, m)) {
            std::string type = ToLowerAscii(m.Group(1));
            TRegexMatch dir;
            if (kTypes.find(type) == kTypes.end() && kDirection.Match(type, dir)) type.erase(dir.Start(0));
            const auto found = kTypes.find(type);
            if (found == kTypes.end()) continue;
            const std::string from = QVLCleanCaption(m.Group(2));
            const std::string to = QVLCleanCaption(m.Group(3));
            aModel.AddNode(from, "", TQVLFlowType::ftProcess, false);
            aModel.AddNode(to, "", TQVLFlowType::ftProcess, false);
            // Realization, influence and access are drawn dashed in ArchiMate.
            const bool dotted = type != "association" && type != "composition" && type != "aggregation";
            aModel.AddEdge(from, to, QVLCleanCaption(m.Group(4)), dotted, found->second);
        } else if (kElement.Match(t, m)) {
            const std::string name = QVLCleanCaption(m.Group(1));
            aModel.AddNode(m.Matched(2) ? Str(m.Group(2)) : name, name, TQVLFlowType::ftProcess, true);
        }
    }
}

namespace {

// The shape of each element word: boxes for classifiers, a component box for components and
// deployment containers, cylinders for stores, an ellipse for use cases and clouds, a sheet for files.
TQVLFlowType StructureShape(const std::string& word) {
    static const std::map<std::string, TQVLFlowType> kShapes{
        {"class", TQVLFlowType::ftProcess},          {"abstract", TQVLFlowType::ftProcess},
        {"abstract class", TQVLFlowType::ftProcess}, {"interface", TQVLFlowType::ftProcess},
        {"enum", TQVLFlowType::ftProcess},           {"annotation", TQVLFlowType::ftProcess},
        {"object", TQVLFlowType::ftProcess},         {"map", TQVLFlowType::ftProcess},
        {"json", TQVLFlowType::ftProcess},           {"component", TQVLFlowType::ftPredefined},
        {"node", TQVLFlowType::ftPredefined},        {"usecase", TQVLFlowType::ftEllipse},
        {"cloud", TQVLFlowType::ftEllipse},          {"artifact", TQVLFlowType::ftDocument},
        {"file", TQVLFlowType::ftDocument},          {"folder", TQVLFlowType::ftMultiDocument},
        {"frame", TQVLFlowType::ftProcess},          {"rectangle", TQVLFlowType::ftProcess},
        {"package", TQVLFlowType::ftMultiDocument},  {"card", TQVLFlowType::ftProcess},
        {"agent", TQVLFlowType::ftProcess},          {"queue", TQVLFlowType::ftPreparation},
        {"storage", TQVLFlowType::ftDatabase},       {"database", TQVLFlowType::ftDatabase},
        {"actor", TQVLFlowType::ftTerminator}};
    const auto found = kShapes.find(word);
    return found == kShapes.end() ? TQVLFlowType::ftProcess : found->second;
}

bool HasMemberBlock(const std::string& word) {
    return word == "class" || word == "abstract" || word == "abstract class" || word == "interface" ||
           word == "enum" || word == "annotation" || word == "object" || word == "map" || word == "json";
}

}  // namespace

void TORXPlantUMLParser::ParseStructure(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kLeftRight(R"(^left\s+to\s+right\s+direction$)", {kCaseless});
    static const TRegex kTopBottom(R"(^top\s+to\s+bottom\s+direction$)", {kCaseless});
    static const TRegex kDeclaration(
        R"re(^(abstract\s+class|class|interface|abstract|enum|annotation|component|usecase|node|cloud|artifact|folder|frame|rectangle|queue|package|object|map|json|file|storage|card|agent|database|actor)\s+("[^"]+"|\[[^\]]+\]|\([^)]+\)|[\w.:]+)(?:\s+as\s+("[^"]+"|[\w.:]+))?)re",
        {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdTopDown;
    TRegexMatch m;
    for (std::size_t i = 0; i < aLines.size(); ++i) {
        const std::string_view t = aLines[i];
        TPumlRelation relation;
        if (kLeftRight.Match(t)) {
            aModel.fDirection = TQVLFlowDirection::fdLeftRight;
        } else if (kTopBottom.Match(t)) {
            aModel.fDirection = TQVLFlowDirection::fdTopDown;
        } else if (kDeclaration.Match(t, m)) {
            std::string word = ToLowerAscii(m.Group(1));
            if (word.starts_with("abstract") && word.size() > 8) word = "abstract class";
            // "X as Y": the plain name is the identifier and the quoted or bracketed one the caption.
            std::string id = PumlName(m.Group(2));
            std::string caption = id;
            if (m.Matched(3)) {
                const std::string_view first = m.Group(2);
                const bool firstIsCaption =
                    first.starts_with('"') || first.starts_with('[') || first.starts_with('(');
                id = firstIsCaption ? PumlName(m.Group(3)) : PumlName(first);
                caption = firstIsCaption ? PumlName(first) : PumlName(m.Group(3));
            }
            std::vector<std::string> lines;
            if (word == "interface") lines.emplace_back("<<interface>>");
            if (word == "enum") lines.emplace_back("<<enumeration>>");
            if (word == "abstract class" || word == "abstract") lines.emplace_back("<<abstract>>");
            lines.push_back(caption);
            if (HasMemberBlock(word) && t.ends_with('{')) {
                while (i + 1 < aLines.size() && aLines[i + 1] != "}")
                    lines.push_back(QVLCleanCaption(aLines[++i]));
                if (i + 1 < aLines.size()) ++i;
            }
            aModel.AddNode(id, JoinLines(lines), StructureShape(word), true);
        } else if (ParsePumlRelation(t, relation)) {
            aModel.AddNode(relation.From, "", TQVLFlowType::ftProcess, false);
            aModel.AddNode(relation.To, "", TQVLFlowType::ftProcess, false);
            aModel.AddEdge(relation.From, relation.To, relation.Label, relation.Dotted, relation.HeadMark);
            if (TQVLDiagEdge* edge = aModel.LastEdge()) edge->FromArrow = relation.TailMark;
        }
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] C4, timing, network
//-----------------------------------------------------------------------------------------------------

void TORXPlantUMLParser::ParseC4(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kElement(
        R"re(^(Person|Person_Ext|System|System_Ext|SystemDb|SystemDb_Ext|Container|Container_Ext|ContainerDb|ContainerDb_Ext|Component|Component_Ext|ComponentDb|ComponentDb_Ext|Deployment_Node)\s*\(\s*([^,)]+)(?:,\s*(?:"([^"]*)"|([^,)]*)))?)re",
        {kCaseless});
    static const TRegex kRelation(
        R"re(^(?:Rel|Rel_\w+|BiRel)\s*\(\s*([^,)]+),\s*([^,)]+)(?:,\s*(?:"([^"]*)"|([^,)]*)))?)re",
        {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdTopDown;
    TRegexMatch m;
    for (const std::string_view t : aLines) {
        if (kElement.Match(t, m)) {
            const std::string word = ToLowerAscii(m.Group(1));
            TQVLFlowType type = TQVLFlowType::ftProcess;
            if (word.starts_with("person"))
                type = TQVLFlowType::ftEllipse;
            else if (word.find("db") != std::string::npos)
                type = TQVLFlowType::ftDatabase;
            else if (word == "deployment_node")
                type = TQVLFlowType::ftPredefined;
            const std::string id(Trim(m.Group(2)));
            std::string caption = QVLCleanCaption(m.Matched(3) ? m.Group(3) : m.Group(4));
            aModel.AddNode(id, caption.empty() ? id : caption, type, true);
        } else if (kRelation.Match(t, m)) {
            aModel.AddEdge(Trim(m.Group(1)), Trim(m.Group(2)),
                           QVLCleanCaption(m.Matched(3) ? m.Group(3) : m.Group(4)), false, kArrow);
        }
    }
}

void TORXPlantUMLParser::ParseTiming(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kSignal(
        R"re(^(robust|concise|clock|binary|analog|digital)\s+(?:"([^"]+)"|([\w.-]+))(?:\s+as\s+([\w.-]+))?)re",
        {kCaseless});
    static const TRegex kChange(R"(^([\w.-]+)\s+is\s+(.+)$)", {kCaseless});
    static const TRegex kTime(R"(^@(\S+)\s*$)", {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdLeftRight;
    TIdCounter ids("timing_");
    std::map<std::string, std::string> last;  // signal name or alias -> its newest node
    std::string time;
    TRegexMatch m;
    for (const std::string_view t : aLines) {
        if (kSignal.Match(t, m)) {
            const std::string name = QVLCleanCaption(m.Matched(2) ? m.Group(2) : m.Group(3));
            const std::string key = m.Matched(4) ? Str(m.Group(4)) : name;
            const std::string id = ids.Next();
            aModel.AddNode(id, name, TQVLFlowType::ftProcess, true);
            last[key] = id;
        } else if (kTime.Match(t, m)) {
            time = Str(m.Group(1));
        } else if (kChange.Match(t, m)) {
            const auto signal = last.find(Str(m.Group(1)));
            if (signal == last.end()) continue;
            const std::string id = ids.Next();
            aModel.AddNode(id, JoinLines({QVLCleanCaption(m.Group(2)), time.empty() ? "" : "@" + time}),
                           TQVLFlowType::ftProcess, true);
            aModel.AddEdge(signal->second, id, "", false, kArrow);
            signal->second = id;
        }
    }
}

void TORXPlantUMLParser::ParseNetwork(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kNetwork(R"(^network\s+([\w.-]+)\s*\{?)", {kCaseless});
    static const TRegex kMember(R"(^([\w.-]+)\s*(?:\[([^\]]*)\])?\s*;?$)", {kCaseless});
    static const TRegex kAttribute(R"re(^\s*(address|description|group)\s*=\s*(?:"([^"]*)"|([^,\s]+)))re",
                                   {kCaseless});
    static const TRegex kNetworkAddress(R"re(^address\s*=\s*"?([^"]*)"?)re", {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdTopDown;
    TIdCounter ids("network_");
    std::string network;  // the open network block, if any
    TRegexMatch m;
    for (std::size_t i = 0; i < aLines.size(); ++i) {
        const std::string_view t = aLines[i];
        if (kNetwork.Match(t, m)) {
            // The network's own address line belongs in its caption; it is found before the members.
            std::vector<std::string> caption{Str(m.Group(1))};
            for (std::size_t j = i + 1; j < aLines.size() && aLines[j] != "}"; ++j) {
                TRegexMatch a;
                if (kNetworkAddress.Match(aLines[j], a)) caption.push_back(Str(Trim(a.Group(1))));
            }
            network = ids.Next();
            aModel.AddNode(network, JoinLines(caption), TQVLFlowType::ftPredefined, true);
        } else if (t == "}") {
            network.clear();
        } else if (!SameTextIgnoringCase(t, "nwdiag {") && kMember.Match(t, m)) {
            if (SameTextIgnoringCase(m.Group(1), "nwdiag") || SameTextIgnoringCase(m.Group(1), "group"))
                continue;
            std::vector<std::string> caption{Str(m.Group(1))};
            const std::string_view attributes = m.Group(2);
            for (std::size_t start = 0; start < attributes.size();) {
                const std::size_t end = std::min(attributes.find(',', start), attributes.size());
                TRegexMatch attribute;
                if (kAttribute.Match(attributes.substr(start, end - start), attribute) &&
                    ToLowerAscii(attribute.Group(1)) != "group")
                    caption.push_back(
                        QVLCleanCaption(attribute.Matched(2) ? attribute.Group(2) : attribute.Group(3)));
                start = end + 1;
            }
            aModel.AddNode(m.Group(1), JoinLines(caption), TQVLFlowType::ftProcess, true);
            aModel.AddEdge(network, m.Group(1), "", false, kNone);
        }
    }
}

}  // namespace Orvex
