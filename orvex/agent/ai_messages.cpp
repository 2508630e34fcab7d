// The provider-neutral conversation builders.
#include "orvex/agent/ai_messages.h"

#include <string>

namespace Orvex {

namespace {

TJSON TextBlock(std::string_view aText) {
    return {{"type", "text"}, {"text", aText}};
}

TJSON ToolUseBlock(std::string_view aId, std::string_view aName, std::string_view aThoughtSignature,
                   const TJSON& aArguments) {
    TJSON block = {{"type", "tool_use"},
                   {"id", aId},
                   {"name", aName},
                   {"input", aArguments.is_null() ? TJSON::object() : aArguments}};
    if (!aThoughtSignature.empty()) block["thought_signature"] = aThoughtSignature;
    return block;
}

}  // namespace

TJSON MakeUserMessage(std::string_view aText) {
    return {{"role", "user"}, {"content", aText}};
}

TJSON MakeUserImageMessage(std::string_view aText, std::string_view aMediaType,
                           std::string_view aBase64Data) {
    std::string data;
    data.reserve(aBase64Data.size());
    for (const char c : aBase64Data) {
        if (c != '\r' && c != '\n') data += c;
    }
    TJSON content = TJSON::array();
    content.push_back(
        {{"type", "image"},
         {"source", {{"type", "base64"}, {"media_type", aMediaType}, {"data", std::move(data)}}}});
    if (!aText.empty()) content.push_back(TextBlock(aText));
    return {{"role", "user"}, {"content", std::move(content)}};
}

TJSON MakeAssistantMessage(std::string_view aText, const TJSON& aReasoningDetails) {
    TJSON message = {{"role", "assistant"}, {"content", aText}};
    if (!aReasoningDetails.is_null()) message["reasoning_details"] = aReasoningDetails;
    return message;
}

TJSON MakeAssistantToolUse(std::string_view aText, std::string_view aId, std::string_view aName,
                           std::string_view aThoughtSignature, const TJSON& aArguments) {
    TJSON content = TJSON::array();
    if (!aText.empty()) content.push_back(TextBlock(aText));
    content.push_back(ToolUseBlock(aId, aName, aThoughtSignature, aArguments));
    return {{"role", "assistant"}, {"content", std::move(content)}};
}

TJSON MakeAssistantToolUses(std::string_view aText, std::span<const TAIToolCall> aToolCalls,
                            const TJSON* aReasoningDetails) {
    TJSON content = TJSON::array();
    if (!aText.empty()) content.push_back(TextBlock(aText));
    for (const auto& call : aToolCalls) {
        content.push_back(ToolUseBlock(call.Id, call.Name, call.ThoughtSignature,
                                       call.Arguments != nullptr ? *call.Arguments : TJSON()));
    }
    TJSON message = {{"role", "assistant"}, {"content", std::move(content)}};
    if (aReasoningDetails != nullptr && !aReasoningDetails->is_null()) {
        message["reasoning_details"] = *aReasoningDetails;
    }
    return message;
}

TJSON MakeToolResult(std::string_view aToolUseId, std::string_view aToolName, std::string_view aContent,
                     bool aIsError) {
    TJSON block = {{"type", "tool_result"},
                   {"tool_use_id", aToolUseId},
                   {"tool_name", aToolName},
                   {"content", aContent}};
    if (aIsError) block["is_error"] = true;
    return {{"role", "user"}, {"content", TJSON::array({std::move(block)})}};
}

TJSON MakeToolResultWithImages(std::string_view aToolUseId, std::string_view aToolName,
                               std::string_view aText, std::span<const TAIToolImage> aImages, bool aIsError) {
    TJSON blocks = TJSON::array();
    if (!aText.empty()) blocks.push_back({{"type", "text"}, {"text", aText}});
    for (const auto& image : aImages)
        blocks.push_back(
            {{"type", "image"},
             {"source", {{"type", "base64"}, {"media_type", image.MediaType}, {"data", image.Data}}}});
    TJSON block = {{"type", "tool_result"},
                   {"tool_use_id", aToolUseId},
                   {"tool_name", aToolName},
                   {"content", std::move(blocks)}};
    if (aIsError) block["is_error"] = true;
    return {{"role", "user"}, {"content", TJSON::array({std::move(block)})}};
}

}  // namespace Orvex
