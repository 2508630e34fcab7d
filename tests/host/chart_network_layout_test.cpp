// Network diagrams drawn as bars with hosts beneath: each host below the first network it sits on, one
// wire per network it sits on with the address beside it, groups shaded around their hosts.
#include <gtest/gtest.h>

#include <cmath>

#include "host/layout/diagram_loader.h"
#include "orvex/items/line_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/shape_items.h"
#include "tests/host/chart_items_util.h"

namespace Orvex {
namespace {

using ChartTest::BoxOf;
using ChartTest::ItemsOf;
using ChartTest::PlacedFlow;
using ChartTest::PointOf;

constexpr const char* kText =
    "@startuml\nnwdiag {\n"
    "  inet -- fw\n"
    "  network outside { address = \"10.0.0.0/24\"; fw [address = \"10.0.0.1\"]; web; }\n"
    "  network inside { fw [address = \"192.168.0.1\"]; db [shape = database]; }\n"
    "  group { web; db; }\n"
    "}\n@enduml\n";

TEST(NetworkLayout, HostsHangBelowTheirFirstNetworkWithAWireToEach) {
    TORXHeadlessLabel doc;
    TDiagramPlacement placement;
    ASSERT_TRUE(LoadDiagramWithLayout(doc, kText, TQVLDiagramFormat::dgPlantUML, placement));
    const TORXBaseFlow* inet = PlacedFlow(doc, placement, "inet");
    const TORXBaseFlow* fw = PlacedFlow(doc, placement, "fw");
    const TORXBaseFlow* web = PlacedFlow(doc, placement, "web");
    const TORXBaseFlow* db = PlacedFlow(doc, placement, "db");
    ASSERT_TRUE(inet && fw && web && db);
    EXPECT_EQ(db->FlowType(), TQVLFlowType::ftDatabase);
    // fw and web hang below "outside", db below "inside", which lies below them; inet, on no network,
    // stands above the host it is linked to.
    EXPECT_NEAR(BoxOf(*fw).Y, BoxOf(*web).Y, 1e-6);
    EXPECT_GT(BoxOf(*db).Y, BoxOf(*fw).Bottom());
    EXPECT_LT(BoxOf(*inet).Bottom(), BoxOf(*fw).Y);
    EXPECT_NEAR(BoxOf(*inet).Center().X, BoxOf(*fw).Center().X, 1e-6);
    const auto links = ItemsOf<TORXBaseLink>(doc);
    ASSERT_EQ(links.size(), 1u);
    EXPECT_EQ(links[0]->FromFlow(), inet);
    EXPECT_EQ(links[0]->ToFlow(), fw);

    // fw sits on both networks: a wire leaves its top (up to "outside") and one its bottom (down to
    // "inside"); web has only the first.
    int fwUp = 0, fwDown = 0, webWires = 0;
    for (const TORXBaseLine* line : ItemsOf<TORXBaseLine>(doc)) {
        const TLayoutPoint a = PointOf(*line, 1), b = PointOf(*line, 2);
        if (std::abs(a.X - b.X) > 1e-3) continue;
        if (std::abs(a.X - BoxOf(*fw).Center().X) < 1e-3) {
            fwUp += std::abs(b.Y - BoxOf(*fw).Y) < 1e-3 ? 1 : 0;
            fwDown += std::abs(a.Y - BoxOf(*fw).Bottom()) < 1e-3 ? 1 : 0;
        }
        if (std::abs(a.X - BoxOf(*web).Center().X) < 1e-3) ++webWires;
    }
    EXPECT_EQ(fwUp, 1);
    EXPECT_EQ(fwDown, 1);
    EXPECT_EQ(webWires, 1);
    for (const char* text : {"10.0.0.1", "192.168.0.1", "outside", "10.0.0.0/24", "inside"})
        EXPECT_NE(ChartTest::TextItem(doc, text), nullptr) << text;

    // The group's shading covers both its hosts.
    bool covered = false;
    for (const TORXBaseRectangle* rect : ItemsOf<TORXBaseRectangle>(doc)) {
        const TLayoutPoint p1 = PointOf(*rect, 1), p2 = PointOf(*rect, 2);
        const auto inside = [&](const TLayoutBox& box) {
            return box.X >= p1.X && box.Right() <= p2.X && box.Y >= p1.Y && box.Bottom() <= p2.Y;
        };
        covered = covered || (inside(BoxOf(*web)) && inside(BoxOf(*db)));
    }
    EXPECT_TRUE(covered);
}

}  // namespace
}  // namespace Orvex
