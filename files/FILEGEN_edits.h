// The repetitive edits of the record store.
#pragma once

#include <cstdint>
#include <string_view>

inline constexpr std::uint32_t MOST_REPEATS = 65535;

// Each shows the progress box, changes record_entry_total as it goes, and returns false when memory ran out
// (the caller tells; what was done stays). Lines count from 1; `interval` k takes every k-th record from the
// start line.
bool repeat_add(std::uint32_t count, std::string_view text);
bool repeat_insert(std::uint32_t start_line, std::uint32_t interval, std::string_view text);
bool repeat_delete(std::uint32_t start_line, std::uint32_t interval);

extern std::uint32_t record_entry_total; // records in the store, as the editor counts them
