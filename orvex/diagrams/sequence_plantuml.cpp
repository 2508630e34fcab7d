// PlantUML sequence diagrams: every arrow form ("->", "<--", "-[#red]>", "->x", "o->", "[->", "->]", ...)
// with its activation marks, participant kinds and aliases, notes of every shape, fragments, boxes,
// dividers, delays, spacing, references, autonumber and return. The same reader decides whether a text is
// a sequence diagram at all: it is when its lines are sequence statements.
//
// [SECTION] Lines   [SECTION] Statements   [SECTION] Reading   [SECTION] Entry
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/sequence_builder.h"
#include "orvex/diagrams/sequence_import.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;

constexpr std::string_view kPrefix = "PLANTUML";
constexpr auto kInfo = TQVLDiagramDiagnosticSeverity::dsInfo;
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;
const Qvl::Types::TRegexFlags kCaseless{TRegexFlag::rfCaseless};

//-----------------------------------------------------------------------------------------------------
// [SECTION] Lines
//-----------------------------------------------------------------------------------------------------

struct TPumlLine {
    int Number = 0;  // 1-based, on the shared split
    std::string_view Raw;
    std::string Text;  // trimmed, comments removed
};

// Content lines: block comments "/' ... '/" and "'" comment lines removed, start and end markers dropped.
std::vector<TPumlLine> ContentLines(std::string_view text) {
    static const TRegex kMarker(R"(^@(?:start|end)\w*)", kCaseless);
    std::vector<TPumlLine> out;
    const std::vector<std::string_view> lines = QVLSplitDiagramLines(text);
    bool inComment = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::string line(lines[i]);
        std::string kept;
        std::size_t pos = 0;
        while (pos < line.size()) {
            if (inComment) {
                const std::size_t close = line.find("'/", pos);
                if (close == std::string::npos) {
                    pos = line.size();
                } else {
                    inComment = false;
                    pos = close + 2;
                }
            } else {
                const std::size_t open = line.find("/'", pos);
                if (open == std::string::npos) {
                    kept.append(line, pos, std::string::npos);
                    pos = line.size();
                } else {
                    kept.append(line, pos, open - pos);
                    inComment = true;
                    pos = open + 2;
                }
            }
        }
        const std::string_view t = Trim(kept);
        if (t.empty() || t.front() == '\'' || kMarker.Match(t)) continue;
        out.push_back({static_cast<int>(i + 1), lines[i], std::string(t)});
    }
    return out;
}

std::string Unquote(std::string_view text) {
    text = Trim(text);
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
    return std::string(text);
}

TQVLDiagStyle FillOf(std::string_view color) {
    TQVLDiagStyle style;
    if (auto c = QVLSeqColor(color)) style.Fill = *c;
    return style;
}

//-----------------------------------------------------------------------------------------------------
// [SECTION] Statements
//-----------------------------------------------------------------------------------------------------

// What a line tells about the kind of diagram: statements only sequence diagrams have, statements other
// kinds share (a plain "A -> B"), lines that say nothing (title, skinparam), and lines no sequence
// statement explains.
enum class TLineKind : std::uint8_t { lkSequence, lkShared, lkNeutral, lkOther };

