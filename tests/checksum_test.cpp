#include "app/checksum.h"
#include "app/files.h"
#include "tests/test_files.h"

#include <random>

namespace {

// The definition, bit by bit.
std::uint16_t bitwise_crc(std::string_view bytes) {
    unsigned crc = 0;
    for (const char byte : bytes)
        for (int bit = 7; bit >= 0; --bit) {
            const unsigned out = (crc >> 15) ^ (static_cast<unsigned>(byte) >> bit);
            crc = (crc << 1) & 0xFFFF;
            if ((out & 1) != 0)
                crc ^= 0x1021;
        }
    return static_cast<std::uint16_t>(crc);
}

std::string random_bytes(std::size_t size) {
    std::mt19937 random(static_cast<unsigned>(size));
    std::string bytes(size, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

// A file of `size` bytes before any appended checksum, its length word right, without its checksum.
std::string file_bytes(std::size_t size) {
    std::string bytes = random_bytes(size);
    put_long(bytes, 0, static_cast<std::uint32_t>(size));
    return bytes;
}

// Where the checksum stands and what it is, from the definition.
std::string stamped(std::string bytes, int type) {
    std::string stamp;
    if (type == LOOKUP_CHECKSUM) {
        append_word(stamp, bitwise_crc(bytes.substr(0, 4) + bytes.substr(5, 15) + bytes.substr(22)));
        return bytes.replace(20, 2, stamp);
    }
    append_word(stamp, bitwise_crc(type == PROGRAM_CHECKSUM ? bytes.substr(5) : bytes));
    return bytes + stamp;
}

class ChecksumTest : public FILE_TEST {
protected:
    bool is_valid(const std::string& bytes, int type) {
        write_bytes(path("FILE"), bytes);
        file = open_file(path("FILE"), "rb");
        return isvalid_checksum(file.get(), type);
    }
    FILE_HANDLE file;
};

} // namespace

TEST(CrcTest, HasThePublishedCheckValue) {
    std::uint16_t crc = 0;
    for (const char c : std::string("123456789"))
        crc_16(static_cast<std::uint8_t>(c), &crc);
    EXPECT_EQ(crc, 0x31C3);
}

TEST(CrcTest, BlocksAndBytesFollowTheDefinition) {
    const std::string bytes = random_bytes(300);
    for (std::size_t size = 0; size < 40; ++size)
        for (std::size_t start = 0; start < 9; ++start) {
            const auto part = std::string_view(bytes).substr(start * 20, size);
            std::uint16_t by_block = 0;
            std::uint16_t by_byte = 0;
            crc_block(part.substr(0, size / 3), &by_block);
            crc_block(part.substr(size / 3), &by_block);
            for (const char byte : part)
                crc_update(static_cast<std::uint8_t>(byte), by_byte);
            EXPECT_EQ(by_block, bitwise_crc(part));
            EXPECT_EQ(by_byte, bitwise_crc(part));
        }
}

TEST(SwapTest, ReversesTheBytes) {
    std::uint16_t word = 0x12FE;
    std::uint32_t number = 0x123456FE;
    swap_word(&word);
    swap_long(&number);
    EXPECT_EQ(word, 0xFE12);
    EXPECT_EQ(number, 0xFE563412);
}

TEST_F(ChecksumTest, StampsAndVerifiesEveryKindOfFile) {
    for (const int type : {PROGRAM_CHECKSUM, SETUP_CHECKSUM, LOOKUP_CHECKSUM})
        for (const std::size_t size : {22U, 23U, 128U, 133U, 150U, 278U, 4096U, 70001U}) {
            SCOPED_TRACE(testing::Message() << "type " << type << ", size " << size);
            write_bytes(path("STAMPED"), file_bytes(size));
            ASSERT_TRUE(write_checksum(path("STAMPED"), type));
            const std::string bytes = read_bytes(path("STAMPED"));
            EXPECT_EQ(bytes, stamped(file_bytes(size), type));
            EXPECT_TRUE(is_valid(bytes, type));
            EXPECT_EQ(std::ftell(file.get()), type == LOOKUP_CHECKSUM ? 22L : static_cast<long>(size) + 2);
            EXPECT_TRUE(is_valid(bytes + std::string(70, '\0'), type)) << "padded";
            EXPECT_FALSE(is_valid(bytes.substr(0, bytes.size() - 1), type)) << "truncated";
        }
    EXPECT_FALSE(write_checksum(path("NONE"), SETUP_CHECKSUM));
}

TEST_F(ChecksumTest, NoticesEveryCoveredByteAndNoOther) {
    for (const int type : {PROGRAM_CHECKSUM, SETUP_CHECKSUM, LOOKUP_CHECKSUM}) {
        const std::string good = stamped(file_bytes(60), type);
        for (std::size_t offset = 4; offset < good.size(); ++offset) {
            std::string changed = good;
            changed[offset] = static_cast<char>(changed[offset] ^ 0x10);
            EXPECT_EQ(is_valid(changed, type), offset == 4 && type != SETUP_CHECKSUM)
                << "type " << type << ", offset " << offset;
        }
        std::string exchanged = good;
        const std::size_t at = type == LOOKUP_CHECKSUM ? 20 : 60;
        std::swap(exchanged[at], exchanged[at + 1]);
        EXPECT_FALSE(is_valid(exchanged, type));
    }
}

TEST_F(ChecksumTest, RefusesLengthWordsThatTheFileCannotHold) {
    for (const int type : {PROGRAM_CHECKSUM, SETUP_CHECKSUM, LOOKUP_CHECKSUM}) {
        for (const std::uint32_t length :
             {0U, 1U, 4U, 59U, 61U, 63U, 0x7FFFFFFFU, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
            std::string bytes = stamped(file_bytes(60), type);
            put_long(bytes, 0, length);
            EXPECT_FALSE(is_valid(bytes, type)) << "type " << type << ", length " << length;
        }
        for (std::size_t size = 0; size < 22; ++size) // nothing but zeros, so that any sum would be right
            EXPECT_FALSE(is_valid(std::string(size, '\0'), type)) << "type " << type << ", size " << size;
    }
}

TEST_F(ChecksumTest, DrawsTheBarOnceABlock) {
    using LOG = std::vector<std::string>;
    EXPECT_TRUE(is_valid(stamped(file_bytes(261), PROGRAM_CHECKSUM), PROGRAM_CHECKSUM));
    EXPECT_EQ(desktop_status_log,
              (LOG{"open 4", "update 0/261", "update 133/261", "update 261/261", "close"}));
    desktop_status_log.clear();
    EXPECT_TRUE(is_valid(stamped(file_bytes(130), SETUP_CHECKSUM), SETUP_CHECKSUM));
    EXPECT_EQ(desktop_status_log,
              (LOG{"open 4", "update 0/130", "update 128/130", "update 130/130", "close"}));
    desktop_status_log.clear();
    EXPECT_TRUE(is_valid(stamped(file_bytes(30), LOOKUP_CHECKSUM), LOOKUP_CHECKSUM));
    LOG wanted = {"open 4"};
    for (int position = 0; position <= 22; ++position)
        wanted.push_back("update " + std::to_string(position) + "/30");
    wanted.insert(wanted.end(), {"update 30/30", "close"});
    EXPECT_EQ(desktop_status_log, wanted);
}

TEST(StatusTest, BarStaysInsideItsFrame) {
    struct {
        int inner_right;
        std::int64_t position;
        std::int64_t size;
        int width;
    } const cases[] = {
        {200, 0, 100, 1},     {200, 50, 100, 101},
        {200, 100, 100, 201}, {200, 101, 100, 201},
        {200, -1, 100, 1},    {200, 0, 0, 0},
        {200, 5, 0, 0},       {200, 5, -1, 0},
        {-1, 5, 10, 0},       {200, 1LL << 40, 1LL << 41, 101},
    };
    for (const auto& c : cases)
        EXPECT_EQ(status_bar_width(c.inner_right, c.position, c.size), c.width)
            << c.position << "/" << c.size;
}
