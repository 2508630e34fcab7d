#include "orvex/core/numeric.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace Qvl::Utils {
namespace {

constexpr double kInt64Max = 9223372036854775807.0;

std::int64_t SaturatingToInt64(double x) {
    if (std::isnan(x)) return 0;
    if (x >= kInt64Max) return std::numeric_limits<std::int64_t>::max();
    if (x <= -kInt64Max) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(x);
}

std::int32_t RoundToInt32(double x) {
    const std::int64_t r = RoundHalfEven(x);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(r, std::numeric_limits<std::int32_t>::min(),
                                                              std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

std::int64_t RoundHalfEven(double x) {
    // nearbyint follows the default rounding mode, round-to-nearest-even.
    return SaturatingToInt64(std::nearbyint(x));
}

std::int64_t SatAdd(std::int64_t a, std::int64_t b) {
    std::int64_t r = 0;
    if (!__builtin_add_overflow(a, b, &r)) return r;
    return b > 0 ? std::numeric_limits<std::int64_t>::max() : std::numeric_limits<std::int64_t>::min();
}

std::int64_t SatSub(std::int64_t a, std::int64_t b) {
    std::int64_t r = 0;
    if (!__builtin_sub_overflow(a, b, &r)) return r;
    return b < 0 ? std::numeric_limits<std::int64_t>::max() : std::numeric_limits<std::int64_t>::min();
}

std::int64_t SatMul(std::int64_t a, std::int64_t b) {
    std::int64_t r = 0;
    if (!__builtin_mul_overflow(a, b, &r)) return r;
    return (a < 0) == (b < 0) ? std::numeric_limits<std::int64_t>::max()
                              : std::numeric_limits<std::int64_t>::min();
}

std::int64_t QVRound(float x) {
    const double value = static_cast<double>(x);
    const double whole = std::trunc(value);
    return SaturatingToInt64(value - whole >= 0.5 ? whole + 1.0 : whole);
}

std::int64_t MathRound(double x) {
    return SaturatingToInt64(std::round(x));
}

std::int32_t MulDiv(std::int32_t a, std::int32_t b, std::int32_t c) {
    if (c == 0) return -1;
    const std::int64_t product = static_cast<std::int64_t>(a) * b;
    std::int64_t quotient = product / c;
    const std::int64_t remainder = product % c;
    // Half away from zero: compare twice the remainder with the divisor, both as magnitudes.
    if (2 * std::llabs(remainder) >= std::llabs(static_cast<std::int64_t>(c)))
        quotient += ((product < 0) != (c < 0)) ? -1 : 1;
    if (quotient > std::numeric_limits<std::int32_t>::max() ||
        quotient < std::numeric_limits<std::int32_t>::min())
        return -1;
    return static_cast<std::int32_t>(quotient);
}

double RoundTo3Decimals(double x) {
    if (!std::isfinite(x)) return 0.0;
    const double scaled = x * 1000.0;
    if (std::fabs(scaled) >= kInt64Max) return x;
    return std::nearbyint(scaled) / 1000.0;
}

std::int64_t Distance(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2) {
    if (x1 == x2) return y2 >= y1 ? y2 - y1 : y1 - y2;
    if (y1 == y2) return x2 >= x1 ? x2 - x1 : x1 - x2;
    const double dx = static_cast<double>(x2) - static_cast<double>(x1);
    const double dy = static_cast<double>(y2) - static_cast<double>(y1);
    return RoundHalfEven(std::sqrt(dx * dx + dy * dy));
}

float Distance(float x1, float y1, float x2, float y2) {
    return static_cast<float>(std::hypot(static_cast<double>(x2) - x1, static_cast<double>(y2) - y1));
}

bool SamePoint(float a, float b) {
    return std::fabs(a - b) < 0.0001f;
}

double Median(std::span<const double> values) {
    if (values.empty()) return 0.0;
    std::vector<double> sorted(values.begin(), values.end());
    std::sort(sorted.begin(), sorted.end());
    const std::size_t mid = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[mid] : (sorted[mid - 1] + sorted[mid]) / 2.0;
}

std::uint32_t StrToCardinal(std::string_view text) {
    const std::string original(text);
    auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    int base = 10;
    if (text.starts_with('$')) {
        base = 16;
        text.remove_prefix(1);
    } else if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, value, base);
    if (text.empty() || ec != std::errc() || ptr != end || value > std::numeric_limits<std::uint32_t>::max())
        throw std::invalid_argument("'" + original + "' is not a valid unsigned 32-bit value");
    return static_cast<std::uint32_t>(value);
}

std::int64_t AdjustGrid(std::int64_t v, std::int64_t g) {
    assert(g != 0 && "a grid step is never zero");
    if (g == 0) return v;
    const std::int64_t q = v / g;
    const std::int64_t r = v % g;
    return r > g / 2 ? g * (q + 1) : g * q;
}

std::int64_t AdjustGrid(std::int64_t v, std::int64_t g, bool up) {
    assert(g != 0 && "a grid step is never zero");
    if (g == 0) return v;
    std::int64_t q = v / g;
    if (up)
        ++q;
    else if (v % g == 0)
        --q;
    return g * std::max<std::int64_t>(q, 0);
}

std::int32_t ScalePos(std::int32_t i, std::int32_t dpi) {
    if (dpi == 96) return i;
    return RoundToInt32(static_cast<double>(i) * dpi / 96.0);
}

float ScalePos(float f, std::int32_t dpi) {
    if (dpi == 96) return f;
    return static_cast<float>(static_cast<double>(f) * dpi / 96.0);
}

std::int32_t RevScalePos(std::int32_t i, std::int32_t dpi) {
    if (dpi == 96 || dpi == 0) return i;
    return RoundToInt32(static_cast<double>(i) * 96.0 / dpi);
}

}  // namespace Qvl::Utils
