// The Mermaid entry: front matter, the header dispatch to the per-kind routines, and the line loop of
// flowcharts and sequence diagrams. The per-kind routines live in mermaid_kinds.cpp and mermaid_charts.cpp.
//
// [SECTION] Shapes
// [SECTION] Flowchart statements
// [SECTION] Sequence statements
// [SECTION] Parse
#include "orvex/diagrams/mermaid_parser.h"

#include <array>
#include <cstddef>
#include <string>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_text.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;

constexpr auto kCaseless = TRegexFlag::rfCaseless;

//-----------------------------------------------------------------------------------------------------
// [SECTION] Shapes
//-----------------------------------------------------------------------------------------------------

struct TShapeForm {
    std::string_view Open;
    std::string_view Close;
    TQVLFlowType Type;
};

// Tried in this order: the longer delimiters first, so that "((x))" is a circle and not a rounded box.
constexpr std::array<TShapeForm, 14> kShapeForms{{
    {"([", "])", TQVLFlowType::ftTerminator},
    {"[[", "]]", TQVLFlowType::ftPredefined},
    {"[(", ")]", TQVLFlowType::ftDatabase},
    {"(((", ")))", TQVLFlowType::ftEnd},
    {"((", "))", TQVLFlowType::ftStart},
    {"{{", "}}", TQVLFlowType::ftPreparation},
    {"[/", "\\]", TQVLFlowType::ftManualOperation},
    {"[\\", "/]", TQVLFlowType::ftManualOperation},
    {"[/", "/]", TQVLFlowType::ftData},
    {"[\\", "\\]", TQVLFlowType::ftData},
    {">", "]", TQVLFlowType::ftManualInput},
    {"[", "]", TQVLFlowType::ftProcess},
    {"{", "}", TQVLFlowType::ftDecision},
    {"(", ")", TQVLFlowType::ftProcess},
}};

// The next position of a closing character at or after a position, remembered so that a long line with
// many nodes is searched once rather than once per node.
class TCloserIndex {
  public:
    explicit TCloserIndex(std::string_view line) : fLine(line) {}

    std::size_t Next(char closer, std::size_t from) {
        TEntry& e = fEntries[Slot(closer)];
        if (e.Valid && e.From <= from && (e.At == npos || e.At >= from)) return e.At;
        const std::size_t at = fLine.find(closer, from);
        e = {true, from, at};
        return at;
    }

    static constexpr std::size_t npos = std::string_view::npos;

  private:
    struct TEntry {
        bool Valid = false;
        std::size_t From = 0;
        std::size_t At = npos;
    };
    static std::size_t Slot(char c) { return c == ']' ? 0 : c == ')' ? 1 : 2; }
    std::string_view fLine;
    std::array<TEntry, 3> fEntries{};
};

// The length of the bracketed shape that the node pattern would take at `at`, or 0. Each shape's inner
// text cannot hold its stopping character, so the first such character after the opening decides, found
// in amortised O(1); the node pattern then runs on a subject cut to this length and never scans further.
std::size_t ShapeLength(std::string_view line, std::size_t at, TCloserIndex& closers) {
    const std::string_view s = line.substr(at);
    for (const auto& form : kShapeForms) {
        if (!s.starts_with(form.Open)) continue;
        const bool slanted = form.Close == "\\]" || form.Close == "/]";
        const std::size_t inner = at + form.Open.size();
        const std::size_t k = closers.Next(slanted ? ']' : form.Close[0], inner);
        if (k == TCloserIndex::npos) continue;
        if (slanted) {
            if (k >= inner + 1 && line[k - 1] == form.Close[0]) return k + 1 - at;
        } else if (line.substr(k).starts_with(form.Close)) {
            return k + form.Close.size() - at;
        }
    }
    return 0;
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Flowchart statements
//-----------------------------------------------------------------------------------------------------

// Every match call costs time in proportion to its subject, so a long line read node by node would cost
// the square of its length. Each pattern is therefore given a window that holds everything it can match
// and ends where it must stop, found by scanning only the characters it would consume.
bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}
bool IsWordByte(char c) {
    const auto u = static_cast<unsigned char>(c);
    return u >= 0x80 || (u >= '0' && u <= '9') || (u >= 'A' && u <= 'Z') || (u >= 'a' && u <= 'z') ||
           c == '_';
}

std::size_t SkipSpaces(std::string_view s, std::size_t i) {
    while (i < s.size() && IsSpace(s[i])) ++i;
    return i;
}

