// The fallback layered layout. Edges that close a cycle are found by a depth-first walk and left out of
// the ranking, so every rank is well defined; they are still drawn.
#include "host/layout/layered_layout.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>

#include "host/layout/graph_layout.h"
#include "orvex/diagrams/diagram_model.h"

namespace Orvex {
namespace {

constexpr int kSweeps = 4;

struct TGraph {
    std::vector<std::vector<int>> Out;
    std::vector<std::vector<int>> In;
};

// Edges that reach back to a node still on the walk's stack close a cycle; the rest form a DAG.
TGraph AcyclicPart(std::size_t count, const std::vector<std::pair<int, int>>& edges) {
    std::vector<std::vector<int>> out(count);
    for (const auto& [from, to] : edges)
        if (from != to) out[static_cast<std::size_t>(from)].push_back(to);
    enum : std::uint8_t { kNew, kOnStack, kDone };
    std::vector<std::uint8_t> state(count, kNew);
    TGraph dag{std::vector<std::vector<int>>(count), std::vector<std::vector<int>>(count)};
    struct TFrame {
        int Node;
        std::size_t Next;
    };
    for (std::size_t start = 0; start < count; ++start) {
        if (state[start] != kNew) continue;
        std::vector<TFrame> stack{{static_cast<int>(start), 0}};
        state[start] = kOnStack;
        while (!stack.empty()) {
            TFrame& f = stack.back();
            const auto n = static_cast<std::size_t>(f.Node);
            if (f.Next == out[n].size()) {
                state[n] = kDone;
                stack.pop_back();
                continue;
            }
            const int next = out[n][f.Next++];
            const auto m = static_cast<std::size_t>(next);
            if (state[m] == kOnStack) continue;  // a back edge
            dag.Out[n].push_back(next);
            dag.In[m].push_back(f.Node);
            if (state[m] == kNew) {
                state[m] = kOnStack;
                stack.push_back({next, 0});
            }
        }
    }
    return dag;
}

// Ranks by longest path from the sources, in topological order.
std::vector<int> Ranks(const TGraph& dag) {
    const std::size_t count = dag.In.size();
    std::vector<int> rank(count, 0);
    std::vector<std::size_t> pending(count);
    std::vector<int> queue;
    for (std::size_t n = 0; n < count; ++n) {
        pending[n] = dag.In[n].size();
        if (pending[n] == 0) queue.push_back(static_cast<int>(n));
    }
    for (std::size_t head = 0; head < queue.size(); ++head) {
        const auto n = static_cast<std::size_t>(queue[head]);
        for (const int m : dag.Out[n]) {
            const auto mi = static_cast<std::size_t>(m);
            rank[mi] = std::max(rank[mi], rank[n] + 1);
            if (--pending[mi] == 0) queue.push_back(m);
        }
    }
    return rank;
}

}  // namespace

std::vector<int> LongestPathRanks(std::size_t aCount, const std::vector<std::pair<int, int>>& aEdges) {
    return Ranks(AcyclicPart(aCount, aEdges));
}

TGraphLayout LayoutLayered(const TORXDiagramModel& aModel, const std::vector<TLayoutSize>& aSizes,
                           const TGraphLayoutOptions& aOptions) {
    TGraphLayout result;
    const std::size_t count = aModel.Nodes().size();
    result.Boxes.resize(count);
    if (count == 0) return result;
    auto sizeOf = [&](std::size_t i) { return i < aSizes.size() ? aSizes[i] : TLayoutSize{20, 10}; };
    const bool leftRight = aModel.Direction() == TQVLFlowDirection::fdLeftRight;
    // Along a rank and across ranks, whichever way the diagram runs.
    auto along = [&](std::size_t i) { return leftRight ? sizeOf(i).Height : sizeOf(i).Width; };
    auto across = [&](std::size_t i) { return leftRight ? sizeOf(i).Width : sizeOf(i).Height; };

    std::vector<std::pair<int, int>> edges;
    std::vector<int> edgeIndex;
    for (std::size_t e = 0; e < aModel.Edges().size(); ++e) {
        const int from = aModel.NodeIndexOf(aModel.Edges()[e].FromID);
        const int to = aModel.NodeIndexOf(aModel.Edges()[e].ToID);
        if (from < 0 || to < 0) continue;
        edges.emplace_back(from, to);
        edgeIndex.push_back(static_cast<int>(e));
    }
    const TGraph dag = AcyclicPart(count, edges);

    const std::vector<int> rank = Ranks(dag);
    const auto rankCount = static_cast<std::size_t>(*std::max_element(rank.begin(), rank.end())) + 1;
    std::vector<std::vector<int>> layers(rankCount);
    for (std::size_t n = 0; n < count; ++n)
        layers[static_cast<std::size_t>(rank[n])].push_back(static_cast<int>(n));

    // Barycentre sweeps, down against the predecessors and up against the successors.
    std::vector<double> order(count, 0);
    for (const auto& layer : layers)
        for (std::size_t k = 0; k < layer.size(); ++k)
            order[static_cast<std::size_t>(layer[k])] = static_cast<double>(k);
    for (int sweep = 0; sweep < kSweeps; ++sweep) {
        const bool down = sweep % 2 == 0;
        for (std::size_t step = 1; step < rankCount; ++step) {
            auto& layer = layers[down ? step : rankCount - 1 - step];
            std::vector<double> key(layer.size());
            for (std::size_t k = 0; k < layer.size(); ++k) {
                const auto n = static_cast<std::size_t>(layer[k]);
                const auto& neighbours = down ? dag.In[n] : dag.Out[n];
                double sum = 0;
                for (const int m : neighbours) sum += order[static_cast<std::size_t>(m)];
                key[k] = neighbours.empty() ? order[n] : sum / static_cast<double>(neighbours.size());
            }
            std::vector<std::size_t> idx(layer.size());
            std::iota(idx.begin(), idx.end(), std::size_t{0});
            std::stable_sort(idx.begin(), idx.end(),
                             [&](std::size_t a, std::size_t b) { return key[a] < key[b]; });
            std::vector<int> sorted;
            sorted.reserve(layer.size());
            for (const std::size_t k : idx) sorted.push_back(layer[k]);
            layer.swap(sorted);
            for (std::size_t k = 0; k < layer.size(); ++k)
                order[static_cast<std::size_t>(layer[k])] = static_cast<double>(k);
        }
    }

    // Coordinates: ranks one after the other; in a rank, each box as near its predecessors' middle as
    // the box before it allows.
    std::vector<double> center(count, 0);  // along the rank
    double rankStart = aOptions.Margin;
    double widest = 0;
    std::vector<double> rankOffset(rankCount, 0);
    std::vector<double> rankThickness(rankCount, 0);
    for (std::size_t r = 0; r < rankCount; ++r) {
        double cursor = aOptions.Margin;
        for (const int node : layers[r]) {
            const auto n = static_cast<std::size_t>(node);
            double desired = cursor + along(n) / 2;
            if (!dag.In[n].empty()) {
                double sum = 0;
                for (const int m : dag.In[n]) sum += center[static_cast<std::size_t>(m)];
                desired = std::max(desired, sum / static_cast<double>(dag.In[n].size()));
            }
            center[n] = desired;
            cursor = desired + along(n) / 2 + aOptions.NodeSep;
            rankThickness[r] = std::max(rankThickness[r], across(n));
        }
        widest = std::max(widest, cursor - aOptions.NodeSep);
        rankOffset[r] = rankStart;
        rankStart += rankThickness[r] + aOptions.RankSep;
    }
    for (std::size_t n = 0; n < count; ++n) {
        const auto r = static_cast<std::size_t>(rank[n]);
        const double mid = rankOffset[r] + rankThickness[r] / 2;
        const TLayoutSize s = sizeOf(n);
        const TLayoutPoint c = leftRight ? TLayoutPoint{mid, center[n]} : TLayoutPoint{center[n], mid};
        result.Boxes[n] = {c.X - s.Width / 2, c.Y - s.Height / 2, s.Width, s.Height, true};
    }
    const double depth = rankStart - aOptions.RankSep + aOptions.Margin;
    const double breadth = widest + aOptions.Margin;
    result.Extent = leftRight ? TLayoutSize{depth, breadth} : TLayoutSize{breadth, depth};

    for (std::size_t k = 0; k < edges.size(); ++k) {
        const auto [from, to] = edges[k];
        const TLayoutBox& a = result.Boxes[static_cast<std::size_t>(from)];
        const TLayoutBox& b = result.Boxes[static_cast<std::size_t>(to)];
        if (from == to) {
            // A loop out of the right side and back into it.
            const double y = a.Y + a.Height / 2;
            const double out = a.Right() + aOptions.NodeSep / 2;
            result.Routes.push_back({edgeIndex[k],
                                     from,
                                     to,
                                     TRouteKind::rkPolyline,
                                     {{a.Right(), y - 2}, {out, y - 2}, {out, y + 2}, {a.Right(), y + 2}}});
            continue;
        }
        result.Routes.push_back({edgeIndex[k],
                                 from,
                                 to,
                                 TRouteKind::rkStraight,
                                 {ClipToBox(a, b.Center()), ClipToBox(b, a.Center())}});
    }
    return result;
}

}  // namespace Orvex
