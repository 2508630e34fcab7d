// The whole document as one SVG 1.1 file: what every exported item writes, in paint order, grouped by
// layer runs. User units are the document's unit, so item coordinates go in unchanged; the physical size
// is the drawing's extent on paper (divided by the drawing scale N of 1:N).
#include <fmt/format.h>

#include <algorithm>

#include "orvex/core/safe_file.h"
#include "orvex/document/document.h"
#include "orvex/items/svg_style.h"

namespace Orvex {

namespace {

bool Exported(const TORXBaseItem& item) {
    const TORXLayer* layer = item.Layer();
    if (layer != nullptr && !layer->fOptions.Contains(TQVLayerOp::lopVisible)) return false;
    return item.Options().Contains(TQVLayerOp::lopVisible) && item.Options().Contains(TQVLayerOp::lopExport);
}

void Grow(TQVLRect& extent, std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom) {
    extent.Left = std::min(extent.Left, left);
    extent.Top = std::min(extent.Top, top);
    extent.Right = std::max(extent.Right, right);
    extent.Bottom = std::max(extent.Bottom, bottom);
}

}  // namespace

std::string TORXBaseLabel::SVG(TQVLExportSVG kind, float scale, bool flag) const {
    const std::int64_t drawScale = std::max<std::int64_t>(1, fMeasure.fDrawScale);
    const double outScale = scale > 0.0f ? static_cast<double>(scale) : 1.0;
    // Pens, fonts and heads are sized on paper; on a 1:N drawing they are N times larger in its units.
    const auto factor = static_cast<float>(drawScale);
    const TQVLUnits unit = fMeasure.fUnits;

    // The label (or page) on paper, grown by everything drawn, ink included. Lines along an axis have no
    // area, so the rectangle grows by their coordinates rather than by union.
    TQVLRect extent(0, 0, fMeasure.fLabelWidth * drawScale, fMeasure.fLabelHeight * drawScale);
    for (const auto& item : fItems) {
        if (!Exported(*item)) continue;
        const TQVLRect& b = item->BoundsRect();
        const std::int64_t pen = static_cast<std::int64_t>(item->PenWidth()) * drawScale / 2;
        Grow(extent, b.Left - pen, b.Top - pen, b.Right + pen, b.Bottom + pen);
        std::int64_t minX = -1, maxX = -1, minY = -1, maxY = -1;
        item->CheckFit(minX, maxX, minY, maxY);
        if (minX != -1 && minY != -1) Grow(extent, minX, minY, maxX, maxY);
    }

    std::vector<std::string> defs;
    std::string groups;
    const TORXLayer* open = nullptr;
    std::vector<std::int32_t> runs(fLayers.size() + 1, 0);
    for (const auto& item : fItems) {
        if (!Exported(*item)) continue;
        std::vector<std::string> body;
        item->WriteSVG(defs, body, kind, factor, flag);
        if (body.empty()) continue;
        if (item->Layer() != open || groups.empty()) {
            if (!groups.empty()) groups += "</g>\n";
            open = item->Layer();
            const std::int32_t index = LayerIdx(open);
            const auto run = ++runs[static_cast<std::size_t>(std::max(index, -1) + 1)];
            // Items of one layer painted apart from each other make several groups; ids stay unique.
            const std::string id =
                run == 1 ? fmt::format("layer{}", index + 1) : fmt::format("layer{}-{}", index + 1, run);
            groups += fmt::format("<g id=\"{}\" data-name=\"{}\">\n", id,
                                  SvgEscape(open ? open->fName : std::string{}));
        }
        for (const auto& line : body) groups += line + "\n";
    }
    if (!groups.empty()) groups += "</g>\n";

    const double widthMM = static_cast<double>(extent.GetWidth()) / static_cast<double>(kBasePerMM) /
                           static_cast<double>(drawScale) * outScale;
    const double heightMM = static_cast<double>(extent.GetHeight()) / static_cast<double>(kBasePerMM) /
                            static_cast<double>(drawScale) * outScale;
    std::string out;
    if (kind == TQVLExportSVG::esFile) out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    out += fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"{}mm\" height=\"{}mm\" "
        "viewBox=\"{} {} {} "
        "{}\">\n",
        SvgNumber(widthMM), SvgNumber(heightMM), SvgLength(extent.Left, unit), SvgLength(extent.Top, unit),
        SvgLength(extent.GetWidth(), unit), SvgLength(extent.GetHeight(), unit));
    if (!fMeasure.fLabelName.empty()) out += "<title>" + SvgEscape(fMeasure.fLabelName) + "</title>\n";
    if (!defs.empty()) {
        out += "<defs>\n";
        for (const auto& d : defs) out += d + "\n";
        out += "</defs>\n";
    }
    if (flag && AlphaOf(fBackSurf.fColor) != 0)
        out += fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"{}/>\n",
                           SvgLength(extent.Left, unit), SvgLength(extent.Top, unit),
                           SvgLength(extent.GetWidth(), unit), SvgLength(extent.GetHeight(), unit),
                           SvgFill(fBackSurf.fColor, true));
    out += groups;
    out += "</svg>\n";
    return out;
}

bool TORXBaseLabel::SaveSVG(const std::string& fileName, TQVLExportSVG kind, float scale, bool flag) const {
    return static_cast<bool>(WriteFileAtomic(fileName, SVG(kind, scale, flag)));
}

}  // namespace Orvex
