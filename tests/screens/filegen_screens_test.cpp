// The editors of lookup and data files, and their dialogs.
#include "app/TolvanP.h"
#include "app/dialogs.h"
#include "app/files.h"
#include "files/FILEGEN.h"
#include "files/FILEGEN_edits.h"
#include "files/FILEGEN_import.h"
#include "files/FILEGEN_lines.h"
#include "files/FILEGEN_screens.h"
#include "files/MEMORY.h"
#include "resources/control.h"
#include "resources/define.h"
#include "tests/screens/drive_dialog.h"

#include <commctrl.h>
#include <gtest/gtest.h>

namespace {

std::string path_of(const std::string& name, const std::string& bytes) {
    const std::string path = temporary_path(name);
    std::fputs(bytes.c_str(), open_file(path, "wb").get());
    return path;
}

// The records; the first visible line, * and the one with the focus, I while Insert, R while the repetitive
// edits are enabled, and ! for changes.
std::string state_of(HWND editor) {
    settle();
    std::string state;
    for (char* record = goto_first_record(); *record != END_OF_RECORDS; record = goto_next_record(record))
        state += record + std::string("|");
    state += ' ' + std::to_string(record_index_base);
    if (const int row = focused_control(editor) - IDC_FILE_LINE; row >= 0 && row < VISIBLE_LINES)
        state += '*' + control_text(editor, IDC_FILE_NUMBER + row);
    state += IsWindowEnabled(GetDlgItem(editor, IDC_FILE_INSERT)) ? "I" : "";
    state += IsWindowEnabled(GetDlgItem(editor, IDC_FILE_REP_INSERT)) ? "R" : "";
    return state + (file_changed_flag ? "!" : "");
}

// Goes to the focus, but BM_CLICK to a control, and what scrolls to the editor.
struct LINE_STEP {
    UINT message;
    int what, times;
    const char* state;
};

void take(HWND editor, const std::vector<LINE_STEP>& steps) {
    for (const auto& [message, what, times, state] : steps) {
        for (int i = 0; i < times; ++i) {
            const bool scrolls = message == WM_VSCROLL || message == WM_MOUSEWHEEL;
            const int control = message == BM_CLICK ? what : focused_control(editor);
            PostMessageA(scrolls ? editor : GetDlgItem(editor, control), message, static_cast<WPARAM>(what),
                         0);
            settle();
        }
        EXPECT_EQ(state_of(editor), state) << message << ' ' << what;
    }
}

// With the control key held, as the system itself has it: the editor asks for its state.
void press_with_control(int key) {
    for (const auto& [pressed, flags] :
         {std::pair{VK_CONTROL, 0}, {key, 0}, {key, KEYEVENTF_KEYUP}, {VK_CONTROL, KEYEVENTF_KEYUP}})
        keybd_event(static_cast<BYTE>(pressed), 0, static_cast<DWORD>(flags), 0);
}

void open(HWND editor, const std::string& path) {
    choose_command(editor, CMD_OPEN);
    answer_file_dialog("Open", path);
    settle();
}

TEST(FileEditor, IsWorkedByKeysButtonsAndScrollBar) {
    const std::string path = path_of("lines.txt", "L\r\nLINES\r\n\r\nA\r\nB\r\nC\r\n");
    drive([] { file_generation(LOOKUP_FILE_EDITED, nullptr); },
          [&](HWND editor = nullptr) {
              editor = wait_for_window("Lookup File Editor");
              EXPECT_EQ(state_of(editor), " 1");
              open(editor, path);
              EXPECT_EQ(control_text(editor, IDC_FILE_LINE + 3), "< End of Entries >");
              press_key(VK_TAB);
              expect_good_looks(editor); // with all buttons enabled, and back again
              take(editor, {{WM_KEYDOWN, VK_UP, 1, "A|B|C| 1*1IR"},
                            {WM_KEYDOWN, VK_NEXT, 1, "A|B|C| 1*3IR"},
                            {WM_KEYDOWN, VK_RETURN, 1, "A|B|C|| 1*4IR!"},
                            {WM_CHAR, 'd', 1, "A|B|C|| 1*4IR!"}, // not stored as long as it is typed
                            {WM_KEYDOWN, VK_RETURN, 10, "A|B|C|d||||||||||| 3*14IR!"},
                            {WM_CHAR, 'e', 1, "A|B|C|d||||||||||| 3*14IR!"},
                            {WM_KEYDOWN, VK_DOWN, 1, "A|B|C|d||||||||||e| 3*14IR!"}, // no further
                            {WM_KEYDOWN, VK_UP, 2, "A|B|C|d||||||||||e| 3*12IR!"},
                            {WM_KEYDOWN, VK_PRIOR, 1, "A|B|C|d||||||||||e| 1*1IR!"},
                            {WM_VSCROLL, SB_LINEDOWN, 4, "A|B|C|d||||||||||e| 3*3IR!"},
                            {WM_VSCROLL, MAKELONG(SB_THUMBPOSITION, 1), 1, "A|B|C|d||||||||||e| 1*1IR!"},
                            {WM_MOUSEWHEEL, MAKELONG(0, -WHEEL_DELTA), 1, "A|B|C|d||||||||||e| 3*3IR!"},
                            {WM_MOUSEWHEEL, MAKELONG(0, WHEEL_DELTA), 1, "A|B|C|d||||||||||e| 1*1IR!"},
                            {WM_VSCROLL, SB_BOTTOM, 1, "A|B|C|d||||||||||e| 3*3IR!"},
                            {WM_CHAR, 'c', 1, "A|B|C|d||||||||||e| 3*3IR!"},
                            {WM_SYSCHAR, 'i', 1, "A|B||c|d||||||||||e| 3*3IR!"},
                            {WM_SYSCHAR, 'd', 2, "A|B|d||||||||||e| 2*3IR!"},
                            {BM_CLICK, IDC_FILE_DELETE, 7, "A|B||||e| 1*3IR!"},
                            {BM_CLICK, IDC_FILE_INSERT, 1, "A|B|||||e| 1*3IR!"},
                            {BM_CLICK, IDC_FILE_ADD, 1, "A|B|||||e|| 1*8IR!"},
                            {WM_KEYDOWN, VK_TAB, 2, "A|B|||||e|| 1IR!"}, // on Insert
                            {WM_KEYDOWN, VK_TAB, 2, "A|B|||||e|| 1R!"}});
              EXPECT_EQ(focused_control(editor), IDC_FILE_REP_ADD);
              press_key(VK_ESCAPE);
              EXPECT_EQ(answer_box(PROGRAM_TITLE, IDNO), "? Save File Changes?");
          });
}

TEST(FileEditor, GoesOnWithoutMemoryAsLongAsItCan) {
    const std::string path = path_of("two.dat", "D\r\nTWO\r\nPROG\r\nA\r\nB\r\n");
    drive([] { file_generation(DATA_FILE_EDITED, nullptr); },
          [&](HWND editor = nullptr) {
              editor = wait_for_window("Data File Editor");
              open(editor, path);
              EXPECT_EQ(layout_faults(editor), std::vector<std::string>());
              for (const int edit : {IDC_FILE_REP_INSERT, IDC_FILE_REP_DELETE, IDC_FILE_REP_ADD}) {
                  click(editor, edit);
                  expect_good_looks(wait_for_window(edit == IDC_FILE_REP_DELETE ? "Repetitive Field Delete"
                                                                                : "Repetitive Field Insert"));
                  press_key(VK_ESCAPE);
              }
              EXPECT_EQ(state_of(editor), "A|B| 1R");
              most_memchunks = 1;
              click(editor, IDC_FILE_REP_ADD);
              set_control_text(wait_for_window("Repetitive Field Insert"), IDC_REPEAT_NUMBER, "65535");
              press_key(VK_RETURN);
              EXPECT_EQ(answer_box("Memory Allocation", IDOK), "! System out of memory!");
              wait_until([] { return record_index_base == 3; }, "what could be added");
              EXPECT_EQ(record_count(), MEMCHUNK_SIZE - 4);
              while (focused_control(editor) != IDC_FILE_LINE)
                  press_key(VK_TAB);
              press_with_control(VK_END);
              wait_until([] { return record_index_base == record_count() + 2 - VISIBLE_LINES; }, "the end");
              press_with_control(VK_HOME);
              wait_until([] { return record_index_base == 1; }, "the first line");
              type_text("more than fits");
              press_key(VK_DOWN); // the editor cannot go on
              EXPECT_EQ(answer_box("Memory Allocation", IDOK), "! System out of memory!");
          });
    most_memchunks = std::string::npos;
    EXPECT_EQ(interval_text(1) + interval_text(2) + interval_text(3) + interval_text(4) + interval_text(21),
              "everyevery 2ndevery 3rdevery 4thevery 21th");
}

TEST(ImportDialog, TogglesColumns) {
    std::vector<FIELD_DESCRIPTOR> fields(3);
    IMPORT_OPTIONS options;
    const auto screen = [&] { EXPECT_TRUE(choose_import_fields(nullptr, fields, options)); };
    drive(screen, [](HWND dialog = nullptr) {
        dialog = wait_for_window("Translate Database File");
        expect_good_looks(dialog);
        for (const int key : {VK_SPACE, VK_DOWN, VK_RETURN, VK_SPACE, VK_END, VK_RETURN, VK_UP})
            press_key(key); // the first on; the second on and off; the end as it is
        PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDC_IMPORT_FIELDS, LBN_DBLCLK), 0);
        settle();
        click(dialog, IDOK);
    });
    EXPECT_TRUE(fields[0].import_field == 1 && fields[1].import_field == 0 && fields[2].import_field == 1);
}

TEST(FormatDialog, GivesTheChoice) {
    drive([] { EXPECT_EQ(choose_lookup_format(nullptr), LOOKUP_ASCII_FILE); },
          [] {
              EXPECT_EQ(layout_faults(wait_for_window("Save Lookup File Choice")),
                        std::vector<std::string>());
              press_key(VK_DOWN);
              press_key(VK_RETURN);
          });
}

} // namespace
