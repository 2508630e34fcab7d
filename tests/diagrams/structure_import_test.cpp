// The full importer on structure diagrams: PlantUML component, deployment, use-case, C4 and ArchiMate
// texts, and Mermaid's C4 diagrams.
#include <gtest/gtest.h>

#include <string>

#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_json.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

std::unique_ptr<TORXDiagramModel> Puml(const std::string& body) {
    return QVLImportDiagram("@startuml\n" + body + "@enduml\n", TQVLDiagramFormat::dgPlantUML);
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

TEST(StructureImport, PackagesNestAndAliasesGiveOneElement) {
    const auto model = Puml(
        "title Shop\n"
        "package \"Front end\" as FE {\n"
        "  component \"Web shop\" as Web #lightblue\n"
        "  node Server {\n"
        "    [Api gateway] as Api\n"
        "  }\n"
        "}\n"
        "database Orders as \"Order store\"\n"
        "Web --> Api\n"
        "Api ..> Orders : reads\n"
        "[Api gateway] --> Web\n");
    EXPECT_EQ(model->Title(), "Shop");
    ASSERT_EQ(model->Groups().size(), 2u);
    EXPECT_EQ(model->Groups()[0].ID, "FE");
    EXPECT_EQ(model->Groups()[0].Text, "Front end");
    EXPECT_EQ(model->Groups()[0].Members, (std::vector<std::string>{"Web"}));
    EXPECT_EQ(model->Groups()[1].Parent, "FE");
    EXPECT_EQ(model->Groups()[1].Members, (std::vector<std::string>{"Api"}));
    // Elements are found by id: "[Api gateway]" after "[Api gateway] as Api" is a second element.
    ASSERT_EQ(model->Nodes().size(), 4u);
    EXPECT_EQ(model->Nodes()[3].ID, "Api gateway");
    EXPECT_EQ(model->Nodes()[3].Group, "");
    EXPECT_EQ(NodeOf(*model, "Web").Text, "Web shop");
    EXPECT_EQ(NodeOf(*model, "Web").Role, "component");
    EXPECT_EQ(*NodeOf(*model, "Web").Style.Fill, 0xFFADD8E6u);
    EXPECT_EQ(NodeOf(*model, "Orders").Text, "Order store");
    EXPECT_EQ(NodeOf(*model, "Orders").Shape, TQVLFlowType::ftDatabase);
    ASSERT_EQ(model->Edges().size(), 3u);
    EXPECT_EQ(model->Edges()[0].FromID, "Web");
    EXPECT_TRUE(model->Edges()[1].Dotted);
    EXPECT_EQ(model->Edges()[1].Text, "reads");
    EXPECT_FALSE(model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsWarning));
    const TJSON json = QVLDiagramModelToJsonFull(*model, TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(json["groups"][1].dump(),
              R"({"id":"Server","text":"Server","parent":"FE","direction":"","members":["Api"],"style":{}})");
    EXPECT_EQ(json["nodes"][0]["group"], "FE");
}

TEST(StructureImport, LinkFormsHintsAndEndTexts) {
    const auto model = Puml(
        "actor User\n"
        "User -right-> (Log in)\n"
        "(Log in) .up.> (Check) : <<include>>\n"
        "A \"1\" *-- \"many\" B\n"
        "A -[hidden]- B\n"
        "A -[#red,bold]-> C\n"
        "A o--o C\n"
        "A ==> C\n");
    const auto& e = model->Edges();
    ASSERT_EQ(e.size(), 7u);
    EXPECT_EQ(NodeOf(*model, "User").Role, "actor");
    EXPECT_EQ(NodeOf(*model, "Log in").Role, "usecase");
    EXPECT_EQ(NodeOf(*model, "Log in").Shape, TQVLFlowType::ftEllipse);
    EXPECT_EQ(e[0].Hint, "right");
    EXPECT_EQ(e[1].Hint, "up");
    EXPECT_TRUE(e[1].Dotted);
    EXPECT_EQ(e[1].Text, "<<include>>");
    EXPECT_EQ(e[2].FromText, "1");
    EXPECT_EQ(e[2].ToText, "many");
    EXPECT_EQ(e[2].FromArrow, TQVLDiagEdgeArrow::eaFillRhombus);
    EXPECT_EQ(e[3].Style.Stroke, TAlphaColor{0});
    EXPECT_EQ(*e[4].Style.Stroke, 0xFFFF0000u);
    EXPECT_TRUE(e[4].Thick);
    EXPECT_EQ(e[5].FromArrow, TQVLDiagEdgeArrow::eaRhombus);
    EXPECT_EQ(e[5].Arrow, TQVLDiagEdgeArrow::eaRhombus);
    EXPECT_TRUE(e[6].Thick);
}

TEST(StructureImport, SkinparamStyleBlocksAndNotes) {
    const auto model = Puml(
        "skinparam componentBackgroundColor #FFEEDD\n"
        "skinparam node {\n"
        "  BorderColor red\n"
        "}\n"
        "skinparam shadowing false\n"
        "skinparam ArrowColor blue\n"
        "<style>\n"
        "componentDiagram {\n"
        "  rectangle {\n"
        "    LineThickness 3\n"
        "    FontStyle bold\n"
        "  }\n"
        "}\n"
        "</style>\n"
        "component C\n"
        "node N\n"
        "rectangle R #back:green;line:navy\n"
        "note right of C : explains C\n"
        "C --> N\n");
    EXPECT_EQ(*NodeOf(*model, "C").Style.Fill, 0xFFFFEEDDu);
    EXPECT_EQ(*NodeOf(*model, "N").Style.Stroke, 0xFFFF0000u);
    const auto& r = NodeOf(*model, "R");
    EXPECT_EQ(*r.Style.StrokeWidth, 3.0);
    EXPECT_TRUE(*r.Style.Bold);
    EXPECT_EQ(*r.Style.Fill, 0xFF008000u);
    EXPECT_EQ(*r.Style.Stroke, 0xFF000080u);
    EXPECT_EQ(*model->Edges().back().Style.Stroke, 0xFF0000FFu);
    bool namedShadowing = false;
    for (const auto& d : model->Diagnostics())
        namedShadowing |=
            d.Code == "UNMAPPED_STYLE_PROPERTY" && d.MessageText.find("shadowing") != std::string::npos;
    EXPECT_TRUE(namedShadowing);
    // The note is its own element, joined to C by a dashed link without heads.
    const TQVLDiagNode* note = nullptr;
    for (const auto& n : model->Nodes())
        if (n.Role == "note") note = &n;
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->Text, "explains C");
    const auto& link = model->Edges()[0];
    EXPECT_EQ(link.FromID, "C");
    EXPECT_EQ(link.ToID, note->ID);
    EXPECT_TRUE(link.Dotted);
    EXPECT_EQ(link.Arrow, TQVLDiagEdgeArrow::eaNone);
}

