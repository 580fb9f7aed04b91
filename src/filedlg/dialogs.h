// The open, save and multiple-file dialogs: what decides their first view,
// what a dialog that ended well leaves for the next one, the comment line
// and the list of chosen files.  All of it is platform-free apart from the
// functions under _WIN32 and RunFileDialog, which shows the platform's own
// dialog (natively there is none, and it answers "failed").
//
// Choices of this library where the dialogs leave one open:
//  - An empty pattern list counts as none: the types come from the table.
//  - Work blocks are the library's own storage, so no dialog fails for
//    want of memory at its start.
//  - The proposed name of a save dialog is cut to fit the file buffer
//    (386 characters) before it is fitted to the type; what the dialog is
//    shown is then cut to the 265 characters the platform reads, keeping
//    the extension.
//  - The head of a file is read for its comment with read access only, so
//    read-only files show theirs too.
//  - A path longer than a row of the list (265 characters) is not added;
//    Add File never takes the list past kFileListRows rows.
//  - The multiple-file dialog gets a file buffer of its own, though its
//    result is the list, since the platform's dialog writes the names there.
//  - In the Explorer style the Comments line falls off the bottom of the
//    platform's dialog: its height becomes the top of the line less the
//    dialog's own top, plus the margin, as in the old style.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "filedlg/filedlg.h"
#include "filedlg/filedlg_state.h"
#include "vlcore.h"

