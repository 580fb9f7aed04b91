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
uint32_t profile_string(const char* section, const char* key, const char* def, std::span<char> out) noexcept;
int32_t profile_int(const char* section, const char* key, int32_t def) noexcept;
uint32_t private_profile_string(const char* section, const char* key, const char* def, std::span<char> out,
                                const char* file) noexcept;
// Returns false when the file can't be written.  A null value deletes the
// key, a null key deletes the section.
bool write_private_profile_string(const char* section, const char* key, const char* value, const char* file) noexcept;

// ---- String table -----------------------------------------------------------
// LoadStringA semantics: copies the text of string `id`, truncated to
// out.size() - 1 bytes and zero-terminated; answers its length, 0 when the
// table has no such string (out[0] is then 0 as well).
int32_t load_string(uint32_t id, std::span<char> out) noexcept;

// ---- Single-byte text -----------------------------------------------------
// Upper-casing in the system's single-byte code page (CharUpperA).
char upper(char c) noexcept;
void upper_in_place(char* text, std::size_t count) noexcept;
// lstrcmpA / lstrcmpiA: 0 when equal; otherwise the sign orders the texts.
// IsCharAlphaA: a letter of the system's single-byte code page.
bool is_alpha(char c) noexcept;
int compare(const char* a, const char* b) noexcept;
int compare_nocase(const char* a, const char* b) noexcept;

// ---- Movable memory blocks ------------------------------------------------
// GlobalAlloc family.  Handles are opaque; natively they are checked, so a
// foreign or freed handle answers null/0 instead of touching memory.
using MemHandle = void*;
constexpr uint32_t kMemMoveableZeroInit = 0x42;
MemHandle mem_alloc(uint32_t flags, std::size_t bytes) noexcept;
void* mem_lock(MemHandle h) noexcept;
bool mem_unlock(MemHandle h) noexcept;  // true while the block stays locked
std::size_t mem_size(MemHandle h) noexcept;
MemHandle mem_free(MemHandle h) noexcept;  // null on success, `h` on failure

// ---- Files -----------------------------------------------------------------
// Windows file handles and _lopen handles travel in a 32-bit slot; natively
// the slot carries a POSIX descriptor.  -1 stands for failure in both.
using FileHandle = int32_t;
constexpr FileHandle kNoFile = -1;
// CreateFileA (attribute 128, no template) and CloseHandle.  `access` takes
// the GENERIC_READ / GENERIC_WRITE bits, `disposition` 1 to 5 as Windows
// numbers them; natively `share` has no meaning.
FileHandle file_create(const char* name, uint32_t access, uint32_t share, uint32_t disposition) noexcept;
bool file_close_handle(FileHandle file) noexcept;
// WriteFile: the byte count it reports, also after a failure.
uint32_t file_write_handle(FileHandle file, const void* data, uint32_t count) noexcept;
// GetFileSize: false on failure; only the low 32 bits of the size.
bool file_size32(FileHandle file, uint32_t& size) noexcept;
// CopyFileA overwriting the target: 0, or the system error of the failure
// (natively the common causes carry their Windows numbers).
uint32_t file_copy(const char* source, const char* target) noexcept;
// SetFileAttributesA(name, 128): clears a read-only mark.
bool file_set_normal(const char* name) noexcept;
// _lopen for reading, _lread, _lwrite, _hwrite, _llseek, _lclose.  The
// transfers answer the bytes moved or -1; the seek the new position or -1.
FileHandle file_lopen_read(const char* name) noexcept;
int32_t file_lread(FileHandle file, void* data, uint32_t count) noexcept;
int32_t file_lwrite(FileHandle file, const void* data, uint32_t count) noexcept;
int32_t file_hwrite(FileHandle file, const void* data, int32_t count) noexcept;
void file_lclose(FileHandle file) noexcept;
// Readers of files past 2 GB: the whole size, and a seek from the start.
bool file_size64(FileHandle file, uint64_t& size) noexcept;
bool file_seek64(FileHandle file, uint64_t offset) noexcept;
// True when the system reports version 3.0 (GetVersion), whose _hwrite
// must be fed in 4096-byte pieces.  Never natively.
bool file_small_writes_only() noexcept;

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

