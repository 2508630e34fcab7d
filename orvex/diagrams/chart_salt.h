// A salt wireframe: a tree of widgets. Grids hold their cells by row and column; a cell holds a widget or
// a nested grid (a group box, a tree, tabs, a menu).
#pragma once

#include <string>
#include <vector>

#include "orvex/diagrams/chart_model.h"

namespace Orvex {

struct TQVLSaltChart final : TQVLChart {
    struct TWidget {
        // "grid", "text", "button", "field", "checkbox", "radio", "droplist", "separator", "empty",
        // "tree" (children "item" with a level), "tabs", "menu" (entries in Items).
        std::string Kind;
        std::string Text;
        bool Checked = false;
        // Grids: "" (no lines), "+" (outline), "#" (every cell), "!" (columns), "-" (rows);
        // separators: "==", "..", "--", "~~".
        std::string Border;
        std::string Title;  // a grid drawn as a group box ({^"Title"})
        int Row = 0;
        int Col = 0;
        int ColSpan = 1;
        int Level = 0;                   // tree items, from 1
        int Width = 0;                   // fields: the characters between the quotes, blanks included
        std::vector<std::string> Items;  // a droplist's choices, the tabs, the menu entries
        std::vector<TWidget> Children;
    };
    TWidget Root;

    std::string_view Type() const override { return "salt"; }
    // "root": {"kind", "text", "row", "col", and where they apply "colSpan", "checked", "border", "title",
    // "level", "width", "items", "children"}.
    void WriteJson(TJSON& aOut) const override;
};

}  // namespace Orvex
