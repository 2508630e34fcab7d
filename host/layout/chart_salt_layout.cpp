// A salt wireframe: every grid lays its cells out in columns as wide as their widest cell and rows as
// tall as their tallest, then draws its lines (outline, every cell, columns or rows) and each widget in
// its cell: buttons as boxes, fields as white boxes, checkboxes and radios with their mark, droplists with
// their arrow, trees indented by level, tabs and menus as rows of entries, separators across the grid.
#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "host/layout/chart_layout.h"
#include "orvex/diagrams/chart_salt.h"

namespace Orvex {
namespace {

using TWidget = TQVLSaltChart::TWidget;

constexpr double kPadMM = 1.5;     // inside each cell
constexpr double kMarkMM = 3.2;    // checkbox and radio size
constexpr double kIndentMM = 5.0;  // per tree level
constexpr double kMinFieldMM = 18.0;
constexpr double kSeparatorMM = 3.0;
const TAlphaColor kLine = Qvl::Utils::AlphaColor(0x55, 0x5B, 0x6E);
const TAlphaColor kButtonFill = Qvl::Utils::AlphaColor(0xEE, 0xEF, 0xF3);
const TAlphaColor kTitleFill = Qvl::Utils::AlphaColor(0xFF, 0xFF, 0xFF);

TChartPaint Outline(std::optional<TAlphaColor> fill = std::nullopt) {
    return {.Fill = fill, .Stroke = kLine};
}

class TSaltDrawer {
  public:
    explicit TSaltDrawer(TChartCanvas& canvas) : fCanvas(canvas) {}

    TLayoutSize Size(const TWidget& w) const {
        const TLayoutSize text = fCanvas.Measure(w.Text.empty() ? " " : w.Text);
        if (w.Kind == "grid") return GridLayout(w).Size;
        if (w.Kind == "tree") {
            TLayoutSize out{0, 0};
            for (const TWidget& item : w.Children) {
                const TLayoutSize s = fCanvas.Measure(ItemText(item));
                out.Width = std::max(out.Width, kIndentMM * (item.Level - 1) + s.Width + 2 * kPadMM);
                out.Height += s.Height + kPadMM;
            }
            return {out.Width, out.Height + kPadMM};
        }
        if (w.Kind == "tabs" || w.Kind == "menu") {
            double width = 0;
            for (const std::string& item : w.Items) width += fCanvas.Measure(item).Width + 4 * kPadMM;
            return {width, text.Height + 2 * kPadMM};
        }
        if (w.Kind == "separator") return {0, kSeparatorMM};
        if (w.Kind == "empty") return {kPadMM, kPadMM};
        if (w.Kind == "checkbox" || w.Kind == "radio")
            return {kMarkMM + kPadMM + (w.Text.empty() ? 0 : text.Width), std::max(text.Height, kMarkMM)};
        if (w.Kind == "field") {
            const double written = fCanvas.Measure(std::string(static_cast<std::size_t>(w.Width), 'n')).Width;
            return {std::max({kMinFieldMM, text.Width, written}) + 2 * kPadMM, text.Height + kPadMM};
        }
        if (w.Kind == "button") return {text.Width + 4 * kPadMM, text.Height + kPadMM};
        if (w.Kind == "droplist") return {text.Width + 2 * kPadMM + 5, text.Height + kPadMM};
        return {text.Width, text.Height};
    }

    void Draw(const TWidget& w, const TLayoutBox& cell) {
        const TLayoutSize size = Size(w);
        // Widgets stand centred in the height of their row, so a label lines up with its field.
        const TLayoutBox own{cell.X, cell.Y + std::max(0.0, (cell.Height - size.Height) / 2), size.Width,
                             size.Height, true};
        const TChartTextStyle middle{.Vertical = TChartAlign::caCenter};
        if (w.Kind == "grid") {
            DrawGrid(w, cell);
        } else if (w.Kind == "tree") {
            DrawTree(w, cell);
        } else if (w.Kind == "tabs" || w.Kind == "menu") {
            DrawEntries(w, cell);
        } else if (w.Kind == "separator") {
            const double y = cell.Y + cell.Height / 2;
            fCanvas.Line({cell.X, y}, {cell.Right(), y},
                         {.Fill = std::nullopt, .Stroke = kLine, .Dashed = w.Border == ".."});
            if (w.Border == "==") fCanvas.Line({cell.X, y + 0.7}, {cell.Right(), y + 0.7}, Outline());
        } else if (w.Kind == "button") {
            fCanvas.Box(own, TQVLFlowType::ftProcess, w.Text, Outline(kButtonFill));
        } else if (w.Kind == "field") {
            fCanvas.Rect(own, Outline(kOpaqueWhite));
            fCanvas.Text({own.X + kPadMM, own.Center().Y}, w.Text, middle);
        } else if (w.Kind == "droplist") {
            fCanvas.Rect(own, Outline(kOpaqueWhite));
            fCanvas.Text({own.X + kPadMM, own.Center().Y}, w.Text, middle);
            const double ax = own.Right() - 3.5, ay = own.Center().Y;
            fCanvas.Polygon({{ax - 1.3, ay - 0.7}, {ax + 1.3, ay - 0.7}, {ax, ay + 0.8}}, Outline());
        } else if (w.Kind == "checkbox" || w.Kind == "radio") {
            DrawMark(w, own);
        } else if (w.Kind == "text") {
            fCanvas.Text({own.X, own.Center().Y}, w.Text, middle);
        }
    }

