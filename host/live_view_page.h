// The one page of the live view: HTML with its style and script inline, so it needs nothing but the
// server it came from.
#pragma once

#include <string_view>

namespace Orvex::Host {

std::string_view LiveViewPage();

}  // namespace Orvex::Host
