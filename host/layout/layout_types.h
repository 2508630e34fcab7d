// The records every diagram layout fills: boxes, routes and points in millimetres with y growing
// downwards, so the item stage only converts units and never re-derives geometry.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "orvex/items/flow_types.h"

namespace Orvex {

struct TLayoutPoint {
    double X = 0;
    double Y = 0;
};

struct TLayoutSize {
    double Width = 0;
    double Height = 0;
};

struct TLayoutBox {
    double X = 0;  // left
    double Y = 0;  // top
    double Width = 0;
    double Height = 0;
    bool Placed = false;  // false for a node the layout could not reach (it gets no item)

    double Right() const { return X + Width; }
    double Bottom() const { return Y + Height; }
    TLayoutPoint Center() const { return {X + Width / 2, Y + Height / 2}; }
    bool Overlaps(const TLayoutBox& other, double tolerance = 1e-6) const;
};

// How a route's points are to be read: a straight segment, a broken line through every point, or a
// chain of cubic Bézier segments (start, two controls, end, two controls, end, ...).
enum class TRouteKind : std::uint8_t { rkStraight, rkPolyline, rkBezier };

struct TLayoutRoute {
    int Edge = -1;  // index in the model's edges
    int From = -1;  // node indices
    int To = -1;
    TRouteKind Kind = TRouteKind::rkStraight;
    std::vector<TLayoutPoint> Points;  // from the source box's outline to the target box's outline
    // When an end of the edge is a container rather than a node: its index in the model's groups. The
    // route then ends at the container's frame and From or To is a node inside it.
    int FromGroup = -1;
    int ToGroup = -1;
};

// Boxes are parallel to the model's nodes; routes exist only for edges whose two ends are nodes.
struct TGraphLayout {
    std::vector<TLayoutBox> Boxes;
    std::vector<TLayoutRoute> Routes;
    TLayoutSize Extent;  // the bounding size including the margin on every side
    // Parallel to the model's groups (containers), each enclosing its members with room for its title;
    // empty when the layout does not place containers.
    std::vector<TLayoutBox> Groups;
};

// The extent of a caption (lines broken at CR LF) in millimetres, as the item that shows it will draw it.
using TTextMeasure = std::function<TLayoutSize(std::string_view aText)>;

// A measure for tests and for hosts without fonts: a fixed advance per character and height per line.
TTextMeasure FixedPitchMeasure(double aCharWidth, double aLineHeight);

// The box a flow element of this shape needs so that a caption of aText's extent fits inside its outline
// (a diamond needs twice the text's extent, an ellipse the diagonal's).
TLayoutSize FlowBoxSize(TQVLFlowType aShape, TLayoutSize aText);
// The inner rectangle of a box of that shape in which the caption is drawn; the inverse of FlowBoxSize.
TLayoutSize FlowTextArea(TQVLFlowType aShape, TLayoutSize aBox);

// The point where the segment from the box's centre towards aToward leaves the box.
TLayoutPoint ClipToBox(const TLayoutBox& aBox, TLayoutPoint aToward);

// A layout's millimetres as the base units of the items it creates, rounded half away from zero.
std::int64_t BaseFromMM(double aMM);

inline constexpr double kLayoutMargin = 10.0;  // mm around a laid-out diagram
inline constexpr double kTextPaddingX = 3.0;   // mm between a caption and its outline
inline constexpr double kTextPaddingY = 2.0;

}  // namespace Orvex
