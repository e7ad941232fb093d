// The controls of the field editor: which keys they take, when they are disabled, and the help they show.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string>

struct FIELD_CONTROL {
    int id;
    int updown; // beside it, and enabled with it; 0 for none
    WNDPROC filter;
    const char* off_for_types;   // the input types that disable it
    const char* off_for_sources; // the input sources; nullptr when a new source leaves it as it is
    const char* help;            // of several lines, with '\r' between them
    const char* choices;         // stand below the help, an empty line between them; may be nullptr
};

extern const std::span<const FIELD_CONTROL> FIELD_CONTROLS;

// What the operator reads while the control has the focus; the prompt of a Stamp field has a text of its own.
std::string field_control_help(int id, std::uint8_t input_type);
