// Builders of the provider-neutral conversation: the Anthropic Messages shape (roles "user" and
// "assistant"; blocks "text", "image", "tool_use", "tool_result"), plus three members of our own that the
// other providers need back: "tool_name" on a tool result (Gemini answers a call by name),
// "thought_signature" on a tool use (Gemini) and "reasoning_details" on an assistant message (OpenRouter).
#pragma once

#include <span>
#include <string_view>

#include "orvex/agent/ai_client.h"
#include "orvex/agent/ai_conversation.h"
#include "orvex/io/json.h"

namespace Orvex {

TJSON MakeUserMessage(std::string_view aText);
// CR and LF are removed from aBase64Data, so wrapped Base64 may be passed as read from a file.
TJSON MakeUserImageMessage(std::string_view aText, std::string_view aMediaType, std::string_view aBase64Data);
// aReasoningDetails: null for none.
TJSON MakeAssistantMessage(std::string_view aText, const TJSON& aReasoningDetails = nullptr);
// aArguments: the call's input object (null reads as {}).
TJSON MakeAssistantToolUse(std::string_view aText, std::string_view aId, std::string_view aName,
                           std::string_view aThoughtSignature, const TJSON& aArguments);
// aReasoningDetails: null or nullptr for none.
TJSON MakeAssistantToolUses(std::string_view aText, std::span<const TAIToolCall> aToolCalls,
                            const TJSON* aReasoningDetails = nullptr);
TJSON MakeToolResult(std::string_view aToolUseId, std::string_view aToolName, std::string_view aContent,
                     bool aIsError = false);
// A tool result whose content is a list of blocks: the text, then one image block per picture.
TJSON MakeToolResultWithImages(std::string_view aToolUseId, std::string_view aToolName,
                               std::string_view aText, std::span<const TAIToolImage> aImages,
                               bool aIsError = false);

}  // namespace Orvex
