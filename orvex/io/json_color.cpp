#include "orvex/io/json_color.h"

#include <algorithm>
#include <cmath>

#include "orvex/io/json.h"

namespace Orvex {
namespace {

std::uint8_t Component(const TJSON& obj, const char* key, std::uint8_t fallback) {
    const auto it = obj.find(key);
    if (it == obj.end()) return fallback;
    if (!it->is_number()) return 0;
    const double value = it->get<double>();
    if (std::isnan(value)) return 0;
    return static_cast<std::uint8_t>(std::clamp(std::round(value), 0.0, 255.0));
}

}  // namespace

void ColorHex(TJSON& obj, Qvl::Types::TAlphaColor c) {
    obj["Color"] = Qvl::Utils::AlphaColorToHex(c);
}

void ColorRGBA(TJSON& obj, Qvl::Types::TAlphaColor c) {
    obj["R"] = Qvl::Utils::RedOf(c);
    obj["G"] = Qvl::Utils::GreenOf(c);
    obj["B"] = Qvl::Utils::BlueOf(c);
    obj["A"] = Qvl::Utils::AlphaOf(c);
}

Qvl::Types::TAlphaColor ParseJsonColor(const TJSON& obj) {
    if (!obj.is_object()) return Qvl::Types::kOpaqueWhite;
    if (const auto it = obj.find("Color"); it != obj.end())
        return it->is_string() ? Qvl::Utils::ParseColor(it->get_ref<const std::string&>()) : 0;
    if (obj.contains("R")) return ParseJsColor(obj);
    return Qvl::Types::kOpaqueWhite;
}

Qvl::Types::TAlphaColor ParseJsColor(const TJSON& obj) {
    if (!obj.is_object()) return 0;
    return Qvl::Utils::AlphaColor(Component(obj, "R", 0), Component(obj, "G", 0), Component(obj, "B", 0),
                                  Component(obj, "A", 255));
}

}  // namespace Orvex
