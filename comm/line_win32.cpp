#include "comm/line_win32.h"

namespace {

constexpr char XON = 0x11;
constexpr char XOFF = 0x13;
constexpr DWORD INPUT_QUEUE = 65536; // bytes: what comes while the program is busy must wait somewhere
constexpr DWORD OUTPUT_QUEUE = 4096;
constexpr char DEVICE_FOLDER[] = "\\\\.\\"; // port numbers above 9 are known by this name only

// An open line is its port's handle under the seam's name.
HANDLE port_of(LINE* line) {
    return line;
}

} // namespace

bool fill_control_block(DCB& block, const LINE_SETTINGS& settings) {
    block = {};
    block.DCBlength = sizeof block;
    if (!BuildCommDCBA(settings.mode.c_str(), &block))
        return false;
    block.BaudRate = settings.baudrate;
    block.fBinary = TRUE;
    block.XonLim = settings.xon_limit;
    block.XoffLim = settings.xoff_limit;
    block.XonChar = XON; // also without XON/XOFF: two equal characters are refused
    block.XoffChar = XOFF;
    block.fOutX = FALSE;
    block.fInX = settings.input_xon_xoff;
    if (settings.rts_cts) {
        block.fOutxCtsFlow = *settings.rts_cts;
        block.fRtsControl = *settings.rts_cts ? RTS_CONTROL_HANDSHAKE : RTS_CONTROL_ENABLE;
    }
    return true;
}

OPENED_LINE open_line(const LINE_SETTINGS& settings) {
    DCB block{};
    if (!fill_control_block(block, settings))
        return {LINE_OPENING::BAD_SETTINGS, nullptr};
    HANDLE port = CreateFileA((DEVICE_FOLDER + settings.device).c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (port == INVALID_HANDLE_VALUE)
        return {LINE_OPENING::NO_PORT, nullptr};
    SetupComm(port, INPUT_QUEUE, OUTPUT_QUEUE); // a wish: a driver may have queues of its own
    // Reads return at once with what waits; only writes have a limit.
    COMMTIMEOUTS limits{MAXDWORD, 0, 0, 0, settings.write_limit};
    // A port that refuses is left open, as the portable's desktop always did.
    if (!SetCommState(port, &block) || !SetCommTimeouts(port, &limits))
        return {LINE_OPENING::NOT_INITIALIZED, nullptr};
    return {LINE_OPENING::OPEN, static_cast<LINE*>(port)};
}

void close_line(LINE* line) {
    CloseHandle(port_of(line));
}

std::uint32_t clear_line_error(LINE* line, LINE_STATUS* status) {
    DWORD errors = 0;
    COMSTAT state{};
    if (!ClearCommError(port_of(line), &errors, &state)) {
        errors = 0;
        state = {};
    }
    if (status != nullptr)
        *status = {.cts_hold = state.fCtsHold != 0,
                   .dsr_hold = state.fDsrHold != 0,
                   .xoff_hold = state.fXoffHold != 0,
                   .xoff_sent = state.fXoffSent != 0,
                   .output_queue = state.cbOutQue};
    return errors;
}

bool read_line_byte(LINE* line, std::uint8_t* byte) {
    DWORD count = 0;
    return ReadFile(port_of(line), byte, 1, &count, nullptr) && count == 1;
}

LINE_WRITE write_line_byte(LINE* line, std::uint8_t byte) {
    DWORD count = 0;
    if (!WriteFile(port_of(line), &byte, 1, &count, nullptr))
        return LINE_WRITE::FAILED;
    return count == 1 ? LINE_WRITE::DONE : LINE_WRITE::NOTHING;
}

bool line_has_carrier(LINE* line) {
    DWORD modem = 0;
    return GetCommModemStatus(port_of(line), &modem) && (modem & MS_RLSD_ON) != 0;
}
