// The Cairo item factory: one line per kind that has painting code.
#include "host/paint/item_painters.h"

namespace Orvex::Paint {

std::unique_ptr<TORXBaseItem> CreateCairoItem(TORXBaseLabel* document, TQVLItemType type) {
    switch (type) {
        case TQVLItemType::itLine:
            return std::make_unique<TCairoItem<TORXBaseLine>>(document);
        case TQVLItemType::itPolyLine:
            return std::make_unique<TCairoItem<TORXBasePolyLine>>(document);
        case TQVLItemType::itArc:
            return std::make_unique<TCairoItem<TORXBaseArc>>(document);
        case TQVLItemType::itArrowLine:
            return std::make_unique<TCairoItem<TORXBaseArrowLine>>(document);
        case TQVLItemType::itDim:
            return std::make_unique<TCairoItem<TORXBaseDim>>(document);
        case TQVLItemType::itRectangle:
            return std::make_unique<TCairoItem<TORXBaseRectangle>>(document);
        case TQVLItemType::itPolygon:
            return std::make_unique<TCairoItem<TORXBasePolygon>>(document);
        case TQVLItemType::itBezier:
            return std::make_unique<TCairoItem<TORXBaseBezier>>(document);
        case TQVLItemType::itCircle:
            return std::make_unique<TCairoItem<TORXBaseCircle>>(document);
        case TQVLItemType::itEllipse:
            return std::make_unique<TCairoItem<TORXBaseEllipse>>(document);
        case TQVLItemType::itSector:
            return std::make_unique<TCairoItem<TORXBaseSector>>(document);
        case TQVLItemType::itText:
            return std::make_unique<TCairoItem<TORXBaseText>>(document, false);
        case TQVLItemType::itPara:
            return std::make_unique<TCairoItem<TORXBasePara>>(document, false);
        case TQVLItemType::itPolyText:
            return std::make_unique<TCairoItem<TORXDataPoly>>(document, false);
        case TQVLItemType::itRichText:
            return std::make_unique<TCairoItem<TORXBaseRichText>>(document, false);
        case TQVLItemType::itFlow:
            return std::make_unique<TCairoItem<TORXBaseFlow>>(document, false);
        case TQVLItemType::itLink:
            return std::make_unique<TCairoItem<TORXBaseLink>>(document, false);
        default:
            return nullptr;
    }
}

}  // namespace Orvex::Paint
