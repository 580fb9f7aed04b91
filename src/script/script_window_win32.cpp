// The script window: KelText, the window procedure and the edit control it
// makes.

#include <cstring>

#include "internal/guard.h"
#include "internal/host.h"
#include "platform/platform.h"
#include "script/script_win32.h"
#include "script/window_class.h"

namespace vl::script {

ScriptState script_state;

uint16_t record_word(HWND window, RecordField field) { return static_cast<uint16_t>(GetWindowWord(window, field)); }
void set_record_word(HWND window, RecordField field, uint16_t value) {
    SetWindowWord(window, field, static_cast<WORD>(value));
}
LONG_PTR record_pointer(HWND window, RecordField field) { return GetWindowLongPtrA(window, field); }
void set_record_pointer(HWND window, RecordField field, LONG_PTR value) { SetWindowLongPtrA(window, field, value); }

HWND script_edit(HWND window) { return GetDlgItem(window, kEditId); }

LRESULT ScriptNotify(HWND window, const char* text) {
    const HWND parent = GetParent(window);
    const UINT message = text ? host::SWM_EXECUTE : host::SWM_CLOSED;
    const auto host = reinterpret_cast<VL_HOSTPROC>(record_pointer(window, kHost));
    const auto second = reinterpret_cast<LPARAM>(text);
    if (host) return host(parent, message, 0, second);
    return SendMessageA(parent, message, 0, second);
}

int32_t ScriptTabFactor(HWND edit) {
    const int32_t base = LOWORD(GetDialogBaseUnits());
    int32_t average = 5;
    if (const HDC dc = GetDC(edit)) {
        if (const auto font = reinterpret_cast<HFONT>(SendMessageA(edit, WM_GETFONT, 0, 0))) {
            const HGDIOBJ old = SelectObject(dc, font);
            TEXTMETRICA tm{};
            if (GetTextMetricsA(dc, &tm)) average = tm.tmAveCharWidth;
            SelectObject(dc, old);
        }
        ReleaseDC(edit, dc);
    }
    return tab_factor(average, base);
}

namespace {

void set_tab_stop(HWND edit, int32_t stop) {
    INT stops[1] = {stop};
    SendMessageA(edit, EM_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(stops));
    InvalidateRect(edit, nullptr, TRUE);
}

}  // namespace

void ScriptCreateEdit(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    const HWND edit = CreateWindowExA(0, "Edit", nullptr, kEditStyle, 0, 0, client.right, client.bottom, window,
                                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(kEditId)),
                                      reinterpret_cast<HINSTANCE>(platform::module_handle()), nullptr);
    if (!edit) return;
    const LONG_PTR own = SetWindowLongPtrA(edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(MyEditProc));
    set_record_pointer(window, kEditProc, own);
    if (const auto font = static_cast<uint8_t>(KelText(nullptr, 0, 0, kQueryFont)))
        SendMessageA(edit, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(font)), 0);
    set_record_word(window, kTabChars, kDefaultTabChars);
    set_tab_stop(edit, kDefaultTabChars * ScriptTabFactor(edit));
}

