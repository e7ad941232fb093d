#include "tests/comm_test.h"

#include "app/checksum.h"
#include "comm/PCOM_log.h"

#include <fstream>
#include <numeric>
#include <sstream>
#include <unistd.h>

namespace fs = std::filesystem;

CommTest::CommTest() {
    const fs::path folder = fs::temp_directory_path() / ("tolvan_comm_" + std::to_string(getpid()));
    fs::create_directories(folder);
    fs::current_path(folder);
    start_over();
}

CommTest::~CommTest() {
    EXPECT_TRUE(reset_desktop().empty()) << "a message was announced but not shown";
    EXPECT_EQ(line_record.open_lines, 0);
    start_over();
    const fs::path folder = fs::current_path();
    fs::current_path(started_in);
    fs::remove_all(folder);
}

void start_over() {
    reset_desktop();
    reset_line();
    reset_com_setups();
    phone_number.clear();
    auto_receive_flag = false;
    auto_receive_counter = 0;
    log_entry = {};
}

std::string numbered_bytes(std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += static_cast<char>(i % 128 == 0 ? 1 + i / 128 : 1 + i % 251);
    return bytes;
}

void put_file(const std::string& name, const std::string& bytes) {
    fs::remove(name); // a file that is cut and written anew goes to the disk at once: minutes for thousands
    std::ofstream(name, std::ios::binary) << bytes;
}

std::string get_file(const std::string& name) {
    std::ostringstream bytes;
    bytes << std::ifstream(name, std::ios::binary).rdbuf();
    return bytes.str();
}

int open_file_count() {
    const fs::directory_iterator files("/proc/self/fd");
    return static_cast<int>(std::distance(begin(files), end(files)));
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

std::vector<std::string> frames_of(const std::string& data, bool crc_mode) {
    std::vector<std::string> frames;
    for (std::size_t at = 0; at < data.size(); at += 128)
        frames.push_back(frame_of(static_cast<unsigned>(at / 128 + 1), data.substr(at, 128), crc_mode));
    return frames;
}

void answer_each_byte(std::vector<std::string> answers) {
    line_script.heard = [answers = std::move(answers), next = std::size_t{0}](std::uint8_t) mutable {
        if (next < answers.size())
            line_brings(answers[next++]);
    };
}

std::string event_texts() {
    std::string texts;
    for (const LINE_EVENT& event : line_record.events)
        texts += (texts.empty() ? "" : "|") + event.text;
    return texts;
}
