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

// Waits until a visible dialog with this title is there.
HWND wait_for_window(const std::string& title);
void wait_until(const std::function<bool()>& condition, const std::string& what);

// Waits until the dialogs' thread has taken every message posted to it so far.
void settle();

void click(HWND dialog, int control);
void choose_entry(HWND dialog, int list, int index); // of a drop-down list
void press_key(int virtual_key);                     // goes to the control that has the focus
void type_text(const std::string& text);             // the same
void choose_command(HWND window, int id);            // a menu item or a toolbar button, by its command
void close_window(HWND window);                      // by its close box
int focused_control(HWND dialog);                    // 0 for none

// Reads a message box, which must be open or open soon, and presses the button (IDOK, IDYES, ...). The answer
// is its icon (X, !, ? or i), a blank and its text.
std::string answer_box(const std::string& caption, int button);

// Gives a path to a system file dialog and confirms it; an empty path cancels.
void answer_file_dialog(const std::string& title, const std::string& path);

std::string temporary_path(const std::string& name); // a file in the temporary folder

// A command or a key, and what comes of it: the window's state behind it, and a box or file dialog before.
struct STEP {
    int command_or_key = 0; // 0 when the step before led to more
    std::string state = "";
    const char* caption = nullptr;
    std::string text = ""; // shown by the box, or given to the file dialog
    int button = 0;
};
void take_steps(HWND window, const std::vector<STEP>& steps,
                const std::function<std::string(HWND)>& state_of);

// The controls that going round once by the tab key does not reach, though it should.
std::vector<int> unreached_by_tab(HWND dialog);

// What is wrong with a dialog's looks: controls outside it or over each other, texts that are cut.
std::vector<std::string> layout_faults(HWND dialog);

// Neither of the two finds anything.
void expect_good_looks(HWND dialog);
