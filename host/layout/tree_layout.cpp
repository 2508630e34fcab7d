// Sideways trees: every subtree owns a vertical band as tall as its children's bands stacked, the
// parent stands in the middle of its band, so two boxes of one column can never meet.
#include "host/layout/tree_layout.h"

#include <algorithm>
#include <cstddef>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {
namespace {

enum class TSide : std::uint8_t { Right, Left };

struct TTreeBuilder {
    const std::vector<TLayoutSize>& Sizes;
    const TTreeLayoutOptions& Options;
    std::vector<std::vector<int>> Children;
    std::vector<TSide> Sides;
    std::vector<int> Depths;
    std::vector<double> Bands;  // the height of each node's band
    TGraphLayout& Result;

    TLayoutSize SizeOf(int n) const {
        const auto i = static_cast<std::size_t>(n);
        return i < Sizes.size() ? Sizes[i] : TLayoutSize{20, 10};
    }

    double ChildrenBand(int n, TSide side) const {
        double total = 0;
        int count = 0;
        for (const int c : Children[static_cast<std::size_t>(n)])
            if (Sides[static_cast<std::size_t>(c)] == side) {
                total += Bands[static_cast<std::size_t>(c)];
                ++count;
            }
        return count > 0 ? total + Options.SiblingGap * (count - 1) : 0;
    }

    // Bands bottom-up in an explicit post-order, so a very deep tree cannot exhaust the stack.
    void ComputeBands(int root) {
        std::vector<int> order;
        std::vector<int> stack{root};
        while (!stack.empty()) {
            const int n = stack.back();
            stack.pop_back();
            order.push_back(n);
            for (const int c : Children[static_cast<std::size_t>(n)]) stack.push_back(c);
        }
        for (auto it = order.rbegin(); it != order.rend(); ++it) {
            const int n = *it;
            const double own = SizeOf(n).Height;
            const double kids = std::max(ChildrenBand(n, TSide::Right), ChildrenBand(n, TSide::Left));
            Bands[static_cast<std::size_t>(n)] = std::max(own, kids);
        }
    }

    // Places a node and its subtree on one side in the band starting at aTop.
    void PlaceBand(int root, double rootTop, const std::vector<double>& rightX,
                   const std::vector<double>& leftX, const std::vector<double>& leftWidth) {
        struct TWork {
            int Node;
            double Top;
        };
        std::vector<TWork> stack{{root, rootTop}};
        while (!stack.empty()) {
            const TWork w = stack.back();
            stack.pop_back();
            const auto i = static_cast<std::size_t>(w.Node);
            const TLayoutSize size = SizeOf(w.Node);
            const int depth = Depths[i];
            const auto d = static_cast<std::size_t>(depth);
            TLayoutBox& box = Result.Boxes[i];
            box.Width = size.Width;
            box.Height = size.Height;
            box.Y = w.Top + (Bands[i] - size.Height) / 2;
            if (depth == 0)
                box.X = leftX[0];
            else if (Sides[i] == TSide::Right)
                box.X = rightX[d];
            else
                box.X = leftX[d] + leftWidth[d] - size.Width;  // flush against the side nearer the root
            box.Placed = true;
            for (const TSide side : {TSide::Right, TSide::Left}) {
                double top = w.Top + (Bands[i] - ChildrenBand(w.Node, side)) / 2;
                for (const int c : Children[i]) {
                    if (Sides[static_cast<std::size_t>(c)] != side) continue;
                    stack.push_back({c, top});
                    top += Bands[static_cast<std::size_t>(c)] + Options.SiblingGap;
                }
            }
        }
    }
};

TLayoutPoint SideMid(const TLayoutBox& box, bool right) {
    return {right ? box.Right() : box.X, box.Y + box.Height / 2};
}

}  // namespace

std::vector<int> TreeParents(const TORXDiagramModel& aModel, bool aReversed) {
    std::vector<int> parents(aModel.Nodes().size(), -1);
    for (const TQVLDiagEdge& e : aModel.Edges()) {
        int parent = aModel.NodeIndexOf(aReversed ? e.ToID : e.FromID);
        const int child = aModel.NodeIndexOf(aReversed ? e.FromID : e.ToID);
        if (parent < 0 || child < 0 || parent == child || parents[static_cast<std::size_t>(child)] >= 0)
            continue;
        bool cycle = false;
        for (int up = parent; up >= 0; up = parents[static_cast<std::size_t>(up)])
            if (up == child) {
                cycle = true;
                break;
            }
        if (!cycle) parents[static_cast<std::size_t>(child)] = parent;
    }
    return parents;
}

