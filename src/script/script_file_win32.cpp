// The script window's files: New, Open, Save, Save As, the save question
// and the modified mark.

#include <cstring>
#include <string>

#include "internal/host.h"
#include "platform/platform.h"
#include "script/script_win32.h"

namespace vl::script {
namespace {

// Marks a window whose file had line feeds alone, so Save writes them so.
constexpr char kLineFeedsProp[] = "VorlanScriptLineFeeds";

constexpr uint32_t kGenericRead = VL_FILE_READ;
constexpr uint32_t kGenericReadWrite = VL_FILE_READ | VL_FILE_WRITE;
constexpr uint32_t kShareReadWrite = VL_FILE_SHARE_READ_WRITE;
constexpr uint32_t kOpenExisting = VL_FILE_OPEN_EXISTING;

std::string load_text(uint32_t id) {
    char buffer[121] = {};
    platform::load_string(id, buffer);
    return buffer;
}

HGLOBAL name_block(HWND window) { return reinterpret_cast<HGLOBAL>(record_pointer(window, kFileName)); }

void free_name(HWND window) {
    if (const HGLOBAL block = name_block(window)) GlobalFree(block);
    set_record_pointer(window, kFileName, 0);
}

// Makes the name block when there is none and copies `name` in, cut to
// what the block holds.
void store_name(HWND window, const char* name) {
    HGLOBAL block = name_block(window);
    if (!block) {
        block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, kNameBlockSize);
        if (!block) return;
        set_record_pointer(window, kFileName, reinterpret_cast<LONG_PTR>(block));
    }
    if (auto* text = static_cast<char*>(GlobalLock(block))) {
        const std::size_t length = strnlen(name, kNameBlockSize - 1);
        std::memcpy(text, name, length);
        text[length] = '\0';
        GlobalUnlock(block);
    }
}

std::string stored_name(HWND window) {
    std::string name;
    if (const HGLOBAL block = name_block(window)) {
        if (const auto* text = static_cast<const char*>(GlobalLock(block))) {
            name.assign(text, strnlen(text, kNameBlockSize));
            GlobalUnlock(block);
        }
    }
    return name;
}

void host_command(HWND window, uint32_t id) {
    const std::string command = load_text(id);
    script_state.bScriptBusy = true;
    ScriptNotify(window, command.c_str());
    script_state.bScriptBusy = false;
}

void save_check(HWND window) {
    if (const auto host = reinterpret_cast<VL_HOSTPROC>(record_pointer(window, kHost))) {
        if (host(GetParent(window), host::SWM_QUERYSAVE, 0, 0) != 0) return;
    }
    if (record_word(window, kModified) == 0) return;
    const std::string question = load_text(kStrSaveQuestion);
    const std::string caption = load_text(kStrQuestionCaption);
    if (MessageBoxA(nullptr, question.c_str(), caption.c_str(), MB_TASKMODAL | MB_ICONQUESTION | MB_YESNO) == IDYES)
        ScriptFileCommand(window, nullptr, kCmdSave);
    else
        set_record_word(window, kModified, 0);
}

void open_named(HWND window, HWND edit, const char* name) {
    // A file too large for the window leaves the window as it was, name
    // and all.
    const std::string old_name = stored_name(window);
    const bool had_name = name_block(window) != nullptr;
    store_name(window, name);
    const platform::FileHandle file =
        KELUTIL_32FileOpen(stored_name(window).c_str(), kGenericRead, kShareReadWrite, kOpenExisting);
    if (file < 0) return;
    const uint32_t file_size = KELUTIL_JustFileSize(file);
    if (file_size > kMaxScriptFile) {
        platform::file_close_handle(file);
        if (had_name)
            store_name(window, old_name.c_str());
        else
            free_name(window);
        const std::string message = load_text(kStrFileTooLarge);
        const std::string caption = load_text(kStrQuestionCaption);
        MessageBoxA(window, message.c_str(), caption.c_str(), MB_ICONHAND);
        return;
    }
    const uint32_t size = open_read_size(file_size);
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, static_cast<SIZE_T>(size) + 1);
    if (!block) {
        platform::file_close_handle(file);
        return;
    }
    auto* bytes = static_cast<char*>(GlobalLock(block));
    if (!bytes) {
        platform::file_close_handle(file);
        GlobalFree(block);
        return;
    }
    // A short read is no error: what came in stands.
    const int32_t got = platform::file_lread(file, bytes, size);
    platform::file_close_handle(file);
    const EditText text = edit_text_from_file(std::string_view(bytes, got > 0 ? static_cast<std::size_t>(got) : 0));
    GlobalUnlock(block);
    GlobalFree(block);

