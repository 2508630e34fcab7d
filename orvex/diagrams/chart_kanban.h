// Kanban data: columns in order, each with its cards and their metadata (ticket, assignee, priority).
#pragma once

#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLKanban final : TQVLChart {
    struct TCard {
        std::string Id;
        std::string Text;
        std::string Ticket;
        std::string Assigned;
        std::string Priority;  // "Very High", "High", "Low", "Very Low" or "" as written
    };
    struct TColumn {
        std::string Id;
        std::string Text;
        std::vector<TCard> Cards;
    };
    std::vector<TColumn> Columns;

    std::string_view Type() const override { return "kanban"; }
    // "columns": [{"id", "text", "cards": [{"id", "text", "ticket", "assigned", "priority"}]}].
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
