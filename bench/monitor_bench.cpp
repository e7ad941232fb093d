// Capturing a million lines, against the growth of one string by the same bytes.
#include "monitor/MONITOR_text.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <malloc.h>

namespace {

constexpr std::size_t LINES = 1'000'000;
constexpr std::string_view LINE =
    "4006381333931,Ballpoint pen, blue,0012\r"; // a line, {CR} and an empty line

// Runs `take` for each byte of the lines and returns the seconds that it took.
template <typename TAKE>
double feed_lines(TAKE take) {
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t line = 0; line < LINES; ++line)
        for (const char byte : LINE)
            take(byte);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void capture_lines(benchmark::State& state) {
    for (auto _ : state) {
        clear_captured_text();
        const std::size_t used = mallinfo2().uordblks;
        const double seconds = feed_lines([](char byte) { write_serkey(static_cast<std::uint8_t>(byte)); });
        state.counters["bytes_a_line"] = static_cast<double>(mallinfo2().uordblks - used) /
                                         static_cast<double>(captured_text.lines.size());
        std::string text;
        state.counters["times_push_back"] = seconds / feed_lines([&text](char byte) {
                                                text.push_back(byte);
                                                benchmark::DoNotOptimize(text.data());
                                            });
    }
    clear_captured_text();
}
BENCHMARK(capture_lines)->Name("monitor/capture")->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
