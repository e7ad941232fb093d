// The field editor: what it enables, asks, shows and stores; the context menu and special characters of its
// edits.
#include "app/dialogs.h"
#include "program/Prog_fields.h"
#include "program/Prog_screens.h"
#include "resources/control.h"
#include "resources/define.h"
#include "tests/screens/drive_dialog.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cstddef>

namespace {

// The prompt's caption, the disabled controls by caption or label ('+' for arrows), then the ticked boxes.
std::string state(HWND screen) {
    std::string off, ticked;
    for (HWND child = GetWindow(screen, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        const bool is_button = (SendMessageA(child, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON) != 0;
        const std::string label = window_text(is_button ? child : GetWindow(child, GW_HWNDPREV));
        if (!IsWindowEnabled(child)) // arrows stand behind their edit
            off += (GetWindowLongA(child, GWL_STYLE) & WS_TABSTOP) != 0 ? '|' + label : "+";
        if (SendMessageA(child, BM_GETCHECK, 0, 0) == BST_CHECKED)
            ticked += '|' + label;
    }
    return control_text(screen, IDC_FIELD_PROMPT_LABEL) + off + " -" + ticked;
}

// The captions of the open context menu, those of greyed items in brackets.
std::string read_menu() {
    const auto popup = [] { return FindWindowA("#32768", nullptr); };
    wait_until([&] { return IsWindowVisible(popup()) != FALSE; }, "the context menu");
    const auto menu = reinterpret_cast<HMENU>(SendMessageA(popup(), MN_GETHMENU, 0, 0));
    std::string items;
    for (UINT i = 0; i < static_cast<UINT>(GetMenuItemCount(menu)); ++i) {
        char caption[40];
        GetMenuStringA(menu, i, caption, sizeof caption, MF_BYPOSITION);
        const bool greyed = (GetMenuState(menu, i, MF_BYPOSITION) & MF_GRAYED) != 0;
        items += greyed ? '[' + std::string(caption) + ']' : caption;
    }
    return items;
}

FIELD_DEFINITION& field(int number) {
    return *std::next(program_header.fields.begin(), number - 1);
}

// Opens the editor on a field, given by its number, under a script that is given its window, and closes it by
// a button; after edits, which it asks about.
void run_field(int number, const std::function<void(HWND)>& script, int button = IDCANCEL,
               bool edits = true) {
    field_list_selection = number - 1;
    const auto script_and_button = [&] {
        HWND screen = wait_for_window("Field Definition #" + std::to_string(number));
        script(screen);
        click(screen, button);
        if (edits)
            answer_box("Field Definition", IDYES);
    };
    drive([] { run_dialog(DLG_FIELD, nullptr, FIELDDEFPROC); }, script_and_button);
}

// Three fields with the prompts A, B and C; the first is a header.
struct FIELD_SCREEN : testing::Test {
    void SetUp() override {
        init_programming();
        for (field_list_selection = 0; field_list_selection < 3; ++field_list_selection) {
            insert_field();
            current_handle()->prompt_string_handle = "ABC"[field_list_selection];
            current_handle()->bit_values1 = FIELD_ALWAYS_SET | NO_DUPLICATES;
            current_handle()->barcode_bit_values = 0;
        }
        field(1).bit_values1 |= HEADER_INPUT;
        new_field = file_changed = false;
    }
};

TEST_F(FIELD_SCREEN, TypeAndSourceDisableControls) {
    const std::string data = "Prompt Text:", size = "|Input Max:+|Input Min:+";
    const std::string bar_code = "|Bar Code Append|Bar Code Auto Advance|Bar Code Types... -";
    const std::string texts =
        "|Input Source:|Output Format:|Display Pattern:|Input Mask:|Default Data:|Lookup File/Tbl:|Define";
    const std::string stamp =
        "Stamp Commands:" + texts + "|Start Row:+|Start Col:+|Input Max:+|End Row:+|End Col:+|Input Min:+" +
        "|Require Input|Auto Advance|Shift Input to Upper Case|Allow Duplicate Inputs|Allow Calculation" +
        "|Transmit Total of Field" + bar_code;
    const std::string exhibit =
        "Exhibit Text:" + texts + "|Prefix:|Delay:|Suffix:|Delay:" + size + "|Header Input|Require Input" +
        "|Auto Advance|Shift Input to Upper Case|Allow Duplicate Inputs|Enable Input Transmit" +
        "|Allow Calculation|Transmit Total of Field" + bar_code;
    const std::string looked_up = data + "|Header Input|Require Input|Shift Input to Upper Case" +
                                  "|Allow Duplicate Inputs|Allow Calculation" + bar_code;
    const std::string ticked = "|Auto Advance|Allow Duplicate Inputs";
    const struct {
        char type, source; // as loaded
        int list, entry;   // then chosen; none when 0
        std::string state;
    } cases[] = {
        {'E', 'B', 0, 0, exhibit},
        {'Y', 'S', 0, 0, data + size + "|Auto Advance -"},
        {'D', 'L', 0, 0, looked_up},
        {'E', 'B', IDC_FIELD_TYPE, 1, stamp},
        {'D', 'L', IDC_FIELD_SOURCE, 0, data + bar_code + "|Require Input" + ticked},
        {'Y', 'K', IDC_FIELD_SOURCE, 1, data + size + " -|Require Input" + ticked},
        {'Y', 'K', IDC_FIELD_SOURCE, 3, looked_up + ticked},
    };
    for (const auto& c : cases) {
        field(2).input_type = static_cast<std::uint8_t>(c.type);
        field(2).input_source = static_cast<std::uint8_t>(c.source);
        const auto script = [&](HWND screen) {
            if (c.list != 0)
                choose_entry(screen, c.list, c.entry);
            EXPECT_EQ(state(screen), c.state) << c.type << c.source << ' ' << c.entry;
        };
        run_field(2, script, IDCANCEL, c.list != 0);
    }
}

TEST_F(FIELD_SCREEN, PlaceAndBoxesDisableControls) {
    const std::string dup = "|Allow Duplicate Inputs", append = "|Bar Code Append";
    field(2).bit_values1 |= HEADER_INPUT;
    const auto script = [&](HWND screen) {
        EXPECT_EQ(state(screen),
                  "Prompt Text:|Header Input|New Screen" + dup + "|Previous -|Header Input|New Screen");
        click(screen, IDC_FIELD_NEXT);
        click(screen, IDC_FIELD_BARCODE_APPEND);
        SendDlgItemMessageA(screen, IDC_FIELD_TYPE, CB_SETCURSEL, 3, 0);
        PostMessageA(screen, WM_COMMAND, MAKEWPARAM(IDC_FIELD_TYPE, CBN_SELCHANGE), 0);
        EXPECT_EQ(answer_box("Field Definition Error", IDOK),
                  "X Header Input can not be\nof Input Type EXHIBIT.");
        settle();
        EXPECT_EQ(state(screen), "Prompt Text:" + dup + "|Bar Code Auto Advance -|Header Input" + append);
        click(screen, IDC_FIELD_HEADER);
        click(screen, IDC_FIELD_BARCODE_APPEND);
        EXPECT_EQ(state(screen), "Prompt Text: -");
        click(screen, IDC_FIELD_CALCULATION);
        EXPECT_EQ(control_text(screen, IDC_FIELD_MASK), "D");
        click(screen, IDC_FIELD_CALCULATION);
        EXPECT_EQ(control_text(screen, IDC_FIELD_MASK), "A");
    };
    run_field(1, script);
    EXPECT_EQ(field(1).bit_values1 & NEW_SCREEN, NEW_SCREEN) << "even without a save";
    EXPECT_FALSE(file_changed);
}

// On a field that is as odd as a file can hold: what is not edited stays as it is.
TEST_F(FIELD_SCREEN, EditsReachThePreviewAndTheFieldAlone) {
    const std::string blank(16, '\x7F');
    FIELD_DEFINITION& odd = field(2);
    odd.bit_values1 = odd.bit_values2 = odd.data_manip_source = 0xFE;
    odd.input_type = odd.input_source = odd.output_format = odd.prefix_delay = 0xFE;
    odd.barcode_bit_values = odd.manip_barcode_bit_values = 0x5FF3;
    odd.start_row = odd.end_row = 3;
    odd.prompt_string_handle = "A&B";
    odd.suffix_text_handle = odd.branch_condition_handle = std::string(250, '\xFF');
    odd.input_mask_handle = "D";
    odd.lookup_filename_handle = "T,Red";
    const auto contents = [&odd] { // the numbers, then the texts
        return std::string(reinterpret_cast<const char*>(&odd),
                           offsetof(FIELD_DEFINITION, data_manip_source) + 1) +
               odd.suffix_text_handle + odd.branch_condition_handle + odd.lookup_filename_handle;
    };
    const std::string before = contents();
    run_field(
        2,
        [&](HWND screen) {
            EXPECT_EQ(unreached_by_tab(screen), std::vector<int>());
            for (int stop = 0; stop < 40 || focused_control(screen) != IDC_FIELD_LOOKUP; ++stop) {
                EXPECT_NE(control_text(screen, IDC_FIELD_HELP), "") << focused_control(screen);
                EXPECT_EQ(layout_faults(screen), std::vector<std::string>());
                press_key(VK_TAB);
            }
            press_key(VK_END);
            press_key(VK_RETURN); // does nothing
            type_text("x/0d");
            EXPECT_EQ(control_text(screen, IDC_FIELD_DISPLAY + 3), "A&&B" + blank + "\x7F");
            NMUPDOWN notice{{nullptr, IDC_FIELD_START_ROW_SPIN, UDN_DELTAPOS}, 0, 1};
            SendMessageA(screen, WM_NOTIFY, notice.hdr.idFrom, reinterpret_cast<LPARAM>(&notice));
            EXPECT_EQ(control_text(screen, IDC_FIELD_HELP), "Starting Row for\rInput Display");
            EXPECT_EQ(control_text(screen, IDC_FIELD_DISPLAY), "C&&B" + blank + "\x7F");
            set_control_text(screen, IDC_FIELD_SUFFIX_DELAY, "300");
        },
        IDOK);
    EXPECT_EQ(odd.start_row, 0);
    EXPECT_EQ(odd.suffix_delay, 255);
    std::tie(odd.start_row, odd.suffix_delay) = std::tuple(3, 0);
    EXPECT_EQ(contents(), before + "X\r");
}

TEST_F(FIELD_SCREEN, ContextMenuAndSpecialCharacters) {
    OpenClipboard(nullptr);
    EmptyClipboard();
    CloseClipboard();
    run_field(2, [](HWND screen) {
        HWND edit = GetDlgItem(screen, IDC_FIELD_DEFAULT);
        const auto open_menu = [edit](const char* text, WPARAM start, LPARAM end) {
            SetWindowTextA(edit, text);
            SendMessageA(edit, EM_SETSEL, start, end);
            PostMessageA(edit, WM_CONTEXTMENU, 0, -1);
            return read_menu();
        };
        EXPECT_EQ(open_menu("", 0, 0),
                  "[&Undo][][Cu&t][&Copy][&Paste][&Delete][]&Special ASCII[Select &All]");
        PostMessageA(screen, WM_KEYDOWN, VK_ESCAPE, 0);
        settle();
        EXPECT_EQ(open_menu("a//b", 0, 3), "[&Undo][]Cu&t&Copy[&Paste]&Delete[]&Special ASCIISelect &All");
        PostMessageA(screen, WM_CHAR, 'T', 0);
        settle();
        EXPECT_EQ(window_text(edit), "b");
        EXPECT_EQ(open_menu("abc", 1, 2), "[&Undo][]Cu&t&Copy&Paste&Delete[]&Special ASCIISelect &All");
        PostMessageA(screen, WM_CHAR, 'S', 0);
        HWND picker = wait_for_window("Special ASCII Characters");
        expect_good_looks(picker);
        for (const int key : {VK_SPACE, VK_HOME, VK_RETURN, VK_DOWN, VK_DOWN, VK_SPACE})
            press_key(key); // the first finds nothing selected
        while (focused_control(picker) != IDC_SPECIAL_TEXT)
            press_key(VK_TAB);
        press_key(VK_END);
        type_text("+");
        press_key(VK_RETURN);
        EXPECT_EQ(window_text(edit), "a/00/02+c");
    });
}

} // namespace
