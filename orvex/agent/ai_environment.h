// What a host needs to set up the AI client from its command line and environment: provider names, the
// usual key variables and default models. The environment is passed in as a lookup so that it can be
// faked.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "orvex/agent/mcp_server.h"

namespace Orvex {

using TEnvironmentLookup = std::function<std::optional<std::string>(std::string_view aName)>;

TEnvironmentLookup ProcessEnvironment();  // std::getenv

std::string_view AIProviderName(TMCPAIProvider aProvider);  // "anthropic", "openai", "gemini", "openrouter"
std::optional<TMCPAIProvider> ParseAIProvider(std::string_view aName);  // case-insensitive
std::string_view AIApiKeyVariable(TMCPAIProvider aProvider);            // "ANTHROPIC_API_KEY", ...
std::string_view DefaultAIModel(TMCPAIProvider aProvider);

inline constexpr std::string_view kAIApiKeyOverride = "ORVEX_AI_API_KEY";
inline constexpr std::string_view kAIBaseUrlOverride = "ORVEX_AI_BASE_URL";

struct TAIEnvironment {
    std::string ApiKey;       // empty when no variable holds one
    std::string KeyVariable;  // the variable it came from, for messages that must not show the key
    std::string BaseUrl;      // empty: the provider's public host
};

// ORVEX_AI_API_KEY wins over the provider's own variable; empty values count as unset.
TAIEnvironment ReadAIEnvironment(TMCPAIProvider aProvider, const TEnvironmentLookup& aLookup);

}  // namespace Orvex
