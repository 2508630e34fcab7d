// Reading back what a chart drawer made: the items of one kind, a flow element's box and a text's
// position in millimetres, and the item the placement recorded under an id.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "host/layout/diagram_loader.h"
#include "orvex/document/headless.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/text_items.h"

namespace Orvex::ChartTest {

template <class T>
std::vector<T*> ItemsOf(const TORXBaseLabel& doc) {
    std::vector<T*> items;
    for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i)
        if (auto* item = dynamic_cast<T*>(doc.GetItem(i))) items.push_back(item);
    return items;
}

inline TLayoutBox BoxOf(const TORXBaseFlow& flow) {
    const TQVLRect r = flow.Box();
    return {static_cast<double>(r.Left) / 1000, static_cast<double>(r.Top) / 1000,
            static_cast<double>(r.Right - r.Left) / 1000, static_cast<double>(r.Bottom - r.Top) / 1000, true};
}

inline TLayoutPoint PointOf(const TORXBaseItem& item, std::int32_t index) {
    return {item.GetPointMMX(index), item.GetPointMMY(index)};
}

// The flow element the placement recorded under id; null when there is none.
inline TORXBaseFlow* PlacedFlow(const TORXBaseLabel& doc, const TDiagramPlacement& placement,
                                std::string_view id) {
    for (const auto& node : placement.Nodes)
        if (node.ID == id)
            return dynamic_cast<TORXBaseFlow*>(doc.FindItemByInID(TQVLItemType::itFlow, node.ItemID));
    return nullptr;
}

inline const TORXBaseText* TextItem(const TORXBaseLabel& doc, std::string_view text) {
    for (const TORXBaseText* item : ItemsOf<TORXBaseText>(doc))
        if (item->Text() == text) return item;
    return nullptr;
}

}  // namespace Orvex::ChartTest
