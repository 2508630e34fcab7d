// The full importer on Mermaid flowcharts: what it keeps that the core model drops (containers, styles,
// titles, every link form, Mermaid 11 shapes, clean captions) and what it refuses.
#include <gtest/gtest.h>

#include <string>

#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_json.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

std::unique_ptr<TORXDiagramModel> Import(std::string_view text) {
    return QVLImportDiagram(text, TQVLDiagramFormat::dgMermaid);
}

const TQVLDiagNode& NodeOf(const TORXDiagramModel& model, std::string_view id) {
    const int index = model.NodeIndexOf(id);
    if (index < 0) throw std::runtime_error("no node " + std::string(id));
    return model.Nodes()[static_cast<std::size_t>(index)];
}

bool HasCode(const TORXDiagramModel& model, std::string_view code) {
    for (const auto& d : model.Diagnostics())
        if (d.Code == code) return true;
    return false;
}

TEST(DiagramImport, RefusesProseAndKeepsTheCoreModelOnRequest) {
    const auto prose = Import("hello world\n");
    EXPECT_TRUE(prose->Nodes().empty());
    ASSERT_EQ(prose->Diagnostics().size(), 1u);
    EXPECT_EQ(prose->Diagnostics()[0].Code, "DIAGRAM_NOT_RECOGNIZED");
    EXPECT_EQ(prose->Diagnostics()[0].Severity, TQVLDiagramDiagnosticSeverity::dsError);
    EXPECT_EQ(QVLImportDiagram("hello world\n", TQVLDiagramFormat::dgPlantUML)->Diagnostics()[0].Code,
              "DIAGRAM_NOT_RECOGNIZED");

    const std::string text = "graph LR\nsubgraph S\nA-->B\nend\n";
    const auto core = QVLImportDiagram(text, TQVLDiagramFormat::dgAuto, {.Core = true});
    EXPECT_EQ(QVLDiagramModelToJson(*core, TQVLDiagramFormat::dgMermaid).dump(),
              QVLDiagramModelToJson(*QVLParseDiagram(text, TQVLDiagramFormat::dgMermaid),
                                    TQVLDiagramFormat::dgMermaid)
                  .dump());
    EXPECT_TRUE(core->Groups().empty());
    // Directives and comments before the header are not statements.
    EXPECT_FALSE(Import("%%{init: {'theme': 'dark'}}%%\n%% c\nflowchart TD\nA\n")
                     ->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsWarning));
}

TEST(FlowchartImport, NestedSubgraphsWithDirectionAndLinksToThem) {
    const auto model = Import(
        "flowchart TB\n"
        "  c1-->a2\n"
        "  subgraph one [First one]\n"
        "    direction LR\n"
        "    a1-->a2\n"
        "    subgraph inner\n"
        "      x1\n"
        "    end\n"
        "  end\n"
        "  subgraph \"Two words\"\n"
        "    b1\n"
        "  end\n"
        "  one --> b1\n"
        "  c1 --> inner\n");
    ASSERT_EQ(model->Groups().size(), 3u);
    const auto& one = model->Groups()[0];
    EXPECT_EQ(one.ID, "one");
    EXPECT_EQ(one.Text, "First one");
    EXPECT_EQ(one.Parent, "");
    EXPECT_EQ(one.Direction, TQVLFlowDirection::fdLeftRight);
    EXPECT_EQ(one.Members, (std::vector<std::string>{"a1", "a2"}));
    EXPECT_EQ(model->Groups()[1].ID, "inner");
    EXPECT_EQ(model->Groups()[1].Parent, "one");
    EXPECT_EQ(model->Groups()[1].Members, (std::vector<std::string>{"x1"}));
    EXPECT_EQ(model->Groups()[2].Text, "Two words");
    EXPECT_NE(model->Groups()[2].ID.find("subGraph"), std::string::npos);
    EXPECT_EQ(NodeOf(*model, "x1").Group, "inner");
    EXPECT_EQ(NodeOf(*model, "c1").Group, "");
    // A link to a subgraph ends at the subgraph: no node of that name appears.
    EXPECT_EQ(model->NodeIndexOf("one"), -1);
    EXPECT_EQ(model->NodeIndexOf("inner"), -1);
    EXPECT_EQ(model->Edges().size(), 4u);
    EXPECT_EQ(model->Edges()[3].ToID, "inner");
    EXPECT_FALSE(model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsWarning));
}

