// The full reader of structure diagrams: PlantUML component, deployment, use-case, C4 and ArchiMate
// diagrams, and Mermaid's C4 diagrams (they share the C4 macros). Groupings and boundaries become
// containers; aliases give one element; "#colour", "#line:colour", skinparam and <style> become styles;
// direction hints, dotted, bold and hidden links and every head are kept; notes are joined to their
// element. Every line not drawn gets a diagnostic.
//
// [SECTION] Lines
// [SECTION] Colours and styles
// [SECTION] Relations
// [SECTION] The reader
// [SECTION] Entry
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/diagrams/plantuml_parser.h"
#include "orvex/diagrams/uml_import_lines.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::ToLowerAscii;
using Qvl::Utils::Trim;

constexpr auto kCaseless = TRegexFlag::rfCaseless;

//-----------------------------------------------------------------------------------------------------
// [SECTION] Lines
//-----------------------------------------------------------------------------------------------------

// Splits macro arguments on top-level commas, each trimmed and unquoted; named arguments ("$tags=...")
// are left out.
std::vector<std::string> MacroArgs(std::string_view s) {
    std::vector<std::string> out;
    bool quoted = false;
    int depth = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= s.size(); ++i) {
        const char c = i < s.size() ? s[i] : ',';
        if (c == '"') quoted = !quoted;
        if (!quoted && c == '(') ++depth;
        if (!quoted && c == ')' && depth > 0) --depth;
        if (c == ',' && !quoted && depth == 0) {
            std::string_view arg = Trim(s.substr(start, i - start));
            start = i + 1;
            if (arg.starts_with('$')) continue;
            if (arg.size() >= 2 && arg.front() == '"' && arg.back() == '"')
                arg = arg.substr(1, arg.size() - 2);
            out.emplace_back(arg);
        }
    }
    return out;
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Colours and styles
//-----------------------------------------------------------------------------------------------------

// A PlantUML colour: "#name", "#hex", "name", the first of a gradient "#a/b" or "#a-b".
bool PumlColor(std::string_view text, TAlphaColor& color) {
    std::string_view s = Trim(text);
    if (s.starts_with('#')) s.remove_prefix(1);
    const std::size_t cut = s.find_first_of("/\\|");
    s = s.substr(0, cut);
    if (s.empty()) return false;
    const bool hex = s.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos &&
                     (s.size() == 3 || s.size() == 6 || s.size() == 8);
    if (hex && QVLReadColor("#" + std::string(s), color)) return true;
    if (QVLReadColor(s, color)) return true;
    if (const std::size_t dash = s.find('-'); dash != std::string_view::npos)
        return PumlColor(s.substr(0, dash), color);
    return false;
}

// The colours of ArchiMate's layers, as "#Business" names them.
bool ArchimateLayerColor(std::string_view name, TAlphaColor& color) {
    static const std::map<std::string, TAlphaColor> kLayers{
        {"business", 0xFFFFFFB5u},       {"application", 0xFFB5FFFFu}, {"technology", 0xFFC9E7B7u},
        {"physical", 0xFFC9E7B7u},       {"motivation", 0xFFCCCCFFu},  {"strategy", 0xFFF8E7C0u},
        {"implementation", 0xFFFFE0E0u}, {"migration", 0xFFFFE0E0u}};
    const auto found = kLayers.find(ToLowerAscii(Trim(name)));
    if (found == kLayers.end()) return false;
    color = found->second;
    return true;
}

// An element's inline colours: "#pink", "#pink;line:red;line.dashed;text:blue", "#back:x", "##[bold]red".
// Returns the parts it could not read.
std::vector<std::string> ApplyInlineColors(std::string_view colours, TQVLDiagStyle& style) {
    std::vector<std::string> unread;
    std::string_view s = Trim(colours);
    if (s.starts_with("##")) {
        s.remove_prefix(2);
        if (s.starts_with('[')) {
            const std::size_t close = s.find(']');
            const std::string kind =
                ToLowerAscii(s.substr(1, close == std::string_view::npos ? 0 : close - 1));
            if (kind == "dashed" || kind == "dotted") style.Dash = true;
            if (kind == "bold") style.StrokeWidth = 2.0;
            s = close == std::string_view::npos ? std::string_view() : s.substr(close + 1);
        }
        TAlphaColor c = 0;
        if (!s.empty() && PumlColor(s, c)) style.Stroke = c;
        return unread;
    }
    if (s.starts_with('#')) s.remove_prefix(1);
    while (!s.empty()) {
        const std::size_t semi = s.find(';');
        const std::string_view part = Trim(s.substr(0, semi));
        s = semi == std::string_view::npos ? std::string_view() : s.substr(semi + 1);
        const std::string lower = ToLowerAscii(part);
        TAlphaColor c = 0;
        if (lower.starts_with("line.")) {
            const std::string kind = lower.substr(5);
            if (kind == "dashed" || kind == "dotted")
                style.Dash = true;
            else if (kind == "bold")
                style.StrokeWidth = 2.0;
            else
                unread.emplace_back(part);
        } else if (lower.starts_with("line:") && PumlColor(part.substr(5), c)) {
            style.Stroke = c;
        } else if (lower.starts_with("text:") && PumlColor(part.substr(5), c)) {
            style.TextColor = c;
        } else if (lower.starts_with("back:") && PumlColor(part.substr(5), c)) {
            style.Fill = c;
        } else if (PumlColor(part, c) || ArchimateLayerColor(part, c)) {
            style.Fill = c;
        } else if (!part.empty()) {
            unread.emplace_back(part);
        }
    }
    return unread;
}

