// Mermaid gantt charts. Settings apply to the whole chart wherever they stand, so tasks are read first and
// their dates computed afterwards, in passes: a task may start after one written below it.
//
// A task line is `text : [tags,] [id,] [start,] end` where start is a date in the dateFormat or
// `after id ...`, and end is a date, a duration or `until id ...`; without a start the task follows the one
// written before it. Durations in days that run into excluded days are lengthened by them.
#include <algorithm>
#include <array>
#include <map>
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_gantt.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;
using TSeverity = TQVLDiagramDiagnosticSeverity;

constexpr std::array<std::string_view, 5> kTags{"active", "done", "crit", "milestone", "vert"};
// A chart whose tasks still wait for one another after this many passes has a cycle.
constexpr int kMaxPasses = 11;
constexpr TGanttTime kLongestExcludedWalk = 36'525 * kGanttMsPerDay;

struct TRawTask {
    std::int32_t Line = 0;
    std::string Source;
    std::string Text;
    std::size_t Section = 0;
    std::string Id;
    std::string PrevId;  // the task written before, which a task without start follows
    bool HasPrev = false;
    bool FollowsPrevious = false;
    std::string StartData;
    std::string EndData;
    std::vector<std::string> Tags;
    std::optional<TGanttTime> Start;
    std::optional<TGanttTime> End;
    std::optional<TGanttTime> DrawEnd;
    bool Processed = false;
    bool Reported = false;  // one diagnostic per task is enough
};

class TMermaidGantt {
  public:
    TMermaidGantt(TORXDiagramModel& aModel, TQVLGanttChart& aChart) : fModel(aModel), fChart(aChart) {}

    void Read(std::string_view aText, std::size_t aHeaderLine);

  private:
    void ReadLine(std::string_view line, std::int32_t lineNo);
    void ReadTask(std::string_view text, std::string_view data, std::int32_t lineNo, std::string_view source);
    void Compile();
    bool CompileTask(TRawTask& task);
    std::optional<TGanttTime> StartOf(TRawTask& task);
    std::optional<TGanttTime> EndOf(TRawTask& task, TGanttTime start);
    void FixForExcludedDays(TRawTask& task) const;
    std::vector<const TRawTask*> Referenced(TRawTask& task, std::string_view ids, std::string_view word);
    const TRawTask* Find(const std::string& id) const;
    void Report(TRawTask& task, TSeverity severity, std::string_view code, std::string_view message);
    void Warn(std::int32_t line, std::string_view code, std::string_view message, std::string_view source) {
        fModel.AddDiagnostic(TSeverity::dsWarning, line, code, message, source);
    }
    void Build();

    TORXDiagramModel& fModel;
    TQVLGanttChart& fChart;
    std::vector<TRawTask> fTasks;
    std::map<std::string, std::size_t> fIndex;  // id -> the last task of that id
    std::vector<std::string> fSectionNames{""};
    std::size_t fSection = 0;
    int fAnonymous = 0;
    bool fInclusiveEnd = false;
    TGanttTime fToday = 0;
};

bool IsTag(std::string_view word) {
    for (const std::string_view t : kTags)
        if (word == t) return true;
    return false;
}

std::vector<std::string> SplitData(std::string_view data) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (true) {
        const std::size_t comma = data.find(',', start);
        parts.emplace_back(data.substr(start, comma == std::string_view::npos ? data.npos : comma - start));
        if (comma == std::string_view::npos) break;
        start = comma + 1;
    }
    return parts;
}

// Lower-cased words of an excludes/includes line, split at blanks and commas.
void MergeTokens(std::vector<std::string>& into, std::string_view text) {
    std::string word;
    auto flush = [&] {
        if (!word.empty() && std::find(into.begin(), into.end(), word) == into.end()) into.push_back(word);
        word.clear();
    };
    for (const char c : Qvl::Utils::ToLowerAscii(text)) {
        if (c == ' ' || c == '\t' || c == ',')
            flush();
        else
            word += c;
    }
    flush();
}

