// Sideways trees and the fishbone on the examples, and the placement rules they promise.
#include <gtest/gtest.h>

#include "host/layout/fishbone_layout.h"
#include "host/layout/tree_layout.h"
#include "tests/host/layout_test_util.h"

namespace Orvex {
namespace {

using LayoutTest::ExpectNoOverlap;
using LayoutTest::ExpectRoutesBound;
using LayoutTest::NodeSizes;
using LayoutTest::ParseExample;

TEST(LayoutTree, ExamplesPlaceEveryNodeApartWithBoundRoutes) {
    for (const char* name :
         {"mermaid/mindmap.mmd", "mermaid/treemap.mmd", "mermaid/treeview.mmd", "plantuml/mindmap.puml"}) {
        SCOPED_TRACE(name);
        const auto model = ParseExample(name);
        ASSERT_EQ(model->Kind(), TQVLDiagramKind::dkMindMap);
        const TGraphLayout layout = LayoutTree(*model, NodeSizes(*model));
        ASSERT_EQ(layout.Boxes.size(), model->Nodes().size());
        for (const TLayoutBox& box : layout.Boxes) {
            EXPECT_TRUE(box.Placed);
            EXPECT_GE(box.X, kLayoutMargin - 1e-6);
            EXPECT_LE(box.Bottom(), layout.Extent.Height);
        }
        ExpectNoOverlap(layout.Boxes);
        ExpectRoutesBound(*model, layout);
    }
}

TEST(LayoutTree, ChildrenStandOnTheirSideInDeeperColumns) {
    // The PlantUML mind map sends "Team" left and "Dates" right of the root.
    const auto model = ParseExample("plantuml/mindmap.puml");
    const TGraphLayout layout = LayoutTree(*model, NodeSizes(*model));
    const std::vector<int> parents = TreeParents(*model, false);
    bool sawLeft = false;
    for (std::size_t i = 0; i < parents.size(); ++i) {
        if (parents[i] < 0) continue;
        const TLayoutBox& child = layout.Boxes[i];
        const TLayoutBox& parent = layout.Boxes[static_cast<std::size_t>(parents[i])];
        int side = model->Nodes()[i].Side;
        for (int up = parents[i]; up >= 0 && parents[static_cast<std::size_t>(up)] >= 0;
             up = parents[static_cast<std::size_t>(up)])
            side = model->Nodes()[static_cast<std::size_t>(up)].Side;  // the branch's side under the root
        if (side < 0) {
            sawLeft = true;
            EXPECT_LT(child.Right(), parent.X) << model->Nodes()[i].Text;
        } else {
            EXPECT_GT(child.X, parent.Right()) << model->Nodes()[i].Text;
        }
    }
    EXPECT_TRUE(sawLeft);
}

TEST(LayoutTree, CyclesAndForestsStillPlaceEveryNodeOnce) {
    TORXDiagramModel model;
    for (const char* id : {"a", "b", "c", "x", "y"}) model.AddNode(id, id, TQVLFlowType::ftProcess, true);
    model.AddEdge("a", "b", "", false, TQVLDiagEdgeArrow::eaNone);
    model.AddEdge("b", "c", "", false, TQVLDiagEdgeArrow::eaNone);
    model.AddEdge("c", "a", "", false, TQVLDiagEdgeArrow::eaNone);  // closes a cycle: no root of its own
    model.AddEdge("x", "y", "", false, TQVLDiagEdgeArrow::eaNone);
    model.AddEdge("x", "y", "", false, TQVLDiagEdgeArrow::eaNone);  // duplicate
    const TGraphLayout layout = LayoutTree(model, NodeSizes(model));
    for (const TLayoutBox& box : layout.Boxes) EXPECT_TRUE(box.Placed);
    ExpectNoOverlap(layout.Boxes);
    ExpectRoutesBound(model, layout);
    EXPECT_EQ(TreeParents(model, false), (std::vector<int>{-1, 0, 1, -1, 3}));
}

TEST(LayoutFishbone, EffectAtTheHeadCategoriesAboveAndBelowCausesBeside) {
    const auto model = ParseExample("mermaid/ishikawa.mmd");
    ASSERT_EQ(model->Kind(), TQVLDiagramKind::dkIshikawa);
    const TGraphLayout layout = LayoutFishbone(*model, NodeSizes(*model));
    ExpectNoOverlap(layout.Boxes);
    ExpectRoutesBound(*model, layout);
    const TLayoutBox& effect = layout.Boxes[0];  // "Late deliveries"
    const double spine = effect.Center().Y;
    const std::vector<int> parents = TreeParents(*model, true);
    int above = 0;
    int below = 0;
    for (std::size_t i = 1; i < layout.Boxes.size(); ++i) {
        const TLayoutBox& box = layout.Boxes[i];
        EXPECT_TRUE(box.Placed);
        EXPECT_LT(box.Right(), effect.X) << model->Nodes()[i].Text;
        if (parents[i] == 0) (box.Bottom() < spine ? above : below) += 1;
        if (parents[i] > 0) {
            // A cause sits on its category's side of the spine.
            const TLayoutBox& category = layout.Boxes[static_cast<std::size_t>(parents[i])];
            EXPECT_EQ(box.Center().Y < spine, category.Center().Y < spine) << model->Nodes()[i].Text;
        }
    }
    EXPECT_EQ(above, 2);
    EXPECT_EQ(below, 1);
}

}  // namespace
}  // namespace Orvex