    const HGLOBAL shown = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, text.text.size() + 1);
    if (!shown) return;
    if (auto* p = static_cast<char*>(GlobalLock(shown))) {
        std::memcpy(p, text.text.data(), text.text.size());
        GlobalUnlock(shown);
    }
    ScriptSetText(edit, shown);
    GlobalFree(shown);
    if (text.lf_only)
        SetPropA(window, kLineFeedsProp, reinterpret_cast<HANDLE>(1));
    else
        RemovePropA(window, kLineFeedsProp);
}

// Answers true when the whole text went into the file.
bool ScriptWriteFile(HWND window, const char* name) {
    const HWND edit = script_edit(window);
    if (!edit) return false;
    const platform::FileHandle file = KELUTIL_32FileCreate(name, kGenericReadWrite, kShareReadWrite);
    if (file < 0) return false;
    const auto length = static_cast<uint32_t>(GetWindowTextLengthA(edit));
    char* text = nullptr;
    const HGLOBAL block = ScriptGetText(edit, length, &text);
    if (!block) {
        platform::file_close_handle(file);
        return false;
    }
    const std::string bytes =
        file_text_from_edit(std::string_view(text, strnlen(text, length)), GetPropA(window, kLineFeedsProp) != nullptr);
    const int32_t written = platform::file_lwrite(file, bytes.data(), static_cast<uint32_t>(bytes.size()));
    platform::file_close_handle(file);
    GlobalUnlock(block);
    GlobalFree(block);
    if (written < 0 || static_cast<std::size_t>(written) != bytes.size()) return false;
    set_record_word(window, kModified, 0);
    return true;
}

void save_as(HWND window) {
    if (script_state.bScriptBusy) return;
    host_command(window, kStrSaveAsCommand);
}

void save(HWND window, HWND edit, const char* name) {
    if (name && *name) {
        store_name(window, name);
    } else if (!name_block(window)) {
        save_as(window);
        return;
    }
    if (ScriptWriteFile(window, stored_name(window).c_str())) {
        SendMessageA(edit, EM_SETMODIFY, 0, 0);
        return;
    }
    save_as(window);
}

}  // namespace

void ScriptSetText(HWND edit, HGLOBAL block) {
    const HWND window = GetParent(edit);
    set_record_word(window, kModified, 0);
    if (block) {
        const auto* text = static_cast<const char*>(GlobalLock(block));
        if (!text) return;
        SetWindowTextA(edit, text);
        GlobalUnlock(block);
    } else {
        SetWindowTextA(edit, "");
    }
    InvalidateRect(edit, nullptr, TRUE);
    UpdateWindow(edit);
    SetFocus(edit);
}

int32_t ScriptFileCommand(HWND window, const char* name, uint32_t code) {
    const HWND edit = script_edit(window);
    const HWND parent = GetParent(window);
    bool disabled = false;
    if (parent && IsWindowEnabled(parent)) {
        EnableWindow(parent, FALSE);
        disabled = true;
    }
    switch (code) {
        case kFileSaveCheck: save_check(window); break;
        case kFileFreeName:
            free_name(window);
            RemovePropA(window, kLineFeedsProp);
            break;
        case kCmdNew:
            free_name(window);
            RemovePropA(window, kLineFeedsProp);
            ScriptSetText(edit, nullptr);
            break;
        case kCmdOpen:
            if (name && *name) {
                open_named(window, edit, name);
            } else if (!script_state.bScriptBusy) {
                save_check(window);
                host_command(window, kStrOpenCommand);
            }
            break;
        case kCmdSave: save(window, edit, name); break;
        case kCmdSaveAs: save_as(window); break;
        default: break;
    }
    if (disabled) EnableWindow(parent, TRUE);
    return 0;
}

}  // namespace vl::script
