// The whole document as SVG: a page the size of the label in millimetres, holding what the items write.
#include <fmt/format.h>

#include <fstream>

#include "orvex/document/document.h"

namespace Orvex {

std::string TORXBaseLabel::SVG(TQVLExportSVG kind, float scale, bool flag) const {
    std::vector<std::string> defs;
    std::vector<std::string> body;
    for (const auto& item : fItems)
        if (item->Options().Contains(TQVLayerOp::lopExport)) item->WriteSVG(defs, body, kind, scale, flag);
    const double w = static_cast<double>(fMeasure.fLabelWidth) / 1000.0;
    const double h = static_cast<double>(fMeasure.fLabelHeight) / 1000.0;
    std::string out;
    if (kind == TQVLExportSVG::esFile) out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    out += fmt::format(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}mm\" height=\"{1}mm\" viewBox=\"0 0 {0} "
        "{1}\">\n",
        w, h);
    if (!defs.empty()) {
        out += "<defs>\n";
        for (const auto& d : defs) out += d + "\n";
        out += "</defs>\n";
    }
    for (const auto& b : body) out += b + "\n";
    out += "</svg>\n";
    return out;
}

bool TORXBaseLabel::SaveSVG(const std::string& fileName, TQVLExportSVG kind, float scale, bool flag) const {
    std::ofstream file(fileName, std::ios::binary);
    if (!file) return false;
    file << SVG(kind, scale, flag);
    return static_cast<bool>(file);
}

}  // namespace Orvex
