#include "files/MEMORY.h"

#include "files/FILEGEN_edits.h"
#include "tests/desktop_script.h"
#include "tests/file_script.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

void check_chunk(const MEMCHUNK& chunk) {
    const bool last = &chunk == &memchunks.back();
    const std::string_view bytes(chunk.data.get(), chunk.used);
    EXPECT_TRUE(chunk.used < MEMCHUNK_SIZE && (chunk.used > 0 || last));
    EXPECT_TRUE(bytes.empty() || bytes.back() == '\0');
    EXPECT_EQ(std::ranges::count(bytes, '\0'), chunk.records);
    EXPECT_EQ(bytes.find(MORE_RECORDS) & bytes.find(END_OF_RECORDS), std::string_view::npos);
    EXPECT_EQ(chunk.data[chunk.used], last ? END_OF_RECORDS : MORE_RECORDS);
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

// One record a letter.
void store(const std::string& letters) {
    initialize_memory();
    for (const char letter : letters)
        add_record_entry({&letter, 1});
    record_entry_total = record_count();
    reset_desktop();
}

std::string stored() {
    std::string letters = stored_records();
    std::erase(letters, '|');
    EXPECT_TRUE(record_count() == letters.size() && record_entry_total == letters.size());
    return letters;
}

} // namespace

TEST(MemoryTest, ManyOperationsKeepTheStoreLikeAVector) {
    std::mt19937 random(4);
    std::vector<std::string> model;
    initialize_memory();
    for (int operation = 1; operation <= 200000 && !testing::Test::HasFailure(); ++operation) {
        const std::size_t place = random() % (model.size() + 1);
        const auto at = model.begin() + static_cast<std::ptrdiff_t>(place);
        const auto kind = random() % 4;
        const bool deletes = at != model.end() && (kind == 0 || model.size() > 50);
        const bool replaces = at != model.end() && !deletes && kind == 1;
        char* record = goto_record(static_cast<std::uint32_t>(place));
        const std::size_t old_size = replaces ? at->size() + 1 : 0;

        // Mostly short texts, some that fill much of a chunk, just fit in with what is before, behind or
        // nothing, or cannot be held as they are.
        const std::size_t room = MEMCHUNK_SIZE - current_memchunk->used + old_size;
        const auto before = static_cast<std::size_t>(record - current_memchunk->data.get());
        const std::size_t limits[] = {room, room + before, MEMCHUNK_SIZE - before, MEMCHUNK_SIZE};
        const std::size_t most = random() % 256 == 0 ? LONGEST_RECORD : random() % 8 == 0 ? 3000 : 40;
        std::size_t length = random() % most;
        if (random() % 16 == 0)
            length = limits[random() % 4] - std::min<std::size_t>(room, random() % 6);
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
        check_chunk(*current_memchunk);
        if (operation % 1000 == 0) {
            std::ranges::for_each(memchunks, check_chunk);
            std::string records;
            for (const std::string& stored : model)
                records += stored + "|";
            ASSERT_EQ(stored_records(), records);
        }
    }
    most_memchunks = std::string::npos;
}

TEST(FilegenEditsTest, RepetitiveEditsTakeEveryRecordOfTheIntervalAndShowTheirProgress) {
    const std::tuple<std::uint32_t, std::uint32_t, std::string, std::string> cases[] = {
        {1, 1, "XAXBXCXDXE", ""},
        {1, 2, "XABXCDXE", "BD"},
        {2, 4, "AXBCDE", "ACDE"},
        {5, 1, "ABCDXE", "ABCD"}};
    for (const auto& [start, interval, inserted, deleted] : cases) {
        store("ABCDE");
        EXPECT_TRUE(repeat_insert(start, interval, "X"));
        EXPECT_EQ(stored(), inserted);
        store("ABCDE");
        EXPECT_TRUE(repeat_delete(start, interval));
        EXPECT_EQ(stored(), deleted);
    }
    store("AB");
    EXPECT_TRUE(repeat_add(MOST_REPEATS, "X"));
    EXPECT_TRUE(repeat_insert(1, 2, "Y"));
    EXPECT_TRUE(repeat_delete(2, 3));
    EXPECT_TRUE(repeat_delete(2, 2));
    EXPECT_EQ(stored(), std::string(MOST_REPEATS / 2 + 2, 'Y'));
    EXPECT_EQ(desktop_status_log.front(), "open 5");
    EXPECT_EQ(desktop_status_log[2], "update 1024/65535");
    EXPECT_EQ(desktop_status_log.back(), "close");

    store("A");
    most_memchunks = 1;
    EXPECT_FALSE(repeat_add(MOST_REPEATS, "X"));
    EXPECT_FALSE(repeat_insert(1, 1, "X"));
    most_memchunks = std::string::npos;
    EXPECT_EQ(stored().size(), MEMCHUNK_SIZE / 2 - 1);
    EXPECT_EQ(desktop_status_log.back(), "close");
}
