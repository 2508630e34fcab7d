// Timelines drawn: events stacked beneath their period, sections as bands over their periods.
#include <gtest/gtest.h>

#include "tests/host/chart_drawn_items.h"

namespace Orvex {
namespace {

using ChartTest::CenterX;
using ChartTest::TDrawnChart;

TEST(TimelineLayout, EventsStackBeneathTheirPeriodUnderTheSectionBand) {
    const TDrawnChart drawn(
        "timeline\n  section Early days\n    2019 : First prototype\n    2020 : Beta : First customers\n"
        "  section Growth\n    2022 : Version 2.0\n");
    const TLayoutBox early = drawn.Box("Early days");
    const TLayoutBox growth = drawn.Box("Growth");
    const TLayoutBox p2019 = drawn.Box("2019");
    const TLayoutBox p2020 = drawn.Box("2020");
    const TLayoutBox p2022 = drawn.Box("2022");
    // Periods run left to right; each band spans exactly its own periods and sits above them.
    EXPECT_LT(p2019.Right(), p2020.X);
    EXPECT_LT(p2020.Right(), p2022.X);
    EXPECT_NEAR(early.X, p2019.X, 0.01);
    EXPECT_NEAR(early.Right(), p2020.Right(), 0.01);
    EXPECT_NEAR(growth.X, p2022.X, 0.01);
    EXPECT_LT(early.Bottom(), p2019.Y);
    // Events share their period's column, in order, below it.
    const TLayoutBox beta = drawn.Box("Beta");
    const TLayoutBox customers = drawn.Box("First customers");
    EXPECT_NEAR(CenterX(beta), CenterX(p2020), 0.01);
    EXPECT_NEAR(CenterX(customers), CenterX(p2020), 0.01);
    EXPECT_GT(beta.Y, p2020.Bottom());
    EXPECT_GT(customers.Y, beta.Bottom());
    EXPECT_NEAR(CenterX(drawn.Box("First prototype")), CenterX(p2019), 0.01);
}

TEST(TimelineLayout, LongCaptionsMakeTheirBoxesTallerNotWider) {
    const TDrawnChart drawn(
        "timeline\n  2019 : Short\n  2020 : A much longer event that cannot possibly fit on one line of a "
        "column\n");
    const TLayoutBox shortEvent = drawn.Box("Short");
    const TLayoutBox longEvent =
        drawn.Box("A much longer event that cannot possibly fit on one line of a column");
    EXPECT_NEAR(longEvent.Width, shortEvent.Width, 0.01);
    EXPECT_GT(longEvent.Height, 1.8 * shortEvent.Height);
}

}  // namespace
}  // namespace Orvex
