// Closed shapes: rectangle, polygon, Bézier curve, circle, ellipse and sector.
//
// [SECTION] Shared   [SECTION] TORXBoxShape   [SECTION] TORXBaseRectangle   [SECTION] TORXBasePolygon
// [SECTION] TORXBaseBezier   [SECTION] TORXBaseCircle   [SECTION] TORXBaseEllipse   [SECTION] TORXBaseSector
#include "orvex/items/shape_items.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "orvex/document/document.h"
#include "orvex/document/undo_commands.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/enum_bounds.h"
#include "orvex/items/item_geometry.h"
#include "orvex/items/svg_style.h"
#include "orvex/render/draw2d.h"

namespace Orvex {

using U = TJSONUtils;
using namespace ItemGeo;

// [SECTION] Shared

namespace {

TQVLineType LineTypeFromJson(const TJSON& obj) {
    return EnumWithin(U::GetInt(obj, "LineType"), TQVLineType::ii411);
}

std::int64_t Abs64(std::int64_t v) {
    return v < 0 ? -v : v;
}

// Signed distance from the outline of a rectangle with rounded corners: negative inside.
double RoundedRectDistance(const TQVLRect& r, double radius, std::int64_t x, std::int64_t y) {
    const double hx = static_cast<double>(r.GetWidth()) / 2.0;
    const double hy = static_cast<double>(r.GetHeight()) / 2.0;
    const double rr = std::clamp(radius, 0.0, std::min(hx, hy));
    const double qx = std::fabs(static_cast<double>(x) - (static_cast<double>(r.Left) + hx)) - (hx - rr);
    const double qy = std::fabs(static_cast<double>(y) - (static_cast<double>(r.Top) + hy)) - (hy - rr);
    return std::hypot(std::max(qx, 0.0), std::max(qy, 0.0)) + std::min(std::max(qx, qy), 0.0) - rr;
}

}  // namespace

// [SECTION] TORXBoxShape

void TORXBoxShape::SetLineType(TQVLineType type) {
    if (type == fLineType) return;
    TORXEnumValueCmd::AddCommand(this, kPropLineType);
    fLineType = type;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBoxShape::RotateLeft() {
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    TORX2DItem::RotateLeft();
    CheckPosition();
    Turned();
}

void TORXBoxShape::RotateRight() {
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    TORX2DItem::RotateRight();
    CheckPosition();
    Turned();
}

void TORXBoxShape::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    const TQVLInsTypes asked = set;
    TORX2DItem::CheckProp(baseSet, set);
    set = asked & TQVLInsTypes{TQVLInsType::inFill, TQVLInsType::inBackColor, TQVLInsType::inLineType};
}

std::int64_t TORXBoxShape::GetEnumProp(std::uint16_t property) const {
    return property == kPropLineType ? static_cast<std::int64_t>(fLineType)
                                     : TORX2DItem::GetEnumProp(property);
}

void TORXBoxShape::SetEnumProp(std::uint16_t property, std::int64_t value) {
    if (property == kPropLineType)
        SetLineType(EnumWithin(value, TQVLineType::ii411));
    else
        TORX2DItem::SetEnumProp(property, value);
}

bool TORXBoxShape::FilledInk() const {
    return fFill && AlphaOf(fBackColor) != 0;
}

std::string TORXBoxShape::SvgPaint(float factor) const {
    return SvgFill(fBackColor, fFill) +
           SvgStroke(fColor, GetPenWidthMM() * factor, fLineType, fOwner->Units());
}

TJSON TORXBoxShape::WriteJson() const {
    TJSON obj = TORX2DItem::WriteJson();
    obj["LineType"] = static_cast<int>(fLineType);
    return obj;
}

void TORXBoxShape::ReadJson(std::int32_t version, const TJSON& obj) {
    TORX2DItem::ReadJson(version, obj);
    fLineType = LineTypeFromJson(obj);
    UpdateBounds();
}

// [SECTION] TORXBaseRectangle

float TORXBaseRectangle::GetRadio() const {
    return GetValue(fRadio, fOwner->Units());
}

float TORXBaseRectangle::GetMMRadio() const {
    return fRadio == 0 ? 0.0f : GetBaseValue(fRadio);
}

void TORXBaseRectangle::SetRadio(float value) {
    std::int64_t radius = SetValue(value, fOwner->Units());
    // Only the height limits the radius; drawings were made with that rule.
    const std::int64_t half = Abs64(Height()) / 2;
    if (radius > half) radius = half;
    SetBaseRadio(static_cast<std::int32_t>(radius));
}

void TORXBaseRectangle::SetBaseRadio(std::int32_t radius) {
    if (radius == fRadio) return;
    TORXBaseValueCmd::AddCommand(this, kPropRadio);
    fRadio = radius;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

bool TORXBaseRectangle::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    const double d = RoundedRectDistance(fBoundsRect, fRadio, x, y);
    if (FilledInk()) return d <= tolerance;
    return std::fabs(d) <= tolerance + fPenWidth / 2;
}

bool TORXBaseRectangle::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                                   TQVLRef& ref) {
    const TQVLRect& r = fBoundsRect;
    const std::vector<TQVLPto64> corners{
        {r.Left, r.Top}, {r.Right, r.Top}, {r.Right, r.Bottom}, {r.Left, r.Bottom}};
    switch (snap) {
        case TQVLSnap::snEndPoint:
            for (std::size_t i = 0; i < corners.size(); ++i)
                if (NearPoint(this, x, y, tolerance, corners[i], static_cast<std::int32_t>(i + 1), ref))
                    return true;
            return false;
        case TQVLSnap::snMidPoint:
            return SnapMidOfChain(this, corners, true, x, y, tolerance, ref);
        case TQVLSnap::snCenter:
            return NearPoint(this, x, y, tolerance, CenterPoint(), 0, ref);
        case TQVLSnap::snNearest:
            return SnapNearestOnChain(this, corners, true, x, y, tolerance, ref);
        case TQVLSnap::snIntersection:
            return SnapIntersection(this, x, y, tolerance, ref);
        case TQVLSnap::snNone:
            return false;
    }
    return false;
}

