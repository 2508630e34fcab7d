// Painting a whole drawing to files or bytes: PNG through the screen pass, PDF through the print pass.
// Every call paints with the Cairo family: a document of another family (a headless one, say) is copied
// through its JSON form into a Cairo document first, so the caller's document is never changed.
// Failures are values: false, with one line of text in error.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "orvex/core/rect.h"
#include "orvex/render/draw_context.h"

namespace Orvex {

class TORXBaseLabel;

struct TQVLRasterOptions {
    std::int32_t Dpi = 96;                         // device pixels per inch at scale 1
    float Scale = 1.0f;                            // zoom on top of the resolution
    TQVLDrawState Pass = TQVLDrawState::dsExport;  // dsEdit paints what the editor shows
    bool Transparent = false;                      // leave the page clear instead of its back colour
    // Only this part of the drawing (base units, as item bounds are), instead of the whole label.
    std::optional<Qvl::Types::TQVLRect> Region;
};

struct TQVLPixelSize {
    std::int32_t Width = 0;
    std::int32_t Height = 0;
};

// The picture covers the label on paper, grown by anything the pass shows beyond it (the extent the SVG
// output covers too). Its size at these options; both sides at least 1.
TQVLPixelSize RasterSize(const TORXBaseLabel& document, const TQVLRasterOptions& options);
// Options that give a usable picture: dpi 1..2400, scale above 0, at most kMaxRasterPixels pixels.
bool CheckRasterOptions(const TORXBaseLabel& document, const TQVLRasterOptions& options, std::string& error);
inline constexpr std::int64_t kMaxRasterPixels = 100'000'000;

bool ExportPng(const TORXBaseLabel& document, const std::string& fileName, const TQVLRasterOptions& options,
               std::string& error);
bool EncodePng(const TORXBaseLabel& document, const TQVLRasterOptions& options,
               std::vector<std::uint8_t>& png,
               std::string& error);  // png is replaced by the file's bytes

// One vector page of the drawing's paper size with the label at the page margins; a drawing whose extent
// does not fit there gets a page of its own size instead, so nothing is cut off.
bool ExportPdf(const TORXBaseLabel& document, const std::string& fileName, std::string& error);
bool EncodePdf(const TORXBaseLabel& document, std::vector<std::uint8_t>& pdf, std::string& error);

// The page size ExportPdf uses, in PostScript points (1/72 inch).
struct TQVLPageSize {
    double Width = 0.0;
    double Height = 0.0;
    double LabelX = 0.0;  // where the label's top-left corner stands on the page
    double LabelY = 0.0;
};
TQVLPageSize PdfPageSize(const TORXBaseLabel& document);

}  // namespace Orvex
