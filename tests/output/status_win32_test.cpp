// KELUTIL_Status on real windows: dialog 200 opened by a host window,
// driven through progress, polls with ESC and clicks, read back control by
// control and pixel by pixel; and the road without a dialog, where a host
// window records the lines it is sent and the keyboard queue holds ESC.

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support.h"
#include "vlcore.h"
#include "win32_support.h"

namespace {

constexpr uint32_t kOpen = 0, kProgress = 1, kPoll = 2, kClose = 3, kButton = 4, kReset = 5, kShow = 6;
constexpr uint32_t kNoDialog = 4096, kMessageOnly = 8192, kEndButton = 16384;
constexpr int kTitle = 101, kPercent = 201, kBar = 202, kPercentSign = 203, kCancel = 204, kEnd = 205;
constexpr COLORREF kBlack = RGB(0, 0, 0), kLightGrey = RGB(192, 192, 192);

std::vector<std::string> host_lines;

LRESULT CALLBACK HostProc(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_USER) {
        host_lines.emplace_back(reinterpret_cast<const char*>(second));
        return 0;
    }
    return DefWindowProcA(window, message, first, second);
}

// A top-level window of the host that records the script lines it gets.
class Host {
  public:
    Host() {
        WNDCLASSA wc{};
        wc.lpfnWndProc = HostProc;
        wc.hInstance = GetModuleHandleA(nullptr);
        wc.lpszClassName = "VlcoreStatusTestHost";
        RegisterClassA(&wc);  // a second registration fails harmlessly
        window_ = CreateWindowA("VlcoreStatusTestHost", "host", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, nullptr, nullptr,
                                wc.hInstance, nullptr);
        host_lines.clear();
        drain_keys();
    }
    ~Host() {
        KELUTIL_Status(window_, kClose, 0, nullptr);
        DestroyWindow(window_);
        drain_keys();
    }
    HWND window() const { return window_; }
    // The key messages that earlier steps left in the thread's queue.
    static void drain_keys() {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE)) {
        }
    }

  private:
    HWND window_ = nullptr;
};

struct FindOwned {
    HWND owner;
    HWND found;
};

BOOL CALLBACK find_owned_dialog(HWND window, LPARAM data) {
    auto* f = reinterpret_cast<FindOwned*>(data);
    char cls[16] = "";
    GetClassNameA(window, cls, sizeof cls);
    if (std::string(cls) == "#32770" && GetWindow(window, GW_OWNER) == f->owner) {
        f->found = window;
        return FALSE;
    }
    return TRUE;
}

// The status dialog that `owner` owns, or null.
HWND status_dialog(HWND owner) {
    FindOwned find{owner, nullptr};
    EnumThreadWindows(GetCurrentThreadId(), find_owned_dialog, reinterpret_cast<LPARAM>(&find));
    return find.found;
}

std::string control_text(HWND dialog, int id) { return vltest::window_text(GetDlgItem(dialog, id)); }

bool control_visible(HWND dialog, int id) { return IsWindowVisible(GetDlgItem(dialog, id)) != FALSE; }

using vltest::pump;

// The colours of the bar's inside at `percent` of its width, read from
// the control's own device context.
COLORREF bar_pixel(HWND dialog, int percent) {
    HWND bar = GetDlgItem(dialog, kBar);
    RECT r;
    GetClientRect(bar, &r);
    InflateRect(&r, -1, -1);
    const int x = r.left + (r.right - r.left) * percent / 100;
    const int y = (r.top + r.bottom) / 2;
    HDC dc = GetDC(bar);
    const COLORREF c = GetPixel(dc, x, y);
    ReleaseDC(bar, dc);
    return c;
}

int32_t status(HWND window, uint32_t command, int32_t value = 0, const char* text = nullptr) {
    return KELUTIL_Status(window, command, value, text);
}

TEST(StatusDialog, IsDialog200ControlByControl) {
    vltest::expect_dialog_template(GetModuleHandleA("VLCORE.dll"), 200, "output/status_dialog_template.tsv");
}

