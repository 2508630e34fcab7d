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
}

}  // namespace
}  // namespace Orvex
