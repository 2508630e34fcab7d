#include "orvex/document/doc_objects.h"

#include "orvex/io/json_text.h"

namespace Orvex {

void TORXData::CheckJson() {
    if (fDataJson.empty()) return;
    const TJSON parsed = ParseJsonOrDiscarded(fDataJson);
    if (parsed.is_discarded() || !(parsed.is_array() || parsed.is_object())) fDataJson.clear();
}

void TORXBaseLibSymbol::ReadJson(const TJSON& obj) {
    // Writing a tree recurses once per level: one nested deeper than any reader takes is not kept.
    fJsonText = obj.is_object() && JsonTreeNestingWithin(obj, kJSONMaxDepth) ? obj.dump() : "{}";
}

TJSON TORXBaseLibSymbol::WriteJson() const {
    return ParseJsonOrDiscarded(fJsonText);
}

std::string TORXBaseLibSymbol::Name() const {
    const TJSON obj = WriteJson();
    const auto it = obj.find("Name");
    return it != obj.end() && it->is_string() ? it->get<std::string>() : std::string{};
}

}  // namespace Orvex
