#include "host/tools/tool_schema.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdint>

#include "host/tools/tool_args.h"

namespace Orvex::Host {

namespace {

// A property of the type, with its description when it says more than the name.
TJSON Typed(std::string_view aType, std::string_view aDescription) {
    TJSON prop = {{"type", aType}};
    if (!aDescription.empty()) prop["description"] = aDescription;
    return prop;
}

}  // namespace

TJSON NumberProp(std::string_view aDescription) {
    return Typed("number", aDescription);
}

namespace {

// A whole bound is written as an integer: "360", not "360.0".
TJSON Bound(double aValue) {
    if (aValue == std::trunc(aValue)) return static_cast<std::int64_t>(aValue);
    return aValue;
}

}  // namespace

TJSON NumberProp(std::string_view aDescription, double aMinimum, double aMaximum) {
    TJSON prop = Typed("number", aDescription);
    prop["minimum"] = Bound(aMinimum);
    prop["maximum"] = Bound(aMaximum);
    return prop;
}

TJSON IntegerProp(std::string_view aDescription, std::int64_t aMinimum, std::int64_t aMaximum) {
    TJSON prop = Typed("integer", aDescription);
    prop["minimum"] = aMinimum;
    // Ids and indexes run to the largest 32-bit value: a bound that says nothing is left out.
    if (aMaximum != INT32_MAX) prop["maximum"] = aMaximum;
    return prop;
}

TJSON StringProp(std::string_view aDescription) {
    return Typed("string", aDescription);
}

TJSON BoolProp(std::string_view aDescription) {
    return Typed("boolean", aDescription);
}

TJSON EnumProp(std::string_view aDescription, const std::vector<std::string_view>& aValues) {
    TJSON values = TJSON::array();
    for (const auto value : aValues) values.push_back(value);
    TJSON prop = Typed("string", aDescription);
    prop["enum"] = std::move(values);
    return prop;
}

TJSON ColorProp(std::string_view aDescription) {
    // The pattern says the form (six or eight hex digits); the instructions say once that alpha comes first.
    TJSON prop = Typed("string", aDescription);
    prop["pattern"] = "^#([0-9A-Fa-f]{2}){3,4}$";
    return prop;
}

TJSON PointsProp(std::string_view aDescription, std::int64_t aMinItems) {
    TJSON point = ObjectSchema({{"x", NumberProp("")}, {"y", NumberProp("")}}, {"x", "y"});
    TJSON prop = Typed("array", aDescription);
    prop["items"] = std::move(point);
    prop["minItems"] = aMinItems;
    return prop;
}

TJSON ObjectSchema(std::initializer_list<std::pair<std::string, TJSON>> aProperties,
                   std::initializer_list<std::string_view> aRequired) {
    TJSON schema = {{"type", "object"}, {"properties", TJSON::object()}};
    return WithProperties(std::move(schema), aProperties, aRequired);
}

TJSON WithProperties(TJSON aSchema, std::initializer_list<std::pair<std::string, TJSON>> aProperties,
                     std::initializer_list<std::string_view> aRequired) {
    for (const auto& [name, property] : aProperties) aSchema["properties"][name] = property;
    // Keep "required" and "additionalProperties" after the properties, where people look for them.
    TJSON required = aSchema.contains("required") ? aSchema["required"] : TJSON::array();
    for (const auto name : aRequired) required.push_back(name);
    aSchema.erase("required");
    aSchema.erase("additionalProperties");
    if (!required.empty()) aSchema["required"] = std::move(required);
    aSchema["additionalProperties"] = false;
    return aSchema;
}

TJSON WithOneOf(TJSON aSchema, std::initializer_list<std::string_view> aKeys) {
    TJSON choices = TJSON::array();
    for (const auto key : aKeys) choices.push_back({{"required", {key}}});
    // A second rule joins the first under "allOf": each must hold.
    if (aSchema.contains("oneOf")) {
        TJSON first = {{"oneOf", aSchema["oneOf"]}};
        aSchema.erase("oneOf");
        aSchema["allOf"] = {std::move(first)};
    }
    if (aSchema.contains("allOf"))
        aSchema["allOf"].push_back({{"oneOf", std::move(choices)}});
    else
        aSchema["oneOf"] = std::move(choices);
    return aSchema;
}

TJSON ItemSelector() {
    return ObjectSchema({{"index", IntegerProp("", 0, INT32_MAX)},
                         {"name", StringProp("")},
                         {"id", IntegerProp("", 1, INT32_MAX)}});
}

TJSON ObjectResultSchema() {
    return {{"type", "object"}};
}

namespace {

std::string_view TypeText(std::string_view aType) {
    if (aType == "number") return "a number";
    if (aType == "integer") return "an integer";
    if (aType == "string") return "a string";
    if (aType == "boolean") return "a boolean";
    if (aType == "array") return "an array";
    return "an object";
}

bool HasType(const TJSON& aValue, std::string_view aType) {
    if (aType == "number") return aValue.is_number();
    if (aType == "integer") {
        if (aValue.is_number_integer()) return true;
        // 3.0 is an integer to JSON Schema, and models write it so.
        if (!aValue.is_number_float()) return false;
        const double v = aValue.get<double>();
        return std::isfinite(v) && v == std::trunc(v) && std::fabs(v) < 9.0e15;
    }
    if (aType == "string") return aValue.is_string();
    if (aType == "boolean") return aValue.is_boolean();
    if (aType == "array") return aValue.is_array();
    return aValue.is_object();
}

std::string Quoted(const std::vector<std::string>& aValues) {
    std::string text;
    for (std::size_t i = 0; i < aValues.size(); ++i) {
        if (i > 0) text += i + 1 == aValues.size() ? " or " : ", ";
        text += '"' + aValues[i] + '"';
    }
    return text;
}

std::string Number(double aValue) {
    return fmt::format("{:g}", aValue);
}

void Validate(const TJSON& aSchema, const TJSON& aValue, const std::string& aPath);

void ValidateObject(const TJSON& aSchema, const TJSON& aValue, const std::string& aPath) {
    const TJSON empty = TJSON::object();
    const TJSON& properties = aSchema.contains("properties") ? aSchema["properties"] : empty;
    const auto child = [&](const std::string& aKey) { return aPath.empty() ? aKey : aPath + "." + aKey; };
    if (aSchema.contains("required"))
        for (const auto& name : aSchema["required"]) {
            const auto key = name.get<std::string>();
            if (!aValue.contains(key))
                throw EToolArgument(fmt::format("missing required argument \"{}\"", child(key)));
        }
    for (const auto& [key, value] : aValue.items()) {
        if (!properties.contains(key)) {
            if (aSchema.value("additionalProperties", true)) continue;
            std::vector<std::string> known;
            for (const auto& [name, property] : properties.items()) known.push_back(name);
            throw EToolArgument(
                known.empty()
                    ? fmt::format("unknown argument \"{}\": this tool takes none", child(key))
                    : fmt::format("unknown argument \"{}\"; expected {}", child(key), Quoted(known)));
        }
        Validate(properties[key], value, child(key));
    }
}

void Validate(const TJSON& aSchema, const TJSON& aValue, const std::string& aPath) {
    const std::string type = aSchema.value("type", std::string("object"));
    if (!HasType(aValue, type))
        throw EToolArgument(fmt::format("argument \"{}\" must be {}", aPath, TypeText(type)));
    if (type == "number" || type == "integer") {
        const double v = aValue.get<double>();
        if (!std::isfinite(v))
            throw EToolArgument(fmt::format("argument \"{}\" must be a finite number", aPath));
        if (aSchema.contains("minimum") && v < aSchema["minimum"].get<double>())
            throw EToolArgument(fmt::format("argument \"{}\" must be at least {}, got {}", aPath,
                                            Number(aSchema["minimum"].get<double>()), Number(v)));
        if (aSchema.contains("maximum") && v > aSchema["maximum"].get<double>())
            throw EToolArgument(fmt::format("argument \"{}\" must be at most {}, got {}", aPath,
                                            Number(aSchema["maximum"].get<double>()), Number(v)));
    } else if (type == "string") {
        const auto& text = aValue.get_ref<const std::string&>();
        if (aSchema.contains("enum")) {
            std::vector<std::string> values;
            for (const auto& v : aSchema["enum"]) values.push_back(v.get<std::string>());
            if (std::find(values.begin(), values.end(), text) == values.end())
                throw EToolArgument(fmt::format("argument \"{}\" must be one of {}; got \"{}\"", aPath,
                                                Quoted(values), text));
        }
        if (aSchema.contains("pattern")) ParseToolColor(text, aPath);  // the only pattern is the colour's
    } else if (type == "array") {
        if (aSchema.contains("minItems") && aValue.size() < aSchema["minItems"].get<std::size_t>())
            throw EToolArgument(fmt::format("argument \"{}\" needs at least {} entries, got {}", aPath,
                                            aSchema["minItems"].get<std::size_t>(), aValue.size()));
        if (aSchema.contains("items"))
            for (std::size_t i = 0; i < aValue.size(); ++i)
                Validate(aSchema["items"], aValue[i], fmt::format("{}[{}]", aPath, i));
    } else if (type == "object") {
        ValidateObject(aSchema, aValue, aPath);
    }
}

}  // namespace

void ValidateArguments(const TJSON& aSchema, const TJSON& aArguments) {
    if (!aArguments.is_object()) throw EToolArgument("the arguments must be a JSON object");
    ValidateObject(aSchema, aArguments, "");
}

}  // namespace Orvex::Host
