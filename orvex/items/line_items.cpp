// Lines with terminators, the straight line, the polyline and the arc.
//
// [SECTION] Shared   [SECTION] TORXTermLine   [SECTION] TORXBaseLine   [SECTION] TORXBasePolyLine
// [SECTION] TORXBaseArc
#include "orvex/items/line_items.h"

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

template <class E>
E EnumFromJson(const TJSON& obj, std::string_view key, E last) {
    return EnumWithin(U::GetInt(obj, key), last);
}

float FloatFromJson(const TJSON& obj, std::string_view key) {
    return static_cast<float>(U::GetFloat(obj, key));
}

std::int64_t DrawScale(const TORXBaseLabel* doc) {
    return std::max<std::int64_t>(1, doc->Measure().fDrawScale);
}

}  // namespace

// [SECTION] TORXTermLine

TORXTermLine::TORXTermLine(TORXBaseLabel* owner, TQVLItemType type, bool preview)
    : TORXBasePoint(owner, type, preview) {
    const TORXSettings& s = owner->Settings();
    fFromColor = fToColor = s.fTermColor;
    fSizeFrom = fSizeTo = static_cast<std::int32_t>(SetBaseValue(s.fTermSize) * DrawScale(owner));
}

void TORXTermLine::SetLineType(TQVLineType type) {
    if (type == fLineType) return;
    TORXEnumValueCmd::AddCommand(this, kPropLineType);
    fLineType = type;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXTermLine::SetFromType(TQVLTermType type) {
    if (type == fFromType) return;
    TORXEnumValueCmd::AddCommand(this, kPropFromType);
    fFromType = type;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXTermLine::SetToType(TQVLTermType type) {
    if (type == fToType) return;
    TORXEnumValueCmd::AddCommand(this, kPropToType);
    fToType = type;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXTermLine::SetFromColor(TAlphaColor color) {
    if (color == fFromColor) return;
    TORXColorCmd::AddCommand(this, kPropFromColor);
    fFromColor = color;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXTermLine::SetToColor(TAlphaColor color) {
    if (color == fToColor) return;
    TORXColorCmd::AddCommand(this, kPropToColor);
    fToColor = color;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

float TORXTermLine::SizeFrom() const {
    return GetValue(fSizeFrom, fOwner->Units());
}
float TORXTermLine::SizeTo() const {
    return GetValue(fSizeTo, fOwner->Units());
}
void TORXTermLine::SetSizeFrom(float size) {
    SetBaseSizeFrom(static_cast<std::int32_t>(SetValue(size, fOwner->Units())));
}
void TORXTermLine::SetSizeTo(float size) {
    SetBaseSizeTo(static_cast<std::int32_t>(SetValue(size, fOwner->Units())));
}

void TORXTermLine::SetBaseSizeFrom(std::int32_t size) {
    if (size == fSizeFrom) return;
    TORXBaseValueCmd::AddCommand(this, kPropSizeFrom);
    fSizeFrom = size;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXTermLine::SetBaseSizeTo(std::int32_t size) {
    if (size == fSizeTo) return;
    TORXBaseValueCmd::AddCommand(this, kPropSizeTo);
    fSizeTo = size;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXTermLine::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    // The parent narrows the kind groups to its own; this kind shows these of those asked for.
    const TQVLInsTypes asked = set;
    TORXBasePoint::CheckProp(baseSet, set);
    set = asked & TQVLInsTypes{TQVLInsType::inLineType, TQVLInsType::inTerminators};
}

std::int64_t TORXTermLine::GetBaseValueProp(std::uint16_t property) const {
    if (property == kPropSizeFrom) return fSizeFrom;
    if (property == kPropSizeTo) return fSizeTo;
    return TORXBasePoint::GetBaseValueProp(property);
}

void TORXTermLine::SetBaseValueProp(std::uint16_t property, std::int64_t value) {
    if (property == kPropSizeFrom)
        SetBaseSizeFrom(static_cast<std::int32_t>(value));
    else if (property == kPropSizeTo)
        SetBaseSizeTo(static_cast<std::int32_t>(value));
    else
        TORXBasePoint::SetBaseValueProp(property, value);
}

std::int64_t TORXTermLine::GetEnumProp(std::uint16_t property) const {
    switch (property) {
        case kPropLineType:
            return static_cast<std::int64_t>(fLineType);
        case kPropFromType:
            return static_cast<std::int64_t>(fFromType);
        case kPropToType:
            return static_cast<std::int64_t>(fToType);
        default:
            return TORXBasePoint::GetEnumProp(property);
    }
}

void TORXTermLine::SetEnumProp(std::uint16_t property, std::int64_t value) {
    switch (property) {
        case kPropLineType:
            SetLineType(EnumWithin(value, TQVLineType::ii411));
            break;
        case kPropFromType:
            SetFromType(EnumWithin(value, kLastTermType));
            break;
        case kPropToType:
            SetToType(EnumWithin(value, kLastTermType));
            break;
        default:
            TORXBasePoint::SetEnumProp(property, value);
    }
}

TAlphaColor TORXTermLine::GetColorProp(std::uint16_t property) const {
    if (property == kPropFromColor) return fFromColor;
    if (property == kPropToColor) return fToColor;
    return TORXBasePoint::GetColorProp(property);
}

void TORXTermLine::SetColorProp(std::uint16_t property, TAlphaColor value) {
    if (property == kPropFromColor)
        SetFromColor(value);
    else if (property == kPropToColor)
        SetToColor(value);
    else
        TORXBasePoint::SetColorProp(property, value);
}

void TORXTermLine::WriteLineTypeJson(TJSON& obj) const {
    obj["LineType"] = static_cast<int>(fLineType);
}

void TORXTermLine::WriteTermJson(TJSON& obj) const {
    const TQVLUnits units = fOwner->Units();
    obj["FromType"] = static_cast<int>(fFromType);
    obj["ToType"] = static_cast<int>(fToType);
    obj["FromColor"] = U::SetAlphaColor(fFromColor);
    obj["ToColor"] = U::SetAlphaColor(fToColor);
    obj["SizeFrom"] = U::BaseToUnit(fSizeFrom, units);
    obj["SizeTo"] = U::BaseToUnit(fSizeTo, units);
}

void TORXTermLine::ReadTermJson(const TJSON& obj) {
    const TQVLUnits units = fOwner->Units();
    fLineType = EnumFromJson(obj, "LineType", TQVLineType::ii411);
    fFromType = EnumFromJson(obj, "FromType", kLastTermType);
    fToType = EnumFromJson(obj, "ToType", kLastTermType);
    fFromColor = U::GetColor(obj, "FromColor");
    fToColor = U::GetColor(obj, "ToColor");
    fSizeFrom = static_cast<std::int32_t>(U::UnitToBase(U::GetFloat(obj, "SizeFrom"), units));
    fSizeTo = static_cast<std::int32_t>(U::UnitToBase(U::GetFloat(obj, "SizeTo"), units));
}

std::string TORXTermLine::SvgMarkers(std::vector<std::string>& defs) const {
    const TQVLUnits units = fOwner->Units();
    std::string out;
    const std::string from = SvgTerminatorMarker(fFromType, fFromColor, GetValue(fSizeFrom, units), defs);
    const std::string to = SvgTerminatorMarker(fToType, fToColor, GetValue(fSizeTo, units), defs);
    if (!from.empty()) out += " marker-start=\"" + from + "\"";
    if (!to.empty()) out += " marker-end=\"" + to + "\"";
    return out;
}

std::string TORXTermLine::SvgStrokeOf(float factor) const {
    return SvgStroke(fColor, GetPenWidthMM() * factor, fLineType, fOwner->Units());
}

// [SECTION] TORXBaseLine

void TORXBaseLine::SetLineType(TQVLineType type) {
    if (type == fLineType) return;
    TORXEnumValueCmd::AddCommand(this, kPropLineType);
    fLineType = type;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

bool TORXBaseLine::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    if (!TORXBasePoint::Pick(x, y, tolerance, flag)) return false;
    return TDraw2D::PointInLine(GetPointX(1), GetPointY(1), GetPointX(2), GetPointY(2), x, y,
                                tolerance + fPenWidth / 2);
}

bool TORXBaseLine::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                              TQVLRef& ref) {
    const auto pts = ToPto64(fPoints);
    switch (snap) {
        case TQVLSnap::snEndPoint:
        case TQVLSnap::snMidPoint:
            return TORXBasePoint::CheckPoint(x, y, tolerance, snap, ref);
        case TQVLSnap::snNearest:
            return SnapNearestOnChain(this, pts, false, x, y, tolerance, ref);
        case TQVLSnap::snIntersection:
            return SnapIntersection(this, x, y, tolerance, ref);
        case TQVLSnap::snCenter:  // a segment has no centre of its own
        case TQVLSnap::snNone:
            return false;
    }
    return false;
}

TJSON TORXBaseLine::WriteJson() const {
    TJSON obj = TORXBasePoint::WriteJson();
    obj["LineType"] = static_cast<int>(fLineType);
    return obj;
}

void TORXBaseLine::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBasePoint::ReadJson(version, obj);
    fLineType = EnumFromJson(obj, "LineType", TQVLineType::ii411);
}

void TORXBaseLine::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                            TQVLExportSVG mode, float factor, bool flag) const {
    (void)defs, (void)mode, (void)flag;
    const TQVLUnits u = fOwner->Units();
    body.push_back(fmt::format("<line x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\"{} stroke-linecap=\"round\"/>",
                               SvgLength(GetPointX(1), u), SvgLength(GetPointY(1), u),
                               SvgLength(GetPointX(2), u), SvgLength(GetPointY(2), u),
                               SvgStroke(fColor, GetPenWidthMM() * factor, fLineType, u)));
}

void TORXBaseLine::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    const TQVLInsTypes asked = set;
    TORXBasePoint::CheckProp(baseSet, set);
    set = asked & TQVLInsTypes{TQVLInsType::inLineType};
}

std::int64_t TORXBaseLine::GetEnumProp(std::uint16_t property) const {
    return property == kPropLineType ? static_cast<std::int64_t>(fLineType)
                                     : TORXBasePoint::GetEnumProp(property);
}

void TORXBaseLine::SetEnumProp(std::uint16_t property, std::int64_t value) {
    if (property == kPropLineType)
        SetLineType(EnumWithin(value, TQVLineType::ii411));
    else
        TORXBasePoint::SetEnumProp(property, value);
}

// [SECTION] TORXBasePolyLine

bool TORXBasePolyLine::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    return PickChain(ToPto64(fPoints), false, x, y, tolerance + fPenWidth / 2);
}

bool TORXBasePolyLine::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                                  TQVLRef& ref) {
    return SnapOnChain(this, ToPto64(fPoints), false, x, y, tolerance, snap, ref);
}

