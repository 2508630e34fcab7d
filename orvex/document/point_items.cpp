#include "orvex/document/point_items.h"

#include "orvex/document/document.h"
#include "orvex/document/undo_commands.h"

namespace Orvex {

// [SECTION] TORXBasePoint

TQVLPto64 TORXBasePoint::LinkPoint(std::int16_t position) const {
    const auto& r = fBoundsRect;
    const std::int64_t cx = (r.Left + r.Right) / 2;
    const std::int64_t cy = (r.Top + r.Bottom) / 2;
    switch (position) {
        case 0:
            return {cx, r.Top};
        case 1:
            return {r.Right, cy};
        case 2:
            return {cx, r.Bottom};
        case 3:
            return {r.Left, cy};
        default:
            return {cx, cy};
    }
}

bool TORXBasePoint::CheckLink(std::int64_t x, std::int64_t y, TQVLink& link) const {
    for (std::int16_t pos = 0; pos < 4; ++pos) {
        const TQVLPto64 p = LinkPoint(pos);
        if (Distance(x, y, p.X, p.Y) <= kLinkTolerance) {
            link = TQVLink{fInID, pos};
            return true;
        }
    }
    return false;
}

void TORXBasePoint::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                             TQVLExportSVG mode, float factor, bool flag) const {
    (void)defs, (void)body, (void)mode, (void)factor, (void)flag;
}

TQVLPto64 TORXBasePoint::CenterPoint() const {
    return {(fBoundsRect.Left + fBoundsRect.Right) / 2, (fBoundsRect.Top + fBoundsRect.Bottom) / 2};
}

void TORXBasePoint::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    baseSet = baseSet & TQVLInsTypeBases{TQVLInsTypeBase::ibID,      TQVLInsTypeBase::ibLayer,
                                         TQVLInsTypeBase::ibColor,   TQVLInsTypeBase::ibPenWidth,
                                         TQVLInsTypeBase::ibOptions, TQVLInsTypeBase::ibPoints};
    set.Clear();
}

// [SECTION] TORX2DItem

void TORX2DItem::SetBackColor(TAlphaColor color) {
    if (color == fBackColor) return;
    TORXColorCmd::AddCommand(this, kPropBackColor);
    fBackColor = color;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORX2DItem::SetFilled(bool filled) {
    if (filled == fFill) return;
    TORXBoolCmd::AddCommand(this, kPropFilled);
    fFill = filled;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

std::int64_t TORX2DItem::Width() const {
    return GetPointX(2) - GetPointX(1);
}
std::int64_t TORX2DItem::Height() const {
    return GetPointY(2) - GetPointY(1);
}
std::int64_t TORX2DItem::BaseScaleWidth() const {
    return Width() * fOwner->Measure().fDrawScale;
}
std::int64_t TORX2DItem::BaseScaleHeight() const {
    return Height() * fOwner->Measure().fDrawScale;
}

float TORX2DItem::WidthPx(std::int32_t dpi) const {
    return static_cast<float>(static_cast<double>(Width()) * dpi / static_cast<double>(kBasePerInch));
}

float TORX2DItem::HeightPx(std::int32_t dpi) const {
    return static_cast<float>(static_cast<double>(Height()) * dpi / static_cast<double>(kBasePerInch));
}

void TORX2DItem::CalcValues(std::int16_t value) {
    (void)value;
    CheckPosition();
    UpdateBounds();
}

void TORX2DItem::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                          float factor, bool flag) const {
    (void)defs, (void)body, (void)mode, (void)factor, (void)flag;
}

TQVLPto64 TORX2DItem::CenterPoint() const {
    return {(GetPointX(1) + GetPointX(2)) / 2, (GetPointY(1) + GetPointY(2)) / 2};
}

void TORX2DItem::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    (void)baseSet;
    set = set & TQVLInsTypes{TQVLInsType::inFill, TQVLInsType::inBackColor};
}

TAlphaColor TORX2DItem::GetColorProp(std::uint16_t property) const {
    return property == kPropBackColor ? fBackColor : TORXBaseItem::GetColorProp(property);
}

void TORX2DItem::SetColorProp(std::uint16_t property, TAlphaColor value) {
    if (property == kPropBackColor)
        SetBackColor(value);
    else
        TORXBaseItem::SetColorProp(property, value);
}

bool TORX2DItem::GetBoolProp(std::uint16_t property) const {
    return property == kPropFilled ? fFill : TORXBaseItem::GetBoolProp(property);
}

void TORX2DItem::SetBoolProp(std::uint16_t property, bool value) {
    if (property == kPropFilled)
        SetFilled(value);
    else
        TORXBaseItem::SetBoolProp(property, value);
}

}  // namespace Orvex
