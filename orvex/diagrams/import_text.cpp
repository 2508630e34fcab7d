#include "orvex/diagrams/import_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "orvex/core/color.h"
#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_text.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;

std::string_view Unquote(std::string_view s) {
    s = Trim(s);
    if (s.size() >= 2 && ((s.front() == '"' && s.back() == '"') || (s.front() == '\'' && s.back() == '\'')))
        s = s.substr(1, s.size() - 2);
    return s;
}

void ReplaceAll(std::string& s, std::string_view from, std::string_view to) {
    for (std::size_t at = s.find(from); at != std::string::npos; at = s.find(from, at + to.size()))
        s.replace(at, from.size(), to);
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// "#rgb" and "#rgba": each digit doubled.
bool ShortHex(std::string_view s, TAlphaColor& color) {
    if (s.size() != 4 && s.size() != 5) return false;
    std::uint8_t parts[4] = {0, 0, 0, 255};
    for (std::size_t i = 1; i < s.size(); ++i) {
        const int d = HexDigit(s[i]);
        if (d < 0) return false;
        parts[i - 1] = static_cast<std::uint8_t>(d * 17);
    }
    color = Qvl::Utils::AlphaColor(parts[0], parts[1], parts[2], parts[3]);
    return true;
}

bool FunctionalColor(std::string_view s, TAlphaColor& color) {
    static const TRegex kRgb(
        R"(^rgba?\(\s*([\d.]+)\s*,\s*([\d.]+)\s*,\s*([\d.]+)\s*(?:,\s*([\d.]+%?)\s*)?\)$)",
        {TRegexFlag::rfCaseless});
    TRegexMatch m;
    if (!kRgb.Match(s, m)) return false;
    auto channel = [&](std::size_t g) {
        return static_cast<std::uint8_t>(std::clamp(std::atof(std::string(m.Group(g)).c_str()), 0.0, 255.0));
    };
    double alpha = 1.0;
    if (m.Matched(4)) {
        const std::string a(m.Group(4));
        alpha = std::atof(a.c_str());
        if (a.ends_with('%')) alpha /= 100.0;
    }
    color = Qvl::Utils::AlphaColor(channel(1), channel(2), channel(3),
                                   static_cast<std::uint8_t>(std::lround(std::clamp(alpha, 0.0, 1.0) * 255)));
    return true;
}

// "4px", "2", "1.5pt": the number in front.
bool ReadLength(std::string_view s, double& value) {
    s = Trim(s);
    const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), value);
    return error == std::errc() && end != s.data();
}

// Splits on separators outside parentheses, so "rgb(1,2,3)" stays whole.
std::vector<std::string_view> SplitDeclarations(std::string_view s) {
    std::vector<std::string_view> out;
    int depth = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= s.size(); ++i) {
        const char c = i < s.size() ? s[i] : ',';
        if (c == '(') ++depth;
        if (c == ')' && depth > 0) --depth;
        if ((c == ',' || c == ';') && depth == 0) {
            const std::string_view part = Trim(s.substr(start, i - start));
            if (!part.empty()) out.push_back(part);
            start = i + 1;
        }
    }
    return out;
}

bool IsTagStart(std::string_view s, std::size_t i) {
    if (s[i] != '<' || i + 1 >= s.size()) return false;
    if (i > 0 && s[i - 1] == '<') return false;  // "<<stereotype>>"
    const char next = s[i + 1];
    return next == '/' || (next >= 'a' && next <= 'z') || (next >= 'A' && next <= 'Z');
}

// HTML tags out, "<br>" in any spelling as a line feed; "<<x>>" and "a < b" stay.
std::string StripTags(std::string_view s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (IsTagStart(s, i)) {
            const std::size_t close = s.find('>', i);
            const std::size_t reopen = s.find('<', i + 1);
            if (close != std::string_view::npos && (reopen == std::string_view::npos || reopen > close) &&
                s.substr(i, close - i).find('\n') == std::string_view::npos && close + 1 < s.size() + 1 &&
                (close + 1 >= s.size() || s[close + 1] != '>')) {
                const std::string name =
                    Qvl::Utils::ToLowerAscii(s.substr(i + 1, std::min<std::size_t>(3, close - i - 1)));
                if (name.starts_with("br")) out += '\n';
                i = close;
                continue;
            }
        }
        out += s[i];
    }
    return out;
}

void AppendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

