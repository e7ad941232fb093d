// The program's sender and receiver joined in memory, through a line that spoils what it carries. Whatever
// the line does, the receiver stores a prefix of what was sent, in whole blocks.
#include "tests/comm_test.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <deque>
#include <numeric>
#include <random>
#include <semaphore>
#include <thread>

namespace {

using CommNoise = CommTest;

constexpr std::uint32_t IDLE_STEP = 1000; // ms that pass when neither end has anything to read

// What becomes of one byte on its way: the bytes that arrive instead.
using NOISE = std::function<std::string(std::uint8_t byte)>;

struct OUTCOME {
    int result; // of receiving
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

OUTCOME run_transfer(const std::string& data, const NOISE& noise) {
    start_over();
    desktop_clock_step = 0;
    put_file("SENT.DAT", data);
    std::filesystem::remove("RECEIVED.DAT");
    END sender;
    END receiver;
    OUTCOME outcome = {};
    line_script.write = [&](LINE* from, std::uint8_t byte) {
        const bool to_receiver = from == &sender.line;
        const std::string bytes = noise(byte);
        std::deque<char>& incoming = (to_receiver ? receiver : sender).incoming;
        incoming.insert(incoming.end(), bytes.begin(), bytes.end());
        if (to_receiver)
            outcome.arrived += bytes;
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
        outcome.result = xmodem_receive_file(nullptr, &receiver.line, "RECEIVED.DAT");
        receiver.is_done = true;
        sender.baton.release();
    });
    xmodem_send_file(nullptr, &sender.line, "SENT.DAT");
    sender.is_done = true;
    receiver.baton.release();
    receiving.join();
    outcome.stored = get_file("RECEIVED.DAT");
    return outcome;
}

std::string one(std::uint8_t byte) {
    return {static_cast<char>(byte)};
}

TEST_F(CommNoise, AQuietLineCarriesBlockNumbersPast255) {
    const std::string data = numbered_bytes(128 * 600);
    const auto frames = frames_of(data, true);
    const OUTCOME outcome = run_transfer(data, one);
    EXPECT_EQ(outcome.arrived, std::accumulate(frames.begin(), frames.end(), std::string()) + EOT);
    EXPECT_EQ(outcome.stored, data);
    EXPECT_EQ(line_record.counters[COUNTER::BLOCKS_DONE], "600");
}

TEST_F(CommNoise, ANoisyLineNeverStoresOtherBytes) {
    constexpr int TRANSFERS = 10'000;
    constexpr double SIZE_LIMIT = 3000; // bytes
    int completed = 0;
    int broken_off = 0;
    int collisions[2] = {}; // of the sum, of the CRC
    std::uint64_t faults = 0;
    for (int seed = 0; seed < TRANSFERS; ++seed) {
        std::mt19937_64 random(static_cast<std::uint64_t>(seed));
        const bool crc_mode = seed % 4 != 0;
        // Rates from 1e-5 to 1e-2, alike many in each decade.
        std::uniform_real_distribution<> part;
        const double rate = std::pow(10.0, -5.0 + 3.0 * part(random));
        std::string data(static_cast<std::size_t>(SIZE_LIMIT * std::pow(part(random), 2)), '\0');
        if (seed % 8 < 6) // the others are all fill, where a shifted frame looks most like a good one
            for (char& c : data)
                c = static_cast<char>(random() % 3 == 0 ? 0 : random());
        std::geometric_distribution<std::uint64_t> gap(rate);
        std::uint64_t clean = gap(random);
        const OUTCOME outcome = run_transfer(data, [&](std::uint8_t byte) {
            if (!crc_mode && byte == 'C' && line_record.counters[COUNTER::STATUS] == "Waiting")
                return std::string(); // the sender starts only when it is asked for a sum
            if (clean-- > 0)
                return one(byte);
            clean = gap(random);
            ++faults;
            switch (random() % 5) {
            case 0:
                return one(static_cast<std::uint8_t>(byte ^ (1U << random() % 8)));
            case 1:
                return std::string();
            case 2:
                return one(byte) + one(byte);
            case 3:
                return EOT + one(byte);
            default:
                return one(static_cast<std::uint8_t>(random())) + one(byte);
            }
        });
        ++(outcome.result == TRANSFER_COMPLETED ? completed : broken_off);
        ASSERT_TRUE(outcome.result == TRANSFER_COMPLETED || outcome.stored.size() % XMODEM_BLOCK_SIZE == 0)
            << "seed " << seed;
        const auto good = frames_of(data, crc_mode);
        const auto stored = frames_of(outcome.stored, crc_mode); // with the fill that the receiver took off
        const auto [other, _] = std::mismatch(stored.begin(), stored.end(), good.begin(), good.end());
        if (other != stored.end()) { // a collision: the line itself has made that frame, check bytes and all
            ASSERT_NE(outcome.arrived.find(other->substr(1)), std::string::npos) << "seed " << seed;
            ++collisions[crc_mode ? 1 : 0];
        }
    }
    std::printf(
        "%d transfers, %llu faults: %d completed, %d broken off; collisions: %d of the sum, %d of the CRC\n",
        TRANSFERS, static_cast<unsigned long long>(faults), completed, broken_off, collisions[0],
        collisions[1]);
    EXPECT_GT(completed, TRANSFERS / 2);
    EXPECT_GT(broken_off, TRANSFERS / 20);
}

} // namespace
