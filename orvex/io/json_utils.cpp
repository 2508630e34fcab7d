#include "orvex/io/json_utils.h"

#include <cmath>
#include <limits>

#include "orvex/core/font.h"
#include "orvex/core/numeric.h"
#include "orvex/io/json.h"

namespace Orvex {

namespace {
const TJSON* Find(const TJSON& obj, std::string_view key) {
    if (!obj.is_object()) return nullptr;
    const auto it = obj.find(key);
    return it == obj.end() ? nullptr : &*it;
}

std::uint8_t Component(const TJSON& obj, std::string_view key) {
    const std::int64_t v = TJSONUtils::GetInt(obj, key);
    return static_cast<std::uint8_t>(v < 0 ? 0 : (v > 255 ? 255 : v));
}
}  // namespace

TJSON TJSONUtils::SetAlphaColor(TAlphaColor color) {
    // Filled key by key: an initializer list copies every value once more, and every item writes colours.
    TJSON obj = TJSON::object();
    obj.get_ref<TJSON::object_t&>().reserve(4);
    obj["R"] = RedOf(color);
    obj["G"] = GreenOf(color);
    obj["B"] = BlueOf(color);
    obj["A"] = AlphaOf(color);
    return obj;
}

TAlphaColor TJSONUtils::GetAlphaColor(const TJSON& obj) {
    return AlphaColor(Component(obj, "R"), Component(obj, "G"), Component(obj, "B"), Component(obj, "A"));
}

std::int64_t TJSONUtils::GetInt(const TJSON& obj, std::string_view key) {
    const TJSON* v = Find(obj, key);
    if (v == nullptr) return 0;
    if (v->is_number_integer()) return v->get<std::int64_t>();
    if (v->is_number_unsigned()) {
        const auto u = v->get<std::uint64_t>();
        return u > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())
                   ? 0
                   : static_cast<std::int64_t>(u);
    }
    if (v->is_number_float()) {
        const double d = v->get<double>();
        // Out of range or not a number reads as 0, like any other value the reader cannot take.
        return std::isfinite(d) && std::fabs(d) < 9.2e18 ? static_cast<std::int64_t>(d) : 0;
    }
    if (v->is_boolean()) return v->get<bool>() ? 1 : 0;
    return 0;
}

double TJSONUtils::GetFloat(const TJSON& obj, std::string_view key) {
    const TJSON* v = Find(obj, key);
    return v != nullptr && v->is_number() ? v->get<double>() : 0.0;
}

bool TJSONUtils::GetBool(const TJSON& obj, std::string_view key) {
    const TJSON* v = Find(obj, key);
    return v != nullptr && v->is_boolean() && v->get<bool>();
}

std::string TJSONUtils::GetString(const TJSON& obj, std::string_view key) {
    const TJSON* v = Find(obj, key);
    return v != nullptr && v->is_string() ? v->get<std::string>() : std::string{};
}

const TJSON& TJSONUtils::GetObject(const TJSON& obj, std::string_view key) {
    static const TJSON kEmpty = TJSON::object();
    const TJSON* v = Find(obj, key);
    return v != nullptr && v->is_object() ? *v : kEmpty;
}

const TJSON& TJSONUtils::GetArray(const TJSON& obj, std::string_view key) {
    static const TJSON kEmpty = TJSON::array();
    const TJSON* v = Find(obj, key);
    return v != nullptr && v->is_array() ? *v : kEmpty;
}

TAlphaColor TJSONUtils::GetColor(const TJSON& obj, std::string_view key) {
    return GetAlphaColor(GetObject(obj, key));
}

double TJSONUtils::Round(double value) {
    return RoundTo3Decimals(value);
}

double TJSONUtils::BaseToMM(std::int64_t value) {
    return Round(static_cast<double>(value) / static_cast<double>(kBasePerMM));
}

std::int64_t TJSONUtils::MMToBase(double mm) {
    return Qvl::Utils::ClampCoord(RoundHalfEven(mm * static_cast<double>(kBasePerMM)));
}

double TJSONUtils::BaseToUnit(std::int64_t value, TQVLUnits unit) {
    return Round(static_cast<double>(value) / static_cast<double>(UnitFactor(unit)));
}

std::int64_t TJSONUtils::UnitToBase(double value, TQVLUnits unit) {
    return Qvl::Utils::ClampCoord(RoundHalfEven(value * static_cast<double>(UnitFactor(unit))));
}

TJSON TJSONUtils::SetStrings(const std::vector<std::string>& list) {
    TJSON array = TJSON::array();
    for (const auto& s : list) array.push_back(s);
    return array;
}

std::vector<std::string> TJSONUtils::GetStrings(const TJSON& obj, std::string_view key) {
    std::vector<std::string> out;
    for (const auto& v : GetArray(obj, key))
        if (v.is_string()) out.push_back(v.get<std::string>());
    return out;
}

TJSON TJSONUtils::SetFont(const TQVLFont& font) {
    return TJSON{{"Name", font.Name},
                 {"Bold", font.Bold},
                 {"Italic", font.Italic},
                 {"Underline", font.Underline},
                 {"Strikeout", font.Strikeout},
                 {"FontHeight", Round(font.FontHeight)},
                 {"FontColor", SetAlphaColor(font.FontColor)}};
}

TQVLFont TJSONUtils::GetFont(const TJSON& obj) {
    TQVLFont font;
    font.Name = GetString(obj, "Name");
    font.Bold = GetBool(obj, "Bold");
    font.Italic = GetBool(obj, "Italic");
    font.Underline = GetBool(obj, "Underline");
    font.Strikeout = GetBool(obj, "Strikeout");
    font.FontHeight = static_cast<float>(GetFloat(obj, "FontHeight"));
    font.FontColor = GetColor(obj, "FontColor");
    return font;
}

}  // namespace Orvex
