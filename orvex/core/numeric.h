// Rounding and the small numeric helpers that conversions, hit tests and grid snapping share. Every
// rounding rule of the engine lives here so that no module rounds its own way.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace Qvl::Utils {

// Half to even, saturating at the 64-bit range (NaN gives 0). The rule of unit conversions.
std::int64_t RoundHalfEven(double x);

// trunc(x) + 1 when frac(x) >= 0.5, else trunc(x): half rounds up for positives, while every negative
// value truncates toward zero (-1.5 and -1.7 both give -1). Stored drawings depend on that asymmetry.
std::int64_t QVRound(float x);

std::int64_t MathRound(double x);  // half away from zero
// a x b / c with a 64-bit product, rounded half away from zero; -1 when c is 0 or the result overflows.
std::int32_t MulDiv(std::int32_t a, std::int32_t b, std::int32_t c);

double RoundTo3Decimals(double x);

// Coordinates and lengths in base units stay within +-kMaxCoord (2^60 micrometres, over a billion
// kilometres): a value read from a file or a tool is clamped once on the way in, so that the sum or the
// difference of two never overflows 64 bits and every output (JSON, SVG, painting) shows the same number.
inline constexpr std::int64_t kMaxCoord = std::int64_t{1} << 60;
constexpr std::int64_t ClampCoord(std::int64_t v) {
    return v > kMaxCoord ? kMaxCoord : v < -kMaxCoord ? -kMaxCoord : v;
}
// Saturating 64-bit arithmetic for extents derived from coordinates (a box's far corner, a text's height):
// the result sticks at the 64-bit range instead of wrapping.
std::int64_t SatAdd(std::int64_t a, std::int64_t b);
std::int64_t SatSub(std::int64_t a, std::int64_t b);
std::int64_t SatMul(std::int64_t a,
                    std::int64_t b);  // the precision of numbers in drawing files, half to even

// Exact along an axis; otherwise the Euclidean length rounded half to even.
std::int64_t Distance(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2);
float Distance(float x1, float y1, float x2, float y2);

// v lies between a and b inclusive; the bounds may come in either order.
template <class T>
constexpr bool ValInRange(T v, T a, T b) {
    if (a < b) return a <= v && v <= b;
    if (b < a) return b <= v && v <= a;
    return v == a;
}

bool SamePoint(float a, float b);  // |a - b| < 0.0001

double Median(std::span<const double> values);  // the mean of the middle two for an even count; 0 when empty

// Decimal, or hexadecimal after "$" or "0x"; surrounding blanks allowed. Throws std::invalid_argument
// for anything else, a value above 4294967295 included.
std::uint32_t StrToCardinal(std::string_view text);

// Nearest grid line to v with step g (> 0); a remainder of exactly half a step snaps down.
std::int64_t AdjustGrid(std::int64_t v, std::int64_t g);
// The grid line strictly after (up) or strictly before v, never below 0: keyboard stepping on the grid.
std::int64_t AdjustGrid(std::int64_t v, std::int64_t g, bool up);

// Pixel values designed at 96 dpi, scaled to another resolution (unchanged at 96).
std::int32_t ScalePos(std::int32_t i, std::int32_t dpi);
float ScalePos(float f, std::int32_t dpi);
std::int32_t RevScalePos(std::int32_t i, std::int32_t dpi);  // back from dpi to 96

}  // namespace Qvl::Utils
