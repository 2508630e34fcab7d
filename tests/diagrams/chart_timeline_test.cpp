// Timelines read into sections, periods and their events.
#include <gtest/gtest.h>

#include <string>

#include "orvex/diagrams/chart_timeline.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

std::unique_ptr<TORXDiagramModel> Read(const std::string& text) {
    return QVLImportDiagram(text, TQVLDiagramFormat::dgMermaid);
}

TJSON Sections(const TORXDiagramModel& model) {
    TJSON json;
    model.Chart()->WriteJson(json);
    return json["sections"];
}

TEST(TimelineChart, PeriodsCarryTheirEventsIncludingContinuationLines) {
    const auto model = Read(
        "timeline\n"
        "  title Product history\n"
        "  section Early days\n"
        "    2019 : First prototype\n"
        "    2020 : Beta : Meeting at 12:30\n"
        "         : First customers\n"
        "  section Growth\n"
        "    2022\n"
        "  section Later\n");
    ASSERT_EQ(model->Kind(), TQVLDiagramKind::dkChart);
    EXPECT_TRUE(model->Diagnostics().empty());
    EXPECT_EQ(model->Title(), "Product history");
    EXPECT_EQ(Sections(*model), TJSON::parse(R"([
        {"name": "Early days", "periods": [
            {"text": "2019", "events": ["First prototype"]},
            {"text": "2020", "events": ["Beta", "Meeting at 12:30", "First customers"]}]},
        {"name": "Growth", "periods": [{"text": "2022", "events": []}]},
        {"name": "Later", "periods": []}])"));
}

TEST(TimelineChart, PeriodsOutsideSectionsGoToAnUnnamedSection) {
    EXPECT_EQ(Sections(*Read("timeline\n 2002 : LinkedIn\n 2004 : Facebook\n : Google\n")),
              TJSON::parse(R"([{"name": "", "periods": [
                  {"text": "2002", "events": ["LinkedIn"]},
                  {"text": "2004", "events": ["Facebook", "Google"]}]}])"));
    EXPECT_EQ(Sections(*Read("timeline\n")), TJSON::parse(R"([{"name": "", "periods": []}])"));
    const auto mixed = Read("timeline\n 1990 : a\n section Modern\n 2000 : b\n");
    EXPECT_EQ(Sections(*mixed)[0]["name"], "");
    EXPECT_EQ(Sections(*mixed)[1]["name"], "Modern");
}

TEST(TimelineChart, LinesItCannotPlaceAreReported) {
    const auto orphan = Read("timeline\n  : an event without a period\n 2001 : ok\n");
    ASSERT_EQ(orphan->Diagnostics().size(), 1u);
    EXPECT_EQ(orphan->Diagnostics()[0].Code, "TIMELINE_EVENT_WITHOUT_PERIOD");
    EXPECT_EQ(orphan->Diagnostics()[0].Line, 2);
    const auto header = Read("timeline sideways\n 2001 : ok\n");
    ASSERT_EQ(header->Diagnostics().size(), 1u);
    EXPECT_EQ(header->Diagnostics()[0].Code, "TIMELINE_HEADER");
    EXPECT_TRUE(Read("timeline LR\n accTitle: t\n %% note\n 2001 : ok\n")->Diagnostics().empty());
    const auto down = Read("timeline TD\n 2001 : ok\n");
    ASSERT_EQ(down->Diagnostics().size(), 1u);
    EXPECT_EQ(down->Diagnostics()[0].Code, "TIMELINE_DIRECTION");
}

}  // namespace
}  // namespace Orvex
