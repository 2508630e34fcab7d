// Timing diagrams drawn on a shared time axis: concise segments and robust steps placed by their times,
// clocks as square waves, messages from the sender's signal to the receiver's lane.
#include <gtest/gtest.h>

#include <cmath>

#include "host/layout/diagram_loader.h"
#include "orvex/items/line_items.h"
#include "tests/host/chart_items_util.h"

namespace Orvex {
namespace {

using ChartTest::BoxOf;
using ChartTest::ItemsOf;
using ChartTest::PlacedFlow;
using ChartTest::PointOf;

constexpr const char* kText =
    "@startuml\n"
    "robust \"Bus\" as B\n"
    "concise A\n"
    "clock C with period 100\n"
    "@0\nA is Idle\nB is Low\n"
    "@100\nA is Busy\nB is High\n"
    "@300\nA is Idle\nB -> A : go\n"
    "@enduml\n";

std::vector<TLayoutPoint> PointsOf(const TORXBasePolyLine& line) {
    std::vector<TLayoutPoint> out;
    for (std::int32_t i = 1; i <= static_cast<std::int32_t>(line.Points().size()); ++i)
        out.push_back(PointOf(line, i));
    return out;
}

TEST(TimingLayout, StatesSitAtTheirTimesOnOneAxis) {
    TORXHeadlessLabel doc;
    TDiagramPlacement placement;
    ASSERT_TRUE(LoadDiagramWithLayout(doc, kText, TQVLDiagramFormat::dgPlantUML, placement));
    const TORXBaseFlow* idle = PlacedFlow(doc, placement, "A@0");
    const TORXBaseFlow* busy = PlacedFlow(doc, placement, "A@100");
    const TORXBaseFlow* idleAgain = PlacedFlow(doc, placement, "A@300");
    ASSERT_TRUE(idle && busy && idleAgain);
    EXPECT_EQ(busy->Text(), "Busy");
    const double x0 = BoxOf(*idle).X, x100 = BoxOf(*busy).X, x300 = BoxOf(*idleAgain).X;
    EXPECT_NEAR(x300 - x100, 2 * (x100 - x0), 1e-3);
    EXPECT_NEAR(BoxOf(*busy).Right(), x300, 1e-3);  // a state lasts until the next change

    std::vector<TLayoutPoint> bus, clock;
    for (const TORXBasePolyLine* line : ItemsOf<TORXBasePolyLine>(doc)) {
        if (line->ToType() == TQVLTermType::ttFillArrow) continue;
        (line->Points().size() > 6 ? clock : bus) = PointsOf(*line);
    }
    // The robust lane steps up from "Low" to "High" at 100: two points at that x. "Low", seen first, is
    // the lowest level.
    ASSERT_EQ(bus.size(), 4u);
    EXPECT_NEAR(bus[1].X, x100, 1e-3);
    EXPECT_NEAR(bus[2].X, x100, 1e-3);
    EXPECT_LT(bus[2].Y, bus[1].Y);
    // The clock rises every 100 units over the axis (0 to 400, at least four periods, and the tail).
    int rises = 0;
    for (std::size_t i = 1; i < clock.size(); ++i)
        if (std::abs(clock[i].X - clock[i - 1].X) < 1e-6 && clock[i].Y < clock[i - 1].Y) ++rises;
    EXPECT_EQ(rises, 5);
    EXPECT_NEAR(clock[2].X - clock[1].X, (x100 - x0) / 2, 1e-3);  // the default pulse is half a period

    // The message leaves the bus at its "High" level at 300 and ends on top of A's lane.
    std::vector<const TORXBasePolyLine*> arrows;
    for (const TORXBasePolyLine* line : ItemsOf<TORXBasePolyLine>(doc))
        if (line->ToType() == TQVLTermType::ttFillArrow) arrows.push_back(line);
    ASSERT_EQ(arrows.size(), 1u);
    const auto arrow = PointsOf(*arrows[0]);
    EXPECT_NEAR(arrow.front().X, x300, 1e-3);
    EXPECT_NEAR(arrow.front().Y, bus[2].Y, 1e-3);
    EXPECT_NEAR(arrow.back().Y, BoxOf(*idleAgain).Y, 1e-3);
    EXPECT_NE(ChartTest::TextItem(doc, "go"), nullptr);
    EXPECT_NE(ChartTest::TextItem(doc, "300"), nullptr);  // an axis label
}

TEST(TimingLayout, AnalogValuesAreJoinedByStraightLinesScaledToTheirRange) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDiagramWithLayout(doc,
                                      "@startuml\nanalog V\n@0\nV is 2\n@10\nV is 6\n@20\nV is 4\n@enduml\n",
                                      TQVLDiagramFormat::dgPlantUML));
    const auto lines = ItemsOf<TORXBasePolyLine>(doc);
    ASSERT_EQ(lines.size(), 1u);
    const auto points = PointsOf(*lines[0]);
    ASSERT_EQ(points.size(), 4u);  // the three values and the run to the end of the axis
    EXPECT_NEAR(points[1].X - points[0].X, points[2].X - points[1].X, 5e-3);  // points are whole micrometres
    // 6 is the top of the range and 2 its bottom; 4 lies half way.
    EXPECT_LT(points[1].Y, points[0].Y);
    EXPECT_NEAR(points[2].Y, (points[0].Y + points[1].Y) / 2, 5e-3);
    EXPECT_NE(ChartTest::TextItem(doc, "6"), nullptr);
}

TEST(TimingLayout, HiddenAndUncertainConciseStates) {
    TORXHeadlessLabel doc;
    TDiagramPlacement placement;
    ASSERT_TRUE(LoadDiagramWithLayout(doc,
                                      "@startuml\nconcise A\n@0\nA is x\n@10\nA is {-}\n@20\nA is {y,z}\n"
                                      "@30\nA is x\n@enduml\n",
                                      TQVLDiagramFormat::dgPlantUML, placement));
    EXPECT_EQ(PlacedFlow(doc, placement, "A@10"), nullptr);
    const TORXBaseFlow* uncertain = PlacedFlow(doc, placement, "A@20");
    ASSERT_NE(uncertain, nullptr);
    EXPECT_EQ(uncertain->Text(), "y,z");
    EXPECT_NE(uncertain->BackColor(), PlacedFlow(doc, placement, "A@0")->BackColor());
}

TEST(TimingLayout, ExtremeTimesAndFastClocksStayBounded) {
    // Times too far apart to subtract, and a clock a billion times faster than the span: the drawing is
    // held to a bounded number of items instead of running away.
    for (const char* body : {"concise A\n@0\nA is x\n@1e308\nA is y\n@-1e308\nA is z\n",
                             "clock C with period 0.000001\nconcise A\n@0\nA is x\n@1000\nA is y\n"}) {
        SCOPED_TRACE(body);
        TORXHeadlessLabel doc;
        ASSERT_TRUE(LoadDiagramWithLayout(doc, std::string("@startuml\n") + body + "@enduml\n",
                                          TQVLDiagramFormat::dgPlantUML));
        EXPECT_LT(doc.GetItemsCount(), 200);
        for (const TORXBasePolyLine* line : ItemsOf<TORXBasePolyLine>(doc))
            EXPECT_LT(line->Points().size(), 10000u);
    }
}

}  // namespace
}  // namespace Orvex
