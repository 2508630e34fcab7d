// Gantt chart data: dates read in dayjs-style formats, durations, tasks placed after, until and behind one
// another, days excluded, PlantUML projects, and the diagnostics of bad input.
#include <gtest/gtest.h>

#include <string>

#include "orvex/diagrams/chart_gantt.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using TTask = TQVLGanttChart::TTask;

TGanttTime Day(int y, int m, int d, int h = 0, int min = 0) {
    return GanttFromCivil({y, m, d, h, min});
}

std::string Iso(TGanttTime t) {
    return GanttIso(t, true);
}

// Today is fixed so that formats without a date and the today line are reproducible.
class GanttTest : public ::testing::Test {
  protected:
    void SetUp() override { QVLSetGanttToday(Day(2024, 3, 15, 10, 30)); }
    void TearDown() override { QVLSetGanttToday(std::nullopt); }

    const TQVLGanttChart& Read(const std::string& text,
                               TQVLDiagramFormat format = TQVLDiagramFormat::dgMermaid) {
        fModel = QVLImportDiagram(text, format);
        const auto* chart = dynamic_cast<const TQVLGanttChart*>(fModel->Chart());
        if (chart == nullptr) throw std::runtime_error("no gantt chart");
        return *chart;
    }
    const TTask& Task(const TQVLGanttChart& chart, const std::string& id) {
        const TTask* task = chart.FindTask(id);
        if (task == nullptr) throw std::runtime_error("no task " + id);
        return *task;
    }
    std::string Codes() const {
        std::string codes;
        for (const auto& d : fModel->Diagnostics())
            codes += d.Code + "@" + std::to_string(d.Line) +
                     (d.Severity == TQVLDiagramDiagnosticSeverity::dsError ? "!" : "") + " ";
        return codes;
    }

    std::unique_ptr<TORXDiagramModel> fModel;
};

TEST_F(GanttTest, DatesAreReadStrictlyInTheirFormat) {
    const TGanttTime today = Day(2024, 3, 15);
    struct TCase {
        const char* Text;
        const char* Format;
        const char* Expected;  // "" when refused
    };
    const TCase cases[] = {
        {"2024-02-29", "YYYY-MM-DD", "2024-02-29T00:00:00"},
        {"2023-02-29", "YYYY-MM-DD", ""},  // no such day
        {"2024-1-5", "YYYY-MM-DD", ""},    // two digits wanted
        {"2024-1-5", "YYYY-M-D", "2024-01-05T00:00:00"},
        {"05-01-2024", "DD-MM-YYYY", "2024-01-05T00:00:00"},
        {"Jan 8 2024", "MMM D YYYY", "2024-01-08T00:00:00"},
        {"8th of March 24", "Do [of] MMMM YY", "2024-03-08T00:00:00"},
        {"69-01-01", "YY-MM-DD", "1969-01-01T00:00:00"},
        {"2024-06-01 22:05", "YYYY-MM-DD HH:mm", "2024-06-01T22:05:00"},
        {"09:45", "HH:mm", "2024-03-15T09:45:00"},  // the date is today's
        {"12:30 PM", "hh:mm A", "2024-03-15T12:30:00"},
        {"12:30 AM", "hh:mm A", "2024-03-15T00:30:00"},
        {"25:00", "HH:mm", ""},
        {"86400", "X", "1970-01-02T00:00:00"},
        {"86400000", "x", "1970-01-02T00:00:00"},
        {"2024-01-05", "", ""},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(std::string(c.Text) + " in " + c.Format);
        const auto date = GanttParseDate(c.Text, c.Format, today);
        EXPECT_EQ(date ? Iso(*date) : "", c.Expected);
    }
    // Without a format, the forms a browser reads.
    EXPECT_EQ(Iso(*GanttParseLooseDate("2024/01/05")), "2024-01-05T00:00:00");
    EXPECT_EQ(Iso(*GanttParseLooseDate("Jan 5, 2024")), "2024-01-05T00:00:00");
    EXPECT_EQ(Iso(*GanttParseLooseDate("2019-02-31")), "2019-03-03T00:00:00");
    EXPECT_FALSE(GanttParseLooseDate("2024-13-01"));
    EXPECT_FALSE(GanttParseLooseDate("soon"));
}

