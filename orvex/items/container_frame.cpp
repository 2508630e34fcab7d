#include "orvex/items/container_frame.h"

#include <fmt/format.h>

#include <algorithm>

#include "orvex/core/units.h"
#include "orvex/document/document.h"
#include "orvex/items/box_helpers.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/svg_style.h"
#include "orvex/items/text_metrics.h"
#include "orvex/items/text_place.h"

namespace Orvex {

namespace {
constexpr std::int64_t kCornerRadius = 3'000;  // base units
constexpr int kBandTintPercent = 12;           // of the pen colour mixed into the band's fill

std::uint8_t Mix(std::uint8_t a, std::uint8_t b, int percentB) {
    return static_cast<std::uint8_t>((a * (100 - percentB) + b * percentB + 50) / 100);
}
}  // namespace

std::int64_t ContainerBandHeight(const TORXBaseFlow& frame, std::int64_t width) {
    if (frame.Text().empty()) return 0;
    const ITextMetrics& metrics = QVLTextMetrics(frame.QVLab());
    const std::int64_t padX = SetBaseValue(frame.PaddingX());
    const std::int64_t padY = SetBaseValue(frame.PaddingY());
    const auto lines = WrapText(frame.Text(), frame.Font(), width - 2 * padX, metrics);
    if (lines.empty()) return 0;
    const auto count = static_cast<std::int64_t>(lines.size());
    return 2 * padY + count * metrics.LineHeight(frame.Font()) +
           (count - 1) * SetBaseValue(frame.Interline());
}

TQVLRect ContainerBand(const TORXBaseFlow& frame) {
    const TQVLRect box = frame.Box();
    TQVLRect band = box;
    band.Bottom = std::min(box.Bottom, box.Top + ContainerBandHeight(frame, box.GetWidth()));
    return band;
}

std::int64_t ContainerCornerRadius(const TORXBaseFlow& frame) {
    if (frame.ContainerFrame() != TQVLContainerFrame::cfRounded) return 0;
    const TQVLRect box = frame.Box();
    return std::min({kCornerRadius, box.GetWidth() / 4, box.GetHeight() / 4});
}

TAlphaColor ContainerBandColor(const TORXBaseFlow& frame) {
    const TAlphaColor fill = frame.Filled() ? frame.BackColor() : kOpaqueWhite;
    const TAlphaColor pen = frame.Color();
    return AlphaColor(
        Mix(RedOf(fill), RedOf(pen), kBandTintPercent), Mix(GreenOf(fill), GreenOf(pen), kBandTintPercent),
        Mix(BlueOf(fill), BlueOf(pen), kBandTintPercent), std::max<std::uint8_t>(AlphaOf(fill), 64));
}

void ContainerSVG(const TORXBaseFlow& frame, std::vector<std::string>& body) {
    const TQVLUnits unit = frame.QVLab()->Units();
    const TQVLRect box = frame.Box();
    const std::int64_t radius = ContainerCornerRadius(frame);
    const float radiusMM = GetBaseValue(radius);
    const std::string stroke = SvgStroke(frame.Color(), frame.GetPenWidthMM(), frame.LineType(), unit);
    if (frame.Filled()) body.push_back(SvgBoxRect(box, radiusMM, unit, SvgFill(frame.BackColor(), true)));
    const TQVLRect band = ContainerBand(frame);
    if (band.GetHeight() > 0) {
        // The band follows the frame's rounded top corners and ends square at the separator.
        const auto n = [unit](std::int64_t v) { return SvgLength(v, unit); };
        const std::int64_t r = std::min(radius, band.GetHeight());
        body.push_back(
            fmt::format("<path d=\"M{},{} V{} A{},{} 0 0 1 {},{} H{} A{},{} 0 0 1 {},{} V{} Z\"{}/>",
                        n(band.Left), n(band.Bottom), n(band.Top + r), n(r), n(r), n(band.Left + r),
                        n(band.Top), n(band.Right - r), n(r), n(r), n(band.Right), n(band.Top + r),
                        n(band.Bottom), SvgFill(ContainerBandColor(frame), true)));
        if (band.Bottom < box.Bottom)
            body.push_back(fmt::format("<path d=\"M{},{} H{}\" fill=\"none\"{}/>", n(band.Left),
                                       n(band.Bottom), n(band.Right), stroke));
    }
    body.push_back(SvgBoxRect(box, radiusMM, unit, " fill=\"none\"" + stroke));
}

}  // namespace Orvex
