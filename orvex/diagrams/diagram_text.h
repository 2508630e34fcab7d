// Text handling that both diagram parsers share, so that line numbers and captions agree between them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Orvex {

// Every CR and every LF ends a line on its own, so a CR LF pair yields an empty line between two text
// lines. Diagnostics are numbered on this split; hosts match them against it, so it must stay as it is.
std::vector<std::string_view> QVLSplitDiagramLines(std::string_view text);

// Trimmed, one pair of enclosing double quotes removed, "<br>", "<br/>" and backslash-n turned into CR LF,
// "&quot;" and "&amp;" decoded, trimmed again.
std::string QVLCleanCaption(std::string_view text);

// Leading blanks of a line, a tab counting as four: the depth of indentation-based kinds.
int QVLIndentOf(std::string_view line);

}  // namespace Orvex
