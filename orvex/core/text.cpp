#include "orvex/core/text.h"

#include <array>
#include <cstdint>

namespace Qvl::Utils {
namespace {

constexpr bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
constexpr char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr char UpperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Length of the valid UTF-8 sequence at the start of text, or 0 when it is not valid.
std::size_t Utf8SequenceLength(std::string_view text) {
    const auto b0 = static_cast<unsigned char>(text[0]);
    if (b0 < 0x80) return 1;
    std::size_t len = 0;
    std::uint32_t cp = 0;
    if ((b0 & 0xE0) == 0xC0) {
        len = 2, cp = b0 & 0x1FU;
    } else if ((b0 & 0xF0) == 0xE0) {
        len = 3, cp = b0 & 0x0FU;
    } else if ((b0 & 0xF8) == 0xF0) {
        len = 4, cp = b0 & 0x07U;
    } else {
        return 0;
    }
    if (text.size() < len) return 0;
    for (std::size_t i = 1; i < len; ++i) {
        const auto b = static_cast<unsigned char>(text[i]);
        if ((b & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (b & 0x3FU);
    }
    // Overlong forms, surrogates and values beyond U+10FFFF are not valid UTF-8.
    static constexpr std::array<std::uint32_t, 5> kMinimum{0, 0, 0x80, 0x800, 0x10000};
    if (cp < kMinimum[len] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
    return len;
}

void AppendUtf8(std::string& out, std::uint32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

// Windows-1252 bytes 0x80..0x9F; the five unassigned ones map to themselves as C1 controls.
constexpr std::array<std::uint16_t, 32> kCp1252High{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::string ToLowerAscii(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = LowerAscii(c);
    return out;
}

std::string ToUpperAscii(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = UpperAscii(c);
    return out;
}

bool SameTextIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (LowerAscii(a[i]) != LowerAscii(b[i])) return false;
    return true;
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && SameTextIgnoringCase(text.substr(0, prefix.size()), prefix);
}

bool IsValidUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t len = Utf8SequenceLength(text);
        if (len == 0) return false;
        text.remove_prefix(len);
    }
    return true;
}

std::size_t Utf16Length(std::string_view text) {
    std::size_t units = 0;
    while (!text.empty()) {
        const std::size_t len = Utf8SequenceLength(text);
        units += len == 4 ? 2 : 1;
        text.remove_prefix(len == 0 ? 1 : len);
    }
    return units;
}

std::string Windows1252ToUtf8(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 2);
    for (char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (b < 0x80)
            out += c;
        else if (b < 0xA0)
            AppendUtf8(out, kCp1252High[b - 0x80]);
        else
            AppendUtf8(out, b);
    }
    return out;
}

std::string DecodeTextFile(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    if (IsValidUtf8(bytes)) return std::string(bytes);
    return Windows1252ToUtf8(bytes);
}

std::string Base64Encode(std::string_view bytes) {
    static constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    std::size_t i = 0;
    for (; i + 2 < bytes.size(); i += 3) {
        const std::uint32_t n = (static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << 16) |
                                (static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + 1])) << 8) |
                                static_cast<unsigned char>(bytes[i + 2]);
        out += kAlphabet[(n >> 18) & 63];
        out += kAlphabet[(n >> 12) & 63];
        out += kAlphabet[(n >> 6) & 63];
        out += kAlphabet[n & 63];
    }
    if (const std::size_t rest = bytes.size() - i; rest > 0) {
        std::uint32_t n = static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << 16;
        if (rest == 2) n |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i + 1])) << 8;
        out += kAlphabet[(n >> 18) & 63];
        out += kAlphabet[(n >> 12) & 63];
        out += rest == 2 ? kAlphabet[(n >> 6) & 63] : '=';
        out += '=';
    }
    return out;
}

}  // namespace Qvl::Utils
