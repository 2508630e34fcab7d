// PlantUML gantt charts: `@startgantt`, or `@startuml` around project statements. Tasks are named in
// brackets and described by clauses (`lasts 5 days`, `starts at [A]'s end`, `ends 2024-03-01`,
// `happens at [B]'s end`, `is 40% completed`) joined by "and". Durations count open days: a closed day
// (`saturday are closed`, `2024-05-01 is closed`) is skipped, and a task never starts on one.
#include <algorithm>
#include <deque>
#include <map>
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_gantt.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::ToLowerAscii;
using Qvl::Utils::Trim;
using TSeverity = TQVLDiagramDiagnosticSeverity;

const Qvl::Types::TRegexFlags kCaseless{TRegexFlag::rfCaseless};

// A date relative to another task: its start or end, moved by a number of open days.
struct TTaskRef {
    std::string Task;
    bool AtEnd = true;
    int Days = 0;  // negative: before
    std::int32_t Line = 0;
    std::string Source;
};

struct TPumlTask {
    std::string Name;
    std::string Id;
    std::int32_t Line = 0;  // where it was first named
    std::string Source;
    bool Described = false;  // the subject of a statement, not only named in one
    std::size_t Section = 0;
    std::optional<TGanttTime> StartDate;
    std::optional<TGanttTime> EndDay;   // the last day, as written
    std::optional<int> StartDayOffset;  // "starts D+3": days after the project's start
    std::optional<int> EndDayOffset;
    std::optional<TTaskRef> StartRef;
    std::optional<TTaskRef> EndRef;
    std::optional<int> OpenDays;
    std::optional<int> CalendarDays;
    bool Milestone = false;
    int Completed = -1;
    std::optional<TAlphaColor> Fill;
    std::string Resources;
    std::optional<TGanttTime> Start;
    std::optional<TGanttTime> End;
    enum class TState : std::uint8_t { tsWaiting, tsComputing, tsDone, tsInCycle };
    TState State = TState::tsWaiting;
};

// Where a date written in the text falls: ISO or slashed, or "the 5th of march 2024".
std::optional<TGanttTime> ReadDate(std::string_view text) {
    static const TRegex kNumeric(R"(^(?:the\s+)?(\d{4})[-/](\d{1,2})[-/](\d{1,2})$)", kCaseless);
    static const TRegex kWords(R"(^(?:the\s+)?(\d{1,2})(?:st|nd|rd|th)?\s+of\s+([A-Za-z]+)\s+(\d{4})$)",
                               kCaseless);
    TRegexMatch m;
    text = Trim(text);
    if (kNumeric.MatchAt(text, 0, m)) {
        const int month = std::stoi(std::string(m.Group(2)));
        const int day = std::stoi(std::string(m.Group(3)));
        const int year = std::stoi(std::string(m.Group(1)));
        if (month < 1 || month > 12 || day < 1 || day > GanttDaysInMonth(year, month)) return std::nullopt;
        return GanttFromCivil({year, month, day});
    }
    if (kWords.MatchAt(text, 0, m))
        return GanttParseLooseDate(std::string(m.Group(1)) + " " + std::string(m.Group(2)) + " " +
                                   std::string(m.Group(3)));
    return std::nullopt;
}

class TPlantUMLGantt {
  public:
    TPlantUMLGantt(TORXDiagramModel& aModel, TQVLGanttChart& aChart) : fModel(aModel), fChart(aChart) {}
    void Read(const std::vector<std::string_view>& aLines, std::size_t aFirst, std::size_t aEnd);

  private:
    bool ReadStatement(std::string_view line, std::int32_t lineNo);
    bool ReadTaskStatement(std::string_view line, std::int32_t lineNo, const std::string* previous);
    bool ReadClause(TPumlTask& task, std::string_view clause, std::int32_t lineNo, std::string_view line);
    bool ReadCalendar(std::string_view line);
    TPumlTask& Task(std::string_view name, std::int32_t lineNo, std::string_view source);
    void Compute(TPumlTask& task);
    TGanttTime RefDate(const TTaskRef& ref, TPumlTask& from);
    TGanttTime NextOpen(TGanttTime day) const;
    TGanttTime WalkOpenDays(TGanttTime from, int days) const;
    void Build();
    void Error(std::int32_t line, std::string_view code, std::string_view message, std::string_view source) {
        fModel.AddDiagnostic(TSeverity::dsError, line, code, message, source);
    }

