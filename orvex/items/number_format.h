// Numbers as dimension and measure labels show them: a pattern of the "0.00" kind, printed with the
// decimal separator of the C++ global locale (std::locale()), so a host that sets a locale gets its comma.
#pragma once

#include <string>
#include <string_view>

namespace Orvex {

// Pattern characters: '0' a digit always shown, '#' a digit shown when significant, '.' the decimal
// separator, ',' (before the separator) grouping by thousands; any other character is copied as it is.
// An empty pattern or one without digit placeholders means "0.00".
std::string FormatNumber(double value, std::string_view pattern);

inline constexpr std::string_view kDefaultNumberFormat = "0.00";

}  // namespace Orvex
