// The Mermaid diagram kinds that describe graphs and trees: state, class, mind map, entity-relationship,
// requirement, git graph, timeline, journey, C4, kanban, architecture, treemap, block, ishikawa, tree view
// and gantt. Captions join a name and its details with CR LF, the line break the layout stage draws.
//
// [SECTION] State and class
// [SECTION] Mind map, ER, requirements
// [SECTION] Git graph, timeline, journey, C4
// [SECTION] Kanban, architecture, treemap, block
// [SECTION] Ishikawa, tree view, gantt
#include <map>
#include <string>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/kind_helpers.h"
#include "orvex/diagrams/mermaid_parser.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::SameTextIgnoringCase;
using Qvl::Utils::Trim;

constexpr auto kCaseless = TRegexFlag::rfCaseless;
constexpr auto kNone = TQVLDiagEdgeArrow::eaNone;
constexpr auto kArrow = TQVLDiagEdgeArrow::eaArrow;

auto ExactHeader(std::string_view word) {
    return [word](std::string_view line) { return SameTextIgnoringCase(line, word); };
}

auto PatternHeader(const TRegex& pattern) {
    return [&pattern](std::string_view line) { return pattern.Match(line); };
}

void SetKind(TORXDiagramModel& model, TQVLDiagramKind kind, TQVLFlowDirection direction) {
    model.fKind = kind;
    model.fDirection = direction;
}

std::string Str(std::string_view s) {
    return std::string(s);
}

// The lines of a "{ ... }" block that opens at `open` (the opening line itself excluded); `next` is set to
// the index after the closing brace, or past the end when the block is not closed.
std::vector<std::string_view> BlockBody(const std::vector<TKindLine>& lines, std::size_t open,
                                        std::size_t& next) {
    std::vector<std::string_view> body;
    std::size_t i = open + 1;
    for (; i < lines.size(); ++i) {
        if (lines[i].Text == "}") {
            ++i;
            break;
        }
        body.push_back(lines[i].Text);
    }
    next = i;
    return body;
}

}  // namespace

//-----------------------------------------------------------------------------------------------------
// [SECTION] State and class
//-----------------------------------------------------------------------------------------------------

