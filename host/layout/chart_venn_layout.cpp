// A Venn diagram: a translucent circle per set, its area proportional to the set's size, placed so that
// each pair overlaps by the size of their union (disjoint when the text gives none). Set labels sit in
// the part of their circle away from the others; overlap labels sit between the circles they join.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "host/layout/chart_layout.h"
#include "orvex/diagrams/chart_venn.h"

namespace Orvex {
namespace {

constexpr double kLargestRadiusMM = 32.0;
constexpr double kDisjointGapMM = 6.0;
constexpr int kAngles = 72;
constexpr float kLabelHeight = 3.5f;

// The area two circles of radii r1, r2 share at centre distance d.
double LensArea(double r1, double r2, double d) {
    if (d >= r1 + r2) return 0;
    if (d <= std::abs(r1 - r2)) return std::numbers::pi * std::pow(std::min(r1, r2), 2);
    const double a = r1 * r1 * std::acos((d * d + r1 * r1 - r2 * r2) / (2 * d * r1));
    const double b = r2 * r2 * std::acos((d * d + r2 * r2 - r1 * r1) / (2 * d * r2));
    const double c = 0.5 * std::sqrt((-d + r1 + r2) * (d + r1 - r2) * (d - r1 + r2) * (d + r1 + r2));
    return a + b - c;
}

// The centre distance at which the circles share aArea (the lens area falls as the distance grows).
double DistanceFor(double r1, double r2, double area) {
    double lo = std::abs(r1 - r2);
    double hi = r1 + r2;
    for (int i = 0; i < 60; ++i) {
        const double mid = (lo + hi) / 2;
        (LensArea(r1, r2, mid) > area ? lo : hi) = mid;
    }
    return (lo + hi) / 2;
}

// What two sets share: their union's size, or when the text gives none, that of the largest overlap of
// more sets that includes both (three sets overlapping means each two of them do).
double SharedSize(const TQVLVennChart& venn, const std::string& a, const std::string& b) {
    std::vector<std::string> pair{a, b};
    std::sort(pair.begin(), pair.end());
    if (const auto* both = venn.Find(pair)) return both->Size;
    double shared = 0;
    for (const auto& area : venn.Areas)
        if (std::find(area.Sets.begin(), area.Sets.end(), a) != area.Sets.end() &&
            std::find(area.Sets.begin(), area.Sets.end(), b) != area.Sets.end())
            shared = std::max(shared, area.Size);
    return shared;
}

double Distance(TLayoutPoint a, TLayoutPoint b) {
    return std::hypot(a.X - b.X, a.Y - b.Y);
}

}  // namespace

TLayoutSize DrawVennChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& venn = static_cast<const TQVLVennChart&>(aChart);
    std::vector<const TQVLVennChart::TArea*> sets;
    for (const auto& a : venn.Areas)
        if (a.Sets.size() == 1) sets.push_back(&a);
    if (sets.empty()) return {0, 0};

    double largest = 0;
    for (const auto* s : sets) largest = std::max(largest, s->Size);
    // Radii from areas, the largest set at a fixed size; a set of size zero still shows as a small circle.
    const double unit = largest > 0 ? kLargestRadiusMM / std::sqrt(largest / std::numbers::pi) : 1;
    std::vector<double> radius;
    for (const auto* s : sets)
        radius.push_back(std::max(std::sqrt(s->Size / std::numbers::pi) * unit, kLargestRadiusMM / 6));

