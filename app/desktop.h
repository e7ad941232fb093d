// The seam to the desktop: what logic asks of the system it runs on. The program links the Win32 bodies
// (desktop_win32.cpp, progress.cpp), the tests link scripted ones.
#pragma once

#include "app/TolvanP.h"

#include <cstdint>
#include <string>

enum class MESSAGE_ICON { NONE, STOP, WARNING, QUESTION, INFORMATION };
enum class MESSAGE_BUTTONS { OK, YES_NO, YES_NO_CANCEL };
enum class BUTTON { OK, CANCEL, YES, NO };

// Shows a message box and returns the button pressed. `owner` may be nullptr; the program's own windows are
// disabled all the same while the box is open.
BUTTON show_message(WINDOW owner, const std::string& text, const std::string& caption, MESSAGE_ICON icon,
                    MESSAGE_BUTTONS buttons = MESSAGE_BUTTONS::OK);

// Tells that memory has run out, so that what was asked for is given up. Returns -1.
inline int report_out_of_memory(WINDOW owner) {
    show_message(owner, "System out of memory!", "Memory Allocation", MESSAGE_ICON::WARNING);
    return -1;
}

// The default beep.
void beep();

// The progress box. The mode chooses its caption and text; position and size are in bytes or records,
// whatever the caller counts.
enum STATUS_MODE {
    STATUS_OPEN_FILE = 1,
    STATUS_READ_LOOKUP = 2,
    STATUS_READ_TEXT = 3,
    STATUS_CHECKSUM = 4,
    STATUS_REPEAT_ADD = 5,
    STATUS_REPEAT_INSERT = 6,
    STATUS_REPEAT_DELETE = 7,
};
struct STATUS_BOX;
STATUS_BOX* open_status_box(int mode);
void update_status_bar(STATUS_BOX* box, std::int64_t position, std::int64_t size);
void close_status_box(STATUS_BOX* box);

// Settings in TolvanP.INI. A missing number gives `missing`, a value that is no number gives 0. A text is cut
// to `limit` bytes. A write that fails is ignored.
std::uint32_t read_setting_number(const char* section, const char* key, std::uint32_t missing);
std::string read_setting_text(const char* section, const char* key, const std::string& missing,
                              std::size_t limit);
void write_setting(const char* section, const char* key, const std::string& value);

// Milliseconds since some fixed moment; wraps at 2^32, so only differences mean anything.
std::uint32_t tick_count();

// Gives the processor away for about a millisecond. Loops call it while a line is silent.
void rest();

struct LOCAL_TIME {
    int year;   // four digits
    int month;  // 1 to 12
    int day;    // 1 to 31
    int hour;   // 0 to 23
    int minute; // 0 to 59
};
LOCAL_TIME local_time();

// The name of a new, empty file in the system's temporary folder; empty when none can be made.
std::string temporary_file_name();

// Puts the file `from` in place of the file `to`, which need not exist. False when the system refuses; both
// files are then as they were.
bool replace_file(const std::string& from, const std::string& to);
