// Profiles on Windows are the system's own; these only adapt the calling
// convention.  A relative file name is passed through unchanged, so Windows
// looks for it in the Windows directory, as callers of these calls expect.

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>

#include "platform/platform.h"

namespace vl::platform {
namespace {

DWORD capacity(std::span<char> out) { return static_cast<DWORD>(std::min<std::size_t>(out.size(), MAXDWORD)); }

}  // namespace

uint32_t profile_string(const char* section, const char* key, const char* def, std::span<char> out) noexcept {
    if (out.empty()) return 0;
    return GetProfileStringA(section, key, def, out.data(), capacity(out));
}

int32_t profile_int(const char* section, const char* key, int32_t def) noexcept {
    return static_cast<int32_t>(GetProfileIntA(section, key, def));
}

uint32_t private_profile_string(const char* section, const char* key, const char* def, std::span<char> out,
                                const char* file) noexcept {
    if (out.empty()) return 0;
    return GetPrivateProfileStringA(section, key, def, out.data(), capacity(out), file);
}

bool write_private_profile_string(const char* section, const char* key, const char* value, const char* file) noexcept {
    return WritePrivateProfileStringA(section, key, value, file) != FALSE;
}

}  // namespace vl::platform
