// Settings a Mermaid chart text carries outside its statements: in the front matter's config block
// ("config:" / "gitGraph:" / "mainBranchName: trunk") or in an "%%{init: {...}}%%" directive.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Orvex {

// The value of aKey wherever it stands in the front matter or in an init directive, unquoted; the last
// one written wins (a directive after the front matter overrides it). Keys are matched exactly, so
// "mainBranchName" does not find "mainBranchOrder".
std::optional<std::string> QVLChartConfigValue(std::string_view aText, std::string_view aKey);

// The value as a yes/no setting: "true"/"false" in any case; aDefault when absent or neither.
bool QVLChartConfigFlag(std::string_view aText, std::string_view aKey, bool aDefault);

}  // namespace Orvex