namespace vl::filedlg {

// Resource numbers of the templates.
enum Template : int32_t {
    kOpenTemplate = 3000,
    kSaveTemplate = 3001,
    kMultiTemplate = 3002,
    kExportTemplate = 3003,
    kExplorerSaveTemplate = 400,
    kExplorerOpenTemplate = 4533,
    kExplorerExportTemplate = 4534,
};

// The platform record's flags that the dialogs use.
constexpr uint32_t kOldOpenFlags = 0x1860;    // file and path must exist, template, hook
constexpr uint32_t kOldSaveFlags = 0x1862;    // and ask before overwriting
constexpr uint32_t kExplorerFlags = 0x81072;  // Explorer, file must exist, template, hook, help, overwrite
constexpr uint32_t kMultiFlags = 0x260;       // several files, template, hook
constexpr uint32_t kReadOnlyBit = 1;

// Kinds of Explorer-style dialog, the record's custom data.
enum ExplorerKind : int32_t { kExplorerOpen = 1, kExplorerExport = 2, kExplorerSave = 4 };

constexpr std::size_t kSaveFileRoom = 387;  // the save dialog's file buffer
constexpr uint32_t kRecordFileRoom = 266;   // the room the record tells the platform
constexpr std::size_t kSelectedPathRoom = 292;

enum class Hook { kOld, kExplorer, kMulti };

// What a dialog shows first and how it is run.
struct DialogView {
    std::array<char, kFilterRoom> filter_block{};
    const char* filter = nullptr;            // filter_block or szSpecFilter
    int32_t show = 1;                        // the type row shown first, from 1
    std::array<char, kSaveFileRoom> file{};  // the name shown first
    const char* directory = nullptr;         // szCurrentDir
    const char* default_ext = nullptr;       // null for none
    const char* title = nullptr;             // null: the template's title
    int32_t template_id = 0;
    uint32_t flags = 0;  // of the platform's record
    Hook hook = Hook::kOld;
    int32_t kind = 0;  // custom data of an Explorer-style dialog
    bool save = false;
};

// What the platform's dialog gave back when it ended with a name.
struct DialogChoice {
    std::array<char, kPathRoom> path{};  // full path
    int32_t filter_index = 1;
    bool read_only = false;
};

// The first view of the open dialog, by the flags and `spec` (null or empty
// for the table); looks the directory up, which may ask the host.
void PrepareOpen(char* spec, uint32_t flags, DialogView& view) noexcept;
// The first view of the save dialog, with `name` as the proposed name.
void PrepareSave(const char* name, char* spec, uint32_t flags, DialogView& view) noexcept;
void PrepareMulti(char* spec, DialogView& view) noexcept;

// After a dialog ended with `choice`: the results of the entries (open: 0,
// 1 for a missing drive, -1 or the handle with flag 1; save: 0 or 1), with
// what the dialog leaves for the next one.  `name` gets the short name
// (open) or the whole path (save).
int32_t FinishOpen(const DialogChoice& choice, bool had_spec, uint32_t flags, char* name) noexcept;
int32_t FinishSave(const DialogChoice& choice, bool had_spec, char* name) noexcept;

// Cuts a name that the record's room (kRecordFileRoom with its zero) can't
// hold, keeping its extension: the platform reads no further than that
// room, and a name without its zero there would run on.
void FitToRecord(std::span<char> file) noexcept;

// Shows the platform's dialog on `view`; false when it was cancelled or
// failed.  For the multiple-file dialog `choice` stays unread.
bool RunFileDialog(VL_HWND owner, DialogView& view, DialogChoice& choice) noexcept;

// ---- Comments --------------------------------------------------------------
constexpr std::size_t kHeadRoom = 145;  // the first line read for a comment
// The comment of the file `path`: the text behind the first "#" of its
// first line, when that "#" and what follows (line end included) have more
// than 3 characters, cut at the line end.  Empty when the file can't be
// read or has none; never more than out.size() - 1 characters.
bool ReadFileComment(const char* path, std::span<char> out) noexcept;

// ---- Options -----------------------------------------------------------------
// The action of an option name (made upper case in place): 3006, 101, or 0.
int32_t OptionActionOf(char* name) noexcept;
constexpr int32_t kActionImportAscii = 101;
constexpr int32_t kActionExportAscii = 3006;
// The separators the export dialog offers, shown text and value.
struct Separator {
    const char* shown;
    const char* value;
};
inline constexpr std::array<Separator, 5> kSeparators{{
    {"TAB", "\t"},
    {",", ","},
    {"SPACE", " "},
    {",TAB", ",\t"},
    {",SPACE", ", "},
}};
// The index of `value` among the separators, or -1.
int32_t SeparatorIndex(const char* value) noexcept;
// The read-only box's label for a type's extension: 0 (box disabled), 1126
// (Open as read-only) or 1125 (Do not Automatically Update, box widened).
int32_t ReadOnlyLabelOf(const char* extension) noexcept;
constexpr int32_t kStringNoUpdate = 1125;
constexpr int32_t kStringReadOnly = 1126;

// ---- Paths from the old-style lists --------------------------------------------
// Directory and name joined with a backslash unless the directory ends in
// one; false, with `out` empty, when it does not fit.
bool JoinPath(std::string_view dir, std::string_view name, std::span<char> out) noexcept;

// ---- The list of chosen files --------------------------------------------------
void FileListFree() noexcept;
// A list of `count` rows, each from `row(i, out)`; false without memory (the
// list is then empty).
template <class RowSource>
bool FileListFill(int32_t count, RowSource row) noexcept;
bool FileListFillFromText(const char* text, int32_t count) noexcept;
// Row `index` into `out` (kFileRowRoom bytes); "error" when there is none.
void FileListRow(int32_t index, char* out) noexcept;
// Storage of `count` empty rows as the list; null without memory.
char* FileListReset(int32_t count) noexcept;
void FileListRelease() noexcept;  // ends a FileListReset

template <class RowSource>
bool FileListFill(int32_t count, RowSource row) noexcept {
    char* rows = FileListReset(count);
    if (!rows) return false;
    for (int32_t i = 0; i < count; ++i)
        row(i, std::span<char>(rows + static_cast<std::size_t>(i) * kFileRowRoom, kFileRowRoom));
    FileListRelease();
    return true;
}

#ifdef _WIN32
// The hook of the Explorer-style dialogs, and the comment line's modes.
UINT_PTR CALLBACK FileExplorerHook(HWND dialog, UINT message, WPARAM first, LPARAM second);
void FileInfoCommand(HWND dialog, const char* argument, int32_t mode) noexcept;
// The full path of row `index` (-1: the selection) of an old-style
// dialog's file list; 1 when there is none, else 0.
int32_t FileListSelectedPath(HWND dialog, std::span<char> out, int32_t index) noexcept;
#endif

}  // namespace vl::filedlg
