// What the window, dialog and printing tests do on Windows as a user
// would: read windows and controls back, hand out waiting messages, and
// drive modal dialogs from a thread timer (DialogDriver).
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support.h"

namespace vltest {

inline std::string window_text(HWND window) {
    char text[512] = {};
    GetWindowTextA(window, text, sizeof text);
    return text;
}

// Window enumerators are stdcall functions on 32-bit Windows, which a
// lambda does not convert to.
inline BOOL CALLBACK collect_dialog(HWND window, LPARAM list) {
    char name[16] = {};
    GetClassNameA(window, name, sizeof name);
    if (std::string(name) == "#32770" && IsWindowVisible(window))
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

inline BOOL CALLBACK find_control(HWND child, LPARAM wanted) {
    auto* p = reinterpret_cast<std::pair<int, HWND>*>(wanted);
    if (GetDlgCtrlID(child) != p->first) return TRUE;
    p->second = child;
    return FALSE;
}

inline BOOL CALLBACK collect_text(HWND child, LPARAM text) {
    *reinterpret_cast<std::string*>(text) += window_text(child) + "|";
    return TRUE;
}

// The visible dialogs (class "#32770") of this thread, topmost first.
inline std::vector<HWND> thread_dialogs() {
    std::vector<HWND> found;
    EnumThreadWindows(GetCurrentThreadId(), collect_dialog, reinterpret_cast<LPARAM>(&found));
    return found;
}

// The topmost visible dialog of this thread, or null.
inline HWND top_dialog() {
    const std::vector<HWND> all = thread_dialogs();
    return all.empty() ? nullptr : all.front();
}

// A dialog's control by id; an Explorer-style dialog keeps the
// application's controls in a child dialog, which is searched too.
inline HWND control(HWND dialog, int id) {
    if (HWND direct = GetDlgItem(dialog, id)) return direct;
    std::pair<int, HWND> wanted{id, nullptr};
    EnumChildWindows(dialog, find_control, reinterpret_cast<LPARAM>(&wanted));
    return wanted.second;
}

// Hands out the messages waiting for this thread, as a message loop would.
inline void pump() {
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
}

// The texts of a window's children, apart by '|'.
inline std::string child_texts(HWND window) {
    std::string out;
    EnumChildWindows(window, collect_text, reinterpret_cast<LPARAM>(&out));
    return out;
}

// Drives modal dialogs: a thread timer, which every modal loop of the
// thread dispatches, plays a list of actions one per tick, and an action
// that waits for a window tries again at the next tick.  A watchdog ends
// every dialog of the thread and fails the test when the list is not done
// in time, so a stuck dialog can never hang the run.
class DialogDriver {
  public:
    // An action answers true when it is done, false to be tried again at
    // the next tick (a window it waits for is not there yet).
    using Action = std::function<bool()>;

    explicit DialogDriver(DWORD watchdog_ms = 30000) : watchdog_ms_(watchdog_ms) {}

    void then(std::string label, Action action) { actions_.push_back({std::move(label), std::move(action)}); }

    // Runs `body`, which shows a modal dialog, while the actions play.
    // Fails when the watchdog fires or `body` comes back with actions left
    // (the last `optional` ones may be left: the dialog may end before).
    template <class Body>
    void run(Body body, std::size_t optional = 0) {
        current_ = this;
        next_ = 0;
        deadline_ = GetTickCount64() + watchdog_ms_;
        const UINT_PTR timer = SetTimer(nullptr, 0, kTickMs, &DialogDriver::tick);
        ASSERT_NE(timer, 0u);
        body();
        KillTimer(nullptr, timer);
        current_ = nullptr;
        if (!timed_out_ && next_ + optional < actions_.size())
            ADD_FAILURE() << "the dialog ended before the step \"" << actions_[next_].label << "\"";
        // Anything left open by a failing run is closed here.
        for (int round = 0; round < 50 && !thread_dialogs().empty(); ++round) close_all(), pump();
        EXPECT_TRUE(thread_dialogs().empty()) << "no dialog is left open";
    }

    bool timed_out() const { return timed_out_; }

  private:
    struct Step {
        std::string label;
        Action action;
    };
    static constexpr UINT kTickMs = 15;

    // Message boxes are answered No, all other dialogs Cancel.
    static void close_all() {
        for (HWND dialog : thread_dialogs()) {
            const bool question = GetDlgItem(dialog, IDNO) != nullptr;
            PostMessageA(dialog, WM_COMMAND, question ? IDNO : IDCANCEL, 0);
        }
    }

    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD) {
        DialogDriver* self = current_;
        if (self == nullptr) return;
        if (self->timed_out_ || GetTickCount64() > self->deadline_) {
            if (!self->timed_out_) {
                self->timed_out_ = true;
                ADD_FAILURE() << "watchdog: the dialogs were closed at the step \""
                              << (self->next_ < self->actions_.size() ? self->actions_[self->next_].label
                                                                      : std::string("(all done)"))
                              << "\"";
            }
            close_all();
            return;
        }
        if (self->next_ >= self->actions_.size()) return;
        // The step counts as taken before it runs: an action that opens a
        // nested modal dialog lets the following steps play inside it.
        const std::size_t index = self->next_++;
        ++self->running_;
        SCOPED_TRACE("step \"" + self->actions_[index].label + "\"");
        const bool done = self->actions_[index].action();
        --self->running_;
        if (!done && self->next_ == index + 1) self->next_ = index;  // try it again
    }

    std::vector<Step> actions_;
    std::size_t next_ = 0;
    int running_ = 0;
    bool timed_out_ = false;
    DWORD watchdog_ms_;
    ULONGLONG deadline_ = 0;
    static inline DialogDriver* current_ = nullptr;
};

// ---- Dialog templates ---------------------------------------------------------

// Reads a dialog template: the dialog and then each control, as rows of
// id, class, text, style, x, y, width, height.
class TemplateReader {
  public:
    explicit TemplateReader(const void* data) : p_(static_cast<const uint8_t*>(data)) {}
    uint16_t word() {
        uint16_t w;
        std::memcpy(&w, p_, 2);
        p_ += 2;
        return w;
    }
    uint32_t dword() { return word() | static_cast<uint32_t>(word()) << 16; }
    // A text, or an ordinal after 0xFFFF (its number in decimal).
    std::string text_or_ordinal() {
        uint16_t w = word();
        if (w == 0xFFFF) return "#" + std::to_string(word());
        std::string out;
        for (; w != 0; w = word()) out += static_cast<char>(w);
        return out;
    }
    void align(const void* base) {
        while ((p_ - static_cast<const uint8_t*>(base)) % 4) ++p_;
    }