    // Target distances: from the overlap's size when given; apart by a gap otherwise.
    const std::size_t n = sets.size();
    std::vector<std::vector<double>> target(n, std::vector<double>(n, 0));
    std::vector<std::vector<bool>> overlaps(n, std::vector<bool>(n, false));
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j) {
            if (i == j) continue;
            const double shared = SharedSize(venn, sets[i]->Sets.front(), sets[j]->Sets.front());
            overlaps[i][j] = shared > 0;
            target[i][j] = overlaps[i][j] ? DistanceFor(radius[i], radius[j], shared * unit * unit)
                                          : radius[i] + radius[j] + kDisjointGapMM;
        }

    // Greedy placement: each circle goes where the distances to those already placed are closest to
    // their targets (overlaps exactly, disjoint sets at least apart).
    std::vector<TLayoutPoint> centre(n, TLayoutPoint{0, 0});
    for (std::size_t k = 1; k < n; ++k) {
        double best = std::numeric_limits<double>::infinity();
        for (std::size_t j = 0; j < k; ++j)
            for (int a = 0; a < kAngles; ++a) {
                const double angle = 2 * std::numbers::pi * a / kAngles;
                const TLayoutPoint p{centre[j].X + target[k][j] * std::cos(angle),
                                     centre[j].Y + target[k][j] * std::sin(angle)};
                double loss = 0;
                for (std::size_t i = 0; i < k; ++i) {
                    const double d = Distance(p, centre[i]);
                    const double miss = overlaps[k][i] ? d - target[k][i] : std::max(0.0, target[k][i] - d);
                    loss += miss * miss;
                }
                if (loss < best - 1e-9) {
                    best = loss;
                    centre[k] = p;
                }
            }
    }

    double left = std::numeric_limits<double>::infinity();
    double top = left;
    double right = -left;
    double bottom = -left;
    for (std::size_t i = 0; i < n; ++i) {
        left = std::min(left, centre[i].X - radius[i]);
        top = std::min(top, centre[i].Y - radius[i]);
        right = std::max(right, centre[i].X + radius[i]);
        bottom = std::max(bottom, centre[i].Y + radius[i]);
    }
    TLayoutPoint middle{0, 0};
    for (auto& c : centre) {
        c = {c.X - left + aOrigin.X, c.Y - top + aOrigin.Y};
        middle = {middle.X + c.X / static_cast<double>(n), middle.Y + c.Y / static_cast<double>(n)};
    }

    const auto labelOf = [](const TQVLVennChart::TArea& area) {
        std::string text = area.Label;
        for (const auto& t : area.Texts) text += (text.empty() ? "" : "\n") + t.Label;
        return text;
    };
    for (std::size_t i = 0; i < n; ++i) {
        const auto& style = sets[i]->Style;
        const TAlphaColor base = style.Fill.value_or(ChartSeriesColor(i));
        const TAlphaColor stroke = style.Stroke.value_or((base & 0x00FFFFFFu) | 0xFF000000u);
        aCanvas.Circle(centre[i], radius[i],
                       {.Fill = (base & 0x00FFFFFFu) | 0x80000000u, .Stroke = stroke, .PenMM = 0.5f});
    }
    // Labels after every circle, so that no circle covers one.
    for (std::size_t i = 0; i < n; ++i) {
        const double dx = centre[i].X - middle.X;
        const double dy = centre[i].Y - middle.Y;
        const double length = std::hypot(dx, dy);
        const TLayoutPoint at = length < 1e-6 ? centre[i]
                                              : TLayoutPoint{centre[i].X + dx / length * radius[i] * 0.45,
                                                             centre[i].Y + dy / length * radius[i] * 0.45};
        aCanvas.Text(at, labelOf(*sets[i]),
                     {.Height = kLabelHeight,
                      .Bold = true,
                      .Color = sets[i]->Style.TextColor.value_or(kOpaqueBlack),
                      .Horizontal = TChartAlign::caCenter,
                      .Vertical = TChartAlign::caCenter});
    }
    for (const auto& area : venn.Areas) {
        if (area.Sets.size() < 2) continue;
        TLayoutPoint at{0, 0};
        std::size_t found = 0;
        for (std::size_t i = 0; i < n; ++i)
            if (std::find(area.Sets.begin(), area.Sets.end(), sets[i]->Sets.front()) != area.Sets.end()) {
                at = {at.X + centre[i].X, at.Y + centre[i].Y};
                ++found;
            }
        if (found == 0) continue;
        at = {at.X / static_cast<double>(found), at.Y / static_cast<double>(found)};
        // Out of the circles the area does not include, as long as it stays inside those it does: the
        // label then names the region that belongs to exactly these sets.
        for (std::size_t i = 0; i < n; ++i) {
            if (std::find(area.Sets.begin(), area.Sets.end(), sets[i]->Sets.front()) != area.Sets.end())
                continue;
            const double d = Distance(at, centre[i]);
            if (d >= radius[i] || d < 1e-6) continue;
            const double push = radius[i] - d + 2;
            const TLayoutPoint moved{at.X + (at.X - centre[i].X) / d * push,
                                     at.Y + (at.Y - centre[i].Y) / d * push};
            bool inside = true;
            for (std::size_t j = 0; j < n; ++j)
                if (std::find(area.Sets.begin(), area.Sets.end(), sets[j]->Sets.front()) != area.Sets.end())
                    inside = inside && Distance(moved, centre[j]) < radius[j];
            if (inside) at = moved;
        }
        aCanvas.Text(at, labelOf(area),
                     {.Height = kLabelHeight - 0.5f,
                      .Color = area.Style.TextColor.value_or(kOpaqueBlack),
                      .Horizontal = TChartAlign::caCenter,
                      .Vertical = TChartAlign::caCenter});
    }
    return {right - left, bottom - top};
}

}  // namespace Orvex
