// A packet: rows of bits, a field as a box over its bits (split into one piece per row when it wraps),
// each piece labelled, with the bit numbers where it starts and ends above it.
#include <algorithm>

#include "host/layout/chart_layout.h"
#include "orvex/diagrams/chart_packet.h"

namespace Orvex {
namespace {

constexpr double kBitMM = 5.5;
constexpr double kRowMM = 10.0;
constexpr double kNumbersMM = 3.5;  // above each row, for the bit numbers
constexpr float kNumberHeight = 2.4f;
constexpr float kLabelHeight = 3.2f;
constexpr float kSmallestLabel = 2.0f;
constexpr TAlphaColor kFieldFill = 0xFFEFEFEFu;

}  // namespace

TLayoutSize DrawPacketChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& packet = static_cast<const TQVLPacketChart&>(aChart);
    const std::int64_t perRow = std::max<std::int64_t>(packet.BitsPerRow, 1);
    const double pitch = kNumbersMM + kRowMM;
    std::int64_t rows = 0;
    for (const auto& field : packet.Fields) {
        for (std::int64_t start = field.Start; start <= field.End;) {
            const std::int64_t row = start / perRow;
            const std::int64_t end = std::min(field.End, (row + 1) * perRow - 1);
            const double x = aOrigin.X + static_cast<double>(start % perRow) * kBitMM;
            const double y = aOrigin.Y + static_cast<double>(row) * pitch + kNumbersMM;
            const double width = static_cast<double>(end - start + 1) * kBitMM;
            aCanvas.Rect({x, y, width, kRowMM, true}, {.Fill = kFieldFill});
            // A long name shrinks to fit its piece, down to a size that stays readable.
            TChartTextStyle label{.Height = kLabelHeight,
                                  .Horizontal = TChartAlign::caCenter,
                                  .Vertical = TChartAlign::caCenter};
            while (label.Height > kSmallestLabel && aCanvas.Measure(field.Text, label).Width > width - 1)
                label.Height -= 0.2f;
            aCanvas.Text({x + width / 2, y + kRowMM / 2}, field.Text, label);
            const TChartTextStyle number{.Height = kNumberHeight, .Vertical = TChartAlign::caEnd};
            if (start == end) {
                aCanvas.Text({x + width / 2, y - 0.3}, std::to_string(start),
                             {.Height = kNumberHeight,
                              .Horizontal = TChartAlign::caCenter,
                              .Vertical = TChartAlign::caEnd});
            } else {
                aCanvas.Text({x + 0.3, y - 0.3}, std::to_string(start), number);
                aCanvas.Text({x + width - 0.3, y - 0.3}, std::to_string(end),
                             {.Height = kNumberHeight,
                              .Horizontal = TChartAlign::caEnd,
                              .Vertical = TChartAlign::caEnd});
            }
            rows = std::max(rows, row + 1);
            start = end + 1;
        }
    }
    return {static_cast<double>(perRow) * kBitMM, static_cast<double>(rows) * pitch};
}

}  // namespace Orvex
