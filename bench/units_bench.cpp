#include <benchmark/benchmark.h>

#include "orvex/core/types.h"

namespace {

void BM_SetValueInches(benchmark::State& state) {
    float v = 0.0f;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Qvl::Utils::SetValue(v, Qvl::Types::TQVLUnits::unINCH));
        v += 0.125f;
    }
}
BENCHMARK(BM_SetValueInches);

void BM_QVRound(benchmark::State& state) {
    float v = -1000.0f;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Qvl::Utils::QVRound(v));
        v += 0.37f;
    }
}
BENCHMARK(BM_QVRound);

}  // namespace