// Spaces, an identifier (word runs joined by single "-" or "."), spaces.
std::size_t IdWindow(std::string_view s) {
    std::size_t i = SkipSpaces(s, 0);
    while (i < s.size() && IsWordByte(s[i])) ++i;
    while (i + 1 < s.size() && (s[i] == '-' || s[i] == '.') && IsWordByte(s[i + 1])) {
        ++i;
        while (i < s.size() && IsWordByte(s[i])) ++i;
    }
    return SkipSpaces(s, i);
}

// Spaces, "&", spaces.
std::size_t AmpWindow(std::string_view s) {
    const std::size_t i = SkipSpaces(s, 0);
    return i < s.size() && s[i] == '&' ? SkipSpaces(s, i + 1) : i;
}

// Spaces, the opening pair, the label up to the first `stop` character, the closing operator, spaces.
std::size_t LabelWindow(std::string_view s, char stop) {
    const std::size_t open = SkipSpaces(s, 0) + 2;
    if (open > s.size()) return s.size();
    const std::size_t close = s.find(stop, open);
    if (close == std::string_view::npos) return open;
    return SkipSpaces(s, std::min(close + 3, s.size()));
}

// Spaces, a run of link characters with its head, spaces, and an optional "|label|".
std::size_t BareWindow(std::string_view s) {
    std::size_t i = SkipSpaces(s, 0);
    while (i < s.size() && (s[i] == '-' || s[i] == '.' || s[i] == '=')) ++i;
    if (i < s.size() && (s[i] == '>' || s[i] == 'x' || s[i] == 'o')) ++i;
    return SkipSpaces(s, i);
}

std::size_t PipeWindow(std::string_view s) {
    if (s.empty() || s[0] != '|') return 0;
    const std::size_t close = s.find('|', 1);
    return close == std::string_view::npos ? 1 : SkipSpaces(s, close + 1);
}

class TFlowLineReader {
  public:
    TFlowLineReader(std::string_view line, TORXDiagramModel& model)
        : fLine(line), fClosers(line), fModel(model) {}

    // One node at the current position, added to the model; false (and nothing consumed) when none.
    bool ReadNode(std::string& id) {
        static const TRegex kIdPrefix(R"(^\s*(\w+(?:[-.]\w+)*)\s*)");
        static const TRegex kNode(
            R"(^\s*(\w+(?:[-.]\w+)*)\s*(\(\[[^\]]*\]\)|\[\[[^\]]*\]\]|\[\([^\)]*\)\]|\(\(\([^\)]*\)\)\)|\(\([^\)]*\)\)|\{\{[^\}]*\}\}|\[/[^\]]*\\\]|\[\\[^\]]*/\]|\[/[^\]]*/\]|\[\\[^\]]*\\\]|>[^\]]*\]|\[[^\]]*\]|\{[^\}]*\}|\([^\)]*\))?)");
        TRegexMatch m;
        if (!kIdPrefix.MatchAt(Rest(IdWindow(Rest())), 0, m)) return false;
        const std::size_t shapeAt = fPos + m.End(0);
        const std::size_t bound = shapeAt + ShapeLength(fLine, shapeAt, fClosers);
        const std::string_view subject = fLine.substr(fPos, bound - fPos);
        if (!kNode.MatchAt(subject, 0, m)) return false;
        id = std::string(m.Group(1));
        TQVLFlowType type = TQVLFlowType::ftProcess;
        std::string caption;
        if (!m.Group(2).empty() && TORXMermaidParser::DecodeShape(m.Group(2), type, caption))
            fModel.AddNode(id, caption, type, true, 0, 0, false);
        else
            fModel.AddNode(id, "", TQVLFlowType::ftProcess, false, 0, 0, false);
        fPos += m.End(0);
        return true;
    }

    bool ReadGroup(std::vector<std::string>& ids) {
        static const TRegex kAmp(R"(^\s*&\s*)");
        ids.clear();
        std::string id;
        if (!ReadNode(id)) return false;
        ids.push_back(id);
        TRegexMatch m;
        while (kAmp.MatchAt(Rest(AmpWindow(Rest())), 0, m)) {
            const std::size_t before = fPos;
            fPos += m.End(0);
            if (!ReadNode(id)) {
                fPos = before;
                break;
            }
            ids.push_back(id);
        }
        return true;
    }

    struct TEdgeOp {
        std::string Label;
        bool Dotted = false;
        TQVLDiagEdgeArrow Arrow = TQVLDiagEdgeArrow::eaArrow;
    };

