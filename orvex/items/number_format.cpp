#include "orvex/items/number_format.h"

#include <fmt/format.h>

#include <cmath>
#include <locale>

namespace Orvex {

namespace {

struct TPattern {
    std::string Prefix;
    std::string Suffix;
    int MinInteger = 0;   // '0's before the separator
    int MinDecimals = 0;  // '0's after it
    int MaxDecimals = 0;  // '0's and '#'s after it
    bool Grouping = false;
};

bool IsPatternChar(char c) {
    return c == '0' || c == '#' || c == '.' || c == ',';
}

TPattern ParsePattern(std::string_view pattern) {
    TPattern p;
    std::size_t first = 0;
    while (first < pattern.size() && !IsPatternChar(pattern[first])) ++first;
    std::size_t last = first;
    while (last < pattern.size() && IsPatternChar(pattern[last])) ++last;
    p.Prefix = std::string(pattern.substr(0, first));
    p.Suffix = std::string(pattern.substr(last));
    bool decimals = false;
    for (std::size_t i = first; i < last; ++i) {
        const char c = pattern[i];
        if (c == '.') {
            decimals = true;
        } else if (c == ',') {
            if (!decimals) p.Grouping = true;
        } else if (decimals) {
            ++p.MaxDecimals;
            if (c == '0') p.MinDecimals = p.MaxDecimals;
        } else if (c == '0') {
            ++p.MinInteger;
        }
    }
    return p;
}

}  // namespace

std::string FormatNumber(double value, std::string_view pattern) {
    if (pattern.find_first_of("0#") == std::string_view::npos) pattern = kDefaultNumberFormat;
    const TPattern p = ParsePattern(pattern);
    if (!std::isfinite(value)) value = 0.0;
    std::string digits = fmt::format("{:.{}f}", std::fabs(value), p.MaxDecimals);
    std::string integer = digits.substr(0, digits.find('.'));
    std::string fraction = p.MaxDecimals > 0 ? digits.substr(digits.find('.') + 1) : std::string{};
    while (static_cast<int>(fraction.size()) > p.MinDecimals && fraction.back() == '0') fraction.pop_back();
    if (integer == "0" && p.MinInteger == 0 && !fraction.empty()) integer.clear();
    while (static_cast<int>(integer.size()) < p.MinInteger) integer.insert(integer.begin(), '0');
    const auto& punct = std::use_facet<std::numpunct<char>>(std::locale());
    if (p.Grouping) {
        const char sep = punct.thousands_sep();
        for (int at = static_cast<int>(integer.size()) - 3; at > 0; at -= 3)
            integer.insert(static_cast<std::size_t>(at), 1, sep);
    }
    // "-0.00" would read as a negative measure: a value that rounds to zero carries no sign.
    const bool negative = value < 0.0 && digits.find_first_not_of("0.") != std::string::npos;
    std::string out = p.Prefix;
    if (negative) out += '-';
    out += integer.empty() && fraction.empty() ? "0" : integer;
    if (!fraction.empty()) out += punct.decimal_point() + fraction;
    return out + p.Suffix;
}

}  // namespace Orvex