    TORXDiagramModel& fModel;
    TQVLGanttChart& fChart;
    std::deque<TPumlTask> fTasks;                // a deque: references to tasks survive new ones being named
    std::map<std::string, std::size_t> fByName;  // names and aliases
    std::vector<std::string> fSections{""};
    std::size_t fSection = 0;
    std::optional<TGanttTime> fProjectStart;
    std::string fLastTask;
    std::optional<int> fTodayAfterStart;  // "today is 30 days after start"
};

TPumlTask& TPlantUMLGantt::Task(std::string_view name, std::int32_t lineNo, std::string_view source) {
    const std::string key(Trim(name));
    const auto it = fByName.find(key);
    if (it != fByName.end()) return fTasks[it->second];
    TPumlTask task;
    task.Name = key;
    task.Id = key;
    task.Line = lineNo;
    task.Source = std::string(source);
    task.Section = fSection;
    fByName[key] = fTasks.size();
    fTasks.push_back(std::move(task));
    return fTasks.back();
}

void TPlantUMLGantt::Read(const std::vector<std::string_view>& aLines, std::size_t aFirst, std::size_t aEnd) {
    fChart.Today = QVLGanttToday();
    fChart.ShowToday = false;
    fChart.FromPlantUML = true;
    fChart.TopAxis = true;
    fChart.Scale = TQVLGanttChart::TScale::gsDaily;
    bool inNote = false;
    bool inComment = false;
    bool inSkipped = false;  // a style, legend or similar block that changes no date
    std::string note;
    static const TRegex kNoteStart(R"(^note\s+(?:bottom|top|left|right)?\s*$)", kCaseless);
    static const TRegex kSkippedStart(
        R"(^(?:<style>|legend\b|header\s*$|footer\s*$|skinparam\s+\S+\s*\{\s*$))", kCaseless);
    static const TRegex kSkippedEnd(R"(^(?:</style>|end\s*legend|end\s*header|end\s*footer|\}))", kCaseless);
    for (std::size_t i = aFirst; i < aEnd; ++i) {
        const std::string_view line = Trim(aLines[i]);
        const auto lineNo = static_cast<std::int32_t>(i + 1);
        if (inComment) {
            inComment = line.find("'/") == std::string_view::npos;
            continue;
        }
        if (inNote) {
            if (ToLowerAscii(line) == "end note" || ToLowerAscii(line) == "endnote") {
                inNote = false;
                if (!fLastTask.empty()) fChart.Notes.push_back({fTasks[fByName[fLastTask]].Id, note});
                continue;
            }
            note += (note.empty() ? "" : "\n") + std::string(line);
            continue;
        }
        if (inSkipped) {
            inSkipped = !kSkippedEnd.Match(line);
            continue;
        }
        if (line.empty() || line.starts_with("'")) continue;
        if (line.starts_with("/'")) {
            inComment = line.find("'/", 2) == std::string_view::npos;
            continue;
        }
        if (kNoteStart.Match(line)) {
            inNote = true;
            note.clear();
            if (fLastTask.empty())
                Error(lineNo, "GANTT_NOTE_WITHOUT_TASK",
                      "A note hangs under the task before it; there is none.", line);
            continue;
        }
        if (kSkippedStart.Match(line)) {
            inSkipped = true;
            continue;
        }
        if (!ReadStatement(line, lineNo))
            fModel.AddDiagnostic(
                TSeverity::dsWarning, lineNo, "GANTT_UNRECOGNIZED_LINE",
                "A project line is a task in brackets with what it does (\"[Task] lasts 5 days\"), "
                "a section \"-- Name --\", or a calendar statement.",
                line);
    }
    for (TPumlTask& t : fTasks)
        if (!t.Described)
            Error(t.Line, "GANTT_UNKNOWN_TASK", "\"" + t.Name + "\" is named but no statement describes it.",
                  t.Source);
    if (!fProjectStart) {
        fChart.Undated = true;
        fProjectStart = GanttStartOfDay(fChart.Today);
    }
    for (TPumlTask& t : fTasks) {
        if (t.StartDayOffset) t.StartDate = *fProjectStart + *t.StartDayOffset * kGanttMsPerDay;
        if (t.EndDayOffset) t.EndDay = *fProjectStart + *t.EndDayOffset * kGanttMsPerDay;
    }
    if (fTodayAfterStart) fChart.Today = *fProjectStart + *fTodayAfterStart * kGanttMsPerDay;
    for (TPumlTask& t : fTasks) Compute(t);
    Build();
}

