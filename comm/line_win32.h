// The serial port of Windows behind the seam of line.h.
#pragma once

#include "comm/line.h"

#define WIN32_LEAN_AND_MEAN // without its second name for a byte
#include <windows.h>

// Fills the control block that configures a port. False when the mode string cannot be understood.
bool fill_control_block(DCB& block, const LINE_SETTINGS& settings);
