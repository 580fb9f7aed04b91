// The file dialogs on the platform's common dialogs: the records, the
// hooks, the comment line, the options and the Files to Open list.

#include <windows.h>

#include <commdlg.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "filedlg/dialogs.h"
#include "filedlg/filedlg_state.h"
#include "internal/guard.h"
#include "internal/host.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::filedlg {
namespace {

// Controls of the templates, and the platform's standard ones.
enum Control : int {
    kSavePush = 101,
    kComment = 103,
    kShowInfo = 104,
    kIncludeHeader = 1001,
    kExportSection = 1002,
    kSeparatorCombo = 1003,
    kReadOnlyBox = 1040,
    kDirectoryLabel = 1088,
    kFileList = 1120,
    kDirectoryList = 1121,
    kTypeCombo = 1136,
    kExplorerName = 1148,
    kNameEdit = 1152,
    kChosenList = 1537,
    kAddFile = 1538,
    kRemove = 1539,
    kOption = 3004,
    kPartialImport = 3007,
};

// FileInfoCommand's modes.
enum Mode : int32_t {
    kLayout = 3,
    kReadComment = 4,
    kWriteComment = 5,
    kShowHead = 6,
    kFollowBox = 104,
    kExplorerOn = 16384,
    kExplorerOff = 32768,
};

constexpr int kMarginOld = 5;       // below the top of the Comments line when closed
constexpr int kMarginExplorer = 9;  // the same at the start of an Explorer-style dialog

// The records of the open, the save and the multiple-file dialog, and the
// one under way.
OPENFILENAMEA open_record{};
OPENFILENAMEA save_record{};
OPENFILENAMEA multi_record{};
OPENFILENAMEA* active_record = nullptr;
// The multiple-file dialog's names go here; its result is the list.
std::array<char, 8192> multi_names{};

HINSTANCE library_instance() noexcept { return reinterpret_cast<HINSTANCE>(platform::module_handle()); }

// Control 101 marks a save template.
bool is_save_template(HWND dialog) noexcept { return GetDlgItem(dialog, kSavePush) != nullptr; }

DialogRect rect_of(HWND window) noexcept {
    RECT r{};
    if (window) GetWindowRect(window, &r);
    return {r.left, r.top, r.right, r.bottom};
}

void resize(HWND window, int width, int height) noexcept {
    SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
}

// The window whose size the Comments line changes.
HWND sized_window(HWND dialog) noexcept { return bExplorerDialog ? GetParent(dialog) : dialog; }

void set_text_of(HWND dialog, int id, const char* text) noexcept { SetDlgItemTextA(dialog, id, text); }

// A row of a list box; without memory for it, an empty text.
std::string list_text(HWND dialog, int list, int row) noexcept {
    return guarded(std::string(), [&] {
        const LRESULT length = SendDlgItemMessageA(dialog, list, LB_GETTEXTLEN, static_cast<WPARAM>(row), 0);
        if (length == LB_ERR || length < 0) return std::string();
        std::string text(static_cast<std::size_t>(length) + 1, '\0');
        SendDlgItemMessageA(dialog, list, LB_GETTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text.data()));
        text.resize(std::strlen(text.c_str()));
        return text;
    });
}

// ---- The comment line ------------------------------------------------------

void layout(HWND dialog) noexcept {
    if (!bInfoEnabled) {
        bInfoShown = 0;
        szFileComment[0] = '\0';
    }
    HWND const comment = GetDlgItem(dialog, kComment);
    if (!comment) return;
    HWND const window = sized_window(dialog);
    rcDialogFull = rect_of(window);
    const DialogRect line = rect_of(comment);
    const int width = rcDialogFull.right - rcDialogFull.left;
    HWND const box = GetDlgItem(dialog, kShowInfo);
    const bool save = is_save_template(dialog);
    int32_t open = 1;
    if (box) {
        CheckDlgButton(window, kShowInfo, bInfoShown ? BST_CHECKED : BST_UNCHECKED);
        ShowWindow(box, bInfoEnabled ? SW_SHOW : SW_HIDE);
        open = bInfoShown;
    } else if (save) {
        open = bInfoEnabled;
    }
    if (!bExplorerDialog) {
        if (!open) resize(window, width, line.top - rcDialogFull.top + kMarginOld);
        return;
    }
    // The box lies in the library's part while the check went to the
    // platform's dialog: the line starts closed there.
    const bool closed = box ? IsDlgButtonChecked(dialog, kShowInfo) != BST_CHECKED : (save && !open);
    if (closed) resize(window, width, line.top - rcDialogFull.top + kMarginExplorer);
}