  private:
    const uint8_t* p_;
};

inline std::string class_name(const std::string& raw) {
    if (raw == "#128") return "BUTTON";
    if (raw == "#129") return "EDIT";
    if (raw == "#130") return "STATIC";
    if (raw == "#131") return "LISTBOX";
    return raw;
}

inline std::string template_row(uint32_t id, const std::string& cls, const std::string& text, uint32_t style,
                                const std::array<int16_t, 4>& box) {
    char hex[16];
    std::snprintf(hex, sizeof hex, "0x%08X", style);
    std::string out =
        (id == 0x10000 ? std::string("dialog") : std::to_string(id)) + "\t" + cls + "\t" + text + "\t" + hex;
    for (int16_t v : box) out += "\t" + std::to_string(v);
    return out;
}

// Checks dialog `id` of `module` against a table of rows: the dialog,
// then each control in tab order, as id, class, text, style, x, y, width,
// height in dialog units.  The template is the plain kind with the font
// "MS Sans Serif" at 8 points, no menu, class or extended styles.
inline void expect_dialog_template(HMODULE module, int id, std::string_view table) {
    SCOPED_TRACE("dialog " + std::to_string(id));
    HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(id), reinterpret_cast<LPCSTR>(RT_DIALOG));
    ASSERT_NE(found, nullptr);
    const void* base = LockResource(LoadResource(module, found));
    ASSERT_NE(base, nullptr);
    TemplateReader in(base);
    std::vector<std::string> rows;
    const uint32_t style = in.dword();
    EXPECT_EQ(in.dword(), 0u) << "no extended style";
    const uint16_t controls = in.word();
    std::array<int16_t, 4> box{};
    for (auto& v : box) v = static_cast<int16_t>(in.word());
    EXPECT_EQ(in.text_or_ordinal(), "") << "no menu";
    EXPECT_EQ(in.text_or_ordinal(), "") << "the dialog class";
    rows.push_back(template_row(0x10000, "#32770", in.text_or_ordinal(), style, box));
    ASSERT_TRUE(style & DS_SETFONT);
    EXPECT_EQ(in.word(), 8) << "point size";
    EXPECT_EQ(in.text_or_ordinal(), "MS Sans Serif");
    for (uint16_t i = 0; i < controls; ++i) {
        in.align(base);
        const uint32_t control_style = in.dword();
        EXPECT_EQ(in.dword(), 0u) << "no extended style, control " << i;
        for (auto& v : box) v = static_cast<int16_t>(in.word());
        const uint16_t control_id = in.word();
        const std::string cls = class_name(in.text_or_ordinal());
        const std::string text = in.text_or_ordinal();
        EXPECT_EQ(in.word(), 0) << "no creation data, control " << i;
        rows.push_back(template_row(control_id, cls, text, control_style, box));
    }
    std::size_t index = 0;
    for_each_row(table, [&](const DataRow& row) {
        std::string want;
        for (const auto& f : row.fields) want += (want.empty() ? "" : "\t") + f;
        ASSERT_LT(index, rows.size());
        EXPECT_EQ(rows[index++], want);
    });
    EXPECT_EQ(index, rows.size()) << "no control beyond the table";
}

}  // namespace vltest
