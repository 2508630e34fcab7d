// Rich text: plain text with inline tags. <B> <I> <U> <S> switch on bold, italic, underline and strikeout;
// <FN:name> <FS:size> <FC:colour> <BC:colour> set the font name, size, colour and background (a six-digit
// colour is RRGGBB and opaque, any other length AARRGGBB); a closing tag of any of these restores the
// format that the most recent opening tag saved. <L> <C> <R> align the following text, </L> </C> </R>
// return to the base alignment, <BR> ends a line; anything else in angle brackets is ignored. Line ends
// in the source are not line breaks: only <BR> is.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/core/types.h"

namespace Orvex {

struct TRichTextFormat {
    std::string FontName = "Arial";
    std::int32_t FontSize = 10;  // points
    TAlphaColor FontColor = kOpaqueBlack;
    TAlphaColor BackColor = 0;  // transparent: no background
    bool Bold = false;
    bool Italic = false;
    bool Underline = false;
    bool Strikeout = false;
    friend bool operator==(const TRichTextFormat&, const TRichTextFormat&) = default;
};

struct TRichTextSegment {
    std::string Text;
    std::int32_t FormatIndex = 0;  // into TRichTextParseResult::Formats
    bool LineBreak = false;        // the segment ends its line
    TQVLHorzAlign Align = TQVLHorzAlign::haLeft;
    friend bool operator==(const TRichTextSegment&, const TRichTextSegment&) = default;
};

struct TRichTextParseResult {
    std::vector<TRichTextFormat> Formats;  // distinct: identical formats share one entry
    std::vector<TRichTextSegment> Segments;
};

class TRichTextParser {
public:
    // Never fails: unknown tags and bad values are ignored, an unterminated tag runs to the end.
    static TRichTextParseResult Parse(std::string_view text, const TRichTextFormat& baseFormat,
                                      TQVLHorzAlign baseAlign);
    // Markup that parses back to the same segments and formats against the same base; tags are emitted
    // only where a segment differs from the base. The markup has no tag that switches a style off, so a
    // segment cannot lose a style (bold, ...) that the base has, nor keep an empty font name.
    static std::string Compose(const TRichTextParseResult& result, const TRichTextFormat& baseFormat,
                               TQVLHorzAlign baseAlign);
    // The text of the segments, a line break written as "\n".
    static std::string PlainText(const TRichTextParseResult& result);
};

}  // namespace Orvex
