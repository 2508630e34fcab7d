#include "orvex/items/rich_text_layout.h"

#include <algorithm>
#include <string_view>

#include "orvex/items/rich_text_item.h"
#include "orvex/items/text_metrics.h"
#include "orvex/items/text_place.h"

namespace Orvex {

namespace {

// One piece of a line that needs breaking: a run of spaces, one CJK character, or a word (the rest up to a
// space, a CJK character or the segment's end). Empty segments stay as empty pieces for their height.
struct TPiece {
    std::size_t Segment = 0;
    std::string_view Text;
    bool Space = false;
    bool Wide = false;         // a CJK character: a line may break on either side of it
    bool BreakBefore = false;  // a line may start with this piece
};

std::size_t CodePointLength(std::string_view text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    return std::min(length, text.size() - at);
}

std::uint32_t CodePointAt(std::string_view text, std::size_t at, std::size_t length) {
    const auto byte = [&](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(text[at + i]));
    };
    switch (length) {
        case 2:
            return ((byte(0) & 0x1Fu) << 6) | (byte(1) & 0x3Fu);
        case 3:
            return ((byte(0) & 0x0Fu) << 12) | ((byte(1) & 0x3Fu) << 6) | (byte(2) & 0x3Fu);
        case 4:
            return ((byte(0) & 0x07u) << 18) | ((byte(1) & 0x3Fu) << 12) | ((byte(2) & 0x3Fu) << 6) |
                   (byte(3) & 0x3Fu);
        default:
            return byte(0);
    }
}

// Scripts written without spaces between words, where a line may break between any two characters:
// CJK punctuation and ideographs, kana, Hangul syllables, full-width forms.
bool IsWide(std::uint32_t cp) {
    return (cp >= 0x2E80 && cp <= 0x9FFF) || (cp >= 0xAC00 && cp <= 0xD7AF) ||
           (cp >= 0xF900 && cp <= 0xFAFF) || (cp >= 0xFF00 && cp <= 0xFFEF) ||
           (cp >= 0x20000 && cp <= 0x3FFFF);
}

std::vector<TPiece> SplitPieces(const TRichTextParseResult& parsed, std::size_t first, std::size_t last) {
    std::vector<TPiece> pieces;
    for (std::size_t s = first; s < last; ++s) {
        const std::string_view text = parsed.Segments[s].Text;
        if (text.empty()) {
            pieces.push_back({s, text, false, false, false});
            continue;
        }
        std::size_t at = 0;
        while (at < text.size()) {
            const std::size_t length = CodePointLength(text, at);
            const std::uint32_t cp = CodePointAt(text, at, length);
            TPiece piece{s, {}, cp == ' ', IsWide(cp), false};
            std::size_t end = at + length;
            if (!piece.Wide) {
                while (end < text.size()) {
                    const std::size_t next = CodePointLength(text, end);
                    const std::uint32_t c = CodePointAt(text, end, next);
                    if ((c == ' ') != piece.Space || IsWide(c)) break;
                    end += next;
                }
            }
            piece.Text = text.substr(at, end - at);
            pieces.push_back(piece);
            at = end;
        }
    }
    // A space run only ends a line; a word after one, and anything beside a CJK character, may start one.
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        TPiece& p = pieces[i];
        const TPiece& before = pieces[i - 1];
        p.BreakBefore = !p.Space && !p.Text.empty() && (before.Space || before.Wide || p.Wide);
    }
    return pieces;
}

class TLineBreaker {
  public:
    TLineBreaker(const TRichTextParseResult& parsed, std::int64_t width, const ITextMetrics& metrics,
                 std::vector<TRichTextLine>& out)
        : fParsed(parsed), fWidth(width), fMetrics(metrics), fOut(out) {}

    void Break(const std::vector<TPiece>& pieces) {
        for (const TPiece& piece : pieces) Add(piece);
        // What a cut left over ends the text; an empty segment alone after a cut adds no blank line.
        if (HasInkBefore(fLine.size()) || (!fWrapped && !fLine.empty())) Emit(fLine.size());
    }

  private:
    const TRichTextParseResult& fParsed;
    std::int64_t fWidth;
    const ITextMetrics& fMetrics;
    std::vector<TRichTextLine>& fOut;
    std::vector<TPiece> fLine;
    bool fWrapped = false;  // the line being built continues a cut one: its leading spaces go