    bool ReadEdgeOperator(TEdgeOp& op) {
        static const TRegex kLabelDash(R"(^\s*--\s+([^-][^-]*?)\s*-->\s*)");
        static const TRegex kLabelDot(R"(^\s*-\.\s+([^.]+?)\s*\.->\s*)");
        static const TRegex kLabelThick(R"(^\s*==\s+([^=]+?)\s*==>\s*)");
        static const TRegex kBare(R"(^\s*(-\.+->|-{2,4}>|={2,4}>|-{2,4}[xo]|-{3,5}|={3,5})\s*)");
        static const TRegex kPipeLabel(R"(^\|([^|]*)\|\s*)");
        TRegexMatch m;
        const std::string_view rest = Rest();
        const std::pair<const TRegex*, char> labelled[] = {
            {&kLabelDash, '-'}, {&kLabelDot, '.'}, {&kLabelThick, '='}};
        for (const auto& [pattern, stop] : labelled) {
            if (!pattern->MatchAt(rest.substr(0, LabelWindow(rest, stop)), 0, m)) continue;
            op.Label = QVLCleanCaption(m.Group(1));
            // The operator text still in front of us tells a dotted link ("-. label .->").
            op.Dotted = Trim(rest).starts_with("-.");
            op.Arrow = TQVLDiagEdgeArrow::eaArrow;
            fPos += m.End(0);
            return true;
        }
        if (!kBare.MatchAt(rest.substr(0, BareWindow(rest)), 0, m)) return false;
        const std::string_view text = m.Group(1);
        op.Label.clear();
        op.Dotted = text.find('.') != std::string_view::npos;
        switch (text.back()) {
            case 'x':
                op.Arrow = TQVLDiagEdgeArrow::eaCross;
                break;
            case 'o':
                op.Arrow = TQVLDiagEdgeArrow::eaCircle;
                break;
            case '>':
                op.Arrow = TQVLDiagEdgeArrow::eaArrow;
                break;
            default:
                op.Arrow = TQVLDiagEdgeArrow::eaNone;
                break;
        }
        fPos += m.End(0);
        if (kPipeLabel.MatchAt(Rest(PipeWindow(Rest())), 0, m)) {
            op.Label = QVLCleanCaption(m.Group(1));
            fPos += m.End(0);
        }
        return true;
    }

  private:
    std::string_view Rest(std::size_t length = std::string_view::npos) const {
        return fLine.substr(fPos, length);
    }

    std::string_view fLine;
    std::size_t fPos = 0;
    TCloserIndex fClosers;
    TORXDiagramModel& fModel;
};

//-----------------------------------------------------------------------------------------------------
// [SECTION] Parse
//-----------------------------------------------------------------------------------------------------

using TKindRoutine = void (*)(const TORXMermaidParser::TLines&, TORXDiagramModel&);

const TRegex& HeaderPattern(std::size_t index) {
    static const std::array<TRegex, 9> kPatterns{
        TRegex(R"(^stateDiagram(?:-v2)?$)", {kCaseless}),
        TRegex(R"(^gitGraph(?:\s|$))", {kCaseless}),
        TRegex(R"(^C4(?:Context|Container|Component|Dynamic|Deployment))", {kCaseless}),
        TRegex(R"(^pie(?:\s|$))", {kCaseless}),
        TRegex(R"(^sankey(?:-beta)?$)", {kCaseless}),
        TRegex(R"(^packet(?:-beta)?$)", {kCaseless}),
        TRegex(R"(^treemap(?:-beta)?$)", {kCaseless}),
        TRegex(R"(^block(?:-beta)?$)", {kCaseless}),
        TRegex(R"(^xychart(?:-beta)?(?:\s+horizontal)?$)", {kCaseless}),
    };
    return kPatterns[index];
}

