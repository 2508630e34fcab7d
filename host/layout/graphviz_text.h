// Private to the graph layout: Graphviz measures link captions through a text-layout plugin, and this one
// measures them with the process's own text metrics, the ones the captions are painted with, so dot
// leaves the room the painted text takes and Graphviz does not load its own Pango plugin (with a second
// font) just to size them.
#pragma once

#include <graphviz/gvc.h>

#include <string_view>

#include "host/layout/layout_types.h"

namespace Orvex {

// A Graphviz context whose text layout is ours; the rest (the dot layout) comes from the installed
// plugins as with gvContext().
GVC_t* NewGraphvizContextWithOwnText();

// What the plugin answers for one line of text at a size in points: width and line height in points.
TLayoutSize GraphvizTextExtent(std::string_view aLine, double aPoints);

}  // namespace Orvex
