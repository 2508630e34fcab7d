// A timing diagram: one lane per participant under a shared time axis. Robust lanes step between state
// levels named at their left, concise lanes are coloured segments holding their state, clocks and binary
// lanes are square waves; messages are arrows between lanes at their times, constraints are
// double-headed arrows above their lane, highlights are shaded spans behind everything.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include "host/layout/chart_layout.h"
#include "orvex/core/units.h"
#include "orvex/diagrams/chart_timing.h"
#include "orvex/items/line_items.h"

namespace Orvex {
namespace {

using TLane = TQVLTimingChart::TLane;

constexpr double kPlotWidthMM = 150.0;  // the time span's width when the text sets no scale
constexpr double kMMPerPixel = kMMPerInch / 96.0;
constexpr double kLevelMM = 7.0;    // between two state levels of a robust lane
constexpr double kAnalogMM = 20.0;  // height of an analog lane's value range
constexpr double kWaveMM = 8.0;     // height of a square wave, of a concise segment
constexpr double kLanePadMM = 5.0;  // above and below a lane's signal
constexpr double kColumnGapMM = 4.0;
constexpr double kTickMM = 1.5;
constexpr double kLongestPlotMM = 2000.0;  // a scale asking for more is held to this
constexpr int kMostTicks = 50;
constexpr int kMostPulses = 2000;    // a clock far faster than the span shows its first pulses only
constexpr double kTailShare = 0.12;  // the signals run on past the last time by this share of the span
const TAlphaColor kSignal = Qvl::Utils::AlphaColor(0x1F, 0x4E, 0x8C, 0xFF);
const TAlphaColor kGrid = Qvl::Utils::AlphaColor(0xC8, 0xCC, 0xD4, 0xFF);
const TAlphaColor kHighlight = Qvl::Utils::AlphaColor(0xFF, 0xF4, 0xC2, 0xFF);
const TAlphaColor kUncertain = Qvl::Utils::AlphaColor(0xE4, 0xE4, 0xE4, 0xFF);
const TAlphaColor kMessage = Qvl::Utils::AlphaColor(0xB0, 0x30, 0x30, 0xFF);

// A pale version of a series colour: concise segments hold dark text.
TAlphaColor Pale(TAlphaColor color) {
    const auto mix = [](std::uint8_t channel) { return static_cast<std::uint8_t>((channel + 2 * 255) / 3); };
    return Qvl::Utils::AlphaColor(mix(Qvl::Utils::RedOf(color)), mix(Qvl::Utils::GreenOf(color)),
                                  mix(Qvl::Utils::BlueOf(color)));
}

bool Hidden(const std::string& state) {
    return state.starts_with('{');
}

// A step of 1, 2 or 5 times a power of ten giving about aCount ticks over aSpan.
double NiceStep(double span, double count) {
    const double raw = span / count;
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    for (const double m : {1.0, 2.0, 5.0})
        if (raw <= m * power) return m * power;
    return 10 * power;
}

struct TFrame {
    double Start = 0;  // the first and last time shown
    double End = 1;
    double X0 = 0;  // where Start sits
    double PerUnit = 1;
    double X(double t) const { return X0 + (t - Start) * PerUnit; }
};

TFrame TimeFrame(const TQVLTimingChart& chart, double x0) {
    double lo = 0, hi = 0;
    bool any = false;
    const auto see = [&](double t) {
        lo = any ? std::min(lo, t) : t;
        hi = any ? std::max(hi, t) : t;
        any = true;
    };
    for (const TLane& lane : chart.Lanes)
        for (const auto& c : lane.Changes) see(c.Time);
    for (const auto& m : chart.Messages) {
        see(m.FromTime);
        see(m.ToTime);
    }
    for (const auto& c : chart.Constraints) {
        see(c.From);
        see(c.To);
    }
    for (const auto& h : chart.Highlights) {
        see(h.From);
        see(h.To);
    }
    if (!any) hi = 1;
    for (const TLane& lane : chart.Lanes)  // a clock shows a few periods at least
        if (lane.Kind == "clock" && lane.Period > 0) hi = std::max(hi, lo + 4 * lane.Period);
    if (hi <= lo) hi = lo + 1;
    TFrame frame;
    frame.Start = lo;
    frame.End = hi + (hi - lo) * kTailShare;
    frame.X0 = x0;
    if (!std::isfinite(frame.End - lo)) frame.End = lo + 1;  // times too far apart to draw
    frame.PerUnit =
        chart.PixelsPerUnit > 0 ? chart.PixelsPerUnit * kMMPerPixel : kPlotWidthMM / (frame.End - lo);
    frame.PerUnit = std::min(frame.PerUnit, kLongestPlotMM / (frame.End - lo));
    return frame;
}

// The range of an analog lane whose states are all numbers; false when one is not.
bool AnalogRange(const TLane& lane, double& low, double& high) {
    if (lane.Kind != "analog" || lane.States.empty()) return false;
    low = high = 0;
    bool first = true;
    for (const std::string& state : lane.States) {
        double value = 0;
        const auto [end, error] = std::from_chars(state.data(), state.data() + state.size(), value);
        if (error != std::errc{} || end != state.data() + state.size() || !std::isfinite(value)) return false;
        low = first ? value : std::min(low, value);
        high = first ? value : std::max(high, value);
        first = false;
    }
    if (high <= low) high = low + 1;
    return true;
}

double SignalHeight(const TLane& lane) {
    double low = 0, high = 0;
    if (AnalogRange(lane, low, high)) return kAnalogMM;
    if (lane.Kind == "robust" || lane.Kind == "analog")
        return kLevelMM * static_cast<double>(std::max<std::size_t>(lane.States.size(), 2) - 1);
    return kWaveMM;
}

// The level of a state on a robust lane (the first declared state on top), or of a value on an analog
// lane (the highest value on top).
double LevelY(const TLane& lane, const std::string& state, double top) {
    double low = 0, high = 0, value = 0;
    if (AnalogRange(lane, low, high)) {
        std::from_chars(state.data(), state.data() + state.size(), value);
        return top + kAnalogMM * (high - value) / (high - low);
    }
    const auto it = std::find(lane.States.begin(), lane.States.end(), state);
    return top + kLevelMM * static_cast<double>(it - lane.States.begin());
}

class TTimingDrawer {
  public:
    TTimingDrawer(TChartCanvas& canvas, const TQVLTimingChart& chart) : fCanvas(canvas), fChart(chart) {}

