// Items as the tools' inputs describe them: kind names, "#RRGGBB" colours, lengths in the drawing's unit,
// font names and sizes, the ends of links. The drawing-file form stays available for callers that ask.
#pragma once

#include <string>

#include "orvex/io/json.h"

namespace Orvex {
class TORXBaseItem;
class TORXBaseLabel;
}  // namespace Orvex

namespace Orvex::Host {

// Every property of the item under the names the add_ and modify_item tools take; keys that no tool takes
// appear in lower_snake form with colours as text.
TJSON ItemProperties(const TORXBaseLabel& aDoc, const TORXBaseItem& aItem);

// The item's text (caption, label, paragraph), empty for kinds without one.
std::string ItemText(const TJSON& aFileForm);

// "PaddingX" -> "padding_x", "ShadowDX" -> "shadow_dx".
std::string SnakeName(std::string_view aKey);

}  // namespace Orvex::Host
