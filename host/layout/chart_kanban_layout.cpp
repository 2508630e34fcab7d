// A kanban board: its columns side by side on pale lanes headed by their titles, each column's cards
// stacked as white cards with the text on top and the ticket and assignee beneath it, and the card's
// priority as a coloured strip along its left edge.
#include <algorithm>

#include "host/layout/chart_layout.h"
#include "host/layout/chart_text_wrap.h"
#include "orvex/diagrams/chart_kanban.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/items/flow_items.h"

namespace Orvex {
namespace {

constexpr double kColumnMM = 52.0;
constexpr double kColumnGapMM = 5.0;
constexpr double kInsetMM = 3.0;  // between a column's lane and its cards
constexpr double kCardGapMM = 3.0;
constexpr double kStripMM = 1.6;
constexpr double kPadMM = 2.0 * kTextPaddingY + 1.0;
constexpr double kCardMM = kColumnMM - 2 * kInsetMM;
constexpr double kWrapMM = kCardMM - 2.0 * kTextPaddingX - 1.0;
constexpr float kMetaHeight = 2.8f;
constexpr TAlphaColor kMetaColor = 0xFF555555u;

// The priority's strip colour; none for a card without a known priority.
std::optional<TAlphaColor> PriorityColor(const std::string& priority) {
    if (priority == "Very High") return 0xFFC00000u;
    if (priority == "High") return 0xFFFF8C00u;
    if (priority == "Low") return 0xFF5B9BD5u;
    if (priority == "Very Low") return 0xFFA9C8EBu;
    return std::nullopt;
}

// Each column's lane in a pale tint of its own colour.
TAlphaColor LaneFill(std::size_t column) {
    const TAlphaColor c = ChartSeriesColor(column);
    auto channel = [c](int shift) { return (((c >> shift) & 0xFFu) + 3 * 0xFFu) / 4; };
    return 0xFF000000u | (channel(16) << 16) | (channel(8) << 8) | channel(0);
}

}  // namespace

TLayoutSize DrawKanban(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& board = static_cast<const TQVLKanban&>(aChart);
    const TChartTextStyle headerStyle{.Bold = true};
    const TChartTextStyle metaStyle{.Height = kMetaHeight, .Color = kMetaColor};

    double headerHeight = 0;
    for (const auto& column : board.Columns)
        headerHeight = std::max(
            headerHeight,
            aCanvas.Measure(ChartWrap(QVLPlainCaption(column.Text) + " ", kWrapMM, headerStyle), headerStyle)
                .Height);
    headerHeight += kPadMM;

    // Each column's height: its header and its stacked cards; all lanes are drawn as tall as the tallest.
    struct TCardPlan {
        std::string Caption;
        double TextHeight;
        double Height;
    };
    std::vector<std::vector<TCardPlan>> plans;
    double tallest = headerHeight + kInsetMM;
    for (const auto& column : board.Columns) {
        auto& plan = plans.emplace_back();
        double height = headerHeight;
        for (const auto& card : column.Cards) {
            std::string caption = ChartWrap(QVLPlainCaption(card.Text), kWrapMM);
            const double text = aCanvas.Measure(caption.empty() ? " " : caption).Height + kPadMM;
            const bool meta = !card.Ticket.empty() || !card.Assigned.empty();
            const double h = text + (meta ? aCanvas.Measure("X", metaStyle).Height + 1.5 : 0);
            plan.push_back({std::move(caption), text, h});
            height += h + kCardGapMM;
        }
        tallest = std::max(tallest, height + kInsetMM);
    }

    for (std::size_t i = 0; i < board.Columns.size(); ++i) {
        const auto& column = board.Columns[i];
        const double x = aOrigin.X + static_cast<double>(i) * (kColumnMM + kColumnGapMM);
        aCanvas.Rect({x, aOrigin.Y, kColumnMM, tallest, true}, {.Fill = LaneFill(i), .Stroke = 0xFFD0D0D0u},
                     2.0);
        aCanvas.Text({x + kColumnMM / 2, aOrigin.Y + headerHeight / 2},
                     ChartWrap(QVLPlainCaption(column.Text), kWrapMM, headerStyle),
                     {.Bold = true, .Horizontal = TChartAlign::caCenter, .Vertical = TChartAlign::caCenter});
        double y = aOrigin.Y + headerHeight;
        for (std::size_t k = 0; k < column.Cards.size(); ++k) {
            const auto& card = column.Cards[k];
            const TCardPlan& plan = plans[i][k];
            const TLayoutBox box{x + kInsetMM, y, kCardMM, plan.Height, true};
            auto* item = aCanvas.Box(box, TQVLFlowType::ftProcess, plan.Caption,
                                     {.Fill = kOpaqueWhite, .Stroke = 0xFFB0B0B0u}, card.Id);
            if (item != nullptr) {
                item->SetVertAlign(TQVLVertAlign::vaTop);
                item->SetHorzAlign(TQVLHorzAlign::haLeft);
                item->SetPaddingX(static_cast<float>(kTextPaddingX));
                item->SetPaddingY(static_cast<float>(kTextPaddingY));
            }
            if (const auto strip = PriorityColor(card.Priority))
                aCanvas.Rect({box.X, box.Y, kStripMM, box.Height, true}, {.Fill = *strip, .Stroke = *strip});
            const double metaY = box.Bottom() - 1.0;
            aCanvas.Text({box.X + kTextPaddingX, metaY}, card.Ticket,
                         {.Height = kMetaHeight, .Color = kMetaColor, .Vertical = TChartAlign::caEnd});
            aCanvas.Text({box.Right() - kTextPaddingX, metaY}, card.Assigned,
                         {.Height = kMetaHeight,
                          .Color = kMetaColor,
                          .Horizontal = TChartAlign::caEnd,
                          .Vertical = TChartAlign::caEnd});
            y += plan.Height + kCardGapMM;
        }
    }
    const double width =
        board.Columns.empty()
            ? 0
            : static_cast<double>(board.Columns.size()) * (kColumnMM + kColumnGapMM) - kColumnGapMM;
    return {width, tallest};
}

}  // namespace Orvex
