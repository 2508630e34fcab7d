// Kanban boards drawn: columns side by side, their cards stacked in order with a priority strip.
#include <gtest/gtest.h>

#include "orvex/items/shape_items.h"
#include "tests/host/chart_drawn_items.h"

namespace Orvex {
namespace {

using ChartTest::TDrawnChart;

TEST(KanbanLayout, CardsStackInTheirColumnWithThePriorityAlongTheLeftEdge) {
    const TDrawnChart drawn(
        "kanban\n  todo[To do]\n    a[First card]@{ priority: 'Very High', ticket: T-1 }\n    b[Second "
        "card]\n"
        "  done[Done]\n    c[Third card]@{ assigned: 'ana' }\n");
    const TLayoutBox a = drawn.Box("First card");
    const TLayoutBox b = drawn.Box("Second card");
    const TLayoutBox c = drawn.Box("Third card");
    EXPECT_NEAR(a.X, b.X, 0.01);
    EXPECT_GT(b.Y, a.Bottom());
    EXPECT_GT(c.X, a.Right());
    EXPECT_NEAR(c.Y, a.Y, 0.01);
    // Cards are recorded under their ids, so they can be found like diagram nodes.
    EXPECT_EQ(drawn.Placement.Nodes.size(), 3u);

    std::size_t strips = 0;
    for (const auto* rect : drawn.All<TORXBaseRectangle>()) {
        const TLayoutBox box = TDrawnChart::BoxOf(*rect);
        if (box.Width < 3 && std::abs(box.X - a.X) < 0.5 && std::abs(box.Height - a.Height) < 0.5) {
            ++strips;
            EXPECT_TRUE(rect->Filled());
            EXPECT_EQ(rect->BackColor(), 0xFFC00000u);
        }
    }
    EXPECT_EQ(strips, 1u);  // only the card with a priority has one
}

}  // namespace
}  // namespace Orvex
