// Shared by the painting tests: decoding PNG bytes and reading pixels at drawing positions.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace OrvexTest {

struct TSurfaceDeleter {
    void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
};
using TSurfacePtr = std::unique_ptr<cairo_surface_t, TSurfaceDeleter>;

struct TPixel {
    std::uint8_t R = 0, G = 0, B = 0, A = 0;
    bool Dark() const { return A > 128 && R < 100 && G < 100 && B < 100; }
    bool White() const { return A > 250 && R > 245 && G > 245 && B > 245; }
};

class TPicture {
  public:
    TPicture(const std::vector<std::uint8_t>& png, double dpi);
    explicit TPicture(TSurfacePtr surface, double dpi) : fSurface(std::move(surface)), fDpi(dpi) {}
    bool Valid() const;
    int Width() const { return cairo_image_surface_get_width(fSurface.get()); }
    int Height() const { return cairo_image_surface_get_height(fSurface.get()); }
    TPixel At(int x, int y) const;
    TPixel AtMM(double xMM, double yMM) const { return At(Px(xMM), Px(yMM)); }
    int Px(double mm) const { return static_cast<int>(mm * fDpi / 25.4); }
    // Dark pixels in a rectangle given in millimetres.
    int DarkIn(double x0, double y0, double x1, double y1) const;
    int InkIn(double x0, double y0, double x1, double y1) const;  // anything but white

  private:
    TSurfacePtr fSurface;
    double fDpi;
};

std::string SourcePath(const std::string& relative);

}  // namespace OrvexTest
