// The open and save entries: their commands, the first view of their
// dialogs, and what a dialog that ended well leaves for the next one.

#include <algorithm>
#include <array>
#include <cstring>

#include "filedlg/dialogs.h"
#include "filedlg/filedlg_state.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::filedlg {
namespace {

constexpr uint32_t kOpenFile = VL_FD_OPEN_FILE;
constexpr uint32_t kSetOptions = VL_FD_SET_OPTIONS;
constexpr uint32_t kDirectory = VL_FD_DIRECTORY;
constexpr uint32_t kGetOptions = VL_FD_GET_OPTIONS;
constexpr uint32_t kExport = VL_FD_EXPORT;
constexpr uint32_t kPreset = VL_FD_PRESET;
constexpr uint32_t kComment = VL_FD_COMMENT;
constexpr uint32_t kExplorer = VL_FD_EXPLORER;

constexpr int32_t kCancelledOpen = VL_FD_CANCELLED;
constexpr int32_t kFailed = VL_FD_NO_DRIVE;

// The longest name the save dialog's file buffer is fitted to.
constexpr std::size_t kFittedName = 266;

enum PathOp : uint32_t { kFind = VL_PATH_FIND };
enum TypeOp : uint32_t { kSelect = VL_TYPE_SELECT, kSetExtension = VL_TYPE_SET_EXTENSION };

template <std::size_t N>
void set_text(std::array<char, N>& to, const char* from) noexcept {
    const std::size_t n = from ? strnlen(from, N - 1) : 0;
    if (n) std::memmove(to.data(), from, n);
    to[n] = '\0';
}

bool has_text(const char* text) noexcept { return text && *text; }

void look_up_last_ext() noexcept { KELUTIL_PathControl(kFind, szCurrentDir.data(), szLastExt.data(), 0); }

// The preset: where the next dialog opens.
int32_t preset(const char* name, const char* spec) noexcept {
    if (has_text(spec)) {
        set_text(szLastExt, spec);
        bExtPreset = true;
    }
    bPresetActive = true;
    if (has_text(name)) {
        set_text(szCurrentDir, name);
        return 0;
    }
    if (!bExtPreset) return 0;
    // No host is asked while a preset is active.
    return KELUTIL_PathControl(kFind, szCurrentDir.data(), szLastExt.data(), 0) < 0 ? 1 : 0;
}

// The extension behind the pattern list's first dot becomes row 1's.
void spec_to_first_row(char* spec) noexcept {
    if (char* dot = std::strchr(spec, '.')) KELUTIL_Fdlog_Str(dot, 1, kSetExtension);
}

// Length of the first extension of `spec`, its dot included, up to a blank.
std::size_t first_extension_length(const char* spec) noexcept {
    const char* dot = spec ? std::strchr(spec, '.') : nullptr;
    return dot ? std::strcspn(dot, " \t") : 0;
}

// The save dialog's file buffer fitted to szLastExt.
void fit_save_name(std::span<char> file, const char* spec) noexcept {
    char* const dot = std::strrchr(file.data(), '.');
    if (dot && platform::compare_nocase(dot + 1, szLastExt.data()) == 0) {
        // A name of this type: its extension at most 3 characters, the name
        // in front of it at most kFittedName, and it goes to the directory
        // of its type.
        if (std::strlen(dot + 1) > 3) dot[4] = '\0';
        const std::size_t front = static_cast<std::size_t>(dot - file.data());
        if (front > kFittedName) std::memmove(file.data() + kFittedName, dot, std::strlen(dot) + 1);
        look_up_last_ext();
        return;
    }
    file[std::min(kFittedName, file.size() - 1)] = '\0';
    if (spec && first_extension_length(spec) == 4) return;
    std::size_t at = std::strlen(file.data());
    const auto append = [&](const char* text) {
        const std::size_t n = std::min(std::strlen(text), file.size() - 1 - at);
        std::memcpy(file.data() + at, text, n);
        at += n;
        file[at] = '\0';
    };
    if (szLastExt[0] != '.') append(".");
    append(szLastExt.data());
}

// "*." and the extension last used: the save dialog's one type.
void make_spec_pattern() noexcept {
    // Cut to the pattern's room, as any text set into it is.
    const std::size_t n = strnlen(szLastExt.data(), szSpecPattern.size() - 3);
    szSpecPattern[0] = '*';
    szSpecPattern[1] = '.';
    std::memcpy(szSpecPattern.data() + 2, szLastExt.data(), n);
    szSpecPattern[2 + n] = '\0';
}

// The title the next dialog shows: the host's, kept for the dialog under way.
const char* title_from(std::array<char, kTextRoom>& copy) noexcept {
    set_text(copy, FileDialogOptions.szTitle);
    return copy.data();
}

}  // namespace

