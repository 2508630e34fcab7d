// The vocabulary items share with the document: item kinds with their default names and point counts,
// the layer and item flags, and the small records of snapping, moving and linking.
#pragma once

#include <cstdint>
#include <string_view>

#include "orvex/core/types.h"

namespace Orvex {

class TORXBaseItem;

// Ordinals are stored in drawing files: never reorder.
enum class TQVLItemType : std::uint8_t {
    itUndefined,
    itPoint,
    itLine,
    itArrowLine,
    itPolyLine,
    itArc,
    itRectangle,
    itPolygon,
    itCircle,
    itEllipse,
    itText,
    itPara,
    itBarcode,
    itPDF417,
    itDataMatrix,
    itQRCode,
    itImage,
    itFlow,
    itLink,
    itTable,
    itPolyText,
    itRank,
    itNutriScore,
    itLevel,
    itSymbol,
    itBezier,
    itDim,
    itSector,
    itPackage,
    itRichText
};
inline constexpr int kItemTypeCount = 30;

std::string_view NameItem(TQVLItemType type);   // "None" for a value outside the kinds
std::int32_t NumPointsItem(TQVLItemType type);  // points a new item starts with; 1 outside the kinds
bool IsPointListKind(TQVLItemType type);        // polyline, polygon, Bézier: the point count is free

// Flags of layers and of items: the same set serves both.
enum class TQVLayerOp : std::uint8_t {
    lopVisible,
    lopPrint,
    lopSelectable,
    lopExport,
    lopBox,
    lopImage,
    lopMap,
    lopPrintBack,
    lopExportBack
};
using TQVLayerOpts = TSet<TQVLayerOp>;
inline constexpr TQVLayerOpts kDefaultItemOptions{TQVLayerOp::lopVisible, TQVLayerOp::lopPrint,
                                                  TQVLayerOp::lopSelectable, TQVLayerOp::lopExport};

enum class TQVLItemState : std::uint8_t { isNormal, isSelected, isRef };

// How a container's frame is drawn; cfNone for an item that is not a container. Stored in drawing files.
enum class TQVLContainerFrame : std::uint8_t { cfNone, cfPlain, cfRounded };

// Which coordinate or size a position command keeps.
enum class TQVLPosType : std::uint8_t { ptX, ptY, ptXY, ptRadio, ptWidth, ptHeight };

// How a drag acts on an item: the whole item, one of its points, or its size from the far corner.
enum class TQVLMoveOpt : std::uint8_t { moMove, moPoint, moResize };

// What a snap search looks for.
enum class TQVLSnap : std::uint8_t { snNone, snEndPoint, snMidPoint, snCenter, snIntersection, snNearest };

// Where a snap search landed: the item, the point index (one-based, 0 for none) and the position.
struct TQVLRef {
    TORXBaseItem* Item = nullptr;
    std::int32_t Index = 0;
    std::int64_t X = 0;
    std::int64_t Y = 0;
};

// A connector end attached to an item's link point.
struct TQVLink {
    std::int32_t ID = 0;      // the item's internal id
    std::int16_t Index = -1;  // link point position code; -1 when not on a link point
};

// Whether exported SVG is a standalone file or embedded in a page.
enum class TQVLExportSVG : std::uint8_t { esFile, esEmbedded };

// The property groups an inspector shows: those every item has, and the kind-specific ones.
enum class TQVLInsTypeBase : std::uint8_t {
    ibID,
    ibLayer,
    ibColor,
    ibPenWidth,
    ibAngle,
    ibOptions,
    ibPoints
};
enum class TQVLInsType : std::uint8_t {
    inFill,
    inBackColor,
    inLineType,
    inFont,
    inText,
    inTerminators,
    inData
};
using TQVLInsTypeBases = TSet<TQVLInsTypeBase>;
using TQVLInsTypes = TSet<TQVLInsType>;

}  // namespace Orvex
