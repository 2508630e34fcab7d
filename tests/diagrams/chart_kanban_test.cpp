// Kanban boards read into columns and cards with their metadata.
#include <gtest/gtest.h>

#include <string>

#include "orvex/diagrams/chart_kanban.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

std::unique_ptr<TORXDiagramModel> Read(const std::string& text) {
    return QVLImportDiagram(text, TQVLDiagramFormat::dgMermaid);
}

std::vector<std::string> Codes(const TORXDiagramModel& model) {
    std::vector<std::string> codes;
    for (const auto& d : model.Diagnostics()) codes.push_back(d.Code + "@" + std::to_string(d.Line));
    return codes;
}

TEST(KanbanChart, ColumnsHoldTheCardsIndentedBeneathThem) {
    const auto model = Read(
        "kanban\n"
        "  Todo\n"
        "    [Create Documentation]\n"
        "    docs[\"Blog post, draft\"]@{ ticket: MC-1, assigned: 'knsv', priority: 'High' }\n"
        "      deep[Nested deeper]\n"
        "  done[Done]\n"
        "    plan[Plan]@{\n"
        "      assigned: 'mo'\n"
        "      priority: 'Very Low'\n"
        "    }\n");
    ASSERT_EQ(model->Kind(), TQVLDiagramKind::dkChart);
    EXPECT_TRUE(model->Diagnostics().empty()) << ::testing::PrintToString(Codes(*model));
    TJSON json;
    model->Chart()->WriteJson(json);
    EXPECT_EQ(json["columns"], TJSON::parse(R"([
        {"id": "Todo", "text": "Todo", "cards": [
            {"id": "Create Documentation", "text": "Create Documentation", "ticket": "", "assigned": "", "priority": ""},
            {"id": "docs", "text": "Blog post, draft", "ticket": "MC-1", "assigned": "knsv", "priority": "High"},
            {"id": "deep", "text": "Nested deeper", "ticket": "", "assigned": "", "priority": ""}]},
        {"id": "done", "text": "Done", "cards": [
            {"id": "plan", "text": "Plan", "ticket": "", "assigned": "mo", "priority": "Very Low"}]}])"));
}

TEST(KanbanChart, WhatCannotBeShownIsReported) {
    EXPECT_EQ(
        Codes(*Read("kanban\n    a[A]\n      x[X]@{ priority: 'Urgent', icon: 'bug' }\n  b[B]\n")),
        (std::vector<std::string>{"KANBAN_PRIORITY@3", "KANBAN_METADATA@3", "KANBAN_ITEM_OUTSIDE_COLUMN@4"}));
    EXPECT_EQ(Codes(*Read("kanban\n  a[A]\n    x[X]@{ assigned: 'me'\n")),
              std::vector<std::string>{"KANBAN_METADATA@3"});
    EXPECT_EQ(Codes(*Read("kanban\n  a[A\n")), std::vector<std::string>{"KANBAN_UNRECOGNIZED_LINE@2"});
}

}  // namespace
}  // namespace Orvex
