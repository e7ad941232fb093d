// What the tests of the line share: a fixture that starts each test with default settings in an empty folder,
// files, and XMODEM frames.
#pragma once

#include "comm/PCOM.h"
#include "tests/desktop_script.h"
#include "tests/line_script.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

inline constexpr char ACK[] = "\x06";
inline constexpr char NAK[] = "\x15";
inline constexpr char CAN[] = "\x18";
inline constexpr char EOT[] = "\x04";

class CommTest : public testing::Test {
protected:
    CommTest();
    ~CommTest() override;
    std::filesystem::path started_in = std::filesystem::current_path();
};

// Forgets what ran before within one test: line, desktop, settings and counters.
void start_over();

std::string numbered_bytes(std::size_t count); // no two blocks alike, the last byte not NUL
void put_file(const std::string& name, const std::string& bytes);
std::string get_file(const std::string& name);
int open_file_count();

std::string frame_of(unsigned block, std::string data, bool crc_mode,
                     std::size_t block_size = XMODEM_BLOCK_SIZE);
std::vector<std::string> frames_of(const std::string& data, bool crc_mode);

// The other side answers each byte it hears with the next of these; "" is silence, as is all after the last.
void answer_each_byte(std::vector<std::string> answers);

std::string event_texts(); // "open|STATUS Waiting|..."
