// The part of YAML that data diagrams are written in, read into a JSON tree: block mappings and sequences
// by indentation, "- key: value" items, flow collections ("[a, b]", "{k: v}"), plain, quoted and block
// ("|", ">") scalars, comments and document markers. Anchors, aliases, tags and multiple documents are
// refused with their line rather than read wrongly.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orvex/io/json.h"

namespace Orvex {

struct TYamlResult {
    TJSON Value;                 // null for an empty text
    std::string Error;           // empty on success
    std::int32_t ErrorLine = 0;  // 1-based line of aText the error is about
    explicit operator bool() const { return Error.empty(); }
};

// aText's lines are numbered from aFirstLine, so errors name the line of the enclosing diagram text.
TYamlResult QVLParseYaml(std::string_view aText, std::int32_t aFirstLine = 1);

}  // namespace Orvex
