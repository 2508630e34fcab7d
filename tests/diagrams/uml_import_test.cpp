// The full importer on class, object, entity-relation and state diagrams, Mermaid and PlantUML.
#include <gtest/gtest.h>

#include <string>

#include "host/layout/uml_boxes.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_json.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using A = TQVLDiagEdgeArrow;
using Rows = std::vector<std::string>;

std::unique_ptr<TORXDiagramModel> Mermaid(const std::string& text) {
    return QVLImportDiagram(text, TQVLDiagramFormat::dgMermaid);
}

std::unique_ptr<TORXDiagramModel> Puml(const std::string& body) {
    return QVLImportDiagram("@startuml\n" + body + "@enduml\n", TQVLDiagramFormat::dgPlantUML);
}

const TQVLDiagNode& NodeOf(const TORXDiagramModel& model, std::string_view id) {
    const int index = model.NodeIndexOf(id);
    if (index < 0) throw std::runtime_error("no node " + std::string(id));
    return model.Nodes()[static_cast<std::size_t>(index)];
}

const TQVLDiagEdge& EdgeOf(const TORXDiagramModel& model, std::string_view from, std::string_view to) {
    for (const auto& e : model.Edges())
        if (e.FromID == from && e.ToID == to) return e;
    throw std::runtime_error("no edge " + std::string(from) + " -> " + std::string(to));
}

TEST(UmlImport, MermaidClassesKeepCompartmentsGenericsNamespacesAndEnds) {
    const auto model = Mermaid(
        "classDiagram\n"
        "  namespace Shapes {\n"
        "    class Shape~T~ {\n"
        "      <<interface>>\n"
        "      +List~int~ points\n"
        "      +area()* double\n"
        "      +count()$ int\n"
        "    }\n"
        "    class Square\n"
        "  }\n"
        "  Shape <|-- Square\n"
        "  Square \"1\" *-- \"many\" Corner : has\n"
        "  Square ..> Ruler\n"
        "  Square --() Drawable\n"
        "  Corner : +int x\n"
        "  note for Square \"four sides\"\n"
        "  accTitle: Shapes\n"
        "  bogus ??? statement\n");
    const TQVLDiagNode& shape = NodeOf(*model, "Shape");
    EXPECT_EQ(shape.Role, "interface");
    EXPECT_EQ(shape.Text, "\u00ABinterface\u00BB\nShape<T>");
    EXPECT_EQ(shape.Group, "Shapes");
    ASSERT_EQ(shape.Compartments.size(), 2u);
    EXPECT_EQ(shape.Compartments[0], (Rows{"+List<int> points"}));
    EXPECT_EQ(shape.Compartments[1], (Rows{"+area()* double", "+count()$ int"}));
    EXPECT_EQ(NodeOf(*model, "Corner").Compartments[0], (Rows{"+int x"}));
    ASSERT_EQ(model->Groups().size(), 1u);
    EXPECT_EQ(model->Groups()[0].Members, (Rows{"Shape", "Square"}));

    const TQVLDiagEdge& inherit = EdgeOf(*model, "Shape", "Square");
    EXPECT_EQ(inherit.FromArrow, A::eaTriangle);
    EXPECT_EQ(inherit.Arrow, A::eaNone);
    const TQVLDiagEdge& whole = EdgeOf(*model, "Square", "Corner");
    EXPECT_EQ(whole.FromArrow, A::eaFillRhombus);
    EXPECT_EQ(whole.FromText, "1");
    EXPECT_EQ(whole.ToText, "many");
    EXPECT_EQ(whole.Text, "has");
    const TQVLDiagEdge& uses = EdgeOf(*model, "Square", "Ruler");
    EXPECT_TRUE(uses.Dotted);
    EXPECT_EQ(uses.Arrow, A::eaOpenArrow);
    EXPECT_EQ(EdgeOf(*model, "Square", "Drawable").Arrow, A::eaLollipop);

    EXPECT_EQ(NodeOf(*model, "note1").Role, "note");
    EXPECT_TRUE(EdgeOf(*model, "note1", "Square").Dotted);
    ASSERT_EQ(model->Diagnostics().size(), 1u);  // accTitle is consumed, the nonsense is reported
    EXPECT_EQ(model->Diagnostics()[0].Code, "UNSUPPORTED_STATEMENT");
    EXPECT_EQ(model->Diagnostics()[0].Line, 18);
    EXPECT_EQ(model->Diagnostics()[0].SourceText, "bogus ??? statement");
}

