// PlantUML timing diagrams: lane declarations, "@time" points (absolute, "+relative", ":anchor", or a
// lane's name that opens a block of "time is state" lines), state changes, messages between lanes,
// "<->" constraints, highlighted spans and the scale.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <memory>
#include <set>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_timing.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/diagrams/sequence_builder.h"
#include "orvex/diagrams/uml_import_lines.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;
using TLane = TQVLTimingChart::TLane;

constexpr auto kCaseless = TRegexFlag::rfCaseless;
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;
constexpr auto kError = TQVLDiagramDiagnosticSeverity::dsError;

bool IsTimingText(std::string_view text) {
    static const TRegex kStart(R"(^\s*@start(\w+))", {kCaseless, TRegexFlag::rfMultiline});
    // A whole line that declares a lane, so that a word like "clock" opening another kind's line does not
    // take the text away from its reader.
    static const TRegex kLane(
        R"re(^\s*(?:robust|concise|clock|binary|analog)\s+(?:"[^"\n]*"|[\w.]+)(?:\s+as\s+\w+)?(?:\s+with\s+period\s+[\d.]+(?:\s+pulse\s+[\d.]+)?(?:\s+offset\s+[\d.]+)?)?[ \t]*(?:<<[^>\n]*>>)?[ \t]*$)re",
        {kCaseless, TRegexFlag::rfMultiline});
    TRegexMatch m;
    if (kStart.Match(text, m) && Qvl::Utils::ToLowerAscii(m.Group(1)) != "uml") return false;
    return kLane.Match(text);
}

bool ReadNumber(std::string_view text, double& value) {
    if (text.starts_with('+')) text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size() && std::isfinite(value);
}

// "h:mm" or "h:mm:ss" as seconds.
bool ReadClockTime(std::string_view text, double& value) {
    static const TRegex kClock(R"(^(\d+):(\d\d)(?::(\d\d))?$)");
    TRegexMatch m;
    if (!kClock.Match(text, m)) return false;
    double h = 0, mi = 0, s = 0;
    ReadNumber(m.Group(1), h);
    ReadNumber(m.Group(2), mi);
    if (m.Matched(3)) ReadNumber(m.Group(3), s);
    value = h * 3600 + mi * 60 + s;
    return true;
}

// A state as drawn: quotes dropped, a trailing colour ("#pink", "#LightCyan;line:Aqua") split off.
void ReadState(std::string_view text, TQVLTimingChart::TChange& change) {
    text = Trim(text);
    const std::size_t hash = text.rfind(" #");
    if (hash != std::string_view::npos && text.find('"', hash) == std::string_view::npos) {
        std::string_view color = Trim(text.substr(hash + 1));
        color = color.substr(0, color.find(';'));
        change.Color = QVLSeqColor(color);
        text = Trim(text.substr(0, hash));
    }
    change.State = QVLPlainCaption(text, true);
}

class TTimingReader {
  public:
    TTimingReader(std::string_view text, TORXDiagramModel& model)
        : fLines(UmlStatementLines(text, TQVLDiagramFormat::dgPlantUML)),
          fModel(model),
          fChart(std::make_shared<TQVLTimingChart>()) {}

    void Read() {
        for (std::size_t i = 0; i < fLines.size(); ++i) {
            const TUmlLine& line = fLines[i];
            if (fInBlock) {
                fInBlock = !IsBlockEnd(line.Text);
                continue;
            }
            ReadStatement(line);
        }
        for (TLane& lane : fChart->Lanes)
            std::stable_sort(lane.Changes.begin(), lane.Changes.end(),
                             [](const auto& a, const auto& b) { return a.Time < b.Time; });
        fModel.SetChart(std::move(fChart));
    }