    TQVLFont FontOfSegment(std::size_t segment) const {
        return RichTextFont(fParsed.Formats[static_cast<std::size_t>(fParsed.Segments[segment].FormatIndex)]);
    }

    // Pieces [0, count) as runs, one per stretch of one segment, without the spaces at the end (a line
    // that ends at a cut must not be pushed aside by spaces nobody sees).
    std::vector<TRichTextRun> Runs(const std::vector<TPiece>& pieces, std::size_t count) const {
        std::size_t ink = 0;  // one past the last piece that is not a space
        for (std::size_t i = 0; i < count; ++i)
            if (!pieces[i].Space) ink = i + 1;
        std::vector<TRichTextRun> runs;
        std::vector<std::size_t> runSegments;
        for (std::size_t i = 0; i < count; ++i) {
            const TPiece& p = pieces[i];
            if (p.Space && i >= ink) continue;
            if (runs.empty() || p.Segment != runSegments.back()) {
                runs.push_back({std::string(p.Text), fParsed.Segments[p.Segment].FormatIndex, 0});
                runSegments.push_back(p.Segment);
            } else {
                runs.back().Text += p.Text;
            }
        }
        for (std::size_t r = 0; r < runs.size(); ++r)
            runs[r].Width = fMetrics.TextWidth(runs[r].Text, FontOfSegment(runSegments[r]));
        return runs;
    }

    std::int64_t WidthOf(const std::vector<TPiece>& pieces) const {
        std::int64_t width = 0;
        for (const TRichTextRun& run : Runs(pieces, pieces.size())) width += run.Width;
        return width;
    }

    // Ends the line after its first count pieces; the rest, less leading spaces, begin the next.
    void Emit(std::size_t count) {
        TRichTextLine line;
        line.Runs = Runs(fLine, count);
        if (!line.Runs.empty()) {
            line.Align = fParsed.Segments[fLine.front().Segment].Align;
            for (const TRichTextRun& run : line.Runs) {
                const TQVLFont font =
                    RichTextFont(fParsed.Formats[static_cast<std::size_t>(run.FormatIndex)]);
                line.Width += run.Width;
                line.Height = std::max(line.Height, fMetrics.LineHeight(font));
                line.Ascent = std::max(line.Ascent, fMetrics.Ascent(font));
            }
            fOut.push_back(std::move(line));
        }
        fLine.erase(fLine.begin(), fLine.begin() + static_cast<std::ptrdiff_t>(count));
        while (!fLine.empty() && fLine.front().Space) fLine.erase(fLine.begin());
        fWrapped = true;
    }

    void Add(const TPiece& piece) {
        if (piece.Space) {
            if (!(fWrapped && fLine.empty())) fLine.push_back(piece);
            return;
        }
        fLine.push_back(piece);
        if (piece.Text.empty()) return;
        while (WidthOf(fLine) > fWidth) {
            // The last place the line may end with something on it, before the new piece at the latest.
            std::size_t cut = 0;
            for (std::size_t i = fLine.size() - 1; i > 0 && cut == 0; --i)
                if (fLine[i].BreakBefore && HasInkBefore(i)) cut = i;
            if (cut > 0) {
                Emit(cut);
            } else if (HasInkBefore(fLine.size() - 1)) {
                Emit(fLine.size() - 1);  // one word across formats: cut where the formats meet
            } else {
                CutWord();
                if (fLine.empty()) return;
            }
        }
    }

    bool HasInkBefore(std::size_t index) const {
        for (std::size_t i = 0; i < index; ++i)
            if (!fLine[i].Space && !fLine[i].Text.empty()) return true;
        return false;
    }

    // The line's last piece is a word wider than a whole line: as many characters as fit (at least one)
    // end this line; the rest stays as the start of the next.
    void CutWord() {
        TPiece word = fLine.back();
        fLine.pop_back();
        const TQVLFont font = FontOfSegment(word.Segment);
        std::int64_t before = 0;  // the text's own leading spaces, all that can stand before the word
        for (const TPiece& p : fLine) before += fMetrics.TextWidth(p.Text, FontOfSegment(p.Segment));
        std::size_t fits = CodePointLength(word.Text, 0);
        if (before + fMetrics.TextWidth(word.Text.substr(0, fits), font) > fWidth) {
            fLine.clear();
            before = 0;
        }
        while (fits < word.Text.size()) {
            const std::size_t next = fits + CodePointLength(word.Text, fits);
            if (before + fMetrics.TextWidth(word.Text.substr(0, next), font) > fWidth) break;
            fits = next;
        }
        TPiece head = word;
        head.Text = word.Text.substr(0, fits);
        fLine.push_back(head);
        Emit(fLine.size());
        if (fits < word.Text.size()) {
            TPiece tail = word;
            tail.Text = word.Text.substr(fits);
            tail.BreakBefore = false;
            fLine.push_back(tail);
        }
    }
};

}  // namespace

