// The document's pick through its grid of extents against a plain walk down the paint order: after every
// kind of edit, and undo and redo, both must find the same item.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "orvex/document/headless.h"
#include "orvex/document/layer.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/text_items.h"

namespace Orvex {
namespace {

bool Visible(const TORXBaseItem& item) {
    const TORXLayer* layer = item.Layer();
    return item.Options().Contains(TQVLayerOp::lopVisible) &&
           (layer == nullptr || layer->fOptions.Contains(TQVLayerOp::lopVisible));
}

TORXBaseItem* WalkDown(const TORXBaseLabel& doc, std::int64_t x, std::int64_t y, std::int32_t tolerance) {
    for (std::int32_t i = doc.GetItemsCount() - 1; i >= 0; --i) {
        TORXBaseItem* item = doc.GetItem(i);
        if (Visible(*item) && item->Pick(x, y, tolerance, false)) return item;
    }
    return nullptr;
}

TORXBaseItem* Add(TORXBaseLabel& doc, TQVLItemType type, std::int64_t x1, std::int64_t y1, std::int64_t x2,
                  std::int64_t y2) {
    TORXBaseItem* item = doc.CreateItem(type);
    item->SetBase(1, x1, y1);
    item->SetBase(2, x2, y2);
    return item;
}

constexpr std::int32_t kTol = 50;

TEST(PickIndexTest, TopmostOfOverlappingItemsFollowsTheZOrder) {
    TORXHeadlessLabel doc;
    TORXBaseItem* below = Add(doc, TQVLItemType::itRectangle, 0, 0, 10'000, 10'000);
    TORXBaseItem* above = Add(doc, TQVLItemType::itRectangle, 5'000, 0, 15'000, 10'000);
    // Both outlines run through the click; neither is filled.
    EXPECT_EQ(doc.ItemAt(7'000, 0, kTol, Visible), above);
    doc.SelectItem(below, false);
    doc.BringToFront();
    EXPECT_EQ(doc.ItemAt(7'000, 0, kTol, Visible), below);
    doc.Undo();
    EXPECT_EQ(doc.ItemAt(7'000, 0, kTol, Visible), above);
    doc.ClearSelection(false);
    doc.SelectItem(above, false);
    doc.SendToBack();
    EXPECT_EQ(doc.ItemAt(7'000, 0, kTol, Visible), below);
}

TEST(PickIndexTest, MovedResizedDeletedAndRestoredItemsAreFoundWhereTheyAre) {
    TORXHeadlessLabel doc;
    for (int i = 0; i < 200; ++i)  // enough items for a grid of many cells
        Add(doc, TQVLItemType::itLine, i * 1'000, 0, i * 1'000 + 500, 500);
    TORXBaseItem* line = doc.GetItem(10);
    ASSERT_EQ(doc.ItemAt(10'250, 250, kTol), line);
    line->BaseMove(0, 0, 0, 50'000, TQVLMoveOpt::moMove, false);
    EXPECT_EQ(doc.ItemAt(10'250, 250, kTol), nullptr);
    EXPECT_EQ(doc.ItemAt(10'250, 50'250, kTol), line);
    line->BaseMove(0, 0, 20'000, 0, TQVLMoveOpt::moResize, false);  // the far end out to x = 30,500
    EXPECT_EQ(doc.ItemAt(30'400, 50'495, kTol), line);
    doc.Undo();
    doc.Undo();
    EXPECT_EQ(doc.ItemAt(10'250, 250, kTol), line);
    doc.DeleteItem(line, true);
    EXPECT_EQ(doc.ItemAt(10'250, 250, kTol), nullptr);
    doc.Undo();  // a new item from the stored form
    TORXBaseItem* back = doc.ItemAt(10'250, 250, kTol);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(doc.ItemIndex(back), 10);
}

TEST(PickIndexTest, HiddenLayersAndUnboundedKindsAreHonoured) {
    TORXHeadlessLabel doc;
    TORXLayer* top = doc.AddLayer();
    TORXBaseItem* frame = Add(doc, TQVLItemType::itRectangle, -1'000'000, -1'000'000, 1'000'000, 1'000'000);
    for (int i = 0; i < 100; ++i) Add(doc, TQVLItemType::itCircle, i * 2'000, 0, i * 2'000 + 1'000, 1'000);
    auto* arrow =
        dynamic_cast<TORXBaseArrowLine*>(Add(doc, TQVLItemType::itArrowLine, 0, 5'000, 40'000, 5'000));
    ASSERT_NE(arrow, nullptr);
    arrow->SetText("a label long enough to reach well beyond the line's ends, above it");
    TORXBaseItem* circle = doc.GetItem(5);
    circle->SetLayer(top);
    // On the circle's outline; the frame's outline is far away and it has no fill.
    EXPECT_EQ(doc.ItemAt(8'500, 0, kTol, Visible), circle);
    top->fOptions.Exclude(TQVLayerOp::lopVisible);
    EXPECT_EQ(doc.ItemAt(8'500, 0, kTol, Visible), nullptr);
    top->fOptions.Include(TQVLayerOp::lopVisible);
    EXPECT_EQ(doc.ItemAt(8'500, 0, kTol, Visible), circle);
    EXPECT_EQ(doc.ItemAt(-1'000'000, 0, kTol, Visible), frame);
    // Somewhere on the label, which the arrow's bounds do not hold.
    for (std::int64_t x = -40'000; x <= 80'000; x += 1'000)
        for (std::int64_t y = -5'000; y <= 5'000; y += 250) {
            SCOPED_TRACE(std::to_string(x) + "," + std::to_string(y));
            ASSERT_EQ(doc.ItemAt(x, y, kTol, Visible), WalkDown(doc, x, y, kTol));
        }
}

// Clicks on a row of short lines and around the given places must find what the walk finds.
void ExpectSameAsWalk(const TORXBaseLabel& doc, const std::vector<TQVLPto>& around) {
    for (const TQVLPto& p : around)
        for (std::int64_t dx = -600; dx <= 600; dx += 150)
            for (std::int64_t dy = -600; dy <= 600; dy += 150) {
                SCOPED_TRACE(std::to_string(p.X + dx) + "," + std::to_string(p.Y + dy));
                ASSERT_EQ(doc.ItemAt(p.X + dx, p.Y + dy, kTol, Visible),
                          WalkDown(doc, p.X + dx, p.Y + dy, kTol));
            }
}

void AddRow(TORXBaseLabel& doc, int count) {
    for (int i = 0; i < count; ++i) Add(doc, TQVLItemType::itLine, i * 1'000, 0, i * 1'000 + 500, 500);
}

TEST(PickIndexTest, MovesResizesAndPenWidthsAreFollowedWithoutARebuild) {
    TORXHeadlessLabel doc;
    AddRow(doc, 2'000);
    ASSERT_EQ(doc.ItemAt(10'250, 250, kTol), doc.GetItem(10));
    ASSERT_EQ(doc.PickIndexBuilds(), 1U);
    std::vector<TQVLPto> places;
    for (int i = 0; i < 40; ++i) {
        TORXBaseItem* line = doc.GetItem(i * 7);
        places.push_back(line->GetPoint(1));
        switch (i % 3) {
            case 0:  // onto the next line but one, below it in the paint order unless it comes later
                line->BaseMove(0, 0, 2'000, 0, TQVLMoveOpt::moMove, false);
                break;
            case 1:
                line->BaseMove(0, 0, 0, 3'000, TQVLMoveOpt::moResize, false);
                break;
            default:
                line->SetPenWidth(900);
                break;
        }
        places.push_back(line->GetPoint(1));
        places.push_back(line->GetPoint(2));
        // The same item twice is still one followed item.
        if (i == 0) line->BaseMove(0, 0, 0, 100, TQVLMoveOpt::moMove, false);
    }
    ExpectSameAsWalk(doc, places);
    EXPECT_EQ(doc.PickIndexBuilds(), 1U);
    // A line moved onto a later one lies below it; one moved onto an earlier one lies above it.
    TORXBaseItem* early = doc.GetItem(1'500);
    TORXBaseItem* late = doc.GetItem(1'510);
    early->BaseMove(0, 0, 10'000, 0, TQVLMoveOpt::moMove, false);
    EXPECT_EQ(doc.ItemAt(1'510'250, 250, kTol), late);
    late->BaseMove(0, 0, -20'000, 0, TQVLMoveOpt::moMove, false);
    EXPECT_EQ(doc.ItemAt(1'490'250, 250, kTol), late);
    EXPECT_EQ(doc.ItemAt(1'510'250, 250, kTol), early);
    // A batch, as the editor makes its edits, flushes its recalculations without a rebuild either.
    doc.BeginUpdate(true);
    early->BaseMove(0, 0, 0, 4'000, TQVLMoveOpt::moMove, false);
    doc.EndUpdate();
    EXPECT_EQ(doc.ItemAt(1'510'250, 4'250, kTol), early);
    EXPECT_EQ(doc.ItemAt(1'510'250, 250, kTol), nullptr);
    EXPECT_EQ(doc.PickIndexBuilds(), 1U);
}

TEST(PickIndexTest, AddedThenMovedThenDeletedItemsAreFollowedWithoutARebuild) {
    TORXHeadlessLabel doc;
    AddRow(doc, 2'000);
    TORXBaseItem* under = doc.GetItem(20);
    ASSERT_EQ(doc.ItemAt(20'250, 250, kTol), under);
    // A new line across the old one paints above it.
    TORXBaseItem* added = Add(doc, TQVLItemType::itLine, 20'000, 0, 20'500, 500);
    EXPECT_EQ(doc.ItemAt(20'250, 250, kTol), added);
    added->BaseMove(0, 0, 0, 5'000, TQVLMoveOpt::moMove, false);
    EXPECT_EQ(doc.ItemAt(20'250, 250, kTol), under);
    EXPECT_EQ(doc.ItemAt(20'250, 5'250, kTol), added);
    // A second new one above the first.
    TORXBaseItem* second = Add(doc, TQVLItemType::itLine, 20'000, 5'000, 20'500, 5'500);
    EXPECT_EQ(doc.ItemAt(20'250, 5'250, kTol), second);
    doc.DeleteItem(second, true);
    EXPECT_EQ(doc.ItemAt(20'250, 5'250, kTol), added);
    doc.DeleteItem(added, true);
    EXPECT_EQ(doc.ItemAt(20'250, 5'250, kTol), nullptr);
    // Deleting an item of the grid, moved or not, leaves nothing behind at either place.
    TORXBaseItem* moved = doc.GetItem(30);
    moved->BaseMove(0, 0, 0, 8'000, TQVLMoveOpt::moMove, false);
    doc.DeleteItem(moved, true);
    doc.DeleteItem(under, true);
    EXPECT_EQ(doc.ItemAt(30'250, 8'250, kTol), nullptr);
    EXPECT_EQ(doc.ItemAt(20'250, 250, kTol), nullptr);
    EXPECT_EQ(doc.ItemAt(21'250, 250, kTol), doc.GetItem(20));
    EXPECT_EQ(doc.PickIndexBuilds(), 1U);
    ExpectSameAsWalk(doc, {{20'000, 0}, {30'000, 8'000}, {40'000, 0}});
}

TEST(PickIndexTest, ZOrderAndUndoStillRebuildAndTooManyEditsForceIt) {
    TORXHeadlessLabel doc;
    AddRow(doc, 2'000);  // the bound for 2,000 items is the floor of 64
    ASSERT_NE(doc.ItemAt(250, 250, kTol), nullptr);
    std::vector<TQVLPto> places;
    for (int i = 0; i < 64; ++i) {
        doc.GetItem(i)->BaseMove(0, 0, 0, 2'000, TQVLMoveOpt::moMove, false);
        places.push_back(doc.GetItem(i)->GetPoint(1));
    }
    EXPECT_NE(doc.ItemAt(250, 2'250, kTol), nullptr);
    EXPECT_EQ(doc.PickIndexBuilds(), 1U);
    doc.GetItem(64)->BaseMove(0, 0, 0, 2'000, TQVLMoveOpt::moMove, false);
    EXPECT_EQ(doc.ItemAt(64'250, 2'250, kTol), doc.GetItem(64));
    EXPECT_EQ(doc.PickIndexBuilds(), 2U);
    ExpectSameAsWalk(doc, places);

    doc.Undo();
    EXPECT_EQ(doc.ItemAt(64'250, 250, kTol), doc.GetItem(64));
    EXPECT_EQ(doc.PickIndexBuilds(), 3U);
    doc.SelectItem(doc.GetItem(0), false);
    doc.BringToFront();
    EXPECT_EQ(doc.ItemAt(250, 2'250, kTol), doc.GetItem(1'999));
    EXPECT_EQ(doc.PickIndexBuilds(), 4U);
    // Deletes count towards the bound as well. The first line is on top now, so index 100 holds line 101.
    for (int i = 0; i < 70; ++i) doc.DeleteItem(doc.GetItem(100), true);
    EXPECT_EQ(doc.ItemAt(170'250, 250, kTol), nullptr);
    EXPECT_EQ(doc.ItemAt(171'250, 250, kTol), doc.GetItem(100));
    EXPECT_EQ(doc.PickIndexBuilds(), 5U);
}

// Random items of the common kinds, random edits and undo and redo; after each, clicks near items and
// anywhere must find what the walk finds.
TEST(PickIndexTest, RandomEditsKeepTheIndexEqualToTheWalk) {
    static const TQVLItemType kinds[] = {
        TQVLItemType::itLine,      TQVLItemType::itRectangle, TQVLItemType::itCircle,
        TQVLItemType::itEllipse,   TQVLItemType::itText,      TQVLItemType::itFlow,
        TQVLItemType::itArrowLine, TQVLItemType::itPolyLine,  TQVLItemType::itBezier,
        TQVLItemType::itPolygon,   TQVLItemType::itSector};
    std::mt19937 rng(20261121);
    const auto uniform = [&](std::int64_t lo, std::int64_t hi) {
        return std::uniform_int_distribution<std::int64_t>(lo, hi)(rng);
    };
    TORXHeadlessLabel doc;
    TORXLayer* second = doc.AddLayer();
    const auto addRandom = [&] {
        const TQVLItemType kind = kinds[uniform(0, std::size(kinds) - 1)];
        const std::int64_t x = uniform(0, 60'000), y = uniform(0, 60'000);
        TORXBaseItem* item = Add(doc, kind, x, y, x + uniform(-8'000, 8'000), y + uniform(-8'000, 8'000));
        if (kind == TQVLItemType::itPolyLine || kind == TQVLItemType::itPolygon ||
            kind == TQVLItemType::itBezier)
            item->InsertPoint(x + uniform(-8'000, 8'000), y + uniform(-8'000, 8'000), 99);
        if (auto* flow = dynamic_cast<TORXBaseFlow*>(item); flow != nullptr && uniform(0, 1) == 0)
            flow->SetText("step");
        if (auto* arrow = dynamic_cast<TORXBaseArrowLine*>(item); arrow != nullptr && uniform(0, 1) == 0)
            arrow->SetText("a label wider than the arrow");
        if (uniform(0, 3) == 0) item->SetPenWidth(static_cast<std::int32_t>(uniform(0, 2'000)));
        if (uniform(0, 4) == 0) item->SetLayer(second);
    };
    for (int i = 0; i < 400; ++i) addRandom();

    const auto anyItem = [&] {
        return doc.GetItem(static_cast<std::int32_t>(uniform(0, doc.GetItemsCount() - 1)));
    };
    const std::vector<std::function<void()>> edits = {
        addRandom,
        [&] { doc.DeleteItem(anyItem(), true); },
        [&] {
            anyItem()->BaseMove(0, 0, uniform(-20'000, 20'000), uniform(-20'000, 20'000), TQVLMoveOpt::moMove,
                                false);
        },
        [&] {
            anyItem()->BaseMove(0, 0, uniform(-9'000, 9'000), uniform(-9'000, 9'000), TQVLMoveOpt::moResize,
                                false);
        },
        [&] { anyItem()->SetPenWidth(static_cast<std::int32_t>(uniform(0, 3'000))); },
        [&] { doc.Undo(); },
        [&] { doc.Redo(); },
        [&] {
            doc.ClearSelection(false);
            doc.SelectItem(anyItem(), false);
            if (uniform(0, 1) == 0)
                doc.SendToBack();
            else
                doc.BringToFront();
        },
        [&] {
            TQVLayerOpts& o = second->fOptions;
            if (o.Contains(TQVLayerOp::lopVisible))
                o.Exclude(TQVLayerOp::lopVisible);
            else
                o.Include(TQVLayerOp::lopVisible);
        },
    };
    static const std::int32_t tolerances[] = {0, 5, kTol, 400, 5'000};
    for (int step = 0; step < 150; ++step) {
        const std::size_t edit =
            static_cast<std::size_t>(uniform(0, static_cast<std::int64_t>(edits.size()) - 1));
        edits[edit]();
        for (int click = 0; click < 40; ++click) {
            const std::int32_t tol = tolerances[uniform(0, std::size(tolerances) - 1)];
            std::int64_t x = uniform(-10'000, 80'000), y = uniform(-10'000, 80'000);
            if (click % 4 != 0) {  // near an item's outline or inside it
                const TQVLRect& b = anyItem()->BoundsRect();
                x = uniform(b.Left - 3 * tol - 1'000, b.Right + 3 * tol + 1'000);
                y = click % 2 == 0 ? (uniform(0, 1) == 0 ? b.Top : b.Bottom) + uniform(-2 * tol, 2 * tol)
                                   : uniform(b.Top - 2 * tol, b.Bottom + 2 * tol);
            }
            SCOPED_TRACE("step " + std::to_string(step) + " edit " + std::to_string(edit) + " at " +
                         std::to_string(x) + "," + std::to_string(y) + " tol " + std::to_string(tol));
            ASSERT_EQ(doc.ItemAt(x, y, tol, Visible), WalkDown(doc, x, y, tol));
        }
    }
    // Adds, deletes, moves and pen widths were followed; undo, redo and the paint order rebuilt.
    EXPECT_LT(doc.PickIndexBuilds(), 100U);
}

}  // namespace
}  // namespace Orvex
