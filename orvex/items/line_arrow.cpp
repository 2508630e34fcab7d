// The arrow line: a line with terminators and a label beside, along or across it.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "orvex/core/text.h"
#include "orvex/document/document.h"
#include "orvex/document/undo_commands.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/enum_bounds.h"
#include "orvex/items/item_geometry.h"
#include "orvex/items/line_items.h"
#include "orvex/items/number_format.h"
#include "orvex/items/svg_style.h"
#include "orvex/render/draw2d.h"

namespace Orvex {

using U = TJSONUtils;
using namespace ItemGeo;

namespace {

// Without font metrics a label is estimated: an average glyph is about 0.6 of the font height wide.
constexpr double kGlyphWidth = 0.6;
constexpr double kLabelGap = 0.3;  // between the line and the label, in font heights

std::size_t CodePoints(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// Text running along a line is turned so that it never reads upside down.
double Readable(double degrees) {
    const double a = NormDeg(degrees);
    return (a > 90.0 && a <= 270.0) ? a - 180.0 : a;
}

}  // namespace

TORXBaseArrowLine::TORXBaseArrowLine(TORXBaseLabel* owner, bool preview)
    : TORXTermLine(owner, TQVLItemType::itArrowLine, preview) {
    fToType = TQVLTermType::ttFillArrow;
}

bool TORXBaseArrowLine::SetTextValue(std::string& field, const std::string& value, std::uint16_t property) {
    if (field == value) return false;
    TORXTxtCmd::AddCommand(this, property);
    field = value;
    UpdatePoints();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
    return true;
}

bool TORXBaseArrowLine::SetBoolValue(bool& field, bool value, std::uint16_t property) {
    if (field == value) return false;
    TORXBoolCmd::AddCommand(this, property);
    field = value;
    UpdatePoints();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
    return true;
}

void TORXBaseArrowLine::SetText(const std::string& text) {
    SetTextValue(fText, text, kPropText);
}
void TORXBaseArrowLine::SetFont(const std::string& font) {
    SetTextValue(fFont, font, kPropFont);
}
void TORXBaseArrowLine::SetFormat(const std::string& format) {
    SetTextValue(fFormat, format, kPropFormat);
}
void TORXBaseArrowLine::SetDataName(const std::string& name) {
    SetTextValue(fName, name, kPropName);
}
void TORXBaseArrowLine::SetBold(bool on) {
    SetBoolValue(fBold, on, kPropBold);
}
void TORXBaseArrowLine::SetItalic(bool on) {
    SetBoolValue(fItalic, on, kPropItalic);
}
void TORXBaseArrowLine::SetUnderline(bool on) {
    SetBoolValue(fUnderline, on, kPropUnderline);
}
void TORXBaseArrowLine::SetStrikeout(bool on) {
    SetBoolValue(fStrikeout, on, kPropStrikeout);
}
void TORXBaseArrowLine::SetTextMeasure(bool on) {
    SetBoolValue(fTextMeasure, on, kPropTextMeasure);
}

void TORXBaseArrowLine::SetFontHeight(float mm) {
    if (mm == fFontHeight) return;
    TORXFloatCmd::AddCommand(this, kPropFontHeight);
    fFontHeight = mm;
    UpdatePoints();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseArrowLine::SetTextAngle(float degrees) {
    if (degrees == fTextAngle) return;
    TORXFloatCmd::AddCommand(this, kPropTextAngle);
    fTextAngle = degrees;
    UpdatePoints();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseArrowLine::SetFontColor(TAlphaColor color) {
    if (color == fFontColor) return;
    TORXColorCmd::AddCommand(this, kPropFontColor);
    fFontColor = color;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseArrowLine::SetTextPos(TQVLTextPos pos) {
    if (pos == fTextPos) return;
    TORXEnumValueCmd::AddCommand(this, kPropTextPos);
    fTextPos = pos;
    UpdatePoints();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseArrowLine::SetData(std::int32_t fillType, const std::string& field, const std::string& format) {
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    if (fillType != fFillType) {
        TORXEnumValueCmd::AddCommand(this, kPropFillType);
        fFillType = fillType;
    }
    SetTextValue(fField, field, kPropField);
    SetTextValue(fData, format, kPropData);
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

std::string TORXBaseArrowLine::LabelText() const {
    if (!fTextMeasure) return fText;
    const double length = TDraw2D::Distance(GetPointX(1), GetPointY(1), GetPointX(2), GetPointY(2));
    return FormatNumber(length / static_cast<double>(UnitFactor(fOwner->Units())), fFormat);
}

TORXBaseArrowLine::TLabelPlace TORXBaseArrowLine::PlaceLabel(const std::string& text) const {
    TLabelPlace place;
    const std::int64_t scale = std::max<std::int64_t>(1, fOwner->Measure().fDrawScale);
    place.Height = static_cast<double>(SetBaseValue(fFontHeight) * scale);
    place.Width = place.Height * kGlyphWidth * static_cast<double>(CodePoints(text));
    const std::int64_t x1 = GetPointX(1), y1 = GetPointY(1), x2 = GetPointX(2), y2 = GetPointY(2);
    const double along = Readable(x1 == x2 && y1 == y2 ? 0.0 : ScreenAngle(x1, y1, x2, y2));
    double angle = along;
    if (fTextPos == TQVLTextPos::tpHorz) angle = 0.0;
    if (fTextPos == TQVLTextPos::tpVert) angle = 90.0;
    angle += fTextAngle;
    place.Angle = angle;
    // "Up" is towards the top of the glyphs: screen up for unturned text.
    const double upX = -std::sin(Rad(angle));
    const double upY = -std::cos(Rad(angle));
    double lift = kLabelGap * place.Height;  // baseline above the line
    if (fTextPos == TQVLTextPos::tpBelow) lift = -(kLabelGap + 1.0) * place.Height;
    if (fTextPos == TQVLTextPos::tpMiddle || fTextPos == TQVLTextPos::tpMiddleRemove)
        lift = -0.35 * place.Height;
    const double mx = static_cast<double>(x1 + x2) / 2.0;
    const double my = static_cast<double>(y1 + y2) / 2.0;
    place.Anchor = {static_cast<std::int64_t>(std::llround(mx + upX * lift)),
                    static_cast<std::int64_t>(std::llround(my + upY * lift))};
    return place;
}

void TORXBaseArrowLine::UpdatePoints() {
    if (fPoints.size() < 4) return;
    const TLabelPlace place = PlaceLabel(LabelText());
    const double half = place.Width / 2.0;
    // Derived points: written directly, as moving the line moves them without a step of their own.
    fPoints[2] = TQVLPto{place.Anchor.X, place.Anchor.Y};
    fPoints[3] =
        TQVLPto{place.Anchor.X + static_cast<std::int64_t>(std::llround(half * std::cos(Rad(place.Angle)))),
                place.Anchor.Y - static_cast<std::int64_t>(std::llround(half * std::sin(Rad(place.Angle))))};
}

void TORXBaseArrowLine::UpdateBounds() {
    UpdatePoints();
    TORXTermLine::UpdateBounds();
}

bool TORXBaseArrowLine::PickExtent(TQVLRect& extent) const {
    // The label's place follows the document's draw scale, which an index of extents would not see change.
    return TORXTermLine::PickExtent(extent) && LabelText().empty();
}

bool TORXBaseArrowLine::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    const std::int64_t tol = tolerance + fPenWidth / 2;
    if (TDraw2D::PointInLine(GetPointX(1), GetPointY(1), GetPointX(2), GetPointY(2), x, y, tol)) return true;
    const std::string text = LabelText();
    if (text.empty()) return false;
    const TLabelPlace place = PlaceLabel(text);
    const double dx = static_cast<double>(x - place.Anchor.X);
    const double dy = static_cast<double>(y - place.Anchor.Y);
    const double a = Rad(place.Angle);
    const double u = dx * std::cos(a) - dy * std::sin(a);   // along the baseline
    const double v = -dx * std::sin(a) - dy * std::cos(a);  // towards the glyphs' top
    const double t = static_cast<double>(tolerance);
    return std::fabs(u) <= place.Width / 2.0 + t && v >= -t && v <= place.Height + t;
}

bool TORXBaseArrowLine::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                                   TQVLRef& ref) {
    const std::vector<TQVLPto64> line{{GetPointX(1), GetPointY(1)}, {GetPointX(2), GetPointY(2)}};
    switch (snap) {
        case TQVLSnap::snEndPoint:
            return NearPoint(this, x, y, tolerance, line[0], 1, ref) ||
                   NearPoint(this, x, y, tolerance, line[1], 2, ref);
        case TQVLSnap::snMidPoint:
            return SnapMidOfChain(this, line, false, x, y, tolerance, ref);
        case TQVLSnap::snNearest:
            return SnapNearestOnChain(this, line, false, x, y, tolerance, ref);
        case TQVLSnap::snIntersection:
            return SnapIntersection(this, x, y, tolerance, ref);
        case TQVLSnap::snCenter:
        case TQVLSnap::snNone:
            return false;
    }
    return false;
}

TJSON TORXBaseArrowLine::WriteJson() const {
    TJSON obj = TORXTermLine::WriteJson();
    WriteLineTypeJson(obj);
    WriteTermJson(obj);
    obj["Text"] = fText;
    obj["Font"] = fFont;
    obj["FontHeight"] = U::Round(fFontHeight);
    obj["FontColor"] = U::SetAlphaColor(fFontColor);
    obj["Bold"] = fBold;
    obj["Italic"] = fItalic;
    obj["Underline"] = fUnderline;
    obj["Strikeout"] = fStrikeout;
    obj["TextAngle"] = U::Round(fTextAngle);
    obj["TextPos"] = static_cast<int>(fTextPos);
    obj["TextMeasure"] = fTextMeasure;
    obj["Format"] = fFormat;
    obj["Data"] = fData;
    obj["Field"] = fField;
    obj["FillType"] = fFillType;
    obj["Name"] = fName;
    return obj;
}

void TORXBaseArrowLine::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXTermLine::ReadJson(version, obj);
    ReadTermJson(obj);
    fText = U::GetString(obj, "Text");
    fFont = U::GetString(obj, "Font");
    fFontHeight = static_cast<float>(U::GetFloat(obj, "FontHeight"));
    fFontColor = U::GetColor(obj, "FontColor");
    fBold = U::GetBool(obj, "Bold");
    fItalic = U::GetBool(obj, "Italic");
    fUnderline = U::GetBool(obj, "Underline");
    fStrikeout = U::GetBool(obj, "Strikeout");
    fTextAngle = static_cast<float>(U::GetFloat(obj, "TextAngle"));
    fTextPos = static_cast<TQVLTextPos>(std::clamp<std::int64_t>(U::GetInt(obj, "TextPos"), 0, 5));
    fTextMeasure = U::GetBool(obj, "TextMeasure");
    fFormat = U::GetString(obj, "Format");
    fData = U::GetString(obj, "Data");
    fField = U::GetString(obj, "Field");
    fFillType = static_cast<std::int32_t>(U::GetInt(obj, "FillType"));
    fName = U::GetString(obj, "Name");
    UpdateBounds();
}

void TORXBaseArrowLine::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                                 TQVLExportSVG mode, float factor, bool flag) const {
    (void)mode, (void)flag;
    const TQVLUnits u = fOwner->Units();
    const TQVLPto64 a{GetPointX(1), GetPointY(1)};
    const TQVLPto64 b{GetPointX(2), GetPointY(2)};
    const std::string text = LabelText();
    const TLabelPlace place = PlaceLabel(text);
    std::string d = "M" + SvgXY(a, u) + " L" + SvgXY(b, u);
    const double length = TDraw2D::Distance(a.X, a.Y, b.X, b.Y);
    const double gap = place.Width + 2.0 * kLabelGap * place.Height;
    if (fTextPos == TQVLTextPos::tpMiddleRemove && !text.empty() && length > gap && fTextAngle == 0.0f) {
        // The line breaks where the label stands.
        const double t0 = (length - gap) / 2.0 / length;
        const auto at = [&](double t) {
            return TQVLPto64{
                a.X + static_cast<std::int64_t>(std::llround(t * static_cast<double>(b.X - a.X))),
                a.Y + static_cast<std::int64_t>(std::llround(t * static_cast<double>(b.Y - a.Y)))};
        };
        d = "M" + SvgXY(a, u) + " L" + SvgXY(at(t0), u) + " M" + SvgXY(at(1.0 - t0), u) + " L" + SvgXY(b, u);
    }
    body.push_back(
        fmt::format("<path d=\"{}\" fill=\"none\"{}{}/>", d, SvgStrokeOf(factor), SvgMarkers(defs)));
    if (text.empty()) return;
    const std::string x = SvgLength(place.Anchor.X, u);
    const std::string y = SvgLength(place.Anchor.Y, u);
    const std::string turn =
        place.Angle == 0.0 ? std::string{}
                           : fmt::format(" transform=\"rotate({} {} {})\"", SvgNumber(-place.Angle), x, y);
    body.push_back(
        fmt::format("<text x=\"{}\" y=\"{}\"{} text-anchor=\"middle\"{}>{}</text>", x, y, turn,
                    SvgFont(fFont, static_cast<double>(GetValue(static_cast<std::int64_t>(place.Height), u)),
                            fBold, fItalic, fUnderline, fStrikeout, fFontColor),
                    SvgEscape(text)));
}

void TORXBaseArrowLine::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    const TQVLInsTypes asked = set;
    TORXTermLine::CheckProp(baseSet, set);
    set = asked & TQVLInsTypes{TQVLInsType::inLineType, TQVLInsType::inTerminators, TQVLInsType::inFont,
                               TQVLInsType::inText, TQVLInsType::inData};
}

std::string TORXBaseArrowLine::GetTextProp(std::uint16_t property) const {
    switch (property) {
        case kPropText:
            return fText;
        case kPropFont:
            return fFont;
        case kPropFormat:
            return fFormat;
        case kPropData:
            return fData;
        case kPropField:
            return fField;
        case kPropName:
            return fName;
        default:
            return TORXTermLine::GetTextProp(property);
    }
}

void TORXBaseArrowLine::SetTextProp(std::uint16_t property, const std::string& value) {
    switch (property) {
        case kPropText:
            SetTextValue(fText, value, property);
            break;
        case kPropFont:
            SetTextValue(fFont, value, property);
            break;
        case kPropFormat:
            SetTextValue(fFormat, value, property);
            break;
        case kPropData:
            SetTextValue(fData, value, property);
            break;
        case kPropField:
            SetTextValue(fField, value, property);
            break;
        case kPropName:
            SetTextValue(fName, value, property);
            break;
        default:
            TORXTermLine::SetTextProp(property, value);
    }
}

double TORXBaseArrowLine::GetFloatProp(std::uint16_t property) const {
    if (property == kPropFontHeight) return fFontHeight;
    if (property == kPropTextAngle) return fTextAngle;
    return TORXTermLine::GetFloatProp(property);
}

void TORXBaseArrowLine::SetFloatProp(std::uint16_t property, double value) {
    if (property == kPropFontHeight)
        SetFontHeight(static_cast<float>(value));
    else if (property == kPropTextAngle)
        SetTextAngle(static_cast<float>(value));
    else
        TORXTermLine::SetFloatProp(property, value);
}

bool TORXBaseArrowLine::GetBoolProp(std::uint16_t property) const {
    switch (property) {
        case kPropBold:
            return fBold;
        case kPropItalic:
            return fItalic;
        case kPropUnderline:
            return fUnderline;
        case kPropStrikeout:
            return fStrikeout;
        case kPropTextMeasure:
            return fTextMeasure;
        default:
            return TORXTermLine::GetBoolProp(property);
    }
}

void TORXBaseArrowLine::SetBoolProp(std::uint16_t property, bool value) {
    switch (property) {
        case kPropBold:
            SetBold(value);
            break;
        case kPropItalic:
            SetItalic(value);
            break;
        case kPropUnderline:
            SetUnderline(value);
            break;
        case kPropStrikeout:
            SetStrikeout(value);
            break;
        case kPropTextMeasure:
            SetTextMeasure(value);
            break;
        default:
            TORXTermLine::SetBoolProp(property, value);
    }
}

std::int64_t TORXBaseArrowLine::GetEnumProp(std::uint16_t property) const {
    if (property == kPropTextPos) return static_cast<std::int64_t>(fTextPos);
    if (property == kPropFillType) return fFillType;
    return TORXTermLine::GetEnumProp(property);
}

void TORXBaseArrowLine::SetEnumProp(std::uint16_t property, std::int64_t value) {
    if (property == kPropTextPos) {
        SetTextPos(EnumWithin(value, TQVLTextPos::tpVert));
    } else if (property == kPropFillType) {
        if (value == fFillType) return;
        TORXEnumValueCmd::AddCommand(this, kPropFillType);
        fFillType = static_cast<std::int32_t>(value);
    } else {
        TORXTermLine::SetEnumProp(property, value);
    }
}

TAlphaColor TORXBaseArrowLine::GetColorProp(std::uint16_t property) const {
    return property == kPropFontColor ? fFontColor : TORXTermLine::GetColorProp(property);
}

void TORXBaseArrowLine::SetColorProp(std::uint16_t property, TAlphaColor value) {
    if (property == kPropFontColor)
        SetFontColor(value);
    else
        TORXTermLine::SetColorProp(property, value);
}

void TORXBaseArrowLine::JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const {
    TORXTermLine::JsonInspector(baseSet, set, array);
    if (set.Contains(TQVLInsType::inText)) {
        AddInspector(array, "Text", fText);
        AddInspector(array, "TextPos", static_cast<int>(fTextPos));
        AddInspector(array, "TextAngle", U::Round(fTextAngle));
        AddInspector(array, "TextMeasure", fTextMeasure);
        AddInspector(array, "Format", fFormat);
    }
    if (set.Contains(TQVLInsType::inFont)) {
        AddInspector(array, "Font", fFont);
        AddInspector(array, "FontHeight", U::Round(fFontHeight));
        AddInspector(array, "FontColor", AlphaColorToHex(fFontColor));
        AddInspector(array, "Bold", fBold);
        AddInspector(array, "Italic", fItalic);
        AddInspector(array, "Underline", fUnderline);
        AddInspector(array, "Strikeout", fStrikeout);
    }
    if (set.Contains(TQVLInsType::inData)) {
        AddInspector(array, "FillType", fFillType);
        AddInspector(array, "Field", fField);
        AddInspector(array, "Data", fData);
        AddInspector(array, "Name", fName);
    }
}

}  // namespace Orvex