  private:
    void ReadStatement(const TUmlLine& line) {
        static const TRegex kLaneDecl(
            R"re(^(robust|concise|clock|binary|analog)\s+(?:"([^"]*)"|([\w.]+))(?:\s+as\s+(\w+))?(?:\s+with\s+period\s+([\d.]+)(?:\s+pulse\s+([\d.]+))?(?:\s+offset\s+([\d.]+))?)?\s*(?:<<[^>]*>>)?$)re",
            {kCaseless});
        static const TRegex kAt(R"(^@(\S+)(?:\s+as\s+:(\w+))?$)");
        static const TRegex kIs(R"(^([\w.]+)(?:@(\S+))?\s+is\s+(.+)$)");
        static const TRegex kBlockIs(R"(^([+-]?[\d.:]+)\s+is\s+(.+)$)");
        static const TRegex kHas(R"(^(\w+)\s+has\s+(.+)$)");
        static const TRegex kConstraint(R"(^(\w+)@(\S+)\s*<->\s*@(\S+)\s*(?::\s*(.*))?$)");
        static const TRegex kMessage(R"(^(\w+)(?:@(\S+))?\s*(-+>|<-+)\s*(\w+)(?:@(\S+))?\s*(?::\s*(.*))?$)");
        static const TRegex kHighlight(R"(^highlight\s+(\S+)\s+to\s+(\S+)\s*(#\S+)?\s*(?::\s*(.*))?$)",
                                       {kCaseless});
        static const TRegex kScale(R"(^scale\s+([\d.]+)\s+as\s+([\d.]+)\s+pixels?$)", {kCaseless});
        static const TRegex kTitle(R"(^title\s+(.+)$)", {kCaseless});
        static const TRegex kNoteBlock(R"(^note\s+(?:top|bottom)\s+of\s+\w+\s*$)", {kCaseless});
        static const TRegex kNote(R"(^note\s+(?:top|bottom)\s+of\s+\w+\s*:)", {kCaseless});
        static const TRegex kPresentation(
            R"(^(?:skinparam|hide|show|mode|manual\s+time-axis|caption|header|footer|!)\b)", {kCaseless});
        static const TRegex kLegend(R"(^legend\b)", {kCaseless});
        TRegexMatch m;
        const std::string_view t = line.Text;
        if (kLaneDecl.Match(t, m)) {
            AddLane(line, m);
        } else if (kAt.Match(t, m)) {
            SetTime(line, m.Group(1), m.Matched(2) ? m.Group(2) : std::string_view{});
        } else if (kConstraint.Match(t, m)) {
            TLane* lane = LaneOf(line, m.Group(1));
            double from = 0, to = 0;
            if (lane != nullptr && Time(line, m.Group(2), from) && Time(line, m.Group(3), to))
                fChart->Constraints.push_back({lane->Id, from, to, m.Matched(4) ? Caption(m.Group(4)) : ""});
        } else if (kMessage.Match(t, m)) {
            AddMessage(line, m);
        } else if (fBlockLane != nullptr && kBlockIs.Match(t, m)) {
            double at = 0;
            if (Time(line, m.Group(1), at)) AddChange(*fBlockLane, at, m.Group(2));
        } else if (kIs.Match(t, m)) {
            TLane* lane = LaneOf(line, m.Group(1));
            double at = fNow;
            if (lane != nullptr && (!m.Matched(2) || Time(line, m.Group(2), at)))
                AddChange(*lane, at, m.Group(3));
        } else if (kHas.Match(t, m)) {
            if (TLane* lane = LaneOf(line, m.Group(1))) DeclareStates(*lane, m.Group(2));
        } else if (kHighlight.Match(t, m)) {
            double from = 0, to = 0;
            if (Time(line, m.Group(1), from) && Time(line, m.Group(2), to))
                fChart->Highlights.push_back(
                    {std::min(from, to), std::max(from, to), m.Matched(4) ? Caption(m.Group(4)) : "",
                     m.Matched(3) ? QVLSeqColor(m.Group(3).substr(0, m.Group(3).find(';'))) : std::nullopt});
        } else if (kScale.Match(t, m)) {
            double units = 0, pixels = 0;
            if (ReadNumber(m.Group(1), units) && ReadNumber(m.Group(2), pixels) && units > 0 && pixels > 0)
                fChart->PixelsPerUnit = pixels / units;
            else
                fModel.AddDiagnostic(kError, line.No, "TIMING_SCALE", "The scale needs two positive numbers.",
                                     t);
        } else if (kTitle.Match(t, m)) {
            fModel.fTitle = Caption(m.Group(1));
        } else if (kNoteBlock.Match(t)) {
            UmlNotDrawn(fModel, line, "a note.");
            fInBlock = true;
        } else if (kNote.Match(t)) {
            UmlNotDrawn(fModel, line, "a note.");
        } else if (kLegend.Match(t)) {
            UmlNotDrawn(fModel, line, "a legend.");
            fInBlock = t.find(':') == std::string_view::npos;
        } else if (kPresentation.Match(t)) {
            UmlNotDrawn(fModel, line, "a presentation setting.");
        } else {
            fModel.AddDiagnostic(
                kWarning, line.No, "TIMING_UNRECOGNIZED_LINE",
                "A timing line declares a lane (\"robust \\\"Name\\\" as N\"), sets the time "
                "(\"@100\"), changes a state (\"N is State\") or sends a message (\"A -> B\").",
                t);
        }
    }

    static bool IsBlockEnd(std::string_view text) {
        static const TRegex kEnd(R"(^end\s*(?:note|legend)?$|^endlegend$)", {kCaseless});
        return kEnd.Match(text);
    }