TEST(StatusDialog, OpensWithTitleZeroPercentAndCancel) {
    Host host;
    ASSERT_EQ(status(host.window(), kOpen, 0, "Importing"), 0);
    HWND dialog = status_dialog(host.window());
    ASSERT_NE(dialog, nullptr) << "no dialog owned by the host";
    EXPECT_TRUE(IsWindowVisible(dialog));
    EXPECT_EQ(control_text(dialog, kTitle), "Importing");
    EXPECT_EQ(control_text(dialog, kPercent), "0");
    EXPECT_EQ(control_text(dialog, kPercentSign), "%");
    EXPECT_EQ(control_text(dialog, kCancel), "Cancel");
    EXPECT_EQ(control_text(dialog, kEnd), "&End");
    EXPECT_TRUE(control_visible(dialog, kCancel));
    EXPECT_FALSE(control_visible(dialog, kEnd));
    EXPECT_TRUE(control_visible(dialog, kBar));
    // Dialog units 164 by 54 in "MS Sans Serif" 8: wider than high.
    RECT r;
    GetClientRect(dialog, &r);
    EXPECT_GT(r.right, 2 * r.bottom);
    // Opening closes what stood before: the host's status line is cleared.
    ASSERT_FALSE(host_lines.empty());
    EXPECT_EQ(host_lines.front(), "ty -q ");
}

TEST(StatusDialog, ProgressStepsShowNumberAndBar) {
    Host host;
    ASSERT_EQ(status(host.window(), kOpen, 0, "Counting"), 0);
    HWND dialog = status_dialog(host.window());
    ASSERT_NE(dialog, nullptr);
    pump();
    const struct {
        int32_t value;
        const char* number;
        int black_up_to;  // percent of the width that is black, checked left and right of it
    } steps[] = {
        {30, "30", 30},
        {50, "50", 50},
        {30, "30", 50},            // a falling value does not shrink the bar
        {150, "150", 100},         // above 100 shows its number and a full bar
        {0, "0", 0},               // 0 clears it
        {0x10000 + 20, "20", 20},  // 16 bits count
    };
    for (const auto& step : steps) {
        SCOPED_TRACE("progress " + std::to_string(step.value));
        EXPECT_EQ(status(host.window(), kProgress, step.value), 0);
        EXPECT_EQ(control_text(dialog, kPercent), step.number);
        if (step.black_up_to > 0) {
            EXPECT_EQ(bar_pixel(dialog, std::max(step.black_up_to - 5, 1)), kBlack);
        }
        if (step.black_up_to < 100) {
            EXPECT_EQ(bar_pixel(dialog, step.black_up_to + 5), kLightGrey);
        }
    }
}

TEST(StatusDialog, EscapeInPollStops) {
    for (uint32_t flags : {0u, kEndButton}) {
        SCOPED_TRACE("flags " + std::to_string(flags));
        Host host;
        ASSERT_EQ(status(host.window(), kOpen | flags, 0, "Waiting"), 0);
        HWND dialog = status_dialog(host.window());
        ASSERT_NE(dialog, nullptr);
        pump();
        EXPECT_EQ(status(host.window(), kPoll), 0);
        PostMessageA(dialog, WM_KEYDOWN, VK_ESCAPE, 0x00010001);
        EXPECT_EQ(status(host.window(), kPoll), 1) << "ESC stops, whichever button";
        EXPECT_EQ(status(host.window(), kPoll), 1) << "the request stays";
        EXPECT_EQ(status(host.window(), kReset), 0);
        EXPECT_EQ(status(host.window(), kPoll), 0);
        EXPECT_TRUE(IsWindow(dialog));
    }
}

