#include "orvex/core/units.h"

#include "orvex/core/numeric.h"

namespace Qvl::Utils {

using Qvl::Types::kBasePerInch;
using Qvl::Types::kBasePerMM;

std::int64_t UnitFactor(TQVLUnits unit) {
    switch (unit) {
        case TQVLUnits::unMM:
            return kBasePerMM;
        case TQVLUnits::unINCH:
            return kBasePerInch;
        case TQVLUnits::unCM:
            return 10 * kBasePerMM;
        case TQVLUnits::unDM:
            return 100 * kBasePerMM;
        case TQVLUnits::unM:
            return 1000 * kBasePerMM;
        case TQVLUnits::unFt:
            return 12 * kBasePerInch;
        case TQVLUnits::unYd:
            return 914000;
    }
    return 1000;
}

std::string_view SymUnit(TQVLUnits unit, bool shortForm) {
    switch (unit) {
        case TQVLUnits::unMM:
            return "mm";
        case TQVLUnits::unINCH:
            return "inch";
        case TQVLUnits::unCM:
            return "cm";
        case TQVLUnits::unDM:
            return shortForm ? "mm" : "dm";
        case TQVLUnits::unM:
            return shortForm ? "mm" : "m";
        case TQVLUnits::unFt:
            return shortForm ? "mm" : "ft";
        case TQVLUnits::unYd:
            return shortForm ? "mm" : "yd";
    }
    return "mm";
}

float GetBaseValue(std::int64_t value) {
    return static_cast<float>(static_cast<double>(value) / static_cast<double>(kBasePerMM));
}

std::int64_t SetBaseValue(float mm) {
    return RoundHalfEven(static_cast<double>(mm) * static_cast<double>(kBasePerMM));
}

float GetValue(std::int64_t value, TQVLUnits unit) {
    return static_cast<float>(static_cast<double>(value) / static_cast<double>(UnitFactor(unit)));
}

std::int64_t SetValue(float value, TQVLUnits unit) {
    return RoundHalfEven(static_cast<double>(value) * static_cast<double>(UnitFactor(unit)));
}

}  // namespace Qvl::Utils
