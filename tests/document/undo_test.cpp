#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "orvex/document/headless.h"
#include "orvex/document/undo_commands.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

struct TCounter : IQVObserver {
    int Paints = 0;
    int FromUndo = 0;
    void Update(TORXBaseLabel& document, TQVChange change) override {
        if (change == TQVChange::chPaint) ++Paints;
        if (document.IsUndoNotify()) ++FromUndo;
    }
};

std::string Json(const TORXBaseLabel& doc) {
    return doc.GetJsonString();
}

TEST(UndoTest, NothingIsRecordedWithoutTheOption) {
    TORXHeadlessLabel doc;
    doc.SetOptions(TOrvexOptions{TOrvexOption::loUniqueID});
    TORXBaseItem* line = doc.CreateItem(TQVLItemType::itLine);
    line->SetColor(0xFF00FF00);
    line->SetBase(1, 10, 10);
    doc.DeleteItem(line, true);
    EXPECT_TRUE(doc.IsUndoEmpty());
    EXPECT_TRUE(doc.IsRedoEmpty());
}

TEST(UndoTest, TenColourChangesAreOneStepBackToTheFirstColour) {
    TORXHeadlessLabel doc;
    TORXBaseItem* line = doc.CreateItem(TQVLItemType::itLine);
    line->SetColor(0xFF101010);
    const std::size_t before = doc.UndoCount();
    for (TAlphaColor c = 1; c <= 10; ++c) line->SetColor(0xFF000000 | c);
    EXPECT_EQ(doc.UndoCount(), before);  // merged into the command of the first change
    line->SetPenWidth(250);
    for (TAlphaColor c = 1; c <= 10; ++c) line->SetColor(0xFF0000F0 | c);
    doc.Undo();
    EXPECT_EQ(line->Color(), 0xFF00000Au);
    doc.Undo();
    EXPECT_EQ(line->PenWidth(), 100);
    doc.Undo();
    EXPECT_EQ(line->Color(), 0xFF000000u);
    doc.Redo();
    EXPECT_EQ(line->Color(), 0xFF00000Au);
}

TEST(UndoTest, BatchedMoveOfThreeItemsIsOneUndo) {
    TORXHeadlessLabel doc;
    std::vector<TORXBaseItem*> items;
    for (int i = 0; i < 3; ++i) {
        items.push_back(doc.CreateItem(TQVLItemType::itRectangle));
        items.back()->SetBase(2, 1000 * (i + 1), 1000);
        doc.SelectItem(items.back(), false);
    }
    const std::string start = Json(doc);
    const std::size_t depth = doc.UndoCount();
    doc.MoveSelection(5.0f, 2.0f);
    EXPECT_EQ(items[2]->GetPoint(2), (TQVLPto{8000, 3000}));
    doc.Undo();
    EXPECT_EQ(Json(doc), start);
    EXPECT_EQ(doc.UndoCount(), depth);
    doc.Redo();
    EXPECT_EQ(items[0]->GetPoint(1), (TQVLPto{5000, 2000}));
    EXPECT_EQ(items[0]->BoundsRect(), TQVLRect(5000, 2000, 6000, 3000));
}

TEST(UndoTest, UndoneCreationComesBackWithLaterCommandsRebound) {
    TORXHeadlessLabel doc;
    doc.CreateItem(TQVLItemType::itLine);
    TORXBaseItem* rect = doc.CreateItem(TQVLItemType::itRectangle);
    doc.CreateItem(TQVLItemType::itLine);
    const std::int32_t id = rect->InID();
    rect->SetColor(0xFFFF0000);
    const std::string end = Json(doc);
    doc.Undo();  // the colour
    doc.Undo();  // the last line
    doc.Undo();  // the rectangle
    EXPECT_EQ(doc.GetItemsCount(), 1);
    doc.Redo();
    ASSERT_EQ(doc.GetItemsCount(), 2);
    TORXBaseItem* again = doc.GetItem(1);
    EXPECT_EQ(again->InID(), id);
    EXPECT_EQ(again->ID(), "Rectangle002");
    doc.Redo();
    doc.Redo();  // the colour command now acts on the re-created object
    EXPECT_EQ(again->Color(), 0xFFFF0000u);
    EXPECT_EQ(Json(doc), end);
}

TEST(UndoTest, AnOlderStepComesBackOnlyWhenNoLaterStepTouchedItsItems) {
    TORXHeadlessLabel doc;
    TORXBaseItem* mine = doc.CreateItem(TQVLItemType::itRectangle);
    const std::int32_t myStep = doc.UndoGroups().back();
    const auto original = mine->Color();
    mine->SetColor(0xFF00FF00);  // a later step on the same item
    TORXBaseItem* theirs = doc.CreateItem(TQVLItemType::itLine);
    theirs->SetColor(0xFF0000FF);
    const std::string before = Json(doc);
    EXPECT_FALSE(doc.UndoStep(myStep));  // the colour step would be lost with it
    EXPECT_EQ(Json(doc), before);
    EXPECT_FALSE(doc.UndoStep(12345));  // no such step

    const std::int32_t colourStep = doc.UndoGroups()[1];
    EXPECT_TRUE(doc.UndoStep(colourStep));  // only the line's steps came after it
    EXPECT_EQ(mine->Color(), original);
    EXPECT_EQ(theirs->Color(), 0xFF0000FFu);
    EXPECT_EQ(doc.UndoGroups().size(), 3U);
    doc.Redo();  // the taken-back step is the one redo brings
    EXPECT_EQ(mine->Color(), 0xFF00FF00u);
    EXPECT_EQ(doc.GetItemsCount(), 2);
}