bool TPlantUMLGantt::ReadStatement(std::string_view line, std::int32_t lineNo) {
    static const TRegex kIgnored(
        R"(^(?:@start\w*|@end\w*|hide\s|show\s|skinparam\s|scale\s|language\s|header\s|footer\s|caption\s|legend\s.*end\s*legend$|!\w|separator\s+just\s|label\s+on\s))",
        kCaseless);
    static const TRegex kTitle(R"(^title\s+(.+)$)", kCaseless);
    static const TRegex kProject(R"(^project\s+starts\s+(?:on\s+|at\s+)?(.+)$)", kCaseless);
    static const TRegex kSection(R"(^--\s*(.*?)\s*--$)");
    static const TRegex kScale(R"(^(?:print|project)scale\s+(daily|weekly|monthly|quarterly|yearly)\b)",
                               kCaseless);
    static const TRegex kToday(R"(^today\s+is\s+(.+?)(?:\s+and\s+is\s+colou?red\s+in\s+\S+)?$)", kCaseless);
    static const TRegex kTodayColor(R"(^today\s+is\s+colou?red\s+in\s+\S+$)", kCaseless);
    static const TRegex kThen(R"(^then\s+(\[.*)$)", kCaseless);
    static const TRegex kArrowChain(R"(^\[[^\]]+\](?:\s*->\s*\[[^\]]+\])+$)");
    static const TRegex kBracket(R"(\[([^\]]+)\])");
    TRegexMatch m;
    if (kIgnored.MatchAt(line, 0, m)) return true;
    if (kTitle.MatchAt(line, 0, m)) {
        fModel.fTitle = QVLPlainCaption(m.Group(1), true);
        return true;
    }
    if (kProject.MatchAt(line, 0, m)) {
        fProjectStart = ReadDate(m.Group(1));
        if (!fProjectStart)
            Error(lineNo, "GANTT_BAD_DATE", "A date is written 2024-01-31 or \"the 31st of january 2024\".",
                  line);
        return true;
    }
    if (kSection.MatchAt(line, 0, m)) {
        fSections.emplace_back(m.Group(1));
        fSection = fSections.size() - 1;
        return true;
    }
    if (kScale.MatchAt(line, 0, m)) {
        const std::string scale = ToLowerAscii(m.Group(1));
        using S = TQVLGanttChart::TScale;
        fChart.Scale = scale == "daily"       ? S::gsDaily
                       : scale == "weekly"    ? S::gsWeekly
                       : scale == "monthly"   ? S::gsMonthly
                       : scale == "quarterly" ? S::gsQuarterly
                                              : S::gsYearly;
        return true;
    }
    if (kTodayColor.MatchAt(line, 0, m)) {
        fChart.ShowToday = true;
        return true;
    }
    if (kToday.MatchAt(line, 0, m)) {
        static const TRegex kAfterStart(R"(^(\d{1,5})\s+days?\s+after\s+start$)", kCaseless);
        TRegexMatch days;
        if (kAfterStart.MatchAt(m.Group(1), 0, days)) {
            // Counted from the project's start, which may be written further down.
            fTodayAfterStart = std::stoi(std::string(days.Group(1)));
            fChart.ShowToday = true;
            return true;
        }
        if (auto date = ReadDate(m.Group(1))) {
            fChart.Today = *date;
            fChart.ShowToday = true;
            return true;
        }
        Error(lineNo, "GANTT_BAD_DATE", "A date is written 2024-01-31 or \"the 31st of january 2024\".",
              line);
        return true;
    }
    if (kThen.MatchAt(line, 0, m)) {
        if (fLastTask.empty()) {
            Error(lineNo, "GANTT_THEN_WITHOUT_TASK", "\"then\" follows the task before it; there is none.",
                  line);
            return true;
        }
        const std::string previous = fLastTask;
        return ReadTaskStatement(m.Group(1), lineNo, &previous);
    }
    if (kArrowChain.MatchAt(line, 0, m)) {
        std::string from;
        for (const TRegexMatch& name : kBracket.MatchAll(line)) {
            TPumlTask& to = Task(name.Group(1), lineNo, line);
            if (!from.empty()) {
                if (!to.StartRef && !to.StartDate)
                    to.StartRef = TTaskRef{from, true, 0, lineNo, std::string(line)};
                fChart.Links.push_back({from, to.Name});
            }
            from = to.Name;
        }
        return true;
    }
    if (line.starts_with("[")) return ReadTaskStatement(line, lineNo, nullptr);
    return ReadCalendar(line);
}

