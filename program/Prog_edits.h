// Edits that hold escaped text, as every editor of texts for the portable has them: the context menu, special
// characters, the normal form on leaving. And the family of filters that turn Tab into a request to the
// dialog.
#pragma once

#include <windows.h>

#include <string>

// Carries out a command of the context menu on the edit that has the focus. Special characters come from the
// picker by way of the clipboard.
enum class EDIT_COMMAND {
    NONE,    // it is none of the menu's
    NO_EDIT, // it has left the text as it was
    EDITED
};
EDIT_COMMAND do_edit_command(HWND dialog, int command);

// True while the picker is open: no focus or change notification is the operator's then.
bool is_picker_open();

// Puts a text into an edit. is_own_change() is true while the change notification of that arrives, so that it
// does not count as the operator's edit.
void set_own_text(HWND dialog, int control, const std::string& text);
bool is_own_change();

// Brings an escaped text that was left into its normal form; nothing happens while the picker is open.
void normalise_edit(HWND dialog, int control);

// Filters for the controls of a dialog (see install_filter). Tab and Shift+Tab become WM_NEXTDLGCTL to the
// dialog, Escape its Cancel, and Enter nothing; an open list keeps both, and a button leaves them to the
// dialog manager. A control that takes the focus tells the dialog so with WM_CONTROL_FOCUSED, its identifier
// in wParam. The commands of the context menu go to the dialog.
inline constexpr UINT WM_CONTROL_FOCUSED = WM_USER + 12;
LRESULT CALLBACK PROGEDITPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam); // menu only
LRESULT CALLBACK EDITTABPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);  // with the menu
LRESULT CALLBACK CHECKBOXTABPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK COMBOBOXTABPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK BUTTONTABPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK INTTABPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam); // digits only
