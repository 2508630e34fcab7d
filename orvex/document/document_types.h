// The document's enumerations: options, the 16-bit state word, editor modes, what Clear removes, what
// observers are told, the drawing tools and their steps. Ordinals are stored or compared: never reorder.
#pragma once

#include <cstdint>
#include <string>

#include "orvex/core/types.h"

namespace Orvex {

enum class TOrvexOption : std::uint8_t { loUniqueID, loUndoRedo, loBackImageLayer, loBackImageMap };
using TOrvexOptions = TSet<TOrvexOption>;

// Value n is bit n of the document's 16-bit state word.
enum class TOrvexState : std::uint8_t {
    lsModified,
    lsUpdate,
    lsUpdateMeasure,
    lsCalc,
    lsCalcNoUpdate,
    lsReading,
    lsUpdating,
    lsNoPaint,
    lsPaste,
    lsPrint
};

enum class TQVLEditorMode : std::uint8_t { emLabelling, emFlowChart, emDrawing, emInteractive };

enum class TQVLClear : std::uint8_t {
    cleAll,
    cleItems,
    cleSelection,
    cleLayers,
    cleBaseLayer,
    cleCounters,
    cleSymbols,
    cleAskList,
    cleValList,
    cleUndoRedo,
    clePreview,
    cleDimStyles,
    cleBaseStyle
};
using TQVLClears = TSet<TQVLClear>;

enum class TQVChange : std::uint8_t {
    chLabelDef,
    chBackSurf,
    chAligns,
    chMeasure,
    chPropItem,
    chUnits,
    chPaint,
    chDraw,
    chSelect,
    chScrollSelect,
    chClearSelect,
    chCursor,
    chSelCur,
    chInspect,
    chEditInspect,
    chEndInspect,
    chInspectPoint,
    chText,
    chChText,
    chPickSel,
    chSelSymbol
};

enum class TQVLEdAction : std::uint8_t {
    eaNone,
    eaSelection,
    eaMove,
    eaPoint,
    eaLine,
    eaArrowLine,
    eaRectangle,
    eaPolyline,
    eaArc,
    eaPolygon,
    eaBezier,
    eaCirclePR,
    eaCircle2P,
    eaCircle3P,
    eaEllipse,
    eaText,
    eaEdText,
    eaMoveText,
    eaParagraph,
    eaRichText,
    eaTrim,
    eaJoin,
    eaExtend,
    eaEquidist,
    eaBarcode,
    eaPDF417,
    eaDataMatrix,
    eaQRCode,
    eaImage,
    eaFlow,
    eaLink,
    eaPolyLink,
    eaTable,
    eaPolyText,
    eaRank,
    eaNutriScore,
    eaLevel,
    eaSymbol,
    eaDim,
    eaDimRad1,
    eaDimRad2,
    eaDimDia1,
    eaDimDia2,
    eaSectorPR,
    eaSector2P,
    eaSector3P,
    eaPackage,
    eaDimAng
};
inline constexpr int kEdActionCount = 48;

enum class TQVLEdState : std::uint8_t {
    edPickPoint,
    edSelectDrag,
    edPickFirst,
    edPickSecond,
    edPickThird,
    edPickNext,
    edPickRadio,
    edPickCenter,
    edPickRadioX,
    edPickRadioY,
    edEnd,
    edEditing,
    edPickRef,
    edPickNextRef,
    edFirstRef,
    edSecondRef,
    edPick1Distance,
    edPick2Distance,
    edTrim,
    edExtend,
    edEquidist,
    edPackage,
    edPickSide,
    edPickCircle
};

enum class TQVLReadType : std::uint8_t { rdNormal, rdPaste, rdPreview };

// How AlignObjects lines up the selection against its first item.
enum class TQVLObjectAlign : std::uint8_t { oaLeft, oaRight, oaTop, oaBottom, oaCenterH, oaCenterV };

// What the host's info event shows about the tool in use: position and size in base units.
struct TQVLActionInfo {
    TQVLEdAction Action = TQVLEdAction::eaNone;
    TQVLEdState State = TQVLEdState::edPickPoint;
    std::int64_t X = 0;
    std::int64_t Y = 0;
    std::int64_t Width = 0;
    std::int64_t Height = 0;
    std::string Text;  // the tool's name and its current step, from the message catalogue
    // While a text is edited in place: the caret as a byte offset into Editor().TextEdit().Text, and X, Y,
    // Width and Height are the edited item's bounds; -1 otherwise.
    std::int64_t Caret = -1;
};

}  // namespace Orvex
