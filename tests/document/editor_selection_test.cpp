#include <gtest/gtest.h>

#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"
#include "tests/document/editor_fixture.h"

namespace Orvex::Testing {
namespace {

struct TChanges : IQVObserver {
    std::vector<TQVChange> Told;
    void Update(TORXBaseLabel& document, TQVChange change) override {
        (void)document;
        if (change == TQVChange::chSelect || change == TQVChange::chClearSelect) Told.push_back(change);
    }
};

TEST_F(TEditorTest, ClickSelectsTheTopItemAndShiftClickTogglesIt) {
    TChanges changes;
    doc.Attach(&changes);
    TORXBaseItem* under = Rect(10, 10, 50, 50);
    TORXBaseItem* over = Rect(20, 20, 40, 40);
    TORXBaseItem* line = Line(60, 10, 90, 10);
    Click(30, 30);
    EXPECT_EQ(doc.Selection(), (std::vector<TORXBaseItem*>{over}));
    Click(15, 15);
    EXPECT_EQ(doc.Selection(), (std::vector<TORXBaseItem*>{under}));
    Click(75, 10.2, {TQVLShift::ssShift});  // within the pick gap of the line
    EXPECT_EQ(doc.Selection(), (std::vector<TORXBaseItem*>{under, line}));
    Click(15, 15, {TQVLShift::ssShift});
    EXPECT_EQ(doc.Selection(), (std::vector<TORXBaseItem*>{line}));
    Click(95, 95);  // empty space
    EXPECT_TRUE(doc.Selection().empty());
    EXPECT_EQ(changes.Told.back(), TQVChange::chClearSelect);
    EXPECT_EQ(std::count(changes.Told.begin(), changes.Told.end(), TQVChange::chSelect), 4);
    doc.Detach(&changes);
}

TEST_F(TEditorTest, RubberBandTakesWholeItemsRightwardAndTouchedItemsLeftward) {
    TORXBaseItem* inside = Rect(20, 20, 30, 30);
    TORXBaseItem* crossing = Line(25, 35, 25, 80);
    Rect(100, 100, 120, 120);
    Drag(10, 10, 50, 50);
    EXPECT_EQ(doc.Selection(), (std::vector<TORXBaseItem*>{inside}));
    EXPECT_FALSE(ed.RubberBandActive());
    Drag(50, 50, 10, 10);
    EXPECT_EQ(doc.Selection(), (std::vector<TORXBaseItem*>{inside, crossing}));
    Down(5, 5);
    MoveTo(60, 40);
    EXPECT_TRUE(ed.RubberBandActive());
    EXPECT_EQ(ed.RubberBand(), TQVLRect(B(5), B(5), B(60), B(40)));
    Up(60, 40);
}

TEST_F(TEditorTest, DraggingMovesTheSelectionAsOneUndoStepEachTime) {
    Line(10, 10, 50, 10);
    Rect(60, 60, 70, 70);
    const std::string start = Json();
    Drag(30, 10, 40, 25);
    EXPECT_EQ(Points(Items()[0]), (TPts{{20, 25}, {60, 25}}));
    const std::string afterFirst = Json();
    Drag(40, 25, 45, 25);  // the same item again
    EXPECT_EQ(Points(Items()[0]), (TPts{{25, 25}, {65, 25}}));
    EXPECT_EQ(Points(Items()[1]), (TPts{{60, 60}, {70, 70}}));  // not selected, not moved
    doc.Undo();
    EXPECT_EQ(Json(), afterFirst);
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TEditorTest, EscapeDuringADragPutsEverythingBack) {
    Line(10, 10, 50, 10);
    const std::string start = Json();
    const std::size_t undo = doc.UndoCount();
    Down(30, 10);
    MoveTo(35, 30);
    MoveTo(40, 40);
    EXPECT_NE(Json(), start);  // the drag shows in the drawing
    EXPECT_TRUE(Key(TQVLEdKey::ekEscape));
    Up(40, 40);
    EXPECT_EQ(Json(), start);
    EXPECT_EQ(doc.UndoCount(), undo);
}

TEST_F(TEditorTest, HandlesResizeBoxesAndMovePointsOfLines) {
    Rect(10, 10, 30, 30);
    Line(60, 10, 90, 40);
    const std::string start = Json();
    Click(20, 20);
    ASSERT_EQ(doc.SelPoints().size(), 4u);  // the box's corners
    Drag(30, 30, 40, 50);                   // bottom-right corner
    EXPECT_EQ(Points(Items()[0]), (TPts{{10, 10}, {40, 50}}));
    Drag(10, 10, 50, 60);  // top-left corner past the opposite one: the box turns round it
    EXPECT_EQ(Points(Items()[0]), (TPts{{40, 50}, {50, 60}}));
    Click(75, 25);
    ASSERT_EQ(doc.SelPoints().size(), 2u);
    Drag(90, 40, 90, 10);
    EXPECT_EQ(Points(Items()[1]), (TPts{{60, 10}, {90, 10}}));
    doc.Undo();
    doc.Undo();
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TEditorTest, ArrowKeysStepToTheGridAndDeleteRemoves) {
    ed.fGridX = ed.fGridY = 5000;
    Rect(12, 12, 20, 20);
    const std::string start = Json();
    Click(15, 15);
    EXPECT_TRUE(Key(TQVLEdKey::ekRight));
    EXPECT_EQ(Points(Items()[0]), (TPts{{15, 12}, {23, 20}}));
    EXPECT_TRUE(Key(TQVLEdKey::ekUp));
    EXPECT_EQ(Points(Items()[0]), (TPts{{15, 10}, {23, 18}}));
    EXPECT_TRUE(Key(TQVLEdKey::ekLeft));
    EXPECT_EQ(Points(Items()[0]), (TPts{{10, 10}, {18, 18}}));
    EXPECT_TRUE(Key(TQVLEdKey::ekDelete));
    EXPECT_TRUE(Items().empty());
    EXPECT_FALSE(Key(TQVLEdKey::ekDelete));  // nothing selected any more
    for (int i = 0; i < 4; ++i) doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TEditorTest, LinksFollowAMovedFlowElementAndComeBackOnUndo) {
    auto* a = dynamic_cast<TORXBaseFlow*>(Rect(10, 10, 30, 20, TQVLItemType::itFlow));
    auto* b = dynamic_cast<TORXBaseFlow*>(Rect(60, 10, 80, 20, TQVLItemType::itFlow));
    auto* link = dynamic_cast<TORXBaseLink*>(doc.CreateItem(TQVLItemType::itLink));
    ASSERT_TRUE(a && b && link);
    link->Bind(a, 1, b, 3);
    doc.EndUpdate();
    const std::string start = Json();
    EXPECT_EQ(link->EndPoint(), (TQVLPto64{B(60), B(15)}));
    Drag(70, 15, 70, 45);  // b moves down by 30 mm
    EXPECT_EQ(link->EndPoint(), (TQVLPto64{B(60), B(45)}));
    EXPECT_EQ(link->StartPoint(), (TQVLPto64{B(30), B(15)}));
    doc.Undo();
    EXPECT_EQ(link->EndPoint(), (TQVLPto64{B(60), B(15)}));
    EXPECT_EQ(Json(), start);
}

}  // namespace
}  // namespace Orvex::Testing