void follow_box(HWND dialog) noexcept {
    HWND const window = sized_window(dialog);
    const DialogRect now = rect_of(window);
    const DialogRect line = rect_of(GetDlgItem(dialog, kComment));
    const int width = rcDialogFull.right - rcDialogFull.left;
    if (IsDlgButtonChecked(dialog, kShowInfo) != BST_CHECKED) {
        resize(window, width, line.top - now.top + kMarginOld);
        bInfoShown = 0;
    } else {
        resize(window, width, rcDialogFull.bottom - rcDialogFull.top);
        bInfoShown = 1;
    }
}

void show_head(HWND dialog) noexcept {
    if (!bInfoShown || is_save_template(dialog)) return;
    std::array<char, kSelectedPathRoom> path{};
    if (bExplorerDialog) {
        const LRESULT got =
            SendMessageA(GetParent(dialog), CDM_GETFILEPATH, path.size(), reinterpret_cast<LPARAM>(path.data()));
        if (got > static_cast<LRESULT>(path.size())) return;
        if (got <= 0) path[0] = '\0';
    } else if (FileListSelectedPath(dialog, path, -1) != 0) {
        set_text_of(dialog, kComment, "");
        return;
    }
    set_text_of(dialog, kComment, "");
    if (!bInfoEnabled) return;
    std::array<char, kHeadRoom> comment{};
    if (ReadFileComment(path.data(), comment)) set_text_of(dialog, kComment, comment.data());
}

// ---- Options -----------------------------------------------------------------

// Host texts of the block end inside their fields, whatever the host wrote.
template <std::size_t N>
char* bounded(char (&text)[N]) noexcept {
    text[N - 1] = '\0';
    return text;
}

void FileOptionButtons(HWND window, UINT message, int id, uint32_t value, char* text) noexcept {
    if (message == WM_INITDIALOG) {
        HWND const button = GetDlgItem(window, id);
        if (!button) {
            if (id == kOption) dwOptionAction = 0;
            return;
        }
        ShowWindow(button, SW_HIDE);
        if (id == kOption) {
            dwOptionAction = OptionActionOf(text);
            if (dwOptionAction) ShowWindow(button, SW_SHOW);
        } else if (text && *text) {
            ShowWindow(button, SW_SHOW);
            SetWindowTextA(button, text);
            CheckDlgButton(window, id, value ? BST_CHECKED : BST_UNCHECKED);
        }
        return;
    }
    if (message == WM_COMMAND && id == kOption && dwOptionAction == kActionImportAscii && lpfnOptionHost)
        lpfnOptionHost(window, host::FDM_OPTION, reinterpret_cast<WPARAM>(host::kWorksheetEditAscii), 0);
}

