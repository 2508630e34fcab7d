// Calendar arithmetic for gantt charts. An instant is a count of milliseconds of civil time since
// 1970-01-01 00:00, with no time zone and no daylight saving: a chart's dates are wall-clock dates, and
// adding a day must always land on the same time of day.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Orvex {

using TGanttTime = std::int64_t;
constexpr TGanttTime kGanttMsPerDay = 86'400'000;

struct TGanttCivil {
    int Year = 1970;
    int Month = 1;  // 1 to 12
    int Day = 1;    // 1 to 31
    int Hour = 0;
    int Minute = 0;
    int Second = 0;
    int Milli = 0;
};

// Fields out of range carry over as a calendar does (month 13 is January of the next year, day 0 the last
// day of the month before), so arithmetic can be done on the fields.
TGanttTime GanttFromCivil(const TGanttCivil& aCivil);
TGanttCivil GanttToCivil(TGanttTime aTime);
TGanttTime GanttStartOfDay(TGanttTime aTime);
int GanttIsoWeekday(TGanttTime aTime);  // 1 for Monday to 7 for Sunday
int GanttDaysInMonth(int aYear, int aMonth);

// A date written in a dayjs-style format (YYYY, YY, M, MM, MMM, MMMM, D, DD, Do, H, HH, h, hh, A, a, m, mm,
// s, ss, SSS, Q, X, x, [literal]), read strictly: the text must be exactly what the date formats back
// to, so 2024-02-30 is refused. Parts the format lacks come from aToday.
std::optional<TGanttTime> GanttParseDate(std::string_view aText, std::string_view aFormat, TGanttTime aToday);
// The forms a browser's Date reads without a format: ISO dates and times, "2024/01/05", "01/05/2024",
// "Jan 5, 2024", "5 January 2024".
std::optional<TGanttTime> GanttParseLooseDate(std::string_view aText);
// The date in a dayjs-style format (the tokens above, plus d, dd, ddd, dddd for the weekday).
std::string GanttFormatDate(TGanttTime aTime, std::string_view aFormat);
// The date in a strftime-style format (%Y %y %m %d %e %b %B %a %A %H %I %M %S %L %p %j %U %W %w %u %V %%).
std::string GanttStrftime(TGanttTime aTime, std::string_view aFormat);
// "2024-01-05", or "2024-01-05T09:30:00" with aWithTime.
std::string GanttIso(TGanttTime aTime, bool aWithTime);

enum class TGanttUnit : std::uint8_t { guMilli, guSecond, guMinute, guHour, guDay, guWeek, guMonth, guYear };
// Days and weeks keep the time of day and round to whole days; months and years keep the day of the month
// where it exists (31 January plus a month is 29 February in a leap year).
TGanttTime GanttAdd(TGanttTime aTime, double aAmount, TGanttUnit aUnit);

struct TGanttDuration {
    double Amount = 0;
    TGanttUnit Unit = TGanttUnit::guDay;
};
// "3d", "1.5w", "2M" (months), "90m" (minutes), "250ms", "1y"; nothing for anything else.
std::optional<TGanttDuration> GanttParseDuration(std::string_view aText);

// Monday = 1 ... Sunday = 7 for an English weekday name in any case; 0 when it is none.
int GanttWeekdayNumber(std::string_view aName);
std::string_view GanttWeekdayName(int aIsoWeekday);  // "monday" ... "sunday"

}  // namespace Orvex
