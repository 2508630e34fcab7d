// The quadrant drawer on the example: every point lies in the quadrant its coordinates name, under that
// quadrant's title, and a point's own radius shows.
#include <gtest/gtest.h>

#include "orvex/items/shape_items.h"
#include "tests/host/chart_layout_test_util.h"
#include "tests/host/layout_test_util.h"

namespace Orvex {
namespace {

using ChartLayoutTest::AnchorOf;
using ChartLayoutTest::Contains;
using ChartLayoutTest::ItemsOf;
using ChartLayoutTest::Load;
using ChartLayoutTest::SpanOf;
using ChartLayoutTest::TextItem;

TEST(ChartQuadrantLayout, EachPointLiesInItsQuadrant) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(Load(doc, LayoutTest::ReadExample("mermaid/quadrant.mmd")));
    std::vector<TLayoutBox> quadrants;
    for (const auto* r : ItemsOf<TORXBaseRectangle>(doc)) quadrants.push_back(SpanOf(*r));
    ASSERT_EQ(quadrants.size(), 4u);
    const auto circles = ItemsOf<TORXBaseCircle>(doc);
    ASSERT_EQ(circles.size(), 7u);

    // The quadrant holding a title's anchor.
    const auto quadrantOf = [&](const char* title) -> const TLayoutBox* {
        const auto* text = TextItem(doc, title);
        if (text == nullptr) return nullptr;
        for (const auto& q : quadrants)
            if (Contains(q, AnchorOf(*text))) return &q;
        return nullptr;
    };
    // Points in source order: Dark mode, Single sign-on, CSV export, Offline sync, Custom themes, ...
    const std::vector<std::pair<std::size_t, const char*>> expected{
        {0, "Quick wins"}, {1, "Plan carefully"}, {2, "Fill-ins"}, {3, "Plan carefully"}, {4, "Avoid"}};
    for (const auto& [point, title] : expected) {
        SCOPED_TRACE(title);
        const TLayoutBox* quadrant = quadrantOf(title);
        ASSERT_NE(quadrant, nullptr);
        EXPECT_TRUE(Contains(*quadrant, SpanOf(*circles[point]).Center()));
    }
    // Dark mode at x 0.25 sits at a quarter of the chart's width.
    const TLayoutBox left = *quadrantOf("Quick wins");
    EXPECT_NEAR(SpanOf(*circles[0]).Center().X - left.X, left.Width / 2, 1e-2);
    // Single sign-on has radius 7 against the default 5.
    EXPECT_NEAR(SpanOf(*circles[1]).Width / SpanOf(*circles[0]).Width, 7.0 / 5.0, 1e-3);
    EXPECT_NE(TextItem(doc, "Offline sync"), nullptr);
    EXPECT_NE(TextItem(doc, "High effort"), nullptr);
}

}  // namespace
}  // namespace Orvex
