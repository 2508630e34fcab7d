// Snapping: the editor's search for the point the pointer means (end, middle, centre, intersection,
// tangent and perpendicular points of items, the grid), the reference lines to end points in line with the
// pointer, and the alignment guides of a moving selection.
//
// [SECTION] Item geometry   [SECTION] SearchPoint   [SECTION] Alignment guides
#include "orvex/document/snapping.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/document/point_items.h"
#include "orvex/render/draw2d.h"

namespace Orvex {

// [SECTION] Item geometry

namespace {
bool IsRoundKind(TQVLItemType type) {
    return type == TQVLItemType::itCircle || type == TQVLItemType::itEllipse || type == TQVLItemType::itArc ||
           type == TQVLItemType::itSector;
}

TQVLPto64 P(const TQVLPto& p) {
    return {p.X, p.Y};
}
}  // namespace

std::vector<Detail::TSegment> ItemSegments(const TORXBaseItem& item) {
    std::vector<Detail::TSegment> out;
    if (IsRoundKind(item.ItemType()) || item.ItemType() == TQVLItemType::itBezier) return out;
    const auto& pts = item.Points();
    if (dynamic_cast<const TORX2DItem*>(&item) != nullptr) {
        const TQVLRect& r = item.BoundsRect();
        out.push_back({{r.Left, r.Top}, {r.Right, r.Top}});
        out.push_back({{r.Right, r.Top}, {r.Right, r.Bottom}});
        out.push_back({{r.Right, r.Bottom}, {r.Left, r.Bottom}});
        out.push_back({{r.Left, r.Bottom}, {r.Left, r.Top}});
        return out;
    }
    // An arrow line and a dimension keep construction points beyond the first two.
    std::size_t count = pts.size();
    if (item.ItemType() == TQVLItemType::itArrowLine || item.ItemType() == TQVLItemType::itDim)
        count = std::min<std::size_t>(count, 2);
    for (std::size_t i = 1; i < count; ++i) out.push_back({P(pts[i - 1]), P(pts[i])});
    if (item.ItemType() == TQVLItemType::itPolygon && count > 2)
        out.push_back({P(pts.back()), P(pts.front())});
    return out;
}

bool ItemCircle(const TORXBaseItem& item, TItemCircle& circle) {
    const TQVLRect& b = item.BoundsRect();
    switch (item.ItemType()) {
        case TQVLItemType::itCircle:
        case TQVLItemType::itEllipse:
            circle = TItemCircle{};
            circle.Center = {(b.Left + b.Right) / 2, (b.Top + b.Bottom) / 2};
            circle.Radius = b.GetWidth() / 2;
            circle.RadiusY = b.GetHeight() / 2;
            if (item.ItemType() == TQVLItemType::itCircle) circle.RadiusY = circle.Radius;
            return circle.Radius > 0;
        default:
            return ItemArcCircle(item, circle);
    }
}

int TangentPoints(const TQVLPto64& p, const TQVLPto64& center, std::int64_t radius, TQVLPto64& t1,
                  TQVLPto64& t2) {
    const double dx = static_cast<double>(p.X - center.X);
    const double dy = static_cast<double>(p.Y - center.Y);
    const double d = std::hypot(dx, dy);
    const auto r = static_cast<double>(radius);
    if (r <= 0 || d <= r) return 0;
    // The touching points lie at acos(r / d) either side of the direction from the centre to p.
    const double base = std::atan2(dy, dx);
    const double spread = std::acos(r / d);
    const auto at = [&](double a) {
        return TQVLPto64{center.X + MathRound(r * std::cos(a)), center.Y + MathRound(r * std::sin(a))};
    };
    t1 = at(base + spread);
    t2 = at(base - spread);
    return 2;
}

int TangentPointsEllipse(const TQVLPto64& p, const TQVLPto64& center, std::int64_t rx, std::int64_t ry,
                         TQVLPto64& t1, TQVLPto64& t2) {
    if (rx <= 0 || ry <= 0) return 0;
    // Scaling the axes turns the ellipse into the unit circle and keeps lines touching it, so the touching
    // points there, scaled back, are the ellipse's.
    const auto rxd = static_cast<double>(rx);
    const auto ryd = static_cast<double>(ry);
    const double ux = static_cast<double>(p.X - center.X) / rxd;
    const double uy = static_cast<double>(p.Y - center.Y) / ryd;
    const double d = std::hypot(ux, uy);
    if (d <= 1.0) return 0;
    const double base = std::atan2(uy, ux);
    const double spread = std::acos(1.0 / d);
    const auto at = [&](double a) {
        return TQVLPto64{center.X + MathRound(rxd * std::cos(a)), center.Y + MathRound(ryd * std::sin(a))};
    };
    t1 = at(base + spread);
    t2 = at(base - spread);
    return 2;
}

// [SECTION] SearchPoint

bool TORXEditor::SearchPoint(std::int64_t& x, std::int64_t& y, TQVLSnapHit& hit, const TQVLPto64* from,
                             const std::vector<TORXBaseItem*>* skip) {
    const std::int64_t tol = Tolerance();
    const auto tol32 = static_cast<std::int32_t>(tol);
    double best = static_cast<double>(tol) + 0.5;
    bool found = false;
    const auto consider = [&](TQVLSnapMode mode, const TQVLPto64& p, TORXBaseItem* item) {
        const double d = std::hypot(static_cast<double>(p.X - x), static_cast<double>(p.Y - y));
        if (d < best) {
            best = d;
            hit = TQVLSnapHit{mode, p, item};
            found = true;
        }
    };
    const auto skipped = [&](const TORXBaseItem* item) {
        return skip != nullptr && std::find(skip->begin(), skip->end(), item) != skip->end();
    };
    std::vector<TORXBaseItem*> items;
    for (std::int32_t i = 0; i < fDoc.GetItemsCount(); ++i) {
        TORXBaseItem* item = fDoc.GetItem(i);
        if (item->Options().Contains(TQVLayerOp::lopVisible) && !skipped(item)) items.push_back(item);
    }
    const std::pair<TQVLSnapMode, TQVLSnap> itemModes[] = {{TQVLSnapMode::smEndPoint, TQVLSnap::snEndPoint},
                                                           {TQVLSnapMode::smMidPoint, TQVLSnap::snMidPoint},
                                                           {TQVLSnapMode::smCenter, TQVLSnap::snCenter}};
    for (TORXBaseItem* item : items) {
        for (const auto& [mode, snap] : itemModes) {
            TQVLRef ref;
            if (fSnap.Contains(mode) && item->CheckPoint(x, y, tol32, snap, ref))
                consider(mode, {ref.X, ref.Y}, item);
        }
        if (from != nullptr && fSnap.Contains(TQVLSnapMode::smPerpendicular))
            for (const auto& s : ItemSegments(*item)) {
                std::int64_t fx = 0;
                std::int64_t fy = 0;
                if (TDraw2D::LinePerpenFromPoint(s.A.X, s.A.Y, s.B.X, s.B.Y, from->X, from->Y, fx, fy) &&
                    TDraw2D::PointInLine(s.A.X, s.A.Y, s.B.X, s.B.Y, fx, fy, 1))
                    consider(TQVLSnapMode::smPerpendicular, {fx, fy}, item);
            }
        TItemCircle circle;
        if (from != nullptr && fSnap.Contains(TQVLSnapMode::smTangent) && ItemCircle(*item, circle)) {
            TQVLPto64 t1;
            TQVLPto64 t2;
            if (TangentPointsEllipse(*from, circle.Center, circle.Radius, circle.RadiusY, t1, t2) == 2) {
                consider(TQVLSnapMode::smTangent, t1, item);
                consider(TQVLSnapMode::smTangent, t2, item);
            }
        }
    }
    // The worker's crossings; while it still runs they are not complete, and nothing waits for it.
    if (fSnap.Contains(TQVLSnapMode::smIntersection) && !fDoc.IntersectionsRunning())
        for (const TIntSecPoint& p : fDoc.GetIntersections())
            consider(TQVLSnapMode::smIntersection, {p.X, p.Y}, nullptr);
    if (found) {
        x = hit.Point.X, y = hit.Point.Y;
        return true;
    }
    bool snapped = false;
    if (fSnap.Contains(TQVLSnapMode::smGrid) && fGridX > 0 && fGridY > 0) {
        x = AdjustGrid(x, fGridX);
        y = AdjustGrid(y, fGridY);
        hit = TQVLSnapHit{TQVLSnapMode::smGrid, {x, y}, nullptr};
        snapped = true;
    }
    if (!fRefLines) return snapped;
    // Reference lines: an end point straight above, below or beside the pointer takes over that axis.
    std::int64_t bestX = tol + 1;
    std::int64_t bestY = tol + 1;
    TQVLPto64 refX;
    TQVLPto64 refY;
    for (const TORXBaseItem* item : items)
        for (const TQVLPto& p : item->Points()) {
            if (std::llabs(p.X - x) < bestX) bestX = std::llabs(p.X - x), refX = {p.X, p.Y};
            if (std::llabs(p.Y - y) < bestY) bestY = std::llabs(p.Y - y), refY = {p.X, p.Y};
        }
    if (bestX <= tol) x = refX.X;
    if (bestY <= tol) y = refY.Y;
    if (bestX <= tol) fGuides.push_back({TQVLGuideKind::glReference, refX, {x, y}});
    if (bestY <= tol) fGuides.push_back({TQVLGuideKind::glReference, refY, {x, y}});
    return snapped || bestX <= tol || bestY <= tol;
}

// [SECTION] Alignment guides

void TORXEditor::AlignGuides(std::int64_t& dx, std::int64_t& dy) {
    if (!fAlignLines || fDragged.empty()) return;
    // The moving selection's bounds as they would be after the offset.
    bool first = true;
    TQVLRect m;
    for (const TLive& l : fLive) {
        if (!IsDragged(l.Item)) continue;
        for (const TQVLPto& p : l.Points) {
            if (first) {
                m = TQVLRect(p.X, p.Y, p.X, p.Y);
                first = false;
            }
            m.Left = std::min(m.Left, p.X), m.Right = std::max(m.Right, p.X);
            m.Top = std::min(m.Top, p.Y), m.Bottom = std::max(m.Bottom, p.Y);
        }
    }
    if (first) return;
    const std::int64_t tol = Tolerance();
    std::int64_t bestX = tol + 1;
    std::int64_t bestY = tol + 1;
    std::int64_t fixX = 0;
    std::int64_t fixY = 0;
    TQVLRect withX;
    TQVLRect withY;
    std::int64_t lineX = 0;
    std::int64_t lineY = 0;
    for (std::int32_t i = 0; i < fDoc.GetItemsCount(); ++i) {
        const TORXBaseItem* item = fDoc.GetItem(i);
        if (IsDragged(item) || !item->Options().Contains(TQVLayerOp::lopVisible)) continue;
        if (std::any_of(fLive.begin(), fLive.end(), [&](const TLive& l) { return l.Item == item; }))
            continue;  // links that follow the selection
        const TQVLRect& b = item->BoundsRect();
        const std::int64_t mine[3] = {m.Left + dx, (m.Left + m.Right) / 2 + dx, m.Right + dx};
        const std::int64_t theirs[3] = {b.Left, (b.Left + b.Right) / 2, b.Right};
        const std::int64_t mineY[3] = {m.Top + dy, (m.Top + m.Bottom) / 2 + dy, m.Bottom + dy};
        const std::int64_t theirsY[3] = {b.Top, (b.Top + b.Bottom) / 2, b.Bottom};
        for (int a = 0; a < 3; ++a)
            for (int c = 0; c < 3; ++c) {
                if (std::llabs(theirs[c] - mine[a]) < bestX)
                    bestX = std::llabs(theirs[c] - mine[a]), fixX = theirs[c] - mine[a], withX = b,
                    lineX = theirs[c];
                if (std::llabs(theirsY[c] - mineY[a]) < bestY)
                    bestY = std::llabs(theirsY[c] - mineY[a]), fixY = theirsY[c] - mineY[a], withY = b,
                    lineY = theirsY[c];
            }
    }
    if (bestX <= tol) {
        dx += fixX;
        fGuides.push_back({TQVLGuideKind::glAlign,
                           {lineX, std::min(withX.Top, m.Top + dy)},
                           {lineX, std::max(withX.Bottom, m.Bottom + dy)}});
    }
    if (bestY <= tol) {
        dy += fixY;
        fGuides.push_back({TQVLGuideKind::glAlign,
                           {std::min(withY.Left, m.Left + dx), lineY},
                           {std::max(withY.Right, m.Right + dx), lineY}});
    }
}

}  // namespace Orvex
