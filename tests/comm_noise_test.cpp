// The program's sender and receiver joined in memory, through a line that spoils what it carries. Whatever
// the line does, the receiver stores a prefix of what was sent, in whole blocks.
#include "tests/comm_test.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <random>
#include <semaphore>
#include <thread>

namespace {

using CommNoise = CommTest;

constexpr std::uint32_t IDLE_STEP = 1000; // ms that pass when neither end has anything to read

// What becomes of one byte on its way: the bytes that arrive instead.
using NOISE = std::function<std::string(char byte)>;

struct RESULT {
    int received;
    std::string stored;
    std::string arrived; // at the receiver
};

// One end runs at a time. It hands the baton over when it finds nothing to read, and for good when it is
// done.
struct END {
    LINE line;
    std::deque<char> incoming;
    std::binary_semaphore baton{0};
    bool is_done = false;
};

RESULT run_transfer(const std::string& data, const NOISE& noise) {
    start_over();
    desktop_clock_step = 0;
    write_bytes("SENT.DAT", data);
    std::filesystem::remove("RECEIVED.DAT");
    END sender, receiver;
    RESULT result = {};
    line_script.write = [&](LINE* from, std::uint8_t byte) {
        const bool to_receiver = from == &sender.line;
        const std::string bytes = noise(static_cast<char>(byte));
        std::deque<char>& incoming = (to_receiver ? receiver : sender).incoming;
        incoming.insert(incoming.end(), bytes.begin(), bytes.end());
        if (to_receiver)
            result.arrived += bytes;
        return LINE_WRITE::DONE;
    };
    line_script.read = [&](LINE* at, std::uint8_t* byte) {
        END& end = at == &sender.line ? sender : receiver;
        END& other = at == &sender.line ? receiver : sender;
        if (end.incoming.empty()) {
            if (other.is_done || other.incoming.empty())
                desktop_clock += IDLE_STEP;
            if (!other.is_done) {
                other.baton.release();
                end.baton.acquire();
            }
        }
        if (end.incoming.empty())
            return false;
        *byte = static_cast<std::uint8_t>(end.incoming.front());
        end.incoming.pop_front();
        return true;
    };
    std::thread receiving([&] {
        receiver.baton.acquire();
        result.received = xmodem_receive_file(nullptr, &receiver.line, "RECEIVED.DAT");
        receiver.is_done = true;
        sender.baton.release();
    });
    xmodem_send_file(nullptr, &sender.line, "SENT.DAT");
    sender.is_done = true;
    receiver.baton.release();
    receiving.join();
    result.stored = read_bytes("RECEIVED.DAT");
    return result;
}

TEST_F(CommNoise, ANoisyLineNeverStoresOtherBytes) {
    constexpr unsigned TRANSFERS = 10'000;
    constexpr double SIZE_LIMIT = 3000; // bytes
    unsigned completed = 0;
    for (unsigned seed = 0; seed < TRANSFERS; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937_64 random(seed);
        const bool crc_mode = seed % 4 != 0;
        // Rates from 1e-5 to 1e-2, alike many in each decade.
        std::uniform_real_distribution<> part;
        std::geometric_distribution<std::uint64_t> gap(std::pow(10.0, -5.0 + 3.0 * part(random)));
        std::string data(static_cast<std::size_t>(SIZE_LIMIT * std::pow(part(random), 2)), '\0');
        if (seed % 8 < 6) // the others are all fill, where a shifted frame looks most like a good one
            for (char& c : data)
                c = static_cast<char>(random() % 3 == 0 ? 0 : random());
        std::uint64_t clean = gap(random);
        const RESULT result = run_transfer(data, [&](char byte) {
            if (!crc_mode && byte == 'C' && line_record.counters[COUNTER::STATUS] == "Waiting")
                return std::string(); // the sender starts only when it is asked for a sum
            if (clean-- > 0)
                return std::string(1, byte);
            clean = gap(random);
            const char flipped = static_cast<char>(byte ^ (1 << random() % 8));
            const std::string spoilt[] = {
                {flipped}, "", {byte, byte}, {EOT[0], byte}, {static_cast<char>(random()), byte}};
            return spoilt[random() % std::size(spoilt)];
        });
        completed += result.received == TRANSFER_COMPLETED;
        ASSERT_TRUE(result.received == TRANSFER_COMPLETED || result.stored.size() % XMODEM_BLOCK_SIZE == 0);
        const auto good = frames_of(data, crc_mode);
        const auto stored = frames_of(result.stored, crc_mode); // with the fill that the receiver took off
        const auto other = std::mismatch(stored.begin(), stored.end(), good.begin(), good.end()).first;
        if (other == stored.end())
            continue;
        // The line itself has made that frame, check bytes and all.
        ASSERT_NE(result.arrived.find(other->substr(1)), std::string::npos);
    }
    EXPECT_GT(completed, TRANSFERS / 2);
    EXPECT_LT(completed, TRANSFERS - TRANSFERS / 20);
}

} // namespace