void DecodeEntities(std::string& s) {
    static const std::pair<std::string_view, std::string_view> kEntities[] = {
        {"&nbsp;", " "}, {"&lt;", "<"},    {"&gt;", ">"}, {"&quot;", "\""}, {"&#39;", "'"},
        {"&apos;", "'"}, {"#quot;", "\""}, {"#lt;", "<"}, {"#gt;", ">"},    {"#amp;", "&"},
        {"#59;", ";"},   {"#35;", "#"},    {"&amp;", "&"}};
    for (const auto& [from, to] : kEntities) ReplaceAll(s, from, to);
    // Numeric references, "&#9829;" and Mermaid's "#9829;", as UTF-8.
    static const TRegex kNumeric(R"(&?#(\d{1,7});)");
    std::string out;
    std::size_t from = 0;
    for (TRegexMatch m; kNumeric.Match(s, m, from);) {
        unsigned long code = std::strtoul(std::string(m.Group(1)).c_str(), nullptr, 10);
        if (code == 0 || code > 0x10FFFF) code = 0xFFFD;
        out.append(s, from, m.Start(0) - from);
        AppendUtf8(out, static_cast<char32_t>(code));
        from = m.End(0);
    }
    if (from > 0) s = out + s.substr(from);
}

// Paired emphasis marks removed where they enclose text: "**a**" -> "a".
void StripPaired(std::string& s, std::string_view mark) {
    std::size_t at = 0;
    while ((at = s.find(mark, at)) != std::string::npos) {
        const std::size_t close = s.find(mark, at + mark.size());
        if (close == std::string::npos || close == at + mark.size()) break;
        if (s.substr(at + mark.size(), close - at - mark.size()).find('\n') != std::string::npos) {
            at = close;
            continue;
        }
        s.erase(close, mark.size());
        s.erase(at, mark.size());
    }
}

// Creole italics "//x//", but not the "//" of an address such as "http://".
void StripCreoleItalic(std::string& s) {
    std::size_t at = 0;
    while ((at = s.find("//", at)) != std::string::npos) {
        if (at > 0 && s[at - 1] == ':') {
            at += 2;
            continue;
        }
        const std::size_t close = s.find("//", at + 2);
        if (close == std::string::npos || close == at + 2) break;
        s.erase(close, 2);
        s.erase(at, 2);
    }
}

// Single-character emphasis ("*a*", "_a_") that starts at a word's front and ends at a word's back.
void StripSingleEmphasis(std::string& s, char mark) {
    std::size_t at = 0;
    while ((at = s.find(mark, at)) != std::string::npos) {
        const bool opens = (at == 0 || !std::isalnum(static_cast<unsigned char>(s[at - 1]))) &&
                           at + 1 < s.size() && s[at + 1] != ' ' && s[at + 1] != mark;
        const std::size_t close = opens ? s.find(mark, at + 1) : std::string::npos;
        if (close == std::string::npos || s[close - 1] == ' ' ||
            (close + 1 < s.size() && std::isalnum(static_cast<unsigned char>(s[close + 1])))) {
            ++at;
            continue;
        }
        s.erase(close, 1);
        s.erase(at, 1);
        at = close - 1;
    }
}

}  // namespace

std::size_t QVLFrontMatterEnd(const std::vector<std::string_view>& aLines) {
    std::size_t opening = 0;
    while (opening < aLines.size() && Trim(aLines[opening]).empty()) ++opening;
    if (opening >= aLines.size() || Trim(aLines[opening]) != "---") return 0;
    for (std::size_t closing = opening + 1; closing < aLines.size(); ++closing)
        if (Trim(aLines[closing]) == "---") return closing + 1;
    return 0;
}

std::string QVLFrontMatterValue(std::string_view aText, std::string_view aKey) {
    const auto lines = QVLSplitDiagramLines(aText);
    const std::size_t end = QVLFrontMatterEnd(lines);
    for (std::size_t i = 0; i + 1 < end; ++i) {
        const std::string_view line = lines[i];
        if (line.empty() || line.front() == ' ' || line.front() == '\t') continue;  // nested keys
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos || Trim(line.substr(0, colon)) != aKey) continue;
        return std::string(Unquote(line.substr(colon + 1)));
    }
    return {};
}

