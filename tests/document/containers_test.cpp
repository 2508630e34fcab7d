// Containers: framing items, nesting, moving and deleting with members, undo as one step, copy and
// paste, links that end at a frame, and the drawing file's extra keys.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orvex/items/container_frame.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"
#include "tests/document/editor_fixture.h"

namespace Orvex::Testing {
namespace {

class TContainerTest : public TEditorTest {
  protected:
    TORXBaseFlow* Node(double x1, double y1, double x2, double y2) {
        return dynamic_cast<TORXBaseFlow*>(Rect(x1, y1, x2, y2, TQVLItemType::itFlow));
    }
    TORXBaseLink* Join(TORXBaseFlow* from, TORXBaseFlow* to) {
        auto* link = dynamic_cast<TORXBaseLink*>(doc.CreateItem(TQVLItemType::itLink));
        link->Bind(from, 1, to, 3);
        doc.EndUpdate();
        return link;
    }
    std::int32_t Group(const std::vector<TORXBaseItem*>& items, const std::string& caption = "Group") {
        std::vector<std::int32_t> ids;
        for (const TORXBaseItem* item : items) ids.push_back(item->InID());
        TORXBaseItem* frame = doc.GroupItems(ids, caption);
        return frame != nullptr ? frame->InID() : 0;
    }
    TQVLRect Bounds(std::int32_t id) const {
        for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i)
            if (doc.GetItem(i)->InID() == id) return doc.GetItem(i)->BoundsRect();
        return {};
    }
    std::int32_t Index(std::int32_t id) const {
        for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i)
            if (doc.GetItem(i)->InID() == id) return i;
        return -1;
    }
};

TEST_F(TContainerTest, AFrameEnclosesItsMembersBehindThemWithItsTitleAbove) {
    TORXBaseFlow* a = Node(20, 30, 40, 40);
    TORXBaseFlow* b = Node(60, 30, 80, 50);
    TORXBaseItem* outside = Node(100, 30, 120, 40);
    const std::int32_t g = Group({a, b}, "Payments");
    ASSERT_NE(g, 0);
    EXPECT_TRUE(doc.IsContainer(g));
    EXPECT_FALSE(doc.IsContainer(a->InID()));
    EXPECT_EQ(doc.ContainerOf(a->InID()), g);
    EXPECT_EQ(doc.ContainerOf(outside->InID()), 0);
    EXPECT_EQ(doc.ContainerOf(g), 0);
    EXPECT_EQ(doc.MembersOf(g), (std::vector<std::int32_t>{a->InID(), b->InID()}));
    EXPECT_TRUE(doc.MembersOf(a->InID()).empty());
    EXPECT_EQ(Index(g), 0);  // painted first, behind its members

    const auto* frame = dynamic_cast<const TORXBaseFlow*>(doc.GetItem(0));
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->Text(), "Payments");
    const std::int64_t m = TORXBaseLabel::kContainerMargin;
    const TQVLRect r = frame->Box();
    const std::int64_t band = ContainerBandHeight(*frame, r.GetWidth());
    EXPECT_GT(band, 0);
    EXPECT_EQ(r.Left, B(20) - m);
    EXPECT_EQ(r.Right, B(80) + m);
    EXPECT_EQ(r.Bottom, B(50) + m);
    EXPECT_EQ(r.Top, B(30) - m - band);
    EXPECT_EQ(ContainerBand(*frame).Bottom, r.Top + band);
    // The caption sits in the band.
    ASSERT_FALSE(frame->TextPos().empty());
    EXPECT_LT(r.Top + SetBaseValue(frame->TextPos().front().BaseY), r.Top + band);
}

TEST_F(TContainerTest, IdsThatNameNoItemAreSkippedAndNoneLeftMeansNoContainer) {
    TORXBaseFlow* a = Node(20, 30, 40, 40);
    const std::string before = Json();
    EXPECT_EQ(doc.GroupItems({999, -1}, "x"), nullptr);
    EXPECT_EQ(doc.GroupItems({}, "x"), nullptr);
    EXPECT_EQ(Json(), before);
    EXPECT_FALSE(doc.UngroupItems(a->InID()));
    EXPECT_FALSE(doc.UngroupItems(999));
    const std::int32_t g = doc.GroupItems({999, a->InID(), a->InID()}, "x")->InID();
    EXPECT_EQ(doc.MembersOf(g), (std::vector<std::int32_t>{a->InID()}));
}