TJSON TORXBaseRectangle::WriteJson() const {
    TJSON obj = TORXBoxShape::WriteJson();
    obj["Radio"] = U::BaseToUnit(fRadio, fOwner->Units());
    return obj;
}

void TORXBaseRectangle::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBoxShape::ReadJson(version, obj);
    fRadio = static_cast<std::int32_t>(U::UnitToBase(U::GetFloat(obj, "Radio"), fOwner->Units()));
    UpdateBounds();
}

void TORXBaseRectangle::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                                 TQVLExportSVG mode, float factor, bool flag) const {
    (void)defs, (void)mode, (void)flag;
    const TQVLUnits u = fOwner->Units();
    const TQVLRect& r = fBoundsRect;
    const std::string rx = fRadio > 0 ? fmt::format(" rx=\"{}\"", SvgLength(fRadio, u)) : std::string{};
    body.push_back(fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"{}{}/>",
                               SvgLength(r.Left, u), SvgLength(r.Top, u), SvgLength(r.GetWidth(), u),
                               SvgLength(r.GetHeight(), u), rx, SvgPaint(factor)));
}

std::int64_t TORXBaseRectangle::GetBaseValueProp(std::uint16_t property) const {
    return property == kPropRadio ? fRadio : TORXBoxShape::GetBaseValueProp(property);
}

void TORXBaseRectangle::SetBaseValueProp(std::uint16_t property, std::int64_t value) {
    if (property == kPropRadio)
        SetBaseRadio(static_cast<std::int32_t>(value));
    else
        TORXBoxShape::SetBaseValueProp(property, value);
}

// [SECTION] TORXBasePolygon

void TORXBasePolygon::SetLineType(TQVLineType type) {
    if (type == fLineType) return;
    TORXEnumValueCmd::AddCommand(this, kPropLineType);
    fLineType = type;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

bool TORXBasePolygon::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    return PickChain(ToPto64(fPoints), true, x, y, tolerance + fPenWidth / 2);
}

bool TORXBasePolygon::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                                 TQVLRef& ref) {
    return SnapOnChain(this, ToPto64(fPoints), true, x, y, tolerance, snap, ref);
}