void FileOptionsHook(HWND dialog, UINT message, WPARAM first, LPARAM) noexcept {
    auto& options = FileDialogOptions;
    if (message == WM_INITDIALOG) {
        FileOptionButtons(dialog, message, kOption, 0, bounded(options.szOptionName));
        FileOptionButtons(dialog, message, kPartialImport, options.dwPartialImport, bounded(options.szPartialLabel));
        if (GetDlgItem(dialog, kIncludeHeader)) CheckDlgButton(dialog, kIncludeHeader, options.dwIncludeHeader ? 1 : 0);
        if (GetDlgItem(dialog, kExportSection)) CheckDlgButton(dialog, kExportSection, options.dwExportSection ? 1 : 0);
        if (GetDlgItem(dialog, kSeparatorCombo)) {
            SendDlgItemMessageA(dialog, kSeparatorCombo, CB_RESETCONTENT, 0, 0);
            for (const Separator& s : kSeparators)
                SendDlgItemMessageA(dialog, kSeparatorCombo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(s.shown));
            const int32_t index = SeparatorIndex(bounded(options.szSeparator));
            if (index >= 0) SendDlgItemMessageA(dialog, kSeparatorCombo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        }
        return;
    }
    if (message != WM_COMMAND) return;
    switch (LOWORD(first)) {
        case kIncludeHeader: options.dwIncludeHeader = IsDlgButtonChecked(dialog, kIncludeHeader) == BST_CHECKED; break;
        case kExportSection: options.dwExportSection = IsDlgButtonChecked(dialog, kExportSection) == BST_CHECKED; break;
        case kSeparatorCombo: {
            const LRESULT index = SendDlgItemMessageA(dialog, kSeparatorCombo, CB_GETCURSEL, 0, 0);
            if (index >= 0 && index < static_cast<LRESULT>(kSeparators.size()))
                std::strcpy(options.szSeparator, kSeparators[static_cast<std::size_t>(index)].value);
            break;
        }
        case kOption: FileOptionButtons(hOptionOwner, WM_COMMAND, kOption, 0, nullptr); break;
        case kPartialImport: options.dwPartialImport = IsDlgButtonChecked(dialog, kPartialImport) == BST_CHECKED; break;
        default: break;
    }
}

// ---- Types -------------------------------------------------------------------

void FileReadOnlyLabel(HWND platform_dialog) noexcept {
    const LRESULT selection = SendDlgItemMessageA(platform_dialog, kTypeCombo, CB_GETCURSEL, 0, 0);
    std::array<char, kExtensionRoom> ext{};
    KELUTIL_Fdlog_Str(ext.data(), static_cast<int32_t>(selection) + 1, VL_TYPE_EXTENSION);
    HWND const box = GetDlgItem(platform_dialog, kReadOnlyBox);
    if (!box) return;
    const int32_t label = ReadOnlyLabelOf(ext.data());
    std::array<char, kTextRoom> text{};
    platform::load_string(static_cast<uint32_t>(label ? label : kStringReadOnly), text);
    EnableWindow(box, label != 0);
    if (label == kStringNoUpdate) {
        const DialogRect r = rect_of(box);
        resize(box, 2 * (r.right - r.left), r.bottom - r.top);
    }
    SetWindowTextA(box, text.data());
}

// The Explorer-style dialog keeps its name in an edit control of its own
// number, or in a combo box.
void apply_name_explorer(HWND platform_dialog) noexcept {
    const int id = GetDlgItem(platform_dialog, kNameEdit) ? kNameEdit : kExplorerName;
    const LRESULT selection = SendDlgItemMessageA(platform_dialog, kTypeCombo, CB_GETCURSEL, 0, 0);
    if (LOWORD(selection) == 65535) return;
    std::array<char, kNameRoom> name{};
    GetDlgItemTextA(platform_dialog, id, name.data(), static_cast<int>(kNameRoom - 1));
    if (!FitNameToType(static_cast<int32_t>(LOWORD(selection)), name, true)) return;
    SetDlgItemTextA(platform_dialog, id, name.data());
}

void FileExplorerInfo(HWND dialog, UINT message, int id) noexcept {
    if (message == WM_INITDIALOG) {
        FileInfoCommand(dialog, nullptr, kExplorerOn);
        FileInfoCommand(dialog, nullptr, kLayout);
        if (is_save_template(dialog)) FileInfoCommand(dialog, nullptr, kWriteComment);
        return;
    }
    switch (id) {
        case IDOK:
            if (is_save_template(dialog) && active_record && active_record->lpstrFile) {
                std::array<char, kExtensionRoom> ext{};
                KELUTIL_Fdlog_Str(ext.data(), static_cast<int32_t>(active_record->nFilterIndex), VL_TYPE_EXTENSION);
                if (ext[0]) check_extension(active_record->lpstrFile, ext.data(), 0);
            }
            FileInfoCommand(dialog, nullptr, kReadComment);
            break;
        case kShowInfo:
            FileInfoCommand(dialog, nullptr, kFollowBox);
            FileInfoCommand(dialog, nullptr, kShowHead);
            break;
        case kFileList: FileInfoCommand(dialog, nullptr, kShowHead); break;
        default: break;
    }
}

// ---- Files to Open ---------------------------------------------------------------

// Adds the selected files to the list; 1 when nothing was selected.
int32_t MultiFileAdd(HWND dialog) noexcept {
    const LRESULT count = SendDlgItemMessageA(dialog, kFileList, LB_GETSELCOUNT, 0, 0);
    if (count == LB_ERR || count <= 0) return 1;
    // Without memory for the selection nothing is added.
    std::vector<int> rows;
    if (!guarded(false, [&] { return rows.resize(static_cast<std::size_t>(count)), true; })) return 1;
    const LRESULT got = SendDlgItemMessageA(dialog, kFileList, LB_GETSELITEMS, static_cast<WPARAM>(count),
                                            reinterpret_cast<LPARAM>(rows.data()));
    if (got == LB_ERR || got <= 0) return 1;
    rows.resize(static_cast<std::size_t>(got));
    std::array<char, kSelectedPathRoom> path{};
    for (const int row : rows) {
        if (SendDlgItemMessageA(dialog, kChosenList, LB_GETCOUNT, 0, 0) >= kFileListRows) break;
        if (FileListSelectedPath(dialog, path, row) != 0) continue;
        if (std::strlen(path.data()) >= kFileRowRoom) continue;
        SendDlgItemMessageA(dialog, kChosenList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(path.data()));
    }
    return 0;
}

void take_chosen_list(HWND dialog) noexcept {
    LRESULT count = SendDlgItemMessageA(dialog, kChosenList, LB_GETCOUNT, 0, 0);
    if (count == LB_ERR || count < 0) count = 0;
    if (count > kFileListRows) count = kFileListRows;
    FileListFill(static_cast<int32_t>(count), [dialog](int32_t i, std::span<char> row) {
        const std::string text = list_text(dialog, kChosenList, i);
        if (text.size() < row.size()) std::memcpy(row.data(), text.c_str(), text.size() + 1);
    });
}

void remove_chosen(HWND dialog) noexcept {
    const LRESULT count = SendDlgItemMessageA(dialog, kChosenList, LB_GETSELCOUNT, 0, 0);
    if (count == LB_ERR || count <= 0) return;
    // Without memory for the selection nothing is removed.
    std::vector<int> rows;
    if (!guarded(false, [&] { return rows.resize(static_cast<std::size_t>(count)), true; })) return;
    const LRESULT got = SendDlgItemMessageA(dialog, kChosenList, LB_GETSELITEMS, static_cast<WPARAM>(count),
                                            reinterpret_cast<LPARAM>(rows.data()));
    // From the last, so the numbers of the others stay.
    for (LRESULT i = got - 1; i >= 0; --i)
        SendDlgItemMessageA(dialog, kChosenList, LB_DELETESTRING,
                            static_cast<WPARAM>(rows[static_cast<std::size_t>(i)]), 0);
}

// The caption of a dialog template of the library, for a dialog that was
// given no title: the platform would otherwise show its own.
std::string caption_of_template(int32_t id) {
    HRSRC const found = FindResourceA(library_instance(), MAKEINTRESOURCEA(id), MAKEINTRESOURCEA(5));
    HGLOBAL const loaded = found ? LoadResource(library_instance(), found) : nullptr;
    const auto* words = loaded ? static_cast<const WORD*>(LockResource(loaded)) : nullptr;
    const DWORD size = found ? SizeofResource(library_instance(), found) / sizeof(WORD) : 0;
    if (!words || size < 9) return {};
    // Behind the fixed part: the menu and the class (a number or a text),
    // then the caption.
    std::size_t at = 9;
    for (int field = 0; field < 2 && at < size; ++field) {
        if (words[at] == 0xFFFF) {
            at += 2;
        } else {
            while (at < size && words[at] != 0) ++at;
            ++at;
        }
    }
    std::string caption;
    for (; at < size && words[at] != 0; ++at) caption += static_cast<char>(words[at] < 256 ? words[at] : '?');
    return caption;
}

std::string template_caption(int32_t id) noexcept {
    return guarded(std::string(), [&] { return caption_of_template(id); });
}

// The old-style dialog puts a type's pattern into the name box after the
// hook has fitted the name to the type: the fitted name goes back once the
// platform is through.
constexpr WORD kRestoreName = 0x7F01;
std::array<char, kNameRoom> pending_name{};

void fit_name_to_new_type(HWND dialog) noexcept {
    FileTypeApplyToName(dialog, true);
    std::array<char, kNameRoom> name{};
    GetDlgItemTextA(dialog, kNameEdit, name.data(), static_cast<int>(name.size()));
    // A pattern in the box is the platform's own, not a name to keep.
    if (!name[0] || std::strpbrk(name.data(), "*?")) return;
    pending_name = name;
    PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(kTypeCombo, kRestoreName), 0);
}

