// The seam to the screen of a running transfer: what a transfer shows, and whether the operator wants it to
// end. The program links the bodies of the Send/Receive screen, the tests a recording one.
#pragma once

#include "app/TolvanP.h"

#include <cstdint>
#include <string>

// The rows of counters; which of them a screen shows depends on action and protocol.
enum class COUNTER { FILESIZE, BLOCKS, BLOCKS_DONE, BYTES_DONE, ERRORS, STATUS };
inline constexpr int COUNTER_COUNT = 6;

// Sets the text of a counter row. A body touches its control only when the text changes.
void show_counter(WINDOW screen, COUNTER counter, const std::string& text);

// The caption of the Send/Receive button.
void show_transfer_button(WINDOW screen, const std::string& caption);

// The file name that the screen shows.
void show_transfer_file(WINDOW screen, const std::string& name);

// Takes at most one pending window message and answers whether it asks for the end of the transfer: a press
// of the Send/Receive button, which reads "Cancel" meanwhile. Loops call it once a poll.
bool is_cancel_button_pressed(WINDOW screen);

// Asks for the number to dial, starting with the held one. True with the number updated, false when
// cancelled.
bool ask_phone_number(WINDOW screen, std::string& number);