TEST(StatusDialog, ButtonClickAnswersByItsMode) {
    const struct {
        const char* name;
        uint32_t flags;
        int button;
        int hidden;
        int32_t answer;
    } rows[] = {{"Cancel", 0, kCancel, kEnd, 1}, {"End", kEndButton, kEnd, kCancel, 2}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Host host;
        ASSERT_EQ(status(host.window(), kOpen | row.flags, 0, "Working"), 0);
        HWND dialog = status_dialog(host.window());
        ASSERT_NE(dialog, nullptr);
        EXPECT_TRUE(control_visible(dialog, row.button));
        EXPECT_FALSE(control_visible(dialog, row.hidden));
        EXPECT_EQ(control_text(dialog, kPercent), "0");
        SendMessageA(GetDlgItem(dialog, row.button), BM_CLICK, 0, 0);
        EXPECT_EQ(status(host.window(), kPoll), row.answer);
        EXPECT_EQ(status(host.window(), kPoll), row.answer) << "stays until reset";
        status(host.window(), kReset);
        EXPECT_EQ(status(host.window(), kPoll), 0);
        // Operation 4 is the click without the mouse.
        EXPECT_EQ(status(host.window(), kButton), 0);
        EXPECT_EQ(status(host.window(), kPoll), row.answer);
    }
}

TEST(StatusDialog, MessageOnlyShowsTheTitleAlone) {
    Host host;
    ASSERT_EQ(status(host.window(), kOpen | kMessageOnly | kEndButton, 0, "Just saying"), 0);
    HWND dialog = status_dialog(host.window());
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(control_text(dialog, kTitle), "Just saying");
    EXPECT_TRUE(control_visible(dialog, kTitle));
    for (int id : {kPercent, kBar, kPercentSign, kCancel, kEnd}) EXPECT_FALSE(control_visible(dialog, id)) << id;
    // The number was never set.
    EXPECT_EQ(control_text(dialog, kPercent), "Text");
}

TEST(StatusDialog, NullTitleKeepsTheTemplateText) {
    Host host;
    ASSERT_EQ(status(host.window(), kOpen), 0);
    HWND dialog = status_dialog(host.window());
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(control_text(dialog, kTitle), "Text");
}

TEST(StatusDialog, ReopenReplacesTheDialogAndClearsTheRequest) {
    Host host;
    ASSERT_EQ(status(host.window(), kOpen, 0, "First"), 0);
    HWND first = status_dialog(host.window());
    ASSERT_NE(first, nullptr);
    status(host.window(), kButton);
    ASSERT_EQ(status(host.window(), kPoll), 1);
    ASSERT_EQ(status(host.window(), kOpen, 0, "Second"), 0);
    EXPECT_FALSE(IsWindow(first));
    HWND second = status_dialog(host.window());
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(control_text(second, kTitle), "Second");
    EXPECT_EQ(status(host.window(), kPoll), 0);
}

TEST(StatusDialog, ShowHidesAndShows) {
    Host host;
    ASSERT_EQ(status(host.window(), kOpen, 0, "Shown"), 0);
    HWND dialog = status_dialog(host.window());
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(KELUTIL_Status(host.window(), kShow, 0, reinterpret_cast<const char*>(intptr_t{SW_HIDE})), 0);
    EXPECT_FALSE(IsWindowVisible(dialog));
    EXPECT_EQ(KELUTIL_Status(host.window(), kShow, 0, reinterpret_cast<const char*>(intptr_t{SW_SHOW})), 0);
    EXPECT_TRUE(IsWindowVisible(dialog));
}

TEST(StatusDialog, CloseDestroysTheDialogAndClearsTheHostLine) {
    Host host;
    ASSERT_EQ(status(host.window(), kOpen, 0, "Closing"), 0);
    HWND dialog = status_dialog(host.window());
    ASSERT_NE(dialog, nullptr);
    status(host.window(), kButton);
    host_lines.clear();
    EXPECT_EQ(status(host.window(), kClose), 0);
    EXPECT_FALSE(IsWindow(dialog));
    EXPECT_EQ(host_lines, std::vector<std::string>{"ty -q "});
    // The request went with the dialog; without one, progress answers 1.
    EXPECT_EQ(status(host.window(), kPoll), 0);
    EXPECT_EQ(status(host.window(), kProgress, 40), 1);
}

