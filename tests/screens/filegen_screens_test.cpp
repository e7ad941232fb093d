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

constexpr char LOOKUP_TITLE[] = "Lookup File Editor";
constexpr char DATA_TITLE[] = "Data File Editor";
constexpr char INSERT_TITLE[] = "Repetitive Field Insert"; // of both dialogs that insert
constexpr char SAVE[] = "? Save File Changes?";

std::string path_of(const std::string& name, const std::string& bytes) {
    const std::string path = temporary_path(name);
    if (!bytes.empty())
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

struct STEP {
    UINT message; // WM_CHAR and WM_KEYDOWN to the focus, BM_CLICK to a control, WM_VSCROLL to the editor
    int what, times;
    const char* state;
};

void take(HWND editor, const std::vector<STEP>& steps) {
    for (const auto& [message, what, times, state] : steps) {
        const bool to_editor = message == WM_VSCROLL;
        const int control = message == BM_CLICK ? what : focused_control(editor);
        for (int i = 0; i < times; ++i) {
            const int focused = message == BM_CLICK ? what : focused_control(editor);
            PostMessageA(to_editor ? editor : GetDlgItem(editor, focused), message, static_cast<WPARAM>(what),
                         0);
            settle();
        }
        EXPECT_EQ(state_of(editor), state) << message << ' ' << what << ' ' << control;
    }
}

void open(HWND editor, const std::string& path) {
    choose_command(editor, CMD_OPEN);
    answer_file_dialog("Open", path);
    settle();
}

void expect_good_looks(HWND dialog) {
    EXPECT_EQ(layout_faults(dialog), std::vector<std::string>());
    EXPECT_EQ(unreached_by_tab(dialog), std::vector<int>());
}

TEST(FileEditor, IsWorkedByKeysButtonsAndScrollBar) {
    const std::string path = path_of("lines.txt", "L\r\nLINES\r\n\r\nA\r\nB\r\nC\r\n");
    drive([] { file_generation(LOOKUP_FILE_EDITED, nullptr); },
          [&](HWND editor = nullptr) {
              editor = wait_for_window(LOOKUP_TITLE);
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
                            {WM_KEYDOWN, VK_UP, 2, "A|B|C|d||||||||||e| 3*12IR!"},
                            {WM_KEYDOWN, VK_PRIOR, 1, "A|B|C|d||||||||||e| 1*1IR!"},
                            {WM_VSCROLL, SB_LINEDOWN, 4, "A|B|C|d||||||||||e| 3*3IR!"},
                            {WM_VSCROLL, MAKELONG(SB_THUMBPOSITION, 1), 1, "A|B|C|d||||||||||e| 1*1IR!"},
                            {WM_VSCROLL, SB_BOTTOM, 1, "A|B|C|d||||||||||e| 3*3IR!"},
                            {WM_SYSCHAR, 'd', 1, "A|B|d||||||||||e| 2*3IR!"},
                            {BM_CLICK, IDC_FILE_DELETE, 7, "A|B||||e| 1*3IR!"},
                            {BM_CLICK, IDC_FILE_INSERT, 1, "A|B|||||e| 1*3IR!"},
                            {BM_CLICK, IDC_FILE_ADD, 1, "A|B|||||e|| 1*8IR!"},
                            {WM_KEYDOWN, VK_TAB, 2, "A|B|||||e|| 1IR!"}, // on Insert
                            {WM_KEYDOWN, VK_TAB, 2, "A|B|||||e|| 1R!"}});
              EXPECT_EQ(focused_control(editor), IDC_FILE_REP_ADD);
              press_key(VK_ESCAPE);
              EXPECT_EQ(answer_box(PROGRAM_TITLE, IDNO), SAVE);
          });
}

TEST(FileEditor, SavesWhatStandsInTheControlsAndKeepsTheFocus) {
    const std::string path = path_of("count.dat", "D\r\nSTOCK\r\nPROG\r\nX\r\n");
    const std::string saved = path_of("kept.v1", "");
    std::remove(saved.c_str());
    drive([] { file_generation(DATA_FILE_EDITED, nullptr); },
          [&](HWND editor = nullptr) {
              editor = wait_for_window(DATA_TITLE);
              open(editor, path);
              press_key(VK_TAB);
              EXPECT_EQ(layout_faults(editor), std::vector<std::string>());
              take(editor, {{WM_CHAR, '\b', 1, "X| 1R!"}});
              type_text("NEWPROG8?");
              take(editor, {{WM_KEYDOWN, VK_TAB, 1, "X| 1*1IR!"}, {WM_CHAR, 0xFF, 1, "X| 1*1IR!"}});
              press_key(VK_ESCAPE);
              EXPECT_EQ(answer_box("Data File", IDOK),
                        "! Records cannot hold the characters with the numbers 254 and 255.\n"
                        "Each was replaced by a question mark.");
              EXPECT_EQ(answer_box(PROGRAM_TITLE, IDYES), SAVE);
              answer_file_dialog("Save As", ""); // not saved: the editor stays
              EXPECT_EQ(state_of(editor), "?| 1*1IR!");
              type_text("Y"); // and the focus stays
              choose_command(editor, CMD_SAVE);
              answer_file_dialog("Save As", saved);
              EXPECT_EQ(state_of(editor), "Y| 1*1IR");
              EXPECT_EQ(read_whole_file(open_file(saved, "rb").get()), "D\r\nkept\r\nNEWPROG8\r\nY\r\n");
              close_window(editor); // nothing to ask
          });
}