TEST(FlowchartImport, StylesFromClassDefClassTripleColonStyleAndLinkStyle) {
    const auto model = Import(
        "flowchart LR\n"
        "  classDef hot fill:#f96,stroke:#333,stroke-width:4px,color:white,font-weight:bold\n"
        "  classDef default fill:#eee\n"
        "  A:::hot --> B & C\n"
        "  class C hot\n"
        "  style B fill:rgb(0,128,0),stroke-dasharray: 5 5,rx:4\n"
        "  linkStyle 1 stroke:red,stroke-width:2px\n");
    const auto& a = NodeOf(*model, "A");
    ASSERT_TRUE(a.Style.Fill);
    EXPECT_EQ(*a.Style.Fill, 0xFFFF9966u);
    EXPECT_EQ(*a.Style.Stroke, 0xFF333333u);
    EXPECT_EQ(*a.Style.StrokeWidth, 4.0);
    EXPECT_EQ(*a.Style.TextColor, 0xFFFFFFFFu);
    EXPECT_TRUE(*a.Style.Bold);
    EXPECT_EQ(*NodeOf(*model, "C").Style.Fill, 0xFFFF9966u);
    const auto& b = NodeOf(*model, "B");
    EXPECT_EQ(*b.Style.Fill, 0xFF008000u);
    EXPECT_TRUE(*b.Style.Dash);
    EXPECT_FALSE(model->Edges()[0].Style.Stroke);
    EXPECT_EQ(*model->Edges()[1].Style.Stroke, 0xFFFF0000u);
    // The unmapped property is named.
    bool named = false;
    for (const auto& d : model->Diagnostics())
        named |= d.Code == "UNMAPPED_STYLE_PROPERTY" && d.MessageText.find("rx:4") != std::string::npos &&
                 d.Line == 6;
    EXPECT_TRUE(named);
    const TJSON json = QVLDiagramModelToJsonFull(*model, TQVLDiagramFormat::dgMermaid);
    EXPECT_EQ(
        json["nodes"][0]["style"].dump(),
        R"({"fill":"#FF9966FF","stroke":"#333333FF","textColor":"#FFFFFFFF","strokeWidth":4.0,"bold":true})");
}

TEST(FlowchartImport, EveryLinkForm) {
    const auto model = Import(
        "graph TD\n"
        "A o--o B\n"
        "B <--> C\n"
        "C x--x D\n"
        "D ==> E\n"
        "E ~~~ F\n"
        "F-- some text ---G\n"
        "G e1@--> H\n"
        "H -.-> I\n"
        "I ------> J\n"
        "J -. dotted text .-> K\n"
        "K == thick text ==> L\n"
        "L -->|pipe| M\n"
        "M:::x & N --> O\n"
        "e1@{ animate: true }\n");
    const auto& e = model->Edges();
    ASSERT_EQ(e.size(), 14u);
    EXPECT_EQ(e[0].FromArrow, TQVLDiagEdgeArrow::eaCircle);
    EXPECT_EQ(e[0].Arrow, TQVLDiagEdgeArrow::eaCircle);
    EXPECT_EQ(e[1].FromArrow, TQVLDiagEdgeArrow::eaArrow);
    EXPECT_EQ(e[1].Arrow, TQVLDiagEdgeArrow::eaArrow);
    EXPECT_EQ(e[2].FromArrow, TQVLDiagEdgeArrow::eaCross);
    EXPECT_TRUE(e[3].Thick);
    EXPECT_EQ(e[4].Style.Stroke, TAlphaColor{0});
    EXPECT_EQ(e[4].Arrow, TQVLDiagEdgeArrow::eaNone);
    EXPECT_EQ(e[5].Text, "some text");
    EXPECT_EQ(e[5].Arrow, TQVLDiagEdgeArrow::eaNone);
    EXPECT_EQ(e[5].ToID, "G");
    EXPECT_EQ(e[6].ID, "e1");
    EXPECT_EQ(e[6].ToID, "H");
    EXPECT_TRUE(e[7].Dotted);
    EXPECT_EQ(e[8].ToID, "J");
    EXPECT_TRUE(e[9].Dotted);
    EXPECT_EQ(e[9].Text, "dotted text");
    EXPECT_TRUE(e[10].Thick);
    EXPECT_EQ(e[10].Text, "thick text");
    EXPECT_EQ(e[11].Text, "pipe");
    EXPECT_EQ(e[12].FromID, "M");
    EXPECT_EQ(e[13].FromID, "N");
    EXPECT_EQ(model->Nodes().size(), 15u);  // the link data after "e1@-->" makes no node
    ASSERT_EQ(model->Diagnostics().size(), 1u);
    EXPECT_EQ(model->Diagnostics()[0].Code, "MERMAID_LINK_DATA_IGNORED");
    EXPECT_EQ(model->Diagnostics()[0].Line, 15);
}

TEST(FlowchartImport, ShapesCaptionsAndTitles) {
    const auto model = Import(
        "---\n"
        "title: \"Order flow\"\n"
        "---\n"
        "flowchart TD\n"
        "  A((Start)) --> B(((Done)))\n"
        "  C@{ shape: cyl, label: \"Orders, all\" }\n"
        "  D@{ shape: sm-circ }\n"
        "  E[\"`**Bold** and\n"
        "  *new* line`\"] --> F[\"<b>x</b><br/>y &amp; z\"]\n"
        "  G@{ shape: blob }\n"
        "  H[\"a ] bracket\"]\n"
        "  accTitle: hidden\n"
        "  accDescr {\n"
        "    multi line\n"
        "  }\n"
        "  click A callback\n");
    EXPECT_EQ(model->Title(), "Order flow");
    EXPECT_EQ(NodeOf(*model, "A").Shape, TQVLFlowType::ftStart);
    EXPECT_EQ(NodeOf(*model, "A").Text, "Start");
    EXPECT_EQ(NodeOf(*model, "B").Shape, TQVLFlowType::ftEnd);
    EXPECT_EQ(NodeOf(*model, "C").Shape, TQVLFlowType::ftDatabase);
    EXPECT_EQ(NodeOf(*model, "C").Text, "Orders, all");
    EXPECT_EQ(NodeOf(*model, "D").Text, "");
    EXPECT_EQ(NodeOf(*model, "E").Text, "Bold and\r\nnew line");
    EXPECT_EQ(NodeOf(*model, "F").Text, "x\r\ny & z");
    EXPECT_EQ(NodeOf(*model, "G").Shape, TQVLFlowType::ftProcess);
    EXPECT_TRUE(HasCode(*model, "MERMAID_UNKNOWN_SHAPE"));
    EXPECT_EQ(NodeOf(*model, "H").Text, "a ] bracket");
    EXPECT_EQ(model->Nodes().size(), 8u);  // accTitle, accDescr and click add nothing
    EXPECT_EQ(Import("flowchart LR\ntitle Plain title\nA\n")->Title(), "Plain title");
}

TEST(FlowchartImport, EveryStatementNotDrawnIsReported) {
    const auto model = Import("flowchart TD\nA --> B\n+++ what\nend\nA --> \nsubgraph S\nC\n");
    EXPECT_TRUE(HasCode(*model, "MERMAID_UNRECOGNIZED_LINE"));
    EXPECT_TRUE(HasCode(*model, "MERMAID_UNMATCHED_END"));
    EXPECT_TRUE(HasCode(*model, "MERMAID_LINK_WITHOUT_TARGET"));
    EXPECT_TRUE(HasCode(*model, "MERMAID_UNCLOSED_SUBGRAPH"));
    for (const auto& d : model->Diagnostics()) {
        if (d.Code == "MERMAID_UNRECOGNIZED_LINE") {
            EXPECT_EQ(d.Line, 3);
        }
    }
}

TEST(FlowchartImport, BlockAndArchitectureContainers) {
    const auto block = Import(
        "block-beta\n"
        "  columns 3\n"
        "  front[\"Frontend\"] space:2 back[\"Backend\"]\n"
        "  block:storage:2\n"
        "    db[(\"Database\")] cache\n"
        "  end\n"
        "  front --> back\n");
    ASSERT_EQ(block->Groups().size(), 1u);
    EXPECT_EQ(block->Groups()[0].ID, "storage");
    EXPECT_EQ(block->Groups()[0].Members, (std::vector<std::string>{"db", "cache"}));
    EXPECT_EQ(block->Nodes().size(), 4u);
    EXPECT_EQ(block->Edges().size(), 1u);
    EXPECT_FALSE(block->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsWarning));

    const auto arch = Import(
        "architecture-beta\n"
        "  group api(cloud)[API]\n"
        "  group inner[Inner] in api\n"
        "  service db(database)[Database] in inner\n"
        "  service web(internet)[Gateway]\n"
        "  junction hub in api\n"
        "  web:R --> L:db\n"
        "  web:B -- T:hub{group}\n");
    ASSERT_EQ(arch->Groups().size(), 2u);
    EXPECT_EQ(arch->Groups()[1].Parent, "api");
    EXPECT_EQ(arch->Groups()[1].Members, (std::vector<std::string>{"db"}));
    EXPECT_EQ(arch->Groups()[0].Members, (std::vector<std::string>{"hub"}));
    EXPECT_EQ(NodeOf(*arch, "db").Shape, TQVLFlowType::ftDatabase);
    EXPECT_EQ(NodeOf(*arch, "db").Group, "inner");
    ASSERT_EQ(arch->Edges().size(), 2u);
    EXPECT_EQ(arch->Edges()[0].Hint, "right");
    EXPECT_EQ(arch->Edges()[0].Arrow, TQVLDiagEdgeArrow::eaArrow);
    EXPECT_EQ(arch->Edges()[1].ToID, "api");
}

