// The draw context that every conversion from base units to device pixels reads, and the style record a
// host turns into its own pens, brushes and fonts. The engine never paints: the host's item classes do,
// against these.
#pragma once

#include <cstdint>
#include <string>

#include "orvex/core/types.h"

namespace Orvex {

// What the current pass is for. Ordinals are stored: never reorder.
enum class TQVLDrawState : std::uint8_t { dsLabel, dsEdit, dsPreview, dsExport, dsPrint, dsSymbol };

// Dash patterns, named after their dash and gap lengths.
enum class TQVLineType : std::uint8_t {
    iiSolid,
    ii0505,
    ii11,
    ii21,
    ii12,
    ii22,
    ii31,
    ii33,
    ii41,
    ii42,
    ii44,
    ii411
};

// Terminators at the ends of open lines and links.
enum class TQVLTermType : std::uint8_t {
    ttNone,
    ttCircle,
    ttFillCircle,
    ttArrow,
    ttFillArrow,
    ttSquare,
    ttFillSquare,
    ttRhombus,
    ttFillRhombus,
    ttLeftDia,
    ttRightDia,
    ttCross,
    // The heads of class and entity diagrams: a hollow triangle (inheritance, realisation) and the
    // crow's-foot ends of entity relations.
    ttTriangle,
    ttCrowOnlyOne,
    ttCrowZeroOne,
    ttCrowOneMany,
    ttCrowZeroMany
};
inline constexpr TQVLTermType kLastTermType = TQVLTermType::ttCrowZeroMany;

struct TQVLDrawConf {
    TAlphaColor fFColor = kOpaqueBlack;  // pen
    TAlphaColor fBColor = kOpaqueWhite;  // brush
    TAlphaColor fFontColor = kOpaqueBlack;
    bool fFill = true;
    bool fRound = false;
    bool fScalePen = false;
    TQVLineType fLinType = TQVLineType::iiSolid;
    float fPenWidth = 0.1f;  // millimetres
    std::string fFontName = "Arial";
    bool fBold = false;
    bool fItalic = false;
    bool fUnderline = false;
    float fFontHeight = 5.0f;  // millimetres
    float fFontScale = 1.0f;
    bool fPath = false;
    bool fIniPath = false;

    void Reset() { *this = TQVLDrawConf{}; }
    // Pen and brush; clears the round, scale-pen and path flags; leaves the font alone.
    void Ini(TAlphaColor aFColor, TAlphaColor aBColor, bool aFill, TQVLineType aLineT, float aPWidth);
    // The seven font fields; nothing else changes.
    void IniFont(TAlphaColor aFontColor, bool aBold, bool aItalic, bool aUnderline, const std::string& aFont,
                 float aFontheight, float aFontScale);
};

// Resolution, drawing scale and pass kind of one painting. The host's renderer sets the fields the engine
// only carries (factors, displacements, page position, base resolution).
class TORXBaseDraw {
  public:
    float fFX = 1.0f;
    float fFY = 1.0f;
    float fSC = 1.0f;
    std::int32_t fDX = 0;
    std::int32_t fDY = 0;
    float fDSX = 0.0f;
    float fDSY = 0.0f;
    std::int32_t fDpix = 96;  // dots per inch
    std::int32_t fDpiy = 96;
    std::int32_t fPageX = 0;
    std::int32_t fPageY = 0;
    double fBDpix = 96.0;
    double fBDpiy = 96.0;
    float fMMyToPto = 1.0f;
    std::int64_t fDrawScale = 1;  // N of a 1:N drawing; one inch is 25400 x N base units
    TQVLDrawState fState = TQVLDrawState::dsEdit;
    bool fShowDispWidthHandle = false;
    std::int16_t aRow = 0;  // label being drawn when a sheet of labels is previewed
    std::int16_t aCol = 0;

    float GetDrawX(std::int64_t aValue) const;  // base units to device pixels
    float GetDrawY(std::int64_t aValue) const;
    float BasePtoX(float aValue) const;  // millimetres to device pixels
    float BasePtoY(float aValue) const;
    // Millimetres to screen pixels, never below 1: a hair line still shows one pixel wide.
    float DrawBasePtoX(float aValue) const;
    float DrawBasePtoY(float aValue) const;
    // Millimetres to printer pixels; exactly 0 stays 0 so that a zero-width pen prints nothing.
    std::int32_t PrintBasePtoX(float aValue) const;
    std::int32_t PrintBasePtoY(float aValue) const;
};

}  // namespace Orvex

namespace Qvl::Utils {
// The same conversions as free functions; the product value x dpi is formed in 64-bit integers first.
float DrawFromBaseX(std::int64_t value, const Orvex::TORXBaseDraw& draw);
float DrawFromBaseY(std::int64_t value, const Orvex::TORXBaseDraw& draw);
std::int32_t PrintFromBaseX(std::int64_t value, const Orvex::TORXBaseDraw& draw);  // half to even
std::int32_t PrintFromBaseY(std::int64_t value, const Orvex::TORXBaseDraw& draw);
float BasePtoX(float mm, const Orvex::TORXBaseDraw& draw);  // floor of 1 pixel, as DrawBasePtoX
float BasePtoY(float mm, const Orvex::TORXBaseDraw& draw);
}  // namespace Qvl::Utils