void restore_name(HWND dialog) noexcept {
    if (!pending_name[0]) return;
    SetDlgItemTextA(dialog, kNameEdit, pending_name.data());
    SendDlgItemMessageA(dialog, kNameEdit, EM_SETMODIFY, 0, 0);
    pending_name[0] = '\0';
}

LPOFNHOOKPROC hook_of(Hook hook) noexcept {
    switch (hook) {
        case Hook::kExplorer: return FileExplorerHook;
        case Hook::kMulti: return MultiFileHookProc;
        default: return FileOpenHookProc;
    }
}

}  // namespace

void FileInfoCommand(HWND dialog, const char* argument, int32_t mode) noexcept {
    switch (mode) {
        case kLayout: layout(dialog); break;
        case kReadComment:
            if (is_save_template(dialog))
                GetDlgItemTextA(dialog, kComment, szFileComment.data(), static_cast<int>(szFileComment.size()));
            break;
        case kWriteComment: set_text_of(dialog, kComment, szFileComment.data()); break;
        case kShowHead: show_head(dialog); break;
        case kFollowBox: follow_box(dialog); break;
        case VL_FD_COMMENT_READ:
        case VL_FD_COMMENT_SET:
        case VL_FD_COMMENT_ENABLE:
            KELUTIL_FileSaveAs(nullptr, const_cast<char*>(argument), nullptr, static_cast<uint32_t>(mode));
            break;
        case kExplorerOn: bExplorerDialog = true; break;
        case kExplorerOff: bExplorerDialog = false; break;
        default: break;
    }
}

