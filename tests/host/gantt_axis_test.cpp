// The gantt time axis: automatic round steps, written tick intervals, PlantUML scales and day numbers.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/layout/gantt_axis.h"

namespace Orvex {
namespace {

TGanttTime At(int y, int m, int d, int h = 0, int min = 0) {
    return GanttFromCivil({y, m, d, h, min});
}

std::vector<std::string> Labels(const TQVLGanttChart& chart, TGanttTime from, TGanttTime to) {
    std::vector<std::string> labels;
    for (const TGanttTick& t : GanttTicks(chart, from, to)) labels.push_back(t.Label);
    return labels;
}

TEST(GanttAxis, AutomaticTicksTakeRoundSteps) {
    TQVLGanttChart chart;
    // A week: one tick a day, at midnight, the default label being the ISO date.
    const auto days = Labels(chart, At(2024, 1, 1, 6), At(2024, 1, 9));
    ASSERT_EQ(days.size(), 8u);
    EXPECT_EQ(days.front(), "2024-01-02");
    EXPECT_EQ(days.back(), "2024-01-09");
    // Two days: every six hours.
    EXPECT_EQ(Labels(chart, At(2024, 1, 2), At(2024, 1, 4)).size(), 9u);
    // Half a year: the first of each month.
    chart.AxisFormat = "%b";
    EXPECT_EQ(Labels(chart, At(2024, 1, 10), At(2024, 6, 20)),
              (std::vector<std::string>{"Feb", "Mar", "Apr", "May", "Jun"}));
    // Five hours: every half hour.
    chart.AxisFormat = "%H:%M";
    const auto hours = Labels(chart, At(2024, 1, 1, 9), At(2024, 1, 1, 14));
    ASSERT_EQ(hours.size(), 11u);
    EXPECT_EQ(hours[1], "09:30");
}

TEST(GanttAxis, WrittenIntervalsFallOnRoundValues) {
    TQVLGanttChart chart;
    chart.AxisFormat = "%d %a";
    chart.TickInterval = "2day";  // odd days of the month
    EXPECT_EQ(Labels(chart, At(2024, 1, 2), At(2024, 1, 8)),
              (std::vector<std::string>{"03 Wed", "05 Fri", "07 Sun"}));
    chart.TickInterval = "1week";  // Sundays
    EXPECT_EQ(Labels(chart, At(2024, 1, 2), At(2024, 1, 20)), (std::vector<std::string>{"07 Sun", "14 Sun"}));
    chart.WeekStart = 1;  // "weekday monday"
    EXPECT_EQ(Labels(chart, At(2024, 1, 2), At(2024, 1, 20)), (std::vector<std::string>{"08 Mon", "15 Mon"}));
    chart.TickInterval = "1fortnight";  // not an interval: automatic ticks instead, daily over a week
    EXPECT_EQ(Labels(chart, At(2024, 1, 1, 6), At(2024, 1, 9)).size(), 8u);
}

TEST(GanttAxis, ProjectScalesAndUndatedDays) {
    TQVLGanttChart chart;
    chart.FromPlantUML = true;
    chart.Scale = TQVLGanttChart::TScale::gsWeekly;
    EXPECT_EQ(Labels(chart, At(2024, 1, 3), At(2024, 1, 20)), (std::vector<std::string>{"8 Jan", "15 Jan"}));
    chart.Scale = TQVLGanttChart::TScale::gsQuarterly;
    EXPECT_EQ(Labels(chart, At(2024, 1, 1), At(2024, 12, 31)),
              (std::vector<std::string>{"Q1 2024", "Q2 2024", "Q3 2024", "Q4 2024"}));
    chart.Scale = TQVLGanttChart::TScale::gsDaily;
    chart.Undated = true;
    EXPECT_EQ(Labels(chart, At(2024, 1, 1), At(2024, 1, 4)), (std::vector<std::string>{"1", "2", "3", "4"}));
}

}  // namespace
}  // namespace Orvex
