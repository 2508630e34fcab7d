// The dimension: extension lines, a dimension line or arc with heads, and the measured text, all styled
// by one of the document's dimension styles.
//
// [SECTION] Properties   [SECTION] Text   [SECTION] Geometry   [SECTION] Item contract   [SECTION] SVG
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "orvex/document/document.h"
#include "orvex/document/undo_commands.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/item_geometry.h"
#include "orvex/items/line_items.h"
#include "orvex/items/number_format.h"
#include "orvex/items/svg_style.h"
#include "orvex/render/draw2d.h"

namespace Orvex {

using U = TJSONUtils;
using namespace ItemGeo;

namespace {

constexpr float kFallbackFontHeight = 3.5f;  // millimetres, for a style that leaves the font unset
constexpr double kGlyphWidth = 0.6;          // an average glyph's width in font heights
constexpr double kTextGap = 0.3;             // between the dimension line and the text, in font heights

const TORXDimStyle kDefaultStyle(1, "Default");

bool IsRadial(TQVDimType t) {
    return t == TQVDimType::dmtRadial1 || t == TQVDimType::dmtRadial2 || t == TQVDimType::dmtDiameter1 ||
           t == TQVDimType::dmtDiameter2;
}

double Readable(double degrees) {
    const double a = NormDeg(degrees);
    return (a > 90.0 && a <= 270.0) ? a - 180.0 : a;
}

std::size_t CodePoints(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

TQVLPto64 Along(const TQVLPto64& from, const TQVLPto64& to, double distance) {
    const double len = TDraw2D::Distance(from.X, from.Y, to.X, to.Y);
    if (len == 0.0) return from;
    const double k = distance / len;
    return {from.X + static_cast<std::int64_t>(std::llround(k * static_cast<double>(to.X - from.X))),
            from.Y + static_cast<std::int64_t>(std::llround(k * static_cast<double>(to.Y - from.Y)))};
}

}  // namespace

// [SECTION] Properties

TORXBaseDim::TORXBaseDim(TORXBaseLabel* owner, bool preview)
    : TORXBasePoint(owner, TQVLItemType::itDim, preview) {
    if (const TORXDimStyle* style = owner->GetActiveDimStyle()) fIdDimStyle = style->fID;
}

const TORXDimStyle* TORXBaseDim::Style() const {
    if (const TORXDimStyle* style = fOwner->GetDimStyleById(fIdDimStyle)) return style;
    if (const TORXDimStyle* first = fOwner->GetDimStyle(1)) return first;
    return &kDefaultStyle;
}

void TORXBaseDim::SetDimType(TQVDimType type) {
    if (type == fDimType) return;
    TORXEnumValueCmd::AddCommand(this, kPropDimType);
    fDimType = type;
    UpdateBounds();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseDim::SetDimExt(std::int32_t ext) {
    if (ext == fDimExt) return;
    TORXEnumValueCmd::AddCommand(this, kPropDimExt);
    fDimExt = ext;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseDim::SetIdDimStyle(std::int32_t id) {
    if (id == fIdDimStyle) return;
    TORXEnumValueCmd::AddCommand(this, kPropIdDimStyle);
    fIdDimStyle = id;
    UpdateBounds();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseDim::SetText(const std::string& text) {
    if (text == fText) return;
    TORXTxtCmd::AddCommand(this, kPropText);
    fText = text;
    UpdateBounds();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseDim::SetTextAngle(float degrees) {
    if (degrees == fTextAngle) return;
    TORXFloatCmd::AddCommand(this, kPropTextAngle);
    fTextAngle = degrees;
    UpdateBounds();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseDim::SetTextMeasure(bool on) {
    if (on == fTextMeasure) return;
    TORXBoolCmd::AddCommand(this, kPropTextMeasure);
    fTextMeasure = on;
    UpdateBounds();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseDim::SetLinear(TQVDimType type, const TQVLPto64& a, const TQVLPto64& b, std::int64_t offset) {
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    TQVLPtoA points = fPoints;
    TQVLPto64 p1 = a;
    TQVLPto64 p2 = b;
    if (type == TQVDimType::dmtVert) {
        const std::int64_t x = (offset < 0 ? std::min(a.X, b.X) : std::max(a.X, b.X)) + offset;
        p1 = {x, a.Y}, p2 = {x, b.Y};
    } else if (type == TQVDimType::dmtAligned) {
        TQVLPto64 q1, q2;
        if (TDraw2D::DrawParallelLine(a.X, a.Y, b.X, b.Y, offset, q1.X, q1.Y, q2.X, q2.Y)) p1 = q1, p2 = q2;
    } else {
        type = TQVDimType::dmtHorz;
        const std::int64_t y = (offset < 0 ? std::min(a.Y, b.Y) : std::max(a.Y, b.Y)) + offset;
        p1 = {a.X, y}, p2 = {b.X, y};
    }
    points[0] = {p1.X, p1.Y}, points[1] = {p2.X, p2.Y}, points[2] = {a.X, a.Y}, points[3] = {b.X, b.Y};
    SetDimType(type);
    SetPointsProp(points, kPropPoints);
}

void TORXBaseDim::SetRadial(TQVDimType type, const TQVLPto64& first, const TQVLPto64& onCircle) {
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    TQVLPtoA points = fPoints;
    points[0] = points[2] = {first.X, first.Y};
    points[1] = points[3] = {onCircle.X, onCircle.Y};
    SetDimType(IsRadial(type) ? type : TQVDimType::dmtRadial1);
    SetPointsProp(points, kPropPoints);
}

void TORXBaseDim::SetAngular(const TQVLPto64& centre, const TQVLPto64& startArm, const TQVLPto64& endArm,
                             const TQVLPto64& arcPoint) {
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    TQVLPtoA points = fPoints;
    points[0] = points[2] = {centre.X, centre.Y};
    points[1] = points[3] = {arcPoint.X, arcPoint.Y};
    points[4] = {startArm.X, startArm.Y}, points[5] = {endArm.X, endArm.Y};
    points[6] = {arcPoint.X, arcPoint.Y}, points[7] = {centre.X, centre.Y};
    SetDimType(TQVDimType::dmtAngle);
    SetPointsProp(points, kPropPoints);
}

// [SECTION] Text

TORXBaseDim::TAngleArc TORXBaseDim::AngleArc() const {
    TAngleArc arc;
    const auto at = [this](std::int32_t i) {
        return TPoint2D{static_cast<double>(GetPointX(i)), static_cast<double>(GetPointY(i))};
    };
    const TPoint2D p5 = at(5), p6 = at(6), p7 = at(7);
    // The centre in double precision: a rounded centre would tilt the arms by hundredths of a degree.
    TPoint2D c;
    double radius = 0.0, a0 = 0.0, a1 = 0.0;
    bool ccw = true;
    if (!TDraw2D::ArcThreePoints(p5, p7, p6, c, radius, a0, a1, ccw)) {
        c = at(8);
        radius = TDraw2D::Distance(c, p7);
    }
    const auto angle = [&](const TPoint2D& p) {
        return TDraw2D::NormalizeAngle(std::atan2(p.Y - c.Y, p.X - c.X));
    };
    const double s = angle(p5), e = angle(p6), a = angle(p7);
    constexpr double kTwoPi = 2.0 * std::numbers::pi;
    const auto positive = [&](double v) { return v < 0.0 ? v + kTwoPi : v; };
    const bool inside = positive(e - s) >= positive(a - s);
    double sweep = inside ? e - s : s - e;
    if (sweep < 0.0) sweep += kTwoPi;
    arc.Center = {static_cast<std::int64_t>(std::llround(c.X)), static_cast<std::int64_t>(std::llround(c.Y))};
    arc.Radius = static_cast<std::int64_t>(std::llround(radius));
    arc.Measure = sweep;
    // Stored angles grow clockwise on screen: the arc from s (or from e) by the sweep, turned to screen
    // terms.
    arc.StartDeg = NormDeg(-Deg(inside ? s : e));
    arc.SweepDeg = -Deg(sweep);
    return arc;
}

std::string TORXBaseDim::MeasureText() const {
    if (!fTextMeasure) return fText;
    const TORXDimStyle& style = *Style();
    const std::string& format = style.fFormat.empty() ? std::string(kDefaultNumberFormat) : style.fFormat;
    if (fDimType == TQVDimType::dmtAngle)
        return style.fPrefix + FormatNumber(Deg(AngleArc().Measure), format) +
               (style.fSuffix.empty() ? std::string("\xC2\xB0") : style.fSuffix);
    double distance = TDraw2D::Distance(GetPointX(1), GetPointY(1), GetPointX(2), GetPointY(2));
    std::string prefix;
    switch (fDimType) {
        case TQVDimType::dmtRadial1:
        case TQVDimType::dmtRadial2:
            prefix = "R";
            break;
        case TQVDimType::dmtDiameter2:
            distance *= 2.0, prefix = "\xC3\x98";
            break;  // its points span a radius
        case TQVDimType::dmtDiameter1:
            prefix = "\xC3\x98";
            break;
        default:
            break;
    }
    if (!style.fPrefix.empty()) prefix = style.fPrefix;
    // No default suffix here, unlike the degree sign of angles.
    return prefix + FormatNumber(distance / static_cast<double>(UnitFactor(fOwner->Units())), format) +
           style.fSuffix;
}

void TORXBaseDim::CalcValues(std::int16_t value) {
    (void)value;
    std::string text = MeasureText();
    if (text != fDisplayText) fDisplayText = std::move(text);
}

// [SECTION] Geometry

namespace {

struct TDimShape {
    std::vector<TQVLPto64> DimLine;  // a polyline: the dimension line or the flattened arc
    std::vector<std::pair<TQVLPto64, TQVLPto64>> ExtLines;
    bool HeadStart = true;
    bool HeadEnd = true;
    TQVLPto64 TextAnchor;  // the middle of the text's baseline
    double TextAngle = 0.0;
    double TextWidth = 0.0;
    double TextHeight = 0.0;
    // For the SVG arc command.
    bool IsArc = false;
    TORXBaseDim::TAngleArc Arc;
};

}  // namespace

static TDimShape ShapeOf(const TORXBaseDim& dim, const TORXDimStyle& style, std::int64_t scale) {
    TDimShape shape;
    const float fontMM = style.fFont.FontHeight > 0.0f ? style.fFont.FontHeight : kFallbackFontHeight;
    shape.TextHeight = static_cast<double>(SetBaseValue(fontMM) * scale);
    shape.TextWidth = shape.TextHeight * kGlyphWidth * static_cast<double>(CodePoints(dim.DisplayText()));
    const double gap = static_cast<double>(SetBaseValue(style.fExtGap) * scale);
    const double over = static_cast<double>(SetBaseValue(style.fExtSize) * scale);
    const TQVLPto64 p1{dim.GetPointX(1), dim.GetPointY(1)};
    const TQVLPto64 p2{dim.GetPointX(2), dim.GetPointY(2)};
    TQVLPto64 mid{(p1.X + p2.X) / 2, (p1.Y + p2.Y) / 2};
    double along = 0.0;
    switch (dim.DimType()) {
        case TQVDimType::dmtHorz:
        case TQVDimType::dmtVert:
        case TQVDimType::dmtAligned: {
            shape.DimLine = {p1, p2};
            const TQVLPto64 f1{dim.GetPointX(3), dim.GetPointY(3)};
            const TQVLPto64 f2{dim.GetPointX(4), dim.GetPointY(4)};
            const auto ext = [&](const TQVLPto64& feature, const TQVLPto64& end) {
                const double len = TDraw2D::Distance(feature.X, feature.Y, end.X, end.Y);
                if (len <= gap) return;
                shape.ExtLines.emplace_back(Along(feature, end, gap), Along(feature, end, len + over));
            };
            if (dim.DimExt() == 0 || dim.DimExt() == 1) ext(f1, p1);
            if (dim.DimExt() == 0 || dim.DimExt() == 2) ext(f2, p2);
            along = p1 == p2 ? 0.0 : ScreenAngle(p1.X, p1.Y, p2.X, p2.Y);
            break;
        }
        case TQVDimType::dmtRadial1:
        case TQVDimType::dmtRadial2:
            shape.DimLine = {p1, p2};
            shape.HeadStart = false;
            along = p1 == p2 ? 0.0 : ScreenAngle(p1.X, p1.Y, p2.X, p2.Y);
            break;
        case TQVDimType::dmtDiameter1:
            shape.DimLine = {p1, p2};
            along = p1 == p2 ? 0.0 : ScreenAngle(p1.X, p1.Y, p2.X, p2.Y);
            break;
        case TQVDimType::dmtDiameter2: {
            const TQVLPto64 opposite{2 * p1.X - p2.X, 2 * p1.Y - p2.Y};
            shape.DimLine = {opposite, p2};
            along = p1 == p2 ? 0.0 : ScreenAngle(p1.X, p1.Y, p2.X, p2.Y);
            break;
        }
        case TQVDimType::dmtAngle: {
            shape.IsArc = true;
            shape.Arc = dim.AngleArc();
            const TORXBaseDim::TAngleArc& arc = shape.Arc;
            for (int i = 0; i <= 32; ++i)
                shape.DimLine.push_back(PolarPoint(arc.Center.X, arc.Center.Y,
                                                   static_cast<double>(arc.Radius),
                                                   arc.StartDeg + arc.SweepDeg * i / 32.0));
            for (int arm : {5, 6}) {
                if (dim.DimExt() == 3 || (dim.DimExt() == 1 && arm == 6) || (dim.DimExt() == 2 && arm == 5))
                    continue;
                const TQVLPto64 p{dim.GetPointX(arm), dim.GetPointY(arm)};
                const double len = TDraw2D::Distance(arc.Center.X, arc.Center.Y, p.X, p.Y);
                if (len > gap)
                    shape.ExtLines.emplace_back(Along(arc.Center, p, gap), Along(arc.Center, p, len + over));
            }
            const double midDeg = arc.StartDeg + arc.SweepDeg / 2.0;
            mid = PolarPoint(arc.Center.X, arc.Center.Y, static_cast<double>(arc.Radius), midDeg);
            along = midDeg - 90.0;  // tangent to the arc
            break;
        }
    }
    shape.TextAngle = Readable(along) + static_cast<double>(dim.TextAngle());
    const double lift = kTextGap * shape.TextHeight;
    const double a = Rad(shape.TextAngle);
    shape.TextAnchor = {mid.X + static_cast<std::int64_t>(std::llround(-std::sin(a) * lift)),
                        mid.Y + static_cast<std::int64_t>(std::llround(-std::cos(a) * lift))};
    return shape;
}

// Everything drawn: the dimension line, the extension lines and the text around its anchor.
static TQVLRect ExtentOf(const TDimShape& shape) {
    TQVLRect r(shape.DimLine[0].X, shape.DimLine[0].Y, shape.DimLine[0].X, shape.DimLine[0].Y);
    const auto grow = [&r](const TQVLPto64& p) {
        r.Left = std::min(r.Left, p.X), r.Right = std::max(r.Right, p.X);
        r.Top = std::min(r.Top, p.Y), r.Bottom = std::max(r.Bottom, p.Y);
    };
    for (const auto& p : shape.DimLine) grow(p);
    for (const auto& [from, to] : shape.ExtLines) grow(from), grow(to);
    const std::int64_t reach = static_cast<std::int64_t>(std::max(shape.TextWidth / 2.0, shape.TextHeight));
    grow({shape.TextAnchor.X - reach, shape.TextAnchor.Y - reach});
    grow({shape.TextAnchor.X + reach, shape.TextAnchor.Y + reach});
    return r;
}

void TORXBaseDim::UpdatePoints() {
    if (fPoints.size() < 10) return;
    CalcValues(0);
    const TDimShape shape = ShapeOf(*this, *Style(), std::max<std::int64_t>(1, fOwner->Measure().fDrawScale));
    const double a = Rad(shape.TextAngle);
    const double half = shape.TextWidth / 2.0;
    fPoints[8] = {shape.TextAnchor.X, shape.TextAnchor.Y};
    fPoints[9] = {shape.TextAnchor.X + static_cast<std::int64_t>(std::llround(half * std::cos(a))),
                  shape.TextAnchor.Y - static_cast<std::int64_t>(std::llround(half * std::sin(a)))};
    if (fDimType == TQVDimType::dmtAngle) return;
    // The bounds (points 5 and 6) cover the whole dimension.
    const TQVLRect r = ExtentOf(shape);
    fPoints[4] = {r.Left, r.Top};
    fPoints[5] = {r.Right, r.Bottom};
}

void TORXBaseDim::CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                           std::int64_t& maxY) const {
    // Not every kind uses every point, and the unused ones sit at the origin: fit what is drawn instead.
    if (fPoints.size() < 10) return TORXBasePoint::CheckFit(minX, maxX, minY, maxY);
    const TQVLRect r =
        ExtentOf(ShapeOf(*this, *Style(), std::max<std::int64_t>(1, fOwner->Measure().fDrawScale)));
    const std::int64_t half = fPenWidth / 2;
    // -1 marks an extent that nothing has set yet.
    const auto lower = [](std::int64_t& extent, std::int64_t v) {
        if (extent == -1 || v < extent) extent = v;
    };
    const auto upper = [](std::int64_t& extent, std::int64_t v) {
        if (extent == -1 || v > extent) extent = v;
    };
    lower(minX, r.Left - half);
    upper(maxX, r.Right + half);
    lower(minY, r.Top - half);
    upper(maxY, r.Bottom + half);
}

// [SECTION] Item contract

void TORXBaseDim::UpdateBounds() {
    UpdatePoints();
    TORXBasePoint::UpdateBounds();
}

bool TORXBaseDim::PickExtent(TQVLRect& extent) const {
    extent = fBoundsRect;
    return false;
}

bool TORXBaseDim::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    const TDimShape shape = ShapeOf(*this, *Style(), std::max<std::int64_t>(1, fOwner->Measure().fDrawScale));
    const std::int64_t tol = tolerance + fPenWidth / 2;
    if (PickChain(shape.DimLine, false, x, y, tol)) return true;
    for (const auto& [from, to] : shape.ExtLines)
        if (TDraw2D::PointInLine(from.X, from.Y, to.X, to.Y, x, y, tol)) return true;
    const double dx = static_cast<double>(x - shape.TextAnchor.X);
    const double dy = static_cast<double>(y - shape.TextAnchor.Y);
    const double a = Rad(shape.TextAngle);
    const double u = dx * std::cos(a) - dy * std::sin(a);
    const double v = -dx * std::sin(a) - dy * std::cos(a);
    const double t = static_cast<double>(tolerance);
    return std::fabs(u) <= shape.TextWidth / 2.0 + t && v >= -t && v <= shape.TextHeight + t;
}

bool TORXBaseDim::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                             TQVLRef& ref) {
    const bool angle = fDimType == TQVDimType::dmtAngle;
    switch (snap) {
        case TQVLSnap::snEndPoint:
            for (std::int32_t i :
                 angle ? std::vector<std::int32_t>{5, 6, 7} : std::vector<std::int32_t>{1, 2, 3, 4})
                if (NearPoint(this, x, y, tolerance, {GetPointX(i), GetPointY(i)}, i, ref)) return true;
            return false;
        case TQVLSnap::snMidPoint:
            if (angle) return false;
            return NearPoint(this, x, y, tolerance,
                             {(GetPointX(1) + GetPointX(2)) / 2, (GetPointY(1) + GetPointY(2)) / 2}, 0, ref);
        case TQVLSnap::snCenter:
            return NearPoint(this, x, y, tolerance, CenterPoint(), 0, ref);
        case TQVLSnap::snNearest: {
            const TDimShape shape =
                ShapeOf(*this, *Style(), std::max<std::int64_t>(1, fOwner->Measure().fDrawScale));
            return SnapNearestOnChain(this, shape.DimLine, false, x, y, tolerance, ref);
        }
        case TQVLSnap::snIntersection:
            return SnapIntersection(this, x, y, tolerance, ref);
        case TQVLSnap::snNone:
            return false;
    }
    return false;
}

TQVLPto64 TORXBaseDim::CenterPoint() const {
    if (fDimType == TQVDimType::dmtAngle) return AngleArc().Center;
    if (IsRadial(fDimType) && fDimType != TQVDimType::dmtDiameter1) return {GetPointX(1), GetPointY(1)};
    return {(GetPointX(1) + GetPointX(2)) / 2, (GetPointY(1) + GetPointY(2)) / 2};
}

void TORXBaseDim::Turn(bool right) {
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    if (right)
        TORXBasePoint::RotateRight();
    else
        TORXBasePoint::RotateLeft();
    // A quarter turn makes a horizontal dimension vertical and the other way round.
    if (fDimType == TQVDimType::dmtHorz)
        SetDimType(TQVDimType::dmtVert);
    else if (fDimType == TQVDimType::dmtVert)
        SetDimType(TQVDimType::dmtHorz);
}

void TORXBaseDim::RotateLeft() {
    Turn(false);
}
void TORXBaseDim::RotateRight() {
    Turn(true);
}

void TORXBaseDim::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    const TQVLInsTypes asked = set;
    TORXBasePoint::CheckProp(baseSet, set);
    set = asked & TQVLInsTypes{TQVLInsType::inText};
}

TJSON TORXBaseDim::WriteJson() const {
    TJSON obj = TORXBasePoint::WriteJson();
    obj["DimType"] = static_cast<int>(fDimType);
    obj["DimExt"] = fDimExt;
    obj["IdDimStyle"] = fIdDimStyle;
    obj["Text"] = fText;
    obj["TextAngle"] = U::Round(fTextAngle);
    obj["TextMeasure"] = fTextMeasure;
    return obj;
}

void TORXBaseDim::ReadJson(std::int32_t version, const TJSON& obj) {
    // The kind first: while the points arrive one by one, the derived ones must not overwrite the arms of
    // an angle.
    fDimType = static_cast<TQVDimType>(std::clamp<std::int64_t>(U::GetInt(obj, "DimType"), 0, 7));
    TORXBasePoint::ReadJson(version, obj);
    fDimType = static_cast<TQVDimType>(std::clamp<std::int64_t>(U::GetInt(obj, "DimType"), 0, 7));
    fDimExt = static_cast<std::int32_t>(std::clamp<std::int64_t>(U::GetInt(obj, "DimExt"), 0, 3));
    fIdDimStyle = static_cast<std::int32_t>(U::GetInt(obj, "IdDimStyle"));
    fText = U::GetString(obj, "Text");
    fTextAngle = static_cast<float>(U::GetFloat(obj, "TextAngle"));
    fTextMeasure = U::GetBool(obj, "TextMeasure");
    UpdateBounds();
}

std::string TORXBaseDim::GetTextProp(std::uint16_t property) const {
    return property == kPropText ? fText : TORXBasePoint::GetTextProp(property);
}

void TORXBaseDim::SetTextProp(std::uint16_t property, const std::string& value) {
    if (property == kPropText)
        SetText(value);
    else
        TORXBasePoint::SetTextProp(property, value);
}

double TORXBaseDim::GetFloatProp(std::uint16_t property) const {
    return property == kPropTextAngle ? fTextAngle : TORXBasePoint::GetFloatProp(property);
}

void TORXBaseDim::SetFloatProp(std::uint16_t property, double value) {
    if (property == kPropTextAngle)
        SetTextAngle(static_cast<float>(value));
    else
        TORXBasePoint::SetFloatProp(property, value);
}

bool TORXBaseDim::GetBoolProp(std::uint16_t property) const {
    return property == kPropTextMeasure ? fTextMeasure : TORXBasePoint::GetBoolProp(property);
}

void TORXBaseDim::SetBoolProp(std::uint16_t property, bool value) {
    if (property == kPropTextMeasure)
        SetTextMeasure(value);
    else
        TORXBasePoint::SetBoolProp(property, value);
}

std::int64_t TORXBaseDim::GetEnumProp(std::uint16_t property) const {
    switch (property) {
        case kPropDimType:
            return static_cast<std::int64_t>(fDimType);
        case kPropDimExt:
            return fDimExt;
        case kPropIdDimStyle:
            return fIdDimStyle;
        default:
            return TORXBasePoint::GetEnumProp(property);
    }
}

void TORXBaseDim::SetEnumProp(std::uint16_t property, std::int64_t value) {
    switch (property) {
        case kPropDimType:
            SetDimType(static_cast<TQVDimType>(value));
            break;
        case kPropDimExt:
            SetDimExt(static_cast<std::int32_t>(value));
            break;
        case kPropIdDimStyle:
            SetIdDimStyle(static_cast<std::int32_t>(value));
            break;
        default:
            TORXBasePoint::SetEnumProp(property, value);
    }
}

// [SECTION] SVG

void TORXBaseDim::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                           float factor, bool flag) const {
    (void)mode, (void)flag;
    const TORXDimStyle& style = *Style();
    const TQVLUnits u = fOwner->Units();
    const TDimShape shape = ShapeOf(*this, style, std::max<std::int64_t>(1, fOwner->Measure().fDrawScale));
    std::string out = "<g>";
    for (const auto& [from, to] : shape.ExtLines)
        out += fmt::format(
            "<line x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\"{}/>", SvgLength(from.X, u), SvgLength(from.Y, u),
            SvgLength(to.X, u), SvgLength(to.Y, u),
            SvgStroke(style.fExtColor, GetBaseValue(style.fExtPenWidth) * factor, style.fExtLineType, u));
    const double head = MillimetresInUnit(style.fHeadSize, u) * factor;
    const std::string marker = SvgTerminatorMarker(style.fHeadType, style.fHeadColor, head, defs);
    std::string d;
    if (shape.IsArc && shape.Arc.Radius > 0) {
        const auto& arc = shape.Arc;
        const std::string r = SvgLength(arc.Radius, u);
        d = fmt::format("M{} A{},{} 0 {} {} {}", SvgXY(shape.DimLine.front(), u), r, r,
                        std::fabs(arc.SweepDeg) > 180.0 ? 1 : 0, arc.SweepDeg < 0.0 ? 1 : 0,
                        SvgXY(shape.DimLine.back(), u));
    } else if (!shape.IsArc) {
        d = "M" + SvgPointList(shape.DimLine, u);
    }
    if (!d.empty()) {
        std::string heads;
        if (!marker.empty() && shape.HeadStart) heads += " marker-start=\"" + marker + "\"";
        if (!marker.empty() && shape.HeadEnd) heads += " marker-end=\"" + marker + "\"";
        out += fmt::format(
            "<path d=\"{}\" fill=\"none\"{}{}/>", d,
            SvgStroke(style.fDimColor, GetBaseValue(style.fDimPenWidth) * factor, style.fDimLineType, u),
            heads);
    }
    const std::string text = MeasureText();
    if (!text.empty()) {
        const std::string x = SvgLength(shape.TextAnchor.X, u);
        const std::string y = SvgLength(shape.TextAnchor.Y, u);
        const std::string turn = shape.TextAngle == 0.0 ? std::string{}
                                                        : fmt::format(" transform=\"rotate({} {} {})\"",
                                                                      SvgNumber(-shape.TextAngle), x, y);
        // A style read without a font colour would hide its text: it takes the dimension line's colour.
        const TAlphaColor ink = AlphaOf(style.fFont.FontColor) == 0 ? style.fDimColor : style.fFont.FontColor;
        out += fmt::format(
            "<text x=\"{}\" y=\"{}\"{} text-anchor=\"middle\"{}>{}</text>", x, y, turn,
            SvgFont(style.fFont.Name, GetValue(static_cast<std::int64_t>(shape.TextHeight), u),
                    style.fFont.Bold, style.fFont.Italic, style.fFont.Underline, style.fFont.Strikeout, ink),
            SvgEscape(text));
    }
    body.push_back(out + "</g>");
}

void TORXBaseDim::JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const {
    TORXBasePoint::JsonInspector(baseSet, set, array);
    AddInspector(array, "DimType", static_cast<int>(fDimType));
    AddInspector(array, "DimExt", fDimExt);
    AddInspector(array, "IdDimStyle", fIdDimStyle);
    if (!set.Contains(TQVLInsType::inText)) return;
    AddInspector(array, "Text", fText);
    AddInspector(array, "TextAngle", U::Round(fTextAngle));
    AddInspector(array, "TextMeasure", fTextMeasure);
    AddInspector(array, "DisplayText", fDisplayText);
}

}  // namespace Orvex