TQVLFont RichTextFont(const TRichTextFormat& format) {
    TQVLFont font;
    font.Name = format.FontName;
    font.FontHeight = PointsToMM(format.FontSize);
    font.FontColor = format.FontColor;
    font.Bold = format.Bold;
    font.Italic = format.Italic;
    font.Underline = format.Underline;
    font.Strikeout = format.Strikeout;
    return font;
}

std::vector<TRichTextLine> BreakRichText(const TRichTextParseResult& parsed, std::int64_t width,
                                         const ITextMetrics& metrics) {
    std::vector<TRichTextLine> lines;
    std::size_t first = 0;
    while (first < parsed.Segments.size()) {
        std::size_t last = first;
        while (last < parsed.Segments.size() && !parsed.Segments[last].LineBreak) ++last;
        last = std::min(last + 1, parsed.Segments.size());  // the breaking segment belongs to its line

        TRichTextLine line;
        line.Align = parsed.Segments[first].Align;
        for (std::size_t s = first; s < last; ++s) {
            const TRichTextSegment& seg = parsed.Segments[s];
            const TQVLFont font = RichTextFont(parsed.Formats[static_cast<std::size_t>(seg.FormatIndex)]);
            const std::int64_t runWidth = metrics.TextWidth(seg.Text, font);
            line.Runs.push_back({seg.Text, seg.FormatIndex, runWidth});
            line.Width += runWidth;
            line.Height = std::max(line.Height, metrics.LineHeight(font));
            line.Ascent = std::max(line.Ascent, metrics.Ascent(font));
        }
        if (width <= 0 || line.Width <= width) {
            lines.push_back(std::move(line));
        } else {
            TLineBreaker(parsed, width, metrics, lines).Break(SplitPieces(parsed, first, last));
        }
        first = last;
    }
    return lines;
}

TRichTextPlacement PlaceRichText(const TORXBaseRichText& item, const ITextMetrics& metrics) {
    TRichTextPlacement placement;
    placement.Parsed = item.Parse();
    TQVLRect box(item.GetPointX(1), item.GetPointY(1), item.GetPointX(2), item.GetPointY(2));
    box.NormalizeRect();
    TQVLRect frame = AdjustRect(box, item.Angle());
    frame.Inflate(-SetBaseValue(item.PaddingX()), -SetBaseValue(item.PaddingY()));
    // A frame without room breaks only at <BR>: cutting to nothing would stack one character per line.
    const std::vector<TRichTextLine> lines =
        BreakRichText(placement.Parsed, std::max<std::int64_t>(frame.GetWidth(), 0), metrics);

    const std::int64_t interline = SetBaseValue(item.Interline());
    std::int64_t total = 0;
    for (const auto& line : lines) total += line.Height > 0 ? line.Height : metrics.LineHeight(item.Font());
    total += static_cast<std::int64_t>(lines.empty() ? 0 : lines.size() - 1) * interline;
    std::int64_t top = AdjustRectPos(frame, 0, total, TQVLHorzAlign::haLeft, item.VertAlign()).Top;
    for (const auto& line : lines) {
        TRichTextPlacedLine placed;
        placed.Height = line.Height > 0 ? line.Height : metrics.LineHeight(item.Font());
        const TQVLHorzAlign align = line.Runs.empty() ? item.HorzAlign() : line.Align;
        placed.Left = AdjustRectPos(frame, line.Width, placed.Height, align, TQVLVertAlign::vaTop).Left;
        placed.Top = top;
        placed.Baseline = top + (line.Ascent > 0 ? line.Ascent : metrics.Ascent(item.Font()));
        placed.Line = line;
        top += placed.Height + interline;
        placement.Lines.push_back(std::move(placed));
    }
    return placement;
}

}  // namespace Orvex