TEST_F(TContainerTest, ContainersNestWhicheverIsGroupedFirst) {
    // Inner first: listing the inner container keeps it whole inside the outer one.
    TORXBaseFlow* a = Node(20, 30, 40, 40);
    TORXBaseFlow* b = Node(60, 30, 80, 40);
    TORXBaseFlow* c = Node(20, 70, 40, 80);
    const std::int32_t inner = Group({a, b}, "inner");
    const std::int32_t outer = doc.GroupItems({inner, a->InID(), b->InID(), c->InID()}, "outer")->InID();
    EXPECT_EQ(doc.ContainerOf(inner), outer);
    EXPECT_EQ(doc.ContainerOf(a->InID()), inner);
    EXPECT_EQ(doc.ContainerOf(c->InID()), outer);
    EXPECT_LT(Index(outer), Index(inner));
    EXPECT_LT(Index(inner), Index(a->InID()));
    EXPECT_TRUE(Bounds(outer).Contains(Bounds(inner).Left, Bounds(inner).Top));

    // Outer first: grouping members of a container nests the new one inside it.
    TORXBaseFlow* d = Node(120, 30, 140, 40);
    TORXBaseFlow* e = Node(160, 30, 180, 40);
    TORXBaseFlow* f = Node(120, 70, 140, 80);
    const std::int32_t top = Group({d, e, f}, "top");
    const std::int32_t sub = Group({d, e}, "sub");
    EXPECT_EQ(doc.ContainerOf(sub), top);
    EXPECT_EQ(doc.ContainerOf(d->InID()), sub);
    EXPECT_EQ(doc.MembersOf(top), (std::vector<std::int32_t>{sub, f->InID()}));
    EXPECT_LT(Index(top), Index(sub));

    // Items of different containers: the new one goes where both of those are, here at the top.
    const std::int32_t across = Group({c, f}, "across");
    EXPECT_EQ(doc.ContainerOf(across), 0);
    EXPECT_EQ(doc.ContainerOf(c->InID()), across);
    EXPECT_EQ(doc.MembersOf(outer), (std::vector<std::int32_t>{inner}));
}

TEST_F(TContainerTest, GroupingAndUngroupingAreOneUndoStepEach) {
    TORXBaseFlow* a = Node(20, 30, 40, 40);
    TORXBaseFlow* b = Node(60, 30, 80, 40);
    const std::string before = Json();
    const std::int32_t g = Group({a, b});
    const std::string grouped = Json();
    doc.Undo();
    EXPECT_EQ(Json(), before);
    doc.Redo();
    EXPECT_EQ(Json(), grouped);
    EXPECT_EQ(doc.MembersOf(g).size(), 2U);

    // Ungrouping hands the members to the container's own container.
    const std::int32_t outer = Group({doc.GetItem(Index(g))}, "outer");
    const std::string nested = Json();
    EXPECT_TRUE(doc.UngroupItems(g));
    EXPECT_FALSE(doc.IsContainer(g));
    EXPECT_EQ(doc.ContainerOf(a->InID()), outer);
    EXPECT_EQ(doc.MembersOf(outer), (std::vector<std::int32_t>{a->InID(), b->InID()}));
    doc.Undo();
    EXPECT_EQ(Json(), nested);
    EXPECT_EQ(doc.ContainerOf(doc.ContainerOf(a->InID())), outer);
}

