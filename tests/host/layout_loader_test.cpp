// The diagram loader end to end on the examples: the items it creates, how they are bound, that
// captions fit, and that a load is one undo step or nothing at all.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/layout/diagram_loader.h"
#include "host/layout/sequence_layout.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/diagrams/sequence_import.h"
#include "orvex/document/headless.h"
#include "orvex/io/json.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/text_items.h"
#include "tests/host/layout_test_util.h"

namespace Orvex {
namespace {

template <class T>
std::vector<T*> ItemsOf(const TORXBaseLabel& doc) {
    std::vector<T*> items;
    for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i)
        if (auto* item = dynamic_cast<T*>(doc.GetItem(i))) items.push_back(item);
    return items;
}

TLayoutBox BoxOf(const TORXBaseFlow& flow) {
    const TQVLRect r = flow.Box();
    return {static_cast<double>(r.Left) / 1000, static_cast<double>(r.Top) / 1000,
            static_cast<double>(r.Right - r.Left) / 1000, static_cast<double>(r.Bottom - r.Top) / 1000, true};
}

// The editor mode is a setting, not an edit: undoing the load leaves the document empty in flowchart mode.
std::string EmptyFlowchartJson() {
    TORXHeadlessLabel doc;
    doc.SetEditorMode(TQVLEditorMode::emFlowChart);
    return doc.GetJsonString();
}

void ExpectLoadIsOneUndoStep(TORXHeadlessLabel& doc, const std::string& before) {
    doc.Undo();
    EXPECT_EQ(doc.GetItemsCount(), 0);
    EXPECT_EQ(doc.GetJsonString(), before);
}

TEST(LayoutLoader, GraphLikeExamplesBecomeBoundFlowsAndLinks) {
    for (const char* name :
         {"mermaid/flowchart.mmd", "mermaid/state.mmd", "mermaid/class.mmd", "mermaid/mindmap.mmd",
          "mermaid/treeview.mmd", "mermaid/ishikawa.mmd", "plantuml/activity.puml", "plantuml/mindmap.puml",
          "plantuml/mindmap_indented.puml"}) {
        SCOPED_TRACE(name);
        const std::string text = LayoutTest::ReadExample(name);
        const auto format = QVLResolveFileFormat(name, TQVLDiagramFormat::dgAuto);
        const auto model = QVLImportDiagram(text, format);
        TORXHeadlessLabel doc;
        ASSERT_TRUE(LoadDiagramWithLayout(doc, text, format));
        const std::string before = EmptyFlowchartJson();
        EXPECT_EQ(doc.EditorMode(), TQVLEditorMode::emFlowChart);

        // Container frames come first; a captioned double circle has a second ring after it.
        const auto all = ItemsOf<TORXBaseFlow>(doc);
        std::vector<TORXBaseFlow*> flows;
        std::size_t at = model->Groups().size();
        for (const TQVLDiagNode& n : model->Nodes()) {
            ASSERT_LT(at, all.size());
            flows.push_back(all[at++]);
            if (n.Shape == TQVLFlowType::ftEnd && !n.Text.empty()) ++at;
        }
        EXPECT_EQ(at, all.size());
        const auto links = ItemsOf<TORXBaseLink>(doc);
        std::size_t resolvable = 0;
        for (const TQVLDiagEdge& e : model->Edges())
            if (model->NodeIndexOf(e.FromID) >= 0 && model->NodeIndexOf(e.ToID) >= 0) ++resolvable;
        EXPECT_EQ(links.size(), resolvable);

        std::vector<TLayoutBox> boxes;
        const TTextMeasure measure = FontMeasure(TQVLFont{});
        for (std::size_t i = 0; i < flows.size(); ++i) {
            const TORXBaseFlow& flow = *flows[i];
            EXPECT_EQ(flow.Text(), model->Nodes()[i].Text);
            const TQVLDiagNode& node = model->Nodes()[i];
            const bool circle = (node.Shape == TQVLFlowType::ftStart || node.Shape == TQVLFlowType::ftEnd) &&
                                !node.Text.empty();
            EXPECT_EQ(flow.FlowType(), circle ? TQVLFlowType::ftEllipse : node.Shape);
            boxes.push_back(BoxOf(flow));
            if (flow.Text().empty()) continue;  // a marker: a small disc with nothing to fit
            const TLayoutSize caption = FontMeasure(flow.Font())(flow.Text());
            const TLayoutSize room = FlowTextArea(flow.FlowType(), {boxes.back().Width, boxes.back().Height});
            EXPECT_LE(caption.Width, room.Width + 1e-3) << flow.Text();
            EXPECT_LE(caption.Height, room.Height + 1e-3) << flow.Text();
        }
        LayoutTest::ExpectNoOverlap(boxes);
        for (const TORXBaseLink* link : links) {
            ASSERT_NE(link->FromFlow(), nullptr);
            ASSERT_NE(link->ToFlow(), nullptr);
        }
        // Each edge's ends are the items recorded for its nodes, in edge order.
        std::size_t k = 0;
        for (const TQVLDiagEdge& e : model->Edges()) {
            if (model->NodeIndexOf(e.FromID) < 0 || model->NodeIndexOf(e.ToID) < 0) continue;
            const auto fromIndex = static_cast<std::size_t>(model->NodeIndexOf(e.FromID));
            const auto toIndex = static_cast<std::size_t>(model->NodeIndexOf(e.ToID));
            EXPECT_EQ(links[k]->FromID(), flows[fromIndex]->InID());
            EXPECT_EQ(links[k]->ToID(), flows[toIndex]->InID());
            EXPECT_EQ(links[k]->LineType(), e.Dotted ? TQVLineType::ii22 : TQVLineType::iiSolid);
            EXPECT_EQ(links[k]->ToType() == TQVLTermType::ttNone, e.Arrow == TQVLDiagEdgeArrow::eaNone);
            ++k;
        }
        ExpectLoadIsOneUndoStep(doc, before);
    }
}

TEST(LayoutLoader, SequenceMessagesRunBetweenTheirLifelinesInEventOrder) {
    for (const char* name : {"mermaid/sequence.mmd", "plantuml/sequence.puml"}) {
        SCOPED_TRACE(name);
        const std::string text = LayoutTest::ReadExample(name);
        const auto format = QVLResolveFileFormat(name, TQVLDiagramFormat::dgAuto);
        const auto model = QVLParseWithSequenceImport(text, format);
        TORXHeadlessLabel doc;
        ASSERT_TRUE(LoadDiagramWithLayout(doc, text, format));
        const std::string before = EmptyFlowchartJson();

        // Every participant drawn as a box has it twice, at the head and at the foot of its lifeline.
        const auto boxes = ItemsOf<TORXBaseFlow>(doc);
        std::size_t boxed = 0;
        for (const TQVLSeqParticipant& p : model->Participants()) boxed += QVLSeqRoleIsSymbol(p.Role) ? 0 : 2;
        ASSERT_EQ(boxes.size(), boxed);
        const TSequenceLayout layout = LayoutSequence(*model, FontMeasure(TQVLFont{}));
        std::vector<const TQVLSeqEvent*> messages;
        for (const TQVLSeqEvent& ev : model->SeqEvents())
            if (ev.EventType == TQVLSeqEventType::seMessage) messages.push_back(&ev);
        const auto arrows = ItemsOf<TORXBaseArrowLine>(doc);
        ASSERT_EQ(arrows.size(), messages.size());
        auto lifelineX = [&](const std::string& id) {
            for (std::size_t i = 0; i < model->Participants().size(); ++i)
                if (model->Participants()[i].ID == id) return layout.Lifelines[i].From.X;
            return -1.0;
        };
        std::int64_t lastY = 0;
        for (std::size_t i = 0; i < arrows.size(); ++i) {
            const TQVLSeqEvent& ev = *messages[i];
            const TORXBaseArrowLine& arrow = *arrows[i];
            EXPECT_EQ(arrow.Text(), ev.Text);
            EXPECT_NEAR(static_cast<double>(arrow.GetPoint(2).X) / 1000, lifelineX(ev.ToActor), 1e-3);
            if (ev.FromActor != ev.ToActor) {
                EXPECT_NEAR(static_cast<double>(arrow.GetPoint(1).X) / 1000, lifelineX(ev.FromActor), 1e-3);
            }
            EXPECT_GT(arrow.GetPoint(1).Y, lastY) << ev.Text;
            lastY = arrow.GetPoint(2).Y;
            EXPECT_EQ(arrow.LineType(), ev.Dotted ? TQVLineType::ii22 : TQVLineType::iiSolid);
        }
        ExpectLoadIsOneUndoStep(doc, before);
    }
}

TEST(LayoutLoader, AnErrorLeavesTheDocumentUntouched) {
    TORXHeadlessLabel doc;
    const std::string before = doc.GetJsonString();
    EXPECT_FALSE(LoadDiagramWithLayout(doc, "", TQVLDiagramFormat::dgAuto));  // DIAGRAM_EMPTY_RESULT
    EXPECT_FALSE(LoadDiagramWithLayout(doc, "@startuml\n@enduml\n", TQVLDiagramFormat::dgAuto));
    EXPECT_EQ(doc.GetJsonString(), before);
    EXPECT_TRUE(doc.IsUndoEmpty());
    EXPECT_EQ(doc.EditorMode(), TQVLEditorMode::emLabelling);
}

TEST(LayoutLoader, RegisteredLoaderServesTheDocumentsImports) {
    RegisterDiagramLayout();
    TORXHeadlessLabel doc;
    EXPECT_TRUE(doc.LoadFromDiagramText("flowchart LR\n  A[Start] --> B{Ok?}\n  B -->|yes| C\n",
                                        TQVLDiagramFormat::dgAuto));
    EXPECT_EQ(ItemsOf<TORXBaseFlow>(doc).size(), 3u);
    const auto links = ItemsOf<TORXBaseLink>(doc);
    ASSERT_EQ(links.size(), 2u);
    // The edge's label is the link's own, so it moves and goes with it; no separate text is made.
    EXPECT_EQ(links[0]->Label(), "");
    EXPECT_EQ(links[1]->Label(), "yes");
    EXPECT_TRUE(ItemsOf<TORXBaseText>(doc).empty());
    EXPECT_TRUE(doc.LoadFromDiagram(std::string(ORVEX_SOURCE_DIR) + "/examples/mermaid/mindmap.mmd",
                                    TQVLDiagramFormat::dgAuto));
    QVLSetDiagramLoader(nullptr);
}

}  // namespace
}  // namespace Orvex