TJSON TORXBasePolygon::WriteJson() const {
    TJSON obj = TORXBasePoint::WriteJson();
    obj["LineType"] = static_cast<int>(fLineType);
    return obj;
}

void TORXBasePolygon::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBasePoint::ReadJson(version, obj);
    fLineType = LineTypeFromJson(obj);
}

void TORXBasePolygon::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                               TQVLExportSVG mode, float factor, bool flag) const {
    (void)defs, (void)mode, (void)flag;
    if (fPoints.size() < 2) return;
    const TQVLUnits u = fOwner->Units();
    body.push_back(fmt::format("<polygon points=\"{}\" fill=\"none\"{} stroke-linejoin=\"round\"/>",
                               SvgPointList(ToPto64(fPoints), u),
                               SvgStroke(fColor, GetPenWidthMM() * factor, fLineType, u)));
}

void TORXBasePolygon::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    const TQVLInsTypes asked = set;
    TORXBasePoint::CheckProp(baseSet, set);
    set = asked & TQVLInsTypes{TQVLInsType::inLineType};
}

std::int64_t TORXBasePolygon::GetEnumProp(std::uint16_t property) const {
    return property == kPropLineType ? static_cast<std::int64_t>(fLineType)
                                     : TORXBasePoint::GetEnumProp(property);
}

void TORXBasePolygon::SetEnumProp(std::uint16_t property, std::int64_t value) {
    if (property == kPropLineType)
        SetLineType(EnumWithin(value, TQVLineType::ii411));
    else
        TORXBasePoint::SetEnumProp(property, value);
}

// [SECTION] TORXBaseBezier

bool TORXBaseBezier::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    if (fPoints.size() < 2) return false;
    return TDraw2D::PointInBezier(ToPto64(fPoints), x, y, tolerance + fPenWidth / 2);
}

bool TORXBaseBezier::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                                TQVLRef& ref) {
    const auto pts = ToPto64(fPoints);
    switch (snap) {
        case TQVLSnap::snEndPoint:
            // The curve passes through every third point; the others are handles.
            for (std::size_t i = 0; i < pts.size(); i += 3)
                if (NearPoint(this, x, y, tolerance, pts[i], static_cast<std::int32_t>(i + 1), ref))
                    return true;
            return !pts.empty() &&
                   NearPoint(this, x, y, tolerance, pts.back(), static_cast<std::int32_t>(pts.size()), ref);
        case TQVLSnap::snNearest: {
            std::vector<TQVLPto64> flat;
            for (const TPoint2D& p : TDraw2D::CurvePoints(pts, 32))
                flat.emplace_back(static_cast<std::int64_t>(std::llround(p.X)),
                                  static_cast<std::int64_t>(std::llround(p.Y)));
            return SnapNearestOnChain(this, flat, false, x, y, tolerance, ref);
        }
        case TQVLSnap::snIntersection:
            return SnapIntersection(this, x, y, tolerance, ref);
        case TQVLSnap::snMidPoint:
        case TQVLSnap::snCenter:
        case TQVLSnap::snNone:
            return false;
    }
    return false;
}

TJSON TORXBaseBezier::WriteJson() const {
    TJSON obj = TORXTermLine::WriteJson();
    WriteLineTypeJson(obj);
    WriteTermJson(obj);
    return obj;
}

void TORXBaseBezier::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXTermLine::ReadJson(version, obj);
    ReadTermJson(obj);
}

void TORXBaseBezier::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                              TQVLExportSVG mode, float factor, bool flag) const {
    (void)mode, (void)flag;
    if (fPoints.size() < 2) return;
    const TQVLUnits u = fOwner->Units();
    const auto pts = ToPto64(fPoints);
    std::string d = "M" + SvgXY(pts[0], u);
    std::size_t i = 1;
    for (; i + 2 < pts.size(); i += 3)
        d += " C" + SvgXY(pts[i], u) + " " + SvgXY(pts[i + 1], u) + " " + SvgXY(pts[i + 2], u);
    for (; i < pts.size(); ++i) d += " L" + SvgXY(pts[i], u);
    body.push_back(
        fmt::format("<path d=\"{}\" fill=\"none\"{}{}/>", d, SvgStrokeOf(factor), SvgMarkers(defs)));
}

