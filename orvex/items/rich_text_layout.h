// Where the runs of a rich text stand: lines broken at <BR> and, where a line is wider than the text's
// frame, at spaces, between CJK characters, or inside a word too long for a line. The SVG writer and every
// host painter place rich text through this one routine, so that a text breaks at the same places in SVG,
// on screen and on paper.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/document/layer.h"
#include "orvex/items/rich_text.h"

namespace Orvex {

class ITextMetrics;
class TORXBaseRichText;

// The font a run of this format is shown in (markup sizes are points, font heights millimetres).
TQVLFont RichTextFont(const TRichTextFormat& format);

struct TRichTextRun {
    std::string Text;              // may be empty: an empty segment still gives its line a height
    std::int32_t FormatIndex = 0;  // into the parse result's formats
    std::int64_t Width = 0;        // base units, as the metrics measure Text
};

struct TRichTextLine {
    std::vector<TRichTextRun> Runs;
    TQVLHorzAlign Align = TQVLHorzAlign::haLeft;  // of the line's first run
    std::int64_t Width = 0;                       // the runs' widths added up
    std::int64_t Height = 0;                      // the tallest run's line height; 0 without runs
    std::int64_t Ascent = 0;                      // the tallest run's ascent; 0 without runs
};

// Lines of the parsed text. width <= 0 breaks only at <BR>. A line that fits is kept as the parser gave
// it, one run per segment; a line that does not is cut at the last opportunity that fits: the spaces at a
// cut are dropped, and a word wider than a whole line is cut between characters (at least one per line).
std::vector<TRichTextLine> BreakRichText(const TRichTextParseResult& parsed, std::int64_t width,
                                         const ITextMetrics& metrics);

// A rich-text item laid out in its own (unturned) frame, base units: each line's left edge and baseline.
struct TRichTextPlacedLine {
    TRichTextLine Line;
    std::int64_t Left = 0;
    std::int64_t Top = 0;
    std::int64_t Height = 0;  // the line's height, or the item font's for a line without one
    std::int64_t Baseline = 0;
};

struct TRichTextPlacement {
    TRichTextParseResult Parsed;
    std::vector<TRichTextPlacedLine> Lines;
};

// The item's text broken to the width of its box less the paddings, aligned as the item and its runs ask.
TRichTextPlacement PlaceRichText(const TORXBaseRichText& item, const ITextMetrics& metrics);

}  // namespace Orvex