// A skinparam or <style> property onto a style; false when the key is not one this reader maps.
bool ApplyStyleKey(std::string_view key, std::string_view value, TQVLDiagStyle& style) {
    const std::string k = ToLowerAscii(key);
    const std::string v = ToLowerAscii(Trim(value));
    TAlphaColor c = 0;
    double number = 0;
    if ((k == "backgroundcolor" || k == "backgroundcolour") && PumlColor(value, c))
        style.Fill = c;
    else if ((k == "bordercolor" || k == "linecolor" || k == "color") && PumlColor(value, c))
        style.Stroke = c;
    else if (k == "fontcolor" && PumlColor(value, c))
        style.TextColor = c;
    else if ((k == "borderthickness" || k == "linethickness" || k == "thickness") &&
             std::sscanf(v.c_str(), "%lf", &number) == 1)
        style.StrokeWidth = number;
    else if (k == "linestyle" || k == "borderstyle")
        style.Dash = !(v == "0" || v == "solid" || v.empty());
    else if (k == "fontstyle") {
        style.Bold = v.find("bold") != std::string::npos;
        style.Italic = v.find("italic") != std::string::npos;
    } else
        return false;
    return true;
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Relations
//-----------------------------------------------------------------------------------------------------

struct TRelation {
    std::string From;
    std::string To;
    std::string FromKind;  // "[", "(", ":" or "" (how the name was written, for implicit elements)
    std::string ToKind;
    std::string Label;
    std::string FromText;
    std::string ToText;
    bool Dotted = false;
    bool Thick = false;
    bool Hidden = false;
    std::string Direction;  // "up", "down", "left", "right" or ""
    TQVLDiagEdgeArrow TailMark = TQVLDiagEdgeArrow::eaNone;
    TQVLDiagEdgeArrow HeadMark = TQVLDiagEdgeArrow::eaNone;
    TQVLDiagStyle Style;
};

TQVLDiagEdgeArrow MarkOf(std::string_view mark) {
    if (mark == "<|" || mark == "|>" || mark == "<" || mark == ">" || mark == "^" || mark == "<<" ||
        mark == ">>")
        return TQVLDiagEdgeArrow::eaArrow;
    if (mark == "*") return TQVLDiagEdgeArrow::eaFillRhombus;
    if (mark == "o") return TQVLDiagEdgeArrow::eaRhombus;
    if (mark == "x") return TQVLDiagEdgeArrow::eaCross;
    if (mark == "+" || mark == "0" || mark == "(0" || mark == "0)") return TQVLDiagEdgeArrow::eaCircle;
    // A socket: the element at this end requires an interface.
    if (mark == "(" || mark == ")") return TQVLDiagEdgeArrow::eaLollipop;
    return TQVLDiagEdgeArrow::eaNone;
}

std::string NameKind(std::string_view name) {
    if (name.starts_with('[')) return "[";
    if (name.starts_with('(')) return "(";
    if (name.starts_with(':')) return ":";
    return "";
}

std::string BareName(std::string_view name) {
    name = Trim(name);
    if (name.size() >= 2 &&
        ((name.front() == '[' && name.back() == ']') || (name.front() == '(' && name.back() == ')') ||
         (name.front() == ':' && name.back() == ':')))
        name = name.substr(1, name.size() - 2);
    return QVLPlainCaption(name, true);
}

std::string DirectionWord(std::string_view word) {
    const std::string w = ToLowerAscii(word);
    if (w.empty()) return {};
    if (w[0] == 'u') return "up";
    if (w[0] == 'd') return "down";
    if (w[0] == 'l') return "left";
    if (w[0] == 'r') return "right";
    return {};
}

// The style in a link's brackets: "[#red,dashed,thickness=2]", "[hidden]", "[bold]".
void ApplyLinkBracket(std::string_view inside, TRelation& r) {
    for (const std::string& raw : MacroArgs(inside)) {
        const std::string part = ToLowerAscii(raw);
        TAlphaColor c = 0;
        if (part == "hidden")
            r.Hidden = true;
        else if (part == "dashed" || part == "dotted")
            r.Dotted = true;
        else if (part == "bold")
            r.Thick = true;
        else if (part == "plain")
            r.Dotted = false;
        else if (part.starts_with("thickness="))
            r.Style.StrokeWidth = std::atof(part.c_str() + 10);
        else if (part.starts_with('#')) {
            // "#red;text:blue" or "#red" ("#a;#b" are parallel colours: the first is kept).
            ApplyInlineColors(raw, r.Style);
            if (r.Style.Fill) {
                r.Style.Stroke = r.Style.Fill;
                r.Style.Fill.reset();
            }
        } else if (PumlColor(part, c))
            r.Style.Stroke = c;
    }
}

// "[A] -(0- [B]": a ball and socket halfway along the link. The ball ("0") stands on the side of the
// element that provides the interface, the socket ("(" or ")") on the side of the one that requires it; the
// link is drawn with the interface's lollipop at the provider.
bool ParseLollipopRelation(std::string_view line, TRelation& r) {
    static const TRegex kLollipop(
        R"re(^("[^"]+"|\[[^\]]+\]|\([^)]+\)|:[^:]+:|[\w.$@]+)\s*([-.=]+)(\(0|0\)|0)([-.=]+)\s*("[^"]+"|\[[^\]]+\]|\([^)]+\)|:[^:]+:|[\w.$@]+)\s*(?::\s*(.*))?$)re");
    TRegexMatch m;
    if (!kLollipop.Match(line, m)) return false;
    r = {};
    r.From = BareName(m.Group(1));
    r.FromKind = NameKind(m.Group(1));
    r.To = BareName(m.Group(5));
    r.ToKind = NameKind(m.Group(5));
    r.Label = QVLPlainCaption(m.Group(6), true);
    const std::string body = std::string(m.Group(2)) + std::string(m.Group(4));
    r.Dotted = body.find('.') != std::string::npos;
    r.Thick = body.find('=') != std::string::npos;
    // A ball alone ("-0-") is drawn at the source, where the picture shows it.
    if (m.Group(3) == "(0")
        r.HeadMark = TQVLDiagEdgeArrow::eaLollipop;
    else
        r.TailMark = TQVLDiagEdgeArrow::eaLollipop;
    return !r.From.empty() && !r.To.empty();
}