void PrepareOpen(char* spec, uint32_t flags, DialogView& view) noexcept {
    view = DialogView{};
    if (!has_text(spec)) {
        view.show = FileTypeBuildFilter(view.filter_block, flags);
        view.filter = view.filter_block.data();
    } else {
        view.show = 1;
        spec_to_first_row(spec);
        FilterFromSpec(szSpecFilter, spec);
        view.filter = szSpecFilter.data();
        FileExtensionOf(szLastExt.data(), spec);
        look_up_last_ext();
    }
    view.directory = szCurrentDir.data();
    view.default_ext = szLastExt.data();
    view.title = title_from(szOpenTitle);
    if (dwNoTitle == kNoTitle) view.title = nullptr;
    dwNoTitle = 0;
    if (flags & kExplorer) {
        view.hook = Hook::kExplorer;
        view.kind = kExplorerOpen;
        view.template_id = kExplorerOpenTemplate;
        view.flags = kExplorerFlags;
    } else {
        view.hook = Hook::kOld;
        view.template_id = kOpenTemplate;
        view.flags = kOldOpenFlags;
    }
}

void PrepareSave(const char* name, char* spec, uint32_t flags, DialogView& view) noexcept {
    view = DialogView{};
    view.save = true;
    if (!has_text(spec)) {
        view.show = FileTypeBuildFilter(view.filter_block, flags);
        view.filter = view.filter_block.data();
        set_text(view.file, name);
        fit_save_name(view.file, nullptr);
    } else {
        view.show = 1;
        spec_to_first_row(spec);
        FileExtensionOf(szLastExt.data(), spec);
        make_spec_pattern();
        // The proposed name's directory is where the dialog opens.  Both
        // parts go to fixed fields, so a name too long for them is cut
        // before it is split.
        std::array<char, kPathRoom> whole{}, dir{}, last{};
        set_text(whole, name);
        KELUTIL_SeparatePath(whole.data(), dir.data(), last.data(), nullptr);
        set_text(szCurrentDir, dir.data());
        set_text(view.file, last.data());
        FilterFromSpec(szSpecFilter, szSpecPattern.data());
        view.filter = szSpecFilter.data();
        fit_save_name(view.file, spec);
    }
    view.directory = szCurrentDir.data();
    view.title = title_from(szSaveTitle);
    if (flags & kExplorer) {
        view.hook = Hook::kExplorer;
        view.flags = kExplorerFlags;
        if (flags & kExport) {
            view.kind = kExplorerExport;
            view.template_id = kExplorerExportTemplate;
        } else {
            view.default_ext = szLastExt.data();
            view.kind = kExplorerSave;
            view.template_id = kExplorerSaveTemplate;
        }
    } else {
        view.hook = Hook::kOld;
        view.flags = kOldSaveFlags;
        view.template_id = (flags & kExport) ? kExportTemplate : kSaveTemplate;
    }
}

void PrepareMulti(char* spec, DialogView& view) noexcept {
    view = DialogView{};
    FilterFromSpec(szSpecFilter, spec);
    view.filter = szSpecFilter.data();
    if (spec) FileExtensionOf(szLastExt.data(), spec);
    make_spec_pattern();
    look_up_last_ext();
    view.show = 1;
    view.directory = szCurrentDir.data();
    view.default_ext = szLastExt.data();
    view.flags = kMultiFlags;
    view.hook = Hook::kMulti;
    view.template_id = kMultiTemplate;
}

void FitToRecord(std::span<char> file) noexcept {
    if (file.empty()) return;
    const std::size_t most = std::min<std::size_t>(kRecordFileRoom - 1, file.size() - 1);
    const std::size_t length = strnlen(file.data(), file.size() - 1);
    if (length <= most) {
        file[length] = '\0';
        return;
    }
    const char* const dot = std::strrchr(file.data(), '.');
    const std::size_t ext = dot ? std::strlen(dot) : 0;
    if (ext >= most) {
        file[most] = '\0';
        return;
    }
    std::memmove(file.data() + most - ext, file.data() + length - ext, ext);
    file[most] = '\0';
}

