// Gantt chart data: sections of tasks with their computed start and end, the calendar that decides which
// days are worked, dependency links and notes. Both Mermaid and PlantUML gantt texts read into it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvex/core/color.h"
#include "orvex/diagrams/chart_model.h"
#include "orvex/diagrams/gantt_time.h"

namespace Orvex {

// Which days a chart skips: weekends, named weekdays and dates excluded, dates included back.
struct TQVLGanttCalendar {
    std::string DateFormat;             // excluded dates may be written in the chart's own format
    std::vector<std::string> Excludes;  // lower-cased: "weekends", "sunday", "2024-01-15"
    std::vector<std::string> Includes;  // dates worked although excluded otherwise
    int WeekendStart = 6;               // ISO weekday the two-day weekend starts on: 5 (Friday) or 6

    bool IsExcluded(TGanttTime aDay) const;
    bool Empty() const { return Excludes.empty(); }
};

struct TQVLGanttChart final : TQVLChart {
    struct TTask {
        std::string Id;
        std::string Text;
        TGanttTime Start = 0;
        TGanttTime End = 0;      // exclusive
        TGanttTime DrawEnd = 0;  // where the bar stops: before excluded days the task merely ends on
        bool Milestone = false;
        std::vector<std::string> Tags;  // done, active, crit, vert as written
        int Completed = -1;             // percent, -1 when the text does not say
        std::optional<Qvl::Types::TAlphaColor> Fill;
        std::string Resources;  // "{Alice} {Bob:50%}" as written
    };
    struct TSection {
        std::string Name;
        std::vector<TTask> Tasks;
    };
    // A dependency arrow from one task's end to another's start.
    struct TLink {
        std::string From;
        std::string To;
    };
    struct TNote {
        std::string TaskId;  // the task the note hangs under
        std::string Text;
    };
    enum class TScale : std::uint8_t { gsAuto, gsDaily, gsWeekly, gsMonthly, gsQuarterly, gsYearly };

    std::string DateFormat;
    std::string AxisFormat;    // strftime-style; empty for the reader's default
    std::string TickInterval;  // "1week", "2day", ...; empty for automatic ticks
    TScale Scale = TScale::gsAuto;
    bool TopAxis = false;
    bool Compact = false;  // displayMode compact: tasks of a section share rows where they do not overlap
    int WeekStart = 7;     // ISO weekday weekly ticks fall on (Sunday unless the text names another)
    bool FromPlantUML = false;  // drawn as a project plan: a day grid on top, plain bars, closed days shaded
    bool TimeOfDay = false;     // some date has a time of day, so dates are written with it
    bool Undated = false;       // a PlantUML project without a start date: the axis counts days
    bool ShowToday = true;
    std::optional<Qvl::Types::TAlphaColor> TodayColor;  // the today line's stroke, when the text styles it
    TGanttTime Today = 0;
    TQVLGanttCalendar Calendar;
    std::vector<TSection> Sections;
    std::vector<TLink> Links;
    std::vector<TNote> Notes;

    std::string_view Type() const override { return "gantt"; }
    // "dateFormat", "sections": [{"name", "tasks": [{"id", "text", "start", "end", "milestone", "tags"}]}].
    void WriteJson(TJSON& aOut) const override;
    const TTask* FindTask(std::string_view aId) const;
};

// The current local date and time the readers use for what a text leaves open (a date format without a
// year, the today marker). Tests fix it with QVLSetGanttToday; nullopt returns to the clock.
TGanttTime QVLGanttToday();
void QVLSetGanttToday(std::optional<TGanttTime> aToday);

}  // namespace Orvex
