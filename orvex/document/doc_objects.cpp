#include "orvex/document/doc_objects.h"

#include "orvex/io/json.h"

namespace Orvex {

void TORXData::CheckJson() {
    if (fDataJson.empty()) return;
    const TJSON parsed = TJSON::parse(fDataJson, nullptr, false);
    if (parsed.is_discarded() || !(parsed.is_array() || parsed.is_object())) fDataJson.clear();
}

void TORXBaseLibSymbol::ReadJson(const TJSON& obj) {
    fJsonText = obj.is_object() ? obj.dump() : "{}";
}

TJSON TORXBaseLibSymbol::WriteJson() const {
    return TJSON::parse(fJsonText, nullptr, false);
}

std::string TORXBaseLibSymbol::Name() const {
    const TJSON obj = WriteJson();
    const auto it = obj.find("Name");
    return it != obj.end() && it->is_string() ? it->get<std::string>() : std::string{};
}

}  // namespace Orvex
