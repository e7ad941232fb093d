// Benchmarks of the record store and of lookup and data files.
#include "app/checksum.h"
#include "app/files.h"
#include "files/FILEGEN.h"
#include "files/FILEGEN_formats.h"
#include "files/FILEGEN_import.h"
#include "files/MEMORY.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

// Import of 100 MB against reading its lines with std::getline: at most four times as long is wanted when one
// column is taken. Each further column is as many records again.

namespace {
std::size_t columns_taken = 1;
}

bool choose_import_fields(WINDOW, std::vector<FIELD_DESCRIPTOR>& fields, IMPORT_OPTIONS&) {
    for (std::size_t i = 0; i < columns_taken; ++i)
        fields[i].import_field = 1;
    return true;
}

namespace {

constexpr std::size_t IMPORT_SIZE = 100'000'000; // bytes
constexpr std::string_view TEXT_ROW = "4006381333931,Ballpoint pen,\"blue, fine\",  0012,1.95\r\n";
constexpr std::string_view DBASE_ROW = " 4006381333931Ballpoint pen       0012   1.95blue, fine      ";
double getline_seconds = 0; // 0 while it has not run

std::string dbase_start() {
    std::string bytes = "\x03\x1A\x0B\x15" + std::string(4, '\0') + "\xC1" + std::string(23, '\0');
    for (const int length : {13, 20, 4, 7, 16})
        bytes += "COLUMN" + std::string(10, '\0') + static_cast<char>(length) + std::string(15, '\0');
    return bytes + "\r";
}

// Runs `work` on a file of `start` and rows up to IMPORT_SIZE. Returns the seconds that one run took.
template <typename WORK>
double measure_rows(benchmark::State& state, std::string start, std::string_view row, WORK work) {
    const std::string name = (std::filesystem::temp_directory_path() / "tolvan_bench.import").string();
    while (start.size() < IMPORT_SIZE)
        start += row;
    std::ofstream(name, std::ios::binary) << start;
    const auto begin = std::chrono::steady_clock::now();
    for (auto _ : state)
        work(name);
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    std::filesystem::remove(name);
    return passed.count() / static_cast<double>(state.iterations());
}

void read_lines(benchmark::State& state) {
    getline_seconds = measure_rows(state, "", TEXT_ROW, [](const std::string& name) {
        std::ifstream file(name, std::ios::binary);
        for (std::string line; std::getline(file, line);)
            benchmark::DoNotOptimize(line.data());
    });
}
BENCHMARK(read_lines)->Name("import/getline_only")->Unit(benchmark::kMillisecond);

void import_rows(benchmark::State& state, const std::string& start, std::string_view row,
                 std::int64_t (*import)(WINDOW, TEXT_SOURCE&), std::size_t columns) {
    columns_taken = columns;
    const double seconds = measure_rows(state, start, row, [import](const std::string& name) {
        initialize_memory();
        const FILE_HANDLE file = open_file(name, "rb");
        TEXT_SOURCE source = open_source(file.get());
        if (import(nullptr, source) < static_cast<std::int64_t>(IMPORT_SIZE / 100))
            std::abort();
    });
    if (getline_seconds > 0)
        state.counters["times_getline"] = seconds / getline_seconds; // at most 4 wanted
}
BENCHMARK_CAPTURE(import_rows, text_1_column, "", TEXT_ROW, read_text_ascii_file, 1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(import_rows, text_5_columns, "", TEXT_ROW, read_text_ascii_file, 5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(import_rows, dbase_1_column, dbase_start(), DBASE_ROW, read_dbase_file, 1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(import_rows, dbase_5_columns, dbase_start(), DBASE_ROW, read_dbase_file, 5)
    ->Unit(benchmark::kMillisecond);

} // namespace

// A system file of a million records: saving and opening take at most four times as long as folding its bytes
// one by one.

int choose_lookup_format(WINDOW) {
    return LOOKUP_SYSTEM_FILE;
}

namespace {

constexpr std::uint32_t SYSTEM_RECORDS = 1'000'000;
double fold_seconds = 0; // 0 while it has not run

template <typename WORK>
void measure_system_file(benchmark::State& state, double* seconds, WORK work) {
    const std::string name = (std::filesystem::temp_directory_path() / "tolvan_bench.lkt").string();
    initialize_memory();
    for (std::uint32_t number = 0; number < SYSTEM_RECORDS; ++number)
        add_record_entry("article " + std::to_string(1'000'000 + number));
    if (write_edit_file(nullptr, name, LOOKUP_FILE_EDITED) <= 0)
        std::abort();
    const std::string bytes = *read_whole_file(open_file(name, "rb").get());
    const auto begin = std::chrono::steady_clock::now();
    for (auto _ : state)
        work(name, bytes);
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    const double one_run = passed.count() / static_cast<double>(state.iterations());
    if (seconds != nullptr)
        *seconds = one_run;
    else if (fold_seconds > 0)
        state.counters["times_folding_at_most_4"] = one_run / fold_seconds;
    std::filesystem::remove(name);
}

void fold_system_file(benchmark::State& state) {
    measure_system_file(state, &fold_seconds, [](const std::string&, const std::string& bytes) {
        std::uint16_t crc = 0;
        for (const char byte : bytes)
            crc_16(static_cast<std::uint8_t>(byte), &crc);
        benchmark::DoNotOptimize(crc);
    });
}
BENCHMARK(fold_system_file)->Name("system_file/folded_byte_by_byte")->Unit(benchmark::kMillisecond);

void save_system_file(benchmark::State& state) {
    measure_system_file(state, nullptr, [](const std::string& name, const std::string&) {
        if (write_edit_file(nullptr, name, LOOKUP_FILE_EDITED) <= 0)
            std::abort();
    });
}
BENCHMARK(save_system_file)->Name("system_file/save_a_million")->Unit(benchmark::kMillisecond);

void open_system_file(benchmark::State& state) {
    measure_system_file(state, nullptr, [](const std::string& name, const std::string&) {
        free_memchunks();
        if (read_edit_file(nullptr, name, LOOKUP_FILE_EDITED) != SYSTEM_RECORDS)
            std::abort();
    });
}
BENCHMARK(open_system_file)->Name("system_file/open_a_million")->Unit(benchmark::kMillisecond);

} // namespace
