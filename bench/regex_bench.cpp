#include <benchmark/benchmark.h>

#include <string>

#include "orvex/core/regex.h"

namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexMatch;

// Parsers walk long lines with anchored matches: each one must cost the match, not the line's length.
void BM_MatchAtOnALongLine(benchmark::State& state) {
    const std::string line = std::string(static_cast<std::size_t>(state.range(0)), 'a') + "-->b";
    static const TRegex token(R"(a)");
    TRegexMatch m;
    std::size_t offset = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(token.MatchAt(line, offset, m));
        offset = (offset + 1) % line.size();
    }
}
BENCHMARK(BM_MatchAtOnALongLine)->Arg(1000)->Arg(100000);

}  // namespace