namespace {

// The record lives only in windows of the class: a handle of any other
// window, a dead one or null is left alone.
bool is_script_window(HWND window) {
    char name[sizeof kScriptWindowClass + 1] = {};
    return window && IsWindow(window) && GetClassNameA(window, name, sizeof name) > 0 &&
           lstrcmpiA(name, kScriptWindowClass) == 0;
}

HWND create_window(HWND owner, intptr_t value, intptr_t text) {
    script_state.bScriptFont = static_cast<uint8_t>(value);
    platform::load_string(kStrTitle, script_state.szScriptTitle);
    const HWND window =
        CreateWindowExA(0, kScriptWindowClass, script_state.szScriptTitle, kScriptWindowStyle, 350, 250, 290, 220,
                        owner, nullptr, reinterpret_cast<HINSTANCE>(platform::module_handle()), nullptr);
    if (!window) return nullptr;
    set_record_pointer(window, kFileName, 0);
    set_record_word(window, kExecute, 1);
    set_record_word(window, kLeftMargin, kDefaultLeftMargin);
    set_record_word(window, kTopMargin, kDefaultTopMargin);
    set_record_pointer(window, kHost, text);
    return window;
}

void run_setting(HWND window, const char* text) {
    const Setting setting = parse_setting(text);
    switch (setting.kind) {
        case SettingKind::kNone: return;
        case SettingKind::kExecute: set_record_word(window, kExecute, static_cast<uint16_t>(setting.number)); return;
        case SettingKind::kLeftMargin:
            set_record_word(window, kLeftMargin, static_cast<uint16_t>(setting.number));
            return;
        case SettingKind::kTopMargin:
            set_record_word(window, kTopMargin, static_cast<uint16_t>(setting.number));
            return;
        case SettingKind::kNew: ScriptFileCommand(window, nullptr, kCmdNew); return;
        case SettingKind::kOpen: ScriptFileCommand(window, setting.text.c_str(), kCmdOpen); return;
        case SettingKind::kPrintDialog: ScriptPrint(window, 1); return;
        case SettingKind::kPrintCurrent: ScriptPrint(window, 0); return;
        case SettingKind::kSave: ScriptFileCommand(window, setting.text.c_str(), kCmdSave); return;
        case SettingKind::kTabColumns:
        case SettingKind::kTabUnits: {
            if (!IsWindow(window)) return;
            const HWND edit = script_edit(window);
            if (!edit) return;
            const TabStop tab =
                tab_stop(setting.number, setting.kind == SettingKind::kTabColumns, ScriptTabFactor(edit));
            set_tab_stop(edit, tab.stop);
            set_record_word(window, kTabChars, tab.tab_chars);
            return;
        }
        case SettingKind::kCaption:
            if (IsWindow(window)) SetWindowTextA(window, setting.text.c_str());
            return;
    }
}

// Commands below 500 and from 509 on.
void ScriptEditCommand(HWND window, HWND edit, WPARAM first) {
    switch (LOWORD(first)) {
        case kCmdHide: ShowWindow(window, SW_HIDE); return;
        case kCmdUndo: SendMessageA(edit, EM_UNDO, 0, 0); return;
        case kCmdCut: SendMessageA(edit, WM_CUT, 0, 0); return;
        case kCmdCopy: SendMessageA(edit, WM_COPY, 0, 0); return;
        case kCmdPaste: SendMessageA(edit, WM_PASTE, 0, 0); return;
        case kCmdDelete: SendMessageA(edit, WM_CLEAR, 0, 0); return;
        case kCmdExecution: set_record_word(window, kExecute, record_word(window, kExecute) == 0 ? 1 : 0); return;
        case kEditId:
            if (HIWORD(first) == EN_CHANGE) {
                set_record_word(window, kModified, 1);
            } else if (HIWORD(first) == EN_ERRSPACE) {
                MessageBoxA(edit, kOutOfMemoryText, nullptr, MB_SYSTEMMODAL | MB_ICONHAND);
                ScriptSetText(edit, nullptr);
            }
            return;
        default: return;
    }
}

void script_command(HWND window, HWND edit, WPARAM first) {
    switch (first) {
        case kCmdNew:
            ScriptFileCommand(window, nullptr, kFileSaveCheck);
            ScriptFileCommand(window, nullptr, kCmdNew);
            return;
        case kCmdOpen: ScriptFileCommand(window, nullptr, kCmdOpen); return;
        case kCmdSave: ScriptFileCommand(window, nullptr, kCmdSave); return;
        case kCmdSaveAs: ScriptFileCommand(window, nullptr, kCmdSaveAs); return;
        case kCmdPrint: ScriptPrint(window, 1); return;
        default: ScriptEditCommand(window, edit, first); return;
    }
}

intptr_t kel_text(VL_HWND window, intptr_t value, intptr_t text, uint32_t code) {
    switch (code) {
        case kLoadAccelerators:
            script_state.hScriptAccel =
                LoadAcceleratorsA(reinterpret_cast<HINSTANCE>(vl::platform::module_handle()), "EDITMENU");
            return reinterpret_cast<intptr_t>(script_state.hScriptAccel);
        case kCreateWindow: return reinterpret_cast<intptr_t>(create_window(window, value, text));
        case kSetting:
            if (is_script_window(reinterpret_cast<HWND>(value)))
                run_setting(reinterpret_cast<HWND>(value), reinterpret_cast<const char*>(text));
            return 0;
        case kFreeAccelerators:
            // The table is a resource of the library: giving it back is all
            // there is to do, and the handle is no longer to be used.
            if (script_state.hScriptAccel) {
                FreeResource(script_state.hScriptAccel);
                script_state.hScriptAccel = nullptr;
            }
            return 0;
        case kAppendText: {
            const auto target = reinterpret_cast<HWND>(value);
            if (is_script_window(target) && text)
                ScriptAppendText(reinterpret_cast<const char*>(text), script_edit(target));
            return 0;
        }
        case kSetModified:
            if (is_script_window(window)) set_record_word(window, kModified, static_cast<uint16_t>(value));
            return 0;
        case kQueryFont: return script_state.bScriptFont;
        default: return 0;
    }
}

LRESULT edit_window(HWND window, UINT message, WPARAM first, LPARAM second) {
    const HWND edit = script_edit(window);
    switch (message) {
        case WM_CREATE: ScriptCreateEdit(window); return 0;
        case WM_DESTROY:
            ScriptFileCommand(window, nullptr, kFileFreeName);
            ScriptNotify(window, nullptr);
            return 0;
        case WM_SIZE: MoveWindow(edit, 0, 0, LOWORD(second), HIWORD(second), TRUE); return 0;
        case WM_SETFOCUS: SetFocus(GetWindow(window, GW_CHILD)); break;
        case WM_CLOSE:
        case WM_QUERYENDSESSION: ScriptFileCommand(window, nullptr, kFileSaveCheck); break;
        case WM_COMMAND: script_command(window, edit, first); return 0;
        case WM_INITMENUPOPUP:
            if (LOWORD(second) == 1)
                CheckMenuItem(GetMenu(window), kCmdExecution,
                              record_word(window, kExecute) ? MF_CHECKED : MF_UNCHECKED);
            return 0;
        default: break;
    }
    return DefWindowProcA(window, message, first, second);
}

}  // namespace
}  // namespace vl::script

// Both run host commands and file work that need memory; without it the
// call does nothing and answers 0.
extern "C" intptr_t VLAPI KelText(VL_HWND window, intptr_t value, intptr_t text, uint32_t code) noexcept {
    return vl::guarded<intptr_t>(0, [&] { return vl::script::kel_text(window, value, text, code); });
}

extern "C" LRESULT VLAPI EditWndProc(HWND window, UINT message, WPARAM first, LPARAM second) noexcept {
    return vl::guarded<LRESULT>(0, [&] { return vl::script::edit_window(window, message, first, second); });
}
