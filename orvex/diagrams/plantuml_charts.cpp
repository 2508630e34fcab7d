// The PlantUML kinds that are data, drawings or plans rather than UML: chronology, JSON/YAML data, salt
// wireframes, grammars, file trees, ditaa drawings, Chen entity-relationship diagrams and gantt charts.
//
// [SECTION] Chronology and data
// [SECTION] Salt and grammar
// [SECTION] Files and ditaa
// [SECTION] Chen and gantt
#include <map>
#include <set>
#include <string>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/kind_helpers.h"
#include "orvex/diagrams/plantuml_parser.h"

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

std::string_view WithoutTrailingComma(std::string_view s) {
    s = Trim(s);
    if (s.ends_with(',')) s.remove_suffix(1);
    return Trim(s);
}

bool IsNameStart(char c) {
    const auto u = static_cast<unsigned char>(c);
    return u >= 0x80 || (u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z') || c == '_';
}
bool IsNameByte(char c) {
    return IsNameStart(c) || (c >= '0' && c <= '9') || c == '.' || c == '-';
}

// The names a grammar definition uses, in order; quoted terminals are skipped. One pass over the text.
std::vector<std::string> GrammarNames(std::string_view text) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < text.size();) {
        const char c = text[i];
        if (c == '"' || c == '\'') {
            const std::size_t close = text.find(c, i + 1);
            i = close == std::string_view::npos ? text.size() : close + 1;
        } else if (IsNameStart(c)) {
            const std::size_t start = i;
            while (i < text.size() && IsNameByte(text[i])) ++i;
            names.emplace_back(text.substr(start, i - start));
        } else {
            ++i;
        }
    }
    return names;
}

// The text without "<...>" markup. One pass over the text.
std::string WithoutMarkup(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t open = text.find('<', i);
        const std::size_t close = open == std::string_view::npos ? open : text.find('>', open + 1);
        if (close == std::string_view::npos) {
            out += text.substr(i);
            break;
        }
        out += text.substr(i, open - i);
        i = close + 1;
    }
    return out;
}

}  // namespace

//-----------------------------------------------------------------------------------------------------
// [SECTION] Chronology and data
//-----------------------------------------------------------------------------------------------------

