// The edit control of the script window: what Enter does with the text.

#include <cstring>

#include "internal/guard.h"
#include "script/script_win32.h"

namespace vl::script {

HGLOBAL ScriptGetText(HWND edit, uint32_t length, char** out) {
    *out = nullptr;
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, static_cast<SIZE_T>(length) + 1);
    if (!block) return nullptr;
    auto* text = static_cast<char*>(GlobalLock(block));
    if (!text) {
        GlobalFree(block);
        return nullptr;
    }
    GetWindowTextA(edit, text, static_cast<int>(length) + 1);
    *out = text;
    return block;
}

void ScriptAppendText(const char* text, HWND edit) {
    SendMessageA(edit, EM_SETSEL, kTextEnd, kTextEnd);
    SendMessageA(edit, EM_REPLACESEL, 0, reinterpret_cast<LPARAM>(text));
}

namespace {

// The command block of one Enter key, or null when memory runs out; the
// last character and the selection flag come back through `line`.
HGLOBAL ScriptGetCurrentLine(CurrentLine& line, HWND edit) {
    line = CurrentLine{};
    const auto selection = static_cast<DWORD>(SendMessageA(edit, EM_GETSEL, 0, 0));
    const uint16_t s = LOWORD(selection);
    const uint16_t e = HIWORD(selection);
    char* copy = nullptr;
    const HGLOBAL copy_block = ScriptGetText(edit, e, &copy);
    if (!copy_block) return nullptr;
    line = current_line(std::string_view(copy, strnlen(copy, e)), s, e);
    if (line.selection) SendMessageA(edit, EM_SETSEL, kTextEnd, kTextEnd);
    GlobalUnlock(copy_block);
    GlobalFree(copy_block);

    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, line.command.size() + 1);
    if (!block) return nullptr;
    auto* command = static_cast<char*>(GlobalLock(block));
    if (!command) {
        GlobalFree(block);
        return nullptr;
    }
    std::memcpy(command, line.command.data(), line.command.size());
    GlobalUnlock(block);
    return block;
}

void send_char(HWND edit, char c) { SendMessageA(edit, WM_CHAR, static_cast<unsigned char>(c), 0); }

LRESULT edit_control(HWND edit, UINT message, WPARAM first, LPARAM second) {
    const HWND window = GetParent(edit);
    const auto own = reinterpret_cast<WNDPROC>(record_pointer(window, kEditProc));
    if (message == WM_KEYDOWN && first == VK_RETURN && record_word(window, kExecute) != 0) {
        CurrentLine line;
        const HGLOBAL block = ScriptGetCurrentLine(line, edit);
        const char* command = block ? static_cast<const char*>(GlobalLock(block)) : nullptr;
        switch (enter_action(line)) {
            case EnterAction::kRunSelection:
                if (command && ScriptNotify(window, command) != 0) ScriptAppendText(kCommandError.data(), edit);
                break;
            case EnterAction::kLineBreak: send_char(edit, '\r'); break;
            case EnterAction::kRunLine:
                send_char(edit, ';');
                send_char(edit, '\r');
                if (command && ScriptNotify(window, command) != 0) ScriptAppendText(kCommandError.data(), edit);
                break;
        }
        if (block) {
            GlobalUnlock(block);
            GlobalFree(block);
        }
        // Takes back the line break just made, or the last character of
        // what the host appended; the queued character 13 restores it.
        if (!line.selection) send_char(edit, '\b');
    }
    if (!own) return DefWindowProcA(edit, message, first, second);
    return CallWindowProcA(own, edit, message, first, second);
}

}  // namespace
}  // namespace vl::script

extern "C" LRESULT VLAPI MyEditProc(HWND edit, UINT message, WPARAM first, LPARAM second) noexcept {
    // Without memory for the line the key does nothing.
    return vl::guarded<LRESULT>(0, [&] { return vl::script::edit_control(edit, message, first, second); });
}
