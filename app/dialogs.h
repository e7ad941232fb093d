// What every dialog shares: its place on the screen, filters on controls, steppers, toolbars.
#pragma once

#include "app/steps.h"

#include <windows.h>

#include <functional>
#include <span>
#include <string>
#include <vector>

extern HINSTANCE hInstance; // the module that holds every dialog, menu, picture and string
extern HWND hwndmain;       // the main window

// Moves a window to the centre of the screen's work area: the full-screen client area with the height of a
// menu bar added. The size is kept.
void center_window(HWND hwnd);

// Runs a modal dialog; `parameter` reaches it with WM_INITDIALOG. Returns the dialog's result.
INT_PTR run_dialog(int dialog_id, HWND owner, DLGPROC procedure, LPARAM parameter = 0);

// Whole text of a window or of a dialog's control, whatever its length.
std::string window_text(HWND window);
std::string control_text(HWND dialog, int control);
void set_control_text(HWND dialog, int control, const std::string& text);

// Check boxes and radio buttons.
bool is_ticked(HWND dialog, int box);
void tick(HWND dialog, int box, bool ticked);

// Serves a dialog that asks for one of its radio buttons; the first one is ticked when it opens. Its result
// is that of the button ticked, or 0 for Cancel.
struct RADIO_CHOICE {
    int button;
    INT_PTR result;
};
INT_PTR run_choice_dialog(HWND dialog, UINT message, WPARAM wParam, std::span<const RADIO_CHOICE> choices);

// Asks a Yes/No question under the program's title.
bool answers_yes(HWND owner, const std::string& question);

// Asks a Yes/No/Cancel question about unsaved changes; Yes saves. True when they are saved or given up.
bool saves_or_gives_up(HWND owner, const std::string& question, const std::function<bool()>& save);

// Puts the focus on a control, which becomes the default button when it is one.
void move_focus(HWND dialog, int control);

// Enables or disables a control. One that has the focus hands it to another before it is disabled: the
// keyboard would reach nothing.
void enable_control(HWND dialog, int control, bool enabled, int next_focus);

// Gives a control another window procedure and keeps its own, to which the filter hands what it does not take
// by call_own_procedure(); remove_filter() gives it back.
void install_filter(HWND control, WNDPROC filter);
void remove_filter(HWND control);
LRESULT CALLBACK call_own_procedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam);

// Serves the filters of edits that are the entries of a list. It claims all keys: Escape is the dialog's
// Cancel, any other goes to `take_key`, which is true when that is done with it. Alt with a letter presses a
// button, whose caption shows no access key.
struct ACCESS_KEY {
    WPARAM letter; // in upper case
    int button;
};
LRESULT filter_entry_keys(bool (*take_key)(HWND dialog, WPARAM key), std::span<const ACCESS_KEY> access_keys,
                          HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// Filter for numeric edits: refuses every character but digits and backspace with a beep. Pasting stays open.
LRESULT CALLBACK INTPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

// The number in an edit: leading digits, 0 when there are none or they do not fit.
unsigned edit_number(HWND dialog, int control);

// One step of a numeric edit by its arrows. The text typed so far takes part.
void step_edit(HWND dialog, int control, int direction, const STEP_RANGE& range);

// An up-down beside a numeric edit, which step_edit moves: prepared once, it reports every step and never
// counts itself. step_direction() tells from WM_NOTIFY's lParam: above 0 for up, below 0 for down, 0 when
// the notification is no step.
void prepare_stepper(HWND dialog, int updown);
int step_direction(LPARAM lParam);

// Drop-down lists: fill with texts and select one; an index outside the list selects nothing.
void fill_list(HWND dialog, int control, std::span<const char* const> texts, unsigned selected);
unsigned selected_entry(HWND dialog, int control, unsigned if_none);

// Fills a list box anew and selects a row; what was at its top stays there. Rows that are wider than the list
// can be moved sideways. `tab_stops` are in dialog units.
void show_rows(HWND dialog, int list, const std::vector<std::string>& rows, std::size_t selected,
               std::span<const int> tab_stops = {});

// The scroll bar beside the edits that show `rows` of `count` lines, the one at the top being `first`,
// from 1. When they do not fill the rows, there is nothing to scroll.
void show_scroll_place(HWND bar, std::size_t first, std::size_t count, int rows);

// The keys Insert and Delete of a list box, for two commands of its dialog; the answer to WM_VKEYTOITEM.
INT_PTR take_list_key(HWND dialog, int key, int insert_command, int delete_command);

// A toolbar of push buttons with tooltips, each `width` by `height` pixels, its pictures the cells of a
// 32-bit bitmap resource in order. nullptr when it cannot be created; then the operator has been told.
HWND create_toolbar(HWND owner, int control_id, int bitmap_id, std::span<const int> commands, int width,
                    int height);

// The toolbar of a window that makes files: New, Open, Save and Exit.
HWND create_file_toolbar(HWND owner);

// Answers a toolbar's request for a tooltip: the string resource whose identifier is the command. False when
// the notification is no such request.
bool give_tooltip_text(LPARAM lParam);