void TMermaidGantt::Read(std::string_view aText, std::size_t aHeaderLine) {
    fToday = QVLGanttToday();
    fChart.Today = fToday;
    const auto lines = QVLSplitDiagramLines(aText);
    bool inAccBlock = false;
    for (std::size_t i = aHeaderLine; i < lines.size(); ++i) {
        const std::string_view line = Trim(lines[i]);
        if (inAccBlock) {
            inAccBlock = line.find('}') == std::string_view::npos;
            continue;
        }
        if (line.empty() || line.starts_with("%%")) continue;
        static const TRegex kAccBlock(R"(^accDescr\s*\{)", {TRegexFlag::rfCaseless});
        if (kAccBlock.Match(line)) {
            inAccBlock = line.find('}') == std::string_view::npos;
            continue;
        }
        ReadLine(line, static_cast<std::int32_t>(i + 1));
    }
    // A statement may follow the header word on its line ("gantt title Plan").
    const std::string_view rest = Trim(Trim(lines[aHeaderLine - 1]).substr(5));
    if (!rest.empty() && !rest.starts_with("%%")) ReadLine(rest, static_cast<std::int32_t>(aHeaderLine));
    fChart.Calendar.DateFormat = std::string(Trim(fChart.DateFormat));
    Compile();
    Build();
}

void TMermaidGantt::ReadLine(std::string_view line, std::int32_t lineNo) {
    static const TRegex kSetting(
        R"(^(dateFormat|axisFormat|tickInterval|includes|excludes|todayMarker|title|section)\s+(.*)$)",
        {TRegexFlag::rfCaseless});
    static const TRegex kFlag(R"(^(inclusiveEndDates|topAxis)\b\s*$)", {TRegexFlag::rfCaseless});
    static const TRegex kWeekday(
        R"(^weekday\s+(monday|tuesday|wednesday|thursday|friday|saturday|sunday)\s*$)",
        {TRegexFlag::rfCaseless});
    static const TRegex kWeekend(R"(^weekend\s+(friday|saturday)\s*$)", {TRegexFlag::rfCaseless});
    static const TRegex kAcc(R"(^acc(Title|Descr)\s*:)", {TRegexFlag::rfCaseless});
    static const TRegex kClick(R"(^click\s+\S)", {TRegexFlag::rfCaseless});
    static const TRegex kTickInterval(R"(^[1-9]\d*(millisecond|second|minute|hour|day|week|month)$)");
    static const TRegex kTask(R"(^([^:]+):(.*)$)");
    TRegexMatch m;
    if (kSetting.MatchAt(line, 0, m)) {
        const std::string word = Qvl::Utils::ToLowerAscii(m.Group(1));
        const std::string value(Trim(m.Group(2)));
        if (word == "dateformat") {
            fChart.DateFormat = value;
        } else if (word == "axisformat") {
            fChart.AxisFormat = value;
        } else if (word == "tickinterval") {
            fChart.TickInterval = value;
            if (!kTickInterval.Match(value))
                Warn(lineNo, "GANTT_TICK_INTERVAL",
                     "A tick interval is a whole number and millisecond, second, minute, hour, day, week or "
                     "month, as in \"1week\"; the axis chooses its own ticks.",
                     line);
        } else if (word == "includes") {
            MergeTokens(fChart.Calendar.Includes, value);
        } else if (word == "excludes") {
            MergeTokens(fChart.Calendar.Excludes, value);
        } else if (word == "todaymarker") {
            fChart.ShowToday = Qvl::Utils::ToLowerAscii(value) != "off";
            // A style for the line ("stroke-width:5px,stroke:#0f0"): its colour is kept, the rest is looks.
            TQVLDiagStyle style;
            if (fChart.ShowToday) {
                QVLApplyStyleProperties(value, style);
                fChart.TodayColor = style.Stroke;
            }
        } else if (word == "title") {
            fModel.fTitle = value;
        } else {
            fSectionNames.push_back(value);
            fSection = fSectionNames.size() - 1;
        }
        return;
    }
    if (kFlag.MatchAt(line, 0, m)) {
        if (Qvl::Utils::ToLowerAscii(m.Group(1)) == "inclusiveenddates")
            fInclusiveEnd = true;
        else
            fChart.TopAxis = true;
        return;
    }
    if (kWeekday.MatchAt(line, 0, m)) {
        fChart.WeekStart = GanttWeekdayNumber(m.Group(1));
        return;
    }
    if (kAcc.MatchAt(line, 0, m) || kClick.MatchAt(line, 0, m)) return;
    if (kWeekend.MatchAt(line, 0, m)) {
        fChart.Calendar.WeekendStart = Qvl::Utils::ToLowerAscii(m.Group(1)) == "friday" ? 5 : 6;
        return;
    }
    if (kTask.MatchAt(line, 0, m)) {
        ReadTask(Trim(m.Group(1)), m.Group(2), lineNo, line);
        return;
    }
    Warn(lineNo, "GANTT_UNRECOGNIZED_LINE",
         "A gantt line is a setting (dateFormat, excludes, section, ...) or a task \"text : data\".", line);
}

