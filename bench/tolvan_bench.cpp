// What must be fast: the checksum, opening a full program and showing its fields, and verifying a large file
// behind its progress box. The bar for the checksum is four times the speed of the loop over its bits; it is
// measured in the same run, and the ratios are printed behind the table.
#include "app/checksum.h"
#include "app/files.h"
#include "program/Prog.h"
#include "program/Prog_display.h"
#include "program/Prog_fields.h"
#include "program/Prog_file.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr std::size_t CRC_SIZE = std::size_t{1} << 20;    // bytes
constexpr std::size_t LARGE_SIZE = std::size_t{64} << 20; // bytes
constexpr double LEAST_RATIO = 4;

std::string varied_bytes(std::size_t size) {
    std::string bytes(size, '\0');
    std::uint32_t state = 1;
    for (auto& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

std::string temporary_path(const char* name) {
    return (std::filesystem::temp_directory_path() / name).string();
}

std::uint16_t crc_by_bits(std::string_view bytes) {
    unsigned crc = 0;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned>(static_cast<unsigned char>(byte)) << 8;
        for (int bit = 0; bit < 8; ++bit)
            crc = ((crc << 1) ^ ((crc & 0x8000) != 0 ? 0x1021 : 0)) & 0xFFFF;
    }
    return static_cast<std::uint16_t>(crc);
}

std::uint16_t crc_by_blocks(std::string_view bytes) {
    std::uint16_t crc = 0;
    crc_block(bytes, &crc);
    return crc;
}

// Folds a word at a time: what looking at every byte costs at the least.
std::uint16_t sum_by_words(std::string_view bytes) {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i + sizeof sum <= bytes.size(); i += sizeof sum) {
        std::uint64_t word = 0;
        bytes.copy(reinterpret_cast<char*>(&word), sizeof word, i);
        sum ^= word;
        benchmark::DoNotOptimize(sum);
    }
    return static_cast<std::uint16_t>(sum);
}

// Bytes a second that a benchmark reached in this run; 0 while it has not run.
struct SPEEDS {
    double by_bits = 0;
    double reading = 0;
    double crc = 0;
    double copy_fields = 0;
    double show_fields = 0;
    double crc_large = 0;
    double verify_large = 0;
};
SPEEDS speeds;

// Runs `work` over `size` bytes as often as the benchmark wants and notes its speed.
template <typename WORK>
void measure(benchmark::State& state, std::size_t size, double* speed, WORK work) {
    using CLOCK = std::chrono::steady_clock;
    const auto start = CLOCK::now();
    for (auto _ : state)
        work();
    const std::chrono::duration<double> passed = CLOCK::now() - start;
    const auto bytes = state.iterations() * static_cast<std::int64_t>(size);
    *speed = static_cast<double>(bytes) / passed.count();
    state.SetBytesProcessed(bytes);
}

void measure_bytes(benchmark::State& state, std::uint16_t (*run)(std::string_view), double* speed) {
    const std::string bytes = varied_bytes(CRC_SIZE);
    measure(state, bytes.size(), speed, [&] { benchmark::DoNotOptimize(run(bytes)); });
    state.counters["times_bit_by_bit"] = speeds.by_bits > 0 ? *speed / speeds.by_bits : 0;
    state.counters["times_reading"] = speeds.reading > 0 ? *speed / speeds.reading : 0;
}
BENCHMARK_CAPTURE(measure_bytes, bits, crc_by_bits, &speeds.by_bits)->Name("crc/bit_by_bit");
BENCHMARK_CAPTURE(measure_bytes, reading, sum_by_words, &speeds.reading)->Name("crc/reading_only");
BENCHMARK_CAPTURE(measure_bytes, blocks, crc_by_blocks, &speeds.crc)->Name("crc/crc_block");

// As many fields as a program may hold, with long texts.
void fill_program() {
    init_programming();
    for (std::size_t number = 0; number < MAX_FIELDS; ++number) {
        auto& field = program_header.fields.emplace_back();
        init_field(field);
        field.prompt_string_handle = std::string(80, 'P');
        field.default_data_handle = std::string(250, 'D');
        field.lookup_filename_handle = "TA," + std::string(200, 'L');
    }
}