TEST(UndoTest, RecentStepsAreTheOnesSinceTheCounterWasRead) {
    TORXHeadlessLabel doc;
    doc.CreateItem(TQVLItemType::itLine);
    const std::int32_t since = doc.NextUndoGroup();
    EXPECT_TRUE(doc.UndoGroups(since).empty());
    doc.CreateItem(TQVLItemType::itLine);
    doc.BeginUpdate();
    doc.CreateItem(TQVLItemType::itLine);
    doc.CreateItem(TQVLItemType::itLine);
    doc.EndUpdate();
    EXPECT_EQ(doc.UndoGroups(since).size(), 2U);
    EXPECT_EQ(doc.UndoGroups().size(), 3U);
}

TEST(UndoTest, DeletedItemReturnsToItsPlace) {
    TORXHeadlessLabel doc;
    for (int i = 0; i < 3; ++i) doc.CreateItem(TQVLItemType::itLine)->SetBase(1, i, i);
    const std::string start = Json(doc);
    doc.SelectItem(doc.GetItem(1), false);
    doc.DeleteSelection();
    EXPECT_EQ(doc.GetItemsCount(), 2);
    EXPECT_TRUE(doc.Selection().empty());
    doc.Undo();
    EXPECT_EQ(Json(doc), start);
}

TEST(UndoTest, EmptyUndoSendsNothingAndUndoTellsOnceMarked) {
    TORXHeadlessLabel doc;
    TCounter counter;
    doc.Attach(&counter);
    int handler = 0;
    doc.OnUndoRedo = [&](TORXBaseLabel&, bool, bool) { ++handler; };
    doc.Undo();
    doc.Redo();
    EXPECT_EQ(counter.Paints, 0);
    EXPECT_EQ(handler, 0);
    TORXBaseItem* line = doc.CreateItem(TQVLItemType::itLine);
    EXPECT_EQ(handler, 1);
    line->SetColor(0xFF00FF00);
    handler = 0;
    doc.Undo();
    EXPECT_EQ(counter.Paints, 1);
    EXPECT_EQ(counter.FromUndo, 1);
    EXPECT_GE(handler, 1);
    EXPECT_FALSE(doc.IsUndoNotify());
    doc.Detach(&counter);
}

TEST(UndoTest, NewEditClearsRedo) {
    TORXHeadlessLabel doc;
    TORXBaseItem* line = doc.CreateItem(TQVLItemType::itLine);
    line->SetColor(0xFF00FF00);
    doc.Undo();
    EXPECT_FALSE(doc.IsRedoEmpty());
    line->SetPenWidth(500);
    EXPECT_TRUE(doc.IsRedoEmpty());
}

TEST(UndoTest, GroupIdsFollowBatches) {
    TORXHeadlessLabel doc;
    const std::int32_t first = doc.UnReID();
    EXPECT_EQ(doc.UnReID(), first + 1);  // outside a batch every command is its own group
    doc.BeginUpdate(true);
    const std::int32_t inside = doc.UnReID();
    EXPECT_EQ(doc.UnReID(), inside);
    doc.EndUpdate();
    EXPECT_EQ(doc.UnReID(), inside + 1);
}

// Random edits with a fixed seed: undoing everything gives the start, redoing everything the end.
TEST(UndoTest, UndoAllAndRedoAllRestoreTheJsonOfStartAndEnd) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        TORXHeadlessLabel doc;
        doc.AddLayer();
        doc.CreateItem(TQVLItemType::itLine)->SetBase(2, 5000, 5000);
        doc.CreateItem(TQVLItemType::itRectangle);
        doc.Clear(TQVLClears{TQVLClear::cleUndoRedo}, false);
        std::mt19937 rng(seed);
        const auto pick = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
        const std::string start = Json(doc);
        for (int step = 0; step < 200; ++step) {
            const bool batch = pick(4) == 0;
            if (batch) doc.BeginUpdate(true);
            for (int k = 0; k < (batch ? 3 : 1); ++k) {
                TORXBaseItem* item = doc.GetItem(pick(std::max(1, doc.GetItemsCount())));
                switch (item == nullptr ? 0 : pick(10)) {
                    case 0:
                        doc.CreateItem(pick(2) ? TQVLItemType::itPolyLine : TQVLItemType::itEllipse);
                        break;
                    case 1:
                        item->SetColor(0xFF000000u | static_cast<TAlphaColor>(rng() % 0xFFFFFFu));
                        break;
                    case 2:
                        item->SetPenWidth(pick(1000));
                        break;
                    case 3:
                        item->SetBase(1 + pick(2), pick(20000), pick(20000));
                        break;
                    case 4:
                        item->Move(static_cast<float>(pick(10)), 1.0f, TQVLMoveOpt::moMove);
                        break;
                    case 5:
                        item->InsertPoint(pick(9000), pick(9000), 1 + pick(3));
                        break;
                    case 6:
                        item->SetLayer(doc.GetLayer(1 + pick(2)));
                        break;
                    case 7:
                        pick(2) ? item->RotateRight() : item->RotateLeft();
                        break;
                    case 8:
                        doc.DeleteItem(item, true);
                        break;
                    default:
                        item->SetID("Item" + std::to_string(pick(50)));
                        break;
                }
            }
            if (batch) doc.EndUpdate();
            if (pick(6) == 0) doc.Undo();
        }
        while (!doc.IsRedoEmpty()) doc.Redo();  // what was undone last is still on the redo stack
        const std::string end = Json(doc);
        while (!doc.IsUndoEmpty()) doc.Undo();
        EXPECT_EQ(Json(doc), start);
        while (!doc.IsRedoEmpty()) doc.Redo();
        EXPECT_EQ(Json(doc), end);
    }
}

}  // namespace
}  // namespace Orvex