void TMermaidGantt::ReadTask(std::string_view text, std::string_view data, std::int32_t lineNo,
                             std::string_view source) {
    TRawTask task;
    task.Line = lineNo;
    task.Source = std::string(source);
    task.Section = fSection;
    std::vector<std::string> parts = SplitData(data);
    // Tags lead the data; they are matched as written (no blanks trimmed inside, no case folded).
    while (!parts.empty() && IsTag(Trim(parts.front()))) {
        task.Tags.emplace_back(Trim(parts.front()));
        parts.erase(parts.begin());
    }
    for (std::string& p : parts) p = std::string(Trim(p));
    if (parts.size() > 3) {
        // A tag after the id or dates: understood, but said, since Mermaid itself refuses the line.
        const std::size_t before = task.Tags.size();
        for (auto it = parts.begin(); it != parts.end();)
            if (IsTag(*it)) {
                task.Tags.push_back(*it);
                it = parts.erase(it);
            } else {
                ++it;
            }
        if (task.Tags.size() > before)
            Warn(lineNo, "GANTT_TAG_ORDER",
                 "Tags (done, active, crit, milestone) come first in a task's data.", source);
    }
    if (parts.empty() || parts.size() > 3 || parts.back().empty()) {
        fModel.AddDiagnostic(
            TSeverity::dsError, lineNo, "GANTT_TASK_DATA",
            "A task's data is [tags,] [id,] [start,] end: at most three values after the tags.", source);
        return;
    }
    if (parts.size() == 3) {
        task.Id = parts[0];
    } else {
        task.Id = "task" + std::to_string(++fAnonymous);
    }
    if (parts.size() == 1) {
        task.FollowsPrevious = true;
        if (fTasks.empty()) {
            fModel.AddDiagnostic(TSeverity::dsError, lineNo, "GANTT_NO_START",
                                 "The first task needs a start: a date or \"after\" another task.", source);
            task.StartData = "";
        }
    } else {
        task.StartData = parts[parts.size() - 2];
    }
    task.EndData = parts.back();
    if (!fTasks.empty()) {
        task.PrevId = fTasks.back().Id;
        task.HasPrev = true;
    }
    task.Text = std::string(text);
    fIndex[task.Id] = fTasks.size();
    fTasks.push_back(std::move(task));
}

const TRawTask* TMermaidGantt::Find(const std::string& id) const {
    const auto it = fIndex.find(id);
    return it == fIndex.end() ? nullptr : &fTasks[it->second];
}

void TMermaidGantt::Report(TRawTask& task, TSeverity severity, std::string_view code,
                           std::string_view message) {
    if (task.Reported) return;
    task.Reported = true;
    fModel.AddDiagnostic(severity, task.Line, code, message, task.Source);
}

// The tasks named in "after a b" or "until a b"; an unknown name is an error, and the task then keeps to
// today as Mermaid does.
std::vector<const TRawTask*> TMermaidGantt::Referenced(TRawTask& task, std::string_view ids,
                                                       std::string_view word) {
    std::vector<const TRawTask*> found;
    std::string unknown;
    std::size_t start = 0;
    while (start <= ids.size()) {
        std::size_t end = ids.find(' ', start);
        if (end == std::string_view::npos) end = ids.size();
        const std::string id(ids.substr(start, end - start));
        if (!id.empty()) {
            if (const TRawTask* t = Find(id))
                found.push_back(t);
            else
                unknown += (unknown.empty() ? "" : ", ") + id;
        }
        start = end + 1;
    }
    if (!unknown.empty())
        Report(task, TSeverity::dsError, "GANTT_UNKNOWN_TASK",
               "\"" + std::string(word) + "\" names a task id that no task has: " + unknown + ".");
    return found;
}

