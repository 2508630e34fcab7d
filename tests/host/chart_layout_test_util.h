// Drawn charts in the layout tests: load a chart text into a document and read back its items' places
// in millimetres.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "host/layout/diagram_loader.h"
#include "host/layout/layout_types.h"
#include "orvex/document/base_item.h"
#include "orvex/document/headless.h"
#include "orvex/items/text_items.h"

namespace Orvex::ChartLayoutTest {

// Every item of type T, in drawing order.
template <class T>
std::vector<const T*> ItemsOf(const TORXBaseLabel& doc) {
    std::vector<const T*> items;
    for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i)
        if (const auto* item = dynamic_cast<const T*>(doc.GetItem(i))) items.push_back(item);
    return items;
}

// The box between an item's first two points, normalised (a rectangle's or a circle's extent).
inline TLayoutBox SpanOf(const TORXBaseItem& item) {
    const double x1 = item.GetPointMMX(1);
    const double y1 = item.GetPointMMY(1);
    const double x2 = item.GetPointMMX(2);
    const double y2 = item.GetPointMMY(2);
    return {std::min(x1, x2), std::min(y1, y2), std::abs(x2 - x1), std::abs(y2 - y1), true};
}

inline bool Contains(const TLayoutBox& box, TLayoutPoint p, double tolerance = 1e-3) {
    return p.X >= box.X - tolerance && p.X <= box.Right() + tolerance && p.Y >= box.Y - tolerance &&
           p.Y <= box.Bottom() + tolerance;
}

// The text item showing exactly aText, or null.
inline const TORXBaseText* TextItem(const TORXBaseLabel& doc, std::string_view text) {
    for (const auto* t : ItemsOf<TORXBaseText>(doc))
        if (t->Text() == text) return t;
    return nullptr;
}

inline TLayoutPoint AnchorOf(const TORXBaseItem& item) {
    return {item.GetPointMMX(1), item.GetPointMMY(1)};
}

inline bool Load(TORXHeadlessLabel& doc, std::string_view text) {
    return LoadDiagramWithLayout(doc, text, TQVLDiagramFormat::dgMermaid);
}

}  // namespace Orvex::ChartLayoutTest
