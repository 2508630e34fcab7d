// Texts, paragraphs and data texts: properties, layout, picking, snapping, JSON and SVG.
//
// [SECTION] Shared text item   [SECTION] Text   [SECTION] Paragraph   [SECTION] Data text
#include "orvex/items/text_items.h"

#include <fmt/format.h>

#include <algorithm>

#include "orvex/core/numeric.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/box_helpers.h"
#include "orvex/items/enum_bounds.h"
#include "orvex/items/svg_style.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {

namespace {
using U = TJSONUtils;

// Sizes go through the clamp that coordinates do, so a text's extent can be added to its position.
std::int64_t MM(float mm) {
    return Qvl::Utils::ClampCoord(SetBaseValue(mm));
}

}  // namespace

bool SnapBox(TORXBaseItem* item, const TQVLRect& r, std::int64_t x, std::int64_t y, std::int32_t tolerance,
             TQVLSnap snap, TQVLRef& ref) {
    const auto near = [&](std::int64_t px, std::int64_t py, std::int32_t index) {
        if (Distance(x, y, px, py) > tolerance) return false;
        ref = TQVLRef{item, index, px, py};
        return true;
    };
    const std::int64_t cx = (r.Left + r.Right) / 2;
    const std::int64_t cy = (r.Top + r.Bottom) / 2;
    switch (snap) {
        case TQVLSnap::snEndPoint:
        case TQVLSnap::snNearest:
            return near(r.Left, r.Top, 1) || near(r.Right, r.Top, 2) || near(r.Right, r.Bottom, 3) ||
                   near(r.Left, r.Bottom, 4);
        case TQVLSnap::snMidPoint:
            return near(cx, r.Top, 1) || near(r.Right, cy, 2) || near(cx, r.Bottom, 3) || near(r.Left, cy, 4);
        case TQVLSnap::snCenter:
            return near(cx, cy, 0);
        case TQVLSnap::snNone:
        case TQVLSnap::snIntersection:
            return false;
    }
    return false;
}

bool PickBox(const TQVLRect& r, std::int64_t x, std::int64_t y, std::int32_t tolerance, bool solid) {
    TQVLRect outer = r;
    outer.Inflate(tolerance, tolerance);
    if (!(outer.Left <= x && x <= outer.Right && outer.Top <= y && y <= outer.Bottom)) return false;
    if (solid) return true;
    TQVLRect inner = r;
    inner.Inflate(-tolerance, -tolerance);
    return inner.IsEmpty() || !(inner.Left < x && x < inner.Right && inner.Top < y && y < inner.Bottom);
}

void FitRect(const TQVLRect& r, std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
             std::int64_t& maxY) {
    const auto lower = [](std::int64_t& e, std::int64_t v) { e = (e == -1 || v < e) ? v : e; };
    const auto upper = [](std::int64_t& e, std::int64_t v) { e = (e == -1 || v > e) ? v : e; };
    lower(minX, r.Left), upper(maxX, r.Right), lower(minY, r.Top), upper(maxY, r.Bottom);
}

std::string SvgFontAttributes(const TQVLFont& font, TQVLUnits unit) {
    std::string out =
        fmt::format(" font-family=\"{}\" font-size=\"{}\"{}", SvgEscape(font.Name),
                    SvgNumber(MillimetresInUnit(font.FontHeight, unit)), SvgFill(font.FontColor, true));
    if (font.Bold) out += " font-weight=\"bold\"";
    if (font.Italic) out += " font-style=\"italic\"";
    if (font.Underline || font.Strikeout)
        out += fmt::format(" text-decoration=\"{}{}{}\"", font.Underline ? "underline" : "",
                           font.Underline && font.Strikeout ? " " : "", font.Strikeout ? "line-through" : "");
    return out;
}

std::string SvgRotation(TQVLAngle angle, const TQVLRect& box, TQVLUnits unit) {
    if (angle == TQVLAngle::ag0) return {};
    return fmt::format(" transform=\"rotate({} {} {})\"", 90 * static_cast<int>(angle),
                       SvgLength((box.Left + box.Right) / 2, unit),
                       SvgLength((box.Top + box.Bottom) / 2, unit));
}

