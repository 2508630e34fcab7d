// Items join a document only once they are fully built: a kind whose construction throws, or a factory
// that fails after building, leaves no item, no undo step and nothing to free behind.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "orvex/document/headless.h"
#include "orvex/items/line_items.h"
#include "orvex/items/shape_items.h"

namespace Orvex {
namespace {

// A line whose construction fails after the item base has been built.
class TFailingLine final : public TORXBaseLine {
  public:
    explicit TFailingLine(TORXBaseLabel* owner) : TORXBaseLine(owner) { throw std::runtime_error("no line"); }
    void Draw(TORXBaseDraw& surface) override { (void)surface; }
    void Print(TORXBaseDraw& surface) override { (void)surface; }
};

// Lines fail while being built; rectangles are built and then the factory gives up.
class TFailingLabel final : public TORXHeadlessLabel {
  public:
    std::unique_ptr<TORXBaseItem> MakeItem(TQVLItemType type) override {
        if (type == TQVLItemType::itLine) return std::make_unique<TFailingLine>(this);
        if (type == TQVLItemType::itRectangle) {
            [[maybe_unused]] const auto built = TORXHeadlessLabel::MakeItem(type);
            throw std::runtime_error("the factory gave up");
        }
        return TORXHeadlessLabel::MakeItem(type);
    }
};

TEST(ItemCreationTest, FailedBuildsLeaveNoItemAndNoUndoStep) {
    TFailingLabel doc;
    TORXBaseItem* circle = doc.CreateItem(TQVLItemType::itCircle);
    circle->SetBase(2, 500, 500);
    const std::size_t undoSteps = doc.UndoCount();
    EXPECT_THROW(doc.CreateItem(TQVLItemType::itLine), std::runtime_error);
    EXPECT_THROW(doc.CreateItem(TQVLItemType::itRectangle), std::runtime_error);
    ASSERT_EQ(doc.GetItemsCount(), 1);
    EXPECT_EQ(doc.GetItem(0), circle);
    EXPECT_EQ(doc.UndoCount(), undoSteps);

    // The failures recorded nothing, so undo walks back over the circle alone.
    while (!doc.IsUndoEmpty()) doc.Undo();
    EXPECT_EQ(doc.GetItemsCount(), 0);
    while (!doc.IsRedoEmpty()) doc.Redo();
    ASSERT_EQ(doc.GetItemsCount(), 1);
    EXPECT_EQ(doc.GetItem(0)->ItemType(), TQVLItemType::itCircle);
}

TEST(ItemCreationTest, AddedItemsGoWhereTheirKindBelongs) {
    TORXHeadlessLabel doc;
    EXPECT_EQ(doc.AddItem(nullptr), nullptr);

    auto* rect = doc.AddNew<THeadlessItem<TORXBaseRectangle>>();
    ASSERT_EQ(doc.GetItemsCount(), 1);
    EXPECT_EQ(doc.GetItem(0), rect);
    EXPECT_FALSE(doc.IsUndoEmpty());  // a new item is one undo step
    doc.Undo();
    EXPECT_EQ(doc.GetItemsCount(), 0);

    // A preview copy is neither part of the drawing nor an edit.
    const std::size_t undoSteps = doc.UndoCount();
    auto* preview = doc.AddNew<THeadlessItem<TORXBaseRectangle>>(true);
    EXPECT_EQ(doc.GetItemsCount(), 0);
    ASSERT_EQ(doc.GetPreviewCount(), 1);
    EXPECT_EQ(doc.GetPreviewItem(0), preview);
    EXPECT_EQ(doc.UndoCount(), undoSteps);
}

TEST(ItemCreationTest, AnItemBuiltOnAnotherDocumentIsRefused) {
    TORXHeadlessLabel doc;
    TORXHeadlessLabel other;
    EXPECT_THROW(doc.AddItem(other.MakeItem(TQVLItemType::itLine)), std::invalid_argument);
    EXPECT_EQ(doc.GetItemsCount(), 0);
    EXPECT_EQ(other.GetItemsCount(), 0);
    EXPECT_TRUE(doc.IsUndoEmpty());
}

}  // namespace
}  // namespace Orvex