// [SECTION] TORXBaseCircle

void TORXBaseCircle::UpdateBounds() {
    TORXBoxShape::UpdateBounds();
    fCX = (GetPointX(1) + GetPointX(2)) / 2;
    fCY = (GetPointY(1) + GetPointY(2)) / 2;
    fRadius = static_cast<std::int32_t>(Abs64(GetPointX(2) - GetPointX(1)) / 2);
}

float TORXBaseCircle::GetRadio() const {
    return GetValue(GetPointX(2) - GetPointX(1), fOwner->Units()) / 2.0f;
}

std::int64_t TORXBaseCircle::GetBaseRadio() const {
    return (GetPointX(2) - GetPointX(1)) / 2;
}

void TORXBaseCircle::SetRadio(float value) {
    SetBaseRadio(SetValue(value, fOwner->Units()));
}

void TORXBaseCircle::SetBaseRadio(std::int64_t radius) {
    SetPointsProp(TQVLPtoA{{fCX - radius, fCY - radius}, {fCX + radius, fCY + radius}}, kPropPoints);
}

float TORXBaseCircle::CenterX() const {
    return GetValue(fCX, fOwner->Units());
}
float TORXBaseCircle::CenterY() const {
    return GetValue(fCY, fOwner->Units());
}

void TORXBaseCircle::MoveCenter(std::int64_t cx, std::int64_t cy) {
    TQVLPtoA points = fPoints;
    for (auto& p : points) p.BaseMove(cx - fCX, cy - fCY);
    SetPointsProp(points, kPropPoints);
}

void TORXBaseCircle::SetCenterX(float value) {
    MoveCenter(SetValue(value, fOwner->Units()), fCY);
}
void TORXBaseCircle::SetCenterY(float value) {
    MoveCenter(fCX, SetValue(value, fOwner->Units()));
}

bool TORXBaseCircle::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    if (!TORXBaseItem::Pick(x, y, tolerance, flag)) return false;
    if (FilledInk()) {
        const std::int64_t dx = Abs64(x - fCX);
        const std::int64_t dy = Abs64(y - fCY);
        // The diamond inside the circle (widened by the tolerance) is a hit without multiplying.
        if (dx + dy <= static_cast<std::int64_t>(fRadius) + tolerance) return true;
        // Past the radius on either axis the point is outside whatever the square below gives, and dy * dy
        // cannot overflow.
        if (dx > fRadius || dy > fRadius) return false;
        // The square of the radius is a 32-bit product, wrapping above 46340; stored drawings pick that way.
        const auto r = static_cast<std::uint32_t>(fRadius);
        const auto radius2 = static_cast<std::int32_t>(r * r);
        return dx * dx + dy * dy <= radius2;
    }
    return TDraw2D::PointOnCircle(fCX, fCY, fRadius, x, y, tolerance);
}

bool TORXBaseCircle::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                                TQVLRef& ref) {
    switch (snap) {
        case TQVLSnap::snEndPoint:  // the quadrant points
            for (std::int32_t q = 0; q < 4; ++q)
                if (NearPoint(this, x, y, tolerance, PolarPoint(fCX, fCY, fRadius, q * 90.0), q + 1, ref))
                    return true;
            return false;
        case TQVLSnap::snCenter:
            return NearPoint(this, x, y, tolerance, {fCX, fCY}, 0, ref);
        case TQVLSnap::snNearest:
            if (x == fCX && y == fCY) return false;
            return NearPoint(this, x, y, tolerance,
                             PolarPoint(fCX, fCY, fRadius, ScreenAngle(fCX, fCY, x, y)), 0, ref);
        case TQVLSnap::snIntersection:
            return SnapIntersection(this, x, y, tolerance, ref);
        case TQVLSnap::snMidPoint:
        case TQVLSnap::snNone:
            return false;
    }
    return false;
}

