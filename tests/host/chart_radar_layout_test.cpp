// The radar drawer: one spoke per axis, and a curve's corner on each spoke at its value's share of the
// scale.
#include <gtest/gtest.h>

#include <cmath>

#include "orvex/items/line_items.h"
#include "orvex/items/shape_items.h"
#include "tests/host/chart_layout_test_util.h"

namespace Orvex {
namespace {

using ChartLayoutTest::AnchorOf;
using ChartLayoutTest::ItemsOf;
using ChartLayoutTest::Load;
using ChartLayoutTest::TextItem;

TEST(ChartRadarLayout, CornersSitOnTheSpokesAtTheirShareOfTheScale) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(Load(
        doc,
        "radar-beta\n  axis a, b, c, d\n  curve x[\"X\"]{10, 5, 0, 10}\n  max 10\n  graticule circle\n"));
    const auto spokes = ItemsOf<TORXBaseLine>(doc);
    ASSERT_EQ(spokes.size(), 4u);
    const TLayoutPoint centre = AnchorOf(*spokes[0]);
    const auto reach = [&](std::size_t i) {
        return std::hypot(spokes[i]->GetPointMMX(2) - centre.X, spokes[i]->GetPointMMY(2) - centre.Y);
    };
    const auto polygons = ItemsOf<TORXBasePolygon>(doc);
    ASSERT_EQ(polygons.size(), 1u) << "circle graticule: the curve is the only polygon";
    const auto& corners = polygons[0]->Points();
    ASSERT_EQ(corners.size(), 4u);
    const auto distance = [&](std::size_t i) {
        return std::hypot(static_cast<double>(corners[i].X) / 1000 - centre.X,
                          static_cast<double>(corners[i].Y) / 1000 - centre.Y);
    };
    EXPECT_NEAR(distance(0), reach(0), 1e-2);
    EXPECT_NEAR(distance(1), reach(1) / 2, 1e-2);
    EXPECT_NEAR(distance(2), 0, 1e-2);
    EXPECT_LT(static_cast<double>(corners[0].Y) / 1000, centre.Y) << "the first axis points up";
    EXPECT_LT(static_cast<double>(corners[3].X) / 1000, centre.X) << "the last lies to the left (clockwise)";
    EXPECT_NE(TextItem(doc, "X"), nullptr) << "the legend names the curve";
}

}  // namespace
}  // namespace Orvex
