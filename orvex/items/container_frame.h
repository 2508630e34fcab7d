// The look of a container's frame (a flow element whose members move with it): the title band at the top
// of its box that holds its caption, the corner radius of a rounded frame, the band's tint, and its SVG.
// The screen painter and the SVG writer share these so that both draw the same frame.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/core/types.h"

namespace Orvex {

class TORXBaseFlow;

// Height of the title band for a frame width (base units): the caption's lines wrapped to that width
// with the frame's paddings above and below; 0 without a caption.
std::int64_t ContainerBandHeight(const TORXBaseFlow& frame, std::int64_t width);
// The band in the frame's current box, clipped to the box; empty (zero height) without a caption.
TQVLRect ContainerBand(const TORXBaseFlow& frame);
// Corner radius of a rounded frame: 3 mm, less on a small frame; 0 for a plain one.
std::int64_t ContainerCornerRadius(const TORXBaseFlow& frame);
// The band's fill: the frame's fill darkened a little toward its pen colour, so the title stands apart.
TAlphaColor ContainerBandColor(const TORXBaseFlow& frame);
// The frame as SVG elements (outline, band, separator, caption) appended to body.
void ContainerSVG(const TORXBaseFlow& frame, std::vector<std::string>& body);

}  // namespace Orvex