void TORXBaseCircle::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                              TQVLExportSVG mode, float factor, bool flag) const {
    (void)defs, (void)mode, (void)flag;
    const TQVLUnits u = fOwner->Units();
    body.push_back(fmt::format("<circle cx=\"{}\" cy=\"{}\" r=\"{}\"{}/>", SvgLength(fCX, u),
                               SvgLength(fCY, u), SvgLength(fRadius, u), SvgPaint(factor)));
}

// [SECTION] TORXBaseEllipse

float TORXBaseEllipse::GetRadioX() const {
    return GetValue(GetPointX(2) - GetPointX(1), fOwner->Units()) / 2.0f;
}
float TORXBaseEllipse::GetRadioY() const {
    return GetValue(GetPointY(2) - GetPointY(1), fOwner->Units()) / 2.0f;
}

void TORXBaseEllipse::SetRadioX(float value) {
    const std::int64_t r = SetValue(value, fOwner->Units());
    const std::int64_t cx = (GetPointX(1) + GetPointX(2)) / 2;
    SetPointsProp(TQVLPtoA{{cx - r, GetPointY(1)}, {cx + r, GetPointY(2)}}, kPropPoints);
}

void TORXBaseEllipse::SetRadioY(float value) {
    const std::int64_t r = SetValue(value, fOwner->Units());
    const std::int64_t cy = (GetPointY(1) + GetPointY(2)) / 2;
    SetPointsProp(TQVLPtoA{{GetPointX(1), cy - r}, {GetPointX(2), cy + r}}, kPropPoints);
}

void TORXBaseEllipse::SetCenterX(float value) {
    const std::int64_t dx = SetValue(value, fOwner->Units()) - (GetPointX(1) + GetPointX(2)) / 2;
    SetPointsProp(TQVLPtoA{{GetPointX(1) + dx, GetPointY(1)}, {GetPointX(2) + dx, GetPointY(2)}},
                  kPropPoints);
}

void TORXBaseEllipse::SetCenterY(float value) {
    const std::int64_t dy = SetValue(value, fOwner->Units()) - (GetPointY(1) + GetPointY(2)) / 2;
    SetPointsProp(TQVLPtoA{{GetPointX(1), GetPointY(1) + dy}, {GetPointX(2), GetPointY(2) + dy}},
                  kPropPoints);
}

bool TORXBaseEllipse::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    if (!TORXBaseItem::Pick(x, y, tolerance, flag)) return false;
    const TQVLPto64 c = CenterPoint();
    const std::int64_t rx = fBoundsRect.GetWidth() / 2;
    const std::int64_t ry = fBoundsRect.GetHeight() / 2;
    if (FilledInk()) return TDraw2D::PointInEllipse(c.X, c.Y, rx, ry, x, y);
    return TDraw2D::PointOnEllipse(c.X, c.Y, rx, ry, x, y, tolerance);
}

bool TORXBaseEllipse::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                                 TQVLRef& ref) {
    const TQVLRect& r = fBoundsRect;
    const TQVLPto64 c = CenterPoint();
    switch (snap) {
        case TQVLSnap::snEndPoint: {
            const TQVLPto64 quadrants[] = {{r.Right, c.Y}, {c.X, r.Top}, {r.Left, c.Y}, {c.X, r.Bottom}};
            for (std::int32_t q = 0; q < 4; ++q)
                if (NearPoint(this, x, y, tolerance, quadrants[q], q + 1, ref)) return true;
            return false;
        }
        case TQVLSnap::snCenter:
            return NearPoint(this, x, y, tolerance, c, 0, ref);
        case TQVLSnap::snNearest: {
            TPoint2D p1, p2;
            if (TDraw2D::LineCrossEllipse(c.X, c.Y, x, y, c.X, c.Y, r.GetWidth() / 2, r.GetHeight() / 2, p1,
                                          p2) == 0)
                return false;
            // Of the two crossings of the ray through the centre, the one on the pointer's side.
            const TPoint2D& p = (p2.X - static_cast<double>(c.X)) * static_cast<double>(x - c.X) +
                                            (p2.Y - static_cast<double>(c.Y)) * static_cast<double>(y - c.Y) >
                                        0.0
                                    ? p2
                                    : p1;
            return NearPoint(
                this, x, y, tolerance,
                {static_cast<std::int64_t>(std::llround(p.X)), static_cast<std::int64_t>(std::llround(p.Y))},
                0, ref);
        }
        case TQVLSnap::snIntersection:
            return SnapIntersection(this, x, y, tolerance, ref);
        case TQVLSnap::snMidPoint:
        case TQVLSnap::snNone:
            return false;
    }
    return false;
}