TJSON TORXBasePolyLine::WriteJson() const {
    TJSON obj = TORXBasePoint::WriteJson();
    WriteLineTypeJson(obj);
    WriteTermJson(obj);
    return obj;
}

void TORXBasePolyLine::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBasePoint::ReadJson(version, obj);
    ReadTermJson(obj);
}

void TORXBasePolyLine::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                                TQVLExportSVG mode, float factor, bool flag) const {
    (void)mode, (void)flag;
    if (fPoints.size() < 2) return;
    body.push_back(fmt::format("<polyline points=\"{}\" fill=\"none\"{} stroke-linejoin=\"round\"{}/>",
                               SvgPointList(ToPto64(fPoints), fOwner->Units()), SvgStrokeOf(factor),
                               SvgMarkers(defs)));
}

// [SECTION] TORXBaseArc

void TORXBaseArc::CalcSweep() {
    const double sweep = fClockWise ? NormDeg(fStartAngle - fEndAngle) : NormDeg(fEndAngle - fStartAngle);
    fSweepAngle = sweep == 0.0 ? 360.0f : static_cast<float>(sweep);
}

void TORXBaseArc::SetStartAngle(float degrees) {
    if (degrees == fStartAngle) return;
    TORXFloatCmd::AddCommand(this, kPropStartAngle);
    fStartAngle = degrees;
    CalcSweep();
    UpdateBounds();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseArc::SetEndAngle(float degrees) {
    if (degrees == fEndAngle) return;
    TORXFloatCmd::AddCommand(this, kPropEndAngle);
    fEndAngle = degrees;
    CalcSweep();
    UpdateBounds();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseArc::SetClockWise(bool clockWise) {
    if (clockWise == fClockWise) return;
    TORXBoolCmd::AddCommand(this, kPropClockWise);
    fClockWise = clockWise;
    CalcSweep();
    UpdateBounds();
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseArc::SetPX(std::int32_t index, float value) {
    SetPointX(index, SetValue(value, fOwner->Units()));
}

void TORXBaseArc::SetPY(std::int32_t index, float value) {
    SetPointY(index, SetValue(value, fOwner->Units()));
}

void TORXBaseArc::SetCircle(std::int64_t cx, std::int64_t cy, std::int64_t radius) {
    SetPointsProp(TQVLPtoA{{cx - radius, cy - radius}, {cx + radius, cy + radius}}, kPropPoints);
}

void TORXBaseArc::CalcFromPoints() {
    fCX = (GetPointX(1) + GetPointX(2)) / 2;
    fCY = (GetPointY(1) + GetPointY(2)) / 2;
    fRadius = std::abs(GetPointX(2) - GetPointX(1)) / 2;
}

void TORXBaseArc::CalcPoints() {
    if (fPoints.size() < 2) return;
    fPoints[0] = TQVLPto{fCX - fRadius, fCY - fRadius};
    fPoints[1] = TQVLPto{fCX + fRadius, fCY + fRadius};
}

TQVLPto64 TORXBaseArc::StartPoint() const {
    return PolarPoint(fCX, fCY, static_cast<double>(fRadius), fStartAngle);
}

TQVLPto64 TORXBaseArc::EndPoint() const {
    return PolarPoint(fCX, fCY, static_cast<double>(fRadius), fStartAngle + SignedSweep());
}

void TORXBaseArc::UpdateBounds() {
    CalcFromPoints();
    fBoundsRect = ArcBounds(fCX, fCY, fRadius, fStartAngle, SignedSweep());
}

bool TORXBaseArc::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    const TArcD2 a = ToDraw2D(fStartAngle, SignedSweep());
    const std::int64_t tol = tolerance + fPenWidth / 2;
    if (fSweepAngle >= 360.0f) return TDraw2D::PointOnCircle(fCX, fCY, fRadius, x, y, tol);
    return TDraw2D::PointInArc(fCX, fCY, fRadius, a.Start, a.End, a.Ccw, x, y, tol);
}

bool TORXBaseArc::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                             TQVLRef& ref) {
    switch (snap) {
        case TQVLSnap::snEndPoint:
            return NearPoint(this, x, y, tolerance, StartPoint(), 1, ref) ||
                   NearPoint(this, x, y, tolerance, EndPoint(), 2, ref);
        case TQVLSnap::snMidPoint:
            return NearPoint(
                this, x, y, tolerance,
                PolarPoint(fCX, fCY, static_cast<double>(fRadius), fStartAngle + SignedSweep() / 2), 0, ref);
        case TQVLSnap::snCenter:
            return NearPoint(this, x, y, tolerance, Center(), 0, ref);
        case TQVLSnap::snNearest: {
            if (x == fCX && y == fCY) return false;
            const double a = ScreenAngle(fCX, fCY, x, y);
            if (!AngleInSweep(a, fStartAngle, SignedSweep())) return false;
            return NearPoint(this, x, y, tolerance, PolarPoint(fCX, fCY, static_cast<double>(fRadius), a), 0,
                             ref);
        }
        case TQVLSnap::snIntersection:
            return SnapIntersection(this, x, y, tolerance, ref);
        case TQVLSnap::snNone:
            return false;
    }
    return false;
}

void TORXBaseArc::CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                           std::int64_t& maxY) const {
    const std::int64_t half = fPenWidth / 2;
    const auto extend = [](std::int64_t& extent, std::int64_t v, bool lower) {
        if (extent == -1 || (lower ? v < extent : v > extent)) extent = v;
    };
    extend(minX, fBoundsRect.Left - half, true);
    extend(maxX, fBoundsRect.Right + half, false);
    extend(minY, fBoundsRect.Top - half, true);
    extend(maxY, fBoundsRect.Bottom + half, false);
}

