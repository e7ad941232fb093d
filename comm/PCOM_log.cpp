#include "comm/PCOM_log.h"

#include "app/desktop.h"

#include <cstdio>

AUTORECEIVE_LOG_ENTRY log_entry;

namespace {

constexpr char LOG_HEADER[] =
    "                             AUTO RECEIVE LOGFILE\n\n"
    "DATE       CONNECT  DISCONNECT BAUD  PROTOCOL FLOW CONT FILENAME     SIZE   NOTES\n"
    "---------- -------- ---------- ----- -------- --------- ------------ ------ -----\n";

// Columns in characters.
constexpr std::size_t DATE_COLUMN = 10;
constexpr std::size_t TIME_COLUMN = 8;
constexpr std::size_t BAUDRATE_COLUMN = 5;
constexpr std::size_t PROTOCOL_COLUMN = 8;
constexpr std::size_t FLOW_COLUMN = 9;
constexpr std::size_t FILENAME_COLUMN = 12;
constexpr std::size_t SIZE_COLUMN = 6;
constexpr std::size_t NOTES_LIMIT = 21; // cut, but not padded: the line's last column

std::string column(std::string text, std::size_t width) {
    text.resize(width, ' ');
    return text;
}

std::string two_digits(int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string twelve_hour_time(const LOCAL_TIME& time) {
    const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
    return two_digits(hour) + ":" + two_digits(time.minute) + (time.hour < 12 ? " am" : " pm");
}

} // namespace

void get_autoreceive_start() {
    const LOCAL_TIME now = local_time();
    log_entry.date = two_digits(now.month) + "-" + two_digits(now.day) + "-" + std::to_string(now.year);
    log_entry.connect_time = twelve_hour_time(now);
}

void get_autoreceive_stop() {
    log_entry.disconnect_time = twelve_hour_time(local_time());
}

FILE_HANDLE open_log() {
    const bool is_new = !open_file(LOG_FILE_NAME, "rb");
    FILE_HANDLE log = open_file(LOG_FILE_NAME, "ab");
    if (log && is_new)
        (void)std::fputs(LOG_HEADER, log.get());
    return log;
}

std::string log_line(const AUTORECEIVE_LOG_ENTRY& entry) {
    return column(entry.date, DATE_COLUMN) + " " + column(entry.connect_time, TIME_COLUMN) + " " +
           column(entry.disconnect_time, TIME_COLUMN) + "   " + column(entry.baudrate, BAUDRATE_COLUMN) +
           " " + column(entry.protocol, PROTOCOL_COLUMN) + " " + column(entry.flow_control, FLOW_COLUMN) +
           " " + column(entry.filename, FILENAME_COLUMN) + " " + column(entry.size, SIZE_COLUMN) + " " +
           entry.notes.substr(0, NOTES_LIMIT) + "\n";
}