  private:
    struct TGrid {
        std::vector<double> Widths;   // per column
        std::vector<double> Heights;  // per row
        double Inset = 0;             // around the cells: room for a border
        double TitleHeight = 0;
        TLayoutSize Size;
    };

    TGrid GridLayout(const TWidget& grid) const {
        TGrid out;
        int cols = 0, rows = 0;
        for (const TWidget& c : grid.Children) {
            cols = std::max(cols, c.Col + c.ColSpan);
            rows = std::max(rows, c.Row + 1);
        }
        out.Widths.assign(static_cast<std::size_t>(cols), 0);
        out.Heights.assign(static_cast<std::size_t>(rows), 0);
        for (const TWidget& c : grid.Children) {
            const TLayoutSize s = Size(c);
            out.Heights[static_cast<std::size_t>(c.Row)] =
                std::max(out.Heights[static_cast<std::size_t>(c.Row)], s.Height + 2 * kPadMM);
            if (c.ColSpan == 1)
                out.Widths[static_cast<std::size_t>(c.Col)] =
                    std::max(out.Widths[static_cast<std::size_t>(c.Col)], s.Width + 2 * kPadMM);
        }
        // A cell spanning several columns widens the last of them when they are too narrow together.
        for (const TWidget& c : grid.Children) {
            if (c.ColSpan == 1) continue;
            const auto first = static_cast<std::size_t>(c.Col),
                       last = first + static_cast<std::size_t>(c.ColSpan) - 1;
            const double have =
                std::accumulate(out.Widths.begin() + static_cast<std::ptrdiff_t>(first),
                                out.Widths.begin() + static_cast<std::ptrdiff_t>(last) + 1, 0.0);
            out.Widths[last] += std::max(0.0, Size(c).Width + 2 * kPadMM - have);
        }
        out.Inset = grid.Border.empty() ? 0 : kPadMM;
        out.TitleHeight = grid.Title.empty() ? 0 : fCanvas.Measure(grid.Title).Height + kPadMM;
        out.Size = {
            std::accumulate(out.Widths.begin(), out.Widths.end(), 0.0) + 2 * out.Inset,
            std::accumulate(out.Heights.begin(), out.Heights.end(), 0.0) + 2 * out.Inset + out.TitleHeight};
        return out;
    }

    void DrawGrid(const TWidget& grid, const TLayoutBox& cell) {
        const TGrid layout = GridLayout(grid);
        const double width = std::max(layout.Size.Width, cell.Width);
        // A grid in a wider cell gives the extra room to its last column.
        std::vector<double> widths = layout.Widths;
        if (!widths.empty()) widths.back() += width - layout.Size.Width;
        const double left = cell.X + layout.Inset;
        const double top = cell.Y + layout.Inset + layout.TitleHeight;
        std::vector<double> xs{left}, ys{top};
        for (const double w : widths) xs.push_back(xs.back() + w);
        for (const double h : layout.Heights) ys.push_back(ys.back() + h);
        const TLayoutBox frame{cell.X, cell.Y + layout.TitleHeight / 2, width,
                               layout.Size.Height - layout.TitleHeight / 2, true};
        if (grid.Border == "+" || grid.Border == "#") fCanvas.Rect(frame, Outline());
        if (!grid.Title.empty()) {
            const TLayoutSize t = fCanvas.Measure(grid.Title);
            fCanvas.Rect({cell.X + 2, cell.Y, t.Width + 2, t.Height, true},
                         {.Fill = kTitleFill, .Stroke = kTitleFill});
            fCanvas.Text({cell.X + 3, cell.Y}, grid.Title);
        }
        if (grid.Border == "#" || grid.Border == "!")
            for (std::size_t i = 1; i + 1 < xs.size(); ++i)
                fCanvas.Line({xs[i], ys.front()}, {xs[i], ys.back()}, Outline());
        if (grid.Border == "#" || grid.Border == "-")
            for (std::size_t i = 1; i + 1 < ys.size(); ++i)
                fCanvas.Line({xs.front(), ys[i]}, {xs.back(), ys[i]}, Outline());
        for (const TWidget& c : grid.Children) {
            const auto col = static_cast<std::size_t>(c.Col), row = static_cast<std::size_t>(c.Row);
            // A separator alone on its row runs across the whole grid.
            const bool across = c.Kind == "separator" && RowCells(grid, c.Row) == 1;
            const double x0 = across ? xs.front() : xs[col];
            const double x1 =
                across ? xs.back() : xs[std::min(col + static_cast<std::size_t>(c.ColSpan), xs.size() - 1)];
            Draw(c, {x0 + kPadMM, ys[row] + kPadMM, x1 - x0 - 2 * kPadMM, ys[row + 1] - ys[row] - 2 * kPadMM,
                     true});
        }
    }

