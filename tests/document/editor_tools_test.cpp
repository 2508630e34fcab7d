#include <gtest/gtest.h>

#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"
#include "tests/document/editor_fixture.h"

namespace Orvex::Testing {
namespace {

using A = TQVLEdAction;

struct TDrawCase {
    const char* Name;
    A Action;
    TPts Clicks;  // each a click; open tools then get Enter
    int Type;
    TPts Expected;  // the item's stored points; empty: not checked
};

TEST_F(TEditorTest, EachKindIsDrawnByClicksAsOneUndoStep) {
    const TDrawCase cases[] = {
        {"point", A::eaPoint, {{5, 5}}, 1, {{5, 5}}},
        {"line", A::eaLine, {{10, 10}, {50, 20}}, 2, {{10, 10}, {50, 20}}},
        {"rectangle corners in any order", A::eaRectangle, {{50, 40}, {10, 10}}, 6, {{10, 10}, {50, 40}}},
        {"ellipse", A::eaEllipse, {{10, 10}, {40, 30}}, 9, {{10, 10}, {40, 30}}},
        {"circle on a diameter", A::eaCircle2P, {{10, 20}, {30, 20}}, 8, {{10, 10}, {30, 30}}},
        {"circle by centre and radius", A::eaCirclePR, {{20, 20}, {30, 20}}, 8, {{10, 10}, {30, 30}}},
        {"circle through three points",
         A::eaCircle3P,
         {{10, 20}, {20, 10}, {30, 20}},
         8,
         {{10, 10}, {30, 30}}},
        {"polyline", A::eaPolyline, {{10, 10}, {20, 10}, {20, 20}}, 4, {{10, 10}, {20, 10}, {20, 20}}},
        {"polygon", A::eaPolygon, {{10, 10}, {20, 10}, {20, 20}}, 7, {{10, 10}, {20, 10}, {20, 20}}},
        {"bezier",
         A::eaBezier,
         {{0, 0}, {10, 0}, {20, 10}, {30, 10}},
         25,
         {{0, 0}, {10, 0}, {20, 10}, {30, 10}}},
        {"arc", A::eaArc, {{30, 20}, {20, 10}, {10, 20}}, 5, {{10, 10}, {30, 30}}},
        {"sector by centre and radius",
         A::eaSectorPR,
         {{20, 20}, {30, 20}, {20, 10}},
         27,
         {{10, 10}, {30, 30}}},
        {"sector on a diameter", A::eaSector2P, {{10, 20}, {30, 20}}, 27, {{10, 10}, {30, 30}}},
        {"sector through three points",
         A::eaSector3P,
         {{30, 20}, {20, 10}, {10, 20}},
         27,
         {{10, 10}, {30, 30}}},
        {"arrow line", A::eaArrowLine, {{10, 10}, {40, 10}}, 3, {}},
        {"text", A::eaText, {{10, 10}, {40, 20}}, 10, {}},
        {"paragraph", A::eaParagraph, {{10, 10}, {40, 20}}, 11, {}},
        {"rich text", A::eaRichText, {{10, 10}, {40, 20}}, 29, {}},
        {"flow element", A::eaFlow, {{10, 10}, {40, 20}}, 17, {{10, 10}, {40, 20}}},
        {"linear dimension", A::eaDim, {{10, 20}, {50, 20}, {30, 10}}, 26, {}},
        {"angular dimension", A::eaDimAng, {{10, 10}, {30, 10}, {10, 30}, {20, 20}}, 26, {}},
        {"radius dimension", A::eaDimRad1, {{20, 20}, {30, 20}}, 26, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        doc.New();
        const std::string before = Json();
        doc.SetAction(c.Action);
        for (const auto& [x, y] : c.Clicks) Click(x, y);
        Key(TQVLEdKey::ekEnter);  // ends the open tools; nothing to end for the others
        const TJSON items = Items();
        ASSERT_EQ(items.size(), 1u);
        EXPECT_EQ(items[0]["Type"].get<int>(), c.Type);
        if (!c.Expected.empty()) {
            EXPECT_EQ(Points(items[0]), c.Expected);
        }
        EXPECT_TRUE(ed.ToolPoints().empty());
        doc.Undo();
        EXPECT_EQ(Json(), before);
        EXPECT_TRUE(doc.IsUndoEmpty());
        doc.SetAction(A::eaSelection);
    }
}

TEST_F(TEditorTest, PressDragReleaseDrawsLikeTwoClicks) {
    doc.SetAction(A::eaLine);
    Drag(10, 10, 60, 30);
    ASSERT_EQ(Items().size(), 1u);
    EXPECT_EQ(Points(Items()[0]), (TPts{{10, 10}, {60, 30}}));
    // The tool stays on for the next line.
    EXPECT_EQ(doc.GetAction(), A::eaLine);
    EXPECT_EQ(doc.EdState(), TQVLEdState::edPickFirst);
}

TEST_F(TEditorTest, AnglesOfDrawnArcsAndSectors) {
    doc.SetAction(A::eaArc);
    for (const auto& [x, y] : TPts{{30, 20}, {20, 10}, {10, 20}}) Click(x, y);
    const TJSON arc = Items()[0];
    EXPECT_FLOAT_EQ(arc["StartAngle"].get<float>(), 0.0f);  // through the top: counter-clockwise on screen
    EXPECT_FLOAT_EQ(arc["EndAngle"].get<float>(), 180.0f);
    EXPECT_FALSE(arc["ClockWise"].get<bool>());
    doc.New();
    doc.SetAction(A::eaSectorPR);
    for (const auto& [x, y] : TPts{{20, 20}, {30, 20}, {20, 10}}) Click(x, y);
    const TJSON sector = Items()[0];
    EXPECT_FLOAT_EQ(sector["StartAngle"].get<float>(), 0.0f);
    EXPECT_FLOAT_EQ(sector["SweepAngle"].get<float>(), 90.0f);
}

TEST_F(TEditorTest, CancelledToolsLeaveNoTrace) {
    const std::string before = Json();
    const std::int32_t nextId = doc.PeekNextID();
    struct TCancel {
        const char* Name;
        A Action;
        int Clicks;
        bool ByEscape;
    };
    const TCancel cases[] = {{"line by escape", A::eaLine, 1, true},
                             {"polyline by escape", A::eaPolyline, 2, true},
                             {"polygon short of points by the right button", A::eaPolygon, 2, false},
                             {"three-point circle by escape", A::eaCircle3P, 2, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        doc.SetAction(c.Action);
        for (int i = 0; i < c.Clicks; ++i) Click(10 + 10 * i, 10 + 5 * i);
        MoveTo(50, 50);
        EXPECT_FALSE(ed.ToolPoints().empty());
        if (c.ByEscape) {
            EXPECT_TRUE(Key(TQVLEdKey::ekEscape));
        } else {
            EXPECT_TRUE(doc.RightButton(Px(50), Px(50), {}));
        }
        EXPECT_TRUE(ed.ToolPoints().empty());
        EXPECT_EQ(Json(), before);
        EXPECT_TRUE(doc.IsUndoEmpty());
        EXPECT_EQ(doc.PeekNextID(), nextId);
        doc.SetAction(A::eaSelection);
    }
}

TEST_F(TEditorTest, DegenerateShapesAreNotCreated) {
    doc.SetAction(A::eaCircle3P);
    for (const auto& [x, y] : TPts{{10, 10}, {20, 10}, {30, 10}}) Click(x, y);  // on one line
    doc.SetAction(A::eaRectangle);
    Click(10, 10);
    Click(10, 10);
    Up(10, 10);
    EXPECT_TRUE(Items().empty());
    EXPECT_TRUE(doc.IsUndoEmpty());
}

TEST_F(TEditorTest, ShiftKeepsSegmentsHorizontalOrVertical) {
    doc.SetAction(A::eaPolyline);
    Click(10, 10);
    Click(40, 13, {TQVLShift::ssShift});
    Click(43, 40, {TQVLShift::ssShift});
    Key(TQVLEdKey::ekEnter);
    EXPECT_EQ(Points(Items()[0]), (TPts{{10, 10}, {40, 10}, {40, 40}}));
}

TEST_F(TEditorTest, InfoEventNamesTheToolAndItsStep) {
    std::vector<TQVLActionInfo> told;
    doc.OnInfo = [&](const TQVLActionInfo& info) { told.push_back(info); };
    doc.SetAction(A::eaLine);
    EXPECT_TRUE(told.empty());  // only when the host asks for them
    doc.SetInfoFlag(true);
    doc.SetAction(A::eaRectangle);
    ASSERT_FALSE(told.empty());
    EXPECT_EQ(told.back().Text, "Rectangle: Select the first point");
    Click(10, 10);
    EXPECT_EQ(told.back().Text, "Rectangle: Select the second point");
    EXPECT_EQ(told.back().State, TQVLEdState::edPickSecond);
    MoveTo(30, 15);
    EXPECT_EQ(told.back().X, 10000);
    EXPECT_EQ(told.back().Width, 20000);
    EXPECT_EQ(told.back().Height, 5000);
}

TEST_F(TEditorTest, LinkToolJoinsTwoFlowElements) {
    TORXBaseItem* a = Add(TQVLItemType::itFlow, {{10, 10}, {30, 20}});
    TORXBaseItem* b = Add(TQVLItemType::itFlow, {{60, 10}, {80, 20}});
    const std::string before = Json();
    doc.LinkAction(TQVLinkType::ltDirLine);
    Click(50, 50);  // not on an element: nothing starts
    EXPECT_TRUE(ed.ToolPoints().empty());
    Drag(30, 15, 60, 15);  // right side of a to the left side of b
    const TJSON items = Items();
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[2]["FromID"].get<int>(), a->InID());
    EXPECT_EQ(items[2]["ToID"].get<int>(), b->InID());
    EXPECT_EQ(items[2]["FromIndex"].get<int>(), 1);
    EXPECT_EQ(items[2]["ToIndex"].get<int>(), 3);
    doc.Undo();
    EXPECT_EQ(Json(), before);
}

TEST_F(TEditorTest, PolyLinkKeepsItsBends) {
    Add(TQVLItemType::itFlow, {{10, 10}, {30, 20}});
    Add(TQVLItemType::itFlow, {{60, 40}, {80, 50}});
    doc.SetAction(A::eaPolyLink);
    Click(30, 15);
    Click(45, 15);
    Click(45, 45);
    Click(60, 45);
    auto* link = dynamic_cast<TORXBaseLink*>(doc.GetItem(2));
    ASSERT_NE(link, nullptr);
    EXPECT_EQ(link->LinkType(), TQVLinkType::ltPolyline);
    EXPECT_EQ(link->LinkPoints(), (std::vector<TQVLPto64>{{45000, 15000}, {45000, 45000}}));
}

TEST_F(TEditorTest, FlowToolTakesTheChosenShape) {
    doc.FlowAction(TQVLFlowType::ftDecision);
    Drag(10, 10, 40, 30);
    auto* flow = dynamic_cast<TORXBaseFlow*>(doc.GetItem(0));
    ASSERT_NE(flow, nullptr);
    EXPECT_EQ(flow->FlowType(), TQVLFlowType::ftDecision);
}

}  // namespace
}  // namespace Orvex::Testing
