// The treemap reader: nesting by indentation, leaves with values, sections weighing their leaves,
// classes, and the lines it refuses.
#include <gtest/gtest.h>

#include "orvex/diagrams/chart_treemap.h"
#include "tests/diagrams/chart_test_util.h"

namespace Orvex {
namespace {

using ChartTest::ChartOf;
using ChartTest::Diagnostic;
using ChartTest::Read;

TEST(ChartTreemap, IndentationNestsAndSectionsSumTheirLeaves) {
    const auto model = Read(
        "treemap-beta\n\"Budget\"\n    \"Ops\":::big\n        \"Salaries\": 700\n        \"Rent\": "
        "200:::big\n"
        "    \"Ads\": 90\n\"Other\"\n  \"Misc\": 10\nclassDef big fill:#f96,stroke:#333\n");
    const auto* map = ChartOf<TQVLTreemapChart>(*model);
    ASSERT_NE(map, nullptr);
    ASSERT_EQ(map->Roots.size(), 2u);
    const auto& budget = map->Roots[0];
    ASSERT_EQ(budget.Children.size(), 2u);
    EXPECT_EQ(budget.Children[0].Name, "Ops");
    EXPECT_EQ(budget.Children[0].Children.size(), 2u) << "a section's class is not taken for a value";
    EXPECT_EQ(budget.Children[0].Class, "big");
    EXPECT_EQ(budget.Children[0].Children[1].Class, "big");
    EXPECT_TRUE(budget.Children[1].Leaf);
    EXPECT_DOUBLE_EQ(budget.Total(), 990);
    EXPECT_DOUBLE_EQ(map->Roots[1].Total(), 10);
    ASSERT_TRUE(map->Classes.contains("big"));
    EXPECT_EQ(map->Classes.at("big").Fill.value_or(0), 0xFFFF9966u);
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(ChartTreemap, BadValuesUnknownClassesAndStrayLinesAreNamed) {
    const auto model = Read("treemap\n\"A\"\n  \"x\": -4\n  \"y\": 2:::ghost\n  z: 3\n");
    const auto* map = ChartOf<TQVLTreemapChart>(*model);
    ASSERT_NE(map, nullptr);
    ASSERT_EQ(map->Roots.size(), 1u);
    EXPECT_EQ(map->Roots[0].Children.size(), 1u);
    EXPECT_EQ(Diagnostic(*model, "TREEMAP_VALUE")->Severity, TQVLDiagramDiagnosticSeverity::dsError);
    EXPECT_NE(Diagnostic(*model, "TREEMAP_CLASS"), nullptr);
    EXPECT_EQ(Diagnostic(*model, "TREEMAP_UNRECOGNIZED_LINE")->Line, 5);
}

}  // namespace
}  // namespace Orvex