    static int RowCells(const TWidget& grid, int row) {
        return static_cast<int>(std::count_if(grid.Children.begin(), grid.Children.end(),
                                              [row](const TWidget& c) { return c.Row == row; }));
    }

    static std::string ItemText(const TWidget& item) {
        std::string text = item.Text;
        for (const std::string& column : item.Items) text += "    " + column;
        return text;
    }

    void DrawTree(const TWidget& tree, const TLayoutBox& cell) {
        double y = cell.Y + kPadMM;
        for (const TWidget& item : tree.Children) {
            const TLayoutSize s = fCanvas.Measure(ItemText(item));
            const double x = cell.X + kPadMM + kIndentMM * (item.Level - 1);
            if (item.Level > 1)  // a short branch from the parent's column
                fCanvas.Line({x - kIndentMM + 1.5, y + s.Height / 2}, {x - 0.8, y + s.Height / 2}, Outline());
            fCanvas.Text({x, y}, ItemText(item));
            y += s.Height + kPadMM;
        }
    }

    void DrawEntries(const TWidget& w, const TLayoutBox& cell) {
        double x = cell.X;
        const double height = Size(w).Height;
        for (std::size_t i = 0; i < w.Items.size(); ++i) {
            const double width = fCanvas.Measure(w.Items[i]).Width + 4 * kPadMM;
            if (w.Kind == "tabs")
                fCanvas.Box({x, cell.Y, width, height, true}, TQVLFlowType::ftProcess, w.Items[i],
                            Outline(i == 0 ? kOpaqueWhite : kButtonFill));
            else
                fCanvas.Text({x + 2 * kPadMM, cell.Y + height / 2}, w.Items[i],
                             {.Vertical = TChartAlign::caCenter});
            x += width;
        }
        fCanvas.Line({cell.X, cell.Y + height}, {std::max(x, cell.Right()), cell.Y + height}, Outline());
    }

    void DrawMark(const TWidget& w, const TLayoutBox& own) {
        const double cy = own.Center().Y;
        const TLayoutBox mark{own.X, cy - kMarkMM / 2, kMarkMM, kMarkMM, true};
        if (w.Kind == "radio") {
            fCanvas.Circle(mark.Center(), kMarkMM / 2, Outline(kOpaqueWhite));
            if (w.Checked) fCanvas.Circle(mark.Center(), kMarkMM / 4, {.Fill = kLine, .Stroke = kLine});
        } else {
            fCanvas.Rect(mark, Outline(kOpaqueWhite));
            if (w.Checked)
                fCanvas.Polyline({{mark.X + 0.6, cy},
                                  {mark.X + 1.3, mark.Bottom() - 0.6},
                                  {mark.Right() - 0.5, mark.Y + 0.5}},
                                 {.Fill = std::nullopt, .Stroke = kLine, .PenMM = 0.4f});
        }
        fCanvas.Text({mark.Right() + kPadMM, cy}, w.Text, {.Vertical = TChartAlign::caCenter});
    }

    TChartCanvas& fCanvas;
};

}  // namespace

TLayoutSize DrawSaltChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& salt = static_cast<const TQVLSaltChart&>(aChart);
    TSaltDrawer drawer(aCanvas);
    const TLayoutSize size = drawer.Size(salt.Root);
    drawer.Draw(salt.Root, {aOrigin.X, aOrigin.Y, size.Width, size.Height, true});
    return size;
}

}  // namespace Orvex
