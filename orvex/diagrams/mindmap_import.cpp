#include "orvex/diagrams/mindmap_import.h"

#include <map>
#include <optional>
#include <string>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/diagrams/kind_helpers.h"
#include "orvex/diagrams/sequence_builder.h"
#include "orvex/diagrams/uml_import_lines.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::SameTextIgnoringCase;
using Qvl::Utils::Trim;

constexpr auto kCaseless = TRegexFlag::rfCaseless;
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;

bool IsMindMapText(std::string_view text) {
    static const TRegex kStart(R"(^\s*@start(?:mindmap|wbs)\b)", {kCaseless, TRegexFlag::rfMultiline});
    return kStart.Match(text);
}

// One item line: its marker ("***", "++", "-"), the optional direction of a WBS branch, the colour in
// brackets, the boxless mark, the opening colon of a multi-line caption, and the caption.
struct TItem {
    std::string Marker;
    char Direction = 0;
    std::string Color;
    bool MultiLine = false;
    std::string Caption;
};

bool ReadItem(std::string_view line, TItem& item) {
    static const TRegex kItem(R"(^(\*+|\++|-+)([<>])?(?:\[([^\]]*)\])?(_)?(?:(:)|\s+|$)(.*)$)");
    TRegexMatch m;
    if (!kItem.MatchAt(line, 0, m)) return false;
    item.Marker = std::string(m.Group(1));
    item.Direction = m.Matched(2) ? m.Group(2)[0] : char{0};
    item.Color = std::string(m.Group(3));
    item.MultiLine = m.Matched(5);
    item.Caption = std::string(m.Group(6));
    return true;
}

// The caption as drawn: icons ("<&people>") and a trailing stereotype dropped, creole markup removed.
std::string ItemCaption(std::string_view text) {
    static const TRegex kIcon(R"(<&[^>]+>\s*)");
    static const TRegex kStereotype(R"(\s*<<[^>]+>>\s*$)");
    std::string caption(text);
    TRegexMatch m;
    while (kIcon.Match(caption, m)) caption.erase(m.Start(0), m.End(0) - m.Start(0));
    if (kStereotype.Match(caption, m)) caption.erase(m.Start(0));
    return QVLPlainCaption(caption, true);
}

// Background colours from a <style> block: for every node, or for the nodes at one depth (the root is
// depth 0). Each declaration the tree cannot show is named, not dropped.
class TStyleBlock {
  public:
    void Read(const TUmlLine& line, TORXDiagramModel& model) {
        static const TRegex kNode(R"(^node\s*\{)", {kCaseless});
        static const TRegex kDepth(R"(^:depth\((\d{1,4})\)\s*\{)", {kCaseless});
        static const TRegex kBackground(R"(^BackgroundColor\s+(\S+?);?$)", {kCaseless});
        TRegexMatch m;
        if (kNode.Match(line.Text)) {
            fDepth = kEvery;
        } else if (kDepth.Match(line.Text, m)) {
            fDepth = std::stoi(std::string(m.Group(1)));
        } else if (line.Text.starts_with('}')) {
            fDepth = kNoSelector;
        } else if (line.Text.ends_with('{')) {
            fDepth = kNoSelector;  // a selector that only holds other selectors or properties we name
        } else if (kBackground.Match(line.Text, m) && fDepth != kNoSelector &&
                   QVLSeqColor(m.Group(1)).has_value()) {
            fColors[fDepth] = *QVLSeqColor(m.Group(1));
        } else {
            UmlNotDrawn(model, line, "a style property the mind map does not apply.");
        }
    }
    std::optional<TAlphaColor> ColorAt(int depth) const {
        if (const auto it = fColors.find(depth); it != fColors.end()) return it->second;
        if (const auto it = fColors.find(kEvery); it != fColors.end()) return it->second;
        return std::nullopt;
    }

  private:
    static constexpr int kEvery = -1;
    static constexpr int kNoSelector = -2;
    int fDepth = kNoSelector;
    std::map<int, TAlphaColor> fColors;
};

// Statements that change nothing a tree shows: they are named as not drawn.
bool IsPresentationStatement(std::string_view line) {
    static const TRegex kPresentation(
        R"(^(?:skinparam|scale|caption|header|footer|hide|show|top\s+to\s+bottom|left\s+to\s+right|!)\b)",
        {kCaseless});
    return kPresentation.Match(line);
}

class TMindMapReader {
  public:
    TMindMapReader(std::string_view text, TORXDiagramModel& model)
        : fRaw(QVLSplitDiagramLines(text)),
          fLines(UmlStatementLines(text, TQVLDiagramFormat::dgPlantUML)),
          fModel(model) {
        // A text whose items all have one-character markers writes its branches by indentation; any
        // longer marker means the depth is the marker's length, and indentation is only for reading.
        for (const TUmlLine& line : fLines) {
            TItem item;
            if (ReadItem(line.Text, item) && item.Marker.size() > 1) fByIndent = false;
        }
    }