void TORXBaseEllipse::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                               TQVLExportSVG mode, float factor, bool flag) const {
    (void)defs, (void)mode, (void)flag;
    const TQVLUnits u = fOwner->Units();
    const TQVLPto64 c = CenterPoint();
    body.push_back(fmt::format("<ellipse cx=\"{}\" cy=\"{}\" rx=\"{}\" ry=\"{}\"{}/>", SvgLength(c.X, u),
                               SvgLength(c.Y, u), SvgLength(fBoundsRect.GetWidth() / 2, u),
                               SvgLength(fBoundsRect.GetHeight() / 2, u), SvgPaint(factor)));
}

// [SECTION] TORXBaseSector

TORXBaseSector::TORXBaseSector(TORXBaseLabel* owner, bool preview)
    : TORXBaseCircle(owner, TQVLItemType::itSector, preview) {
    CalcEffectiveStart();
}

void TORXBaseSector::CalcEffectiveStart() {
    fEffStart = fStartAngle - 90.0f * static_cast<float>(static_cast<int>(fAngle));
}

void TORXBaseSector::SetAngleStart(float degrees) {
    const float value = std::clamp(degrees, -359.0f, 360.0f);
    if (value == fStartAngle) return;
    TORXFloatCmd::AddCommand(this, kPropStartAngle);
    fStartAngle = value;
    CalcEffectiveStart();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseSector::SetAngleGap(float degrees) {
    const float value = std::clamp(degrees, -360.0f, 360.0f);
    if (value == fSweepAngle) return;
    TORXFloatCmd::AddCommand(this, kPropSweepAngle);
    fSweepAngle = value;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

std::vector<TQVLPto64> TORXBaseSector::Outline() const {
    std::vector<TQVLPto64> out{{fCX, fCY}};
    constexpr int kSegments = 64;
    for (int i = 0; i <= kSegments; ++i)
        out.push_back(
            PolarPoint(fCX, fCY, fRadius, fEffStart + static_cast<double>(fSweepAngle) * i / kSegments));
    return out;
}

bool TORXBaseSector::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    if (!TORXBaseItem::Pick(x, y, tolerance, flag)) return false;
    if (FilledInk() && TDraw2D::PointInCircle(fCX, fCY, fRadius, x, y) &&
        ((x == fCX && y == fCY) || AngleInSweep(ScreenAngle(fCX, fCY, x, y), fEffStart, fSweepAngle)))
        return true;
    if (std::fabs(fSweepAngle) >= 360.0f) return TDraw2D::PointOnCircle(fCX, fCY, fRadius, x, y, tolerance);
    return PickChain(Outline(), true, x, y, tolerance + fPenWidth / 2);
}

bool TORXBaseSector::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                                TQVLRef& ref) {
    switch (snap) {
        case TQVLSnap::snEndPoint:
            return NearPoint(this, x, y, tolerance, PolarPoint(fCX, fCY, fRadius, fEffStart), 1, ref) ||
                   NearPoint(this, x, y, tolerance, PolarPoint(fCX, fCY, fRadius, fEffStart + fSweepAngle), 2,
                             ref);
        case TQVLSnap::snMidPoint:
            return NearPoint(this, x, y, tolerance,
                             PolarPoint(fCX, fCY, fRadius, fEffStart + fSweepAngle / 2.0), 0, ref);
        case TQVLSnap::snNearest:
            return SnapNearestOnChain(this, Outline(), true, x, y, tolerance, ref);
        case TQVLSnap::snCenter:
        case TQVLSnap::snIntersection:
        case TQVLSnap::snNone:
            return TORXBaseCircle::CheckPoint(x, y, tolerance, snap, ref);
    }
    return false;
}

