// Files natively: POSIX descriptors stand in for Windows handles and
// _lopen handles alike, carried in the same 32-bit slot.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/platform.h"
#include "vlcore.h"

namespace vl::platform {
namespace {

constexpr uint32_t kGenericRead = VL_FILE_READ;
constexpr uint32_t kGenericWrite = VL_FILE_WRITE;

// Windows error numbers for the failures a copy usually meets, so a host
// sees the same codes on both builds.
constexpr uint32_t kErrorFileNotFound = 2;
constexpr uint32_t kErrorPathNotFound = 3;
constexpr uint32_t kErrorAccessDenied = 5;
constexpr uint32_t kErrorNotEnoughMemory = 8;
constexpr uint32_t kErrorWriteFault = 29;
constexpr uint32_t kErrorReadFault = 30;
constexpr uint32_t kErrorDiskFull = 112;

uint32_t windows_error(int err) noexcept {
    switch (err) {
        case ENOENT: return kErrorFileNotFound;
        case ENOTDIR: return kErrorPathNotFound;
        case EACCES:
        case EPERM:
        case EISDIR:
        case EROFS: return kErrorAccessDenied;
        case ENOMEM: return kErrorNotEnoughMemory;
        case ENOSPC: return kErrorDiskFull;
        default: return kErrorWriteFault;
    }
}

// write() may stop early; the Windows calls write everything or fail.
int64_t write_all(int fd, const void* data, uint64_t count) noexcept {
    const auto* p = static_cast<const unsigned char*>(data);
    uint64_t done = 0;
    while (done < count) {
        const ssize_t n = ::write(fd, p + done, count - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return done == 0 ? -1 : static_cast<int64_t>(done);
        done += static_cast<uint64_t>(n);
    }
    return static_cast<int64_t>(done);
}

int64_t read_all(int fd, void* data, uint64_t count) noexcept {
    auto* p = static_cast<unsigned char*>(data);
    uint64_t done = 0;
    while (done < count) {
        const ssize_t n = ::read(fd, p + done, count - done);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return done == 0 ? -1 : static_cast<int64_t>(done);
        if (n == 0) break;
        done += static_cast<uint64_t>(n);
    }
    return static_cast<int64_t>(done);
}

FileHandle to_handle(int fd) noexcept { return fd < 0 ? kNoFile : static_cast<FileHandle>(fd); }

}  // namespace

FileHandle file_create(const char* name, uint32_t access, uint32_t /*share*/, uint32_t disposition) noexcept {
    if (!name) return kNoFile;
    // 1. Access: read, write or both; a query-only open still needs a mode.
    int flags = O_CLOEXEC;
    const bool rd = (access & kGenericRead) != 0, wr = (access & kGenericWrite) != 0;
    flags |= (rd && wr) ? O_RDWR : wr ? O_WRONLY : O_RDONLY;
    // 2. Disposition, numbered as CreateFileA numbers it.
    switch (disposition) {
        case 1: flags |= O_CREAT | O_EXCL; break;   // create new
        case 2: flags |= O_CREAT | O_TRUNC; break;  // create always
        case 3: break;                              // open existing
        case 4: flags |= O_CREAT; break;            // open always
        case 5:                                     // truncate existing
            if (!wr) return kNoFile;
            flags |= O_TRUNC;
            break;
        default: return kNoFile;
    }
    // 3. Directories are no files here.
    const int fd = ::open(name, flags, 0666);
    if (fd < 0) return kNoFile;
    struct stat st {};
    if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
        ::close(fd);
        return kNoFile;
    }
    return to_handle(fd);
}

bool file_close_handle(FileHandle file) noexcept { return file >= 0 && ::close(file) == 0; }

uint32_t file_write_handle(FileHandle file, const void* data, uint32_t count) noexcept {
    if (file < 0 || (!data && count)) return 0;
    const int64_t n = write_all(file, data, count);
    return n < 0 ? 0 : static_cast<uint32_t>(n);
}

bool file_size32(FileHandle file, uint32_t& size) noexcept {
    uint64_t full = 0;
    if (!file_size64(file, full)) return false;
    size = static_cast<uint32_t>(full);
    return true;
}

uint32_t file_copy(const char* source, const char* target) noexcept {
    if (!source || !target) return kErrorPathNotFound;
    // 1. Open the source and learn its mode, which the copy inherits.
    const int in = ::open(source, O_RDONLY | O_CLOEXEC);
    if (in < 0) return windows_error(errno);
    struct stat st {};
    if (::fstat(in, &st) != 0 || S_ISDIR(st.st_mode)) {
        ::close(in);
        return kErrorAccessDenied;
    }
    // 2. Replace the target.
    const int out = ::open(target, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, st.st_mode & 07777);
    if (out < 0) {
        const uint32_t err = windows_error(errno);
        ::close(in);
        return err;
    }
    // 3. Copy in large pieces.
    uint32_t err = 0;
    unsigned char buf[1 << 16];
    for (;;) {
        const int64_t n = read_all(in, buf, sizeof buf);
        if (n < 0) {
            err = kErrorReadFault;
            break;
        }
        if (n == 0) break;
        if (write_all(out, buf, static_cast<uint64_t>(n)) != n) {
            err = windows_error(errno);
            break;
        }
    }
    // 4. The mode of the source, read-only mark included.
    if (!err && ::fchmod(out, st.st_mode & 07777) != 0) err = windows_error(errno);
    ::close(in);
    if (::close(out) != 0 && !err) err = kErrorWriteFault;
    return err;
}

bool file_set_normal(const char* name) noexcept {
    struct stat st {};
    if (!name || ::stat(name, &st) != 0) return false;
    return ::chmod(name, (st.st_mode & 07777) | S_IWUSR) == 0;
}

FileHandle file_lopen_read(const char* name) noexcept {
    if (!name) return kNoFile;
    return file_create(name, kGenericRead, 3, 3);
}

int32_t file_lread(FileHandle file, void* data, uint32_t count) noexcept {
    if (file < 0 || (!data && count)) return -1;
    const int64_t n = read_all(file, data, count);
    return n < 0 ? -1 : static_cast<int32_t>(n);
}

int32_t file_lwrite(FileHandle file, const void* data, uint32_t count) noexcept {
    if (file < 0 || (!data && count)) return -1;
    const int64_t n = write_all(file, data, count);
    return n < 0 ? -1 : static_cast<int32_t>(n);
}

int32_t file_hwrite(FileHandle file, const void* data, int32_t count) noexcept {
    if (count < 0) return -1;
    return file_lwrite(file, data, static_cast<uint32_t>(count));
}

void file_lclose(FileHandle file) noexcept {
    if (file >= 0) ::close(file);
}

bool file_size64(FileHandle file, uint64_t& size) noexcept {
    struct stat st {};
    if (file < 0 || ::fstat(file, &st) != 0) return false;
    size = static_cast<uint64_t>(st.st_size);
    return true;
}

bool file_seek64(FileHandle file, uint64_t offset) noexcept {
    if (file < 0 || offset > static_cast<uint64_t>(INT64_MAX)) return false;
    return ::lseek(file, static_cast<off_t>(offset), SEEK_SET) == static_cast<off_t>(offset);
}

bool file_small_writes_only() noexcept { return false; }

}  // namespace vl::platform
