// Benchmarks of the record store. Wanted: appending not slower than to a vector of strings, the last record
// found in much less than a walk over the records, and inserting in the middle as fast whatever their number.
#include "files/MEMORY.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr std::int64_t MILLION = 1'000'000;

std::vector<std::string> varied_records() {
    std::vector<std::string> records;
    records.reserve(MILLION);
    for (std::int64_t number = 0; number < MILLION; ++number)
        records.push_back(std::to_string(4006381333931 + number * 7919) + " article " +
                          std::to_string(number));
    return records;
}

void fill_store(std::int64_t records) {
    initialize_memory();
    for (std::int64_t number = 0; number < records; ++number)
        if (add_record_entry("4006381333931 article") == 0)
            std::abort();
}

void append_to_vector(benchmark::State& state) {
    const auto records = varied_records();
    for (auto _ : state) {
        std::vector<std::string> vector;
        for (const auto& record : records)
            vector.push_back(record); // NOLINT(performance-*): how many come is not known beforehand
        benchmark::DoNotOptimize(vector.data());
    }
    state.SetItemsProcessed(state.iterations() * MILLION);
}
BENCHMARK(append_to_vector)->Name("store/append_million_to_vector")->Unit(benchmark::kMillisecond);

void append_to_store(benchmark::State& state) {
    const auto records = varied_records();
    for (auto _ : state) {
        initialize_memory();
        for (const auto& record : records)
            if (add_record_entry(record) == 0)
                std::abort();
        free_memblock();
    }
    state.SetItemsProcessed(state.iterations() * MILLION);
}
BENCHMARK(append_to_store)->Name("store/append_million")->Unit(benchmark::kMillisecond);

void find_last(benchmark::State& state) {
    fill_store(MILLION);
    for (auto _ : state)
        benchmark::DoNotOptimize(goto_record(MILLION - 1));
}
BENCHMARK(find_last)->Name("store/find_last_of_million")->Unit(benchmark::kMicrosecond);

void walk_to_last(benchmark::State& state) {
    fill_store(MILLION);
    for (auto _ : state) {
        char* record = goto_first_record();
        for (std::int64_t number = 1; number < MILLION; ++number)
            record = goto_next_record(record);
        benchmark::DoNotOptimize(record);
    }
}
BENCHMARK(walk_to_last)->Name("store/walk_to_last_of_million")->Unit(benchmark::kMicrosecond);

// The record is found once, as for an operator who edits there; each one inserted is deleted again.
void insert_in_middle(benchmark::State& state) {
    fill_store(state.range(0));
    char* record = goto_record(static_cast<std::uint32_t>(state.range(0) / 2));
    for (auto _ : state)
        record = delete_record_entry(insert_record_entry(record, "an inserted record"));
}
BENCHMARK(insert_in_middle)->Name("store/insert_in_middle_of")->Arg(MILLION / 100)->Arg(MILLION);

} // namespace
