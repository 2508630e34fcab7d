// JSON and YAML drawn as a tree of tables: rows as cells, nested values in tables to the right joined to
// their row, and highlighted rows filled.
#include <gtest/gtest.h>

#include "host/layout/diagram_loader.h"
#include "orvex/items/link_items.h"
#include "tests/host/chart_items_util.h"

namespace Orvex {
namespace {

using ChartTest::BoxOf;
using ChartTest::ItemsOf;
using ChartTest::PlacedFlow;

TEST(DataTreeLayout, NestedValuesSitRightOfTheirRowAndAreLinkedToIt) {
    TORXHeadlessLabel doc;
    TDiagramPlacement placement;
    ASSERT_TRUE(LoadDiagramWithLayout(doc,
                                      "@startjson\n#highlight \"owner\" / \"team\"\n"
                                      "{\"name\": \"x\", \"owner\": {\"team\": \"a\", \"size\": 4}, "
                                      "\"tags\": [\"p\", \"q\"], \"empty\": []}\n@endjson\n",
                                      TQVLDiagramFormat::dgPlantUML, placement));
    const TORXBaseFlow* owner = PlacedFlow(doc, placement, "owner");
    const TORXBaseFlow* team = PlacedFlow(doc, placement, "owner/team");
    const TORXBaseFlow* size = PlacedFlow(doc, placement, "owner/size");
    const TORXBaseFlow* firstTag = PlacedFlow(doc, placement, "tags/0");
    const TORXBaseFlow* secondTag = PlacedFlow(doc, placement, "tags/1");
    ASSERT_TRUE(owner && team && size && firstTag && secondTag);
    EXPECT_EQ(owner->Text(), "owner");
    // The child table starts right of the parent table, no higher than the row that holds it.
    EXPECT_GT(BoxOf(*team).X, BoxOf(*owner).Right() + 5);
    EXPECT_GE(BoxOf(*team).Y, BoxOf(*owner).Y - 1e-6);
    EXPECT_NEAR(BoxOf(*size).Y, BoxOf(*team).Bottom(), 1e-3);  // rows stack without gaps
    // Tables of one parent stack downwards without overlapping.
    EXPECT_GE(BoxOf(*firstTag).Y, BoxOf(*size).Bottom());
    EXPECT_NEAR(BoxOf(*secondTag).X, BoxOf(*firstTag).X, 1e-6);  // array rows have no key column

    // One link per nested value, from its row's value cell to the nested table's first cell; the empty
    // array is a value written in its cell.
    const auto links = ItemsOf<TORXBaseLink>(doc);
    ASSERT_EQ(links.size(), 2u);
    EXPECT_EQ(links[0]->ToFlow(), team);
    EXPECT_NEAR(BoxOf(*links[0]->FromFlow()).Y, BoxOf(*owner).Y, 1e-6);
    EXPECT_EQ(links[1]->ToFlow(), firstTag);
    bool emptyShown = false;
    for (const TORXBaseFlow* flow : ItemsOf<TORXBaseFlow>(doc))
        emptyShown = emptyShown || flow->Text() == "[]";
    EXPECT_TRUE(emptyShown);

    // The highlighted row is filled differently from its neighbour.
    EXPECT_NE(team->BackColor(), size->BackColor());
}

TEST(DataTreeLayout, AScalarDocumentIsOneCell) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDiagramWithLayout(doc, "@startyaml\nhello\n@endyaml\n", TQVLDiagramFormat::dgPlantUML));
    const auto flows = ItemsOf<TORXBaseFlow>(doc);
    ASSERT_EQ(flows.size(), 1u);
    EXPECT_EQ(flows[0]->Text(), "hello");
}

TEST(DataTreeLayout, AnInvalidDocumentIsNotLoaded) {
    TORXHeadlessLabel doc;
    EXPECT_FALSE(
        LoadDiagramWithLayout(doc, "@startjson\n{\"a\": }\n@endjson\n", TQVLDiagramFormat::dgPlantUML));
    EXPECT_EQ(doc.GetItemsCount(), 0);
}

}  // namespace
}  // namespace Orvex
