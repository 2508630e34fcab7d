// The one geometric question the intersection worker asks: where two straight segments cross. Kept
// behind this seam so that the shared 2D geometry routines can answer it instead once they are in place.
#pragma once

#include <cstdint>
#include <optional>

#include "orvex/core/types.h"

namespace Orvex::Detail {

struct TSegment {
    TQVLPto64 A;
    TQVLPto64 B;
};

// The crossing point rounded to base units; none for parallel, collinear or disjoint segments.
std::optional<TQVLPto64> SegmentIntersection(const TSegment& s, const TSegment& t);

}  // namespace Orvex::Detail
