// The path animator: easing, segment lengths and time weights, position at a time, running and seeking.
// [SECTION] Bézier  [SECTION] Configuration  [SECTION] Easing  [SECTION] Geometry  [SECTION] Position
// [SECTION] Running
#include "orvex/anim/path_animator.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace Orvex {
namespace {

constexpr int kCurveChords = 48;            // chords per ellipse or Bézier, for its length and its pacing
constexpr int kBisectionSteps = 48;         // enough to exhaust a double's mantissa on [0, 1]
constexpr double kMinSegmentLength = 1e-6;  // keeps zero-length segments from dividing by zero
constexpr double kJoinStart = 0.99;         // the heading turns through a Bézier joint over the last 1 %
constexpr double kPi = std::numbers::pi;

constexpr const char* kTotalTimeMessage = "TotalTime must be greater than zero";
constexpr const char* kTimeScaleMessage = "TimeScale must be greater than zero";
constexpr const char* kProgressMessage = "Progress must be between zero and one";
constexpr const char* kDeltaTimeMessage = "DeltaTime must be zero or greater";

double DegToRad(double degrees) {
    return degrees * kPi / 180.0;
}

double ChordLength(const TPoint2D& a, const TPoint2D& b) {
    return std::hypot(b.X - a.X, b.Y - a.Y);
}

// Written so that NaN fails as well.
bool IsProgress(double value) {
    return value >= 0.0 && value <= 1.0;
}

void CheckProgress(double value) {
    if (!IsProgress(value)) throw std::out_of_range(kProgressMessage);
}

}  // namespace

// [SECTION] Bézier

TPoint2D CalculateBezierPosition(const TPathSegment& segment, double s) {
    const double u = 1.0 - s;
    const double b0 = u * u * u;
    const double b1 = 3.0 * u * u * s;
    const double b2 = 3.0 * u * s * s;
    const double b3 = s * s * s;
    return {b0 * segment.StartPoint.X + b1 * segment.ControlPoint1.X + b2 * segment.ControlPoint2.X +
                b3 * segment.EndPoint.X,
            b0 * segment.StartPoint.Y + b1 * segment.ControlPoint1.Y + b2 * segment.ControlPoint2.Y +
                b3 * segment.EndPoint.Y};
}

TPoint2D CalculateBezierTangent(const TPathSegment& segment, double s) {
    const double u = 1.0 - s;
    const double t0 = 3.0 * u * u;
    const double t1 = 6.0 * u * s;
    const double t2 = 3.0 * s * s;
    const TPoint2D& p0 = segment.StartPoint;
    const TPoint2D& p1 = segment.ControlPoint1;
    const TPoint2D& p2 = segment.ControlPoint2;
    const TPoint2D& p3 = segment.EndPoint;
    return {t0 * (p1.X - p0.X) + t1 * (p2.X - p1.X) + t2 * (p3.X - p2.X),
            t0 * (p1.Y - p0.Y) + t1 * (p2.Y - p1.Y) + t2 * (p3.Y - p2.Y)};
}

double CalculateBezierRotation(const TPathSegment& segment, double s) {
    const TPoint2D tangent = CalculateBezierTangent(segment, s);
    return std::atan2(tangent.Y, tangent.X);
}

// [SECTION] Configuration

void TPathAnimator::SetPath(TPathType pathType, const std::vector<TPathSegment>& segments) {
    FPathType = pathType;
    FPathSegments = segments;
    CalculateLengths();
}

void TPathAnimator::SetTiming(double totalTime, double timeScale) {
    if (!(totalTime > 0.0)) throw std::out_of_range(kTotalTimeMessage);
    if (!(timeScale > 0.0)) throw std::out_of_range(kTimeScaleMessage);
    const double progress = GetProgress();
    FTotalTime = totalTime;
    FTimeScale = timeScale;
    FCurrentTime = progress * totalTime;
}

void TPathAnimator::Reset() {
    FCurrentTime = FReverse ? FTotalTime : 0.0;
}

