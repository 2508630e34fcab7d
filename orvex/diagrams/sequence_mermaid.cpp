// Mermaid sequence diagrams as Mermaid itself reads them: ";" ends a statement, "#" starts a comment
// unless it writes an entity ("#9829;", "#quot;"), names may hold blanks and inner hyphens, and the
// activation marks "+" and "-" activate the receiver and deactivate the sender.
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

constexpr std::string_view kPrefix = "MERMAID";
constexpr auto kInfo = TQVLDiagramDiagnosticSeverity::dsInfo;

const TRegex& EntityPattern() {
    static const TRegex kEntity(R"(#(\w+);)");
    return kEntity;
}

void AppendUtf8(std::string& out, unsigned long cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x110000) {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

// "#35;" is "#", "#quot;" a double quote; an entity the table does not know stays as written.
std::string DecodeEntities(std::string_view text) {
    static const std::vector<std::pair<std::string_view, unsigned long>> kNamed{
        {"quot", 0x22}, {"amp", 0x26},      {"lt", 0x3C},     {"gt", 0x3E},     {"nbsp", 0xA0},
        {"apos", 0x27}, {"hash", 0x23},     {"semi", 0x3B},   {"copy", 0xA9},   {"reg", 0xAE},
        {"deg", 0xB0},  {"hellip", 0x2026}, {"rarr", 0x2192}, {"larr", 0x2190}, {"hearts", 0x2665}};
    std::string out;
    std::size_t pos = 0;
    TRegexMatch m;
    while (EntityPattern().Match(text, m, pos)) {
        out.append(text.substr(pos, m.Start() - pos));
        const std::string name(m.Group(1));
        bool decoded = false;
        if (!name.empty() && name.find_first_not_of("0123456789") == std::string::npos && name.size() < 8) {
            AppendUtf8(out, std::stoul(name));
            decoded = true;
        } else {
            for (const auto& [entity, cp] : kNamed)
                if (entity == name) {
                    AppendUtf8(out, cp);
                    decoded = true;
                }
        }
        if (!decoded) out.append(m.Group(0));
        pos = m.End();
    }
    out.append(text.substr(pos));
    return out;
}

// The statements of one line: cut at a "%%" comment and at a "#" that writes no entity, split at ";".
std::vector<std::string> Statements(std::string_view line) {
    std::vector<std::string> out;
    std::string current;
    std::size_t i = 0;
    TRegexMatch m;
    while (i < line.size()) {
        const char c = line[i];
        if (c == '%' && i + 1 < line.size() && line[i + 1] == '%') break;
        if (c == '#') {
            if (!EntityPattern().MatchAt(line, i, m)) break;
            current.append(m.Group(0));
            i = m.End();
            continue;
        }
        if (c == ';') {
            out.push_back(DecodeEntities(current));
            current.clear();
        } else {
            current += c;
        }
        ++i;
    }
    out.push_back(DecodeEntities(current));
    return out;
}

std::string Clean(std::string_view text) {
    return QVLCleanCaption(text);
}

TQVLDiagStyle FillStyle(std::optional<TAlphaColor> color) {
    TQVLDiagStyle style;
    if (color) style.Fill = *color;
    return style;
}

struct TMermaidReader {
    TSequenceBuilder& Builder;
    TORXDiagramModel& Model;
    std::vector<std::string> PendingDestroys;  // "destroy X" takes effect at X's next message

    void Participant(const TRegexMatch& m) {
        static const TRegex kConfig(R"(^(.*?)\s*@\{(.*)\}\s*$)");
        static const TRegex kType(R"re("?type"?\s*:\s*"?(\w+))re");
        std::string role = Qvl::Utils::ToLowerAscii(m.Group(2));
        std::string_view id = Trim(m.Group(3));
        TRegexMatch config;
        std::string idText(id);
        if (kConfig.Match(idText, config)) {
            TRegexMatch type;
            const std::string body(config.Group(2));
            if (kType.Match(body, type)) role = Qvl::Utils::ToLowerAscii(type.Group(1));
            idText = Trim(config.Group(1));
        }
        static const std::vector<std::string_view> kRoles{"participant", "actor",    "boundary",    "control",
                                                          "entity",      "database", "collections", "queue"};
        if (std::find(kRoles.begin(), kRoles.end(), role) == kRoles.end()) role = "participant";
        const std::string display = m.Matched(4) ? Clean(m.Group(4)) : std::string();
        Builder.Declare(idText, display, role);
        if (m.Matched(1)) Builder.Create(idText);
    }

    void Message(const TRegexMatch& m) {
        TQVLSeqEvent ev;
        ev.FromActor = Trim(m.Group(1));
        ev.ToActor = Trim(m.Group(4));
        ev.Text = m.Matched(5) ? Clean(m.Group(5)) : std::string();
        const std::string_view arrow = m.Group(2);
        ev.Dotted = arrow.find("--") != std::string_view::npos;
        if (arrow.find('x') != std::string_view::npos)
            ev.Arrow = TQVLSeqArrow::saCross;
        else if (arrow.find(')') != std::string_view::npos)
            ev.Arrow = TQVLSeqArrow::saOpen;
        else if (arrow.find(">>") != std::string_view::npos)
            ev.Arrow = TQVLSeqArrow::saFilled;
        else
            ev.Arrow = TQVLSeqArrow::saNone;
        if (arrow.starts_with("<<")) ev.FromArrow = TQVLSeqArrow::saFilled;
        TSequenceBuilder::TMarks marks;
        marks.ActivateTarget = m.Group(3) == "+";
        marks.DeactivateSource = m.Group(3) == "-";
        const std::string from = ev.FromActor;
        const std::string to = ev.ToActor;
        Builder.Message(std::move(ev), marks);
        for (auto it = PendingDestroys.begin(); it != PendingDestroys.end();) {
            if (*it == from || *it == to) {
                Builder.Destroy(*it);
                it = PendingDestroys.erase(it);
            } else {
                ++it;
            }
        }
    }

    void Box(std::string_view rest) {
        // The first word is the colour when it is one; otherwise the whole text is the title.
        static const TRegex kColorFirst(R"(^((?:rgba?|hsla?)\s*\([^)]*\)|\S+)\s*(.*)$)",
                                        {TRegexFlag::rfCaseless});
        TRegexMatch m;
        std::optional<TAlphaColor> color;
        std::string title(Trim(rest));
        if (kColorFirst.Match(rest, m)) {
            color = QVLSeqColor(m.Group(1));
            if (color) title = Trim(m.Group(2));
        }
        Builder.OpenBox(Clean(title), FillStyle(color));
    }

    // One statement; false when it is not one of a sequence diagram.
    bool Statement(std::string_view s) {
        static const TRegex kParticipant(R"(^(?:(create)\s+)?(participant|actor)\s+(.+?)(?:\s+as\s+(.*))?$)",
                                         {TRegexFlag::rfCaseless});
        static const TRegex kMessage(
            R"(^([^<=>:,;+\-](?:[^<=>:,;]*?[^<=>:,;\-\s])?)\s*(<<-->>|<<->>|-->>|->>|-->|->|--x|-x|--\)|-\))\s*([+-]?)\s*([^<=>:,;+\-](?:[^<=>:,;]*?[^<=>:,;\-\s])?)\s*(?::(.*))?$)");
        static const TRegex kNote(
            R"(^note\s+(right of|left of|over)\s+([^,:]+?)\s*(?:,\s*([^,:]+?)\s*)?:(.*)$)",
            {TRegexFlag::rfCaseless});
        static const TRegex kFragment(R"(^(loop|opt|alt|par_over|par|critical|break|rect)(?:\s+(.*))?$)",
                                      {TRegexFlag::rfCaseless});
        static const TRegex kElse(R"(^(else|and|option)(?:\s+(.*))?$)", {TRegexFlag::rfCaseless});
        static const TRegex kActivation(R"(^(activate|deactivate|destroy)\s+(.+)$)",
                                        {TRegexFlag::rfCaseless});
        static const TRegex kAutonumber(R"(^autonumber(?:\s+(\d+))?(?:\s+(\d+))?$)",
                                        {TRegexFlag::rfCaseless});
        static const TRegex kTitle(R"(^title(?:\s*:\s*|\s+)(.*)$)", {TRegexFlag::rfCaseless});
        static const TRegex kBox(R"(^box(?:\s+(.*))?$)", {TRegexFlag::rfCaseless});
        static const TRegex kPopup(R"(^(?:links?|properties|details)\s+)", {TRegexFlag::rfCaseless});
        TRegexMatch m;
        if (Qvl::Utils::SameTextIgnoringCase(s, "end")) {
            Builder.CloseInnermost();
        } else if (kParticipant.Match(s, m)) {
            Participant(m);
        } else if (kNote.Match(s, m)) {
            TQVLSeqEvent ev;
            ev.NotePosition = Qvl::Utils::ToLowerAscii(m.Group(1));
            ev.FromActor = Trim(m.Group(2));
            ev.ToActor = Trim(m.Group(3));
            ev.Text = Clean(m.Group(4));
            ev.Variant = "note";
            Builder.Note(std::move(ev));
        } else if (kFragment.Match(s, m)) {
            std::string op = Qvl::Utils::ToLowerAscii(m.Group(1));
            if (op == "rect") {
                Builder.OpenFragment("rect", "", FillStyle(QVLSeqColor(m.Group(2))));
            } else {
                if (op == "par_over") op = "par";
                Builder.OpenFragment(op, Clean(m.Group(2)));
            }
        } else if (kElse.Match(s, m)) {
            Builder.FragmentElse(Qvl::Utils::ToLowerAscii(m.Group(1)), Clean(m.Group(2)));
        } else if (kActivation.Match(s, m)) {
            const std::string word = Qvl::Utils::ToLowerAscii(m.Group(1));
            const std::string id(Trim(m.Group(2)));
            if (word == "activate")
                Builder.Activate(id, {});
            else if (word == "deactivate")
                Builder.Deactivate(id);
            else
                PendingDestroys.push_back(id);
        } else if (kAutonumber.Match(s, m)) {
            const double start = m.Matched(1) ? std::stod(std::string(m.Group(1))) : 1;
            const double step = m.Matched(2) ? std::stod(std::string(m.Group(2))) : 1;
            Builder.AutonumberOn(start, step, "", s.substr(std::min<std::size_t>(s.size(), 10)));
        } else if (Qvl::Utils::SameTextIgnoringCase(s, "autonumber off")) {
            Builder.AutonumberStop();
        } else if (kTitle.Match(s, m)) {
            Model.fTitle = Clean(m.Group(1));
        } else if (kBox.Match(s, m)) {
            Box(m.Group(1));
        } else if (kPopup.Match(s, m) || Qvl::Utils::StartsWithIgnoringCase(s, "accTitle") ||
                   Qvl::Utils::StartsWithIgnoringCase(s, "accDescr")) {
            Builder.Unsupported(kPrefix, kInfo);
        } else if (kMessage.Match(s, m)) {
            Message(m);
        } else {
            return false;
        }
        return true;
    }
};

// Front matter: its "title:" is the diagram's title; the rest configures the look and is left alone.
std::size_t SkipFrontMatter(const std::vector<std::string_view>& lines, std::size_t first,
                            TORXDiagramModel& model) {
    if (first >= lines.size() || Trim(lines[first]) != "---") return first;
    static const TRegex kTitle(R"(^title\s*:\s*(.*)$)");
    TRegexMatch m;
    for (std::size_t i = first + 1; i < lines.size(); ++i) {
        const std::string_view line = Trim(lines[i]);
        if (line == "---") return i + 1;
        if (kTitle.Match(line, m)) model.fTitle = QVLCleanCaption(m.Group(1));
    }
    return first;  // unclosed: read as if there were none, and the header test decides
}

}  // namespace

