#include <gtest/gtest.h>

#include "orvex/document/headless.h"
#include "orvex/items/rich_text.h"
#include "orvex/items/rich_text_item.h"

namespace Orvex {
namespace {

TRichTextParseResult ParseLeft(std::string_view text) {
    return TRichTextParser::Parse(text, TRichTextFormat{}, TQVLHorzAlign::haLeft);
}

std::vector<std::string> Texts(const TRichTextParseResult& r) {
    std::vector<std::string> out;
    for (const auto& s : r.Segments) out.push_back(s.Text);
    return out;
}

const TRichTextFormat& FormatOf(const TRichTextParseResult& r, std::size_t segment) {
    return r.Formats[static_cast<std::size_t>(r.Segments[segment].FormatIndex)];
}

TEST(RichTextParserTest, SegmentsAndSharedFormats) {
    const auto r = ParseLeft("a<B>b</B>c");
    EXPECT_EQ(Texts(r), (std::vector<std::string>{"a", "b", "c"}));
    ASSERT_EQ(r.Formats.size(), 2u);
    EXPECT_FALSE(FormatOf(r, 0).Bold);
    EXPECT_TRUE(FormatOf(r, 1).Bold);
    EXPECT_EQ(r.Segments[0].FormatIndex, r.Segments[2].FormatIndex);

    const auto stray = ParseLeft("x</B>y");  // a closing tag with nothing saved changes nothing
    EXPECT_EQ(Texts(stray), (std::vector<std::string>{"x", "y"}));
    EXPECT_EQ(stray.Formats.size(), 1u);
}

TEST(RichTextParserTest, ClosingTagsPopTheLatestPushWhateverTheirName) {
    const auto r = ParseLeft("<B><I>x</B>y</U>z");
    EXPECT_TRUE(FormatOf(r, 0).Bold && FormatOf(r, 0).Italic);
    EXPECT_TRUE(FormatOf(r, 1).Bold);  // </B> undid the italic, the latest push
    EXPECT_FALSE(FormatOf(r, 1).Italic);
    EXPECT_FALSE(FormatOf(r, 2).Bold);
}

TEST(RichTextParserTest, ValuesOfFontTags) {
    struct TCase {
        const char* Name;
        const char* Text;
        TAlphaColor Color;
        std::int32_t Size;
        std::string Font;
    };
    const TRichTextFormat base;
    const TCase cases[] = {
        {"six digits are opaque", "<FC:FF0000>x", 0xFFFF0000u, base.FontSize, base.FontName},
        {"eight digits keep their alpha", "<FC:80FF0000>x", 0x80FF0000u, base.FontSize, base.FontName},
        {"a bad colour keeps the current", "<FC:zz>x", base.FontColor, base.FontSize, base.FontName},
        {"lower-case size tag", "<fs:12>x", base.FontColor, 12, base.FontName},
        {"upper-case size tag", "<FS:12>x", base.FontColor, 12, base.FontName},
        {"a bad size keeps the current", "<FS:1x>x", base.FontColor, base.FontSize, base.FontName},
        {"font name keeps its case", "<fn:Courier New>x", base.FontColor, base.FontSize, "Courier New"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        const auto r = ParseLeft(c.Text);
        ASSERT_EQ(r.Segments.size(), 1u);
        EXPECT_EQ(FormatOf(r, 0).FontColor, c.Color);
        EXPECT_EQ(FormatOf(r, 0).FontSize, c.Size);
        EXPECT_EQ(FormatOf(r, 0).FontName, c.Font);
    }
    EXPECT_EQ(FormatOf(ParseLeft("<BC:00FF00>x"), 0).BackColor, 0xFF00FF00u);
}

TEST(RichTextParserTest, LineBreaksComeOnlyFromTheBreakTag) {
    // The text before a tag is emitted first, so a break is a segment of its own, empty and breaking.
    const auto r = ParseLeft("one\r\ntwo\nthree<BR>four<BR>");
    EXPECT_EQ(Texts(r), (std::vector<std::string>{"onetwothree", "", "four", ""}));
    const bool breaks[] = {false, true, false, true};
    for (std::size_t i = 0; i < std::size(breaks); ++i) EXPECT_EQ(r.Segments[i].LineBreak, breaks[i]) << i;
    EXPECT_EQ(TRichTextParser::PlainText(r), "onetwothree\nfour\n");
    EXPECT_EQ(Texts(ParseLeft("<br><BR>")), (std::vector<std::string>{"", ""}));
}

TEST(RichTextParserTest, AlignmentTagsAndIgnoredTags) {
    const auto r =
        TRichTextParser::Parse("a<C>b<R>c</L>d<NBR><X:1>e", TRichTextFormat{}, TQVLHorzAlign::haRight);
    ASSERT_EQ(r.Segments.size(), 5u);
    EXPECT_EQ(r.Segments[0].Align, TQVLHorzAlign::haRight);
    EXPECT_EQ(r.Segments[1].Align, TQVLHorzAlign::haCenter);
    EXPECT_EQ(r.Segments[2].Align, TQVLHorzAlign::haRight);
    EXPECT_EQ(r.Segments[3].Align, TQVLHorzAlign::haRight);  // any closing alignment tag restores the base
    EXPECT_EQ(r.Segments[4].Text, "e");
}

TEST(RichTextParserTest, UnterminatedTagRunsToTheEnd) {
    const auto r = ParseLeft("ab<B never closed");
    EXPECT_EQ(Texts(r), (std::vector<std::string>{"ab"}));
    EXPECT_TRUE(ParseLeft("").Segments.empty());
}

TEST(RichTextParserTest, ComposeParsesBackToTheSameSegments) {
    const TRichTextFormat base;
    for (const char* text :
         {"a<B>b</B>c", "<FN:Courier><FS:14><FC:80FF0000><BC:00FF00>x</BC>y</FC></FS></FN>z",
          "l<C>c<BR>d</C><R>r<U><S><I>u</I></S></U>", "<BR><BR>"}) {
        SCOPED_TRACE(text);
        const auto first = TRichTextParser::Parse(text, base, TQVLHorzAlign::haLeft);
        const std::string composed = TRichTextParser::Compose(first, base, TQVLHorzAlign::haLeft);
        const auto again = TRichTextParser::Parse(composed, base, TQVLHorzAlign::haLeft);
        ASSERT_EQ(again.Segments.size(), first.Segments.size());
        for (std::size_t i = 0; i < first.Segments.size(); ++i) {
            EXPECT_EQ(again.Segments[i].Text, first.Segments[i].Text);
            EXPECT_EQ(again.Segments[i].LineBreak, first.Segments[i].LineBreak);
            EXPECT_EQ(again.Segments[i].Align, first.Segments[i].Align);
            EXPECT_EQ(FormatOf(again, i), FormatOf(first, i));
        }
    }
}

class RichTextItemTest : public ::testing::Test {
  protected:
    TORXHeadlessLabel fDoc;
    TORXBaseRichText* fItem = fDoc.AddNew<THeadlessItem<TORXBaseRichText>>(false);
};

TEST_F(RichTextItemTest, PositionsMapBetweenPlainTextAndMarkup) {
    fItem->SetRichText("ab<B>cd</B><BR>e");
    EXPECT_EQ(fItem->GetPlainText(), "abcd\ne");
    // plain: a0 b1 c2 d3 \n4 e5; markup: a0 b1 <B>2 c5 d6 </B>7 <BR>11 e15
    const std::size_t plainToRich[] = {0, 1, 5, 6, 11, 15, 16};
    for (std::size_t p = 0; p < std::size(plainToRich); ++p) {
        SCOPED_TRACE(p);
        EXPECT_EQ(fItem->PlainPosToRichPos(p), plainToRich[p]);
        EXPECT_EQ(fItem->RichPosToPlainPos(plainToRich[p]), p);
    }
    EXPECT_EQ(fItem->RichPosToPlainPos(3), 2u);  // inside <B>: the tag's own position

    std::int32_t segment = -1;
    std::size_t offset = 0;
    ASSERT_TRUE(fItem->GetSegmentAtPlainPos(3, segment, offset));
    EXPECT_EQ(segment, 1);
    EXPECT_EQ(offset, 1u);
    ASSERT_TRUE(fItem->GetSegmentAtPlainPos(4, segment, offset));  // the newline is the empty break segment
    EXPECT_EQ(segment, 2);
    EXPECT_EQ(offset, 0u);
    ASSERT_TRUE(fItem->GetSegmentAtPlainPos(5, segment, offset));
    EXPECT_EQ(segment, 3);
    EXPECT_FALSE(fItem->GetSegmentAtPlainPos(6, segment, offset));
}

TEST_F(RichTextItemTest, WholeTextSettersOverrideTheMarkupAndUndoAsOneStep) {
    fItem->SetRichText("a<B>b</B><FS:20>c</FS>");
    const std::string before = fItem->GetRichText();
    const std::size_t undo = fDoc.UndoCount();

    fItem->SetRichBold(true);
    EXPECT_EQ(fDoc.UndoCount(), undo + 1);
    EXPECT_TRUE(fItem->Font().Bold);
    for (const auto& f : fItem->Parse().Formats) EXPECT_TRUE(f.Bold);
    EXPECT_EQ(fItem->GetPlainText(), "abc");

    fItem->SetFontHeight(10.0f);
    for (const auto& f : fItem->Parse().Formats) EXPECT_EQ(f.FontSize, MMToPoints(10.0f));
    EXPECT_EQ(fItem->GetRichText(), "abc");  // no format of the markup differs from the base any more

    fItem->SetRichBold(true);  // unchanged: nothing recorded
    EXPECT_EQ(fDoc.UndoCount(), undo + 2);
    fDoc.Undo();
    fDoc.Undo();
    EXPECT_EQ(fItem->GetRichText(), before);
    EXPECT_FALSE(fItem->Font().Bold);
    fDoc.Redo();
    EXPECT_TRUE(fItem->Font().Bold);
}

TEST_F(RichTextItemTest, SetTextTurnsNewlinesIntoBreakTags) {
    fItem->SetText("one\r\ntwo");
    EXPECT_EQ(fItem->GetRichText(), "one<BR>two");
    EXPECT_EQ(fItem->GetPlainText(), "one\ntwo");
}

}  // namespace
}  // namespace Orvex