TEST(ImportText, ColoursPropertiesAndCaptions) {
    TAlphaColor c = 0;
    EXPECT_TRUE(QVLReadColor("#f96", c));
    EXPECT_EQ(c, 0xFFFF9966u);
    EXPECT_TRUE(QVLReadColor("rgba(255, 0, 0, 0.5)", c));
    EXPECT_EQ(c, 0x80FF0000u);
    EXPECT_TRUE(QVLReadColor("LightBlue", c));
    EXPECT_FALSE(QVLReadColor("#12", c));
    TQVLDiagStyle style;
    const auto unmapped = QVLApplyStyleProperties("fill:none;font-style:italic;opacity:0.5", style);
    EXPECT_EQ(*style.Fill, 0u);
    EXPECT_TRUE(*style.Italic);
    EXPECT_EQ(unmapped, (std::vector<std::string>{"opacity:0.5"}));
    EXPECT_EQ(QVLPlainCaption("\"<<interface>> a < b\""), "<<interface>> a < b");
    EXPECT_EQ(QVLPlainCaption("**Bold** //it// see http://x.org", true), "Bold it see http://x.org");
    EXPECT_EQ(QVLPlainCaption("fa:fa-car Car"), "Car");
    EXPECT_EQ(QVLPlainCaption("A #quot;x#quot; &#9829; #35;1"), "A \"x\" \u2665 #1");
    EXPECT_EQ(QVLPlainCaption("`snake_case_name`"), "snake_case_name");
}

}  // namespace
}  // namespace Orvex
