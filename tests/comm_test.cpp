#include "tests/comm_test.h"

#include <numeric>

CommTest::CommTest() {
    std::filesystem::current_path(path("."));
    start_over();
}

CommTest::~CommTest() {
    EXPECT_EQ(line_record.open_lines, 0);
    std::filesystem::current_path(started_in);
}

void start_over() {
    EXPECT_TRUE(reset_desktop().empty()) << "a message was announced but not shown";
    reset_line();
    reset_com_setups();
    phone_number.clear();
    auto_receive_flag = false;
    auto_receive_counter = 0;
}

std::string numbered_bytes(std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += static_cast<char>(i % 128 == 0 ? 1 + i / 128 : 1 + i % 251);
    return bytes;
}

std::string frame_of(unsigned block, std::string data, bool crc_mode, std::size_t block_size) {
    data.resize(block_size, '\0');
    std::string frame = {1, static_cast<char>(block), static_cast<char>(255 - block % 256)};
    frame += data;
    if (!crc_mode)
        return frame + static_cast<char>(std::accumulate(data.begin(), data.end(), 0));
    std::uint16_t crc = 0;
    crc_block(data, &crc);
    return frame + static_cast<char>(crc / 256) + static_cast<char>(crc % 256);
}
