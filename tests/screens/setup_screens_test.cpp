// The portable's setup dialogs.
#include "app/dialogs.h"
#include "resources/control.h"
#include "resources/define.h"
#include "setup/SETUP.h"
#include "setup/SETUP_screens.h"
#include "tests/screens/drive_dialog.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using R = SETUP_RECORD;
constexpr std::size_t ITEMS_SIZE = offsetof(R, REREAD) + 1;

struct SCREEN {
    int dialog;
    DLGPROC procedure;
    const char* title;
    std::uint8_t R::*cleared[2] = {}; // by every OK
};
const SCREEN SCREENS[] = {
    {DLG_CODE39, CODE39PROC, "Code 39 Options"},
    {DLG_UPC, UPCPROC, "UPC Options"},
    {DLG_EAN, EANPROC, "EAN Options"},
    {DLG_ADDONS, SUPPROC, "UPC/EAN Addon Options"},
    {DLG_I2OF5, I2OF5PROC, "Interleaved 2 of 5 Options"},
    {DLG_CODABAR, CODABARPROC, "Codabar Options"},
    {DLG_CODE128, CODE128PROC, "Code 128 Options"},
    {DLG_CODE93, CODE93PROC, "Code 93 Options"},
    {DLG_MSI_PLESSEY, MSIPLESSEYPROC, "MSI/PLESSEY Options"},
    {DLG_CODE11, CODE11PROC, "Code11 Options"},
    {DLG_TERMCHAR, TERMCHARPROC, "Term Char Options", {&R::PREAMBLEBD, &R::POSTAMBLEBD}},
    {DLG_AMBLES, PRE_POST_AMBLEPROC, "Preamble/Postamble Options"},
    {DLG_BAR_EDIT, BAREDITPROC, "Bar Code Edit Options"},
    {DLG_BAR_BEEPER, BARBEEPPROC, "Bar Code Beep Options"},
    {DLG_LASER_CCD, LASERCCDPROC, "Laser/CCD Options"},
    {DLG_BAR_OTHER, BAROTHERPROC, "Other Options"},
    {DLG_SETUP_TRANSMIT, TRANSMITPROC, "Communications Setup", {&R::SERFMTX, &R::SERDUPX}},
    {DLG_SETUP_OTHER, OTHERPROC, "Other Setup"},
    {DLG_WEDGE, KEYBOARDWEDGEPROC, "Keyboard Wedge Setup"},
    {DLG_NON_PORTABLE, NONPORTPROC, "Non Portable Mode"},
};

std::string contents(const R& record) {
    std::string all(reinterpret_cast<const char*>(&record), ITEMS_SIZE);
    for (const auto text :
         {&R::PREAMBLEB, &R::POSTAMBLEB, &R::PHONENUM, &R::MODEMINIT, &R::SOT_TEXT, &R::EOT_TEXT})
        all += '|' + record.*text;
    return all;
}

void run_screen(int id, const std::function<void(HWND)>& script) {
    const SCREEN& screen = *std::ranges::find(SCREENS, id, &SCREEN::dialog);
    drive([&] { run_dialog(id, nullptr, screen.procedure); }, [&] { script(wait_for_window(screen.title)); });
}

// Does to every control whatever changes one of its kind; the other kinds do not know the message.
void change_everything(HWND dialog) {
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        const int id = GetDlgCtrlID(child);
        if (id <= IDCANCEL)
            continue;
        NMUPDOWN step{{child, static_cast<UINT_PTR>(id), UDN_DELTAPOS}, 0, 1};
        SendMessageA(dialog, WM_NOTIFY, step.hdr.idFrom, reinterpret_cast<LPARAM>(&step));
        SendMessageA(child, CB_SETCURSEL, 0, 0);
        SendMessageA(child, EM_REPLACESEL, 0, reinterpret_cast<LPARAM>("x"));
        SendMessageA(child, BM_CLICK, 0, 0);
    }
}

TEST(SetupScreens, OkKeepsWhatWasNotChangedAndCancelEverything) {
    std::fill_n(reinterpret_cast<unsigned char*>(&setup_record), ITEMS_SIZE, 0xFE); // in no list or range
    setup_record.PREAMBLEB = "/0d/G " + std::string(26, '/');
    setup_record.PHONENUM = std::string(29, '&');
    setup_record.MODEMINIT = std::string(99, '/');
    setup_record.SOT_TEXT = std::string(249, '\x01') + '\xFF';
    for (int pass = 0; pass < 2; ++pass, reset_setups())
        for (const SCREEN& screen : SCREENS) {
            SCOPED_TRACE(screen.title);
            R expected = setup_record;
            run_screen(screen.dialog, [&](HWND dialog) {
                EXPECT_EQ(layout_faults(dialog), std::vector<std::string>());
                EXPECT_EQ(unreached_by_tab(dialog), std::vector<int>());
                change_everything(dialog);
                close_window(dialog);
            });
            EXPECT_EQ(contents(setup_record), contents(expected));
            for (const auto item : screen.cleared)
                if (item != nullptr)
                    expected.*item = 0;
            run_screen(screen.dialog, [](HWND) { press_key(VK_RETURN); });
            EXPECT_EQ(contents(setup_record), contents(expected));
            run_screen(screen.dialog, [](HWND dialog) {
                change_everything(dialog);
                click(dialog, IDOK);
            });
            EXPECT_NE(contents(setup_record), contents(expected));
            setup_record = expected;
        }
}

