// User journeys read into sections and tasks with their scores and actors.
#include <gtest/gtest.h>

#include <string>

#include "orvex/diagrams/chart_journey.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

std::unique_ptr<TORXDiagramModel> Read(const std::string& text) {
    return QVLImportDiagram(text, TQVLDiagramFormat::dgMermaid);
}

TEST(JourneyChart, TasksKeepScoresAndActorsInTheirSections) {
    const auto model = Read(
        "journey\n"
        "  title My working day\n"
        "  Wake up: 2: Me\n"
        "  section Go to work\n"
        "    Make tea: 5: Me\n"
        "    Do work : 1 : Me , Cat,\n"
        "    Think: 3.5\n");
    ASSERT_EQ(model->Kind(), TQVLDiagramKind::dkChart);
    EXPECT_TRUE(model->Diagnostics().empty());
    EXPECT_EQ(model->Title(), "My working day");
    TJSON json;
    model->Chart()->WriteJson(json);
    EXPECT_EQ(json["sections"], TJSON::parse(R"([
        {"name": "", "tasks": [{"text": "Wake up", "score": 2, "actors": ["Me"]}]},
        {"name": "Go to work", "tasks": [
            {"text": "Make tea", "score": 5, "actors": ["Me"]},
            {"text": "Do work", "score": 1, "actors": ["Me", "Cat"]},
            {"text": "Think", "score": 3.5, "actors": []}]}])"));
    const auto& journey = dynamic_cast<const TQVLJourney&>(*model->Chart());
    EXPECT_EQ(journey.Actors(), (std::vector<std::string>{"Me", "Cat"}));
}

TEST(JourneyChart, BadScoresAndStrayLinesAreReported) {
    const auto model = Read("journey\n  section S\n    Pay: lots: Me\n    just words\n    Fine: 4: Me\n");
    ASSERT_EQ(model->Diagnostics().size(), 2u);
    EXPECT_EQ(model->Diagnostics()[0].Code, "JOURNEY_SCORE");
    EXPECT_EQ(model->Diagnostics()[0].Line, 3);
    EXPECT_EQ(model->Diagnostics()[1].Code, "JOURNEY_UNRECOGNIZED_LINE");
    EXPECT_EQ(model->Diagnostics()[1].Line, 4);
    // The task with the bad score is kept, so nothing the text names goes missing.
    EXPECT_EQ(dynamic_cast<const TQVLJourney&>(*model->Chart()).Sections[0].Tasks.size(), 2u);
}

}  // namespace
}  // namespace Orvex