namespace {

// The full path of row `index` of the file list, the directory read from
// `label` or the directory list.
int32_t selected_path(HWND dialog, const char* label, std::span<char> out, int32_t index) {
    std::string dir = label;
    // A directory list whose rows are the steps of the path names the
    // directory afresh down to its selection; rows of the "[name]" form
    // carry no path, and the label stands.
    const LRESULT s = SendDlgItemMessageA(dialog, kDirectoryList, LB_GETCURSEL, 0, 0);
    if (s != LB_ERR && s >= 0 && list_text(dialog, kDirectoryList, 0).find('[') == std::string::npos) {
        dir.clear();
        for (int row = 0; row <= s; ++row) {
            std::string step = list_text(dialog, kDirectoryList, row);
            if (step.find('\\') == std::string::npos) step += '\\';
            dir += step;
        }
    }
    const std::string name = list_text(dialog, kFileList, index);
    return JoinPath(dir, name, out) ? 0 : 1;
}

}  // namespace

int32_t FileListSelectedPath(HWND dialog, std::span<char> out, int32_t index) noexcept {
    if (!out.empty()) out[0] = '\0';
    if (index < 0) {
        const LRESULT selection = SendDlgItemMessageA(dialog, kFileList, LB_GETCURSEL, 0, 0);
        if (selection == LB_ERR) return 1;
        index = static_cast<int32_t>(selection);
    }
    std::array<char, kPathRoom> label{};
    GetDlgItemTextA(dialog, kDirectoryLabel, label.data(), static_cast<int>(kPathRoom - 1));
    return guarded(1, [&] { return selected_path(dialog, label.data(), out, index); });
}

