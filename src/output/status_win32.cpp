// KELUTIL_Status: the progress of a long operation of the host, in a small
// modeless dialog or, without one, as a line in the host's script window
// and a look at the keyboard queue.  The host's loop drives it: the dialog
// sees its messages only when the host polls.

#include <windows.h>

#include <string>

#include "internal/guard.h"
#include "internal/host.h"
#include "output/status.h"
#include "output_ids.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::output {

// The status record: the open dialog, the stop request and what a click
// of the dialog's button puts into it.
struct StatusRecord {
    HWND dialog = nullptr;
    int32_t abort = 0;  // 0 none, 1 stop (Cancel or ESC), 2 end (End)
    int32_t mode = 0;   // 1 with Cancel, 2 with End
};
StatusRecord status_record;

namespace {

enum Operation : uint32_t {
    kOpen = VL_STATUS_OPEN,
    kProgress = VL_STATUS_PROGRESS,
    kPoll = VL_STATUS_POLL,
    kClose = VL_STATUS_CLOSE,
    kButton = VL_STATUS_BUTTON,
    kReset = VL_STATUS_RESET,
    kShow = VL_STATUS_SHOW
};
constexpr uint32_t kNoDialog = VL_STATUS_NO_DIALOG, kMessageOnly = VL_STATUS_TITLE_ONLY, kEndButton = VL_STATUS_END_BUTTON;
constexpr uint32_t kOperationBits = VL_STATUS_COMMAND_BITS;

constexpr UINT kHostLineMessage = host::STATUS_LINE;
constexpr int32_t kStop = VL_STATUS_CANCEL, kEnd = VL_STATUS_END;
constexpr WPARAM kEscape = VK_ESCAPE;
constexpr UINT kFirstKeyMessage = 256, kLastKeyMessage = 264;

void status_to_host(HWND window, std::string_view text) {
    const std::string line = host_status_line(text);
    if (window) SendMessageA(window, kHostLineMessage, 0, reinterpret_cast<LPARAM>(line.c_str()));
}

INT_PTR CALLBACK StatusDlgProc(HWND, UINT message, WPARAM first, LPARAM) {
    if (message == WM_COMMAND && (LOWORD(first) == IDC_STATUS_CANCEL || LOWORD(first) == IDC_STATUS_END))
        KELUTIL_Status(nullptr, kButton, 0, nullptr);
    return 0;
}

int32_t progress(uint16_t percent) {
    HWND dialog = status_record.dialog;
    if (!dialog) return 1;
    SetDlgItemInt(dialog, IDC_STATUS_PERCENT, percent, FALSE);
    HWND bar = GetDlgItem(dialog, IDC_STATUS_BAR);
    if (!bar) return 1;
    // A paint still waiting would wipe the bar right after it is drawn.
    UpdateWindow(bar);
    HDC dc = GetDC(bar);
    if (!dc) return 1;
    RECT area;
    GetClientRect(bar, &area);
    InflateRect(&area, -1, -1);
    if (percent == 0) {
        FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(LTGRAY_BRUSH)));
    } else {
        area.right = bar_right_edge(area.left, area.right, percent);
        FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    }
    ReleaseDC(bar, dc);
    return 0;
}

int32_t close(HWND window) {
    status_to_host(window, {});
    if (status_record.dialog) {
        DestroyWindow(status_record.dialog);
        status_record.dialog = nullptr;
        status_record.abort = 0;
    }
    return 0;
}

int32_t open(HWND window, uint32_t command, const char* text) {
    status_record.abort = 0;
    if (command & kNoDialog) {
        status_to_host(window, no_dialog_title(text));
        return 0;
    }
    close(window);
    status_record.dialog = CreateDialogParamA(reinterpret_cast<HINSTANCE>(platform::module_handle()),
                                              MAKEINTRESOURCEA(IDD_STATUS), window, StatusDlgProc, 0);
    HWND dialog = status_record.dialog;
    if (!dialog) return 1;
    if (text) SetDlgItemTextA(dialog, IDC_STATUS_TITLE, text);
    if (command & kMessageOnly) {
        for (int id : {IDC_STATUS_PERCENT, IDC_STATUS_BAR, IDC_STATUS_PERCENT_SIGN, IDC_STATUS_CANCEL})
            ShowWindow(GetDlgItem(dialog, id), SW_HIDE);
        return 0;
    }
    if (command & kEndButton) {
        ShowWindow(GetDlgItem(dialog, IDC_STATUS_CANCEL), SW_HIDE);
        ShowWindow(GetDlgItem(dialog, IDC_STATUS_END), SW_SHOW);
        status_record.mode = kEnd;
    } else {
        status_record.mode = kStop;
    }
    progress(0);
    return 0;
}

int32_t poll(int32_t value) {
    MSG msg;
    if (HWND dialog = status_record.dialog) {
        if (PeekMessageA(&msg, dialog, 0, 0, PM_REMOVE)) {
            // The modeless dialog's keyboard and buttons work through this
            // one message; there is no loop of its own.
            IsDialogMessageA(dialog, &msg);
            if (msg.message == WM_KEYDOWN && msg.wParam == kEscape) status_record.abort = kStop;
        }
        return status_record.abort;
    }
    status_record.abort = 0;
    const UINT removal = (value & 2) ? PM_REMOVE : PM_NOREMOVE;
    if (!PeekMessageA(&msg, nullptr, kFirstKeyMessage, kLastKeyMessage, removal)) return 0;
    if (value & 1) return 0;
    if (msg.message == WM_KEYDOWN && msg.wParam == kEscape) status_record.abort = kStop;
    return status_record.abort;
}

int32_t status_entry(HWND window, uint32_t command, int32_t value, const char* text) {
    switch (command & kOperationBits) {
        case kOpen: return open(window, command, text);
        case kProgress: return progress(static_cast<uint16_t>(value));
        case kPoll: return poll(value);
        case kClose: return close(window);
        case kButton: status_record.abort = status_record.mode; return 0;
        case kReset: status_record.abort = 0; return 0;
        case kShow:
            if (status_record.dialog)
                ShowWindow(status_record.dialog, static_cast<int>(reinterpret_cast<intptr_t>(text)));
            return 0;
        default: return 0;
    }
}

}  // namespace
}  // namespace vl::output

extern "C" int32_t VLAPI KELUTIL_Status(HWND window, uint32_t command, int32_t value, const char* text) noexcept {
    // Without memory for the host's line the call fails as a missing dialog does.
    return vl::guarded(1, [&] { return vl::output::status_entry(window, command, value, text); });
}