TEST_F(GanttTest, DurationsAddCalendarTime) {
    const TGanttTime jan31 = Day(2024, 1, 31, 9);
    auto add = [&](const char* text) {
        const auto d = GanttParseDuration(text);
        return d ? Iso(GanttAdd(jan31, d->Amount, d->Unit)) : std::string("refused");
    };
    EXPECT_EQ(add("1M"), "2024-02-29T09:00:00");  // the day of the month where it exists
    EXPECT_EQ(add("1y"), "2025-01-31T09:00:00");
    EXPECT_EQ(add("1.5d"), "2024-02-02T09:00:00");  // days round to whole days
    EXPECT_EQ(add("2w"), "2024-02-14T09:00:00");
    EXPECT_EQ(add("90m"), "2024-01-31T10:30:00");
    EXPECT_EQ(add("2.5h"), "2024-01-31T11:30:00");
    EXPECT_EQ(add("250ms"), Iso(jan31));  // below a second the ISO form does not show it
    EXPECT_EQ(add("3 days"), "refused");
    EXPECT_EQ(add("999999999999d"), Iso(jan31));  // beyond any calendar: the date stays
    EXPECT_EQ(add("99999999y"), Iso(jan31));
    EXPECT_EQ(add("d"), "refused");
}

TEST_F(GanttTest, AxisLabelsFollowStrftime) {
    const TGanttTime t = Day(2024, 1, 7, 15, 4);
    EXPECT_EQ(GanttStrftime(t, "%Y-%m-%d"), "2024-01-07");
    EXPECT_EQ(GanttStrftime(t, "%-d %b, %a"), "7 Jan, Sun");
    EXPECT_EQ(GanttStrftime(t, "%I:%M %p"), "03:04 PM");
    EXPECT_EQ(GanttStrftime(t, "%e|%j|%V|%%"), " 7|007|01|%");
}

TEST_F(GanttTest, TasksStartAfterTheLatestAndEndUntilTheEarliest) {
    const auto& chart = Read(R"(gantt
    dateFormat YYYY-MM-DD
    section Plan
    Early      :a, 2024-01-01, 3d
    Late       :b, 2024-01-02, 5d
    Both       :c, after a b, 2d
    Follower   :4d
    Stopper    :s, 2023-12-28, until a b
    Uses later :u, after z, 1d
    Later      :z, 2024-02-01, 1w
)");
    EXPECT_EQ(Codes(), "");
    EXPECT_EQ(Task(chart, "c").Start, Day(2024, 1, 7));  // the later end of a and b
    EXPECT_EQ(Task(chart, "c").End, Day(2024, 1, 9));
    // A task without a start follows the one written before it, and gets a generated id.
    EXPECT_EQ(Task(chart, "task1").Start, Day(2024, 1, 9));
    EXPECT_EQ(Task(chart, "task1").End, Day(2024, 1, 13));
    EXPECT_EQ(Task(chart, "s").End, Day(2024, 1, 1));    // the earlier start of a and b
    EXPECT_EQ(Task(chart, "u").Start, Day(2024, 2, 8));  // a task written further down
}

TEST_F(GanttTest, ExcludedDaysLengthenDurations) {
    const auto& chart = Read(R"(gantt
    dateFormat YYYY-MM-DD
    excludes weekends, 2024-01-10
    Friday  :f, 2024-01-05, 1d
    Week    :w, 2024-01-08, 5d
    Dated   :d, 2024-01-05, 2024-01-09
)");
    // Friday's day runs into the weekend: it ends on Monday, but its bar stops on Saturday.
    EXPECT_EQ(Task(chart, "f").End, Day(2024, 1, 8));
    EXPECT_EQ(Task(chart, "f").DrawEnd, Day(2024, 1, 6));
    // Five days from Monday skip Wednesday the 10th and the weekend after it.
    EXPECT_EQ(Task(chart, "w").End, Day(2024, 1, 16));
    // An end written as a date stays where it is.
    EXPECT_EQ(Task(chart, "d").End, Day(2024, 1, 9));
    EXPECT_TRUE(chart.Calendar.IsExcluded(Day(2024, 1, 13)));
    EXPECT_FALSE(chart.Calendar.IsExcluded(Day(2024, 1, 12)));

    const auto& friday = Read(R"(gantt
    dateFormat YYYY-MM-DD
    excludes weekends
    weekend friday
    weekday monday
    includes 2024-01-06
    Thursday :t, 2024-01-04, 2d
)");
    EXPECT_EQ(friday.WeekStart, 1);  // weekly ticks on Mondays
    // Friday is off, Saturday the 6th is worked.
    EXPECT_EQ(Task(friday, "t").End, Day(2024, 1, 7));
}

