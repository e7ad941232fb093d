#include "program/Prog_field_controls.h"

#include "app/dialogs.h"
#include "program/LOOKUP.h"
#include "program/Prog_display.h"
#include "program/Prog_edits.h"
#include "program/Prog_screens.h"
#include "program/Prog_text.h"
#include "resources/control.h"

#include <algorithm>
#include <iterator>

namespace {

// Only what the operator types or pastes becomes upper case: a text that is put into the edit, from a file or
// by the lookup dialogs, keeps its letters.
LRESULT CALLBACK UPPERCASETABPROC(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_SETTEXT)
        return EDITTABPROC(hwnd, message, wParam, lParam);
    const LONG style = GetWindowLongA(hwnd, GWL_STYLE);
    SetWindowLongA(hwnd, GWL_STYLE, style & ~ES_UPPERCASE);
    const LRESULT result = EDITTABPROC(hwnd, message, wParam, lParam);
    SetWindowLongA(hwnd, GWL_STYLE, style);
    return result;
}

constexpr char YES_NO[] = "Yes\rNo";
constexpr char STAMP_HELP[] =
    "Stamp Commands:\r \r\rM - Month\rD - Day of Month\rY - Year\rH - Hour\rI - Minute\r"
    "S - Second\rW - Day of Week"; // in the place of the prompt's own
constexpr char LOOKUP_HELP[] = "Lookup Table/File\rDefinition";
constexpr char LOOKUP_CHOICES[] =
    "Lookup data limits\rthe contents of\rthe input during\rentry. A lookup\rtable can be\rdirectly entered\r"
    "in this field or a\rlookup filename\rand it's options\rmay be declared.";

