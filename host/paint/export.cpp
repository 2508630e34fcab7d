#include "host/paint/export.h"

#include <cairo-pdf.h>
#include <cairo.h>
#include <fmt/format.h>

#include <cmath>
#include <memory>

#include "host/paint/cairo_label.h"
#include "host/paint/cairo_paint.h"
#include "orvex/core/safe_file.h"
#include "orvex/document/document.h"
#include "orvex/io/json.h"

namespace Orvex {

namespace {

// The drawing as a Cairo document: the document itself when it is one, else a copy through its JSON form.
class TCairoSource {
  public:
    explicit TCairoSource(const TORXBaseLabel& document) {
        fDocument = dynamic_cast<const TORXCairoLabel*>(&document);
        if (fDocument != nullptr) return;
        fCopy = std::make_unique<TORXCairoLabel>();
        fCopy->ReadJson(document.GetJson());
        fDocument = fCopy.get();
    }
    const TORXBaseLabel& Document() const { return *fDocument; }

  private:
    std::unique_ptr<TORXCairoLabel> fCopy;
    const TORXBaseLabel* fDocument = nullptr;
};

std::int64_t DrawScale(const TORXBaseLabel& document) {
    return std::max<std::int64_t>(1, document.Measure().fDrawScale);
}

// Label lengths (base units of the drawing) on paper, in inches.
double PaperInches(std::int64_t base, std::int64_t drawScale) {
    return static_cast<double>(base) / (static_cast<double>(drawScale) * static_cast<double>(kBasePerInch));
}

bool Shows(const TORXBaseItem& item, TQVLDrawState pass) {
    const TQVLayerOp flag = pass == TQVLDrawState::dsPrint    ? TQVLayerOp::lopPrint
                            : pass == TQVLDrawState::dsExport ? TQVLayerOp::lopExport
                                                              : TQVLayerOp::lopVisible;
    if (!item.Options().Contains(TQVLayerOp::lopVisible) || !item.Options().Contains(flag)) return false;
    const TORXLayer* layer = item.Layer();
    return layer == nullptr ||
           (layer->fOptions.Contains(TQVLayerOp::lopVisible) && layer->fOptions.Contains(flag));
}

// The label on paper (N times its size in the units of a 1:N drawing), grown by everything the pass shows,
// pens included, so that nothing drawn is cut off, much as the SVG output grows its view.
TQVLRect Extent(const TORXBaseLabel& document, TQVLDrawState pass) {
    const std::int64_t scale = DrawScale(document);
    TQVLRect extent(0, 0, document.Measure().fLabelWidth * scale, document.Measure().fLabelHeight * scale);
    const auto grow = [&extent](std::int64_t l, std::int64_t t, std::int64_t r, std::int64_t b) {
        extent.Left = std::min(extent.Left, l);
        extent.Top = std::min(extent.Top, t);
        extent.Right = std::max(extent.Right, r);
        extent.Bottom = std::max(extent.Bottom, b);
    };
    for (std::int32_t i = 0; i < document.GetItemsCount(); ++i) {
        const TORXBaseItem& item = *document.GetItem(i);
        if (!Shows(item, pass)) continue;
        const TQVLRect& b = item.BoundsRect();
        const std::int64_t pen = static_cast<std::int64_t>(item.PenWidth()) * scale / 2;
        // The bounds rather than CheckFit: some kinds keep unused points at the origin, which would widen
        // every picture by half a pen.
        if (b.Right > b.Left || b.Bottom > b.Top)
            grow(b.Left - pen, b.Top - pen, b.Right + pen, b.Bottom + pen);
    }
    return extent;
}

TQVLDrawState ScreenPass(const TQVLRasterOptions& options) {
    return options.Pass == TQVLDrawState::dsPrint ? TQVLDrawState::dsExport : options.Pass;
}

TQVLRect PictureExtent(const TORXBaseLabel& document, const TQVLRasterOptions& options) {
    return options.Region ? *options.Region : Extent(document, ScreenPass(options));
}

void PaintBackground(const TORXBaseLabel& document, cairo_t* cr, double left, double top, double right,
                     double bottom) {
    const TORXBackSurf& back = document.BackSurf();
    if (back.fToColor != back.fColor) {
        cairo_pattern_t* gradient = cairo_pattern_create_linear(0.0, top, 0.0, bottom);
        for (const auto& [offset, color] : {std::pair{0.0, back.fColor}, std::pair{1.0, back.fToColor}})
            cairo_pattern_add_color_stop_rgba(gradient, offset, RedOf(color) / 255.0, GreenOf(color) / 255.0,
                                              BlueOf(color) / 255.0, AlphaOf(color) / 255.0);
        cairo_set_source(cr, gradient);
        cairo_pattern_destroy(gradient);
    } else {
        Paint::SetColor(cr, back.fColor);
    }
    cairo_rectangle(cr, left, top, right - left, bottom - top);
    cairo_fill(cr);
}

bool HasPreviewCopies(const TORXBaseLabel& document, const TORXBaseItem& item) {
    for (std::int32_t i = 0; i < document.GetPreviewCount(); ++i)
        if (document.GetPreviewItem(i)->InID() == item.InID()) return true;
    return false;
}

// Every item the pass shows, in paint order, on a context whose origin is the label's top-left corner;
// with a region, only the items whose bounds (grown by their pen) meet it.
void PaintItems(const TORXBaseLabel& document, cairo_t* cr, TCairoDraw& draw,
                const std::optional<TQVLRect>& region = std::nullopt) {
    const bool print = draw.fState == TQVLDrawState::dsPrint;
    for (std::int32_t i = 0; i < document.GetItemsCount(); ++i) {
        TORXBaseItem* item = document.GetItem(i);
        if (!Shows(*item, draw.fState)) continue;
        if (region) {
            TQVLRect b = item->BoundsRect();
            // Arrow heads and captions may reach a little past the bounds.
            const auto pen = static_cast<std::int64_t>(item->PenWidth()) * DrawScale(document) + 5000;
            b.Inflate(pen, pen);
            if (!b.IntersectsWith(*region)) continue;
        }
        cairo_save(cr);
        if (print)
            item->PrintElement(draw);
        else if (item->IsData() && !HasPreviewCopies(document, *item))
            item->Draw(draw);  // a drawing without data shows the values its template holds
        else
            item->DrawElement(draw);
        cairo_restore(cr);
    }
}

cairo_status_t AppendBytes(void* closure, const unsigned char* data, unsigned int length) {
    auto* out = static_cast<std::vector<std::uint8_t>*>(closure);
    out->insert(out->end(), data, data + length);
    return CAIRO_STATUS_SUCCESS;
}

bool WriteFile(const std::string& fileName, const std::vector<std::uint8_t>& bytes, std::string& error) {
    const std::string_view data(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (const auto written = WriteFileAtomic(fileName, data); !written) {
        error = written.Message;
        return false;
    }
    return true;
}

}  // namespace

TQVLPixelSize RasterSize(const TORXBaseLabel& document, const TQVLRasterOptions& options) {
    const std::int64_t scale = DrawScale(document);
    const double factor = options.Dpi * static_cast<double>(options.Scale);
    const auto side = [&](std::int64_t base) {
        const double px = std::ceil(PaperInches(base, scale) * factor - 1e-6);
        return static_cast<std::int32_t>(std::clamp(px, 1.0, 1.0e9));
    };
    const TQVLRect extent = PictureExtent(document, options);
    return {side(extent.GetWidth()), side(extent.GetHeight())};
}

bool CheckRasterOptions(const TORXBaseLabel& document, const TQVLRasterOptions& options, std::string& error) {
    if (options.Dpi < 1 || options.Dpi > 2400) {
        error = fmt::format("resolution {} dpi is outside 1 to 2400", options.Dpi);
        return false;
    }
    if (!(options.Scale > 0.0f) || options.Scale > 100.0f) {
        error = fmt::format("scale {} is outside (0, 100]", options.Scale);
        return false;
    }
    const TQVLPixelSize size = RasterSize(document, options);
    if (static_cast<std::int64_t>(size.Width) * size.Height > kMaxRasterPixels) {
        error = fmt::format("a picture of {} x {} pixels is too large", size.Width, size.Height);
        return false;
    }
    return true;
}

bool EncodePng(const TORXBaseLabel& document, const TQVLRasterOptions& options,
               std::vector<std::uint8_t>& png, std::string& error) {
    if (!CheckRasterOptions(document, options, error)) return false;
    const TCairoSource source(document);
    const TORXBaseLabel& doc = source.Document();
    const TQVLPixelSize size = RasterSize(doc, options);
    const TQVLRect extent = PictureExtent(doc, options);
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size.Width, size.Height);
    cairo_t* cr = cairo_create(surface);
    cairo_scale(cr, options.Scale, options.Scale);
    {
        TCairoDraw draw(cr);
        draw.fDpix = draw.fDpiy = options.Dpi;
        draw.fBDpix = draw.fBDpiy = options.Dpi;
        draw.fSC = draw.fFX = draw.fFY = options.Scale;
        draw.fDrawScale = DrawScale(doc);
        draw.fState = ScreenPass(options);
        cairo_translate(cr, -draw.GetDrawX(extent.Left), -draw.GetDrawY(extent.Top));
        if (!options.Transparent)
            PaintBackground(doc, cr, draw.GetDrawX(extent.Left), draw.GetDrawY(extent.Top),
                            draw.GetDrawX(extent.Right) + 1.0, draw.GetDrawY(extent.Bottom) + 1.0);
        PaintItems(doc, cr, draw, options.Region);
    }
    cairo_destroy(cr);
    png.clear();
    const cairo_status_t status = cairo_surface_write_to_png_stream(surface, AppendBytes, &png);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        error = fmt::format("PNG encoding failed: {}", cairo_status_to_string(status));
        return false;
    }
    return true;
}

