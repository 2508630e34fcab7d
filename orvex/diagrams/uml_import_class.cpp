// Class and object diagrams: Mermaid classDiagram, PlantUML class and object diagrams. Classes become
// nodes with a role and two compartments (attributes, methods), namespaces and packages become groups,
// relations keep their heads at both ends and the multiplicities written beside them.
#include <map>
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

// "List~int~" and "Map~K,List~V~~" as a reader writes them: "List<int>", "Map<K,List<V>>". A tilde
// opens a type argument list when a name follows it and closes one otherwise.
std::string Generics(std::string_view text) {
    std::string out;
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '~') {
            out += text[i];
            continue;
        }
        const char next = i + 1 < text.size() ? text[i + 1] : ' ';
        const bool opens = depth == 0 || std::isalnum(static_cast<unsigned char>(next)) != 0 || next == '_';
        if (opens) {
            out += '<';
            ++depth;
        } else {
            out += '>';
            --depth;
        }
    }
    return out;
}

std::string RoleOfStereotype(std::string_view stereotype) {
    const std::string s = ToLowerAscii(Trim(stereotype));
    if (s == "interface") return "interface";
    if (s == "abstract") return "abstract";
    if (s == "enumeration" || s == "enum") return "enum";
    return {};
}

TQVLDiagEdgeArrow HeadOf(std::string_view head) {
    if (head == "<|" || head == "|>" || head == "^") return A::eaTriangle;
    if (head == "*") return A::eaFillRhombus;
    if (head == "o") return A::eaRhombus;
    if (head == "<" || head == ">") return A::eaOpenArrow;
    if (head == "()" || head == "(" || head == ")") return A::eaLollipop;
    if (head == "x") return A::eaCross;
    if (head == "+") return A::eaCircle;
    if (head == "}" || head == "{") return A::eaCrowZeroMany;
    return A::eaNone;
}

struct TClassInfo {
    std::string Name;  // as written, generics resolved
    std::string Label;
    std::string Stereotype;
};

class TClassReader {
  public:
    TClassReader(TORXDiagramModel& model, bool mermaid) : fModel(model), fMermaid(mermaid) {}