void TORXMermaidParser::ParseState(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kHeader(R"(^stateDiagram(?:-v2)?\s*$)", {kCaseless});
    static const TRegex kDirLR(R"(^direction\s+LR\s*$)", {kCaseless});
    static const TRegex kDirTB(R"(^direction\s+(TB|TD|BT|RL)\s*$)", {kCaseless});
    static const TRegex kState(R"re(^state\s+(?:"([^"]+)"\s+as\s+)?([\w.-]+)\s*(?:\{)?$)re", {kCaseless});
    static const TRegex kTransition(R"(^(\[\*\]|[\w.-]+)\s*--?>\s*(\[\*\]|[\w.-]+)\s*(?::\s*(.*))?$)",
                                    {kCaseless});
    static const TRegex kDescription(R"(^([\w.-]+)\s*:\s*(.+)$)", {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdTopDown);
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, PatternHeader(kHeader))) {
        const std::string_view t = line.Text;
        if (kDirLR.Match(t)) {
            aModel.fDirection = TQVLFlowDirection::fdLeftRight;
        } else if (kDirTB.Match(t)) {
            aModel.fDirection = TQVLFlowDirection::fdTopDown;
        } else if (kState.Match(t, m)) {
            aModel.AddNode(m.Group(2), QVLCleanCaption(m.Group(1)), TQVLFlowType::ftProcess, m.Matched(1));
        } else if (kTransition.Match(t, m)) {
            AddStateTransition(aModel, Str(m.Group(1)), Str(m.Group(2)), QVLCleanCaption(m.Group(3)));
        } else if (kDescription.Match(t, m)) {
            aModel.AddNode(m.Group(1), QVLCleanCaption(m.Group(2)), TQVLFlowType::ftProcess, false);
        }
    }
}

namespace {

TQVLDiagEdgeArrow ClassMark(std::string_view marker) {
    if (marker == "*") return TQVLDiagEdgeArrow::eaFillRhombus;
    if (marker == "o") return TQVLDiagEdgeArrow::eaRhombus;
    return marker.empty() ? kNone : kArrow;
}

}  // namespace

void TORXMermaidParser::ParseClass(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kDirTB(R"(^direction\s+(TB|TD|BT)\s*$)", {kCaseless});
    static const TRegex kDirLR(R"(^direction\s+(LR|RL)\s*$)", {kCaseless});
    static const TRegex kDeclaration(R"(^(class|interface|enum|annotation)\s+([\w.-]+))", {kCaseless});
    // Markers stand beside the link at the end they belong to: "A <|-- B", "A --|> B", "A *-- B", "A o.. B".
    static const TRegex kRelation(
        R"re(^([\w.-]+)\s*(?:"[^"]*"\s*)?(<\||\*|o|<)?(--|\.\.)(\|>|\*|o|>)?\s*(?:"[^"]*"\s*)?([\w.-]+)\s*(?::\s*(.*))?$)re");
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdLeftRight);
    const auto lines = UsableLines(aLines, ExactHeader("classDiagram"));
    TRegexMatch m;
    for (std::size_t i = 0; i < lines.size();) {
        const std::string_view t = lines[i].Text;
        std::size_t next = i + 1;
        if (kDirTB.Match(t)) {
            aModel.fDirection = TQVLFlowDirection::fdTopDown;
        } else if (kDirLR.Match(t)) {
            aModel.fDirection = TQVLFlowDirection::fdLeftRight;
        } else if (kDeclaration.Match(t, m)) {
            const std::string word = Qvl::Utils::ToLowerAscii(m.Group(1));
            std::vector<std::string> caption;
            if (word == "interface") caption.emplace_back("<<interface>>");
            if (word == "enum") caption.emplace_back("<<enumeration>>");
            caption.emplace_back(m.Group(2));
            if (t.ends_with("{"))
                for (const std::string_view member : BlockBody(lines, i, next))
                    caption.push_back(QVLCleanCaption(member));
            aModel.AddNode(m.Group(2), JoinLines(caption), TQVLFlowType::ftProcess, true);
        } else if (kRelation.Match(t, m)) {
            const std::string from = Str(m.Group(1));
            const std::string to = Str(m.Group(5));
            aModel.AddNode(from, "", TQVLFlowType::ftProcess, false);
            aModel.AddNode(to, "", TQVLFlowType::ftProcess, false);
            aModel.AddEdge(from, to, QVLCleanCaption(m.Group(6)), m.Group(3) == "..", ClassMark(m.Group(4)));
            if (TQVLDiagEdge* edge = aModel.LastEdge()) edge->FromArrow = ClassMark(m.Group(2));
        }
        i = next;
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Mind map, ER, requirements
//-----------------------------------------------------------------------------------------------------

void TORXMermaidParser::ParseMindMap(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kTitle(R"(^title[\s:])", {kCaseless});
    static const TRegex kClassSuffix(R"(\s*:::[\w\s-]*$)");
    static const TRegex kNode(
        R"(^(\w+(?:[-.]\w+)*)\s*(\(\[[^\]]*\]\)|\[\[[^\]]*\]\]|\[\([^\)]*\)\]|\(\(\([^\)]*\)\)\)|\(\([^\)]*\)\)|\{\{[^\}]*\}\}|\[/[^\]]*\\\]|\[\\[^\]]*/\]|\[/[^\]]*/\]|\[\\[^\]]*\\\]|>[^\]]*\]|\[[^\]]*\]|\{[^\}]*\}|\([^\)]*\))$)");
    static const TRegex kBareShape(R"(^[(\[{>])");
    SetKind(aModel, TQVLDiagramKind::dkMindMap, TQVLFlowDirection::fdLeftRight);
    TIdCounter ids("mind_");
    TIndentTree tree;
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, ExactHeader("mindmap"))) {
        std::string_view t = line.Text;
        if (kTitle.Match(t)) {
            std::string_view title = t.substr(5);
            while (title.starts_with(':')) title.remove_prefix(1);
            aModel.fTitle = Str(Trim(title));
            continue;
        }
        if (kClassSuffix.Match(t, m)) t = Trim(t.substr(0, m.Start(0)));
        if (t.find("::") != std::string_view::npos || t.empty())
            continue;  // "::icon(...)" decorates its node
        std::string id;
        std::string caption;
        TQVLFlowType type = TQVLFlowType::ftProcess;
        bool hasShape = false;
        if (kNode.Match(t, m) && DecodeShape(m.Group(2), type, caption)) {
            id = Str(m.Group(1));
            hasShape = true;
        } else {
            TQVLFlowType bareType = TQVLFlowType::ftProcess;
            std::string bareCaption;
            // A shape without an identifier ("((Root))") still gives its shape.
            if (kBareShape.Match(t) && DecodeShape(t, bareType, bareCaption)) {
                type = bareType;
                caption = bareCaption;
                hasShape = true;
            } else {
                caption = QVLCleanCaption(t);
            }
            id = ids.Next();
        }
        const std::string parent = tree.ParentFor(line.Indent);
        aModel.AddNode(id, caption, type, hasShape);
        aModel.AddEdge(parent, id, "", false, kNone);
        tree.Push(line.Indent, id);
    }
}

