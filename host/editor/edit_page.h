// The editor page: plain HTML, CSS and script in one document, served from the binary.
#pragma once

#include <string_view>

namespace Orvex::Host {

std::string_view EditPage();        // the whole page
std::string_view EditPageScript();  // its script, placed inside the page

}  // namespace Orvex::Host
