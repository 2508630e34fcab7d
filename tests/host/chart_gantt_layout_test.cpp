// Gantt charts drawn: bars sit on the axis at their dates, milestones are diamonds on theirs, excluded
// days are shaded, the today line is where today is, and dependencies are links between the bars.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "host/layout/diagram_loader.h"
#include "orvex/diagrams/chart_gantt.h"
#include "orvex/document/headless.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/shape_items.h"
#include "orvex/items/text_items.h"

namespace Orvex {
namespace {

template <class T>
std::vector<T*> ItemsOf(const TORXBaseLabel& doc) {
    std::vector<T*> items;
    for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i)
        if (auto* item = dynamic_cast<T*>(doc.GetItem(i))) items.push_back(item);
    return items;
}

double MM(std::int64_t base) {
    return static_cast<double>(base) / 1000.0;
}

class GanttLayoutTest : public ::testing::Test {
  protected:
    void SetUp() override { QVLSetGanttToday(GanttFromCivil({2024, 1, 5, 12})); }
    void TearDown() override { QVLSetGanttToday(std::nullopt); }

    void Load(const std::string& text, TQVLDiagramFormat format = TQVLDiagramFormat::dgMermaid) {
        ASSERT_TRUE(LoadDiagramWithLayout(fDoc, text, format));
    }
    TORXBaseFlow& Flow(const std::string& caption) {
        for (TORXBaseFlow* f : ItemsOf<TORXBaseFlow>(fDoc))
            if (f->Text() == caption) return *f;
        throw std::runtime_error("no box " + caption);
    }
    // The axis position of a date: the middle of its tick label.
    double AxisX(const std::string& label) {
        for (TORXBaseText* t : ItemsOf<TORXBaseText>(fDoc))
            if (t->Text() == label) return MM(t->BoundsRect().Left + t->BoundsRect().Right) / 2;
        throw std::runtime_error("no tick " + label);
    }
    std::vector<TORXBaseLine*> LinesOf(TAlphaColor color) {
        std::vector<TORXBaseLine*> lines;
        for (TORXBaseLine* l : ItemsOf<TORXBaseLine>(fDoc))
            if (l->Color() == color) lines.push_back(l);
        return lines;
    }

