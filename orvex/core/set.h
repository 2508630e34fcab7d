// TSet<E>: a small bit set over the ordinals of a one-byte scoped enumeration, the C++ form of the
// "set of" types (options, layer options, snap modes).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <type_traits>

namespace Qvl::Types {

template <class E>
class TSet {
    static_assert(std::is_enum_v<E> && sizeof(E) == 1, "TSet holds one-byte enumerations");

  public:
    constexpr TSet() = default;
    constexpr TSet(std::initializer_list<E> values) {
        for (E v : values) Include(v);
    }

    constexpr bool Contains(E v) const { return (fWords[Word(v)] & Bit(v)) != 0; }
    constexpr TSet& Include(E v) {
        fWords[Word(v)] |= Bit(v);
        return *this;
    }
    constexpr TSet& Exclude(E v) {
        fWords[Word(v)] &= ~Bit(v);
        return *this;
    }
    constexpr bool IsEmpty() const {
        for (auto w : fWords)
            if (w != 0) return false;
        return true;
    }
    constexpr void Clear() { fWords = {}; }

    friend constexpr TSet operator|(TSet a, const TSet& b) {
        for (std::size_t i = 0; i < kWords; ++i) a.fWords[i] |= b.fWords[i];
        return a;
    }
    friend constexpr TSet operator&(TSet a, const TSet& b) {
        for (std::size_t i = 0; i < kWords; ++i) a.fWords[i] &= b.fWords[i];
        return a;
    }
    friend constexpr TSet operator-(TSet a, const TSet& b) {  // set difference
        for (std::size_t i = 0; i < kWords; ++i) a.fWords[i] &= ~b.fWords[i];
        return a;
    }
    friend constexpr bool operator==(const TSet&, const TSet&) = default;

    // The raw bits of ordinals 0..63, for storing small sets as one integer (ordinal n is bit n).
    constexpr std::uint64_t LowBits() const { return fWords[0]; }
    static constexpr TSet FromLowBits(std::uint64_t bits) {
        TSet s;
        s.fWords[0] = bits;
        return s;
    }

  private:
    static constexpr std::size_t kWords = 4;  // 256 ordinals: every value of a one-byte enumeration
    static constexpr std::size_t Word(E v) { return static_cast<std::uint8_t>(v) / 64U; }
    static constexpr std::uint64_t Bit(E v) {
        return std::uint64_t{1} << (static_cast<std::uint8_t>(v) % 64U);
    }

    std::array<std::uint64_t, kWords> fWords{};
};

}  // namespace Qvl::Types
