#include "orvex/core/color.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

#include "orvex/core/text.h"

namespace Qvl::Utils {
namespace {

struct TNamedColor {
    std::string_view Name;
    TAlphaColor Color;
};

constexpr TNamedColor kNamedColors[] = {
#include "orvex/core/color_names.inc"
};

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Two hexadecimal digits as a byte, or nothing.
std::optional<std::uint8_t> HexPair(std::string_view pair) {
    const int hi = HexDigit(pair[0]);
    const int lo = HexDigit(pair[1]);
    if (hi < 0 || lo < 0) return std::nullopt;
    return static_cast<std::uint8_t>(hi * 16 + lo);
}

std::uint8_t HexPairOrThrow(std::string_view pair) {
    if (auto value = HexPair(pair)) return *value;
    throw std::invalid_argument("'" + std::string(pair) + "' is not a valid hexadecimal value");
}

// "$AARRGGBB", "0xAARRGGBB" or a decimal number, all 32 bits as given.
std::optional<TAlphaColor> NumericColor(std::string_view text) {
    int base = 10;
    if (text.starts_with('$')) {
        text.remove_prefix(1), base = 16;
    } else if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2), base = 16;
    }
    std::uint64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, value, base);
    if (text.empty() || ec != std::errc() || ptr != end || value > 0xFFFFFFFFULL) return std::nullopt;
    return static_cast<TAlphaColor>(value);
}

}  // namespace

std::string AlphaColorToHex(TAlphaColor c) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out = "#";
    for (std::uint8_t part : {RedOf(c), GreenOf(c), BlueOf(c), AlphaOf(c)}) {
        out += kDigits[part >> 4];
        out += kDigits[part & 0x0F];
    }
    return out;
}

std::optional<TAlphaColor> NamedColor(std::string_view name) {
    const std::string key = ToLowerAscii(name);
    const auto* it = std::lower_bound(std::begin(kNamedColors), std::end(kNamedColors), key,
                                      [](const TNamedColor& c, const std::string& k) { return c.Name < k; });
    if (it != std::end(kNamedColors) && it->Name == key) return it->Color;
    return std::nullopt;
}

bool TryParseColor(std::string_view text, TAlphaColor& out) {
    out = 0;
    text = Trim(text);
    if (text.empty()) return false;
    if (text.front() == '#') {
        if (text.size() != 7 && text.size() != 9) return false;
        std::array<std::uint8_t, 4> parts{0, 0, 0, 255};  // red, green, blue, alpha
        for (std::size_t i = 0; i * 2 + 1 < text.size(); ++i) {
            auto value = HexPair(text.substr(1 + i * 2, 2));
            if (!value) return false;
            parts[i] = *value;
        }
        out = AlphaColor(parts[0], parts[1], parts[2], parts[3]);
        return true;
    }
    std::string_view name = text;
    if (StartsWithIgnoringCase(name, "cla")) name.remove_prefix(3);
    if (auto named = NamedColor(name)) {
        out = *named;
        return true;
    }
    if (auto named = NamedColor(text)) {  // a web name that itself starts with "cla", if one ever does
        out = *named;
        return true;
    }
    if (auto numeric = NumericColor(text)) {
        out = *numeric;
        return true;
    }
    return false;
}

TAlphaColor ParseColor(std::string_view text) {
    TAlphaColor color = 0;
    TryParseColor(text, color);
    return color;
}

TAlphaColor HexToTAlphaColor(std::string_view text) {
    std::string digits;
    for (char c : text)
        if (c != '#') digits += c;
    if (digits.size() == 6) {
        return AlphaColor(HexPairOrThrow(std::string_view(digits).substr(0, 2)),
                          HexPairOrThrow(std::string_view(digits).substr(2, 2)),
                          HexPairOrThrow(std::string_view(digits).substr(4, 2)), 255);
    }
    if (digits.size() == 8) {
        const std::string_view d(digits);
        return AlphaColor(HexPairOrThrow(d.substr(2, 2)), HexPairOrThrow(d.substr(4, 2)),
                          HexPairOrThrow(d.substr(6, 2)), HexPairOrThrow(d.substr(0, 2)));
    }
    throw std::invalid_argument("Formato de color inválido. Use #RRGGBB o #AARRGGBB");
}

}  // namespace Qvl::Utils
