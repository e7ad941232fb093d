#include "monitor/MONITOR.h"
#include "monitor/MONITOR_text.h"
#include "tests/line_script.h"
#include "tests/test_files.h"

#include <map>
#include <sstream>

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

using TEXTS = std::map<unsigned, std::string>; // by byte or key code

// "0C: {FF} {CR}": texts of consecutive codes from the one given. SP is a blank, NO shows nothing.
void put_texts(TEXTS& texts, const std::string& table) {
    std::istringstream words(table);
    unsigned code = 0;
    for (std::string word; words >> word;)
        if (word.size() == 3 && word.back() == ':')
            code = static_cast<unsigned>(std::stoul(word, nullptr, 16));
        else
            texts[code++] = word == "NO" ? "" : word == "SP" ? " " : word;
}

TEXTS hexadecimal_texts(unsigned first_with_zero) {
    TEXTS texts;
    for (unsigned code = 0; code <= 0xFF; ++code)
        texts[code] = std::string(code < first_with_zero ? "{" : "{0") + "0123456789ABCDEF"[code / 16] +
                      "0123456789ABCDEF"[code % 16] + "H}";
    return texts;
}

const std::string F1_TO_F10 = " {F1} {F2} {F3} {F4} {F5} {F6} {F7} {F8} {F9} {F10} ";

TEST_F(Monitor, EveryByteUnderEveryWayOfTheKeys) {
    const std::string added[] = {
        // by each bit of the ways
        "01: {Left} {Right} {Up} {Down} {HOME} {END} {DEL} 0B: {PgUp} {PgDn} 0E: NO NO {INS} 1C: NO NO NO NO",
        "8C: NO NO NO NO NO NO {PgUp} {PgDn} {HOME} {END} {DEL} {INS} {Left} {Right} {Up} {Down}",
        "11:" + F1_TO_F10, "81:" + F1_TO_F10};
    for (unsigned ways = 0; ways < 16; ++ways) {
        TEXTS texts = hexadecimal_texts(0xFF);
        for (unsigned code = 0x20; code < 0x7F; ++code)
            texts[code] = static_cast<char>(code);
        put_texts(texts,
                  "{NUL} {SOH} {STX} {ETX} {EOT} {ENQ} {ACK} {BEL} {BS} {HT} {LF} {VT} {FF} {CR}| {SO} {SI} "
                  "{DLE} {DC1} {DC2} {DC3} {DC4} {NAK} {SYN} {ETB} {CAN} {EM} {SUB} {ESC} {FS} {GS} {RS} "
                  "{US} 7F: NO");
        for (unsigned bit = 0; bit < 4; ++bit)
            put_texts(texts, (ways >> bit) % 2 == 1 ? added[bit] : "");
        monitor_settings.func_keys = ways / 4;
        monitor_settings.special_keys = ways % 4;
        for (const auto& [byte, text] : texts) {
            clear_captured_text();
            write_serkey(static_cast<std::uint8_t>(byte));
            ASSERT_EQ(shown(), text) << byte << " under " << ways;
        }
    }
}

TEST_F(Monitor, EveryKeyOfTheUsKeyboard) {
    translate_cr = 0;
    TEXTS plain = hexadecimal_texts(0xA0);
    put_texts(plain,
              "70:" + F1_TO_F10 +
                  "{F11} {F12} {F13} {F14} {F15} {F16} {F17} {F18} {F19} {F20} {F21} {F22} {F23} {F24}");
    put_texts(plain, "08: {BS} {tab} 0C: {CLEAR} {CR} 10: NO NO NO {PAUSE} NO 1B: {ESC} 20: SP {PgUp} {PgDn} "
                     "{END} {HOME} {Left} {Up} {Right} {Down} {Select} 2B: {Execute} {PrtScr} {INS} {DEL} "
                     "{HELP} 0 1 2 3 4 5 6 7 8 9 41: a b c d e f g h i j k l m n o p q r s t u v w x y z "
                     "60: 0 1 2 3 4 5 6 7 8 9 * + {SEP} - . / 91: {ScrollLck} A0: NO NO NO NO NO NO "
                     "BA: ; = , - . / ` DB: [ \\ ] ' E2: \\");
    TEXTS shifted = plain, letters;
    put_texts(shifted, "30: ) ! @ # $ % ^ & * ( BA: : + < _ > ? ~ DB: { | } \" E2: |");
    put_texts(letters, "41: A B C D E F G H I J K L M N O P Q R S T U V W X Y Z");
    const std::string wraps[] = {"", "{Ctrl ", "{Alt ", "{Ctrl Alt "};
    for (unsigned code = 0; code <= 0xFFF; ++code) { // the key, then Shift, Caps Lock, Ctrl and Alt
        const unsigned key = code % 256, held = code / 256;
        const bool shift = held % 2 == 1, caps_lock = held / 2 % 2 == 1;
        const bool capital = letters.count(key) != 0 && shift != caps_lock;
        const std::string text = (capital ? letters : shift ? shifted : plain)[key];
        clear_captured_text();
        write_winkey(key, shift, held / 4 % 2 == 1, held >= 8, caps_lock);
        EXPECT_EQ(shown(), text.empty() || held < 4 ? text : wraps[held / 4] + text + "}") << code;
    }
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
        clear_captured_text();
        monitor_settings.special_keys = special_keys;
        translate_cr = translate;
        for (const char byte : bytes)
            write_serkey(static_cast<std::uint8_t>(byte));
        EXPECT_EQ(shown(), text);
    }
    clear_captured_text();
    write_string(text36 + "zabcd"); // more than a line holds
    EXPECT_EQ(shown(), text36 + "zabc|d");
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
}

