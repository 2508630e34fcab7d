// The corpus folder names, shared by the fuzz binaries' documentation and the replay test.
#include <cstdio>
#include <cstdlib>

#include "fuzz/targets/fuzz_targets.h"

namespace Orvex::Fuzz {

TFuzzEntry FuzzEntryByName(std::string_view aName) {
    if (aName == "mermaid") return FuzzMermaid;
    if (aName == "plantuml") return FuzzPlantUml;
    if (aName == "color") return FuzzColor;
    if (aName == "drawing_json") return FuzzDrawingJson;
    if (aName == "mcp_request") return FuzzMcpRequest;
    if (aName == "rich_text") return FuzzRichText;
    return nullptr;
}

void FuzzCheck(bool aCondition, const char* aMessage) {
    if (aCondition) return;
    std::fprintf(stderr, "fuzz check failed: %s\n", aMessage);
    std::abort();
}

}  // namespace Orvex::Fuzz
