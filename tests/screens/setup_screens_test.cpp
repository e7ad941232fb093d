// The portable's setup dialogs.
#include "app/dialogs.h"
#include "resources/control.h"
#include "resources/define.h"
#include "setup/SETUP.h"
#include "setup/SETUP_screens.h"
#include "tests/screens/drive_dialog.h"

#include <commctrl.h>
#include <gtest/gtest.h>

namespace {

using ITEM = std::uint8_t SETUP_RECORD::*;

struct SCREEN {
    int dialog;
    DLGPROC procedure;
    const char* title;
    std::vector<ITEM> cleared; // by every OK
};
const SCREEN SCREENS[] = {
    {DLG_CODE39, CODE39PROC, "Code 39 Options", {}},
    {DLG_UPC, UPCPROC, "UPC Options", {}},
    {DLG_EAN, EANPROC, "EAN Options", {}},
    {DLG_ADDONS, SUPPROC, "UPC/EAN Addon Options", {}},
    {DLG_I2OF5, I2OF5PROC, "Interleaved 2 of 5 Options", {}},
    {DLG_CODABAR, CODABARPROC, "Codabar Options", {}},
    {DLG_CODE128, CODE128PROC, "Code 128 Options", {}},
    {DLG_CODE93, CODE93PROC, "Code 93 Options", {}},
    {DLG_MSI_PLESSEY, MSIPLESSEYPROC, "MSI/PLESSEY Options", {}},
    {DLG_CODE11, CODE11PROC, "Code11 Options", {}},
    {DLG_TERMCHAR,
     TERMCHARPROC,
     "Term Char Options",
     {&SETUP_RECORD::PREAMBLEBD, &SETUP_RECORD::POSTAMBLEBD}},
    {DLG_AMBLES, PRE_POST_AMBLEPROC, "Preamble/Postamble Options", {}},
    {DLG_BAR_EDIT, BAREDITPROC, "Bar Code Edit Options", {}},
    {DLG_BAR_BEEPER, BARBEEPPROC, "Bar Code Beep Options", {}},
    {DLG_LASER_CCD, LASERCCDPROC, "Laser/CCD Options", {}},
    {DLG_BAR_OTHER, BAROTHERPROC, "Other Options", {}},
    {DLG_SETUP_TRANSMIT,
     TRANSMITPROC,
     "Communications Setup",
     {&SETUP_RECORD::SERFMTX, &SETUP_RECORD::SERDUPX}},
    {DLG_SETUP_OTHER, OTHERPROC, "Other Setup", {}},
    {DLG_WEDGE, KEYBOARDWEDGEPROC, "Keyboard Wedge Setup", {}},
    {DLG_NON_PORTABLE, NONPORTPROC, "Non Portable Mode", {}},
};

// Everything in a record.
std::string contents(const SETUP_RECORD& record) {
    std::string all(reinterpret_cast<const char*>(&record), offsetof(SETUP_RECORD, REREAD) + 1);
    for (const std::string& text : {record.PREAMBLEB, record.POSTAMBLEB, record.PHONENUM, record.MODEMINIT,
                                    record.SOT_TEXT, record.EOT_TEXT})
        all += '|' + text;
    return all;
}

void run_screen(const SCREEN& screen, const std::function<void(HWND)>& script) {
    drive([&] { run_dialog(screen.dialog, nullptr, screen.procedure); },
          [&] { script(wait_for_window(screen.title)); });
}

// Changes whatever a dialog's controls can change.
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

class SetupScreens : public testing::Test {
protected:
    void SetUp() override {
        reset_setups();
    }
    void TearDown() override {
        reset_setups();
    }
};

TEST_F(SetupScreens, OkKeepsWhatWasNotChanged) {
    std::fill_n(reinterpret_cast<unsigned char*>(&setup_record), offsetof(SETUP_RECORD, REREAD) + 1, 0xFE);
    setup_record.PREAMBLEB = "/0d/G " + std::string(26, '/');
    setup_record.PHONENUM = std::string(29, '&');
    setup_record.MODEMINIT = std::string(99, '/');
    setup_record.SOT_TEXT = std::string(249, '\x01') + '\xFF';
    for (int pass = 0; pass < 2; ++pass, reset_setups())
        for (const SCREEN& screen : SCREENS) {
            SCOPED_TRACE(screen.title);
            SETUP_RECORD expected = setup_record;
            run_screen(screen, [&](HWND dialog) {
                EXPECT_EQ(layout_faults(dialog), std::vector<std::string>());
                EXPECT_EQ(unreached_by_tab(dialog), std::vector<int>());
                change_everything(dialog);
                close_window(dialog);
            });
            EXPECT_EQ(contents(setup_record), contents(expected));
            for (const ITEM item : screen.cleared)
                expected.*item = 0;
            run_screen(screen, [](HWND dialog) { click(dialog, IDOK); });
            EXPECT_EQ(contents(setup_record), contents(expected));
            run_screen(screen, [](HWND dialog) {
                change_everything(dialog);
                press_key(VK_RETURN);
            });
            EXPECT_NE(contents(setup_record), contents(expected));
            setup_record = expected;
        }
}

} // namespace