bool ParseRelation(std::string_view line, TRelation& r) {
    if (ParseLollipopRelation(line, r)) return true;
    static const TRegex kRelation(
        R"re(^("[^"]+"|\[[^\]]+\]|\([^)]+\)|:[^:]+:|[\w.$@]+)\s*(?:"([^"]*)"\s*)?(<\||<<|\(0|[<*o#x+^}0)])?([-.=]+)(?:\[([^\]]*)\])?(?:(left|right|up|down|le|ri|do|l|r|u|d)(?=[-.=\[]))?([-.=]*)(?:\[([^\]]*)\])?([-.=]*)(\|>|>>|0\)|[>*#+^{0]|[ox](?=[\s"\[(:])|\((?=\s))?\s*(?:"([^"]*)"\s*)?("[^"]+"|\[[^\]]+\]|\([^)]+\)|:[^:]+:|[\w.$@]+)\s*(?::\s*(.*))?$)re",
        {kCaseless});
    TRegexMatch m;
    if (!kRelation.Match(line, m)) return false;
    const std::string body = std::string(m.Group(4)) + std::string(m.Group(7)) + std::string(m.Group(9));
    if (body.size() < 1) return false;
    r = {};
    r.From = BareName(m.Group(1));
    r.FromKind = NameKind(m.Group(1));
    r.To = BareName(m.Group(12));
    r.ToKind = NameKind(m.Group(12));
    r.FromText = QVLPlainCaption(m.Group(2), true);
    r.ToText = QVLPlainCaption(m.Group(11), true);
    r.Label = QVLPlainCaption(m.Group(13), true);
    r.TailMark = MarkOf(m.Group(3));
    r.HeadMark = MarkOf(m.Group(10));
    r.Dotted = body.find('.') != std::string::npos;
    r.Thick = body.find('=') != std::string::npos;
    r.Direction = DirectionWord(m.Group(6));
    ApplyLinkBracket(m.Group(5), r);
    ApplyLinkBracket(m.Group(8), r);
    // A label that ends in ">" or "<" is a reading direction mark, drawn as a small arrow: kept as text.
    return !r.From.empty() && !r.To.empty();
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] The reader
//-----------------------------------------------------------------------------------------------------

struct TElementWord {
    std::string_view Word;
    TQVLFlowType Shape;
};

// The element keywords, each with the shape it is drawn with.
constexpr std::array<TElementWord, 34> kElementWords{{
    {"actor", TQVLFlowType::ftProcess},
    {"actor/", TQVLFlowType::ftProcess},
    {"agent", TQVLFlowType::ftProcess},
    {"artifact", TQVLFlowType::ftDocument},
    {"boundary", TQVLFlowType::ftEllipse},
    {"card", TQVLFlowType::ftProcess},
    {"circle", TQVLFlowType::ftEllipse},
    {"cloud", TQVLFlowType::ftEllipse},
    {"collections", TQVLFlowType::ftMultiDocument},
    {"component", TQVLFlowType::ftPredefined},
    {"control", TQVLFlowType::ftEllipse},
    {"database", TQVLFlowType::ftDatabase},
    {"entity", TQVLFlowType::ftEllipse},
    {"file", TQVLFlowType::ftDocument},
    {"folder", TQVLFlowType::ftMultiDocument},
    {"frame", TQVLFlowType::ftProcess},
    {"hexagon", TQVLFlowType::ftPreparation},
    {"interface", TQVLFlowType::ftEllipse},
    {"label", TQVLFlowType::ftProcess},
    {"node", TQVLFlowType::ftPredefined},
    {"package", TQVLFlowType::ftMultiDocument},
    {"person", TQVLFlowType::ftTerminator},
    {"process", TQVLFlowType::ftProcess},
    {"queue", TQVLFlowType::ftPreparation},
    {"rectangle", TQVLFlowType::ftProcess},
    {"stack", TQVLFlowType::ftMultiDocument},
    {"storage", TQVLFlowType::ftDatabase},
    {"usecase", TQVLFlowType::ftEllipse},
    {"usecase/", TQVLFlowType::ftEllipse},
    {"archimate", TQVLFlowType::ftProcess},
    {"port", TQVLFlowType::ftProcess},
    {"portin", TQVLFlowType::ftProcess},
    {"portout", TQVLFlowType::ftProcess},
    {"action", TQVLFlowType::ftProcess},
}};

const TElementWord* FindElementWord(std::string_view word) {
    const std::string lower = ToLowerAscii(word);
    for (const auto& w : kElementWords)
        if (w.Word == lower) return &w;
    return nullptr;
}

// The role an element keyword gives a node: the keyword itself, with the business forms folded in.
std::string RoleOf(std::string_view word) {
    std::string role = ToLowerAscii(word);
    if (role.ends_with('/')) role.pop_back();
    return role;
}

struct TC4Word {
    std::string_view Prefix;
    TQVLFlowType Shape;
    std::string_view Role;
};

// C4 element macros by prefix (longest first); the "_Ext" forms share their base's shape.
constexpr std::array<TC4Word, 9> kC4Words{{
    {"person", TQVLFlowType::ftTerminator, "person"},
    {"systemdb", TQVLFlowType::ftDatabase, "system"},
    {"systemqueue", TQVLFlowType::ftPreparation, "system"},
    {"system", TQVLFlowType::ftProcess, "system"},
    {"containerdb", TQVLFlowType::ftDatabase, "container"},
    {"containerqueue", TQVLFlowType::ftPreparation, "container"},
    {"container", TQVLFlowType::ftProcess, "container"},
    {"componentdb", TQVLFlowType::ftDatabase, "component"},
    {"componentqueue", TQVLFlowType::ftPreparation, "component"},
}};

class TStructureReader {
  public:
    TStructureReader(TORXDiagramModel& model, bool creole) : fModel(model), fCreole(creole) {}