bool RunFileDialog(VL_HWND owner, DialogView& view, DialogChoice& choice) noexcept {
    OPENFILENAMEA& record = view.hook == Hook::kMulti ? multi_record : view.save ? save_record : open_record;
    record = OPENFILENAMEA{};
    record.lStructSize = OPENFILENAME_SIZE_VERSION_400A;
    record.hwndOwner = owner;
    record.hInstance = library_instance();
    record.lpstrFilter = view.filter;
    record.nFilterIndex = static_cast<DWORD>(view.show);
    if (view.hook == Hook::kMulti) {
        multi_names.fill('\0');
        record.lpstrFile = multi_names.data();
        record.nMaxFile = static_cast<DWORD>(multi_names.size());
    } else {
        FitToRecord(view.file);
        record.lpstrFile = view.file.data();
        record.nMaxFile = kRecordFileRoom;
    }
    // An empty text would be shown as it stands: the platform's own choice
    // is better then.
    record.lpstrInitialDir = view.directory && *view.directory ? view.directory : nullptr;
    record.lpstrTitle = view.title && *view.title ? view.title : nullptr;
    record.lpstrDefExt = view.default_ext && *view.default_ext ? view.default_ext : nullptr;
    record.Flags = view.flags;
    record.lCustData = static_cast<LPARAM>(view.kind);
    record.lpfnHook = hook_of(view.hook);
    record.lpTemplateName = MAKEINTRESOURCEA(view.template_id);
    // The old-style dialogs move the working directory while the user
    // browses; only a successful open moves it, and that is done afterwards.
    std::array<char, MAX_PATH + 1> working{};
    const DWORD kept = GetCurrentDirectoryA(static_cast<DWORD>(working.size()), working.data());
    OPENFILENAMEA* const outer = active_record;
    active_record = &record;
    const BOOL ok = view.save ? GetSaveFileNameA(&record) : GetOpenFileNameA(&record);
    active_record = outer;
    if (kept > 0 && kept < working.size()) SetCurrentDirectoryA(working.data());
    if (!ok) {
        CommDlgExtendedError();
        return false;
    }
    if (view.hook == Hook::kMulti) return true;
    // A name that fills the whole buffer may have been cut by the platform:
    // it can't be told from one that names another file, so it counts as
    // no choice.  An opened file must exist.
    const std::size_t n = strnlen(record.lpstrFile, kSaveFileRoom - 1);
    if (n == 0 || n >= kRecordFileRoom - 1) return false;
    if (!view.save && GetFileAttributesA(record.lpstrFile) == INVALID_FILE_ATTRIBUTES) return false;
    choice.path.fill('\0');
    std::memcpy(choice.path.data(), record.lpstrFile, n);
    choice.filter_index = static_cast<int32_t>(record.nFilterIndex);
    choice.read_only = (record.Flags & kReadOnlyBit) != 0;
    return true;
}

UINT_PTR CALLBACK FileExplorerHook(HWND dialog, UINT message, WPARAM first, LPARAM second) {
    HWND const platform_dialog = GetParent(dialog);
    switch (message) {
        case WM_INITDIALOG: {
            const auto* record = reinterpret_cast<const OPENFILENAMEA*>(second);
            const LPARAM kind = record ? record->lCustData : 0;
            if (!(kind & (kExplorerExport | kExplorerSave))) {
                bSaveExplorer = false;
                FileReadOnlyLabel(platform_dialog);
            } else {
                bSaveExplorer = true;
                ShowWindow(GetDlgItem(platform_dialog, kReadOnlyBox), SW_HIDE);
            }
            return 1;
        }
        case WM_NOTIFY: {
            const auto* note = reinterpret_cast<const OFNOTIFYA*>(second);
            switch (note ? note->hdr.code : 0u) {
                case CDN_INITDONE:
                    FileOptionsHook(dialog, WM_INITDIALOG, 0, 0);
                    FileExplorerInfo(dialog, WM_INITDIALOG, 0);
                    FileExplorerInfo(dialog, WM_COMMAND, kFileList);
                    break;
                case CDN_SELCHANGE: FileExplorerInfo(dialog, WM_COMMAND, kFileList); break;
                case CDN_TYPECHANGE:
                    if (bSaveExplorer)
                        apply_name_explorer(platform_dialog);
                    else
                        FileReadOnlyLabel(platform_dialog);
                    break;
                case CDN_FILEOK: FileExplorerInfo(dialog, WM_COMMAND, IDOK); break;
                default: break;
            }
            return 1;
        }
        case WM_COMMAND:
            switch (LOWORD(first)) {
                case kOption:
                case kPartialImport:
                case kIncludeHeader:
                case kExportSection:
                case kSeparatorCombo: FileOptionsHook(dialog, message, first, second); return 1;
                case kShowInfo: FileExplorerInfo(dialog, WM_COMMAND, kShowInfo); return 1;
                default: return 0;
            }
        default: return 0;
    }
}

}  // namespace vl::filedlg