TEST(StructureImport, C4BoundariesInBothFormats) {
    const std::string body =
        "Person(user, \"Customer\", \"Buys things\")\n"
        "System_Boundary(shop, \"Shop\") {\n"
        "  Container(web, \"Web app\", \"React\", \"The front\")\n"
        "  ContainerDb(db, \"Database\", \"Postgres\")\n"
        "}\n"
        "Rel(user, web, \"Uses\", \"HTTPS\")\n"
        "Rel_R(web, db, \"Reads\")\n"
        "SHOW_LEGEND()\n";
    for (const auto& model :
         {Puml("!include <C4/C4_Container>\n" + body),
          QVLImportDiagram("C4Container\ntitle Shop system\n" + body, TQVLDiagramFormat::dgMermaid)}) {
        ASSERT_EQ(model->Groups().size(), 1u);
        EXPECT_EQ(model->Groups()[0].ID, "shop");
        EXPECT_EQ(model->Groups()[0].Members, (std::vector<std::string>{"web", "db"}));
        EXPECT_EQ(NodeOf(*model, "web").Text, "Web app\r\n[React]\r\nThe front");
        EXPECT_EQ(NodeOf(*model, "db").Shape, TQVLFlowType::ftDatabase);
        EXPECT_EQ(NodeOf(*model, "user").Role, "person");
        ASSERT_EQ(model->Edges().size(), 2u);
        EXPECT_EQ(model->Edges()[0].Text, "Uses\r\n[HTTPS]");
        EXPECT_EQ(model->Edges()[1].Hint, "right");
        EXPECT_FALSE(model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsWarning));
    }
}

TEST(StructureImport, AnonymousContainersAndImplicitActors) {
    const auto model = Puml(
        "cloud {\n"
        "  [Example 1]\n"
        "}\n"
        "User -> (Start)\n");
    ASSERT_EQ(model->Groups().size(), 1u);
    EXPECT_EQ(model->Groups()[0].Text, "");
    EXPECT_EQ(model->Groups()[0].Members, (std::vector<std::string>{"Example 1"}));
    EXPECT_EQ(NodeOf(*model, "User").Role, "actor");
    EXPECT_EQ(NodeOf(*model, "Start").Role, "usecase");
    EXPECT_FALSE(model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsWarning));
}

