// A test host for the script window: a callback that records what the
// window sends, an owner window, a hook that answers message boxes, and
// helpers that type into the edit control as a user would.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support.h"
#include "vlcore.h"
#include "win32_support.h"

namespace scripttest {

constexpr UINT kExecute = 1024;
constexpr UINT kQuerySave = 1035;
constexpr UINT kClosed = 1039;

// Record positions, 64-bit build.
#ifdef _WIN64
constexpr int kPosFileName = 0, kPosEditProc = 8, kPosTabChars = 16, kPosLeftMargin = 18, kPosTopMargin = 20,
              kPosModified = 22, kPosExecute = 24, kPosHost = 26;
#else
constexpr int kPosFileName = 0, kPosEditProc = 4, kPosTabChars = 8, kPosLeftMargin = 10, kPosTopMargin = 12,
              kPosModified = 14, kPosExecute = 16, kPosHost = 18;
#endif

struct HostLog {
    std::vector<std::string> executed;  // texts of SWM_EXECUTE
    std::vector<HWND> windows;          // the window each message came with
    int query_saves = 0;
    int closed = 0;
    LRESULT answer = 0;                              // to SWM_EXECUTE
    LRESULT query_answer = 0;                        // to SWM_QUERYSAVE
    std::function<void(const std::string&)> during;  // runs inside SWM_EXECUTE
};
inline HostLog* host_log = nullptr;

inline LRESULT CALLBACK test_host(HWND window, UINT message, WPARAM, LPARAM second) {
    if (!host_log) return 0;
    host_log->windows.push_back(window);
    switch (message) {
        case kExecute: {
            const std::string text = reinterpret_cast<const char*>(second);
            host_log->executed.push_back(text);
            if (host_log->during) host_log->during(text);
            return host_log->answer;
        }
        case kQuerySave: ++host_log->query_saves; return host_log->query_answer;
        case kClosed: ++host_log->closed; return 0;
        default: return 0;
    }
}

// Answers every message box of the thread at once: Yes or No by the plan
// for a question, OK for the rest; what each box said is kept.
struct BoxSeen {
    std::string caption, text;
    bool question;
};
struct BoxAnswers {
    std::vector<BoxSeen> seen;
    int yes_no = IDNO;
    int ok = IDOK;  // to every other box or dialog
};
inline BoxAnswers* box_answers = nullptr;
inline HHOOK box_hook = nullptr;

// The first static control with a text: the message of a box.
inline BOOL CALLBACK static_text(HWND child, LPARAM out) {
    char kind[16] = {};
    GetClassNameA(child, kind, sizeof kind);
    if (lstrcmpiA(kind, "Static") != 0 || GetWindowTextLengthA(child) == 0) return TRUE;
    GetWindowTextA(child, reinterpret_cast<char*>(out), 400);
    return FALSE;
}

// Reads the box once its dialog stands, and answers it.
inline void CALLBACK box_timer(HWND dialog, UINT, UINT_PTR id, DWORD) {
    KillTimer(dialog, id);
    if (!box_answers) return;
    char caption[200] = {}, text[400] = {};
    GetWindowTextA(dialog, caption, sizeof caption);
    // The message is the box's one static text.
    EnumChildWindows(dialog, static_text, reinterpret_cast<LPARAM>(text));
    const bool question = GetDlgItem(dialog, IDYES) != nullptr;
    box_answers->seen.push_back({caption, text, question});
    PostMessageA(dialog, WM_COMMAND, question ? box_answers->yes_no : box_answers->ok, 0);
}

inline LRESULT CALLBACK box_cbt(int code, WPARAM first, LPARAM second) {
    if (code == HCBT_ACTIVATE && box_answers) {
        const auto dialog = reinterpret_cast<HWND>(first);
        char cls[32] = {};
        GetClassNameA(dialog, cls, sizeof cls);
        // The box may be activated before its text is in: it is read from
        // the box's own message loop.
        if (std::string(cls) == "#32770") SetTimer(dialog, 0xB0C5, 1, box_timer);
    }
    return CallNextHookEx(box_hook, code, first, second);
}

class BoxAnswerer {
  public:
    explicit BoxAnswerer(BoxAnswers& answers) {
        box_answers = &answers;
        box_hook = SetWindowsHookExA(WH_CBT, box_cbt, nullptr, GetCurrentThreadId());
    }
    ~BoxAnswerer() {
        UnhookWindowsHookEx(box_hook);
        box_hook = nullptr;
        box_answers = nullptr;
    }
    BoxAnswerer(const BoxAnswerer&) = delete;
    BoxAnswerer& operator=(const BoxAnswerer&) = delete;
};

using vltest::pump;

// The script window, owned by a plain window standing in for the host's.
class ScriptWindowTest : public ::testing::Test {
  protected:
    void SetUp() override {
        host_log = &log_;
        answerer_ = std::make_unique<BoxAnswerer>(boxes_);
        owner_ = CreateWindowExA(0, "STATIC", "host", WS_OVERLAPPEDWINDOW, 10, 10, 200, 100, nullptr, nullptr, nullptr,
                                 nullptr);
        ASSERT_NE(owner_, nullptr);
        window_ = reinterpret_cast<HWND>(KelText(owner_, font(), reinterpret_cast<intptr_t>(&test_host), 1));
        ASSERT_NE(window_, nullptr);
        edit_ = GetDlgItem(window_, 4);
        ASSERT_NE(edit_, nullptr);
        // Shown only where a test looks at the screen: every window shown and
        // hidden again costs the X server's round trips.
        SetFocus(edit_);
        pump();
    }
    void TearDown() override {
        if (IsWindow(window_)) DestroyWindow(window_);
        if (owner_) DestroyWindow(owner_);
        pump();
        answerer_.reset();
        host_log = nullptr;
    }
    virtual intptr_t font() const { return SYSTEM_FIXED_FONT; }

