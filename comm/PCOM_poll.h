// One poll of the line during a transfer. Every loop polls in the same order: clear the line's errors, look
// at the carrier, take one window message, and only then move a byte. A line that has been silent for a while
// gives the processor away at each poll; one on which bytes flow never does.
#pragma once

#include "app/TolvanP.h"
#include "comm/line.h"

#include <cstdint>
#include <optional>

// Polls for input. TRANSFER_COMPLETED, with `byte` set when one waited on an errorless line;
// TRANSFER_NO_CARRIER or TRANSFER_CANCELLED, with nothing read.
int poll_byte(WINDOW screen, LINE* port, std::optional<std::uint8_t>& byte);

struct SEND_RULE {
    bool (*allows)(const LINE_STATUS& status); // what must hold on an errorless line before a byte may go out
    bool repeats; // tries again when the write limit has passed; else the line has failed
};

// Polls until `rule` lets the byte out and it has gone. TRANSFER_COMPLETED, TRANSFER_NO_CARRIER,
// TRANSFER_CANCELLED or TRANSFER_LINE_FAILED.
int send_byte(WINDOW screen, LINE* port, std::uint8_t byte, const SEND_RULE& rule);

// Clears the line's errors and writes the byte once, without regard to flow control, carrier or cancel: for
// requests that are repeated anyway and for a last byte that nothing depends on.
void write_direct(LINE* port, std::uint8_t byte);

// Gives the processor away when no byte has come or gone for a while.
void rest_when_silent();
