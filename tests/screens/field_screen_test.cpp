// The field editor: what it enables, asks, shows and stores.
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

FIELD_DEFINITION& field(int number) {
    return *std::next(program_header.fields.begin(), number - 1);
}

// Opens the editor on a field, given by its number, under a script that is given its window. Cancels it in
// the end, when it is still there: after edits that it knows of it asks.
void run_field(int number, const std::function<void(HWND)>& script, bool edits = false) {
    field_list_selection = number - 1;
    const auto script_and_cancel = [&] {
        HWND screen = wait_for_window("Field Definition #" + std::to_string(number));
        script(screen);
        settle();
        if (!IsWindow(screen))
            return;
        close_window(screen);
        if (edits)
            answer_box("Field Definition", IDYES);
    };
    drive([] { run_dialog(DLG_FIELD, nullptr, FIELDDEFPROC); }, script_and_cancel);
}

void save(HWND screen) {
    click(screen, IDOK);
    answer_box("Field Definition", IDYES);
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
    const std::string data = "Prompt Text:", size = "|Input Max:+|Input Min:+", header = "|Header Input";
    const std::string place = "|Start Row:+|Start Col:+|Input Max:+|End Row:+|End Col:+|Input Min:+";
    const std::string upper = "|Shift Input to Upper Case|Allow Duplicate Inputs", sum = "|Allow Calculation";
    const std::string input = "|Require Input|Auto Advance" + upper, send = "|Enable Input Transmit";
    const std::string bar_code = "|Bar Code Append|Bar Code Auto Advance|Bar Code Types...";
    const std::string totals = sum + "|Transmit Total of Field" + bar_code + " -";
    const std::string texts =
        "|Input Source:|Output Format:|Display Pattern:|Input Mask:|Default Data:|Lookup File/Tbl:|Define";
    const std::string ends = "|Prefix:|Delay:|Suffix:|Delay:" + size;
    const std::string stamp = "Stamp Commands:" + texts + place + input + totals;
    const std::string exhibit = "Exhibit Text:" + texts + ends + header + input + send + totals;
    const std::string looked_up = data + header + "|Require Input" + upper + sum + bar_code + " -";
    const std::string source_ticks = " -|Require Input|Auto Advance|Allow Duplicate Inputs";
    const struct {
        char type, source; // as loaded
        int list, entry;   // then chosen; none when 0
        std::string state;
    } cases[] = {
        {'?', '?', 0, 0, data + " -"},
        {'N', 'K', 0, 0, data + bar_code + " -"},
        {'E', 'B', 0, 0, exhibit},
        {'Y', 'S', 0, 0, data + size + "|Auto Advance -"},
        {'D', 'L', 0, 0, looked_up},
        {'E', 'B', IDC_FIELD_TYPE, 1, stamp},
        {'D', 'L', IDC_FIELD_SOURCE, 0, data + bar_code + source_ticks},
        {'Y', 'K', IDC_FIELD_SOURCE, 1, data + size + source_ticks},
        {'Y', 'K', IDC_FIELD_SOURCE, 3, looked_up + "|Auto Advance|Allow Duplicate Inputs"},
    };
    for (const auto& c : cases) {
        field(2).input_type = static_cast<std::uint8_t>(c.type);
        field(2).input_source = static_cast<std::uint8_t>(c.source);
        const auto script = [&](HWND screen) {
            if (c.list != 0)
                choose_entry(screen, c.list, c.entry);
            EXPECT_EQ(state(screen), c.state) << c.type << c.source << ' ' << c.entry;
        };
        run_field(2, script, c.list != 0);
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
    run_field(1, script, true);
    EXPECT_EQ(field(1).bit_values1 & NEW_SCREEN, NEW_SCREEN) << "even without a save";
    EXPECT_FALSE(file_changed);
}

TEST_F(FIELD_SCREEN, EditsReachThePreviewAndTheField) {
    const std::string blank(16, '\x7F');
    field(2).prompt_string_handle = "A&B";
    field(2).start_row = field(2).end_row = 3;
    run_field(2, [&](HWND screen) {
        EXPECT_EQ(control_text(screen, IDC_FIELD_DISPLAY), "C" + blank + "\x7F\x7F\x7F");
        EXPECT_EQ(control_text(screen, IDC_FIELD_DISPLAY + 3), "A&&B" + blank + "\x7F");
        const auto step = [&](int edit, int direction) { // by the arrows behind it
            NMUPDOWN notice{{nullptr, static_cast<UINT_PTR>(edit + 1), UDN_DELTAPOS}, 0, direction};
            SendMessageA(screen, WM_NOTIFY, notice.hdr.idFrom, reinterpret_cast<LPARAM>(&notice));
            return control_text(screen, edit);
        };
        EXPECT_EQ(step(IDC_FIELD_START_ROW, 1), "0");
        EXPECT_EQ(step(IDC_FIELD_END_COL, 1), "0");
        EXPECT_EQ(step(IDC_FIELD_END_COL, -1), "19");
        EXPECT_EQ(step(IDC_FIELD_MAX, 1), "0");
        EXPECT_EQ(step(IDC_FIELD_MAX, -1), "250");
        EXPECT_EQ(control_text(screen, IDC_FIELD_HELP), "Maximum\rInput Size");
        EXPECT_EQ(control_text(screen, IDC_FIELD_DISPLAY), "C&&B" + blank + "\x7F");
        set_control_text(screen, IDC_FIELD_SUFFIX_DELAY, "300");
        save(screen);
    });
    EXPECT_EQ(field(2).suffix_delay, 255);
}

// The tab key goes round a field that is as odd as a file can hold, and a save leaves what was not edited.
TEST_F(FIELD_SCREEN, OddFieldsStayAsTheyAre) {
    FIELD_DEFINITION& odd = field(2);
    odd.bit_values1 = odd.bit_values2 = odd.data_manip_source = 0xFE;
    odd.input_type = odd.input_source = odd.output_format = odd.prefix_delay = 0xFE;
    odd.barcode_bit_values = odd.manip_barcode_bit_values = 0x5FF3;
    odd.suffix_text_handle = odd.branch_condition_handle = std::string(250, '\xFF');
    odd.input_mask_handle = "D";
    odd.lookup_filename_handle = "T,Red";
    const auto contents = [&odd] { // the numbers, then the texts
        return std::string(reinterpret_cast<const char*>(&odd),
                           offsetof(FIELD_DEFINITION, data_manip_source) + 1) +
               odd.suffix_text_handle + odd.branch_condition_handle + odd.lookup_filename_handle;
    };
    const std::string before = contents();
    run_field(2, [&](HWND screen) {
        EXPECT_EQ(unreached_by_tab(screen), std::vector<int>());
        for (int stop = 0; stop < 40 || focused_control(screen) != IDC_FIELD_LOOKUP; ++stop) {
            EXPECT_NE(control_text(screen, IDC_FIELD_HELP), "") << focused_control(screen);
            EXPECT_EQ(layout_faults(screen), std::vector<std::string>());
            press_key(VK_TAB);
        }
        press_key(VK_END);
        press_key(VK_RETURN); // does nothing
        type_text("x/0d");
        save(screen);
    });
    EXPECT_EQ(contents(), before + "X\r");
}

} // namespace
