// TQVLRect: a rectangle of base units with the usual rules over 64-bit integers. Containment is half-open
// (the right and bottom edges are outside); a rectangle with no area is empty.
#pragma once

#include <algorithm>
#include <cstdint>

#include "orvex/core/point.h"

namespace Qvl::Types {

struct TQVLRect {
    std::int64_t Left = 0;
    std::int64_t Top = 0;
    std::int64_t Right = 0;
    std::int64_t Bottom = 0;

    constexpr TQVLRect() = default;
    constexpr TQVLRect(std::int64_t l, std::int64_t t, std::int64_t r, std::int64_t b)
        : Left(l), Top(t), Right(r), Bottom(b) {}
    constexpr TQVLRect(const TQVLPto64& topLeft, std::int64_t width, std::int64_t height)
        : Left(topLeft.X), Top(topLeft.Y), Right(topLeft.X + width), Bottom(topLeft.Y + height) {}

    constexpr std::int64_t GetWidth() const { return Right - Left; }
    constexpr std::int64_t GetHeight() const { return Bottom - Top; }
    constexpr void SetWidth(std::int64_t w) { Right = Left + w; }
    constexpr void SetHeight(std::int64_t h) { Bottom = Top + h; }
    constexpr TQVLPto64 TopLeft() const { return {Left, Top}; }
    constexpr TQVLPto64 BottomRight() const { return {Right, Bottom}; }

    constexpr bool Contains(std::int64_t x, std::int64_t y) const {
        return Left <= x && x < Right && Top <= y && y < Bottom;
    }
    constexpr bool Contains(const TQVLPto64& p) const { return Contains(p.X, p.Y); }
    constexpr bool Contains(const TQVLPto& p) const { return Contains(p.X, p.Y); }
    // Every point of r lies inside; r's own right and bottom edges are outside it too.
    constexpr bool Contains(const TQVLRect& r) const {
        return Left <= r.Left && r.Right <= Right && Top <= r.Top && r.Bottom <= Bottom;
    }

    constexpr void NormalizeRect() {
        if (Top > Bottom) std::swap(Top, Bottom);
        if (Left > Right) std::swap(Left, Right);
    }
    constexpr void Inflate(std::int64_t dx, std::int64_t dy) { Inflate(dx, dy, dx, dy); }
    constexpr void Inflate(std::int64_t l, std::int64_t t, std::int64_t r, std::int64_t b) {
        Left -= l, Top -= t, Right += r, Bottom += b;
    }
    constexpr void Offset(std::int64_t dx, std::int64_t dy) {
        Left += dx, Top += dy, Right += dx, Bottom += dy;
    }

    constexpr bool IsEmpty() const { return Right <= Left || Bottom <= Top; }
    static constexpr TQVLRect Empty() { return {}; }
    constexpr void EmptyRect() { *this = Empty(); }

    // The two share area: touching edges do not intersect.
    constexpr bool IntersectsWith(const TQVLRect& r) const {
        return Left < r.Right && r.Left < Right && Top < r.Bottom && r.Top < Bottom;
    }
    static constexpr TQVLRect IntersectRect(const TQVLRect& a, const TQVLRect& b) {
        TQVLRect r(std::max(a.Left, b.Left), std::max(a.Top, b.Top), std::min(a.Right, b.Right),
                   std::min(a.Bottom, b.Bottom));
        return r.IsEmpty() ? Empty() : r;
    }
    constexpr void Intersect(const TQVLRect& r) { *this = IntersectRect(*this, r); }
    // An empty side contributes nothing; the union of two empty rectangles is empty.
    static constexpr TQVLRect UnionRect(const TQVLRect& a, const TQVLRect& b) {
        if (a.IsEmpty()) return b.IsEmpty() ? Empty() : b;
        if (b.IsEmpty()) return a;
        return {std::min(a.Left, b.Left), std::min(a.Top, b.Top), std::max(a.Right, b.Right),
                std::max(a.Bottom, b.Bottom)};
    }
    constexpr void Union(const TQVLRect& r) { *this = UnionRect(*this, r); }

    friend constexpr TQVLRect operator+(const TQVLRect& a, const TQVLRect& b) { return UnionRect(a, b); }
    friend constexpr TQVLRect operator*(const TQVLRect& a, const TQVLRect& b) { return IntersectRect(a, b); }
    friend constexpr bool operator==(const TQVLRect&, const TQVLRect&) = default;
};

}  // namespace Qvl::Types
