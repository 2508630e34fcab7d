// Mermaid requirement diagrams: requirements and elements as boxes that name their kind over their name and
// list their fields (id, text, risk, verification; type, document reference), joined by relations labelled
// with their kind ("«satisfies»"). A containment starts at its container with a circled end.
#include <map>
#include <string>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/diagrams/uml_import_lines.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::ToLowerAscii;
using Qvl::Utils::Trim;

// The kinds of box, as written (lower-cased) and as shown over the name.
const std::map<std::string, std::string, std::less<>>& BoxKinds() {
    static const std::map<std::string, std::string, std::less<>> kKinds{
        {"requirement", "Requirement"},
        {"functionalrequirement", "Functional Requirement"},
        {"interfacerequirement", "Interface Requirement"},
        {"performancerequirement", "Performance Requirement"},
        {"physicalrequirement", "Physical Requirement"},
        {"designconstraint", "Design Constraint"},
        {"element", "Element"}};
    return kKinds;
}

bool IsRelationKind(std::string_view kind) {
    for (const std::string_view k :
         {"contains", "copies", "derives", "satisfies", "verifies", "refines", "traces"})
        if (kind == k) return true;
    return false;
}

// A field's caption and how its value is shown: risks and methods start with a capital as Mermaid shows
// them, free texts stay as written.
struct TField {
    std::string_view Caption;
    bool Capitalise = false;
};

const std::map<std::string, TField, std::less<>>& RequirementFields() {
    static const std::map<std::string, TField, std::less<>> kFields{{"id", {"ID", false}},
                                                                    {"text", {"Text", false}},
                                                                    {"risk", {"Risk", true}},
                                                                    {"verifymethod", {"Verification", true}}};
    return kFields;
}

const std::map<std::string, TField, std::less<>>& ElementFields() {
    static const std::map<std::string, TField, std::less<>> kFields{{"type", {"Type", false}},
                                                                    {"docref", {"Doc Ref", false}}};
    return kFields;
}

std::string Capitalised(std::string_view text) {
    std::string out = ToLowerAscii(text);
    if (!out.empty() && out[0] >= 'a' && out[0] <= 'z') out[0] = static_cast<char>(out[0] - 'a' + 'A');
    return out;
}

class TRequirementReader {
  public:
    explicit TRequirementReader(TORXDiagramModel& model) : fModel(model) {}