TEST(UmlImport, PlantUMLClassesObjectsPackagesAndAliases) {
    const auto model = Puml(
        "package shop {\n"
        "  abstract class \"Stock item\" as Item <<entity>> {\n"
        "    -sku : String\n"
        "    {static} count : int\n"
        "    {abstract} price() : Money\n"
        "    --\n"
        "  }\n"
        "  interface Priced\n"
        "}\n"
        "enum Colour {\n  RED\n  GREEN\n}\n"
        "object basket\n"
        "basket : items = 3\n"
        "Item ..|> Priced\n"
        "Item \"*\" o-left- \"1\" Colour : tinted >\n"
        "note right of basket : full\n");
    const TQVLDiagNode& item = NodeOf(*model, "Item");
    EXPECT_EQ(item.Role, "abstract");
    EXPECT_EQ(item.Text, "\u00ABentity\u00BB\nStock item");
    EXPECT_EQ(item.Group, "shop");
    EXPECT_EQ(item.Compartments[0], (Rows{"-sku : String", "{static} count : int"}));
    EXPECT_EQ(item.Compartments[1], (Rows{"{abstract} price() : Money"}));
    EXPECT_EQ(NodeOf(*model, "Priced").Role, "interface");
    EXPECT_EQ(NodeOf(*model, "Colour").Compartments[0], (Rows{"RED", "GREEN"}));
    EXPECT_EQ(NodeOf(*model, "basket").Role, "object");
    EXPECT_EQ(NodeOf(*model, "basket").Compartments[0], (Rows{"items = 3"}));
    EXPECT_EQ(EdgeOf(*model, "Item", "Priced").Arrow, A::eaTriangle);
    const TQVLDiagEdge& tint = EdgeOf(*model, "Item", "Colour");
    EXPECT_EQ(tint.FromArrow, A::eaRhombus);
    EXPECT_EQ(tint.Text, "tinted");
    EXPECT_EQ(tint.Hint, "left");
    EXPECT_EQ(tint.FromText, "*");
    EXPECT_EQ(model->NodeIndexOf("Stock item"), -1);  // the alias is the one element
    EXPECT_EQ(NodeOf(*model, "note1").Role, "note");
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(UmlImport, ErEntitiesAreTablesWithCrowsFeetForSymbolsAndWords) {
    const auto model = Mermaid(
        "erDiagram\n"
        "  CUSTOMER ||--o{ ORDER : places\n"
        "  ORDER one or more to zero or one INVOICE : \"billed by\"\n"
        "  ORDER }|..|| SHOP : \"sold in\"\n"
        "  CUSTOMER only one optionally to 1+ ADDRESS : has\n"
        "  CUSTOMER {\n"
        "    int id PK\n"
        "    string email UK \"sign-in name\"\n"
        "    int shop_id FK, UK\n"
        "  }\n"
        "  p[Person] {\n  string name\n  }\n");
    const TQVLDiagNode& customer = NodeOf(*model, "CUSTOMER");
    EXPECT_EQ(customer.Role, "entity");
    ASSERT_EQ(customer.Compartments.size(), 1u);
    EXPECT_EQ(customer.Compartments[0],
              (Rows{"int id PK", "string email UK \"sign-in name\"", "int shop_id FK, UK"}));
    EXPECT_EQ(NodeOf(*model, "p").Text, "Person");
    const TQVLDiagEdge& places = EdgeOf(*model, "CUSTOMER", "ORDER");
    EXPECT_EQ(places.FromArrow, A::eaCrowOnlyOne);
    EXPECT_EQ(places.Arrow, A::eaCrowZeroMany);
    EXPECT_EQ(places.Text, "places");
    EXPECT_FALSE(places.Dotted);
    const TQVLDiagEdge& billed = EdgeOf(*model, "ORDER", "INVOICE");
    EXPECT_EQ(billed.FromArrow, A::eaCrowOneMany);
    EXPECT_EQ(billed.Arrow, A::eaCrowZeroOne);
    EXPECT_EQ(billed.Text, "billed by");
    EXPECT_TRUE(EdgeOf(*model, "ORDER", "SHOP").Dotted);
    const TQVLDiagEdge& lives = EdgeOf(*model, "CUSTOMER", "ADDRESS");
    EXPECT_TRUE(lives.Dotted);
    EXPECT_EQ(lives.Arrow, A::eaCrowOneMany);
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(UmlImport, CompositeStatesKeepTheirOwnStartEndAndRegions) {
    const auto model = Mermaid(
        "stateDiagram-v2\n"
        "  [*] --> Busy\n"
        "  state Busy {\n"
        "    [*] --> Left\n"
        "    Left --> [*]\n"
        "    --\n"
        "    [*] --> Right\n"
        "  }\n"
        "  Busy --> pick\n"
        "  state pick <<choice>>\n"
        "  state bar <<fork>>\n"
        "  pick --> [*] : done\n"
        "  Left : working hard\n"
        "  note right of pick : decides\n");
    EXPECT_EQ(model->NodeIndexOf("Busy"), -1);  // a composite is a container, links end at its frame
    EXPECT_EQ(EdgeOf(*model, "[*]start", "Busy").Arrow, A::eaArrow);
    EXPECT_EQ(NodeOf(*model, "Left").Group, "Busy#1");
    EXPECT_EQ(NodeOf(*model, "Right").Group, "Busy#2");
    // The first region's markers were made before the separator, under the composite's name.
    EXPECT_EQ(NodeOf(*model, "Busy_[*]start").Group, "Busy#1");
    EXPECT_EQ(NodeOf(*model, "Busy_[*]end").Role, "end");
    EXPECT_EQ(NodeOf(*model, "Busy#2_[*]start").Group, "Busy#2");
    EXPECT_EQ(NodeOf(*model, "[*]end").Group, "");
    EXPECT_EQ(NodeOf(*model, "pick").Role, "choice");
    EXPECT_EQ(NodeOf(*model, "bar").Role, "fork");
    EXPECT_EQ(NodeOf(*model, "Left").Compartments, (std::vector<Rows>{{"working hard"}}));
    ASSERT_EQ(model->Groups().size(), 3u);
    EXPECT_EQ(model->Groups()[1].Parent, "Busy");
    // Regions are marked as such; their style holds only what the text sets, here nothing.
    EXPECT_FALSE(model->Groups()[0].Region);
    for (std::size_t g = 1; g < 3; ++g) {
        EXPECT_TRUE(model->Groups()[g].Region);
        EXPECT_FALSE(model->Groups()[g].Style.Dash.has_value());
    }
    EXPECT_EQ(EdgeOf(*model, "note1", "pick").Dotted, true);
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(UmlImport, PlantUMLStatesWithHistoryAndNoteBlocks) {
    const auto model = Puml(
        "state Run {\n"
        "  [*] -> Fast\n"
        "  Fast -down-> Slow : brake\n"
        "  Slow --> Run[H]\n"
        "}\n"
        "[*] --> Run\n"
        "note left of Fast\n  two lines\n  of note\nend note\n");
    EXPECT_EQ(NodeOf(*model, "Run[H]").Role, "history");
    EXPECT_EQ(NodeOf(*model, "Run[H]").Group, "Run");
    EXPECT_EQ(NodeOf(*model, "Run_[*]start").Group, "Run");
    EXPECT_EQ(EdgeOf(*model, "Fast", "Slow").Hint, "down");
    EXPECT_EQ(NodeOf(*model, "note1").Text.find("two lines"), 0u);
}

TEST(UmlImport, ParseJsonCarriesRolesCompartmentsAndEndLabels) {
    const auto model = Mermaid("classDiagram\n  A \"1\" --> \"*\" B\n  A : +x\n");
    const std::string json = QVLDiagramModelToJsonFull(*model, TQVLDiagramFormat::dgMermaid).dump();
    EXPECT_NE(json.find("\"role\":\"class\""), std::string::npos);
    EXPECT_NE(json.find("\"compartments\":[[\"+x\"],[]]"), std::string::npos);
    EXPECT_NE(json.find("\"fromText\":\"1\""), std::string::npos);
    EXPECT_NE(json.find("\"toText\":\"*\""), std::string::npos);
}

TEST(UmlImport, MemberMarksBecomeUnderlineAndItalics) {
    EXPECT_TRUE(ReadMemberRow("+count()$ int").Static);
    EXPECT_EQ(ReadMemberRow("+count()$ int").Text, "+count() int");
    EXPECT_TRUE(ReadMemberRow("+area()*").Abstract);
    EXPECT_EQ(ReadMemberRow("{static} {abstract} x").Text, "x");
    EXPECT_TRUE(ReadMemberRow("{classifier} x").Static);
    EXPECT_FALSE(ReadMemberRow("int[] values").Abstract);
}

}  // namespace
}  // namespace Orvex
