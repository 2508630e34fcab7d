// One libFuzzer binary per target: the build names the target's body in ORVEX_FUZZ_ENTRY.
#include <cstddef>
#include <cstdint>

#include "fuzz/targets/fuzz_targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    return Orvex::Fuzz::ORVEX_FUZZ_ENTRY(aData, aSize);
}
