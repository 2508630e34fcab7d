// State diagrams, Mermaid and PlantUML: composite states become containers with their own start and end
// markers (a "[*]" inside a composite is never the outer one), concurrent regions ("--", "||") become
// nested containers, and choice, fork, join and history states keep their shapes.
#include <map>
#include <set>
#include <string>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/diagrams/plantuml_parser.h"
#include "orvex/diagrams/uml_import.h"
#include "orvex/diagrams/uml_import_lines.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::ToLowerAscii;
using Qvl::Utils::Trim;
using A = TQVLDiagEdgeArrow;

constexpr std::string_view kName = R"re(("[^"]+"|\[\*\]|\[H\*?\]|[\w.$]+(?:\[H\*?\])?))re";

class TStateReader {
  public:
    TStateReader(TORXDiagramModel& model, bool mermaid) : fModel(model), fMermaid(mermaid) {}

    void Read(const std::vector<TUmlLine>& lines) {
        FindComposites(lines);
        bool accBlock = false;
        bool header = fMermaid;
        for (const TUmlLine& line : lines) {
            if (fMermaid && UmlConsumedMermaid(line.Text, accBlock)) continue;
            if (header) {
                header = false;  // "stateDiagram"
                continue;
            }
            if (fInNote) {
                ReadNoteLine(line);
                continue;
            }
            if (fSkinDepth > 0) {
                if (line.Text.find('{') != std::string_view::npos) ++fSkinDepth;
                if (line.Text.find('}') != std::string_view::npos) --fSkinDepth;
                continue;
            }
            ReadStatement(line);
        }
    }

