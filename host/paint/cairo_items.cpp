// The Cairo item factory: one line per kind that has painting code.
#include "host/paint/item_painters.h"

namespace Orvex::Paint {

TORXBaseItem* CreateCairoItem(TORXBaseLabel* document, TQVLItemType type) {
    // The document owns every item it creates.
    switch (type) {
        case TQVLItemType::itLine:
            return new TCairoItem<TORXBaseLine>(document);
        case TQVLItemType::itPolyLine:
            return new TCairoItem<TORXBasePolyLine>(document);
        case TQVLItemType::itArc:
            return new TCairoItem<TORXBaseArc>(document);
        case TQVLItemType::itArrowLine:
            return new TCairoItem<TORXBaseArrowLine>(document);
        case TQVLItemType::itDim:
            return new TCairoItem<TORXBaseDim>(document);
        case TQVLItemType::itRectangle:
            return new TCairoItem<TORXBaseRectangle>(document);
        case TQVLItemType::itPolygon:
            return new TCairoItem<TORXBasePolygon>(document);
        case TQVLItemType::itBezier:
            return new TCairoItem<TORXBaseBezier>(document);
        case TQVLItemType::itCircle:
            return new TCairoItem<TORXBaseCircle>(document);
        case TQVLItemType::itEllipse:
            return new TCairoItem<TORXBaseEllipse>(document);
        case TQVLItemType::itSector:
            return new TCairoItem<TORXBaseSector>(document);
        case TQVLItemType::itText:
            return new TCairoItem<TORXBaseText>(document, false);
        case TQVLItemType::itPara:
            return new TCairoItem<TORXBasePara>(document, false);
        case TQVLItemType::itPolyText:
            return new TCairoItem<TORXDataPoly>(document, false);
        case TQVLItemType::itRichText:
            return new TCairoItem<TORXBaseRichText>(document, false);
        case TQVLItemType::itFlow:
            return new TCairoItem<TORXBaseFlow>(document, false);
        case TQVLItemType::itLink:
            return new TCairoItem<TORXBaseLink>(document, false);
        default:
            return nullptr;
    }
}

}  // namespace Orvex::Paint
