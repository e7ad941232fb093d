// The portable's setup dialogs.
#include "app/dialogs.h"
#include "resources/define.h"
#include "setup/SETUP.h"
#include "setup/SETUP_screens.h"
#include "tests/screens/drive_dialog.h"

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

TEST(SetupScreens, OkKeepsWhatWasNotChanged) {
    std::fill_n(reinterpret_cast<unsigned char*>(&setup_record), ITEMS_SIZE, 0xFE); // in no list or range
    setup_record.PREAMBLEB = "/0d/G " + std::string(26, '/');
    setup_record.PHONENUM = std::string(29, '&');
    setup_record.MODEMINIT = std::string(99, '/');
    setup_record.SOT_TEXT = std::string(249, '\x01') + '\xFF';
    for (const SCREEN& screen : SCREENS) {
        SCOPED_TRACE(screen.title);
        R expected = setup_record;
        for (const auto item : screen.cleared)
            if (item != nullptr)
                expected.*item = 0;
        run_screen(screen.dialog, [](HWND dialog) {
            expect_good_looks(dialog);
            close_window(dialog);
        });
        run_screen(screen.dialog, [](HWND) { press_key(VK_RETURN); });
        EXPECT_EQ(contents(setup_record), contents(expected));
    }
    reset_setups();
}

} // namespace
