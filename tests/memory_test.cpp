#include "files/MEMORY.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using RECORDS = std::vector<std::string>;

constexpr std::size_t NO_BOUND = std::numeric_limits<std::size_t>::max();

// The records of a chunk whose end, marker, count and bytes are as they must be.
std::vector<std::string_view> chunk_records(const MEMCHUNK& chunk) {
    const bool last = &chunk == &memchunks.back();
    const char* data = chunk.data.get();
    EXPECT_TRUE(chunk.used < MEMCHUNK_SIZE && (chunk.used > 0 || last));
    EXPECT_EQ(data[chunk.used], last ? END_OF_RECORDS : MORE_RECORDS);
    EXPECT_EQ(std::memchr(data, MORE_RECORDS, chunk.used), nullptr);
    EXPECT_EQ(std::memchr(data, END_OF_RECORDS, chunk.used), nullptr);
    std::vector<std::string_view> records;
    records.reserve(chunk.records);
    for (std::size_t at = 0; at < chunk.used; at += records.back().size() + 1)
        records.emplace_back(data + at);
    EXPECT_EQ(records.size(), chunk.records);
    return records;
}

RECORDS all_records() {
    for (const auto& chunk : memchunks)
        chunk_records(chunk);
    RECORDS walked;
    for (char* record = goto_first_record(); *record != END_OF_RECORDS; record = goto_next_record(record))
        walked.emplace_back(record);
    return walked;
}

// How many chunks more it takes to have `size` bytes at the cursor in place of `old_size`.
std::size_t chunks_needed(const char* record, std::size_t size, std::size_t old_size) {
    const std::size_t used = current_memchunk->used;
    const auto before = static_cast<std::size_t>(record - current_memchunk->data.get());
    const std::size_t followers = used - before - old_size;
    if (size <= old_size || used - old_size + size + 1 < MEMCHUNK_SIZE)
        return 0;
    const bool in_two = before + size + 1 < MEMCHUNK_SIZE || size + followers < MEMCHUNK_SIZE;
    return in_two ? 1 : 2;
}

} // namespace

TEST(MemoryTest, ManyOperationsKeepTheStoreLikeAVector) {
    std::mt19937 random(4);
    RECORDS model;
    initialize_memory();
    for (int operation = 1; operation <= 1000000 && !testing::Test::HasFailure(); ++operation) {
        const std::size_t place = random() % (model.size() + 1);
        const auto at = model.begin() + static_cast<std::ptrdiff_t>(place);
        const auto kind = random() % 4;
        const bool deletes = at != model.end() && (kind == 0 || model.size() > 150);
        const bool replaces = at != model.end() && !deletes && kind == 1;
        char* record = goto_record(static_cast<std::uint32_t>(place));
        const std::size_t old_size = replaces ? at->size() + 1 : 0;

        // Mostly short texts, some that fill much of a chunk, just fit in here or nowhere, or cannot be held
        // as they are.
        const std::size_t room = MEMCHUNK_SIZE - current_memchunk->used + old_size;
        const std::size_t most = random() % 256 == 0 ? LONGEST_RECORD : random() % 8 == 0 ? 3000 : 40;
        std::size_t length = random() % most;
        if (random() % 64 == 0)
            length = (random() % 4 == 0 ? MEMCHUNK_SIZE : room) - std::min<std::size_t>(room, random() % 6);
        std::string text(length, static_cast<char>('a' + random() % 26));
        if (!text.empty() && random() % 8 == 0)
            text[random() % text.size()] = "\0\xFD\xFE\xFF"[random() % 4];
        std::string held = text.c_str();
        std::ranges::replace_if(
            held, [](char byte) { return byte == '\xFE' || byte == '\xFF'; }, '?');
        const std::size_t allowed = random() % 3;
        const bool fits = deletes || (held.size() <= LONGEST_RECORD &&
                                      chunks_needed(record, held.size() + 1, old_size) <= allowed);
        most_memchunks = memchunks.size() + allowed;
        const std::string_view view = text;
        if (deletes)
            record = delete_record_entry(record);
        else if (replaces)
            record = realloc_record_entry(record, text);
        else if (at != model.end() || kind == 0)
            record = insert_record_entry(record, text);
        else
            record = (held == text && kind == 1 ? add_printable_entries({&view, 1}) == 1
                                                : add_record_entry(text) == 1)
                         ? goto_record(record_count() - 1)
                         : nullptr;

        ASSERT_EQ(record != nullptr, fits) << operation;
        if (deletes)
            model.erase(at);
        else if (replaces && fits)
            *at = held;
        else if (fits)
            model.insert(at, held);
        ASSERT_TRUE(!fits || place == model.size() || record == model[place]);
        chunk_records(*current_memchunk);
        ASSERT_TRUE(operation % 1000 != 0 || all_records() == model);
    }
    most_memchunks = NO_BOUND;
}
