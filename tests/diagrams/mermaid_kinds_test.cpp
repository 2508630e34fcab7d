// The per-kind Mermaid routines: the rules that the bundled examples do not already pin down.
#include <gtest/gtest.h>

#include <string>

#include "orvex/diagrams/diagram_parse.h"

using namespace Orvex;

namespace {

std::unique_ptr<TORXDiagramModel> Mermaid(std::string_view text) {
    return QVLParseDiagram(text, TQVLDiagramFormat::dgMermaid);
}

const TQVLDiagNode& Node(const TORXDiagramModel& model, std::string_view id) {
    const int index = model.NodeIndexOf(id);
    EXPECT_GE(index, 0) << id;
    static const TQVLDiagNode kMissing;
    return index < 0 ? kMissing : model.Nodes()[static_cast<std::size_t>(index)];
}

}  // namespace

TEST(MermaidKinds, ChartDefaultsAndCaptions) {
    const auto pie = Mermaid("pie\n\"A\" : 1,5");
    EXPECT_EQ(pie->Title(), "Pie chart");
    EXPECT_EQ(Node(*pie, "pie_root").Text, "Pie chart");
    EXPECT_EQ(Node(*pie, "pie_slice_1").Text, "A\r\n1,5");

    const auto packet = Mermaid("packet-beta\n0-7: \"Type\"\n+8: \"Code\"\n+1: \"Flag\"");
    EXPECT_EQ(Node(*packet, "packet_field_2").Text, "8-15\r\nCode");
    EXPECT_EQ(Node(*packet, "packet_field_3").Text, "16\r\nFlag");

    const auto venn = Mermaid("venn-beta\nset a\nunion a, b");
    EXPECT_EQ(Node(*venn, "venn_union_1").Text, "Union a, b");
    EXPECT_EQ(Node(*venn, "venn_set_2").Text, "b");  // a member never declared becomes a set of its own

    const auto quadrant = Mermaid("quadrantChart\nquadrant-2 Promote\nP: [0.5, 0.5]");
    EXPECT_EQ(Node(*quadrant, "quadrant_1").Text, "Quadrant 1");
    EXPECT_EQ(Node(*quadrant, "quadrant_2").Text, "Promote");
    EXPECT_EQ(Node(*quadrant, "quadrant_point_1").Text, "P [0.5, 0.5]");
    EXPECT_EQ(quadrant->Edges()[0].FromID, "quadrant_1");

    const auto sankey = Mermaid("sankey-beta\n\"a, b\",c,5\nc,\"a, b\",1");
    ASSERT_EQ(sankey->Nodes().size(), 2u);
    EXPECT_EQ(Node(*sankey, "sankey_1").Text, "a, b");
    EXPECT_EQ(sankey->Edges()[1].FromID, "sankey_2");
    EXPECT_EQ(sankey->Edges()[1].Text, "1");

    EXPECT_EQ(Node(*Mermaid("radar-beta\naxis a"), "radar_root").Text, "Radar chart");
    EXPECT_EQ(Node(*Mermaid("xychart-beta horizontal\nbar [1, 2]"), "xy_root").Text, "XY chart");
}

TEST(MermaidKinds, ClassMarksAndDirection) {
    const auto m = Mermaid("classDiagram\ndirection TB\nA --|> B\nC ..> D : uses\nE --o F\nG -- H");
    EXPECT_EQ(m->Direction(), TQVLFlowDirection::fdTopDown);
    ASSERT_EQ(m->Edges().size(), 4u);
    EXPECT_EQ(m->Edges()[0].Arrow, TQVLDiagEdgeArrow::eaArrow);
    EXPECT_TRUE(m->Edges()[1].Dotted);
    EXPECT_EQ(m->Edges()[1].Text, "uses");
    EXPECT_EQ(m->Edges()[2].Arrow, TQVLDiagEdgeArrow::eaRhombus);
    EXPECT_EQ(m->Edges()[3].Arrow, TQVLDiagEdgeArrow::eaNone);
    EXPECT_EQ(m->Edges()[3].FromArrow, TQVLDiagEdgeArrow::eaNone);
    const auto e = Mermaid("classDiagram\nenum Color {\nRED\nGREEN\n}");
    EXPECT_EQ(Node(*e, "Color").Text, "<<enumeration>>\r\nColor\r\nRED\r\nGREEN");
}

TEST(MermaidKinds, IndentedTreesCloseDeeperLevels) {
    const auto m = Mermaid("mindmap\ntitle: Plan\n  root\n    a\n      b:::big\n    c\n      ::icon(x)\n");
    EXPECT_EQ(m->Title(), "Plan");
    std::string edges;
    for (const auto& e : m->Edges()) edges += e.FromID + ">" + e.ToID + " ";
    EXPECT_EQ(edges, "mind_1>mind_2 mind_2>mind_3 mind_1>mind_4 ");
    EXPECT_EQ(Node(*m, "mind_3").Text, "b");

    const auto tree = Mermaid("treeView-beta\nroot/\n\xE2\x94\x9C\xE2\x94\x80\xE2\x94\x80 a.txt\n");
    EXPECT_EQ(Node(*tree, "treeview_1").Shape, TQVLFlowType::ftPredefined);
    EXPECT_EQ(Node(*tree, "treeview_2").Text, "a.txt");
    ASSERT_EQ(tree->Edges().size(), 1u);
}

TEST(MermaidKinds, GraphKindsIdentifiersAndEdges) {
    const auto er = Mermaid("erDiagram\nA ||..o{ B : \"has\"");
    ASSERT_EQ(er->Edges().size(), 1u);
    EXPECT_TRUE(er->Edges()[0].Dotted);
    EXPECT_EQ(er->Edges()[0].Text, "has");
    EXPECT_EQ(Node(*er, "A").Shape, TQVLFlowType::ftDatabase);

    const auto git = Mermaid("gitGraph\ncommit id: \"init\"\nbranch dev\ncommit\ncheckout main\nmerge dev");
    EXPECT_EQ(Node(*git, "git_commit_1").Text, "init");
    EXPECT_EQ(Node(*git, "git_merge_1").Text, "Merge dev");

    const auto gantt =
        Mermaid("gantt\ndateFormat YYYY-MM-DD\nsection S\nA task :a1, 2024-01-01, 3d\nNext :after a1, 2d");
    EXPECT_EQ(Node(*gantt, "a1").Text, "A task");
    EXPECT_GE(gantt->NodeIndexOf("gantt_task_2"), 0);
    EXPECT_EQ(gantt->Edges().back().FromID, "a1");
    EXPECT_EQ(gantt->Edges().back().Arrow, TQVLDiagEdgeArrow::eaArrow);

    const auto state = Mermaid("stateDiagram\n[*] --> A\nA -> B : go\nB --> [*]");
    EXPECT_EQ(state->Edges()[1].Text, "go");
    EXPECT_EQ(Node(*state, "__end__").Shape, TQVLFlowType::ftEnd);

    // Front matter is dropped before the header is looked for.
    const auto block = Mermaid("---\nconfig: x\n---\nblock-beta\ncolumns 2\na b\nspace\na --> b");
    EXPECT_EQ(block->Nodes().size(), 2u);
    EXPECT_TRUE(block->Diagnostics().empty());
}
