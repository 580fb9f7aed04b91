// The library's only door to the operating system.
//
// Subsystem code never includes <windows.h> or POSIX headers for what is
// listed here; it calls these functions.  src/platform/win32 maps them onto
// the real Windows API, src/platform/posix implements them for native
// builds with the same observable behaviour, so the platform-free logic
// above this layer is tested natively and runs unchanged inside the DLL.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace vl::platform {

// ---- Profiles -------------------------------------------------------------
// Same contract as GetProfileStringA / GetPrivateProfileStringA:
//  * sections and keys match without regard to case, blanks around names
//    and values are trimmed, one pair of enclosing quotes is removed;
//  * a null key lists the section's keys as zero-terminated texts ended by
//    a further zero, a null section lists the section names the same way;
//  * the result is truncated to fit `out`, always zero-terminated, and the
//    count excludes the terminator (size - 1 or size - 2 on truncation, as
//    the Windows calls answer).
// The system profile is the real one on Windows; natively it is the INI
// file named by VLCORE_PROFILE (sections "intl" and "windows"), and
// without that variable every key takes the caller's default.
uint32_t profile_string(const char* section, const char* key, const char* def, std::span<char> out);
int32_t profile_int(const char* section, const char* key, int32_t def);
uint32_t private_profile_string(const char* section, const char* key, const char* def, std::span<char> out,
                                const char* file);
// Returns false when the file can't be written.  A null value deletes the
// key, a null key deletes the section.
bool write_private_profile_string(const char* section, const char* key, const char* value, const char* file);

// ---- String table -----------------------------------------------------------
// LoadStringA semantics: copies the text of string `id`, truncated to
// out.size() - 1 bytes and zero-terminated; answers its length, 0 when the
// table has no such string (out[0] is then 0 as well).
int32_t load_string(uint32_t id, std::span<char> out);

// ---- Single-byte text -----------------------------------------------------
// Upper-casing in the system's single-byte code page (CharUpperA).
char upper(char c) noexcept;
void upper_in_place(char* text, std::size_t count) noexcept;
// lstrcmpA / lstrcmpiA: 0 when equal; otherwise the sign orders the texts.
int compare(const char* a, const char* b) noexcept;
int compare_nocase(const char* a, const char* b) noexcept;

// ---- Movable memory blocks ------------------------------------------------
// GlobalAlloc family.  Handles are opaque; natively they are checked, so a
// foreign or freed handle answers null/0 instead of touching memory.
using MemHandle = void*;
constexpr uint32_t kMemMoveableZeroInit = 0x42;
MemHandle mem_alloc(uint32_t flags, std::size_t bytes);
void* mem_lock(MemHandle h);
bool mem_unlock(MemHandle h);  // true while the block stays locked
std::size_t mem_size(MemHandle h);
MemHandle mem_free(MemHandle h);  // null on success, `h` on failure

// ---- Clock and time zone --------------------------------------------------
// "Now" as seconds since 1970-01-01 UTC and milliseconds.  Setting the
// environment variable VLCORE_NOW to "SECONDS[.FRACTION]" pins the clock, so
// tests of date code never read the real date.
struct Instant {
    int64_t seconds;
    int32_t millis;
};
Instant now() noexcept;
// The pinned instant of VLCORE_NOW, when the variable is set.
bool pinned_now(Instant& out) noexcept;

// ---- Module ---------------------------------------------------------------
// The handle the library was loaded under (HINSTANCE on Windows, the base
// address of the shared object natively).
uintptr_t module_handle() noexcept;
void set_module_handle(uintptr_t h) noexcept;

}  // namespace vl::platform