// Which routine owns the text: the first line that meets any entry decides, whatever line it is.
TKindRoutine FindKindRoutine(const TORXMermaidParser::TLines& lines) {
    using P = TORXMermaidParser;
    struct TEntry {
        int PatternIndex;  // -1: the exact word
        const char* Word;
        TKindRoutine Routine;
    };
    static constexpr std::array<TEntry, 23> kEntries{{
        {0, nullptr, &P::ParseState},
        {-1, "classDiagram", &P::ParseClass},
        {-1, "mindmap", &P::ParseMindMap},
        {-1, "erDiagram", &P::ParseER},
        {-1, "requirementDiagram", &P::ParseRequirements},
        {1, nullptr, &P::ParseGitGraph},
        {-1, "timeline", &P::ParseTimeline},
        {-1, "journey", &P::ParseJourney},
        {2, nullptr, &P::ParseC4},
        {3, nullptr, &P::ParsePie},
        {4, nullptr, &P::ParseSankey},
        {5, nullptr, &P::ParsePacket},
        {-1, "kanban", &P::ParseKanban},
        {-1, "architecture-beta", &P::ParseArchitecture},
        {6, nullptr, &P::ParseTreemap},
        {7, nullptr, &P::ParseBlock},
        {-1, "quadrantChart", &P::ParseQuadrant},
        {8, nullptr, &P::ParseXYChart},
        {-1, "radar-beta", &P::ParseRadar},
        {-1, "venn-beta", &P::ParseVenn},
        {-1, "ishikawa-beta", &P::ParseIshikawa},
        {-1, "treeView-beta", &P::ParseTreeView},
        {-1, "gantt", &P::ParseGantt},
    }};
    for (const std::string_view raw : lines) {
        const std::string_view line = Trim(raw);
        if (line.empty()) continue;
        for (const auto& entry : kEntries) {
            const bool hit = entry.PatternIndex < 0
                                 ? Qvl::Utils::SameTextIgnoringCase(line, entry.Word)
                                 : HeaderPattern(static_cast<std::size_t>(entry.PatternIndex)).Match(line);
            if (hit) return entry.Routine;
        }
    }
    return nullptr;
}

void AddWarning(TORXDiagramModel& model, std::size_t line, std::string_view code, std::string_view message,
                std::string_view source) {
    model.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsWarning, static_cast<std::int32_t>(line), code,
                        message, source);
}

}  // namespace

bool TORXMermaidParser::DecodeShape(std::string_view aShape, TQVLFlowType& aFlowType, std::string& aText) {
    for (const auto& form : kShapeForms) {
        if (aShape.size() < form.Open.size() + form.Close.size()) continue;
        if (!aShape.starts_with(form.Open) || !aShape.ends_with(form.Close)) continue;
        aFlowType = form.Type;
        aText = QVLCleanCaption(
            aShape.substr(form.Open.size(), aShape.size() - form.Open.size() - form.Close.size()));
        return true;
    }
    aFlowType = TQVLFlowType::ftProcess;
    aText.clear();
    return false;
}

