// The family of the setup dialogs: each is a table of what its controls edit, and one procedure runs them
// all. A byte that its control cannot show (an index outside the list, a number above the range) is kept
// until the operator changes it.
#pragma once

#include "setup/SETUP.h"
#include "setup/SETUP_formats.h"

#include <windows.h>

#include <span>
#include <variant>

using SETUP_ITEM_MEMBER = std::uint8_t SETUP_RECORD::*;

// A check box that is one bit of an item; the item's other bits are kept. Ticking it unticks the box
// `excludes`, if there is one.
struct FLAG_BOX {
    int control;
    SETUP_ITEM_MEMBER item;
    unsigned bit;
    int excludes = 0;
};

// A check box that is an item by itself: 0 or 1.
struct ITEM_BOX {
    int control;
    SETUP_ITEM_MEMBER item;
};

// A drop-down list; the item is the index of the entry.
struct CHOICE_LIST {
    int control;
    SETUP_ITEM_MEMBER item;
    std::span<const char* const> texts;
};

// Radio buttons with consecutive identifiers; the item is the index of the button.
struct RADIO_GROUP {
    int first;
    int last;
    SETUP_ITEM_MEMBER item;
};

// A read-only edit with an up-down beside it.
struct STEPPED_VALUE {
    int control;
    int updown;
    SETUP_ITEM_MEMBER item;
    VALUE_FORMAT format;
    STEP_RANGE range;
    std::optional<unsigned> (*step)(unsigned value, int direction, const STEP_RANGE& range) = step_value;
};

// How a text stands in its edit. Both kinds of escaped text have the context menu of special characters and
// are brought into their normal form when the edit is left.
enum class NOTATION {
    PLAIN,
    ESCAPED_AS_TYPED, // the record holds the escaped text
    ESCAPED,          // the record holds the stored text
};

struct TEXT_EDIT {
    int control;
    std::string SETUP_RECORD::*text;
    std::size_t limit; // of what is stored; the rest is cut off
    NOTATION notation;
};

// An item without a control, which every OK sets to 0.
struct CLEARED_ITEM {
    SETUP_ITEM_MEMBER item;
};

using SETUP_CONTROL =
    std::variant<FLAG_BOX, ITEM_BOX, CHOICE_LIST, RADIO_GROUP, STEPPED_VALUE, TEXT_EDIT, CLEARED_ITEM>;

// Handles a message of the dialog with these controls.
INT_PTR do_setup_message(std::span<const SETUP_CONTROL> controls, HWND dialog, UINT message, WPARAM wParam,
                         LPARAM lParam);

// The procedure of the dialog whose table is CONTROLS.
template <const auto& CONTROLS>
INT_PTR CALLBACK setup_procedure(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam) {
    return do_setup_message(CONTROLS, hDlg, message, wParam, lParam);
}
