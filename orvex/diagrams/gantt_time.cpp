// Civil-time arithmetic, dayjs-style date formats read strictly, the browser's format-less date forms, and
// strftime-style axis labels.
//
// [SECTION] Calendar
// [SECTION] Format tokens
// [SECTION] Strict reading
// [SECTION] Format-less reading
// [SECTION] strftime
// [SECTION] Durations and weekdays
#include "orvex/diagrams/gantt_time.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <vector>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;

// [SECTION] Calendar

constexpr std::array<std::string_view, 12> kMonths{"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};
// Sunday first, as a browser numbers weekdays.
constexpr std::array<std::string_view, 7> kWeekdays{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                    "Thursday", "Friday", "Saturday"};

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
    const std::int64_t q = a / b;
    return (a % b != 0 && ((a < 0) != (b < 0))) ? q - 1 : q;
}

// Days since 1970-01-01 of a proleptic Gregorian date (month 1 to 12).
std::int64_t DaysFromCivil(std::int64_t y, int m, int d) {
    y -= m <= 2 ? 1 : 0;
    const std::int64_t era = FloorDiv(y, 400);
    const std::int64_t yoe = y - era * 400;
    const std::int64_t doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

void CivilFromDays(std::int64_t z, int& year, int& month, int& day) {
    z += 719468;
    const std::int64_t era = FloorDiv(z, 146097);
    const std::int64_t doe = z - era * 146097;
    const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const std::int64_t mp = (5 * doy + 2) / 153;
    day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    year = static_cast<int>(yoe + era * 400 + (month <= 2 ? 1 : 0));
}

std::string Pad(std::int64_t value, int width, char fill = '0') {
    std::string digits = std::to_string(value < 0 ? -value : value);
    while (static_cast<int>(digits.size()) < width) digits.insert(digits.begin(), fill);
    return value < 0 ? "-" + digits : digits;
}

int Weekday0(TGanttTime t) {  // 0 for Sunday
    return GanttIsoWeekday(t) % 7;
}

// [SECTION] Format tokens

// Longest first, so "MMMM" is not read as "MM" twice.
constexpr std::array<std::string_view, 31> kTokens{
    "YYYY", "MMMM", "dddd", "SSS", "MMM", "ddd", "YY", "MM", "DD", "Do", "dd", "HH", "hh", "kk", "mm", "ss",
    "SS",   "M",    "D",    "d",   "H",   "h",   "k",  "m",  "s",  "S",  "A",  "a",  "X",  "x",  "Q"};

struct TFormatPart {
    std::string_view Token;  // empty for a literal
    std::string Literal;
};

std::vector<TFormatPart> SplitFormat(std::string_view format) {
    std::vector<TFormatPart> parts;
    auto addLiteral = [&](std::string_view text) {
        if (parts.empty() || !parts.back().Token.empty()) parts.push_back({});
        parts.back().Literal += text;
    };
    std::size_t i = 0;
    while (i < format.size()) {
        if (format[i] == '[') {
            const std::size_t close = format.find(']', i);
            if (close != std::string_view::npos) {
                addLiteral(format.substr(i + 1, close - i - 1));
                i = close + 1;
                continue;
            }
        }
        bool matched = false;
        for (const std::string_view token : kTokens)
            if (format.substr(i, token.size()) == token) {
                parts.push_back({token, {}});
                i += token.size();
                matched = true;
                break;
            }
        if (!matched) addLiteral(format.substr(i++, 1));
    }
    return parts;
}

std::string Ordinal(int n) {
    const int v = n % 100;
    const char* suffix = (v >= 11 && v <= 13) ? "th"
                         : n % 10 == 1        ? "st"
                         : n % 10 == 2        ? "nd"
                         : n % 10 == 3        ? "rd"
                                              : "th";
    return std::to_string(n) + suffix;
}

std::string FormatToken(std::string_view token, TGanttTime t, const TGanttCivil& c) {
    const int h12 = c.Hour % 12 == 0 ? 12 : c.Hour % 12;
    if (token == "YYYY") return Pad(c.Year, 4);
    if (token == "YY") {
        const std::string year = std::to_string(c.Year);
        return year.size() > 2 ? year.substr(year.size() - 2) : year;
    }
    if (token == "MMMM") return std::string(kMonths[static_cast<std::size_t>(c.Month - 1)]);
    if (token == "MMM") return std::string(kMonths[static_cast<std::size_t>(c.Month - 1)].substr(0, 3));
    if (token == "MM") return Pad(c.Month, 2);
    if (token == "M") return std::to_string(c.Month);
    if (token == "DD") return Pad(c.Day, 2);
    if (token == "D") return std::to_string(c.Day);
    if (token == "Do") return Ordinal(c.Day);
    if (token == "dddd") return std::string(kWeekdays[static_cast<std::size_t>(Weekday0(t))]);
    if (token == "ddd") return std::string(kWeekdays[static_cast<std::size_t>(Weekday0(t))].substr(0, 3));
    if (token == "dd") return std::string(kWeekdays[static_cast<std::size_t>(Weekday0(t))].substr(0, 2));
    if (token == "d") return std::to_string(Weekday0(t));
    if (token == "HH") return Pad(c.Hour, 2);
    if (token == "H") return std::to_string(c.Hour);
    if (token == "hh") return Pad(h12, 2);
    if (token == "h") return std::to_string(h12);
    if (token == "kk") return Pad(c.Hour == 0 ? 24 : c.Hour, 2);
    if (token == "k") return std::to_string(c.Hour == 0 ? 24 : c.Hour);
    if (token == "mm") return Pad(c.Minute, 2);
    if (token == "m") return std::to_string(c.Minute);
    if (token == "ss") return Pad(c.Second, 2);
    if (token == "s") return std::to_string(c.Second);
    if (token == "SSS") return Pad(c.Milli, 3);
    if (token == "A") return c.Hour < 12 ? "AM" : "PM";
    if (token == "a") return c.Hour < 12 ? "am" : "pm";
    if (token == "Q") return std::to_string((c.Month - 1) / 3 + 1);
    if (token == "X") return std::to_string(FloorDiv(t, 1000));
    if (token == "x") return std::to_string(t);
    return std::string(token);  // S and SS have no formatting of their own
}

// [SECTION] Strict reading

struct TReadFields {
    std::optional<int> Year, Month, Day, Hour, Minute, Second, Milli;
    std::optional<bool> Afternoon;
};

std::size_t CountDigits(std::string_view text, std::size_t at, std::size_t most) {
    std::size_t n = 0;
    while (at + n < text.size() && n < most && text[at + n] >= '0' && text[at + n] <= '9') ++n;
    return n;
}

std::size_t CountLetters(std::string_view text, std::size_t at) {
    std::size_t n = 0;
    while (at + n < text.size() &&
           ((text[at + n] >= 'a' && text[at + n] <= 'z') || (text[at + n] >= 'A' && text[at + n] <= 'Z')))
        ++n;
    return n;
}

int ToInt(std::string_view digits) {
    int value = 0;
    for (const char c : digits) value = value * 10 + (c - '0');
    return value;
}

// Reads one token's digits: exactly aLeast..aMost of them.
bool ReadNumber(std::string_view text, std::size_t& at, std::size_t least, std::size_t most, int& value) {
    const std::size_t n = CountDigits(text, at, most);
    if (n < least) return false;
    value = ToInt(text.substr(at, n));
    at += n;
    return true;
}

bool Store(std::optional<int>& field, int value) {
    field = value;
    return true;
}

bool ReadToken(std::string_view token, std::string_view text, std::size_t& at, TReadFields& f) {
    int v = 0;
    if (token == "YYYY") return ReadNumber(text, at, 4, 4, v) && Store(f.Year, v);
    if (token == "YY") return ReadNumber(text, at, 2, 2, v) && Store(f.Year, v + (v > 68 ? 1900 : 2000));
    if (token == "MM") return ReadNumber(text, at, 2, 2, v) && Store(f.Month, v);
    if (token == "M") return ReadNumber(text, at, 1, 2, v) && Store(f.Month, v);
    if (token == "DD") return ReadNumber(text, at, 2, 2, v) && Store(f.Day, v);
    if (token == "D") return ReadNumber(text, at, 1, 2, v) && Store(f.Day, v);
    if (token == "HH" || token == "H" || token == "hh" || token == "h")
        return ReadNumber(text, at, 1, 2, v) && Store(f.Hour, v);
    if (token == "mm" || token == "m") return ReadNumber(text, at, 1, 2, v) && Store(f.Minute, v);
    if (token == "ss" || token == "s") return ReadNumber(text, at, 1, 2, v) && Store(f.Second, v);
    if (token == "SSS") return ReadNumber(text, at, 3, 3, v) && Store(f.Milli, v);
    if (token == "SS") return ReadNumber(text, at, 2, 2, v) && Store(f.Milli, v * 10);
    if (token == "S") return ReadNumber(text, at, 1, 1, v) && Store(f.Milli, v * 100);
    if (token == "Q") return ReadNumber(text, at, 1, 1, v) && Store(f.Month, (v - 1) * 3 + 1);
    if (token == "Do") {
        if (!ReadNumber(text, at, 1, 2, v)) return false;
        f.Day = v;
        at += CountLetters(text, at);
        return true;
    }
    if (token == "d") return ReadNumber(text, at, 1, 1, v);  // the weekday is checked by formatting back
    if (token == "MMM" || token == "MMMM" || token == "A" || token == "a" || token == "dd" ||
        token == "ddd" || token == "dddd") {
        const std::size_t n = CountLetters(text, at);
        const std::string_view word = text.substr(at, n);
        at += n;
        if (token == "A" || token == "a") {
            f.Afternoon = word == (token == "A" ? "PM" : "pm");
            return n > 0;
        }
        if (token.starts_with("d")) return n > 0;
        for (std::size_t m = 0; m < kMonths.size(); ++m)
            if (word == (token == "MMM" ? kMonths[m].substr(0, 3) : kMonths[m])) {
                f.Month = static_cast<int>(m) + 1;
                return true;
            }
        return false;
    }
    return false;  // X, x and k only stand alone or only format
}

}  // namespace