    void Read(const std::vector<TUmlLine>& lines) {
        fModel.fKind = TQVLDiagramKind::dkFlowChart;
        fModel.fDirection = TQVLFlowDirection::fdTopDown;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            fCurrent = i;
            i = Line(lines, i);
        }
        while (!fOpen.empty()) {
            if (fOpen.back() >= 0)
                Warn(0, "UNCLOSED_CONTAINER", "The container has no closing brace; it is closed at the end.",
                     fModel.Groups()[static_cast<std::size_t>(fOpen.back())].ID);
            fOpen.pop_back();
        }
        Finish();
    }

  private:
    void Warn(std::int32_t line, std::string_view code, std::string_view message, std::string_view source) {
        fModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsWarning, line, code, message, source);
    }
    void Note(std::int32_t line, std::string_view code, std::string_view message, std::string_view source) {
        fModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsInfo, line, code, message, source);
    }
    std::string Caption(std::string_view text) const { return QVLPlainCaption(text, fCreole); }

    // Reads the statement at lines[i]; returns the index of its last line.
    std::size_t Line(const std::vector<TUmlLine>& lines, std::size_t i) {
        static const TRegex kSkip(
            R"(^(@start\w*|@end\w*|hide\b|show\b|scale\b|header\b|footer\b|caption\b|legend\b|endlegend\b|newpage\b|allowmixing\b|allow_mixing\b|set\s+separator\b|SHOW_\w+\s*\(|HIDE_\w+\s*\(|LAYOUT_WITH_LEGEND\s*\(|LAYOUT_AS_SKETCH\s*\(|accTitle\b|accDescr\b|UpdateLayoutConfig\b))",
            {kCaseless});
        static const TRegex kDirection(
            R"(^(left\s+to\s+right|top\s+to\s+bottom)\s+direction$|^LAYOUT_(LEFT_RIGHT|LANDSCAPE|TOP_DOWN)\s*\(\s*\)$)",
            {kCaseless});
        static const TRegex kTitle(R"(^title\s*:?\s*(.*)$)", {kCaseless});
        const TUmlLine& line = lines[i];
        const std::string_view t = line.Text;
        TRegexMatch m;
        if (t.starts_with('!')) {
            if (!Qvl::Utils::StartsWithIgnoringCase(t, "!include") &&
                !Qvl::Utils::StartsWithIgnoringCase(t, "!pragma"))
                Note(line.No, "PREPROCESSOR_IGNORED", "Preprocessor lines are not run.", t);
            return i;
        }
        if (kDirection.Match(t, m)) {
            const std::string lower = ToLowerAscii(t);
            fModel.fDirection = lower.starts_with("left") || lower.find("left_right") != std::string::npos ||
                                        lower.find("landscape") != std::string::npos
                                    ? TQVLFlowDirection::fdLeftRight
                                    : TQVLFlowDirection::fdTopDown;
            return i;
        }
        if (kTitle.Match(t, m)) {
            fModel.fTitle = Caption(m.Group(1));
            return i;
        }
        if (Qvl::Utils::StartsWithIgnoringCase(t, "skinparam")) return Skinparam(lines, i);
        if (Qvl::Utils::StartsWithIgnoringCase(t, "<style>")) return StyleBlock(lines, i);
        if (Qvl::Utils::StartsWithIgnoringCase(t, "note")) return NoteStatement(lines, i);
        if (kSkip.Match(t)) {
            if (Qvl::Utils::StartsWithIgnoringCase(t, "legend")) return SkipTo(lines, i, "endlegend");
            return i;
        }
        if (t == "}") {
            if (!fOpen.empty())
                fOpen.pop_back();
            else
                Warn(line.No, "UNMATCHED_BRACE", "The brace closes no container.", t);
            return i;
        }
        // "together { ... }" only asks the layout to keep its elements close: no frame.
        if (Qvl::Utils::StartsWithIgnoringCase(t, "together") && t.ends_with('{')) {
            fOpen.push_back(-1);
            return i;
        }
        if (Macro(line) || Relation(line) || Declaration(lines, i)) return fLastLine;
        Warn(line.No, "UNRECOGNIZED_LINE", "The line was not recognized and was ignored.", t);
        return i;
    }

    std::size_t SkipTo(const std::vector<TUmlLine>& lines, std::size_t i, std::string_view end) {
        while (i + 1 < lines.size() && !Qvl::Utils::StartsWithIgnoringCase(lines[i].Text, end)) ++i;
        return i;
    }

    // "skinparam key value", "skinparam key { ... }" and "skinparam { key value ... }".
    std::size_t Skinparam(const std::vector<TUmlLine>& lines, std::size_t i) {
        std::string_view rest = Trim(lines[i].Text.substr(9));
        if (rest.ends_with('{')) {
            const std::string prefix(Trim(rest.substr(0, rest.size() - 1)));
            std::size_t k = i + 1;
            for (; k < lines.size() && lines[k].Text != "}"; ++k) {
                const std::string_view inner = lines[k].Text;
                const std::size_t space = inner.find_first_of(" \t");
                SkinKey(prefix + std::string(inner.substr(0, space)),
                        space == std::string_view::npos ? std::string_view() : inner.substr(space + 1),
                        lines[k]);
            }
            return std::min(k, lines.size() - 1);
        }
        const std::size_t space = rest.find_first_of(" \t");
        SkinKey(std::string(rest.substr(0, space)),
                space == std::string_view::npos ? std::string_view() : rest.substr(space + 1), lines[i]);
        return i;
    }

    // "componentBackgroundColor", "ArrowColor", "BackgroundColor<<stereo>>": the element word (or "" for
    // all, "arrow" for links) and the property.
    void SkinKey(const std::string& key, std::string_view value, const TUmlLine& line) {
        static const std::array<std::string_view, 9> kProperties{
            "backgroundcolor", "bordercolor",   "fontcolor",   "borderthickness", "fontstyle",
            "linecolor",       "linethickness", "borderstyle", "linestyle"};
        std::string lower = ToLowerAscii(key);
        if (lower.find("<<") != std::string::npos) {
            Note(line.No, "UNMAPPED_STYLE_PROPERTY",
                 "Styles of a stereotype (\"" + key + "\") are not drawn.", line.Text);
            return;
        }
        std::string element;
        std::string property;
        for (const std::string_view p : kProperties)
            if (lower.ends_with(p)) {
                element = lower.substr(0, lower.size() - p.size());
                property = std::string(p);
                break;
            }
        if (lower == "arrowcolor") element = "arrow", property = "linecolor";
        if (lower == "arrowthickness") element = "arrow", property = "linethickness";
        if (lower == "arrowfontcolor") element = "arrow", property = "fontcolor";
        if (lower == "defaultfontcolor") property = "fontcolor";
        // The diagram's own background is the page, not an element.
        const bool mapped = !property.empty() && !(element.empty() && property == "backgroundcolor") &&
                            (element.empty() || element == "arrow" || FindElementWord(element) != nullptr ||
                             element == "usecaseactor" || element == "default") &&
                            ApplyStyleKey(property, value, fTypeStyles[element == "default" ? "" : element]);
        if (!mapped)
            Note(line.No, "UNMAPPED_STYLE_PROPERTY", "The skinparam \"" + key + "\" is not drawn.",
                 line.Text);
    }

    // A <style> block: selectors nest with braces; "Name value" lines set properties.
    std::size_t StyleBlock(const std::vector<TUmlLine>& lines, std::size_t i) {
        std::vector<std::string> selectors;
        std::size_t k = i + 1;
        for (; k < lines.size(); ++k) {
            std::string_view t = lines[k].Text;
            if (Qvl::Utils::StartsWithIgnoringCase(t, "</style>")) break;
            if (t.ends_with('{')) {
                selectors.emplace_back(ToLowerAscii(Trim(t.substr(0, t.size() - 1))));
                continue;
            }
            if (t.starts_with('}')) {
                if (!selectors.empty()) selectors.pop_back();
                continue;
            }
            if (t.ends_with(';')) t.remove_suffix(1);
            const std::size_t space = t.find_first_of(" \t:");
            if (space == std::string_view::npos) continue;
            std::string target;  // the innermost selector that names an element kind
            bool known = true;
            for (const std::string& s : selectors) {
                if (s == "arrow" || FindElementWord(s) != nullptr)
                    target = s;
                else if (s.starts_with('.'))
                    known = false;
                else if (s == "element")
                    target.clear();
            }
            std::string_view value = Trim(t.substr(space + 1));
            if (value.starts_with(':')) value = Trim(value.substr(1));
            if (!known || !ApplyStyleKey(t.substr(0, space), value, fTypeStyles[target]))
                Note(lines[k].No, "UNMAPPED_STYLE_PROPERTY",
                     "The style property \"" + std::string(t) + "\" is not drawn.", t);
        }
        return std::min(k, lines.size() - 1);
    }

    // "note left of X : text", "note right of X" ... "end note", "note "text" as N", "note as N" ...
    // "end note", "note on link". A note becomes a node joined to its element by a dashed link.
    std::size_t NoteStatement(const std::vector<TUmlLine>& lines, std::size_t i) {
        static const TRegex kNote(
            R"re(^note\s+(?:(left|right|top|bottom)(?:\s+of\s+("[^"]+"|\[[^\]]+\]|\([^)]+\)|:[^:]+:|[\w.$@]+))?|("[^"]+")\s+as\s+([\w.]+)|as\s+([\w.]+)|(on\s+link))\s*(#\S+)?\s*(?::\s*(.*))?$)re",
            {kCaseless});
        TRegexMatch m;
        const TUmlLine& line = lines[i];
        if (!kNote.Match(line.Text, m)) {
            Warn(line.No, "UNRECOGNIZED_LINE", "The note was not recognized and was ignored.", line.Text);
            return i;
        }
        std::string text;
        std::size_t last = i;
        if (m.Matched(8)) {
            text = std::string(m.Group(8));
        } else if (m.Matched(3)) {
            text = std::string(m.Group(3));
        } else {
            std::vector<std::string> body;
            while (last + 1 < lines.size() &&
                   !Qvl::Utils::StartsWithIgnoringCase(lines[last + 1].Text, "end note") &&
                   !Qvl::Utils::StartsWithIgnoringCase(lines[last + 1].Text, "endnote"))
                body.emplace_back(lines[++last].Text);
            if (last + 1 < lines.size()) ++last;
            for (const auto& b : body) text += (text.empty() ? "" : "\n") + b;
        }
        if (m.Matched(6)) {
            Note(line.No, "NOTE_ON_LINK", "A note on a link is drawn as a free note.", line.Text);
        }
        const std::string id = m.Matched(4)   ? std::string(m.Group(4))
                               : m.Matched(5) ? std::string(m.Group(5))
                                              : "note_" + std::to_string(++fNotes);
        AddNode(id, Caption(text), TQVLFlowType::ftDocument, "note", true);
        if (TQVLDiagNode* node = fModel.FindNode(id); node != nullptr && m.Matched(7))
            ApplyInlineColors(m.Group(7), node->Style);
        if (m.Matched(2)) {
            const std::string target = Resolve(BareName(m.Group(2)), NameKind(m.Group(2)));
            const std::string side = ToLowerAscii(m.Group(1));
            // The note stands on its side of the element: left and top notes come first.
            TRelation r;
            r.Dotted = true;
            const bool before = side == "left" || side == "top";
            r.From = before ? id : target;
            r.To = before ? target : id;
            r.Direction = side == "left" || side == "right" ? "right" : "down";
            AddRelation(r, line);
        }
        return last;
    }

    // C4 and ArchiMate macros: elements, boundaries (containers) and relations.
    bool Macro(const TUmlLine& line) {
        static const TRegex kMacro(R"(^(\w+)\s*\((.*)\)\s*(\{)?\s*$)");
        TRegexMatch m;
        if (!kMacro.Match(line.Text, m)) return false;
        const std::string name = ToLowerAscii(m.Group(1));
        const std::vector<std::string> args = MacroArgs(m.Group(2));
        fLastLine = fCurrent;
        if (name.starts_with("rel") || name.starts_with("birel") || name.starts_with("lay_"))
            return MacroRelation(name, args, line);
        if (name.ends_with("boundary") || name == "group" || name == "grouping" ||
            name.starts_with("deployment_node") || name == "node" || name == "node_l" || name == "node_r" ||
            (m.Matched(3) && name.starts_with("enterprise"))) {
            if (args.empty()) return false;
            std::vector<std::string> lines{args.size() > 1 ? args[1] : args[0]};
            if (args.size() > 2 && !args[2].empty()) lines.push_back("[" + args[2] + "]");
            const std::string caption = Caption(JoinCaption(lines));
            if (m.Matched(3)) {
                OpenGroup(args[0], caption, line);
            } else {
                AddNode(args[0], caption, TQVLFlowType::ftPredefined, "node", true);
            }
            return true;
        }
        if (name.starts_with("update") || name.starts_with("add") || name.starts_with("increment") ||
            name.starts_with("set") || name.starts_with("show") || name.starts_with("hide") ||
            name.starts_with("layout")) {
            Note(line.No, "STYLE_MACRO_IGNORED", "The layout or style macro is not drawn.", line.Text);
            return true;
        }
        std::string base = name;
        const bool external = base.ends_with("_ext");
        if (external) base.resize(base.size() - 4);
        for (const TC4Word& w : kC4Words) {
            if (base != w.Prefix) continue;
            AddC4Element(args, w.Shape, std::string(w.Role), external, line);
            return true;
        }
        if (base == "component") {
            AddC4Element(args, TQVLFlowType::ftProcess, "component", external, line);
            return true;
        }
        // ArchiMate's "Junction_And(id, "label")" and friends are small markers.
        if (name.starts_with("junction")) {
            if (!args.empty()) AddNode(args[0], "", TQVLFlowType::ftStart, "", true);
            return true;
        }
        return false;
    }

    static std::string JoinCaption(const std::vector<std::string>& parts) {
        std::string out;
        for (const auto& p : parts) {
            if (p.empty()) continue;
            if (!out.empty()) out += "\n";
            out += p;
        }
        return out;
    }

    // Person(alias, label, description), Container(alias, label, technology, description), ...
    void AddC4Element(const std::vector<std::string>& args, TQVLFlowType shape, const std::string& role,
                      bool external, const TUmlLine& line) {
        if (args.empty()) {
            Warn(line.No, "UNRECOGNIZED_LINE", "The element has no alias and was ignored.", line.Text);
            return;
        }
        std::vector<std::string> parts{args.size() > 1 ? args[1] : args[0]};
        const bool hasTechnology = role == "container" || role == "component";
        if (hasTechnology && args.size() > 2 && !args[2].empty()) parts.push_back("[" + args[2] + "]");
        const std::size_t descr = hasTechnology ? 3 : 2;
        if (args.size() > descr && !args[descr].empty()) parts.push_back(args[descr]);
        AddNode(args[0], Caption(JoinCaption(parts)), shape, role, true);
        if (TQVLDiagNode* node = fModel.FindNode(args[0]); node != nullptr && !node->Style.Fill)
            node->Style.Fill = external ? 0xFF999999u : role == "person" ? 0xFF08427Bu : 0xFF1168BDu;
        if (TQVLDiagNode* node = fModel.FindNode(args[0]); node != nullptr && !node->Style.TextColor)
            node->Style.TextColor = 0xFFFFFFFFu;
    }

    bool MacroRelation(const std::string& name, const std::vector<std::string>& args, const TUmlLine& line) {
        if (args.size() < 2) {
            Warn(line.No, "UNRECOGNIZED_LINE", "The relation names fewer than two elements.", line.Text);
            return true;
        }
        TRelation r;
        r.From = args[0];
        r.To = args[1];
        // The label, and the technology under it in brackets.
        r.Label = Caption(JoinCaption({args.size() > 2 ? args[2] : "",
                                       args.size() > 3 && !args[3].empty() ? "[" + args[3] + "]" : ""}));
        r.HeadMark = TQVLDiagEdgeArrow::eaArrow;
        if (name.starts_with("birel")) r.TailMark = TQVLDiagEdgeArrow::eaArrow;
        if (name.starts_with("lay_")) r.Hidden = true;
        // The suffix: a direction (C4) or an ArchiMate relation type.
        const std::size_t underscore = name.find('_');
        std::string suffix = underscore == std::string::npos ? std::string() : name.substr(underscore + 1);
        for (const std::string_view d : {"_up", "_down", "_left", "_right", "_u", "_d", "_l", "_r"})
            if (("_" + suffix).ends_with(d)) {
                r.Direction = DirectionWord(d.substr(1));
                suffix.resize(suffix.size() + 1 - d.size());
                if (!suffix.empty() && suffix.back() == '_') suffix.pop_back();
                break;
            }
        if (suffix == "back") std::swap(r.From, r.To);
        if (suffix == "composition")
            r.TailMark = TQVLDiagEdgeArrow::eaFillRhombus, r.HeadMark = TQVLDiagEdgeArrow::eaNone;
        if (suffix == "aggregation")
            r.TailMark = TQVLDiagEdgeArrow::eaRhombus, r.HeadMark = TQVLDiagEdgeArrow::eaNone;
        if (suffix == "association") r.HeadMark = TQVLDiagEdgeArrow::eaNone;
        if (suffix == "realization" || suffix == "influence" || suffix.starts_with("access")) r.Dotted = true;
        if (suffix == "triggering" || suffix == "flow" || suffix == "serving")
            r.HeadMark = TQVLDiagEdgeArrow::eaArrow;
        AddRelation(r, line);
        return true;
    }

    bool Relation(const TUmlLine& line) {
        TRelation r;
        if (!ParseRelation(line.Text, r)) return false;
        r.From = Resolve(r.From, r.FromKind);
        r.To = Resolve(r.To, r.ToKind);
        fLastLine = fCurrent;
        AddRelation(r, line);
        return true;
    }

    void AddRelation(const TRelation& r, const TUmlLine& line) {
        (void)line;
        for (const std::string& end : {r.From, r.To}) {
            if (fModel.NodeIndexOf(end) >= 0 || fModel.FindGroup(end) != nullptr) continue;
            // A plain name linked to a use case is an actor.
            const TQVLDiagNode* other = fModel.FindNode(end == r.From ? r.To : r.From);
            const bool actor =
                ImplicitRole(end).empty() && ((other != nullptr && other->Role == "usecase") ||
                                              ImplicitRole(end == r.From ? r.To : r.From) == "usecase");
            AddNode(end, end, ImplicitShape(end), actor ? "actor" : ImplicitRole(end), false);
        }
        TQVLDiagEdge edge;
        edge.FromID = r.From;
        edge.ToID = r.To;
        edge.Text = r.Label;
        edge.Dotted = r.Dotted;
        edge.FromArrow = r.TailMark;
        edge.Arrow = r.HeadMark;
        edge.FromText = r.FromText;
        edge.ToText = r.ToText;
        edge.Thick = r.Thick;
        edge.Style = r.Style;
        if (r.Hidden) edge.Style.Stroke = 0;
        fModel.MutableEdges().push_back(std::move(edge));
        fHints.push_back(r.Direction);
    }

    // How an element first named in a relation looks: "[X]" a component, "(X)" a use case, ":X:" an
    // actor.
    TQVLFlowType ImplicitShape(const std::string& id) const {
        const auto kind = fImplicitKinds.find(id);
        if (kind == fImplicitKinds.end()) return TQVLFlowType::ftProcess;
        if (kind->second == "[") return TQVLFlowType::ftPredefined;
        if (kind->second == "(") return TQVLFlowType::ftEllipse;
        return TQVLFlowType::ftProcess;
    }
    std::string ImplicitRole(const std::string& id) const {
        const auto kind = fImplicitKinds.find(id);
        if (kind == fImplicitKinds.end()) return {};
        if (kind->second == "[") return "component";
        if (kind->second == "(") return "usecase";
        if (kind->second == ":") return "actor";
        return {};
    }

    // A name as a relation writes it. Elements are found by their id: a caption given with "as" is not
    // another name for its element ("[Long name]" after "[Long name] as L" is a second element), as
    // PlantUML reads it.
    std::string Resolve(const std::string& name, const std::string& kind) {
        if (!kind.empty() && fModel.NodeIndexOf(name) < 0) fImplicitKinds.emplace(name, kind);
        return name;
    }

    // "component X", "component "Long name" as X", "X as "Long"", "[Long name] as X", "(Use) as U",
    // ":Actor: as A", "package P {", "node "N" as n #pink {", with stereotypes and colours.
    bool Declaration(const std::vector<TUmlLine>& lines, std::size_t i) {
        static const TRegex kDeclaration(
            R"re(^(?:([\w/]+)\s+)?("[^"]*"|\[[^\]]*\]|\([^)]*\)|:[^:]+:|[\w.$@]+)(?:\s+as\s+("[^"]*"|\[[^\]]*\]|\([^)]*\)|:[^:]+:|[\w.$@]+))?((?:\s*<<[^>]*>>)*)\s*(#\S+)?\s*(##\S+)?\s*(\[|\{)?\s*$)re",
            {kCaseless});
        // ArchiMate writes the colour before the name ("archimate #Business "Actor" as a"): moved behind.
        static const TRegex kColourFirst(R"(^([\w/]+)\s+(#[\w.:;-]+)\s+(.+)$)");
        // "cloud {": a container without a name.
        static const TRegex kAnonymous(R"(^([\w/]+)\s*(#\S+)?\s*\{$)");
        const TUmlLine& line = lines[i];
        TRegexMatch m;
        if (kAnonymous.Match(line.Text, m) && FindElementWord(m.Group(1)) != nullptr) {
            const std::string id = RoleOf(m.Group(1)) + "_" + std::to_string(fModel.Groups().size() + 1);
            OpenGroup(id, "", line);
            if (m.Matched(2)) ApplyInlineColors(m.Group(2), fModel.FindGroup(id)->Style);
            fGroupWords.back() = RoleOf(m.Group(1));
            fLastLine = i;
            return true;
        }
        std::string text(line.Text);
        // "() "Port" as P": the short form of an interface.
        if (text.starts_with("()")) text = "interface " + std::string(Trim(std::string_view(text).substr(2)));
        if (kColourFirst.Match(text, m) && FindElementWord(m.Group(1)) != nullptr)
            text = std::string(m.Group(1)) + " " + std::string(m.Group(3)) + " " + std::string(m.Group(2));
        if (!kDeclaration.Match(text, m)) return false;
        std::string word = std::string(m.Group(1));
        const std::string_view first = m.Group(2);
        // "actor :Name:" and "[Name]" alone declare; a bare word alone is not a statement.
        const TElementWord* element = word.empty() ? nullptr : FindElementWord(word);
        if (!word.empty() && element == nullptr) return false;
        const std::string firstKind = NameKind(first);
        if (word.empty()) {
            if (firstKind == "[")
                word = "component";
            else if (firstKind == "(")
                word = "usecase";
            else if (firstKind == ":")
                word = "actor";
            else
                return false;
            element = FindElementWord(word);
        }
        std::string id = BareName(first);
        std::string caption = id;
        if (m.Matched(3)) {
            const std::string_view second = m.Group(3);
            const bool firstIsCaption = first.starts_with('"') || !firstKind.empty();
            id = firstIsCaption ? BareName(second) : BareName(first);
            caption = firstIsCaption ? BareName(first) : BareName(second);
        }
        std::size_t last = i;
        // "rectangle X [" ... "]": a multi-line description.
        if (m.Group(7) == "[") {
            std::vector<std::string> body{caption};
            while (last + 1 < lines.size() && lines[last + 1].Text != "]")
                body.emplace_back(lines[++last].Text);
            if (last + 1 < lines.size()) ++last;
            caption = JoinCaption(body);
        }
        const std::string stereotype(Trim(m.Group(4)));
        if (!stereotype.empty() && word != "archimate") caption = JoinCaption({stereotype, caption});
        TQVLDiagStyle own;
        for (const std::size_t g : {std::size_t{5}, std::size_t{6}})
            if (m.Matched(g))
                for (const std::string& bad : ApplyInlineColors(m.Group(g), own))
                    Note(line.No, "UNMAPPED_STYLE_PROPERTY", "The colour \"" + bad + "\" is not drawn.",
                         line.Text);
        const std::string role = RoleOf(word);
        fLastLine = last;
        if (m.Group(7) == "{") {
            OpenGroup(id, Caption(caption), line);
            if (TQVLDiagGroup* group = fModel.FindGroup(id)) QVLMergeStyle(group->Style, own);
            fGroupWords.back() = role;
            return true;
        }
        AddNode(id, Caption(caption), element->Shape, role, true);
        if (TQVLDiagNode* node = fModel.FindNode(id)) QVLMergeStyle(node->Style, own);
        return true;
    }

    void OpenGroup(const std::string& id, const std::string& caption, const TUmlLine& line) {
        (void)line;
        TQVLDiagGroup group;
        group.ID = id;
        group.Text = caption;
        group.Parent = InnermostGroup();
        fModel.AddGroup(std::move(group));
        fOpen.push_back(static_cast<long>(fModel.Groups().size() - 1));
        fGroupWords.resize(fModel.Groups().size());
    }

    // The id of the innermost open container ("together" blocks are no containers).
    std::string InnermostGroup() const {
        for (auto open = fOpen.rbegin(); open != fOpen.rend(); ++open)
            if (*open >= 0) return fModel.Groups()[static_cast<std::size_t>(*open)].ID;
        return {};
    }

    void AddNode(const std::string& id, const std::string& caption, TQVLFlowType shape,
                 const std::string& role, bool declared) {
        const bool known = fModel.NodeIndexOf(id) >= 0;
        fModel.AddNode(id, caption, shape, declared);
        TQVLDiagNode* node = fModel.FindNode(id);
        if (node == nullptr) return;
        if (declared) {
            node->Text = caption;
            node->Shape = shape;
            node->HasShape = true;
        }
        if (!role.empty() && (declared || node->Role.empty())) node->Role = role;
        const std::string inner = InnermostGroup();
        if (!known && !inner.empty()) {
            node->Group = inner;
            fModel.FindGroup(inner)->Members.push_back(id);
        }
    }

    // Type-wide styles (skinparam, <style>) go under each element's own colours.
    void Finish() {
        std::vector<std::string> ids;
        for (const TQVLDiagNode& node : fModel.Nodes()) ids.push_back(node.ID);
        for (const std::string& id : ids) {
            TQVLDiagNode& node = *fModel.FindNode(id);
            TQVLDiagStyle style;
            if (const auto all = fTypeStyles.find(""); all != fTypeStyles.end())
                QVLMergeStyle(style, all->second);
            if (const auto own = fTypeStyles.find(node.Role); own != fTypeStyles.end())
                QVLMergeStyle(style, own->second);
            QVLMergeStyle(style, node.Style);
            node.Style = style;
        }
        for (std::size_t g = 0; g < fModel.Groups().size(); ++g) {
            TQVLDiagGroup* group = fModel.FindGroup(fModel.Groups()[g].ID);
            TQVLDiagStyle style;
            if (g < fGroupWords.size())
                if (const auto own = fTypeStyles.find(fGroupWords[g]); own != fTypeStyles.end())
                    QVLMergeStyle(style, own->second);
            QVLMergeStyle(style, group->Style);
            group->Style = style;
        }
        if (const auto arrow = fTypeStyles.find("arrow"); arrow != fTypeStyles.end())
            for (TQVLDiagEdge& edge : fModel.MutableEdges()) {
                TQVLDiagStyle style = arrow->second;
                QVLMergeStyle(style, edge.Style);
                edge.Style = style;
            }
        // Direction hints: "up" and "left" reverse the flow between the two ends, and "left"/"right"
        // (or "up"/"down" across) put them side by side: kept for the layout as the edge's hint.
        auto& edges = fModel.MutableEdges();
        for (std::size_t e = 0; e < edges.size() && e < fHints.size(); ++e) edges[e].Hint = fHints[e];
        if (fModel.Nodes().empty() && fModel.Groups().empty())
            fModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsError, 0, "DIAGRAM_EMPTY_RESULT",
                                 "The diagram did not produce any renderable element.", "");
    }

    TORXDiagramModel& fModel;
    bool fCreole;
    std::vector<long> fOpen;  // the open containers' indices in the model's groups; -1 for "together"
    std::vector<std::string> fGroupWords;
    int fNotes = 0;
    std::size_t fCurrent = 0;
    std::size_t fLastLine = 0;
    std::map<std::string, std::string> fImplicitKinds;
    std::map<std::string, TQVLDiagStyle> fTypeStyles;  // "" for every element, "arrow" for links
    std::vector<std::string> fHints;
};

}  // namespace