bool ExportPng(const TORXBaseLabel& document, const std::string& fileName, const TQVLRasterOptions& options,
               std::string& error) {
    std::vector<std::uint8_t> png;
    return EncodePng(document, options, png, error) && WriteFile(fileName, png, error);
}

TQVLPageSize PdfPageSize(const TORXBaseLabel& document) {
    const TORXMeasure& m = document.Measure();
    const std::int64_t scale = DrawScale(document);
    const TQVLRect extent = Extent(document, TQVLDrawState::dsPrint);
    const double labelW = PaperInches(extent.GetWidth(), scale) * kPointsPerInch;
    const double labelH = PaperInches(extent.GetHeight(), scale) * kPointsPerInch;
    const double paperW = PaperInches(m.fPaperWidth, 1) * kPointsPerInch;
    const double paperH = PaperInches(m.fPaperHeight, 1) * kPointsPerInch;
    const double left = PaperInches(m.fMarginLeft, 1) * kPointsPerInch;
    const double top = PaperInches(m.fMarginTop, 1) * kPointsPerInch;
    constexpr double kSlack = 0.01;  // rounding of sizes stored in micrometres
    if (paperW > 0.0 && paperH > 0.0 && left + labelW <= paperW + kSlack && top + labelH <= paperH + kSlack)
        return {paperW, paperH, left, top};
    return {std::max(labelW, 1.0), std::max(labelH, 1.0), 0.0, 0.0};
}

