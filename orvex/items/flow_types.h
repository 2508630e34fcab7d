// The shapes of flow elements and the courses of links: shared by the flow items, the diagram importers
// and the agent tools. Ordinals are stored in drawing files: never reorder.
#pragma once

#include <cstdint>

namespace Orvex {

enum class TQVLFlowType : std::uint8_t {
    ftTerminator,
    ftProcess,
    ftDocument,
    ftMultiDocument,
    ftDecision,
    ftData,
    ftDatabase,
    ftPredefined,
    ftManualInput,
    ftManualOperation,
    ftPreparation,
    ftEllipse,
    ftStart,
    ftStep,
    ftEnd
};
inline constexpr int kFlowTypeCount = 15;

enum class TQVLinkType : std::uint8_t {
    ltDirLine,
    ltLeftRightTopBottom,
    ltTopBottomLeftRight,
    ltStepLineTwoPto,
    ltArc,
    ltCurve,
    ltPolyline,
    ltRoundCorner
};
inline constexpr int kLinkTypeCount = 8;

}  // namespace Orvex