// clang-format off
constexpr FIELD_CONTROL CONTROLS[] = {
    {IDC_FIELD_TYPE, 0, COMBOBOXTABPROC, "", nullptr, "Select Input\rType",
     "Data\rStamp\rYes/No\rExhibit\rNo Edit"},
    {IDC_FIELD_SOURCE, 0, COMBOBOXTABPROC, "SE", nullptr, "Select Field\rInput Source",
     "Keyboard\rBar Code\rSerial\rLookup File"},
    {IDC_FIELD_FORMAT, 0, COMBOBOXTABPROC, "SE", nullptr, "Select Output\rTransmission\rFormat",
     "Variable\rLeft Justify\rRight Justify"},
    {IDC_FIELD_PROMPT, 0, EDITTABPROC, "", nullptr, "Enter Prompt\rInformation"},
    {IDC_FIELD_PATTERN, 0, EDITTABPROC, "SE", nullptr, "Enter Input\rDisplay Pattern"},
    {IDC_FIELD_MASK, 0, UPPERCASETABPROC, "SE", nullptr, "Valid Mask\rCharacters\rAre:",
     "A - Alphanumeric\rN - Numeric\rD - Decimal\rF - Fixed\rI - Include"},
    {IDC_FIELD_DEFAULT, 0, EDITTABPROC, "SE", nullptr, "Enter Default\rInput Data",
     "Sequence of\rcharacters that\rappears as the\rdefault value. By\rspecifying @ as\rthe input data the\r"
     "Tolvan defaults to\rthe data that is\rin the input's\rprevious record."},
    {IDC_FIELD_LOOKUP, 0, UPPERCASETABPROC, "SE", nullptr, LOOKUP_HELP, LOOKUP_CHOICES},
    {IDC_FIELD_DEFINE, 0, BUTTONTABPROC, "SE", nullptr, LOOKUP_HELP, LOOKUP_CHOICES},
    {IDC_FIELD_PREFIX, 0, EDITTABPROC, "E", nullptr, "Enter Input\rPrefix for\rTransmission"},
    {IDC_FIELD_PREFIX_DELAY, 0, INTTABPROC, "E", nullptr, "Enter Delay\rTime After\rPrefix Transmit"},
    {IDC_FIELD_SUFFIX, 0, EDITTABPROC, "E", nullptr, "Enter Input\rSuffix for\rTransmission"},
    {IDC_FIELD_SUFFIX_DELAY, 0, INTTABPROC, "E", nullptr, "Enter Delay\rTime After\rSuffix Transmit"},
    {IDC_FIELD_START_ROW, IDC_FIELD_START_ROW_SPIN, INTTABPROC, "S", nullptr,
     "Starting Row for\rInput Display"},
    {IDC_FIELD_START_COL, IDC_FIELD_START_COL_SPIN, INTTABPROC, "S", nullptr,
     "Starting Column\rfor Input Display"},
    {IDC_FIELD_MAX, IDC_FIELD_MAX_SPIN, INTTABPROC, "SYE", nullptr, "Maximum\rInput Size"},
    {IDC_FIELD_END_ROW, IDC_FIELD_END_ROW_SPIN, INTTABPROC, "S", nullptr,
     "Ending Row for\rInput Display"},
    {IDC_FIELD_END_COL, IDC_FIELD_END_COL_SPIN, INTTABPROC, "S", nullptr,
     "Ending Column for\rInput Display"},
    {IDC_FIELD_MIN, IDC_FIELD_MIN_SPIN, INTTABPROC, "SYE", nullptr, "Minimum\rInput Size"},
    {IDC_FIELD_HEADER, 0, CHECKBOXTABPROC, "E", "L", "Is This a\rHeader Input?", YES_NO},
    {IDC_FIELD_NEW_SCREEN, 0, CHECKBOXTABPROC, "", nullptr, "Display on\rNew Screen?", YES_NO},
    {IDC_FIELD_REQUIRE, 0, CHECKBOXTABPROC, "SE", "L", "Is Input\rRequired?", YES_NO},
    {IDC_FIELD_AUTO_ADVANCE, 0, CHECKBOXTABPROC, "SYE", "", "Auto Advance\rWhen Input Full?", YES_NO},
    {IDC_FIELD_UPPER_CASE, 0, CHECKBOXTABPROC, "SE", "L", "Shift Input\rto Upper Case?", YES_NO},
    {IDC_FIELD_DUPLICATES, 0, CHECKBOXTABPROC, "SE", "L", "Allow Duplicate\rInputs?", YES_NO},
    {IDC_FIELD_TRANSMIT, 0, CHECKBOXTABPROC, "E", nullptr, "Enable Input\rTransmit?", YES_NO},
    {IDC_FIELD_CALCULATION, 0, CHECKBOXTABPROC, "SE", "L",
     "Do Calculation\rif Math Operator is\rentered in data", YES_NO},
    {IDC_FIELD_TOTAL, 0, CHECKBOXTABPROC, "SE", nullptr,
     "Keep a running total of this field\rand transmit the total at the\rend of the data", YES_NO},
    {IDC_FIELD_BARCODE_APPEND, 0, CHECKBOXTABPROC, "SE", "KL", "Allow Bar Code\rAppend?", YES_NO},
    {IDC_FIELD_BARCODE_ADVANCE, 0, CHECKBOXTABPROC, "SE", "KL", "Auto Advance On\rBar Code Scan?", YES_NO},
    {IDC_FIELD_BARCODE_TYPES, 0, BUTTONTABPROC, "SE", "KL", "Select Allowed\rBar Code Types",
     "Code 39\rUPC-A\rUPC-E\rEAN-13\rEAN-8\rInt 2 of 5\rCodabar\rCode 128\rCode 93\rMSI/Plessey\rCode 11"},
    {IDC_FIELD_PREVIOUS, 0, BUTTONTABPROC, "", nullptr, "Goto Previous\rInput Definition"},
    {IDC_FIELD_NEXT, 0, BUTTONTABPROC, "", nullptr, "Goto Next\rInput Definition"},
    {IDOK, 0, BUTTONTABPROC, "", nullptr, "Exit and Save\rField Definition"},
    {IDCANCEL, 0, BUTTONTABPROC, "", nullptr, "Exit Without\rSaving\rField Definition"},
};
// clang-format on

// --- what they hold ---

struct CHECK_BOX {
    int control;
    std::uint8_t mask;
    bool ticked_when_set;
    std::uint8_t FIELD_DEFINITION::*member;
};
constexpr CHECK_BOX CHECK_BOXES[] = {
    {IDC_FIELD_HEADER, HEADER_INPUT, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_NEW_SCREEN, NEW_SCREEN, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_REQUIRE, REQUIRE_INPUT, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_AUTO_ADVANCE, AUTO_ADVANCE, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_UPPER_CASE, SHIFT_TO_UPPER, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_DUPLICATES, NO_DUPLICATES, false, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_TRANSMIT, INPUT_TRANSMIT, true, &FIELD_DEFINITION::bit_values1},
    {IDC_FIELD_CALCULATION, ALLOW_CALCULATION, true, &FIELD_DEFINITION::bit_values2},
    {IDC_FIELD_TOTAL, TRANSMIT_TOTAL, true, &FIELD_DEFINITION::bit_values2},
};

struct BARCODE_BOX {
    int control;
    std::uint16_t mask;
};
constexpr BARCODE_BOX BARCODE_BOXES[] = {{IDC_FIELD_BARCODE_APPEND, BARCODE_APPEND},
                                         {IDC_FIELD_BARCODE_ADVANCE, BARCODE_AUTO_ADVANCE}};

