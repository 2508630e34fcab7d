// The treemap drawer and its tiling: leaves inside their section with areas proportional to their
// values, and tiles that fill their box without overlapping.
#include <gtest/gtest.h>

#include "host/layout/squarify.h"
#include "orvex/items/shape_items.h"
#include "tests/host/chart_layout_test_util.h"
#include "tests/host/layout_test_util.h"

namespace Orvex {
namespace {

using ChartLayoutTest::Contains;
using ChartLayoutTest::ItemsOf;
using ChartLayoutTest::Load;
using ChartLayoutTest::SpanOf;
using ChartLayoutTest::TextItem;

TEST(ChartTreemapLayout, SquarifiedTilesFillTheBoxInProportion) {
    const std::vector<double> weights{6, 6, 4, 3, 2, 2, 1, 0};
    const TLayoutBox box{10, 20, 60, 40, true};
    const auto tiles = Squarify(weights, box);
    ASSERT_EQ(tiles.size(), weights.size());
    double area = 0;
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        area += tiles[i].Width * tiles[i].Height;
        EXPECT_NEAR(tiles[i].Width * tiles[i].Height, box.Width * box.Height * weights[i] / 24, 1e-6);
        if (weights[i] == 0) continue;
        EXPECT_TRUE(Contains(box, {tiles[i].X, tiles[i].Y}) &&
                    Contains(box, {tiles[i].Right(), tiles[i].Bottom()}));
        EXPECT_LE(std::max(tiles[i].Width / tiles[i].Height, tiles[i].Height / tiles[i].Width), 3.0)
            << "tile " << i << " is a sliver";
    }
    EXPECT_NEAR(area, box.Width * box.Height, 1e-6);
    LayoutTest::ExpectNoOverlap(std::vector<TLayoutBox>(tiles.begin(), tiles.end() - 1));
}

TEST(ChartTreemapLayout, LeavesSitInTheirSectionSizedByValue) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(
        Load(doc, "treemap-beta\n\"S\"\n  \"a\": 30\n  \"b\": 10\n  \"c\": 20\n\"T\"\n  \"d\": 60\n"));
    std::vector<TLayoutBox> boxes;  // S, its leaves (in the order drawn), T, d
    for (const auto* r : ItemsOf<TORXBaseRectangle>(doc)) boxes.push_back(SpanOf(*r));
    ASSERT_EQ(boxes.size(), 6u);
    const TLayoutBox& s = boxes[0];
    const TLayoutBox& t = boxes[4];
    EXPECT_NEAR(s.Width * s.Height, t.Width * t.Height, 1e-2) << "both sections weigh 60";
    const std::vector<TLayoutBox> leaves(boxes.begin() + 1, boxes.begin() + 4);
    for (const auto& leaf : leaves)
        EXPECT_TRUE(Contains(s, {leaf.X, leaf.Y}) && Contains(s, {leaf.Right(), leaf.Bottom()}));
    EXPECT_NEAR((leaves[0].Width * leaves[0].Height) / (leaves[1].Width * leaves[1].Height), 3, 1e-3);
    EXPECT_NEAR((leaves[2].Width * leaves[2].Height) / (leaves[1].Width * leaves[1].Height), 2, 1e-3);
    LayoutTest::ExpectNoOverlap(leaves);
    EXPECT_NE(TextItem(doc, "S  60"), nullptr) << "a section's header names its total";
}

}  // namespace
}  // namespace Orvex
