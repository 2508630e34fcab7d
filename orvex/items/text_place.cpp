#include "orvex/items/text_place.h"

#include "orvex/items/text_metrics.h"

namespace Orvex {

namespace {
bool QuarterTurned(TQVLAngle angle) {
    return angle == TQVLAngle::ag90 || angle == TQVLAngle::ag270;
}
}  // namespace

TQVLRect AdjustRect(const TQVLRect& box, TQVLAngle angle) {
    if (!QuarterTurned(angle)) return box;
    const std::int64_t cx = (box.Left + box.Right) / 2;
    const std::int64_t cy = (box.Top + box.Bottom) / 2;
    const std::int64_t w = box.GetWidth();
    const std::int64_t h = box.GetHeight();
    return {cx - h / 2, cy - w / 2, cx - h / 2 + h, cy - w / 2 + w};
}

TRectF AdjustRect(const TRectF& box, TQVLAngle angle) {
    if (!QuarterTurned(angle)) return box;
    const float cx = (box.Left + box.Right) / 2;
    const float cy = (box.Top + box.Bottom) / 2;
    const float w = box.Width();
    const float h = box.Height();
    return {cx - h / 2, cy - w / 2, cx + h / 2, cy + w / 2};
}

TQVLRect AdjustRectPos(const TQVLRect& frame, std::int64_t width, std::int64_t height, TQVLHorzAlign h,
                       TQVLVertAlign v) {
    std::int64_t x = frame.Left;
    if (h == TQVLHorzAlign::haCenter) x = frame.Left + (frame.GetWidth() - width) / 2;
    if (h == TQVLHorzAlign::haRight) x = frame.Right - width;
    std::int64_t y = frame.Top;
    if (v == TQVLVertAlign::vaCenter) y = frame.Top + (frame.GetHeight() - height) / 2;
    if (v == TQVLVertAlign::vaBottom) y = frame.Bottom - height;
    return {x, y, x + width, y + height};
}

TQVLPto64 AdjustPos(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height, TQVLHorzAlign h,
                    TQVLVertAlign v) {
    if (h == TQVLHorzAlign::haCenter) x -= width / 2;
    if (h == TQVLHorzAlign::haRight) x -= width;
    if (v == TQVLVertAlign::vaCenter) y -= height / 2;
    if (v == TQVLVertAlign::vaBottom) y -= height;
    return {x, y};
}

std::vector<std::string> WrapText(std::string_view text, const TQVLFont& font, std::int64_t width,
                                  const ITextMetrics& metrics) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (true) {
        const std::size_t end = text.find('\n', start);
        std::string_view para = text.substr(start, end == std::string_view::npos ? text.npos : end - start);
        if (!para.empty() && para.back() == '\r') para.remove_suffix(1);
        std::string line;
        std::size_t pos = 0;
        bool any = false;
        while (pos <= para.size()) {
            const std::size_t space = para.find(' ', pos);
            const std::string_view word = para.substr(pos, space == para.npos ? para.npos : space - pos);
            const std::string candidate = line.empty() ? std::string(word) : line + " " + std::string(word);
            if (width > 0 && !line.empty() && metrics.TextWidth(candidate, font) > width) {
                lines.push_back(line);
                line = std::string(word);
            } else {
                line = candidate;
            }
            any = true;
            if (space == para.npos) break;
            pos = space + 1;
        }
        if (any || para.empty()) lines.push_back(line);
        if (end == std::string_view::npos) break;
        start = end + 1;
    }
    return lines;
}

std::vector<TTextLinePos> PosBaseLinesText(const std::vector<std::string>& lines, const TQVLFont& font,
                                           const TQVLRect& box, TQVLHorzAlign h, TQVLVertAlign v,
                                           TQVLAngle angle, std::int64_t padX, std::int64_t padY,
                                           std::int64_t interline, const ITextMetrics& metrics) {
    TQVLRect frame = AdjustRect(box, angle);
    frame.Inflate(-padX, -padY);
    const std::int64_t lineHeight = metrics.LineHeight(font);
    const std::int64_t ascent = metrics.Ascent(font);
    const auto count = static_cast<std::int64_t>(lines.size());
    const std::int64_t blockHeight = count == 0 ? 0 : count * lineHeight + (count - 1) * interline;
    const TQVLRect block = AdjustRectPos(frame, frame.GetWidth(), blockHeight, TQVLHorzAlign::haLeft, v);
    std::vector<TTextLinePos> out;
    std::int64_t top = block.Top;
    for (const auto& text : lines) {
        const std::int64_t width = metrics.TextWidth(text, font);
        const TQVLRect at = AdjustRectPos(frame, width, lineHeight, h, TQVLVertAlign::vaTop);
        out.push_back(TTextLinePos{text, at.Left, top + ascent, width});
        top += lineHeight + interline;
    }
    return out;
}

TTextLinePos PosBaseText(std::string_view text, const TQVLFont& font, const TQVLRect& box, TQVLHorzAlign h,
                         TQVLVertAlign v, TQVLAngle angle, std::int64_t padX, std::int64_t padY,
                         const ITextMetrics& metrics) {
    return PosBaseLinesText({std::string(text)}, font, box, h, v, angle, padX, padY, 0, metrics).front();
}

TQVLSPoint DrawPos(const TORXBaseDraw& draw, std::int64_t x, std::int64_t y) {
    return {draw.GetDrawX(x), draw.GetDrawY(y)};
}

TRectF DrawTxtPos(const TORXBaseDraw& draw, const TQVLRect& rect) {
    return {draw.GetDrawX(rect.Left), draw.GetDrawY(rect.Top), draw.GetDrawX(rect.Right),
            draw.GetDrawY(rect.Bottom)};
}

std::vector<TQVLSPoint> DrawPolyPos(const TORXBaseDraw& draw, const std::vector<TQVLPto64>& points) {
    std::vector<TQVLSPoint> out;
    out.reserve(points.size());
    for (const auto& p : points) out.push_back(DrawPos(draw, p.X, p.Y));
    return out;
}

TQVLSPoint PosText(const TORXBaseDraw& draw, const TTextLinePos& line) {
    return DrawPos(draw, line.X, line.Y);
}

TPoint PosPrintText(const TORXBaseDraw& draw, const TTextLinePos& line) {
    return {Qvl::Utils::PrintFromBaseX(line.X, draw), Qvl::Utils::PrintFromBaseY(line.Y, draw)};
}

TRectF PrintTxtPos(const TORXBaseDraw& draw, const TQVLRect& rect) {
    using Qvl::Utils::PrintFromBaseX;
    using Qvl::Utils::PrintFromBaseY;
    return {static_cast<float>(PrintFromBaseX(rect.Left, draw)), static_cast<float>(PrintFromBaseY(rect.Top, draw)),
            static_cast<float>(PrintFromBaseX(rect.Right, draw)),
            static_cast<float>(PrintFromBaseY(rect.Bottom, draw))};
}

}  // namespace Orvex
