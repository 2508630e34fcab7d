#include <gtest/gtest.h>

#include "orvex/document/headless.h"
#include "orvex/io/json.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/flow_shapes.h"

namespace Orvex {
namespace {

TORXBaseFlow* MakeFlow(TORXBaseLabel& doc, TQVLFlowType type, const TQVLRect& box) {
    auto* flow = doc.AddNew<THeadlessItem<TORXBaseFlow>>(false);
    flow->SetFlowType(type);
    flow->SetBase(1, box.Left, box.Top);
    flow->SetBase(2, box.Right, box.Bottom);
    return flow;
}

TEST(FlowItemsTest, KeysInOrderAndBothPaddingsReadFromTheHorizontalOne) {
    TORXHeadlessLabel doc;
    auto* flow = MakeFlow(doc, TQVLFlowType::ftDecision, {0, 0, 30000, 20000});
    flow->SetPaddingX(2.0f);
    flow->SetPaddingY(5.0f);
    flow->SetText("Paid?");
    flow->SetShadowColor(0x80000000u);
    flow->SetGradient(TQVLGradient::grVertical);
    const TJSON obj = flow->WriteJson();
    std::vector<std::string> keys;
    bool after = false;
    for (const auto& [key, value] : obj.items()) {
        if (after) keys.push_back(key);
        after = after || key == "Filled";
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"FlowType", "LineType", "HorzAlign", "VertAlign", "PaddingX",
                                              "PaddingY", "ShadowColor", "ShadowDX", "ShadowDY", "Gradient",
                                              "GradColor", "Font", "Interline", "Text", "TextPos"}));
    EXPECT_DOUBLE_EQ(obj["PaddingY"].get<double>(), 5.0);

    TORXHeadlessLabel copy;
    copy.ReadJson(doc.GetJson());
    auto* back = dynamic_cast<TORXBaseFlow*>(copy.GetItem(0));
    ASSERT_NE(back, nullptr);
    EXPECT_FLOAT_EQ(back->PaddingX(), 2.0f);
    EXPECT_FLOAT_EQ(back->PaddingY(), 2.0f);
    EXPECT_EQ(back->FlowType(), TQVLFlowType::ftDecision);
    EXPECT_EQ(back->Text(), "Paid?");
    EXPECT_EQ(back->TextPos(), flow->TextPos());
    EXPECT_EQ(back->ShadowColor(), 0x80000000u);
}

TEST(FlowItemsTest, ConnectionPointsLieOnEveryOutline) {
    TORXHeadlessLabel doc;
    const TQVLRect box{10000, 10000, 50000, 30000};
    for (int t = 0; t < kFlowTypeCount; ++t) {
        SCOPED_TRACE(t);
        auto* flow = MakeFlow(doc, static_cast<TQVLFlowType>(t), box);
        const auto outline = flow->Outline();
        ASSERT_GE(outline.size(), 4u);
        for (std::int16_t i = 0; i < TORXBaseFlow::kLinkPoints; ++i) {
            const TQVLPto64 p = flow->LinkPoint(i);
            EXPECT_TRUE(PointOnPolyline(outline, true, p.X, p.Y, 2)) << i;
            TQVLink link;
            ASSERT_TRUE(flow->CheckLink(p.X + 300, p.Y - 300, link));
            EXPECT_EQ(link.Index, i);
            EXPECT_EQ(link.ID, flow->InID());
        }
        // The top point is above the centre, the right one right of it, and so on.
        EXPECT_LT(flow->LinkPoint(0).Y, 20000);
        EXPECT_GT(flow->LinkPoint(1).X, 30000);
        EXPECT_GT(flow->LinkPoint(2).Y, 20000);
        EXPECT_LT(flow->LinkPoint(3).X, 30000);
        TQVLink far;
        EXPECT_FALSE(flow->CheckLink(30000, 20000, far));
    }
}

TEST(FlowItemsTest, PickFollowsTheShapeNotTheBox) {
    TORXHeadlessLabel doc;
    auto* decision = MakeFlow(doc, TQVLFlowType::ftDecision, {0, 0, 40000, 20000});
    EXPECT_TRUE(decision->Pick(20000, 10000, 200, false));  // filled inside
    EXPECT_TRUE(decision->Pick(20000, 300, 400, false));    // near the top corner
    EXPECT_FALSE(decision->Pick(2000, 2000, 200, false));   // a corner of the box is outside the diamond
    EXPECT_FALSE(decision->Pick(45000, 10000, 200, false));
    decision->SetFilled(false);
    EXPECT_FALSE(decision->Pick(20000, 10000, 200, false));  // hollow, no text: only the outline
    decision->SetText("Ok?");
    EXPECT_TRUE(decision->Pick(20000, 10000, 200, false));  // the text still catches the click
}

TEST(FlowItemsTest, TextLinesAreCentredInTheShape) {
    TORXHeadlessLabel doc;
    auto* flow = MakeFlow(doc, TQVLFlowType::ftProcess, {0, 0, 40000, 20000});
    flow->SetFontHeight(4.0f);
    flow->SetText("Check stock levels now");  // wraps inside 38 mm at 2 mm a character
    const auto& pos = flow->TextPos();
    ASSERT_EQ(pos.size(), 2u);
    EXPECT_EQ(pos[0].FromPos, 0);
    EXPECT_EQ(pos[0].ToPos, 18);
    EXPECT_EQ(pos[1].FromPos, 19);
    EXPECT_EQ(pos[1].ToPos, 22);
    EXPECT_FLOAT_EQ(pos[0].BaseX, 2.0f);  // (40 - 36) / 2
    EXPECT_LT(pos[0].BaseY, pos[1].BaseY);
    flow->SetBase(2, 60000, 20000);  // wider: one line
    EXPECT_EQ(flow->TextPos().size(), 1u);
}

TEST(FlowItemsTest, EveryShapeWritesSvg) {
    TORXHeadlessLabel doc;
    for (int t = 0; t < kFlowTypeCount; ++t) {
        SCOPED_TRACE(t);
        auto* flow = MakeFlow(doc, static_cast<TQVLFlowType>(t), {0, 0, 30000, 20000});
        flow->SetText("A & B");
        std::vector<std::string> defs, body;
        flow->WriteSVG(defs, body, TQVLExportSVG::esFile, 1.0f, false);
        std::string svg;
        for (const auto& line : body) svg += line;
        EXPECT_EQ(svg.rfind("<g id=\"FlowDiagram", 0), 0u) << svg;
        EXPECT_NE(svg.find("A &amp; B"), std::string::npos) << svg;
        EXPECT_NE(svg.find("stroke=\"#000000\""), std::string::npos) << svg;
    }
}

TEST(FlowItemsTest, SettersUndoOneStepEach) {
    TORXHeadlessLabel doc;
    auto* flow = MakeFlow(doc, TQVLFlowType::ftProcess, {0, 0, 30000, 20000});
    const std::string before = flow->WriteJson().dump();
    const std::size_t count = doc.UndoCount();
    flow->SetFlowType(TQVLFlowType::ftDatabase);
    flow->SetFlowType(TQVLFlowType::ftDatabase);
    flow->SetText("Orders");
    flow->SetFontColor(0xFF336699u);
    flow->SetInterline(1.0f);
    flow->SetLineType(TQVLineType::ii21);
    EXPECT_EQ(doc.UndoCount(), count + 5);
    for (int i = 0; i < 5; ++i) doc.Undo();
    EXPECT_EQ(flow->WriteJson().dump(), before);
}

}  // namespace
}  // namespace Orvex
