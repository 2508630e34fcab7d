#include "orvex/core/point.h"

#include "orvex/core/numeric.h"

namespace Qvl::Types {

using Qvl::Utils::GetValue;
using Qvl::Utils::RoundHalfEven;

void TQVLPto::SetX(float value, TQVLUnits unit) {
    X = Qvl::Utils::SetValue(value, unit);
}
void TQVLPto::SetY(float value, TQVLUnits unit) {
    Y = Qvl::Utils::SetValue(value, unit);
}

void TQVLPto::Define(float x, float y, TQVLUnits unit) {
    X = Qvl::Utils::SetValue(x, unit);
    Y = Qvl::Utils::SetValue(y, unit);
}

void TQVLPto::SetValues(float x, float y, TQVLUnits unit) {
    Define(x, y, unit);
}

void TQVLPto::Move(float dx, float dy, TQVLUnits unit) {
    X += Qvl::Utils::SetValue(dx, unit);
    Y += Qvl::Utils::SetValue(dy, unit);
}

float TQVLPto::GetX(TQVLUnits unit) const {
    return GetValue(X, unit);
}
float TQVLPto::GetY(TQVLUnits unit) const {
    return GetValue(Y, unit);
}

void TQVLPto::SetDpIBaseX(float value, std::int32_t dpi) {
    if (dpi > 0) X = RoundHalfEven(static_cast<double>(value) * static_cast<double>(kBasePerInch) / dpi);
}

void TQVLPto::SetDpIBaseY(float value, std::int32_t dpi) {
    if (dpi > 0) Y = RoundHalfEven(static_cast<double>(value) * static_cast<double>(kBasePerInch) / dpi);
}

TQVLBPoint operator*(const TQVLBPoint& a, float f) {
    return {RoundHalfEven(static_cast<double>(a.X) * f), RoundHalfEven(static_cast<double>(a.Y) * f)};
}

TQVLBPoint operator/(const TQVLBPoint& a, float f) {
    return {RoundHalfEven(static_cast<double>(a.X) / f), RoundHalfEven(static_cast<double>(a.Y) / f)};
}

}  // namespace Qvl::Types
