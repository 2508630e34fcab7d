#include "host/layout/gantt_axis.h"

#include <array>
#include <cmath>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"

namespace Orvex {
namespace {

enum class TStepUnit : std::uint8_t { suSecond, suMinute, suHour, suDay, suWeek, suMonth, suYear };

struct TStep {
    TStepUnit Unit = TStepUnit::suDay;
    int Every = 1;
};

constexpr TGanttTime kSecond = 1000;
constexpr TGanttTime kMinute = 60 * kSecond;
constexpr TGanttTime kHour = 60 * kMinute;
constexpr TGanttTime kDay = kGanttMsPerDay;
constexpr std::size_t kMostTicks = 10000;

TGanttTime ApproxLength(TStep step) {
    static constexpr std::array<TGanttTime, 7> kLengths{kSecond,  kMinute,   kHour,     kDay,
                                                        7 * kDay, 30 * kDay, 365 * kDay};
    return kLengths[static_cast<std::size_t>(step.Unit)] * step.Every;
}

// The start of the unit holding aTime (weeks start on Sunday, or on Monday for PlantUML's weekly scale).
TGanttTime FloorTo(TGanttTime t, TStepUnit unit, int weekStart) {
    TGanttCivil c = GanttToCivil(t);
    switch (unit) {
        case TStepUnit::suSecond:
            return t - c.Milli;
        case TStepUnit::suMinute:
            return t - c.Milli - c.Second * kSecond;
        case TStepUnit::suHour:
            return t - c.Milli - c.Second * kSecond - c.Minute * kMinute;
        case TStepUnit::suDay:
            return GanttStartOfDay(t);
        case TStepUnit::suWeek: {
            const int back = (GanttIsoWeekday(t) - weekStart + 7) % 7;
            return GanttStartOfDay(t) - back * kDay;
        }
        case TStepUnit::suMonth:
            return GanttFromCivil({c.Year, c.Month, 1});
        case TStepUnit::suYear:
            return GanttFromCivil({c.Year, 1, 1});
    }
    return t;
}

TGanttTime Next(TGanttTime t, TStepUnit unit) {
    switch (unit) {
        case TStepUnit::suSecond:
            return t + kSecond;
        case TStepUnit::suMinute:
            return t + kMinute;
        case TStepUnit::suHour:
            return t + kHour;
        case TStepUnit::suDay:
            return GanttAdd(t, 1, TGanttUnit::guDay);
        case TStepUnit::suWeek:
            return GanttAdd(t, 7, TGanttUnit::guDay);
        case TStepUnit::suMonth:
            return GanttAdd(t, 1, TGanttUnit::guMonth);
        case TStepUnit::suYear:
            return GanttAdd(t, 1, TGanttUnit::guYear);
    }
    return t + kDay;
}

// Which ticks of a unit an "every n" keeps: the field a calendar counts in (hour of the day, day of the
// month, month of the year), so ticks fall on round values.
std::int64_t Field(TGanttTime t, TStepUnit unit) {
    const TGanttCivil c = GanttToCivil(t);
    switch (unit) {
        case TStepUnit::suSecond:
            return c.Second;
        case TStepUnit::suMinute:
            return c.Minute;
        case TStepUnit::suHour:
            return c.Hour;
        case TStepUnit::suDay:
            return c.Day - 1;
        case TStepUnit::suWeek:
            return (t >= 0 ? t : t - 7 * kDay + 1) / (7 * kDay);  // whole weeks, rounded down
        case TStepUnit::suMonth:
            return c.Month - 1;
        case TStepUnit::suYear:
            return c.Year;
    }
    return 0;
}

// About ten ticks over the span, on the round intervals people read a calendar in.
TStep AutomaticStep(TGanttTime span) {
    static constexpr std::array<TStep, 17> kSteps{{{TStepUnit::suSecond, 1},
                                                   {TStepUnit::suSecond, 5},
                                                   {TStepUnit::suSecond, 15},
                                                   {TStepUnit::suSecond, 30},
                                                   {TStepUnit::suMinute, 1},
                                                   {TStepUnit::suMinute, 5},
                                                   {TStepUnit::suMinute, 15},
                                                   {TStepUnit::suMinute, 30},
                                                   {TStepUnit::suHour, 1},
                                                   {TStepUnit::suHour, 3},
                                                   {TStepUnit::suHour, 6},
                                                   {TStepUnit::suHour, 12},
                                                   {TStepUnit::suDay, 1},
                                                   {TStepUnit::suDay, 2},
                                                   {TStepUnit::suWeek, 1},
                                                   {TStepUnit::suMonth, 1},
                                                   {TStepUnit::suMonth, 3}}};
    const double target = static_cast<double>(span) / 10.0;
    std::size_t i = 0;
    while (i < kSteps.size() && static_cast<double>(ApproxLength(kSteps[i])) <= target) ++i;
    if (i == kSteps.size()) {
        const double years = target / static_cast<double>(365 * kDay);
        const double power = std::pow(10.0, std::floor(std::log10(std::max(years, 1.0))));
        const double unit = years / power >= 5 ? 5 : years / power >= 2 ? 2 : 1;
        return {TStepUnit::suYear, static_cast<int>(unit * power)};
    }
    if (i == 0) return kSteps[0];
    const double below = target / static_cast<double>(ApproxLength(kSteps[i - 1]));
    const double above = static_cast<double>(ApproxLength(kSteps[i])) / target;
    return below < above ? kSteps[i - 1] : kSteps[i];
}

std::optional<TStep> WrittenStep(std::string_view interval) {
    static const Qvl::Types::TRegex kInterval(
        R"(^([1-9]\d{0,5})(millisecond|second|minute|hour|day|week|month)$)");
    Qvl::Types::TRegexMatch m;
    if (!kInterval.MatchAt(interval, 0, m) || m.Group(2) == "millisecond") return std::nullopt;
    const int every = std::stoi(std::string(m.Group(1)));
    const std::string_view unit = m.Group(2);
    const TStepUnit u = unit == "second"   ? TStepUnit::suSecond
                        : unit == "minute" ? TStepUnit::suMinute
                        : unit == "hour"   ? TStepUnit::suHour
                        : unit == "day"    ? TStepUnit::suDay
                        : unit == "week"   ? TStepUnit::suWeek
                                           : TStepUnit::suMonth;
    return TStep{u, every};
}

std::string DefaultLabelFormat(TStep step, bool plantUml) {
    if (!plantUml) return "%Y-%m-%d";
    switch (step.Unit) {
        case TStepUnit::suDay:
            return "%-d";
        case TStepUnit::suWeek:
            return "%-d %b";
        case TStepUnit::suMonth:
            return step.Every == 3 ? "Q %Y" : "%b %Y";
        case TStepUnit::suYear:
            return "%Y";
        default:
            return "%H:%M";
    }
}

}  // namespace

std::vector<TGanttTick> GanttTicks(const TQVLGanttChart& aChart, TGanttTime aFrom, TGanttTime aTo) {
    using S = TQVLGanttChart::TScale;
    const bool plantUml = aChart.Scale != S::gsAuto || aChart.Undated;
    const TGanttTime span = std::max<TGanttTime>(aTo - aFrom, 1);
    TStep step = AutomaticStep(span);
    int weekStart = aChart.WeekStart;
    if (auto written = WrittenStep(aChart.TickInterval); written && span / ApproxLength(*written) < 1000)
        step = *written;
    switch (aChart.Scale) {
        case S::gsAuto:
            break;
        case S::gsDaily:
            step = span / kDay > 90 ? TStep{TStepUnit::suWeek, 1} : TStep{TStepUnit::suDay, 1};
            break;
        case S::gsWeekly:
            step = {TStepUnit::suWeek, 1};
            break;
        case S::gsMonthly:
            step = {TStepUnit::suMonth, 1};
            break;
        case S::gsQuarterly:
            step = {TStepUnit::suMonth, 3};
            break;
        case S::gsYearly:
            step = {TStepUnit::suYear, 1};
            break;
    }
    if (plantUml) weekStart = 1;
    const std::string format =
        aChart.AxisFormat.empty() ? DefaultLabelFormat(step, plantUml) : aChart.AxisFormat;

    std::vector<TGanttTick> ticks;
    TGanttTime t = FloorTo(aFrom, step.Unit, weekStart);
    for (std::size_t guard = 0; t <= aTo && guard < kMostTicks * 10 && ticks.size() < kMostTicks; ++guard) {
        const bool kept = step.Every == 1 || (step.Unit == TStepUnit::suWeek && plantUml) ||
                          Field(t, step.Unit) % step.Every == 0;
        if (t >= aFrom && kept) {
            std::string label;
            if (aChart.Undated)
                label = std::to_string((GanttStartOfDay(t) - GanttStartOfDay(aFrom)) / kDay + 1);
            else if (format == "Q %Y")
                label =
                    "Q" + std::to_string((GanttToCivil(t).Month - 1) / 3 + 1) + " " + GanttStrftime(t, "%Y");
            else
                label = std::string(Qvl::Utils::Trim(GanttStrftime(t, format)));  // "%e" pads with a blank
            ticks.push_back({t, std::move(label)});
        }
        t = Next(t, step.Unit);
    }
    return ticks;
}

}  // namespace Orvex