std::optional<TGanttTime> TMermaidGantt::StartOf(TRawTask& task) {
    static const TRegex kAfter(R"(^after\s+([A-Za-z0-9_\- ]+))");
    static const TRegex kDigits(R"(^\d{1,15}$)");
    const std::string_view text = Trim(task.StartData);
    const std::string_view format = Trim(fChart.DateFormat);
    TRegexMatch m;
    // A timestamp format reads start times as milliseconds, whichever of X and x it names.
    if ((format == "X" || format == "x") && kDigits.Match(text)) return std::stoll(std::string(text));
    if (kAfter.MatchAt(text, 0, m)) {
        const TRawTask* latest = nullptr;
        for (const TRawTask* t : Referenced(task, m.Group(1), "after"))
            if (latest == nullptr || (t->End && latest->End && *t->End > *latest->End)) latest = t;
        if (latest != nullptr) return latest->End;
        return GanttStartOfDay(fToday);
    }
    if (auto date = GanttParseDate(text, format, fToday)) return date;
    if (auto date = GanttParseLooseDate(text)) {
        if (!format.empty())
            Report(task, TSeverity::dsWarning, "GANTT_DATE_FORMAT",
                   "The start is not written in the dateFormat (\"" + std::string(format) +
                       "\"); it is read as the browser reads a date.");
        return date;
    }
    Report(task, TSeverity::dsError, "GANTT_BAD_DATE",
           "The start is neither a date in the dateFormat (\"" + std::string(format) +
               "\") nor \"after\" a task.");
    return GanttStartOfDay(fToday);
}

std::optional<TGanttTime> TMermaidGantt::EndOf(TRawTask& task, TGanttTime start) {
    static const TRegex kUntil(R"(^until\s+([A-Za-z0-9_\- ]+))");
    const std::string_view text = Trim(task.EndData);
    const std::string_view format = Trim(fChart.DateFormat);
    TRegexMatch m;
    if (kUntil.MatchAt(text, 0, m)) {
        const TRawTask* earliest = nullptr;
        for (const TRawTask* t : Referenced(task, m.Group(1), "until"))
            if (earliest == nullptr || (t->Start && earliest->Start && *t->Start < *earliest->Start))
                earliest = t;
        if (earliest != nullptr) return earliest->Start;
        return GanttStartOfDay(fToday);
    }
    if (auto date = GanttParseDate(text, format, fToday))
        return fInclusiveEnd ? GanttAdd(*date, 1, TGanttUnit::guDay) : *date;
    if (auto duration = GanttParseDuration(text)) return GanttAdd(start, duration->Amount, duration->Unit);
    Report(
        task, TSeverity::dsWarning, "GANTT_BAD_END",
        "The end is neither a date in the dateFormat, a duration (3d, 2w, 1M, 4h, ...) nor \"until\" a task; "
        "the task ends where it starts.");
    return start;
}

// A task lengthened by the excluded days it spans: each excluded day after its first pushes the end one
// day further. The bar stops before excluded days the task merely runs into at its end.
void TMermaidGantt::FixForExcludedDays(TRawTask& task) const {
    task.DrawEnd.reset();
    // Past a century the walk day by day costs more than any plan is worth; such a task keeps its end.
    if (fChart.Calendar.Empty() || *task.End - *task.Start > kLongestExcludedWalk) return;
    TGanttTime day = GanttAdd(*task.Start, 1, TGanttUnit::guDay);
    TGanttTime end = *task.End;
    const TGanttTime limit = GanttAdd(end, 10000, TGanttUnit::guDay);
    bool excluded = false;
    while (day <= end) {
        if (!excluded) task.DrawEnd = end;
        excluded = fChart.Calendar.IsExcluded(day);
        if (excluded) {
            end = GanttAdd(end, 1, TGanttUnit::guDay);
            if (end > limit) break;
        }
        day = GanttAdd(day, 1, TGanttUnit::guDay);
    }
    task.End = end;
}

