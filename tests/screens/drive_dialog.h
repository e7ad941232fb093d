// Works real dialogs from a second thread, as an operator would: a script waits for a window, reads what it
// shows, types, chooses and clicks. Every step returns only when the dialog has taken it. A step that finds
// no such window fails the test and closes whatever is open.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

// Runs `screen`, which opens a modal dialog, on this thread, and `script` on a second one; returns when both
// have ended. Steps may be called from `script` only.
void drive(const std::function<void()>& screen, const std::function<void()>& script);

// Waits until a visible window with this title is there; a dialog unless another class is given.
HWND wait_for_window(const std::string& title, const char* class_name = "#32770");
void wait_until_closed(HWND window);
void wait_until(const std::function<bool()>& condition, const std::string& what);

// Waits until the dialogs' thread has taken every message posted to it so far.
void settle();

void enter_text(HWND dialog, int control, const std::string& text); // replaces what is there
void click(HWND dialog, int control);
void choose_entry(HWND dialog, int list, int index); // of a drop-down list
std::vector<std::string> list_entries(HWND dialog, int list);
int chosen_entry(HWND dialog, int list); // -1 for none
void move_focus(HWND dialog, int control);
void press_key(int virtual_key);          // goes to the control that has the focus
void type_text(const std::string& text);  // the same
void choose_command(HWND window, int id); // a menu item or a toolbar button, by its command
void close_window(HWND window);           // by its close box
int focused_control(HWND dialog);         // 0 for none

// A message box, which must be open or open soon. The icon is its IDI_ name's number as windows.h has it
// (IDI_ERROR, IDI_WARNING, IDI_QUESTION, IDI_INFORMATION), 0 for none.
struct SEEN_BOX {
    std::string caption;
    std::string text;
    WORD icon = 0;
    bool operator==(const SEEN_BOX&) const = default;
};
void PrintTo(const SEEN_BOX& box, std::ostream* out);

// Reads the message box and presses the button (IDOK, IDYES, ...).
SEEN_BOX answer_box(const std::string& caption, int button);

// Gives a path to a system file dialog and confirms it; an empty path cancels.
void answer_file_dialog(const std::string& title, const std::string& path);

// The controls that the tab key reaches, in order from the one that has the focus, and those it should reach.
std::vector<int> tab_order(HWND dialog);
std::vector<int> tab_stops(HWND dialog);

// What is wrong with a dialog's looks: controls outside it or over each other, texts that are cut.
std::vector<std::string> layout_faults(HWND dialog);
