// The process-wide state of the file dialogs, in one place: the path
// registry, the file type table and the texts and flags that one dialog
// leaves for the next.  One copy per process, zero at load; all calls come
// from the host's user-interface thread.  The host callback that is asked
// for unknown extensions is the frame's `lpfnFileHost`.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

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

}  // namespace vl::filedlg
