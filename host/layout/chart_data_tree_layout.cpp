// A JSON or YAML document as a tree of tables: every object or array is a table of rows (key and value;
// array rows have no key), a nested value leaves its row's value cell empty and a line joins that cell to
// the value's own table to the right. Tables of one parent stack downwards from the row that holds them.
#include <algorithm>
#include <string>
#include <vector>

#include "host/layout/chart_layout.h"
#include "orvex/diagrams/chart_data_tree.h"
#include "orvex/items/link_items.h"

namespace Orvex {
namespace {

constexpr double kCellPadMM = 2.5;
constexpr double kMinValueWidthMM = 8.0;
constexpr double kTableGapMM = 14.0;    // from a table to the tables of its rows
constexpr double kStackGapMM = 5.0;     // between tables stacked under one parent
constexpr std::int16_t kRightSide = 1;  // the link points of a flow element, clockwise from the top
constexpr std::int16_t kLeftSide = 3;
const TAlphaColor kKeyFill = Qvl::Utils::AlphaColor(0xE8, 0xEC, 0xF6, 0xFF);
const TAlphaColor kHighlightFill = Qvl::Utils::AlphaColor(0xFF, 0xF2, 0x9E, 0xFF);
const TAlphaColor kLineColor = Qvl::Utils::AlphaColor(0x55, 0x5B, 0x6E, 0xFF);

struct TRow {
    std::string Key;    // empty in an array's table
    std::string Value;  // the scalar as written; empty when the value has a table of its own
    std::string Path;   // keys from the root, joined by "/": the row's id in the placement
    int Child = -1;     // the index of the value's table
    bool Highlighted = false;
};

struct TTable {
    bool HasKeys = true;
    std::vector<TRow> Rows;
    double KeyWidth = 0;
    double ValueWidth = 0;
    double RowHeight = 0;
    TLayoutBox Box;
};

std::string ScalarText(const TJSON& value) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_object() && value.empty()) return "{}";
    if (value.is_array() && value.empty()) return "[]";
    return value.dump();
}

bool HasTable(const TJSON& value) {
    return (value.is_object() || value.is_array()) && !value.empty();
}

class TTreeBuilder {
  public:
    TTreeBuilder(TChartCanvas& canvas, const TQVLDataTreeChart& chart) : fCanvas(canvas), fChart(chart) {}

    std::vector<TTable> Build() {
        Add(fChart.Root, {});
        return std::move(fTables);
    }

  private:
    // Adds the table of value (or a one-row table for a scalar root) and returns its index.
    int Add(const TJSON& value, const std::vector<std::string>& path) {
        const auto index = static_cast<int>(fTables.size());
        fTables.emplace_back();
        TTable table;
        table.HasKeys = value.is_object();
        if (!HasTable(value)) {
            table.HasKeys = false;
            table.Rows.push_back({"", ScalarText(value), "", -1, false});
        }
        std::size_t n = 0;
        if (HasTable(value))
            for (auto it = value.begin(); it != value.end(); ++it, ++n) {
                std::vector<std::string> rowPath = path;
                rowPath.push_back(value.is_object() ? it.key() : std::to_string(n));
                TRow row{value.is_object() ? it.key() : "", "", JoinPath(rowPath), -1,
                         IsHighlighted(rowPath)};
                if (HasTable(*it))
                    row.Child = Add(*it, rowPath);
                else
                    row.Value = ScalarText(*it);
                table.Rows.push_back(std::move(row));
            }
        Measure(table);
        fTables[static_cast<std::size_t>(index)] = std::move(table);
        return index;
    }

    void Measure(TTable& table) const {
        table.ValueWidth = kMinValueWidthMM;
        table.RowHeight = fCanvas.Measure("Ag").Height + kCellPadMM;
        for (const TRow& row : table.Rows) {
            const TLayoutSize key = fCanvas.Measure(row.Key, {.Bold = true});
            const TLayoutSize value = fCanvas.Measure(row.Value);
            if (table.HasKeys) table.KeyWidth = std::max(table.KeyWidth, key.Width + 2 * kCellPadMM);
            table.ValueWidth = std::max(table.ValueWidth, value.Width + 2 * kCellPadMM);
            table.RowHeight = std::max({table.RowHeight, key.Height + kCellPadMM, value.Height + kCellPadMM});
        }
        table.Box.Width = table.KeyWidth + table.ValueWidth;
        table.Box.Height = table.RowHeight * static_cast<double>(table.Rows.size());
    }

