#include "tests/comm_test.h"

#include "comm/PCOM_log.h"

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
    log_entry = {};
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

void answer_frames(const std::string& request, const std::string& answers, std::size_t block_size) {
    static const std::map<char, std::string> ANSWER_BYTES = {
        {'A', ACK}, {'N', NAK}, {'X', CAN}, {'?', std::string("\x43\xFF\x04") + ACK}, {'-', ""}};
    line_brings(request);
    line_script.heard = [=, size = block_size + (request == NAK ? 4 : 5)](std::uint8_t) {
        const std::size_t frame = line_record.sent.size() / size;
        if (line_record.sent.size() % size == 0 && frame <= answers.size())
            line_brings(ANSWER_BYTES.at(answers[frame - 1]));
    };
}

std::string event_texts() {
    std::string texts;
    for (const LINE_EVENT& event : line_record.events)
        texts += (texts.empty() ? "" : "|") + event.text;
    return texts;
}

std::string timed_events() {
    std::string texts;
    for (const LINE_EVENT& event : line_record.events)
        texts += std::to_string(event.at / 100) + " " + event.text + "|";
    return texts + std::to_string(desktop_clock / 100);
}
