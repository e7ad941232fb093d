// The prompts of the monitor's settings: one dialog of radio buttons, filled with the choices of its setting.
#include "monitor/MONITOR_screens.h"

#include "app/about.h"
#include "app/dialogs.h"
#include "resources/control.h"
#include "resources/define.h"

#include <algorithm>

namespace {

constexpr int CHOICE_HEIGHT = 13; // dialog units, from one radio button to the next
constexpr int CHOICE_ROOM = 8;    // radio buttons of the template
constexpr int LEAST_ROOM = 3;     // radio buttons beside which the push buttons stand

// "Baud Rate": the menu's text without its value.
std::string setting_name(MONITOR_ITEM item) {
    const std::string text = monitor_item_text(item);
    return text.substr(0, text.find(" ["));
}

// Takes the radio buttons without a choice away, and the room that they stood in.
void shrink_to(HWND prompt, int choices) {
    for (int i = choices; i < CHOICE_ROOM; ++i)
        DestroyWindow(GetDlgItem(prompt, IDC_MON_CHOICE + i));
    RECT unused{0, 0, 0, (CHOICE_ROOM - std::max(choices, LEAST_ROOM)) * CHOICE_HEIGHT};
    MapDialogRect(prompt, &unused);
    RECT window{};
    GetWindowRect(prompt, &window);
    SetWindowPos(prompt, nullptr, 0, 0, window.right - window.left,
                 window.bottom - window.top - unused.bottom, SWP_NOMOVE | SWP_NOZORDER);
}

// The focus goes to the choice in force. A value from the settings file may be none of the choices: then OK
// has the focus, and changes nothing.
void fill_prompt(HWND prompt, MONITOR_ITEM item) {
    SetWindowTextA(prompt, setting_name(item).c_str());
    int focused = IDOK;
    int control = IDC_MON_CHOICE;
    for (const MONITOR_CHOICE& choice : monitor_choices(item)) {
        set_control_text(prompt, control, choice.text);
        tick(prompt, control, choice.value == monitor_value(item));
        if (choice.value == monitor_value(item))
            focused = control;
        ++control;
    }
    shrink_to(prompt, control - IDC_MON_CHOICE);
    center_window(prompt);
    SetFocus(GetDlgItem(prompt, focused));
}

void store_choice(HWND prompt, MONITOR_ITEM item) {
    int control = IDC_MON_CHOICE;
    for (const MONITOR_CHOICE& choice : monitor_choices(item))
        if (is_ticked(prompt, control++))
            set_monitor_value(item, choice.value);
}

INT_PTR run_prompt(MONITOR_ITEM item, HWND prompt, UINT message, WPARAM wParam) {
    switch (message) {
    case WM_INITDIALOG:
        fill_prompt(prompt, item);
        return FALSE; // the focus is set
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK)
            store_choice(prompt, item);
        else if (LOWORD(wParam) != IDCANCEL) // also the Escape key and the close box
            return FALSE;
        EndDialog(prompt, LOWORD(wParam) == IDOK);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

INT_PTR CALLBACK PORTPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    return run_prompt(MONITOR_PORT, hwnd, message, wParam);
}

INT_PTR CALLBACK BAUDRATEPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    return run_prompt(MONITOR_BAUDRATE, hwnd, message, wParam);
}

INT_PTR CALLBACK DATABITSPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    return run_prompt(MONITOR_DATABITS, hwnd, message, wParam);
}

INT_PTR CALLBACK STOPBITSPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    return run_prompt(MONITOR_STOPBITS, hwnd, message, wParam);
}

INT_PTR CALLBACK PARITYPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    return run_prompt(MONITOR_PARITY, hwnd, message, wParam);
}

INT_PTR CALLBACK XONPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    return run_prompt(MONITOR_XON, hwnd, message, wParam);
}

INT_PTR CALLBACK FUNCPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    return run_prompt(MONITOR_FUNC_KEYS, hwnd, message, wParam);
}

INT_PTR CALLBACK SPECIALPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    return run_prompt(MONITOR_SPECIAL_KEYS, hwnd, message, wParam);
}

INT_PTR CALLBACK TRANSCRPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    return run_prompt(MONITOR_TRANSLATE_CR, hwnd, message, wParam);
}

INT_PTR CALLBACK MONABOUTPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    return TolvanABOUTPROC(hwnd, message, wParam, lParam);
}