bool QVLImportMermaidSequence(std::string_view aText, TORXDiagramModel& aModel) {
    const std::vector<std::string_view> lines = QVLSplitDiagramLines(aText);
    std::size_t i = 0;
    while (i < lines.size() && Trim(lines[i]).empty()) ++i;
    i = SkipFrontMatter(lines, i, aModel);
    static const TRegex kHeader(R"(^sequenceDiagram\b\s*(.*)$)");
    TRegexMatch header;
    for (; i < lines.size(); ++i) {
        const std::string_view line = Trim(lines[i]);
        if (line.empty() || line.starts_with("%%")) continue;
        if (!kHeader.Match(line, header)) return false;
        break;
    }
    if (i >= lines.size()) return false;

    TSequenceBuilder builder(aModel);
    TMermaidReader reader{builder, aModel, {}};
    bool inDescription = false;  // accDescr { ... }
    for (std::size_t n = i; n < lines.size(); ++n) {
        std::string_view raw = Trim(lines[n]);
        if (n == i) raw = Trim(header.Group(1));  // a statement may follow the header on its line
        if (raw.empty()) continue;
        builder.SetLine(static_cast<int>(n + 1), lines[n]);
        if (inDescription) {
            if (raw.find('}') != std::string_view::npos) inDescription = false;
            continue;
        }
        if (Qvl::Utils::StartsWithIgnoringCase(raw, "accDescr") && raw.find('{') != std::string_view::npos &&
            raw.find('}') == std::string_view::npos) {
            builder.Unsupported(kPrefix, kInfo);
            inDescription = true;
            continue;
        }
        for (const std::string& piece : Statements(raw)) {
            const std::string_view s = Trim(piece);
            if (s.empty()) continue;
            if (!reader.Statement(s)) builder.Unrecognized(kPrefix);
        }
    }
    builder.Finish();
    for (const std::string& id : reader.PendingDestroys) {
        builder.Destroy(id);  // no later message: the lifeline ends where the text ends
    }
    return true;
}

}  // namespace Orvex