void open_full_program(benchmark::State& state) {
    const std::string name = temporary_path("tolvan_bench.pgt");
    fill_program();
    if (save_program_file(name) != 1)
        std::abort();
    for (auto _ : state) {
        init_programming();
        if (open_program_file(nullptr, name) != 1)
            std::abort();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(program_header.file_size));
    std::filesystem::remove(name);
}
BENCHMARK(open_full_program)->Name("open/250_fields")->Unit(benchmark::kMicrosecond);

// What touching every field costs at the least.
void copy_fields(benchmark::State& state) {
    fill_program();
    measure(state, MAX_FIELDS * sizeof(FIELD_DEFINITION), &speeds.copy_fields, [] {
        const auto fields = program_header.fields;
        benchmark::DoNotOptimize(&fields.back());
    });
}
BENCHMARK(copy_fields)->Name("show/250_fields_copied_only")->Unit(benchmark::kMicrosecond);

// What an edit costs: the list is filled again, the options are derived and the last field's screen is drawn.
void show_fields(benchmark::State& state) {
    fill_program();
    for (auto& field : program_header.fields)
        field.bit_values1 = 0;
    const auto& fields = program_header.fields;
    measure(state, MAX_FIELDS * sizeof(FIELD_DEFINITION), &speeds.show_fields, [&] {
        benchmark::DoNotOptimize(field_list_rows());
        derive_global_options(true);
        benchmark::DoNotOptimize(compose_display(fields, std::prev(fields.end()), fields.back()));
    });
    if (speeds.copy_fields > 0)
        state.counters["times_copying"] = speeds.show_fields / speeds.copy_fields;
}
BENCHMARK(show_fields)->Name("show/250_fields")->Unit(benchmark::kMicrosecond);

// A file of 64 MiB with its checksum behind it, and the same bytes in memory.
struct LARGE_FILE {
    std::string name = temporary_path("tolvan_bench.large");
    std::string bytes = varied_bytes(LARGE_SIZE);
    LARGE_FILE() {
        put_long(bytes, 0, static_cast<std::uint32_t>(bytes.size()));
        if (!save_with_checksum(name, bytes, SETUP_CHECKSUM))
            std::abort();
    }
    ~LARGE_FILE() {
        std::filesystem::remove(name);
    }
};

void crc_large_bytes(benchmark::State& state) {
    const LARGE_FILE large;
    measure(state, LARGE_SIZE, &speeds.crc_large,
            [&] { benchmark::DoNotOptimize(crc_by_blocks(large.bytes)); });
}
BENCHMARK(crc_large_bytes)->Name("verify/64_MiB_in_memory")->Unit(benchmark::kMillisecond);

void verify_large_file(benchmark::State& state) {
    const LARGE_FILE large;
    const FILE_HANDLE file = open_file(large.name, "rb");
    measure(state, LARGE_SIZE, &speeds.verify_large, [&] {
        if (!isvalid_checksum(file.get(), SETUP_CHECKSUM))
            std::abort();
    });
    if (speeds.crc_large > 0)
        state.counters["times_in_memory"] = speeds.verify_large / speeds.crc_large;
}
BENCHMARK(verify_large_file)->Name("verify/64_MiB_file_with_box")->Unit(benchmark::kMillisecond);

// Prints the ratios of what ran; false when the checksum is slower than it must be.
bool report_ratios() {
    if (speeds.crc_large > 0 && speeds.verify_large > 0)
        std::printf(
            "verifying 64 MiB with the progress box runs at %.0f%% of the speed of the checksum in memory\n",
            100 * speeds.verify_large / speeds.crc_large);
    if (speeds.crc <= 0 || speeds.by_bits <= 0 || speeds.reading <= 0)
        return true;
    const bool fast = speeds.crc >= LEAST_RATIO * speeds.by_bits;
    std::printf("crc_block runs at %.0f%% of the speed of reading the same bytes\n",
                100 * speeds.crc / speeds.reading);
    std::printf("crc_block is %.1f times as fast as the loop over the bits (at least %.0f wanted): %s\n",
                speeds.crc / speeds.by_bits, LEAST_RATIO, fast ? "good" : "TOO SLOW");
    return fast;
}

} // namespace

int main(int argument_count, char** arguments) {
    benchmark::Initialize(&argument_count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return report_ratios() ? 0 : 1;
}
