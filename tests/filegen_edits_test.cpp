#include "files/FILEGEN_edits.h"
#include "files/MEMORY.h"
#include "tests/desktop_script.h"
#include "tests/file_script.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

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

TEST(FilegenEditsTest, RepetitiveEditsTakeEveryRecordOfTheInterval) {
    const struct {
        std::uint32_t start, interval;
        const char *inserted, *deleted;
    } cases[] = {{1, 1, "XAXBXCXDXE", ""},
                 {1, 2, "XABXCDXE", "BD"},
                 {2, 4, "AXBCDE", "ACDE"},
                 {5, 1, "ABCDXE", "ABCD"}};
    for (const auto& c : cases) {
        store("ABCDE");
        EXPECT_TRUE(repeat_insert(c.start, c.interval, "X"));
        EXPECT_EQ(stored(), c.inserted);
        store("ABCDE");
        EXPECT_TRUE(repeat_delete(c.start, c.interval));
        EXPECT_EQ(stored(), c.deleted);
    }
}

TEST(FilegenEditsTest, RepetitiveEditsOfManyChunksShowTheirProgress) {
    store("AB");
    EXPECT_TRUE(repeat_add(MOST_REPEATS, "X"));
    EXPECT_EQ(stored(), "AB" + std::string(MOST_REPEATS, 'X'));
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
    most_memchunks = std::numeric_limits<std::size_t>::max();
    EXPECT_EQ(stored().size(), MEMCHUNK_SIZE / 2 - 1);
    EXPECT_EQ(desktop_status_log.back(), "close");
}
