// The gantt record's JSON, its calendar, and the clock the readers ask for today.
#include "orvex/diagrams/chart_gantt.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>

#include "orvex/io/json.h"

namespace Orvex {
namespace {

std::atomic<bool> gTodayFixed{false};
std::atomic<TGanttTime> gToday{0};

bool Contains(const std::vector<std::string>& list, const std::string& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

}  // namespace

bool TQVLGanttCalendar::IsExcluded(TGanttTime aDay) const {
    const std::string formatted = GanttFormatDate(aDay, DateFormat);
    const std::string dateOnly = GanttFormatDate(aDay, "YYYY-MM-DD");
    if (Contains(Includes, formatted) || Contains(Includes, dateOnly)) return false;
    const int weekday = GanttIsoWeekday(aDay);
    if (Contains(Excludes, "weekends") && (weekday == WeekendStart || weekday == WeekendStart + 1))
        return true;
    if (Contains(Excludes, std::string(GanttWeekdayName(weekday)))) return true;
    return Contains(Excludes, formatted) || Contains(Excludes, dateOnly);
}

void TQVLGanttChart::WriteJson(TJSON& aOut) const {
    aOut["dateFormat"] = DateFormat;
    TJSON sections = TJSON::array();
    for (const TSection& s : Sections) {
        TJSON tasks = TJSON::array();
        for (const TTask& t : s.Tasks)
            tasks.push_back(TJSON{{"id", t.Id},
                                  {"text", t.Text},
                                  {"start", GanttIso(t.Start, TimeOfDay)},
                                  {"end", GanttIso(t.End, TimeOfDay)},
                                  {"milestone", t.Milestone},
                                  {"tags", t.Tags}});
        sections.push_back(TJSON{{"name", s.Name}, {"tasks", std::move(tasks)}});
    }
    aOut["sections"] = std::move(sections);
}

const TQVLGanttChart::TTask* TQVLGanttChart::FindTask(std::string_view aId) const {
    const TTask* found = nullptr;
    for (const TSection& s : Sections)
        for (const TTask& t : s.Tasks)
            if (t.Id == aId) found = &t;  // the last of a repeated id, as references resolve
    return found;
}

TGanttTime QVLGanttToday() {
    if (gTodayFixed.load()) return gToday.load();
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    localtime_r(&now, &local);
    return GanttFromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                           local.tm_sec, 0});
}

void QVLSetGanttToday(std::optional<TGanttTime> aToday) {
    gToday.store(aToday.value_or(0));
    gTodayFixed.store(aToday.has_value());
}

}  // namespace Orvex
