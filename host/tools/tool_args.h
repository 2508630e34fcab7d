// What every tool body shares: the argument error, conversions between the drawing's unit and base units,
// colours as "#RRGGBB" / "#AARRGGBB", lookups of items and layers, and the shapes of tool results.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/core/types.h"
#include "orvex/io/json.h"

namespace Orvex {
class TORXBaseItem;
class TORXBaseLabel;
class TORXLayer;
}  // namespace Orvex

namespace Orvex::Host {

// A call the tool refuses before it changes anything; the message says exactly what is wrong.
class EToolArgument : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};

// The largest coordinate a tool accepts, in base units (100 km): far beyond any drawing, far below the
// point where float and 64-bit conversions lose whole units.
inline constexpr double kMaxBaseCoordinate = 1e11;

// Lengths in the drawing's current unit. Length refuses values whose base-unit form is out of range;
// Size also refuses zero and negatives.
std::int64_t Length(const TORXBaseLabel& aDoc, const TJSON& aArgs, std::string_view aKey);
std::int64_t Size(const TORXBaseLabel& aDoc, const TJSON& aArgs, std::string_view aKey);
double ToUnit(const TORXBaseLabel& aDoc, std::int64_t aBase);  // rounded to 3 decimals

std::string UnitName(TQVLUnits aUnit);  // "mm", "inch", "cm", "dm", "m", "ft", "yd"

// "#RRGGBB" is opaque; "#AARRGGBB" carries alpha first. Throws EToolArgument naming aKey otherwise.
TAlphaColor ParseToolColor(std::string_view aText, std::string_view aKey);
std::string ToolColorText(TAlphaColor aColor);  // "#RRGGBB" when opaque, else "#AARRGGBB"

// The item the arguments name through exactly one of "index" (zero-based), "name" (ignoring case) or
// "id" (the internal id). Throws EToolArgument when none, several, or an unknown item is named.
TORXBaseItem* ResolveItem(TORXBaseLabel& aDoc, const TJSON& aArgs);
TORXBaseItem* ItemByInID(const TORXBaseLabel& aDoc, std::int32_t aInID);  // nullptr when none
// The layer under aKey, one-based. Throws EToolArgument when out of range.
TORXLayer* ResolveLayer(TORXBaseLabel& aDoc, const TJSON& aArgs, std::string_view aKey);

// A result with structured content and the same JSON as text.
TJSON StructuredResult(TJSON aValue);
TJSON ErrorResult(std::string_view aMessage, TJSON aStructured = nullptr);

// The name, internal id, index, kind and layer of an item, plus its bounds in the drawing's unit.
TJSON ItemSummary(const TORXBaseLabel& aDoc, const TORXBaseItem& aItem);

// Names of enumerations as the tools spell them (lower_snake), in ordinal order.
const std::vector<std::string_view>& KindNames();  // by TQVLItemType ordinal: "flow", "link", ...
const std::vector<std::string_view>& FlowTypeNames();
const std::vector<std::string_view>& LinkTypeNames();
const std::vector<std::string_view>& LineTypeNames();
const std::vector<std::string_view>& TerminatorNames();
std::int32_t EnumIndex(const std::vector<std::string_view>& aNames, std::string_view aValue);  // -1: none

}  // namespace Orvex::Host
