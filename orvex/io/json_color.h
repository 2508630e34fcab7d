// Colours inside JSON objects: a "Color" text, or integer "R", "G", "B" and "A" keys.
#pragma once

#include "orvex/core/color.h"
#include "orvex/io/json_fwd.h"

namespace Orvex {

void ColorHex(TJSON& obj, Qvl::Types::TAlphaColor c);   // "Color": "#RRGGBBAA"
void ColorRGBA(TJSON& obj, Qvl::Types::TAlphaColor c);  // "R", "G", "B", "A" as integers
// "Color" through ParseColor when present; else the components when "R" is present; else opaque white.
Qvl::Types::TAlphaColor ParseJsonColor(const TJSON& obj);
// "R", "G", "B" and, when present, "A" (else 255); each clamped to 0..255, a missing or non-numeric one 0.
Qvl::Types::TAlphaColor ParseJsColor(const TJSON& obj);

}  // namespace Orvex
