#include <gtest/gtest.h>

#include "orvex/document/headless.h"
#include "orvex/io/json.h"
#include "orvex/render/draw_context.h"

namespace Orvex {
namespace {

// Counts its paint calls, to see which path DrawElement takes.
class TCountingItem : public TORXBasePoint {
  public:
    TCountingItem(TORXBaseLabel* owner, bool preview, bool data)
        : TORXBasePoint(owner, TQVLItemType::itPoint, preview), fData(data) {}
    bool GetIsData() const override { return fData; }
    void Draw(TORXBaseDraw& surface) override {
        (void)surface;
        ++Draws;
    }
    void Print(TORXBaseDraw& surface) override {
        (void)surface;
        ++Prints;
    }
    int Draws = 0;
    int Prints = 0;

  private:
    bool fData;
};

TEST(ItemTest, NewLineHasTheDefaults) {
    TORXHeadlessLabel doc;
    for (int i = 0; i < 6; ++i) doc.NextID();
    TORXBaseItem* line = doc.CreateItem(TQVLItemType::itLine);
    EXPECT_EQ(line->ID(), "Line007");
    EXPECT_EQ(line->InID(), 7);
    EXPECT_EQ(line->PenWidth(), 100);
    EXPECT_EQ(line->Color(), 0xFF000000u);
    EXPECT_EQ(line->Layer(), doc.GetLayer(1));
    EXPECT_EQ(line->Options(), kDefaultItemOptions);
    EXPECT_EQ(line->Angle(), TQVLAngle::ag0);
    EXPECT_EQ(line->Points(), (TQVLPtoA{{0, 0}, {0, 0}}));
    EXPECT_FALSE(doc.IsUndoEmpty());  // the creation is recorded
    for (int i = 0; i < 1000; ++i) doc.NextID();
    EXPECT_EQ(doc.CreateItem(TQVLItemType::itText)->ID(), "Text1008");
}

TEST(ItemTest, NameAndPointCountPerKind) {
    struct TCase {
        int Type;
        const char* Name;
        int Points;
    };
    const TCase cases[] = {{0, "Undefined", 1},    {3, "ArrowLine", 4}, {4, "Polyline", 0},
                           {17, "FlowDiagram", 2}, {18, "Link", 1},     {24, "Symbol", 3},
                           {26, "Dimension", 10},  {29, "RichText", 2}, {30, "None", 1},
                           {255, "None", 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Type);
        EXPECT_EQ(NameItem(static_cast<TQVLItemType>(c.Type)), c.Name);
        EXPECT_EQ(NumPointsItem(static_cast<TQVLItemType>(c.Type)), c.Points);
    }
}

TEST(ItemTest, ItemCreatedWhileReadingOrPastingDrawsNoId) {
    TORXHeadlessLabel doc;
    doc.NextID();
    doc.AddState(TOrvexState::lsPaste);
    EXPECT_EQ(doc.CreateItem(TQVLItemType::itLine)->InID(), 0);
    doc.RemoveState(TOrvexState::lsPaste);
    EXPECT_EQ(doc.PeekNextID(), 2);
}

TEST(ItemTest, PointsAreOneBasedAndIgnoreOutOfRange) {
    TORXHeadlessLabel doc;
    TORXBaseItem* line = doc.CreateItem(TQVLItemType::itLine);
    line->SetBase(1, 1000, 2000);
    line->SetPointX(2, 5000);
    line->SetPointY(3, 99);  // ignored
    line->SetPointX(0, 99);  // ignored
    EXPECT_EQ(line->GetPointX(1), 1000);
    EXPECT_EQ(line->GetPointY(1), 2000);
    EXPECT_EQ(line->GetPointX(2), 5000);
    EXPECT_EQ(line->GetPointX(3), 0);
    EXPECT_FLOAT_EQ(line->GetPointMMX(2), 5.0f);
    EXPECT_EQ(line->BoundsRect(), TQVLRect(1000, 0, 5000, 2000));
}

TEST(ItemTest, PickAddsToleranceOnlyToThinSides) {
    // The base test, which the kinds' exact shape tests build on.
    TORXHeadlessLabel doc;
    TORXBaseItem* line = doc.CreateItem(TQVLItemType::itLine);
    line->SetBase(1, 0, 1000);
    line->SetBase(2, 10000, 1000);  // horizontal: Top = Bottom
    EXPECT_TRUE(line->TORXBaseItem::Pick(5000, 1400, 500, false));
    EXPECT_TRUE(line->TORXBaseItem::Pick(-400, 600, 500, false));
    EXPECT_FALSE(line->TORXBaseItem::Pick(5000, 1500, 500, false));  // the far edge is outside
    TORXBaseItem* rect = doc.CreateItem(TQVLItemType::itRectangle);
    rect->SetBase(1, 0, 0);
    rect->SetBase(2, 10000, 10000);
    EXPECT_TRUE(rect->TORXBaseItem::Pick(0, 0, 500, false));
    EXPECT_FALSE(rect->TORXBaseItem::Pick(-1, 5000, 500, false));
    EXPECT_FALSE(rect->TORXBaseItem::Pick(10000, 5000, 500, false));
    EXPECT_FALSE(rect->TORXBaseItem::Pick(5000, 10200, 500, false));
}

TEST(ItemTest, SearchRectWholeAcceptsTouchingEdgesPartialNeedsOverlap) {
    TORXHeadlessLabel doc;
    TORXBaseItem* rect = doc.CreateItem(TQVLItemType::itRectangle);
    rect->SetBase(1, 1000, 1000);
    rect->SetBase(2, 5000, 5000);
    EXPECT_TRUE(rect->SearchRect({1000, 1000, 5000, 5000}, false));
    EXPECT_FALSE(rect->SearchRect({1001, 1000, 5000, 5000}, false));
    EXPECT_TRUE(rect->SearchRect({4000, 4000, 9000, 9000}, true));
    EXPECT_FALSE(rect->SearchRect({6000, 6000, 9000, 9000}, true));
}

TEST(ItemTest, CheckFitWidensByHalfThePen) {
    TORXHeadlessLabel doc;
    TORXBaseItem* line = doc.CreateItem(TQVLItemType::itLine);
    line->SetBase(1, 2000, 3000);
    line->SetBase(2, 8000, 9000);
    line->SetPenWidthMM(1.0f);
    std::int64_t minX = -1, maxX = -1, minY = -1, maxY = -1;
    line->CheckFit(minX, maxX, minY, maxY);
    EXPECT_EQ(minX, 1500);
    EXPECT_EQ(maxX, 8500);
    EXPECT_EQ(minY, 2500);
    EXPECT_EQ(maxY, 9500);
}

TEST(ItemTest, CheckPositionPutsPointOneTopLeftThroughA32BitTemporary) {
    TORXHeadlessLabel doc;
    TORXBaseItem* rect = doc.CreateItem(TQVLItemType::itRectangle);
    rect->SetBase(1, 9000, 8000);
    rect->SetBase(2, 1000, 2000);
    rect->CheckPosition();
    EXPECT_EQ(rect->GetPoint(1), (TQVLPto{1000, 2000}));
    EXPECT_EQ(rect->GetPoint(2), (TQVLPto{9000, 8000}));

    const std::int64_t big = (std::int64_t{1} << 32) + 5;  // beyond the 32-bit range
    rect->SetBase(1, big + 10, 0);
    rect->SetBase(2, big, 0);
    rect->CheckPosition();
    EXPECT_EQ(rect->GetPointX(1), 5);  // cut to 32 bits by the swap
    EXPECT_EQ(rect->GetPointX(2), big + 10);
    const std::int64_t wraps = 0x80000000LL;  // becomes negative in 32 bits
    rect->SetBase(1, wraps + 1, 0);
    rect->SetBase(2, wraps, 0);
    rect->CheckPosition();
    EXPECT_EQ(rect->GetPointX(1), -2147483648LL);
}

TEST(ItemTest, QuarterTurnsAreUndoneByTheOppositeTurn) {
    TORXHeadlessLabel doc;
    TORXBaseItem* poly = doc.CreateItem(TQVLItemType::itPolyLine);
    poly->InsertPoint(0, 0, 1);
    poly->InsertPoint(4000, 0, 2);
    poly->InsertPoint(4000, 2000, 3);
    const TQVLPtoA before = poly->Points();
    poly->RotateRight();
    EXPECT_EQ(poly->Angle(), TQVLAngle::ag90);
    EXPECT_EQ(poly->GetPoint(1), (TQVLPto{3000, -1000}));  // clockwise on screen about (2000, 1000)
    poly->RotateLeft();
    EXPECT_EQ(poly->Points(), before);
    EXPECT_EQ(poly->Angle(), TQVLAngle::ag0);
    poly->RotateLeft();
    EXPECT_EQ(poly->Angle(), TQVLAngle::ag270);
}

TEST(ItemTest, MoveIsInTheDocumentUnitAndStaysOnThePage) {
    TORXHeadlessLabel doc;
    doc.SetUnits(TQVLUnits::unCM);
    TORXBaseItem* line = doc.CreateItem(TQVLItemType::itLine);
    line->SetBase(1, 1000, 1000);
    line->SetBase(2, 3000, 3000);
    line->Move(1.0f, 0.5f, TQVLMoveOpt::moMove);
    EXPECT_EQ(line->GetPoint(1), (TQVLPto{11000, 6000}));
    line->Move(-5.0f, 0.0f, TQVLMoveOpt::moMove);
    EXPECT_EQ(line->GetPointX(1), 0);
}

TEST(ItemTest, LinkPointsAreTheMiddlesOfTheBoundsSides) {
    TORXHeadlessLabel doc;
    auto& poly = dynamic_cast<TORXBasePoint&>(*doc.CreateItem(TQVLItemType::itPolygon));
    poly.InsertPoint(0, 0, 1);
    poly.InsertPoint(10000, 4000, 2);
    EXPECT_EQ(poly.LinkPoint(0), (TQVLPto64{5000, 0}));
    EXPECT_EQ(poly.LinkPoint(1), (TQVLPto64{10000, 2000}));
    EXPECT_EQ(poly.LinkPoint(9), (TQVLPto64{5000, 2000}));
    TQVLink link;
    EXPECT_TRUE(poly.CheckLink(400, 2300, link));
    EXPECT_EQ(link.ID, poly.InID());
    EXPECT_EQ(link.Index, 3);
    EXPECT_FALSE(poly.CheckLink(5000, 2000, link));
}

TEST(ItemTest, DrawElementUsesPreviewCopiesForDataItemsInPreviewAndExport) {
    TORXHeadlessLabel doc;
    auto* item = doc.AddNew<TCountingItem>(false, true);
    auto* cell = doc.AddNew<TCountingItem>(true, false);
    auto* other = doc.AddNew<TCountingItem>(true, false);
    cell->SetInID(item->InID());
    cell->PreviewPos(1, 2);
    other->SetInID(item->InID());
    TORXBaseDraw surface;
    surface.aCol = 1;
    surface.aRow = 2;
    surface.fState = TQVLDrawState::dsEdit;
    item->DrawElement(surface);
    EXPECT_EQ(item->Draws, 1);
    for (auto state : {TQVLDrawState::dsPreview, TQVLDrawState::dsExport}) {
        surface.fState = state;
        item->DrawElement(surface);
    }
    EXPECT_EQ(item->Draws, 1);
    EXPECT_EQ(cell->Draws, 2);
    EXPECT_EQ(other->Draws, 0);
    item->PrintElement(surface);
    EXPECT_EQ(item->Prints, 1);
    EXPECT_EQ(doc.GetItemsCount(), 1);
    EXPECT_EQ(doc.GetPreviewCount(), 2);
}

}  // namespace
}  // namespace Orvex
