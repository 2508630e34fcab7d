// Box sizes per flow shape and the small geometry the layouts share.
#include "host/layout/layout_types.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "orvex/core/types.h"

namespace Orvex {
namespace {

constexpr double kMinBoxWidth = 20.0;
constexpr double kMinBoxHeight = 10.0;
constexpr double kSqrt2 = 1.4142135623730951;
constexpr double kDocumentWave = 1.25;  // the wavy bottom takes a fifth of a document's height
constexpr double kDatabaseCaps = 1.5;   // the two elliptic caps of a cylinder take a third
constexpr double kPredefinedBars = 1.2;
constexpr double kInf = std::numeric_limits<double>::infinity();

}  // namespace

bool TLayoutBox::Overlaps(const TLayoutBox& other, double tolerance) const {
    return X < other.Right() - tolerance && other.X < Right() - tolerance && Y < other.Bottom() - tolerance &&
           other.Y < Bottom() - tolerance;
}

TTextMeasure FixedPitchMeasure(double aCharWidth, double aLineHeight) {
    return [aCharWidth, aLineHeight](std::string_view text) {
        std::size_t longest = 0;
        std::size_t lines = 1;
        std::size_t current = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const auto c = static_cast<unsigned char>(text[i]);
            if (c == '\r') continue;
            if (c == '\n') {
                ++lines;
                current = 0;
                continue;
            }
            if ((c & 0xC0) != 0x80) longest = std::max(longest, ++current);
        }
        return TLayoutSize{static_cast<double>(longest) * aCharWidth,
                           static_cast<double>(lines) * aLineHeight};
    };
}

TLayoutSize FlowBoxSize(TQVLFlowType aShape, TLayoutSize aText) {
    const double w = aText.Width + 2 * kTextPaddingX;
    const double h = aText.Height + 2 * kTextPaddingY;
    TLayoutSize box{w, h};
    switch (aShape) {
        case TQVLFlowType::ftDecision:
            box = {2 * w, 2 * h};
            break;
        case TQVLFlowType::ftEllipse:
            box = {w * kSqrt2, h * kSqrt2};
            break;
        case TQVLFlowType::ftStart:
        case TQVLFlowType::ftEnd: {
            const double side = std::max(w, h) * kSqrt2;
            box = {side, side};
            break;
        }
        case TQVLFlowType::ftTerminator:
        case TQVLFlowType::ftData:
        case TQVLFlowType::ftManualInput:
        case TQVLFlowType::ftManualOperation:
        case TQVLFlowType::ftPreparation: {
            // The slanted or rounded ends take half the final height each, so the width follows the
            // height after its minimum.
            const double height = std::max(h, kMinBoxHeight);
            box = {w + height, height};
            break;
        }
        case TQVLFlowType::ftDocument:
        case TQVLFlowType::ftMultiDocument:
            box = {w, h * kDocumentWave};
            break;
        case TQVLFlowType::ftDatabase:
            box = {w, h * kDatabaseCaps};
            break;
        case TQVLFlowType::ftPredefined:
            box = {w * kPredefinedBars, h};
            break;
        case TQVLFlowType::ftProcess:
        case TQVLFlowType::ftStep:
            break;
    }
    box.Width = std::max(box.Width, kMinBoxWidth);
    box.Height = std::max(box.Height, kMinBoxHeight);
    if (aShape == TQVLFlowType::ftStart || aShape == TQVLFlowType::ftEnd)
        box.Width = box.Height = std::max(box.Width, box.Height);
    return box;
}

TLayoutSize FlowTextArea(TQVLFlowType aShape, TLayoutSize aBox) {
    const double w = aBox.Width;
    const double h = aBox.Height;
    TLayoutSize area{w, h};
    switch (aShape) {
        case TQVLFlowType::ftDecision:
            area = {w / 2, h / 2};
            break;
        case TQVLFlowType::ftEllipse:
        case TQVLFlowType::ftStart:
        case TQVLFlowType::ftEnd:
            area = {w / kSqrt2, h / kSqrt2};
            break;
        case TQVLFlowType::ftTerminator:
        case TQVLFlowType::ftData:
        case TQVLFlowType::ftManualInput:
        case TQVLFlowType::ftManualOperation:
        case TQVLFlowType::ftPreparation:
            area = {w - h, h};
            break;
        case TQVLFlowType::ftDocument:
        case TQVLFlowType::ftMultiDocument:
            area = {w, h / kDocumentWave};
            break;
        case TQVLFlowType::ftDatabase:
            area = {w, h / kDatabaseCaps};
            break;
        case TQVLFlowType::ftPredefined:
            area = {w / kPredefinedBars, h};
            break;
        case TQVLFlowType::ftProcess:
        case TQVLFlowType::ftStep:
            break;
    }
    return {std::max(0.0, area.Width - 2 * kTextPaddingX), std::max(0.0, area.Height - 2 * kTextPaddingY)};
}

TLayoutPoint ClipToBox(const TLayoutBox& aBox, TLayoutPoint aToward) {
    const TLayoutPoint c = aBox.Center();
    const double dx = aToward.X - c.X;
    const double dy = aToward.Y - c.Y;
    if (dx == 0 && dy == 0) return c;
    const double sx = dx != 0 ? (aBox.Width / 2) / std::abs(dx) : kInf;
    const double sy = dy != 0 ? (aBox.Height / 2) / std::abs(dy) : kInf;
    const double s = std::min({sx, sy, 1.0});
    return {c.X + dx * s, c.Y + dy * s};
}

std::int64_t BaseFromMM(double aMM) {
    return static_cast<std::int64_t>(std::llround(aMM * static_cast<double>(kBasePerMM)));
}

}  // namespace Orvex
