#include <gtest/gtest.h>

#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"
#include "tests/document/editor_fixture.h"

namespace Orvex::Testing {
namespace {

TEST_F(TEditorTest, AlignLinesUpAgainstTheFirstSelectedItem) {
    struct TCase {
        const char* Name;
        TQVLObjectAlign Align;
        TPts Second;  // the second box's corners after aligning
    };
    const TCase cases[] = {
        {"left", TQVLObjectAlign::oaLeft, {{10, 40}, {20, 45}}},
        {"right", TQVLObjectAlign::oaRight, {{30, 40}, {40, 45}}},
        {"top", TQVLObjectAlign::oaTop, {{60, 10}, {70, 15}}},
        {"bottom", TQVLObjectAlign::oaBottom, {{60, 25}, {70, 30}}},
        {"horizontal centres", TQVLObjectAlign::oaCenterH, {{20, 40}, {30, 45}}},
        {"vertical centres", TQVLObjectAlign::oaCenterV, {{60, 17.5}, {70, 22.5}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        doc.New();
        TORXBaseItem* first = Rect(10, 10, 40, 30);
        TORXBaseItem* second = Rect(60, 40, 70, 45);
        doc.SelectItem(first, false);
        doc.SelectItem(second, false);
        const std::string before = Json();
        doc.AlignObjects(c.Align);
        EXPECT_EQ(Points(Items()[1]), c.Second);
        EXPECT_EQ(Points(Items()[0]), (TPts{{10, 10}, {40, 30}}));
        doc.Undo();
        EXPECT_EQ(Json(), before);
    }
}

TEST_F(TEditorTest, SameSizeAndSpacing) {
    TORXBaseItem* a = Rect(10, 10, 40, 30);
    TORXBaseItem* b = Rect(60, 10, 70, 15);
    TORXBaseItem* line = Line(80, 10, 85, 20);
    for (TORXBaseItem* item : {a, b, line}) doc.SelectItem(item, false);
    const std::string before = Json();
    doc.SameWidth();
    doc.SameHeight();
    EXPECT_EQ(Points(Items()[1]), (TPts{{60, 10}, {90, 30}}));
    EXPECT_EQ(Points(Items()[2]), (TPts{{80, 10}, {110, 30}}));  // a line is stretched from its top-left
    doc.SpaceHorizontal(B(5));
    EXPECT_EQ(Points(Items()[1]), (TPts{{45, 10}, {75, 30}}));
    EXPECT_EQ(Points(Items()[2]), (TPts{{80, 10}, {110, 30}}));
    doc.SpaceVertical(0);
    EXPECT_EQ(Points(Items()[1]), (TPts{{45, 30}, {75, 50}}));
    for (int i = 0; i < 4; ++i) doc.Undo();
    EXPECT_EQ(Json(), before);
}

TEST_F(TEditorTest, AnArrangementAfterADragIsAStepOfItsOwn) {
    Rect(10, 10, 20, 20);
    Rect(40, 40, 50, 50);
    const std::string start = Json();
    Click(45, 45);
    Click(15, 15, {TQVLShift::ssShift});
    Drag(45, 45, 55, 45);  // both move right by 10
    const std::string dragged = Json();
    doc.AlignObjects(TQVLObjectAlign::oaTop);
    doc.MoveSelection(1.0f, 0.0f);
    doc.RotateRight();
    doc.Undo();
    doc.Undo();
    doc.Undo();
    EXPECT_EQ(Json(), dragged);
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TEditorTest, PaintOrderChangesUndo) {
    TORXBaseItem* a = Rect(10, 10, 20, 20);
    TORXBaseItem* b = Rect(30, 10, 40, 20);
    TORXBaseItem* c = Rect(50, 10, 60, 20);
    const std::string start = Json();
    doc.SelectItem(a, false);
    doc.BringToFront();
    EXPECT_EQ(doc.GetItem(2), a);
    doc.ClearSelection(false);
    doc.SelectItem(c, false);
    doc.SendToBack();
    EXPECT_EQ(doc.GetItem(0), c);
    EXPECT_EQ(doc.GetItem(1), b);
    doc.Undo();
    EXPECT_EQ(doc.GetItem(1), c);
    doc.Undo();
    EXPECT_EQ(Json(), start);
}

TEST_F(TEditorTest, PastedItemsGetNewIdsAndKeepTheirLinksAmongThemselves) {
    auto* a = dynamic_cast<TORXBaseFlow*>(Rect(10, 10, 30, 20, TQVLItemType::itFlow));
    auto* b = dynamic_cast<TORXBaseFlow*>(Rect(60, 10, 80, 20, TQVLItemType::itFlow));
    auto* c = dynamic_cast<TORXBaseFlow*>(Rect(10, 40, 30, 50, TQVLItemType::itFlow));
    auto* ab = dynamic_cast<TORXBaseLink*>(doc.CreateItem(TQVLItemType::itLink));
    auto* bc = dynamic_cast<TORXBaseLink*>(doc.CreateItem(TQVLItemType::itLink));
    ab->Bind(a, 1, b, 3);
    bc->Bind(b, 2, c, 0);
    doc.EndUpdate();
    // a, b and the link between them; the link to c (not copied) is left behind.
    for (TORXBaseItem* item : std::vector<TORXBaseItem*>{a, b, ab}) doc.SelectItem(item, false);
    doc.CopySelection();
    const std::string before = Json();
    doc.PasteSelection();
    ASSERT_EQ(doc.GetItemsCount(), 8);
    auto* a2 = doc.GetItem(5);
    auto* b2 = doc.GetItem(6);
    auto* ab2 = dynamic_cast<TORXBaseLink*>(doc.GetItem(7));
    ASSERT_NE(ab2, nullptr);
    EXPECT_EQ(ab2->FromID(), a2->InID());
    EXPECT_EQ(ab2->ToID(), b2->InID());
    EXPECT_EQ(ab2->ID(), "Link008");  // named after its new id
    EXPECT_FALSE(doc.RepeatID(a2->ID(), a2));
    EXPECT_EQ(doc.Selection(), (std::vector<TORXBaseItem*>{a2, b2, ab2}));
    // Offset by 5 mm, the link running between the copies.
    EXPECT_EQ(Points(Items()[5]), (TPts{{15, 15}, {35, 25}}));
    EXPECT_EQ(ab2->StartPoint(), (TQVLPto64{B(35), B(20)}));
    EXPECT_EQ(ab2->EndPoint(), (TQVLPto64{B(65), B(20)}));
    doc.PasteSelection();  // a second paste lands further away
    EXPECT_EQ(Points(Items()[8]), (TPts{{20, 20}, {40, 30}}));
    doc.Undo();
    doc.Undo();
    EXPECT_EQ(Json(), before);
}

}  // namespace
}  // namespace Orvex::Testing
