// The drawing tools the editor page offers, grouped as its toolbar shows them, with the names the page and
// the session use for them. Every tool of the engine's editor has exactly one entry.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "orvex/document/document_types.h"

namespace Orvex::Host {

struct TEditTool {
    TQVLEdAction Action = TQVLEdAction::eaSelection;
    std::string_view Name;   // stable id, as the page sends it: "rectangle", "flow", ...
    std::string_view Group;  // toolbar group: "select", "lines", "shapes", "texts", "codes", "flow", ...
    std::string_view Label;  // button text
    char Key = 0;            // single-key shortcut, 0 for none
};

const std::vector<TEditTool>& EditTools();
std::optional<TQVLEdAction> EditToolByName(std::string_view aName);
std::string_view EditToolName(TQVLEdAction aAction);  // "" for eaNone

}  // namespace Orvex::Host