TEST_F(Monitor, CaptureFilesHoldTheListsLines) {
    const std::string text39(39, 'x');
    const std::map<std::string, std::string> files = {{"", ""},
                                                      {"\n", ""},
                                                      {"a\nb", "a|b"},
                                                      {"a\r\n\n\rb\r", "a||b"},
                                                      {text39 + "\r\ryz\nc", text39 + "y|c"}};
    for (const auto& [bytes, text] : files) {
        write_bytes(path("A.CAP"), bytes);
        EXPECT_TRUE(open_capture_file(nullptr, path("A.CAP")));
        EXPECT_EQ(shown(), text);
        EXPECT_EQ(captured_text.lines.empty(), bytes.empty());
    }
    for (int i = 0; i < 5000; ++i)
        write_serkey(static_cast<std::uint8_t>(i));
    const std::string captured = shown();
    EXPECT_TRUE(save_capture_file(nullptr, path("A.CAP")) && open_capture_file(nullptr, path("A.CAP")));
    EXPECT_EQ(captured_text.top_line, captured_text.lines.size() - 17);
    expect_warning("Cannot Open File.\nFile Creation Error!", "Save File");
    EXPECT_FALSE(open_capture_file(nullptr, path("NONE.CAP")));
    EXPECT_EQ(shown(), captured);
    expect_warning("Cannot Save File.\nFile Creation Error!", "Save File");
    EXPECT_FALSE(save_capture_file(nullptr, path("NO FOLDER/A.CAP")));
}

// What the menu shows of values that are none of the choices, item by item.
TEST_F(Monitor, SettingsAreWrittenAtOnceAndReadUnchecked) {
    const std::pair<std::string, const char*> cases[MONITOR_ITEM_COUNT] = {
        {"M_PORT", "Serial Port [COM:20]"},  {"M_BAUDRATE", "Baud Rate [21]"},
        {"M_DATABITS", "Data Bits [22]"},    {"M_STOPBITS", "Stop Bits [23]"},
        {"M_PARITY", "Parity [None]"},       {"M_XON", "Use XON/XOFF [No]"},
        {"M_FKEYS", "Function Keys [None]"}, {"M_SKEYS", "Special Keys [None]"},
        {"M_CR", "Translate {CR} [No]"}};
    for (unsigned i = 0; i < MONITOR_ITEM_COUNT; ++i)
        set_monitor_value(static_cast<MONITOR_ITEM>(i), 20 + i);
    initialize_com_settings();
    for (unsigned i = 0; i < MONITOR_ITEM_COUNT; ++i) {
        EXPECT_EQ(monitor_item_text(static_cast<MONITOR_ITEM>(i)), cases[i].second);
        EXPECT_EQ(monitor_value(static_cast<MONITOR_ITEM>(i)), 20 + i);
        EXPECT_EQ(desktop_settings["MONITOR/" + cases[i].first], std::to_string(20 + i));
    }
    desktop_settings.clear();
    initialize_com_settings();
    EXPECT_EQ(translate_cr, 1);
}

TEST_F(Monitor, TheLineIsOpenedAsSet) {
    for (const std::uint32_t xon_flag : {0, 1}) {
        monitor_settings = {2, 19200, 7, 2, 2, xon_flag};
        close_line(mon_comm_initialize());
        const LINE_SETTINGS& opened = line_record.settings;
        EXPECT_EQ(opened.mode + numbers(opened.baudrate), "COM2:9600,e,7,2" + numbers(19200));
        EXPECT_EQ(opened.input_xon_xoff, xon_flag == 1);
        EXPECT_FALSE(opened.output_xon_xoff || opened.rts_cts || opened.write_limit != 0);
    }
}

TEST_F(Monitor, PagesTakeTheLinesThatFitTheirHeight) {
    add_lines(3);
    std::string pages;
    for (const int page_height : {29, 9})
        for (const auto& [first, last] : print_pages(page_height, 10))
            pages += numbers(first, last);
    EXPECT_EQ(pages, "0 2 2 3 0 1 1 2 2 3 ");
}

} // namespace
