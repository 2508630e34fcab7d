// The multi-purpose item's codes: linear barcodes, QR codes and DataMatrix symbols, encoded by zint and
// painted from its vector output, so they stay sharp at any resolution and in PDF.
#include <zint.h>

#include <algorithm>
#include <memory>

#include "host/paint/item_painters.h"
#include "host/paint/pango_text.h"

namespace Orvex::Paint {

namespace {

struct TSymbolDeleter {
    void operator()(zint_symbol* symbol) const { ZBarcode_Delete(symbol); }
};
using TSymbolPtr = std::unique_ptr<zint_symbol, TSymbolDeleter>;

// The item's type number is the encoder's symbology number (20 is Code 128, 55 PDF417, ...); an unknown
// number encodes as Code 128, which takes any text.
int LinearSymbology(std::int64_t type) {
    if (type > 0 && type < 1000 && ZBarcode_ValidID(static_cast<int>(type)) != 0)
        return static_cast<int>(type);
    return BARCODE_CODE128;
}

TSymbolPtr Encode(const TORXBasePoly& item, bool withOptions) {
    TSymbolPtr symbol(ZBarcode_Create());
    if (!symbol) return nullptr;
    switch (item.PolyType()) {
        case TQVLPolyType::poQR:
            symbol->symbology = BARCODE_QRCODE;
            break;
        case TQVLPolyType::poDataMatrix:
            symbol->symbology = BARCODE_DATAMATRIX;
            if (withOptions && item.DMSize() > 0 && item.DMSize() <= 48)
                symbol->option_2 = static_cast<int>(item.DMSize());
            if (withOptions && item.DMShape() == 1) symbol->option_3 = DM_SQUARE;
            break;
        default:
            symbol->symbology = LinearSymbology(item.BarcodeType());
            break;
    }
    symbol->input_mode = UNICODE_MODE;
    symbol->show_hrt = 0;  // the number is painted with the drawing's fonts below
    const std::string& data = item.Data();
    const int status = ZBarcode_Encode_and_Buffer_Vector(
        symbol.get(), reinterpret_cast<const unsigned char*>(data.data()), static_cast<int>(data.size()), 0);
    if (status >= ZINT_ERROR || symbol->vector == nullptr) return nullptr;
    return symbol;
}

void PaintInvalid(const TPainter& p, const TORXBasePoly& item, const TDevBox& box) {
    // A crossed box tells that the data does not fit the symbology.
    cairo_rectangle(p.Cr, box.X, box.Y, box.W, box.H);
    cairo_move_to(p.Cr, box.X, box.Y);
    cairo_line_to(p.Cr, box.X + box.W, box.Y + box.H);
    cairo_move_to(p.Cr, box.X + box.W, box.Y);
    cairo_line_to(p.Cr, box.X, box.Y + box.H);
    StrokePath(p, item.Color(), item.GetPenWidthMM(), TQVLineType::iiSolid);
}

}  // namespace

void PaintCode(const TPainter& p, const TORXBasePoly& item, const TDevBox& box) {
    cairo_save(p.Cr);
    const double cx = box.X + box.W / 2.0;
    const double cy = box.Y + box.H / 2.0;
    RotateAbout(p.Cr, item.Angle(), cx, cy);
    const bool turned = item.Angle() == TQVLAngle::ag90 || item.Angle() == TQVLAngle::ag270;
    const double fw = turned ? box.H : box.W;
    const double fh = turned ? box.W : box.H;
    TDevBox frame{cx - fw / 2.0 + p.MM(item.PaddingX()), cy - fh / 2.0 + p.MM(item.PaddingY()),
                  fw - 2.0 * p.MM(item.PaddingX()), fh - 2.0 * p.MM(item.PaddingY())};
    TSymbolPtr symbol = Encode(item, true);
    if (!symbol) symbol = Encode(item, false);
    if (!symbol || frame.W <= 0.0 || frame.H <= 0.0) {
        PaintInvalid(p, item, frame);
        cairo_restore(p.Cr);
        return;
    }
    const zint_vector& v = *symbol->vector;
    // Stacked and matrix symbologies keep square modules like the QR code; only row symbols stretch.
    const bool linear = item.PolyType() == TQVLPolyType::poBarcode && symbol->rows <= 1;
    TDevBox bars = frame;
    TQVLFont font;
    font.FontColor = item.Color();
    if (linear && item.ShowNumber()) {
        font.FontHeight = static_cast<float>(std::min(3.0, frame.H * 0.25 / p.MM(1.0f)));
        bars.H -= p.MM(font.FontHeight) * 1.2 + p.MM(item.Distance());
    }
    double sx = bars.W / std::max(v.width, 1.0f);
    double sy = bars.H / std::max(v.height, 1.0f);
    double ox = bars.X;
    double oy = bars.Y;
    if (!linear) {
        // Two-dimensional symbols keep square modules, centred in the box.
        sx = sy = std::min(sx, sy);
        ox = bars.X + (bars.W - v.width * sx) / 2.0;
        oy = bars.Y + (bars.H - v.height * sy) / 2.0;
    }
    SetColor(p.Cr, item.Color());
    for (const zint_vector_rect* r = v.rectangles; r != nullptr; r = r->next) {
        if (r->colour != -1) continue;
        cairo_rectangle(p.Cr, ox + r->x * sx, oy + r->y * sy, r->width * sx, r->height * sy);
    }
    cairo_fill(p.Cr);
    if (linear && item.ShowNumber() && bars.H > 0.0) {
        auto layout = MakeLayout(p.Cr, font, p.MM(font.FontHeight), item.Data());
        const TTextExtent e = Extent(layout.get());
        ShowLayout(p.Cr, layout.get(), frame.X + (frame.W - e.Width) / 2.0,
                   bars.Y + bars.H + p.MM(item.Distance()) + e.Ascent, item.Color());
    }
    cairo_restore(p.Cr);
}

}  // namespace Orvex::Paint