    static std::string Caption(std::string_view text) { return QVLPlainCaption(text, true); }

    void AddLane(const TUmlLine& line, const TRegexMatch& m) {
        TLane lane;
        lane.Kind = Qvl::Utils::ToLowerAscii(m.Group(1));
        lane.Text = m.Matched(2) ? Caption(m.Group(2)) : std::string(m.Group(3));
        lane.Id = m.Matched(4) ? std::string(m.Group(4)) : m.Matched(3) ? std::string(m.Group(3)) : lane.Text;
        if (m.Matched(5)) {
            if (lane.Kind != "clock") {
                fModel.AddDiagnostic(kWarning, line.No, "TIMING_PERIOD", "Only a clock has a period.",
                                     line.Text);
            } else {
                ReadNumber(m.Group(5), lane.Period);
                lane.Pulse = lane.Period / 2;
                if (m.Matched(6)) ReadNumber(m.Group(6), lane.Pulse);
                if (m.Matched(7)) ReadNumber(m.Group(7), lane.Offset);
            }
        }
        if (lane.Kind == "clock" && lane.Period <= 0) {
            fModel.AddDiagnostic(kError, line.No, "TIMING_PERIOD",
                                 "A clock needs \"with period N\" with N greater than zero.", line.Text);
            lane.Period = 0;
        }
        if (lane.Kind == "binary") lane.States = {"high", "low"};
        if (FindLane(lane.Id) != nullptr) {
            fModel.AddDiagnostic(kError, line.No, "TIMING_DUPLICATE_LANE",
                                 "A lane named \"" + lane.Id + "\" is already declared.", line.Text);
            return;
        }
        fBlockLane = nullptr;  // the lanes may move in memory
        fChart->Lanes.push_back(std::move(lane));
    }

    // "@100", "@+50", "@:start", "@1:15:00", "@LANE" (a block of "time is state" lines for that lane).
    void SetTime(const TUmlLine& line, std::string_view token, std::string_view anchor) {
        if (TLane* lane = FindLane(token)) {
            fBlockLane = lane;
            return;
        }
        double at = 0;
        if (!Time(line, token, at)) return;
        fNow = at;
        fBlockLane = nullptr;
        if (!anchor.empty()) fAnchors[std::string(anchor)] = at;
    }

    // A time as written, relative ones counted from the current time.
    bool Time(const TUmlLine& line, std::string_view token, double& at) {
        double value = 0;
        if (token.starts_with(':')) {
            std::string_view name = token.substr(1);
            double offset = 0;
            const std::size_t sign = name.find_first_of("+-");
            if (sign != std::string_view::npos && ReadNumber(name.substr(sign), offset))
                name = name.substr(0, sign);
            if (const auto it = fAnchors.find(std::string(name)); it != fAnchors.end()) {
                at = it->second + offset;
                return true;
            }
            fModel.AddDiagnostic(kError, line.No, "TIMING_ANCHOR",
                                 "No time point is named \"" + std::string(name) + "\" (\"@100 as :name\").",
                                 line.Text);
            return false;
        }
        if (token.starts_with('+') && ReadNumber(token, value)) {
            at = fNow + value;
            return true;
        }
        if (ReadNumber(token, value) || ReadClockTime(token, value)) {
            at = value;
            return true;
        }
        fModel.AddDiagnostic(
            kError, line.No, "TIMING_TIME",
            "\"" + std::string(token) + "\" is no time: write a number, +N, h:mm:ss or :anchor.", line.Text);
        return false;
    }

    void AddChange(TLane& lane, double at, std::string_view text) {
        TQVLTimingChart::TChange change{at, "", std::nullopt};
        ReadState(text, change);
        if (lane.Kind == "binary") change.State = BinaryLevel(change.State);
        if (!change.State.starts_with('{') &&
            std::find(lane.States.begin(), lane.States.end(), change.State) == lane.States.end()) {
            // A robust lane without declared levels stacks its states upwards as they come, the first
            // one at the bottom; declared levels stay on top of any the text uses later.
            const bool upwards = lane.Kind == "robust" && !fDeclared.contains(lane.Id);
            lane.States.insert(upwards ? lane.States.begin() : lane.States.end(), change.State);
        }
        lane.Changes.push_back(std::move(change));
    }

    // Binary signals are high or low whatever they are called.
    static std::string BinaryLevel(const std::string& state) {
        const std::string s = Qvl::Utils::ToLowerAscii(state);
        return s == "low" || s == "0" || s == "false" || s == "off" ? "low" : "high";
    }

