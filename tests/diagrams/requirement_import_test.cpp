// The full importer on Mermaid requirement diagrams: boxes with their fields, relations with their kind.
#include <gtest/gtest.h>

#include <string>

#include "orvex/diagrams/diagram_import.h"

namespace Orvex {
namespace {

using A = TQVLDiagEdgeArrow;
using Rows = std::vector<std::string>;

std::unique_ptr<TORXDiagramModel> Mermaid(const std::string& text) {
    return QVLImportDiagram(text, TQVLDiagramFormat::dgMermaid);
}

const TQVLDiagNode& NodeOf(const TORXDiagramModel& model, std::string_view id) {
    const int index = model.NodeIndexOf(id);
    if (index < 0) throw std::runtime_error("no node " + std::string(id));
    return model.Nodes()[static_cast<std::size_t>(index)];
}

bool HasDiagnostic(const TORXDiagramModel& model, std::string_view code, std::int32_t line) {
    for (const auto& d : model.Diagnostics())
        if (d.Code == code && d.Line == line) return true;
    return false;
}

TEST(RequirementImport, BoxesShowTheirKindNameAndFields) {
    const auto model = Mermaid(
        "requirementDiagram\n"
        "  designConstraint weight {\n"
        "    id: \"2.1\"\n"
        "    text: \"At most <b>5 kg</b>\"\n"
        "    risk: MEDIUM\n"
        "    verifymethod: analysis\n"
        "  }\n"
        "  element scale {\n"
        "    type: \"tool\"\n"
        "    docref: manual.pdf\n"
        "  }\n");
    ASSERT_FALSE(model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsInfo));
    const auto& weight = NodeOf(*model, "weight");
    EXPECT_EQ(weight.Text, "«Design Constraint»\r\nweight");
    EXPECT_EQ(weight.Role, "requirement");
    const std::vector<Rows> weightRows{
        {"ID: 2.1", "Text: At most 5 kg", "Risk: Medium", "Verification: Analysis"}};
    EXPECT_EQ(weight.Compartments, weightRows);
    const auto& scale = NodeOf(*model, "scale");
    EXPECT_EQ(scale.Role, "element");
    const std::vector<Rows> scaleRows{{"Type: tool", "Doc Ref: manual.pdf"}};
    EXPECT_EQ(scale.Compartments, scaleRows);
}

TEST(RequirementImport, RelationsRunFromSourceToTargetInBothSpellings) {
    const auto model = Mermaid(
        "requirementDiagram\n"
        "  requirement a {\n  id: 1\n  }\n"
        "  requirement b {\n  id: 2\n  }\n"
        "  element c {\n  type: x\n  }\n"
        "  a - contains -> b\n"
        "  c - satisfies -> a\n"
        "  b <- derives - c\n");
    ASSERT_EQ(model->Edges().size(), 3U);
    const auto& contains = model->Edges()[0];
    // The container carries the circled end; the contained box none.
    EXPECT_EQ(contains.FromID, "a");
    EXPECT_EQ(contains.ToID, "b");
    EXPECT_EQ(contains.FromArrow, A::eaCircle);
    EXPECT_EQ(contains.Arrow, A::eaNone);
    EXPECT_EQ(contains.Text, "«contains»");
    const auto& satisfies = model->Edges()[1];
    EXPECT_EQ(satisfies.Arrow, A::eaOpenArrow);
    EXPECT_TRUE(satisfies.Dotted);
    const auto& derives = model->Edges()[2];
    EXPECT_EQ(derives.FromID, "c");
    EXPECT_EQ(derives.ToID, "b");
}

TEST(RequirementImport, WhatItCannotReadIsNamedWithItsLine) {
    const auto model = Mermaid(
        "requirementDiagram\n"
        "  wish w {\n"
        "    id: 1\n"
        "  }\n"
        "  requirement r {\n"
        "    owner: me\n"
        "  }\n"
        "  r - mentions -> r\n"
        "  requirement open {\n"
        "    id: 9\n");
    EXPECT_TRUE(HasDiagnostic(*model, "UNSUPPORTED_STATEMENT", 2));  // an unknown kind of box
    EXPECT_TRUE(HasDiagnostic(*model, "UNSUPPORTED_STATEMENT", 6));  // an unknown field
    EXPECT_TRUE(HasDiagnostic(*model, "UNSUPPORTED_STATEMENT", 8));  // an unknown relation
    EXPECT_EQ(model->NodeIndexOf("w"), -1);
    EXPECT_EQ(model->Diagnostics().size(), 4U);
    EXPECT_TRUE(HasDiagnostic(*model, "REQUIREMENT_UNCLOSED_BLOCK", 9));
    EXPECT_TRUE(model->Edges().empty());
}

TEST(RequirementImport, StylesAndClassesColourTheBoxes) {
    const auto model = Mermaid(
        "requirementDiagram\n"
        "  requirement r:::hot {\n  id: 1\n  }\n"
        "  element e {\n  type: x\n  }\n"
        "  classDef hot fill:#f00\n"
        "  style e stroke:#00f\n");
    EXPECT_EQ(NodeOf(*model, "r").Style.Fill, Qvl::Utils::AlphaColor(255, 0, 0));
    EXPECT_TRUE(NodeOf(*model, "e").Style.Stroke.has_value());
}

}  // namespace
}  // namespace Orvex