    void Read(const std::vector<TUmlLine>& lines) {
        bool accBlock = false;
        bool header = true;
        for (const TUmlLine& line : lines) {
            if (UmlConsumedMermaid(line.Text, accBlock)) continue;
            if (header) {
                header = false;  // "requirementDiagram"
                continue;
            }
            if (fOpen != nullptr)
                ReadField(line);
            else
                ReadStatement(line);
        }
        if (fOpen != nullptr)
            fModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsError, fOpenLine,
                                 "REQUIREMENT_UNCLOSED_BLOCK",
                                 "The block of \"" + fOpen->ID + "\" has no closing \"}\".", "");
        for (const auto& [id, className] : fClassOf) ApplyClass(id, className);
    }

  private:
    void ReadStatement(const TUmlLine& line) {
        static const TRegex kBox(R"(^(\w+)\s+("[^"]*"|[^\s{:]+)(?::::(\w+))?\s*\{\s*$)");
        static const TRegex kRelation(R"(^("[^"]*"|[^\s-]+)\s*-\s*(\w+)\s*->\s*("[^"]*"|\S+)$)");
        static const TRegex kBackRelation(R"(^("[^"]*"|\S+)\s*<-\s*(\w+)\s*-\s*("[^"]*"|[^\s-]+)$)");
        static const TRegex kDirection(R"(^direction\s+(TB|TD|BT|LR|RL)$)", {TRegexFlag::rfCaseless});
        static const TRegex kStyle(R"(^style\s+([\w,\s]+?)\s+(\S.*)$)");
        static const TRegex kClassDef(R"(^classDef\s+([\w,]+)\s+(\S.*)$)");
        static const TRegex kClass(R"(^class\s+([\w,\s]+?)\s+(\w+)$)");
        TRegexMatch m;
        const std::string_view text = line.Text;
        if (kBox.MatchAt(text, 0, m)) {
            const auto kind = BoxKinds().find(ToLowerAscii(m.Group(1)));
            if (kind == BoxKinds().end()) {
                UmlNotDrawn(fModel, line,
                            "\"" + std::string(m.Group(1)) + "\" is no requirement or element kind");
                fOpen = &fSkipped;  // its fields are read and dropped with it
                fOpenLine = line.No;
                return;
            }
            TQVLDiagNode& node = Box(UmlUnquote(m.Group(2)));
            node.Text = "«" + kind->second + "»\r\n" + node.ID;
            node.Role = kind->first == "element" ? "element" : "requirement";
            node.Compartments = {{}};
            if (m.Matched(3)) fClassOf.emplace_back(node.ID, std::string(m.Group(3)));
            fOpen = &node;
            fOpenLine = line.No;
            fFields = kind->first == "element" ? &ElementFields() : &RequirementFields();
        } else if (kRelation.MatchAt(text, 0, m)) {
            Relate(line, UmlUnquote(m.Group(1)), ToLowerAscii(m.Group(2)), UmlUnquote(m.Group(3)));
        } else if (kBackRelation.MatchAt(text, 0, m)) {
            Relate(line, UmlUnquote(m.Group(3)), ToLowerAscii(m.Group(2)), UmlUnquote(m.Group(1)));
        } else if (kDirection.MatchAt(text, 0, m)) {
            const std::string d = ToLowerAscii(m.Group(1));
            fModel.fDirection =
                d == "lr" || d == "rl" ? TQVLFlowDirection::fdLeftRight : TQVLFlowDirection::fdTopDown;
        } else if (kStyle.MatchAt(text, 0, m)) {
            for (const std::string& id : Split(m.Group(1))) {
                TQVLDiagNode* node = fModel.FindNode(id);
                if (node == nullptr) {
                    UmlNotDrawn(fModel, line, "no requirement or element is named \"" + id + "\"");
                    continue;
                }
                Unmapped(line, QVLApplyStyleProperties(m.Group(2), node->Style));
            }
        } else if (kClassDef.MatchAt(text, 0, m)) {
            TQVLDiagStyle style;
            Unmapped(line, QVLApplyStyleProperties(m.Group(2), style));
            for (const std::string& name : Split(m.Group(1))) fClasses[name] = style;
        } else if (kClass.MatchAt(text, 0, m)) {
            for (const std::string& id : Split(m.Group(1)))
                fClassOf.emplace_back(id, std::string(m.Group(2)));
        } else {
            UmlNotDrawn(fModel, line, "it is no requirement, element, relation or style statement");
        }
    }

    void ReadField(const TUmlLine& line) {
        std::string_view text = line.Text;
        if (text == "}") {
            fOpen = nullptr;
            return;
        }
        if (fOpen == &fSkipped) return;
        const std::size_t colon = text.find(':');
        const std::string key =
            ToLowerAscii(Trim(text.substr(0, colon == std::string_view::npos ? 0 : colon)));
        const auto field = fFields->find(key);
        if (colon == std::string_view::npos || field == fFields->end()) {
            UmlNotDrawn(fModel, line, "a field here is one of " + FieldNames());
            return;
        }
        std::string value = QVLPlainCaption(Trim(text.substr(colon + 1)));
        if (field->second.Capitalise) value = Capitalised(value);
        fOpen->Compartments[0].push_back(std::string(field->second.Caption) + ": " + value);
    }

    void Relate(const TUmlLine& line, const std::string& from, const std::string& kind,
                const std::string& to) {
        if (!IsRelationKind(kind)) {
            UmlNotDrawn(fModel, line,
                        "\"" + kind +
                            "\" is no relation kind (contains, copies, derives, satisfies, "
                            "verifies, refines, traces)");
            return;
        }
        // An end named before its block gets a plain box; the block, when it comes, gives it its kind.
        Box(from);
        Box(to);
        fModel.AddEdge(from, to, "«" + kind + "»", true, TQVLDiagEdgeArrow::eaOpenArrow);
        if (kind == "contains") {
            TQVLDiagEdge* edge = fModel.LastEdge();
            edge->FromArrow = TQVLDiagEdgeArrow::eaCircle;
            edge->Arrow = TQVLDiagEdgeArrow::eaNone;
            edge->Dotted = false;
        }
    }

    TQVLDiagNode& Box(const std::string& id) {
        if (fModel.FindNode(id) == nullptr) {
            fModel.AddNode(id, id, TQVLFlowType::ftProcess, true);
            TQVLDiagNode* node = fModel.FindNode(id);
            node->Role = "element";
            node->Compartments = {{}};
        }
        return *fModel.FindNode(id);
    }

    void ApplyClass(const std::string& id, const std::string& className) {
        TQVLDiagNode* node = fModel.FindNode(id);
        const auto style = fClasses.find(className);
        if (node != nullptr && style != fClasses.end()) QVLMergeStyle(node->Style, style->second);
    }

    void Unmapped(const TUmlLine& line, const std::vector<std::string>& properties) {
        for (const std::string& p : properties)
            fModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsInfo, line.No, "UNMAPPED_STYLE_PROPERTY",
                                 "The style property \"" + p + "\" has no drawing.", std::string(line.Text));
    }

    std::string FieldNames() const {
        std::string names;
        for (const auto& [key, field] : *fFields) names += (names.empty() ? "" : ", ") + key;
        return names;
    }

    static std::vector<std::string> Split(std::string_view list) {
        std::vector<std::string> out;
        std::size_t start = 0;
        while (start <= list.size()) {
            const std::size_t comma = list.find(',', start);
            const std::string_view part = Trim(
                list.substr(start, comma == std::string_view::npos ? std::string_view::npos : comma - start));
            if (!part.empty()) out.emplace_back(part);
            if (comma == std::string_view::npos) break;
            start = comma + 1;
        }
        return out;
    }

    TORXDiagramModel& fModel;
    TQVLDiagNode* fOpen = nullptr;  // the box whose block is being read
    TQVLDiagNode fSkipped;          // stands for a block of an unknown kind
    std::int32_t fOpenLine = 0;
    const std::map<std::string, TField, std::less<>>* fFields = &RequirementFields();
    std::map<std::string, TQVLDiagStyle, std::less<>> fClasses;
    std::vector<std::pair<std::string, std::string>> fClassOf;  // node id, class name, in source order
};

}  // namespace

bool QVLImportRequirementDiagram(std::string_view aText, TQVLDiagramFormat aFormat,
                                 TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgMermaid) return false;
    const std::string header = QVLMermaidHeaderWord(aText);
    if (header != "requirementdiagram" && header != "requirement") return false;
    aModel.fTitle = QVLFrontMatterValue(aText, "title");
    TRequirementReader reader(aModel);
    reader.Read(UmlStatementLines(aText, aFormat));
    return true;
}

}  // namespace Orvex