TEST_F(GanttTest, InclusiveEndsTimesAndTimestamps) {
    const auto& inclusive =
        Read("gantt inclusiveEndDates\ndateFormat YYYY-MM-DD\nOne :a, 2024-03-01, 2024-03-01\n");
    EXPECT_EQ(Task(inclusive, "a").End, Day(2024, 3, 2));

    const auto& hours = Read("gantt\ndateFormat HH:mm\nStandup :s, 09:00, 15m\nCode :c, after s, 2.5h\n");
    EXPECT_EQ(Task(hours, "c").End, Day(2024, 3, 15, 11, 45));
    TJSON json = TJSON::object();
    hours.WriteJson(json);
    EXPECT_EQ(json["sections"][0]["tasks"][1]["end"], "2024-03-15T11:45:00");

    // Start times of a timestamp format count milliseconds, end times its own unit.
    const auto& stamps = Read("gantt\ndateFormat X\nFirst :f, 1000, 10s\nSecond :g, 0, 5\n");
    EXPECT_EQ(Task(stamps, "f").Start, 1000);
    EXPECT_EQ(Task(stamps, "f").End, 11000);
    EXPECT_EQ(Task(stamps, "g").End, 5000);
}

TEST_F(GanttTest, ModelKeysSectionsAndTags) {
    const auto& chart = Read(R"(---
title: Launch
---
gantt
    dateFormat YYYY-MM-DD
    Loose      :l, 2024-01-01, 1d
    section Build
    Code       :done, crit, c, 2024-01-02, 2d
    Ship       :milestone, after c, 0d
    click c href "https://example.com"
    section Empty
)");
    EXPECT_EQ(Codes(), "");
    EXPECT_EQ(fModel->Title(), "Launch");
    TJSON json = TJSON::object();
    chart.WriteJson(json);
    EXPECT_EQ(
        json.dump(),
        R"({"dateFormat":"YYYY-MM-DD","sections":[{"name":"","tasks":[{"id":"l","text":"Loose","start":"2024-01-01",)"
        R"("end":"2024-01-02","milestone":false,"tags":[]}]},{"name":"Build","tasks":[{"id":"c","text":"Code",)"
        R"("start":"2024-01-02","end":"2024-01-04","milestone":false,"tags":["done","crit"]},{"id":"task1",)"
        R"("text":"Ship","start":"2024-01-04","end":"2024-01-04","milestone":true,"tags":[]}]},)"
        R"({"name":"Empty","tasks":[]}]})");
}