    TORXHeadlessLabel fDoc;
};

constexpr const char* kDaily =
    "gantt\n    dateFormat YYYY-MM-DD\n    tickInterval 1day\n    axisFormat %Y-%m-%d\n";

TEST_F(GanttLayoutTest, ATaskAfterTwoOthersStartsAtTheLaterEndOnTheAxis) {
    Load(std::string(kDaily) +
         "    section Plan\n    Early :a, 2024-01-01, 3d\n    Late :b, 2024-01-02, 5d\n"
         "    Both :c, after a b, 2d\n    Done :milestone, m, after c, 0d\n");
    const TQVLRect both = Flow("Both").Box();
    EXPECT_NEAR(MM(both.Left), AxisX("2024-01-07"), 0.05);
    EXPECT_NEAR(MM(both.Right), AxisX("2024-01-09"), 0.05);
    EXPECT_NEAR(MM(Flow("Early").Box().Left), AxisX("2024-01-01"), 0.05);
    // Rows in source order, top to bottom.
    EXPECT_LT(Flow("Early").Box().Top, Flow("Late").Box().Top);
    EXPECT_LT(Flow("Late").Box().Top, both.Top);
    // The milestone is a diamond centred on its date, its caption beside it.
    std::vector<TORXBaseFlow*> diamonds;
    for (TORXBaseFlow* f : ItemsOf<TORXBaseFlow>(fDoc))
        if (f->FlowType() == TQVLFlowType::ftDecision) diamonds.push_back(f);
    ASSERT_EQ(diamonds.size(), 1u);
    const TQVLRect d = diamonds[0]->Box();
    EXPECT_NEAR(MM(d.Left + d.Right) / 2, AxisX("2024-01-09"), 0.05);
    // Today (the 5th at noon) is inside the chart: a red line half way between two ticks.
    const auto today = LinesOf(0xFFFF0000u);
    ASSERT_EQ(today.size(), 1u);
    EXPECT_NEAR(MM(today[0]->GetPointX(1)), (AxisX("2024-01-05") + AxisX("2024-01-06")) / 2, 0.05);
}

TEST_F(GanttLayoutTest, ExcludedDaysAreShadedAndBarsCrossThem) {
    Load(std::string(kDaily) + "    excludes weekends\n    todayMarker off\n    Week :w, 2024-01-04, 5d\n");
    // Thursday plus five working days ends on Thursday the 11th, over the weekend.
    const TQVLRect week = Flow("Week").Box();
    EXPECT_NEAR(MM(week.Right), AxisX("2024-01-11"), 0.05);
    std::vector<TORXBaseRectangle*> shaded;
    for (TORXBaseRectangle* r : ItemsOf<TORXBaseRectangle>(fDoc))
        if (r->BackColor() == 0xFFE6E6E6u) shaded.push_back(r);
    ASSERT_EQ(shaded.size(), 1u);
    EXPECT_NEAR(MM(shaded[0]->BoundsRect().Left), AxisX("2024-01-06"), 0.05);
    EXPECT_NEAR(MM(shaded[0]->BoundsRect().Right), AxisX("2024-01-08"), 0.05);
    EXPECT_TRUE(LinesOf(0xFFFF0000u).empty());  // todayMarker off

    TORXHeadlessLabel styled;
    ASSERT_TRUE(LoadDiagramWithLayout(
        styled,
        std::string(kDaily) + "    todayMarker stroke-width:5px,stroke:#00ff00\n    W :w, 2024-01-04, 5d\n",
        TQVLDiagramFormat::dgMermaid));
    std::size_t green = 0;
    for (TORXBaseLine* l : ItemsOf<TORXBaseLine>(styled)) green += l->Color() == 0xFF00FF00u ? 1 : 0;
    EXPECT_EQ(green, 1u);
}

TEST_F(GanttLayoutTest, CompactChartsShareRowsWhereTasksDoNotOverlap) {
    Load("---\nconfig:\n  gantt:\n    displayMode: compact\n---\n" + std::string(kDaily) +
         "    section S\n    One :a, 2024-01-01, 2d\n    Two :b, 2024-01-02, 2d\n    Three :c, after a, 2d\n"
         "    section T\n    Four :d, 2024-01-01, 1d\n");
    EXPECT_EQ(Flow("One").Box().Top, Flow("Three").Box().Top);  // Three starts where One ends
    EXPECT_LT(Flow("One").Box().Top, Flow("Two").Box().Top);
    EXPECT_LT(Flow("Two").Box().Top, Flow("Four").Box().Top);  // a section keeps its own rows
}

TEST_F(GanttLayoutTest, StylesFollowTheTags) {
    Load(std::string(kDaily) +
         "    Plain :p, 2024-01-01, 3d\n    Finished :done, d, 2024-01-01, 3d\n    Urgent :crit, c, "
         "2024-01-01, 3d\n"
         "    Now :active, a, 2024-01-01, 3d\n");
    EXPECT_EQ(Flow("Plain").BackColor(), 0xFF8A90DDu);
    EXPECT_EQ(Flow("Finished").BackColor(), 0xFFD3D3D3u);
    EXPECT_EQ(Flow("Urgent").BackColor(), 0xFFFF0000u);
    EXPECT_EQ(Flow("Now").BackColor(), 0xFFBFC7FFu);
}

TEST_F(GanttLayoutTest, PlantUMLDependenciesAreLinksBetweenTheBars) {
    Load(
        "@startgantt\nProject starts 2024-01-01\n[Design] lasts 3 days\nthen [Build] lasts 4 days\n"
        "[Design] -> [Docs]\n[Docs] lasts 2 days\n@endgantt\n",
        TQVLDiagramFormat::dgPlantUML);
    const auto links = ItemsOf<TORXBaseLink>(fDoc);
    ASSERT_EQ(links.size(), 2u);
    EXPECT_EQ(links[0]->FromID(), Flow("Design").InID());
    EXPECT_EQ(links[0]->ToID(), Flow("Build").InID());
    EXPECT_EQ(links[1]->ToID(), Flow("Docs").InID());
    // Build starts where Design ends.
    EXPECT_EQ(Flow("Build").Box().Left, Flow("Design").Box().Right);
}

TEST_F(GanttLayoutTest, PlantUMLNotesResourcesProgressAndMarkers) {
    Load(
        "@startgantt\nProject starts 2024-01-01\n[Write] on {Alice} lasts 10 days\n[Write] is 40% completed\n"
        "note bottom\nCheck the figures\nend note\n[Print] lasts 2 days\n@endgantt\n",
        TQVLDiagramFormat::dgPlantUML);
    const TQVLRect bar = Flow("Write {Alice}").Box();  // resources follow the caption
    const TQVLRect note = Flow("Check the figures").Box();
    EXPECT_EQ(Flow("Check the figures").FlowType(), TQVLFlowType::ftDocument);
    EXPECT_GE(note.Top, bar.Bottom);  // under its task, above the next row
    EXPECT_LE(note.Bottom, Flow("Print").Box().Top);
    // Progress: a strip along the bar's foot, 40% of its length.
    std::size_t strips = 0;
    for (TORXBaseRectangle* r : ItemsOf<TORXBaseRectangle>(fDoc)) {
        const TQVLRect b = r->BoundsRect();
        if (b.Left != bar.Left || b.Bottom != bar.Bottom) continue;
        ++strips;
        EXPECT_NEAR(MM(b.Right - b.Left), 0.4 * MM(bar.Right - bar.Left), 0.05);
    }
    EXPECT_EQ(strips, 1u);

    TORXHeadlessLabel marked;
    ASSERT_TRUE(LoadDiagramWithLayout(
        marked, std::string(kDaily) + "    A :a, 2024-01-01, 4d\n    Freeze :vert, f, 2024-01-03, 0d\n",
        TQVLDiagramFormat::dgMermaid));
    std::size_t lines = 0;
    for (TORXBaseLine* l : ItemsOf<TORXBaseLine>(marked)) lines += l->Color() == 0xFF00008Bu ? 1 : 0;
    EXPECT_EQ(lines, 1u);  // a marker is a line, not a row
    EXPECT_EQ(ItemsOf<TORXBaseFlow>(marked).size(), 1u);
}

TEST_F(GanttLayoutTest, ChartsWithErrorsAreNotDrawn) {
    EXPECT_FALSE(LoadDiagramWithLayout(fDoc, "gantt\ndateFormat YYYY-MM-DD\nA :a, after ghost, 2d\n",
                                       TQVLDiagramFormat::dgMermaid));
    EXPECT_EQ(fDoc.GetItemsCount(), 0);
}

}  // namespace
}  // namespace Orvex
