// The log of auto receive, LOG.TXT in the current folder: a line for each finished transfer.
#pragma once

#include "app/files.h"

#include <string>

inline constexpr char LOG_FILE_NAME[] = "LOG.TXT";

// Texts are padded or cut to their columns when the line is written.
struct AUTORECEIVE_LOG_ENTRY {
    std::string date;            // "11-21-2026"
    std::string connect_time;    // "09:05 am"
    std::string disconnect_time; // same form
    std::string baudrate;
    std::string protocol;
    std::string flow_control;
    std::string filename;
    std::string size; // bytes received
    std::string notes;
};
extern AUTORECEIVE_LOG_ENTRY log_entry; // of the transfer that runs

void get_autoreceive_start(); // stamps date and connect time
void get_autoreceive_stop();  // stamps the disconnect time

// The log, opened at its end; created with its three header lines when missing.
FILE_HANDLE open_log();
std::string log_line(const AUTORECEIVE_LOG_ENTRY& entry);
