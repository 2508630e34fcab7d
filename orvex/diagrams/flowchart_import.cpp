// The full reader of Mermaid flowcharts: subgraphs as containers, styles from classDef, class, ":::",
// style and linkStyle, Mermaid 11 shapes and the "@{ ... }" form, every link form, markdown and HTML
// captions, titles, and a diagnostic for every statement that is not drawn.
//
// The text is first cut into statements (";" and line ends outside quotes and "@{ }" blocks, so quoted
// captions may span lines); each statement is then read by a small cursor. Everything is collected here
// and written to the model at the end, because a subgraph's id may have been used as a node before its
// "subgraph" line, and styles may come before the nodes they style.
//
// [SECTION] Statements
// [SECTION] Shapes
// [SECTION] The statement cursor
// [SECTION] The reader
// [SECTION] Entry
#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/architecture_import.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;

constexpr auto kCaseless = TRegexFlag::rfCaseless;

//-----------------------------------------------------------------------------------------------------
// [SECTION] Statements
//-----------------------------------------------------------------------------------------------------

struct TStatement {
    std::string Text;
    std::int32_t Line = 0;  // 1-based, of the statement's first character
};

// Statements after the front matter. "%%" comments and "%%{ }%%" directives are dropped; an
// "accDescr {" block is one statement up to its "}".
std::vector<TStatement> SplitStatements(std::string_view text) {
    const auto lines = QVLSplitDiagramLines(text);
    std::vector<TStatement> out;
    TStatement current;
    bool inQuote = false;
    int braces = 0;  // inside "@{ ... }" or "accDescr { ... }"
    bool inDirective = false;
    auto flush = [&] {
        const std::string_view t = Trim(current.Text);
        if (!t.empty()) out.push_back({std::string(t), current.Line});
        current.Text.clear();
        current.Line = 0;
    };
    for (std::size_t i = QVLFrontMatterEnd(lines); i < lines.size(); ++i) {
        const std::string_view line = lines[i];
        const std::string_view trimmed = Trim(line);
        const auto lineNo = static_cast<std::int32_t>(i + 1);
        if (!inQuote && braces == 0) {
            if (inDirective) {
                inDirective = trimmed.find("}%%") == std::string_view::npos;
                continue;
            }
            if (trimmed.starts_with("%%{")) {
                inDirective = trimmed.find("}%%") == std::string_view::npos;
                continue;
            }
            if (trimmed.starts_with("%%")) continue;
        }
        for (std::size_t k = 0; k < line.size(); ++k) {
            const char c = line[k];
            if (!inQuote && braces == 0 && c == '%' && k + 1 < line.size() && line[k + 1] == '%') break;
            if (current.Line == 0 && c != ' ' && c != '\t') current.Line = lineNo;
            if (c == '"') inQuote = !inQuote;
            if (!inQuote) {
                if (c == '{' && k > 0 && (line[k - 1] == '@' || Trim(current.Text).ends_with("accDescr")))
                    ++braces;
                else if (c == '}' && braces > 0)
                    --braces;
                else if (c == ';' && braces == 0) {
                    flush();
                    continue;
                }
            }
            current.Text += c;
        }
        if (inQuote || braces > 0)
            current.Text += '\n';
        else
            flush();
    }
    flush();
    return out;
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Shapes
//-----------------------------------------------------------------------------------------------------

struct TBracketForm {
    std::string_view Open;
    std::string_view Close;  // the second closer of the slanted forms is their mirror
    TQVLFlowType Type;
};

// Longer openings first, so that "((x))" is a circle and not a rounded box.
constexpr std::array<TBracketForm, 12> kBracketForms{{
    {"(((", ")))", TQVLFlowType::ftEnd},
    {"((", "))", TQVLFlowType::ftStart},
    {"([", "])", TQVLFlowType::ftTerminator},
    {"[[", "]]", TQVLFlowType::ftPredefined},
    {"[(", ")]", TQVLFlowType::ftDatabase},
    {"{{", "}}", TQVLFlowType::ftPreparation},
    {"[/", "/]", TQVLFlowType::ftData},
    {"[\\", "\\]", TQVLFlowType::ftData},
    {">", "]", TQVLFlowType::ftManualInput},
    {"[", "]", TQVLFlowType::ftProcess},
    {"{", "}", TQVLFlowType::ftDecision},
    {"(", ")", TQVLFlowType::ftProcess},
}};

struct TNamedShape {
    std::string_view Names;  // "|"-separated
    TQVLFlowType Type;
    std::string_view Role;
    bool Marker;  // drawn as a small disc without caption
};

// The shape names of the "@{ shape: ... }" form, each with its aliases.
constexpr std::array<TNamedShape, 44> kNamedShapes{{
    {"rect|process|rectangle", TQVLFlowType::ftProcess, "", false},
    {"rounded|event", TQVLFlowType::ftProcess, "", false},
    {"stadium|pill|terminal", TQVLFlowType::ftTerminator, "", false},
    {"fr-rect|subproc|subprocess|subroutine|framed-rectangle", TQVLFlowType::ftPredefined, "", false},
    {"cyl|cylinder|database|db", TQVLFlowType::ftDatabase, "", false},
    {"circle|circ", TQVLFlowType::ftStart, "", false},
    {"dbl-circ|double-circle", TQVLFlowType::ftEnd, "", false},
    {"diam|diamond|decision|question", TQVLFlowType::ftDecision, "", false},
    {"hex|hexagon|prepare", TQVLFlowType::ftPreparation, "", false},
    {"lean-r|lean-right|in-out", TQVLFlowType::ftData, "", false},
    {"lean-l|lean-left|out-in", TQVLFlowType::ftData, "", false},
    {"trap-b|trapezoid-bottom|priority|trapezoid", TQVLFlowType::ftManualOperation, "", false},
    {"trap-t|trapezoid-top|manual|inv-trapezoid", TQVLFlowType::ftManualOperation, "", false},
    {"odd|asymmetric", TQVLFlowType::ftManualInput, "", false},
    {"sl-rect|sloped-rectangle|manual-input", TQVLFlowType::ftManualInput, "", false},
    {"doc|document", TQVLFlowType::ftDocument, "", false},
    {"docs|documents|st-doc|stacked-document", TQVLFlowType::ftMultiDocument, "", false},
    {"lin-doc|lined-document", TQVLFlowType::ftDocument, "", false},
    {"tag-doc|tagged-document", TQVLFlowType::ftDocument, "", false},
    {"st-rect|procs|processes|stacked-rectangle", TQVLFlowType::ftProcess, "", false},
    {"sm-circ|small-circle|start", TQVLFlowType::ftStart, "", true},
    {"f-circ|filled-circle|junction", TQVLFlowType::ftStart, "", true},
    {"fr-circ|framed-circle|stop", TQVLFlowType::ftEnd, "", true},
    {"cross-circ|crossed-circle|summary", TQVLFlowType::ftEllipse, "", false},
    {"fork|join", TQVLFlowType::ftProcess, "fork", true},
    {"hourglass|collate", TQVLFlowType::ftProcess, "", false},
    {"brace|brace-l|comment", TQVLFlowType::ftProcess, "note", false},
    {"brace-r", TQVLFlowType::ftProcess, "note", false},
    {"braces", TQVLFlowType::ftProcess, "note", false},
    {"bolt|com-link|lightning-bolt", TQVLFlowType::ftProcess, "", false},
    {"delay|half-rounded-rectangle", TQVLFlowType::ftTerminator, "", false},
    {"das|h-cyl|horizontal-cylinder", TQVLFlowType::ftDatabase, "", false},
    {"lin-cyl|disk|lined-cylinder", TQVLFlowType::ftDatabase, "", false},
    {"curv-trap|curved-trapezoid|display", TQVLFlowType::ftData, "", false},
    {"div-rect|div-proc|divided-rectangle|divided-process", TQVLFlowType::ftProcess, "", false},
    {"tri|triangle|extract", TQVLFlowType::ftManualOperation, "", false},
    {"flip-tri|flipped-triangle|manual-file", TQVLFlowType::ftManualOperation, "", false},
    {"win-pane|window-pane|internal-storage", TQVLFlowType::ftPredefined, "", false},
    {"notch-pent|loop-limit|notched-pentagon", TQVLFlowType::ftPreparation, "", false},
    {"notch-rect|card|notched-rectangle", TQVLFlowType::ftProcess, "", false},
    {"lin-rect|lined-rectangle|lined-process|shaded-process", TQVLFlowType::ftPredefined, "", false},
    {"flag|paper-tape", TQVLFlowType::ftDocument, "", false},
    {"bow-rect|bow-tie-rectangle|stored-data", TQVLFlowType::ftData, "", false},
    {"tag-rect|tagged-rectangle|tagged-process|text|icon|image", TQVLFlowType::ftProcess, "", false},
}};

const TNamedShape* FindNamedShape(std::string_view name) {
    const std::string lower = Qvl::Utils::ToLowerAscii(Trim(name));
    for (const auto& shape : kNamedShapes) {
        std::string_view names = shape.Names;
        while (!names.empty()) {
            const std::size_t bar = names.find('|');
            if (names.substr(0, bar) == lower) return &shape;
            names = bar == std::string_view::npos ? std::string_view() : names.substr(bar + 1);
        }
    }
    return nullptr;
}

// "key: value" pairs of an "@{ ... }" block, separated by commas or line feeds; quoted values may hold
// both.
std::vector<std::pair<std::string, std::string>> ReadShapeData(std::string_view body) {
    std::vector<std::pair<std::string, std::string>> out;
    std::size_t i = 0;
    while (i < body.size()) {
        while (i < body.size() && (body[i] == ',' || body[i] == ' ' || body[i] == '\n' || body[i] == '\t'))
            ++i;
        const std::size_t colon = body.find(':', i);
        if (colon == std::string_view::npos) break;
        const std::string key(Trim(body.substr(i, colon - i)));
        i = colon + 1;
        while (i < body.size() && body[i] == ' ') ++i;
        std::string value;
        if (i < body.size() && (body[i] == '"' || body[i] == '\'')) {
            const char quote = body[i];
            const std::size_t close = body.find(quote, i + 1);
            const std::size_t end = close == std::string_view::npos ? body.size() : close;
            value = std::string(body.substr(i + 1, end - i - 1));
            i = end + 1;
        } else {
            std::size_t end = i;
            while (end < body.size() && body[end] != ',' && body[end] != '\n') ++end;
            value = std::string(Trim(body.substr(i, end - i)));
            i = end;
        }
        out.emplace_back(key, value);
    }
    return out;
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] The statement cursor
//-----------------------------------------------------------------------------------------------------

bool IsIdByte(char c) {
    const auto u = static_cast<unsigned char>(c);
    return u >= 0x80 || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           c == '_' || c == '$';
}

bool IsLinkByte(char c) {
    return c == '-' || c == '=' || c == '.' || c == '~';
}

struct TNodeRef {
    std::string ID;
    bool HasShape = false;
    TQVLFlowType Shape = TQVLFlowType::ftProcess;
    std::string Text;
    std::string Role;
    bool Marker = false;
    std::vector<std::string> Classes;
    std::string UnknownShape;        // a shape name this reader does not know
    std::vector<std::string> Extra;  // "@{ }" keys that are not drawn
};

struct TLinkOp {
    std::string ID;
    std::string Label;
    bool Dotted = false;
    bool Thick = false;
    bool Invisible = false;
    TQVLDiagEdgeArrow FromArrow = TQVLDiagEdgeArrow::eaNone;
    TQVLDiagEdgeArrow Arrow = TQVLDiagEdgeArrow::eaNone;
};

TQVLDiagEdgeArrow MarkArrow(char c) {
    switch (c) {
        case '>':
        case '<':
            return TQVLDiagEdgeArrow::eaArrow;
        case 'x':
            return TQVLDiagEdgeArrow::eaCross;
        case 'o':
            return TQVLDiagEdgeArrow::eaCircle;
        default:
            return TQVLDiagEdgeArrow::eaNone;
    }
}

class TCursor {
  public:
    explicit TCursor(std::string_view text) : fText(text) {}

    bool AtEnd() {
        SkipSpaces();
        return fPos >= fText.size();
    }
    std::string_view Rest() const { return fText.substr(std::min(fPos, fText.size())); }

    // An identifier: word runs joined by single "-" or "." (never the start of a link).
    bool ReadId(std::string& id) {
        SkipSpaces();
        std::size_t i = fPos;
        while (i < fText.size() && IsIdByte(fText[i])) ++i;
        if (i == fPos) return false;
        while (i + 1 < fText.size() && (fText[i] == '-' || fText[i] == '.') && IsIdByte(fText[i + 1])) {
            ++i;
            while (i < fText.size() && IsIdByte(fText[i])) ++i;
        }
        id = std::string(fText.substr(fPos, i - fPos));
        fPos = i;
        return true;
    }

    // A node with its optional shape, "@{ }" data and ":::" classes.
    bool ReadNode(TNodeRef& node) {
        const std::size_t start = fPos;
        node = {};
        if (!ReadId(node.ID)) return false;
        // "e1@-->" is an edge id, not a node.
        if (fPos < fText.size() && fText[fPos] == '@' && fPos + 1 < fText.size() && fText[fPos + 1] != '{') {
            fPos = start;
            return false;
        }
        ReadBracketShape(node);
        if (fText.substr(fPos).starts_with("@{")) ReadShapeBlock(node);
        ReadClasses(node);
        return true;
    }

    bool ReadNodeGroup(std::vector<TNodeRef>& nodes) {
        nodes.clear();
        TNodeRef node;
        if (!ReadNode(node)) return false;
        nodes.push_back(std::move(node));
        while (true) {
            const std::size_t before = fPos;
            SkipSpaces();
            if (fPos >= fText.size() || fText[fPos] != '&') {
                fPos = before;
                break;
            }
            ++fPos;
            if (!ReadNode(node)) {
                fPos = before;
                break;
            }
            nodes.push_back(std::move(node));
        }
        return true;
    }

    bool ReadLink(TLinkOp& op) {
        const std::size_t start = fPos;
        op = {};
        SkipSpaces();
        // An edge id: "e1@-->".
        std::size_t i = fPos;
        while (i < fText.size() && (IsIdByte(fText[i]) || fText[i] == '-')) ++i;
        if (i > fPos && i + 1 < fText.size() && fText[i] == '@' && fText[i + 1] != '{') {
            op.ID = std::string(fText.substr(fPos, i - fPos));
            fPos = i + 1;
        }
        // The mark at the source end.
        if (fPos + 1 < fText.size() && (fText[fPos] == '<' || fText[fPos] == 'o' || fText[fPos] == 'x') &&
            IsLinkByte(fText[fPos + 1]) && fText[fPos + 1] != '~') {
            op.FromArrow = MarkArrow(fText[fPos]);
            ++fPos;
        }
        std::size_t bodyEnd = fPos;
        while (bodyEnd < fText.size() && IsLinkByte(fText[bodyEnd])) ++bodyEnd;
        const std::string_view body = fText.substr(fPos, bodyEnd - fPos);
        if (body.size() < 2 || body.find_first_not_of("-=.~") != std::string_view::npos) {
            fPos = start;
            return false;
        }
        fPos = bodyEnd;
        SetKind(op, body);
        if (fPos < fText.size() && (fText[fPos] == '>' || fText[fPos] == 'x' || fText[fPos] == 'o') &&
            !op.Invisible) {
            op.Arrow = MarkArrow(fText[fPos]);
            ++fPos;
        } else if ((body == "--" || body == "-." || body == "==") && !ReadInlineLabel(op, body)) {
            fPos = start;
            return false;
        }
        ReadPipeLabel(op);
        return true;
    }

    // A block diagram's width suffix (":2") after a node.
    void SkipWidth() {
        std::size_t i = fPos;
        if (i < fText.size() && fText[i] == ':' && i + 1 < fText.size() &&
            std::isdigit(static_cast<unsigned char>(fText[i + 1]))) {
            ++i;
            while (i < fText.size() && std::isdigit(static_cast<unsigned char>(fText[i]))) ++i;
            fPos = i;
        }
    }

    // A whole word at the cursor, consumed.
    bool SkipWord(std::string_view word) {
        SkipSpaces();
        const std::string_view rest = fText.substr(fPos);
        if (!rest.starts_with(word) || (rest.size() > word.size() && IsIdByte(rest[word.size()])))
            return false;
        fPos += word.size();
        return true;
    }

  private:
    void SkipSpaces() {
        while (fPos < fText.size() && (fText[fPos] == ' ' || fText[fPos] == '\t' || fText[fPos] == '\n'))
            ++fPos;
    }

    static void SetKind(TLinkOp& op, std::string_view body) {
        op.Dotted = body.find('.') != std::string_view::npos;
        op.Thick = body.find('=') != std::string_view::npos;
        op.Invisible = body.find('~') != std::string_view::npos;
    }

    // "-- text -->", "-. text .->", "== text ==>" and their open and marked forms: the label runs to the
    // closing operator, which decides the kind and the mark at the target end.
    bool ReadInlineLabel(TLinkOp& op, std::string_view open) {
        const char stroke = open[1] == '.' ? '.' : open[0];
        std::size_t k = fPos;
        while (k < fText.size()) {
            const std::size_t at = fText.find(stroke, k);
            if (at == std::string_view::npos) return false;
            // A closing operator: for "--" two or more dashes, for "-." a dot and a dash, for "==" two or
            // more equals signs; then a mark or the end of the run.
            std::size_t end = at;
            if (stroke == '.') {
                while (end < fText.size() && fText[end] == '.') ++end;
                if (end >= fText.size() || fText[end] != '-') {
                    k = at + 1;
                    continue;
                }
                while (end < fText.size() && fText[end] == '-') ++end;
            } else {
                while (end < fText.size() && fText[end] == stroke) ++end;
                if (end - at < 2) {
                    k = at + 1;
                    continue;
                }
            }
            const std::string_view label = Trim(fText.substr(fPos, at - fPos));
            if (label.empty()) return false;
            op.Label = QVLPlainCaption(label);
            fPos = end;
            if (fPos < fText.size() && (fText[fPos] == '>' || fText[fPos] == 'x' || fText[fPos] == 'o')) {
                op.Arrow = MarkArrow(fText[fPos]);
                ++fPos;
            }
            return true;
        }
        return false;
    }

    void ReadPipeLabel(TLinkOp& op) {
        const std::size_t before = fPos;
        SkipSpaces();
        if (fPos < fText.size() && fText[fPos] == '|') {
            const std::size_t close = fText.find('|', fPos + 1);
            if (close != std::string_view::npos) {
                op.Label = QVLPlainCaption(fText.substr(fPos + 1, close - fPos - 1));
                fPos = close + 1;
                return;
            }
        }
        fPos = before;
    }

    void ReadBracketShape(TNodeRef& node) {
        const std::string_view rest = fText.substr(fPos);
        for (const auto& form : kBracketForms) {
            if (!rest.starts_with(form.Open)) continue;
            std::size_t inner = form.Open.size();
            std::size_t close = std::string_view::npos;
            std::string_view closer = form.Close;
            const std::size_t firstText = rest.find_first_not_of(' ', inner);
            const bool slanted = form.Open == "[/" || form.Open == "[\\";
            auto findCloser = [&](std::size_t from) {
                if (!slanted) return std::pair{rest.find(form.Close, from), form.Close};
                const std::size_t a = rest.find("/]", from);
                const std::size_t b = rest.find("\\]", from);
                return a < b ? std::pair{a, std::string_view("/]")} : std::pair{b, std::string_view("\\]")};
            };
            if (firstText != std::string_view::npos && rest[firstText] == '"') {
                const std::size_t quoteEnd = rest.find('"', firstText + 1);
                if (quoteEnd == std::string_view::npos) continue;
                std::tie(close, closer) = findCloser(quoteEnd + 1);
            } else {
                std::tie(close, closer) = findCloser(inner);
            }
            if (close == std::string_view::npos) continue;
            node.HasShape = true;
            node.Shape = form.Type;
            if (slanted) {
                // "[/x/]" and "[\x\]" lean; "[/x\]" and "[\x/]" are trapezoids.
                const bool lean = (form.Open == "[/") == (closer == "/]");
                node.Shape = lean ? TQVLFlowType::ftData : TQVLFlowType::ftManualOperation;
            }
            node.Text = QVLPlainCaption(rest.substr(inner, close - inner));
            fPos += close + closer.size();
            return;
        }
    }

    void ReadShapeBlock(TNodeRef& node) {
        const std::size_t close = fText.find('}', fPos + 2);
        const std::size_t end = close == std::string_view::npos ? fText.size() : close;
        const std::string_view body = fText.substr(fPos + 2, end - fPos - 2);
        fPos = close == std::string_view::npos ? fText.size() : close + 1;
        bool labelled = false;
        for (const auto& [key, value] : ReadShapeData(body)) {
            if (key == "shape") {
                node.HasShape = true;
                if (const TNamedShape* shape = FindNamedShape(value)) {
                    node.Shape = shape->Type;
                    node.Role = std::string(shape->Role);
                    node.Marker = shape->Marker;
                } else {
                    node.Shape = TQVLFlowType::ftProcess;
                    node.UnknownShape = value;
                }
            } else if (key == "label") {
                node.Text = QVLPlainCaption(value);
                labelled = true;
            } else {
                node.Extra.push_back(key + ": " + value);
            }
        }
        if (!labelled && !node.Marker && node.Text.empty()) node.Text = node.ID;
        if (node.Marker) node.Text.clear();
    }

    void ReadClasses(TNodeRef& node) {
        while (fText.substr(fPos).starts_with(":::")) {
            fPos += 3;
            std::size_t end = fPos;
            while (end < fText.size() && (IsIdByte(fText[end]) || fText[end] == '-')) ++end;
            if (end == fPos) break;
            node.Classes.emplace_back(fText.substr(fPos, end - fPos));
            fPos = end;
        }
    }

    std::string_view fText;
    std::size_t fPos = 0;
};

//-----------------------------------------------------------------------------------------------------
// [SECTION] The reader
//-----------------------------------------------------------------------------------------------------

std::optional<TQVLFlowDirection> DirectionOf(std::string_view word) {
    const std::string d = Qvl::Utils::ToUpperAscii(Trim(word));
    if (d == "LR" || d == "RL") return TQVLFlowDirection::fdLeftRight;
    if (d == "TB" || d == "TD" || d == "BT") return TQVLFlowDirection::fdTopDown;
    return std::nullopt;
}

struct TOpenGroup {
    std::size_t Index;                   // in fGroups
    std::vector<std::string> Mentioned;  // every id its statements name, nested groups' included
};

class TFlowReader {
  public:
    // A block diagram is read with the same statements, plus "block" ... "end" containers, "columns",
    // "space" and several nodes on one line.
    TFlowReader(TORXDiagramModel& model, bool block) : fModel(model), fBlock(block) {}

    void Read(std::string_view text) {
        fModel.fKind = TQVLDiagramKind::dkFlowChart;
        fModel.fDirection = fBlock ? TQVLFlowDirection::fdLeftRight : TQVLFlowDirection::fdTopDown;
        fModel.fTitle = QVLFrontMatterValue(text, "title");
        for (const TStatement& s : SplitStatements(text)) Statement(s);
        while (!fOpen.empty()) {
            Warn(0, "MERMAID_UNCLOSED_SUBGRAPH",
                 "The subgraph has no \"end\"; it is closed at the end of the text.",
                 fGroups[fOpen.back().Index].ID);
            CloseGroup();
        }
        Emit();
    }

  private:
    void Warn(std::int32_t line, std::string_view code, std::string_view message, std::string_view source) {
        fModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsWarning, line, code, message, source);
    }
    void Note(std::int32_t line, std::string_view code, std::string_view message, std::string_view source) {
        fModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsInfo, line, code, message, source);
    }

    void Statement(const TStatement& s) {
        static const TRegex kHeader(R"(^(?:graph|flowchart-elk|flowchart)(?:\s+(\w+))?\s*(.*)$)",
                                    {kCaseless});
        static const TRegex kKeyword(
            R"(^(subgraph|end|direction|classDef|class|style|linkStyle|click|accTitle|accDescr|title)\b\s*(.*)$)",
            {TRegexFlag::rfDotAll});
        static const TRegex kBlockHeader(R"(^block(?:-beta)?$)");
        static const TRegex kBlockOpen(R"(^block(?::([\w.-]+))?(?::\d+)?\s*(?:\[(.*)\])?$)");
        TRegexMatch m;
        if (fBlock) {
            if (!fSawHeader && kBlockHeader.Match(s.Text)) {
                fSawHeader = true;
                return;
            }
            if (s.Text.starts_with("columns")) return;
            if (kBlockOpen.Match(s.Text, m)) {
                const std::string id =
                    m.Matched(1) ? std::string(m.Group(1)) : "block" + std::to_string(fGroups.size() + 1);
                OpenGroup(m.Matched(2) ? id + "[" + std::string(m.Group(2)) + "]" : id);
                if (!m.Matched(2)) fGroups.back().Text.clear();  // an unnamed block has no title
                return;
            }
        }
        if (!fSawHeader && kHeader.Match(s.Text, m)) {
            fSawHeader = true;
            if (const auto d = DirectionOf(m.Group(1))) fModel.fDirection = *d;
            if (!Trim(m.Group(2)).empty()) Chain({std::string(Trim(m.Group(2))), s.Line});
            return;
        }
        if (kKeyword.Match(s.Text, m) && !LooksLikeChain(s.Text, m.Group(1))) {
            Keyword(s, m.Group(1), Trim(m.Group(2)));
            return;
        }
        Chain(s);
    }

    // "end --> x" or "class1 --> x": a keyword used as a node id starts a chain.
    static bool LooksLikeChain(std::string_view text, std::string_view word) {
        const std::string_view after = Trim(text.substr(word.size()));
        if (word == "subgraph" || word == "accDescr" || word == "accTitle" || word == "click") return false;
        return (after.starts_with("-") || after.starts_with("=") || after.starts_with("&") ||
                after.starts_with("[") || after.starts_with("(") || after.starts_with("{"));
    }

    void Keyword(const TStatement& s, std::string_view word, std::string_view rest) {
        if (word == "subgraph") return OpenGroup(rest);
        if (word == "end") {
            if (fOpen.empty())
                return Warn(s.Line, "MERMAID_UNMATCHED_END", "\"end\" closes no subgraph.", s.Text);
            return CloseGroup();
        }
        if (word == "direction") {
            const auto d = DirectionOf(rest);
            if (!d)
                return Warn(s.Line, "MERMAID_UNKNOWN_DIRECTION", "The direction is not TB, TD, BT, LR or RL.",
                            s.Text);
            if (fOpen.empty())
                fModel.fDirection = *d;
            else
                fGroups[fOpen.back().Index].Direction = *d;
            return;
        }
        if (word == "classDef") return ClassDef(s, rest);
        if (word == "class") return ClassAssign(s, rest);
        if (word == "style") return StyleStatement(s, rest);
        if (word == "linkStyle") return LinkStyle(s, rest);
        if (word == "title") {
            fModel.fTitle = QVLPlainCaption(rest.starts_with(':') ? rest.substr(1) : rest);
            return;
        }
        // click, accTitle and accDescr are understood and have no drawing: consumed quietly.
    }

    void OpenGroup(std::string_view rest) {
        TQVLDiagGroup group;
        std::string id;
        std::string title;
        TCursor cursor(rest);
        TNodeRef ref;
        if (!rest.empty() && rest.front() == '"') {
            title = QVLPlainCaption(rest);
            id = title;
        } else if (cursor.ReadNode(ref) && cursor.AtEnd()) {
            id = ref.ID;
            title = ref.HasShape ? ref.Text : ref.ID;
        } else {
            const std::size_t bracket = rest.find('[');
            if (bracket != std::string_view::npos && rest.ends_with("]")) {
                id = std::string(Trim(rest.substr(0, bracket)));
                title = QVLPlainCaption(rest.substr(bracket + 1, rest.size() - bracket - 2));
            } else {
                title = QVLPlainCaption(rest);
            }
        }
        if (id.empty() || id.find_first_of(" \t\r\n") != std::string::npos)
            id = "subGraph" + std::to_string(fGroups.size());
        if (title.empty()) title = id;
        group.ID = id;
        group.Text = title;
        group.Parent = fOpen.empty() ? std::string() : fGroups[fOpen.back().Index].ID;
        if (!fOpen.empty()) fOpen.back().Mentioned.push_back(id);
        fGroups.push_back(std::move(group));
        fOpen.push_back({fGroups.size() - 1, {}});
    }

    // Members are the ids the group's statements name that no group closed before it claimed: inner
    // groups close first and keep theirs.
    void CloseGroup() {
        TOpenGroup open = std::move(fOpen.back());
        fOpen.pop_back();
        TQVLDiagGroup& group = fGroups[open.Index];
        for (const std::string& id : open.Mentioned) {
            if (fClaimed.contains(id) || id == group.ID) continue;
            fClaimed.insert(id);
            group.Members.push_back(id);
        }
    }

    void Mention(const std::string& id) {
        if (!fOpen.empty()) fOpen.back().Mentioned.push_back(id);
    }

    void ClassDef(const TStatement& s, std::string_view rest) {
        const std::size_t space = rest.find_first_of(" \t");
        if (space == std::string_view::npos)
            return Warn(s.Line, "MERMAID_EMPTY_CLASSDEF", "The classDef sets no property.", s.Text);
        TQVLDiagStyle style;
        ReportUnmapped(s, QVLApplyStyleProperties(rest.substr(space + 1), style));
        std::string_view names = rest.substr(0, space);
        while (!names.empty()) {
            const std::size_t comma = names.find(',');
            const std::string name(Trim(names.substr(0, comma)));
            if (!name.empty()) QVLMergeStyle(fClassStyles[name], style);
            names = comma == std::string_view::npos ? std::string_view() : names.substr(comma + 1);
        }
    }

    void ClassAssign(const TStatement& s, std::string_view rest) {
        const std::size_t space = rest.find_last_of(" \t");
        if (space == std::string_view::npos)
            return Warn(s.Line, "MERMAID_INCOMPLETE_CLASS", "The class statement names no class.", s.Text);
        const std::string cls(Trim(rest.substr(space + 1)));
        std::string_view ids = rest.substr(0, space);
        while (!ids.empty()) {
            const std::size_t comma = ids.find(',');
            const std::string id(Trim(ids.substr(0, comma)));
            if (!id.empty()) fClasses[id].push_back(cls);
            ids = comma == std::string_view::npos ? std::string_view() : ids.substr(comma + 1);
        }
    }

    void StyleStatement(const TStatement& s, std::string_view rest) {
        const std::size_t space = rest.find_first_of(" \t");
        if (space == std::string_view::npos)
            return Warn(s.Line, "MERMAID_EMPTY_STYLE", "The style statement sets no property.", s.Text);
        TQVLDiagStyle style;
        ReportUnmapped(s, QVLApplyStyleProperties(rest.substr(space + 1), style));
        QVLMergeStyle(fOwnStyles[std::string(rest.substr(0, space))], style);
    }

    void LinkStyle(const TStatement& s, std::string_view rest) {
        static const TRegex kLinkStyle(R"(^(default|[\d,\s]+?)\s+(?:interpolate\s+\w+\s*)?(.*)$)");
        TRegexMatch m;
        if (!kLinkStyle.Match(rest, m))
            return Warn(s.Line, "MERMAID_BAD_LINKSTYLE", "The linkStyle statement names no link.", s.Text);
        TQVLDiagStyle style;
        ReportUnmapped(s, QVLApplyStyleProperties(m.Group(2), style));
        if (m.Group(1) == "default") {
            QVLMergeStyle(fDefaultLinkStyle, style);
            return;
        }
        std::string_view list = m.Group(1);
        while (!list.empty()) {
            const std::size_t comma = list.find(',');
            const std::string index(Trim(list.substr(0, comma)));
            std::size_t value = 0;
            if (std::from_chars(index.data(), index.data() + index.size(), value).ec == std::errc())
                fLinkStyles.push_back({value, style, s});
            list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
        }
    }

    void ReportUnmapped(const TStatement& s, const std::vector<std::string>& unmapped) {
        for (const std::string& property : unmapped)
            Note(s.Line, "UNMAPPED_STYLE_PROPERTY", "The style property \"" + property + "\" is not drawn.",
                 s.Text);
    }

    // A line of blocks: nodes side by side, "space" gaps, widths, and links.
    void BlockLine(const TStatement& s) {
        TCursor cursor(s.Text);
        std::vector<TNodeRef> from;
        std::vector<TNodeRef> to;
        TLinkOp op;
        while (!cursor.AtEnd()) {
            if (cursor.SkipWord("space")) {
                cursor.SkipWidth();
                continue;
            }
            if (!cursor.ReadNodeGroup(from)) {
                Warn(s.Line, "MERMAID_UNREAD_TEXT",
                     "The end of the statement was not understood and was ignored.", cursor.Rest());
                return;
            }
            cursor.SkipWidth();
            for (TNodeRef& n : from) AddNode(n, s);
            while (cursor.ReadLink(op)) {
                if (!cursor.ReadNodeGroup(to)) {
                    Warn(s.Line, "MERMAID_LINK_WITHOUT_TARGET", "The link has no target and was ignored.",
                         s.Text);
                    return;
                }
                cursor.SkipWidth();
                for (TNodeRef& n : to) AddNode(n, s);
                for (const TNodeRef& f : from)
                    for (const TNodeRef& t : to) AddEdge(f.ID, t.ID, op);
                from.swap(to);
            }
        }
    }

    void Chain(const TStatement& s) {
        if (fBlock) return BlockLine(s);
        // "e1@{ animate: true }" after a link with the id e1 sets that link's animation or curve.
        static const TRegex kEdgeData(R"(^([\w-]+)@\{)");
        TRegexMatch data;
        if (kEdgeData.Match(s.Text, data) && fEdgeIds.contains(std::string(data.Group(1))))
            return Note(s.Line, "MERMAID_LINK_DATA_IGNORED",
                        "Link animation and curve settings are not drawn.", s.Text);
        TCursor cursor(s.Text);
        std::vector<TNodeRef> from;
        std::vector<TNodeRef> to;
        if (!cursor.ReadNodeGroup(from)) {
            return Warn(s.Line, "MERMAID_UNRECOGNIZED_LINE", "The line was not recognized and was ignored.",
                        s.Text);
        }
        for (TNodeRef& n : from) AddNode(n, s);
        TLinkOp op;
        while (cursor.ReadLink(op)) {
            if (!cursor.ReadNodeGroup(to)) {
                Warn(s.Line, "MERMAID_LINK_WITHOUT_TARGET", "The link has no target and was ignored.",
                     s.Text);
                return;
            }
            for (TNodeRef& n : to) AddNode(n, s);
            for (const TNodeRef& f : from)
                for (const TNodeRef& t : to) AddEdge(f.ID, t.ID, op);
            from.swap(to);
        }
        if (!cursor.AtEnd())
            Warn(s.Line, "MERMAID_UNREAD_TEXT",
                 "The end of the statement was not understood and was ignored.", cursor.Rest());
    }

    void AddNode(const TNodeRef& ref, const TStatement& s) {
        Mention(ref.ID);
        for (const std::string& cls : ref.Classes) fClasses[ref.ID].push_back(cls);
        if (!ref.UnknownShape.empty())
            Warn(s.Line, "MERMAID_UNKNOWN_SHAPE",
                 "The shape \"" + ref.UnknownShape + "\" is unknown; a box is drawn.", s.Text);
        for (const std::string& extra : ref.Extra)
            Note(s.Line, "MERMAID_SHAPE_DATA_IGNORED", "The shape setting \"" + extra + "\" is not drawn.",
                 s.Text);
        auto found = fNodeIndex.find(ref.ID);
        if (found == fNodeIndex.end()) {
            fNodeIndex.emplace(ref.ID, fNodes.size());
            TNodeRef stored = ref;
            if (!stored.HasShape) stored.Text = stored.ID;
            fNodes.push_back(std::move(stored));
            return;
        }
        // A later shape or caption replaces the first, as Mermaid redraws a node with its last definition.
        TNodeRef& node = fNodes[found->second];
        if (ref.HasShape) {
            node.HasShape = true;
            node.Shape = ref.Shape;
            node.Text = ref.Text;
            node.Role = ref.Role;
            node.Marker = ref.Marker;
        }
    }

    void AddEdge(const std::string& from, const std::string& to, const TLinkOp& op) {
        TQVLDiagEdge edge;
        edge.FromID = from;
        edge.ToID = to;
        edge.Text = op.Label;
        edge.Dotted = op.Dotted;
        edge.FromArrow = op.FromArrow;
        edge.Arrow = op.Arrow;
        edge.ID = op.ID;
        if (!op.ID.empty()) fEdgeIds.insert(op.ID);
        edge.Thick = op.Thick;
        // An invisible link still shapes the layout; it is kept with a transparent pen.
        if (op.Invisible) edge.Style.Stroke = 0;
        fEdges.push_back(std::move(edge));
    }

    // The "default" class styles nodes only, not subgraphs.
    TQVLDiagStyle StyleFor(const std::string& id, bool isNode) const {
        TQVLDiagStyle style;
        if (const auto d = fClassStyles.find("default"); isNode && d != fClassStyles.end())
            QVLMergeStyle(style, d->second);
        if (const auto classes = fClasses.find(id); classes != fClasses.end())
            for (const std::string& cls : classes->second)
                if (const auto c = fClassStyles.find(cls); c != fClassStyles.end())
                    QVLMergeStyle(style, c->second);
        if (const auto own = fOwnStyles.find(id); own != fOwnStyles.end()) QVLMergeStyle(style, own->second);
        return style;
    }

    void Emit() {
        std::set<std::string> groupIds;
        std::unordered_map<std::string, std::string> groupOf;
        for (const auto& g : fGroups) {
            groupIds.insert(g.ID);
            for (const auto& member : g.Members) groupOf[member] = g.ID;
        }
        for (const TNodeRef& n : fNodes) {
            if (groupIds.contains(n.ID)) continue;  // a link's end that names a subgraph
            fModel.AddNode(n.ID, n.Text, n.Shape, n.HasShape);
            TQVLDiagNode* node = fModel.FindNode(n.ID);
            node->Text = n.Text;  // may be empty for markers; AddNode would fall back to the id
            node->Role = n.Role;
            node->Style = StyleFor(n.ID, true);
            if (const auto g = groupOf.find(n.ID); g != groupOf.end()) node->Group = g->second;
        }
        for (auto& g : fGroups) {
            std::erase_if(g.Members, [&](const std::string& id) { return groupIds.contains(id); });
            g.Style = StyleFor(g.ID, false);
            fModel.AddGroup(g);
        }
        for (auto& e : fEdges) {
            TQVLDiagStyle style = fDefaultLinkStyle;
            QVLMergeStyle(style, e.Style);
            e.Style = style;
            fModel.MutableEdges().push_back(e);
        }
        auto& edges = fModel.MutableEdges();
        for (const auto& ls : fLinkStyles) {
            if (ls.Index >= edges.size()) {
                Warn(ls.Source.Line, "MERMAID_LINKSTYLE_OUT_OF_RANGE",
                     "linkStyle names link " + std::to_string(ls.Index) + ", and the diagram has " +
                         std::to_string(edges.size()) + ".",
                     ls.Source.Text);
                continue;
            }
            QVLMergeStyle(edges[ls.Index].Style, ls.Style);
        }
        for (const auto& [id, styles] : fOwnStyles)
            if (fNodeIndex.find(id) == fNodeIndex.end() && !groupIds.contains(id))
                Warn(0, "MERMAID_STYLE_UNKNOWN_NODE",
                     "A style names \"" + id + "\", which is no node or subgraph.", id);
        if (fModel.Nodes().empty() && fModel.Groups().empty())
            fModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsError, 0, "DIAGRAM_EMPTY_RESULT",
                                 "The diagram did not produce any renderable element.", "");
    }

    struct TLinkStyle {
        std::size_t Index;
        TQVLDiagStyle Style;
        TStatement Source;
    };

    TORXDiagramModel& fModel;
    bool fBlock;
    bool fSawHeader = false;
    std::vector<TNodeRef> fNodes;
    std::unordered_map<std::string, std::size_t> fNodeIndex;
    std::vector<TQVLDiagEdge> fEdges;
    std::vector<TQVLDiagGroup> fGroups;
    std::vector<TOpenGroup> fOpen;
    std::set<std::string> fClaimed;
    std::set<std::string> fEdgeIds;
    std::map<std::string, TQVLDiagStyle> fClassStyles;
    std::map<std::string, std::vector<std::string>> fClasses;
    std::map<std::string, TQVLDiagStyle> fOwnStyles;
    TQVLDiagStyle fDefaultLinkStyle;
    std::vector<TLinkStyle> fLinkStyles;
};

}  // namespace

//-----------------------------------------------------------------------------------------------------
// [SECTION] Entry
//-----------------------------------------------------------------------------------------------------

bool QVLImportFlowchart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgMermaid) return false;
    const std::string header = QVLMermaidHeaderWord(aText);
    if (header == "architecture-beta" || header == "architecture") {
        QVLReadArchitecture(aText, aModel);
        return true;
    }
    const bool block = header == "block-beta" || header == "block";
    if (header != "graph" && header != "flowchart" && header != "flowchart-elk" && !block) return false;
    TFlowReader(aModel, block).Read(aText);
    return true;
}

}  // namespace Orvex
