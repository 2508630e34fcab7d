// The pie drawer: sectors as wide as their shares, clockwise from twelve o'clock in source order, and
// the legend that shows values only when the text asks.
#include <gtest/gtest.h>

#include <cmath>

#include "orvex/items/shape_items.h"
#include "tests/host/chart_layout_test_util.h"

namespace Orvex {
namespace {

using ChartLayoutTest::ItemsOf;
using ChartLayoutTest::Load;
using ChartLayoutTest::TextItem;

double Turn(double degrees) {
    const double d = std::fmod(degrees, 360.0);
    return d < 0 ? d + 360.0 : d;
}

TEST(ChartPieLayout, SweepsFollowTheValuesClockwiseInSourceOrder) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(Load(doc, "pie\n  \"A\" : 1\n  \"B\" : 2\n  \"Zero\" : 0\n  \"C\" : 3\n"));
    const auto sectors = ItemsOf<TORXBaseSector>(doc);
    ASSERT_EQ(sectors.size(), 3u) << "a slice of zero has no sector";
    EXPECT_NEAR(sectors[0]->SweepAngle(), 60, 0.01);
    EXPECT_NEAR(sectors[1]->SweepAngle(), 120, 0.01);
    EXPECT_NEAR(sectors[2]->SweepAngle(), 180, 0.01);
    // Angles grow counter-clockwise: clockwise order means each sector ends where the one before starts,
    // and the first ends at twelve o'clock.
    EXPECT_NEAR(Turn(sectors[0]->StartAngle() + sectors[0]->SweepAngle()), 90, 0.01);
    for (std::size_t i = 1; i < sectors.size(); ++i)
        EXPECT_NEAR(Turn(sectors[i]->StartAngle() + sectors[i]->SweepAngle()),
                    Turn(sectors[i - 1]->StartAngle()), 0.01);
    EXPECT_NE(TextItem(doc, "Zero"), nullptr) << "every slice is in the legend";
    EXPECT_NE(TextItem(doc, "50%"), nullptr);
}

TEST(ChartPieLayout, ShowDataPutsTheValuesInTheLegend) {
    TORXHeadlessLabel plain;
    ASSERT_TRUE(Load(plain, "pie\n  \"Dogs\" : 386\n  \"Cats\" : 85.5\n"));
    EXPECT_NE(TextItem(plain, "Dogs"), nullptr);
    EXPECT_EQ(TextItem(plain, "Dogs [386]"), nullptr);
    TORXHeadlessLabel shown;
    ASSERT_TRUE(Load(shown, "pie showData\n  \"Dogs\" : 386\n  \"Cats\" : 85.5\n"));
    EXPECT_NE(TextItem(shown, "Dogs [386]"), nullptr);
    EXPECT_NE(TextItem(shown, "Cats [85.5]"), nullptr);
}

TEST(ChartPieLayout, AnErrorInTheValuesDrawsNothing) {
    TORXHeadlessLabel doc;
    EXPECT_FALSE(Load(doc, "pie\n  \"A\" : 1\n  \"B\" : -2\n"));
    EXPECT_EQ(doc.GetItemsCount(), 0);
}

}  // namespace
}  // namespace Orvex