TEST_F(TContainerTest, MovingAContainerMovesItsMembersAndTheirLinksOnce) {
    TORXBaseFlow* a = Node(20, 30, 40, 40);
    TORXBaseFlow* b = Node(60, 30, 80, 40);
    TORXBaseFlow* c = Node(120, 30, 140, 40);
    TORXBaseLink* bc = Join(b, c);
    const std::int32_t inner = Group({a, b}, "inner");
    const std::int32_t outer = Group({doc.GetItem(Index(inner))}, "outer");
    const std::string before = Json();
    const TQVLRect frame = Bounds(outer);
    // The member listed beside its container moves once, with it.
    doc.MoveItems({outer, a->InID()}, B(10), B(5));
    EXPECT_EQ(a->Box(), TQVLRect(B(30), B(35), B(50), B(45)));
    EXPECT_EQ(b->Box(), TQVLRect(B(70), B(35), B(90), B(45)));
    EXPECT_EQ(Bounds(outer).Left, frame.Left + B(10));
    EXPECT_EQ(c->Box(), TQVLRect(B(120), B(30), B(140), B(40)));  // outside: stays
    EXPECT_EQ(bc->StartPoint(), (TQVLPto64{B(90), B(40)}));       // the link follows its end
    doc.Undo();
    EXPECT_EQ(Json(), before);

    // The selection and the editor's drag carry members too.
    doc.SelectItem(doc.GetItem(Index(inner)), false);
    doc.MoveSelection(-5, 0);
    EXPECT_EQ(a->Box().Left, B(15));
    doc.Undo();
    EXPECT_EQ(Json(), before);
    doc.ClearSelection(false);
    const TQVLRect in = Bounds(inner);
    const double x = static_cast<double>(in.Left + in.Right) / 2000.0;
    const double y = static_cast<double>(in.Bottom) / 1000.0 - 1.0;  // inside the frame, below the members
    Click(x, y);
    ASSERT_EQ(doc.Selection().size(), 1U);
    EXPECT_EQ(doc.Selection().front()->InID(), inner);
    Drag(x, y, x + 10, y + 20);
    EXPECT_EQ(a->Box(), TQVLRect(B(30), B(50), B(50), B(60)));
    doc.Undo();
    EXPECT_EQ(Json(), before);
}

TEST_F(TContainerTest, DeletingAContainerTakesMembersAndTheirLinksInOneUndoStep) {
    TORXBaseFlow* a = Node(20, 30, 40, 40);
    TORXBaseFlow* b = Node(60, 30, 80, 40);
    TORXBaseFlow* c = Node(120, 30, 140, 40);
    Join(a, b);
    Join(b, c);
    const std::int32_t inner = Group({a, b}, "inner");
    const std::int32_t outer = Group({doc.GetItem(Index(inner))}, "outer");
    const std::string before = Json();
    doc.SelectItem(doc.GetItem(Index(outer)), false);
    doc.DeleteSelection();
    ASSERT_EQ(doc.GetItemsCount(), 1);  // only c is left
    EXPECT_EQ(doc.GetItem(0)->InID(), c->InID());
    const std::string after = Json();
    doc.Undo();
    EXPECT_EQ(Json(), before);
    EXPECT_EQ(doc.MembersOf(inner).size(), 2U);
    doc.Redo();
    EXPECT_EQ(Json(), after);
    doc.Undo();
    EXPECT_EQ(Json(), before);
}

TEST_F(TContainerTest, ALinkToAContainerEndsAtItsFrame) {
    TORXBaseFlow* a = Node(20, 30, 40, 40);
    TORXBaseFlow* c = Node(120, 30, 140, 40);
    const std::int32_t g = Group({a});
    auto* frame = dynamic_cast<TORXBaseFlow*>(doc.GetItem(Index(g)));
    TORXBaseLink* link = Join(frame, c);
    EXPECT_EQ(link->StartPoint().X, frame->Box().Right);
    doc.MoveItems({g}, B(0), B(10));
    EXPECT_EQ(link->StartPoint(), frame->LinkPoint(1));
    // Ungrouping removes the frame and the link that ended at it; the member stays.
    EXPECT_TRUE(doc.UngroupItems(g));
    EXPECT_EQ(doc.GetItemsCount(), 2);
    EXPECT_EQ(doc.ContainerOf(a->InID()), 0);
}

