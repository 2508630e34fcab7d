// Timing diagrams read into lanes of state changes: the time forms, messages, constraints, highlights,
// clocks and binary lanes, and a diagnostic for every line not understood.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orvex/diagrams/chart_timing.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

std::unique_ptr<TORXDiagramModel> Read(const std::string& body) {
    return QVLImportDiagram("@startuml\n" + body + "@enduml\n", TQVLDiagramFormat::dgPlantUML);
}

const TQVLTimingChart& Timing(const TORXDiagramModel& model) {
    EXPECT_EQ(model.Kind(), TQVLDiagramKind::dkChart);
    return dynamic_cast<const TQVLTimingChart&>(*model.Chart());
}

std::vector<std::string> Codes(const TORXDiagramModel& model) {
    std::vector<std::string> out;
    for (const auto& d : model.Diagnostics()) out.push_back(d.Code + "@" + std::to_string(d.Line));
    return out;
}

TEST(TimingChart, TimePointsInEveryForm) {
    const auto model = Read(
        "robust \"Web browser\" as WB\n"
        "concise WU\n"
        "@0\nWU is Idle\nWB is Idle\n"
        "@100 as :sent\nWU is Waiting\n"
        "@+50\nWB is Busy #pink\n"
        "@WB\n300 is Idle\n+20 is \"Long wait\"\n"
        "WU@:sent+150 is Done\n"
        "WU@0:01:00 is Later\n");
    const auto& chart = Timing(*model);
    EXPECT_TRUE(model->Diagnostics().empty()) << Codes(*model)[0];
    ASSERT_EQ(chart.Lanes.size(), 2u);
    const auto& wb = chart.Lanes[0];
    EXPECT_EQ(wb.Id, "WB");
    EXPECT_EQ(wb.Text, "Web browser");
    EXPECT_EQ(wb.Kind, "robust");
    std::vector<std::pair<double, std::string>> changes;
    for (const auto& c : wb.Changes) changes.emplace_back(c.Time, c.State);
    // "+20" inside a lane block counts from the current time (150), not from the block's last line.
    EXPECT_EQ(changes, (std::vector<std::pair<double, std::string>>{
                           {0, "Idle"}, {150, "Busy"}, {170, "Long wait"}, {300, "Idle"}}));
    EXPECT_TRUE(wb.Changes[1].Color.has_value());
    // Without declared levels, the first state used is the lowest.
    EXPECT_EQ(wb.States, (std::vector<std::string>{"Long wait", "Busy", "Idle"}));
    const auto& wu = chart.Lanes[1];
    EXPECT_EQ(wu.Id, "WU");
    changes.clear();
    for (const auto& c : wu.Changes) changes.emplace_back(c.Time, c.State);
    // Changes are kept in time order whatever order they were written in; h:mm:ss counts seconds.
    EXPECT_EQ(changes, (std::vector<std::pair<double, std::string>>{
                           {0, "Idle"}, {60, "Later"}, {100, "Waiting"}, {250, "Done"}}));
}

TEST(TimingChart, MessagesConstraintsHighlightsAndScale) {
    const auto model = Read(
        "concise A\nrobust B\nB has High,Low\n"
        "scale 100 as 50 pixels\n"
        "@10\nA -> B : go\nB@40 <- A@20 : back\n"
        "A@10 <-> @70 : {60 ms}\n"
        "highlight 30 to 50 #Gold : busy\n");
    const auto& chart = Timing(*model);
    EXPECT_TRUE(model->Diagnostics().empty()) << Codes(*model)[0];
    EXPECT_EQ(chart.Lanes[1].States, (std::vector<std::string>{"High", "Low"}));
    TJSON out;
    chart.WriteJson(out);
    EXPECT_EQ(out["messages"].dump(),
              R"([{"from":"A","fromTime":10.0,"to":"B","toTime":10.0,"text":"go"},)"
              R"({"from":"A","fromTime":20.0,"to":"B","toTime":40.0,"text":"back"}])");
    EXPECT_EQ(out["constraints"].dump(), R"([{"lane":"A","from":10.0,"to":70.0,"text":"{60 ms}"}])");
    EXPECT_EQ(out["highlights"].dump(), R"([{"from":30.0,"to":50.0,"text":"busy"}])");
    EXPECT_EQ(out["scale"], 0.5);
}

TEST(TimingChart, ClocksAndBinaryLanes) {
    const auto model = Read(
        "clock \"Clock\" as C with period 40 pulse 10 offset 5\n"
        "binary \"Enable\" as EN\n"
        "@0\nEN is 0\n@20\nEN is 1\n@30\nEN is high\n");
    const auto& chart = Timing(*model);
    const auto& clock = chart.Lanes[0];
    EXPECT_EQ(clock.Kind, "clock");
    EXPECT_EQ(clock.Period, 40);
    EXPECT_EQ(clock.Pulse, 10);
    EXPECT_EQ(clock.Offset, 5);
    const auto& en = chart.Lanes[1];
    ASSERT_EQ(en.Changes.size(), 3u);
    EXPECT_EQ(en.Changes[0].State, "low");
    EXPECT_EQ(en.Changes[1].State, "high");
    EXPECT_EQ(en.Changes[2].State, "high");
}

TEST(TimingChart, EveryLineNotUnderstoodIsNamed) {
    const auto model = Read(
        "concise A\n"              // 2
        "clock C\n"                // 3: a clock without a period
        "concise A\n"              // 4: declared twice
        "@soon\n"                  // 5
        "Z is on\n"                // 6
        "A@:nowhere is off\n"      // 7
        "note top of A : hello\n"  // 8
        "what is this?\n"          // 9: "what" is no lane
        "!!!\n"                    // 10
        "skinparam x y\n");        // 11
    EXPECT_EQ(Codes(*model),
              (std::vector<std::string>{"TIMING_PERIOD@3", "TIMING_DUPLICATE_LANE@4", "TIMING_TIME@5",
                                        "TIMING_UNKNOWN_LANE@6", "TIMING_ANCHOR@7", "UNSUPPORTED_STATEMENT@8",
                                        "TIMING_UNKNOWN_LANE@9", "TIMING_UNRECOGNIZED_LINE@10",
                                        "UNSUPPORTED_STATEMENT@11"}));
}

TEST(TimingChart, OnlyTextsThatDeclareLanes) {
    EXPECT_NE(Read("Alice -> Bob : hi\n")->Kind(), TQVLDiagramKind::dkChart);
    EXPECT_NE(Read("class Clock\nclock tick -> Clock\n")->Kind(), TQVLDiagramKind::dkChart);
    EXPECT_EQ(Read("title T\nclock \"Main clock\" as C with period 10 <<fast>>\n")->Kind(),
              TQVLDiagramKind::dkChart);
    EXPECT_NE(QVLImportDiagram("@startmindmap\n* robust thing\n@endmindmap\n", TQVLDiagramFormat::dgPlantUML)
                  ->Kind(),
              TQVLDiagramKind::dkChart);
}

}  // namespace
}  // namespace Orvex
