// An enum taken from a number (a file, a property command): clamped to the kind's values 0 .. last, so that
// a field never holds a value its kind lacks.
#pragma once

#include <algorithm>
#include <cstdint>

namespace Orvex {

template <class E>
E EnumWithin(std::int64_t value, E last) {
    return static_cast<E>(std::clamp<std::int64_t>(value, 0, static_cast<std::int64_t>(last)));
}

}  // namespace Orvex