    TLayoutSize Draw(TLayoutPoint origin) {
        double nameWidth = 0, stateWidth = 0;
        for (const TLane& lane : fChart.Lanes) {
            nameWidth = std::max(nameWidth, fCanvas.Measure(lane.Text, {.Bold = true}).Width);
            if (lane.Kind == "robust" || lane.Kind == "analog")
                for (const std::string& s : lane.States)
                    stateWidth = std::max(stateWidth, fCanvas.Measure(s).Width);
        }
        fFrame = TimeFrame(fChart, origin.X + nameWidth + kColumnGapMM + stateWidth + kColumnGapMM);
        const double right = fFrame.X(fFrame.End);

        // Lane bands first, to know where messages and highlights go.
        double y = origin.Y + (fChart.Highlights.empty() ? 0 : kLanePadMM);
        for (const TLane& lane : fChart.Lanes) {
            fSignalTop.push_back(y + kLanePadMM);
            y += SignalHeight(lane) + 2 * kLanePadMM;
        }
        const double axisY = y + kLanePadMM;
        for (const auto& h : fChart.Highlights) DrawHighlight(h, origin.Y, axisY);
        for (std::size_t i = 0; i < fChart.Lanes.size(); ++i) {
            const TLane& lane = fChart.Lanes[i];
            const double top = fSignalTop[i];
            fCanvas.Text({origin.X, top + SignalHeight(lane) / 2}, lane.Text,
                         {.Bold = true, .Vertical = TChartAlign::caCenter});
            fCanvas.Line({origin.X, top + SignalHeight(lane) + kLanePadMM},
                         {right, top + SignalHeight(lane) + kLanePadMM},
                         {.Fill = std::nullopt, .Stroke = kGrid});
            if (lane.Kind == "concise")
                DrawConcise(lane, top);
            else if (lane.Kind == "clock")
                DrawClock(lane, top);
            else if (lane.Kind == "binary")
                DrawSteps(lane, [&](const std::string& s) { return s == "high" ? top : top + kWaveMM; });
            else
                DrawRobust(lane, top);
        }
        for (const auto& c : fChart.Constraints) DrawConstraint(c);
        for (const auto& m : fChart.Messages) DrawMessage(m);
        const double bottom = DrawAxis(axisY);
        return {right - origin.X, bottom - origin.Y};
    }

  private:
    // Level changes drawn as one polyline per visible stretch; a hidden state ("{-}") breaks it.
    template <class TLevel>
    void DrawSteps(const TLane& lane, TLevel level) {
        std::vector<TLayoutPoint> points;
        const auto flush = [&] {
            if (points.size() >= 2)
                fCanvas.Polyline(points, {.Fill = std::nullopt, .Stroke = kSignal, .PenMM = 0.5f});
            points.clear();
        };
        for (std::size_t k = 0; k < lane.Changes.size(); ++k) {
            const auto& change = lane.Changes[k];
            if (Hidden(change.State)) {
                flush();
                continue;
            }
            // The previous stretch ends at this x: the new level's first point draws the step.
            const double ly = level(change.State);
            points.push_back({fFrame.X(change.Time), ly});
            points.push_back({StretchEnd(lane, k), ly});
        }
        flush();
    }

