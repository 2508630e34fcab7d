#include "orvex/document/headless.h"

#include "orvex/io/json_text.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/poly_items.h"
#include "orvex/items/rich_text_item.h"
#include "orvex/items/shape_items.h"
#include "orvex/items/text_items.h"

namespace Orvex {

namespace {
// What obj holds beyond the keys the item itself writes; a value nested too deep to write back is left out.
// A symbol has no angle, colour or pen width of its own (its parts carry them): those keys in its object are
// not kept either, or they would come back out of a kind that never writes them.
std::string KindKeys(const TJSON& obj, const TJSON& written, TQVLItemType type) {
    const auto commonLeftOut = [type](const std::string& aKey) {
        return type == TQVLItemType::itSymbol && (aKey == "Angle" || aKey == "Color" || aKey == "PenWidth");
    };
    TJSON extra = TJSON::object();
    for (const auto& [key, value] : obj.items())
        if (!written.contains(key) && !commonLeftOut(key) && JsonTreeNestingWithin(value, kJSONMaxDepth))
            extra[key] = value;
    return extra.dump();
}

void AppendKindKeys(TJSON& obj, const std::string& text) {
    const TJSON extra = ParseJsonOrDiscarded(text);
    if (!extra.is_object()) return;
    for (const auto& [key, value] : extra.items()) obj[key] = value;
}
}  // namespace

TJSON TORXHeadlessPoint::WriteJson() const {
    TJSON obj = TORXBasePoint::WriteJson();
    AppendKindKeys(obj, fKindKeys);
    return obj;
}

void TORXHeadlessPoint::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBasePoint::ReadJson(version, obj);
    if (obj.is_object()) fKindKeys = KindKeys(obj, TORXBasePoint::WriteJson(), ItemType());
}

TJSON TORXHeadlessBox::WriteJson() const {
    TJSON obj = TORX2DItem::WriteJson();
    AppendKindKeys(obj, fKindKeys);
    return obj;
}

void TORXHeadlessBox::ReadJson(std::int32_t version, const TJSON& obj) {
    TORX2DItem::ReadJson(version, obj);
    if (obj.is_object()) fKindKeys = KindKeys(obj, TORX2DItem::WriteJson(), ItemType());
}

void TORXHeadlessBox::UpdateBounds() {
    if (fPoints.size() < 2) return;
    fBoundsRect = TQVLRect(fPoints[0].X, fPoints[0].Y, fPoints[1].X, fPoints[1].Y);
    fBoundsRect.NormalizeRect();
}

bool IsBoxKind(TQVLItemType type) {
    switch (type) {
        case TQVLItemType::itRectangle:
        case TQVLItemType::itCircle:
        case TQVLItemType::itEllipse:
        case TQVLItemType::itText:
        case TQVLItemType::itPara:
        case TQVLItemType::itBarcode:
        case TQVLItemType::itPDF417:
        case TQVLItemType::itDataMatrix:
        case TQVLItemType::itQRCode:
        case TQVLItemType::itImage:
        case TQVLItemType::itFlow:
        case TQVLItemType::itTable:
        case TQVLItemType::itRank:
        case TQVLItemType::itNutriScore:
        case TQVLItemType::itLevel:
        case TQVLItemType::itSector:
        case TQVLItemType::itPackage:
        case TQVLItemType::itRichText:
            return true;
        default:
            return false;
    }
}

std::unique_ptr<TORXBaseItem> TORXHeadlessLabel::MakeItem(TQVLItemType type) {
    if (static_cast<int>(type) >= kItemTypeCount) return nullptr;
    switch (type) {
        case TQVLItemType::itText:
            return std::make_unique<THeadlessItem<TORXBaseText>>(this, false);
        case TQVLItemType::itPara:
            return std::make_unique<THeadlessItem<TORXBasePara>>(this, false);
        case TQVLItemType::itPolyText:
            return std::make_unique<THeadlessItem<TORXDataPoly>>(this, false);
        case TQVLItemType::itRichText:
            return std::make_unique<THeadlessItem<TORXBaseRichText>>(this, false);
        case TQVLItemType::itFlow:
            return std::make_unique<THeadlessItem<TORXBaseFlow>>(this, false);
        case TQVLItemType::itLink:
            return std::make_unique<THeadlessItem<TORXBaseLink>>(this, false);
        case TQVLItemType::itLine:
            return std::make_unique<THeadlessItem<TORXBaseLine>>(this);
        case TQVLItemType::itPolyLine:
            return std::make_unique<THeadlessItem<TORXBasePolyLine>>(this);
        case TQVLItemType::itArc:
            return std::make_unique<THeadlessItem<TORXBaseArc>>(this);
        case TQVLItemType::itArrowLine:
            return std::make_unique<THeadlessItem<TORXBaseArrowLine>>(this);
        case TQVLItemType::itDim:
            return std::make_unique<THeadlessItem<TORXBaseDim>>(this);
        case TQVLItemType::itRectangle:
            return std::make_unique<THeadlessItem<TORXBaseRectangle>>(this);
        case TQVLItemType::itPolygon:
            return std::make_unique<THeadlessItem<TORXBasePolygon>>(this);
        case TQVLItemType::itBezier:
            return std::make_unique<THeadlessItem<TORXBaseBezier>>(this);
        case TQVLItemType::itCircle:
            return std::make_unique<THeadlessItem<TORXBaseCircle>>(this);
        case TQVLItemType::itEllipse:
            return std::make_unique<THeadlessItem<TORXBaseEllipse>>(this);
        case TQVLItemType::itSector:
            return std::make_unique<THeadlessItem<TORXBaseSector>>(this);
        default:
            break;
    }
    if (IsBoxKind(type)) return std::make_unique<TORXHeadlessBox>(this, type);
    return std::make_unique<TORXHeadlessPoint>(this, type);
}

void TORXHeadlessLabel::AssignSymbolAndFlowLinks() {
    QVLAssignFlowLinks(*this);
}

}  // namespace Orvex
