// JSON Schemas of the tools' arguments and the check that holds a call to them. The check runs before a
// tool body, so a body only ever sees arguments of the declared types, ranges and names.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvex/io/json.h"

namespace Orvex::Host {

// Builders of property schemas. Every description is written for a model: what, which unit, what default.
TJSON NumberProp(std::string_view aDescription);
TJSON NumberProp(std::string_view aDescription, double aMinimum, double aMaximum);
TJSON IntegerProp(std::string_view aDescription, std::int64_t aMinimum, std::int64_t aMaximum);
TJSON StringProp(std::string_view aDescription);
TJSON BoolProp(std::string_view aDescription);
TJSON EnumProp(std::string_view aDescription, const std::vector<std::string_view>& aValues);
TJSON ColorProp(std::string_view aDescription);                           // "#RRGGBB" or "#AARRGGBB"
TJSON PointsProp(std::string_view aDescription, std::int64_t aMinItems);  // [{"x", "y"}, ...]

// {"type": "object", "properties": ..., "required": ..., "additionalProperties": false}.
TJSON ObjectSchema(std::initializer_list<std::pair<std::string, TJSON>> aProperties,
                   std::initializer_list<std::string_view> aRequired = {});
// The same object with more properties, for tool families that share most of theirs.
TJSON WithProperties(TJSON aSchema, std::initializer_list<std::pair<std::string, TJSON>> aProperties,
                     std::initializer_list<std::string_view> aRequired = {});

// The schema's rule that exactly one of the keys is given, as "oneOf" of "required" (the tool checks it
// too, with a message that names the keys).
TJSON WithOneOf(TJSON aSchema, std::initializer_list<std::string_view> aKeys);
// index (zero-based), name or id: how the tools that act on one item name it.
TJSON ItemSelector();

// {"type": "object"}: the output schema of a tool whose structured result is described in words. Clients
// read tools/list whole into an agent's context, so the keys are named once, in the description (and the
// result repeats as text); the server itself states the fuller shapes of the few tools it knows by name.
TJSON ObjectResultSchema();

// Throws EToolArgument naming the first argument that breaks the schema: a missing required one, an
// unknown one, a wrong type, a value out of range or outside an enumeration. Handles the subset of JSON
// Schema the builders above produce.
void ValidateArguments(const TJSON& aSchema, const TJSON& aArguments);

}  // namespace Orvex::Host