TJSON TORXBaseSector::WriteJson() const {
    TJSON obj = TORXBoxShape::WriteJson();
    obj["StartAngle"] = U::Round(fStartAngle);
    obj["SweepAngle"] = U::Round(fSweepAngle);
    return obj;
}

void TORXBaseSector::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBoxShape::ReadJson(version, obj);
    fStartAngle = static_cast<float>(U::GetFloat(obj, "StartAngle"));
    fSweepAngle = static_cast<float>(U::GetFloat(obj, "SweepAngle"));
    CalcEffectiveStart();
    UpdateBounds();
}

void TORXBaseSector::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                              TQVLExportSVG mode, float factor, bool flag) const {
    if (fSweepAngle == 360.0f) {
        TORXBaseCircle::WriteSVG(defs, body, mode, factor, flag);
        return;
    }
    const TQVLUnits u = fOwner->Units();
    const std::string r = SvgLength(fRadius, u);
    // SVG's sweep flag 1 runs clockwise on screen: a negative sweep.
    body.push_back(fmt::format("<path d=\"M{} L{} A{},{} 0 {} {} {} Z\"{} stroke-linejoin=\"round\"/>",
                               SvgXY({fCX, fCY}, u), SvgXY(PolarPoint(fCX, fCY, fRadius, fEffStart), u), r, r,
                               std::fabs(fSweepAngle) > 180.0f ? 1 : 0, fSweepAngle < 0.0f ? 1 : 0,
                               SvgXY(PolarPoint(fCX, fCY, fRadius, fEffStart + fSweepAngle), u),
                               SvgPaint(factor)));
}

void TORXBaseSector::SetEnumProp(std::uint16_t property, std::int64_t value) {
    TORXBaseCircle::SetEnumProp(property, value);
    if (property == kPropAngle) CalcEffectiveStart();
}

double TORXBaseSector::GetFloatProp(std::uint16_t property) const {
    if (property == kPropStartAngle) return fStartAngle;
    if (property == kPropSweepAngle) return fSweepAngle;
    return TORXBaseCircle::GetFloatProp(property);
}

void TORXBaseSector::SetFloatProp(std::uint16_t property, double value) {
    if (property == kPropStartAngle)
        SetAngleStart(static_cast<float>(value));
    else if (property == kPropSweepAngle)
        SetAngleGap(static_cast<float>(value));
    else
        TORXBaseCircle::SetFloatProp(property, value);
}

// [SECTION] Inspector entries

void TORXBoxShape::JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const {
    TORX2DItem::JsonInspector(baseSet, set, array);
    if (set.Contains(TQVLInsType::inFill)) AddInspector(array, "Filled", fFill);
    if (set.Contains(TQVLInsType::inBackColor)) AddInspector(array, "BackColor", AlphaColorToHex(fBackColor));
    if (set.Contains(TQVLInsType::inLineType)) AddInspector(array, "LineType", static_cast<int>(fLineType));
}

void TORXBaseRectangle::JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const {
    TORXBoxShape::JsonInspector(baseSet, set, array);
    AddInspector(array, "Radio", U::BaseToUnit(fRadio, fOwner->Units()));
}

void TORXBasePolygon::JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const {
    TORXBasePoint::JsonInspector(baseSet, set, array);
    if (set.Contains(TQVLInsType::inLineType)) AddInspector(array, "LineType", static_cast<int>(fLineType));
}

void TORXBaseCircle::JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const {
    TORXBoxShape::JsonInspector(baseSet, set, array);
    const TQVLUnits units = fOwner->Units();
    AddInspector(array, "CenterX", U::BaseToUnit(fCX, units));
    AddInspector(array, "CenterY", U::BaseToUnit(fCY, units));
    AddInspector(array, "Radio", U::BaseToUnit(fRadius, units));
}

void TORXBaseSector::JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const {
    TORXBaseCircle::JsonInspector(baseSet, set, array);
    AddInspector(array, "StartAngle", U::Round(fStartAngle));
    AddInspector(array, "SweepAngle", U::Round(fSweepAngle));
}

}  // namespace Orvex
