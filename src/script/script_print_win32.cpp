// Printing the script window's text, a page after another.

#include <cstring>

#include "platform/platform.h"
#include "script/script_win32.h"
#include "vlcore.h"

namespace vl::script {
namespace {

constexpr uint32_t kPrinterDcCurrent = 3;
constexpr uint32_t kPrinterDcDialog = 5;
constexpr int kDraftMode = 7;

HDC ScriptPrinterDC(int dialog) {
    return KELUTIL_PrinterDC(nullptr, (dialog & 1) ? kPrinterDcDialog : kPrinterDcCurrent, nullptr);
}

// The loop over the lines; answers the last result of EndPage/StartPage,
// negative when the system ended the job.
int print_lines(HDC dc, HWND window, HWND edit) {
    TEXTMETRICA tm{};
    GetTextMetricsA(dc, &tm);
    const PageLayout layout = page_layout(tm.tmHeight, tm.tmExternalLeading, tm.tmAveCharWidth,
                                          record_word(window, kTabChars), GetDeviceCaps(dc, VERTRES));
    const auto count = static_cast<uint16_t>(SendMessageA(edit, EM_GETLINECOUNT, 0, 0));
    SetMapMode(dc, MM_TEXT);
    SetViewportOrgEx(dc, static_cast<int16_t>(record_word(window, kLeftMargin)),
                     static_cast<int16_t>(record_word(window, kTopMargin)), nullptr);
    PagePlacer placer(layout.lines_per_page);
    int result = 1;
    INT tab = layout.tab_distance;
    for (uint16_t line = 0; line < count; ++line) {
        char buffer[kPrintLineRoom + 1] = {};
        *reinterpret_cast<WORD*>(buffer) = static_cast<WORD>(kPrintLineRoom);
        const auto got = static_cast<int>(SendMessageA(edit, EM_GETLINE, line, reinterpret_cast<LPARAM>(buffer)));
        const std::string_view text =
            printed_line(std::string_view(buffer, got > 0 ? static_cast<std::size_t>(got) : 0));
        TabbedTextOutA(dc, 0, placer.y(layout.line_height), text.data(), static_cast<int>(text.size()), 1, &tab, 0);
        if (placer.advance()) {
            result = EndPage(dc);
            if (result > 0) result = StartPage(dc);
            if (result <= 0) break;
        }
    }
    return result;
}

}  // namespace

void ScriptPrint(HWND window, int dialog) {
    const HCURSOR wait = LoadCursorA(nullptr, MAKEINTRESOURCEA(32514));
    const HWND edit = script_edit(window);
    if (!edit) return;
    const HCURSOR old_cursor = SetCursor(wait);
    const HDC dc = ScriptPrinterDC(dialog);
    if (!dc) {
        MessageBoxA(window, kPrintAbortedText, nullptr, MB_ICONHAND);
        SetCursor(old_cursor);
        return;
    }
    DOCINFOA doc{};
    doc.cbSize = sizeof doc;
    doc.lpszDocName = kPrintDocumentName;
    bool started = StartDocA(dc, &doc) > 0;
    if (started && StartPage(dc) <= 0) {
        EndDoc(dc);
        started = false;
    }
    if (started) {
        const uint16_t draft[2] = {1, 0};
        Escape(dc, kDraftMode, sizeof draft, reinterpret_cast<LPCSTR>(draft), nullptr);
        LOGFONTA font{};
        font.lfHeight = print_font_height(GetDeviceCaps(dc, LOGPIXELSY));
        font.lfQuality = DRAFT_QUALITY;
        font.lfPitchAndFamily = FIXED_PITCH;
        const HFONT print_font = CreateFontIndirectA(&font);
        const HGDIOBJ old_font = SelectObject(dc, print_font);
        const int result = print_lines(dc, window, edit);
        SelectObject(dc, old_font);
        DeleteObject(print_font);
        // A negative result means the system has ended the job already.
        if (result >= 0) {
            EndPage(dc);
            EndDoc(dc);
        }
    } else {
        MessageBoxA(window, kPrintJobFailedText, nullptr, MB_ICONHAND);
    }
    DeleteDC(dc);
    SetCursor(old_cursor);
}

}  // namespace vl::script
