// Thin wrappers over the platform's file calls, with the modes and chunk
// sizes that the library and its host always use.

#include "data/chunks.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::data {
namespace {

constexpr uint32_t kGenericRead = VL_FILE_READ;
constexpr uint32_t kShareReadWrite = VL_FILE_SHARE_READ_WRITE;
constexpr uint32_t kCreateNew = VL_FILE_CREATE_NEW;
constexpr uint32_t kOpenExisting = VL_FILE_OPEN_EXISTING;
constexpr uint32_t kTruncateExisting = VL_FILE_TRUNCATE_EXISTING;
constexpr uint32_t kSmallWrite = 4096;

// The pieces of a system that could only write 4096 bytes at a time.
int32_t write_in_small_pieces(platform::FileHandle file, const char* data, int32_t count) {
    if (count < 1) return 0;
    int32_t done = 0;
    while (done < count) {
        const int32_t left = count - done;
        const auto piece = static_cast<uint32_t>(left < static_cast<int32_t>(kSmallWrite) ? left : kSmallWrite);
        if (platform::file_lwrite(file, data + done, piece) != static_cast<int32_t>(piece)) break;
        done += static_cast<int32_t>(piece);
    }
    return done;
}

}  // namespace
}  // namespace vl::data

using namespace vl;
using namespace vl::data;

extern "C" {

uint32_t VLAPI KELUTIL_CopyFile(const char* source, const char* target, uint32_t keep_attributes) noexcept {
    const uint32_t err = platform::file_copy(source, target);
    if (err) return err;
    // A read-only mark that came with the source goes, unless asked to stay.
    if (keep_attributes == 0) platform::file_set_normal(target);
    return 0;
}

int32_t VLAPI KELUTIL_32FileOpen(const char* name, uint32_t access, uint32_t share, uint32_t disposition) noexcept {
    return platform::file_create(name, access, share, disposition);
}

int32_t VLAPI KELUTIL_32FileCreate(const char* name, uint32_t access, uint32_t share) noexcept {
    // An existing file is emptied, a missing one made.
    const int32_t h = KELUTIL_32FileOpen(name, access, share, kTruncateExisting);
    return h != platform::kNoFile ? h : KELUTIL_32FileOpen(name, access, share, kCreateNew);
}

int32_t VLAPI KELUTIL_32FileTest(const char* name) noexcept {
    const int32_t h = KELUTIL_32FileOpen(name, kGenericRead, kShareReadWrite, kOpenExisting);
    if (h != platform::kNoFile) platform::file_close_handle(h);
    return h;
}

uint32_t VLAPI KELUTIL_32WriteFile(int32_t file, const void* data, uint32_t count) noexcept {
    return platform::file_write_handle(file, data, count);
}

int32_t VLAPI KELUTIL_HugeWrite(int32_t file, const void* data, int32_t count) noexcept {
    if (platform::file_small_writes_only()) return write_in_small_pieces(file, static_cast<const char*>(data), count);
    return platform::file_hwrite(file, data, count);
}

int32_t VLAPI Write64K(int32_t file, const void* data, int32_t count) noexcept {
    const auto* bytes = static_cast<const char*>(data);
    return transfer_in_pieces(count, kWritePiece, [&](uint32_t at, uint32_t length) {
        return platform::file_lwrite(file, bytes ? bytes + at : nullptr, length);
    });
}

int32_t VLAPI Read64K(int32_t file, void* data, int32_t count) noexcept {
    auto* bytes = static_cast<char*>(data);
    return transfer_in_pieces(count, kReadPiece, [&](uint32_t at, uint32_t length) {
        return platform::file_lread(file, bytes ? bytes + at : nullptr, length);
    });
}

char* VLAPI KELUTIL_fgets(char* buffer, uint32_t size, int32_t file) noexcept {
    const auto room = static_cast<uint16_t>(size);
    if (!buffer || room == 0) return nullptr;
    // One byte at a time, so the file stands right behind the line.
    uint32_t stored = 0;
    bool ended = false;
    while (stored + 1 < room) {
        char c;
        if (platform::file_lread(file, &c, 1) != 1) {
            ended = true;
            break;
        }
        buffer[stored++] = c;
        if (c == '\n') break;
    }
    buffer[stored] = '\0';
    return (ended && stored == 0) ? nullptr : buffer;
}

uint32_t VLAPI KELUTIL_JustFileSize(int32_t file) noexcept {
    uint32_t size = 0;
    return platform::file_size32(file, size) ? size : 0;
}

uint32_t VLAPI KELUTIL_FileSizeFromName(const char* name) noexcept {
    const platform::FileHandle h = platform::file_lopen_read(name);
    if (h == platform::kNoFile) return 0;
    const uint32_t size = KELUTIL_JustFileSize(h);
    platform::file_lclose(h);
    return size;
}

}  // extern "C"
