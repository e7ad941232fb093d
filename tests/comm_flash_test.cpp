#include "tests/comm_test.h"

#include <cstring>
#include <numeric>

namespace {

using CommFlash = CommTest;

// An upgrade file with its right CRC, as far as there is room for one.
std::string upgrade_of(std::size_t size) {
    if (size < 6)
        return std::string(size, '\0');
    const std::string bytes = numbered_bytes(size - 2);
    std::uint16_t crc = 0;
    crc_block(bytes.substr(4), &crc);
    return bytes + static_cast<char>(crc / 256) + static_cast<char>(crc % 256);
}

bool is_taken(const std::string& bytes) {
    write_bytes("IMAGE.UPG", bytes);
    return isflash_file("IMAGE.UPG");
}

TEST_F(CommFlash, VerdictOnEveryLength) {
    std::vector<std::size_t> sizes(4111);
    std::iota(sizes.begin(), sizes.end(), 0);
    sizes.insert(sizes.end(), {65540, 65541, 65542, 131075, 131076, 131078});
    for (const std::size_t size : sizes) {
        SCOPED_TRACE(size);
        std::string bytes = upgrade_of(size);
        const bool fits = size >= 6 && (size - 4) % 4096 > 1;
        ASSERT_EQ(is_taken(bytes), fits);
        if (!fits)
            continue;
        ASSERT_EQ(is_taken(bytes.substr(0, size - 1)), size > 6 && bytes.back() == 0) << "a NUL less";
        bytes[size - 1 - size * 7 % (size - 4)] ^= 0x40;
        ASSERT_FALSE(is_taken(bytes));
    }
    EXPECT_FALSE(isflash_file(".")) << "cannot be read";
}

TEST_F(CommFlash, ForcesTheLineThatAnUpgradeNeeds) {
    comm_settings = {3, 300, 7, 2, EVEN_PARITY, PROTOCOL_NONE, FLOW_RTS_CTS, 2, 1, 1, 1, ""};
    force_flash_settings();
    const COMM_SETTINGS forced{3, 38400, 8, 1, NO_PARITY, PROTOCOL_XMODEM, FLOW_NONE, 2, 0, 1, 1, ""};
    EXPECT_EQ(std::memcmp(&comm_settings, &forced, offsetof(COMM_SETTINGS, modem_init)), 0);
}

} // namespace
