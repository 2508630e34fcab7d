// Every bundled example parses to the kind, identifiers, shapes and edges it is meant to show, with no
// error diagnostic.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "orvex/diagrams/diagram_parse.h"

using namespace Orvex;

namespace {

struct TNodeCheck {
    const char* Id;
    TQVLFlowType Shape;
};

struct TEdgeCheck {
    const char* From;
    const char* To;
    TQVLDiagEdgeArrow Arrow;
};

struct TExample {
    const char* File;
    TQVLDiagramKind Kind;
    std::size_t Nodes;  // participants for sequence diagrams
    std::size_t Edges;  // events for sequence diagrams
    std::vector<TNodeCheck> NodeChecks;
    std::vector<TEdgeCheck> EdgeChecks;
};

using K = TQVLDiagramKind;
using F = TQVLFlowType;
using A = TQVLDiagEdgeArrow;

std::string ReadExample(const std::string& name) {
    std::ifstream in(std::string(ORVEX_SOURCE_DIR) + "/examples/" + name, std::ios::binary);
    std::stringstream buffer;
    buffer << in.rdbuf();
    return buffer.str();
}

void CheckExample(const TExample& e) {
    SCOPED_TRACE(e.File);
    const std::string text = ReadExample(e.File);
    ASSERT_FALSE(text.empty());
    const auto model = QVLParseDiagram(text, QVLDiagramFormatFromExt(e.File));
    EXPECT_EQ(model->Kind(), e.Kind);
    for (const auto& d : model->Diagnostics())
        ADD_FAILURE() << d.Code << " at line " << d.Line << ": " << d.SourceText;
    if (e.Kind == K::dkSequence) {
        EXPECT_EQ(model->Participants().size(), e.Nodes);
        EXPECT_EQ(model->SeqEvents().size(), e.Edges);
        return;
    }
    EXPECT_EQ(model->Nodes().size(), e.Nodes);
    EXPECT_EQ(model->Edges().size(), e.Edges);
    for (const auto& check : e.NodeChecks) {
        const int index = model->NodeIndexOf(check.Id);
        ASSERT_GE(index, 0) << check.Id;
        EXPECT_EQ(model->Nodes()[static_cast<std::size_t>(index)].Shape, check.Shape) << check.Id;
    }
    for (const auto& check : e.EdgeChecks) {
        bool found = false;
        for (const auto& edge : model->Edges())
            found =
                found || (edge.FromID == check.From && edge.ToID == check.To && edge.Arrow == check.Arrow);
        EXPECT_TRUE(found) << check.From << " -> " << check.To;
    }
}

}  // namespace