struct CHOICE_LIST {
    int control;
    std::uint8_t FIELD_DEFINITION::*member;
    std::span<const char* const> texts;
    const char* letters; // what the member holds, in the order of the texts
};
constexpr const char* TYPE_TEXTS[] = {"Data", "Stamp", "Yes/No", "Exhibit", "No Edit"};
constexpr const char* SOURCE_TEXTS[] = {"Keyboard", "Bar Code", "Serial", "Lookup File"};
constexpr const char* FORMAT_TEXTS[] = {"Variable", "Left Justify", "Right Justify"};
constexpr CHOICE_LIST CHOICE_LISTS[] = {
    {IDC_FIELD_TYPE, &FIELD_DEFINITION::input_type, TYPE_TEXTS, "DSYEN"},
    {IDC_FIELD_SOURCE, &FIELD_DEFINITION::input_source, SOURCE_TEXTS, "KBSL"},
    {IDC_FIELD_FORMAT, &FIELD_DEFINITION::output_format, FORMAT_TEXTS, "VLR"},
};
constexpr const CHOICE_LIST& TYPE_LIST = CHOICE_LISTS[0];
constexpr const CHOICE_LIST& SOURCE_LIST = CHOICE_LISTS[1];

struct NUMBER_EDIT {
    int control;
    std::uint8_t FIELD_DEFINITION::*member;
    unsigned FIELD_EDITS::*typed; // as the checks want it; nullptr when none does
    unsigned digits;              // that can be typed; 0 for no limit
    unsigned highest;             // by the arrows
};
constexpr NUMBER_EDIT NUMBER_EDITS[] = {
    {IDC_FIELD_START_ROW, &FIELD_DEFINITION::start_row, &FIELD_EDITS::start_row, 2, DISPLAY_ROWS - 1},
    {IDC_FIELD_START_COL, &FIELD_DEFINITION::start_col, &FIELD_EDITS::start_col, 2, DISPLAY_COLUMNS - 1},
    {IDC_FIELD_END_ROW, &FIELD_DEFINITION::end_row, &FIELD_EDITS::end_row, 2, DISPLAY_ROWS - 1},
    {IDC_FIELD_END_COL, &FIELD_DEFINITION::end_col, &FIELD_EDITS::end_col, 2, DISPLAY_COLUMNS - 1},
    {IDC_FIELD_MAX, &FIELD_DEFINITION::max_input, &FIELD_EDITS::max_input, 0, MAX_INPUT_LIMIT},
    {IDC_FIELD_MIN, &FIELD_DEFINITION::min_input, &FIELD_EDITS::min_input, 0, MAX_INPUT_LIMIT},
    {IDC_FIELD_PREFIX_DELAY, &FIELD_DEFINITION::prefix_delay, nullptr, 3, 0},
    {IDC_FIELD_SUFFIX_DELAY, &FIELD_DEFINITION::suffix_delay, nullptr, 3, 0},
};

// The edits of escaped text. Their limits hold for typing: a text that is loaded stays whole.
struct TEXT_EDIT {
    int control;
    unsigned limit;
    std::string FIELD_DEFINITION::*member;
};
constexpr TEXT_EDIT TEXT_EDITS[] = {
    {IDC_FIELD_PROMPT, 80, &FIELD_DEFINITION::prompt_string_handle},
    {IDC_FIELD_PATTERN, 80, &FIELD_DEFINITION::display_pattern_handle},
    {IDC_FIELD_MASK, 80, &FIELD_DEFINITION::input_mask_handle},
    {IDC_FIELD_DEFAULT, 80, &FIELD_DEFINITION::default_data_handle},
    {IDC_FIELD_LOOKUP, LOOKUP_LIMIT, &FIELD_DEFINITION::lookup_filename_handle},
    {IDC_FIELD_PREFIX, 250, &FIELD_DEFINITION::prefix_text_handle},
    {IDC_FIELD_SUFFIX, 250, &FIELD_DEFINITION::suffix_text_handle},
};

constexpr unsigned LONGEST_DELAY = 255; // that the member can hold; no check refuses a longer one

char chosen_letter(HWND dialog, const CHOICE_LIST& list) {
    const auto none = static_cast<unsigned>(list.texts.size());
    return list.letters[selected_entry(dialog, list.control, none)];
}

template <class BITS>
void set_bits(BITS& bits, BITS mask, bool on) {
    bits = static_cast<BITS>(on ? bits | mask : bits & ~mask);
}

} // namespace

const std::span<const FIELD_CONTROL> FIELD_CONTROLS = CONTROLS;

