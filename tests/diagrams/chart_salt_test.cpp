// Salt wireframes read into a widget tree: grid cells by row and column, every widget mark, nested grids
// on one line or several, trees, tabs and menus, and what the reader refuses.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orvex/diagrams/chart_salt.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using TWidget = TQVLSaltChart::TWidget;

const TWidget& Root(const TORXDiagramModel& model) {
    EXPECT_EQ(model.Kind(), TQVLDiagramKind::dkChart);
    return dynamic_cast<const TQVLSaltChart&>(*model.Chart()).Root;
}

std::vector<std::string> Codes(const TORXDiagramModel& model) {
    std::vector<std::string> out;
    for (const auto& d : model.Diagnostics()) out.push_back(d.Code + "@" + std::to_string(d.Line));
    return out;
}

TEST(SaltChart, EveryWidgetMark) {
    const struct {
        const char* Cell;
        const char* Kind;
        const char* Text;
        bool Checked;
    } cases[] = {
        {"[Save]", "button", "Save", false},
        {"\"  typed  \"", "field", "typed", false},
        {"[X] On", "checkbox", "On", true},
        {"[] Off", "checkbox", "Off", false},
        {"(X) Yes", "radio", "Yes", true},
        {"() No", "radio", "No", false},
        {"^Red^Green^", "droplist", "Red", false},
        {"<b>Plain</b> text", "text", "Plain text", false},
        {".", "empty", "", false},
        {"..", "separator", "", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Cell);
        const auto model = QVLImportDiagram(std::string("@startsalt\n{\n") + c.Cell + "\n}\n@endsalt\n",
                                            TQVLDiagramFormat::dgPlantUML);
        const TWidget& root = Root(*model);
        ASSERT_EQ(root.Children.size(), 1u);
        EXPECT_EQ(root.Children[0].Kind, c.Kind);
        EXPECT_EQ(root.Children[0].Text, c.Text);
        EXPECT_EQ(root.Children[0].Checked, c.Checked);
        EXPECT_TRUE(model->Diagnostics().empty());
    }
}

TEST(SaltChart, GridsNestOnOneLineOrSeveral) {
    const auto model = QVLImportDiagram(
        "@startuml\nsalt\n"
        "{#\n"
        "  Name | \"x\" | *\n"
        "  { [A] | [B] } | {^\"Box\"\n"
        "    [X] inside\n"
        "  }\n"
        "  {/ One | Two }\n"
        "  {T\n   + Root\n   ++ Leaf | 3 kB\n  }\n"
        "}\n@enduml\n",
        TQVLDiagramFormat::dgPlantUML);
    EXPECT_TRUE(model->Diagnostics().empty()) << Codes(*model)[0];
    const TWidget& root = Root(*model);
    EXPECT_EQ(root.Border, "#");
    ASSERT_EQ(root.Children.size(), 6u);
    EXPECT_EQ(root.Children[1].ColSpan, 2);  // "*" widens the field over the next column
    const TWidget& inline_ = root.Children[2];
    EXPECT_EQ(inline_.Kind, "grid");
    EXPECT_EQ(inline_.Row, 1);
    ASSERT_EQ(inline_.Children.size(), 2u);
    EXPECT_EQ(inline_.Children[1].Col, 1);
    const TWidget& box = root.Children[3];
    EXPECT_EQ(box.Title, "Box");
    EXPECT_EQ(box.Col, 1);
    ASSERT_EQ(box.Children.size(), 1u);
    EXPECT_EQ(box.Children[0].Kind, "checkbox");
    EXPECT_EQ(root.Children[4].Kind, "tabs");
    EXPECT_EQ(root.Children[4].Items, (std::vector<std::string>{"One", "Two"}));
    const TWidget& tree = root.Children[5];
    EXPECT_EQ(tree.Kind, "tree");
    EXPECT_EQ(tree.Row, 3);
    ASSERT_EQ(tree.Children.size(), 2u);
    EXPECT_EQ(tree.Children[1].Level, 2);
    EXPECT_EQ(tree.Children[1].Items, (std::vector<std::string>{"3 kB"}));

    TJSON out;
    dynamic_cast<const TQVLSaltChart&>(*model->Chart()).WriteJson(out);
    EXPECT_EQ(out["root"]["children"][1].dump(),
              R"({"kind":"field","text":"x","row":0,"col":1,"colSpan":2,"width":1})");
}

TEST(SaltChart, WhatIsNotAWireframeIsNamed) {
    const auto unclosed =
        QVLImportDiagram("@startsalt\n{\n  [A]\n  {+\n  [B]\n@endsalt\n", TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(Codes(*unclosed), (std::vector<std::string>{"SALT_UNCLOSED@4", "SALT_UNCLOSED@2"}));
    const auto stray = QVLImportDiagram("@startsalt\nscale 2\n{\n  {T\n  no plus\n  }\n}\nafter\n@endsalt\n",
                                        TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(Codes(*stray), (std::vector<std::string>{"UNSUPPORTED_STATEMENT@2", "SALT_UNRECOGNIZED_LINE@5",
                                                       "SALT_UNRECOGNIZED_LINE@8"}));
    const auto empty = QVLImportDiagram("@startsalt\n@endsalt\n", TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(Codes(*empty), (std::vector<std::string>{"SALT_NO_GRID@0"}));
}

}  // namespace
}  // namespace Orvex
