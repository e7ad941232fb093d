// The seam to the serial line. The program links the Win32 body (line_win32.cpp), the tests a simulated line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct LINE; // an open port

struct LINE_SETTINGS {
    std::string device;       // "COM1" to "COM4"
    std::string mode;         // "COM1:9600,n,8,1": parity, data bits and stop bits; its speed is overwritten
    std::uint32_t baudrate;   // bit/s
    std::uint16_t xon_limit;  // bytes
    std::uint16_t xoff_limit; // bytes
    bool input_xon_xoff;      // the driver sends XON/XOFF; it never honours those of the other side
    std::optional<bool> rts_cts; // the driver honours CTS and handshakes with RTS, or holds RTS on; empty: as
                                 // it comes
    std::uint32_t write_limit;   // milliseconds until a write gives up; 0: never
};

enum class LINE_OPENING { OPEN, BAD_SETTINGS, NO_PORT, NOT_INITIALIZED };
struct OPENED_LINE {
    LINE_OPENING result;
    LINE* line; // set when result is OPEN
};
// Reads on an open line return at once.
OPENED_LINE open_line(const LINE_SETTINGS& settings);
void close_line(LINE* line);

struct LINE_STATUS {
    bool cts_hold;
    bool dsr_hold;
    bool xoff_hold;
    bool xoff_sent;
    std::uint32_t output_queue; // bytes that wait to go out
};
// Clears the line's errors and returns the error word, 0 for none. `status` may be nullptr. A call that
// itself fails (the adapter was pulled out) counts as no error, so that no loop waits on it for ever.
std::uint32_t clear_line_error(LINE* line, LINE_STATUS* status);

// True when a byte waited and was read.
bool read_line_byte(LINE* line, std::uint8_t* byte);

enum class LINE_WRITE { DONE, NOTHING, FAILED }; // NOTHING: the byte did not go out within the write limit
LINE_WRITE write_line_byte(LINE* line, std::uint8_t byte);

// The modem's carrier; false when the port cannot tell.
bool line_has_carrier(LINE* line);
