// A plain INI reader for language files. Every line is taken literally: no inline comments, no continuation
// lines, no length limit, so a text holding ';', '=' or '#' reads back exactly as it was written.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Orvex {

struct TIniEntry {
    std::string Name;
    std::string Value;
};

struct TIniSection {
    std::string Name;
    std::vector<TIniEntry> Entries;  // in file order; a repeated name is listed again
};

// Sections in file order (a repeated header opens another one). Lines are trimmed; blank lines, lines
// starting with ';' or '#', lines without '=' or with an empty name, and entries before the first header
// are skipped. "[name]" is a header only when it holds no '=', so "[a=b]" is the entry "[a" = "b]".
std::vector<TIniSection> ParseIniText(std::string_view text);

// Whether "name=value" written on its own line reads back as exactly this name and value.
bool IniEntryReadsBack(std::string_view name, std::string_view value);

}  // namespace Orvex
