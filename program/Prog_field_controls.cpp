#include "program/Prog_field_controls.h"

#include "program/Prog.h"
#include "program/Prog_edits.h"
#include "resources/control.h"

#include <algorithm>

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
    {IDC_FIELD_PROMPT, 0, EDITTABPROC, "", nullptr, "Enter Prompt\rInformation", nullptr},
    {IDC_FIELD_PATTERN, 0, EDITTABPROC, "SE", nullptr, "Enter Input\rDisplay Pattern", nullptr},
    {IDC_FIELD_MASK, 0, UPPERCASETABPROC, "SE", nullptr, "Valid Mask\rCharacters\rAre:",
     "A - Alphanumeric\rN - Numeric\rD - Decimal\rF - Fixed\rI - Include"},
    {IDC_FIELD_DEFAULT, 0, EDITTABPROC, "SE", nullptr, "Enter Default\rInput Data",
     "Sequence of\rcharacters that\rappears as the\rdefault value. By\rspecifying @ as\rthe input data the\r"
     "Tolvan defaults to\rthe data that is\rin the input's\rprevious record."},
    {IDC_FIELD_LOOKUP, 0, UPPERCASETABPROC, "SE", nullptr, LOOKUP_HELP, LOOKUP_CHOICES},
    {IDC_FIELD_DEFINE, 0, BUTTONTABPROC, "SE", nullptr, LOOKUP_HELP, LOOKUP_CHOICES},
    {IDC_FIELD_PREFIX, 0, EDITTABPROC, "E", nullptr, "Enter Input\rPrefix for\rTransmission", nullptr},
    {IDC_FIELD_PREFIX_DELAY, 0, INTTABPROC, "E", nullptr, "Enter Delay\rTime After\rPrefix Transmit", nullptr},
    {IDC_FIELD_SUFFIX, 0, EDITTABPROC, "E", nullptr, "Enter Input\rSuffix for\rTransmission", nullptr},
    {IDC_FIELD_SUFFIX_DELAY, 0, INTTABPROC, "E", nullptr, "Enter Delay\rTime After\rSuffix Transmit", nullptr},
    {IDC_FIELD_START_ROW, IDC_FIELD_START_ROW_SPIN, INTTABPROC, "S", nullptr,
     "Starting Row for\rInput Display", nullptr},
    {IDC_FIELD_START_COL, IDC_FIELD_START_COL_SPIN, INTTABPROC, "S", nullptr,
     "Starting Column\rfor Input Display", nullptr},
    {IDC_FIELD_MAX, IDC_FIELD_MAX_SPIN, INTTABPROC, "SYE", nullptr, "Maximum\rInput Size", nullptr},
    {IDC_FIELD_END_ROW, IDC_FIELD_END_ROW_SPIN, INTTABPROC, "S", nullptr,
     "Ending Row for\rInput Display", nullptr},
    {IDC_FIELD_END_COL, IDC_FIELD_END_COL_SPIN, INTTABPROC, "S", nullptr,
     "Ending Column for\rInput Display", nullptr},
    {IDC_FIELD_MIN, IDC_FIELD_MIN_SPIN, INTTABPROC, "SYE", nullptr, "Minimum\rInput Size", nullptr},
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
    {IDC_FIELD_PREVIOUS, 0, BUTTONTABPROC, "", nullptr, "Goto Previous\rInput Definition", nullptr},
    {IDC_FIELD_NEXT, 0, BUTTONTABPROC, "", nullptr, "Goto Next\rInput Definition", nullptr},
    {IDOK, 0, BUTTONTABPROC, "", nullptr, "Exit and Save\rField Definition", nullptr},
    {IDCANCEL, 0, BUTTONTABPROC, "", nullptr, "Exit Without\rSaving\rField Definition", nullptr},
};

constexpr FIELD_CONTROL STAMP_PROMPT = {IDC_FIELD_PROMPT, 0, EDITTABPROC, "", nullptr, "Stamp Commands:\r ",
    "M - Month\rD - Day of Month\rY - Year\rH - Hour\rI - Minute\rS - Second\rW - Day of Week"};
// clang-format on

} // namespace

const std::span<const FIELD_CONTROL> FIELD_CONTROLS = CONTROLS;

std::string field_control_help(int id, std::uint8_t input_type) {
    const FIELD_CONTROL* control = &STAMP_PROMPT;
    if (id != IDC_FIELD_PROMPT || input_type != INPUT_STAMP)
        control = std::ranges::find(CONTROLS, id, &FIELD_CONTROL::id);
    if (control == std::end(CONTROLS))
        return "";
    return control->choices == nullptr ? control->help
                                       : std::string(control->help) + "\r\r" + control->choices;
}