const TRegex& MessagePattern() {
    // from, left end, left head, body, right head, right end, to, marks, activation colour, text.
    static const TRegex kMessage(
        R"(^(?:&\s*)?("[^"]+"|[\w.@$]+|\[|\?)?\s*((?<![\w.@$])[ox])?(<<|<|\\\\|//|\\|/)?(-(?:\[[^\]]*\])?-?)(>>|>|\\\\|//|\\|/)?([ox](?![\w.@$]))?\s*("[^"]+"|[\w.@$]+|\]|\?)?\s*((?:\+\+|--|\*\*|!!)*)\s*(#\w+)?\s*(?::(.*))?$)");
    return kMessage;
}

// "alt -> B" is a message from a participant called alt, not a fragment.
bool IsArrowText(std::string_view text) {
    return !text.empty() && (text.front() == '-' || text.front() == '<');
}

TQVLSeqArrow HeadOf(std::string_view head, std::string_view end) {
    if (end == "x") return TQVLSeqArrow::saCross;
    if (head == ">" || head == "<") return TQVLSeqArrow::saFilled;
    if (head.empty()) return TQVLSeqArrow::saNone;
    return TQVLSeqArrow::saOpen;  // ">>" and the half heads
}

struct TPlantUMLReader {
    TSequenceBuilder& Builder;
    TORXDiagramModel& Model;
    const std::vector<TPumlLine>& Lines;
    std::size_t Index = 0;
    std::string LastFrom;  // the latest message's ends, for notes attached to it
    std::string LastTo;

    // Lines up to the one that closes a block ("end note"), joined with CR LF; the closing line is
    // consumed. Without one, everything to the end with a diagnostic.
    std::string BlockText(const TRegex& close) {
        std::vector<std::string> parts;
        while (++Index < Lines.size()) {
            if (close.Match(Lines[Index].Text)) return JoinParts(parts);
            parts.emplace_back(Trim(Lines[Index].Raw));
        }
        Builder.Diagnose(kWarning, "PLANTUML_UNCLOSED_BLOCK",
                         "A block is not closed; it ends with the diagram.");
        return JoinParts(parts);
    }
    static std::string JoinParts(const std::vector<std::string>& parts) {
        std::string out;
        for (std::size_t i = 0; i < parts.size(); ++i) out += (i ? "\r\n" : "") + parts[i];
        return QVLCleanCaption(out);
    }

    TLineKind Declaration(std::string_view roleWord, std::string_view tail, bool create) {
        static const TRegex kStereotype(R"(<<.*?>>)");
        static const TRegex kOrder(R"(\s+order\s+-?\d+)", kCaseless);
        static const TRegex kColor(R"(\s*(#\w+)\s*$)");
        static const TRegex kName(R"re(^("[^"]+"|[^\s"]+)(?:\s+as\s+("[^"]+"|[^\s"]+))?$)re", kCaseless);
        std::string role = Qvl::Utils::ToLowerAscii(roleWord);
        std::string rest(Trim(tail));
        TRegexMatch part;
        std::string color;
        // Stereotypes, order and colour may stand in any order after the names.
        bool dropped = false;
        for (const TRegex* re : {&kStereotype, &kOrder}) {
            while (re->Match(rest, part)) {
                rest.erase(part.Start(), part.End() - part.Start());
                dropped = true;
            }
        }
        // The lifelines keep the order of first mention and show no stereotype: say so.
        if (dropped) Builder.Unsupported(kPrefix, kInfo);
        rest = Trim(rest);
        if (kColor.Match(rest, part)) {
            color = part.Group(1);
            rest = Trim(rest.substr(0, part.Start()));
        }
        if (!rest.empty() && rest.back() == '[') {
            // A caption over several lines, up to "]".
            static const TRegex kClose(R"(^\]$)");
            rest = Trim(rest.substr(0, rest.size() - 1));
            const std::string caption = BlockText(kClose);
            Builder.Declare(Unquote(rest), caption, role).Style = FillOf(color);
            if (create) Builder.Create(Unquote(rest));
            return TLineKind::lkSequence;
        }
        if (!kName.Match(rest, part)) return TLineKind::lkOther;
        std::string id = Unquote(part.Group(1));
        std::string display;
        if (part.Matched(2)) {
            const bool aliasQuoted = part.Group(2).starts_with("\"") && !part.Group(1).starts_with("\"");
            if (aliasQuoted) {
                display = QVLCleanCaption(part.Group(2));
            } else {
                display = QVLCleanCaption(part.Group(1));
                id = Unquote(part.Group(2));
            }
        } else if (part.Group(1).starts_with("\"")) {
            display = QVLCleanCaption(part.Group(1));
        }
        TQVLSeqParticipant& p = Builder.Declare(id, display, role);
        if (!color.empty()) p.Style = FillOf(color);
        if (create) Builder.Create(id);
        return role == "participant" || create ? TLineKind::lkSequence : TLineKind::lkShared;
    }

    TLineKind Message(const TRegexMatch& m) {
        const std::string_view lhead = m.Group(3), rhead = m.Group(5), lend = m.Group(2), rend = m.Group(6);
        if (lhead.empty() && rhead.empty() && lend.empty() && rend.empty()) return TLineKind::lkOther;
        if (!m.Matched(1) || !m.Matched(7)) return TLineKind::lkOther;
        auto side = [](std::string_view name, std::string_view edge) {
            if (name == "[" || name == "]" || name == "?") return std::string(edge);
            return Unquote(name);
        };
        std::string left = side(m.Group(1), kSeqLeftEdge);
        std::string right = side(m.Group(7), kSeqRightEdge);
        TQVLSeqEvent ev;
        const bool reversed = (!lhead.empty() && rhead.empty()) ||
                              (lhead.empty() && rhead.empty() && !lend.empty() && rend.empty());
        ev.Dotted = std::count(m.Group(4).begin(), m.Group(4).end(), '-') >= 2;
        if (reversed) {
            ev.FromActor = right;
            ev.ToActor = left;
            ev.Arrow = HeadOf(lhead, lend);
            ev.ToCircle = lend == "o";
            ev.FromArrow = HeadOf(rhead, rend);
            ev.FromCircle = rend == "o";
        } else {
            ev.FromActor = left;
            ev.ToActor = right;
            ev.Arrow = HeadOf(rhead, rend);
            ev.ToCircle = rend == "o";
            ev.FromArrow = HeadOf(lhead, lend);
            ev.FromCircle = lend == "o";
        }
        // The arrow's colour: "-[#red]>", "-[#red,bold]->".
        static const TRegex kArrowColor(R"(\[(#?\w+))");
        TRegexMatch c;
        if (kArrowColor.Match(m.Group(4), c))
            if (auto color = QVLSeqColor(c.Group(1)); color) ev.Style.Stroke = *color;
        ev.Text = m.Matched(10) ? QVLCleanCaption(m.Group(10)) : std::string();
        const std::string_view marks = m.Group(8);
        TSequenceBuilder::TMarks mk;
        for (std::size_t i = 0; i + 1 < marks.size(); i += 2) {
            const std::string_view mark = marks.substr(i, 2);
            mk.ActivateTarget |= mark == "++";
            mk.DeactivateSource |= mark == "--";
            mk.CreateTarget |= mark == "**";
            mk.DestroyTarget |= mark == "!!";
        }
        if (m.Matched(9)) mk.ActivationStyle = FillOf(m.Group(9));
        LastFrom = ev.FromActor;
        LastTo = ev.ToActor;
        const bool edge = left == kSeqLeftEdge || right == kSeqRightEdge;
        const bool halfHead = (lhead.size() == 1 && lhead != "<") || rhead == "\\" || rhead == "/" ||
                              rhead == "\\\\" || rhead == "//";
        const bool sequenceOnly = edge || !marks.empty() || halfHead;
        Builder.Message(std::move(ev), mk);
        return sequenceOnly ? TLineKind::lkSequence : TLineKind::lkShared;
    }

    TLineKind NoteStatement(const TRegexMatch& m) {
        static const TRegex kHead(
            R"re(^((?:"[^"]+"|[^\s,#"]+)(?:\s*,\s*(?:"[^"]+"|[^\s,#"]+))*)?\s*(#\S+)?\s*$)re");
        static const TRegex kEnd(R"(^end\s?[hr]?note$)", kCaseless);
        TQVLSeqEvent ev;
        ev.Variant = Qvl::Utils::ToLowerAscii(m.Group(1));
        std::string position = Qvl::Utils::ToLowerAscii(m.Group(2));
        std::string rest(m.Group(3));
        const std::size_t colon = rest.find(':');
        const std::string head(Trim(std::string_view(rest).substr(0, colon)));
        TRegexMatch h;
        if (!kHead.Match(head, h)) return TLineKind::lkOther;
        std::vector<std::string> over;
        std::string names(h.Group(1));
        for (std::size_t start = 0; start <= names.size() && !names.empty();) {
            const std::size_t comma = names.find(',', start);
            over.push_back(
                Unquote(names.substr(start, comma == std::string::npos ? std::string::npos : comma - start)));
            if (comma == std::string::npos) break;
            start = comma + 1;
        }
        if (h.Matched(2)) ev.Style = FillOf(h.Group(2));
        if (position == "left" || position == "right") {
            // Attached to the latest message: beside its sender or its receiver.
            const std::string& anchor = position == "left" ? LastFrom : LastTo;
            if (over.empty() && !anchor.empty() && anchor != kSeqLeftEdge && anchor != kSeqRightEdge)
                over.push_back(anchor);
            position += " of";
        } else if (position == "across") {
            over.clear();
            if (!Model.Participants().empty()) {
                over.push_back(Model.Participants().front().ID);
                over.push_back(Model.Participants().back().ID);
            }
            position = "over";
        }
        if (over.empty()) return TLineKind::lkOther;
        const bool sequenceOnly = position == "over" || ev.Variant != "note";
        ev.NotePosition = position;
        ev.FromActor = over.front();
        if (over.size() > 1) ev.ToActor = over.back();
        ev.Text = colon == std::string::npos ? BlockText(kEnd) : QVLCleanCaption(rest.substr(colon + 1));
        Builder.Note(std::move(ev));
        return sequenceOnly ? TLineKind::lkSequence : TLineKind::lkShared;
    }

    TLineKind Reference(const TRegexMatch& m) {
        static const TRegex kEnd(R"(^end\s?ref$)", kCaseless);
        std::vector<std::string> over;
        std::string names(m.Group(1));
        std::size_t start = 0;
        while (true) {
            const std::size_t comma = names.find(',', start);
            over.push_back(
                Unquote(names.substr(start, comma == std::string::npos ? std::string::npos : comma - start)));
            if (comma == std::string::npos) break;
            start = comma + 1;
        }
        const std::string text = m.Matched(2) ? QVLCleanCaption(m.Group(2)) : BlockText(kEnd);
        Builder.OpenFragment("ref", text, {}, over.front(), over.size() > 1 ? over.back() : std::string());
        Builder.CloseFragment();
        return TLineKind::lkSequence;
    }

    TLineKind Autonumber(std::string_view args) {
        static const TRegex kArgs(
            R"re(^(?:(stop|resume)\b)?\s*(?:inc\s+\w+\s*)?(\d+(?:\.\d+)*)?\s*(\d+)?\s*(?:"(.*)")?\s*$)re",
            kCaseless);
        TRegexMatch m;
        const std::string a(Trim(args));
        if (!kArgs.Match(a, m)) return TLineKind::lkOther;
        const std::string word = Qvl::Utils::ToLowerAscii(m.Group(1));
        auto number = [&](std::size_t g) { return std::atof(std::string(m.Group(g)).c_str()); };
        if (word == "stop") {
            Builder.AutonumberStop();
        } else if (word == "resume") {
            Builder.AutonumberResume(m.Matched(2) ? std::optional<double>(number(2)) : std::nullopt,
                                     m.Group(4));
        } else {
            Builder.AutonumberOn(m.Matched(2) ? number(2) : 1, m.Matched(3) ? number(3) : 1, m.Group(4), a);
        }
        return TLineKind::lkSequence;
    }

    // Skips a "{ ... }" block that opens on this line (skinparam, style).
    void SkipBraces() {
        int depth = 0;
        for (; Index < Lines.size(); ++Index) {
            for (char c : Lines[Index].Text) depth += c == '{' ? 1 : c == '}' ? -1 : 0;
            if (depth <= 0) return;
        }
        Index = Lines.size() - 1;
    }

    TLineKind Statement() {
        static const TRegex kDeclaration(
            R"(^(?:(create)\s+)?(participant|actor|boundary|control|entity|database|collections|queue)\s+(.+)$)",
            kCaseless);
        static const TRegex kCreate(R"(^create\s+("[^"]+"|[\w.@$]+)$)", kCaseless);
        static const TRegex kActivation(R"(^(activate|deactivate|destroy)\s+("[^"]+"|[\w.@$]+)\s*(#\w+)?$)",
                                        kCaseless);
        static const TRegex kReturn(R"(^return\b\s*(.*)$)", kCaseless);
        static const TRegex kNote(
            R"(^(?:/\s*)?(note|hnote|rnote)\s+(left of|right of|over|left|right|across)\b\s*(.*)$)",
            kCaseless);
        static const TRegex kFragment(
            R"(^(alt|opt|loop|par|par2|break|critical|group)(?:#\w+)?\b\s*(#\w+)?\s*(.*)$)", kCaseless);
        static const TRegex kElse(R"(^else(?:#\w+)?\b\s*(#\w+)?\s*(.*)$)", kCaseless);
        static const TRegex kEnd(R"(^end(?:\s+(alt|opt|loop|par|group|critical|break))?$)", kCaseless);
        static const TRegex kEndBox(R"(^end\s?box$)", kCaseless);
        static const TRegex kBox(R"re(^box\b\s*("[^"]*"|[^#]*?)?\s*(#\w+)?$)re", kCaseless);
        static const TRegex kDivider(R"(^==+\s*(.*?)\s*==+$)");
        static const TRegex kDelay(R"(^\.\.\.(?:\s*(.*?)\s*\.\.\.)?$)");
        static const TRegex kSpace(R"(^\|\|(\d*)\|\|$|^\|\|\|$)");
        static const TRegex kRef(R"(^ref\s+over\s+([^:]+?)\s*(?::\s*(.*))?$)", kCaseless);
        static const TRegex kTitle(R"(^title\s+(.+)$)", kCaseless);
        static const TRegex kTitleBlock(R"(^title$)", kCaseless);
        static const TRegex kTitleEnd(R"(^end\s?title$)", kCaseless);
        static const TRegex kAutonumber(R"(^autonumber\b(.*)$)", kCaseless);
        static const TRegex kDecoration(
            R"(^(legend|header|footer|caption|center\s+header|right\s+header|left\s+header|center\s+footer|right\s+footer|left\s+footer)\b(.*)$)",
            kCaseless);
        static const TRegex kLook(
            R"(^(?:(?:skinparam|hide|show|scale|newpage|mainframe|autoactivate|allowmixing|sprite|set\s+separator)\b|!|<style>))",
            kCaseless);
        const std::string& s = Lines[Index].Text;
        TRegexMatch m;
        if (kEndBox.Match(s)) {
            Builder.CloseBox();
            return TLineKind::lkSequence;
        }
        if (kEnd.Match(s)) {
            Builder.CloseFragment();
            return TLineKind::lkSequence;
        }
        if (kDeclaration.Match(s, m)) return Declaration(m.Group(2), m.Group(3), m.Matched(1));
        if (kCreate.Match(s, m)) {
            Builder.Create(Unquote(m.Group(1)));
            return TLineKind::lkSequence;
        }
        if (kActivation.Match(s, m)) {
            const std::string word = Qvl::Utils::ToLowerAscii(m.Group(1));
            const std::string id = Unquote(m.Group(2));
            if (word == "activate")
                Builder.Activate(id, FillOf(m.Group(3)));
            else if (word == "deactivate")
                Builder.Deactivate(id);
            else
                Builder.Destroy(id);
            return TLineKind::lkSequence;
        }
        if (kReturn.Match(s, m)) {
            Builder.Return(QVLCleanCaption(m.Group(1)));
            return TLineKind::lkSequence;
        }
        if (kNote.Match(s, m)) return NoteStatement(m);
        if (kRef.Match(s, m)) return Reference(m);
        if (kFragment.Match(s, m) && !IsArrowText(m.Group(3))) {
            std::string op = Qvl::Utils::ToLowerAscii(m.Group(1));
            if (op == "par2") op = "par";
            Builder.OpenFragment(op, QVLCleanCaption(m.Group(3)), FillOf(m.Group(2)));
            return TLineKind::lkSequence;
        }
        if (kElse.Match(s, m) && !IsArrowText(m.Group(2))) {
            Builder.FragmentElse("else", QVLCleanCaption(m.Group(2)));
            return TLineKind::lkSequence;
        }
        if (kBox.Match(s, m)) {
            Builder.OpenBox(QVLCleanCaption(m.Group(1)), FillOf(m.Group(2)));
            return TLineKind::lkSequence;
        }
        if (kDivider.Match(s, m)) {
            Builder.Simple(TQVLSeqEventType::seDivider, QVLCleanCaption(m.Group(1)));
            return TLineKind::lkSequence;
        }
        if (kDelay.Match(s, m)) {
            Builder.Simple(TQVLSeqEventType::seDelay, QVLCleanCaption(m.Group(1)), "delay");
            return TLineKind::lkSequence;
        }
        if (kSpace.Match(s, m)) {
            Builder.Simple(TQVLSeqEventType::seDelay, m.Group(1), "space");
            return TLineKind::lkSequence;
        }
        if (kAutonumber.Match(s, m)) return Autonumber(m.Group(1));
        if (kTitleBlock.Match(s)) {
            Model.fTitle = BlockText(kTitleEnd);
            return TLineKind::lkNeutral;
        }
        if (kTitle.Match(s, m)) {
            Model.fTitle = QVLCleanCaption(m.Group(1));
            return TLineKind::lkNeutral;
        }
        if (kDecoration.Match(s, m)) {
            Builder.Unsupported(kPrefix, kInfo);
            const std::string word = Qvl::Utils::ToLowerAscii(m.Group(1));
            if (Trim(m.Group(2)).empty() || word == "legend") {
                static const TRegex kClose(R"(^end\s?(?:legend|header|footer|caption)$)", kCaseless);
                if (word == "legend" || Trim(m.Group(2)).empty()) BlockText(kClose);
            }
            return TLineKind::lkNeutral;
        }
        if (kLook.Match(s, m)) {
            Builder.Unsupported(kPrefix, kInfo);
            if (s.find('{') != std::string::npos) SkipBraces();
            if (Qvl::Utils::StartsWithIgnoringCase(s, "<style>") && s.find("</style>") == std::string::npos) {
                static const TRegex kStyleEnd(R"(</style>)", kCaseless);
                while (++Index < Lines.size() && !kStyleEnd.Match(Lines[Index].Text)) {
                }
            }
            return TLineKind::lkNeutral;
        }
        if (MessagePattern().Match(s, m)) {
            const TLineKind kind = Message(m);
            if (kind != TLineKind::lkOther) return kind;
        }
        return TLineKind::lkOther;
    }
};

struct TReadResult {
    int Sequence = 0;
    int Shared = 0;
    int Other = 0;
    int Foreign = 0;  // of the other lines, those that are statements of another kind of diagram
    int FirstForeignLine = 0;
};

// A statement of another kind: a class, component, use case, state or activity line, or a relation whose
// ends or arrow no sequence diagram has.
bool IsForeign(std::string_view line) {
    static const TRegex kWord(
        R"(^(?:class|interface|abstract|enum|annotation|component|usecase|node|cloud|artifact|folder|frame|rectangle|package|object|map|json|file|storage|card|agent|state|namespace|stop|start|endif|if|while|repeat|fork|split|partition|robust|concise|nwdiag|left\s+to\s+right|top\s+to\s+bottom)\b)",
        kCaseless);
    static const TRegex kShape(
        R"(\[\*\]|^:.*;$|^\[[^\]]+\]|\([^)]*\)\s*$|^\([^)]*\)|<\||\|>|\*--|--\*|o--|--o\b|\.\.|^[{}]$|\{$)");
    return kWord.Match(line) || kShape.Match(line);
}

TReadResult Read(const std::vector<TPumlLine>& lines, TORXDiagramModel& model) {
    TSequenceBuilder builder(model);
    TPlantUMLReader reader{builder, model, lines, 0, {}, {}};
    TReadResult result;
    for (reader.Index = 0; reader.Index < lines.size(); ++reader.Index) {
        const TPumlLine& line = lines[reader.Index];
        builder.SetLine(line.Number, line.Raw);
        switch (reader.Statement()) {
            case TLineKind::lkSequence:
                ++result.Sequence;
                break;
            case TLineKind::lkShared:
                ++result.Shared;
                break;
            case TLineKind::lkNeutral:
                break;
            case TLineKind::lkOther:
                ++result.Other;
                if (IsForeign(line.Text) && result.Foreign++ == 0) result.FirstForeignLine = line.Number;
                builder.Unrecognized(kPrefix);
                break;
        }
    }
    builder.Finish();
    return result;
}

bool HasOtherMarker(std::string_view text) {
    static const TRegex kMarker(R"(@start(\w+))", kCaseless);
    TRegexMatch m;
    return kMarker.Match(text, m) && !Qvl::Utils::SameTextIgnoringCase(m.Group(1), "uml");
}

TQVLSequenceVerdict Judge(const TReadResult& r) {
    TQVLSequenceVerdict v;
    const int sequence = r.Sequence + r.Shared;
    if (sequence == 0) return v;
    if (r.Foreign == 0) {
        v.IsSequence = true;  // lines nothing explains get their diagnostics, but point to no other kind
        return v;
    }
    // Statements of both kinds: a sequence diagram needs statements only sequence diagrams have, and at
    // least as many sequence lines as foreign ones.
    v.Ambiguous = true;
    v.IsSequence = r.Sequence > 0 && sequence >= r.Foreign;
    v.Reason = std::to_string(sequence) + " lines are sequence statements (" + std::to_string(r.Sequence) +
               " of them only sequence diagrams have) and " + std::to_string(r.Foreign) +
               " belong to another kind of diagram (the first at line " + std::to_string(r.FirstForeignLine) +
               ")";
    return v;
}

}  // namespace

//-----------------------------------------------------------------------------------------------------
// [SECTION] Entry
//-----------------------------------------------------------------------------------------------------

TQVLSequenceVerdict QVLJudgePlantUMLSequence(std::string_view aText) {
    if (HasOtherMarker(aText)) return {};
    TORXDiagramModel scratch;
    return Judge(Read(ContentLines(aText), scratch));
}

bool QVLImportPlantUMLSequence(std::string_view aText, TORXDiagramModel& aModel) {
    if (HasOtherMarker(aText)) return false;
    const std::vector<TPumlLine> lines = ContentLines(aText);
    TORXDiagramModel scratch;
    const TQVLSequenceVerdict verdict = Judge(Read(lines, scratch));
    if (!verdict.IsSequence) {
        if (verdict.Ambiguous && verdict.Reason.find("(0 of them") == std::string::npos)
            aModel.AddDiagnostic(
                kInfo, 0, "PLANTUML_KIND_AMBIGUOUS",
                "Read as another kind of diagram, not as a sequence diagram: " + verdict.Reason + ".", "");
        return false;
    }
    Read(lines, aModel);
    if (verdict.Ambiguous)
        aModel.AddDiagnostic(kWarning, 0, "PLANTUML_KIND_AMBIGUOUS",
                             "Read as a sequence diagram: " + verdict.Reason + ".", "");
    return true;
}

}  // namespace Orvex
