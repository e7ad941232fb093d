#include "monitor/MONITOR.h"
#include "monitor/MONITOR_text.h"
#include "tests/line_script.h"
#include "tests/test_files.h"

namespace {

class Monitor : public FILE_TEST {
protected:
    Monitor() {
        reset_line();
        initialize_com_settings();
        captured_text = {};
        clear_captured_text();
    }
};

template <typename... NUMBERS>
std::string numbers(NUMBERS... list) {
    return ((std::to_string(list) + " ") + ...);
}

std::string shown() { // with a bar between the lines
    std::string text;
    for (const MON_STRINGS& line : captured_text.lines)
        text.append(line.string.data()).push_back('|');
    return text.substr(0, text.size() - !text.empty());
}

std::string shown_for(const std::string& bytes) {
    clear_captured_text();
    for (const char byte : bytes)
        write_serkey(static_cast<std::uint8_t>(byte));
    return shown();
}

TEST_F(Monitor, BytesAreShownUnderTheWaysOfTheKeys) {
    const std::string bytes("\x00\x01\x08\x0C\x0E\x10\x11\x1A\x1F ~\x7F\x80\x81\x8A\x91\x92\x9B\xFE\xFF", 20);
    const std::string low = "{NUL}{SOH}{BS}{FF}{SO}{DLE}", low_keys = "{NUL}{Left}{BS}{PgDn}{INS}",
                      high = "{91H}{92H}{9BH}{FEH}{0FFH}", high_keys = "{PgUp}{Down}{FEH}{0FFH}";
    const std::tuple<std::uint32_t, std::uint32_t, std::string> cases[] = {
        {0, 0, low + "{DC1}{SUB}{US} ~{80H}{81H}{8AH}" + high},
        {1, 0, low + "{F1}{F10}{US} ~{80H}{81H}{8AH}" + high},
        {2, 0, low + "{DC1}{SUB}{US} ~{80H}{F1}{F10}" + high},
        {3, 2, low + "{F1}{F10}{US} ~{80H}{F1}{F10}" + high_keys},
        {0, 1, low_keys + "{DC1}{SUB} ~{80H}{81H}{8AH}" + high},
        {1, 3, low_keys + "{F1}{F10} ~{80H}{81H}{8AH}" + high_keys}};
    for (const auto& [func_keys, special_keys, text] : cases) {
        monitor_settings.func_keys = func_keys;
        monitor_settings.special_keys = special_keys;
        std::string joined = shown_for(bytes);
        std::erase(joined, '|');
        EXPECT_EQ(joined, text);
    }
}

TEST_F(Monitor, KeysOfTheUsKeyboard) {
    const std::string keys = "Z1\xC0\xDE\x2E\x6F\x87\x9F\xA6";
    // Shift and Caps Lock, and what is shown.
    const std::tuple<bool, bool, std::string> cases[] = {{false, false, "z1`'{DEL}/{F24}{9FH}{0A6H}"},
                                                         {true, false, "Z!~\"{DEL}/{F24}{9FH}{0A6H}"},
                                                         {false, true, "Z1`'{DEL}/{F24}{9FH}{0A6H}"},
                                                         {true, true, "z!~\"{DEL}/{F24}{9FH}{0A6H}"}};
    for (const auto& [shift, caps_lock, text] : cases) {
        clear_captured_text();
        for (const char key : keys)
            write_winkey(static_cast<unsigned char>(key), shift, false, false, caps_lock);
        EXPECT_EQ(shown(), text);
    }
    clear_captured_text();
    write_winkey('A', true, true, false, false);
    write_winkey('A', false, false, true, true);
    write_winkey(0x2E, false, true, true, false);
    write_winkey(0x10, false, true, true, false); // Shift itself
    EXPECT_EQ(shown(), "{Ctrl A}{Alt A}{Ctrl Alt {DEL}}");
    EXPECT_TRUE(hold_winkey(0xA5, true) && hold_winkey(0x11, true) && !hold_winkey(0x14, true));
    EXPECT_TRUE(captured_text.held_keys.alt && captured_text.held_keys.ctrl && hold_winkey(0xA3, false));
    EXPECT_FALSE(captured_text.held_keys.shift || captured_text.held_keys.ctrl);
}

TEST_F(Monitor, BytesFillLinesAndHeldKeysWrapThem) {
    const std::string text36(36, 'y');
    const std::tuple<std::uint32_t, std::uint32_t, std::string, std::string> cases[] = {
        {1, 1, "\x1C\x41\x1D\x41", "{Ctrl A}A"},
        {1, 1, "\x1E\x0E\x1C\x05\x7F\x1F\x81\x1E\x1D z", "{Ctrl Alt {HOME}}{Ctrl {F1}}{Alt  }|{Alt z}"},
        {2, 1, "\x8E\x8C\x9B\x90\x8Fx\x8D\x1C", "{Ctrl Alt {Down}}{Alt x}{FS}"},
        {3, 1, "\x8E\x1E\x8F\r\x1F\r\r", "{Alt {CR}}|{CR}|{CR}|"},
        {7, 7, "\x1C\x8E\rb", "{FS}{8EH}{CR}b"}, // values that are none of the choices
        {0, 1, text36 + "\rb", text36 + "{CR}|b"},
        {0, 1, text36 + "z\r", text36 + "z|{CR}|"},
        {0, 0, text36 + "z\rb", text36 + "z|{CR}b"}};
    for (const auto& [special_keys, translate, bytes, text] : cases) {
        monitor_settings.special_keys = special_keys;
        translate_cr = translate;
        EXPECT_EQ(shown_for(bytes), text);
    }
}

void add_lines(int count) {
    for (int i = 0; i < count; ++i)
        write_string(std::string(MON_LINE_LIMIT, 'x'));
}

// Lines added, a scroll to a line or a height of the view; then the rows to move, first and last to draw, the
// top line, and the bar's maximum, page and position.
TEST_F(Monitor, TheViewFollowsTheEndAndTellsWhatToDraw) {
    const std::tuple<char, int, std::string> steps[] = {
        {'+', 1, "0 0 17 0 1 16 0 "},         {'+', 0, "0 0 0 0 1 16 0 "},
        {'+', 15, "0 1 16 0 1 16 0 "},        {'+', 1, "0 16 17 0 17 16 2 "},
        {'+', 1, "1 16 17 1 18 16 3 "},       {'C', 0, "2 15 17 3 20 16 5 "},
        {'+', 100, "0 0 17 102 119 16 104 "}, {'@', 86, "-16 0 16 86 119 16 86 "},
        {'@', -1, "0 0 17 0 119 16 0 "},      {'@', 103, "0 0 17 102 119 16 104 "},
        {'#', 30, "0 0 30 89 119 29 91 "},    {'#', 10, "0 0 10 109 119 9 111 "},
        {'@', 5, "0 0 10 5 119 9 5 "},        {'#', 0, "0 0 2 5 119 1 5 "}};
    for (const auto& [action, number, expected] : steps) {
        if (action == '+')
            add_lines(number);
        else if (action == 'C')
            write_string("{CR}"); // the empty line behind it takes the next text
        else if (action == '@')
            scroll_captured_text(number);
        else
            set_view_lines(static_cast<std::size_t>(number));
        const auto [moved_up, first, last] = take_view_change();
        const auto [maximum, page, position] = scroll_values();
        EXPECT_EQ(numbers(moved_up, first, last, captured_text.top_line, maximum, page, position), expected);
    }
    clear_captured_text();
    add_lines(3);
    std::string pages;
    for (const int page_height : {29, 9}) // of the printer: a page takes one line at least
        for (const auto& [first, last] : print_pages(page_height, 10))
            pages += numbers(first, last);
    EXPECT_EQ(pages, "0 2 2 3 0 1 1 2 2 3 ");
}

TEST_F(Monitor, CaptureFilesHoldTheListsLines) {
    const std::string text39(39, 'x');
    const std::pair<std::string, std::string> files[] = {
        {"", ""}, {"\n", ""}, {"a\r\n\n\rb\r", "a||b"}, {text39 + "\r\ryz\nc", text39 + "y|c"}};
    add_lines(50);
    for (const auto& [bytes, text] : files) {
        write_bytes(path("A.CAP"), bytes);
        EXPECT_TRUE(open_capture_file(nullptr, path("A.CAP")));
        EXPECT_EQ(shown(), text);
        EXPECT_EQ(captured_text.lines.empty(), bytes.empty());
        EXPECT_EQ(captured_text.top_line, 0U);
    }
    expect_warning("Cannot Open File.\nFile Creation Error!", "Save File");
    EXPECT_FALSE(open_capture_file(nullptr, path("NONE.CAP")));
    EXPECT_EQ(shown(), text39 + "y|c");
    expect_warning("Cannot Save File.\nFile Creation Error!", "Save File");
    EXPECT_FALSE(save_capture_file(nullptr, path("NO FOLDER/A.CAP")));
}

TEST_F(Monitor, SettingsAreReadUncheckedAndTheLineIsOpenedAsSet) {
    std::string texts; // of values that are none of the choices
    for (unsigned i = 0; i < MONITOR_ITEM_COUNT; ++i) {
        set_monitor_value(static_cast<MONITOR_ITEM>(i), 20 + i);
        save_monitor_value(static_cast<MONITOR_ITEM>(i));
    }
    initialize_com_settings();
    for (unsigned i = 0; i < MONITOR_ITEM_COUNT; ++i) {
        EXPECT_EQ(monitor_value(static_cast<MONITOR_ITEM>(i)), 20 + i);
        texts += monitor_item_text(static_cast<MONITOR_ITEM>(i)) + "|";
    }
    EXPECT_EQ(texts, "Serial Port [COM:20]|Baud Rate [21]|Data Bits [22]|Stop Bits [23]|Parity [None]|"
                     "Use XON/XOFF [No]|Function Keys [None]|Special Keys [None]|Translate {CR} [No]|");
    for (const std::uint32_t xon_flag : {0, 1}) {
        monitor_settings = {2, 19200, 7, 2, 2, xon_flag};
        close_line(mon_comm_initialize());
        const LINE_SETTINGS& opened = line_record.settings;
        EXPECT_EQ(opened.mode + numbers(opened.baudrate), "COM2:9600,e,7,2" + numbers(19200));
        EXPECT_TRUE(opened.input_xon_xoff == (xon_flag == 1) && !opened.rts_cts && opened.write_limit == 0);
    }
}

} // namespace