TJSON TORXBaseArc::WriteJson() const {
    TJSON obj = TORXBasePoint::WriteJson();
    WriteLineTypeJson(obj);
    obj["StartAngle"] = U::Round(fStartAngle);
    obj["EndAngle"] = U::Round(fEndAngle);
    obj["SweepAngle"] = U::Round(fSweepAngle);
    obj["ClockWise"] = fClockWise;
    WriteTermJson(obj);
    return obj;
}

void TORXBaseArc::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBasePoint::ReadJson(version, obj);
    ReadTermJson(obj);
    fStartAngle = FloatFromJson(obj, "StartAngle");
    fEndAngle = FloatFromJson(obj, "EndAngle");
    fClockWise = U::GetBool(obj, "ClockWise");
    // The sweep follows from the two angles; the stored one is only for readers of the file.
    CalcSweep();
    UpdateBounds();
}

void TORXBaseArc::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                           float factor, bool flag) const {
    (void)mode, (void)flag;
    if (fRadius <= 0) return;
    const TQVLUnits u = fOwner->Units();
    const std::string r = SvgLength(fRadius, u);
    std::string d;
    if (fSweepAngle >= 360.0f) {
        // One arc command cannot close a circle: two halves.
        const TQVLPto64 s = StartPoint();
        const TQVLPto64 m =
            PolarPoint(fCX, fCY, static_cast<double>(fRadius), fStartAngle + SignedSweep() / 2);
        const int sweepFlag = fClockWise ? 1 : 0;
        d = fmt::format("M{} A{},{} 0 0 {} {} A{},{} 0 0 {} {}", SvgXY(s, u), r, r, sweepFlag, SvgXY(m, u), r,
                        r, sweepFlag, SvgXY(s, u));
    } else {
        // SVG's sweep flag 1 runs clockwise on screen.
        d = fmt::format("M{} A{},{} 0 {} {} {}", SvgXY(StartPoint(), u), r, r, fSweepAngle > 180.0f ? 1 : 0,
                        fClockWise ? 1 : 0, SvgXY(EndPoint(), u));
    }
    body.push_back(
        fmt::format("<path d=\"{}\" fill=\"none\"{}{}/>", d, SvgStrokeOf(factor), SvgMarkers(defs)));
}