    void Read() {
        fModel.fKind = TQVLDiagramKind::dkMindMap;
        fModel.fDirection = TQVLFlowDirection::fdLeftRight;
        for (std::size_t i = 0; i < fLines.size(); ++i) {
            const TUmlLine& line = fLines[i];
            if (fInStyle) {
                if (SameTextIgnoringCase(line.Text, "</style>"))
                    fInStyle = false;
                else
                    fStyle.Read(line, fModel);
                continue;
            }
            if (fInLegend) {
                fInLegend = !SameTextIgnoringCase(line.Text, "endlegend") &&
                            !SameTextIgnoringCase(line.Text, "end legend");
                continue;
            }
            i = ReadStatement(i);
        }
        if (fInMultiLine)
            fModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsError, fMultiLineStart,
                                 "MINDMAP_UNCLOSED_ITEM",
                                 "A multi-line item opened with \":\" ends with a line ending in \";\".", "");
    }

  private:
    // Reads the statement at fLines[i] and returns the index of its last line.
    std::size_t ReadStatement(std::size_t i) {
        static const TRegex kTitle(R"(^title\s+(.+)$)", {kCaseless});
        static const TRegex kLegend(R"(^legend\b)", {kCaseless});
        const TUmlLine& line = fLines[i];
        TRegexMatch m;
        TItem item;
        if (ReadItem(line.Text, item)) return AddItem(i, item);
        if (SameTextIgnoringCase(line.Text, "<style>")) {
            fInStyle = true;
        } else if (SameTextIgnoringCase(line.Text, "left side")) {
            fSide = -1;
        } else if (SameTextIgnoringCase(line.Text, "right side")) {
            fSide = 1;
        } else if (kTitle.Match(line.Text, m)) {
            fModel.fTitle = QVLPlainCaption(m.Group(1), true);
        } else if (kLegend.Match(line.Text)) {
            UmlNotDrawn(fModel, line, "a legend.");
            fInLegend = true;
        } else if (IsPresentationStatement(line.Text)) {
            UmlNotDrawn(fModel, line, "a presentation setting.");
        } else {
            fModel.AddDiagnostic(kWarning, line.No, "MINDMAP_UNRECOGNIZED_LINE",
                                 "A mind map line is an item (\"* text\", \"** text\", \"+ text\"), indented "
                                 "under its parent or marked one level deeper.",
                                 line.Text);
        }
        return i;
    }

    // Adds the item starting at fLines[i] (its caption may run over the following lines up to one ending
    // in ";") and returns the index of its last line.
    std::size_t AddItem(std::size_t i, const TItem& item) {
        const TUmlLine& line = fLines[i];
        std::string caption = item.Caption;
        if (item.MultiLine) {
            fInMultiLine = true;
            fMultiLineStart = line.No;
            std::size_t last = i;
            while (!Trim(caption).ends_with(';') && last + 1 < fLines.size()) {
                ++last;
                // Continuation lines keep their own text, blank lines included: read them unsplit.
                caption += "\n" + std::string(Trim(fRaw[static_cast<std::size_t>(fLines[last].No) - 1]));
            }
            if (!Trim(caption).ends_with(';')) return last;
            fInMultiLine = false;
            caption = std::string(Trim(caption));
            caption.pop_back();
            i = last;
        }
        const std::string text = ItemCaption(caption);
        if (text.empty())
            fModel.AddDiagnostic(kWarning, line.No, "MINDMAP_EMPTY_ITEM", "The item has no text.", line.Text);

        const int key = fByIndent ? QVLIndentOf(fRaw[static_cast<std::size_t>(line.No) - 1])
                                  : static_cast<int>(item.Marker.size());
        const std::string parent = fTree.ParentFor(key);
        const auto depth = static_cast<int>(fTree.Depth());
        std::optional<TAlphaColor> color;
        if (!item.Color.empty()) {
            const std::string colorText(Trim(item.Color.substr(0, item.Color.find(';'))));
            color = QVLSeqColor(colorText);
            if (!color)
                fModel.AddDiagnostic(kWarning, line.No, "MINDMAP_COLOR",
                                     "\"" + item.Color + "\" is not a colour; the item keeps the default.",
                                     line.Text);
        }
        if (!color) color = fStyle.ColorAt(depth);
        const std::int8_t side = ItemSide(item);
        const std::string id = fIds.Next();
        const bool root = parent.empty();
        fModel.AddNode(id, text, root ? TQVLFlowType::ftEllipse : TQVLFlowType::ftProcess, true,
                       root ? std::int8_t{0} : side, color.value_or(0), color.has_value());
        fModel.AddEdge(parent, id, "", false, TQVLDiagEdgeArrow::eaNone);
        fTree.Push(key, id);
        return i;
    }

    // "-" items go left and "+" items right; "<" and ">" after a WBS marker say the same; "*" items
    // follow the latest "left side" or "right side".
    std::int8_t ItemSide(const TItem& item) const {
        if (item.Direction == '<' || item.Marker[0] == '-') return -1;
        if (item.Direction == '>' || item.Marker[0] == '+') return 1;
        return fSide;
    }

    std::vector<std::string_view> fRaw;
    std::vector<TUmlLine> fLines;
    TORXDiagramModel& fModel;
    bool fByIndent = true;
    bool fInStyle = false;
    bool fInLegend = false;
    bool fInMultiLine = false;
    std::int32_t fMultiLineStart = 0;
    std::int8_t fSide = 0;
    TStyleBlock fStyle;
    TIndentTree fTree;
    TIdCounter fIds{"mind_"};
};

}  // namespace

bool QVLImportMindMap(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgPlantUML || !IsMindMapText(aText)) return false;
    TMindMapReader(aText, aModel).Read();
    return true;
}

}  // namespace Orvex
