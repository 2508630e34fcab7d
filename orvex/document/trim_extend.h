// Trim, extend, join and parallel copies on open lines (lines, polylines, arcs) and polygon outlines
// against the outlines of other items (Bezier curves as the chords they are painted with). The geometry works
// on a path: the item's points as a polyline with a running parameter s = segment index + position within the
// segment, so a crossing anywhere along a polyline is one number.
#pragma once

#include <cstdint>
#include <vector>

#include "orvex/core/types.h"

namespace Orvex {

class TORXBaseItem;

// One boundary the tools cut or extend against: a straight segment, or an ellipse (circle when both radii
// agree), whole or an arc of it.
struct TTrimEdge {
    bool Straight = true;
    TQVLPto64 A;
    TQVLPto64 B;
    TQVLPto64 Center;
    std::int64_t Rx = 0;
    std::int64_t Ry = 0;
    bool Full = true;
    double Start = 0.0;
    double End = 0.0;
    bool Ccw = false;
};

std::vector<TTrimEdge> ItemEdges(const TORXBaseItem& item);

// The item's line as a path: the first two points of lines and arrow lines, every point of a polyline;
// and the item's points with the path put back.
std::vector<TQVLPto64> ItemPath(const TORXBaseItem& item);
std::vector<TQVLPto> ItemWithPath(const TORXBaseItem& item, const std::vector<TQVLPto64>& path);

// Parameters t along the infinite line a + t (b - a) where it crosses the edge.
std::vector<double> LineCrossings(const TQVLPto64& a, const TQVLPto64& b, const TTrimEdge& edge);

// The pieces of a polyline left after removing the span between the crossings on either side of the pick.
// Empty when no crossing lies strictly inside the polyline on either side.
struct TTrimResult {
    bool Trimmed = false;
    std::vector<std::vector<TQVLPto64>> Pieces;  // one or two
};
TTrimResult TrimPath(const std::vector<TQVLPto64>& path, const std::vector<TTrimEdge>& edges,
                     const TQVLPto64& pick);

// A closed path (a polygon's points, the last joined back to the first) opened by removing the span
// between the crossings on either side of the pick: what is left, as one open path from the crossing after
// the pick round to the one before it. Empty when fewer than two crossings lie on the outline.
std::vector<TQVLPto64> TrimClosedPath(const std::vector<TQVLPto64>& ring, const std::vector<TTrimEdge>& edges,
                                      const TQVLPto64& pick);

// Where a circle crosses an edge: its points on the whole circle.
std::vector<TPoint2D> CircleCrossings(const TQVLPto64& center, std::int64_t radius, const TTrimEdge& edge);

// The path with its end nearer to pick moved onto the first crossing beyond it; false when none.
bool ExtendPath(std::vector<TQVLPto64>& path, const std::vector<TTrimEdge>& edges, const TQVLPto64& pick);

// Joins two paths at the meeting point of their end segments nearer the picks; false when parallel.
bool JoinPaths(std::vector<TQVLPto64>& a, const TQVLPto64& pickA, std::vector<TQVLPto64>& b,
               const TQVLPto64& pickB);

}  // namespace Orvex
