#include "host/editor/edit_tool_catalog.h"

namespace Orvex::Host {

const std::vector<TEditTool>& EditTools() {
    using A = TQVLEdAction;
    static const std::vector<TEditTool> kTools = {
        {A::eaSelection, "select", "select", "Select", 'v'},
        {A::eaMove, "move", "select", "Move", 'm'},
        {A::eaEdText, "edit-text", "select", "Edit text", 'i'},
        {A::eaMoveText, "move-text", "select", "Move text", 0},
        {A::eaPoint, "point", "lines", "Point", 0},
        {A::eaLine, "line", "lines", "Line", 'l'},
        {A::eaArrowLine, "arrow-line", "lines", "Arrow", 'a'},
        {A::eaPolyline, "polyline", "lines", "Polyline", 'p'},
        {A::eaArc, "arc", "lines", "Arc", 0},
        {A::eaBezier, "bezier", "lines", "Bézier", 'b'},
        {A::eaRectangle, "rectangle", "shapes", "Rectangle", 'r'},
        {A::eaPolygon, "polygon", "shapes", "Polygon", 'g'},
        {A::eaEllipse, "ellipse", "shapes", "Ellipse", 'e'},
        {A::eaCirclePR, "circle", "shapes", "Circle", 'c'},
        {A::eaCircle2P, "circle-2p", "shapes", "Circle 2P", 0},
        {A::eaCircle3P, "circle-3p", "shapes", "Circle 3P", 0},
        {A::eaSectorPR, "sector", "shapes", "Sector", 0},
        {A::eaSector2P, "sector-2p", "shapes", "Sector 2P", 0},
        {A::eaSector3P, "sector-3p", "shapes", "Sector 3P", 0},
        {A::eaText, "text", "texts", "Text", 't'},
        {A::eaParagraph, "paragraph", "texts", "Paragraph", 0},
        {A::eaRichText, "rich-text", "texts", "Rich text", 0},
        {A::eaPolyText, "poly-text", "texts", "Text on path", 0},
        {A::eaTable, "table", "texts", "Table", 0},
        {A::eaBarcode, "barcode", "codes", "Barcode", 0},
        {A::eaQRCode, "qr-code", "codes", "QR code", 'q'},
        {A::eaDataMatrix, "data-matrix", "codes", "DataMatrix", 0},
        {A::eaPDF417, "pdf417", "codes", "PDF417", 0},
        {A::eaRank, "rank", "codes", "Rank", 0},
        {A::eaNutriScore, "nutri-score", "codes", "Nutri-Score", 0},
        {A::eaLevel, "level", "codes", "Level", 0},
        {A::eaFlow, "flow", "flow", "Flow element", 'f'},
        {A::eaLink, "link", "flow", "Link", 'k'},
        {A::eaPolyLink, "poly-link", "flow", "Polyline link", 0},
        {A::eaPackage, "package", "flow", "Package", 0},
        {A::eaSymbol, "symbol", "flow", "Symbol", 0},
        {A::eaImage, "image", "flow", "Image", 0},
        {A::eaDim, "dimension", "dimensions", "Linear", 'd'},
        {A::eaDimAng, "dim-angle", "dimensions", "Angle", 0},
        {A::eaDimRad1, "dim-radius", "dimensions", "Radius", 0},
        {A::eaDimRad2, "dim-radius-2", "dimensions", "Radius 2", 0},
        {A::eaDimDia1, "dim-diameter", "dimensions", "Diameter", 0},
        {A::eaDimDia2, "dim-diameter-2", "dimensions", "Diameter 2", 0},
        {A::eaTrim, "trim", "modify", "Trim", 0},
        {A::eaExtend, "extend", "modify", "Extend", 0},
        {A::eaJoin, "join", "modify", "Join", 'j'},
        {A::eaEquidist, "parallel", "modify", "Parallel", 0},
    };
    return kTools;
}

std::optional<TQVLEdAction> EditToolByName(std::string_view aName) {
    for (const auto& tool : EditTools())
        if (tool.Name == aName) return tool.Action;
    return std::nullopt;
}

std::string_view EditToolName(TQVLEdAction aAction) {
    for (const auto& tool : EditTools())
        if (tool.Action == aAction) return tool.Name;
    return {};
}

}  // namespace Orvex::Host
