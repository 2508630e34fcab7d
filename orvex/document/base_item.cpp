// The item base: construction, common setters with undo recording, one-based point access, hit tests,
// bounds, moves and quarter turns. The JSON form lives in item_json.cpp.
#include "orvex/document/base_item.h"

#include <fmt/format.h>
#include <algorithm>

#include "orvex/core/numeric.h"
#include "orvex/document/document.h"
#include "orvex/document/undo_commands.h"
#include "orvex/io/json.h"
#include "orvex/render/draw_context.h"

namespace Orvex {

// [SECTION] Construction

TORXBaseItem::TORXBaseItem(TORXBaseLabel* owner, TQVLItemType type, bool preview)
    : fItemType(type), fOwner(owner) {
    if (!owner->HasState(TOrvexState::lsReading) && !owner->HasState(TOrvexState::lsPaste))
        fInID = owner->NextID();
    SetName();
    fFromPreview = preview;
    fLayer = owner->GetLayer(1);
    fPoints.assign(static_cast<std::size_t>(std::max(0, NumPointsItem(type))), TQVLPto{});
    // The document takes the item only once it is fully built (TORXBaseLabel::AddItem), so a kind whose
    // construction throws leaves nothing behind.
}

TORXBaseItem::TORXBaseItem(TORXBaseLabel* owner, TQVLItemType type, TORXLayer* layer, bool preview)
    : TORXBaseItem(owner, type, preview) {
    fLayer = layer;
}

void TORXBaseItem::SetInID(std::int32_t id) {
    if (id == fInID) return;
    fInID = id;
    fOwner->ItemIdChanged();
}

void TORXBaseItem::SetName() {
    fID = fmt::format("{}{:03d}", NameItem(fItemType), fInID);
}

// [SECTION] Common properties

void TORXBaseItem::SetID(const std::string& id) {
    if (id == fID) return;
    TORXTxtCmd::AddCommand(this, kPropID);
    fID = id;
    fOwner->ChangeState(TOrvexState::lsModified, this);
}

void TORXBaseItem::SetColor(TAlphaColor color) {
    if (color == fColor) return;
    TORXColorCmd::AddCommand(this, kPropColor);
    fColor = color;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseItem::SetOptions(TQVLayerOpts options) {
    if (options == fOptions) return;
    TORXEnumValueCmd::AddCommand(this, kPropOptions);
    fOptions = options;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseItem::SetPenWidth(std::int32_t width) {
    if (width == fPenWidth) return;
    TORXBaseValueCmd::AddCommand(this, kPropPenWidth);
    fPenWidth = width;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

float TORXBaseItem::GetPenWidthMM() const {
    return GetBaseValue(fPenWidth);
}

void TORXBaseItem::SetPenWidthMM(float mm) {
    SetPenWidth(static_cast<std::int32_t>(SetBaseValue(mm)));
}

void TORXBaseItem::SetLayer(TORXLayer* layer) {
    if (layer == fLayer || layer == nullptr) return;
    TORXEnumValueCmd::AddCommand(this, kPropLayer);
    fLayer = layer;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

void TORXBaseItem::SetAngle(TQVLAngle angle) {
    if (angle == fAngle) return;
    TORXEnumValueCmd::AddCommand(this, kPropAngle);
    fAngle = angle;
    fOwner->ChangeState(TOrvexState::lsCalc, this);
}

void TORXBaseItem::SetContainerID(std::int32_t id) {
    if (id == fContainerID) return;
    TORXEnumValueCmd::AddCommand(this, kPropContainerID);
    fContainerID = id;
    fOwner->ChangeState(TOrvexState::lsModified, this);
}

void TORXBaseItem::SetContainerFrame(TQVLContainerFrame frame) {
    if (frame == fContainerFrame) return;
    TORXEnumValueCmd::AddCommand(this, kPropContainerFrame);
    fContainerFrame = frame;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

// [SECTION] Points

TQVLPto TORXBaseItem::GetPoint(std::int32_t index) const {
    if (index < 1 || index > static_cast<std::int32_t>(fPoints.size())) return {};
    return fPoints[static_cast<std::size_t>(index - 1)];
}

std::int64_t TORXBaseItem::GetPointX(std::int32_t index) const {
    return GetPoint(index).X;
}
std::int64_t TORXBaseItem::GetPointY(std::int32_t index) const {
    return GetPoint(index).Y;
}
float TORXBaseItem::GetPointMMX(std::int32_t index) const {
    return GetBaseValue(GetPointX(index));
}
float TORXBaseItem::GetPointMMY(std::int32_t index) const {
    return GetBaseValue(GetPointY(index));
}

void TORXBaseItem::SetPoint(std::int32_t index, const TQVLPto& aPoint) {
    const TQVLPto p{Qvl::Utils::ClampCoord(aPoint.X), Qvl::Utils::ClampCoord(aPoint.Y)};
    if (index < 1 || index > static_cast<std::int32_t>(fPoints.size())) return;
    auto& point = fPoints[static_cast<std::size_t>(index - 1)];
    if (point == p) return;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
    TORXPosCmd::AddCommand(this, index, TQVLPosType::ptXY);
    point = p;
    PointsChanged();
}

void TORXBaseItem::SetPointX(std::int32_t index, std::int64_t x) {
    x = Qvl::Utils::ClampCoord(x);
    if (index < 1 || index > static_cast<std::int32_t>(fPoints.size())) return;
    auto& point = fPoints[static_cast<std::size_t>(index - 1)];
    if (point.X == x) return;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
    TORXPosCmd::AddCommand(this, index, TQVLPosType::ptX);
    point.X = x;
    PointsChanged();
}

void TORXBaseItem::SetPointY(std::int32_t index, std::int64_t y) {
    y = Qvl::Utils::ClampCoord(y);
    if (index < 1 || index > static_cast<std::int32_t>(fPoints.size())) return;
    auto& point = fPoints[static_cast<std::size_t>(index - 1)];
    if (point.Y == y) return;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
    TORXPosCmd::AddCommand(this, index, TQVLPosType::ptY);
    point.Y = y;
    PointsChanged();
}

void TORXBaseItem::SetBase(std::int32_t index, std::int64_t x, std::int64_t y) {
    SetPoint(index, TQVLPto{x, y});
}

void TORXBaseItem::DeletePoint(std::int32_t index) {
    if (index < 1 || index > static_cast<std::int32_t>(fPoints.size())) return;
    TQVLPtoA points = fPoints;
    points.erase(points.begin() + (index - 1));
    SetPointsProp(points, kPropPoints);
}

void TORXBaseItem::AssignPoints(const TQVLPto* points, std::int32_t count) {
    SetPointsProp(TQVLPtoA(points, points + std::max(0, count)), kPropPoints);
}

void TORXBaseItem::InsertPoint(std::int64_t x, std::int64_t y, std::int32_t index) {
    TQVLPtoA points = fPoints;
    const auto at = static_cast<std::size_t>(
        std::clamp<std::int32_t>(index - 1, 0, static_cast<std::int32_t>(points.size())));
    points.insert(points.begin() + static_cast<std::ptrdiff_t>(at), TQVLPto{x, y});
    SetPointsProp(points, kPropPoints);
}

void TORXBaseItem::SetPointsProp(const TQVLPtoA& points, std::uint16_t property) {
    if (points == fPoints) return;
    TORXElePosCmd::AddCommand(this, property);
    fPoints = points;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
    PointsChanged();
}

void TORXBaseItem::PointsChanged() {
    fChanged = true;
    fOwner->InvalidatePickIndex(this);
    UpdateBounds();
}

// [SECTION] Hit tests, bounds, snapping

std::int64_t TORXBaseItem::GetRefX(std::int32_t index) const {
    (void)index;
    return 0;
}

std::int64_t TORXBaseItem::GetRefY(std::int32_t index) const {
    (void)index;
    return 0;
}

namespace {
bool IsThinKind(TQVLItemType type) {
    return type == TQVLItemType::itLine || type == TQVLItemType::itArrowLine ||
           type == TQVLItemType::itLink || type == TQVLItemType::itDim;
}
}  // namespace

bool TORXBaseItem::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    const auto& r = fBoundsRect;
    const bool thin = IsThinKind(fItemType);
    const bool inX = (r.Left == r.Right || thin) ? (r.Left - tolerance <= x && x < r.Right + tolerance)
                                                 : (r.Left <= x && x < r.Right);
    if (!inX) return false;
    return (r.Top == r.Bottom || thin) ? (r.Top - tolerance <= y && y < r.Bottom + tolerance)
                                       : (r.Top <= y && y < r.Bottom);
}

bool TORXBaseItem::PickExtent(TQVLRect& extent) const {
    // A whole pen width around the bounds: the kinds reach half a pen past their outline, or the
    // tolerance, whichever is larger.
    extent = fBoundsRect;
    extent.NormalizeRect();
    const std::int64_t pen = std::max<std::int64_t>(fPenWidth, 0) + 1;
    extent.Inflate(pen, pen);
    return true;
}

bool TORXBaseItem::SearchRect(const TQVLRect& rect, bool partial) const {
    const auto& b = fBoundsRect;
    if (!partial)
        return rect.Left <= b.Left && rect.Top <= b.Top && b.Right <= rect.Right && b.Bottom <= rect.Bottom;
    // A line along an axis has no area but still crosses the rectangle, so edges count here.
    return b.Left <= rect.Right && rect.Left <= b.Right && b.Top <= rect.Bottom && rect.Top <= b.Bottom;
}

bool TORXBaseItem::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                              TQVLRef& ref) {
    const auto near = [&](std::int64_t px, std::int64_t py, std::int32_t index) {
        if (Distance(x, y, px, py) > tolerance) return false;
        ref = TQVLRef{this, index, px, py};
        return true;
    };
    const auto count = static_cast<std::int32_t>(fPoints.size());
    switch (snap) {
        case TQVLSnap::snEndPoint:
        case TQVLSnap::snNearest:
            for (std::int32_t i = 1; i <= count; ++i)
                if (near(GetPointX(i), GetPointY(i), i)) return true;
            return false;
        case TQVLSnap::snMidPoint:
            for (std::int32_t i = 1; i < count; ++i)
                if (near((GetPointX(i) + GetPointX(i + 1)) / 2, (GetPointY(i) + GetPointY(i + 1)) / 2, i))
                    return true;
            return false;
        case TQVLSnap::snCenter: {
            const TQVLPto64 c = CenterPoint();
            return near(c.X, c.Y, 0);
        }
        case TQVLSnap::snNone:
        case TQVLSnap::snIntersection:
            return false;
    }
    return false;
}

void TORXBaseItem::CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                            std::int64_t& maxY) const {
    const std::int64_t half = fPenWidth / 2;
    const auto lower = [](std::int64_t& extent, std::int64_t v) {
        if (extent == -1 || v < extent) extent = v;
    };
    const auto upper = [](std::int64_t& extent, std::int64_t v) {
        if (extent == -1 || v > extent) extent = v;
    };
    for (const auto& p : fPoints) {
        lower(minX, p.X - half);
        upper(maxX, p.X + half);
        lower(minY, p.Y - half);
        upper(maxY, p.Y + half);
    }
}

void TORXBaseItem::UpdateBounds() {
    if (fItemType == TQVLItemType::itText) return;
    TQVLRect r;
    if (fPoints.size() == 2 || (fItemType == TQVLItemType::itArrowLine && fPoints.size() >= 2)) {
        r = TQVLRect(fPoints[0].X, fPoints[0].Y, fPoints[1].X, fPoints[1].Y);
    } else if (fItemType == TQVLItemType::itDim && fPoints.size() >= 6) {
        r = TQVLRect(fPoints[4].X, fPoints[4].Y, fPoints[5].X, fPoints[5].Y);
    } else if (!fPoints.empty()) {
        r = TQVLRect(fPoints[0].X, fPoints[0].Y, fPoints[0].X, fPoints[0].Y);
        for (const auto& p : fPoints) {
            r.Left = std::min(r.Left, p.X), r.Right = std::max(r.Right, p.X);
            r.Top = std::min(r.Top, p.Y), r.Bottom = std::max(r.Bottom, p.Y);
        }
    }
    r.NormalizeRect();
    fBoundsRect = r;
}

void TORXBaseItem::CheckPosition() {
    if (fPoints.size() != 2) return;
    // The old value of point 2 passes through a 32-bit temporary, so coordinates beyond its range are cut
    // to 32 bits by the swap; stored drawings were made that way.
    const auto narrow = [](std::int64_t v) {
        return static_cast<std::int64_t>(static_cast<std::int32_t>(static_cast<std::uint32_t>(v)));
    };
    TQVLPtoA points = fPoints;
    if (points[1].X < points[0].X) {
        const std::int64_t temp = narrow(points[1].X);
        points[1].X = points[0].X;
        points[0].X = temp;
    }
    if (points[1].Y < points[0].Y) {
        const std::int64_t temp = narrow(points[1].Y);
        points[1].Y = points[0].Y;
        points[0].Y = temp;
    }
    SetPointsProp(points, kPropPoints);
}

// [SECTION] Moves and quarter turns

namespace {
enum class TTurn { kLeft, kRight };

TQVLPtoA Turn(const TQVLPtoA& points, const TQVLRect& bounds, TTurn turn) {
    const std::int64_t cx = (bounds.Left + bounds.Right) / 2;
    const std::int64_t cy = (bounds.Top + bounds.Bottom) / 2;
    TQVLPtoA out = points;
    for (auto& p : out) {
        const std::int64_t dx = p.X - cx;
        const std::int64_t dy = p.Y - cy;
        // y grows downwards, so (dx, dy) -> (-dy, dx) turns clockwise on screen.
        if (turn == TTurn::kRight)
            p = TQVLPto{cx - dy, cy + dx};
        else
            p = TQVLPto{cx + dy, cy - dx};
    }
    return out;
}
}  // namespace

void TORXBaseItem::RotateLeft() {
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    SetPointsProp(Turn(fPoints, fBoundsRect, TTurn::kLeft), kPropPoints);
    SetAngle(static_cast<TQVLAngle>((static_cast<int>(fAngle) + 3) % 4));
}

void TORXBaseItem::RotateRight() {
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    SetPointsProp(Turn(fPoints, fBoundsRect, TTurn::kRight), kPropPoints);
    SetAngle(static_cast<TQVLAngle>((static_cast<int>(fAngle) + 1) % 4));
}

void TORXBaseItem::CheckBaseBoundsMove(std::int64_t& dx, std::int64_t& dy, TQVLMoveOpt option) const {
    (void)option;
    if (fBoundsRect.Left + dx < 0) dx = -fBoundsRect.Left;
    if (fBoundsRect.Top + dy < 0) dy = -fBoundsRect.Top;
}

void TORXBaseItem::BoundsMove(float& dx, float& dy) const {
    const TQVLUnits units = fOwner->Units();
    std::int64_t bx = SetValue(dx, units);
    std::int64_t by = SetValue(dy, units);
    const std::int64_t ox = bx;
    const std::int64_t oy = by;
    CheckBaseBoundsMove(bx, by, TQVLMoveOpt::moMove);
    if (bx != ox) dx = GetValue(bx, units);
    if (by != oy) dy = GetValue(by, units);
}

void TORXBaseItem::BaseMove(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                            TQVLMoveOpt option, bool flag) {
    (void)flag;
    std::int64_t dx = x2 - x1;
    std::int64_t dy = y2 - y1;
    if (dx == 0 && dy == 0) return;
    TQVLPtoA points = fPoints;
    switch (option) {
        case TQVLMoveOpt::moMove:
            CheckBaseBoundsMove(dx, dy, option);
            for (auto& p : points) p.BaseMove(dx, dy);
            break;
        case TQVLMoveOpt::moPoint: {  // the point nearest to where the drag began
            if (points.empty()) return;
            const auto nearest =
                std::min_element(points.begin(), points.end(), [&](const TQVLPto& a, const TQVLPto& b) {
                    return Distance(x1, y1, a.X, a.Y) < Distance(x1, y1, b.X, b.Y);
                });
            nearest->BaseMove(dx, dy);
            break;
        }
        case TQVLMoveOpt::moResize:  // the far corner follows the drag
            if (points.size() < 2) return;
            points[1].BaseMove(dx, dy);
            break;
    }
    SetPointsProp(points, kPropPoints);
    fOwner->ChangeState(TOrvexState::lsCalc, this);
}

void TORXBaseItem::Move(float dx, float dy, TQVLMoveOpt option) {
    const TQVLUnits units = fOwner->Units();
    BaseMove(0, 0, SetValue(dx, units), SetValue(dy, units), option, false);
}

// [SECTION] Inspector

void TORXBaseItem::JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const {
    (void)set;
    const auto add = [&](const char* name, TJSON value) {
        array.push_back(TJSON{{"Name", name}, {"Value", std::move(value)}});
    };
    if (baseSet.Contains(TQVLInsTypeBase::ibID)) add("ID", fID);
    if (baseSet.Contains(TQVLInsTypeBase::ibLayer)) add("Layer", fOwner->LayerIdx(fLayer));
    if (baseSet.Contains(TQVLInsTypeBase::ibColor)) add("Color", AlphaColorToHex(fColor));
    if (baseSet.Contains(TQVLInsTypeBase::ibPenWidth)) add("PenWidth", RoundTo3Decimals(GetPenWidthMM()));
    if (baseSet.Contains(TQVLInsTypeBase::ibAngle)) add("Angle", static_cast<int>(fAngle));
    if (baseSet.Contains(TQVLInsTypeBase::ibPoints)) add("Points", static_cast<int>(fPoints.size()));
}

// [SECTION] Property access for undo commands

TAlphaColor TORXBaseItem::GetColorProp(std::uint16_t property) const {
    return property == kPropColor ? fColor : TAlphaColor{0};
}

void TORXBaseItem::SetColorProp(std::uint16_t property, TAlphaColor value) {
    if (property == kPropColor) SetColor(value);
}

std::int64_t TORXBaseItem::GetBaseValueProp(std::uint16_t property) const {
    return property == kPropPenWidth ? fPenWidth : 0;
}

void TORXBaseItem::SetBaseValueProp(std::uint16_t property, std::int64_t value) {
    if (property == kPropPenWidth) SetPenWidth(static_cast<std::int32_t>(value));
}

bool TORXBaseItem::GetBoolProp(std::uint16_t property) const {
    (void)property;
    return false;
}

void TORXBaseItem::SetBoolProp(std::uint16_t property, bool value) {
    (void)property, (void)value;
}

std::int64_t TORXBaseItem::GetEnumProp(std::uint16_t property) const {
    switch (property) {
        case kPropAngle:
            return static_cast<std::int64_t>(fAngle);
        case kPropOptions:
            return static_cast<std::int64_t>(fOptions.LowBits());
        case kPropLayer:
            return fOwner->LayerIdx(fLayer);
        case kPropContainerID:
            return fContainerID;
        case kPropContainerFrame:
            return static_cast<std::int64_t>(fContainerFrame);
        default:
            return 0;
    }
}

void TORXBaseItem::SetEnumProp(std::uint16_t property, std::int64_t value) {
    switch (property) {
        case kPropAngle:
            SetAngle(static_cast<TQVLAngle>(value & 3));
            break;
        case kPropOptions:
            SetOptions(TQVLayerOpts::FromLowBits(static_cast<std::uint64_t>(value)));
            break;
        case kPropLayer:
            SetLayer(fOwner->GetLayer(static_cast<std::int32_t>(value) + 1));
            break;
        case kPropContainerID:
            SetContainerID(static_cast<std::int32_t>(value));
            break;
        case kPropContainerFrame:
            SetContainerFrame(static_cast<TQVLContainerFrame>(std::clamp<std::int64_t>(value, 0, 2)));
            break;
        default:
            break;
    }
}

std::string TORXBaseItem::GetTextProp(std::uint16_t property) const {
    return property == kPropID ? fID : std::string{};
}

void TORXBaseItem::SetTextProp(std::uint16_t property, const std::string& value) {
    if (property == kPropID) SetID(value);
}

double TORXBaseItem::GetFloatProp(std::uint16_t property) const {
    (void)property;
    return 0.0;
}

void TORXBaseItem::SetFloatProp(std::uint16_t property, double value) {
    (void)property, (void)value;
}

// [SECTION] Painting dispatch

void TORXBaseItem::DrawElement(TORXBaseDraw& surface) {
    if ((surface.fState == TQVLDrawState::dsPreview || surface.fState == TQVLDrawState::dsExport) &&
        GetIsData())
        DrawPreview(surface);
    else
        Draw(surface);
}

void TORXBaseItem::DrawPreview(TORXBaseDraw& surface) {
    for (std::int32_t i = 0; i < fOwner->GetPreviewCount(); ++i) {
        TORXBaseItem* copy = fOwner->GetPreviewItem(i);
        if (copy->InID() == fInID && copy->aRow == surface.aRow && copy->aCol == surface.aCol)
            copy->Draw(surface);
    }
}

void TORXBaseItem::PrintElement(TORXBaseDraw& surface) {
    Print(surface);
}

}  // namespace Orvex