bool TMermaidGantt::CompileTask(TRawTask& task) {
    if (task.FollowsPrevious) {
        const TRawTask* prev = task.HasPrev ? Find(task.PrevId) : nullptr;
        task.Start = prev != nullptr ? prev->End : std::optional<TGanttTime>(GanttStartOfDay(fToday));
    } else if (auto start = StartOf(task)) {
        task.Start = start;
    }
    if (!task.Start) return false;
    const std::optional<TGanttTime> end = EndOf(task, *task.Start);
    if (!end) return false;
    task.End = end;
    task.Processed = true;
    // An end written as an ISO date is where the task ends, excluded days or not.
    if (GanttParseDate(Trim(task.EndData), "YYYY-MM-DD", fToday))
        task.DrawEnd.reset();
    else
        FixForExcludedDays(task);
    return true;
}

void TMermaidGantt::Compile() {
    for (int pass = 0; pass < kMaxPasses; ++pass) {
        bool all = true;
        for (TRawTask& t : fTasks) all = CompileTask(t) && all;
        if (all) break;
    }
    for (TRawTask& t : fTasks) {
        if (t.Processed) continue;
        Report(t, TSeverity::dsError, "GANTT_CYCLE",
               "The task waits, through \"after\" or \"until\", on a task that waits on it.");
        t.Start = t.Start.value_or(GanttStartOfDay(fToday));
        t.End = t.End.value_or(*t.Start);
    }
    for (TRawTask& t : fTasks)
        if (t.DrawEnd == std::nullopt && t.End && t.Start && *t.End < *t.Start)
            Report(t, TSeverity::dsWarning, "GANTT_ENDS_BEFORE_START", "The task ends before it starts.");
}

bool HasTimeTokens(std::string_view format) {
    bool inLiteral = false;
    for (const char c : format) {
        if (c == '[') inLiteral = true;
        if (c == ']') inLiteral = false;
        if (!inLiteral && (c == 'H' || c == 'h' || c == 'm' || c == 's' || c == 'X' || c == 'x' || c == 'A'))
            return true;
    }
    return false;
}

void TMermaidGantt::Build() {
    fChart.Sections.clear();
    std::vector<TQVLGanttChart::TSection> sections(fSectionNames.size());
    for (std::size_t i = 0; i < fSectionNames.size(); ++i) sections[i].Name = fSectionNames[i];
    bool timeOfDay = HasTimeTokens(Trim(fChart.DateFormat));
    for (const TRawTask& raw : fTasks) {
        TQVLGanttChart::TTask task;
        task.Id = raw.Id;
        task.Text = raw.Text;
        task.Start = raw.Start.value_or(0);
        task.End = raw.End.value_or(task.Start);
        task.DrawEnd = raw.DrawEnd.value_or(task.End);
        for (const std::string& tag : raw.Tags)
            if (tag == "milestone")
                task.Milestone = true;
            else
                task.Tags.push_back(tag);
        timeOfDay =
            timeOfDay || GanttStartOfDay(task.Start) != task.Start || GanttStartOfDay(task.End) != task.End;
        sections[raw.Section].Tasks.push_back(std::move(task));
    }
    fChart.TimeOfDay = timeOfDay;
    for (std::size_t i = 0; i < sections.size(); ++i)
        if (i > 0 || !sections[i].Tasks.empty()) fChart.Sections.push_back(std::move(sections[i]));
}

}  // namespace

bool QVLReadMermaidGantt(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgMermaid) return false;
    std::size_t headerLine = 0;
    if (QVLMermaidHeaderWord(aText, &headerLine) != "gantt") return false;
    auto chart = std::make_shared<TQVLGanttChart>();
    aModel.fTitle = QVLFrontMatterValue(aText, "title");
    // Set in the front matter's configuration or an init directive, at any depth.
    static const TRegex kCompact(R"(displayMode["']?\s*:\s*["']?compact\b)", {TRegexFlag::rfCaseless});
    const auto lines = QVLSplitDiagramLines(aText);
    const auto headerAt = static_cast<std::size_t>(lines[headerLine - 1].data() - aText.data());
    chart->Compact = kCompact.Match(aText.substr(0, headerAt));
    TMermaidGantt(aModel, *chart).Read(aText, headerLine);
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
