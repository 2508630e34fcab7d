// A sankey diagram: nodes in columns by their distance from the sources (the sinks in the last column),
// each a bar as tall as the larger of what flows in and out, and each flow a band as thick as its value,
// curving from its source's right side to its target's left side.
#include <algorithm>
#include <cmath>
#include <map>

#include "host/layout/chart_layout.h"
#include "orvex/diagrams/chart_sankey.h"

namespace Orvex {
namespace {

constexpr double kHeightMM = 100.0;  // the tallest column, gaps included
constexpr double kColumnGapMM = 45.0;
constexpr double kNodeWidthMM = 4.0;
constexpr double kNodeGapMM = 6.0;
constexpr double kSmallestBandMM = 0.2;  // a flow too thin to see is still drawn as a hairline
constexpr int kCurveSteps = 16;
constexpr float kLabelHeight = 3.0f;

struct TNode {
    std::string Name;
    double In = 0;
    double Out = 0;
    int Column = 0;
    double Y = 0;        // top of the bar
    double OutUsed = 0;  // how much of the bar's right and left sides the drawn flows took, in mm
    double InUsed = 0;
    double Value() const { return std::max(In, Out); }
};

// Columns by the longest path from a source (the reader refused loops); sinks go to the last column.
void AssignColumns(std::vector<TNode>& nodes, const std::vector<std::pair<std::size_t, std::size_t>>& links) {
    for (std::size_t pass = 0; pass < nodes.size(); ++pass) {
        bool moved = false;
        for (const auto& [from, to] : links)
            if (nodes[to].Column < nodes[from].Column + 1) {
                nodes[to].Column = nodes[from].Column + 1;
                moved = true;
            }
        if (!moved) break;
    }
    int last = 0;
    for (const TNode& n : nodes) last = std::max(last, n.Column);
    for (TNode& n : nodes)
        if (n.Out == 0 && n.In > 0) n.Column = last;
}

}  // namespace

TLayoutSize DrawSankeyChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& sankey = static_cast<const TQVLSankeyChart&>(aChart);
    std::vector<TNode> nodes;
    for (const std::string& name : sankey.Nodes()) nodes.push_back({name});
    std::map<std::string, std::size_t> index;
    for (std::size_t i = 0; i < nodes.size(); ++i) index[nodes[i].Name] = i;
    std::vector<std::pair<std::size_t, std::size_t>> links;
    for (const auto& link : sankey.Links) {
        links.emplace_back(index[link.Source], index[link.Target]);
        nodes[links.back().first].Out += link.Value;
        nodes[links.back().second].In += link.Value;
    }
    if (nodes.empty()) return {0, 0};
    AssignColumns(nodes, links);

    // One scale for every column, set by the column that needs the most room.
    int columns = 0;
    for (const TNode& n : nodes) columns = std::max(columns, n.Column + 1);
    double scale = 0;
    for (int c = 0; c < columns; ++c) {
        double total = 0;
        double count = 0;
        for (const TNode& n : nodes)
            if (n.Column == c) {
                total += n.Value();
                ++count;
            }
        if (total > 0) {
            const double s = std::max(kHeightMM - (count - 1) * kNodeGapMM, kHeightMM / 4) / total;
            scale = scale == 0 ? s : std::min(scale, s);
        }
    }
    double bottom = aOrigin.Y;
    std::vector<double> columnY(static_cast<std::size_t>(columns), aOrigin.Y);
    const auto heightOf = [&](const TNode& n) { return std::max(n.Value() * scale, kSmallestBandMM); };
    const auto leftOf = [&](const TNode& n) { return aOrigin.X + n.Column * (kNodeWidthMM + kColumnGapMM); };
    for (TNode& n : nodes) {
        double& y = columnY[static_cast<std::size_t>(n.Column)];
        n.Y = y;
        y += heightOf(n) + kNodeGapMM;
        bottom = std::max(bottom, y - kNodeGapMM);
    }

    // Each side of a bar stacks its flows in the order of the bars at their other ends, so that flows
    // leaving one node do not cross each other.
    std::vector<std::size_t> order(links.size());
    for (std::size_t k = 0; k < order.size(); ++k) order[k] = k;
    std::vector<double> startY(links.size());
    std::vector<double> endY(links.size());
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return nodes[links[a].second].Y < nodes[links[b].second].Y;
    });
    for (const std::size_t k : order) {
        TNode& from = nodes[links[k].first];
        startY[k] = from.Y + from.OutUsed + sankey.Links[k].Value * scale / 2;
        from.OutUsed += sankey.Links[k].Value * scale;
    }
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return nodes[links[a].first].Y < nodes[links[b].first].Y;
    });
    for (const std::size_t k : order) {
        TNode& to = nodes[links[k].second];
        endY[k] = to.Y + to.InUsed + sankey.Links[k].Value * scale / 2;
        to.InUsed += sankey.Links[k].Value * scale;
    }
    for (std::size_t k = 0; k < links.size(); ++k) {
        const double x0 = leftOf(nodes[links[k].first]) + kNodeWidthMM;
        const double x1 = leftOf(nodes[links[k].second]);
        // A band is a thick line along an S curve (smoothstep), as thick as the flow's value.
        std::vector<TLayoutPoint> curve;
        for (int s = 0; s <= kCurveSteps; ++s) {
            const double t = static_cast<double>(s) / kCurveSteps;
            curve.push_back({x0 + (x1 - x0) * t, startY[k] + (endY[k] - startY[k]) * t * t * (3 - 2 * t)});
        }
        const TAlphaColor color = (ChartSeriesColor(links[k].first) & 0x00FFFFFFu) | 0x99000000u;
        const double thickness = std::max(sankey.Links[k].Value * scale, kSmallestBandMM);
        aCanvas.Polyline(curve, {.Fill = {}, .Stroke = color, .PenMM = static_cast<float>(thickness)});
    }

    // The bars go over the bands' ends.
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const TNode& n = nodes[i];
        const double x = leftOf(n);
        const double height = heightOf(n);
        aCanvas.Rect({x, n.Y, kNodeWidthMM, height, true},
                     {.Fill = ChartSeriesColor(i), .Stroke = ChartSeriesColor(i)});
        // The last column's names go to the left of their bars, the others' to the right.
        const bool last = n.Column == columns - 1 && columns > 1;
        aCanvas.Text({last ? x - 1.5 : x + kNodeWidthMM + 1.5, n.Y + height / 2},
                     n.Name + "\n" + ChartNumber(n.Value()),
                     {.Height = kLabelHeight,
                      .Horizontal = last ? TChartAlign::caEnd : TChartAlign::caStart,
                      .Vertical = TChartAlign::caCenter});
    }

    double right = aOrigin.X + (columns - 1) * (kNodeWidthMM + kColumnGapMM) + kNodeWidthMM;
    if (columns == 1)
        for (const TNode& n : nodes)
            right = std::max(right, aOrigin.X + kNodeWidthMM + 1.5 +
                                        aCanvas.Measure(n.Name, {.Height = kLabelHeight}).Width);
    return {right - aOrigin.X, bottom - aOrigin.Y};
}

}  // namespace Orvex