TEST_F(GanttTest, BadInputIsNamed) {
    Read("gantt\ndateFormat YYYY-MM-DD\nA :a, 2024-01-01, 2d\nB :b, after nosuch, 1d\n");
    EXPECT_EQ(Codes(), "GANTT_UNKNOWN_TASK@4! ");
    EXPECT_NE(fModel->Diagnostics()[0].MessageText.find("nosuch"), std::string::npos);

    Read(
        "gantt\ndateFormat YYYY-MM-DD\nA :a, 2024-13-30, 2d\nB :b, 2024-01-01, three days\nwhat is this\n"
        "C :c, 2024/02/30, 1d\n");
    EXPECT_EQ(Codes(), "GANTT_UNRECOGNIZED_LINE@5 GANTT_BAD_DATE@3! GANTT_BAD_END@4 GANTT_DATE_FORMAT@6 ");
    // Read as a browser reads it: 30 February is 1 March.
    EXPECT_EQ(Task(*dynamic_cast<const TQVLGanttChart*>(fModel->Chart()), "c").Start, Day(2024, 3, 1));

    Read("gantt\ndateFormat YYYY-MM-DD\nA :a, after b, 2d\nB :b, after a, 1d\n");
    EXPECT_EQ(Codes(), "GANTT_CYCLE@3! GANTT_CYCLE@4! ");

    // Numbers too large for any calendar are refused or leave the date, never overflow.
    Read("gantt\ndateFormat x\nA :a, 99999999999999999999, 1d\nB :b, 2024-01-01, 99999999999w\n");
    EXPECT_EQ(Codes(), "GANTT_BAD_DATE@3! GANTT_DATE_FORMAT@4 ");
    Read("@startgantt\n[A] lasts 999999999999 days\n[A] is 99999% completed\n@endgantt\n",
         TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(Codes(), "GANTT_UNRECOGNIZED_LINE@2 GANTT_UNRECOGNIZED_LINE@3 ");

    Read("gantt\nFirst :2d\nToo many :a, b, c, d\n");
    EXPECT_EQ(Codes(), "GANTT_NO_START@2! GANTT_TASK_DATA@3! ");
}

// [SECTION] PlantUML

TEST_F(GanttTest, PlantUMLTasksFollowOneAnotherOverOpenDays) {
    const auto& chart = Read(R"(@startgantt
Project starts 2024-01-01
saturday are closed
sunday are closed
2024-01-10 is closed
[Design] as [D] lasts 3 days
then [Build] requires 4 days
[Test] starts at [Build]'s end and lasts 1 week
[Design] -> [Docs]
[Docs] on {Alice} lasts 2 days
[Docs] is 40% completed
[Review] ends 2024-01-31 and lasts 2 days
[Release] happens at [Test]'s end
-- Later --
[Fix] starts 2024-01-06 and ends 2024-01-08
note bottom
  Mind the weekend
end note
[Patch] starts D+14 and ends D+15
2024-01-15 to 2024-01-16 are named [Patch days]
Separator just at [Fix]'s end
@endgantt
)",
                             TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(Codes(), "");
    EXPECT_EQ(Task(chart, "D").Text, "Design");
    EXPECT_EQ(Task(chart, "D").End, Day(2024, 1, 4));
    // Thursday, Friday, then Monday and Tuesday: the closed Wednesday the 10th is skipped after.
    EXPECT_EQ(Task(chart, "Build").Start, Day(2024, 1, 4));
    EXPECT_EQ(Task(chart, "Build").End, Day(2024, 1, 10));
    EXPECT_EQ(Task(chart, "Test").Start, Day(2024, 1, 11));  // not on the closed day
    EXPECT_EQ(Task(chart, "Docs").Start, Day(2024, 1, 4));
    EXPECT_EQ(Task(chart, "Docs").Resources, "{Alice}");
    EXPECT_EQ(Task(chart, "Docs").Completed, 40);
    EXPECT_EQ(Task(chart, "Review").Start, Day(2024, 1, 30));
    EXPECT_EQ(Task(chart, "Review").End, Day(2024, 2, 1));
    EXPECT_TRUE(Task(chart, "Release").Milestone);
    EXPECT_EQ(Task(chart, "Release").Start, Task(chart, "Test").End - kGanttMsPerDay);
    // A task starting on a closed Saturday starts on Monday; its end date is its last day.
    EXPECT_EQ(Task(chart, "Fix").Start, Day(2024, 1, 8));
    EXPECT_EQ(Task(chart, "Fix").End, Day(2024, 1, 9));
    EXPECT_EQ(Task(chart, "Patch").Start, Day(2024, 1, 15));  // days counted from the project's start
    EXPECT_EQ(Task(chart, "Patch").End, Day(2024, 1, 17));
    ASSERT_EQ(chart.Sections.size(), 2u);
    EXPECT_EQ(chart.Sections[1].Name, "Later");
    ASSERT_EQ(chart.Notes.size(), 1u);
    EXPECT_EQ(chart.Notes[0].TaskId, "Fix");
    // then, ->, and a start at another task's end are dependency arrows, by id.
    std::vector<std::string> links;
    for (const auto& l : chart.Links) links.push_back(l.From + ">" + l.To);
    EXPECT_EQ(links, (std::vector<std::string>{"D>Build", "Build>Test", "D>Docs"}));
}

TEST_F(GanttTest, PlantUMLInUmlAndItsErrors) {
    const auto& chart =
        Read("@startuml\n[A] lasts 2 days\n[B] starts at [C]'s end\n[B] lasts 1 day\nwobble\n@enduml\n",
             TQVLDiagramFormat::dgPlantUML);
    EXPECT_TRUE(chart.Undated);
    EXPECT_FALSE(chart.ShowToday);
    EXPECT_EQ(Codes(), "GANTT_UNRECOGNIZED_LINE@5 GANTT_UNKNOWN_TASK@3! ");
    Read(
        "@startgantt\n[A] starts at [B]'s end\n[B] starts at [A]'s end\n[A] lasts 1 day\n[B] lasts 1 "
        "day\n@endgantt\n",
        TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(Codes(), "GANTT_CYCLE@2! ");
    const auto& today = Read(
        "@startgantt\ntoday is 3 days after start\nProject starts 2024-01-01\n[A] lasts 5 days\n@endgantt\n",
        TQVLDiagramFormat::dgPlantUML);
    EXPECT_TRUE(today.ShowToday);
    EXPECT_EQ(today.Today, Day(2024, 1, 4));
    // A sequence, component or chronology diagram is no project.
    for (const char* text :
         {"@startuml\nAlice -> Bob : hi\n@enduml\n", "@startuml\n[Web] -> [Database]\n@enduml\n",
          "@startchronology\n[Design] happens on 2024-01-10\n@endchronology\n"})
        EXPECT_EQ(QVLImportDiagram(text, TQVLDiagramFormat::dgPlantUML)->Chart(), nullptr) << text;
}

}  // namespace
}  // namespace Orvex