// "[Name] [as [Alias]] [on {Res}...] clause and clause ...".
bool TPlantUMLGantt::ReadTaskStatement(std::string_view line, std::int32_t lineNo,
                                       const std::string* previous) {
    static const TRegex kSubject(
        R"(^\[([^\]]+)\](?:\s+as\s+\[([^\]]+)\])?((?:\s+on\s+(?:\{[^}]*\}\s*)+)?)(?:\s+(.*))?$)", kCaseless);
    static const TRegex kAnd(R"(\s+and\s+)", kCaseless);
    TRegexMatch m;
    if (!kSubject.MatchAt(line, 0, m)) return false;
    TPumlTask& task = Task(m.Group(1), lineNo, line);
    const std::string name = task.Name;
    if (m.Matched(2) && !m.Group(2).empty()) {
        task.Id = std::string(Trim(m.Group(2)));
        fByName[task.Id] = fByName[name];
    }
    if (!task.Described) {
        // A task belongs to the section it is first described in, and takes its row there.
        task.Described = true;
        task.Section = fSection;
        task.Line = lineNo;
        task.Source = std::string(line);
    }
    const std::string_view resources = Trim(m.Group(3));
    if (!resources.empty()) task.Resources = std::string(Trim(resources.substr(2)));
    if (previous != nullptr && *previous != name) {
        task.StartRef = TTaskRef{*previous, true, 0, lineNo, std::string(line)};
        fChart.Links.push_back({*previous, name});
    }
    fLastTask = name;
    const std::string_view rest = Trim(m.Group(4));
    if (rest.empty()) return previous != nullptr || m.Matched(2);
    // Clauses joined by "and"; a bare "2 days" continues the duration before it ("lasts 1 week and 2 days").
    std::size_t start = 0;
    bool understood = true;
    std::vector<std::string_view> clauses;
    for (const TRegexMatch& sep : kAnd.MatchAll(rest)) {
        clauses.push_back(rest.substr(start, sep.Start() - start));
        start = sep.End();
    }
    clauses.push_back(rest.substr(start));
    for (const std::string_view clause : clauses)
        understood = ReadClause(fTasks[fByName[name]], clause, lineNo, line) && understood;
    return understood;
}