void TPathAnimator::UpdateTimeScale(double newScale) {
    if (!(newScale > 0.0)) throw std::out_of_range(kTimeScaleMessage);
    FTimeScale = newScale;
}

double TPathAnimator::GetProgress() const {
    if (FTotalTime <= 0.0) return 0.0;
    return std::min(1.0, FCurrentTime / FTotalTime);
}

double TPathAnimator::GetPathProgress() const {
    return ApplyEasing(GetProgress());
}

// [SECTION] Easing

double TPathAnimator::ApplyEasing(double t) const {
    t = std::clamp(t, 0.0, 1.0);
    switch (FEasing) {
        case TPathEasing::peLinear:
            return t;
        case TPathEasing::peEaseIn:
            return t * t;
        case TPathEasing::peEaseOut:
            return 1.0 - (1.0 - t) * (1.0 - t);
        case TPathEasing::peEaseInOut: {
            if (t < 0.5) return 2.0 * t * t;
            const double u = 2.0 - 2.0 * t;
            return 1.0 - u * u / 2.0;
        }
        case TPathEasing::peSmoothStep:
            return t * t * (3.0 - 2.0 * t);
    }
    return t;
}

double TPathAnimator::InverseEasing(double p) const {
    p = std::clamp(p, 0.0, 1.0);
    if (FEasing == TPathEasing::peLinear) return p;
    double lo = 0.0;
    double hi = 1.0;
    for (int i = 0; i < kBisectionSteps; ++i) {
        const double mid = (lo + hi) / 2.0;
        if (ApplyEasing(mid) < p)
            lo = mid;
        else
            hi = mid;
    }
    return (lo + hi) / 2.0;
}

// [SECTION] Geometry

double TPathAnimator::GetSegmentAngle(const TPathSegment& segment, double s) const {
    const double start = segment.StartAngle;
    double end = segment.EndAngle;
    // Equal angles on an ellipse mean the whole ellipse; on an arc they mean no arc at all.
    if (FPathType == TPathType::ptEllipse && start == end) end = start + 360.0;
    return DegToRad(start + (end - start) * s);
}

TPoint2D TPathAnimator::CurvePoint(const TPathSegment& segment, double s) const {
    if (FPathType == TPathType::ptBezier) return CalculateBezierPosition(segment, s);
    const double a = GetSegmentAngle(segment, s);
    return {segment.StartPoint.X + segment.Radius * std::cos(a),
            segment.StartPoint.Y + segment.RadiusY * std::sin(a)};
}

double TPathAnimator::GetSegmentLength(const TPathSegment& segment) const {
    switch (FPathType) {
        case TPathType::ptLine:
        case TPathType::ptPolyline:
            return ChordLength(segment.StartPoint, segment.EndPoint);
        case TPathType::ptCircle:
            return 2.0 * kPi * std::abs(segment.Radius);
        case TPathType::ptArc:
            return std::abs(segment.Radius * DegToRad(segment.EndAngle - segment.StartAngle));
        case TPathType::ptEllipse:
        case TPathType::ptBezier:
            break;
    }
    double length = 0.0;
    TPoint2D previous = CurvePoint(segment, 0.0);
    for (int k = 1; k <= kCurveChords; ++k) {
        const TPoint2D point = CurvePoint(segment, static_cast<double>(k) / kCurveChords);
        length += ChordLength(previous, point);
        previous = point;
    }
    return length;
}

