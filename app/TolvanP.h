// What every module shares: the program's titles and the plain types that cross module borders.
#pragma once

#include "app/version.h"

#include <cstdint>
#include <string>

inline constexpr char PROGRAM_TITLE[] =
    "Tolvan Programmer V" TOLVAN_VERSION;                 // title, window class and caption of questions
inline constexpr char COMM_TITLE[] = "Tolvan Programmer"; // caption of communication errors

// A window as logic sees it: something to hand on to the desktop. In screens it is an HWND.
using WINDOW = void*;