//-----------------------------------------------------------------------------------------------------
// [SECTION] Entry
//-----------------------------------------------------------------------------------------------------

bool QVLImportStructure(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    using TKind = TORXPlantUMLParser::TPumlKind;
    if (aFormat == TQVLDiagramFormat::dgMermaid) {
        if (!QVLMermaidHeaderWord(aText).starts_with("c4")) return false;
    } else {
        const auto content = UmlPlantUMLContent(aText);
        if (!content) return false;
        const TKind kind = content->Kind;
        if (kind != TKind::pkStructure && kind != TKind::pkC4 && kind != TKind::pkArchimate) return false;
        // Class and object diagrams have their own reader.
        static const TRegex kClassWord(
            R"(^(class|abstract|enum|annotation|object|map|json|struct|exception|metaclass|protocol|stereotype|namespace)\s)",
            {kCaseless});
        static const TRegex kClassLink(R"((<\|--|--\|>|<\|\.\.|\.\.\|>))");
        for (const std::string_view line : content->Lines)
            if (kClassWord.Match(line) || kClassLink.Match(line)) return false;
    }
    const bool mermaid = aFormat == TQVLDiagramFormat::dgMermaid;
    std::vector<TUmlLine> lines =
        UmlStatementLines(aText, mermaid ? TQVLDiagramFormat::dgMermaid : TQVLDiagramFormat::dgPlantUML);
    if (mermaid) {
        // The header line is no statement.
        std::size_t header = 0;
        while (header < lines.size() && !ToLowerAscii(lines[header].Text).starts_with("c4")) ++header;
        if (header < lines.size())
            lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(header) + 1);
        aModel.fTitle = QVLFrontMatterValue(aText, "title");
    }
    TStructureReader reader(aModel, aFormat == TQVLDiagramFormat::dgPlantUML);
    reader.Read(lines);
    return true;
}

}  // namespace Orvex
