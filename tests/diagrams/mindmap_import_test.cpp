// PlantUML mind maps in the full importer: the tree from indentation or marker length, sides, colours,
// multi-line items, and a diagnostic for every line the reader does not draw.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "orvex/diagrams/diagram_import.h"

namespace Orvex {
namespace {

using TEdgeList = std::vector<std::pair<std::string, std::string>>;

TEdgeList TextEdges(const TORXDiagramModel& model) {
    TEdgeList out;
    for (const auto& e : model.Edges())
        out.emplace_back(model.Nodes()[static_cast<std::size_t>(model.NodeIndexOf(e.FromID))].Text,
                         model.Nodes()[static_cast<std::size_t>(model.NodeIndexOf(e.ToID))].Text);
    return out;
}

std::vector<std::string> Codes(const TORXDiagramModel& model) {
    std::vector<std::string> out;
    for (const auto& d : model.Diagnostics()) out.push_back(d.Code + "@" + std::to_string(d.Line));
    return out;
}

TEST(MindMapImport, IndentationAndMarkerLengthGiveTheSameTree) {
    const TEdgeList expected{{"root", "a"}, {"a", "b"}, {"a", "c"}, {"root", "d"}, {"d", "e"}};
    const struct {
        const char* Name;
        const char* Text;
    } cases[] = {
        {"tabs", "@startmindmap\n* root\n\t* a\n\t\t* b\n\t\t* c\n\t* d\n\t\t* e\n@endmindmap\n"},
        {"spaces", "@startmindmap\n* root\n  * a\n      * b\n      * c\n  * d\n    * e\n@endmindmap\n"},
        {"markers", "@startmindmap\n* root\n** a\n*** b\n*** c\n** d\n*** e\n@endmindmap\n"},
        // Indentation that only helps the reader does not change what the markers say.
        {"indented markers",
         "@startmindmap\n* root\n  ** a\n    *** b\n*** c\n  ** d\n    *** e\n@endmindmap\n"},
        {"arithmetic", "@startwbs\n+ root\n++ a\n+++ b\n+++ c\n-- d\n--- e\n@endwbs\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        const auto model = QVLImportDiagram(c.Text, TQVLDiagramFormat::dgPlantUML);
        EXPECT_EQ(model->Kind(), TQVLDiagramKind::dkMindMap);
        EXPECT_EQ(TextEdges(*model), expected);
        EXPECT_TRUE(model->Diagnostics().empty()) << Codes(*model)[0];
        ASSERT_EQ(model->Nodes().size(), 6u);
        EXPECT_EQ(model->Nodes()[0].Shape, TQVLFlowType::ftEllipse);
        EXPECT_EQ(model->Nodes()[1].Shape, TQVLFlowType::ftProcess);
    }
}

TEST(MindMapImport, SidesColoursAndCaptions) {
    const auto model = QVLImportDiagram(
        "@startmindmap\n"
        "title Plan\n"
        "<style>\nmindmapDiagram {\n  :depth(1) {\n    BackgroundColor #00FF00\n  }\n}\n</style>\n"
        "* <&star> Root <<main>>\n"
        "\t*[#FF0000] Right\n"
        "\t\t* <b>Deep</b>\n"
        "left side\n"
        "\t* Left\n"
        "\t*:Two\n"
        "lines;\n"
        "@endmindmap\n",
        TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(model->Title(), "Plan");
    const auto& nodes = model->Nodes();
    ASSERT_EQ(nodes.size(), 5u);
    EXPECT_EQ(nodes[0].Text, "Root");
    EXPECT_EQ(nodes[2].Text, "Deep");
    EXPECT_EQ(nodes[4].Text, "Two\r\nlines");
    // An item's own colour wins over its depth's; depth 1 is the root's children.
    EXPECT_TRUE(nodes[1].HasBackColor);
    EXPECT_EQ(nodes[1].BackColor, 0xFFFF0000u);
    EXPECT_EQ(nodes[3].BackColor, 0xFF00FF00u);
    EXPECT_FALSE(nodes[2].HasBackColor);
    EXPECT_EQ(nodes[1].Side, 0);
    EXPECT_EQ(nodes[3].Side, -1);
    EXPECT_EQ(nodes[4].Side, -1);
    EXPECT_EQ(TextEdges(*model).back(), (std::pair<std::string, std::string>{"Root", "Two\r\nlines"}));
}

TEST(MindMapImport, WbsArrowsChooseTheSide) {
    const auto model = QVLImportDiagram("@startwbs\n* Project\n**< Left\n**> Right\n@endwbs\n",
                                        TQVLDiagramFormat::dgPlantUML);
    ASSERT_EQ(model->Nodes().size(), 3u);
    EXPECT_EQ(model->Nodes()[1].Side, -1);
    EXPECT_EQ(model->Nodes()[2].Side, 1);
}

TEST(MindMapImport, EveryLineNotDrawnIsNamed) {
    const auto model = QVLImportDiagram(
        "@startmindmap\n"
        "* root\n"
        "skinparam backgroundColor white\n"
        "this is no item\n"
        "*[#nocolour] odd\n"
        "**\n"
        "** open:\n"
        "**:never closed\n"
        "@endmindmap\n",
        TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(Codes(*model), (std::vector<std::string>{"UNSUPPORTED_STATEMENT@3",
                                                       "MINDMAP_UNRECOGNIZED_LINE@4", "MINDMAP_COLOR@5",
                                                       "MINDMAP_EMPTY_ITEM@6", "MINDMAP_UNCLOSED_ITEM@8"}));
    EXPECT_TRUE(model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsError));
}

TEST(MindMapImport, OtherTextsAreLeftToTheirReaders) {
    EXPECT_NE(QVLImportDiagram("mindmap\n  root\n    child\n", TQVLDiagramFormat::dgMermaid)->Kind(),
              TQVLDiagramKind::dkChart);
    const auto activity =
        QVLImportDiagram("@startuml\nstart\n:work;\nstop\n@enduml\n", TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(activity->Kind(), TQVLDiagramKind::dkFlowChart);
}

}  // namespace
}  // namespace Orvex
