#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

#include "orvex/document/headless.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

static_assert(!std::is_default_constructible_v<TORXBaseLabel>, "only descendants are created");

struct TRecorder : IQVObserver {
    std::vector<TQVChange> Changes;
    void Update(TORXBaseLabel& document, TQVChange change) override {
        EXPECT_TRUE(document.GetChangedValue(change));
        Changes.push_back(change);
    }
};

TORXBaseItem* NewItem(TORXBaseLabel& doc, TQVLItemType type) {
    return doc.CreateItem(type);
}

TEST(DocumentTest, NewDocumentHasOneDefaultLayerAndStyle) {
    TORXHeadlessLabel doc;
    ASSERT_EQ(doc.GetLayersCount(), 1);
    EXPECT_EQ(doc.GetLayer(1)->fName, "Default");
    EXPECT_EQ(doc.GetLayer(1)->fColor, 0xFF000000u);
    EXPECT_EQ(doc.GetLayer(1)->fBackColor, 0xFFFFFFFFu);
    ASSERT_EQ(doc.GetDimStylesCount(), 1);
    EXPECT_EQ(doc.GetDimStyle(1)->fName, "Default");
    EXPECT_EQ(doc.GetDimStyle(1)->fDimColor, 0xFF808080u);
    EXPECT_EQ(doc.Options(), (TOrvexOptions{TOrvexOption::loUniqueID, TOrvexOption::loUndoRedo}));
    EXPECT_EQ(doc.PeekNextID(), 1);
    EXPECT_EQ(doc.GetItemsCount(), 0);
    EXPECT_EQ(doc.GetState(), 0);
    EXPECT_TRUE(doc.IsUndoEmpty());
    EXPECT_EQ(doc.BackImageLayer(), -1);
}

TEST(DocumentTest, SetActiveLayerIsOneBasedAndRefusesNoChange) {
    TORXHeadlessLabel doc;
    EXPECT_EQ(doc.AddLayer()->fName, "New Layer");
    doc.AddLayer();
    EXPECT_FALSE(doc.SetActiveLayer(0));
    EXPECT_FALSE(doc.SetActiveLayer(4));
    EXPECT_FALSE(doc.SetActiveLayer(1));  // already active
    EXPECT_TRUE(doc.SetActiveLayer(3));
    EXPECT_EQ(doc.GetActiveLayer(), doc.GetLayer(3));
    EXPECT_EQ(doc.LayerIdx(doc.GetLayer(3)), 2);
    EXPECT_EQ(doc.GetLayer(0), nullptr);
    EXPECT_EQ(doc.GetItem(0), nullptr);
}

TEST(DocumentTest, ElementByIdIgnoresCaseAndSelectsOnlyTheFoundItem) {
    TORXHeadlessLabel doc;
    TRecorder rec;
    doc.Attach(&rec);
    TORXBaseItem* other = NewItem(doc, TQVLItemType::itRectangle);
    TORXBaseItem* line = NewItem(doc, TQVLItemType::itLine);
    doc.SelectItem(other, false);
    EXPECT_EQ(line->ID(), "Line002");
    int selected = 0;
    doc.OnSelectItem = [&](TORXBaseItem* item) { selected += item == line ? 1 : 100; };
    EXPECT_EQ(doc.ElementByID("line002", false), line);
    EXPECT_EQ(doc.Selection().size(), 1u);  // untouched without selection
    EXPECT_EQ(doc.ElementByID("LINE002", true), line);
    ASSERT_EQ(doc.Selection().size(), 1u);
    EXPECT_EQ(doc.Selection().front(), line);
    EXPECT_EQ(line->State(), TQVLItemState::isSelected);
    EXPECT_EQ(other->State(), TQVLItemState::isNormal);
    EXPECT_EQ(selected, 1);
    EXPECT_EQ(rec.Changes, std::vector<TQVChange>{TQVChange::chSelect});
    EXPECT_EQ(doc.ElementByID("Line999", true), nullptr);
    EXPECT_TRUE(doc.RepeatID("rectangle001", line));
    EXPECT_FALSE(doc.RepeatID("rectangle001", other));
    doc.Detach(&rec);
}

