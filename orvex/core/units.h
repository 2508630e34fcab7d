// Measurement units and the conversions between base units (micrometres) and user units.
#pragma once

#include <cstdint>
#include <string_view>

namespace Qvl::Types {

// Ordinals are stored in drawing files: never reorder.
enum class TQVLUnits : std::uint8_t { unMM, unINCH, unCM, unDM, unM, unFt, unYd };
inline constexpr int kUnitCount = 7;

// One micrometre: every stored length is a whole number of these.
inline constexpr std::int64_t kBasePerMM = 1000;
inline constexpr std::int64_t kBasePerInch = 25400;
inline constexpr double kMMPerInch = 25.4;
// Typographic points: font sizes of rich-text markup, Graphviz coordinates and PDF pages count in them.
inline constexpr double kPointsPerInch = 72.0;

}  // namespace Qvl::Types

namespace Qvl::Utils {
using Qvl::Types::TQVLUnits;

// Base units per unit. The yard is 914000, not 914400: drawings stored with that factor must read back
// to the same numbers. Values outside the enumeration count as millimetres.
std::int64_t UnitFactor(TQVLUnits unit);
std::string_view SymUnit(TQVLUnits unit, bool shortForm);  // shortForm: only "mm", "inch" or "cm"

float GetBaseValue(std::int64_t value);              // base units to millimetres
std::int64_t SetBaseValue(float mm);                 // millimetres to base units, half to even
float GetValue(std::int64_t value, TQVLUnits unit);  // base units to the unit (computed in double)
std::int64_t SetValue(float value, TQVLUnits unit);  // the unit to base units, half to even

}  // namespace Qvl::Utils
