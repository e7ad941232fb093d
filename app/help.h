// The help command.
#pragma once

#include <windows.h>

// Shows the operator's manual: its help file in the system's help viewer where there is one, else its pages
// in the browser. Tells the operator when neither can be shown.
void show_help(HWND hwnd);
