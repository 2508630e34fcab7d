// Mermaid entity-relation diagrams: entities as tables (one compartment row per attribute) and
// relations with a crow's-foot end for each cardinality, written as symbols ("||--o{") or words
// ("only one to zero or more").
#include <map>
#include <string>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/import_text.h"
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

// A cardinality as symbols (either side's spelling) or words; eaNone when it is neither.
TQVLDiagEdgeArrow Cardinality(std::string_view written) {
    const std::string c = ToLowerAscii(Trim(written));
    if (c == "|o" || c == "o|" || c == "zero or one" || c == "one or zero") return A::eaCrowZeroOne;
    if (c == "||" || c == "only one" || c == "1" || c == "exactly one") return A::eaCrowOnlyOne;
    if (c == "}o" || c == "o{" || c == "zero or more" || c == "zero or many" || c == "many(0)" || c == "0+")
        return A::eaCrowZeroMany;
    if (c == "}|" || c == "|{" || c == "one or more" || c == "one or many" || c == "many(1)" || c == "1+")
        return A::eaCrowOneMany;
    return A::eaNone;
}

constexpr std::string_view kCardinalityWords =
    R"((?:\|o|\|\||\}o|\}\||zero or one|one or zero|only one|exactly one|zero or more|zero or many|one or more|one or many|many\(0\)|many\(1\)|0\+|1\+|1))";
constexpr std::string_view kCardinalityRight =
    R"((?:o\||\|\||o\{|\|\{|zero or one|one or zero|only one|exactly one|zero or more|zero or many|one or more|one or many|many\(0\)|many\(1\)|0\+|1\+|1))";

class TErReader {
  public:
    explicit TErReader(TORXDiagramModel& model) : fModel(model) {}

    void Read(const std::vector<TUmlLine>& lines) {
        bool accBlock = false;
        bool header = true;
        for (const TUmlLine& line : lines) {
            if (UmlConsumedMermaid(line.Text, accBlock)) continue;
            if (header) {
                header = false;  // "erDiagram"
                continue;
            }
            if (!fBody.empty()) {
                ReadAttribute(line);
                continue;
            }
            ReadStatement(line);
        }
    }

  private:
    TQVLDiagNode& Entity(std::string_view written, std::string_view alias = {}) {
        const std::string id = UmlUnquote(written);
        if (fModel.FindNode(id) == nullptr) {
            fModel.AddNode(id, id, TQVLFlowType::ftProcess, true);
            TQVLDiagNode* n = fModel.FindNode(id);
            n->Role = "entity";
            n->Compartments = {{}};
        }
        TQVLDiagNode& node = *fModel.FindNode(id);
        if (!alias.empty()) node.Text = QVLPlainCaption(alias);
        return node;
    }