bool TPlantUMLGantt::ReadClause(TPumlTask& task, std::string_view clause, std::int32_t lineNo,
                                std::string_view line) {
    static const TRegex kDuration(R"(^(?:(?:lasts|requires)\s+)?(\d{1,5})\s*(days?|weeks?)$)", kCaseless);
    static const TRegex kRelative(
        R"(^(starts|ends|happens)\s+(?:(\d{1,5})\s+days?\s+(after|before)\s+)?(?:at\s+|after\s+)?\[([^\]]+)\]'s\s+(start|end)$)",
        kCaseless);
    static const TRegex kDated(R"(^(starts|ends|happens)\s+(?:on\s+|at\s+)?(.+)$)", kCaseless);
    static const TRegex kCompleted(R"(^is\s+(\d{1,3})\s*%\s*(?:completed?)?$)", kCaseless);
    static const TRegex kColored(R"(^is\s+colou?red\s+in\s+([^/\s]+)(?:/(\S+))?$)", kCaseless);
    static const TRegex kAccepted(
        R"(^(?:is\s+deleted|displays\s+on\s+same\s+row\s+as\s+\[.*\]|links\s+to\s+.*|pauses\s+on\s+.*)$)",
        kCaseless);
    TRegexMatch m;
    clause = Trim(clause);
    if (kDuration.MatchAt(clause, 0, m)) {
        const int amount = std::stoi(std::string(m.Group(1)));
        // Weeks are calendar time; days are working days.
        if (ToLowerAscii(m.Group(2)).starts_with("week"))
            task.CalendarDays = task.CalendarDays.value_or(0) + 7 * amount;
        else
            task.OpenDays = task.OpenDays.value_or(0) + amount;
        return true;
    }
    if (kRelative.MatchAt(clause, 0, m)) {
        const std::string verb = ToLowerAscii(m.Group(1));
        TTaskRef ref{std::string(Trim(m.Group(4))), ToLowerAscii(m.Group(5)) == "end", 0, lineNo,
                     std::string(line)};
        if (m.Matched(2))
            ref.Days = std::stoi(std::string(m.Group(2))) * (ToLowerAscii(m.Group(3)) == "before" ? -1 : 1);
        Task(ref.Task, lineNo, line);  // named here, so it must be described somewhere
        if (verb == "ends") {
            task.EndRef = ref;
        } else {
            task.StartRef = ref;
            task.Milestone = task.Milestone || verb == "happens";
            if (verb == "starts" && ref.AtEnd) fChart.Links.push_back({ref.Task, task.Name});
        }
        return true;
    }
    if (kDated.MatchAt(clause, 0, m)) {
        const std::string verb = ToLowerAscii(m.Group(1));
        static const TRegex kProjectDay(R"(^D\+(\d{1,5})$)");
        TRegexMatch day;
        if (kProjectDay.MatchAt(Trim(m.Group(2)), 0, day)) {
            (verb == "ends" ? task.EndDayOffset : task.StartDayOffset) = std::stoi(std::string(day.Group(1)));
            task.Milestone = task.Milestone || verb == "happens";
            return true;
        }
        const std::optional<TGanttTime> date = ReadDate(m.Group(2));
        if (!date) {
            Error(lineNo, "GANTT_BAD_DATE", "A date is written 2024-01-31 or \"the 31st of january 2024\".",
                  line);
            return true;
        }
        if (verb == "ends") {
            task.EndDay = date;
        } else {
            task.StartDate = date;
            task.Milestone = task.Milestone || verb == "happens";
        }
        return true;
    }
    if (kCompleted.MatchAt(clause, 0, m)) {
        task.Completed = std::min(100, std::stoi(std::string(m.Group(1))));
        return true;
    }
    if (kColored.MatchAt(clause, 0, m)) {
        TAlphaColor color = 0;
        if (QVLReadColor(m.Group(1), color)) task.Fill = color;
        return QVLReadColor(m.Group(1), color);
    }
    return kAccepted.MatchAt(clause, 0, m);
}

// "saturday are closed", "2024-05-01 is closed", "2024-05-01 to 2024-05-03 are open".
bool TPlantUMLGantt::ReadCalendar(std::string_view line) {
    static const TRegex kWeekday(
        R"(^(monday|tuesday|wednesday|thursday|friday|saturday|sunday)\s+(?:is|are)\s+(closed|open)$)",
        kCaseless);
    static const TRegex kDates(R"(^(.+?)(?:\s+to\s+(.+?))?\s+(?:is|are)\s+(closed|open)$)", kCaseless);
    static const TRegex kDateColored(
        R"(^(.+?)(?:\s+to\s+(.+?))?\s+(?:is|are)\s+(?:colou?red\s+in\s+\S+|named\s+\[.*\])$)", kCaseless);
    TRegexMatch m;
    auto toggle = [&](const std::string& word, bool closed) {
        auto& add = closed ? fChart.Calendar.Excludes : fChart.Calendar.Includes;
        auto& remove = closed ? fChart.Calendar.Includes : fChart.Calendar.Excludes;
        std::erase(remove, word);
        if (std::find(add.begin(), add.end(), word) == add.end()) add.push_back(word);
    };
    if (kWeekday.MatchAt(line, 0, m)) {
        const std::string day = ToLowerAscii(m.Group(1));
        if (ToLowerAscii(m.Group(2)) == "closed")
            toggle(day, true);
        else
            std::erase(fChart.Calendar.Excludes, day);
        return true;
    }
    if (kDates.MatchAt(line, 0, m)) {
        const std::optional<TGanttTime> from = ReadDate(m.Group(1));
        const std::optional<TGanttTime> to = m.Matched(2) ? ReadDate(m.Group(2)) : from;
        if (!from || !to) return false;
        const bool closed = ToLowerAscii(m.Group(3)) == "closed";
        for (TGanttTime d = *from; d <= *to; d = GanttAdd(d, 1, TGanttUnit::guDay))
            toggle(GanttIso(d, false), closed);
        return true;
    }
    if (kDateColored.MatchAt(line, 0, m)) return ReadDate(m.Group(1)).has_value();
    return false;
}

