#include "orvex/render/draw_context.h"

#include <algorithm>
#include <limits>

#include "orvex/core/numeric.h"

namespace Orvex {
namespace {

// One inch of the drawing in base units: 25400 x N, formed in 64-bit integers. A scale below 1 is not a
// drawing scale; it counts as full size rather than dividing by zero.
double InchInBase(const TORXBaseDraw& draw) {
    const std::int64_t scale = draw.fDrawScale > 0 ? draw.fDrawScale : 1;
    return static_cast<double>(scale * kBasePerInch);
}

std::int32_t ClampToInt32(std::int64_t v) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(v, std::numeric_limits<std::int32_t>::min(),
                                                              std::numeric_limits<std::int32_t>::max()));
}

// value x dpi in 64-bit integers, then the division in double.
double DeviceFromBase(std::int64_t value, std::int32_t dpi, const TORXBaseDraw& draw) {
    return static_cast<double>(value * dpi) / InchInBase(draw);
}

float MillimetresToDevice(float mm, std::int32_t dpi) {
    return static_cast<float>(static_cast<double>(mm) * dpi / kMMPerInch);
}

std::int32_t MillimetresToPrinter(float mm, std::int32_t dpi) {
    if (mm == 0.0f) return 0;
    return ClampToInt32(RoundHalfEven(static_cast<double>(mm) * dpi / kMMPerInch));
}

}  // namespace

void TQVLDrawConf::Ini(TAlphaColor aFColor, TAlphaColor aBColor, bool aFill, TQVLineType aLineT,
                       float aPWidth) {
    fFColor = aFColor;
    fBColor = aBColor;
    fFill = aFill;
    fLinType = aLineT;
    fPenWidth = aPWidth;
    fRound = false;
    fScalePen = false;
    fPath = false;
    fIniPath = false;
}

void TQVLDrawConf::IniFont(TAlphaColor aFontColor, bool aBold, bool aItalic, bool aUnderline,
                           const std::string& aFont, float aFontheight, float aFontScale) {
    fFontColor = aFontColor;
    fBold = aBold;
    fItalic = aItalic;
    fUnderline = aUnderline;
    fFontName = aFont;
    fFontHeight = aFontheight;
    fFontScale = aFontScale;
}

float TORXBaseDraw::GetDrawX(std::int64_t aValue) const {
    return static_cast<float>(static_cast<double>(aValue) / InchInBase(*this) * fDpix);
}
float TORXBaseDraw::GetDrawY(std::int64_t aValue) const {
    return static_cast<float>(static_cast<double>(aValue) / InchInBase(*this) * fDpiy);
}
float TORXBaseDraw::BasePtoX(float aValue) const {
    return MillimetresToDevice(aValue, fDpix);
}
float TORXBaseDraw::BasePtoY(float aValue) const {
    return MillimetresToDevice(aValue, fDpiy);
}
float TORXBaseDraw::DrawBasePtoX(float aValue) const {
    return std::max(1.0f, BasePtoX(aValue));
}
float TORXBaseDraw::DrawBasePtoY(float aValue) const {
    return std::max(1.0f, BasePtoY(aValue));
}
std::int32_t TORXBaseDraw::PrintBasePtoX(float aValue) const {
    return MillimetresToPrinter(aValue, fDpix);
}
std::int32_t TORXBaseDraw::PrintBasePtoY(float aValue) const {
    return MillimetresToPrinter(aValue, fDpiy);
}

}  // namespace Orvex

namespace Qvl::Utils {

using Orvex::TORXBaseDraw;

float DrawFromBaseX(std::int64_t value, const TORXBaseDraw& draw) {
    return static_cast<float>(Orvex::DeviceFromBase(value, draw.fDpix, draw));
}
float DrawFromBaseY(std::int64_t value, const TORXBaseDraw& draw) {
    return static_cast<float>(Orvex::DeviceFromBase(value, draw.fDpiy, draw));
}
std::int32_t PrintFromBaseX(std::int64_t value, const TORXBaseDraw& draw) {
    return Orvex::ClampToInt32(RoundHalfEven(Orvex::DeviceFromBase(value, draw.fDpix, draw)));
}
std::int32_t PrintFromBaseY(std::int64_t value, const TORXBaseDraw& draw) {
    return Orvex::ClampToInt32(RoundHalfEven(Orvex::DeviceFromBase(value, draw.fDpiy, draw)));
}
float BasePtoX(float mm, const TORXBaseDraw& draw) {
    return draw.DrawBasePtoX(mm);
}
float BasePtoY(float mm, const TORXBaseDraw& draw) {
    return draw.DrawBasePtoY(mm);
}

}  // namespace Qvl::Utils

namespace Qvl::Types {

// The point's device conversions live here, beside the context they read.
float TQVLPto::DrawX(const Orvex::TORXBaseDraw& surface) const {
    return surface.GetDrawX(X);
}
float TQVLPto::DrawY(const Orvex::TORXBaseDraw& surface) const {
    return surface.GetDrawY(Y);
}
float TQVLPto::DrawGapX(std::int64_t gap, const Orvex::TORXBaseDraw& surface) const {
    return surface.GetDrawX(Qvl::Utils::SatAdd(X, gap));
}
float TQVLPto::DrawGapY(std::int64_t gap, const Orvex::TORXBaseDraw& surface) const {
    return surface.GetDrawY(Qvl::Utils::SatAdd(Y, gap));
}
std::int32_t TQVLPto::PrintX(const Orvex::TORXBaseDraw& surface) const {
    return Qvl::Utils::PrintFromBaseX(X, surface);
}
std::int32_t TQVLPto::PrintY(const Orvex::TORXBaseDraw& surface) const {
    return Qvl::Utils::PrintFromBaseY(Y, surface);
}

}  // namespace Qvl::Types
