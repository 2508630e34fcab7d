#include "host/layout/squarify.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace Orvex {
namespace {

// The worst aspect ratio of a row of areas laid along a side of length `side`.
double Worst(const std::vector<double>& row, double side) {
    if (row.empty()) return std::numeric_limits<double>::infinity();
    const double sum = std::accumulate(row.begin(), row.end(), 0.0);
    const auto [lo, hi] = std::minmax_element(row.begin(), row.end());
    const double s2 = side * side;
    const double sum2 = sum * sum;
    return std::max(s2 * *hi / sum2, sum2 / (s2 * *lo));
}

}  // namespace

std::vector<TLayoutBox> Squarify(const std::vector<double>& aWeights, const TLayoutBox& aBox) {
    std::vector<TLayoutBox> boxes(aWeights.size(), TLayoutBox{aBox.X, aBox.Y, 0, 0, true});
    double total = 0;
    for (const double w : aWeights) total += std::max(w, 0.0);
    if (total <= 0 || aBox.Width <= 0 || aBox.Height <= 0) return boxes;

    // Largest first: the rows then come out nearly square.
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < aWeights.size(); ++i)
        if (aWeights[i] > 0) order.push_back(i);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return aWeights[a] > aWeights[b]; });
    const double scale = aBox.Width * aBox.Height / total;

    TLayoutBox free = aBox;
    std::size_t next = 0;
    while (next < order.size()) {
        const bool alongWidth = free.Width >= free.Height;  // the row stands along the shorter side
        const double side = alongWidth ? free.Height : free.Width;
        std::vector<double> row{aWeights[order[next]] * scale};
        std::size_t end = next + 1;
        while (end < order.size()) {
            std::vector<double> longer = row;
            longer.push_back(aWeights[order[end]] * scale);
            if (Worst(longer, side) > Worst(row, side)) break;
            row = std::move(longer);
            ++end;
        }
        const double rowArea = std::accumulate(row.begin(), row.end(), 0.0);
        // The last row takes what is left, so rounding never leaves a sliver.
        const double thickness =
            end == order.size() ? (alongWidth ? free.Width : free.Height) : rowArea / side;
        double offset = 0;
        for (std::size_t k = next; k < end; ++k) {
            const double length = row[k - next] / rowArea * side;
            boxes[order[k]] = alongWidth ? TLayoutBox{free.X, free.Y + offset, thickness, length, true}
                                         : TLayoutBox{free.X + offset, free.Y, length, thickness, true};
            offset += length;
        }
        if (alongWidth) {
            free.X += thickness;
            free.Width -= thickness;
        } else {
            free.Y += thickness;
            free.Height -= thickness;
        }
        next = end;
    }
    return boxes;
}

}  // namespace Orvex
