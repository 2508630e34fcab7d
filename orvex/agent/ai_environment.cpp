// Provider names, key variables and default models for hosts that configure the AI client.
#include "orvex/agent/ai_environment.h"

#include <array>
#include <cstdlib>

#include "orvex/core/text.h"

namespace Orvex {

using Qvl::Utils::SameTextIgnoringCase;
using Qvl::Utils::Trim;

namespace {

constexpr std::array kProviders{TMCPAIProvider::aiAnthropic, TMCPAIProvider::aiOpenAI,
                                TMCPAIProvider::aiGemini, TMCPAIProvider::aiOpenRouter};

std::string NonEmpty(const TEnvironmentLookup& aLookup, std::string_view aName) {
    if (!aLookup) return {};
    const auto value = aLookup(aName);
    return value ? std::string(Trim(*value)) : std::string();
}

}  // namespace

TEnvironmentLookup ProcessEnvironment() {
    return [](std::string_view aName) -> std::optional<std::string> {
        const char* value = std::getenv(std::string(aName).c_str());
        if (value == nullptr) return std::nullopt;
        return std::string(value);
    };
}

std::string_view AIProviderName(TMCPAIProvider aProvider) {
    switch (aProvider) {
        case TMCPAIProvider::aiAnthropic:
            return "anthropic";
        case TMCPAIProvider::aiOpenAI:
            return "openai";
        case TMCPAIProvider::aiGemini:
            return "gemini";
        case TMCPAIProvider::aiOpenRouter:
            return "openrouter";
    }
    return {};
}

std::optional<TMCPAIProvider> ParseAIProvider(std::string_view aName) {
    const auto name = Trim(aName);
    for (const auto provider : kProviders) {
        if (SameTextIgnoringCase(name, AIProviderName(provider))) return provider;
    }
    return std::nullopt;
}

std::string_view AIApiKeyVariable(TMCPAIProvider aProvider) {
    switch (aProvider) {
        case TMCPAIProvider::aiAnthropic:
            return "ANTHROPIC_API_KEY";
        case TMCPAIProvider::aiOpenAI:
            return "OPENAI_API_KEY";
        case TMCPAIProvider::aiGemini:
            return "GEMINI_API_KEY";
        case TMCPAIProvider::aiOpenRouter:
            return "OPENROUTER_API_KEY";
    }
    return {};
}

std::string_view DefaultAIModel(TMCPAIProvider aProvider) {
    switch (aProvider) {
        case TMCPAIProvider::aiAnthropic:
            return "claude-sonnet-4-20250514";
        case TMCPAIProvider::aiOpenAI:
            return "gpt-4.1";
        case TMCPAIProvider::aiGemini:
            return "gemini-2.5-flash";
        case TMCPAIProvider::aiOpenRouter:
            return "anthropic/claude-sonnet-4";
    }
    return {};
}

TAIEnvironment ReadAIEnvironment(TMCPAIProvider aProvider, const TEnvironmentLookup& aLookup) {
    TAIEnvironment environment;
    for (const std::string_view name : {kAIApiKeyOverride, AIApiKeyVariable(aProvider)}) {
        if (name.empty()) continue;
        environment.ApiKey = NonEmpty(aLookup, name);
        if (!environment.ApiKey.empty()) {
            environment.KeyVariable = std::string(name);
            break;
        }
    }
    environment.BaseUrl = NonEmpty(aLookup, kAIBaseUrlOverride);
    return environment;
}

}  // namespace Orvex
