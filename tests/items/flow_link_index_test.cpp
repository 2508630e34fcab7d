// The document's index of flow elements and their links: a moved element reroutes exactly the links that
// name it now, through rebinding, deletion, undo and reading, and moves cost no rebuild.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"

namespace Orvex {
namespace {

class FlowLinkIndexTest : public ::testing::Test {
  protected:
    TORXBaseFlow* Flow(std::int64_t x) {
        auto* flow = fDoc.AddNew<THeadlessItem<TORXBaseFlow>>(false);
        flow->SetBase(1, x, 10000);
        flow->SetBase(2, x + 20000, 20000);
        return flow;
    }
    TORXBaseLink* Link(TORXBaseFlow* aFrom, TORXBaseFlow* aTo) {
        auto* link = fDoc.AddNew<THeadlessItem<TORXBaseLink>>(TQVLinkType::ltDirLine, false);
        link->Bind(aFrom, -1, aTo, -1);
        fDoc.EndUpdate();
        return link;
    }
    void Move(TORXBaseFlow* aFlow, std::int64_t aDy) {
        fDoc.BeginUpdate(true);
        aFlow->BaseMove(0, 0, 0, aDy, TQVLMoveOpt::moMove, false);
        fDoc.EndUpdate();
    }
    // The links an element's move must reroute, found the slow way.
    std::vector<TORXBaseItem*> Walk(std::int32_t aInID) const {
        std::vector<TORXBaseItem*> found;
        for (std::int32_t i = 0; i < fDoc.GetItemsCount(); ++i)
            if (const auto* link = dynamic_cast<const TORXBaseLink*>(fDoc.GetItem(i)))
                if (link->FromID() == aInID || link->ToID() == aInID) found.push_back(fDoc.GetItem(i));
        return found;
    }
    std::vector<TORXBaseItem*> Indexed(std::int32_t aInID) const {
        auto links = fDoc.LinksOf(aInID);
        std::sort(links.begin(), links.end(),
                  [this](auto* a, auto* b) { return fDoc.ItemIndex(a) < fDoc.ItemIndex(b); });
        return links;
    }

    TORXHeadlessLabel fDoc;
};

TEST_F(FlowLinkIndexTest, AMovedElementReroutesTheLinksThatNameItNow) {
    TORXBaseFlow* a = Flow(0);
    TORXBaseFlow* b = Flow(50000);
    TORXBaseFlow* c = Flow(100000);
    TORXBaseLink* ab = Link(a, b);
    TORXBaseLink* bc = Link(b, c);

    const TQVLPto64 abStart = ab->StartPoint();
    const TQVLPto64 bcStart = bc->StartPoint();
    Move(a, 3000);
    EXPECT_EQ(ab->StartPoint().Y, abStart.Y + 3000);
    EXPECT_EQ(bc->StartPoint(), bcStart);

    // Rebound to c, the link no longer follows b but follows c.
    ab->SetToID(c->InID());
    fDoc.EndUpdate();
    const TQVLPto64 abEnd = ab->EndPoint();
    Move(b, 4000);
    EXPECT_EQ(ab->EndPoint(), abEnd);
    Move(c, 5000);
    EXPECT_EQ(ab->EndPoint().Y, abEnd.Y + 5000);
    for (auto* flow : {a, b, c}) EXPECT_EQ(Indexed(flow->InID()), Walk(flow->InID()));
}

TEST_F(FlowLinkIndexTest, DeletionUndoAndReadingKeepTheIndexExact) {
    TORXBaseFlow* a = Flow(0);
    TORXBaseFlow* b = Flow(50000);
    Link(a, b);
    TORXBaseLink* ba = Link(b, a);
    const std::int32_t aId = a->InID();
    EXPECT_EQ(fDoc.LinksOf(aId).size(), 2u);

    fDoc.DeleteItem(ba, true);
    EXPECT_EQ(Indexed(aId), Walk(aId));
    Move(a, 1000);  // reaches only the link left
    fDoc.Undo();    // the move
    fDoc.Undo();    // the deletion: a new link object comes back
    fDoc.EndUpdate();
    EXPECT_EQ(Indexed(aId), Walk(aId));
    ASSERT_EQ(Walk(aId).size(), 2u);
    auto* restored = dynamic_cast<TORXBaseLink*>(Walk(aId).back());
    const TQVLPto64 end = restored->EndPoint();
    Move(a, 2000);
    EXPECT_EQ(restored->EndPoint().Y, end.Y + 2000);

    // Deleting an element takes it out of the lookup by id.
    const std::int32_t bId = b->InID();
    fDoc.DeleteItem(b, true);
    EXPECT_EQ(fDoc.FlowByInID(bId), nullptr);

    // After a read the index answers as the walk does.
    const std::string text = fDoc.GetJsonString();
    TORXHeadlessLabel copy;
    LoadDrawingText(text, "copy", copy);
    for (std::int32_t i = 0; i < copy.GetItemsCount(); ++i) {
        TORXBaseItem* item = copy.GetItem(i);
        if (item->ItemType() == TQVLItemType::itFlow) {
            EXPECT_EQ(copy.FlowByInID(item->InID()), item);
        }
    }
}

TEST_F(FlowLinkIndexTest, TheFirstOfElementsSharingAnIdIsFound) {
    TORXBaseFlow* first = Flow(0);
    TORXBaseFlow* second = Flow(50000);
    const std::int32_t id = first->InID();
    second->SetInID(id);
    EXPECT_EQ(fDoc.FlowByInID(id), first);
    fDoc.DeleteItem(first, false);
    EXPECT_EQ(fDoc.FlowByInID(id), second);
}

TEST_F(FlowLinkIndexTest, MovesAndAdditionsCostNoRebuild) {
    std::vector<TORXBaseFlow*> flows;
    for (int i = 0; i < 50; ++i) flows.push_back(Flow(i * 30000));
    for (int i = 1; i < 50; ++i) Link(flows[i - 1], flows[i]);
    Move(flows[0], 100);
    const std::size_t builds = fDoc.FlowLinkIndexBuilds();
    for (int i = 0; i < 50; ++i) Move(flows[static_cast<std::size_t>(i)], 100);
    Link(flows[0], Flow(2'000'000));
    Move(flows[0], 100);
    EXPECT_EQ(fDoc.FlowLinkIndexBuilds(), builds);
    EXPECT_EQ(Indexed(flows[0]->InID()), Walk(flows[0]->InID()));
}

}  // namespace
}  // namespace Orvex
