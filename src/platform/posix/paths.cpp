// Directories and drives natively: one root, no drive letters.

#include <unistd.h>

#include "platform/platform.h"

namespace vl::platform {

bool current_directory(std::span<char> out) noexcept { return !out.empty() && ::getcwd(out.data(), out.size()); }

uint32_t drive_strings(std::span<char> out) noexcept {
    if (!out.empty()) out[0] = '\0';
    return 0;
}

bool under_single_root(const char* path) noexcept { return path && path[0] == '/'; }

// The native code page has one byte a character.
const char* char_prev(const char* start, const char* current) noexcept { return current > start ? current - 1 : start; }

}  // namespace vl::platform

namespace vl::platform {

bool change_directory(const char* dir) noexcept { return dir && *dir && ::chdir(dir) == 0; }

}  // namespace vl::platform
