// Fishbone placement. Every cause owns a row of its bone, so causes never meet within a bone, and every
// pair of bones (one above, one below the spine) owns a column, so bones never meet each other.
#include "host/layout/fishbone_layout.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "host/layout/tree_layout.h"
#include "orvex/diagrams/diagram_model.h"

namespace Orvex {
namespace {

struct TCause {
    int Node;
    int Depth;      // 1 for a direct cause of the category
    double Offset;  // mm from the category end of the bone to the row's middle
};

struct TBone {
    int Category;
    bool Top;
    std::vector<TCause> Causes;
    double Length = 0;  // vertical extent of the bone
    double X = 0;       // x of the category end; the spine end is X + Length * slant
};

}  // namespace

TGraphLayout LayoutFishbone(const TORXDiagramModel& aModel, const std::vector<TLayoutSize>& aSizes,
                            const TFishboneOptions& aOptions) {
    TGraphLayout result;
    const std::size_t count = aModel.Nodes().size();
    result.Boxes.resize(count);
    if (count == 0) return result;
    auto sizeOf = [&](int n) {
        const auto i = static_cast<std::size_t>(n);
        return i < aSizes.size() ? aSizes[i] : TLayoutSize{20, 10};
    };

    const std::vector<int> parents = TreeParents(aModel, true);
    std::vector<std::vector<int>> children(count);
    for (const TQVLDiagEdge& e : aModel.Edges()) {
        const int child = aModel.NodeIndexOf(e.FromID);
        const int parent = aModel.NodeIndexOf(e.ToID);
        if (child < 0 || parent < 0 || parents[static_cast<std::size_t>(child)] != parent) continue;
        auto& kids = children[static_cast<std::size_t>(parent)];
        if (std::find(kids.begin(), kids.end(), child) == kids.end()) kids.push_back(child);
    }
    int effect = 0;
    while (parents[static_cast<std::size_t>(effect)] >= 0) ++effect;  // node 0's chain has a root
    // Further roots have nothing to point at; they stand as bones of their own.
    std::vector<int> categories = children[static_cast<std::size_t>(effect)];
    for (std::size_t n = 0; n < count; ++n)
        if (parents[n] < 0 && static_cast<int>(n) != effect) categories.push_back(static_cast<int>(n));

    std::vector<TBone> bones;
    double longest = 0;
    for (std::size_t i = 0; i < categories.size(); ++i) {
        TBone bone{categories[i], i % 2 == 0, {}};
        double offset = aOptions.BoneEndGap;
        // Causes in source order, each followed by its own causes (depth first).
        std::vector<std::pair<int, int>> stack;
        const auto& direct = children[static_cast<std::size_t>(bone.Category)];
        for (auto it = direct.rbegin(); it != direct.rend(); ++it) stack.emplace_back(*it, 1);
        while (!stack.empty()) {
            const auto [node, depth] = stack.back();
            stack.pop_back();
            const double h = sizeOf(node).Height;
            bone.Causes.push_back({node, depth, offset + h / 2});
            offset += h + aOptions.RowGap;
            const auto& kids = children[static_cast<std::size_t>(node)];
            for (auto it = kids.rbegin(); it != kids.rend(); ++it) stack.emplace_back(*it, depth + 1);
        }
        bone.Length = offset - aOptions.RowGap + aOptions.BoneEndGap;
        longest = std::max(longest, bone.Length);
        bones.push_back(std::move(bone));
    }
    // One bone length for all keeps the category boxes in two straight rows.
    const double length = std::max(longest, 2 * aOptions.BoneEndGap);
    const double slant = aOptions.BoneSlant;
    auto causeRight = [&](const TCause& c) {
        // Clear of the slanted bone over the whole height of the box, not only at its middle.
        return (c.Offset - sizeOf(c.Node).Height / 2) * slant - aOptions.CauseGap -
               (c.Depth - 1) * aOptions.Indent;
    };

    double topHeight = 0;
    double bottomHeight = 0;
    for (const TBone& bone : bones)
        (bone.Top ? topHeight : bottomHeight) =
            std::max(bone.Top ? topHeight : bottomHeight, sizeOf(bone.Category).Height);
    const TLayoutSize effectSize = sizeOf(effect);
    const double spineY =
        aOptions.Margin + std::max(topHeight + length, bones.empty() ? effectSize.Height / 2 : 0.0);

    double cursor = aOptions.Margin;
    for (std::size_t first = 0; first < bones.size(); first += 2) {
        const std::size_t last = std::min(first + 2, bones.size());
        // The column's extent relative to the category end of its bones.
        double minX = 0;
        double maxX = length * slant;
        for (std::size_t k = first; k < last; ++k) {
            const double half = sizeOf(bones[k].Category).Width / 2;
            minX = std::min(minX, -half);
            maxX = std::max(maxX, half);
            for (const TCause& c : bones[k].Causes)
                minX = std::min(minX, causeRight(c) - sizeOf(c.Node).Width);
        }
        const double x = cursor - minX;
        for (std::size_t k = first; k < last; ++k) {
            TBone& bone = bones[k];
            bone.X = x;
            const TLayoutSize cat = sizeOf(bone.Category);
            TLayoutBox& catBox = result.Boxes[static_cast<std::size_t>(bone.Category)];
            catBox = {x - cat.Width / 2, bone.Top ? spineY - length - cat.Height : spineY + length, cat.Width,
                      cat.Height, true};
            for (const TCause& c : bone.Causes) {
                const TLayoutSize s = sizeOf(c.Node);
                // Rows count from the category end; below the spine that end is the far one.
                const double rowY = bone.Top ? spineY - length + c.Offset : spineY + length - c.Offset;
                const double right = x + causeRight(c);
                result.Boxes[static_cast<std::size_t>(c.Node)] = {right - s.Width, rowY - s.Height / 2,
                                                                  s.Width, s.Height, true};
            }
        }
        cursor = x + maxX + aOptions.ColumnGap;
    }
    const double headX = bones.empty() ? aOptions.Margin : cursor - aOptions.ColumnGap + aOptions.HeadGap;
    result.Boxes[static_cast<std::size_t>(effect)] = {headX, spineY - effectSize.Height / 2, effectSize.Width,
                                                      effectSize.Height, true};
    result.Extent = {
        headX + effectSize.Width + aOptions.Margin,
        std::max(spineY + length + bottomHeight, spineY + effectSize.Height / 2) + aOptions.Margin};

    // Where each node meets its bone: categories at the bone's end, causes on their row.
    std::vector<TLayoutPoint> anchor(count);
    std::vector<int> boneOf(count, -1);
    for (std::size_t k = 0; k < bones.size(); ++k) {
        const TBone& bone = bones[k];
        const TLayoutBox& catBox = result.Boxes[static_cast<std::size_t>(bone.Category)];
        anchor[static_cast<std::size_t>(bone.Category)] = {bone.X, bone.Top ? catBox.Bottom() : catBox.Y};
        for (const TCause& c : bone.Causes) {
            const TLayoutBox& box = result.Boxes[static_cast<std::size_t>(c.Node)];
            const double rowY = box.Y + box.Height / 2;
            anchor[static_cast<std::size_t>(c.Node)] = {bone.X + (length - std::abs(spineY - rowY)) * slant,
                                                        rowY};
            boneOf[static_cast<std::size_t>(c.Node)] = static_cast<int>(k);
        }
    }
    const TLayoutBox& head = result.Boxes[static_cast<std::size_t>(effect)];
    const auto& edges = aModel.Edges();
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const int from = aModel.NodeIndexOf(edges[e].FromID);
        const int to = aModel.NodeIndexOf(edges[e].ToID);
        if (from < 0 || to < 0) continue;
        const auto fi = static_cast<std::size_t>(from);
        const auto ti = static_cast<std::size_t>(to);
        const TLayoutBox& fromBox = result.Boxes[fi];
        const TLayoutBox& toBox = result.Boxes[ti];
        TLayoutRoute route{static_cast<int>(e), from, to, TRouteKind::rkPolyline, {}};
        const bool isTreeEdge = parents[fi] == to;
        const TLayoutPoint fromMid{fromBox.Right(), fromBox.Y + fromBox.Height / 2};
        if (isTreeEdge && to == effect) {
            const TBone* bone = nullptr;
            for (const TBone& b : bones)
                if (b.Category == from) bone = &b;
            if (bone != nullptr)
                route.Points = {anchor[fi], {bone->X + length * slant, spineY}, {head.X, spineY}};
        } else if (isTreeEdge && boneOf[fi] >= 0 && parents[ti] == effect) {
            route.Points = {fromMid, anchor[fi], anchor[ti]};  // along the bone up to its category
        } else if (isTreeEdge && boneOf[fi] >= 0) {
            // A cause of a cause: out of its right side, then straight to the cause it feeds.
            const double x = std::max(toBox.X + 1, std::min(fromBox.Right() + 2, toBox.Right() - 2));
            route.Points = {fromMid, {x, fromMid.Y}, {x, fromMid.Y < toBox.Y ? toBox.Y : toBox.Bottom()}};
        }
        if (route.Points.empty()) {
            route.Kind = TRouteKind::rkStraight;
            route.Points = {ClipToBox(fromBox, toBox.Center()), ClipToBox(toBox, fromBox.Center())};
        }
        result.Routes.push_back(std::move(route));
    }
    return result;
}

}  // namespace Orvex