TEST(StatusWithoutDialog, CallsBeforeAnyDialogTouchNoWindow) {
    Host host;
    EXPECT_EQ(status(host.window(), kProgress, 50), 1);
    EXPECT_EQ(KELUTIL_Status(host.window(), kShow, 0, reinterpret_cast<const char*>(intptr_t{SW_SHOW})), 0);
    EXPECT_EQ(status_dialog(host.window()), nullptr);
    for (uint32_t op = 7; op <= 15; ++op) EXPECT_EQ(status(host.window(), op, 0, "x"), 0) << "op " << op;
    EXPECT_EQ(status_dialog(host.window()), nullptr);
    EXPECT_TRUE(host_lines.empty());
}

TEST(StatusWithoutDialog, TitleGoesToTheHostAsAScriptLine) {
    const struct {
        const char* title;
        std::string line;
    } rows[] = {
        {"Importing", "ty -q Importing... Hit ESC to abort!"},
        {nullptr, "ty -q ... Hit ESC to abort!"},
        {"", "ty -q ... Hit ESC to abort!"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.title ? row.title : "(null)");
        Host host;
        EXPECT_EQ(status(host.window(), kOpen | kNoDialog | kMessageOnly, 0, row.title), 0);
        EXPECT_EQ(host_lines, std::vector<std::string>{row.line});
        EXPECT_EQ(status_dialog(host.window()), nullptr) << "no dialog on this road";
    }
    // The line's buffer holds 119 characters.
    Host host;
    const std::string long_title(200, 'a');
    status(host.window(), kOpen | kNoDialog, 0, long_title.c_str());
    ASSERT_EQ(host_lines.size(), 1u);
    EXPECT_EQ(host_lines[0], "ty -q " + std::string(113, 'a'));
}

TEST(StatusWithoutDialog, NoDialogOpenKeepsAnOpenDialog) {
    Host host;
    ASSERT_EQ(status(host.window(), kOpen, 0, "Dialog"), 0);
    HWND dialog = status_dialog(host.window());
    ASSERT_NE(dialog, nullptr);
    status(host.window(), kOpen | kNoDialog, 0, "Line");
    EXPECT_TRUE(IsWindow(dialog));
}

TEST(StatusWithoutDialog, PollLooksForEscapeInTheQueue) {
    const struct {
        const char* name;
        WPARAM key;
        int32_t value;
        int32_t answer;
        bool stays;
    } rows[] = {
        {"ESC, left in the queue", VK_ESCAPE, 0, 1, true},
        {"ESC, removed", VK_ESCAPE, 2, 1, false},
        {"ESC, bit 0 answers 0", VK_ESCAPE, 1, 0, true},
        {"ESC, bits 0 and 1", VK_ESCAPE, 3, 0, false},
        {"another key", 'A', 0, 0, true},
        {"another key, removed", 'A', 2, 0, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Host host;
        EXPECT_EQ(status(host.window(), kPoll, row.value), 0) << "an empty queue";
        PostMessageA(host.window(), WM_KEYDOWN, row.key, 0x00010001);
        EXPECT_EQ(status(host.window(), kPoll, row.value), row.answer);
        MSG msg;
        const bool waiting = PeekMessageA(&msg, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_NOREMOVE) != FALSE;
        EXPECT_EQ(waiting, row.stays);
        if (waiting) {
            EXPECT_EQ(msg.wParam, row.key);
        }
    }
}

TEST(StatusWithoutDialog, PollClearsAnEarlierRequest) {
    Host host;
    status(host.window(), kButton);  // mode of an earlier dialog, or 0
    PostMessageA(host.window(), WM_KEYDOWN, VK_ESCAPE, 0x00010001);
    EXPECT_EQ(status(host.window(), kPoll, 2), 1);
    EXPECT_EQ(status(host.window(), kPoll, 2), 0) << "without a key the request starts again at 0";
}

}  // namespace