void TORXPlantUMLParser::ParseChronology(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kEvent(R"(^\[([^\]]+)\]\s+happens\s+on\s+(.+)$)", {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdLeftRight;
    TIdCounter ids("chronology_");
    std::string previous;
    TRegexMatch m;
    for (const std::string_view t : aLines) {
        if (!kEvent.Match(t, m)) continue;
        const std::string id = ids.Next();
        aModel.AddNode(id, JoinLines({QVLCleanCaption(m.Group(1)), QVLCleanCaption(m.Group(2))}),
                       TQVLFlowType::ftPredefined, true);
        aModel.AddEdge(previous, id, "", false, kArrow);
        previous = id;
    }
}

// JSON nests by its brackets. YAML nests by indentation, which content lines no longer carry, so a key
// without a value holds the entries that follow it up to the next such key.
void TORXPlantUMLParser::ParseData(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kPair(R"re(^"?([^":=]+)"?\s*[:=]\s*(.*)$)re", {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkMindMap;
    aModel.fDirection = TQVLFlowDirection::fdLeftRight;
    aModel.AddNode("data_root", "Data", TQVLFlowType::ftEllipse, true);
    TIdCounter ids("data_");
    const bool json = !aLines.empty() && (aLines.front().starts_with('{') || aLines.front().starts_with('['));
    std::vector<std::string> parents;  // JSON: the open containers; the first bracket is the root itself
    std::string yamlParent;
    auto add = [&](const std::string& parent, const std::string& caption) {
        const std::string id = ids.Next();
        aModel.AddNode(id, caption, TQVLFlowType::ftProcess, true);
        aModel.AddEdge(parent.empty() ? "data_root" : parent, id, "", false, kNone);
        return id;
    };
    TRegexMatch m;
    for (const std::string_view raw : aLines) {
        const std::string_view t = WithoutTrailingComma(raw);
        if (t.empty() || t == "---") continue;
        if (json) {
            const std::string parent = parents.empty() ? std::string() : parents.back();
            if (t == "{" || t == "[") {
                parents.push_back(parents.empty() ? std::string("data_root") : parent);
            } else if (t == "}" || t == "]") {
                if (!parents.empty()) parents.pop_back();
            } else if (kPair.Match(t, m)) {
                const std::string key = QVLCleanCaption(m.Group(1));
                const std::string_view value = Trim(m.Group(2));
                if (value == "{" || value == "[") {
                    parents.push_back(add(parent, key));
                } else {
                    add(parent, key + ": " + QVLCleanCaption(value));
                }
            } else {
                add(parent, QVLCleanCaption(t));
            }
            continue;
        }
        std::string_view item = t;
        const bool listItem = item.starts_with("- ") || item == "-";
        if (listItem) item = Trim(item.substr(1));
        if (kPair.Match(item, m) && !listItem) {
            const std::string key = QVLCleanCaption(m.Group(1));
            const std::string_view value = Trim(m.Group(2));
            if (value.empty()) {
                yamlParent = add("", key);
            } else {
                add(yamlParent, key + ": " + QVLCleanCaption(value));
            }
        } else if (!item.empty()) {
            add(yamlParent, QVLCleanCaption(item));
        }
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Salt and grammar
//-----------------------------------------------------------------------------------------------------

// Each "{" block is a container (its style character names it); each cell of a row, cells being parted by
// "|", is a widget joined to its container by a dotted line. "." cells are empty placeholders.
void TORXPlantUMLParser::ParseSalt(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kBlockStyle(R"(^\{[+#^!])");
    static const TRegex kSeparator(R"(^[-=~.]+$)");
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdTopDown;
    TIdCounter ids("salt_");
    std::vector<std::string> containers;
    for (const std::string_view t : aLines) {
        if (t.starts_with('{')) {
            std::string caption = "Group";
            std::string_view rest = t.substr(1);
            if (kBlockStyle.Match(t)) {
                switch (t[1]) {
                    case '+':
                        caption = "Box";
                        break;
                    case '#':
                        caption = "Table";
                        break;
                    case '^':
                        caption = "Group box";
                        break;
                    default:
                        caption = "Scroll area";
                        break;
                }
                rest = t.substr(2);
            }
            if (const std::string title = QVLCleanCaption(rest); !title.empty()) caption = title;
            const std::string id = ids.Next();
            aModel.AddNode(id, caption, TQVLFlowType::ftPredefined, true);
            aModel.AddEdge(containers.empty() ? "" : containers.back(), id, "", true, kNone);
            containers.push_back(id);
            continue;
        }
        if (t.starts_with('}')) {
            if (!containers.empty()) containers.pop_back();
            continue;
        }
        if (kSeparator.Match(t)) continue;
        std::size_t start = 0;
        while (start <= t.size()) {
            const std::size_t end = std::min(t.find('|', start), t.size());
            std::string cell(Trim(t.substr(start, end - start)));
            start = end + 1;
            if (cell.empty() || cell == ".") continue;
            // Widget markup: [Button], ^Droplist^, "Input", () radio, [] / [X] check boxes.
            std::string caption;
            for (const char c : cell)
                if (c != '[' && c != ']' && c != '^' && c != '"' && c != '(' && c != ')') caption += c;
            caption = QVLCleanCaption(caption);
            if (caption.empty()) caption = cell;
            const std::string id = ids.Next();
            aModel.AddNode(id, caption, TQVLFlowType::ftManualInput, true);
            aModel.AddEdge(containers.empty() ? "" : containers.back(), id, "", true, kNone);
        }
    }
}

void TORXPlantUMLParser::ParseGrammar(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kRule(R"(^([A-Za-z_][\w.-]*)\s*(?:::?=|=)\s*(.*?);?$)", {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdTopDown;
    struct TRule {
        std::string Name;
        std::string Definition;
    };
    std::vector<TRule> rules;
    TRegexMatch m;
    for (const std::string_view t : aLines) {
        if (kRule.Match(t, m)) {
            rules.push_back({Str(m.Group(1)), Str(Trim(m.Group(2)))});
        } else if (!rules.empty()) {  // a definition running over several lines
            std::string_view more = t;
            if (more.ends_with(';')) more.remove_suffix(1);
            rules.back().Definition += " " + Str(Trim(more));
        }
    }
    TIdCounter ids("grammar_");
    std::map<std::string, std::string> idOf;
    for (const auto& rule : rules) {
        if (idOf.count(rule.Name) != 0) continue;
        idOf[rule.Name] = ids.Next();
        aModel.AddNode(idOf[rule.Name], rule.Name + "\r\n" + rule.Definition, TQVLFlowType::ftPredefined,
                       true);
    }
    for (const auto& rule : rules) {
        std::set<std::string> named;
        for (const std::string& name : GrammarNames(rule.Definition)) {
            const auto target = idOf.find(name);
            if (target != idOf.end() && named.insert(target->second).second)
                aModel.AddEdge(idOf[rule.Name], target->second, "", false, kArrow);
        }
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Files and ditaa
//-----------------------------------------------------------------------------------------------------

void TORXPlantUMLParser::ParseFiles(const TLines& aLines, TORXDiagramModel& aModel) {
    aModel.fKind = TQVLDiagramKind::dkMindMap;
    aModel.fDirection = TQVLFlowDirection::fdLeftRight;
    aModel.AddNode("files_root", "Files", TQVLFlowType::ftEllipse, true);
    TIdCounter ids("files_");
    std::map<std::string, std::string> idOf;  // path so far -> node
    for (const std::string_view t : aLines) {
        const std::string text = WithoutMarkup(t);
        const std::string_view path = Trim(text);
        if (path.empty()) continue;
        std::string parent = "files_root";
        std::string sofar;
        std::size_t start = path.starts_with('/') ? 1 : 0;
        while (start < path.size()) {
            const std::size_t slash = path.find('/', start);
            const bool last = slash == std::string_view::npos;
            const std::string_view part = Trim(path.substr(start, (last ? path.size() : slash) - start));
            start = last ? path.size() : slash + 1;
            if (part.empty()) continue;
            sofar += "/" + Str(part);
            auto [it, added] = idOf.try_emplace(sofar);
            if (added) {
                it->second = ids.Next();
                // A name that the path goes on after, or that ends in "/", is a folder.
                const bool folder = !last || path.ends_with('/');
                aModel.AddNode(it->second, Str(part),
                               folder ? TQVLFlowType::ftPredefined : TQVLFlowType::ftDocument, true);
                aModel.AddEdge(parent, it->second, "", false, kNone);
            }
            parent = it->second;
        }
    }
}

namespace {

TQVLFlowType DitaaShape(std::string_view tag) {
    if (tag == "{c}") return TQVLFlowType::ftDecision;
    if (tag == "{d}") return TQVLFlowType::ftDocument;
    if (tag == "{io}") return TQVLFlowType::ftData;
    if (tag == "{mo}" || tag == "{tr}") return TQVLFlowType::ftManualOperation;
    if (tag == "{o}") return TQVLFlowType::ftEllipse;
    if (tag == "{s}") return TQVLFlowType::ftDatabase;
    return TQVLFlowType::ftProcess;
}

}  // namespace

// Content lines are trimmed, so columns cannot be compared: boxes are read band by band instead. A band is
// the rows between two border rows ("+----+   +---+"); in each row the k-th text cell between "|" walls
// belongs to the k-th box of the band, and an arrow between two walls joins the boxes on either side.
void TORXPlantUMLParser::ParseDitaa(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kText(R"([A-Za-z0-9])");
    static const TRegex kTag(R"(\{(?:c|d|io|mo|o|s|tr)\})", {kCaseless});
    static const TRegex kColor(R"(\bc[A-Z0-9]{3}\b)");
    static const TRegex kArrowGap(R"(^[-+<>^v=\s]+$)");
    static const TRegex kBorder(R"(^[-+=|:/\\<>^v*\s]+$)");
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdLeftRight;
    struct TBox {
        std::vector<std::string> Text;
        TQVLFlowType Shape = TQVLFlowType::ftProcess;
        std::string Color;
    };
    struct TLink {
        std::size_t From, To;
    };
    TIdCounter ids("ditaa_");
    std::vector<TBox> band;
    std::vector<TLink> links;
    auto closeBand = [&] {
        std::vector<std::string> idOfCell(band.size());
        for (std::size_t k = 0; k < band.size(); ++k) {
            if (band[k].Text.empty()) continue;
            idOfCell[k] = ids.Next();
            TAlphaColor color = 0;
            bool hasColor = false;
            if (band[k].Color.size() == 4) {
                // "cRED", "cBLU" and friends name colours; "c1AB" is a three-digit hex colour.
                static const std::map<std::string, TAlphaColor> kNamed{
                    {"RED", 0xFFFF0000}, {"GRE", 0xFF00FF00}, {"BLU", 0xFF0000FF}, {"YEL", 0xFFFFFF00},
                    {"PNK", 0xFFFFC0CB}, {"BLK", 0xFF000000}, {"WHI", 0xFFFFFFFF}};
                const std::string code = band[k].Color.substr(1);
                if (const auto named = kNamed.find(code); named != kNamed.end()) {
                    color = named->second;
                    hasColor = true;
                } else {
                    hasColor = Qvl::Utils::TryParseColor(
                        std::string("#") + code[0] + code[0] + code[1] + code[1] + code[2] + code[2], color);
                }
            }
            aModel.AddNode(idOfCell[k], JoinLines(band[k].Text), band[k].Shape, true, 0, color, hasColor);
        }
        for (const auto& link : links)
            if (link.From < band.size() && link.To < band.size())
                aModel.AddEdge(idOfCell[link.From], idOfCell[link.To], "", false, kArrow);
        band.clear();
        links.clear();
    };
    TRegexMatch m;
    for (const std::string_view t : aLines) {
        if (!t.starts_with('|')) {
            if (kBorder.Match(t)) closeBand();
            continue;
        }
        std::vector<std::string_view> pieces;
        std::size_t start = 0;
        while (start <= t.size()) {
            const std::size_t end = std::min(t.find('|', start), t.size());
            pieces.push_back(t.substr(start, end - start));
            start = end + 1;
        }
        // pieces[0] is before the first wall; cell k is pieces[2k+1], the gap after it pieces[2k+2].
        for (std::size_t k = 0; 2 * k + 1 < pieces.size(); ++k) {
            if (band.size() <= k) band.resize(k + 1);
            std::string cell(pieces[2 * k + 1]);
            if (kTag.Match(cell, m)) {
                band[k].Shape = DitaaShape(ToLowerAscii(m.Group(0)));
                cell.erase(m.Start(0), m.End(0) - m.Start(0));
            }
            if (kColor.Match(cell, m)) {
                band[k].Color = Str(m.Group(0));
                cell.erase(m.Start(0), m.End(0) - m.Start(0));
            }
            if (kText.Match(cell)) band[k].Text.push_back(QVLCleanCaption(cell));
            if (2 * k + 2 < pieces.size() - 1) {
                const std::string_view gap = pieces[2 * k + 2];
                if (!Trim(gap).empty() && kArrowGap.Match(gap)) {
                    if (gap.find('>') != std::string_view::npos)
                        links.push_back({k, k + 1});
                    else if (gap.find('<') != std::string_view::npos)
                        links.push_back({k + 1, k});
                }
            }
        }
    }
    closeBand();
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Chen and gantt
//-----------------------------------------------------------------------------------------------------

void TORXPlantUMLParser::ParseChen(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kDeclaration(R"re(^(entity|relationship|attribute)\s+(?:"([^"]+)"|([\w.-]+)))re",
                                     {kCaseless});
    static const TRegex kLink(R"re(^(?:"([^"]+)"|([\w.-]+))\s+-([^\s-]+)-\s+(?:"([^"]+)"|([\w.-]+))$)re",
                              {kCaseless});
    static const TRegex kMember(R"re(^(?:"([^"]+)"|([\w.-]+)))re", {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdTopDown;
    std::string owner;  // the entity or relationship whose "{ ... }" block is open
    TRegexMatch m;
    for (const std::string_view t : aLines) {
        if (kDeclaration.Match(t, m)) {
            const std::string word = ToLowerAscii(m.Group(1));
            const std::string name = QVLCleanCaption(m.Matched(2) ? m.Group(2) : m.Group(3));
            const TQVLFlowType type = word == "entity"         ? TQVLFlowType::ftDatabase
                                      : word == "relationship" ? TQVLFlowType::ftDecision
                                                               : TQVLFlowType::ftEllipse;
            aModel.AddNode(name, name, type, true);
            if (t.ends_with('{')) owner = name;
        } else if (t.starts_with('}')) {
            owner.clear();
        } else if (kLink.Match(t, m)) {
            const std::string from = QVLCleanCaption(m.Matched(1) ? m.Group(1) : m.Group(2));
            const std::string to = QVLCleanCaption(m.Matched(4) ? m.Group(4) : m.Group(5));
            aModel.AddNode(from, "", TQVLFlowType::ftProcess, false);
            aModel.AddNode(to, "", TQVLFlowType::ftProcess, false);
            aModel.AddEdge(from, to, QVLCleanCaption(m.Group(3)), false, kNone);
        } else if (!owner.empty() && kMember.Match(t, m)) {
            // "Title : STRING <<key>>" inside a block: an attribute of the owner.
            const std::string name = QVLCleanCaption(m.Matched(1) ? m.Group(1) : m.Group(2));
            const std::string id = owner + "." + name;
            aModel.AddNode(id, QVLCleanCaption(t), TQVLFlowType::ftEllipse, true);
            aModel.AddEdge(owner, id, "", false, kNone);
        }
    }
}

void TORXPlantUMLParser::ParseGantt(const TLines& aLines, TORXDiagramModel& aModel) {
    static const TRegex kSection(R"(^--\s*(.+?)\s*--$)", {kCaseless});
    static const TRegex kStarts(
        R"(^\[([^\]]+)\]\s+starts\s+(?:at|after)\s+\[([^\]]+)\](?:'s\s+(start|end))?)", {kCaseless});
    static const TRegex kTask(R"(^\[([^\]]+)\]\s+(.+)$)", {kCaseless});
    static const TRegex kProject(R"(^Project\s+(starts|ends)\s+(.+)$)", {kCaseless});
    static const TRegex kThen(R"(^->\s*\[([^\]]+)\])", {kCaseless});
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdLeftRight;
    TIdCounter sections("puml_gantt_section_");
    TIdCounter tasks("puml_gantt_task_");
    std::map<std::string, std::string> idOf;  // task name -> node
    std::string section;
    auto task = [&](const std::string& name, const std::string& detail) {
        auto [it, added] = idOf.try_emplace(name);
        if (added) {
            it->second = tasks.Next();
            aModel.AddNode(it->second, JoinLines({name, detail}), TQVLFlowType::ftProcess, true);
            aModel.AddEdge(section, it->second, "", false, kNone);
        }
        return it->second;
    };
    TRegexMatch m;
    for (const std::string_view t : aLines) {
        if (kSection.Match(t, m)) {
            section = sections.Next();
            aModel.AddNode(section, QVLCleanCaption(m.Group(1)), TQVLFlowType::ftPredefined, true);
        } else if (kProject.Match(t, m)) {
            aModel.AddNode("puml_gantt_project", "Project\r\n" + QVLCleanCaption(m.Group(2)),
                           TQVLFlowType::ftTerminator, true);
        } else if (kStarts.Match(t, m)) {
            const std::string before = task(QVLCleanCaption(m.Group(2)), "");
            const std::string after = task(QVLCleanCaption(m.Group(1)), "");
            aModel.AddEdge(before, after, "dependency", false, kArrow);
        } else if (kTask.Match(t, m)) {
            const std::string name = QVLCleanCaption(m.Group(1));
            TRegexMatch then;
            if (kThen.Match(m.Group(2), then)) {  // "[A] -> [B]": B starts when A ends
                const std::string before = task(name, "");
                aModel.AddEdge(before, task(QVLCleanCaption(then.Group(1)), ""), "dependency", false, kArrow);
            } else {
                task(name, QVLCleanCaption(m.Group(2)));
            }
        }
    }
}

}  // namespace Orvex
