#include "app/checksum.h"
#include "tests/test_files.h"

#include <random>

namespace {

constexpr int TYPES[] = {PROGRAM_CHECKSUM, SETUP_CHECKSUM, LOOKUP_CHECKSUM};

// The definition, bit by bit.
std::uint16_t bitwise_crc(std::string_view bytes) {
    unsigned crc = 0;
    for (const char byte : bytes)
        for (int bit = 7; bit >= 0; --bit) {
            const unsigned out = (crc >> 15) ^ (static_cast<unsigned>(byte) >> bit);
            crc = ((crc << 1) & 0xFFFF) ^ ((out & 1) != 0 ? 0x1021 : 0);
        }
    return static_cast<std::uint16_t>(crc);
}

// A file of `size` bytes before any appended checksum, its length word right and its checksum in its place.
std::string good_file(std::size_t size, int type) {
    std::mt19937 random(static_cast<unsigned>(size));
    std::string bytes(size, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(random());
    put_long(bytes, 0, static_cast<std::uint32_t>(size));
    std::string covered = bytes.substr(type == PROGRAM_CHECKSUM ? 5 : 0);
    if (type == LOOKUP_CHECKSUM)
        covered.erase(20, 2).erase(4, 1);
    std::string checksum;
    append_word(checksum, bitwise_crc(covered));
    return type == LOOKUP_CHECKSUM ? bytes.replace(20, 2, checksum) : bytes + checksum;
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

TEST(CrcTest, BytesAndBlocksFollowOnEachOther) {
    std::uint16_t crc = 0;
    crc_block("1234", &crc);
    crc_block("", &crc);
    crc_16('5', &crc);
    crc_block("678", &crc);
    crc_update('9', crc);
    EXPECT_EQ(crc, 0x31C3);
}

TEST_F(ChecksumTest, StampsAndVerifiesEveryKindOfFile) {
    for (const int type : TYPES)
        for (const std::size_t size : {22U, 150U, 278U, 70001U}) {
            SCOPED_TRACE(testing::Message() << "type " << type << ", size " << size);
            const std::string good = good_file(size, type);
            EXPECT_EQ(stamped(good.substr(0, size), type), good);
            EXPECT_TRUE(is_valid(good, type));
            EXPECT_EQ(std::ftell(file.get()), type == LOOKUP_CHECKSUM ? 22L : static_cast<long>(size) + 2);
        }
}

TEST_F(ChecksumTest, RefusesLengthWordsThatTheFileCannotHold) {
    const std::string good = good_file(60, LOOKUP_CHECKSUM);
    for (const std::uint32_t length : {0U, 4U, 21U, 59U, 61U, 0x7FFFFFFFU, 0xFFFFFFFFU})
        EXPECT_FALSE(is_valid(with_length_word(good, length), LOOKUP_CHECKSUM)) << length;
    for (const int type : TYPES)
        for (std::size_t size = 0; size < 22; ++size) // nothing but zeros, so that any sum would be right
            EXPECT_FALSE(is_valid(std::string(size, '\0'), type)) << "type " << type << ", size " << size;
}
