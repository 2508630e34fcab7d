// The sankey drawer: bands as thick as their flows, bars as tall as their nodes' throughput, columns by
// distance from the sources with the sinks last.
#include <gtest/gtest.h>

#include "orvex/items/line_items.h"
#include "orvex/items/shape_items.h"
#include "tests/host/chart_layout_test_util.h"

namespace Orvex {
namespace {

using ChartLayoutTest::ItemsOf;
using ChartLayoutTest::Load;
using ChartLayoutTest::SpanOf;

TEST(ChartSankeyLayout, BandsAndBarsAreProportionalToTheFlows) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(Load(doc, "sankey-beta\nA,B,30\nA,C,10\nB,D,30\n"));
    const auto bands = ItemsOf<TORXBasePolyLine>(doc);
    ASSERT_EQ(bands.size(), 3u);
    EXPECT_NEAR(bands[0]->GetPenWidthMM() / bands[1]->GetPenWidthMM(), 3, 0.01);
    EXPECT_NEAR(bands[2]->GetPenWidthMM(), bands[0]->GetPenWidthMM(), 0.01);

    std::vector<TLayoutBox> bars;  // A, B, C, D in order of first mention
    for (const auto* r : ItemsOf<TORXBaseRectangle>(doc)) bars.push_back(SpanOf(*r));
    ASSERT_EQ(bars.size(), 4u);
    EXPECT_NEAR(bars[0].Height / bars[2].Height, 4, 0.01);
    EXPECT_NEAR(bars[1].Height, bars[3].Height, 0.01);
    EXPECT_NEAR(bars[0].Height, bands[0]->GetPenWidthMM() + bands[1]->GetPenWidthMM(), 0.01)
        << "a source's bar is as tall as what leaves it";
    EXPECT_LT(bars[0].X, bars[1].X);
    EXPECT_LT(bars[1].X, bars[3].X);
    EXPECT_NEAR(bars[2].X, bars[3].X, 1e-3) << "C, a sink, stands with the other sink in the last column";
}

}  // namespace
}  // namespace Orvex
