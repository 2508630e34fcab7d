// Reading back what a chart drawer made: the flow boxes by caption and the circles, in millimetres.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/layout/diagram_loader.h"
#include "orvex/document/headless.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/shape_items.h"

namespace Orvex::ChartTest {

struct TDrawnChart {
    TORXHeadlessLabel Doc;
    TDiagramPlacement Placement;

    explicit TDrawnChart(const std::string& text) {
        EXPECT_TRUE(LoadDiagramWithLayout(Doc, text, TQVLDiagramFormat::dgMermaid, Placement));
    }

    template <class T>
    std::vector<const T*> All() const {
        std::vector<const T*> items;
        for (std::int32_t i = 0; i < Doc.GetItemsCount(); ++i)
            if (const auto* item = dynamic_cast<const T*>(Doc.GetItem(i))) items.push_back(item);
        return items;
    }

    // The box whose caption, with its line breaks read as blanks, is aCaption; fails the test when none is.
    TLayoutBox Box(const std::string& caption) const {
        for (const TORXBaseFlow* flow : All<TORXBaseFlow>()) {
            std::string text = flow->Text();
            for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at))
                text.replace(at, 2, " ");
            if (text == caption) return BoxOf(*flow);
        }
        ADD_FAILURE() << "no box captioned " << caption;
        return {};
    }

    static TLayoutBox BoxOf(const TORXBaseFlow& flow) { return BoxOf(flow.Box()); }
    // Other items by their bounds, which may include half the pen.
    static TLayoutBox BoxOf(const TORXBaseItem& item) { return BoxOf(item.BoundsRect()); }
    static TLayoutBox BoxOf(const TQVLRect& r) {
        return {static_cast<double>(r.Left) / 1000, static_cast<double>(r.Top) / 1000,
                static_cast<double>(r.Right - r.Left) / 1000, static_cast<double>(r.Bottom - r.Top) / 1000,
                true};
    }
};

inline double CenterX(const TLayoutBox& box) {
    return box.X + box.Width / 2;
}

}  // namespace Orvex::ChartTest
