#include <gtest/gtest.h>

#include <cmath>

#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/rich_text_item.h"
#include "orvex/items/text_items.h"
#include "orvex/items/text_metrics.h"
#include "tests/document/editor_fixture.h"

namespace Orvex::Testing {
namespace {

using A = TQVLEdAction;
using K = TQVLEdKey;

class TTextEditTest : public TEditorTest {
  protected:
    template <class TItem>
    TItem* Text(TQVLItemType type, const std::string& text, TPts box = {{10, 10}, {60, 30}}) {
        auto* item = dynamic_cast<TItem*>(Add(type, box));
        item->SetText(text);
        doc.EndUpdate();
        doc.Clear(TQVLClears{TQVLClear::cleUndoRedo},
                  false);  // each test counts the undo steps its edit made
        return item;
    }
    // A click just inside the item's right edge, half way down: after the last character of a text.
    void ClickOn(const TORXBaseItem* item, double fromLeft = -1) {
        const TQVLRect& r = item->BoundsRect();
        const double x = fromLeft < 0 ? static_cast<double>(r.Right) / 1000.0 - 0.3
                                      : static_cast<double>(r.Left) / 1000.0 + fromLeft;
        Click(x, static_cast<double>(r.Top + r.Bottom) / 2000.0);
    }
    void Type(const std::string& chars) { doc.KeyPressEditor(chars); }
    std::size_t Caret() const { return ed.TextEdit().Caret; }
};

TEST_F(TTextEditTest, TypingAndCaretKeysMakeOneUndoStep) {
    auto* text = Text<TORXBaseText>(TQVLItemType::itText, "Hello");
    const std::string start = Json();
    doc.SetAction(A::eaEdText);
    ClickOn(text);
    ASSERT_EQ(ed.TextEdit().Item, text);
    EXPECT_EQ(doc.EdState(), TQVLEdState::edEditing);
    EXPECT_EQ(Caret(), 5u);  // typing goes on at the end
    Key(K::ekBackspace);
    Key(K::ekBackspace);
    Type("p!");
    EXPECT_EQ(text->Text(), "Help!");  // the item shows each keystroke
    Key(K::ekLeft);
    Type("s");
    Key(K::ekHome);
    Type(">");
    EXPECT_EQ(doc.ActionInfo().Caret, 1);
    Key(K::ekEnd);
    EXPECT_FALSE(Key(K::ekDelete));          // nothing after the caret
    EXPECT_FALSE(Key(K::ekRight));           // already at the end
    EXPECT_FALSE(doc.KeyPressEditor("\r"));  // Enter comes as a key, not as a character
    EXPECT_TRUE(Key(K::ekEnter));            // finishes a single-line text
    EXPECT_EQ(ed.TextEdit().Item, nullptr);
    EXPECT_EQ(doc.ActionInfo().Caret, -1);
    EXPECT_EQ(Items()[0]["Text"], ">Helps!");
    const std::string edited = Json();
    EXPECT_EQ(doc.UndoCount(), 1u);
    doc.Undo();
    EXPECT_EQ(Json(), start);
    doc.Redo();
    EXPECT_EQ(Json(), edited);
}

TEST_F(TTextEditTest, AClickPutsTheCaretBetweenTheNearestCharacters) {
    auto* text = Text<TORXBaseText>(TQVLItemType::itText, "Hello");
    const double he = static_cast<double>(QVLTextMetrics().TextWidth("He", text->Font())) / 1000.0;
    doc.SetAction(A::eaEdText);
    struct TCase {
        double FromLeft;
        std::size_t Caret;
    };
    const TCase cases[] = {{0.2, 0}, {he + 0.2, 2}, {he - 0.2, 2}, {-1, 5}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.FromLeft);
        ClickOn(text, c.FromLeft);  // the first starts the edit, the others move the caret within it
        EXPECT_EQ(Caret(), c.Caret);
        EXPECT_EQ(doc.ActionInfo().Caret, static_cast<std::int64_t>(c.Caret));
    }
    Type("!");
    Key(K::ekEnter);
    EXPECT_EQ(text->Text(), "Hello!");
}

TEST_F(TTextEditTest, EscapeAndRightButtonEndTheEdit) {
    auto* text = Text<TORXBaseText>(TQVLItemType::itText, "keep");
    const std::string start = Json();
    doc.SetAction(A::eaEdText);
    ClickOn(text);
    Type(" me not");
    EXPECT_TRUE(Key(K::ekEscape));  // the old text is back and nothing was recorded
    EXPECT_EQ(Json(), start);
    EXPECT_TRUE(doc.IsUndoEmpty());
    ClickOn(text);
    Type("!");
    EXPECT_TRUE(doc.RightButton(0, 0, {}));
    EXPECT_EQ(text->Text(), "keep!");
    EXPECT_EQ(doc.UndoCount(), 1u);
}

TEST_F(TTextEditTest, ACharacterIsAllItsBytes) {
    auto* text = Text<TORXBaseText>(TQVLItemType::itText, "a");
    doc.SetAction(A::eaEdText);
    ClickOn(text);
    Type("\xC3\xA9\xE2\x82\xAC");  // e acute and the euro sign: two and three bytes
    EXPECT_EQ(Caret(), 6u);
    Key(K::ekLeft);
    EXPECT_EQ(Caret(), 3u);
    Key(K::ekBackspace);
    EXPECT_EQ(ed.TextEdit().Text, "a\xE2\x82\xAC");
    EXPECT_FALSE(doc.KeyPressEditor("\xC3"));  // a broken sequence is refused
    Key(K::ekEnter);
    EXPECT_EQ(text->Text(), "a\xE2\x82\xAC");
}

TEST_F(TTextEditTest, AParagraphTakesLineBreaksAndVerticalCaretMoves) {
    auto* para = Text<TORXBasePara>(TQVLItemType::itPara, "first");
    doc.SetAction(A::eaEdText);
    ClickOn(para);
    Key(K::ekEnter);
    Type("sec");
    EXPECT_EQ(ed.TextEdit().Text, "first\nsec");
    struct TStep {
        K Key;
        TQVLShiftState Shift;
        std::size_t Caret;
    };
    const TStep steps[] = {{K::ekUp, {}, 3},                        // same column on the line above
                           {K::ekEnd, {}, 5},  {K::ekDown, {}, 9},  // the shorter line's end
                           {K::ekHome, {}, 6}, {K::ekHome, {TQVLShift::ssCtrl}, 0},
                           {K::ekUp, {}, 0},   {K::ekEnd, {TQVLShift::ssCtrl}, 9}};
    for (const auto& s : steps) {
        SCOPED_TRACE(static_cast<int>(s.Key));
        Key(s.Key, s.Shift);
        EXPECT_EQ(Caret(), s.Caret);
    }
    Key(K::ekEnter, {TQVLShift::ssCtrl});  // Ctrl+Enter finishes a text with lines
    EXPECT_EQ(ed.TextEdit().Item, nullptr);
    EXPECT_EQ(para->Text(), "first\nsec");
    EXPECT_EQ(doc.UndoCount(), 1u);
}

TEST_F(TTextEditTest, AnEmptiedTextGoesWithTheSameUndoStep) {
    auto* text = Text<TORXBaseText>(TQVLItemType::itText, "ab");
    auto* other = Text<TORXBaseText>(TQVLItemType::itText, "other", {{10, 60}, {60, 80}});
    const std::string start = Json();
    doc.SetAction(A::eaEdText);
    ClickOn(text);
    Key(K::ekBackspace);
    Key(K::ekBackspace);
    ClickOn(other);  // finishes the first edit and starts on the other text
    EXPECT_EQ(ed.TextEdit().Item, other);
    Key(K::ekEscape);
    ASSERT_EQ(Items().size(), 1u);
    EXPECT_EQ(Items()[0]["Text"], "other");
    EXPECT_EQ(doc.UndoCount(), 1u);
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TTextEditTest, RichTextKeepsItsMarkupAroundTheEdit) {
    auto* rich = dynamic_cast<TORXBaseRichText*>(Add(TQVLItemType::itRichText, {{10, 10}, {60, 30}}));
    rich->SetRichText("a<B>bc</B>d");
    doc.EndUpdate();
    doc.Clear(TQVLClears{TQVLClear::cleUndoRedo}, false);
    const std::string start = Json();
    doc.SetAction(A::eaEdText);
    ClickOn(rich);
    EXPECT_EQ(ed.TextEdit().Text, "abcd");  // the plain text is edited
    Key(K::ekLeft);
    Type("X");  // continues the bold of the character before it
    EXPECT_EQ(rich->GetRichText(), "a<B>bcX</B>d");
    Key(K::ekEnter);
    EXPECT_EQ(rich->GetRichText(), "a<B>bcX<BR></B>d");
    Key(K::ekHome);
    Key(K::ekBackspace);  // joins the lines again
    Key(K::ekLeft);
    Key(K::ekLeft);
    Key(K::ekBackspace);  // the b: the tags around it stay
    EXPECT_EQ(rich->GetRichText(), "a<B>cX</B>d");
    Key(K::ekEnter, {TQVLShift::ssCtrl});
    EXPECT_EQ(doc.UndoCount(), 1u);
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TTextEditTest, CaptionsOfFlowElementsAndLabelsAreEditable) {
    auto* flow = Text<TORXBaseFlow>(TQVLItemType::itFlow, "Start");
    auto* arrow = Text<TORXBaseArrowLine>(TQVLItemType::itArrowLine, "", {{10, 60}, {60, 60}});
    doc.SetAction(A::eaEdText);
    ClickOn(flow);
    Key(K::ekEnter);  // a caption takes line breaks
    Type("here");
    Click(35, 60);  // on the arrow line: the caption is done, its label is next
    EXPECT_EQ(flow->Text(), "Start\nhere");
    ASSERT_EQ(ed.TextEdit().Item, arrow);
    Type("yes");
    Key(K::ekEnter);
    EXPECT_EQ(arrow->Text(), "yes");
    doc.SetAction(A::eaSelection);
    EXPECT_EQ(doc.UndoCount(), 2u);
    doc.Undo();
    doc.Undo();
    EXPECT_EQ(flow->Text(), "Start");
    EXPECT_EQ(arrow->Text(), "");
}

TEST_F(TTextEditTest, SwitchingToolsKeepsTheTextTyped) {
    auto* text = Text<TORXBaseText>(TQVLItemType::itText, "x");
    doc.SetAction(A::eaEdText);
    ClickOn(text);
    Type("y");
    doc.SetAction(A::eaLine);
    EXPECT_EQ(text->Text(), "xy");
    EXPECT_EQ(doc.UndoCount(), 1u);
}

TEST_F(TTextEditTest, MoveTextDragsTextsAndDimensionLines) {
    auto* text = Text<TORXBaseText>(TQVLItemType::itText, "move me");
    Line(10, 100, 50, 100);  // not a text: the tool leaves it alone
    const std::string start = Json();
    doc.SetAction(A::eaMoveText);
    const TQVLRect r = text->BoundsRect();
    // On a tenth of a millimetre, so that the pointer's pixels give the offset exactly.
    const double cx = std::round(static_cast<double>(r.Left + r.Right) / 200.0) / 10.0;
    const double cy = std::round(static_cast<double>(r.Top + r.Bottom) / 200.0) / 10.0;
    Drag(cx, cy, cx + 20, cy + 10);
    EXPECT_EQ(Points(Items()[0])[0], (std::pair<double, double>{30, 20}));
    Drag(30, 100, 40, 120);
    EXPECT_EQ(Points(Items()[1]), (TPts{{10, 100}, {50, 100}}));
    doc.Undo();
    EXPECT_EQ(Json(), start);

    doc.New();
    doc.SetAction(A::eaDim);
    Click(10, 50);
    Click(50, 50);
    Click(30, 40);  // a horizontal dimension 10 above the points
    const TPts before = Points(Items()[0]);
    ASSERT_EQ(before[0].second, 40);
    const std::string dimmed = Json();
    doc.SetAction(A::eaMoveText);
    Drag(30, 40, 36, 30);  // only the move across the dimension line counts
    const TPts after = Points(Items()[0]);
    EXPECT_EQ(after[0], (std::pair<double, double>{before[0].first, 30}));
    EXPECT_EQ(after[1], (std::pair<double, double>{before[1].first, 30}));
    EXPECT_EQ(after[2], before[2]);
    EXPECT_EQ(after[3], before[3]);
    doc.Undo();
    EXPECT_EQ(Json(), dimmed);

    // The selection tool drags the whole dimension, upwards too.
    doc.SetAction(A::eaSelection);
    Drag(30, 40, 30, 25);
    const TPts moved = Points(Items()[0]);
    for (std::size_t i = 0; i < 4; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(moved[i], (std::pair<double, double>{before[i].first, before[i].second - 15}));
    }
}

}  // namespace
}  // namespace Orvex::Testing