void prepare_field_controls(HWND dialog) {
    for (const FIELD_CONTROL& control : CONTROLS) {
        install_filter(GetDlgItem(dialog, control.id), control.filter);
        if (control.updown != 0)
            prepare_stepper(dialog, control.updown);
    }
    for (const TEXT_EDIT& text : TEXT_EDITS)
        SendDlgItemMessageA(dialog, text.control, EM_LIMITTEXT, text.limit, 0);
    for (const NUMBER_EDIT& number : NUMBER_EDITS)
        SendDlgItemMessageA(dialog, number.control, EM_LIMITTEXT, number.digits, 0);
}

void release_field_controls(HWND dialog) {
    for (const FIELD_CONTROL& control : CONTROLS)
        remove_filter(GetDlgItem(dialog, control.id));
}

void fill_controls(HWND dialog, const FIELD_DEFINITION& field) {
    for (const CHECK_BOX& box : CHECK_BOXES)
        tick(dialog, box.control, ((field.*box.member & box.mask) != 0) == box.ticked_when_set);
    for (const BARCODE_BOX& box : BARCODE_BOXES)
        tick(dialog, box.control, (field.barcode_bit_values & box.mask) != 0);
    current_barcode_bit_values = field.barcode_bit_values;
    for (const CHOICE_LIST& list : CHOICE_LISTS) {
        const auto letter = static_cast<char>(field.*list.member);
        fill_list(dialog, list.control, list.texts,
                  static_cast<unsigned>(std::string_view(list.letters).find(letter)));
    }
    for (const NUMBER_EDIT& number : NUMBER_EDITS)
        set_own_text(dialog, number.control, std::to_string(field.*number.member));
    for (const TEXT_EDIT& text : TEXT_EDITS)
        set_own_text(dialog, text.control, translate_hex_to_string(field.*text.member));
}

FIELD_EDITS read_edits(HWND dialog) {
    FIELD_EDITS edits;
    edits.field = *current_handle(); // what has no control stays
    FIELD_DEFINITION& field = edits.field;
    for (const CHOICE_LIST& list : CHOICE_LISTS)
        if (const char letter = chosen_letter(dialog, list); letter != '\0')
            field.*list.member = static_cast<std::uint8_t>(letter);
    for (const CHECK_BOX& box : CHECK_BOXES)
        set_bits(field.*box.member, box.mask, is_ticked(dialog, box.control) == box.ticked_when_set);
    field.barcode_bit_values = current_barcode_bit_values;
    for (const BARCODE_BOX& box : BARCODE_BOXES)
        set_bits(field.barcode_bit_values, box.mask, is_ticked(dialog, box.control));
    for (const NUMBER_EDIT& number : NUMBER_EDITS) {
        const unsigned typed = edit_number(dialog, number.control);
        if (number.typed != nullptr)
            edits.*number.typed = typed;
        // What is typed for a place counts modulo 256 in the preview, and the checks see it whole.
        const unsigned kept = number.typed != nullptr ? typed : std::min(typed, LONGEST_DELAY);
        field.*number.member = static_cast<std::uint8_t>(kept);
    }
    for (const TEXT_EDIT& text : TEXT_EDITS)
        field.*text.member = translate_string_to_hex(control_text(dialog, text.control));
    edits.prompt = control_text(dialog, IDC_FIELD_PROMPT);
    edits.input_mask = control_text(dialog, IDC_FIELD_MASK);
    return edits;
}

char chosen_type(HWND dialog) {
    return chosen_letter(dialog, TYPE_LIST);
}

char chosen_source(HWND dialog) {
    return chosen_letter(dialog, SOURCE_LIST);
}

void choose_data_type(HWND dialog) {
    constexpr WPARAM DATA_ENTRY = 0;
    SendDlgItemMessageA(dialog, IDC_FIELD_TYPE, CB_SETCURSEL, DATA_ENTRY, 0);
}

bool is_text_edit(int control) {
    return std::ranges::find(TEXT_EDITS, control, &TEXT_EDIT::control) != std::end(TEXT_EDITS);
}

int step_number(HWND dialog, int updown, int direction) {
    const auto* control = std::ranges::find(CONTROLS, updown, &FIELD_CONTROL::updown);
    if (control == std::end(CONTROLS))
        return 0;
    const auto* number = std::ranges::find(NUMBER_EDITS, control->id, &NUMBER_EDIT::control);
    step_edit(dialog, control->id, direction, {.lowest = 0, .highest = number->highest, .wraps = true});
    return control->id;
}

std::string field_control_help(HWND dialog, int control) {
    if (control == IDC_FIELD_PROMPT && chosen_type(dialog) == INPUT_STAMP)
        return STAMP_HELP;
    const auto* found = std::ranges::find(CONTROLS, control, &FIELD_CONTROL::id);
    if (found == std::end(CONTROLS))
        return "";
    return found->choices == nullptr ? found->help : std::string(found->help) + "\r\r" + found->choices;
}
