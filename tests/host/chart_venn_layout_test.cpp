// The venn drawer: circle areas proportional to the sets' sizes, overlapping by about the size of their
// union, and apart when the text gives none.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "orvex/items/shape_items.h"
#include "tests/host/chart_layout_test_util.h"

namespace Orvex {
namespace {

using ChartLayoutTest::ItemsOf;
using ChartLayoutTest::Load;
using ChartLayoutTest::SpanOf;
using ChartLayoutTest::TextItem;

struct TDisc {
    TLayoutPoint Centre;
    double Radius;
    bool Holds(double x, double y) const { return std::hypot(x - Centre.X, y - Centre.Y) <= Radius; }
};

TEST(ChartVennLayout, CircleAreasAndOverlapsFollowTheSizes) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(Load(doc, "venn-beta\n  set a[\"A\"]:40\n  set b:10\n  set c:10\n  union a, b[\"AB\"]:5\n"));
    std::vector<TDisc> discs;
    for (const auto* c : ItemsOf<TORXBaseCircle>(doc))
        discs.push_back({SpanOf(*c).Center(), SpanOf(*c).Width / 2});
    ASSERT_EQ(discs.size(), 3u);
    EXPECT_NEAR(discs[0].Radius / discs[1].Radius, 2, 1e-3);
    const auto apart = [&](std::size_t i, std::size_t j) {
        return std::hypot(discs[i].Centre.X - discs[j].Centre.X, discs[i].Centre.Y - discs[j].Centre.Y) -
               discs[i].Radius - discs[j].Radius;
    };
    EXPECT_LT(apart(0, 1), 0) << "a and b overlap";
    EXPECT_GT(apart(0, 2), 0) << "a and c have no union, so they stay apart";
    EXPECT_GT(apart(1, 2), 0);

    // The shared area, counted on a fine grid, is an eighth of a's (5 of 40).
    const TDisc& a = discs[0];
    const TDisc& b = discs[1];
    const double step = a.Radius / 200;
    double both = 0;
    for (double x = a.Centre.X - a.Radius; x <= a.Centre.X + a.Radius; x += step)
        for (double y = a.Centre.Y - a.Radius; y <= a.Centre.Y + a.Radius; y += step)
            if (a.Holds(x, y) && b.Holds(x, y)) both += step * step;
    EXPECT_NEAR(both / (std::numbers::pi * a.Radius * a.Radius), 5.0 / 40.0, 0.01);
    EXPECT_NE(TextItem(doc, "AB"), nullptr);
    EXPECT_NE(TextItem(doc, "A"), nullptr);
}

}  // namespace
}  // namespace Orvex
