// A gantt chart: one row per task, sections as alternating bands named at the left, tasks as boxes placed
// on a time axis by their start and end, milestones as diamonds at their date, excluded days shaded, and
// dependency links between the boxes. Mermaid's colours mark done, active and critical tasks.
#include <algorithm>
#include <cmath>
#include <map>

#include "host/layout/chart_layout.h"
#include "host/layout/gantt_axis.h"
#include "orvex/diagrams/chart_gantt.h"
#include "orvex/items/flow_items.h"

namespace Orvex {
namespace {

using TTask = TQVLGanttChart::TTask;

constexpr double kBarHeightMM = 5.5;
constexpr double kRowPitchMM = 7.5;
constexpr double kLabelGapMM = 4.0;
constexpr double kAxisHeightMM = 6.0;
constexpr double kMinChartWidthMM = 180.0;
constexpr double kMaxChartWidthMM = 250.0;
constexpr double kWidthPerDayMM = 9.0;
constexpr double kTextGapMM = 1.5;
// How far a caption beside a bar may run past the axis before it goes to the bar's left instead.
constexpr double kOverhangMM = 15.0;
constexpr float kTaskTextMM = 3.0f;
constexpr float kAxisTextMM = 2.5f;
// Years of excluded days to shade at most: past that, the shading is a grey wall and costs thousands of
// items.
constexpr TGanttTime kMostShadedSpan = 5 * 366 * kGanttMsPerDay;

constexpr std::array<TAlphaColor, 4> kBands{0xFFEEEEFFu, 0xFFFFFFFFu, 0xFFFFFBD6u, 0xFFFFFFFFu};
constexpr TAlphaColor kGrid = 0xFFC8C8C8u;
constexpr TAlphaColor kExcluded = 0xFFE6E6E6u;
constexpr TAlphaColor kToday = 0xFFFF0000u;
constexpr TAlphaColor kVert = 0xFF00008Bu;
constexpr TAlphaColor kLinkColor = 0xFFC0392Bu;

struct TTaskLook {
    TAlphaColor Fill;
    TAlphaColor Stroke;
    TAlphaColor Text;
};

bool HasTag(const TTask& task, std::string_view tag) {
    return std::find(task.Tags.begin(), task.Tags.end(), tag) != task.Tags.end();
}

TTaskLook LookOf(const TTask& task, bool plantUml) {
    const bool crit = HasTag(task, "crit");
    const TAlphaColor critStroke = 0xFFFF8888u;
    if (plantUml) {
        if (task.Fill) return {*task.Fill, 0xFF181818u, kOpaqueBlack};
        if (HasTag(task, "done")) return {0xFFD3D3D3u, 0xFF808080u, kOpaqueBlack};
        return {0xFFE2E2F0u, 0xFF181818u, kOpaqueBlack};
    }
    if (HasTag(task, "active")) return {0xFFBFC7FFu, crit ? critStroke : 0xFF534FBCu, kOpaqueBlack};
    if (HasTag(task, "done")) return {0xFFD3D3D3u, crit ? critStroke : 0xFF808080u, kOpaqueBlack};
    if (crit) return {0xFFFF0000u, critStroke, kOpaqueWhite};
    return {0xFF8A90DDu, 0xFF534FBCu, kOpaqueWhite};
}

class TGanttDrawer {
  public:
    TGanttDrawer(TChartCanvas& aCanvas, const TQVLGanttChart& aChart, TLayoutPoint aOrigin)
        : fCanvas(aCanvas), fChart(aChart), fOrigin(aOrigin) {}
    TLayoutSize Draw();

  private:
    double X(TGanttTime t) const {
        return fChartLeft + static_cast<double>(t - fFrom) / static_cast<double>(fTo - fFrom) * fChartWidth;
    }
    void Measure();
    int CompactRows(const std::vector<TTask>& tasks, double top);
    void DrawBands();
    void DrawExcludedDays();
    void DrawAxis();
    void DrawMonths();
    void DrawTasks();
    double DrawMarkers();  // the height used below the axis
    void DrawOutsideText(const std::string& text, double left, double right, double middleY);

