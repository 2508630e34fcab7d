// A treemap: every section a framed rectangle with its name in a header band, holding its children;
// every leaf a filled rectangle with its name and value, its area proportional to its value. The top
// sections take distinct colours that their leaves share; a class's fill, stroke and text colour win.
#include <algorithm>

#include "host/layout/chart_layout.h"
#include "host/layout/squarify.h"
#include "orvex/diagrams/chart_treemap.h"

namespace Orvex {
namespace {

using TNode = TQVLTreemapChart::TNode;
constexpr double kWidthMM = 170.0;
constexpr double kHeightMM = 110.0;
constexpr double kHeaderMM = 6.0;
constexpr double kPaddingMM = 1.5;
constexpr float kLabelHeight = 3.0f;
constexpr float kSmallestLabel = 1.8f;

struct TTreemapDrawer {
    TChartCanvas& Canvas;
    const TQVLTreemapChart& Chart;

    TQVLDiagStyle StyleOf(const TNode& node) const {
        const auto found = Chart.Classes.find(node.Class);
        return found == Chart.Classes.end() ? TQVLDiagStyle{} : found->second;
    }

    // A text shrunk until it fits aWidth (down to a readable size); empty when even that does not fit.
    void FittedText(TLayoutPoint at, const std::string& text, double width, double height,
                    TChartTextStyle style) {
        while (style.Height > kSmallestLabel && Canvas.Measure(text, style).Width > width)
            style.Height -= 0.2f;
        const TLayoutSize size = Canvas.Measure(text, style);
        if (size.Width <= width && size.Height <= height) Canvas.Text(at, text, style);
    }

    void Place(const std::vector<TNode>& nodes, const TLayoutBox& box, std::size_t depth,
               std::size_t colour) {
        std::vector<double> weights;
        for (const TNode& n : nodes) weights.push_back(n.Total());
        const std::vector<TLayoutBox> tiles = Squarify(weights, box);
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            if (tiles[i].Width <= 0 || tiles[i].Height <= 0) continue;
            const std::size_t c = depth == 0 ? i : colour;
            if (nodes[i].Leaf)
                Leaf(nodes[i], tiles[i], c);
            else
                Section(nodes[i], tiles[i], depth, c);
        }
    }

    void Section(const TNode& node, const TLayoutBox& box, std::size_t depth, std::size_t colour) {
        const TQVLDiagStyle style = StyleOf(node);
        const TAlphaColor base = ChartSeriesColor(colour);
        // Deeper sections are lighter versions of their top section's colour.
        const TAlphaColor tint = depth == 0 ? base : ((base & 0x00FFFFFFu) | 0x66000000u);
        Canvas.Rect(
            box,
            {.Fill = style.Fill.value_or(tint), .Stroke = style.Stroke.value_or(0xFF808080u), .PenMM = 0.3f});
        const TAlphaColor textColor = style.TextColor.value_or(kOpaqueBlack);
        FittedText(
            {box.X + kPaddingMM, box.Y + kHeaderMM / 2}, node.Name + "  " + ChartNumber(node.Total()),
            box.Width - 2 * kPaddingMM, kHeaderMM,
            {.Height = kLabelHeight, .Bold = true, .Color = textColor, .Vertical = TChartAlign::caCenter});
        const TLayoutBox inner{box.X + kPaddingMM, box.Y + kHeaderMM, box.Width - 2 * kPaddingMM,
                               box.Height - kHeaderMM - kPaddingMM, true};
        if (inner.Width > 0 && inner.Height > 0) Place(node.Children, inner, depth + 1, colour);
    }

    void Leaf(const TNode& node, const TLayoutBox& box, std::size_t colour) {
        const TQVLDiagStyle style = StyleOf(node);
        Canvas.Rect(box, {.Fill = style.Fill.value_or(ChartSeriesColor(colour)),
                          .Stroke = style.Stroke.value_or(kOpaqueWhite),
                          .PenMM = 0.4f});
        FittedText(box.Center(), node.Name + "\n" + ChartNumber(node.Value), box.Width - 1, box.Height - 1,
                   {.Height = kLabelHeight,
                    .Color = style.TextColor.value_or(kOpaqueBlack),
                    .Horizontal = TChartAlign::caCenter,
                    .Vertical = TChartAlign::caCenter});
    }
};

}  // namespace

TLayoutSize DrawTreemapChart(TChartCanvas& aCanvas, const TQVLChart& aChart, TLayoutPoint aOrigin) {
    const auto& chart = static_cast<const TQVLTreemapChart&>(aChart);
    TTreemapDrawer drawer{aCanvas, chart};
    drawer.Place(chart.Roots, {aOrigin.X, aOrigin.Y, kWidthMM, kHeightMM, true}, 0, 0);
    return {kWidthMM, kHeightMM};
}

}  // namespace Orvex