    bool IsHighlighted(const std::vector<std::string>& path) const {
        return std::find(fChart.Highlights.begin(), fChart.Highlights.end(), path) != fChart.Highlights.end();
    }

    static std::string JoinPath(const std::vector<std::string>& path) {
        std::string out;
        for (const std::string& key : path) out += (out.empty() ? "" : "/") + key;
        return out;
    }

    TChartCanvas& fCanvas;
    const TQVLDataTreeChart& fChart;
    std::vector<TTable> fTables;
};

// Places table i at (x, y) and its rows' tables to its right; returns the lowest bottom used.
double Place(std::vector<TTable>& tables, std::size_t i, double x, double y) {
    TTable& table = tables[i];
    table.Box.X = x;
    table.Box.Y = y;
    table.Box.Placed = true;
    const double childX = x + table.Box.Width + kTableGapMM;
    double nextY = y;
    double bottom = y + table.Box.Height;
    for (std::size_t r = 0; r < table.Rows.size(); ++r) {
        const int child = tables[i].Rows[r].Child;
        if (child < 0) continue;
        const double rowTop = y + tables[i].RowHeight * static_cast<double>(r);
        const double childBottom =
            Place(tables, static_cast<std::size_t>(child), childX, std::max(nextY, rowTop));
        nextY = childBottom + kStackGapMM;
        bottom = std::max(bottom, childBottom);
    }
    return bottom;
}

}  // namespace

TLayoutSize DrawDataTreeChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& chart = static_cast<const TQVLDataTreeChart&>(aChart);
    std::vector<TTable> tables = TTreeBuilder(aCanvas, chart).Build();
    Place(tables, 0, aOrigin.X, aOrigin.Y);

    // Drawn parents first, so every table's first cell exists when the line to it is drawn.
    std::vector<TORXBaseFlow*> firstCell(tables.size(), nullptr);
    std::vector<std::vector<TORXBaseFlow*>> valueCells(tables.size());
    TLayoutSize extent;
    for (std::size_t t = 0; t < tables.size(); ++t) {
        const TTable& table = tables[t];
        for (std::size_t r = 0; r < table.Rows.size(); ++r) {
            const TRow& row = table.Rows[r];
            const double top = table.Box.Y + table.RowHeight * static_cast<double>(r);
            const TAlphaColor plain = row.Highlighted ? kHighlightFill : kOpaqueWhite;
            TORXBaseFlow* keyCell = nullptr;
            if (table.HasKeys)
                keyCell = aCanvas.Box(
                    {table.Box.X, top, table.KeyWidth, table.RowHeight, true}, TQVLFlowType::ftProcess,
                    row.Key, {.Fill = row.Highlighted ? kHighlightFill : kKeyFill, .Stroke = kLineColor},
                    row.Path);
            TORXBaseFlow* valueCell =
                aCanvas.Box({table.Box.X + table.KeyWidth, top, table.ValueWidth, table.RowHeight, true},
                            TQVLFlowType::ftProcess, row.Value, {.Fill = plain, .Stroke = kLineColor},
                            table.HasKeys || row.Path.empty() ? std::string() : row.Path);
            if (r == 0) firstCell[t] = keyCell != nullptr ? keyCell : valueCell;
            valueCells[t].push_back(valueCell);
        }
        extent.Width = std::max(extent.Width, table.Box.Right() - aOrigin.X);
        extent.Height = std::max(extent.Height, table.Box.Bottom() - aOrigin.Y);
    }
    for (std::size_t t = 0; t < tables.size(); ++t)
        for (std::size_t r = 0; r < tables[t].Rows.size(); ++r) {
            const int child = tables[t].Rows[r].Child;
            const TORXBaseFlow* from = valueCells[t][r];
            const TORXBaseFlow* to = child < 0 ? nullptr : firstCell[static_cast<std::size_t>(child)];
            if (from == nullptr || to == nullptr) continue;
            // A curve from the row's right side to the table's left side: lines that leave neighbouring rows
            // for tables further down stay apart.
            if (TORXBaseLink* link =
                    aCanvas.Link(*from, *to, {.Fill = std::nullopt, .Stroke = kLineColor}, false)) {
                link->SetLinkType(TQVLinkType::ltCurve);
                link->Bind(from, kRightSide, to, kLeftSide);
            }
        }
    return extent;
}

}  // namespace Orvex
