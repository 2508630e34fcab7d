// Journeys drawn: a face beneath every task at the height of its score, actors' dots on the cards.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/host/chart_drawn_items.h"

namespace Orvex {
namespace {

using ChartTest::CenterX;
using ChartTest::TDrawnChart;

TEST(JourneyLayout, FacesStandUnderTheirTaskAtTheHeightOfItsScore) {
    const TDrawnChart drawn(
        "journey\n  section Work\n    Make tea: 5: Me\n    Meeting: 3: Me, Boss\n    Commute: 1: Me\n");
    // The faces are the largest circles.
    std::vector<const TORXBaseCircle*> faces;
    std::int32_t largest = 0;
    for (const auto* c : drawn.All<TORXBaseCircle>()) largest = std::max(largest, c->BaseRadius());
    for (const auto* c : drawn.All<TORXBaseCircle>())
        if (c->BaseRadius() == largest) faces.push_back(c);
    ASSERT_EQ(faces.size(), 3u);
    const char* tasks[] = {"Make tea", "Meeting", "Commute"};
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(static_cast<double>(faces[i]->BaseCenterX()) / 1000, CenterX(drawn.Box(tasks[i])), 0.01);
    // Equal score steps give equal drops, the best score highest.
    const double y5 = static_cast<double>(faces[0]->BaseCenterY()) / 1000;
    const double y3 = static_cast<double>(faces[1]->BaseCenterY()) / 1000;
    const double y1 = static_cast<double>(faces[2]->BaseCenterY()) / 1000;
    EXPECT_LT(y5, y3);
    EXPECT_NEAR(y3 - y5, y1 - y3, 0.01);
    EXPECT_GT(y5, drawn.Box("Make tea").Bottom());
}

TEST(JourneyLayout, EachActorHasALegendEntryAndADotOnItsTasks) {
    const TDrawnChart drawn("journey\n  section S\n    Pay: 2: Me, Bank\n    Leave: 4: Me\n");
    const TLayoutBox pay = drawn.Box("Pay");
    const TLayoutBox leave = drawn.Box("Leave");
    std::size_t onPay = 0;
    std::size_t onLeave = 0;
    std::size_t legend = 0;
    for (const auto* c : drawn.All<TORXBaseCircle>()) {
        const TLayoutPoint at{static_cast<double>(c->BaseCenterX()) / 1000,
                              static_cast<double>(c->BaseCenterY()) / 1000};
        if (at.X < pay.X)
            ++legend;
        else if (at.Y < pay.Y + pay.Height / 2 && at.X < pay.Right())
            ++onPay;
        else if (at.Y < leave.Y + leave.Height / 2 && at.X > leave.X && at.X < leave.Right())
            ++onLeave;
    }
    EXPECT_EQ(legend, 2u);
    EXPECT_EQ(onPay, 2u);
    EXPECT_EQ(onLeave, 1u);
}

}  // namespace
}  // namespace Orvex