    void Read(const std::vector<TUmlLine>& lines) {
        bool accBlock = false;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const TUmlLine& line = lines[i];
            if (fMermaid && UmlConsumedMermaid(line.Text, accBlock)) continue;
            if (!fNoteLines.empty() || fInNote) {
                ReadNoteLine(line);
                continue;
            }
            if (fSkinDepth > 0) {
                if (line.Text.find('{') != std::string_view::npos) ++fSkinDepth;
                if (line.Text.find('}') != std::string_view::npos) --fSkinDepth;
                continue;
            }
            if (!fBody.empty()) {
                ReadBodyLine(line);
                continue;
            }
            ReadStatement(line);
        }
        for (auto& [id, info] : fInfo) {
            TQVLDiagNode* node = fModel.FindNode(id);
            if (node == nullptr) continue;
            std::string caption = info.Label.empty() ? info.Name : info.Label;
            if (!info.Stereotype.empty()) caption = "\u00AB" + info.Stereotype + "\u00BB\n" + caption;
            node->Text = caption;
        }
    }

  private:
    // The node of a class, made on first mention; a declaration inside a container puts it there.
    TQVLDiagNode& Class(std::string_view written, bool declared, std::string_view role = "class") {
        std::string id = UmlUnquote(written);
        std::string name = Generics(id);
        if (const std::size_t lt = name.find('<'); lt != std::string::npos && lt > 0 && fMermaid)
            id = id.substr(0, id.find('~'));
        if (fModel.FindNode(id) == nullptr) {
            fModel.AddNode(id, name, TQVLFlowType::ftProcess, true);
            TQVLDiagNode* n = fModel.FindNode(id);
            n->Role = std::string(role);
            n->Compartments = {{}, {}};
            fInfo[id].Name = name;
        }
        TQVLDiagNode& node = *fModel.FindNode(id);
        if (declared) {
            if (role != "class") node.Role = std::string(role);
            if (fInfo[id].Name.find('<') == std::string::npos) fInfo[id].Name = name;
            if (!fGroups.empty() && fGroups.back() >= 0 && node.Group.empty()) {
                TQVLDiagGroup& g =
                    *fModel.FindGroup(fModel.Groups()[static_cast<std::size_t>(fGroups.back())].ID);
                node.Group = g.ID;
                g.Members.push_back(id);
            }
        }
        return node;
    }

    void SetStereotype(TQVLDiagNode& node, std::string_view stereotype) {
        std::string s = std::string(Trim(stereotype));
        fInfo[node.ID].Stereotype = s;
        if (const std::string role = RoleOfStereotype(s); !role.empty()) node.Role = role;
    }

    void AddMember(TQVLDiagNode& node, std::string_view text) {
        std::string member = std::string(Trim(text));
        if (member.empty()) return;
        if (member.starts_with("<<") && member.ends_with(">>")) {
            SetStereotype(node, std::string_view(member).substr(2, member.size() - 4));
            return;
        }
        bool method = member.find('(') != std::string::npos;
        for (const std::string_view forced : {"{field}", "{method}"}) {
            if (member.starts_with(forced)) {
                method = forced == "{method}";
                member = std::string(Trim(std::string_view(member).substr(forced.size())));
            }
        }
        if (node.Compartments.size() < 2) node.Compartments.resize(2);
        node.Compartments[method ? 1 : 0].push_back(Generics(member));
    }

    void OpenGroup(std::string_view name, std::string_view caption) {
        TQVLDiagGroup g;
        g.ID = UmlUnquote(name);
        g.Text = caption.empty() ? g.ID : UmlUnquote(caption);
        for (auto it = fGroups.rbegin(); it != fGroups.rend(); ++it)
            if (*it >= 0) {
                g.Parent = fModel.Groups()[static_cast<std::size_t>(*it)].ID;
                break;
            }
        if (fModel.FindGroup(g.ID) == nullptr) fModel.AddGroup(g);
        for (std::size_t k = 0; k < fModel.Groups().size(); ++k)
            if (fModel.Groups()[k].ID == g.ID) fGroups.push_back(static_cast<long>(k));
    }

    void AddNote(const std::string& text, const std::string& target, std::string id = {}) {
        if (id.empty()) id = "note" + std::to_string(++fNotes);
        fModel.AddNode(id, QVLPlainCaption(text, !fMermaid), TQVLFlowType::ftProcess, true);
        TQVLDiagNode* note = fModel.FindNode(id);
        note->Role = "note";
        if (!fGroups.empty() && fGroups.back() >= 0) {
            TQVLDiagGroup& g =
                *fModel.FindGroup(fModel.Groups()[static_cast<std::size_t>(fGroups.back())].ID);
            note->Group = g.ID;
            g.Members.push_back(id);
        }
        if (!target.empty()) {
            Class(target, false);
            fModel.AddEdge(id, UmlUnquote(target), "", true, A::eaNone);
        }
    }

    void ReadNoteLine(const TUmlLine& line) {
        const std::string lower = ToLowerAscii(line.Text);
        if (lower == "end note" || lower == "endnote") {
            std::string text;
            for (const std::string& l : fNoteLines) text += (text.empty() ? "" : "\n") + l;
            AddNote(text, fNoteTarget, fNoteId);
            fNoteLines.clear();
            fInNote = false;
            return;
        }
        fNoteLines.emplace_back(line.Text);
    }

    void ReadBodyLine(const TUmlLine& line) {
        std::string_view text = line.Text;
        if (text.starts_with("}")) {
            fBody.clear();
            return;
        }
        // PlantUML separators ("--", "..", "==", "__", optionally with a title) only divide the body.
        static const TRegex kSeparator(R"(^(--|\.\.|==|__)(.*(--|\.\.|==|__))?$)");
        if (!fMermaid && kSeparator.Match(text)) return;
        TQVLDiagNode* node = fModel.FindNode(fBody);
        if (node == nullptr) return;
        const bool closes = text.ends_with("}") && text.find('{') == std::string_view::npos;
        if (closes) text = Trim(text.substr(0, text.size() - 1));
        if (node->Role == "object" && !fMermaid) {
            if (const std::size_t arrow = text.find("=>"); arrow != std::string_view::npos)
                node->Compartments[0].push_back(std::string(Trim(text.substr(0, arrow))) + " = " +
                                                std::string(Trim(text.substr(arrow + 2))));
            else
                node->Compartments[0].emplace_back(Trim(text));
        } else {
            AddMember(*node, text);
        }
        if (closes) fBody.clear();
    }

    bool ReadRelation(const TUmlLine& line) {
        // ID ["card"] head? line head? ["card"] ID [: label]
        static const TRegex kMermaid(
            R"re(^("[^"]+"|`[^`]+`|[^\s"]+?)\s*(?:"([^"]*)")?\s*(?:(?<=\s)(o|\*)|(<\||<|\(\)))?(--|\.\.)(?:(o|\*)(?=\s)|(\|>|>|\(\)))?\s*(?:"([^"]*)")?\s*("[^"]+"|`[^`]+`|[^\s:"]+)\s*(?::\s*(.*))?$)re");
        static const TRegex kPlantUML(
            R"re(^("[^"]+"|[\w.:$\\]+)\s*(?:"([^"]*)")?\s*(?:(?<=\s)(o|\*|x|\+|#|\})|(<\||<|\(\)|\^|\*|o|x|\+|#|\}))?([-.=]+(?:(?:up|down|left|right|le|ri|do|u|d|l|r)|\[[^\]]*\])?[-.=]*)(?:(o|\*|x|\+|#|\{)(?=\s)|(\|>|>|\(\)|\^|\*|o|x|\+|#|\{))?\s*(?:"([^"]*)")?\s*("[^"]+"|[\w.:$\\]+)\s*(?::\s*(.*))?$)re",
            {TRegexFlag::rfCaseless});
        TRegexMatch m;
        if (!(fMermaid ? kMermaid : kPlantUML).Match(line.Text, m)) return false;
        const std::string_view body = m.Group(5);
        if (!fMermaid && body.find('-') == std::string_view::npos && body.find('.') == std::string_view::npos)
            return false;
        const TQVLDiagNode& from = Class(m.Group(1), false);
        const std::string fromId = from.ID;
        const TQVLDiagNode& to = Class(m.Group(9), false);
        const std::string toId = to.ID;
        std::string label = std::string(Trim(m.Group(10)));
        // PlantUML reads "label >" and "< label" as the direction the label reads in; the caption is the
        // words.
        if (label.ends_with(">") || label.ends_with("<"))
            label = std::string(Trim(label.substr(0, label.size() - 1)));
        if (label.starts_with("<") || label.starts_with(">")) label = std::string(Trim(label.substr(1)));
        const bool dotted = body.find('.') != std::string_view::npos;
        fModel.AddEdge(fromId, toId, fMermaid ? label : QVLPlainCaption(label, true), dotted, A::eaNone);
        TQVLDiagEdge* e = fModel.LastEdge();
        const std::string_view tail = m.Matched(3) ? m.Group(3) : m.Group(4);
        const std::string_view head = m.Matched(6) ? m.Group(6) : m.Group(7);
        e->FromArrow = HeadOf(tail);
        e->Arrow = HeadOf(head);
        e->FromText = std::string(m.Group(2));
        e->ToText = std::string(m.Group(8));
        if (body.find('=') != std::string_view::npos) e->Thick = true;
        static const TRegex kHint(R"((up|down|left|right|le|ri|do|u|d|l|r))", {TRegexFlag::rfCaseless});
        TRegexMatch hint;
        if (!fMermaid && body.find('[') == std::string_view::npos && kHint.Match(body, hint)) {
            const char c = static_cast<char>(std::tolower(static_cast<unsigned char>(hint.Group(1)[0])));
            e->Hint = c == 'u' ? "up" : c == 'd' ? "down" : c == 'l' ? "left" : "right";
        }
        if (!fMermaid && body.find("[hidden]") != std::string_view::npos) e->Style.Stroke = TAlphaColor{0};
        return true;
    }

    // PlantUML "class "Long name" as X <<stereo>> #colour {" and its variants.
    void DeclarePlantUML(const TUmlLine& line, std::string_view keyword, std::string_view rest) {
        std::string role = "class";
        const std::string kw = ToLowerAscii(keyword);
        if (kw.starts_with("abstract"))
            role = "abstract";
        else if (kw == "interface" || kw == "protocol")
            role = "interface";
        else if (kw == "enum")
            role = "enum";
        else if (kw == "object" || kw == "map" || kw == "json")
            role = "object";
        else if (kw == "entity")
            role = "entity";
        bool opens = false;
        rest = Trim(rest);
        if (rest.ends_with("{")) {
            opens = true;
            rest = Trim(rest.substr(0, rest.size() - 1));
        }
        static const TRegex kDecl(
            R"re(^(?:"([^"]+)"\s+as\s+([\w.:$]+)|([\w.:$]+)\s+as\s+"([^"]+)"|([\w.:$]+)\s+as\s+([\w.:$]+)|"([^"]+)"|([\w.:$]+))((?!<<)<[^<>]*(?:<[^<>]*>[^<>]*)*>)?\s*(?:<<\s*(.*?)\s*>>)?\s*(#\S+)?\s*(.*)$)re",
            {TRegexFlag::rfCaseless});
        TRegexMatch m;
        if (!kDecl.Match(rest, m)) {
            UmlNotDrawn(fModel, line, "a declaration whose name cannot be read.");
            return;
        }
        std::string id, caption;
        if (m.Matched(1))
            id = m.Group(2), caption = m.Group(1);
        else if (m.Matched(3))
            id = m.Group(3), caption = m.Group(4);
        else if (m.Matched(5))
            id = m.Group(6), caption = m.Group(5);
        else if (m.Matched(7))
            id = m.Group(7);
        else
            id = m.Group(8);
        TQVLDiagNode& node = Class(id, true, role);
        node.Role = role;
        std::string name = (caption.empty() ? QVLPlainCaption(id, true) : QVLPlainCaption(caption, true));
        name += std::string(m.Group(9));
        fInfo[node.ID].Name = name;
        if (m.Matched(10)) {
            SetStereotype(node, m.Group(10));
            node.Role = role == "class" && !RoleOfStereotype(m.Group(10)).empty()
                            ? RoleOfStereotype(m.Group(10))
                            : role;
        }
        if (m.Matched(11)) {
            TAlphaColor c = 0;
            if (QVLReadColor(m.Group(11), c)) node.Style.Fill = c;
        }
        const std::string_view tail = Trim(m.Group(12));
        if (!tail.empty() && !tail.starts_with("implements") && !tail.starts_with("extends"))
            UmlNotDrawn(fModel, line, "text after the declaration.");
        if (opens) fBody = node.ID;
    }

    void DeclareMermaid(const TUmlLine& line, std::string_view rest) {
        static const TRegex kDecl(
            R"re(^("[^"]+"|`[^`]+`|[^\s{\[~:]+)(~.*~)?\s*(?:\[\s*"?(.*?)"?\s*\])?\s*(?::::\s*(\S+))?\s*(\{)?\s*(.*)$)re");
        TRegexMatch m;
        if (!kDecl.Match(rest, m)) {
            UmlNotDrawn(fModel, line, "a class whose name cannot be read.");
            return;
        }
        TQVLDiagNode& node = Class(std::string(m.Group(1)), true);
        fInfo[node.ID].Name = Generics(std::string(UmlUnquote(m.Group(1))) + std::string(m.Group(2)));
        if (m.Matched(3)) fInfo[node.ID].Label = QVLPlainCaption(m.Group(3));
        if (m.Matched(4)) ApplyClassDef(node.ID, m.Group(4));
        if (m.Matched(5)) {
            std::string_view inner = Trim(m.Group(6));
            if (inner.ends_with("}")) {
                inner = Trim(inner.substr(0, inner.size() - 1));
                if (!inner.empty()) AddMember(node, inner);
            } else {
                fBody = node.ID;
                if (!inner.empty()) AddMember(node, inner);
            }
        }
    }

    void ApplyClassDef(const std::string& id, std::string_view names) {
        TQVLDiagNode* node = fModel.FindNode(id);
        if (node == nullptr) return;
        std::size_t start = 0;
        while (start <= names.size()) {
            std::size_t comma = names.find(',', start);
            if (comma == std::string_view::npos) comma = names.size();
            const std::string name(Trim(names.substr(start, comma - start)));
            if (auto it = fClassDefs.find(name); it != fClassDefs.end())
                QVLMergeStyle(node->Style, it->second);
            start = comma + 1;
        }
    }

    void ReadMermaidStyle(const TUmlLine& line, std::string_view lower) {
        static const TRegex kClassDef(R"(^classDef\s+(\S+)\s+(.*)$)");
        static const TRegex kStyle(R"(^style\s+(\S+)\s+(.*)$)");
        static const TRegex kCssClass(R"re(^cssClass\s+"([^"]*)"\s+(\S+)$)re");
        TRegexMatch m;
        if (kClassDef.Match(line.Text, m)) {
            std::size_t start = 0;
            const std::string_view names = m.Group(1);
            TQVLDiagStyle style;
            for (const std::string& p : QVLApplyStyleProperties(m.Group(2), style))
                UmlNotDrawn(fModel, line, "the style property \"" + p + "\".");
            while (start <= names.size()) {
                std::size_t comma = names.find(',', start);
                if (comma == std::string_view::npos) comma = names.size();
                fClassDefs[std::string(Trim(names.substr(start, comma - start)))] = style;
                start = comma + 1;
            }
        } else if (kStyle.Match(line.Text, m)) {
            TQVLDiagNode& node = Class(m.Group(1), false);
            for (const std::string& p : QVLApplyStyleProperties(m.Group(2), node.Style))
                UmlNotDrawn(fModel, line, "the style property \"" + p + "\".");
        } else if (kCssClass.Match(line.Text, m)) {
            const std::string_view ids = m.Group(1);
            std::size_t start = 0;
            while (start <= ids.size()) {
                std::size_t comma = ids.find(',', start);
                if (comma == std::string_view::npos) comma = ids.size();
                const std::string id(Trim(ids.substr(start, comma - start)));
                if (!id.empty()) ApplyClassDef(Class(id, false).ID, m.Group(2));
                start = comma + 1;
            }
        } else if (!(lower.starts_with("click ") || lower.starts_with("callback ") ||
                     lower.starts_with("link "))) {
            UmlNotDrawn(fModel, line, "an unknown style statement.");
        }
    }

    bool ReadNote(const TUmlLine& line) {
        static const TRegex kMermaidNote(R"re(^note\s+(?:for\s+(\S+)\s+)?"(.*)"\s*$)re");
        static const TRegex kPumlNoteOn(
            R"re(^note\s+(left|right|top|bottom)(?:\s+of\s+("[^"]+"|[\w.:$]+))?\s*(#\S+)?\s*(?::\s*(.*))?$)re",
            {TRegexFlag::rfCaseless});
        static const TRegex kPumlNoteAs(R"re(^note\s+"(.*)"\s+as\s+(\w+)\s*(#\S+)?$)re",
                                        {TRegexFlag::rfCaseless});
        static const TRegex kPumlNoteBlockAs(R"re(^note\s+as\s+(\w+)\s*(#\S+)?$)re",
                                             {TRegexFlag::rfCaseless});
        TRegexMatch m;
        if (fMermaid) {
            if (!kMermaidNote.Match(line.Text, m)) return false;
            AddNote(std::string(m.Group(2)), std::string(m.Group(1)));
            return true;
        }
        if (kPumlNoteOn.Match(line.Text, m)) {
            std::string target(m.Group(2));
            if (target.empty() && !fModel.Nodes().empty()) target = fModel.Nodes().back().ID;
            if (m.Matched(4)) {
                AddNote(std::string(m.Group(4)), target);
            } else {
                fInNote = true;
                fNoteTarget = target;
                fNoteId.clear();
            }
            return true;
        }
        if (kPumlNoteAs.Match(line.Text, m)) {
            AddNote(std::string(m.Group(1)), "", std::string(m.Group(2)));
            return true;
        }
        if (kPumlNoteBlockAs.Match(line.Text, m)) {
            fInNote = true;
            fNoteTarget.clear();
            fNoteId = std::string(m.Group(1));
            return true;
        }
        return false;
    }

    void ReadStatement(const TUmlLine& line) {
        const std::string_view text = line.Text;
        const std::string lower = ToLowerAscii(text);
        if (fMermaid && (lower.starts_with("classdiagram"))) return;
        if (text == "}") {
            if (!fGroups.empty()) fGroups.pop_back();
            return;
        }
        if (lower.starts_with("direction ")) {
            const std::string d = std::string(Trim(std::string_view(lower).substr(10)));
            fModel.fDirection =
                d == "lr" || d == "rl" ? TQVLFlowDirection::fdLeftRight : TQVLFlowDirection::fdTopDown;
            return;
        }
        if (!fMermaid && (lower == "left to right direction" || lower == "top to bottom direction")) {
            fModel.fDirection =
                lower.starts_with("left") ? TQVLFlowDirection::fdLeftRight : TQVLFlowDirection::fdTopDown;
            return;
        }
        if (lower.starts_with("title ") || lower == "title") {
            fModel.fTitle = QVLPlainCaption(Trim(text.substr(5)), !fMermaid);
            return;
        }
        if (lower.starts_with("note ") && ReadNote(line)) return;
        static const TRegex kGroup(
            R"re(^(namespace|package|together|rectangle|frame|folder|node|cloud|database)\b\s*(?:"([^"]+)"|([^\s{<#]+))?\s*(?:as\s+(\S+))?\s*(?:<<[^>]*>>)?\s*(#\S+)?\s*\{\s*$)re",
            {TRegexFlag::rfCaseless});
        TRegexMatch m;
        if (kGroup.Match(text, m)) {
            if (ToLowerAscii(m.Group(1)) == "together") {
                fGroups.push_back(-1);
                return;
            }
            std::string name = m.Matched(2) ? std::string(m.Group(2)) : std::string(m.Group(3));
            std::string id = m.Matched(4) ? std::string(m.Group(4)) : name;
            if (id.empty()) id = name = "group" + std::to_string(fModel.Groups().size() + 1);
            OpenGroup(id, name);
            if (m.Matched(5)) {
                TAlphaColor c = 0;
                if (QVLReadColor(m.Group(5), c)) fModel.FindGroup(id)->Style.Fill = c;
            }
            return;
        }
        if (fMermaid) {
            if (lower.starts_with("class ")) return DeclareMermaid(line, Trim(text.substr(6)));
            if (text.starts_with("<<")) {
                const std::size_t close = text.find(">>");
                if (close != std::string_view::npos) {
                    TQVLDiagNode& node = Class(Trim(text.substr(close + 2)), false);
                    SetStereotype(node, text.substr(2, close - 2));
                    return;
                }
            }
            if (lower.starts_with("classdef ") || lower.starts_with("style ") ||
                lower.starts_with("cssclass ") || lower.starts_with("click ") ||
                lower.starts_with("callback ") || lower.starts_with("link "))
                return ReadMermaidStyle(line, lower);
        } else {
            static const TRegex kKeyword(
                R"(^(abstract\s+class|abstract|class|interface|enum|annotation|entity|object|map|json|struct|exception|protocol|metaclass|stereotype|circle|diamond|dataclass|record)\s+(.*)$)",
                {TRegexFlag::rfCaseless});
            if (kKeyword.Match(text, m)) return DeclarePlantUML(line, m.Group(1), m.Group(2));
            if (lower.starts_with("skinparam")) {
                if (text.ends_with("{")) fSkinDepth = 1;
                return;
            }
            if (lower.starts_with("hide ") || lower.starts_with("show ") || lower.starts_with("set ") ||
                lower.starts_with("remove ") || lower == "allowmixing" || lower.starts_with("allow_mixing") ||
                lower.starts_with("!"))
                return;
        }
        if (ReadRelation(line)) return;
        static const TRegex kMember(R"re(^("[^"]+"|[^\s:"]+)\s*:\s*(.*)$)re");
        if (kMember.Match(text, m) && !m.Group(1).empty()) {
            TQVLDiagNode& node = Class(m.Group(1), false);
            if (node.Role == "object" && !fMermaid)
                node.Compartments[0].emplace_back(Trim(m.Group(2)));
            else
                AddMember(node, m.Group(2));
            return;
        }
        // A bare name declares a class (Mermaid allows "ClassName" alone on a line only inside namespaces).
        static const TRegex kBare(R"(^[\w.$]+$)");
        if (fMermaid && kBare.Match(text)) {
            Class(text, true);
            return;
        }
        UmlNotDrawn(fModel, line, "a statement this class diagram reader does not know.");
    }

    TORXDiagramModel& fModel;
    bool fMermaid;
    std::map<std::string, TClassInfo> fInfo;
    std::map<std::string, TQVLDiagStyle> fClassDefs;
    std::vector<long> fGroups;  // indices of the open groups; -1 for a "together" block
    std::string fBody;          // the class whose body is open
    int fSkinDepth = 0;
    int fNotes = 0;
    bool fInNote = false;
    std::vector<std::string> fNoteLines;
    std::string fNoteTarget;
    std::string fNoteId;
};

bool IsPlantUMLClassDiagram(std::string_view text) {
    using TKind = TORXPlantUMLParser::TPumlKind;
    const auto content = UmlPlantUMLContent(text);
    if (!content || (content->Kind != TKind::pkStructure && content->Kind != TKind::pkUnknown)) return false;
    static const TRegex kClassWord(
        R"(^(class|abstract|interface|enum|annotation|object|map|json|struct|exception|metaclass|protocol|stereotype|namespace)\s)",
        {TRegexFlag::rfCaseless});
    static const TRegex kClassLink(R"((<\|--|--\|>|<\|\.\.|\.\.\|>))");
    for (const std::string_view line : content->Lines)
        if (kClassWord.Match(line) || kClassLink.Match(line)) return true;
    return false;
}

}  // namespace

bool QVLImportClassDiagram(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    const bool mermaid = aFormat == TQVLDiagramFormat::dgMermaid;
    if (mermaid ? !UmlMermaidHeaderIs(aText, {"classdiagram", "classdiagram-v2"}, aModel)
                : !IsPlantUMLClassDiagram(aText))
        return false;
    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    TClassReader reader(aModel, mermaid);
    reader.Read(UmlStatementLines(aText, aFormat));
    return true;
}

bool QVLImportUml(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (QVLImportClassDiagram(aText, aFormat, aModel)) return true;
    aModel.Clear();
    if (QVLImportErDiagram(aText, aFormat, aModel)) return true;
    aModel.Clear();
    if (QVLImportStateDiagram(aText, aFormat, aModel)) return true;
    aModel.Clear();
    return false;
}

}  // namespace Orvex
