// What the command line asks for: "-S=file" sends it and ends, "-R=file" receives into it and ends, "-F=file"
// opens it in the programming window.
#pragma once

#include <string>
#include <string_view>

struct COMMAND_LINE_REQUEST {
    char option = 0;  // 'S', 'R' or 'F'; 0 when nothing valid was asked
    std::string file; // the rest, leading blanks skipped and quotes taken off
};

COMMAND_LINE_REQUEST parse_command_line(std::string_view command_line);

extern std::string command_line_string;         // the file of a valid request
extern unsigned char command_line_options_flag; // 1 while the program was started with a valid request

// Set for "-S=" and "-R=" only and consumed by the one transfer that it starts.
extern bool quick_start_flag;