    void ReadAttribute(const TUmlLine& line) {
        std::string_view text = line.Text;
        if (text.starts_with("}")) {
            fBody.clear();
            return;
        }
        const bool closes = text.ends_with("}");
        if (closes) text = Trim(text.substr(0, text.size() - 1));
        // type name [PK|FK|UK[, ...]] ["comment"]
        static const TRegex kAttr(
            R"re(^([\w\-\[\]()~,.*]+)\s+([\w\-\[\]()*.]+)\s*((?:(?:PK|FK|UK)\s*,?\s*)*)\s*(?:"([^"]*)")?\s*$)re");
        TRegexMatch m;
        if (!text.empty()) {
            if (kAttr.Match(text, m)) {
                std::string row = std::string(m.Group(1)) + " " + std::string(m.Group(2));
                std::string keys;
                for (const std::string_view key : {"PK", "FK", "UK"})
                    if (m.Group(3).find(key) != std::string_view::npos)
                        keys += (keys.empty() ? "" : ", ") + std::string(key);
                if (!keys.empty()) row += " " + keys;
                if (m.Matched(4)) row += " \"" + std::string(m.Group(4)) + "\"";
                fModel.FindNode(fBody)->Compartments[0].push_back(row);
            } else {
                UmlNotDrawn(fModel, line, "an attribute that is not \"type name [keys] [\\\"comment\\\"]\".");
            }
        }
        if (closes) fBody.clear();
    }

    bool ReadRelation(const TUmlLine& line) {
        static const TRegex kRelation(
            std::string(R"re(^("[^"]+"|[^\s"]+?)\s*()re") + std::string(kCardinalityWords) +
                R"re()\s*(--|\.\.|optionally to|to)\s*()re" + std::string(kCardinalityRight) +
                R"re()\s*("[^"]+"|[^\s:"]+)\s*(?::\s*(.*))?$)re",
            {TRegexFlag::rfCaseless});
        TRegexMatch m;
        if (!kRelation.Match(line.Text, m)) return false;
        const std::string from = Entity(m.Group(1)).ID;
        const std::string to = Entity(m.Group(5)).ID;
        const std::string link = ToLowerAscii(m.Group(3));
        const bool dotted = link == ".." || link == "optionally to";
        fModel.AddEdge(from, to, QVLPlainCaption(m.Group(6)), dotted, A::eaNone);
        TQVLDiagEdge* e = fModel.LastEdge();
        e->FromArrow = Cardinality(m.Group(2));
        e->Arrow = Cardinality(m.Group(4));
        return true;
    }

    void ReadStatement(const TUmlLine& line) {
        const std::string_view text = line.Text;
        const std::string lower = ToLowerAscii(text);
        if (lower.starts_with("direction ")) {
            const std::string d(Trim(std::string_view(lower).substr(10)));
            fModel.fDirection =
                d == "lr" || d == "rl" ? TQVLFlowDirection::fdLeftRight : TQVLFlowDirection::fdTopDown;
            return;
        }
        if (lower.starts_with("title ")) {
            fModel.fTitle = QVLPlainCaption(Trim(text.substr(6)));
            return;
        }
        if (ReadRelation(line)) return;
        static const TRegex kClassDef(R"(^classDef\s+(\S+)\s+(.*)$)");
        static const TRegex kStyle(R"(^style\s+(\S+)\s+(.*)$)");
        static const TRegex kClass(R"(^class\s+(\S+)\s+(\S+)$)");
        TRegexMatch m;
        if (kClassDef.Match(text, m)) {
            TQVLDiagStyle& style = fClassDefs[std::string(m.Group(1))];
            for (const std::string& p : QVLApplyStyleProperties(m.Group(2), style))
                UmlNotDrawn(fModel, line, "the style property \"" + p + "\".");
            return;
        }
        if (kStyle.Match(text, m)) {
            for (const std::string& p : QVLApplyStyleProperties(m.Group(2), Entity(m.Group(1)).Style))
                UmlNotDrawn(fModel, line, "the style property \"" + p + "\".");
            return;
        }
        if (kClass.Match(text, m)) {
            std::string_view ids = m.Group(1);
            std::size_t start = 0;
            while (start <= ids.size()) {
                std::size_t comma = ids.find(',', start);
                if (comma == std::string_view::npos) comma = ids.size();
                ApplyClassDef(Entity(Trim(ids.substr(start, comma - start))), m.Group(2));
                start = comma + 1;
            }
            return;
        }
        // NAME, NAME["Alias"], NAME:::class, each optionally opening a body with "{".
        static const TRegex kEntity(
            R"re(^("[^"]+"|[^\s\[{:"]+)\s*(?:\[\s*(.*?)\s*\])?\s*(?::::\s*(\S+))?\s*(\{)?\s*(.*)$)re");
        if (kEntity.Match(text, m) && (m.Group(5).empty() || m.Matched(4))) {
            TQVLDiagNode& node = Entity(m.Group(1), m.Group(2));
            if (m.Matched(3)) ApplyClassDef(node, m.Group(3));
            if (m.Matched(4)) {
                fBody = node.ID;
                if (!m.Group(5).empty()) ReadAttribute({m.Group(5), line.No});
            }
            return;
        }
        UmlNotDrawn(fModel, line, "a statement this entity-relation reader does not know.");
    }

    void ApplyClassDef(TQVLDiagNode& node, std::string_view names) {
        std::size_t start = 0;
        while (start <= names.size()) {
            std::size_t comma = names.find(',', start);
            if (comma == std::string_view::npos) comma = names.size();
            if (auto it = fClassDefs.find(std::string(Trim(names.substr(start, comma - start))));
                it != fClassDefs.end())
                QVLMergeStyle(node.Style, it->second);
            start = comma + 1;
        }
    }

    TORXDiagramModel& fModel;
    std::map<std::string, TQVLDiagStyle> fClassDefs;
    std::string fBody;
};

}  // namespace

bool QVLImportErDiagram(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgMermaid || QVLMermaidHeaderWord(aText) != "erdiagram") return false;
    aModel.fTitle = QVLFrontMatterValue(aText, "title");
    TErReader reader(aModel);
    reader.Read(UmlStatementLines(aText, aFormat));
    return true;
}

}  // namespace Orvex
