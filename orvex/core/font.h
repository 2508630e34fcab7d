// A font as drawings store it: face name, style flags, height in millimetres and colour.
#pragma once

#include <string>

#include "orvex/core/types.h"

namespace Orvex {

struct TQVLFont {
    std::string Name = "Arial";
    bool Bold = false;
    bool Italic = false;
    bool Underline = false;
    bool Strikeout = false;
    float FontHeight = 3.5f;  // millimetres
    TAlphaColor FontColor = kOpaqueBlack;
    friend bool operator==(const TQVLFont&, const TQVLFont&) = default;
};

}  // namespace Orvex