// ---- Local time and time zone ---------------------------------------------
// The runtime's view of local time, as the date code needs it (_ftime,
// localtime, _tzset, _timezone and _daylight on Windows; natively the POSIX
// equivalents with the same meaning of the environment variable TZ).
struct ClockReading {
    int64_t seconds;  // since 1970-01-01 UTC, pinned by VLCORE_NOW
    bool daylight;    // daylight saving is in force now (_ftime's dstflag)
};
ClockReading clock_reading() noexcept;
// True when the environment variable is set at all (getenv).
bool environment_has(const char* name) noexcept;
// localtime: the nine fields of the runtime's time record for `seconds`, in
// tm order (years since 1900).  While the daylight flag is cleared the
// breakdown is standard time, as the Windows runtime gives it then.  False
// when the runtime can't break the number down.
bool local_time(int64_t seconds, int32_t (&fields)[9]) noexcept;
// _tzset, then _timezone: seconds west of UTC of the zone's standard time.
int32_t time_zone_refresh() noexcept;
// _daylight = 0.
void clear_daylight() noexcept;

// ---- Date and time pictures --------------------------------------------------
// The system time record of the picture operations (SYSTEMTIME): month 1 to
// 12, day of week 0 (Sunday) to 6.
struct SystemTime {
    uint16_t year, month, day_of_week, day, hour, minute, second, milliseconds;
};
// GetDateFormatA and GetTimeFormatA for the user's default locale, flags 0:
// the date or the time of `t` by `picture` (d dd ddd dddd, M MM MMM MMMM, y
// yy yyyy, g; h hh H HH m mm s ss t tt; text in apostrophes, '' inside them
// an apostrophe).  Letters of the other kind and all other characters are
// copied.  Answers the characters written with the terminator, or 0 when the
// text does not fit `out` or the record is not a date (year before 1601, no
// such day) or not a time (hour above 23 and so on).  An empty picture gives
// an empty text and 1.  Natively the names are those of the string table.
int32_t date_picture(const SystemTime& t, const char* picture, std::span<char> out) noexcept;
int32_t time_picture(const SystemTime& t, const char* picture, std::span<char> out) noexcept;

// ---- The runtime's mathematics ---------------------------------------------
// pow of the platform's C runtime: msvcrt's on Windows, not the compiler
// kit's own replacement, which is several units in the last place off for
// negative powers of ten; the C library's natively.  Numbers read and
// printed by earlier releases depend on its exact bits.
double runtime_pow(double x, double y) noexcept;

// ---- Bessel functions -----------------------------------------------------
// The runtime's Bessel functions of the first (j) and second (y) kind:
// _j0 and its family on Windows, j0 and its family natively.  Values agree
// between the two runtimes to their rounding, not to the bit.
double bessel_j0(double x) noexcept;
double bessel_j1(double x) noexcept;
double bessel_jn(int n, double x) noexcept;
double bessel_y0(double x) noexcept;
double bessel_y1(double x) noexcept;
double bessel_yn(int n, double x) noexcept;

// ---- Directories and drives ---------------------------------------------------
// _getcwd: the working directory into `out`; false, with `out` not to be
// read, when it fails or does not fit.
bool current_directory(std::span<char> out) noexcept;
// GetLogicalDriveStringsA: the drive roots as entries of four characters
// ("C:\" and a zero), ended by a further zero; answers the characters
// written without the last zero, or the size needed when `out` is too small.
// Natively there are no drive letters: the list is empty and the answer 0.
uint32_t drive_strings(std::span<char> out) noexcept;
// True for a path under the single root of a native file system ("/..."),
// which always exists.  Never on Windows, whose roots are drives.
bool under_single_root(const char* path) noexcept;
// CharPrevA: the start of the character in front of `current`, never
// before `start`.
const char* char_prev(const char* start, const char* current) noexcept;
// _chdrive to the drive of `dir` (its letter, any case; none for a path
// without one) and _chdir to `dir`; false when either fails.
bool change_directory(const char* dir) noexcept;

// ---- Module ---------------------------------------------------------------
// The handle the library was loaded under (HINSTANCE on Windows, the base
// address of the shared object natively).
uintptr_t module_handle() noexcept;
void set_module_handle(uintptr_t h) noexcept;

}  // namespace vl::platform
