// The layered layout on the flowchart-like examples and on small graphs whose shape is known.
#include <gtest/gtest.h>

#include <string>

#include "host/layout/graph_layout.h"
#include "tests/host/layout_test_util.h"

namespace Orvex {
namespace {

using LayoutTest::ExpectNoOverlap;
using LayoutTest::ExpectRoutesBound;
using LayoutTest::NodeSizes;
using LayoutTest::ParseExample;

TEST(LayoutGraph, ExamplesPlaceEveryNodeApartWithBoundRoutes) {
    const char* const examples[] = {
        "mermaid/flowchart.mmd",   "mermaid/state.mmd",    "mermaid/class.mmd",      "mermaid/er.mmd",
        "mermaid/c4.mmd",          "mermaid/block.mmd",    "plantuml/activity.puml", "plantuml/state.puml",
        "plantuml/structure.puml", "plantuml/network.puml"};
    for (const char* name : examples) {
        SCOPED_TRACE(name);
        const auto model = ParseExample(name);
        ASSERT_FALSE(model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsError));
        ASSERT_EQ(model->Kind(), TQVLDiagramKind::dkFlowChart);
        const auto sizes = NodeSizes(*model);
        const TGraphLayout layout = LayoutGraph(*model, sizes);
        ASSERT_EQ(layout.Boxes.size(), model->Nodes().size());
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            const TLayoutBox& box = layout.Boxes[i];
            EXPECT_TRUE(box.Placed);
            EXPECT_NEAR(box.Width, sizes[i].Width, 1e-6);
            EXPECT_NEAR(box.Height, sizes[i].Height, 1e-6);
            EXPECT_GE(box.X, kLayoutMargin - 1e-6);
            EXPECT_GE(box.Y, kLayoutMargin - 1e-6);
            EXPECT_LE(box.Right(), layout.Extent.Width - kLayoutMargin + 1e-6);
            EXPECT_LE(box.Bottom(), layout.Extent.Height - kLayoutMargin + 1e-6);
        }
        ExpectNoOverlap(layout.Boxes);
        ExpectRoutesBound(*model, layout);
        LayoutTest::ExpectRoutesAvoidBoxes(layout);
    }
}

TORXDiagramModel Chain(TQVLFlowDirection direction) {
    TORXDiagramModel model;
    model.fDirection = direction;
    for (const char* id : {"A", "B", "C", "D"}) model.AddNode(id, id, TQVLFlowType::ftProcess, true);
    model.AddEdge("A", "B", "", false, TQVLDiagEdgeArrow::eaArrow);
    model.AddEdge("B", "C", "", false, TQVLDiagEdgeArrow::eaArrow);
    model.AddEdge("C", "D", "", false, TQVLDiagEdgeArrow::eaArrow);
    return model;
}

TEST(LayoutGraph, RanksFollowTheDirection) {
    for (const auto direction : {TQVLFlowDirection::fdTopDown, TQVLFlowDirection::fdLeftRight}) {
        SCOPED_TRACE(static_cast<int>(direction));
        const TORXDiagramModel model = Chain(direction);
        const TGraphLayout layout = LayoutGraph(model, NodeSizes(model));
        for (std::size_t i = 1; i < layout.Boxes.size(); ++i) {
            const TLayoutBox& prev = layout.Boxes[i - 1];
            const TLayoutBox& box = layout.Boxes[i];
            if (direction == TQVLFlowDirection::fdTopDown) {
                EXPECT_GT(box.Y, prev.Bottom());
                EXPECT_NEAR(box.Center().X, prev.Center().X, 1e-3);
            } else {
                EXPECT_GT(box.X, prev.Right());
                EXPECT_NEAR(box.Center().Y, prev.Center().Y, 1e-3);
            }
        }
    }
}

TEST(LayoutGraph, LongAndBackEdgesGoRoundTheBoxesTheyPass) {
    TORXDiagramModel model = Chain(TQVLFlowDirection::fdTopDown);
    model.AddEdge("A", "D", "skip", false, TQVLDiagEdgeArrow::eaArrow);
    model.AddEdge("D", "A", "back", false, TQVLDiagEdgeArrow::eaArrow);
    model.AddEdge("A", "nowhere", "", false, TQVLDiagEdgeArrow::eaArrow);  // no node: no route
    const TGraphLayout layout = LayoutGraph(model, NodeSizes(model));
    ExpectNoOverlap(layout.Boxes);
    ExpectRoutesBound(model, layout);
    ASSERT_EQ(layout.Routes.size(), 5u);
    // The chain cannot stand in one line with the long edges straight through it: they go round.
    LayoutTest::ExpectRoutesAvoidBoxes(layout);
}

TEST(LayoutGraph, LargeGraphsGetStraightRoutes) {
    TORXDiagramModel model = Chain(TQVLFlowDirection::fdTopDown);
    model.AddEdge("A", "D", "", false, TQVLDiagEdgeArrow::eaArrow);
    TGraphLayoutOptions options;
    options.StraightEdgesAbove = 2;
    options.QuickOrderingAbove = 2;
    const TGraphLayout layout = LayoutGraph(model, NodeSizes(model), options);
    ExpectNoOverlap(layout.Boxes);
    for (const TLayoutRoute& r : layout.Routes) {
        EXPECT_EQ(r.Kind, TRouteKind::rkStraight);
        EXPECT_EQ(r.Points.size(), 2u);
    }
}

TEST(LayoutGraph, TheLayeredFallbackKeepsRanksApartAndRoutesBound) {
    TGraphLayoutOptions options;
    options.LayeredAbove = 0;
    for (const char* name : {"mermaid/flowchart.mmd", "mermaid/state.mmd", "plantuml/activity.puml"}) {
        SCOPED_TRACE(name);
        TORXDiagramModel model = *ParseExample(name);
        model.AddEdge(model.Nodes()[0].ID, model.Nodes()[0].ID, "", false,
                      TQVLDiagEdgeArrow::eaArrow);  // a loop
        const TGraphLayout layout = LayoutGraph(model, NodeSizes(model), options);
        for (const TLayoutBox& box : layout.Boxes) EXPECT_TRUE(box.Placed);
        ExpectNoOverlap(layout.Boxes);
        ExpectRoutesBound(model, layout);
    }
    // Ranks follow the edges, cycles notwithstanding.
    TORXDiagramModel chain = Chain(TQVLFlowDirection::fdLeftRight);
    chain.AddEdge("D", "A", "", false, TQVLDiagEdgeArrow::eaArrow);
    const TGraphLayout layout = LayoutGraph(chain, NodeSizes(chain), options);
    for (std::size_t i = 1; i < layout.Boxes.size(); ++i)
        EXPECT_GT(layout.Boxes[i].X, layout.Boxes[i - 1].Right());
}

}  // namespace
}  // namespace Orvex
