// Directories and drives on Windows.

#include <direct.h>
#include <windows.h>

#include "platform/platform.h"

namespace vl::platform {

bool current_directory(std::span<char> out) noexcept {
    return !out.empty() && _getcwd(out.data(), static_cast<int>(out.size()));
}

uint32_t drive_strings(std::span<char> out) noexcept {
    return GetLogicalDriveStringsA(static_cast<DWORD>(out.size()), out.data());
}

bool under_single_root(const char*) noexcept { return false; }

const char* char_prev(const char* start, const char* current) noexcept { return CharPrevA(start, current); }

bool change_directory(const char* dir) noexcept {
    if (!dir || !*dir) return false;
    // A is drive 1; a lower-case letter names the same drive.
    const char letter = static_cast<char>(dir[0] & ~0x20);
    if (dir[1] == ':' && letter >= 'A' && letter <= 'Z' && _chdrive(letter - 64) != 0) return false;
    return _chdir(dir) == 0;
}

}  // namespace vl::platform