using namespace vl;
using namespace vl::filedlg;

extern "C" UINT_PTR VLAPI FileOpenHookProc(HWND dialog, UINT message, WPARAM first, LPARAM second) noexcept {
    FileOptionsHook(dialog, message, first, second);
    if (message == WM_INITDIALOG) {
        const auto* record = reinterpret_cast<const OPENFILENAMEA*>(second);
        if (record && !record->lpstrTitle && IS_INTRESOURCE(record->lpTemplateName)) {
            const std::string caption =
                template_caption(static_cast<int32_t>(reinterpret_cast<uintptr_t>(record->lpTemplateName)));
            if (!caption.empty()) SetWindowTextA(dialog, caption.c_str());
        }
        FileInfoCommand(dialog, nullptr, kExplorerOff);
        FileInfoCommand(dialog, nullptr, kLayout);
        if (is_save_template(dialog)) FileInfoCommand(dialog, nullptr, kWriteComment);
        return 1;
    }
    if (message != WM_COMMAND) return 0;
    switch (LOWORD(first)) {
        case kFileList:
            if (HIWORD(first) == LBN_SELCHANGE) FileInfoCommand(dialog, nullptr, kShowHead);
            return 0;
        case IDOK:
            if (is_save_template(dialog)) FileTypeApplyToName(dialog, false);
            FileInfoCommand(dialog, nullptr, kReadComment);
            return 0;
        case kShowInfo:
            CheckDlgButton(dialog, kShowInfo, IsDlgButtonChecked(dialog, kShowInfo) == BST_CHECKED ? 0 : 1);
            FileInfoCommand(dialog, nullptr, kFollowBox);
            FileInfoCommand(dialog, nullptr, kShowHead);
            return 1;
        case kTypeCombo:
            if (HIWORD(first) == kRestoreName) {
                restore_name(dialog);
                return 1;
            }
            fit_name_to_new_type(dialog);
            return 0;
        default: return 0;
    }
}

extern "C" UINT_PTR VLAPI MultiFileHookProc(HWND dialog, UINT message, WPARAM first, LPARAM) noexcept {
    if (message == WM_INITDIALOG) {
        SendDlgItemMessageA(dialog, kChosenList, LB_RESETCONTENT, 0, 0);
        return 1;
    }
    if (message != WM_COMMAND) return 0;
    const int id = LOWORD(first);
    const int notification = HIWORD(first);
    if (id == kNameEdit) {
        // Typing takes back the selection of the (multi-select) file list.
        if (SendDlgItemMessageA(dialog, kNameEdit, EM_GETMODIFY, 0, 0))
            SendDlgItemMessageA(dialog, kFileList, LB_SETSEL, FALSE, -1);
        return 0;
    }
    if (id == IDOK) {
        take_chosen_list(dialog);
        return 0;
    }
    if (id == kAddFile || (id == kFileList && notification == LBN_DBLCLK)) {
        // Nothing chosen: the platform's OK handles a typed name or pattern.
        if (MultiFileAdd(dialog) != 0) SendMessageA(dialog, WM_COMMAND, IDOK, 0);
        return 1;
    }
    if (id == kRemove) {
        remove_chosen(dialog);
        return 1;
    }
    return 0;
}
