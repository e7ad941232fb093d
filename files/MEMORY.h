// The record store: the lines of the lookup or data file that is being edited, imported or written. One
// store, worked on through a cursor, which is a pointer to a record's first byte.
//
//   chunk:  record NUL record NUL ... marker      32768 bytes each, chained
//   marker: MORE_RECORDS in every chunk but the last, END_OF_RECORDS there
//
// A cursor is valid while its chunk is the current one: every operation that may change the chunk returns the
// cursor to go on with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <span>
#include <string_view>

inline constexpr std::size_t MEMCHUNK_SIZE = 32768; // bytes
inline constexpr char MORE_RECORDS = '\xFE';
inline constexpr char END_OF_RECORDS = '\xFF';
// Characters: a NUL and the marker follow, and a gap is opened only below the chunk's size.
inline constexpr std::size_t LONGEST_RECORD = MEMCHUNK_SIZE - 3;

struct MEMCHUNK {
    std::unique_ptr<char[]> data; // MEMCHUNK_SIZE bytes, the marker at `used`
    std::size_t used = 0;         // bytes of records; 0 only in the last chunk
    std::uint32_t records = 0;
};
extern std::list<MEMCHUNK> memchunks;
extern std::list<MEMCHUNK>::iterator current_memchunk; // the one that the cursor is in
extern std::size_t most_memchunks; // where memory counts as exhausted; no bound unless one is set

// An empty store in place of the one there was; its cursor stands at the end marker. nullptr when memory is
// exhausted: there is no store then.
char* initialize_memory();
char* free_memchunks();
void free_memblock(); // leaves no store

// Each makes the chunk of its result the current one; nullptr when there is no store.
char* goto_first_record();            // the first record, or the end marker
char* goto_last_record();             // the end marker, where an appended record goes
char* goto_next_record(char* record); // the end marker follows itself

// The record with this number, from 0, or the end marker: a walk over chunks and one chunk.
char* goto_record(std::uint32_t number);
std::uint32_t record_count(); // of the whole store, without walking the records

// Opens a gap of `shift` bytes at the cursor, which is for one record to be written there at once and counts
// as it, or removes the -shift bytes before the cursor. Returns where the gap starts, or the record behind
// the removed bytes; nullptr, and nothing has changed, when memory is exhausted or no chunk can hold the gap.
char* mem_shift(char* place, int shift);

// A text that is longer than LONGEST_RECORD is refused as if memory were exhausted. What else the store
// cannot hold as it is it changes: a byte above 0xFD becomes '?', from a NUL on a text is cut off.
// changed_records counts the texts changed so since it was cleared; the readers tell the operator. A text
// must not lie in the store itself.
extern std::uint32_t changed_records;
int add_record_entry(std::string_view text); // behind the last; 1, or 0 when memory is exhausted
// The same for texts of printable characters alone, unchecked. How many were appended before memory ran out.
std::size_t add_printable_entries(std::span<const std::string_view> texts);
char* insert_record_entry(char* record, std::string_view text);  // before it; the new record, or nullptr
char* delete_record_entry(char* record);                         // the record that followed
char* realloc_record_entry(char* record, std::string_view text); // the record with its new text, or nullptr
