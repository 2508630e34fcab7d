// Items found by kind and internal id through the document's index: the answer must be the one a walk
// over the paint order gives, through additions, deletions, undo, changed ids and reordering.
#include <gtest/gtest.h>

#include "orvex/document/headless.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"

namespace Orvex {
namespace {

TORXBaseFlow* NewFlow(TORXBaseLabel& doc) {
    return doc.AddNew<THeadlessItem<TORXBaseFlow>>(false);
}

TEST(ItemIdIndex, FindsTheItemOfTheKindThroughEditsAndUndo) {
    TORXHeadlessLabel doc;
    TORXBaseFlow* a = NewFlow(doc);
    TORXBaseFlow* b = NewFlow(doc);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, a->InID()), a);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, b->InID()), b);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itLine, b->InID()), nullptr);  // the kind counts
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, 9999), nullptr);

    // Added after the index was built.
    TORXBaseFlow* c = NewFlow(doc);
    auto* line = doc.AddNew<THeadlessItem<TORXBaseLine>>(false);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, c->InID()), c);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itLine, line->InID()), line);

    const std::int32_t bId = b->InID();
    doc.DeleteItem(b, true);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, bId), nullptr);
    doc.Undo();
    TORXBaseItem* back = doc.FindItemByInID(TQVLItemType::itFlow, bId);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->InID(), bId);
    EXPECT_EQ(back->ItemType(), TQVLItemType::itFlow);

    // A reader's id replaces the drawn one.
    c->SetInID(500);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, 500), c);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, 3), nullptr);

    const std::int32_t aId = a->InID();
    doc.Clear(TQVLClears{TQVLClear::cleAll}, false);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, aId), nullptr);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, 500), nullptr);
}

TEST(ItemIdIndex, ARepeatedIdFindsTheFirstInPaintOrder) {
    TORXHeadlessLabel doc;
    TORXBaseFlow* a = NewFlow(doc);
    TORXBaseFlow* b = NewFlow(doc);
    TORXBaseFlow* c = NewFlow(doc);
    b->SetInID(a->InID());  // as a damaged file may have it
    const std::int32_t id = a->InID();
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, id), a);

    doc.SelectItem(a, false);
    doc.BringToFront();  // a now paints after b
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, id), b);

    doc.DeleteItem(b, false);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, id), a);
    EXPECT_EQ(doc.FindItemByInID(TQVLItemType::itFlow, c->InID()), c);
}

}  // namespace
}  // namespace Orvex
