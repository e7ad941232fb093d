#include "files/MEMORY.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <sstream>
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

// The store that layout() describes so, without the brackets.
void build(const std::string& description) {
    initialize_memory();
    std::istringstream words(description);
    for (std::string word; words >> word;)
        if (word == "|") {
            memchunks.back().data[memchunks.back().used] = MORE_RECORDS;
            memchunks.push_back({.data = std::make_unique<char[]>(MEMCHUNK_SIZE)});
            memchunks.back().data[0] = END_OF_RECORDS;
        } else
            add_record_entry(std::string(std::stoul(word.substr(1)) - 1, word[0]));
}

// The records of each chunk by letter and size, the current chunk in brackets: "a100 b20 | [c7]".
std::string layout() {
    std::string text;
    for (auto chunk = memchunks.begin(); chunk != memchunks.end(); ++chunk) {
        std::string part;
        for (const auto& record : chunk_records(*chunk))
            part += (part.empty() ? "" : " ") + std::string(record.substr(0, 1)) +
                    std::to_string(record.size() + 1);
        text += (text.empty() ? "" : " | ") + (chunk == current_memchunk ? "[" + part + "]" : part);
    }
    return text;
}

} // namespace

TEST(MemoryTest, EveryOperationLaysTheChunksOutByTheShiftRules) {
    const struct {
        const char* before;
        char operation; // insert, replace or delete the record of this number; its new text is of 'x'
        std::uint32_t number;
        std::size_t size; // of the new text
        std::size_t bound;
        const char* after; // empty: refused, nothing has changed
    } cases[] = {
        {"a32000", 'i', 1, 766, 1, "[a32000 x766]"},
        {"a32000", 'i', 1, 767, 1, ""},
        {"", 'i', 0, 32766, 1, "[x32766]"},
        {"", 'i', 0, 32767, 2, ""},
        {"a32000 b700", 'i', 0, 300, 2, "[x300] | a32000 b700"},
        {"a32000 b700", 'i', 1, 767, 2, "a32000 | [x767 b700]"},
        {"a32000 b600", 'i', 1, 766, 2, "[a32000 x766] | b600"},
        {"a20000 b12000", 'i', 1, 20767, 2, "a20000 | [x20767 b12000]"},
        {"a20000 b12000", 'i', 1, 20768, 3, "a20000 | [x20768] | b12000"},
        {"a30000 b1000 c1000 | d9", 'r', 1, 1768, 3, "a30000 | [x1768 c1000] | d9"},
        {"a2 b32000", 'r', 0, 767, 2, "[x767] | b32000"},
        {"a2 b10 c30000", 'r', 1, 2768, 2, "[a2 x2768] | c30000"},
        {"a10000 b10 c20000", 'r', 1, 25000, 3, "a10000 | [x25000] | c20000"},
        {"a10000 b10 c20000", 'r', 1, 25000, 2, ""},
        {"a9 | b8 | c7", 'd', 0, 0, 3, "[b8] | c7"},
        {"a9 | b8 | c7", 'd', 1, 0, 3, "a9 | [c7]"},
        {"a9 | b8 | c7", 'd', 2, 0, 3, "a9 | b8 | []"},
        {"a9 b8 | c7", 'd', 1, 0, 2, "a9 | [c7]"},
    };
    for (const auto& c : cases) {
        build(c.before);
        most_memchunks = c.bound;
        char* record = goto_record(c.number);
        const std::string before = layout();
        const std::string text(c.size == 0 ? 0 : c.size - 1, 'x');
        record = c.operation == 'i'   ? insert_record_entry(record, text)
                 : c.operation == 'r' ? realloc_record_entry(record, text)
                                      : delete_record_entry(record);
        most_memchunks = NO_BOUND;
        EXPECT_EQ(layout(), *c.after == '\0' ? before : c.after) << before << c.operation << c.size;
        EXPECT_EQ(record, *c.after == '\0' ? nullptr : goto_record(c.number));
    }
}

TEST(MemoryTest, AMillionOperationsKeepTheStoreLikeAVector) {
    std::mt19937 random(4);
    RECORDS model;
    initialize_memory();
    for (int operation = 1; operation <= 1000000 && !testing::Test::HasFailure(); ++operation) {
        // Mostly short texts, some that fill much of a chunk, and some that cannot be held as they are.
        const std::size_t most = random() % 256 == 0 ? LONGEST_RECORD + 999 : random() % 8 == 0 ? 3000 : 40;
        std::string text(random() % most, static_cast<char>('a' + random() % 26));
        if (!text.empty() && random() % 8 == 0)
            text[random() % text.size()] = "\0\xFD\xFE\xFF"[random() % 4];
        std::string held = text.c_str();
        std::ranges::replace_if(
            held, [](char byte) { return byte == '\xFE' || byte == '\xFF'; }, '?');
        const std::size_t place = random() % (model.size() + 1);
        const auto at = model.begin() + static_cast<std::ptrdiff_t>(place);
        const auto kind = random() % 4;
        const bool deletes = at != model.end() && (kind == 0 || model.size() > 150);
        const bool replaces = at != model.end() && !deletes && kind == 1;
        most_memchunks = random() % 16 == 0 ? memchunks.size() : NO_BOUND;
        char* record = goto_record(static_cast<std::uint32_t>(place));
        if (deletes)
            record = delete_record_entry(record);
        else if (replaces)
            record = realloc_record_entry(record, text);
        else if (at != model.end() || kind == 0)
            record = insert_record_entry(record, text);
        else
            record = add_record_entry(text) == 1 ? goto_record(record_count() - 1) : nullptr;

        const bool too_long = !deletes && held.size() > LONGEST_RECORD;
        ASSERT_TRUE(too_long ? record == nullptr : record != nullptr || most_memchunks != NO_BOUND);
        if (deletes)
            model.erase(at);
        else if (replaces && record != nullptr)
            *at = held;
        else if (record != nullptr)
            model.insert(at, held);
        ASSERT_TRUE(record == nullptr || place == model.size() || record == model[place]);
        chunk_records(*current_memchunk);
        ASSERT_TRUE(operation % 1000 != 0 || all_records() == model);
    }
    most_memchunks = NO_BOUND;
}