    // Where the state of change k gives way to the next, or the end of the axis.
    double StretchEnd(const TLane& lane, std::size_t k) const {
        return k + 1 < lane.Changes.size() ? fFrame.X(lane.Changes[k + 1].Time) : fFrame.X(fFrame.End);
    }

    // An analog lane joins its values by straight lines, with its highest and lowest value named.
    void DrawAnalog(const TLane& lane, double top, double low, double high) {
        const TChartTextStyle label{
            .Height = 3.0f, .Horizontal = TChartAlign::caEnd, .Vertical = TChartAlign::caCenter};
        fCanvas.Text({fFrame.X0 - kColumnGapMM, top}, ChartNumber(high), label);
        fCanvas.Text({fFrame.X0 - kColumnGapMM, top + kAnalogMM}, ChartNumber(low), label);
        std::vector<TLayoutPoint> points;
        for (const auto& change : lane.Changes) {
            double value = 0;
            if (Hidden(change.State)) continue;
            std::from_chars(change.State.data(), change.State.data() + change.State.size(), value);
            points.push_back({fFrame.X(change.Time), top + kAnalogMM * (high - value) / (high - low)});
        }
        if (!points.empty()) points.push_back({fFrame.X(fFrame.End), points.back().Y});
        if (points.size() >= 2)
            fCanvas.Polyline(points, {.Fill = std::nullopt, .Stroke = kSignal, .PenMM = 0.5f});
    }

    void DrawRobust(const TLane& lane, double top) {
        double low = 0, high = 0;
        if (AnalogRange(lane, low, high)) return DrawAnalog(lane, top, low, high);
        for (const std::string& state : lane.States) {
            const double ly = LevelY(lane, state, top);
            fCanvas.Text(
                {fFrame.X0 - kColumnGapMM, ly}, state,
                {.Height = 3.0f, .Horizontal = TChartAlign::caEnd, .Vertical = TChartAlign::caCenter});
            fCanvas.Line({fFrame.X0, ly}, {fFrame.X(fFrame.End), ly},
                         {.Fill = std::nullopt, .Stroke = kGrid, .Dashed = true});
        }
        DrawSteps(lane, [&](const std::string& s) { return LevelY(lane, s, top); });
    }

    void DrawConcise(const TLane& lane, double top) {
        for (std::size_t k = 0; k < lane.Changes.size(); ++k) {
            const auto& change = lane.Changes[k];
            if (change.State == "{-}") continue;  // the signal is hidden until the next change
            const double x = fFrame.X(change.Time);
            const double end = StretchEnd(lane, k);
            const auto state =
                std::find(lane.States.begin(), lane.States.end(), change.State) - lane.States.begin();
            // "{A,B}" is one of several states, not known which: grey, with the candidates as its text.
            const bool uncertain = Hidden(change.State);
            const TAlphaColor fill = change.Color.value_or(
                uncertain ? kUncertain : Pale(ChartSeriesColor(static_cast<std::size_t>(state))));
            const std::string text =
                uncertain
                    ? change.State.substr(1, change.State.size() - (change.State.ends_with('}') ? 2 : 1))
                    : change.State;
            fCanvas.Box({x, top, std::max(end - x, 0.5), kWaveMM, true}, TQVLFlowType::ftProcess, text,
                        {.Fill = fill, .Stroke = kSignal}, lane.Id + "@" + ChartNumber(change.Time));
        }
    }

    void DrawClock(const TLane& lane, double top) {
        if (lane.Period <= 0) return;
        std::vector<TLayoutPoint> points;
        const auto add = [&](double x, double y) {
            if (points.empty() || points.back().X != x || points.back().Y != y) points.push_back({x, y});
        };
        const double low = top + kWaveMM;
        double t = fFrame.Start + std::fmod(lane.Offset - fFrame.Start, lane.Period) - lane.Period;
        add(fFrame.X(fFrame.Start), low);
        for (int pulses = 0; t < fFrame.End && pulses < kMostPulses; t += lane.Period, ++pulses) {
            const double rise = std::max(t, fFrame.Start);
            const double fall = std::min(t + lane.Pulse, fFrame.End);
            if (fall <= fFrame.Start || rise >= fFrame.End) continue;
            add(fFrame.X(rise), low);
            add(fFrame.X(rise), top);
            add(fFrame.X(fall), top);
            add(fFrame.X(fall), low);
        }
        add(fFrame.X(fFrame.End), low);
        fCanvas.Polyline(points, {.Fill = std::nullopt, .Stroke = kSignal, .PenMM = 0.5f});
    }