bool QVLReadColor(std::string_view aText, TAlphaColor& aColor) {
    const std::string_view s = Trim(aText);
    if (s.empty()) return false;
    const std::string lower = Qvl::Utils::ToLowerAscii(s);
    if (lower == "none" || lower == "transparent") {
        aColor = 0;
        return true;
    }
    if (ShortHex(s, aColor) || FunctionalColor(s, aColor)) return true;
    if (s.front() == '#') return Qvl::Utils::TryParseColor(s, aColor);
    if (const auto named = Qvl::Utils::NamedColor(s)) {
        aColor = *named;
        return true;
    }
    return false;
}

std::vector<std::string> QVLApplyStyleProperties(std::string_view aProps, TQVLDiagStyle& aStyle) {
    std::vector<std::string> unmapped;
    for (const std::string_view decl : SplitDeclarations(aProps)) {
        const std::size_t colon = decl.find(':');
        if (colon == std::string_view::npos) {
            unmapped.emplace_back(decl);
            continue;
        }
        const std::string key = Qvl::Utils::ToLowerAscii(Trim(decl.substr(0, colon)));
        std::string_view value = Trim(decl.substr(colon + 1));
        if (value.ends_with("!important")) value = Trim(value.substr(0, value.size() - 10));
        const std::string lowerValue = Qvl::Utils::ToLowerAscii(value);
        TAlphaColor color = 0;
        double length = 0;
        bool mapped = true;
        if ((key == "fill" || key == "background" || key == "background-color") && QVLReadColor(value, color))
            aStyle.Fill = color;
        else if ((key == "stroke" || key == "border-color") && QVLReadColor(value, color))
            aStyle.Stroke = color;
        else if (key == "color" && QVLReadColor(value, color))
            aStyle.TextColor = color;
        else if ((key == "stroke-width" || key == "border-width") && ReadLength(value, length))
            aStyle.StrokeWidth = length;
        else if (key == "stroke-dasharray")
            aStyle.Dash = !(lowerValue == "0" || lowerValue == "none" || lowerValue == "0 0");
        else if (key == "font-weight")
            aStyle.Bold =
                lowerValue == "bold" || lowerValue == "bolder" || std::atoi(lowerValue.c_str()) >= 600;
        else if (key == "font-style")
            aStyle.Italic = lowerValue == "italic" || lowerValue == "oblique";
        else
            mapped = false;
        if (!mapped) unmapped.emplace_back(decl);
    }
    return unmapped;
}

void QVLMergeStyle(TQVLDiagStyle& aInto, const TQVLDiagStyle& aOver) {
    if (aOver.Fill) aInto.Fill = aOver.Fill;
    if (aOver.Stroke) aInto.Stroke = aOver.Stroke;
    if (aOver.TextColor) aInto.TextColor = aOver.TextColor;
    if (aOver.StrokeWidth) aInto.StrokeWidth = aOver.StrokeWidth;
    if (aOver.Dash) aInto.Dash = aOver.Dash;
    if (aOver.Bold) aInto.Bold = aOver.Bold;
    if (aOver.Italic) aInto.Italic = aOver.Italic;
}

std::string QVLPlainCaption(std::string_view aText, bool aCreole) {
    std::string_view s = Trim(aText);
    if (s.size() >= 2 && s.front() == '"' && s.back() == '"') s = Trim(s.substr(1, s.size() - 2));
    const bool markdown = s.size() >= 2 && s.front() == '`' && s.back() == '`';
    if (markdown) s = s.substr(1, s.size() - 2);
    std::string text = StripTags(s);
    ReplaceAll(text, "\\n", "\n");
    if (aCreole) ReplaceAll(text, "%n()", "\n");
    DecodeEntities(text);
    static const TRegex kIcon(R"(\bfa[kbsrl]?:fa-[\w-]+\s*)");
    for (TRegexMatch m; kIcon.Match(text, m);) text.erase(m.Start(0), m.End(0) - m.Start(0));
    StripPaired(text, "**");
    StripPaired(text, "__");
    if (aCreole) {
        StripCreoleItalic(text);
        StripPaired(text, "\"\"");
        StripPaired(text, "~~");
    }
    if (markdown) {
        StripSingleEmphasis(text, '*');
        StripSingleEmphasis(text, '_');
    }
    // Lines trimmed and joined with CR LF, the line break the core captions use.
    std::string out;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        const std::string_view line = Trim(std::string_view(text).substr(start, end - start));
        if (!out.empty() || !line.empty()) {
            if (start > 0 && !out.empty()) out += "\r\n";
            out += line;
        }
        start = end + 1;
    }
    while (out.ends_with("\r\n")) out.resize(out.size() - 2);
    return out;
}

}  // namespace Orvex
