// What the tests of the line share: a fixture that starts each test with default settings in an empty folder,
// and XMODEM frames.
#pragma once

#include "comm/PCOM.h"
#include "tests/line_script.h"
#include "tests/test_files.h"

inline constexpr char ACK[] = "\x06";
inline constexpr char NAK[] = "\x15";
inline constexpr char CAN[] = "\x18";
inline constexpr char EOT[] = "\x04";

class CommTest : public FILE_TEST {
protected:
    CommTest();
    ~CommTest() override;
    const std::filesystem::path started_in = std::filesystem::current_path();
};

// Forgets what ran before within one test: line, desktop, settings and counters.
void start_over();

std::string numbered_bytes(std::size_t count); // no two blocks alike, the last byte not NUL

std::string frame_of(unsigned block, std::string data, bool crc_mode,
                     std::size_t block_size = XMODEM_BLOCK_SIZE);
std::vector<std::string> frames_of(const std::string& data, bool crc_mode);

// The other side answers each byte it hears with the next of these; "" is silence, as is all after the last.
void answer_each_byte(std::vector<std::string> answers);

// The other side asks with `request` and gives the next of `answers` to each whole frame: 'A' for ACK, 'N'
// for NAK, 'X' for CAN, '?' for noise before an ACK, '-' for silence.
void answer_frames(const std::string& request, const std::string& answers,
                   std::size_t block_size = XMODEM_BLOCK_SIZE);

std::string event_texts();  // "open|STATUS Waiting|..."
std::string timed_events(); // "0 open|11 STATUS Waiting|604": each in tenths of a second, and the end
