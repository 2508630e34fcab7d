// Chart data: what a chart-like diagram text (gantt, pie, git graph, ...) says, read before anything is
// drawn. Each chart type derives its own record from TQVLChart; a diagram model holds at most one, and the
// host's chart layouts draw it from the drawing's own items.
#pragma once

#include <string_view>

#include "orvex/io/json_fwd.h"

namespace Orvex {

class TQVLChart {
  public:
    virtual ~TQVLChart() = default;

    // The chart's name in the parse model's "chart" object: "gantt", "pie", "gitgraph", ...
    virtual std::string_view Type() const = 0;
    // The chart's own keys, added to aOut (an object already holding "type") in their fixed order.
    virtual void WriteJson(TJSON& aOut) const = 0;
};

}  // namespace Orvex
