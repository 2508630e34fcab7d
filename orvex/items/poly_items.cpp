#include "orvex/items/poly_items.h"

#include <fmt/format.h>

#include <algorithm>

#include "orvex/io/json_text.h"
#include "orvex/io/json_utils.h"
#include "orvex/io/json_writer.h"
#include "orvex/items/box_helpers.h"
#include "orvex/items/enum_bounds.h"
#include "orvex/items/svg_style.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {

namespace {
using U = TJSONUtils;

TQVLRect BoxOf(const TORX2DItem& item) {
    TQVLRect r(item.GetPointX(1), item.GetPointY(1), item.GetPointX(2), item.GetPointY(2));
    r.NormalizeRect();
    return r;
}
}  // namespace

// [SECTION] Multi-purpose item

void TORXBasePoly::SetItems(const std::vector<std::string>& items) {
    if (items == fItems) return;
    TORXTxtCmd::AddCommand(this, PolyProp::kItems);
    fItems = items;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

std::string TORXBasePoly::ShownText() const {
    if (fItems.empty()) return fData;
    std::string out;
    for (const auto& item : fItems) out += (out.empty() ? "" : "\n") + item;
    return out;
}

bool TORXBasePoly::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    // A code or a text covers its box; an empty text box only shows its outline when filled.
    const bool solid =
        fPolyType != TQVLPolyType::poText || !ShownText().empty() || (fFill && AlphaOf(fBackColor) != 0);
    return PickBox(BoxOf(*this), x, y, tolerance, solid);
}

bool TORXBasePoly::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                              TQVLRef& ref) {
    return SnapBox(this, BoxOf(*this), x, y, tolerance, snap, ref);
}

TJSON TORXBasePoly::WriteJson() const {
    // The common keys alone: the item places "Filled" among its own and names its fill "FillColor".
    TJsonTreeWriter common;
    common.BeginObject();
    TORXBaseItem::WriteKeys(common);
    common.EndObject();
    TJSON obj = common.Take();
    obj["PolyType"] = static_cast<int>(fPolyType);
    obj["Items"] = U::SetStrings(fItems);
    obj["Data"] = fData;
    obj["Filled"] = fFill;
    obj["FillColor"] = U::SetAlphaColor(fBackColor);
    obj["Radio"] = U::Round(fRadio);
    obj["HorzAlign"] = static_cast<int>(fHorzAlign);
    obj["VertAlign"] = static_cast<int>(fVertAlign);
    obj["PaddingX"] = U::Round(fPaddingX);
    obj["PaddingY"] = U::Round(fPaddingY);
    obj["Distance"] = U::Round(fDistance);
    obj["Factor"] = U::Round(fFactor);
    obj["BarcodeType"] = fBarcodeType;
    obj["BarHeight"] = U::Round(fBarHeight);
    obj["BarWidth"] = U::Round(fBarWidth);
    obj["CheckSum"] = fCheckSum;
    obj["CheckType"] = fCheckType;
    obj["AutoType128"] = fAutoType128;
    obj["Encoding"] = fEncoding;
    obj["ShowNumber"] = fShowNumber;
    obj["DMShape"] = fDMShape;
    obj["DMSize"] = fDMSize;
    return obj;
}

void TORXBasePoly::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBaseItem::ReadJson(version, obj);
    fPolyType = EnumWithin(U::GetInt(obj, "PolyType"), TQVLPolyType::poDataMatrix);
    fItems = U::GetStrings(obj, "Items");
    fData = U::GetString(obj, "Data");
    fFill = U::GetBool(obj, "Filled");
    fBackColor = U::GetColor(obj, "FillColor");
    fRadio = static_cast<float>(U::GetFloat(obj, "Radio"));
    fHorzAlign = EnumWithin(U::GetInt(obj, "HorzAlign"), TQVLHorzAlign::haJustify);
    fVertAlign = EnumWithin(U::GetInt(obj, "VertAlign"), TQVLVertAlign::vaBottom);
    fPaddingX = static_cast<float>(U::GetFloat(obj, "PaddingX"));
    fPaddingY = static_cast<float>(U::GetFloat(obj, "PaddingY"));
    fDistance = static_cast<float>(U::GetFloat(obj, "Distance"));
    fFactor = static_cast<float>(U::GetFloat(obj, "Factor"));
    fBarcodeType = U::GetInt(obj, "BarcodeType");
    fBarHeight = static_cast<float>(U::GetFloat(obj, "BarHeight"));
    fBarWidth = static_cast<float>(U::GetFloat(obj, "BarWidth"));
    fCheckSum = U::GetBool(obj, "CheckSum");
    fCheckType = U::GetInt(obj, "CheckType");
    fAutoType128 = U::GetBool(obj, "AutoType128");
    fEncoding = U::GetInt(obj, "Encoding");
    fShowNumber = U::GetBool(obj, "ShowNumber");
    fDMShape = U::GetInt(obj, "DMShape");
    fDMSize = U::GetInt(obj, "DMSize");
    UpdateBounds();
}