TEST(Examples, MermaidKinds) {
    const std::vector<TExample> examples = {
        {"mermaid/flowchart.mmd",
         K::dkFlowChart,
         8,
         8,
         {{"Start", F::ftStart},
          {"Stock", F::ftDecision},
          {"Pay", F::ftData},
          {"Notify", F::ftManualInput},
          {"Db", F::ftDatabase},
          {"Mail", F::ftPredefined},
          {"Done", F::ftEnd}},
         {{"Mail", "Done", A::eaArrow}, {"Notify", "Done", A::eaArrow}}},
        {"mermaid/sequence.mmd", K::dkSequence, 3, 5, {}, {}},
        {"mermaid/state.mmd",
         K::dkFlowChart,
         6,
         6,
         {{"__start__", F::ftStart}, {"__end__", F::ftEnd}, {"Waiting", F::ftProcess}},
         {{"__start__", "Waiting", A::eaArrow}, {"Shipped", "__end__", A::eaArrow}}},
        {"mermaid/class.mmd",
         K::dkFlowChart,
         5,
         4,
         {{"Animal", F::ftProcess}},
         {{"Owner", "Dog", A::eaNone}, {"Dog", "Pet", A::eaArrow}}},
        {"mermaid/mindmap.mmd",
         K::dkMindMap,
         9,
         8,
         {{"root", F::ftStart}, {"mind_1", F::ftProcess}},
         {{"root", "mind_1", A::eaNone}, {"mind_4", "dev", A::eaNone}}},
        {"mermaid/er.mmd",
         K::dkFlowChart,
         4,
         3,
         {{"CUSTOMER", F::ftDatabase}, {"PRODUCT", F::ftDatabase}},
         {{"CUSTOMER", "ORDER", A::eaNone}}},
        {"mermaid/requirement.mmd",
         K::dkFlowChart,
         5,
         4,
         {{"login_req", F::ftProcess}, {"login_test", F::ftDocument}},
         {{"login_req", "lockout", A::eaArrow}}},
        {"mermaid/gitgraph.mmd",
         K::dkFlowChart,
         12,
         14,
         {{"git_commit_1", F::ftPredefined}, {"git_merge_1", F::ftPredefined}},
         {{"git_commit_5", "git_merge_1", A::eaArrow}, {"git_commit_2", "git_commit_3", A::eaArrow}}},
        {"mermaid/timeline.mmd",
         K::dkFlowChart,
         9,
         11,
         {{"timeline_section_1", F::ftPredefined}, {"timeline_event_3", F::ftProcess}},
         {{"timeline_section_2", "timeline_event_3", A::eaArrow},
          {"timeline_event_1", "timeline_event_2", A::eaArrow}}},
        {"mermaid/journey.mmd",
         K::dkFlowChart,
         10,
         13,
         {{"journey_section_1", F::ftPredefined}, {"journey_task_3", F::ftProcess}},
         {{"journey_section_2", "journey_task_4", A::eaArrow}}},
        {"mermaid/c4.mmd",
         K::dkFlowChart,
         4,
         3,
         {{"customer", F::ftEllipse}, {"core", F::ftDatabase}},
         {{"customer", "bank", A::eaArrow}}},
        {"mermaid/pie.mmd",
         K::dkFlowChart,
         4,
         3,
         {{"pie_root", F::ftEllipse}, {"pie_slice_3", F::ftPreparation}},
         {{"pie_root", "pie_slice_1", A::eaNone}}},
        {"mermaid/sankey.mmd",
         K::dkFlowChart,
         10,
         11,
         {{"sankey_1", F::ftProcess}},
         {{"sankey_1", "sankey_2", A::eaArrow}}},
        {"mermaid/packet.mmd",
         K::dkFlowChart,
         19,
         18,
         {{"packet_field_4", F::ftData}},
         {{"packet_field_1", "packet_field_2", A::eaNone}}},
        {"mermaid/kanban.mmd",
         K::dkFlowChart,
         12,
         7,
         {{"todo", F::ftPredefined}, {"login", F::ftProcess}},
         {{"doing", "parser", A::eaNone}}},
        {"mermaid/architecture.mmd",
         K::dkFlowChart,
         6,
         7,
         {{"api", F::ftPredefined}, {"db", F::ftDatabase}, {"gateway", F::ftEllipse}, {"hub", F::ftStart}},
         {{"gateway", "server", A::eaArrow}, {"db", "server", A::eaNone}, {"api", "db", A::eaNone}}},
        {"mermaid/treemap.mmd",
         K::dkMindMap,
         16,
         13,
         {{"treemap_1", F::ftProcess}},
         {{"treemap_1", "treemap_2", A::eaNone}, {"treemap_5", "treemap_6", A::eaNone}}},
        {"mermaid/block.mmd", K::dkFlowChart, 3, 2, {{"db", F::ftDatabase}}, {{"back", "db", A::eaArrow}}},
        {"mermaid/quadrant.mmd",
         K::dkFlowChart,
         9,
         5,
         {{"quadrant_1", F::ftPredefined}},
         {{"quadrant_2", "quadrant_point_1", A::eaNone},
          {"quadrant_3", "quadrant_point_2", A::eaNone},
          {"quadrant_1", "quadrant_point_3", A::eaNone}}},
        {"mermaid/xychart.mmd",
         K::dkFlowChart,
         5,
         4,
         {{"xy_root", F::ftEllipse}, {"xy_x-axis", F::ftData}},
         {{"xy_root", "xy_series_2", A::eaArrow}}},
        {"mermaid/radar.mmd",
         K::dkFlowChart,
         11,
         10,
         {{"radar_root", F::ftEllipse}, {"radar_curve_2", F::ftProcess}},
         {{"radar_root", "radar_axis_3", A::eaNone}, {"radar_root", "radar_limit_2", A::eaNone}}},
        {"mermaid/venn.mmd",
         K::dkFlowChart,
         7,
         9,
         {{"venn_set_3", F::ftEllipse}, {"venn_union_1", F::ftPreparation}},
         {{"venn_set_3", "venn_union_2", A::eaNone}}},
        {"mermaid/ishikawa.mmd",
         K::dkIshikawa,
         8,
         7,
         {{"ishikawa_1", F::ftTerminator}},
         {{"ishikawa_2", "ishikawa_1", A::eaNone}, {"ishikawa_3", "ishikawa_2", A::eaNone}}},
        {"mermaid/treeview.mmd",
         K::dkMindMap,
         7,
         6,
         {{"treeview_2", F::ftPredefined}, {"treeview_3", F::ftDocument}},
         {{"treeview_2", "treeview_4", A::eaNone}, {"treeview_1", "treeview_7", A::eaNone}}},
        {"mermaid/gantt.mmd",
         K::dkFlowChart,
         15,
         21,
         {{"int", F::ftProcess}, {"gantt_section_2", F::ftPredefined}},
         {{"int", "wire", A::eaArrow}, {"gantt_section_1", "int", A::eaNone}}},
    };
    for (const auto& e : examples) CheckExample(e);
}

