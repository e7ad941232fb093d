// Controls of the dialogs.
#pragma once

// Progress box
#define IDC_STATUS_TEXT 1001
#define IDC_STATUS_BAR 1002