std::string SvgBoxRect(const TQVLRect& r, float radiusMM, TQVLUnits unit, const std::string& paint) {
    std::string rounded;
    if (radiusMM > 0.0f) rounded = fmt::format(" rx=\"{}\"", SvgNumber(MillimetresInUnit(radiusMM, unit)));
    return fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"{}{}/>", SvgLength(r.Left, unit),
                       SvgLength(r.Top, unit), SvgLength(r.GetWidth(), unit), SvgLength(r.GetHeight(), unit),
                       rounded, paint);
}

// [SECTION] Shared text item

TORXTextItem::TORXTextItem(TORXBaseLabel* owner, TQVLItemType type, bool preview)
    : TPropItem(owner, type, preview) {
    fBackColor = 0;
}

TQVLRect TORXTextItem::Box() const {
    TQVLRect r(GetPointX(1), GetPointY(1), GetPointX(2), GetPointY(2));
    r.NormalizeRect();
    return r;
}

std::vector<TTextLinePos> TORXTextItem::TextLines() const {
    const ITextMetrics& metrics = QVLTextMetrics(QVLab());
    return PosBaseLinesText(WrapText(fText, fFont, 0, metrics), fFont, Box(), fHorzAlign, fVertAlign, fAngle,
                            MM(fPaddingX), MM(fPaddingY), 0, metrics);
}

bool TORXTextItem::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    return PickBox(Box(), x, y, tolerance, true);  // the glyphs fill the box: any point of it picks the text
}

bool TORXTextItem::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                              TQVLRef& ref) {
    return SnapBox(this, Box(), x, y, tolerance, snap, ref);
}

void TORXTextItem::CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                            std::int64_t& maxY) const {
    FitRect(Box(), minX, maxX, minY, maxY);  // the box is the ink: no pen runs around a text
}

void TORXTextItem::UpdateBounds() {
    fBoundsRect = Box();
}

void TORXTextItem::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    (void)baseSet;
    set = set & TQVLInsTypes{TQVLInsType::inFont, TQVLInsType::inText, TQVLInsType::inBackColor,
                             TQVLInsType::inFill, TQVLInsType::inData};
}

void TORXTextItem::WriteSVGText(std::vector<std::string>& body,
                                const std::vector<TTextLinePos>& lines) const {
    const TQVLUnits unit = fOwner->Units();
    std::string text =
        fmt::format("<text{}{}>", SvgFontAttributes(fFont, unit), SvgRotation(fAngle, Box(), unit));
    for (const auto& line : lines) {
        std::string spread;
        if (line.Spread > 0)
            spread = fmt::format(" textLength=\"{}\" lengthAdjust=\"spacing\"", SvgLength(line.Spread, unit));
        text += fmt::format("<tspan x=\"{}\" y=\"{}\"{}>{}</tspan>", SvgLength(line.X, unit),
                            SvgLength(line.Y, unit), spread, SvgEscape(line.Text));
    }
    body.push_back(text + "</text>");
}

void TORXTextItem::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                            TQVLExportSVG mode, float factor, bool flag) const {
    (void)defs, (void)mode, (void)factor, (void)flag;
    const TQVLUnits unit = fOwner->Units();
    body.push_back(fmt::format("<g id=\"{}\">", SvgEscape(fID)));
    if (HasBackground()) body.push_back(SvgBoxRect(Box(), fRadio, unit, SvgFill(fBackColor, true)));
    WriteSVGText(body, TextLines());
    body.push_back("</g>");
}

TAlphaColor* TORXTextItem::ColorField(std::uint16_t p) {
    return p == TextProp::kFontColor ? &fFont.FontColor : nullptr;
}

bool* TORXTextItem::BoolField(std::uint16_t p) {
    switch (p) {
        case TextProp::kBold:
            return &fFont.Bold;
        case TextProp::kItalic:
            return &fFont.Italic;
        case TextProp::kUnderline:
            return &fFont.Underline;
        case TextProp::kStrikeout:
            return &fFont.Strikeout;
        default:
            return nullptr;
    }
}