// [SECTION] Calendar (public)

TGanttTime GanttFromCivil(const TGanttCivil& c) {
    const std::int64_t months = static_cast<std::int64_t>(c.Year) * 12 + (c.Month - 1);
    const std::int64_t year = FloorDiv(months, 12);
    const int month = static_cast<int>(months - year * 12) + 1;
    const std::int64_t days = DaysFromCivil(year, month, 1) + (c.Day - 1);
    return days * kGanttMsPerDay + static_cast<std::int64_t>(c.Hour) * 3'600'000 +
           static_cast<std::int64_t>(c.Minute) * 60'000 + static_cast<std::int64_t>(c.Second) * 1000 +
           c.Milli;
}

TGanttCivil GanttToCivil(TGanttTime t) {
    const std::int64_t days = FloorDiv(t, kGanttMsPerDay);
    std::int64_t ms = t - days * kGanttMsPerDay;
    TGanttCivil c;
    CivilFromDays(days, c.Year, c.Month, c.Day);
    c.Hour = static_cast<int>(ms / 3'600'000);
    ms %= 3'600'000;
    c.Minute = static_cast<int>(ms / 60'000);
    ms %= 60'000;
    c.Second = static_cast<int>(ms / 1000);
    c.Milli = static_cast<int>(ms % 1000);
    return c;
}

TGanttTime GanttStartOfDay(TGanttTime t) {
    return FloorDiv(t, kGanttMsPerDay) * kGanttMsPerDay;
}

int GanttIsoWeekday(TGanttTime t) {
    // 1970-01-01 was a Thursday (4).
    const std::int64_t days = FloorDiv(t, kGanttMsPerDay);
    return static_cast<int>(((days % 7) + 7 + 3) % 7) + 1;
}

int GanttDaysInMonth(int year, int month) {
    return static_cast<int>(DaysFromCivil(month == 12 ? year + 1 : year, month == 12 ? 1 : month + 1, 1) -
                            DaysFromCivil(year, month, 1));
}

std::optional<TGanttTime> GanttParseDate(std::string_view aText, std::string_view aFormat,
                                         TGanttTime aToday) {
    if (aFormat.empty() || aText.empty()) return std::nullopt;
    if (aFormat == "X" || aFormat == "x") {
        const bool negative = aText.front() == '-';
        const std::string_view digits = aText.substr(negative ? 1 : 0);
        if (digits.empty() || digits.size() > 15 || CountDigits(digits, 0, digits.size()) != digits.size())
            return std::nullopt;
        std::int64_t value = 0;
        for (const char c : digits) value = value * 10 + (c - '0');
        if (negative) value = -value;
        const TGanttTime t = aFormat == "X" ? value * 1000 : value;
        if (GanttFormatDate(t, aFormat) != aText) return std::nullopt;
        return t;
    }
    TReadFields f;
    std::size_t at = 0;
    for (const TFormatPart& part : SplitFormat(aFormat)) {
        if (part.Token.empty()) {
            if (aText.substr(at, part.Literal.size()) != part.Literal) return std::nullopt;
            at += part.Literal.size();
        } else if (!ReadToken(part.Token, aText, at, f)) {
            return std::nullopt;
        }
    }
    if (at != aText.size()) return std::nullopt;

    // What the format leaves out comes from today, as a browser's date library fills it.
    const TGanttCivil today = GanttToCivil(aToday);
    TGanttCivil c;
    c.Year = f.Year.value_or(today.Year);
    c.Day = f.Day.value_or(!f.Year && !f.Month ? today.Day : 1);
    if (f.Year && !f.Month)
        c.Month = 1;
    else
        c.Month = f.Month.value_or(today.Month);
    c.Hour = f.Hour.value_or(0);
    if (f.Afternoon) {
        if (*f.Afternoon && c.Hour < 12) c.Hour += 12;
        if (!*f.Afternoon && c.Hour == 12) c.Hour = 0;
    }
    c.Minute = f.Minute.value_or(0);
    c.Second = f.Second.value_or(0);
    c.Milli = f.Milli.value_or(0);
    const TGanttTime t = GanttFromCivil(c);
    // Strict: what does not format back to the same text (31 April, hour 25) is no date.
    if (GanttFormatDate(t, aFormat) != aText) return std::nullopt;
    return t;
}

std::string GanttFormatDate(TGanttTime aTime, std::string_view aFormat) {
    const TGanttCivil c = GanttToCivil(aTime);
    std::string out;
    for (const TFormatPart& part : SplitFormat(aFormat))
        out += part.Token.empty() ? part.Literal : FormatToken(part.Token, aTime, c);
    return out;
}

std::string GanttIso(TGanttTime aTime, bool aWithTime) {
    const TGanttCivil c = GanttToCivil(aTime);
    std::string out = Pad(c.Year, 4) + "-" + Pad(c.Month, 2) + "-" + Pad(c.Day, 2);
    if (aWithTime) out += "T" + Pad(c.Hour, 2) + ":" + Pad(c.Minute, 2) + ":" + Pad(c.Second, 2);
    return out;
}

// [SECTION] Format-less reading

std::optional<TGanttTime> GanttParseLooseDate(std::string_view aText) {
    static const TRegex kIso(
        R"(^(\d{4})(?:-(\d{2})(?:-(\d{2}))?)?(?:[T ](\d{2}):(\d{2})(?::(\d{2})(?:\.(\d{1,3})\d*)?)?)?(Z|[+-]\d{2}:?\d{2})?$)");
    static const TRegex kSlashYearFirst(
        R"(^(\d{4})[/-](\d{1,2})[/-](\d{1,2})(?:\s+(\d{1,2}):(\d{2})(?::(\d{2}))?)?$)");
    static const TRegex kSlashMonthFirst(
        R"(^(\d{1,2})/(\d{1,2})/(\d{4})(?:\s+(\d{1,2}):(\d{2})(?::(\d{2}))?)?$)");
    static const TRegex kMonthName(R"(^([A-Za-z]{3,9})\.?\s+(\d{1,2})(?:st|nd|rd|th)?,?\s+(\d{4})$)");
    static const TRegex kDayMonthName(R"(^(\d{1,2})\s+([A-Za-z]{3,9})\.?,?\s+(\d{4})$)");
    const std::string_view text = Qvl::Utils::Trim(aText);
    TRegexMatch m;
    TGanttCivil c;
    auto num = [&](std::size_t g, int fallback) { return m.Matched(g) ? ToInt(m.Group(g)) : fallback; };
    auto monthOf = [](std::string_view name) {
        const std::string lower = Qvl::Utils::ToLowerAscii(name);
        for (std::size_t i = 0; i < kMonths.size(); ++i)
            if (Qvl::Utils::ToLowerAscii(kMonths[i]).starts_with(lower) && lower.size() >= 3)
                return static_cast<int>(i) + 1;
        return 0;
    };
    std::int64_t offsetMinutes = 0;
    if (kIso.MatchAt(text, 0, m)) {
        c = {num(1, 1970), num(2, 1), num(3, 1), num(4, 0), num(5, 0), num(6, 0), 0};
        if (m.Matched(7)) {
            std::string milli(m.Group(7));
            milli.resize(3, '0');
            c.Milli = ToInt(milli);
        }
        if (m.Matched(8) && m.Group(8) != "Z") {
            const std::string_view z = m.Group(8);
            const int hh = ToInt(z.substr(1, 2));
            const int mm = ToInt(z.substr(z.size() - 2));
            offsetMinutes = (z[0] == '-' ? -1 : 1) * (hh * 60 + mm);
        }
    } else if (kSlashYearFirst.MatchAt(text, 0, m)) {
        c = {num(1, 1970), num(2, 1), num(3, 1), num(4, 0), num(5, 0), num(6, 0), 0};
    } else if (kSlashMonthFirst.MatchAt(text, 0, m)) {
        c = {num(3, 1970), num(1, 1), num(2, 1), num(4, 0), num(5, 0), num(6, 0), 0};
    } else if (kMonthName.MatchAt(text, 0, m)) {
        c = {num(3, 1970), monthOf(m.Group(1)), num(2, 1), 0, 0, 0, 0};
    } else if (kDayMonthName.MatchAt(text, 0, m)) {
        c = {num(3, 1970), monthOf(m.Group(2)), num(1, 1), 0, 0, 0, 0};
    } else {
        return std::nullopt;
    }
    // A browser takes 30 February as 1 March, but no month 13 and no hour 25.
    if (c.Month < 1 || c.Month > 12 || c.Day < 1 || c.Day > 31 || c.Hour > 24 || c.Minute > 59 ||
        c.Second > 59)
        return std::nullopt;
    if (c.Year > 10000) return std::nullopt;
    return GanttFromCivil(c) - offsetMinutes * 60'000;
}

// [SECTION] strftime

std::string GanttStrftime(TGanttTime aTime, std::string_view aFormat) {
    const TGanttCivil c = GanttToCivil(aTime);
    const int weekday0 = Weekday0(aTime);
    const int yearDay = static_cast<int>(FloorDiv(aTime, kGanttMsPerDay) - DaysFromCivil(c.Year, 1, 1)) + 1;
    std::string out;
    for (std::size_t i = 0; i < aFormat.size(); ++i) {
        if (aFormat[i] != '%' || i + 1 >= aFormat.size()) {
            out += aFormat[i];
            continue;
        }
        char pad = 0;  // 0: the directive's own padding
        char d = aFormat[++i];
        if ((d == '-' || d == '_' || d == '0') && i + 1 < aFormat.size()) {
            pad = d;
            d = aFormat[++i];
        }
        auto number = [&](int value, int width, char ownFill) {
            if (pad == '-') return std::to_string(value);
            return Pad(value, width, pad == '_' ? ' ' : pad == '0' ? '0' : ownFill);
        };
        const std::string_view month = kMonths[static_cast<std::size_t>(c.Month - 1)];
        const std::string_view day = kWeekdays[static_cast<std::size_t>(weekday0)];
        switch (d) {
            case 'Y':
                out += std::to_string(c.Year);
                break;
            case 'y':
                out += number(c.Year % 100, 2, '0');
                break;
            case 'm':
                out += number(c.Month, 2, '0');
                break;
            case 'd':
                out += number(c.Day, 2, '0');
                break;
            case 'e':
                out += number(c.Day, 2, ' ');
                break;
            case 'b':
                out += month.substr(0, 3);
                break;
            case 'B':
                out += month;
                break;
            case 'a':
                out += day.substr(0, 3);
                break;
            case 'A':
                out += day;
                break;
            case 'H':
                out += number(c.Hour, 2, '0');
                break;
            case 'I':
                out += number(c.Hour % 12 == 0 ? 12 : c.Hour % 12, 2, '0');
                break;
            case 'M':
                out += number(c.Minute, 2, '0');
                break;
            case 'S':
                out += number(c.Second, 2, '0');
                break;
            case 'L':
                out += number(c.Milli, 3, '0');
                break;
            case 'p':
                out += c.Hour < 12 ? "AM" : "PM";
                break;
            case 'j':
                out += number(yearDay, 3, '0');
                break;
            case 'w':
                out += std::to_string(weekday0);
                break;
            case 'u':
                out += std::to_string(weekday0 == 0 ? 7 : weekday0);
                break;
            case 'U':
                out += number((yearDay + 6 - weekday0) / 7, 2, '0');
                break;
            case 'W':
                out += number((yearDay + 6 - (weekday0 + 6) % 7) / 7, 2, '0');
                break;
            case 'V': {
                // ISO week: the week holding the year's first Thursday is week 1.
                const TGanttTime thursday = aTime + (4 - GanttIsoWeekday(aTime)) * kGanttMsPerDay;
                const TGanttCivil tc = GanttToCivil(thursday);
                const auto first = DaysFromCivil(tc.Year, 1, 1);
                out += number(static_cast<int>((FloorDiv(thursday, kGanttMsPerDay) - first) / 7) + 1, 2, '0');
                break;
            }
            case 'Q':
                out += std::to_string(aTime);
                break;
            case 's':
                out += std::to_string(FloorDiv(aTime, 1000));
                break;
            case '%':
                out += '%';
                break;
            default:
                out += '%';
                out += d;
                break;
        }
    }
    return out;
}

// [SECTION] Durations and weekdays

TGanttTime GanttAdd(TGanttTime aTime, double aAmount, TGanttUnit aUnit) {
    // A browser's dates end 100 million days either side of 1970; an amount that leaves them changes
    // nothing, as a date library leaves a date it cannot move.
    static constexpr double kLimitDays = 1e8;
    static constexpr std::array<double, 8> kDaysPerUnit{
        1.0 / 86'400'000, 1.0 / 86'400, 1.0 / 1440, 1.0 / 24, 1, 7, 31, 366};
    const double span = aAmount * kDaysPerUnit[static_cast<std::size_t>(aUnit)];
    if (!std::isfinite(span) ||
        std::abs(span + static_cast<double>(aTime) / static_cast<double>(kGanttMsPerDay)) > kLimitDays)
        return aTime;
    auto addDays = [&](double days) {
        TGanttCivil c = GanttToCivil(aTime);
        c.Day += static_cast<int>(std::floor(days + 0.5));
        return GanttFromCivil(c);
    };
    auto addMonths = [&](std::int64_t months) {
        TGanttCivil c = GanttToCivil(aTime);
        const int day = c.Day;
        c.Day = 1;
        c.Month += static_cast<int>(months);
        TGanttCivil landed = GanttToCivil(GanttFromCivil(c));
        landed.Day = std::min(day, GanttDaysInMonth(landed.Year, landed.Month));
        return GanttFromCivil(landed);
    };
    switch (aUnit) {
        case TGanttUnit::guMilli:
            return aTime + static_cast<TGanttTime>(std::trunc(aAmount));
        case TGanttUnit::guSecond:
            return aTime + static_cast<TGanttTime>(std::trunc(aAmount * 1000));
        case TGanttUnit::guMinute:
            return aTime + static_cast<TGanttTime>(std::trunc(aAmount * 60'000));
        case TGanttUnit::guHour:
            return aTime + static_cast<TGanttTime>(std::trunc(aAmount * 3'600'000));
        case TGanttUnit::guDay:
            return addDays(aAmount);
        case TGanttUnit::guWeek:
            return addDays(aAmount * 7);
        case TGanttUnit::guMonth:
            return addMonths(static_cast<std::int64_t>(std::trunc(aAmount)));
        case TGanttUnit::guYear:
            return addMonths(static_cast<std::int64_t>(std::trunc(aAmount)) * 12);
    }
    return aTime;
}

std::optional<TGanttDuration> GanttParseDuration(std::string_view aText) {
    static const TRegex kDuration(R"(^(\d+(?:\.\d+)?)(ms|[Mdhmswy])$)");
    TRegexMatch m;
    const std::string_view text = Qvl::Utils::Trim(aText);
    if (!kDuration.MatchAt(text, 0, m)) return std::nullopt;
    TGanttDuration d;
    d.Amount = std::strtod(std::string(m.Group(1)).c_str(), nullptr);
    const std::string_view unit = m.Group(2);
    if (unit == "ms")
        d.Unit = TGanttUnit::guMilli;
    else if (unit == "s")
        d.Unit = TGanttUnit::guSecond;
    else if (unit == "m")
        d.Unit = TGanttUnit::guMinute;
    else if (unit == "h")
        d.Unit = TGanttUnit::guHour;
    else if (unit == "d")
        d.Unit = TGanttUnit::guDay;
    else if (unit == "w")
        d.Unit = TGanttUnit::guWeek;
    else if (unit == "M")
        d.Unit = TGanttUnit::guMonth;
    else
        d.Unit = TGanttUnit::guYear;
    return d;
}

int GanttWeekdayNumber(std::string_view aName) {
    const std::string lower = Qvl::Utils::ToLowerAscii(aName);
    for (int i = 1; i <= 7; ++i)
        if (GanttWeekdayName(i) == lower) return i;
    return 0;
}

std::string_view GanttWeekdayName(int aIsoWeekday) {
    static constexpr std::array<std::string_view, 7> kNames{"monday", "tuesday",  "wednesday", "thursday",
                                                            "friday", "saturday", "sunday"};
    return aIsoWeekday >= 1 && aIsoWeekday <= 7 ? kNames[static_cast<std::size_t>(aIsoWeekday - 1)] : "";
}

}  // namespace Orvex
