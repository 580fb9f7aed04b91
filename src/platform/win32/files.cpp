// Files on Windows: the real calls.  A HANDLE travels in a 32-bit slot, as
// the system guarantees for kernel handles; widening sign-extends, so -1
// comes back as INVALID_HANDLE_VALUE.

#include <windows.h>

#include "platform/platform.h"

namespace vl::platform {
namespace {

HANDLE to_handle(FileHandle file) noexcept { return reinterpret_cast<HANDLE>(static_cast<intptr_t>(file)); }
FileHandle from_handle(HANDLE h) noexcept { return static_cast<FileHandle>(reinterpret_cast<intptr_t>(h)); }
HFILE to_hfile(FileHandle file) noexcept { return static_cast<HFILE>(file); }

}  // namespace

FileHandle file_create(const char* name, uint32_t access, uint32_t share, uint32_t disposition) noexcept {
    if (!name) return kNoFile;
    SECURITY_ATTRIBUTES sa{};
    sa.nLength = sizeof sa;
    const HANDLE h = CreateFileA(name, access, share, &sa, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return h == INVALID_HANDLE_VALUE ? kNoFile : from_handle(h);
}

bool file_close_handle(FileHandle file) noexcept { return CloseHandle(to_handle(file)) != 0; }

uint32_t file_write_handle(FileHandle file, const void* data, uint32_t count) noexcept {
    DWORD written = 0;
    WriteFile(to_handle(file), data, count, &written, nullptr);
    return written;
}

bool file_size32(FileHandle file, uint32_t& size) noexcept {
    const DWORD low = GetFileSize(to_handle(file), nullptr);
    if (low == INVALID_FILE_SIZE && GetLastError() != NO_ERROR) return false;
    size = low;
    return true;
}

uint32_t file_copy(const char* source, const char* target) noexcept {
    return CopyFileA(source, target, FALSE) ? 0 : GetLastError();
}

bool file_set_normal(const char* name) noexcept { return SetFileAttributesA(name, FILE_ATTRIBUTE_NORMAL) != 0; }

FileHandle file_lopen_read(const char* name) noexcept {
    if (!name) return kNoFile;
    const HFILE h = _lopen(name, OF_READ);
    return h == HFILE_ERROR ? kNoFile : static_cast<FileHandle>(h);
}

int32_t file_lread(FileHandle file, void* data, uint32_t count) noexcept {
    const UINT n = _lread(to_hfile(file), data, count);
    return n == static_cast<UINT>(HFILE_ERROR) ? -1 : static_cast<int32_t>(n);
}

int32_t file_lwrite(FileHandle file, const void* data, uint32_t count) noexcept {
    const UINT n = _lwrite(to_hfile(file), static_cast<LPCCH>(data), count);
    return n == static_cast<UINT>(HFILE_ERROR) ? -1 : static_cast<int32_t>(n);
}

int32_t file_hwrite(FileHandle file, const void* data, int32_t count) noexcept {
    return static_cast<int32_t>(_hwrite(to_hfile(file), static_cast<LPCCH>(data), count));
}

void file_lclose(FileHandle file) noexcept {
    if (file != kNoFile) _lclose(to_hfile(file));
}

bool file_size64(FileHandle file, uint64_t& size) noexcept {
    LARGE_INTEGER li{};
    if (!GetFileSizeEx(to_handle(file), &li)) return false;
    size = static_cast<uint64_t>(li.QuadPart);
    return true;
}

bool file_seek64(FileHandle file, uint64_t offset) noexcept {
    LARGE_INTEGER li{};
    li.QuadPart = static_cast<LONGLONG>(offset);
    return SetFilePointerEx(to_handle(file), li, nullptr, FILE_BEGIN) != 0;
}

bool file_small_writes_only() noexcept {
    const DWORD v = GetVersion();
    return LOBYTE(LOWORD(v)) == 3 && HIBYTE(LOWORD(v)) == 0;
}

}  // namespace vl::platform