TGraphLayout LayoutTree(const TORXDiagramModel& aModel, const std::vector<TLayoutSize>& aSizes,
                        bool aReversed, const TTreeLayoutOptions& aOptions) {
    TGraphLayout result;
    const std::size_t count = aModel.Nodes().size();
    result.Boxes.resize(count);
    const std::vector<int> parents = TreeParents(aModel, aReversed);

    TTreeBuilder b{aSizes,
                   aOptions,
                   std::vector<std::vector<int>>(count),
                   std::vector<TSide>(count, TSide::Right),
                   std::vector<int>(count, 0),
                   std::vector<double>(count, 0),
                   result};
    // Children in edge order, which is the order the source lists them in.
    for (const TQVLDiagEdge& e : aModel.Edges()) {
        const int parent = aModel.NodeIndexOf(aReversed ? e.ToID : e.FromID);
        const int child = aModel.NodeIndexOf(aReversed ? e.FromID : e.ToID);
        if (child < 0 || parents[static_cast<std::size_t>(child)] != parent) continue;
        auto& kids = b.Children[static_cast<std::size_t>(parent)];
        if (std::find(kids.begin(), kids.end(), child) == kids.end()) kids.push_back(child);
    }

    double top = aOptions.Margin;
    double maxRight = 0;
    for (std::size_t r = 0; r < count; ++r) {
        if (parents[r] >= 0) continue;
        const int root = static_cast<int>(r);
        // Sides and depths top-down; a branch takes the side of the root's child it hangs from.
        std::vector<int> members;
        std::vector<int> stack{root};
        while (!stack.empty()) {
            const int n = stack.back();
            stack.pop_back();
            members.push_back(n);
            const auto i = static_cast<std::size_t>(n);
            for (const int c : b.Children[i]) {
                const auto ci = static_cast<std::size_t>(c);
                b.Depths[ci] = b.Depths[i] + 1;
                b.Sides[ci] =
                    n == root ? (aModel.Nodes()[ci].Side < 0 ? TSide::Left : TSide::Right) : b.Sides[i];
                stack.push_back(c);
            }
        }
        int maxDepth = 0;
        for (const int n : members) maxDepth = std::max(maxDepth, b.Depths[static_cast<std::size_t>(n)]);
        const auto columns = static_cast<std::size_t>(maxDepth) + 1;
        std::vector<double> rightWidth(columns, 0);
        std::vector<double> leftWidth(columns, 0);
        for (const int n : members) {
            const auto i = static_cast<std::size_t>(n);
            const auto d = static_cast<std::size_t>(b.Depths[i]);
            auto& widths = d == 0 || b.Sides[i] == TSide::Right ? rightWidth : leftWidth;
            widths[d] = std::max(widths[d], b.SizeOf(n).Width);
        }
        leftWidth[0] = rightWidth[0];
        // Left columns run outwards from the root; the leftmost used one starts at the margin.
        double leftExtent = 0;
        for (std::size_t d = 1; d < columns; ++d)
            if (leftWidth[d] > 0) leftExtent += leftWidth[d] + aOptions.LevelGap;
        std::vector<double> leftX(columns, 0);
        std::vector<double> rightX(columns, 0);
        leftX[0] = aOptions.Margin + leftExtent;
        double x = leftX[0];
        for (std::size_t d = 1; d < columns; ++d) {
            x -= aOptions.LevelGap + leftWidth[d];
            leftX[d] = x;
        }
        x = leftX[0] + rightWidth[0];
        for (std::size_t d = 1; d < columns; ++d) {
            rightX[d] = x + aOptions.LevelGap;
            x = rightX[d] + rightWidth[d];
        }
        maxRight = std::max(maxRight, x);
        b.ComputeBands(root);
        b.PlaceBand(root, top, rightX, leftX, leftWidth);
        top += b.Bands[r] + aOptions.TreeGap;
    }
    result.Extent = {maxRight + aOptions.Margin, top - aOptions.TreeGap + aOptions.Margin};

    const auto& edges = aModel.Edges();
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const int from = aModel.NodeIndexOf(edges[e].FromID);
        const int to = aModel.NodeIndexOf(edges[e].ToID);
        if (from < 0 || to < 0) continue;
        const TLayoutBox& fromBox = result.Boxes[static_cast<std::size_t>(from)];
        const TLayoutBox& toBox = result.Boxes[static_cast<std::size_t>(to)];
        TLayoutRoute route{static_cast<int>(e), from, to, TRouteKind::rkStraight, {}};
        const int parent = aReversed ? to : from;
        const int child = aReversed ? from : to;
        if (parents[static_cast<std::size_t>(child)] == parent) {
            // Parent and child face each other across the gap between their columns.
            const bool right = b.Sides[static_cast<std::size_t>(child)] == TSide::Right;
            const TLayoutPoint fromPoint = SideMid(fromBox, from == parent ? right : !right);
            const TLayoutPoint toPoint = SideMid(toBox, to == parent ? right : !right);
            route.Points = {fromPoint, toPoint};
        } else {
            route.Points = {ClipToBox(fromBox, toBox.Center()), ClipToBox(toBox, fromBox.Center())};
        }
        result.Routes.push_back(std::move(route));
    }
    return result;
}

}  // namespace Orvex