  private:
    // Composite states are containers, not nodes: learn their ids first, so that a transition written
    // before the composite's body ends at its frame.
    void FindComposites(const std::vector<TUmlLine>& lines) {
        static const TRegex kComposite(
            R"re(^state\s+(?:"[^"]*"\s+as\s+([\w.$]+)|([\w.$]+)(?:\s+as\s+"[^"]*")?)\b[^{]*\{\s*$)re",
            {TRegexFlag::rfCaseless});
        TRegexMatch m;
        for (const TUmlLine& line : lines)
            if (kComposite.Match(line.Text, m))
                fComposites.insert(std::string(m.Matched(1) ? m.Group(1) : m.Group(2)));
    }

    std::string CurrentGroup() const { return fOpen.empty() ? std::string() : fOpen.back(); }

    void Place(TQVLDiagNode& node) {
        const std::string group = CurrentGroup();
        if (group.empty() || !node.Group.empty()) return;
        node.Group = group;
        fModel.FindGroup(group)->Members.push_back(node.ID);
    }

    // "[*]" is the start where a transition leaves it and the end where one arrives; each container
    // (and the top level) has its own.
    std::string State(std::string_view written, bool asTarget) {
        std::string name = UmlUnquote(written);
        const std::string scope = CurrentGroup();
        if (name == "[*]") {
            const std::string id =
                (scope.empty() ? std::string() : scope + "_") + (asTarget ? "[*]end" : "[*]start");
            if (fModel.FindNode(id) == nullptr) {
                fModel.AddNode(id, "", asTarget ? TQVLFlowType::ftEnd : TQVLFlowType::ftStart, true);
                TQVLDiagNode* n = fModel.FindNode(id);
                n->Role = asTarget ? "end" : "start";
                Place(*n);
            }
            return id;
        }
        if (name == "[H]" || name == "[H*]" || name.ends_with("[H]") || name.ends_with("[H*]")) {
            const bool deep = name.ends_with("*]");
            const std::string owner = name.substr(0, name.rfind('['));
            const std::string id = (owner.empty() ? scope : owner) + (deep ? "[H*]" : "[H]");
            if (fModel.FindNode(id) == nullptr) {
                fModel.AddNode(id, deep ? "H*" : "H", TQVLFlowType::ftEllipse, true);
                TQVLDiagNode* n = fModel.FindNode(id);
                n->Role = "history";
                if (!owner.empty() && fModel.FindGroup(owner) != nullptr) {
                    n->Group = owner;
                    fModel.FindGroup(owner)->Members.push_back(id);
                } else {
                    Place(*n);
                }
            }
            return id;
        }
        if (fComposites.contains(name)) return name;
        if (fModel.FindNode(name) == nullptr) {
            fModel.AddNode(name, name, TQVLFlowType::ftProcess, true);
            TQVLDiagNode* n = fModel.FindNode(name);
            n->Role = "state";
            Place(*n);
        }
        return name;
    }

    void SetKind(const std::string& id, std::string_view stereotype) {
        TQVLDiagNode* n = fModel.FindNode(id);
        if (n == nullptr) return;
        const std::string s = ToLowerAscii(Trim(stereotype));
        if (s == "choice") {
            n->Role = "choice", n->Shape = TQVLFlowType::ftDecision, n->Text.clear();
        } else if (s == "fork" || s == "join") {
            n->Role = s, n->Text.clear();
        } else if (s == "history" || s == "history*") {
            n->Role = "history", n->Shape = TQVLFlowType::ftEllipse, n->Text = s == "history" ? "H" : "H*";
        } else if (s == "start" || s == "end") {
            n->Role = s, n->Shape = s == "start" ? TQVLFlowType::ftStart : TQVLFlowType::ftEnd,
            n->Text.clear();
        } else if (s == "entrypoint" || s == "exitpoint") {
            n->Role = s == "entrypoint" ? "entry" : "exit", n->Shape = TQVLFlowType::ftEllipse;
        } else {
            n->Text = "\u00AB" + std::string(Trim(stereotype)) + "\u00BB\n" + n->Text;
        }
    }

    void OpenComposite(const std::string& id, const std::string& caption) {
        TQVLDiagGroup g;
        g.ID = id;
        g.Text = caption.empty() ? id : caption;
        g.Parent = CurrentGroup();
        if (fModel.FindGroup(id) == nullptr) fModel.AddGroup(g);
        fOpen.push_back(id);
        fRegions.push_back(0);
    }

    // A concurrency separator: the members so far become the first region, what follows the next one.
    void NextRegion(const TUmlLine& line) {
        if (fOpen.empty()) {
            UmlNotDrawn(fModel, line, "a concurrency separator outside a composite state.");
            return;
        }
        std::string owner = fOpen.back();
        if (fRegions.back() > 0) {
            fOpen.pop_back();  // close the running region
            owner = fOpen.back();
        } else {
            // The first region takes what the composite held so far.
            TQVLDiagGroup first;
            first.ID = owner + "#1";
            first.Parent = owner;
            first.Region = true;
            TQVLDiagGroup* comp = fModel.FindGroup(owner);
            first.Members = comp->Members;
            comp->Members.clear();
            for (const std::string& m : first.Members) fModel.FindNode(m)->Group = first.ID;
            for (const TQVLDiagGroup& other : fModel.Groups())
                if (other.Parent == owner) const_cast<TQVLDiagGroup&>(other).Parent = first.ID;
            fModel.AddGroup(first);
            fRegions.back() = 1;
        }
        ++fRegions.back();
        TQVLDiagGroup next;
        next.ID = owner + "#" + std::to_string(fRegions.back());
        next.Parent = owner;
        next.Region = true;
        fModel.AddGroup(next);
        fOpen.push_back(next.ID);
    }

    void CloseComposite() {
        if (fOpen.empty()) return;
        if (fRegions.back() > 0) fOpen.pop_back();  // the last region
        fOpen.pop_back();
        fRegions.pop_back();
    }

    void AddNote(const std::string& text, const std::string& target) {
        const std::string id = "note" + std::to_string(++fNotes);
        fModel.AddNode(id, QVLPlainCaption(text, !fMermaid), TQVLFlowType::ftProcess, true);
        TQVLDiagNode* note = fModel.FindNode(id);
        note->Role = "note";
        Place(*note);
        if (!target.empty()) fModel.AddEdge(id, State(target, false), "", true, A::eaNone);
    }

    void ReadNoteLine(const TUmlLine& line) {
        const std::string lower = ToLowerAscii(line.Text);
        if (lower == "end note" || lower == "endnote") {
            std::string text;
            for (const std::string& l : fNoteLines) text += (text.empty() ? "" : "\n") + l;
            AddNote(text, fNoteTarget);
            fNoteLines.clear();
            fInNote = false;
            return;
        }
        fNoteLines.emplace_back(line.Text);
    }

    bool ReadNote(const TUmlLine& line) {
        static const TRegex kNote(
            R"re(^note\s+(left|right|top|bottom|over)(?:\s+of)?\s+("[^"]+"|[\w.$]+)\s*(#\S+)?\s*(?::\s*(.*))?$)re",
            {TRegexFlag::rfCaseless});
        static const TRegex kFloating(R"re(^note\s+"(.*)"\s+as\s+(\w+)$)re", {TRegexFlag::rfCaseless});
        TRegexMatch m;
        if (kNote.Match(line.Text, m)) {
            if (m.Matched(4)) {
                AddNote(std::string(m.Group(4)), std::string(m.Group(2)));
            } else {
                fInNote = true;
                fNoteTarget = std::string(m.Group(2));
            }
            return true;
        }
        if (kFloating.Match(line.Text, m)) {
            fModel.AddNode(m.Group(2), QVLPlainCaption(m.Group(1), true), TQVLFlowType::ftProcess, true);
            fModel.FindNode(m.Group(2))->Role = "note";
            Place(*fModel.FindNode(m.Group(2)));
            return true;
        }
        return false;
    }

    bool ReadTransition(const TUmlLine& line) {
        static const TRegex kTransition(
            std::string("^") + std::string(kName) +
                R"re(\s*(-+|\.+)(?:(up|down|left|right|le|ri|do|u|d|l|r)|\[[^\]]*\])?(-*|\.*)>\s*)re" +
                std::string(kName) + R"re(\s*(?::\s*(.*))?$)re",
            {TRegexFlag::rfCaseless});
        TRegexMatch m;
        if (!kTransition.Match(line.Text, m)) return false;
        const std::string from = State(m.Group(1), false);
        const std::string to = State(m.Group(5), true);
        const bool dotted = m.Group(2).starts_with(".");
        fModel.AddEdge(from, to, QVLPlainCaption(m.Group(6), !fMermaid), dotted, A::eaArrow);
        if (m.Matched(3)) {
            const char c = static_cast<char>(std::tolower(static_cast<unsigned char>(m.Group(3)[0])));
            fModel.LastEdge()->Hint = c == 'u' ? "up" : c == 'd' ? "down" : c == 'l' ? "left" : "right";
        }
        return true;
    }

    void ReadStatement(const TUmlLine& line) {
        const std::string_view text = line.Text;
        const std::string lower = ToLowerAscii(text);
        TRegexMatch m;
        if (text == "}") return CloseComposite();
        if (text == "--" || text == "||") return NextRegion(line);
        if (lower.starts_with("direction ") || lower == "left to right direction" ||
            lower == "top to bottom direction") {
            fModel.fDirection =
                lower.find("lr") != std::string::npos || lower.starts_with("left") || lower.ends_with(" rl")
                    ? TQVLFlowDirection::fdLeftRight
                    : TQVLFlowDirection::fdTopDown;
            return;
        }
        if (lower.starts_with("title ")) {
            fModel.fTitle = QVLPlainCaption(Trim(text.substr(6)), !fMermaid);
            return;
        }
        if (lower.starts_with("note ") && ReadNote(line)) return;
        if (ReadTransition(line)) return;
        static const TRegex kState(
            R"re(^state\s+(?:"([^"]*)"\s+as\s+([\w.$]+)|([\w.$]+)\s+as\s+"([^"]*)"|([\w.$]+))\s*(?:<<\s*(\w+\*?)\s*>>)?\s*(#[^\s{:]+)?\s*(?::\s*(.*?))?\s*(\{)?\s*$)re",
            {TRegexFlag::rfCaseless});
        if (kState.Match(text, m)) {
            std::string id, caption;
            if (m.Matched(1))
                id = m.Group(2), caption = QVLPlainCaption(m.Group(1), !fMermaid);
            else if (m.Matched(3))
                id = m.Group(3), caption = QVLPlainCaption(m.Group(4), !fMermaid);
            else
                id = m.Group(5);
            if (m.Matched(9)) {
                OpenComposite(id, caption);
                if (m.Matched(7)) {
                    TAlphaColor c = 0;
                    if (QVLReadColor(m.Group(7), c)) fModel.FindGroup(id)->Style.Fill = c;
                }
                return;
            }
            const std::string node = State(id, false);
            TQVLDiagNode* n = fModel.FindNode(node);
            if (n == nullptr) return;  // a composite mentioned again
            if (!caption.empty()) n->Text = caption;
            if (m.Matched(6)) SetKind(node, m.Group(6));
            if (m.Matched(7)) {
                TAlphaColor c = 0;
                if (QVLReadColor(m.Group(7), c)) n->Style.Fill = c;
            }
            if (m.Matched(8)) AddDescription(*n, m.Group(8));
            return;
        }
        static const TRegex kDescription(R"re(^("[^"]+"|[\w.$]+)\s*:\s*(.*)$)re");
        if (kDescription.Match(text, m)) {
            const std::string node = State(m.Group(1), false);
            if (TQVLDiagNode* n = fModel.FindNode(node)) AddDescription(*n, m.Group(2));
            return;
        }
        if (fMermaid) {
            static const TRegex kClassDef(R"(^classDef\s+(\S+)\s+(.*)$)");
            static const TRegex kClass(R"(^class\s+(\S+)\s+(\S+)$)");
            static const TRegex kStyle(R"(^style\s+(\S+)\s+(.*)$)");
            if (kClassDef.Match(text, m)) {
                TQVLDiagStyle& style = fClassDefs[std::string(m.Group(1))];
                for (const std::string& p : QVLApplyStyleProperties(m.Group(2), style))
                    UmlNotDrawn(fModel, line, "the style property \"" + p + "\".");
                return;
            }
            if (kClass.Match(text, m)) {
                const std::string_view ids = m.Group(1);
                std::size_t start = 0;
                while (start <= ids.size()) {
                    std::size_t comma = ids.find(',', start);
                    if (comma == std::string_view::npos) comma = ids.size();
                    if (TQVLDiagNode* n =
                            fModel.FindNode(State(Trim(ids.substr(start, comma - start)), false)))
                        if (auto it = fClassDefs.find(std::string(m.Group(2))); it != fClassDefs.end())
                            QVLMergeStyle(n->Style, it->second);
                    start = comma + 1;
                }
                return;
            }
            if (kStyle.Match(text, m)) {
                if (TQVLDiagNode* n = fModel.FindNode(State(m.Group(1), false)))
                    for (const std::string& p : QVLApplyStyleProperties(m.Group(2), n->Style))
                        UmlNotDrawn(fModel, line, "the style property \"" + p + "\".");
                return;
            }
            if (lower.starts_with("click ")) return;
        } else {
            if (lower.starts_with("skinparam")) {
                if (text.ends_with("{")) fSkinDepth = 1;
                return;
            }
            if (lower.starts_with("hide ") || lower.starts_with("show ") || lower.starts_with("!") ||
                lower.starts_with("set "))
                return;
        }
        static const TRegex kBare(R"re(^("[^"]+"|[\w.$]+)$)re");
        if (kBare.Match(text)) {
            State(text, false);
            return;
        }
        UmlNotDrawn(fModel, line, "a statement this state diagram reader does not know.");
    }

    static void AddDescription(TQVLDiagNode& n, std::string_view text) {
        const std::string line = QVLPlainCaption(text);
        if (line.empty()) return;
        if (n.Compartments.empty()) n.Compartments.emplace_back();
        n.Compartments[0].push_back(line);
    }

    TORXDiagramModel& fModel;
    bool fMermaid;
    std::set<std::string> fComposites;
    std::vector<std::string> fOpen;  // open composites and regions, innermost last
    std::vector<int> fRegions;       // per open composite: its running region number, 0 without regions
    std::map<std::string, TQVLDiagStyle> fClassDefs;
    int fSkinDepth = 0;
    int fNotes = 0;
    bool fInNote = false;
    std::vector<std::string> fNoteLines;
    std::string fNoteTarget;
};

}  // namespace

bool QVLImportStateDiagram(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    const bool mermaid = aFormat == TQVLDiagramFormat::dgMermaid;
    if (mermaid) {
        if (!UmlMermaidHeaderIs(aText, {"statediagram", "statediagram-v2"}, aModel)) return false;
    } else {
        const auto content = UmlPlantUMLContent(aText);
        if (!content || content->Kind != TORXPlantUMLParser::TPumlKind::pkState) return false;
    }
    TStateReader reader(aModel, mermaid);
    reader.Read(UmlStatementLines(aText, aFormat));
    return true;
}

}  // namespace Orvex