TEST(DocumentTest, BatchTellsObserversOnceAndEndUpdateAloneOnlyFlushes) {
    TORXHeadlessLabel doc;
    TRecorder rec;
    doc.Attach(&rec);
    doc.EndUpdate();  // nothing pending: nothing told, no error
    EXPECT_TRUE(rec.Changes.empty());
    TORXBaseItem* a = NewItem(doc, TQVLItemType::itLine);
    doc.BeginUpdate(true);
    EXPECT_TRUE(doc.HasState(TOrvexState::lsUpdating));
    a->SetColor(0xFF00FF00);
    a->SetPenWidth(300);
    doc.ChangeState(TOrvexState::lsCalc, a);
    doc.ChangeState(TOrvexState::lsCalc, a);
    EXPECT_EQ(doc.PendingCalc().size(), 1u);
    EXPECT_TRUE(rec.Changes.empty());
    doc.EndUpdate();
    EXPECT_EQ(rec.Changes, std::vector<TQVChange>{TQVChange::chPaint});
    EXPECT_TRUE(doc.PendingCalc().empty());
    EXPECT_FALSE(doc.HasState(TOrvexState::lsUpdate));
    EXPECT_FALSE(doc.HasState(TOrvexState::lsUpdating));
    EXPECT_TRUE(doc.HasState(TOrvexState::lsModified));

    rec.Changes.clear();
    doc.BeginUpdate(false);  // no paint requested
    a->SetColor(0xFF0000FF);
    doc.EndUpdate();
    EXPECT_TRUE(rec.Changes.empty());

    doc.BeginUpdate(true);
    a->SetColor(0xFF112233);
    doc.SetUnits(TQVLUnits::unINCH);  // a measure change wins over a repaint
    doc.EndUpdate();
    EXPECT_EQ(rec.Changes, std::vector<TQVChange>{TQVChange::chMeasure});
    doc.Detach(&rec);
}

TEST(DocumentTest, StateBitsAboveFifteenAreIgnored) {
    TORXHeadlessLabel doc;
    doc.AddState(TOrvexState::lsPrint);
    EXPECT_EQ(doc.GetState(), 1u << 9);
    doc.AddState(static_cast<TOrvexState>(16));
    EXPECT_EQ(doc.GetState(), 1u << 9);
    doc.RemoveState(TOrvexState::lsPrint);
    EXPECT_EQ(doc.GetState(), 0);
}

TEST(DocumentTest, ReadBracketSetsIdsRestoresUndoAndTellsMeasure) {
    TORXHeadlessLabel doc;
    TRecorder rec;
    doc.Attach(&rec);
    doc.BeginRead(false);
    EXPECT_FALSE(doc.Options().Contains(TOrvexOption::loUndoRedo));
    TORXBaseItem* item = NewItem(doc, TQVLItemType::itLine);
    EXPECT_EQ(item->InID(), 0);  // reading: the id comes from the data
    item->SetInID(5);
    doc.RaiseNextID(5);
    item->SetColor(0xFF00FF00);
    doc.EndRead(false);
    EXPECT_EQ(doc.PeekNextID(), 7);  // one more than the counter the read left
    EXPECT_TRUE(doc.Options().Contains(TOrvexOption::loUndoRedo));
    EXPECT_TRUE(doc.IsUndoEmpty());
    EXPECT_EQ(rec.Changes, std::vector<TQVChange>{TQVChange::chMeasure});
    EXPECT_FALSE(doc.HasState(TOrvexState::lsReading));
    doc.Detach(&rec);
}

TEST(DocumentTest, ClearKeepsOrDropsTheBaseLayerAndStyle) {
    TORXHeadlessLabel doc;
    doc.AddLayer();
    doc.AddLayer();
    doc.AddDimStyle("Metric");
    TORXBaseItem* item = NewItem(doc, TQVLItemType::itLine);
    item->SetLayer(doc.GetLayer(3));
    doc.Clear(TQVLClears{TQVLClear::cleLayers, TQVLClear::cleDimStyles}, false);
    EXPECT_EQ(doc.GetLayersCount(), 1);
    EXPECT_EQ(item->Layer(), doc.GetLayer(1));
    EXPECT_EQ(doc.GetDimStylesCount(), 1);
    doc.Clear(TQVLClears{TQVLClear::cleLayers, TQVLClear::cleBaseLayer, TQVLClear::cleDimStyles,
                         TQVLClear::cleBaseStyle, TQVLClear::cleItems},
              false);
    EXPECT_EQ(doc.GetLayersCount(), 0);
    EXPECT_EQ(doc.GetDimStylesCount(), 0);
    EXPECT_EQ(doc.GetItemsCount(), 0);
    doc.New();
    EXPECT_EQ(doc.GetLayersCount(), 1);
    EXPECT_EQ(doc.GetLayer(1)->fName, "Default");
    EXPECT_EQ(doc.GetDimStylesCount(), 1);
}

TEST(DocumentTest, BackLayerIsTheLastVisibleImageOrMapLayer) {
    TORXHeadlessLabel doc;
    doc.AddLayer()->fOptions.Include(TQVLayerOp::lopImage);
    TORXLayer* map = doc.AddLayer();
    map->fOptions.Include(TQVLayerOp::lopMap);
    doc.AddLayer();
    doc.CheckBackLayer();
    EXPECT_EQ(doc.BackImageLayer(), 3);
    EXPECT_TRUE(doc.HasBackLayer());
    map->fOptions.Exclude(TQVLayerOp::lopVisible);
    doc.CheckBackLayer();
    EXPECT_EQ(doc.BackImageLayer(), 2);
}