std::string* TORXTextItem::TextField(std::uint16_t p) {
    switch (p) {
        case TextProp::kText:
            return &fText;
        case TextProp::kFontName:
            return &fFont.Name;
        case TextProp::kName:
            return &fName;
        case TextProp::kField:
            return &fField;
        case TextProp::kData:
            return &fData;
        case TextProp::kFormat:
            return &fFormat;
        default:
            return nullptr;
    }
}

float* TORXTextItem::FloatField(std::uint16_t p) {
    switch (p) {
        case TextProp::kFontHeight:
            return &fFont.FontHeight;
        case TextProp::kRadio:
            return &fRadio;
        case TextProp::kPaddingX:
            return &fPaddingX;
        case TextProp::kPaddingY:
            return &fPaddingY;
        default:
            return nullptr;
    }
}

std::int64_t TORXTextItem::GetEnumProp(std::uint16_t p) const {
    switch (p) {
        case TextProp::kHorzAlign:
            return static_cast<std::int64_t>(fHorzAlign);
        case TextProp::kVertAlign:
            return static_cast<std::int64_t>(fVertAlign);
        case TextProp::kFillType:
            return static_cast<std::int64_t>(fFillType);
        default:
            return TPropItem::GetEnumProp(p);
    }
}

void TORXTextItem::SetEnumProp(std::uint16_t p, std::int64_t v) {
    switch (p) {
        case TextProp::kHorzAlign:
            return SetHorzAlign(EnumWithin(v, TQVLHorzAlign::haJustify));
        case TextProp::kVertAlign:
            return SetVertAlign(EnumWithin(v, TQVLVertAlign::vaBottom));
        case TextProp::kFillType:
            return SetFillType(EnumWithin(v, TQVLFillType::ftImg64));
        default:
            return TPropItem::SetEnumProp(p, v);
    }
}

void TORXTextItem::PropChanged(std::uint16_t p) {
    (void)p;
    UpdatePoints();
}

void TORXTextItem::WriteKeys(TJsonWriter& writer) const {
    TORXBaseItem::WriteKeys(writer);
}

void TORXTextItem::WriteFontKeys(TJSON& obj) const {
    obj["Font"] = fFont.Name;
    obj["FontHeight"] = U::Round(fFont.FontHeight);
    obj["FontColor"] = U::SetAlphaColor(fFont.FontColor);
    obj["Bold"] = fFont.Bold;
    obj["Italic"] = fFont.Italic;
    obj["Underline"] = fFont.Underline;
    obj["Strikeout"] = fFont.Strikeout;
}

void TORXTextItem::ReadFontKeys(const TJSON& obj) {
    fFont.Name = U::GetString(obj, "Font");
    fFont.FontHeight = static_cast<float>(U::GetFloat(obj, "FontHeight"));
    fFont.FontColor = U::GetColor(obj, "FontColor");
    fFont.Bold = U::GetBool(obj, "Bold");
    fFont.Italic = U::GetBool(obj, "Italic");
    fFont.Underline = U::GetBool(obj, "Underline");
    fFont.Strikeout = U::GetBool(obj, "Strikeout");
}

void TORXTextItem::WriteBindingKeys(TJSON& obj) const {
    obj["Name"] = fName;
    obj["FillType"] = static_cast<int>(fFillType);
    obj["Field"] = fField;
    obj["Data"] = fData;
    obj["Format"] = fFormat;
}

void TORXTextItem::ReadBindingKeys(const TJSON& obj) {
    fName = U::GetString(obj, "Name");
    fFillType = EnumWithin(U::GetInt(obj, "FillType"), TQVLFillType::ftImg64);
    fField = U::GetString(obj, "Field");
    fData = U::GetString(obj, "Data");
    fFormat = U::GetString(obj, "Format");
}

// [SECTION] Text

