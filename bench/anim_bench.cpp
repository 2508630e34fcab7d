// The cost of one animation frame per path type: what a host pays on every Update.
#include <benchmark/benchmark.h>

#include <vector>

#include "orvex/anim/path_animator.h"

namespace {

using namespace Orvex;

// Eight segments that every path type can read, so that the types are compared on the same data.
std::vector<TPathSegment> BenchSegments() {
    std::vector<TPathSegment> segments(8);
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const double o = static_cast<double>(i) * 10.0;
        TPathSegment& s = segments[i];
        s.StartPoint = {o, 0};
        s.ControlPoint1 = {o + 2, 6};
        s.ControlPoint2 = {o + 8, -6};
        s.EndPoint = {o + 10, 0};
        s.Radius = 5;
        s.RadiusY = 3;
        s.StartAngle = 0;
        s.EndAngle = 270;
        s.SpeedFactor = 1.0 + static_cast<double>(i % 3);
    }
    return segments;
}

void BM_Update(benchmark::State& state, TPathType type) {
    TPathAnimator animator;
    animator.SetPath(type, BenchSegments());
    animator.SetTiming(10.0, 1.0);
    animator.SetEasing(TPathEasing::peEaseInOut);
    double x = 0, y = 0, rotation = 0;
    for (auto _ : state) {
        if (!animator.Update(1.0 / 60, x, y, rotation)) animator.Reset();
        benchmark::DoNotOptimize(x);
        benchmark::DoNotOptimize(y);
        benchmark::DoNotOptimize(rotation);
    }
}
BENCHMARK_CAPTURE(BM_Update, ptLine, TPathType::ptLine);
BENCHMARK_CAPTURE(BM_Update, ptPolyline, TPathType::ptPolyline);
BENCHMARK_CAPTURE(BM_Update, ptCircle, TPathType::ptCircle);
BENCHMARK_CAPTURE(BM_Update, ptEllipse, TPathType::ptEllipse);
BENCHMARK_CAPTURE(BM_Update, ptArc, TPathType::ptArc);
BENCHMARK_CAPTURE(BM_Update, ptBezier, TPathType::ptBezier);

// Seeking runs the 48-step inverse easing on top of a frame.
void BM_SeekEased(benchmark::State& state) {
    TPathAnimator animator;
    animator.SetPath(TPathType::ptBezier, BenchSegments());
    animator.SetTiming(10.0, 1.0);
    animator.SetEasing(TPathEasing::peSmoothStep);
    double x = 0, y = 0, rotation = 0, progress = 0;
    for (auto _ : state) {
        animator.Seek(progress, x, y, rotation);
        benchmark::DoNotOptimize(x);
        progress = progress >= 0.99 ? 0.0 : progress + 0.01;
    }
}
BENCHMARK(BM_SeekEased);

}  // namespace