void TPathAnimator::CalculateLengths() {
    const std::size_t count = FPathSegments.size();
    FSegmentLengths.assign(count, 0.0);
    FSegmentTimeWeights.assign(count, 0.0);
    FCumulativeTimeWeights.assign(count, 0.0);
    FPathLength = 0.0;
    FTotalTimeWeight = 0.0;
    const bool curved = FPathType == TPathType::ptEllipse || FPathType == TPathType::ptBezier;
    constexpr std::size_t kStride = kCurveChords + 1;
    FChords.assign(curved ? count * kStride : 0, 0.0);
    FChordSums.assign(curved ? count * kStride : 0, 0.0);
    for (std::size_t i = 0; curved && i < count; ++i) {
        // Summed in the order GetSegmentLength sums them, so the last running sum is the segment's length.
        TPoint2D previous = CurvePoint(FPathSegments[i], 0.0);
        for (int k = 1; k <= kCurveChords; ++k) {
            const TPoint2D point = CurvePoint(FPathSegments[i], static_cast<double>(k) / kCurveChords);
            const std::size_t at = i * kStride + static_cast<std::size_t>(k);
            FChords[at] = ChordLength(previous, point);
            FChordSums[at] = FChordSums[at - 1] + FChords[at];
            previous = point;
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        const TPathSegment& segment = FPathSegments[i];
        const double length = std::max(kMinSegmentLength, GetSegmentLength(segment));
        const double speed = segment.SpeedFactor > 0.0 ? segment.SpeedFactor : 1.0;
        const double weight = length / speed;
        FSegmentLengths[i] = length;
        FSegmentTimeWeights[i] = weight;
        FPathLength += length;
        FTotalTimeWeight += weight;
        FCumulativeTimeWeights[i] = FTotalTimeWeight;
    }
}

double TPathAnimator::GetDistanceAdjustedProgress(std::size_t index, double t) const {
    const double target = t * FSegmentLengths[index];
    const double* chords = FChords.data() + index * (kCurveChords + 1);
    const double* sums = FChordSums.data() + index * (kCurveChords + 1);
    for (int k = 1; k <= kCurveChords; ++k) {
        const double chord = chords[k];
        if (sums[k - 1] + chord >= target) {
            if (chord == 0.0) return t;
            return (static_cast<double>(k - 1) + (target - sums[k - 1]) / chord) / kCurveChords;
        }
    }
    return 1.0;
}

// [SECTION] Position

bool TPathAnimator::CalculatePosition(double time, double& x, double& y, double& rotation) const {
    const std::size_t count = FPathSegments.size();
    if (!(FTotalTime > 0.0 && FTotalTimeWeight > 0.0 && time >= 0.0 && time <= FTotalTime && count > 0))
        return false;

    const double target = ApplyEasing(time / FTotalTime) * FTotalTimeWeight;
    // A target exactly on a boundary stays in the earlier segment; anything beyond the end stays in the last.
    std::size_t i = 0;
    while (i < count - 1 && FCumulativeTimeWeights[i] < target) ++i;
    const double before = i == 0 ? 0.0 : FCumulativeTimeWeights[i - 1];
    double t = std::clamp((target - before) / FSegmentTimeWeights[i], 0.0, 1.0);
    if ((FPathType == TPathType::ptEllipse || FPathType == TPathType::ptBezier) && t > 0.0 && t < 1.0)
        t = GetDistanceAdjustedProgress(i, t);

    const TPathSegment& segment = FPathSegments[i];
    const TPoint2D& centre = segment.StartPoint;
    switch (FPathType) {
        case TPathType::ptCircle: {
            const double a = t * 2.0 * kPi;
            x = centre.X + segment.Radius * std::cos(a);
            y = centre.Y + segment.Radius * std::sin(a);
            rotation = a + kPi / 2.0;
            break;
        }
        case TPathType::ptEllipse:
        case TPathType::ptArc: {
            const double a = GetSegmentAngle(segment, t);
            const double rx = segment.Radius;
            const double ry = FPathType == TPathType::ptEllipse ? segment.RadiusY : segment.Radius;
            // The sign of the sweep is the direction of travel; a zero sweep still needs a heading.
            double d = segment.EndAngle - segment.StartAngle;
            if (d == 0.0) d = 1.0;
            x = centre.X + rx * std::cos(a);
            y = centre.Y + ry * std::sin(a);
            rotation = std::atan2(ry * std::cos(a) * d, -rx * std::sin(a) * d);
            break;
        }
        case TPathType::ptBezier: {
            const TPoint2D point = CalculateBezierPosition(segment, t);
            x = point.X;
            y = point.Y;
            rotation = CalculateBezierRotation(segment, t);
            if (t > kJoinStart && i + 1 < count) {
                double r1 = CalculateBezierRotation(segment, 1.0);
                double r2 = CalculateBezierRotation(FPathSegments[i + 1], 0.0);
                while (std::abs(r2 - r1) > kPi) {
                    if (r1 < r2)
                        r1 += 2.0 * kPi;
                    else
                        r2 += 2.0 * kPi;
                }
                rotation = r1 + (r2 - r1) * (t - kJoinStart) / (1.0 - kJoinStart);
            }
            break;
        }
        case TPathType::ptLine:
        case TPathType::ptPolyline: {
            const double dx = segment.EndPoint.X - segment.StartPoint.X;
            const double dy = segment.EndPoint.Y - segment.StartPoint.Y;
            x = segment.StartPoint.X + dx * t;
            y = segment.StartPoint.Y + dy * t;
            rotation = std::atan2(dy, dx);
            break;
        }
    }
    return true;
}

// [SECTION] Running

bool TPathAnimator::Update(double deltaTime, double& x, double& y, double& rotation, double& remainingDelta) {
    remainingDelta = 0.0;
    if (!(deltaTime >= 0.0)) throw std::out_of_range(kDeltaTimeMessage);
    if (!FReverse) {
        const double left = (FTotalTime - FCurrentTime) / FTimeScale;
        if (deltaTime >= left) {
            FCurrentTime = FTotalTime;
            remainingDelta = deltaTime - left;
            CalculatePosition(FCurrentTime, x, y, rotation);
            return false;
        }
        // Rounding must not carry the time past the end while the run is still going.
        FCurrentTime = std::min(FTotalTime, FCurrentTime + deltaTime * FTimeScale);
    } else {
        const double left = FCurrentTime / FTimeScale;
        if (deltaTime >= left) {
            FCurrentTime = 0.0;
            remainingDelta = deltaTime - left;
            CalculatePosition(FCurrentTime, x, y, rotation);
            return false;
        }
        FCurrentTime = std::max(0.0, FCurrentTime - deltaTime * FTimeScale);
    }
    return CalculatePosition(FCurrentTime, x, y, rotation);
}

bool TPathAnimator::Update(double deltaTime, double& x, double& y, double& rotation) {
    double remaining = 0.0;
    return Update(deltaTime, x, y, rotation, remaining);
}

bool TPathAnimator::Seek(double progress, double& x, double& y, double& rotation) {
    CheckProgress(progress);
    if (!(FTotalTime > 0.0)) return false;
    FCurrentTime = InverseEasing(progress) * FTotalTime;
    return CalculatePosition(FCurrentTime, x, y, rotation);
}

std::vector<int> TPathAnimator::GetCrossedWaypoints(double fromProgress, double toProgress) const {
    CheckProgress(fromProgress);
    CheckProgress(toProgress);
    std::vector<int> crossed;
    const int count = static_cast<int>(FPathSegments.size());
    if (count == 0 || fromProgress == toProgress) return crossed;

    const auto position = [&](int k) {
        if (k == 0) return 0.0;
        if (k == count) return 1.0;
        return FCumulativeTimeWeights[static_cast<std::size_t>(k - 1)] / FTotalTimeWeight;
    };
    const double e1 = ApplyEasing(fromProgress);
    const double e2 = ApplyEasing(toProgress);
    if (e2 > e1) {
        for (int k = 1; k <= count; ++k)
            if (e1 < position(k) && position(k) <= e2) crossed.push_back(k);
    } else {
        for (int k = count - 1; k >= 0; --k)
            if (e2 <= position(k) && position(k) < e1) crossed.push_back(k);
    }
    return crossed;
}

}  // namespace Orvex
