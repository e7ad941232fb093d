// XMODEM in both directions.
//
// Frame: offset 0, 1 byte, SOH; 1, 1, block number from 1 on, modulo 256; 2, 1, its complement;
// 3, 128, data, a short last block filled with NUL; 131, sum of the data (1 byte) or CRC (2 bytes, high
// first). A flash upgrade's frames hold 1024 bytes of data and are alike in all else, SOH included.
#include "comm/PCOM.h"
#include "comm/PCOM_local.h"
#include "comm/PCOM_poll.h"

#include "app/checksum.h"
#include "app/desktop.h"
#include "comm/transfer_screen.h"

#include <algorithm>
#include <initializer_list>
#include <numeric>
#include <string_view>

namespace {

constexpr std::uint8_t SOH = 0x01;
constexpr std::uint8_t EOT = 0x04;
constexpr std::uint8_t ACK = 0x06;
constexpr std::uint8_t NAK = 0x15;
constexpr std::uint8_t CAN = 0x18;
constexpr std::uint8_t CRC_REQUEST = 'C';
constexpr std::uint8_t SMALL_CRC_REQUEST = 'c'; // some receivers ask with this

constexpr std::size_t HEADER_SIZE = 3;

constexpr std::uint32_t REQUEST_LIMIT = 60000; // ms, as are all limits
constexpr std::uint32_t ANSWER_LIMIT = 5000;
constexpr std::uint32_t START_LIMIT = 2000; // for the answer to each request for a start
constexpr std::uint32_t FRAME_LIMIT = 20000;

constexpr int CRC_ATTEMPTS = 15; // requests for a start: first these with a CRC, then with a sum
constexpr int START_ATTEMPTS = 31;

void show_number(WINDOW screen, COUNTER counter, std::uint64_t number) {
    show_counter(screen, counter, std::to_string(number));
}

void show_start(WINDOW screen) {
    show_number(screen, COUNTER::ERRORS, 0);
    show_counter(screen, COUNTER::STATUS, "Waiting");
    show_transfer_button(screen, "Cancel");
}

using BYTE_LIST = std::initializer_list<std::uint8_t>;

// Waits for one of the `wanted` bytes and passes over all others. A TRANSFER_RESULT; `found` is set when it
// is TRANSFER_COMPLETED.
int wait_for(WINDOW screen, LINE* port, BYTE_LIST wanted, std::uint32_t limit, std::uint8_t& found) {
    const std::uint32_t start = tick_count();
    for (;;) {
        std::optional<std::uint8_t> byte;
        const int result = poll_byte(screen, port, byte);
        if (result != TRANSFER_COMPLETED)
            return result;
        if (byte && std::find(wanted.begin(), wanted.end(), *byte) != wanted.end()) {
            found = *byte;
            return TRANSFER_COMPLETED;
        }
        if (tick_count() - start > limit)
            return TRANSFER_TIMEOUT;
    }
}

std::string header_of(std::uint32_t block) {
    const auto number = static_cast<std::uint8_t>(block);
    return {static_cast<char>(SOH), static_cast<char>(number), static_cast<char>(~number)};
}

// The bytes that end a frame with this data.
std::string check_of(std::string_view data, bool crc_mode) {
    if (!crc_mode)
        return {static_cast<char>(std::accumulate(data.begin(), data.end(), 0))};
    std::uint16_t crc = 0;
    crc_block(data, &crc);
    return {static_cast<char>(crc >> 8), static_cast<char>(crc)};
}

// --- sending ---

struct SENDER {
    WINDOW screen;
    LINE* port;
    std::size_t block_size;
    bool crc_mode = false;
    std::uint32_t errors = 0;
};

void count_error(SENDER& sender) {
    show_number(sender.screen, COUNTER::ERRORS, ++sender.errors);
}

// The portable takes one byte at a time: nothing may wait in the queue, and no hold may stand.
bool is_xmodem_allowed(const LINE_STATUS& status) {
    return status.output_queue == 0 && !status.cts_hold && !status.dsr_hold && !status.xoff_hold &&
           !status.xoff_sent;
}
constexpr SEND_RULE XMODEM_RULE = {is_xmodem_allowed, true};

// Sends one block until it is taken or given up. A TRANSFER_RESULT.
int send_block(SENDER& sender, std::uint32_t block, const std::string& frame, bool is_short) {
    for (std::int64_t retries = comm_settings.xmodem_retries; retries >= 0; --retries) {
        for (const char c : frame) {
            const int sent = send_byte(sender.screen, sender.port, static_cast<std::uint8_t>(c), XMODEM_RULE);
            if (sent != TRANSFER_COMPLETED)
                return sent;
        }
        std::uint8_t answer = 0;
        const int result = wait_for(sender.screen, sender.port, {ACK, NAK, CAN}, ANSWER_LIMIT, answer);
        if (result == TRANSFER_NO_CARRIER)
            return result;
        show_number(sender.screen, COUNTER::BLOCKS_DONE, block);
        show_number(sender.screen, COUNTER::BYTES_DONE, std::uint64_t{block} * sender.block_size);
        if (result == TRANSFER_CANCELLED || answer == CAN)
            return TRANSFER_CANCELLED;
        if (answer == ACK)
            return TRANSFER_COMPLETED;
        count_error(sender);
        // The first answer to a short block ends the transfer, and a NAK ends it well: only silence and
        // used-up retries count against it.
        if (is_short && retries > 0)
            return result;
    }
    return TRANSFER_RETRIES_EXCEEDED;
}

int send_blocks(SENDER& sender, std::FILE* file) {
    for (std::uint32_t block = 1;; ++block) {
        std::string data(sender.block_size, '\0');
        const std::size_t count = std::fread(data.data(), 1, data.size(), file);
        if (std::ferror(file))
            return TRANSFER_FILE_ERROR;
        if (count == 0)
            return TRANSFER_COMPLETED;
        const bool is_short = count < data.size();
        const std::string frame = header_of(block) + data + check_of(data, sender.crc_mode);
        const int result = send_block(sender, block, frame, is_short);
        if (result != TRANSFER_COMPLETED || is_short)
            return result;
    }
}

// Tells the receiver and the screen how the transfer ended. Returns the final TRANSFER_RESULT. A receiver
// that never sees the EOT has not got the file: the byte waits like every other until the line takes it.
int end_sending(SENDER& sender, int result) {
    if (result == TRANSFER_COMPLETED)
        result = send_byte(sender.screen, sender.port, EOT, XMODEM_RULE);
    switch (result) {
    case TRANSFER_LINE_FAILED:
        show_counter(sender.screen, COUNTER::STATUS, "Error");
        break;
    case TRANSFER_TIMEOUT:
        count_error(sender);
        break;
    case TRANSFER_CANCELLED:
    case TRANSFER_RETRIES_EXCEEDED:
    case TRANSFER_FILE_ERROR:
        write_direct(sender.port, CAN);
        break;
    default:
        break;
    }
    return result;
}

int send_in_blocks(WINDOW screen, LINE* port, const std::string& file_name, std::size_t block_size) {
    const FILE_HANDLE file = open_file_to_send(file_name);
    if (!file)
        return TRANSFER_FILE_ERROR;
    show_start(screen);
    SENDER sender = {screen, port, block_size};
    std::uint8_t request = 0;
    int result = wait_for(screen, port, {CRC_REQUEST, SMALL_CRC_REQUEST, NAK}, REQUEST_LIMIT, request);
    if (result == TRANSFER_COMPLETED) {
        sender.crc_mode = request != NAK;
        show_counter(screen, COUNTER::STATUS, "Sending");
        result = send_blocks(sender, file.get());
    }
    return end_sending(sender, result);
}

// --- receiving ---

constexpr SEND_RULE ANSWER_RULE = {[](const LINE_STATUS&) { return true; }, true};

struct RECEIVER {
    WINDOW screen;
    LINE* port;
    std::FILE* file;
    bool crc_mode = false;
    std::string frame = {}; // as far as it has arrived
    std::string held = {};  // data of the last good block: only the next one shows that its NULs are no fill
    std::uint32_t expected = 1;
    std::uint64_t byte_count = 0;
    std::uint32_t errors = 0;
    std::int64_t retries = 0;
};

// Asks the sender to start, with a CRC at first and with a sum when that is not answered. TRANSFER_COMPLETED
// with the frame's first byte and the mode set; TRANSFER_TIMEOUT when nobody answered, which auto receive
// never gives in to; or another TRANSFER_RESULT.
int request_start(RECEIVER& receiver) {
    for (int attempt = 0; attempt < START_ATTEMPTS || auto_receive_flag; ++attempt) {
        receiver.crc_mode = attempt % START_ATTEMPTS < CRC_ATTEMPTS;
        write_direct(receiver.port, receiver.crc_mode ? CRC_REQUEST : NAK);
        std::uint8_t found = 0;
        const int result = wait_for(receiver.screen, receiver.port, {SOH}, START_LIMIT, found);
        if (result == TRANSFER_COMPLETED)
            receiver.frame += static_cast<char>(found);
        if (result != TRANSFER_TIMEOUT)
            return result;
    }
    return TRANSFER_TIMEOUT;
}

// The start byte itself is not checked: number, complement and check bytes say enough. A repeated frame is no
// good frame.
bool is_good_frame(const RECEIVER& receiver) {
    const std::string_view frame = receiver.frame;
    const std::string_view data = frame.substr(HEADER_SIZE, XMODEM_BLOCK_SIZE);
    return frame.substr(1, HEADER_SIZE - 1) == header_of(receiver.expected).substr(1) &&
           frame.substr(HEADER_SIZE + XMODEM_BLOCK_SIZE) == check_of(data, receiver.crc_mode);
}

// Stores the block before this one, holds this one, and acknowledges it. A TRANSFER_RESULT.
int accept_frame(RECEIVER& receiver) {
    show_number(receiver.screen, COUNTER::BLOCKS_DONE, receiver.expected);
    ++receiver.expected;
    receiver.byte_count += XMODEM_BLOCK_SIZE;
    show_number(receiver.screen, COUNTER::BYTES_DONE, receiver.byte_count);
    if (!store_bytes(receiver.file, receiver.held)) {
        show_comm_error("cbWrite error");
        return TRANSFER_FILE_ERROR;
    }
    receiver.held = receiver.frame.substr(HEADER_SIZE, XMODEM_BLOCK_SIZE);
    receiver.retries = comm_settings.xmodem_retries;
    return send_byte(receiver.screen, receiver.port, ACK, ANSWER_RULE);
}

int refuse_frame(RECEIVER& receiver) {
    show_number(receiver.screen, COUNTER::ERRORS, ++receiver.errors);
    const int result = send_byte(receiver.screen, receiver.port, NAK, ANSWER_RULE);
    if (result != TRANSFER_COMPLETED)
        return result;
    return --receiver.retries < 0 ? TRANSFER_RETRIES_EXCEEDED : TRANSFER_COMPLETED;
}

// Takes frames until the sender ends the transfer or something else does. A TRANSFER_RESULT.
int receive_frames(RECEIVER& receiver) {
    const std::size_t frame_size = HEADER_SIZE + XMODEM_BLOCK_SIZE + check_of({}, receiver.crc_mode).size();
    receiver.retries = comm_settings.xmodem_retries;
    std::uint32_t start = tick_count();
    for (;;) {
        std::optional<std::uint8_t> byte;
        int result = poll_byte(receiver.screen, receiver.port, byte);
        if (result != TRANSFER_COMPLETED)
            return result;
        if (!byte) {
            if (tick_count() - start > FRAME_LIMIT)
                return TRANSFER_TIMEOUT;
            continue;
        }
        if (receiver.frame.empty() && *byte == EOT)
            return TRANSFER_COMPLETED;
        receiver.frame += static_cast<char>(*byte);
        if (receiver.frame.size() < frame_size)
            continue;

        result = is_good_frame(receiver) ? accept_frame(receiver) : refuse_frame(receiver);
        if (result != TRANSFER_COMPLETED)
            return result;
        receiver.frame.clear();
        start = tick_count();
    }
}

// Answers the sender's end of transfer, or ends it from this side. Returns the final TRANSFER_RESULT.
int end_receiving(RECEIVER& receiver, int result) {
    switch (result) {
    case TRANSFER_COMPLETED:
        write_direct(receiver.port, ACK);
        receiver.held.resize(receiver.held.find_last_not_of('\0') + 1); // npos + 1 is 0: nothing but fill
        if (store_bytes(receiver.file, receiver.held))
            break;
        result = TRANSFER_FILE_ERROR;
        show_comm_error(FILE_WRITE_ERROR_TEXT);
        break;
    case TRANSFER_FILE_ERROR:
        write_direct(receiver.port, CAN);
        show_comm_error(FILE_WRITE_ERROR_TEXT);
        break;
    case TRANSFER_CANCELLED:
    case TRANSFER_RETRIES_EXCEEDED:
    case TRANSFER_TIMEOUT:
        write_direct(receiver.port, CAN);
        break;
    default:
        break;
    }
    return result;
}

} // namespace

int xmodem_send_file(WINDOW screen, LINE* port, const std::string& file_name) {
    return send_in_blocks(screen, port, file_name, XMODEM_BLOCK_SIZE);
}

int xmodem_send_flash(WINDOW screen, LINE* port, const std::string& file_name) {
    return send_in_blocks(screen, port, file_name, FLASH_BLOCK_SIZE);
}

int xmodem_receive_file(WINDOW screen, LINE* port, const std::string& file_name) {
    const FILE_HANDLE file = open_file_to_receive(file_name);
    if (!file)
        return TRANSFER_FILE_ERROR;
    show_start(screen);
    RECEIVER receiver = {screen, port, file.get()};
    int result = request_start(receiver);
    if (result == TRANSFER_COMPLETED)
        note_receive_start();
    // A sender that has not answered yet is given one more frame's time.
    if (result == TRANSFER_COMPLETED || result == TRANSFER_TIMEOUT) {
        show_counter(screen, COUNTER::STATUS, "Receiving");
        result = receive_frames(receiver);
    }
    result = end_receiving(receiver, result);
    note_receive_end(receiver.byte_count);
    return result;
}