TORXBaseText::TORXBaseText(TORXBaseLabel* owner, bool preview)
    : TTableItem(owner, TQVLItemType::itText, preview) {
    UpdatePoints();  // even an empty text is one line high
}

TORXBaseText::TORXBaseText(TORXBaseLabel* owner, TORXLayer* layer, bool preview)
    : TORXBaseText(owner, preview) {
    fLayer = layer;
}

TQVLSPoint TORXBaseText::Position(const TORXBaseDraw& draw) const {
    return DrawPos(draw, GetPointX(1), GetPointY(1));
}

std::vector<TTextLinePos> TORXBaseText::TextLines() const {
    std::vector<TTextLinePos> lines = TORXTextItem::TextLines();
    // The horizontal scale stretches each line from its left end.
    for (auto& line : lines)
        line.Width = static_cast<std::int64_t>(static_cast<double>(line.Width) * Scale());
    return lines;
}

void TORXBaseText::UpdatePoints() {
    if (fPoints.size() < 2) return;
    const ITextMetrics& metrics = QVLTextMetrics(QVLab());
    const auto lines = WrapText(fText, fFont, 0, metrics);
    std::int64_t width = 0;
    for (const auto& line : lines) width = std::max(width, metrics.TextWidth(line, fFont));
    width = static_cast<std::int64_t>(static_cast<double>(width) * Scale());
    // A text far out (Y = 1e300 in a file) or absurdly large saturates at the coordinate range instead of
    // wrapping round to the other side of the drawing.
    using Qvl::Utils::SatAdd;
    using Qvl::Utils::SatMul;
    const std::int64_t padX = SatMul(2, MM(fPaddingX));
    if (fDispWidth > 0.0f) width = Qvl::Utils::SatSub(MM(fDispWidth), padX);
    const std::int64_t w = Qvl::Utils::ClampCoord(SatAdd(width, padX));
    const std::int64_t h = Qvl::Utils::ClampCoord(
        SatAdd(SatMul(static_cast<std::int64_t>(lines.size()), metrics.LineHeight(fFont)),
               SatMul(2, MM(fPaddingY))));
    const bool turned = fAngle == TQVLAngle::ag90 || fAngle == TQVLAngle::ag270;
    fPoints[1] = TQVLPto{Qvl::Utils::ClampCoord(SatAdd(fPoints[0].X, turned ? h : w)),
                         Qvl::Utils::ClampCoord(SatAdd(fPoints[0].Y, turned ? w : h))};
    fBoundsRect = Box();
}

void TORXBaseText::UpdateBounds() {
    UpdatePoints();
}

void TORXBaseText::CalcValues(std::int16_t value) {
    (void)value;
    UpdatePoints();
}

void TORXBaseText::Turn(int quarters) {
    // The text turns about its centre, which stays where it was.
    const TQVLRect r = Box();
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    const std::int64_t cx = (r.Left + r.Right) / 2;
    const std::int64_t cy = (r.Top + r.Bottom) / 2;
    TQVLPtoA points = fPoints;
    points[0] = TQVLPto{cx - r.GetHeight() / 2, cy - r.GetWidth() / 2};
    points[1] = TQVLPto{points[0].X + r.GetHeight(), points[0].Y + r.GetWidth()};
    SetAngle(static_cast<TQVLAngle>((static_cast<int>(fAngle) + quarters) % 4));
    SetPointsProp(points, kPropPoints);
}

void TORXBaseText::SetEnumProp(std::uint16_t p, std::int64_t v) {
    TTableItem::SetEnumProp(p, v);
    if (p == kPropAngle) UpdatePoints();
}

void TORXBaseText::RotateLeft() {
    Turn(3);
}

void TORXBaseText::RotateRight() {
    Turn(1);
}

