// Salt widgets drawn in their grid cells: columns as wide as their widest cell, rows aligned, marks drawn
// for checked boxes and radios, and a lone separator across the grid.
#include <gtest/gtest.h>

#include "host/layout/diagram_loader.h"
#include "orvex/items/line_items.h"
#include "orvex/items/shape_items.h"
#include "tests/host/chart_items_util.h"

namespace Orvex {
namespace {

using ChartTest::BoxOf;
using ChartTest::ItemsOf;
using ChartTest::PointOf;

const TORXBaseFlow* Button(const TORXBaseLabel& doc, const std::string& caption) {
    for (const TORXBaseFlow* flow : ItemsOf<TORXBaseFlow>(doc))
        if (flow->Text() == caption) return flow;
    return nullptr;
}

TEST(SaltLayout, CellsShareColumnsAndRows) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDiagramWithLayout(doc,
                                      "@startsalt\n{+\n"
                                      "  [Short] | [A much longer caption]\n"
                                      "  [Wide button here] | [B]\n"
                                      "  ==\n"
                                      "  (X) on | [X] done\n"
                                      "}\n@endsalt\n",
                                      TQVLDiagramFormat::dgPlantUML));
    const TORXBaseFlow* shortButton = Button(doc, "Short");
    const TORXBaseFlow* longButton = Button(doc, "A much longer caption");
    const TORXBaseFlow* wide = Button(doc, "Wide button here");
    const TORXBaseFlow* b = Button(doc, "B");
    ASSERT_TRUE(shortButton && longButton && wide && b);
    // The second column starts right of the widest cell of the first, on both rows.
    EXPECT_NEAR(BoxOf(*longButton).X, BoxOf(*b).X, 1e-3);
    EXPECT_GT(BoxOf(*b).X, BoxOf(*wide).Right());
    EXPECT_NEAR(BoxOf(*shortButton).Y, BoxOf(*longButton).Y, 1e-3);
    EXPECT_GT(BoxOf(*wide).Y, BoxOf(*shortButton).Bottom());

    // The "==" separator alone on its row spans both columns: two lines from the first column's left to
    // the second column's right.
    int across = 0;
    for (const TORXBaseLine* line : ItemsOf<TORXBaseLine>(doc)) {
        const TLayoutPoint a = PointOf(*line, 1), z = PointOf(*line, 2);
        if (std::abs(a.Y - z.Y) < 1e-3 && a.X <= BoxOf(*wide).X + 1e-3 &&
            z.X >= BoxOf(*longButton).Right() - 1e-3)
            ++across;
    }
    EXPECT_EQ(across, 2);
    // The checked radio has its dot, the checked box its tick.
    EXPECT_EQ(ItemsOf<TORXBaseCircle>(doc).size(), 2u);
    EXPECT_EQ(ItemsOf<TORXBasePolyLine>(doc).size(), 1u);
    EXPECT_NE(ChartTest::TextItem(doc, "on"), nullptr);
}

}  // namespace
}  // namespace Orvex
