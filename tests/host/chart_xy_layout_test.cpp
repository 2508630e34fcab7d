// The XY drawer: bars as long as their values from a common base, in category order, lines through the
// bar centres, and the same in horizontal orientation.
#include <gtest/gtest.h>

#include <algorithm>

#include "orvex/items/line_items.h"
#include "orvex/items/shape_items.h"
#include "tests/host/chart_layout_test_util.h"

namespace Orvex {
namespace {

using ChartLayoutTest::ItemsOf;
using ChartLayoutTest::Load;
using ChartLayoutTest::SpanOf;
using ChartLayoutTest::TextItem;

// The bars: the filled rectangles (the plot frame is hollow).
std::vector<TLayoutBox> Bars(const TORXBaseLabel& doc) {
    std::vector<TLayoutBox> bars;
    for (const auto* r : ItemsOf<TORXBaseRectangle>(doc))
        if (r->Filled()) bars.push_back(SpanOf(*r));
    return bars;
}

TEST(ChartXYLayout, BarsAndLineFollowTheValues) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(Load(doc,
                     "xychart-beta\n  x-axis [a, b, c]\n  y-axis Score 0 --> 100\n  bar [10, 50, 100]\n"
                     "  line [20, 40, 60]\n"));
    const auto bars = Bars(doc);
    ASSERT_EQ(bars.size(), 3u);
    for (std::size_t i = 1; i < bars.size(); ++i) {
        EXPECT_NEAR(bars[i].Bottom(), bars[0].Bottom(), 1e-3) << "bars stand on one base";
        EXPECT_GT(bars[i].X, bars[i - 1].Right()) << "categories left to right";
        EXPECT_NEAR(bars[i].Width, bars[0].Width, 1e-3);
    }
    EXPECT_NEAR(bars[1].Height / bars[0].Height, 5, 1e-3);
    EXPECT_NEAR(bars[2].Height / bars[0].Height, 10, 1e-3);

    const auto lines = ItemsOf<TORXBasePolyLine>(doc);
    ASSERT_EQ(lines.size(), 1u);
    const auto& points = lines[0]->Points();
    ASSERT_EQ(points.size(), 3u);
    const double full = bars[2].Height;  // 100, the top of the range
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(static_cast<double>(points[i].X) / 1000, bars[i].Center().X, 1e-2);
        EXPECT_NEAR(bars[0].Bottom() - static_cast<double>(points[i].Y) / 1000,
                    full * 0.2 * static_cast<double>(i + 1), 1e-2);
    }
    EXPECT_NE(TextItem(doc, "a"), nullptr);
    EXPECT_NE(TextItem(doc, "Score"), nullptr);
}

TEST(ChartXYLayout, HorizontalBarsGrowRightwardsInCategoryOrderDownwards) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(Load(doc, "xychart-beta horizontal\n  x-axis [a, b]\n  y-axis 0 --> 40\n  bar [10, 40]\n"));
    const auto bars = Bars(doc);
    ASSERT_EQ(bars.size(), 2u);
    EXPECT_NEAR(bars[0].X, bars[1].X, 1e-3);
    EXPECT_GT(bars[1].Y, bars[0].Bottom());
    EXPECT_NEAR(bars[1].Width / bars[0].Width, 4, 1e-3);
    EXPECT_GT(bars[1].Width, bars[1].Height) << "a full-range bar is long across the plot";
}

TEST(ChartXYLayout, NegativeValuesHangBelowTheZeroLine) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(Load(doc, "xychart-beta\n  x-axis [a, b]\n  y-axis -50 --> 50\n  bar [25, -50]\n"));
    const auto bars = Bars(doc);
    ASSERT_EQ(bars.size(), 2u);
    EXPECT_NEAR(bars[0].Bottom(), bars[1].Y, 1e-3) << "both start at zero";
    EXPECT_NEAR(bars[1].Height / bars[0].Height, 2, 1e-3);
}

}  // namespace
}  // namespace Orvex
