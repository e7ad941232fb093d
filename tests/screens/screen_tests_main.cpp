// Runs the screen tests. They need a Windows (or Wine) desktop, but nobody in front of it.
#include "app/dialogs.h"

#include <commctrl.h>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    hInstance = GetModuleHandleA(nullptr);
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&classes);
    return RUN_ALL_TESTS();
}