namespace {

// The chosen path split; false when its drive does not exist.
bool take_directory(const DialogChoice& choice, bool had_spec) noexcept {
    std::array<char, kPathRoom> dir{}, file{};
    const char* const path = choice.path.data();
    if (strnlen(path, choice.path.size()) >= std::min(kPathRoom, choice.path.size())) return false;
    KELUTIL_SeparatePath(path, dir.data(), file.data(), nullptr);
    szFileName = file;
    if (!PathRootExists(dir.data())) return false;
    szCurrentDir = dir;
    KELUTIL_Fdlog_Str(nullptr, choice.filter_index, kSelect);
    if (!had_spec) PathRememberChoice(path, choice.filter_index);
    return true;
}

}  // namespace

int32_t FinishOpen(const DialogChoice& choice, bool had_spec, uint32_t flags, char* name) noexcept {
    FileDialogOptions.dwReadOnly = choice.read_only ? 1 : 0;
    if (!take_directory(choice, had_spec)) return kFailed;
    // The host opens the short name from the chosen directory.
    platform::change_directory(szCurrentDir.data());
    if (name) std::strcpy(name, szFileName.data());
    if (!(flags & kOpenFile)) return 0;
    return KELUTIL_32FileOpen(szFileName.data(), VL_FILE_READ, VL_FILE_SHARE_READ_WRITE, VL_FILE_OPEN_EXISTING);
}

int32_t FinishSave(const DialogChoice& choice, bool had_spec, char* name) noexcept {
    if (!take_directory(choice, had_spec)) return kFailed;
    if (name) std::strcpy(name, choice.path.data());
    return 0;
}

}  // namespace vl::filedlg

using namespace vl;
using namespace vl::filedlg;

extern "C" int32_t VLAPI KELUTIL_FileDialog(VL_HWND owner, char* name, char* spec, uint32_t flags) noexcept {
    if (reinterpret_cast<uintptr_t>(name) == kNoTitle) {
        dwNoTitle = kNoTitle;
        return 0;
    }
    if (flags & kSetOptions) {
        if (name) std::memcpy(&FileDialogOptions, name, sizeof FileDialogOptions);
        lpfnOptionHost = reinterpret_cast<host::HostProc>(spec);
        hOptionOwner = owner;
        return 0;
    }
    if (flags & kGetOptions) {
        if (name) std::memcpy(name, &FileDialogOptions, sizeof FileDialogOptions);
        return 0;
    }
    if (flags & kDirectory) {
        if (!name) return 0;
        if (!*name) look_up_last_ext();
        std::strcpy(name, szCurrentDir.data());
        return 0;
    }
    if (flags & kPreset) return preset(name, spec);
    DialogView view;
    PrepareOpen(spec, flags, view);
    DialogChoice choice;
    const int32_t result =
        RunFileDialog(owner, view, choice) ? FinishOpen(choice, has_text(spec), flags, name) : kCancelledOpen;
    bPresetActive = false;
    return result;
}

extern "C" int32_t VLAPI KELUTIL_FileSaveAs(VL_HWND owner, char* name, char* spec, uint32_t flags) noexcept {
    if (flags & kComment) {
        switch (static_cast<uint16_t>(flags)) {
            case VL_FD_COMMENT_READ:
                if (name) std::strcpy(name, szFileComment.data());
                break;
            case VL_FD_COMMENT_SET: set_text(szFileComment, name); break;
            case VL_FD_COMMENT_ENABLE:
                if (name) bInfoEnabled = static_cast<signed char>(name[0]);
                break;
            default: break;
        }
        return 0;
    }
    if (flags & kDirectory) {
        if (name) std::memcpy(&FileDialogOptions, name, sizeof FileDialogOptions);
        return 0;
    }
    if (flags & kGetOptions) {
        if (name) std::memcpy(name, &FileDialogOptions, sizeof FileDialogOptions);
        return 0;
    }
    DialogView view;
    PrepareSave(name, spec, flags, view);
    DialogChoice choice;
    const int32_t result = RunFileDialog(owner, view, choice) ? FinishSave(choice, has_text(spec), name) : kFailed;
    bPresetActive = false;
    return result;
}
