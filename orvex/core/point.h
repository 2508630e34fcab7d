// Point records: base-unit points for items (TQVLPto, TQVLPto64, TQVLBPoint), a single-precision point
// (TQVLSPoint), a double point for curve arithmetic (TPoint2D) and the platform's integer screen point.
#pragma once

#include <cmath>
#include <cstdint>

#include "orvex/core/units.h"

namespace Orvex {
class TORXBaseDraw;
}

namespace Qvl::Types {

// An integer point in device pixels, as mouse events deliver it.
struct TPoint {
    std::int32_t X = 0;
    std::int32_t Y = 0;
    friend constexpr bool operator==(const TPoint&, const TPoint&) = default;
};

// A point in base units, with conversions to and from user units and device pixels.
struct TQVLPto {
    std::int64_t X = 0;
    std::int64_t Y = 0;

    void DefineBase(std::int64_t x, std::int64_t y) { X = x, Y = y; }
    void SetBase(std::int64_t x, std::int64_t y) { X = x, Y = y; }
    void SetBaseX(std::int64_t x) { X = x; }
    void SetBaseY(std::int64_t y) { Y = y; }
    void BaseMove(std::int64_t dx, std::int64_t dy) { X += dx, Y += dy; }

    void SetX(float value, TQVLUnits unit);
    void SetY(float value, TQVLUnits unit);
    void Define(float x, float y, TQVLUnits unit);
    void SetValues(float x, float y, TQVLUnits unit);
    void Move(float dx, float dy, TQVLUnits unit);
    float GetX(TQVLUnits unit) const;
    float GetY(TQVLUnits unit) const;

    // Device conversions; defined beside the draw context they read (render/draw_context.cpp).
    float DrawX(const Orvex::TORXBaseDraw& surface) const;
    float DrawY(const Orvex::TORXBaseDraw& surface) const;
    float DrawGapX(std::int64_t gap, const Orvex::TORXBaseDraw& surface) const;  // gap in base units
    float DrawGapY(std::int64_t gap, const Orvex::TORXBaseDraw& surface) const;
    std::int32_t PrintX(const Orvex::TORXBaseDraw& surface) const;
    std::int32_t PrintY(const Orvex::TORXBaseDraw& surface) const;
    void SetDpIBaseX(float value, std::int32_t dpi);  // value in pixels at dpi dots per inch
    void SetDpIBaseY(float value, std::int32_t dpi);

    bool SamePto(std::int64_t x, std::int64_t y) const { return X == x && Y == y; }
    void SetValue(const TQVLPto& other) { *this = other; }
    void Reset() { X = 0, Y = 0; }

    friend constexpr bool operator==(const TQVLPto&, const TQVLPto&) = default;
};

// A base-unit point as a value type with arithmetic.
struct TQVLPto64 {
    std::int64_t X = 0;
    std::int64_t Y = 0;

    constexpr TQVLPto64() = default;
    constexpr TQVLPto64(std::int64_t x, std::int64_t y) : X(x), Y(y) {}

    static constexpr TQVLPto64 Zero() { return {}; }
    constexpr bool IsZero() const { return X == 0 && Y == 0; }
    constexpr void SetLocation(std::int64_t x, std::int64_t y) { X = x, Y = y; }
    constexpr void Offset(const TQVLPto64& p) { X += p.X, Y += p.Y; }
    constexpr void Offset(std::int64_t dx, std::int64_t dy) { X += dx, Y += dy; }
    constexpr TQVLPto64 Add(const TQVLPto64& p) const { return {X + p.X, Y + p.Y}; }
    constexpr TQVLPto64 Subtract(const TQVLPto64& p) const { return {X - p.X, Y - p.Y}; }
    double Distance(const TQVLPto64& p) const {
        return std::hypot(static_cast<double>(p.X - X), static_cast<double>(p.Y - Y));
    }
    double Angle(const TQVLPto64& p) const {  // radians from this point towards p
        return std::atan2(static_cast<double>(p.Y - Y), static_cast<double>(p.X - X));
    }
    // The point lies inside the circle or on it.
    static bool PointInCircle(const TQVLPto64& center, const TQVLPto64& point, std::int64_t radius) {
        return center.Distance(point) <= static_cast<double>(radius);
    }

    friend constexpr TQVLPto64 operator+(const TQVLPto64& a, const TQVLPto64& b) { return a.Add(b); }
    friend constexpr TQVLPto64 operator-(const TQVLPto64& a, const TQVLPto64& b) { return a.Subtract(b); }
    friend constexpr bool operator==(const TQVLPto64&, const TQVLPto64&) = default;
};

// A base-unit point that can be marked as not set.
struct TQVLBPoint {
    static constexpr std::int64_t kInvalid = INT64_MIN;

    std::int64_t X = 0;
    std::int64_t Y = 0;

    constexpr TQVLBPoint() = default;
    constexpr TQVLBPoint(std::int64_t x, std::int64_t y) : X(x), Y(y) {}
    constexpr TQVLBPoint(const TPoint& p) : X(p.X), Y(p.Y) {}  // NOLINT: implicit, as screen points arrive

    constexpr void Define(std::int64_t x, std::int64_t y) { X = x, Y = y; }
    constexpr void Valid(std::int64_t x, std::int64_t y) { X = x, Y = y; }  // sets the point, now valid
    constexpr void InValid() { X = kInvalid, Y = kInvalid; }                // marks the point as not set
    constexpr bool IsValid() const { return X != kInvalid && Y != kInvalid; }

    friend constexpr TQVLBPoint operator+(const TQVLBPoint& a, const TQVLBPoint& b) {
        return {a.X + b.X, a.Y + b.Y};
    }
    friend constexpr TQVLBPoint operator-(const TQVLBPoint& a, const TQVLBPoint& b) {
        return {a.X - b.X, a.Y - b.Y};
    }
    friend constexpr TQVLBPoint operator-(const TQVLBPoint& a) { return {-a.X, -a.Y}; }
    friend constexpr TQVLBPoint operator*(const TQVLBPoint& a, const TQVLBPoint& b) {
        return {a.X * b.X, a.Y * b.Y};
    }
    // Scaling rounds half to even.
    friend TQVLBPoint operator*(const TQVLBPoint& a, float f);
    friend TQVLBPoint operator*(float f, const TQVLBPoint& a) { return a * f; }
    friend TQVLBPoint operator/(const TQVLBPoint& a, float f);  // f must not be 0
    friend constexpr bool operator==(const TQVLBPoint&, const TQVLBPoint&) = default;
};

struct TQVLSPoint {
    float X = 0.0f;
    float Y = 0.0f;
    constexpr void Define(float x, float y) { X = x, Y = y; }
    friend constexpr bool operator==(const TQVLSPoint&, const TQVLSPoint&) = default;
};

struct TPoint2D {
    double X = 0.0;
    double Y = 0.0;
    constexpr TPoint2D() = default;
    constexpr TPoint2D(double x, double y) : X(x), Y(y) {}
    static constexpr TPoint2D Create(double x, double y) { return {x, y}; }
    friend constexpr bool operator==(const TPoint2D&, const TPoint2D&) = default;
};

}  // namespace Qvl::Types
