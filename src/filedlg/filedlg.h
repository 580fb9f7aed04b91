// The file dialogs' own tools on paths, extensions and filters, which the
// dialogs use around the registry and the file type table.
#pragma once

#include <cstdint>
#include <span>

#include "vlcore.h"

namespace vl::filedlg {

// Room of the filter a dialog builds from the table, and of one built from
// a list of patterns.
constexpr std::size_t kFilterRoom = 1000;
constexpr std::size_t kSpecFilterRoom = 120;

// The first extension of `spec` (behind its first dot) into `out`, at most
// three characters: a longer one is cut in `spec` itself first.  Without a
// dot, or with nothing behind it, `out` keeps what it held.
void FileExtensionOf(char* out, char* spec) noexcept;

// 1 when the drive of `dir` exists, else 0.  A path that starts with a
// backslash (a network path, or no path at all) counts as existing; so does,
// natively, one under the file system's single root.
int32_t PathRootExists(const char* dir) noexcept;

// After a dialog ended well with `file_name`, with szCurrentDir already its
// directory: remembers that directory and `filter_row` for the name's
// extension, and makes that extension the last one used.
void PathRememberChoice(const char* file_name, int32_t filter_row) noexcept;

// The filter string of a dialog from the file type table, into `filter`
// (zero-filled by the caller, kFilterRoom bytes).  Answers the row to show
// first; 1 when a description has no pattern or memory is short.  Only flag
// 0x1000 counts: with it nothing remembered decides anything.
int32_t FileTypeBuildFilter(std::span<char> filter, uint32_t flags) noexcept;
constexpr uint32_t kIgnoreRemembered = 0x1000;

// A filter from a list of patterns apart by blanks, each pattern its own
// label, into `filter` (kSpecFilterRoom bytes).
void FilterFromSpec(std::span<char> filter, const char* spec) noexcept;

// The platform-free heart of FileTypeApplyToName: fits `name` (room
// kNameRoom) to the extension of the combo box selection `selection`
// (0-based), and makes that extension, without its dot, the last one used.
// Answers true when the name is to be written back to the dialog.
constexpr std::size_t kNameRoom = 267;
bool FitNameToType(int32_t selection, std::span<char> name, bool replace) noexcept;

#ifdef _WIN32
// Fits the name in edit control 1152 of `dialog` to the type chosen in its
// combo box 1136.
void FileTypeApplyToName(VL_HWND dialog, bool replace) noexcept;
#endif

}  // namespace vl::filedlg
