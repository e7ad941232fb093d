// What the tests of the line share: a fixture that starts each test with default settings in an empty folder,
// and XMODEM frames.
#pragma once

#include "comm/PCOM.h"
#include "tests/line_script.h"
#include "tests/test_files.h"

inline const std::string ACK = "\x06", NAK = "\x15", CAN = "\x18", EOT = "\x04";

class CommTest : public FILE_TEST {
protected:
    CommTest();
    ~CommTest() override;
    const std::filesystem::path started_in = std::filesystem::current_path();
    LINE port;
};

// Forgets what ran before within one test: line, desktop, settings and counters.
void start_over();

std::string numbered_bytes(std::size_t count); // no two blocks alike, the last byte not NUL

std::string frame_of(unsigned block, std::string data, bool crc_mode,
                     std::size_t block_size = XMODEM_BLOCK_SIZE);