TGanttTime TPlantUMLGantt::NextOpen(TGanttTime day) const {
    for (int guard = 0; guard < 3660 && fChart.Calendar.IsExcluded(day); ++guard) day += kGanttMsPerDay;
    return day;
}

// The end (exclusive) of aDays open days from aFrom; backwards from an end for a negative count.
TGanttTime TPlantUMLGantt::WalkOpenDays(TGanttTime from, int days) const {
    TGanttTime day = from;
    const int step = days < 0 ? -1 : 1;
    for (int counted = 0, guard = 0; counted != days && guard < 36600; ++guard) {
        if (step < 0) day -= kGanttMsPerDay;
        if (!fChart.Calendar.IsExcluded(day)) counted += step;
        if (step > 0) day += kGanttMsPerDay;
    }
    return day;
}

TGanttTime TPlantUMLGantt::RefDate(const TTaskRef& ref, TPumlTask& from) {
    const auto it = fByName.find(ref.Task);
    TPumlTask& other = fTasks[it->second];
    Compute(other);
    // A task in a cycle has no dates to lean on: the project's start stands in.
    if (other.State != TPumlTask::TState::tsDone || from.State == TPumlTask::TState::tsInCycle)
        return *fProjectStart;
    const TGanttTime base = ref.AtEnd ? *other.End : *other.Start;
    return ref.Days == 0 ? base : WalkOpenDays(base, ref.Days);
}

void TPlantUMLGantt::Compute(TPumlTask& task) {
    using TState = TPumlTask::TState;
    if (task.State == TState::tsDone || task.State == TState::tsInCycle) return;
    if (task.State == TState::tsComputing) {
        Error(task.Line, "GANTT_CYCLE", "The task's dates depend on a task that depends on it.", task.Source);
        task.State = TState::tsInCycle;
        return;
    }
    task.State = TState::tsComputing;
    const int openDays = task.OpenDays.value_or(0);
    const int calendarDays = task.CalendarDays.value_or(0);
    const bool hasDuration = task.OpenDays || task.CalendarDays;
    std::optional<TGanttTime> end;
    if (task.EndDay) end = *task.EndDay + kGanttMsPerDay;
    if (task.EndRef) end = RefDate(*task.EndRef, task);
    TGanttTime start = *fProjectStart;
    if (task.StartDate)
        start = *task.StartDate;
    else if (task.StartRef)
        start = RefDate(*task.StartRef, task);
    else if (end && hasDuration)
        start = WalkOpenDays(end.value() - calendarDays * kGanttMsPerDay, -openDays);
    if (task.State == TState::tsInCycle) {
        task.Start = task.End = *fProjectStart;
        return;
    }
    if (task.Milestone) {
        // A milestone at a task's end happens on that task's last day; it fills its day on the axis.
        if (task.StartRef && task.StartRef->AtEnd && task.StartRef->Days == 0) start -= kGanttMsPerDay;
        task.Start = start;
        task.End = start + kGanttMsPerDay;
        task.State = TState::tsDone;
        return;
    }
    start = NextOpen(start);
    if (task.StartDate || task.StartRef || !end || !hasDuration) {
        if (hasDuration)
            end = WalkOpenDays(start + calendarDays * kGanttMsPerDay, openDays);
        else if (!end)
            end = WalkOpenDays(start, 1);
    }
    task.Start = start;
    task.End = std::max(start, *end);
    task.State = TState::tsDone;
}