TEST(Examples, PlantUmlKinds) {
    const std::vector<TExample> examples = {
        {"plantuml/sequence.puml", K::dkSequence, 3, 6, {}, {}},
        {"plantuml/activity.puml",
         K::dkFlowChart,
         9,
         10,
         {{"activity_1", F::ftStart}, {"activity_3", F::ftDecision}, {"activity_9", F::ftEnd}},
         {{"activity_3", "activity_5", A::eaArrow}, {"activity_7", "activity_6", A::eaArrow}}},
        {"plantuml/state.puml",
         K::dkFlowChart,
         6,
         6,
         {{"__start__", F::ftStart}, {"__end__", F::ftEnd}},
         {{"Waiting", "Cancelled", A::eaArrow}}},
        {"plantuml/mindmap.puml",
         K::dkMindMap,
         16,
         15,
         {{"mind_1", F::ftEllipse}, {"mind_9", F::ftProcess}},
         {{"mind_8", "mind_9", A::eaNone}}},
        {"plantuml/archimate.puml",
         K::dkFlowChart,
         3,
         3,
         {{"customer", F::ftProcess}},
         {{"customer", "shop", A::eaNone}, {"shop", "db", A::eaFillRhombus}}},
        {"plantuml/structure.puml",
         K::dkFlowChart,
         7,
         5,
         {{"web", F::ftPredefined}, {"orders", F::ftDatabase}},
         {{"Dog", "Pet", A::eaArrow}, {"web", "orders", A::eaArrow}}},
        {"plantuml/c4.puml",
         K::dkFlowChart,
         4,
         3,
         {{"customer", F::ftEllipse}, {"core", F::ftDatabase}},
         {{"customer", "bank", A::eaArrow}}},
        {"plantuml/timing.puml",
         K::dkFlowChart,
         15,
         11,
         {{"timing_1", F::ftProcess}},
         {{"timing_4", "timing_5", A::eaArrow}}},
        {"plantuml/network.puml",
         K::dkFlowChart,
         8,
         7,
         {{"network_1", F::ftPredefined}, {"web01", F::ftProcess}},
         {{"network_2", "web01", A::eaNone}}},
        {"plantuml/chronology.puml",
         K::dkFlowChart,
         3,
         2,
         {{"chronology_1", F::ftPredefined}},
         {{"chronology_2", "chronology_3", A::eaArrow}}},
        {"plantuml/data.puml",
         K::dkMindMap,
         18,
         17,
         {{"data_root", F::ftEllipse}},
         {{"data_root", "data_4", A::eaNone}}},
        {"plantuml/salt.puml",
         K::dkFlowChart,
         21,
         20,
         {{"salt_5", F::ftManualInput}},
         {{"salt_4", "salt_5", A::eaNone}}},
        {"plantuml/grammar.puml",
         K::dkFlowChart,
         5,
         5,
         {{"grammar_1", F::ftPredefined}},
         {{"grammar_3", "grammar_1", A::eaArrow}}},
        {"plantuml/files.puml",
         K::dkMindMap,
         9,
         8,
         {{"files_2", F::ftPredefined}, {"files_3", F::ftDocument}},
         {{"files_root", "files_1", A::eaNone}}},
        {"plantuml/ditaa.puml",
         K::dkFlowChart,
         5,
         3,
         {{"ditaa_1", F::ftData},
          {"ditaa_2", F::ftDecision},
          {"ditaa_3", F::ftDatabase},
          {"ditaa_4", F::ftDocument}},
         {{"ditaa_5", "ditaa_4", A::eaArrow}}},
        {"plantuml/chen.puml",
         K::dkFlowChart,
         6,
         5,
         {{"Movie", F::ftDatabase}, {"Rented_to", F::ftDecision}},
         {{"Rented_to", "Movie", A::eaNone}}},
        {"plantuml/gantt.puml",
         K::dkFlowChart,
         14,
         14,
         {{"puml_gantt_project", F::ftTerminator},
          {"puml_gantt_section_1", F::ftPredefined},
          {"puml_gantt_task_1", F::ftProcess}},
         {{"puml_gantt_task_4", "puml_gantt_task_3", A::eaArrow},
          {"puml_gantt_section_2", "puml_gantt_task_3", A::eaNone}}},
    };
    for (const auto& e : examples) CheckExample(e);
}
