// The local end of a transfer: its file, and what the log of auto receive is told about it. Files are opened
// and written here with their messages, alike for all protocols.
#pragma once

#include "app/files.h"

#include <cstdint>
#include <string>
#include <string_view>

// An empty handle after the message has been shown.
FILE_HANDLE open_file_to_send(const std::string& name);

// Opens the file anew, or at its end when auto receive appends. Unbuffered, so that a full disk is seen at
// the write it happens to. An empty handle after the message has been shown and the log entry stamped.
FILE_HANDLE open_file_to_receive(const std::string& name);

// False when not all bytes were stored; reports nothing.
bool store_bytes(std::FILE* file, std::string_view bytes);

// Shows a communication error: stop icon, no owner.
void show_comm_error(const std::string& text);
inline constexpr char FILE_WRITE_ERROR_TEXT[] = "File Write Error";

// Stamp the log entry when the first byte arrives and when the transfer ends; nothing outside auto receive.
void note_receive_start();
void note_receive_end(std::uint64_t size); // bytes received, as the screen counts them