void TPlantUMLGantt::Build() {
    std::vector<TQVLGanttChart::TSection> sections(fSections.size());
    for (std::size_t i = 0; i < fSections.size(); ++i) sections[i].Name = fSections[i];
    auto idOf = [&](const std::string& name) {
        const auto it = fByName.find(name);
        return it == fByName.end() ? name : fTasks[it->second].Id;
    };
    for (const TPumlTask& t : fTasks) {
        if (!t.Described) continue;
        TQVLGanttChart::TTask task;
        task.Id = t.Id;
        task.Text = t.Name;
        task.Start = t.Start.value_or(*fProjectStart);
        task.End = t.End.value_or(task.Start);
        task.DrawEnd = task.End;
        task.Milestone = t.Milestone;
        task.Completed = t.Completed;
        task.Fill = t.Fill;
        task.Resources = t.Resources;
        if (t.Completed >= 100) task.Tags.push_back("done");
        sections[t.Section].Tasks.push_back(std::move(task));
    }
    for (TQVLGanttChart::TLink& link : fChart.Links) {
        link.From = idOf(link.From);
        link.To = idOf(link.To);
    }
    // "[A] starts at [B]'s end" written twice, or with "->" as well, is one arrow.
    std::vector<TQVLGanttChart::TLink> unique;
    for (const auto& link : fChart.Links)
        if (std::none_of(unique.begin(), unique.end(),
                         [&](const auto& u) { return u.From == link.From && u.To == link.To; }))
            unique.push_back(link);
    fChart.Links = std::move(unique);
    for (std::size_t i = 0; i < sections.size(); ++i)
        if (i > 0 || !sections[i].Tasks.empty()) fChart.Sections.push_back(std::move(sections[i]));
    fChart.DateFormat = "YYYY-MM-DD";
    fChart.Calendar.DateFormat = "YYYY-MM-DD";
}

// The lines of the text's project: inside @startgantt (or @startuml) ... @end, or the whole text. An
// @startuml text is a project when it has a project statement; "[A] -> [B]" alone is a component link.
bool ProjectLines(const std::vector<std::string_view>& lines, std::size_t& first, std::size_t& end) {
    static const TRegex kStartGantt(R"(^@startgantt\b)", kCaseless);
    static const TRegex kStartUml(R"(^@startuml\b)", kCaseless);
    static const TRegex kEnd(R"(^@end\w*)", kCaseless);
    static const TRegex kOtherStart(R"(^@start\w+)", kCaseless);
    static const TRegex kProjectStatement(
        R"(^(?:project\s+starts\b|\[[^\]]+\](?:\s+as\s+\[[^\]]+\])?(?:\s+on\s+\{[^}]*\})*\s+(?:lasts|requires|starts|ends|happens)\b|then\s+\[))",
        kCaseless);
    bool gantt = false;
    bool statements = false;
    first = 0;
    end = lines.size();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string_view line = Trim(lines[i]);
        if (kStartGantt.Match(line)) {
            gantt = true;
            first = i + 1;
        } else if (kStartUml.Match(line)) {
            first = i + 1;
        } else if (kOtherStart.Match(line)) {
            return false;  // a chronology, mind map, ...: another kind, whatever its lines look like
        } else if (kEnd.Match(line)) {
            end = i;
            break;
        } else if (kProjectStatement.Match(line)) {
            statements = true;
        } else if (!gantt && !line.empty()) {
            // Another kind of statement in an @startuml text: a project has none of the core's other kinds.
            static const TRegex kOtherKind(
                R"(^(?:participant|actor|class|interface|component|node|usecase|state|start$|:|object|entity|package|rectangle)\b)",
                kCaseless);
            if (kOtherKind.Match(line)) return false;
        }
    }
    return gantt || statements;
}

}  // namespace

bool QVLReadPlantUMLGantt(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgPlantUML) return false;
    const auto lines = QVLSplitDiagramLines(aText);
    std::size_t first = 0;
    std::size_t end = 0;
    if (!ProjectLines(lines, first, end)) return false;
    auto chart = std::make_shared<TQVLGanttChart>();
    TPlantUMLGantt(aModel, *chart).Read(lines, first, end);
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
