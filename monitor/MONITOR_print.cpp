// The monitor's list on paper.
#include "monitor/MONITOR_screens.h"

#include "app/TolvanP.h"
#include "app/desktop.h"
#include "monitor/MONITOR_text.h"

#include <commdlg.h>

#include <cstring>

namespace {

constexpr char DOCUMENT_NAME[] = "Capture Data";
constexpr int FONT_SIZE = 10; // points
constexpr int POINTS_PER_INCH = 72;

struct PRINT_JOB {
    HDC printer;
    int line_height; // in the printer's units, like all that is drawn
    int copies;
};

HFONT create_print_font(HDC printer) {
    LOGFONTA font{};
    font.lfHeight = -MulDiv(FONT_SIZE, GetDeviceCaps(printer, LOGPIXELSY), POINTS_PER_INCH);
    font.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
    lstrcpynA(font.lfFaceName, "Courier New", LF_FACESIZE);
    return CreateFontIndirectA(&font);
}

// False when the printer gave up.
bool print_page(const PRINT_JOB& job, const PRINT_PAGE& page, HFONT font) {
    if (StartPage(job.printer) <= 0)
        return false;
    SelectObject(job.printer, font); // a new page may begin with the printer's own font
    int y = 0;
    for (std::size_t i = page.first; i < page.last; ++i) {
        const char* text = captured_text.lines[i].string.data();
        TextOutA(job.printer, 0, y, text, static_cast<int>(std::strlen(text)));
        y += job.line_height;
    }
    return EndPage(job.printer) > 0;
}

// Each page as often as copies are asked for before the next one begins.
bool print_all_pages(const PRINT_JOB& job, HFONT font) {
    const int page_height = GetDeviceCaps(job.printer, VERTRES);
    for (const PRINT_PAGE& page : print_pages(page_height, job.line_height))
        for (int copy = 0; copy < job.copies; ++copy)
            if (!print_page(job, page, font))
                return false;
    return true;
}

// False when the document did not go out whole. An operator who cancels, as he may be asked for a file's
// name, wants no message.
bool print_document(HDC printer, int copies) {
    HFONT font = create_print_font(printer);
    HGDIOBJ old_font = SelectObject(printer, font);
    TEXTMETRICA metrics{};
    GetTextMetricsA(printer, &metrics);
    DOCINFOA document{};
    document.cbSize = sizeof document;
    document.lpszDocName = DOCUMENT_NAME;
    const PRINT_JOB job = {printer, static_cast<int>(metrics.tmHeight), copies};
    SetLastError(0);
    const bool printed =
        StartDocA(printer, &document) > 0 && print_all_pages(job, font) && EndDoc(printer) > 0;
    const DWORD error = GetLastError();
    if (!printed)
        AbortDoc(printer);
    SelectObject(printer, old_font);
    DeleteObject(font);
    return printed || error == ERROR_CANCELLED || error == ERROR_PRINT_CANCELLED;
}

} // namespace

void print_captured_text(HWND owner) {
    PRINTDLGA request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = owner;
    request.nCopies = 1;
    // Copies are counted here, not by the driver: it would print the document as often, page behind page.
    request.Flags = PD_RETURNDC | PD_NOSELECTION | PD_NOPAGENUMS;
    if (!PrintDlgA(&request)) // the system has told why, unless the operator cancelled
        return;
    HCURSOR old_cursor = SetCursor(LoadCursorA(nullptr, IDC_WAIT));
    const bool printed = print_document(request.hDC, request.nCopies);
    SetCursor(old_cursor);
    DeleteDC(request.hDC);
    GlobalFree(request.hDevMode);
    GlobalFree(request.hDevNames);
    if (!printed)
        show_message(owner, "The captured data could not be printed.", "Print", MESSAGE_ICON::WARNING);
}
