// JSON text that comes from outside a tree: drawing files, protocol messages, provider answers, stored
// snapshots. Every such text is parsed here, under a depth and a size limit, because copying, comparing and
// writing a tree recurse once per level: a text nested 100,000 deep would parse, then overflow the stack
// the first time it is written back out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "orvex/io/json.h"

namespace Orvex {

inline constexpr std::size_t kJSONMaxDepth = 512;                      // arrays and objects, nested
inline constexpr std::size_t kJSONMaxBytes = std::size_t{1024} << 20;  // 1 GiB of text

struct TJSONLimits {
    std::size_t MaxDepth = kJSONMaxDepth;
    std::size_t MaxBytes = kJSONMaxBytes;
};

enum class TJSONTextError : std::uint8_t { jeNone, jeTooLarge, jeTooDeep, jeSyntax };

struct TJSONTextResult {
    TJSON Value;  // discarded unless Error is jeNone
    TJSONTextError Error = TJSONTextError::jeNone;
    // "not valid JSON", "nested deeper than 512 levels", "larger than 1048576 bytes"; empty on success
    std::string Message;
    explicit operator bool() const { return Error == TJSONTextError::jeNone; }
};

// Refuses a text over the limits before building any tree; otherwise the strict parse of the whole text.
TJSONTextResult ParseJsonText(std::string_view text, const TJSONLimits& limits = {});
// The same, for readers that only need to know whether a value came out: a discarded value on any failure.
TJSON ParseJsonOrDiscarded(std::string_view text, const TJSONLimits& limits = {});

// Whether the brackets of text, outside strings, nest at most maxDepth deep. Linear, never recursive.
bool JsonTextNestingWithin(std::string_view text, std::size_t maxDepth);
// Whether a tree nests at most maxDepth deep (a scalar is depth 0). Walks with its own stack.
bool JsonTreeNestingWithin(const TJSON& value, std::size_t maxDepth);

}  // namespace Orvex
