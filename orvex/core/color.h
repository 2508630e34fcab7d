// 32-bit alpha colours (bits 0-7 blue, 8-15 green, 16-23 red, 24-31 alpha; 255 is opaque) and their
// text forms.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Qvl::Types {
using TAlphaColor = std::uint32_t;
using TColor = std::uint32_t;  // the platform's 24-bit colour: red in bits 0-7, green 8-15, blue 16-23

inline constexpr TAlphaColor kOpaqueWhite = 0xFFFFFFFF;
inline constexpr TAlphaColor kOpaqueBlack = 0xFF000000;
}  // namespace Qvl::Types

namespace Qvl::Utils {
using Qvl::Types::TAlphaColor;
using Qvl::Types::TColor;

constexpr TAlphaColor AlphaColor(std::uint8_t r, std::uint8_t g, std::uint8_t b, std::uint8_t a = 255) {
    return (TAlphaColor{a} << 24) | (TAlphaColor{r} << 16) | (TAlphaColor{g} << 8) | TAlphaColor{b};
}
constexpr std::uint8_t AlphaOf(TAlphaColor c) {
    return static_cast<std::uint8_t>(c >> 24);
}
constexpr std::uint8_t RedOf(TAlphaColor c) {
    return static_cast<std::uint8_t>(c >> 16);
}
constexpr std::uint8_t GreenOf(TAlphaColor c) {
    return static_cast<std::uint8_t>(c >> 8);
}
constexpr std::uint8_t BlueOf(TAlphaColor c) {
    return static_cast<std::uint8_t>(c);
}

constexpr TAlphaColor ColorToTAlphaColor(TColor c, std::uint8_t alpha) {
    return AlphaColor(static_cast<std::uint8_t>(c), static_cast<std::uint8_t>(c >> 8),
                      static_cast<std::uint8_t>(c >> 16), alpha);
}
constexpr TAlphaColor ColorToAlphaColor(TColor c) {
    return ColorToTAlphaColor(c, 255);
}
constexpr TColor AlphaColorToColor(TAlphaColor c) {  // drops the alpha
    return TColor{RedOf(c)} | (TColor{GreenOf(c)} << 8) | (TColor{BlueOf(c)} << 16);
}

std::string AlphaColorToHex(TAlphaColor c);  // "#RRGGBBAA", upper-case

// "#RRGGBB" (opaque) or "#RRGGBBAA" (alpha last); a web colour name with or without the "cla" prefix, in
// any case; or a number ("$AARRGGBB", "0xAARRGGBB" or decimal). Sets out to 0 first and returns false
// for anything else, a "#" text of another length included. Never throws.
bool TryParseColor(std::string_view text, TAlphaColor& out);
TAlphaColor ParseColor(std::string_view text);  // TryParseColor's result: 0 when the text is not a colour

// Every "#" removed, then 6 hex digits (RRGGBB, opaque) or 8 in the order AARRGGBB: alpha first, unlike
// TryParseColor. Throws std::invalid_argument for another length or a digit that is not hexadecimal.
TAlphaColor HexToTAlphaColor(std::string_view text);

std::optional<TAlphaColor> NamedColor(std::string_view name);  // web colour names, case-insensitive

}  // namespace Qvl::Utils
