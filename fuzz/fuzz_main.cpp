// One target as a libFuzzer program; TOLVAN_FUZZ_TARGET is its name.
#include "fuzz/fuzz.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const FUZZ_TARGET* const target =
        std::find_if(FUZZ_TARGETS, FUZZ_TARGETS + FUZZ_TARGET_COUNT,
                     [](const FUZZ_TARGET& one) { return std::string_view(one.name) == TOLVAN_FUZZ_TARGET; });
    if (target == FUZZ_TARGETS + FUZZ_TARGET_COUNT)
        std::abort();
    run_fuzz_input(*target, {reinterpret_cast<const char*>(data), size});
    return 0;
}
