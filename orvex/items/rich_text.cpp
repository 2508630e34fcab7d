#include "orvex/items/rich_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "orvex/core/text.h"

namespace Orvex {

namespace {

struct TTag {
    bool Closing = false;
    std::string Name;  // upper case
    std::string Value;
    bool HasValue = false;
};

// Reads the tag that starts at text[pos] == '<' and leaves pos after it.
TTag ReadTag(std::string_view text, std::size_t& pos) {
    TTag tag;
    ++pos;
    if (pos < text.size() && text[pos] == '/') tag.Closing = true, ++pos;
    while (pos < text.size() && text[pos] != ':' && text[pos] != '>') tag.Name += text[pos++];
    tag.Name = Qvl::Utils::ToUpperAscii(tag.Name);
    if (pos < text.size() && text[pos] == ':') {
        tag.HasValue = true;
        ++pos;
        while (pos < text.size() && text[pos] != '>') tag.Value += text[pos++];
    }
    if (pos < text.size()) ++pos;  // the '>'
    return tag;
}

bool ParseColorValue(std::string_view value, TAlphaColor& color) {
    if (value.empty() || value.size() > 8) return false;
    std::uint32_t parsed = 0;
    const auto [end, ec] = std::from_chars(value.data(), value.data() + value.size(), parsed, 16);
    if (ec != std::errc{} || end != value.data() + value.size()) return false;
    color = value.size() == 6 ? (0xFF000000u | parsed) : parsed;
    return true;
}

bool ParseSizeValue(std::string_view value, std::int32_t& size) {
    std::int32_t parsed = 0;
    const auto [end, ec] = std::from_chars(value.data(), value.data() + value.size(), parsed);
    if (value.empty() || ec != std::errc{} || end != value.data() + value.size()) return false;
    size = parsed;
    return true;
}

class TParseState {
public:
    TParseState(const TRichTextFormat& base, TQVLHorzAlign align) : fFormat(base), fBaseAlign(align), fAlign(align) {}

    void Emit(bool lineBreak) {
        if (fPending.empty() && !lineBreak) return;
        auto found = std::find(fResult.Formats.begin(), fResult.Formats.end(), fFormat);
        if (found == fResult.Formats.end()) found = fResult.Formats.insert(fResult.Formats.end(), fFormat);
        const auto index = static_cast<std::int32_t>(found - fResult.Formats.begin());
        fResult.Segments.push_back(TRichTextSegment{std::move(fPending), index, lineBreak, fAlign});
        fPending.clear();
    }

    void Apply(const TTag& tag) {
        const std::string& n = tag.Name;
        if (tag.Closing) {
            if (n == "L" || n == "C" || n == "R") {
                fAlign = fBaseAlign;
            } else if (n == "B" || n == "I" || n == "U" || n == "S" || n == "FN" || n == "FS" || n == "FC" ||
                       n == "BC") {
                // Closing tags are not matched with their opening tag: any of them undoes the latest push.
                if (!fStack.empty()) fFormat = fStack.back(), fStack.pop_back();
            }
            return;
        }
        if (n == "BR") return Emit(true);
        if (n == "L") return void(fAlign = TQVLHorzAlign::haLeft);
        if (n == "C") return void(fAlign = TQVLHorzAlign::haCenter);
        if (n == "R") return void(fAlign = TQVLHorzAlign::haRight);
        if (n != "B" && n != "I" && n != "U" && n != "S" && n != "FN" && n != "FS" && n != "FC" && n != "BC")
            return;  // NBR and unknown tags
        fStack.push_back(fFormat);
        if (n == "B") fFormat.Bold = true;
        if (n == "I") fFormat.Italic = true;
        if (n == "U") fFormat.Underline = true;
        if (n == "S") fFormat.Strikeout = true;
        if (n == "FN") fFormat.FontName = tag.Value;
        if (n == "FS") ParseSizeValue(tag.Value, fFormat.FontSize);
        if (n == "FC") ParseColorValue(tag.Value, fFormat.FontColor);
        if (n == "BC") ParseColorValue(tag.Value, fFormat.BackColor);
    }

    std::string fPending;
    TRichTextParseResult fResult;

private:
    TRichTextFormat fFormat;
    std::vector<TRichTextFormat> fStack;
    TQVLHorzAlign fBaseAlign;
    TQVLHorzAlign fAlign;
};

std::string ColorValue(TAlphaColor color) {
    if ((color >> 24) == 0xFF) return fmt::format("{:06X}", color & 0xFFFFFFu);
    return fmt::format("{:08X}", color);
}

}  // namespace

TRichTextParseResult TRichTextParser::Parse(std::string_view text, const TRichTextFormat& baseFormat,
                                            TQVLHorzAlign baseAlign) {
    TParseState state(baseFormat, baseAlign);
    std::size_t pos = 0;
    while (pos < text.size()) {
        const char c = text[pos];
        if (c == '<') {
            const TTag tag = ReadTag(text, pos);
            state.Emit(false);
            state.Apply(tag);
            continue;
        }
        // Source line ends (CR, LF and their pairs) are layout of the markup, not of the text.
        if (c != '\r' && c != '\n') state.fPending += c;
        ++pos;
    }
    state.Emit(false);
    return std::move(state.fResult);
}

std::string TRichTextParser::Compose(const TRichTextParseResult& result, const TRichTextFormat& baseFormat,
                                     TQVLHorzAlign baseAlign) {
    std::string out;
    TQVLHorzAlign align = baseAlign;
    for (const auto& seg : result.Segments) {
        if (seg.Align != align) {
            if (seg.Align == baseAlign)
                out += "</L>";
            else if (seg.Align == TQVLHorzAlign::haLeft)
                out += "<L>";
            else if (seg.Align == TQVLHorzAlign::haCenter)
                out += "<C>";
            else if (seg.Align == TQVLHorzAlign::haRight)
                out += "<R>";
            align = seg.Align;
        }
        const TRichTextFormat& f =
            seg.FormatIndex >= 0 && static_cast<std::size_t>(seg.FormatIndex) < result.Formats.size()
                ? result.Formats[static_cast<std::size_t>(seg.FormatIndex)]
                : baseFormat;
        std::vector<std::string_view> opened;
        const auto open = [&](bool differs, std::string_view name, const std::string& value) {
            if (!differs) return;
            out += fmt::format("<{}{}{}>", name, value.empty() ? "" : ":", value);
            opened.push_back(name);
        };
        open(f.FontName != baseFormat.FontName, "FN", f.FontName);
        open(f.FontSize != baseFormat.FontSize, "FS", std::to_string(f.FontSize));
        open(f.FontColor != baseFormat.FontColor, "FC", ColorValue(f.FontColor));
        open(f.BackColor != baseFormat.BackColor, "BC", ColorValue(f.BackColor));
        open(f.Bold && !baseFormat.Bold, "B", {});
        open(f.Italic && !baseFormat.Italic, "I", {});
        open(f.Underline && !baseFormat.Underline, "U", {});
        open(f.Strikeout && !baseFormat.Strikeout, "S", {});
        out += seg.Text;
        for (auto it = opened.rbegin(); it != opened.rend(); ++it) out += fmt::format("</{}>", *it);
        if (seg.LineBreak) out += "<BR>";
    }
    return out;
}

std::string TRichTextParser::PlainText(const TRichTextParseResult& result) {
    std::string out;
    for (const auto& seg : result.Segments) {
        out += seg.Text;
        if (seg.LineBreak) out += '\n';
    }
    return out;
}

}  // namespace Orvex
