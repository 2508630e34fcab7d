// Moves a point along a path of segments over a total time, with easing, reverse running and a time scale,
// and reports its position and heading. A host calls Update once per frame (or Seek to jump); nothing here
// allocates after SetPath, so a frame costs a bounded, allocation-free amount of work.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "orvex/core/point.h"

namespace Orvex {

using Qvl::Types::TPoint2D;

// One type holds for the whole path; every segment is read by it.
enum class TPathType : std::uint8_t { ptLine, ptPolyline, ptCircle, ptEllipse, ptArc, ptBezier };

enum class TPathEasing : std::uint8_t { peLinear, peEaseIn, peEaseOut, peEaseInOut, peSmoothStep };

struct TPathSegment {
    TPoint2D StartPoint;  // a line's start; the centre of a circle, ellipse or arc
    TPoint2D EndPoint;    // a line's or Bézier's end
    TPoint2D ControlPoint1;
    TPoint2D ControlPoint2;
    double Radius = 0.0;  // circle and arc radius; the ellipse's horizontal radius
    double RadiusY = 0.0;
    double StartAngle = 0.0;  // degrees, for arcs and ellipses
    double EndAngle = 0.0;
    double SpeedFactor = 1.0;  // relative speed on this segment; 0 or below counts as 1
};

class TPathAnimator {
  public:
    TPathAnimator() = default;

    void SetPath(TPathType pathType, const std::vector<TPathSegment>& segments);  // copies the segments
    // Throws std::out_of_range (total time first, then scale) and then changes nothing. Keeps the progress.
    void SetTiming(double totalTime, double timeScale);
    void Reset();  // to the start of the current direction: the end when running in reverse

    void SetReverse(bool value) { FReverse = value; }  // the current time stays where it is
    bool IsReverse() const { return FReverse; }
    void SetEasing(TPathEasing value) { FEasing = value; }
    TPathEasing GetEasing() const { return FEasing; }
    void UpdateTimeScale(double newScale);  // throws std::out_of_range unless newScale > 0
    double GetTimeScale() const { return FTimeScale; }

    double GetProgress() const;      // time progress 0 … 1, before easing
    double GetPathProgress() const;  // eased progress along the path's time weights
    double GetPathLength() const { return FPathLength; }
    double GetTotalTime() const { return FTotalTime; }
    double GetCurrentTime() const { return FCurrentTime; }

    // Position and rotation (radians, 0 along +X, increasing towards +Y) after advancing by deltaTime seconds
    // of wall time. Returns false at the end of a run in the current direction, with the position at that end
    // and the wall time left over in remainingDelta; also false when no position can be computed. Throws
    // std::out_of_range for a negative deltaTime.
    bool Update(double deltaTime, double& x, double& y, double& rotation, double& remainingDelta);
    bool Update(double deltaTime, double& x, double& y, double& rotation);
    // Jumps to an eased path progress in [0, 1] (throws std::out_of_range otherwise); false while idle.
    bool Seek(double progress, double& x, double& y, double& rotation);
    // The position at an absolute time in [0, total time]; false (outputs untouched) outside it or while
    // idle.
    bool CalculatePosition(double time, double& x, double& y, double& rotation) const;
    // Waypoint k is the start of segment k; k == segment count is the path's end. Listed in the order of
    // travel between two time progresses in [0, 1] (throws std::out_of_range otherwise).
    std::vector<int> GetCrossedWaypoints(double fromProgress, double toProgress) const;

    double ApplyEasing(double t) const;
    double InverseEasing(double p) const;  // bisection for every curve, so all share one bounded routine

  private:
    double GetSegmentLength(const TPathSegment& segment) const;
    double GetSegmentAngle(const TPathSegment& segment, double s) const;  // radians
    TPoint2D CurvePoint(const TPathSegment& segment, double s) const;     // ellipse or Bézier at s
    double GetDistanceAdjustedProgress(std::size_t index, double t) const;
    void CalculateLengths();

    TPathType FPathType = TPathType::ptLine;
    std::vector<TPathSegment> FPathSegments;
    double FTotalTime = 0.0;
    double FTimeScale = 1.0;
    double FCurrentTime = 0.0;
    std::vector<double> FSegmentLengths;
    std::vector<double> FSegmentTimeWeights;
    std::vector<double> FCumulativeTimeWeights;
    // Per ellipse or Bézier segment, its chords and their running sums, so that pacing a frame needs no
    // curve evaluation: kCurveChords + 1 entries per segment each, the first a zero.
    std::vector<double> FChords;
    std::vector<double> FChordSums;
    double FPathLength = 0.0;
    double FTotalTimeWeight = 0.0;
    bool FReverse = false;
    TPathEasing FEasing = TPathEasing::peLinear;
};

// The Bézier helpers are shared with anything that draws the same curve as the animator follows.
TPoint2D CalculateBezierPosition(const TPathSegment& segment, double s);
TPoint2D CalculateBezierTangent(const TPathSegment& segment, double s);
double CalculateBezierRotation(const TPathSegment& segment, double s);

}  // namespace Orvex