const TPropTable<TORXBaseText>& TORXBaseText::PropTable() {
    using R = TPropRows<TORXBaseText>;
    using T = TORXBaseText;
    static const TPropTable<TORXBaseText> table(std::vector<TPropRow<T>>{
        R::Value<&T::fText>(TextProp::kText, "Text"),
        R::Field<std::string>(TextProp::kFontName, "Font", [](T& t) { return &t.fFont.Name; }),
        R::Field<float>(TextProp::kFontHeight, "FontHeight", [](T& t) { return &t.fFont.FontHeight; }),
        R::Field<TAlphaColor>(TextProp::kFontColor, "FontColor", [](T& t) { return &t.fFont.FontColor; }),
        R::Field<bool>(TextProp::kBold, "Bold", [](T& t) { return &t.fFont.Bold; }),
        R::Field<bool>(TextProp::kItalic, "Italic", [](T& t) { return &t.fFont.Italic; }),
        R::Field<bool>(TextProp::kUnderline, "Underline", [](T& t) { return &t.fFont.Underline; }),
        R::Field<bool>(TextProp::kStrikeout, "Strikeout", [](T& t) { return &t.fFont.Strikeout; }),
        // The background's keys: their properties stay with every 2D item's setters.
        R::Value<&T::fBackColor>(kPropNone, "BackColor"),
        R::Value<&T::fFill>(kPropNone, "Filled"),
        R::Value<&T::fRadio>(TextProp::kRadio, "Radio"),
        R::Enum<&T::fHorzAlign>(TextProp::kHorzAlign, "HorzAlign", TQVLHorzAlign::haJustify),
        R::Enum<&T::fVertAlign>(TextProp::kVertAlign, "VertAlign", TQVLVertAlign::vaBottom),
        R::Value<&T::fPaddingX>(TextProp::kPaddingX, "PaddingX"),
        R::Value<&T::fPaddingY>(TextProp::kPaddingY, "PaddingY"),
        R::Value<&T::fScaleX>(TextProp::kScaleX, "ScaleX"),
        R::Value<&T::fDispWidth>(TextProp::kDispWidth, "DispWidth"),
        R::Value<&T::fName>(TextProp::kName, "Name"),
        R::Enum<&T::fFillType>(TextProp::kFillType, "FillType", TQVLFillType::ftImg64),
        R::Value<&T::fField>(TextProp::kField, "Field"),
        R::Value<&T::fData>(TextProp::kData, "Data"),
        R::Value<&T::fFormat>(TextProp::kFormat, "Format"),
    });
    return table;
}

void TORXBaseText::ReadJson(std::int32_t version, const TJSON& obj) {
    TTableItem::ReadJson(version, obj);
    UpdatePoints();
}

void TORXBaseText::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                            TQVLExportSVG mode, float factor, bool flag) const {
    (void)defs, (void)mode, (void)factor, (void)flag;
    const TQVLUnits unit = fOwner->Units();
    body.push_back(fmt::format("<g id=\"{}\">", SvgEscape(fID)));
    if (HasBackground()) body.push_back(SvgBoxRect(Box(), fRadio, unit, SvgFill(fBackColor, true)));
    const auto lines = TextLines();
    std::string text =
        fmt::format("<text{}{}>", SvgFontAttributes(fFont, unit), SvgRotation(fAngle, Box(), unit));
    for (const auto& line : lines) {
        std::string stretch;
        if (Scale() != 1.0 && !line.Text.empty())
            stretch = fmt::format(" textLength=\"{}\" lengthAdjust=\"spacingAndGlyphs\"",
                                  SvgLength(line.Width, unit));
        text += fmt::format("<tspan x=\"{}\" y=\"{}\"{}>{}</tspan>", SvgLength(line.X, unit),
                            SvgLength(line.Y, unit), stretch, SvgEscape(line.Text));
    }
    body.push_back(text + "</text>");
    body.push_back("</g>");
}

void TORXBaseText::PropChanged(std::uint16_t p) {
    (void)p;
    UpdatePoints();
}

// [SECTION] Paragraph

TORXBasePara::TORXBasePara(TORXBaseLabel* owner, bool preview)
    : TORXTextItem(owner, TQVLItemType::itPara, preview) {
    fHorzAlign = TQVLHorzAlign::haJustify;  // paragraphs are set as blocks unless told otherwise
}

