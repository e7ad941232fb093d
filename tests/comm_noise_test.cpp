// The program's sender and receiver joined in memory, through a line that spoils what it carries. Whatever
// the line does, the receiver stores a prefix of what was sent, in whole blocks.
#include "tests/comm_test.h"

#include <cmath>
#include <random>
#include <semaphore>
#include <thread>

namespace {

using CommNoise = CommTest;

constexpr std::uint32_t IDLE_STEP = 1000; // ms that pass when neither end has anything to read

// One end runs at a time. It hands the baton over when it finds nothing to read, and for good when it is
// done.
struct END {
    LINE line;
    std::string arrived;
    std::size_t read = 0; // bytes of that
    std::binary_semaphore baton{0};
    bool is_done = false;
};

// Sends SENT.DAT into RECEIVED.DAT; `noise` gives the bytes that arrive instead of one. The receiver's
// result, and all that reached it.
std::pair<int, std::string> run_transfer(const std::function<std::string(char byte)>& noise) {
    END sender, receiver;
    line_script.write = [&](LINE* from, std::uint8_t byte) {
        END& to = from == &sender.line ? receiver : sender;
        to.arrived += noise(static_cast<char>(byte));
        return LINE_WRITE::DONE;
    };
    line_script.read = [&](LINE* at, std::uint8_t* byte) {
        END& end = at == &sender.line ? sender : receiver;
        END& other = at == &sender.line ? receiver : sender;
        if (end.read == end.arrived.size()) {
            if (other.is_done || other.read == other.arrived.size())
                desktop_clock += IDLE_STEP;
            if (!other.is_done) {
                other.baton.release();
                end.baton.acquire();
            }
        }
        if (end.read == end.arrived.size())
            return false;
        *byte = static_cast<std::uint8_t>(end.arrived[end.read++]);
        return true;
    };
    int result = 0;
    std::thread receiving([&] {
        receiver.baton.acquire();
        result = xmodem_receive_file(nullptr, &receiver.line, "RECEIVED.DAT");
        receiver.is_done = true;
        sender.baton.release();
    });
    xmodem_send_file(nullptr, &sender.line, "SENT.DAT");
    sender.is_done = true;
    receiver.baton.release();
    receiving.join();
    return {result, receiver.arrived};
}

TEST_F(CommNoise, ANoisyLineNeverStoresOtherBytes) {
    constexpr unsigned TRANSFERS = 10'000;
    constexpr double SIZE_LIMIT = 3000; // bytes
    unsigned completed = 0;
    for (unsigned seed = 0; seed < TRANSFERS; ++seed) {
        SCOPED_TRACE(seed);
        start_over();
        desktop_clock_step = 0;
        std::mt19937_64 random(seed);
        const bool crc_mode = seed % 4 != 0;
        // Rates from 1e-5 to 1e-2, alike many in each decade.
        std::uniform_real_distribution<> part;
        std::geometric_distribution<std::uint64_t> gap(std::pow(10.0, -5.0 + 3.0 * part(random)));
        std::string data(static_cast<std::size_t>(SIZE_LIMIT * std::pow(part(random), 2)), '\0');
        if (seed % 8 < 6) // the others are all fill, where a shifted frame looks most like a good one
            for (char& c : data)
                c = static_cast<char>(random() % 3 == 0 ? 0 : random());
        write_bytes("SENT.DAT", data);
        std::filesystem::remove("RECEIVED.DAT");
        std::uint64_t clean = gap(random);
        const auto noise = [&](char byte) {
            if (!crc_mode && byte == 'C' && line_record.counters[COUNTER::STATUS] == "Waiting")
                return std::string(); // the sender starts only when it is asked for a sum
            if (clean-- > 0)
                return std::string(1, byte);
            clean = gap(random);
            const char flipped = static_cast<char>(byte ^ (1 << random() % 8));
            const std::string spoilt[] = {
                {flipped}, "", {byte, byte}, {EOT[0], byte}, {static_cast<char>(random()), byte}};
            return spoilt[random() % std::size(spoilt)];
        };
        const auto [result, arrived] = run_transfer(noise);
        completed += result == TRANSFER_COMPLETED;
        const std::string stored = read_bytes("RECEIVED.DAT");
        ASSERT_TRUE(result == TRANSFER_COMPLETED || stored.size() % XMODEM_BLOCK_SIZE == 0);
        for (std::size_t at = 0; at < stored.size(); at += XMODEM_BLOCK_SIZE) {
            const auto frame_in = [&](const std::string& bytes) {
                const auto block = static_cast<unsigned>(at / XMODEM_BLOCK_SIZE + 1);
                return frame_of(block, bytes.substr(at, XMODEM_BLOCK_SIZE), crc_mode).substr(1);
            };
            const std::string frame = frame_in(stored); // with the fill that the receiver took off
            if (at < data.size() && frame == frame_in(data))
                continue;
            ASSERT_NE(arrived.find(frame), std::string::npos);
            ASSERT_EQ(line_record.sent.find(frame), std::string::npos) << "made by the sender, not the line";
        }
    }
    EXPECT_GT(completed, TRANSFERS / 2);
    EXPECT_LT(completed, TRANSFERS - TRANSFERS / 20);
}

} // namespace
