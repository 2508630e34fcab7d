// The XY chart reader: axes as categories or ranges, ranges the data decides, series, orientation, and
// the lines it refuses.
#include <gtest/gtest.h>

#include "orvex/diagrams/chart_xy.h"
#include "orvex/io/json.h"
#include "tests/diagrams/chart_test_util.h"

namespace Orvex {
namespace {

using ChartTest::ChartOf;
using ChartTest::Diagnostic;
using ChartTest::Read;

TEST(ChartXY, CategoriesRangeAndNamedSeries) {
    const auto model = Read(
        "xychart-beta horizontal\n  title \"Sales\"\n  x-axis \"Quarter\" [Q1, \"Q2, late\", Q3]\n"
        "  y-axis \"Revenue\" 0 --> 100\n  bar \"Actual\" [10, 20.5, -3]\n  line [5, 15, 25]\n");
    EXPECT_EQ(model->Title(), "Sales");
    const auto* xy = ChartOf<TQVLXYChart>(*model);
    ASSERT_NE(xy, nullptr);
    EXPECT_TRUE(xy->Horizontal);
    EXPECT_EQ(xy->XAxis.Title, "Quarter");
    EXPECT_EQ(xy->XAxis.Categories, (std::vector<std::string>{"Q1", "Q2, late", "Q3"}));
    ASSERT_TRUE(xy->YAxis.Min && xy->YAxis.Max);
    EXPECT_EQ(*xy->YAxis.Min, 0);
    EXPECT_EQ(*xy->YAxis.Max, 100);
    ASSERT_EQ(xy->Series.size(), 2u);
    EXPECT_FALSE(xy->Series[0].Line);
    EXPECT_EQ(xy->Series[0].Title, "Actual");
    EXPECT_EQ(xy->Series[0].Values, (std::vector<double>{10, 20.5, -3}));
    EXPECT_TRUE(xy->Series[1].Line);
    EXPECT_TRUE(model->Diagnostics().empty());

    TJSON json{{"type", "xychart"}};
    xy->WriteJson(json);
    EXPECT_EQ(json["xAxis"]["title"], "Quarter");
    EXPECT_EQ(json["xAxis"]["categories"].size(), 3u);
    EXPECT_FALSE(json["xAxis"].contains("min"));
    EXPECT_EQ(json["yAxis"]["min"], 0.0);
    EXPECT_EQ(json["series"][1]["type"], "line");
}

TEST(ChartXY, OpenAxesTakeTheirRangesFromTheData) {
    // No x-axis: positions 1..n of the first series; no y range: the smallest and largest of all values.
    const auto model = Read("xychart-beta\n  y-axis Count\n  bar [4, 9, 2]\n  line [7, 1, 12, 3]\n");
    const auto* xy = ChartOf<TQVLXYChart>(*model);
    ASSERT_NE(xy, nullptr);
    EXPECT_TRUE(xy->XAxis.Numeric);
    EXPECT_EQ(xy->XAxis.Min.value_or(-1), 1);
    EXPECT_EQ(xy->XAxis.Max.value_or(-1), 3);
    EXPECT_EQ(xy->YAxis.Title, "Count");
    EXPECT_EQ(xy->YAxis.Min.value_or(-1), 1);
    EXPECT_EQ(xy->YAxis.Max.value_or(-1), 12);
}

TEST(ChartXY, NumericXAxisRange) {
    const auto model = Read("xychart\n  x-axis Year 2000 --> 2020\n  line [1, 2, 3]\n");
    const auto* xy = ChartOf<TQVLXYChart>(*model);
    ASSERT_NE(xy, nullptr);
    EXPECT_TRUE(xy->XAxis.Numeric);
    EXPECT_EQ(xy->XAxis.Title, "Year");
    EXPECT_EQ(xy->XAxis.Min.value_or(0), 2000);
    EXPECT_EQ(xy->XAxis.Max.value_or(0), 2020);
}

TEST(ChartXY, FrontMatterTitleCommentsAndAccessibilityTextsAreNoStatements) {
    const auto model = Read(
        "---\ntitle: From the front\n---\nxychart-beta\n  accTitle: Sales\n  accDescr {\n    bar [9, 9]\n  "
        "}\n"
        "  %% bar [7]\n  bar [1, 2] %% the real one\n");
    EXPECT_EQ(model->Title(), "From the front");
    const auto* xy = ChartOf<TQVLXYChart>(*model);
    ASSERT_NE(xy, nullptr);
    ASSERT_EQ(xy->Series.size(), 1u);
    EXPECT_EQ(xy->Series[0].Values, (std::vector<double>{1, 2}));
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(ChartXY, ValuesMayCarryLabels) {
    const auto model =
        Read("xychart-beta\n  x-axis [a, b, c]\n  line [1, 5 \"peak, high\", 2]\n  bar [1, 2, 3]\n");
    const auto* xy = ChartOf<TQVLXYChart>(*model);
    ASSERT_NE(xy, nullptr);
    ASSERT_EQ(xy->Series.size(), 2u);
    EXPECT_EQ(xy->Series[0].Values, (std::vector<double>{1, 5, 2}));
    EXPECT_EQ(xy->Series[0].Labels, (std::vector<std::string>{"", "peak, high", ""}));
    EXPECT_TRUE(xy->Series[1].Labels.empty()) << "a series without labels has none, not a row of blanks";
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(ChartXY, BadValuesExtraValuesAndStrayLinesAreNamed) {
    const auto model = Read(
        "xychart-beta sideways\n  x-axis [a, b]\n  bar [1, 2, 3]\n  line [1, x]\n  y-axis [p, q]\n  pie "
        "[1]\n");
    const auto* xy = ChartOf<TQVLXYChart>(*model);
    ASSERT_NE(xy, nullptr);
    ASSERT_EQ(xy->Series.size(), 1u);
    EXPECT_EQ(xy->Series[0].Values.size(), 2u) << "values beyond the categories are dropped, with a warning";
    EXPECT_NE(Diagnostic(*model, "XY_HEADER"), nullptr);
    EXPECT_NE(Diagnostic(*model, "XY_EXTRA_VALUES"), nullptr);
    const auto* value = Diagnostic(*model, "XY_VALUE");
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->Severity, TQVLDiagramDiagnosticSeverity::dsError);
    EXPECT_EQ(value->Line, 4);
    EXPECT_NE(Diagnostic(*model, "XY_AXIS"), nullptr) << "a y-axis has no categories";
    EXPECT_NE(Diagnostic(*model, "XY_UNRECOGNIZED_LINE"), nullptr);
}

}  // namespace
}  // namespace Orvex