TEST(FileEditor, RepeatsEdits) {
    const std::string path = path_of("five.txt", "L\r\nFIVE\r\n\r\nA\r\nB\r\nC\r\nD\r\nE\r\n");
    const struct {
        int button;
        const char *title, *number, *box_caption, *box_text; // a number that is refused
        int entry;                                           // of the list
        const char *good_number, *state;
    } edits[] = {
        {IDC_FILE_REP_INSERT, INSERT_TITLE, "6", "Repeating Delete", "! Starting with line# 6 out of range.",
         1, "2", "A|x|B|C|x|D|E| 1R!"},
        {IDC_FILE_REP_DELETE, "Repetitive Field Delete", "0", "Repeating Delete",
         "! Starting with line# 0 out of range.", 2, "2", "A|B|C|D|E| 1R!"},
        {IDC_FILE_REP_ADD, INSERT_TITLE, "65536", "Repeating Add", "! Add 65536 fields greater than 65535.",
         0, "2", "A|B|C|D|E|x|x| 1R!"},
        {IDC_FILE_REP_DELETE, "Repetitive Field Delete", "8", "Repeating Delete",
         "! Starting with line# 8 out of range.", 0, "1", " 1!"},
    };
    drive([] { file_generation(LOOKUP_FILE_EDITED, nullptr); },
          [&](HWND editor = nullptr) {
              editor = wait_for_window(LOOKUP_TITLE);
              open(editor, path);
              for (const auto& edit : edits) {
                  const bool adds = edit.button == IDC_FILE_REP_ADD;
                  const std::string highest = adds ? "65535" : std::to_string(record_entry_total);
                  click(editor, edit.button);
                  HWND dialog = wait_for_window(edit.title);
                  expect_good_looks(dialog);
                  while (focused_control(dialog) != IDC_REPEAT_NUMBER)
                      press_key(VK_TAB);
                  press_key(VK_DOWN);
                  EXPECT_EQ(control_text(dialog, IDC_REPEAT_NUMBER), highest);
                  press_key(VK_UP);
                  EXPECT_EQ(control_text(dialog, IDC_REPEAT_NUMBER), "1");
                  set_control_text(dialog, IDC_REPEAT_NUMBER, edit.number);
                  set_control_text(dialog, IDC_REPEAT_DATA, "x");
                  press_key(VK_RETURN);
                  EXPECT_EQ(answer_box(edit.box_caption, IDOK), edit.box_text);
                  set_control_text(dialog, IDC_REPEAT_NUMBER, edit.good_number);
                  HWND list = GetDlgItem(dialog, IDC_REPEAT_INTERVAL);
                  EXPECT_EQ(SendMessageA(list, LB_GETCOUNT, 0, 0), adds ? 0 : record_entry_total);
                  SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(edit.entry), 0);
                  press_key(VK_RETURN);
                  wait_until([&] { return !IsWindow(dialog); }, "the end of the edit");
                  EXPECT_EQ(state_of(editor), edit.state);
              }
              press_key(VK_ESCAPE);
              EXPECT_EQ(answer_box(PROGRAM_TITLE, IDNO), SAVE);
          });
    EXPECT_EQ(interval_text(1) + interval_text(2) + interval_text(3) + interval_text(4) + interval_text(21),
              "everyevery 2ndevery 3rdevery 4thevery 21th");
}

TEST(ImportDialog, TogglesColumns) {
    std::vector<FIELD_DESCRIPTOR> fields(3);
    for (FIELD_DESCRIPTOR& field : fields)
        field.field_name = "NAME               ";
    IMPORT_OPTIONS options;
    const auto screen = [&] { EXPECT_TRUE(choose_import_fields(nullptr, fields, options)); };
    drive(screen, [](HWND dialog = nullptr) {
        dialog = wait_for_window("Translate Database File");
        expect_good_looks(dialog);
        for (const int key : {VK_SPACE, VK_DOWN, VK_RETURN, VK_SPACE, VK_END, VK_RETURN, VK_UP})
            press_key(key); // the first on; the second on and off; the end as it is
        PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDC_IMPORT_FIELDS, LBN_DBLCLK), 0);
        settle();
        char row[40] = "";
        SendDlgItemMessageA(dialog, IDC_IMPORT_FIELDS, LB_GETTEXT, 2, reinterpret_cast<LPARAM>(row));
        EXPECT_STREQ(row, "\tYes\tNAME               ");
        EXPECT_EQ(SendDlgItemMessageA(dialog, IDC_IMPORT_FIELDS, LB_GETCURSEL, 0, 0), 2);
        click(dialog, IDC_IMPORT_LEAD_SPACES);
        click(dialog, IDC_IMPORT_TRUNCATE);
        click(dialog, IDOK);
    });
    EXPECT_TRUE(fields[0].import_field == 1 && fields[1].import_field == 0 && fields[2].import_field == 1);
    EXPECT_TRUE(!options.strip_lead_spaces && options.strip_trail_spaces && !options.strip_zeroes &&
                options.strip_trunc);
}

TEST(FormatDialog, GivesTheChoice) {
    const auto choose = [](std::initializer_list<int> keys) {
        int choice = -1;
        drive([&] { choice = choose_lookup_format(nullptr); },
              [&] {
                  EXPECT_EQ(layout_faults(wait_for_window("Save Lookup File Choice")),
                            std::vector<std::string>());
                  for (const int key : keys)
                      press_key(key);
              });
        return choice;
    };
    EXPECT_EQ(choose({VK_RETURN}), LOOKUP_SYSTEM_FILE);
    EXPECT_EQ(choose({VK_DOWN, VK_RETURN}), LOOKUP_ASCII_FILE);
    EXPECT_EQ(choose({VK_ESCAPE}), 0);
}

} // namespace
