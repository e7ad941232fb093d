// The screens of the program editor.
#pragma once

#include <windows.h>

#include <cstdint>

// The programming window: the editor of one program, which owns all the dialogs below. Result 1. It starts
// with an empty program, or with the file of the command line.
extern "C" __declspec(dllexport) INT_PTR CALLBACK
    PROGRAMMINGPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);

// Refills the field list from the program, derives the global options (`reset`: from nothing) and selects the
// row field_list_selection.
void update_field_list(HWND hDlg, bool reset);

// The editor of the selected field (see Prog_fields.h). Result 1 after "Done", else 0; fields saved on the
// way with "Previous" and "Next" stay saved in either case, and field_list_selection has moved with them.
INT_PTR CALLBACK FIELDDEFPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);

// Edits global_options; result 1 after OK, 0 after Cancel.
INT_PTR CALLBACK GLOBALDATAPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);

// Edits current_barcode_bit_values; result 1 when any box was clicked, else 0.
INT_PTR CALLBACK BARTYPESPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);
extern std::uint16_t current_barcode_bit_values;

// The picker of special characters: result 1 with the chosen escaped text on the clipboard, or 0.
INT_PTR CALLBACK SPECIALCHARPROC(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);
