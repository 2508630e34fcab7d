// The packet drawer: a field spans exactly its bits, rows hold 32 bits, and a field crossing a row's end
// is split into a piece on each row.
#include <gtest/gtest.h>

#include "orvex/items/shape_items.h"
#include "tests/host/chart_layout_test_util.h"
#include "tests/host/layout_test_util.h"

namespace Orvex {
namespace {

using ChartLayoutTest::ItemsOf;
using ChartLayoutTest::Load;
using ChartLayoutTest::SpanOf;
using ChartLayoutTest::TextItem;

TEST(ChartPacketLayout, FieldsSpanTheirBitsAndWrapAtTheRowEnd) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(
        Load(doc, "packet-beta\n  0-15: \"A\"\n  16-31: \"B\"\n  32-63: \"C\"\n  64: \"F\"\n  +40: \"W\"\n"));
    std::vector<TLayoutBox> boxes;
    for (const auto* r : ItemsOf<TORXBaseRectangle>(doc)) boxes.push_back(SpanOf(*r));
    ASSERT_EQ(boxes.size(), 6u) << "W (bits 65-104) crosses a row's end and comes in two pieces";
    const TLayoutBox& a = boxes[0];
    const TLayoutBox& b = boxes[1];
    const TLayoutBox& c = boxes[2];
    const TLayoutBox& f = boxes[3];
    const double bit = a.Width / 16;

    EXPECT_NEAR(b.X, a.Right(), 1e-3);
    EXPECT_NEAR(b.Width, a.Width, 1e-3);
    EXPECT_NEAR(b.Y, a.Y, 1e-3);
    EXPECT_NEAR(c.X, a.X, 1e-3) << "bit 32 starts the second row";
    EXPECT_GT(c.Y, a.Bottom());
    EXPECT_NEAR(c.Width, 32 * bit, 1e-3);
    EXPECT_NEAR(f.Width, bit, 1e-3);
    EXPECT_NEAR(f.X, a.X, 1e-3);

    const TLayoutBox& first = boxes[4];
    const TLayoutBox& rest = boxes[5];
    EXPECT_NEAR(first.X, f.Right(), 1e-3);
    EXPECT_NEAR(first.Right(), c.Right(), 1e-3) << "the first piece runs to the row's end";
    EXPECT_NEAR(first.Width, 31 * bit, 1e-3);
    EXPECT_NEAR(rest.X, a.X, 1e-3);
    EXPECT_NEAR(rest.Width, 9 * bit, 1e-3);
    EXPECT_GT(rest.Y, first.Bottom());

    EXPECT_NE(TextItem(doc, "104"), nullptr) << "the last bit is numbered";
}

TEST(ChartPacketLayout, TheExampleDrawsEveryField) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(Load(doc, LayoutTest::ReadExample("mermaid/packet.mmd")));
    EXPECT_EQ(ItemsOf<TORXBaseRectangle>(doc).size(), 19u);
    EXPECT_NE(TextItem(doc, "Sequence number"), nullptr);
}

}  // namespace
}  // namespace Orvex