void TORXMermaidParser::ParseFlowLine(std::string_view aLine, TORXDiagramModel& aModel) {
    TFlowLineReader reader(aLine, aModel);
    std::vector<std::string> from;
    std::vector<std::string> to;
    if (!reader.ReadGroup(from)) return;
    TFlowLineReader::TEdgeOp op;
    while (reader.ReadEdgeOperator(op) && reader.ReadGroup(to)) {
        for (const auto& f : from)
            for (const auto& t : to) aModel.AddEdge(f, t, op.Label, op.Dotted, op.Arrow);
        from.swap(to);
    }
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Sequence statements
//-----------------------------------------------------------------------------------------------------

void TORXMermaidParser::ParseSequenceLine(std::string_view aLine, TORXDiagramModel& aModel) {
    static const TRegex kParticipant(
        R"re(^\s*(?:participant|actor)\s+("[^"]+"|[\w.-]+)(?:\s+as\s+(.+))?\s*$)re", {kCaseless});
    static const TRegex kMessage(
        R"(^\s*(\w+(?:[-.]\w+)*?)\s*(--?)(>>|>|x|\))\s*(\w+(?:[-.]\w+)*)\s*:\s*(.*)$)");
    static const TRegex kNote(
        R"(^\s*Note\s+(right of|left of|over)\s+([\w.-]+)\s*(?:,\s*([\w.-]+)\s*)?:\s*(.*)$)", {kCaseless});
    TRegexMatch m;
    if (kParticipant.Match(aLine, m)) {
        aModel.AddParticipant(QVLCleanCaption(m.Group(1)), m.Matched(2) ? QVLCleanCaption(m.Group(2)) : "");
        return;
    }
    if (kMessage.Match(aLine, m)) {
        TQVLSeqEvent event;
        event.EventType = TQVLSeqEventType::seMessage;
        event.FromActor = std::string(m.Group(1));
        event.ToActor = std::string(m.Group(4));
        event.Text = QVLCleanCaption(m.Group(5));
        event.Dotted = m.Group(2) == "--";
        const std::string_view head = m.Group(3);
        event.Arrow = head == "x"    ? TQVLSeqArrow::saCross
                      : head == ">>" ? TQVLSeqArrow::saFilled
                                     : TQVLSeqArrow::saOpen;
        aModel.AddParticipant(event.FromActor, "");
        aModel.AddParticipant(event.ToActor, "");
        aModel.AddSeqEvent(event);
        return;
    }
    if (kNote.Match(aLine, m)) {
        TQVLSeqEvent event;
        event.EventType = TQVLSeqEventType::seNote;
        event.NotePosition = Qvl::Utils::ToLowerAscii(m.Group(1));
        event.FromActor = std::string(m.Group(2));
        event.ToActor = std::string(m.Group(3));
        event.Text = QVLCleanCaption(m.Group(4));
        event.Arrow = TQVLSeqArrow::saNone;
        aModel.AddParticipant(event.FromActor, "");
        aModel.AddSeqEvent(event);
    }
}

void TORXMermaidParser::Parse(std::string_view aText, TORXDiagramModel& aModel) {
    static const TRegex kHeader(R"(^(?:graph|flowchart)\s*(TD|TB|BT|LR|RL)?\s*$)", {kCaseless});
    static const TRegex kTitle(R"(^title[\s:])", {kCaseless});
    static const TRegex kUnsupported(
        R"(^(subgraph\b|end\b|direction\b|classDef\b|class\b|style\b|linkStyle\b|click\b|accTitle\b|accDescr\b|autonumber\b|activate\b|deactivate\b|loop\b|alt\b|else\b|opt\b|par\b|and\b|rect\b|box\b|critical\b|break\b|---))",
        {kCaseless});

    const TLines all = QVLSplitDiagramLines(aText);
    std::size_t first = 0;  // index of the first diagram line, after any front matter
    std::size_t opening = 0;
    while (opening < all.size() && Trim(all[opening]).empty()) ++opening;
    if (opening < all.size() && Trim(all[opening]) == "---") {
        std::size_t closing = opening + 1;
        while (closing < all.size() && Trim(all[closing]) != "---") ++closing;
        if (closing < all.size())
            first = closing + 1;
        else
            AddWarning(aModel, opening + 1, "MERMAID_UNCLOSED_FRONTMATTER",
                       "Mermaid frontmatter has no closing --- delimiter.", "");
    }
    const TLines lines(all.begin() + static_cast<std::ptrdiff_t>(first), all.end());

    if (const TKindRoutine routine = FindKindRoutine(lines)) {
        routine(lines, aModel);
        return;
    }

    aModel.fKind = TQVLDiagramKind::dkFlowChart;
    aModel.fDirection = TQVLFlowDirection::fdTopDown;
    TRegexMatch m;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::size_t lineNo = first + i + 1;
        std::string_view line = Trim(lines[i]);
        if (const std::size_t comment = line.find("%%"); comment != std::string_view::npos)
            line = Trim(line.substr(0, comment));
        if (line.empty()) continue;
        if (kHeader.Match(line, m)) {
            aModel.fKind = TQVLDiagramKind::dkFlowChart;
            const std::string dir = Qvl::Utils::ToUpperAscii(m.Group(1));
            aModel.fDirection =
                dir == "LR" || dir == "RL" ? TQVLFlowDirection::fdLeftRight : TQVLFlowDirection::fdTopDown;
        } else if (Qvl::Utils::StartsWithIgnoringCase(line, "sequenceDiagram")) {
            aModel.fKind = TQVLDiagramKind::dkSequence;
        } else if (kTitle.Match(line)) {
            std::string_view title = line.substr(5);
            while (title.starts_with(':')) title.remove_prefix(1);
            aModel.fTitle = std::string(Trim(title));
        } else if (kUnsupported.Match(line)) {
            AddWarning(aModel, lineNo, "MERMAID_UNSUPPORTED_STATEMENT",
                       "The statement is recognized but is not rendered.", line);
        } else {
            const std::size_t nodes = aModel.Nodes().size();
            const std::size_t edges = aModel.Edges().size();
            const std::size_t participants = aModel.Participants().size();
            const std::size_t events = aModel.SeqEvents().size();
            if (aModel.fKind == TQVLDiagramKind::dkSequence)
                ParseSequenceLine(line, aModel);
            else
                ParseFlowLine(line, aModel);
            if (nodes == aModel.Nodes().size() && edges == aModel.Edges().size() &&
                participants == aModel.Participants().size() && events == aModel.SeqEvents().size())
                AddWarning(aModel, lineNo, "MERMAID_UNRECOGNIZED_LINE",
                           "The line was not recognized and was ignored.", line);
        }
    }
}

}  // namespace Orvex
