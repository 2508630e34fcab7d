#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "orvex/render/draw2d.h"

namespace {

using Orvex::TDraw2D;

// Picking walks every item under the cursor, so these run once per item per mouse move.
void BM_PointInLine(benchmark::State& state) {
    std::int64_t x = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(TDraw2D::PointInLine(0, 0, 100'000, 37'000, x % 100'000, 18'000, 500));
        x += 7919;
    }
}
BENCHMARK(BM_PointInLine);

void BM_PointOnEllipse(benchmark::State& state) {
    std::int64_t x = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            TDraw2D::PointOnEllipse(50'000, 50'000, 40'000, 25'000, x % 100'000, 50'000, 500));
        x += 7919;
    }
}
BENCHMARK(BM_PointOnEllipse);

void BM_PointInBezier(benchmark::State& state) {
    const std::vector<Orvex::TQVLPto64> curve = {{0, 0}, {0, 100'000}, {100'000, 100'000}, {100'000, 0}};
    std::int64_t x = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(TDraw2D::PointInBezier(curve, x % 100'000, 60'000, 500));
        x += 7919;
    }
}
BENCHMARK(BM_PointInBezier);

}  // namespace