void TORXBaseArc::Turn(bool right) {
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    const std::int64_t bx = (fBoundsRect.Left + fBoundsRect.Right) / 2;
    const std::int64_t by = (fBoundsRect.Top + fBoundsRect.Bottom) / 2;
    const TQVLPto64 c = TDraw2D::RotatePoint(fCX, fCY, bx, by, right ? TQVLAngle::ag90 : TQVLAngle::ag270);
    // A quarter turn clockwise on screen lowers every angle by 90 degrees.
    const float delta = right ? -90.0f : 90.0f;
    const std::int64_t radius = fRadius;
    SetStartAngle(static_cast<float>(NormDeg(fStartAngle + delta)));
    SetEndAngle(static_cast<float>(NormDeg(fEndAngle + delta)));
    SetCircle(c.X, c.Y, radius);
    SetAngle(static_cast<TQVLAngle>((static_cast<int>(fAngle) + (right ? 1 : 3)) % 4));
}

void TORXBaseArc::RotateLeft() {
    Turn(false);
}
void TORXBaseArc::RotateRight() {
    Turn(true);
}

double TORXBaseArc::GetFloatProp(std::uint16_t property) const {
    if (property == kPropStartAngle) return fStartAngle;
    if (property == kPropEndAngle) return fEndAngle;
    return TORXTermLine::GetFloatProp(property);
}

