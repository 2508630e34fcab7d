// Breaking rich text into lines: where lines end, what a cut drops, and that nothing else is lost.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orvex/items/rich_text.h"
#include "orvex/items/rich_text_layout.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {
namespace {

const TApproxTextMetrics kMetrics;

TRichTextParseResult ParseMarkup(const std::string& markup) {
    return TRichTextParser::Parse(markup, TRichTextFormat{}, TQVLHorzAlign::haLeft);
}

// The width of n plain characters of the default format under the approximation.
std::int64_t Chars(std::size_t n) {
    return kMetrics.TextWidth(std::string(n, 'x'), RichTextFont(TRichTextFormat{}));
}

std::vector<std::string> LineTexts(const std::vector<TRichTextLine>& lines) {
    std::vector<std::string> texts;
    for (const auto& line : lines) {
        std::string text;
        for (const auto& run : line.Runs) text += run.Text;
        texts.push_back(text);
    }
    return texts;
}

std::string WithoutSpaces(const std::string& text) {
    std::string out;
    for (char c : text)
        if (c != ' ' && c != '\n') out += c;
    return out;
}

TEST(RichTextLayout, ALineThatFitsKeepsTheParsersSegments) {
    const TRichTextParseResult parsed = ParseMarkup("a<B>b</B>c<BR><BR>d");
    for (const std::int64_t width : {std::int64_t{0}, Chars(40)}) {
        SCOPED_TRACE(width);
        const auto lines = BreakRichText(parsed, width, kMetrics);
        ASSERT_EQ(lines.size(), 3u);
        ASSERT_EQ(lines[0].Runs.size(), 4u);  // a, b, c and the empty segment that carries the break
        EXPECT_EQ(lines[0].Runs[1].Text, "b");
        EXPECT_EQ(lines[0].Runs[1].FormatIndex, 1);
        EXPECT_EQ(lines[1].Runs.size(), 1u);  // an empty line still has its height
        EXPECT_GT(lines[1].Height, 0);
        EXPECT_EQ(LineTexts(lines)[2], "d");
    }
}

TEST(RichTextLayout, WithoutAWidthOnlyTheBreakTagEndsALine) {
    const auto lines = BreakRichText(ParseMarkup(std::string(200, 'w') + " and more"), 0, kMetrics);
    EXPECT_EQ(lines.size(), 1u);
}

TEST(RichTextLayout, WordsWrapAtSpacesAndTheSpacesAtACutGo) {
    const auto lines = BreakRichText(ParseMarkup("aa bb cc  dd"), Chars(5), kMetrics);
    EXPECT_EQ(LineTexts(lines), (std::vector<std::string>{"aa bb", "cc", "dd"}));
    for (const auto& line : lines) EXPECT_LE(line.Width, Chars(5));
    // Leading spaces of the text stay: only a cut drops spaces.
    EXPECT_EQ(LineTexts(BreakRichText(ParseMarkup("  aa bb"), Chars(5), kMetrics)),
              (std::vector<std::string>{"  aa", "bb"}));
}

TEST(RichTextLayout, AWordWiderThanALineIsCutBetweenCharacters) {
    const auto lines = BreakRichText(ParseMarkup("ab abcdefghij k"), Chars(4), kMetrics);
    EXPECT_EQ(LineTexts(lines), (std::vector<std::string>{"ab", "abcd", "efgh", "ij k"}));
    // Narrower than one character: one character a line, none lost.
    const auto narrow = BreakRichText(ParseMarkup("\xC3\xA9t\xC3\xA9"), 1, kMetrics);  // "été"
    EXPECT_EQ(LineTexts(narrow), (std::vector<std::string>{"\xC3\xA9", "t", "\xC3\xA9"}));
}

TEST(RichTextLayout, CJKBreaksBetweenAnyTwoCharacters) {
    // 日本語のテキスト: eight characters without a space.
    const std::string text =
        "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE3\x83\x86\xE3\x82\xAD\xE3\x82\xB9"
        "\xE3\x83\x88";
    const auto lines = BreakRichText(ParseMarkup(text), Chars(3), kMetrics);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(LineTexts(lines)[0], text.substr(0, 9));  // three characters of three bytes
    EXPECT_EQ(LineTexts(lines)[1], text.substr(9, 9));
    EXPECT_EQ(LineTexts(lines)[2], text.substr(18));
    // Latin after CJK may start a line; a Latin word does not break inside.
    const auto mixed = BreakRichText(ParseMarkup(text.substr(0, 6) + "abc"), Chars(3), kMetrics);
    EXPECT_EQ(LineTexts(mixed), (std::vector<std::string>{text.substr(0, 6), "abc"}));
}

TEST(RichTextLayout, MixedRunsKeepTheirFormatsAcrossCuts) {
    const TRichTextParseResult parsed = ParseMarkup("one <B>two three</B> <I>four five</I> six");
    const auto lines = BreakRichText(parsed, Chars(9), kMetrics);
    EXPECT_EQ(LineTexts(lines), (std::vector<std::string>{"one two", "three", "four five", "six"}));
    ASSERT_EQ(lines[0].Runs.size(), 2u);
    EXPECT_EQ(lines[0].Runs[0].Text, "one ");
    EXPECT_FALSE(parsed.Formats[static_cast<std::size_t>(lines[0].Runs[0].FormatIndex)].Bold);
    EXPECT_EQ(lines[0].Runs[1].Text, "two");
    EXPECT_TRUE(parsed.Formats[static_cast<std::size_t>(lines[0].Runs[1].FormatIndex)].Bold);
    EXPECT_TRUE(parsed.Formats[static_cast<std::size_t>(lines[2].Runs[0].FormatIndex)].Italic);
    // A line's width is its runs measured in their own fonts: bold is wider than plain.
    EXPECT_EQ(lines[0].Width, lines[0].Runs[0].Width + lines[0].Runs[1].Width);
    EXPECT_GT(lines[0].Runs[1].Width, Chars(3));
}

TEST(RichTextLayout, AWordSplitAcrossFormatsIsCutWhereTheFormatsMeet) {
    const auto lines = BreakRichText(ParseMarkup("abc<B>def</B>"), Chars(5), kMetrics);
    EXPECT_EQ(LineTexts(lines), (std::vector<std::string>{"abc", "def"}));
}

TEST(RichTextLayout, ExplicitBreaksAndWrappingTogether) {
    const TRichTextParseResult parsed = ParseMarkup("<C>aa bb cc<BR></C>dd ee<BR>");
    const auto lines = BreakRichText(parsed, Chars(5), kMetrics);
    EXPECT_EQ(LineTexts(lines), (std::vector<std::string>{"aa bb", "cc", "dd ee"}));
    EXPECT_EQ(lines[0].Align, TQVLHorzAlign::haCenter);
    EXPECT_EQ(lines[1].Align, TQVLHorzAlign::haCenter);  // a wrapped line keeps its run's alignment
    EXPECT_EQ(lines[2].Align, TQVLHorzAlign::haLeft);
}

TEST(RichTextLayout, NothingButCutSpacesIsLost) {
    const char* const texts[] = {
        "The <B>quick</B> brown <I>fox</I> jumps over the <B><I>lazy</I></B> dog",
        "Pneumonoultramicroscopicsilicovolcanoconiosis<B>!</B>",
        "<FS:20>big</FS> small <FS:6>tiny tiny tiny</FS><BR>next",
        "\xE4\xB8\xAD\xE6\x96\x87 mixed \xE4\xB8\xAD\xE6\x96\x87\xE4\xB8\xAD\xE6\x96\x87 text",
        "   spaced    out   ",
    };
    for (const char* text : texts) {
        const TRichTextParseResult parsed = ParseMarkup(text);
        for (const std::size_t chars : {1u, 3u, 7u, 12u}) {
            SCOPED_TRACE(std::string(text) + " / " + std::to_string(chars));
            const std::int64_t width = Chars(chars);
            const auto lines = BreakRichText(parsed, width, kMetrics);
            std::string joined;
            for (const auto& line : lines) {
                std::int64_t sum = 0;
                for (const auto& run : line.Runs) {
                    joined += run.Text;
                    sum += run.Width;
                }
                EXPECT_EQ(line.Width, sum);
                const bool oneCharacter = CodePointCount(LineTexts({line})[0]) <= 1;
                if (!oneCharacter) {
                    EXPECT_LE(line.Width, width);
                }
            }
            EXPECT_EQ(WithoutSpaces(joined), WithoutSpaces(TRichTextParser::PlainText(parsed)));
        }
    }
}

}  // namespace
}  // namespace Orvex