    TChartCanvas& fCanvas;
    const TQVLGanttChart& fChart;
    TLayoutPoint fOrigin;
    TGanttTime fFrom = 0;
    TGanttTime fTo = 0;
    double fChartLeft = 0;
    double fChartWidth = 0;
    double fRowsTop = 0;
    double fRowsBottom = 0;
    double fRight = 0;                                   // the rightmost point drawn
    std::vector<std::pair<const TTask*, double>> fRows;  // each drawn task and its row's top
    std::vector<std::pair<std::size_t, std::pair<double, double>>> fBands;  // section, top and bottom
    std::map<const TTask*, double> fNoteTops;
};

bool IsVert(const TTask& task) {
    return HasTag(task, "vert");
}

// A note's box: its text with room around it, and below it for the folded foot of the shape.
TLayoutSize NoteSize(const TChartCanvas& canvas, const std::string& text) {
    const TLayoutSize textSize = canvas.Measure(text, {.Height = kTaskTextMM});
    return {textSize.Width * 1.15 + 6.0, textSize.Height * 1.4 + 4.0};
}

void TGanttDrawer::Measure() {
    bool any = false;
    for (const auto& s : fChart.Sections)
        for (const TTask& t : s.Tasks) {
            fFrom = any ? std::min(fFrom, t.Start) : t.Start;
            fTo = any ? std::max(fTo, t.End) : t.End;
            any = true;
        }
    if (!any) fFrom = fTo = GanttStartOfDay(fChart.Today);
    if (fChart.FromPlantUML) {
        // A project plan shows whole days.
        fFrom = GanttStartOfDay(fFrom);
        if (GanttStartOfDay(fTo) != fTo) fTo = GanttStartOfDay(fTo) + kGanttMsPerDay;
    }
    if (fTo <= fFrom) fTo = fFrom + kGanttMsPerDay;
    double labelWidth = 0;
    for (const auto& s : fChart.Sections)
        if (!s.Tasks.empty()) labelWidth = std::max(labelWidth, fCanvas.Measure(s.Name).Width);
    fChartLeft = fOrigin.X + (labelWidth > 0 ? labelWidth + kLabelGapMM : 2.0);
    const double days = static_cast<double>(fTo - fFrom) / static_cast<double>(kGanttMsPerDay);
    fChartWidth = std::clamp(days * kWidthPerDayMM, kMinChartWidthMM, kMaxChartWidthMM);
    // A project plan names the months above its day numbers.
    fRowsTop = fOrigin.Y + (fChart.TopAxis ? kAxisHeightMM : 0.0) +
               (fChart.FromPlantUML && !fChart.Undated ? kAxisHeightMM : 0.0);
    double y = fRowsTop;
    for (std::size_t si = 0; si < fChart.Sections.size(); ++si) {
        const double top = y;
        if (fChart.Compact) {
            y += CompactRows(fChart.Sections[si].Tasks, y) * kRowPitchMM;
            if (y > top) fBands.push_back({si, {top, y}});
            continue;
        }
        for (const TTask& t : fChart.Sections[si].Tasks) {
            if (IsVert(t)) continue;
            fRows.push_back({&t, y});
            y += kRowPitchMM;
            for (const auto& note : fChart.Notes)
                if (fChart.FindTask(note.TaskId) == &t) {
                    if (!fNoteTops.contains(&t)) fNoteTops[&t] = y;
                    y += NoteSize(fCanvas, note.Text).Height + 1.0;
                }
        }
        if (y > top) fBands.push_back({si, {top, y}});
    }
    fRowsBottom = std::max(y, fRowsTop + kRowPitchMM);
    fRight = fChartLeft + fChartWidth;
}

// Compact charts share rows within a section: each task, earliest first, takes the first row that is
// free by its start. Returns the number of rows used.
int TGanttDrawer::CompactRows(const std::vector<TTask>& tasks, double top) {
    std::vector<const TTask*> order;
    for (const TTask& t : tasks)
        if (!IsVert(t)) order.push_back(&t);
    std::stable_sort(order.begin(), order.end(),
                     [](const TTask* a, const TTask* b) { return a->Start < b->Start; });
    std::vector<TGanttTime> rowEnds;
    for (const TTask* t : order) {
        std::size_t row = 0;
        while (row < rowEnds.size() && t->Start < rowEnds[row]) ++row;
        if (row == rowEnds.size()) rowEnds.push_back(t->End);
        rowEnds[row] = t->End;
        fRows.push_back({t, top + static_cast<double>(row) * kRowPitchMM});
    }
    return static_cast<int>(rowEnds.size());
}

void TGanttDrawer::DrawBands() {
    for (std::size_t i = 0; i < fBands.size(); ++i) {
        const auto& [section, span] = fBands[i];
        fCanvas.Rect({fOrigin.X, span.first, fRight - fOrigin.X, span.second - span.first, true},
                     {.Fill = kBands[i % kBands.size()], .Stroke = kBands[i % kBands.size()]});
        fCanvas.Text({fOrigin.X + 1.0, (span.first + span.second) / 2}, fChart.Sections[section].Name,
                     {.Vertical = TChartAlign::caCenter});
    }
}

void TGanttDrawer::DrawExcludedDays() {
    if ((fChart.Calendar.Empty()) || fTo - fFrom > kMostShadedSpan) return;
    std::optional<TGanttTime> runStart;
    for (TGanttTime day = GanttStartOfDay(fFrom);; day = GanttAdd(day, 1, TGanttUnit::guDay)) {
        const bool excluded = day <= fTo && fChart.Calendar.IsExcluded(day);
        if (excluded && !runStart) runStart = day;
        if (!excluded && runStart) {
            const double left = std::max(X(*runStart), fChartLeft);
            const double right = std::min(X(day), fChartLeft + fChartWidth);
            if (right > left)
                fCanvas.Rect({left, fRowsTop, right - left, fRowsBottom - fRowsTop, true},
                             {.Fill = kExcluded, .Stroke = kExcluded});
            runStart.reset();
        }
        if (day > fTo) break;
    }
}

void TGanttDrawer::DrawAxis() {
    const std::vector<TGanttTick> ticks = GanttTicks(fChart, fFrom, fTo);
    const TChartTextStyle label{.Height = kAxisTextMM, .Horizontal = TChartAlign::caCenter};
    // Labels wider than the space between ticks are thinned to every n-th.
    double widest = 0;
    for (const auto& t : ticks) widest = std::max(widest, fCanvas.Measure(t.Label, label).Width);
    const double pitch = ticks.size() > 1 ? (X(ticks[1].Time) - X(ticks[0].Time)) : fChartWidth;
    const std::size_t every = pitch > 0 ? static_cast<std::size_t>(std::ceil((widest + 1.5) / pitch)) : 1;
    const TChartPaint grid{.Fill = std::nullopt, .Stroke = kGrid, .PenMM = 0.2f};
    fCanvas.Line({fChartLeft, fRowsBottom}, {fChartLeft + fChartWidth, fRowsBottom},
                 {.Fill = std::nullopt, .Stroke = 0xFF808080u});
    // A project plan's days are cells, numbered in their middle.
    const bool dayCells =
        fChart.FromPlantUML && ticks.size() > 1 && ticks[1].Time - ticks[0].Time == kGanttMsPerDay;
    for (std::size_t i = 0; i < ticks.size(); ++i) {
        double x = X(ticks[i].Time);
        fCanvas.Line({x, fRowsTop}, {x, fRowsBottom + 1.0}, grid);
        if (i % std::max<std::size_t>(every, 1) != 0) continue;
        if (dayCells) {
            if (ticks[i].Time >= fTo) continue;
            x = (x + X(ticks[i].Time + kGanttMsPerDay)) / 2;
        }
        fCanvas.Text({x, fRowsBottom + 1.5}, ticks[i].Label, label);
        if (fChart.TopAxis)
            fCanvas.Text(
                {x, fRowsTop - 1.0}, ticks[i].Label,
                {.Height = kAxisTextMM, .Horizontal = TChartAlign::caCenter, .Vertical = TChartAlign::caEnd});
    }
    if (fChart.FromPlantUML && !fChart.Undated && fTo - fFrom <= 400 * kGanttMsPerDay) DrawMonths();
}

// The months over a project's days, each named where it starts (the first at the left edge).
void TGanttDrawer::DrawMonths() {
    const TChartTextStyle style{.Height = kAxisTextMM + 0.5f, .Bold = true, .Vertical = TChartAlign::caEnd};
    const double y = fRowsTop - kAxisHeightMM - 0.5;
    TGanttCivil c = GanttToCivil(fFrom);
    for (TGanttTime month = fFrom; month < fTo;) {
        fCanvas.Text({X(month) + 0.8, y}, GanttStrftime(month, "%B %Y"), style);
        c.Day = 1;
        c.Month += 1;
        month = GanttFromCivil({c.Year, c.Month, 1});
        if (month < fTo)
            fCanvas.Line({X(month), y - 4.0}, {X(month), fRowsTop},
                         {.Fill = std::nullopt, .Stroke = 0xFF808080u});
    }
}

void TGanttDrawer::DrawOutsideText(const std::string& text, double left, double right, double middleY) {
    const double width = fCanvas.Measure(text, {.Height = kTaskTextMM}).Width;
    // Beside the bar on the right, unless that runs far past the axis; then on the left.
    if (right + kTextGapMM + width <= fChartLeft + fChartWidth + kOverhangMM ||
        left - kTextGapMM - width < fChartLeft) {
        fCanvas.Text({right + kTextGapMM, middleY}, text,
                     {.Height = kTaskTextMM, .Vertical = TChartAlign::caCenter});
        fRight = std::max(fRight, right + kTextGapMM + width);
    } else {
        fCanvas.Text(
            {left - kTextGapMM, middleY}, text,
            {.Height = kTaskTextMM, .Horizontal = TChartAlign::caEnd, .Vertical = TChartAlign::caCenter});
    }
}

void TGanttDrawer::DrawTasks() {
    std::map<std::string, TORXBaseFlow*> boxes;
    for (const auto& [task, rowTop] : fRows) {
        const TTask& t = *task;
        TTaskLook look = LookOf(t, fChart.FromPlantUML);
        if (t.Milestone && fChart.FromPlantUML && !t.Fill) look.Fill = kOpaqueBlack;
        const double barTop = rowTop + (kRowPitchMM - kBarHeightMM) / 2;
        const double middleY = barTop + kBarHeightMM / 2;
        const TChartPaint paint{.Fill = look.Fill, .Stroke = look.Stroke, .PenMM = 0.3f};
        std::string caption = t.Resources.empty() ? t.Text : t.Text + " " + t.Resources;
        if (t.Milestone) {
            // Centred on its date (the middle of its span when it has one), as wide as a bar is high.
            const double centre = (X(t.Start) + X(t.End)) / 2;
            TORXBaseFlow* box =
                fCanvas.Box({centre - kBarHeightMM / 2, barTop, kBarHeightMM, kBarHeightMM, true},
                            TQVLFlowType::ftDecision, "", paint, t.Id);
            boxes[t.Id] = box;
            DrawOutsideText(caption, centre - kBarHeightMM / 2, centre + kBarHeightMM / 2, middleY);
            continue;
        }
        const double left = X(t.Start);
        const double right = std::max(X(t.DrawEnd), left + 0.5);
        const bool fits = fCanvas.Measure(caption, {.Height = kTaskTextMM}).Width <=
                          FlowTextArea(TQVLFlowType::ftProcess, {right - left, kBarHeightMM}).Width;
        TORXBaseFlow* box = fCanvas.Box({left, barTop, right - left, kBarHeightMM, true},
                                        TQVLFlowType::ftProcess, fits ? caption : "", paint, t.Id);
        if (box != nullptr) {
            box->SetFontHeight(kTaskTextMM);
            if (look.Text != kOpaqueBlack) box->SetFontColor(look.Text);
        }
        boxes[t.Id] = box;
        if (!fits) DrawOutsideText(caption, left, right, middleY);
        if (t.Completed > 0) {
            // Progress as a strip along the bar's foot, the share done.
            const double done = (right - left) * std::min(t.Completed, 100) / 100.0;
            fCanvas.Rect({left, barTop + kBarHeightMM - 1.2, done, 1.2, true},
                         {.Fill = 0xFF6C6CA8u, .Stroke = 0xFF6C6CA8u});
        }
        if (fNoteTops.contains(&t)) {
            double noteTop = fNoteTops[&t];
            for (const auto& note : fChart.Notes)
                if (fChart.FindTask(note.TaskId) == &t) {
                    const TLayoutSize size = NoteSize(fCanvas, note.Text);
                    TORXBaseFlow* noteBox =
                        fCanvas.Box({left, noteTop, size.Width, size.Height, true}, TQVLFlowType::ftDocument,
                                    note.Text, {.Fill = 0xFFFBFB77u, .Stroke = 0xFFA80036u});
                    if (noteBox != nullptr) noteBox->SetFontHeight(kTaskTextMM);
                    fRight = std::max(fRight, left + size.Width);
                    noteTop += size.Height + 1.0;
                }
        }
    }
    for (const auto& link : fChart.Links) {
        const auto from = boxes.find(link.From);
        const auto to = boxes.find(link.To);
        if (from != boxes.end() && to != boxes.end() && from->second != nullptr && to->second != nullptr)
            fCanvas.Link(*from->second, *to->second,
                         {.Fill = std::nullopt, .Stroke = kLinkColor, .PenMM = 0.3f});
    }
}

// Vertical markers over the bars, named under the axis.
double TGanttDrawer::DrawMarkers() {
    double below = 0;
    for (const auto& s : fChart.Sections)
        for (const TTask& t : s.Tasks) {
            if (!IsVert(t)) continue;
            const double x = X(t.Start);
            fCanvas.Line({x, fRowsTop}, {x, fRowsBottom + kAxisHeightMM},
                         {.Fill = std::nullopt, .Stroke = kVert, .PenMM = 0.5f});
            const TChartTextStyle style{
                .Height = kTaskTextMM, .Color = kVert, .Horizontal = TChartAlign::caCenter};
            fCanvas.Text({x, fRowsBottom + kAxisHeightMM + 0.5}, t.Text, style);
            below = std::max(below, fCanvas.Measure(t.Text, style).Height + 1.0);
        }
    return below;
}

TLayoutSize TGanttDrawer::Draw() {
    Measure();
    DrawBands();
    DrawExcludedDays();
    DrawAxis();
    DrawTasks();
    const double markers = DrawMarkers();
    if (fChart.ShowToday && fChart.Today >= fFrom && fChart.Today <= fTo) {
        const double x = X(fChart.Today);
        fCanvas.Line({x, fRowsTop - (fChart.TopAxis ? kAxisHeightMM : 0.0)}, {x, fRowsBottom + kAxisHeightMM},
                     {.Fill = std::nullopt, .Stroke = fChart.TodayColor.value_or(kToday), .PenMM = 0.5f});
    }
    return {fRight - fOrigin.X, fRowsBottom + kAxisHeightMM + markers - fOrigin.Y};
}

}  // namespace

TLayoutSize DrawGanttChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    return TGanttDrawer(aCanvas, static_cast<const TQVLGanttChart&>(aChart), aOrigin).Draw();
}

}  // namespace Orvex
