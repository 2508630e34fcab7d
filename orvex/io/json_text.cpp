#include "orvex/io/json_text.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

namespace Orvex {

bool JsonTextNestingWithin(std::string_view text, std::size_t maxDepth) {
    std::size_t depth = 0;
    bool inString = false;
    bool escaped = false;
    for (const char c : text) {
        if (inString) {
            if (escaped) {
                escaped = false;
            } else if (c == '\\') {
                escaped = true;
            } else if (c == '"') {
                inString = false;
            }
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > maxDepth) return false;
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
    return true;
}

bool JsonTreeNestingWithin(const TJSON& value, std::size_t maxDepth) {
    std::vector<std::pair<const TJSON*, std::size_t>> pending{{&value, 0}};
    while (!pending.empty()) {
        const auto [node, depth] = pending.back();
        pending.pop_back();
        if (!node->is_structured()) continue;
        if (depth + 1 > maxDepth) return false;
        for (const TJSON& child : *node) pending.emplace_back(&child, depth + 1);
    }
    return true;
}

TJSONTextResult ParseJsonText(std::string_view text, const TJSONLimits& limits) {
    TJSONTextResult result;
    const auto fail = [&](TJSONTextError error, std::string message) {
        result.Value = TJSON(TJSON::value_t::discarded);
        result.Error = error;
        result.Message = std::move(message);
        return std::move(result);
    };
    if (text.size() > limits.MaxBytes)
        return fail(TJSONTextError::jeTooLarge, fmt::format("larger than {} bytes", limits.MaxBytes));
    if (!JsonTextNestingWithin(text, limits.MaxDepth))
        return fail(TJSONTextError::jeTooDeep, fmt::format("nested deeper than {} levels", limits.MaxDepth));
    result.Value = TJSON::parse(text, nullptr, false);
    if (result.Value.is_discarded()) return fail(TJSONTextError::jeSyntax, "not valid JSON");
    return result;
}

TJSON ParseJsonOrDiscarded(std::string_view text, const TJSONLimits& limits) {
    return ParseJsonText(text, limits).Value;
}

}  // namespace Orvex