bool EncodePdf(const TORXBaseLabel& document, std::vector<std::uint8_t>& pdf, std::string& error) {
    const TCairoSource source(document);
    const TORXBaseLabel& doc = source.Document();
    const TQVLPageSize page = PdfPageSize(doc);
    const TQVLRect extent = Extent(doc, TQVLDrawState::dsPrint);
    pdf.clear();
    cairo_surface_t* surface =
        cairo_pdf_surface_create_for_stream(AppendBytes, &pdf, page.Width, page.Height);
    cairo_t* cr = cairo_create(surface);
    // The print pass places on whole device pixels; a 720 dpi grid keeps that a tenth of a point.
    constexpr std::int32_t kPdfDpi = 720;
    cairo_translate(cr, page.LabelX, page.LabelY);
    cairo_scale(cr, kPointsPerInch / kPdfDpi, kPointsPerInch / kPdfDpi);
    {
        TCairoDraw draw(cr);
        draw.fDpix = draw.fDpiy = kPdfDpi;
        draw.fBDpix = draw.fBDpiy = kPdfDpi;
        draw.fDrawScale = DrawScale(doc);
        draw.fState = TQVLDrawState::dsPrint;
        const double l = draw.GetDrawX(extent.Left), t = draw.GetDrawY(extent.Top);
        const double r = draw.GetDrawX(extent.Right), b = draw.GetDrawY(extent.Bottom);
        cairo_translate(cr, -l, -t);
        cairo_rectangle(cr, l, t, r - l, b - t);
        cairo_clip(cr);
        if (doc.BackSurf().fPrint) PaintBackground(doc, cr, l, t, r, b);
        PaintItems(doc, cr, draw);
    }
    cairo_show_page(cr);
    cairo_destroy(cr);
    cairo_surface_finish(surface);
    const cairo_status_t status = cairo_surface_status(surface);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        error = fmt::format("PDF output failed: {}", cairo_status_to_string(status));
        return false;
    }
    return true;
}

bool ExportPdf(const TORXBaseLabel& document, const std::string& fileName, std::string& error) {
    std::vector<std::uint8_t> pdf;
    return EncodePdf(document, pdf, error) && WriteFile(fileName, pdf, error);
}

}  // namespace Orvex