TEST(DocumentTest, ZOrderMovesTheFirstSelectedItem) {
    TORXHeadlessLabel doc;
    TORXBaseItem* a = NewItem(doc, TQVLItemType::itLine);
    TORXBaseItem* b = NewItem(doc, TQVLItemType::itLine);
    TORXBaseItem* c = NewItem(doc, TQVLItemType::itLine);
    doc.SendToBack();  // nothing selected
    EXPECT_EQ(doc.GetItem(0), a);
    doc.SelectItem(c, false);
    doc.SendToBack();
    EXPECT_EQ(doc.GetItem(0), c);
    EXPECT_EQ(doc.GetItem(1), a);
    doc.BringToFront();
    EXPECT_EQ(doc.GetItem(2), c);
    EXPECT_EQ(doc.GetItem(1), b);
}

TEST(DocumentTest, LayerZOrderSortsItemsByLayerStably) {
    TORXHeadlessLabel doc;
    TORXLayer* top = doc.AddLayer();
    TORXBaseItem* a = NewItem(doc, TQVLItemType::itLine);
    TORXBaseItem* b = NewItem(doc, TQVLItemType::itLine);
    TORXBaseItem* c = NewItem(doc, TQVLItemType::itLine);
    a->SetLayer(top);
    doc.SetLayerZOrder(true);
    EXPECT_EQ(doc.GetItem(0), b);
    EXPECT_EQ(doc.GetItem(1), c);
    EXPECT_EQ(doc.GetItem(2), a);
}

// A read ends by sorting the items by layer, whether or not layer order was switched on.
TEST(DocumentTest, ReadingPaintsLayersInTheirOrderWithoutLayerZOrder) {
    TORXHeadlessLabel doc;
    ASSERT_FALSE(doc.LayerZOrder());
    doc.ReadJson(TJSON{{"Version", 3200},
                       {"Layers", TJSON::array({TJSON{{"Name", "one"}}, TJSON{{"Name", "two"}}})},
                       {"Items", TJSON::array({TJSON{{"Type", 2}, {"ID", "onTwo"}, {"Layer", 1}},
                                               TJSON{{"Type", 2}, {"ID", "onOne"}, {"Layer", 0}},
                                               TJSON{{"Type", 2}, {"ID", "alsoOnTwo"}, {"Layer", 1}}})}});
    ASSERT_EQ(doc.GetItemsCount(), 3);
    EXPECT_EQ(doc.GetItem(0)->ID(), "onOne");
    EXPECT_EQ(doc.GetItem(1)->ID(), "onTwo");
    EXPECT_EQ(doc.GetItem(2)->ID(), "alsoOnTwo");
}

TEST(DocumentTest, ComposeImageIsLeftToHosts) {
    TORXHeadlessLabel doc;
    try {
        doc.ComposeImage({}, 1);
        FAIL();
    } catch (const std::logic_error& e) {
        EXPECT_STREQ(e.what(), "Map composition is not implemented by this Orvex class");
    }
}

TEST(DocumentTest, InfoEventFiresWhenAskedOrWhenFlagged) {
    TORXHeadlessLabel doc;
    std::vector<TQVLEdAction> told;
    doc.OnInfo = [&](const TQVLActionInfo& info) { told.push_back(info.Action); };
    doc.SetAction(TQVLEdAction::eaLine);  // the info flag is clear at construction
    EXPECT_TRUE(told.empty());
    doc.FireInfoEvent(false);
    doc.SetInfoFlag(true);
    doc.FlowAction(TQVLFlowType::ftDecision);
    EXPECT_EQ(told, (std::vector<TQVLEdAction>{TQVLEdAction::eaLine, TQVLEdAction::eaFlow}));
    EXPECT_EQ(doc.LastAction(), TQVLEdAction::eaLine);
    EXPECT_EQ(doc.ActionFlowType(), TQVLFlowType::ftDecision);
}

TEST(DocumentTest, DeleteLayerTakesItsItemsAndKeepsTheLast) {
    TORXHeadlessLabel doc;
    TORXLayer* second = doc.AddLayer();
    NewItem(doc, TQVLItemType::itLine);
    NewItem(doc, TQVLItemType::itLine)->SetLayer(second);
    EXPECT_TRUE(doc.DeleteLayer(2));
    EXPECT_EQ(doc.GetItemsCount(), 1);
    EXPECT_FALSE(doc.DeleteLayer(1));
    EXPECT_FALSE(doc.DeleteLayer(5));
}

}  // namespace
}  // namespace Orvex