TORXBasePara::TORXBasePara(TORXBaseLabel* owner, TORXLayer* layer, bool preview)
    : TORXBasePara(owner, preview) {
    fLayer = layer;
}

std::string TORXBasePara::ShownText() const {
    const auto size = static_cast<std::int64_t>(fText.size());
    const std::int64_t from = std::clamp<std::int64_t>(fFromPos, 0, size);
    const std::int64_t to = fToPos <= 0 ? size : std::clamp<std::int64_t>(fToPos, from, size);
    return fText.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
}

TQVLSPoint TORXBasePara::Position(const TORXBaseDraw& draw) const {
    return DrawPos(draw, GetPointX(1), GetPointY(1));
}

std::vector<TTextLinePos> TORXBasePara::TextLines() const {
    const TQVLRect frame = AdjustRect(Box(), fAngle);
    const ITextMetrics& metrics = QVLTextMetrics(QVLab());
    std::vector<bool> ends;
    const auto lines = WrapText(ShownText(), fFont, frame.GetWidth() - 2 * MM(fPaddingX), metrics, &ends);
    auto out = PosBaseLinesText(lines, fFont, Box(), fHorzAlign, fVertAlign, fAngle, MM(fPaddingX),
                                MM(fPaddingY), MM(fInterline), metrics, &ends);
    for (auto& line : out) line.X += MM(fBaseX), line.Y += MM(fBaseY);
    return out;
}

std::int64_t TORXBasePara::LinesHeight() const {
    const TQVLRect frame = AdjustRect(Box(), fAngle);
    const ITextMetrics& metrics = QVLTextMetrics(QVLab());
    const auto count = static_cast<std::int64_t>(
        WrapText(ShownText(), fFont, frame.GetWidth() - 2 * MM(fPaddingX), metrics).size());
    return count * metrics.LineHeight(fFont) + std::max<std::int64_t>(0, count - 1) * MM(fInterline) +
           2 * MM(fPaddingY) + MM(fBaseY);
}

void TORXBasePara::CalcValues(std::int16_t value) {
    TORXTextItem::CalcValues(value);
    if (!fIncreaseHeight && !fDecreaseHeight) return;
    // The lines run along the frame's height, which is the box's width when the paragraph is turned.
    const bool turned = fAngle == TQVLAngle::ag90 || fAngle == TQVLAngle::ag270;
    const TQVLRect r = Box();
    const std::int64_t have = turned ? r.GetWidth() : r.GetHeight();
    const std::int64_t need = LinesHeight();
    if ((need > have && fIncreaseHeight) || (need < have && fDecreaseHeight)) {
        if (turned)
            fPoints[1].X = fPoints[0].X + need;
        else
            fPoints[1].Y = fPoints[0].Y + need;
        fBoundsRect = Box();
    }
}

TJSON TORXBasePara::WriteJson() const {
    TJSON obj = TORXBaseItem::WriteJson();
    obj["Text"] = fText;
    WriteFontKeys(obj);
    obj["BackColor"] = U::SetAlphaColor(fBackColor);
    obj["Radio"] = U::Round(fRadio);
    obj["HorzAlign"] = static_cast<int>(fHorzAlign);
    obj["VertAlign"] = static_cast<int>(fVertAlign);
    obj["PaddingX"] = U::Round(fPaddingX);
    obj["PaddingY"] = U::Round(fPaddingY);
    obj["Interline"] = U::Round(fInterline);
    obj["IncreaseHeight"] = fIncreaseHeight;
    obj["DecreaseHeight"] = fDecreaseHeight;
    obj["BaseX"] = U::Round(fBaseX);
    obj["BaseY"] = U::Round(fBaseY);
    obj["TextPos"] = static_cast<int>(fTextPos);
    obj["FromPos"] = fFromPos;
    obj["ToPos"] = fToPos;
    WriteBindingKeys(obj);
    return obj;
}