    std::size_t LaneIndex(const std::string& id) const {
        for (std::size_t i = 0; i < fChart.Lanes.size(); ++i)
            if (fChart.Lanes[i].Id == id) return i;
        return 0;
    }

    double LaneMiddle(const std::string& id) const {
        const std::size_t i = LaneIndex(id);
        return fSignalTop[i] + SignalHeight(fChart.Lanes[i]) / 2;
    }

    void Arrow(TLayoutPoint from, TLayoutPoint to, TAlphaColor color, bool bothEnds) {
        if (TORXBasePolyLine* line = fCanvas.Polyline({from, to}, {.Fill = std::nullopt, .Stroke = color})) {
            line->SetToType(TQVLTermType::ttFillArrow);
            line->SetToColor(color);
            if (bothEnds) {
                line->SetFromType(TQVLTermType::ttFillArrow);
                line->SetFromColor(color);
            }
        }
    }

    // The height of a lane's signal at a time: a robust lane's current level, else its middle.
    double SignalY(const std::string& id, double time) const {
        const std::size_t i = LaneIndex(id);
        const TLane& lane = fChart.Lanes[i];
        const std::string* state = nullptr;
        for (const auto& change : lane.Changes)
            if (change.Time <= time) state = &change.State;
        if ((lane.Kind == "robust" || lane.Kind == "analog") && state != nullptr && !Hidden(*state))
            return LevelY(lane, *state, fSignalTop[i]);
        return LaneMiddle(id);
    }

    // A message leaves the sender's signal and ends at the near edge of the receiver's signal.
    void DrawMessage(const TQVLTimingChart::TMessage& m) {
        const std::size_t target = LaneIndex(m.To);
        const TLayoutPoint from{fFrame.X(m.FromTime), SignalY(m.From, m.FromTime)};
        const double targetTop = fSignalTop[target];
        const double targetBottom = targetTop + SignalHeight(fChart.Lanes[target]);
        const double toY = from.Y < targetTop      ? targetTop
                           : from.Y > targetBottom ? targetBottom
                                                   : LaneMiddle(m.To);
        const TLayoutPoint to{fFrame.X(m.ToTime), toY};
        Arrow(from, to, kMessage, false);
        fCanvas.Text({(from.X + to.X) / 2 + 1, (from.Y + to.Y) / 2}, m.Text,
                     {.Height = 3.0f, .Color = kMessage, .Vertical = TChartAlign::caCenter});
    }

    void DrawConstraint(const TQVLTimingChart::TConstraint& c) {
        const double y = fSignalTop[LaneIndex(c.Lane)] - kLanePadMM / 2;
        Arrow({fFrame.X(c.From), y}, {fFrame.X(c.To), y}, kOpaqueBlack, true);
        fCanvas.Text({(fFrame.X(c.From) + fFrame.X(c.To)) / 2, y - 0.5}, c.Text,
                     {.Height = 3.0f, .Horizontal = TChartAlign::caCenter, .Vertical = TChartAlign::caEnd});
    }

    void DrawHighlight(const TQVLTimingChart::THighlight& h, double top, double bottom) {
        const double x = fFrame.X(h.From);
        fCanvas.Rect({x, top, fFrame.X(h.To) - x, bottom - top, true},
                     {.Fill = h.Color.value_or(kHighlight), .Stroke = kGrid, .Dashed = true});
        fCanvas.Text({x + 1, top + 0.5}, h.Text, {.Height = 3.0f});
    }

    // The axis with ticks at round times; returns its bottom.
    double DrawAxis(double y) {
        fCanvas.Line({fFrame.X0, y}, {fFrame.X(fFrame.End), y});
        const double step = NiceStep(fFrame.End - fFrame.Start, 8);
        double bottom = y;
        int ticks = 0;
        for (double t = std::ceil(fFrame.Start / step) * step;
             t <= fFrame.End + step * 1e-9 && ticks < kMostTicks; t += step, ++ticks) {
            const double x = fFrame.X(t);
            fCanvas.Line({x, y}, {x, y + kTickMM});
            const TChartTextStyle style{.Height = 3.0f, .Horizontal = TChartAlign::caCenter};
            fCanvas.Text({x, y + kTickMM + 0.5}, ChartNumber(t), style);
            bottom = std::max(bottom, y + kTickMM + 0.5 + fCanvas.Measure(ChartNumber(t), style).Height);
        }
        return bottom;
    }

    TChartCanvas& fCanvas;
    const TQVLTimingChart& fChart;
    TFrame fFrame;
    std::vector<double> fSignalTop;
};

}  // namespace

TLayoutSize DrawTimingChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    return TTimingDrawer(aCanvas, static_cast<const TQVLTimingChart&>(aChart)).Draw(aOrigin);
}

}  // namespace Orvex
