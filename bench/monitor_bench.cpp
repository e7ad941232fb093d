// Capturing a million lines, against the growth of one string by the same bytes.
#include "monitor/MONITOR_text.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <malloc.h>

namespace {

constexpr std::size_t LINES = 1'000'000;

double seconds_since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void capture_lines(benchmark::State& state) {
    constexpr std::string_view LINE =
        "4006381333931,Ballpoint pen, blue,0012\r"; // and {CR} on a line of its own
    for (auto _ : state) {
        clear_captured_text();
        const auto used = mallinfo2();
        const auto start = std::chrono::steady_clock::now();
        for (std::size_t line = 0; line < LINES; ++line)
            for (const char byte : LINE)
                write_serkey(static_cast<std::uint8_t>(byte));
        const double seconds = seconds_since(start);
        const auto count = static_cast<double>(captured_text.lines.size());
        const auto used_now = mallinfo2();
        state.counters["bytes_a_line"] =
            static_cast<double>(used_now.uordblks + used_now.hblkhd - used.uordblks - used.hblkhd) / count;
        std::string text;
        const auto plain_start = std::chrono::steady_clock::now();
        for (std::size_t line = 0; line < LINES; ++line)
            for (const char byte : LINE) {
                text.push_back(byte);
                benchmark::DoNotOptimize(text.data());
            }
        state.counters["times_push_back"] = seconds / seconds_since(plain_start);
    }
    clear_captured_text();
}
BENCHMARK(capture_lines)->Name("monitor/capture_million_lines")->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
