// The process-wide state of the file dialogs, in one place: the path
// registry, the file type table and the texts and flags that one dialog
// leaves for the next.  One copy per process, zero at load; all calls come
// from the host's user-interface thread.  The host callback that is asked
// for unknown extensions is the frame's `lpfnFileHost`.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "internal/host.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::filedlg {

// ---- Path registry ----------------------------------------------------------
constexpr std::size_t kKeyRoom = 5;     // three characters, a zero and a spare byte
constexpr std::size_t kKeyChars = 3;    // characters of an extension that count as its key
constexpr std::size_t kPathRoom = 267;  // a directory of at most 266 characters
constexpr std::size_t kRegistryRows = 25;
constexpr std::size_t kStartDirRoom = 120;

struct PathRow {
    std::array<char, kKeyRoom> key{};    // extension without its dot
    uint8_t remembered = 0;              // file-type row last used for it, 0 for none
    std::array<char, kPathRoom> path{};  // the directory last used for it
};

struct PathRegistry {
    std::array<PathRow, kRegistryRows> rows{};
    int32_t count = 0;  // rows fill from the first and are only ever removed all at once
};
extern PathRegistry path_registry;

// What the next dialog starts with.
extern std::array<char, kPathRoom> szCurrentDir;    // the directory it opens in
extern std::array<char, kPathRoom> szLastExt;       // the extension it uses, normally without its dot
extern std::array<char, kStartDirRoom> szStartDir;  // the working directory at start-up
// Set by a dialog's preset: lookups ask no host, and the preset directory
// stays.  Cleared when the dialog ends.
extern bool bPresetActive;
// Set by the same preset when it named an extension; the next filter built
// from the file type table reads and clears it.
extern bool bExtPreset;

// ---- File type table ----------------------------------------------------------
constexpr int32_t kFileTypeRows = 25;          // rows 1 to 25
constexpr std::size_t kDescriptionRoom = 120;  // label token, then the pattern
constexpr std::size_t kExtensionRoom = 5;      // the extension with its dot, four characters at most
constexpr std::size_t kExtensionChars = 4;

struct FileTypeRow {
    std::array<char, kDescriptionRoom> description{};
    std::array<char, kExtensionRoom> extension{};
};

struct FileTypeTable {
    std::array<FileTypeRow, kFileTypeRows + 1> rows{};  // row 0 is never used
    int32_t selected_row = 1;  // the row the last dialog ended on; also how many rows a search covers
};
extern FileTypeTable file_type_table;

// ---- Open and save dialogs ----------------------------------------------------
// The block the host and the dialogs share; its layout is the host's.
static_assert(sizeof(VL_FILE_DIALOG_OPTIONS) == 1052);
static_assert(offsetof(VL_FILE_DIALOG_OPTIONS, dwReadOnly) == 548);
static_assert(offsetof(VL_FILE_DIALOG_OPTIONS, dwIncludeHeader) == 560);
static_assert(offsetof(VL_FILE_DIALOG_OPTIONS, dwExportSection) == 564);
static_assert(offsetof(VL_FILE_DIALOG_OPTIONS, szSeparator) == 568);
static_assert(offsetof(VL_FILE_DIALOG_OPTIONS, szOptionName) == 688);
static_assert(offsetof(VL_FILE_DIALOG_OPTIONS, szTitle) == 808);
static_assert(offsetof(VL_FILE_DIALOG_OPTIONS, szPartialLabel) == 928);
static_assert(offsetof(VL_FILE_DIALOG_OPTIONS, dwPartialImport) == 1048);
extern VL_FILE_DIALOG_OPTIONS FileDialogOptions;

constexpr std::size_t kTextRoom = 120;   // titles, comments, option texts
constexpr uint32_t kNoTitle = 0x8000;
extern host::HostProc lpfnOptionHost;    // told of the Option button
extern VL_HWND hOptionOwner;             // the window handed to it
extern std::array<char, kPathRoom> szFileName;  // last name chosen, without directory
extern uint32_t dwNoTitle;                      // kNoTitle: the next open dialog keeps its template's title
extern std::array<char, kTextRoom> szOpenTitle;
extern std::array<char, kTextRoom> szSaveTitle;
extern std::array<char, kTextRoom> szSpecFilter;   // filter made from a list of patterns
extern std::array<char, kTextRoom> szSpecPattern;  // "*." and the extension of such a list

// ---- Hooks --------------------------------------------------------------------
struct DialogRect {
    int32_t left = 0, top = 0, right = 0, bottom = 0;
};
extern int32_t bInfoShown;     // the Comments line is open and Show Info on; 1 at load
extern int32_t bInfoEnabled;   // the comment feature is on; 1 at load
extern std::array<char, kTextRoom> szFileComment;  // a save dialog's comment, in and out
extern DialogRect rcDialogFull;  // the dialog's size as laid out at its start
extern bool bExplorerDialog;     // the dialog under way is Explorer-style
extern bool bSaveExplorer;       // ... and for saving
extern int32_t dwOptionAction;   // what the Option button does, 0 for nothing

// ---- Multiple files -------------------------------------------------------------
constexpr std::size_t kFileRowRoom = 266;  // a full path and its zero
constexpr int32_t kFileListRows = VL_FILE_LIST_ROWS;
extern platform::MemHandle hFileList;      // nFileList rows of kFileRowRoom bytes, or null
extern int32_t nFileList;

}  // namespace vl::filedlg