    // "has A,B,C" or "has \"Long name\" as L, ...": the levels from the top down.
    void DeclareStates(TLane& lane, std::string_view list) {
        fDeclared.insert(lane.Id);
        std::size_t start = 0;
        while (start <= list.size()) {
            std::size_t end = list.find(',', start);
            if (end == std::string_view::npos) end = list.size();
            std::string_view item = Trim(list.substr(start, end - start));
            const std::size_t as = item.find(" as ");
            if (as != std::string_view::npos) item = Trim(item.substr(0, as));
            const std::string state = Caption(item);
            if (!state.empty() &&
                std::find(lane.States.begin(), lane.States.end(), state) == lane.States.end())
                lane.States.push_back(state);
            start = end + 1;
        }
    }

    void AddMessage(const TUmlLine& line, const TRegexMatch& m) {
        const bool backwards = m.Group(3).starts_with('<');
        TLane* first = LaneOf(line, m.Group(1));
        TLane* second = LaneOf(line, m.Group(4));
        double firstTime = fNow, secondTime = fNow;
        if (first == nullptr || second == nullptr) return;
        if (m.Matched(2) && !Time(line, m.Group(2), firstTime)) return;
        if (m.Matched(5) && !Time(line, m.Group(5), secondTime)) return;
        TQVLTimingChart::TMessage message{first->Id, firstTime, second->Id, secondTime,
                                          m.Matched(6) ? Caption(m.Group(6)) : ""};
        if (backwards) {
            std::swap(message.From, message.To);
            std::swap(message.FromTime, message.ToTime);
        }
        fChart->Messages.push_back(std::move(message));
    }

    TLane* FindLane(std::string_view id) {
        for (TLane& lane : fChart->Lanes)
            if (lane.Id == id) return &lane;
        return nullptr;
    }

    TLane* LaneOf(const TUmlLine& line, std::string_view id) {
        if (TLane* lane = FindLane(id)) return lane;
        fModel.AddDiagnostic(kError, line.No, "TIMING_UNKNOWN_LANE",
                             "No lane is named \"" + std::string(id) +
                                 "\"; declare it first (\"concise \\\"" + std::string(id) + "\\\" as " +
                                 std::string(id) + "\").",
                             line.Text);
        return nullptr;
    }

    std::vector<TUmlLine> fLines;
    TORXDiagramModel& fModel;
    std::shared_ptr<TQVLTimingChart> fChart;
    double fNow = 0;
    TLane* fBlockLane = nullptr;
    bool fInBlock = false;
    std::map<std::string, double> fAnchors;
    std::set<std::string> fDeclared;  // lanes whose levels a "has" line gave
};

TJSON ChangesJson(const TLane& lane) {
    TJSON changes = TJSON::array();
    for (const auto& c : lane.Changes) changes.push_back(TJSON{{"time", c.Time}, {"state", c.State}});
    return changes;
}

}  // namespace

void TQVLTimingChart::WriteJson(TJSON& aOut) const {
    TJSON lanes = TJSON::array();
    for (const TLane& lane : Lanes) {
        TJSON out{{"id", lane.Id},
                  {"text", lane.Text},
                  {"kind", lane.Kind},
                  {"states", lane.States},
                  {"changes", ChangesJson(lane)}};
        if (lane.Kind == "clock") {
            out["period"] = lane.Period;
            out["pulse"] = lane.Pulse;
            out["offset"] = lane.Offset;
        }
        lanes.push_back(std::move(out));
    }
    aOut["lanes"] = std::move(lanes);
    TJSON messages = TJSON::array();
    for (const TMessage& m : Messages)
        messages.push_back(TJSON{{"from", m.From},
                                 {"fromTime", m.FromTime},
                                 {"to", m.To},
                                 {"toTime", m.ToTime},
                                 {"text", m.Text}});
    aOut["messages"] = std::move(messages);
    TJSON constraints = TJSON::array();
    for (const TConstraint& c : Constraints)
        constraints.push_back(TJSON{{"lane", c.Lane}, {"from", c.From}, {"to", c.To}, {"text", c.Text}});
    aOut["constraints"] = std::move(constraints);
    TJSON highlights = TJSON::array();
    for (const THighlight& h : Highlights)
        highlights.push_back(TJSON{{"from", h.From}, {"to", h.To}, {"text", h.Text}});
    aOut["highlights"] = std::move(highlights);
    aOut["scale"] = PixelsPerUnit > 0 ? TJSON(PixelsPerUnit) : TJSON(nullptr);
}

bool QVLReadTimingChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgPlantUML || !IsTimingText(aText)) return false;
    TTimingReader(aText, aModel).Read();
    return true;
}

}  // namespace Orvex