void TORXBasePoly::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                            TQVLExportSVG mode, float factor, bool flag) const {
    (void)defs, (void)mode, (void)factor, (void)flag;
    const TQVLUnits unit = fOwner->Units();
    const TQVLRect box = BoxOf(*this);
    body.push_back(fmt::format("<g id=\"{}\">", SvgEscape(fID)));
    if (fFill) body.push_back(SvgBoxRect(box, fRadio, unit, SvgFill(fBackColor, true)));
    // The text fills the box line by line; a code shows its frame and its data until the encoders draw it.
    const ITextMetrics& metrics = QVLTextMetrics(QVLab());
    std::vector<std::string> lines = WrapText(ShownText(), TQVLFont{}, 0, metrics);
    TQVLFont font;
    font.FontColor = fColor;
    const TQVLRect frame = AdjustRect(box, fAngle);
    if (fPolyType != TQVLPolyType::poText) {
        body.push_back(SvgBoxRect(
            box, 0.0f, unit, " fill=\"none\"" + SvgStroke(fColor, GetPenWidthMM(), TQVLineType::ii21, unit)));
        lines = {fData};
    }
    // The largest font (up to 12 mm, 3 mm for a code's caption) whose lines fit the frame both ways.
    const double height = GetBaseValue(frame.GetHeight() - 2 * SetBaseValue(fPaddingY));
    const double width = GetBaseValue(frame.GetWidth() - 2 * SetBaseValue(fPaddingX));
    double fit = height / (1.2 * static_cast<double>(std::max<std::size_t>(lines.size(), 1)));
    TQVLFont unitFont = font;
    unitFont.FontHeight = 1.0f;
    for (const auto& line : lines) {
        const double perMM = GetBaseValue(metrics.TextWidth(line, unitFont));
        if (perMM > 0.0) fit = std::min(fit, width / perMM);
    }
    font.FontHeight =
        static_cast<float>(std::clamp(fit, 0.5, fPolyType == TQVLPolyType::poText ? 12.0 : 3.0));
    const auto placed = PosBaseLinesText(lines, font, box, fHorzAlign, fVertAlign, fAngle,
                                         SetBaseValue(fPaddingX), SetBaseValue(fPaddingY), 0, metrics);
    std::string text =
        fmt::format("<text{}{}>", SvgFontAttributes(font, unit), SvgRotation(fAngle, box, unit));
    for (const auto& line : placed)
        text += fmt::format("<tspan x=\"{}\" y=\"{}\">{}</tspan>", SvgLength(line.X, unit),
                            SvgLength(line.Y, unit), SvgEscape(line.Text));
    body.push_back(text + "</text>");
    body.push_back("</g>");
}

void TORXBasePoly::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    (void)baseSet;
    set = set & TQVLInsTypes{TQVLInsType::inFill, TQVLInsType::inBackColor, TQVLInsType::inText,
                             TQVLInsType::inData};
}

std::int64_t TORXBasePoly::GetEnumProp(std::uint16_t p) const {
    switch (p) {
        case PolyProp::kPolyType:
            return static_cast<std::int64_t>(fPolyType);
        case PolyProp::kHorzAlign:
            return static_cast<std::int64_t>(fHorzAlign);
        case PolyProp::kVertAlign:
            return static_cast<std::int64_t>(fVertAlign);
        default:
            return TPropItem::GetEnumProp(p);
    }
}

