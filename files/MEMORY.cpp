#include "files/MEMORY.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>
#include <new>

std::list<MEMCHUNK> memchunks;
std::list<MEMCHUNK>::iterator current_memchunk;
std::size_t most_memchunks = std::numeric_limits<std::size_t>::max();
std::uint32_t changed_records = 0;

namespace {

constexpr auto FIRST_MARKER = static_cast<unsigned char>(MORE_RECORDS); // no byte of a text is as high

// So many empty chunks, or none when memory is exhausted.
std::list<MEMCHUNK> allocate_chunks(std::size_t count) {
    if (count > most_memchunks - std::min(memchunks.size(), most_memchunks))
        return {};
    try {
        std::list<MEMCHUNK> fresh(count);
        for (auto& chunk : fresh)
            chunk.data = std::make_unique<char[]>(MEMCHUNK_SIZE);
        return fresh;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

void set_marker(std::list<MEMCHUNK>::iterator chunk) {
    chunk->data[chunk->used] = std::next(chunk) == memchunks.end() ? END_OF_RECORDS : MORE_RECORDS;
}

// Forward, byte by byte: the source may overlap the destination from above.
void mc(char* destination, const char* source, std::size_t count) {
    std::copy(source, source + count, destination);
}

char* make_current(std::list<MEMCHUNK>::iterator chunk) {
    current_memchunk = chunk;
    return chunk->data.get();
}

std::uint32_t count_records(const char* from, const char* to) {
    return static_cast<std::uint32_t>(std::count(from, to, '\0'));
}

// Moves the records of `from` that start at `offset` to the empty chunk `to`, behind a gap.
void move_records(MEMCHUNK& from, std::size_t offset, MEMCHUNK& to, std::size_t gap) {
    const char* first = from.data.get() + offset;
    const std::size_t size = from.used - offset;
    const std::uint32_t moved = count_records(first, first + size);
    mc(to.data.get() + gap, first, size);
    to.used = gap + size;
    to.records = moved;
    from.used = offset;
    from.records -= moved;
}

// Opens a gap in front of the first `kept` bytes of the record at `place`, which stay behind the gap: for a
// new record none, for one that grows all of it. Only when the current chunk is too full are further chunks
// needed. A record that grows then moves to the new chunk together with its followers, a new one only where
// it must. When the chunk can spare neither, the record gets one new chunk and its followers another.
char* open_gap(char* place, std::size_t gap, std::size_t kept) {
    const auto chunk = current_memchunk;
    const auto offset = static_cast<std::size_t>(place - chunk->data.get());
    const std::size_t record = gap + kept;
    const std::size_t followers = chunk->used - offset - kept;
    if (chunk->used + gap + 1 < MEMCHUNK_SIZE) {
        std::memmove(place + gap, place, kept + followers);
        chunk->used += gap;
        set_marker(chunk);
        return place;
    }
    if (record + 1 >= MEMCHUNK_SIZE)
        return nullptr;

    const bool together = record + followers + 1 <= MEMCHUNK_SIZE;
    const bool stays = offset + record + 1 < MEMCHUNK_SIZE && (kept == 0 || offset == 0 || !together);
    auto fresh = allocate_chunks(stays || together ? 1 : 2);
    if (fresh.empty())
        return nullptr;
    if (stays || !together)
        move_records(*chunk, offset + kept, fresh.back(), 0);
    if (stays) {
        std::memmove(place + gap, place, kept);
        chunk->used += gap;
    } else
        move_records(*chunk, offset, fresh.front(), gap);

    const auto behind = std::next(chunk);
    memchunks.splice(behind, fresh);
    for (auto changed = chunk; changed != behind; ++changed)
        set_marker(changed);
    return stays ? place : make_current(std::next(chunk));
}

// Removes the `length` bytes before `place`, and with its last record the chunk, unless it is the last one.
char* close_gap(char* place, std::size_t length) {
    const auto chunk = current_memchunk;
    char* const gap = place - length;
    chunk->records -= count_records(gap, place);
    mc(gap, place, static_cast<std::size_t>(chunk->data.get() + chunk->used + 1 - place));
    chunk->used -= length;
    if (*gap != MORE_RECORDS)
        return gap;
    return make_current(chunk->used == 0 ? memchunks.erase(chunk) : std::next(chunk));
}

// For a new record, which is to be written there at once. nullptr when there is no room for it.
char* open_record_gap(char* place, std::size_t size) {
    char* gap = open_gap(place, size, 0);
    if (gap != nullptr)
        ++current_memchunk->records;
    return gap;
}

std::string_view holdable_part(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

// Writes the holdable part of `text` into its place and notes whether that is less than all of it.
void write_record(char* place, std::string_view part, std::string_view text) {
    unsigned char highest = 0;
    for (std::size_t i = 0; i < part.size(); ++i) {
        place[i] = part[i];
        highest = std::max(highest, static_cast<unsigned char>(part[i]));
    }
    place[part.size()] = '\0';
    if (highest >= FIRST_MARKER)
        std::replace_if(
            place, place + part.size(),
            [](char byte) { return static_cast<unsigned char>(byte) >= FIRST_MARKER; }, '?');
    if (highest >= FIRST_MARKER || text.find_first_not_of('\0', part.size()) != std::string_view::npos)
        ++changed_records;
}

// Opens a gap for a record behind the last one. Where nothing has to move, nothing else is asked.
char* append_gap(std::size_t size) {
    char* end = goto_last_record();
    if (end == nullptr)
        return nullptr;
    MEMCHUNK& last = *current_memchunk;
    if (last.used + size + 1 >= MEMCHUNK_SIZE)
        return open_record_gap(end, size);
    end[size] = END_OF_RECORDS;
    last.used += size;
    ++last.records;
    return end;
}

} // namespace

char* initialize_memory() {
    memchunks.clear();
    memchunks = allocate_chunks(1);
    current_memchunk = memchunks.begin();
    if (memchunks.empty())
        return nullptr;
    set_marker(current_memchunk);
    return goto_first_record();
}

char* free_memchunks() {
    return initialize_memory();
}

void free_memblock() {
    memchunks.clear();
    current_memchunk = memchunks.begin();
}

char* goto_first_record() {
    return memchunks.empty() ? nullptr : make_current(memchunks.begin());
}

char* goto_last_record() {
    return memchunks.empty() ? nullptr : make_current(std::prev(memchunks.end())) + current_memchunk->used;
}

char* goto_next_record(char* record) {
    if (*record == END_OF_RECORDS)
        return record;
    record += std::strlen(record) + 1;
    return *record == MORE_RECORDS ? make_current(std::next(current_memchunk)) : record;
}

char* goto_record(std::uint32_t number) {
    for (auto chunk = memchunks.begin(); chunk != memchunks.end(); ++chunk) {
        if (number < chunk->records) {
            char* record = make_current(chunk);
            for (; number > 0; --number)
                record += std::strlen(record) + 1;
            return record;
        }
        number -= chunk->records;
    }
    return goto_last_record();
}

std::uint32_t record_count() {
    std::uint32_t count = 0;
    for (const auto& chunk : memchunks)
        count += chunk.records;
    return count;
}

char* mem_shift(char* place, int shift) {
    if (shift <= 0)
        return shift == 0 ? place : close_gap(place, static_cast<std::size_t>(-shift));
    return open_record_gap(place, static_cast<std::size_t>(shift));
}

int add_record_entry(std::string_view text) {
    const auto part = holdable_part(text);
    char* gap = append_gap(part.size() + 1);
    if (gap != nullptr)
        write_record(gap, part, text);
    return gap != nullptr ? 1 : 0;
}

// Readers append by the million: what fits the last chunk is copied there in one go.
std::size_t add_printable_entries(std::span<const std::string_view> texts) {
    std::size_t added = 0;
    while (added < texts.size()) {
        char* place = goto_last_record();
        if (place == nullptr)
            break;
        MEMCHUNK& last = *current_memchunk;
        const char* const chunk_end = last.data.get() + MEMCHUNK_SIZE;
        for (; added < texts.size() && texts[added].size() + 2 < static_cast<std::size_t>(chunk_end - place);
             ++added) {
            place = std::copy(texts[added].begin(), texts[added].end(), place);
            *place++ = '\0';
            ++last.records;
        }
        *place = END_OF_RECORDS;
        last.used = static_cast<std::size_t>(place - last.data.get());
        if (added < texts.size()) {
            if (insert_record_entry(place, texts[added]) == nullptr)
                break;
            ++added;
        }
    }
    return added;
}

char* insert_record_entry(char* record, std::string_view text) {
    const auto part = holdable_part(text);
    char* gap = open_record_gap(record, part.size() + 1);
    if (gap != nullptr)
        write_record(gap, part, text);
    return gap;
}

char* delete_record_entry(char* record) {
    const std::size_t size = std::strlen(record) + 1;
    return close_gap(record + size, size);
}

char* realloc_record_entry(char* record, std::string_view text) {
    const auto part = holdable_part(text);
    const std::size_t old_size = std::strlen(record) + 1;
    const std::size_t new_size = part.size() + 1;
    if (new_size < old_size)
        record = close_gap(record + (old_size - new_size), old_size - new_size);
    else if (new_size > old_size)
        record = open_gap(record, new_size - old_size, old_size);
    if (record != nullptr)
        write_record(record, part, text);
    return record;
}
