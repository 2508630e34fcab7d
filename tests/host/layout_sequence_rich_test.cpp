// Sequence placement of what the full importer reads: activation bars, fragment frames, boxes, found and
// lost messages, creation and destruction, and the items each becomes.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "host/layout/diagram_loader.h"
#include "host/layout/sequence_layout.h"
#include "orvex/diagrams/sequence_import.h"
#include "orvex/document/headless.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/shape_items.h"
#include "orvex/items/text_items.h"
#include "tests/host/layout_test_util.h"

namespace Orvex {
namespace {

using LayoutTest::TestMeasure;

TORXDiagramModel Read(const std::string& text) {
    TORXDiagramModel model;
    EXPECT_TRUE(QVLImportSequence(text, TQVLDiagramFormat::dgAuto, model));
    return model;
}

bool Inside(const TLayoutBox& outer, const TLayoutBox& inner) {
    return inner.X >= outer.X - 1e-6 && inner.Right() <= outer.Right() + 1e-6 && inner.Y >= outer.Y - 1e-6 &&
           inner.Bottom() <= outer.Bottom() + 1e-6;
}

bool Inside(const TLayoutBox& outer, TLayoutPoint p) {
    return p.X >= outer.X - 1e-6 && p.X <= outer.Right() + 1e-6 && p.Y >= outer.Y - 1e-6 &&
           p.Y <= outer.Bottom() + 1e-6;
}

const TSeqFrameLayout& FrameOf(const TSequenceLayout& layout, const TORXDiagramModel& model,
                               const std::string& op) {
    for (const TSeqFrameLayout& f : layout.Frames)
        if (model.SeqEvents()[static_cast<std::size_t>(f.Event)].Fragment == op) return f;
    ADD_FAILURE() << "no frame " << op;
    return layout.Frames.front();
}

TEST(LayoutSequenceRich, ActivationBarsSpanTheirMessagesAndNestedOnesStandOffset) {
    const TORXDiagramModel model =
        Read("sequenceDiagram\nA->>+B: call\nB->>+B: inner\nB->>C: work\nB-->>-B: done\nB-->>-A: reply\n");
    const TSequenceLayout layout = LayoutSequence(model, TestMeasure());
    ASSERT_EQ(layout.Activations.size(), 2u);
    const TSeqActivationLayout& inner = layout.Activations[0];  // closes first
    const TSeqActivationLayout& outer = layout.Activations[1];
    EXPECT_EQ(outer.Depth, 0);
    EXPECT_EQ(inner.Depth, 1);
    EXPECT_GT(inner.Box.X, outer.Box.X);
    const double b = layout.Lifelines[1].From.X;
    EXPECT_LT(outer.Box.X, b);
    EXPECT_GT(outer.Box.Right(), b);
    // The outer bar runs from the call's arrow to the reply's; the inner one lies within it.
    EXPECT_DOUBLE_EQ(outer.Box.Y, layout.Messages[0].Points.back().Y);
    EXPECT_DOUBLE_EQ(outer.Box.Bottom(), layout.Messages[4].Points.front().Y);
    EXPECT_TRUE(Inside({outer.Box.X, outer.Box.Y, outer.Box.Width + 10, outer.Box.Height, true}, inner.Box));
    // Arrows meet the bar's edge, not the lifeline.
    EXPECT_DOUBLE_EQ(layout.Messages[0].Points.back().X, outer.Box.X);
    EXPECT_DOUBLE_EQ(layout.Messages[4].Points.front().X, outer.Box.X);
}

TEST(LayoutSequenceRich, EachFrameEnclosesExactlyItsMessagesWithElseBetween) {
    const TORXDiagramModel model = Read(R"(sequenceDiagram
A->>B: before
alt good
    B->>C: yes
    loop retry
        C->>C: again
    end
else bad
    B-xA: no
end
A->>C: after
)");
    const TSequenceLayout layout = LayoutSequence(model, TestMeasure());
    ASSERT_EQ(layout.Frames.size(), 2u);
    const TSeqFrameLayout& alt = FrameOf(layout, model, "alt");
    const TSeqFrameLayout& loop = FrameOf(layout, model, "loop");
    EXPECT_EQ(alt.Tag, "alt");
    EXPECT_EQ(alt.Condition, "[good]");
    EXPECT_TRUE(Inside(alt.Box, loop.Box));
    EXPECT_GT(loop.Depth, alt.Depth);
    for (std::size_t i = 0; i < layout.Messages.size(); ++i) {
        const TSeqMessageLayout& m = layout.Messages[i];
        const std::string& fragment = model.SeqEvents()[static_cast<std::size_t>(m.Event)].Fragment;
        SCOPED_TRACE(m.Text);
        for (const TLayoutPoint& p : m.Points) {
            EXPECT_EQ(Inside(alt.Box, p), !fragment.empty());
            EXPECT_EQ(Inside(loop.Box, p), fragment == "loop");
        }
    }
    ASSERT_EQ(alt.Separators.size(), 1u);
    const double sep = alt.Separators[0].Y;
    EXPECT_GT(sep, loop.Box.Bottom());
    EXPECT_LT(sep, layout.Messages[3].Points.front().Y);
    EXPECT_TRUE(Inside(alt.Box, alt.TagBox));
}

TEST(LayoutSequenceRich, BoxesStandBehindTheirParticipantsAndEdgesTakeFoundAndLostMessages) {
    const TORXDiagramModel model = Read(
        "@startuml\nbox \"Inside\" #LightBlue\nparticipant A\nparticipant B\nend box\nparticipant C\n"
        "[-> A : found\nB ->] : lost\nA -> C : x\n@enduml\n");
    const TSequenceLayout layout = LayoutSequence(model, TestMeasure());
    ASSERT_EQ(layout.Groups.size(), 1u);
    EXPECT_TRUE(Inside(layout.Groups[0].Box, layout.Participants[0]));
    EXPECT_TRUE(Inside(layout.Groups[0].Box, layout.Participants[1]));
    EXPECT_FALSE(layout.Groups[0].Box.Overlaps(layout.Participants[2]));
    ASSERT_EQ(layout.Messages.size(), 3u);
    EXPECT_EQ(layout.Messages[0].From, -1);
    EXPECT_LT(layout.Messages[0].Points.front().X, layout.Participants[0].X);
    EXPECT_EQ(layout.Messages[1].To, -1);
    EXPECT_GT(layout.Messages[1].Points.back().X, layout.Participants[2].Right());
    EXPECT_LE(layout.Messages[1].Points.back().X, layout.Extent.Width);
}

TEST(LayoutSequenceRich, CreatedHeadsStandAtTheirMessageAndDestroyedLifelinesEnd) {
    const TORXDiagramModel model = Read(
        "sequenceDiagram\nA->>B: one\ncreate participant C\nA->>C: make\ndestroy C\nA-xC: end\nA->>B: two\n");
    const TSequenceLayout layout = LayoutSequence(model, TestMeasure());
    const TLayoutBox& c = layout.Participants[2];
    const double make = layout.Messages[1].Points.back().Y;
    EXPECT_GT(c.Y, layout.Participants[0].Bottom());
    EXPECT_NEAR(c.Center().Y, make, 1e-6);
    EXPECT_NEAR(layout.Messages[1].Points.back().X, c.X, 1e-6);
    ASSERT_EQ(layout.Destroys.size(), 1u);
    EXPECT_DOUBLE_EQ(layout.Destroys[0].Y, layout.Messages[2].Points.back().Y);
    EXPECT_DOUBLE_EQ(layout.Lifelines[2].To.Y, layout.Destroys[0].Y);
    EXPECT_FALSE(layout.Footers[2].Placed);
    EXPECT_TRUE(layout.Footers[0].Placed);
}

template <class T>
std::vector<T*> ItemsOf(const TORXBaseLabel& doc) {
    std::vector<T*> items;
    for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i)
        if (auto* item = dynamic_cast<T*>(doc.GetItem(i))) items.push_back(item);
    return items;
}

TEST(LayoutSequenceRich, ActorsAreFiguresAndKindsKeepTheirShapes) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDiagramWithLayout(
        doc,
        "@startuml\nactor User\nparticipant \"Web Shop\" as Shop\ndatabase DB\nqueue Q\n"
        "User -> Shop : buy\nShop -> DB : store\nShop -> Q : mail\n@enduml\n",
        TQVLDiagramFormat::dgPlantUML));
    // Heads and feet: the shop and the queue as boxes, the database as a cylinder, the actor as a figure.
    std::vector<TQVLFlowType> shapes;
    for (const TORXBaseFlow* f : ItemsOf<TORXBaseFlow>(doc)) shapes.push_back(f->FlowType());
    EXPECT_EQ(std::count(shapes.begin(), shapes.end(), TQVLFlowType::ftProcess), 2);
    EXPECT_EQ(std::count(shapes.begin(), shapes.end(), TQVLFlowType::ftDatabase), 2);
    EXPECT_EQ(std::count(shapes.begin(), shapes.end(), TQVLFlowType::ftTerminator), 2);
    for (const TORXBaseFlow* f : ItemsOf<TORXBaseFlow>(doc)) EXPECT_NE(f->Text(), "User");
    EXPECT_EQ(ItemsOf<TORXBaseCircle>(doc).size(), 2u);  // the actor's head, at the top and the foot
    int captions = 0;
    for (const TORXBaseText* t : ItemsOf<TORXBaseText>(doc)) captions += t->Text() == "User";
    EXPECT_EQ(captions, 2);
    // One lifeline for the aliased shop: three messages, no stray participant.
    EXPECT_EQ(ItemsOf<TORXBaseArrowLine>(doc).size(), 3u);
}

}  // namespace
}  // namespace Orvex

namespace Orvex {
namespace {

// The fuzz corpora of both parsers through the sequence reader and the layout: whatever is taken must lay
// out with every message placed and nothing outside the extent.
TEST(LayoutSequenceRich, FuzzCorporaReadAndLayOutSafely) {
    for (const char* folder : {"mermaid", "plantuml"}) {
        for (const auto& entry :
             std::filesystem::directory_iterator(std::string(ORVEX_SOURCE_DIR) + "/fuzz/corpus/" + folder)) {
            SCOPED_TRACE(entry.path().string());
            std::ifstream in(entry.path(), std::ios::binary);
            std::stringstream text;
            text << in.rdbuf();
            TORXDiagramModel model;
            if (!QVLImportSequence(text.str(), TQVLDiagramFormat::dgAuto, model)) continue;
            const TSequenceLayout layout = LayoutSequence(model, TestMeasure());
            for (const TSeqMessageLayout& m : layout.Messages)
                for (const TLayoutPoint& p : m.Points) {
                    EXPECT_GE(p.X, 0);
                    EXPECT_LE(p.X, layout.Extent.Width);
                    EXPECT_LE(p.Y, layout.Extent.Height);
                }
        }
    }
}

}  // namespace
}  // namespace Orvex
