// The time axis of a gantt chart: where its ticks fall and what they say, from the chart's tick interval
// and axis format, a PlantUML print scale, or an automatic choice of about ten ticks.
#pragma once

#include <string>
#include <vector>

#include "orvex/diagrams/chart_gantt.h"

namespace Orvex {

struct TGanttTick {
    TGanttTime Time = 0;
    std::string Label;
};

// Ticks from aFrom to aTo inclusive, in order.
std::vector<TGanttTick> GanttTicks(const TQVLGanttChart& aChart, TGanttTime aFrom, TGanttTime aTo);

}  // namespace Orvex