void TORXBasePara::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBaseItem::ReadJson(version, obj);
    fText = U::GetString(obj, "Text");
    ReadFontKeys(obj);
    fBackColor = U::GetColor(obj, "BackColor");
    fRadio = static_cast<float>(U::GetFloat(obj, "Radio"));
    fHorzAlign = EnumWithin(U::GetInt(obj, "HorzAlign"), TQVLHorzAlign::haJustify);
    fVertAlign = EnumWithin(U::GetInt(obj, "VertAlign"), TQVLVertAlign::vaBottom);
    fPaddingX = static_cast<float>(U::GetFloat(obj, "PaddingX"));
    fPaddingY = static_cast<float>(U::GetFloat(obj, "PaddingY"));
    // Older drawings named the line spacing "LineSize".
    const char* interline =
        obj.is_object() && !obj.contains("Interline") && obj.contains("LineSize") ? "LineSize" : "Interline";
    fInterline = static_cast<float>(U::GetFloat(obj, interline));
    fIncreaseHeight = U::GetBool(obj, "IncreaseHeight");
    fDecreaseHeight = U::GetBool(obj, "DecreaseHeight");
    fBaseX = static_cast<float>(U::GetFloat(obj, "BaseX"));
    fBaseY = static_cast<float>(U::GetFloat(obj, "BaseY"));
    fTextPos = EnumWithin(U::GetInt(obj, "TextPos"), TQVLTextPos::tpVert);
    fFromPos = U::GetInt(obj, "FromPos");
    fToPos = U::GetInt(obj, "ToPos");
    ReadBindingKeys(obj);
    UpdateBounds();
}

std::int64_t TORXBasePara::GetEnumProp(std::uint16_t p) const {
    return p == TextProp::kTextPos ? static_cast<std::int64_t>(fTextPos) : TORXTextItem::GetEnumProp(p);
}

void TORXBasePara::SetEnumProp(std::uint16_t p, std::int64_t v) {
    if (p == TextProp::kTextPos)
        SetTextPos(EnumWithin(v, TQVLTextPos::tpVert));
    else
        TORXTextItem::SetEnumProp(p, v);
}

bool* TORXBasePara::BoolField(std::uint16_t p) {
    if (p == TextProp::kIncreaseHeight) return &fIncreaseHeight;
    if (p == TextProp::kDecreaseHeight) return &fDecreaseHeight;
    return TORXTextItem::BoolField(p);
}

float* TORXBasePara::FloatField(std::uint16_t p) {
    if (p == TextProp::kInterline) return &fInterline;
    if (p == TextProp::kBaseX) return &fBaseX;
    if (p == TextProp::kBaseY) return &fBaseY;
    return TORXTextItem::FloatField(p);
}

std::int64_t* TORXBasePara::IntField(std::uint16_t p) {
    if (p == TextProp::kFromPos) return &fFromPos;
    if (p == TextProp::kToPos) return &fToPos;
    return TORXTextItem::IntField(p);
}

void TORXBasePara::PropChanged(std::uint16_t p) {
    (void)p;
    // The height follows the lines at the next calculation, with the other pending ones.
    fOwner->ChangeState(TOrvexState::lsCalc, this);
}

// [SECTION] Data text

TJSON TORXBaseData::WriteJson() const {
    TJSON obj = TORXBaseItem::WriteJson();
    obj["Text"] = fText;
    WriteFontKeys(obj);
    obj["BackColor"] = U::SetAlphaColor(fBackColor);
    obj["FillBackground"] = fFillBackground;
    obj["Name"] = fName;
    return obj;
}

void TORXBaseData::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBaseItem::ReadJson(version, obj);
    fText = U::GetString(obj, "Text");
    ReadFontKeys(obj);
    fBackColor = U::GetColor(obj, "BackColor");
    fFillBackground = U::GetBool(obj, "FillBackground");
    fName = U::GetString(obj, "Name");
    UpdateBounds();
}

bool* TORXBaseData::BoolField(std::uint16_t p) {
    return p == TextProp::kFillBackground ? &fFillBackground : TORXTextItem::BoolField(p);
}

}  // namespace Orvex