TEST(SetupScreens, SteppersHoldOrWrapAtBothLimits) {
    const struct {
        int dialog, control;
        std::uint8_t R::*item;
        unsigned highest;
        const char *of_highest, *of_0;
        bool wraps = false;
    } steppers[] = {
        {DLG_I2OF5, IDC_I2OF5_SIZE_1, &R::I25_FL_1, 60, "60", "0"},
        {DLG_I2OF5, IDC_I2OF5_SIZE_2, &R::I25_FL_2, 60, "60", "0"},
        {DLG_I2OF5, IDC_I2OF5_SIZE_3, &R::I25_FL_3, 60, "60", "0"},
        {DLG_TERMCHAR, IDC_TERM_USER, &R::USRTERM, 0xF9, "F9H", "00H"},
        {DLG_AMBLES, IDC_AMBLE_PRE_DELAY, &R::PREAMBLEBD, 99, "9.9s", "0.0s"},
        {DLG_AMBLES, IDC_AMBLE_POST_DELAY, &R::POSTAMBLEBD, 99, "9.9s", "0.0s"},
        {DLG_BAR_EDIT, IDC_BAREDIT_LEADING, &R::LSTRIP, 30, "30", "0"},
        {DLG_BAR_EDIT, IDC_BAREDIT_TRAILING, &R::TSTRIP, 30, "30", "0"},
        {DLG_LASER_CCD, IDC_LASER_TIMEOUT, &R::LSRTIME, 9, " 9s", "OFF"},
        {DLG_LASER_CCD, IDC_LASER_READ_DELAY, &R::READDLY, 99, "9.9s", "0.0s"},
        {DLG_BAR_OTHER, IDC_SCAN_VERIFY, &R::REREAD, 9, "9", "0", true},
        {DLG_SETUP_TRANSMIT, IDC_XMIT_SOT_DELAY, &R::SOT_DELAY, 99, "9.9s", "0.0s"},
        {DLG_SETUP_TRANSMIT, IDC_XMIT_EOT_DELAY, &R::EOT_DELAY, 99, "9.9s", "0.0s"},
        {DLG_SETUP_TRANSMIT, IDC_XMIT_CHAR_DELAY, &R::SERTIMEX, 99, "99ms", "00ms"},
        {DLG_SETUP_OTHER, IDC_OTHER_TIMEOUT, &R::OFFTIME, 60, "60m", "OFF"},
        {DLG_SETUP_OTHER, IDC_OTHER_VIEW_DELAY, &R::DSPDLY, 99, "9.9s", "0.0s"},
        {DLG_SETUP_OTHER, IDC_OTHER_CONTRAST, &R::lcd_contrast, 99, "99", "0"},
    };
    for (const auto& stepper : steppers)
        for (const bool up : {true, false}) {
            SCOPED_TRACE(stepper.control);
            const unsigned limit = up ? stepper.highest : 0;
            const unsigned other_limit = stepper.highest - limit;
            const char* at_limit = up ? stepper.of_highest : stepper.of_0;
            setup_record.*stepper.item = static_cast<std::uint8_t>(up ? limit - 1 : 1);
            run_screen(stepper.dialog, [&](HWND dialog) {
                while (focused_control(dialog) != stepper.control)
                    press_key(VK_TAB);
                press_key(up ? VK_UP : VK_DOWN);
                EXPECT_EQ(control_text(dialog, stepper.control), at_limit);
                press_key(up ? VK_UP : VK_DOWN);
                EXPECT_EQ(control_text(dialog, stepper.control), !stepper.wraps ? at_limit
                                                                 : up           ? stepper.of_0
                                                                                : stepper.of_highest);
                press_key(VK_RETURN);
            });
            EXPECT_EQ(setup_record.*stepper.item, stepper.wraps ? other_limit : limit);
        }
    reset_setups();
}

TEST(SetupScreens, CheckDigitRulesExcludeEachOther) {
    setup_record.I25FLAGS = 0x08;
    run_screen(DLG_I2OF5, [](HWND dialog) {
        constexpr int USS = IDC_I2OF5_USS_CHECK, OPCC = IDC_I2OF5_OPCC_CHECK;
        for (const auto& [box, uss, opcc] : {std::tuple{USS, 1U, 0U}, {OPCC, 0U, 1U}, {OPCC, 0U, 0U}}) {
            click(dialog, box);
            EXPECT_TRUE(IsDlgButtonChecked(dialog, USS) == uss && IsDlgButtonChecked(dialog, OPCC) == opcc);
        }
        press_key(VK_ESCAPE);
    });
    reset_setups();
}

TEST(SetupScreens, EscapedTextsHaveTheirMenuTheirNormalFormAndTheirCapacity) {
    setup_record.PREAMBLEB = "old";
    run_screen(DLG_AMBLES, [](HWND dialog) {
        PostMessageA(GetDlgItem(dialog, IDC_AMBLE_PRE), WM_CONTEXTMENU, 0, -1);
        wait_until([] { return IsWindowVisible(FindWindowA("#32768", nullptr)) != FALSE; }, "the menu");
        PostMessageA(dialog, WM_CHAR, 'S', 0);
        close_window(wait_for_window("Special ASCII Characters"));
        type_text(std::string(31, 'p') + "/0d/G x");
        press_key(VK_TAB);
        EXPECT_EQ(control_text(dialog, IDC_AMBLE_PRE), std::string(31, 'p') + "/0Dx");
        click(dialog, IDOK);
    });
    EXPECT_EQ(setup_record.PREAMBLEB, std::string(31, 'p') + '/');
    run_screen(DLG_SETUP_TRANSMIT, [](HWND dialog) {
        while (focused_control(dialog) != IDC_XMIT_SOT)
            press_key(VK_TAB);
        type_text("a//b/0d/00");
        press_key(VK_RETURN); // in the edit: it is stored as it stands
    });
    EXPECT_EQ(setup_record.SOT_TEXT, "a/b\r\xFF");
    reset_setups();
}

} // namespace