void TORXMermaidParser::ParseER(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kEntity(R"(^([\w.-]+)\s*\{$)", {kCaseless});
    static const TRegex kRelation(R"(^([\w.-]+)\s+(\S*(?:--|\.\.)\S*)\s+([\w.-]+)\s*(?::\s*(.*))?$)",
                                  {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdLeftRight);
    const auto lines = UsableLines(aLines, ExactHeader("erDiagram"));
    TRegexMatch m;
    for (std::size_t i = 0; i < lines.size();) {
        const std::string_view t = lines[i].Text;
        std::size_t next = i + 1;
        if (kEntity.Match(t, m)) {
            std::vector<std::string> caption{Str(m.Group(1))};
            for (const std::string_view attribute : BlockBody(lines, i, next))
                caption.push_back(QVLCleanCaption(attribute));
            aModel.AddNode(m.Group(1), JoinLines(caption), TQVLFlowType::ftDatabase, true);
        } else if (kRelation.Match(t, m)) {
            aModel.AddNode(m.Group(1), m.Group(1), TQVLFlowType::ftDatabase, true);
            aModel.AddNode(m.Group(3), m.Group(3), TQVLFlowType::ftDatabase, true);
            const bool dotted = m.Group(2).find("..") != std::string_view::npos;
            aModel.AddEdge(m.Group(1), m.Group(3), QVLCleanCaption(m.Group(4)), dotted, kNone);
        }
        i = next;
    }
}

void TORXMermaidParser::ParseRequirements(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kBlock(
        R"(^(requirement|functionalRequirement|interfaceRequirement|performanceRequirement|physicalRequirement|designConstraint|element)\s+([\w.-]+)\s*\{$)",
        {kCaseless});
    static const TRegex kText(R"(^text\s*:\s*(.*)$)", {kCaseless});
    static const TRegex kRelation(
        R"(^([\w.-]+)\s*-\s*(contains|copies|derives|satisfies|verifies|refines|traces)\s*->\s*([\w.-]+)$)",
        {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdLeftRight);
    const auto lines = UsableLines(aLines, ExactHeader("requirementDiagram"));
    TRegexMatch m;
    for (std::size_t i = 0; i < lines.size();) {
        const std::string_view t = lines[i].Text;
        std::size_t next = i + 1;
        if (kBlock.Match(t, m)) {
            const bool element = SameTextIgnoringCase(m.Group(1), "element");
            std::vector<std::string> caption{Str(m.Group(2))};
            TRegexMatch text;
            for (const std::string_view field : BlockBody(lines, i, next))
                if (kText.Match(field, text)) caption.push_back(QVLCleanCaption(text.Group(1)));
            aModel.AddNode(m.Group(2), JoinLines(caption),
                           element ? TQVLFlowType::ftDocument : TQVLFlowType::ftProcess, true);
        } else if (kRelation.Match(t, m)) {
            const std::string word = Qvl::Utils::ToLowerAscii(m.Group(2));
            aModel.AddNode(m.Group(1), "", TQVLFlowType::ftProcess, false);
            aModel.AddNode(m.Group(3), "", TQVLFlowType::ftProcess, false);
            aModel.AddEdge(m.Group(1), m.Group(3), word, word == "traces" || word == "refines", kArrow);
        }
        i = next;
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Git graph, timeline, journey, C4
//-----------------------------------------------------------------------------------------------------

void TORXMermaidParser::ParseGitGraph(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kHeader(R"(^gitGraph(?:\s|$))", {kCaseless});
    static const TRegex kCommit(R"(^commit\b)", {kCaseless});
    static const TRegex kCommitId(R"re(\bid\s*:\s*(?:"([^"]+)"|([^\s]+)))re", {kCaseless});
    static const TRegex kBranchWord(R"(^(branch|checkout|switch|merge)\s+("[^"]+"|[^\s]+))", {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdLeftRight);
    std::map<std::string, std::string> heads{{"main", ""}};  // branch -> its newest commit node
    std::string current = "main";
    TIdCounter commits("git_commit_");
    TIdCounter merges("git_merge_");
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, PatternHeader(kHeader))) {
        const std::string_view t = line.Text;
        if (kCommit.Match(t)) {
            const std::string id = commits.Next();
            std::string caption = "Commit " + std::to_string(commits.Count());
            if (kCommitId.Match(t, m)) caption = QVLCleanCaption(m.Matched(1) ? m.Group(1) : m.Group(2));
            aModel.AddNode(id, caption, TQVLFlowType::ftPredefined, true);
            aModel.AddEdge(heads[current], id, "", false, kArrow);
            heads[current] = id;
        } else if (kBranchWord.Match(t, m)) {
            const std::string word = Qvl::Utils::ToLowerAscii(m.Group(1));
            const std::string name = QVLCleanCaption(m.Group(2));
            if (word == "branch") {
                heads[name] = heads[current];  // a new branch starts at the current commit
                current = name;
            } else if (word == "checkout" || word == "switch") {
                current = name;
            } else {
                const std::string id = merges.Next();
                aModel.AddNode(id, "Merge " + name, TQVLFlowType::ftPredefined, true);
                aModel.AddEdge(heads[current], id, "", false, kArrow);
                aModel.AddEdge(heads[name], id, "", false, kArrow);
                heads[current] = id;
            }
        }
    }
}

void TORXMermaidParser::ParseTimeline(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kTitle(R"(^title\s+(.*)$)", {kCaseless});
    static const TRegex kSection(R"(^section\s+(.*)$)", {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdLeftRight);
    const auto lines = UsableLines(aLines, ExactHeader("timeline"));
    TIdCounter sections("timeline_section_");
    TIdCounter events("timeline_event_");
    std::string section;
    std::string previous;
    TRegexMatch m;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string_view t = lines[i].Text;
        if (kTitle.Match(t, m)) {
            aModel.fTitle = QVLCleanCaption(m.Group(1));
        } else if (kSection.Match(t, m)) {
            section = sections.Next();
            aModel.AddNode(section, QVLCleanCaption(m.Group(1)), TQVLFlowType::ftPredefined, true);
        } else if (const std::size_t colon = t.find(':'); colon != std::string_view::npos && colon > 0) {
            // A period and its events; lines that start with a colon add more events to it.
            std::vector<std::string> caption{QVLCleanCaption(t.substr(0, colon))};
            auto addEvents = [&caption](std::string_view rest) {
                std::size_t start = 0;
                while (start <= rest.size()) {
                    const std::size_t end = std::min(rest.find(':', start), rest.size());
                    caption.push_back(QVLCleanCaption(rest.substr(start, end - start)));
                    start = end + 1;
                }
            };
            addEvents(t.substr(colon + 1));
            while (i + 1 < lines.size() && lines[i + 1].Text.starts_with(':'))
                addEvents(lines[++i].Text.substr(1));
            const std::string id = events.Next();
            aModel.AddNode(id, JoinLines(caption), TQVLFlowType::ftProcess, true);
            aModel.AddEdge(section, id, "", false, kArrow);
            aModel.AddEdge(previous, id, "", false, kArrow);
            previous = id;
        }
    }
}

void TORXMermaidParser::ParseJourney(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kTitle(R"(^title\s+(.*)$)", {kCaseless});
    static const TRegex kSection(R"(^section\s+(.*)$)", {kCaseless});
    static const TRegex kTask(R"(^(.+?)\s*:\s*(\d+)\s*(?::\s*(.*))?$)", {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdLeftRight);
    TIdCounter sections("journey_section_");
    TIdCounter tasks("journey_task_");
    std::string section;
    std::string previous;
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, ExactHeader("journey"))) {
        if (kTitle.Match(line.Text, m)) {
            aModel.fTitle = QVLCleanCaption(m.Group(1));
        } else if (kSection.Match(line.Text, m)) {
            section = sections.Next();
            aModel.AddNode(section, QVLCleanCaption(m.Group(1)), TQVLFlowType::ftPredefined, true);
        } else if (kTask.Match(line.Text, m)) {
            const std::string id = tasks.Next();
            aModel.AddNode(id, QVLCleanCaption(m.Group(1)) + "\r\nScore: " + Str(m.Group(2)),
                           TQVLFlowType::ftProcess, true);
            aModel.AddEdge(section, id, "", false, kArrow);
            aModel.AddEdge(previous, id, "", false, kArrow);
            previous = id;
        }
    }
}

void TORXMermaidParser::ParseC4(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kHeader(R"(^C4(?:Context|Container|Component|Dynamic|Deployment))", {kCaseless});
    static const TRegex kTitle(R"(^title\s+(.*)$)", {kCaseless});
    static const TRegex kElement(
        R"re(^(Person|Person_Ext|System|System_Ext|SystemDb|SystemDb_Ext|Container|Container_Ext|ContainerDb|ContainerDb_Ext|Component|Component_Ext|ComponentDb|ComponentDb_Ext|Deployment_Node)\s*\(\s*([^,]+)\s*,\s*"([^"]+)")re",
        {kCaseless});
    static const TRegex kRelation(R"re(^Rel(?:_[A-Za-z]+)?\s*\(\s*([^,]+)\s*,\s*([^,]+)\s*,\s*"([^"]*)")re",
                                  {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdLeftRight);
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, PatternHeader(kHeader))) {
        if (kTitle.Match(line.Text, m)) {
            aModel.fTitle = QVLCleanCaption(m.Group(1));
        } else if (kElement.Match(line.Text, m)) {
            const std::string word = Qvl::Utils::ToLowerAscii(m.Group(1));
            TQVLFlowType type = TQVLFlowType::ftProcess;
            if (word.starts_with("person"))
                type = TQVLFlowType::ftEllipse;
            else if (word.find("db") != std::string::npos)
                type = TQVLFlowType::ftDatabase;
            else if (word == "deployment_node")
                type = TQVLFlowType::ftPredefined;
            aModel.AddNode(Trim(m.Group(2)), QVLCleanCaption(m.Group(3)), type, true);
        } else if (kRelation.Match(line.Text, m)) {
            aModel.AddEdge(Trim(m.Group(1)), Trim(m.Group(2)), QVLCleanCaption(m.Group(3)), false, kArrow);
        }
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Kanban, architecture, treemap, block
//-----------------------------------------------------------------------------------------------------

namespace {

// "assigned: 'knsv', ticket: MC-2037" as one caption line per item, quotes removed.
std::vector<std::string> Metadata(std::string_view text) {
    std::vector<std::string> out;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        std::string item;
        for (const char c : Trim(text.substr(start, end - start)))
            if (c != '\'' && c != '"') item += c;
        if (!item.empty()) out.push_back(item);
        start = end + 1;
    }
    return out;
}

}  // namespace

void TORXMermaidParser::ParseKanban(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kBracketed(R"(^(?:([\w.-]+))?\[([^\]]+)\](?:@\{\s*(.*?)\s*\})?$)", {kCaseless});
    static const TRegex kPlain(R"(^([\w.-]+)(?:@\{\s*(.*?)\s*\})?$)", {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdLeftRight);
    TIdCounter ids("kanban_");
    TIndentTree tree;
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, ExactHeader("kanban"))) {
        std::string id;
        std::vector<std::string> caption;
        if (kBracketed.Match(line.Text, m)) {
            id = m.Group(1).empty() ? ids.Next() : Str(m.Group(1));
            caption.push_back(QVLCleanCaption(m.Group(2)));
            for (auto& item : Metadata(m.Group(3))) caption.push_back(std::move(item));
        } else if (kPlain.Match(line.Text, m)) {
            id = Str(m.Group(1));
            caption.push_back(id);
            for (auto& item : Metadata(m.Group(2))) caption.push_back(std::move(item));
        } else {
            continue;
        }
        // The shallowest items are the columns; everything below them is a card.
        const std::string parent = tree.ParentFor(line.Indent);
        aModel.AddNode(id, JoinLines(caption),
                       parent.empty() ? TQVLFlowType::ftPredefined : TQVLFlowType::ftProcess, true);
        aModel.AddEdge(parent, id, "", false, kNone);
        tree.Push(line.Indent, id);
    }
}

void TORXMermaidParser::ParseArchitecture(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kItem(
        R"(^(group|service)\s+([\w.-]+)(?:\(([^)]*)\))?\[([^\]]+)\](?:\s+in\s+([\w.-]+))?$)", {kCaseless});
    static const TRegex kJunction(R"(^junction\s+([\w.-]+)(?:\s+in\s+([\w.-]+))?$)", {kCaseless});
    static const TRegex kEdge(
        R"(^([\w.-]+)(?:\{group\})?:[TBLR]\s*(?:<)?--(?:>)?\s*[TBLR]:([\w.-]+)(?:\{group\})?$)", {kCaseless});
    static const TRegex kAlign(R"(^align\s+)", {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdLeftRight);
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, ExactHeader("architecture-beta"))) {
        const std::string_view t = line.Text;
        if (kAlign.Match(t)) continue;
        if (kItem.Match(t, m)) {
            const bool group = SameTextIgnoringCase(m.Group(1), "group");
            const std::string icon = Qvl::Utils::ToLowerAscii(m.Group(3));
            TQVLFlowType type = TQVLFlowType::ftProcess;
            if (group)
                type = TQVLFlowType::ftPredefined;
            else if (icon == "database" || icon == "disk")
                type = TQVLFlowType::ftDatabase;
            else if (icon == "internet" || icon == "cloud")
                type = TQVLFlowType::ftEllipse;
            aModel.AddNode(m.Group(2), QVLCleanCaption(m.Group(4)), type, true);
            aModel.AddEdge(m.Group(5), m.Group(2), "contains", true, kNone);
        } else if (kJunction.Match(t, m)) {
            aModel.AddNode(m.Group(1), "", TQVLFlowType::ftStart, true);
            aModel.AddEdge(m.Group(2), m.Group(1), "contains", true, kNone);
        } else if (kEdge.Match(t, m)) {
            const bool arrow = t.find("-->") != std::string_view::npos;
            aModel.AddEdge(m.Group(1), m.Group(2), "", false, arrow ? kArrow : kNone);
        }
    }
}

void TORXMermaidParser::ParseTreemap(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kHeader(R"(^treemap(?:-beta)?$)", {kCaseless});
    static const TRegex kItem(R"re(^"([^"]+)"(?:\s*:\s*(.+?))?(?:\s*:::\S+)?$)re", {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkMindMap, TQVLFlowDirection::fdLeftRight);
    TIdCounter ids("treemap_");
    TIndentTree tree;
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, PatternHeader(kHeader))) {
        if (!kItem.Match(line.Text, m)) continue;
        const std::string id = ids.Next();
        const std::string parent = tree.ParentFor(line.Indent);
        aModel.AddNode(id, JoinLines({QVLCleanCaption(m.Group(1)), QVLCleanCaption(m.Group(2))}),
                       TQVLFlowType::ftProcess, true);
        aModel.AddEdge(parent, id, "", false, kNone);
        tree.Push(line.Indent, id);
    }
}

void TORXMermaidParser::ParseBlock(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kSkip(R"(^(columns|space)(?::|\s))", {kCaseless});
    // Nested block openers ("block:group1:2", "block") and a lone "space" hold no node either.
    static const TRegex kBlockWord(R"(^(block\b|space$))", {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdLeftRight);
    for (const std::string_view raw : aLines) {
        std::string_view t = Trim(raw);
        if (const std::size_t comment = t.find("%%"); comment != std::string_view::npos)
            t = Trim(t.substr(0, comment));
        if (t.empty() || kSkip.Match(t) || kBlockWord.Match(t) || SameTextIgnoringCase(t, "end")) continue;
        ParseFlowLine(t, aModel);
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Ishikawa, tree view, gantt
//-----------------------------------------------------------------------------------------------------

void TORXMermaidParser::ParseIshikawa(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kTitle(R"(^title\s+(.*)$)", {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkIshikawa, TQVLFlowDirection::fdLeftRight);
    TIdCounter ids("ishikawa_");
    TIndentTree tree;
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, ExactHeader("ishikawa-beta"))) {
        if (kTitle.Match(line.Text, m)) {
            aModel.fTitle = QVLCleanCaption(m.Group(1));
            continue;
        }
        const std::string id = ids.Next();
        const std::string parent = tree.ParentFor(line.Indent);
        // The first line is the effect at the head; categories and causes point towards it.
        const TQVLFlowType type = parent.empty() && ids.Count() == 1 ? TQVLFlowType::ftTerminator
                                  : tree.Depth() <= 1                ? TQVLFlowType::ftPredefined
                                                                     : TQVLFlowType::ftProcess;
        aModel.AddNode(id, QVLCleanCaption(line.Text), type, true);
        aModel.AddEdge(id, parent, "", false, kNone);
        tree.Push(line.Indent, id);
    }
}

void TORXMermaidParser::ParseTreeView(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kTitle(R"(^title\s+(.*)$)", {kCaseless});
    static const TRegex kPrefix(R"(^[\x{2500}-\x{257F}\s]+)");
    SetKind(aModel, TQVLDiagramKind::dkMindMap, TQVLFlowDirection::fdLeftRight);
    TIdCounter ids("treeview_");
    TIndentTree tree;
    TRegexMatch m;
    for (const std::string_view raw : aLines) {
        const std::string_view trimmed = Trim(raw);
        if (trimmed.empty() || trimmed.starts_with("%%") || SameTextIgnoringCase(trimmed, "treeView-beta"))
            continue;
        if (kTitle.Match(trimmed, m)) {
            aModel.fTitle = QVLCleanCaption(m.Group(1));
            continue;
        }
        // The depth is the count of characters before the name: blanks and box-drawing characters alike.
        int depth = 0;
        std::string_view name = raw;
        if (kPrefix.Match(raw, m)) {
            for (const char c : m.Group(0))
                if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++depth;
            name = raw.substr(m.End(0));
        }
        name = Trim(name);
        if (name.empty()) continue;
        const bool folder = name.ends_with('/');
        if (folder) name.remove_suffix(1);
        const std::string id = ids.Next();
        const std::string parent = tree.ParentFor(depth);
        aModel.AddNode(id, QVLCleanCaption(name),
                       folder ? TQVLFlowType::ftPredefined : TQVLFlowType::ftDocument, true);
        aModel.AddEdge(parent, id, "", false, kNone);
        tree.Push(depth, id);
    }
}

void TORXMermaidParser::ParseGantt(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kTitle(R"(^title\s+(.+)$)", {kCaseless});
    static const TRegex kSetting(
        R"(^(dateFormat|axisFormat|tickInterval|excludes|includes|todayMarker|weekday)\b)", {kCaseless});
    static const TRegex kSection(R"(^section\s+(.+)$)", {kCaseless});
    static const TRegex kTask(R"(^(.+?)\s*:\s*(.+)$)", {kCaseless});
    static const TRegex kTag(R"(^(done|active|crit|milestone)$)", {kCaseless});
    static const TRegex kIdentifier(R"(^[A-Za-z_][\w.-]*$)", {kCaseless});
    static const TRegex kAfter(R"(\bafter\s+([\w.-]+))", {kCaseless});
    SetKind(aModel, TQVLDiagramKind::dkFlowChart, TQVLFlowDirection::fdLeftRight);
    TIdCounter sections("gantt_section_");
    TIdCounter tasks("gantt_task_");
    std::string section;
    TRegexMatch m;
    for (const auto& line : UsableLines(aLines, ExactHeader("gantt"))) {
        const std::string_view t = line.Text;
        if (kTitle.Match(t, m)) {
            aModel.fTitle = QVLCleanCaption(m.Group(1));
        } else if (kSetting.Match(t)) {
            continue;
        } else if (kSection.Match(t, m)) {
            section = sections.Next();
            aModel.AddNode(section, QVLCleanCaption(m.Group(1)), TQVLFlowType::ftPredefined, true);
        } else if (kTask.Match(t, m)) {
            std::string id = tasks.Next();
            std::vector<std::string> tags;
            std::vector<std::string> after;
            const std::string_view meta = m.Group(2);
            for (std::size_t start = 0; start < meta.size();) {
                const std::size_t end = std::min(meta.find(',', start), meta.size());
                const std::string_view item = Trim(meta.substr(start, end - start));
                TRegexMatch a;
                if (kTag.Match(item))
                    tags.emplace_back(Qvl::Utils::ToLowerAscii(item));
                else if (kIdentifier.Match(item))
                    id = Str(item);
                else if (kAfter.Match(item, a))
                    after.emplace_back(a.Group(1));
                start = end + 1;
            }
            std::string tagLine;
            for (const auto& tag : tags) tagLine += (tagLine.empty() ? "" : ", ") + tag;
            aModel.AddNode(id, JoinLines({QVLCleanCaption(m.Group(1)), tagLine}), TQVLFlowType::ftProcess,
                           true);
            aModel.AddEdge(section, id, "", false, kNone);
            for (const auto& before : after) aModel.AddEdge(before, id, "", false, kArrow);
        }
    }
}

}  // namespace Orvex
