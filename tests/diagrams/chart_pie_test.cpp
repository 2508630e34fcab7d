// The pie reader: slices in source order, showData and the title in either place, and what it refuses.
#include <gtest/gtest.h>

#include "orvex/diagrams/chart_pie.h"
#include "tests/diagrams/chart_test_util.h"

namespace Orvex {
namespace {

using ChartTest::ChartOf;
using ChartTest::Diagnostic;
using ChartTest::Read;

TEST(ChartPie, SlicesKeepSourceOrderAndTheHeaderSetsShowDataAndTitle) {
    const auto model = Read("pie showData title Pets\n  \"Dogs\" : 386\n  \"Cats\" : 85.5\n  \"Rats\" : 0\n");
    EXPECT_EQ(model->Kind(), TQVLDiagramKind::dkChart);
    EXPECT_EQ(model->Title(), "Pets");
    const auto* pie = ChartOf<TQVLPieChart>(*model);
    ASSERT_NE(pie, nullptr);
    EXPECT_TRUE(pie->ShowData);
    ASSERT_EQ(pie->Slices.size(), 3u);
    EXPECT_EQ(pie->Slices[0].Label, "Dogs");
    EXPECT_DOUBLE_EQ(pie->Slices[1].Value, 85.5);
    EXPECT_EQ(pie->Slices[2].Label, "Rats");
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(ChartPie, TitleAndShowDataOnTheirOwnLines) {
    const auto model = Read("pie\n  title Budget\n  showData\n  %% a comment\n  \"A\" : 1\n");
    const auto* pie = ChartOf<TQVLPieChart>(*model);
    ASSERT_NE(pie, nullptr);
    EXPECT_TRUE(pie->ShowData);
    EXPECT_EQ(model->Title(), "Budget");
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(ChartPie, NegativeOrNonNumericValuesAreErrorsAndStrayLinesWarnings) {
    const auto model = Read("pie\n  \"A\" : -3\n  \"B\" : lots\n  \"C\" : 2\n  slice D 4\n");
    const auto* pie = ChartOf<TQVLPieChart>(*model);
    ASSERT_NE(pie, nullptr);
    ASSERT_EQ(pie->Slices.size(), 1u);
    EXPECT_EQ(pie->Slices[0].Label, "C");
    const auto* value = Diagnostic(*model, "PIE_VALUE");
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->Severity, TQVLDiagramDiagnosticSeverity::dsError);
    EXPECT_EQ(value->Line, 2);
    const auto* stray = Diagnostic(*model, "PIE_UNRECOGNIZED_LINE");
    ASSERT_NE(stray, nullptr);
    EXPECT_EQ(stray->Line, 5);
}

}  // namespace
}  // namespace Orvex
