// Graphviz chosen by the size of the graph, edges as well as nodes, and run in a child process under a
// time budget, with the plain layered layout whenever it cannot finish.
#include <graphviz/gvc.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "host/layout/dot_result.h"
#include "host/layout/graph_layout.h"
#include "host/layout/graphviz_settings.h"
#include "host/layout/isolated_run.h"
#include "host/layout/layered_layout.h"
#include "tests/host/layout_test_util.h"

namespace Orvex {
namespace {

using LayoutTest::NodeSizes;

TORXDiagramModel Dense(int nodes, int edges) {
    TORXDiagramModel model;
    std::mt19937 random(7);
    std::uniform_int_distribution<int> any(0, nodes - 1);
    for (int i = 0; i < nodes; ++i)
        model.AddNode("n" + std::to_string(i), "Node " + std::to_string(i), TQVLFlowType::ftProcess, true);
    for (int e = 0; e < edges; ++e)
        model.AddEdge("n" + std::to_string(any(random)), "n" + std::to_string(any(random)), "", false,
                      TQVLDiagEdgeArrow::eaArrow);
    return model;
}

void ExpectSameLayout(const TGraphLayout& a, const TGraphLayout& b) {
    ASSERT_EQ(a.Boxes.size(), b.Boxes.size());
    for (std::size_t i = 0; i < a.Boxes.size(); ++i) {
        EXPECT_DOUBLE_EQ(a.Boxes[i].X, b.Boxes[i].X) << i;
        EXPECT_DOUBLE_EQ(a.Boxes[i].Y, b.Boxes[i].Y) << i;
    }
    ASSERT_EQ(a.Routes.size(), b.Routes.size());
    for (std::size_t i = 0; i < a.Routes.size(); ++i)
        EXPECT_EQ(a.Routes[i].Points.size(), b.Routes[i].Points.size());
}

TEST(LayoutBudget, DenseGraphsGoToThePlainLayoutWithoutTryingGraphviz) {
    const TGraphLayoutOptions options;
    for (const auto& [nodes, edges] : {std::pair{399, 3990}, std::pair{300, 30000}, std::pair{100, 700}}) {
        SCOPED_TRACE(std::to_string(nodes) + " nodes, " + std::to_string(edges) + " edges");
        EXPECT_EQ(ChooseGraphviz(MeasureGraph(Dense(nodes, edges)), options).Engine, TGraphEngine::geLayered);
    }
    EXPECT_EQ(ChooseGraphviz({options.LayeredAbove + 1, 10, 10}, options).Engine, TGraphEngine::geLayered);

    // A chain spans one rank per edge; an edge back to the start spans them all.
    TORXDiagramModel chain;
    for (int i = 0; i < 10; ++i) {
        chain.AddNode("n" + std::to_string(i), "", TQVLFlowType::ftProcess, true);
        if (i > 0)
            chain.AddEdge("n" + std::to_string(i - 1), "n" + std::to_string(i), "", false,
                          TQVLDiagEdgeArrow::eaArrow);
    }
    chain.AddEdge("n0", "n9", "", false, TQVLDiagEdgeArrow::eaArrow);
    chain.AddEdge("n0", "missing", "", false, TQVLDiagEdgeArrow::eaArrow);
    const TGraphSize size = MeasureGraph(chain);
    EXPECT_EQ(size.Edges, 10u);
    EXPECT_EQ(size.Work, 10u + 9u + 9u);
    EXPECT_EQ(ChooseGraphviz(size, options).Engine, TGraphEngine::geDot);

    // Small graphs are not worth a process; without a budget nothing is.
    EXPECT_FALSE(ChooseGraphviz(size, options).Isolated);
    const TGraphSize middle{200, 260, 2000};
    EXPECT_EQ(ChooseGraphviz(middle, options).Isolated, IsolationAvailable());
    TGraphLayoutOptions unlimited;
    unlimited.TimeBudget = 0;
    EXPECT_FALSE(ChooseGraphviz(middle, unlimited).Isolated);
}

TEST(LayoutBudget, AGraphvizRunOverItsBudgetGivesThePlainLayout) {
    if (!IsolationAvailable()) GTEST_SKIP() << "no child processes in this build";
    const TORXDiagramModel model = Dense(300, 3000);
    const auto sizes = NodeSizes(model);
    TGraphLayoutOptions options;
    options.LayeredAboveEdges = std::numeric_limits<std::size_t>::max();  // only the budget decides
    options.LayeredAboveWork = std::numeric_limits<std::size_t>::max();
    options.IsolateAboveWork = 0;
    options.TimeBudget = 0.05;  // dot needs seconds for this graph
    const TGraphLayout layout = LayoutGraph(model, sizes, options);
    ExpectSameLayout(layout, LayoutLayered(model, sizes, options));
}

TEST(LayoutBudget, AChildProcessLaysOutExactlyAsThisProcessDoes) {
    if (!IsolationAvailable()) GTEST_SKIP() << "no child processes in this build";
    const auto model = LayoutTest::ParseExample("mermaid/flowchart.mmd");
    const auto sizes = NodeSizes(*model);
    TGraphLayoutOptions inProcess;
    inProcess.TimeBudget = 0;
    TGraphLayoutOptions isolated;
    isolated.IsolateAboveWork = 0;
    isolated.TimeBudget = 60;
    const TGraphLayout a = LayoutGraph(*model, sizes, inProcess);
    const TGraphLayout b = LayoutGraph(*model, sizes, isolated);
    ExpectSameLayout(a, b);
    for (std::size_t i = 0; i < a.Routes.size() && i < b.Routes.size(); ++i)
        for (std::size_t k = 0; k < a.Routes[i].Points.size() && k < b.Routes[i].Points.size(); ++k) {
            EXPECT_DOUBLE_EQ(a.Routes[i].Points[k].X, b.Routes[i].Points[k].X);
            EXPECT_DOUBLE_EQ(a.Routes[i].Points[k].Y, b.Routes[i].Points[k].Y);
        }
}

TEST(IsolatedRun, GivesTheAnswerOrNothingWhenTheChildFails) {
    if (!IsolationAvailable()) GTEST_SKIP() << "no child processes in this build";
    TIsolatedLimits limits;
    limits.Seconds = 20;
    std::string big(300000, 'x');  // more than a pipe holds at once
    big[12345] = '\0';
    EXPECT_EQ(RunIsolated([&] { return big; }, limits), big);
    EXPECT_EQ(RunIsolated([] { return std::string(); }, limits), std::string());
    EXPECT_FALSE(RunIsolated([]() -> std::string { throw std::runtime_error("no"); }, limits));
    EXPECT_FALSE(RunIsolated(
        []() -> std::string {
            std::raise(SIGSEGV);
            return "unreached";
        },
        limits));
#if !defined(__SANITIZE_ADDRESS__)  // no memory cap under the address sanitizer
    // More memory than the child may take: the allocation fails in the child only.
    limits.ExtraMemory = std::size_t{64} << 20;
    EXPECT_FALSE(RunIsolated([] { return std::string(std::size_t{512} << 20, 'm'); }, limits));
#endif
    // Work that never ends is killed at the deadline.
    limits.Seconds = 0.1;
    EXPECT_FALSE(RunIsolated(
        []() -> std::string {
            for (;;) std::this_thread::sleep_for(std::chrono::milliseconds(10));
        },
        limits));
}

// Clusters (subgraphs drawn as boxes) come back from the child with the nodes and edges.
TEST(DotResult, ClustersAndRoutesSurviveTheTripFromTheChild) {
    if (!IsolationAvailable()) GTEST_SKIP() << "no child processes in this build";
    Agraph_t* g = agopen(const_cast<char*>("g"), Agdirected, nullptr);
    Agraph_t* outer = agsubg(g, const_cast<char*>("cluster_outer"), 1);
    Agraph_t* inner = agsubg(outer, const_cast<char*>("cluster_inner"), 1);
    std::vector<Agnode_t*> nodes;
    for (const char* name : {"a", "b", "c", "d"}) nodes.push_back(agnode(g, const_cast<char*>(name), 1));
    agsubnode(outer, nodes[1], 1);
    agsubnode(inner, nodes[2], 1);
    agsubnode(inner, nodes[3], 1);
    std::vector<Agedge_t*> edges = {agedge(g, nodes[0], nodes[1], nullptr, 1),
                                    agedge(g, nodes[1], nodes[2], nullptr, 1),
                                    agedge(g, nodes[2], nodes[3], nullptr, 1)};
    TGraphvizSettings quick;
    quick.QuickOrdering = true;
    ApplyGraphvizSettings(g, quick);
    TIsolatedLimits limits;
    limits.Seconds = 30;
    const auto bytes = RunIsolated(
        [&] {
            if (gvLayout(gvContext(), g, "dot") != 0) throw std::runtime_error("dot failed");
            return EncodeDotResult(CollectDotResult(g, nodes, edges));
        },
        limits);
    agclose(g);
    ASSERT_TRUE(bytes);
    const auto result = DecodeDotResult(*bytes);
    ASSERT_TRUE(result);
    ASSERT_EQ(result->Clusters.size(), 2u);
    EXPECT_EQ(result->Clusters[0].Name, "cluster_outer");
    EXPECT_EQ(result->Clusters[1].Name, "cluster_inner");
    auto inside = [](const boxf& box, pointf p) {
        return p.x > box.LL.x && p.x < box.UR.x && p.y > box.LL.y && p.y < box.UR.y;
    };
    for (const std::size_t n : {std::size_t{1}, std::size_t{2}, std::size_t{3}})
        EXPECT_TRUE(inside(result->Clusters[0].Box, result->Nodes[n])) << n;
    for (const std::size_t n : {std::size_t{2}, std::size_t{3}})
        EXPECT_TRUE(inside(result->Clusters[1].Box, result->Nodes[n])) << n;
    EXPECT_FALSE(inside(result->Clusters[0].Box, result->Nodes[0]));
    for (const auto& route : result->Edges) EXPECT_GE(route.size(), 4u);
    // Damaged bytes are refused, not read past their end.
    EXPECT_FALSE(DecodeDotResult(std::string_view(*bytes).substr(0, bytes->size() - 1)));
    EXPECT_FALSE(DecodeDotResult(*bytes + "x"));
}

}  // namespace
}  // namespace Orvex