    std::string text() const {
        const int length = GetWindowTextLengthA(edit_);
        std::string s(static_cast<std::size_t>(length) + 1, '\0');
        GetWindowTextA(edit_, s.data(), length + 1);
        s.resize(static_cast<std::size_t>(length));
        return s;
    }
    void set_text(const std::string& s) {
        SetWindowTextA(edit_, s.c_str());
        caret(static_cast<int>(s.size()));
    }
    void caret(int at) { SendMessageA(edit_, EM_SETSEL, at, at); }
    void select(int from, int to) { SendMessageA(edit_, EM_SETSEL, from, to); }
    std::pair<int, int> selection() const {
        DWORD s = 0, e = 0;
        SendMessageA(edit_, EM_GETSEL, reinterpret_cast<WPARAM>(&s), reinterpret_cast<LPARAM>(&e));
        return {static_cast<int>(s), static_cast<int>(e)};
    }
    // Typing: each character as the window system delivers it.
    void type(const std::string& s) {
        for (const char c : s) {
            if (c == '\r') {
                enter();
            } else if (c != '\n') {
                SendMessageA(edit_, WM_CHAR, static_cast<unsigned char>(c), 1);
            }
        }
    }
    // Enter: the key-down, then the character 13 queued behind it.
    void enter() {
        SendMessageA(edit_, WM_KEYDOWN, VK_RETURN, 0x001C0001);
        SendMessageA(edit_, WM_CHAR, '\r', 0x001C0001);
        SendMessageA(edit_, WM_KEYUP, VK_RETURN, 0xC01C0001);
    }
    void command(WPARAM id) { SendMessageA(window_, WM_COMMAND, id, 0); }
    uint16_t word(int position) const { return static_cast<uint16_t>(GetWindowWord(window_, position)); }
    std::string file_name() const {
        const auto block = reinterpret_cast<HGLOBAL>(GetWindowLongPtrA(window_, kPosFileName));
        if (!block) return "<none>";
        const auto* p = static_cast<const char*>(GlobalLock(block));
        std::string name = p ? p : "";
        GlobalUnlock(block);
        return name;
    }

    HostLog log_;
    BoxAnswers boxes_;
    std::unique_ptr<BoxAnswerer> answerer_;
    HWND owner_ = nullptr, window_ = nullptr, edit_ = nullptr;
};

}  // namespace scripttest