TEST_F(TContainerTest, TheDrawingFileKeepsMembershipAsExtraKeys) {
    TORXBaseFlow* a = Node(20, 30, 40, 40);
    TORXBaseFlow* b = Node(60, 30, 80, 40);
    const std::string plain = Json();
    EXPECT_EQ(plain.find("Container"), std::string::npos);  // other drawings keep their exact form
    const std::int32_t inner = Group({a, b}, "inner");
    const std::int32_t outer = Group({doc.GetItem(Index(inner))}, "outer");
    doc.GetItem(Index(outer))->SetContainerFrame(TQVLContainerFrame::cfRounded);
    const TJSON items = Items();
    EXPECT_EQ(items[0]["InID"], outer);
    EXPECT_EQ(items[0]["Container"], 2);
    EXPECT_FALSE(items[0].contains("ContainerID"));
    EXPECT_EQ(items[1]["Container"], 1);
    EXPECT_EQ(items[1]["ContainerID"], outer);
    EXPECT_EQ(items[2]["ContainerID"], inner);
    EXPECT_FALSE(items[2].contains("Container"));

    TORXHeadlessLabel copy;
    copy.ReadJson(doc.GetJson());
    EXPECT_EQ(copy.GetJsonString(), Json());
    EXPECT_EQ(copy.ContainerOf(a->InID()), inner);
    EXPECT_EQ(copy.ContainerOf(inner), outer);

    // A membership naming no container, or naming an item that is not one, reads as none.
    TJSON odd = doc.GetJson();
    odd["Items"][2]["ContainerID"] = 4242;
    odd["Items"][3]["ContainerID"] = a->InID();
    copy.ReadJson(odd);
    EXPECT_EQ(copy.ContainerOf(a->InID()), 0);
    EXPECT_EQ(copy.ContainerOf(b->InID()), 0);
    EXPECT_EQ(copy.MembersOf(inner), std::vector<std::int32_t>{});
}

TEST_F(TContainerTest, ALoopOfContainersFromAFileDoesNotHang) {
    TORXBaseFlow* a = Node(20, 30, 40, 40);
    const std::int32_t g1 = Group({a}, "one");
    const std::int32_t g2 = Group({doc.GetItem(Index(g1))}, "two");
    TJSON looped = doc.GetJson();
    looped["Items"][0]["ContainerID"] = g1;  // two inside one inside two
    TORXHeadlessLabel copy;
    copy.ReadJson(looped);
    copy.FitContainer(g2);
    copy.MoveItems({g1}, 1000, 0);
    EXPECT_EQ(copy.WithMembers({copy.GetItem(0)}).size(), 3U);
    EXPECT_EQ(copy.OutermostOf({copy.GetItem(0), copy.GetItem(1)}).size(), 0U);
}

TEST_F(TContainerTest, CopyingAContainerCopiesItsMembers) {
    TORXBaseFlow* a = Node(20, 30, 40, 40);
    TORXBaseFlow* b = Node(60, 30, 80, 40);
    const std::int32_t g = Group({a, b});
    doc.SelectItem(doc.GetItem(Index(g)), false);
    doc.CopySelection();
    doc.PasteSelection();
    ASSERT_EQ(doc.GetItemsCount(), 6);
    const std::int32_t g2 = doc.GetItem(3)->InID();
    EXPECT_TRUE(doc.IsContainer(g2));
    EXPECT_NE(g2, g);
    EXPECT_EQ(doc.MembersOf(g2), (std::vector<std::int32_t>{doc.GetItem(4)->InID(), doc.GetItem(5)->InID()}));
    EXPECT_EQ(doc.MembersOf(g).size(), 2U);  // the originals keep theirs
    doc.Undo();
    EXPECT_EQ(doc.GetItemsCount(), 3);

    // A member copied without its container is a free item.
    doc.ClearSelection(false);
    doc.SelectItem(a, false);
    doc.CopySelection();
    doc.PasteSelection();
    EXPECT_EQ(doc.ContainerOf(doc.GetItem(3)->InID()), 0);
}

TEST_F(TContainerTest, TheSvgShowsTheFrameTheBandAndTheCaption) {
    TORXBaseFlow* a = Node(20, 30, 40, 40);
    const std::int32_t g = Group({a}, "Tier & <zone>");
    doc.GetItem(Index(g))->SetContainerFrame(TQVLContainerFrame::cfRounded);
    const std::string svg = doc.SVG(TQVLExportSVG::esFile, 1.0f, false);
    const std::size_t frame = svg.find("<g id=\"FlowDiagram");
    ASSERT_NE(frame, std::string::npos);
    EXPECT_NE(svg.find("rx=\"3\"", frame), std::string::npos);      // rounded corners
    EXPECT_NE(svg.find(" A3,3 0 0 1 ", frame), std::string::npos);  // the band follows them
    EXPECT_NE(svg.find("Tier &amp; &lt;zone&gt;", frame), std::string::npos);
    EXPECT_LT(svg.find("Tier"), svg.find("id=\"" + a->ID() + "\""));  // behind the member
}

}  // namespace
}  // namespace Orvex::Testing
