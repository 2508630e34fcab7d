#include "tests/host/paint_support.h"

#include <algorithm>
#include <cstring>

namespace OrvexTest {

namespace {
struct TReader {
    const std::vector<std::uint8_t>* Data;
    std::size_t Pos = 0;
};

cairo_status_t Read(void* closure, unsigned char* data, unsigned int length) {
    auto* r = static_cast<TReader*>(closure);
    if (r->Pos + length > r->Data->size()) return CAIRO_STATUS_READ_ERROR;
    std::memcpy(data, r->Data->data() + r->Pos, length);
    r->Pos += length;
    return CAIRO_STATUS_SUCCESS;
}
}  // namespace

TPicture::TPicture(const std::vector<std::uint8_t>& png, double dpi) : fDpi(dpi) {
    TReader reader{&png};
    fSurface.reset(cairo_image_surface_create_from_png_stream(Read, &reader));
    cairo_surface_flush(fSurface.get());
}

bool TPicture::Valid() const {
    return cairo_surface_status(fSurface.get()) == CAIRO_STATUS_SUCCESS;
}

TPixel TPicture::At(int x, int y) const {
    if (x < 0 || y < 0 || x >= Width() || y >= Height()) return {};
    const unsigned char* row =
        cairo_image_surface_get_data(fSurface.get()) + y * cairo_image_surface_get_stride(fSurface.get());
    std::uint32_t v = 0;
    std::memcpy(&v, row + 4 * x, 4);
    // Premultiplied ARGB in native order; the tests paint on opaque pages, so no division is needed.
    return {static_cast<std::uint8_t>(v >> 16), static_cast<std::uint8_t>(v >> 8),
            static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(v >> 24)};
}

int TPicture::DarkIn(double x0, double y0, double x1, double y1) const {
    int n = 0;
    for (int y = Px(y0); y <= Px(y1); ++y)
        for (int x = Px(x0); x <= Px(x1); ++x) n += At(x, y).Dark() ? 1 : 0;
    return n;
}

int TPicture::InkIn(double x0, double y0, double x1, double y1) const {
    int n = 0;
    for (int y = Px(y0); y <= Px(y1); ++y)
        for (int x = Px(x0); x <= Px(x1); ++x) n += At(x, y).White() ? 0 : 1;
    return n;
}

std::string SourcePath(const std::string& relative) {
    return std::string(ORVEX_SOURCE_DIR) + "/" + relative;
}

}  // namespace OrvexTest