void TORXBasePoly::SetEnumProp(std::uint16_t p, std::int64_t v) {
    switch (p) {
        case PolyProp::kPolyType:
            return SetPolyType(EnumWithin(v, TQVLPolyType::poDataMatrix));
        case PolyProp::kHorzAlign:
            return SetHorzAlign(EnumWithin(v, TQVLHorzAlign::haJustify));
        case PolyProp::kVertAlign:
            return SetVertAlign(EnumWithin(v, TQVLVertAlign::vaBottom));
        default:
            return TPropItem::SetEnumProp(p, v);
    }
}

std::string TORXBasePoly::GetTextProp(std::uint16_t p) const {
    return p == PolyProp::kItems ? U::SetStrings(fItems).dump() : TPropItem::GetTextProp(p);
}

void TORXBasePoly::SetTextProp(std::uint16_t p, const std::string& v) {
    if (p != PolyProp::kItems) return TPropItem::SetTextProp(p, v);
    const TJSON obj = TJSON{{"Items", ParseJsonOrDiscarded(v)}};
    SetItems(U::GetStrings(obj, "Items"));
}

bool* TORXBasePoly::BoolField(std::uint16_t p) {
    switch (p) {
        case PolyProp::kCheckSum:
            return &fCheckSum;
        case PolyProp::kAutoType128:
            return &fAutoType128;
        case PolyProp::kShowNumber:
            return &fShowNumber;
        default:
            return nullptr;
    }
}

std::string* TORXBasePoly::TextField(std::uint16_t p) {
    return p == PolyProp::kData ? &fData : nullptr;
}

float* TORXBasePoly::FloatField(std::uint16_t p) {
    switch (p) {
        case PolyProp::kRadio:
            return &fRadio;
        case PolyProp::kPaddingX:
            return &fPaddingX;
        case PolyProp::kPaddingY:
            return &fPaddingY;
        case PolyProp::kDistance:
            return &fDistance;
        case PolyProp::kFactor:
            return &fFactor;
        case PolyProp::kBarHeight:
            return &fBarHeight;
        case PolyProp::kBarWidth:
            return &fBarWidth;
        default:
            return nullptr;
    }
}

std::int64_t* TORXBasePoly::IntField(std::uint16_t p) {
    switch (p) {
        case PolyProp::kBarcodeType:
            return &fBarcodeType;
        case PolyProp::kCheckType:
            return &fCheckType;
        case PolyProp::kEncoding:
            return &fEncoding;
        case PolyProp::kDMShape:
            return &fDMShape;
        case PolyProp::kDMSize:
            return &fDMSize;
        default:
            return nullptr;
    }
}

// [SECTION] Data-bound multi-purpose item

TJSON TORXDataPoly::WriteJson() const {
    TJSON obj = TORXBasePoly::WriteJson();
    obj["FillType"] = static_cast<int>(fFillType);
    obj["Field"] = fField;
    obj["Data"] = fData;  // already written by the item: the bound value is the item's data
    obj["Format"] = fFormat;
    obj["AddParenthesis"] = fAddParenthesis;
    obj["IA"] = fIA;
    return obj;
}

void TORXDataPoly::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBasePoly::ReadJson(version, obj);
    fFillType = EnumWithin(U::GetInt(obj, "FillType"), TQVLFillType::ftImg64);
    fField = U::GetString(obj, "Field");
    fFormat = U::GetString(obj, "Format");
    fAddParenthesis = U::GetBool(obj, "AddParenthesis");
    fIA = U::GetString(obj, "IA");
}

std::int64_t TORXDataPoly::GetEnumProp(std::uint16_t p) const {
    return p == PolyProp::kFillType ? static_cast<std::int64_t>(fFillType) : TORXBasePoly::GetEnumProp(p);
}

void TORXDataPoly::SetEnumProp(std::uint16_t p, std::int64_t v) {
    if (p == PolyProp::kFillType)
        SetFillType(EnumWithin(v, TQVLFillType::ftImg64));
    else
        TORXBasePoly::SetEnumProp(p, v);
}

bool* TORXDataPoly::BoolField(std::uint16_t p) {
    return p == PolyProp::kAddParenthesis ? &fAddParenthesis : TORXBasePoly::BoolField(p);
}

std::string* TORXDataPoly::TextField(std::uint16_t p) {
    if (p == PolyProp::kField) return &fField;
    if (p == PolyProp::kFormat) return &fFormat;
    if (p == PolyProp::kIA) return &fIA;
    return TORXBasePoly::TextField(p);
}

}  // namespace Orvex
