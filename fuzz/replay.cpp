// Runs every target over its corpus: what was found once stays found.
#include "fuzz/fuzz.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

class Corpus : public testing::TestWithParam<std::size_t> {};

TEST_P(Corpus, Replays) {
    const FUZZ_TARGET& target = FUZZ_TARGETS[GetParam()];
    int inputs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TOLVAN_CORPUS + std::string(target.name))) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string input{std::istreambuf_iterator<char>(file), {}};
        SCOPED_TRACE(entry.path());
        run_fuzz_input(target, input);
        ++inputs;
    }
    EXPECT_GT(inputs, 0) << target.name;
}

INSTANTIATE_TEST_SUITE_P(Of, Corpus, testing::Range(std::size_t{0}, FUZZ_TARGET_COUNT),
                         [](const auto& target) { return FUZZ_TARGETS[target.param].name; });