void TORXBaseArc::SetFloatProp(std::uint16_t property, double value) {
    if (property == kPropStartAngle)
        SetStartAngle(static_cast<float>(value));
    else if (property == kPropEndAngle)
        SetEndAngle(static_cast<float>(value));
    else
        TORXTermLine::SetFloatProp(property, value);
}

bool TORXBaseArc::GetBoolProp(std::uint16_t property) const {
    return property == kPropClockWise ? fClockWise : TORXTermLine::GetBoolProp(property);
}

void TORXBaseArc::SetBoolProp(std::uint16_t property, bool value) {
    if (property == kPropClockWise)
        SetClockWise(value);
    else
        TORXTermLine::SetBoolProp(property, value);
}

// [SECTION] Inspector entries: each kind adds its own after the base's, for the groups the set holds.

void TORXTermLine::JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const {
    TORXBasePoint::JsonInspector(baseSet, set, array);
    if (set.Contains(TQVLInsType::inLineType)) AddInspector(array, "LineType", static_cast<int>(fLineType));
    if (!set.Contains(TQVLInsType::inTerminators)) return;
    const TQVLUnits units = fOwner->Units();
    AddInspector(array, "FromType", static_cast<int>(fFromType));
    AddInspector(array, "ToType", static_cast<int>(fToType));
    AddInspector(array, "FromColor", AlphaColorToHex(fFromColor));
    AddInspector(array, "ToColor", AlphaColorToHex(fToColor));
    AddInspector(array, "SizeFrom", U::BaseToUnit(fSizeFrom, units));
    AddInspector(array, "SizeTo", U::BaseToUnit(fSizeTo, units));
}

void TORXBaseLine::JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const {
    TORXBasePoint::JsonInspector(baseSet, set, array);
    if (set.Contains(TQVLInsType::inLineType)) AddInspector(array, "LineType", static_cast<int>(fLineType));
}

void TORXBaseArc::JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const {
    TORXTermLine::JsonInspector(baseSet, set, array);
    AddInspector(array, "StartAngle", U::Round(fStartAngle));
    AddInspector(array, "EndAngle", U::Round(fEndAngle));
    AddInspector(array, "SweepAngle", U::Round(fSweepAngle));
    AddInspector(array, "ClockWise", fClockWise);
    AddInspector(array, "Radius", U::BaseToUnit(fRadius, fOwner->Units()));
}

}  // namespace Orvex
