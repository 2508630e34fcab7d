// The sankey reader: CSV fields with quotes, commas and doubled quotes, nodes in order of mention, and
// the values and loops it refuses.
#include <gtest/gtest.h>

#include "orvex/diagrams/chart_sankey.h"
#include "tests/diagrams/chart_test_util.h"

namespace Orvex {
namespace {

using ChartTest::ChartOf;
using ChartTest::Diagnostic;
using ChartTest::Read;

TEST(ChartSankey, QuotedFieldsAndNodeOrder) {
    const auto model = Read(
        "sankey-beta\n\nSolar,Grid,60\n\"Grid\",\"Homes, offices\",150.5\nGrid, \"The \"\"big\"\" plant\" "
        ",3\n");
    const auto* sankey = ChartOf<TQVLSankeyChart>(*model);
    ASSERT_NE(sankey, nullptr);
    ASSERT_EQ(sankey->Links.size(), 3u);
    EXPECT_EQ(sankey->Links[1].Target, "Homes, offices");
    EXPECT_DOUBLE_EQ(sankey->Links[1].Value, 150.5);
    EXPECT_EQ(sankey->Links[2].Target, "The \"big\" plant");
    EXPECT_EQ(sankey->Nodes(),
              (std::vector<std::string>{"Solar", "Grid", "Homes, offices", "The \"big\" plant"}));
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(ChartSankey, BadValuesLoopsAndMalformedLinesAreNamed) {
    const auto model = Read("sankey-beta\nA,B,10\nB,C,x\nB,C,-1\nC,A,5\nB,B,1\nA,B\n\"A,B,3\n");
    const auto* sankey = ChartOf<TQVLSankeyChart>(*model);
    ASSERT_NE(sankey, nullptr);
    ASSERT_EQ(sankey->Links.size(), 2u);
    EXPECT_EQ(sankey->Links[1].Source, "C") << "B,C was refused, so C,A closes no loop";
    std::size_t values = 0;
    std::size_t loops = 0;
    std::size_t malformed = 0;
    for (const auto& d : model->Diagnostics()) {
        values += d.Code == "SANKEY_VALUE";
        loops += d.Code == "SANKEY_CYCLE";
        malformed += d.Code == "SANKEY_UNRECOGNIZED_LINE";
    }
    EXPECT_EQ(values, 2u);
    EXPECT_EQ(loops, 1u);
    EXPECT_EQ(malformed, 2u);
}

TEST(ChartSankey, AFlowBackToAnEarlierNodeClosesALoop) {
    const auto model = Read("sankey-beta\nA,B,1\nB,C,1\nC,A,1\n");
    const auto* sankey = ChartOf<TQVLSankeyChart>(*model);
    ASSERT_NE(sankey, nullptr);
    EXPECT_EQ(sankey->Links.size(), 2u);
    const auto* loop = Diagnostic(*model, "SANKEY_CYCLE");
    ASSERT_NE(loop, nullptr);
    EXPECT_EQ(loop->Line, 4);
    EXPECT_EQ(loop->Severity, TQVLDiagramDiagnosticSeverity::dsError);
}

}  // namespace
}  // namespace Orvex