TEST(StructureImport, ArchimateElementsTakeTheirLayerColour) {
    const auto model = Puml(
        "!include <archimate/Archimate>\n"
        "archimate #Business \"Customer\" as cust <<business-actor>>\n"
        "archimate #Application \"CRM\" as crm\n"
        "Grouping(front, \"Front office\") {\n"
        "  rectangle Desk\n"
        "}\n"
        "Rel_Serving_Up(crm, cust, \"serves\")\n");
    EXPECT_EQ(NodeOf(*model, "cust").Text, "Customer");
    EXPECT_EQ(*NodeOf(*model, "cust").Style.Fill, 0xFFFFFFB5u);
    EXPECT_EQ(*NodeOf(*model, "crm").Style.Fill, 0xFFB5FFFFu);
    ASSERT_EQ(model->Groups().size(), 1u);
    EXPECT_EQ(model->Groups()[0].Members, (std::vector<std::string>{"Desk"}));
    ASSERT_EQ(model->Edges().size(), 1u);
    EXPECT_EQ(model->Edges()[0].Arrow, TQVLDiagEdgeArrow::eaArrow);
    EXPECT_EQ(model->Edges()[0].Hint, "up");
    EXPECT_EQ(model->Edges()[0].Text, "serves");
}

// Comments and directives are no statements: nothing is drawn for them and nothing is reported, and the
// line numbers of what follows stay those of the text.
TEST(StructureImport, CommentsAndDirectivesAreSkippedInBothFormats) {
    const auto puml = Puml(
        "' a line comment\n"
        "/' a block comment\n"
        "   [Ghost] --> [Phantom]\n"
        "'/ [Web] --> [Api]\n"
        "/' inline '/ [Api] --> [Store]\n"
        "this is : not & a statement ??\n");
    ASSERT_EQ(puml->Edges().size(), 2u);
    EXPECT_EQ(puml->Edges()[0].FromID, "Web");
    EXPECT_EQ(puml->Edges()[1].ToID, "Store");
    EXPECT_LT(puml->NodeIndexOf("Ghost"), 0);
    ASSERT_EQ(puml->Diagnostics().size(), 1u);
    EXPECT_EQ(puml->Diagnostics()[0].Line, 7);  // after "@startuml"

    const auto mermaid = QVLImportDiagram(
        "---\ntitle: Shop\n---\n%%{init: {'theme': 'dark'}}%%\nC4Context\n%% who uses it\n"
        "Person(user, \"Customer\")\nSystem(shop, \"Shop\")\nRel(user, shop, \"Uses\")\n",
        TQVLDiagramFormat::dgMermaid);
    EXPECT_EQ(mermaid->Title(), "Shop");
    EXPECT_EQ(mermaid->Nodes().size(), 2u);
    EXPECT_EQ(mermaid->Edges().size(), 1u);
    EXPECT_TRUE(mermaid->Diagnostics().empty());
}

TEST(StructureImport, LeavesClassDiagramsAndReportsWhatItCannotRead) {
    const auto classes = Puml("class A\nA <|-- B\n");
    EXPECT_TRUE(classes->Groups().empty());
    const auto odd = Puml("component C\nthis is : not & a statement ??\n}\n");
    EXPECT_TRUE(HasCode(*odd, "UNRECOGNIZED_LINE"));
    EXPECT_TRUE(HasCode(*odd, "UNMATCHED_BRACE"));
}

TEST(StructureImport, BallsAndSocketsMarkTheProvidingAndRequiringEnds) {
    const auto model = Puml(
        "[Web] -(0- [Api]\n"
        "[Api] -0)- [Store]\n"
        "[Cache] )-- [Store]\n"
        "[Store] --( [Disk]\n"
        "() \"Public port\" as Port\n"
        "Port - [Api]\n");
    EXPECT_TRUE(model->Diagnostics().empty());
    using A = TQVLDiagEdgeArrow;
    const std::vector<std::pair<A, A>> marks{{A::eaNone, A::eaLollipop},
                                             {A::eaLollipop, A::eaNone},
                                             {A::eaLollipop, A::eaNone},
                                             {A::eaNone, A::eaLollipop},
                                             {A::eaNone, A::eaNone}};
    ASSERT_EQ(model->Edges().size(), marks.size());
    for (std::size_t i = 0; i < marks.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(model->Edges()[i].FromArrow, marks[i].first);
        EXPECT_EQ(model->Edges()[i].Arrow, marks[i].second);
    }
    const auto& port = NodeOf(*model, "Port");
    EXPECT_EQ(port.Text, "Public port");
    EXPECT_EQ(port.Role, "interface");
}

}  // namespace
}  // namespace Orvex
