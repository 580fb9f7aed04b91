// KELUTIL_GetFileFromPackage: one named member out of a package file.

#include <array>
#include <cstring>

#include "data/file_io.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::data {
namespace {

constexpr std::size_t kRecord = 24;
constexpr std::size_t kCountAt = 20;
constexpr std::size_t kNameRoom = 16;
constexpr std::size_t kOffsetAt = 16;
constexpr std::size_t kSizeAt = 20;

uint32_t le32(const unsigned char* p) noexcept {
    return uint32_t{p[0]} | uint32_t{p[1]} << 8 | uint32_t{p[2]} << 16 | uint32_t{p[3]} << 24;
}

platform::MemHandle member(const char* package, const char* name, uint32_t* size) {
    // 1. The package.
    if (!size || !name) return nullptr;
    LFile file(package);
    uint64_t file_size = 0;
    if (!file.ok() || !platform::file_size64(file.get(), file_size)) return nullptr;
    // 2. The header's row count, from a zero-filled work record.
    std::array<unsigned char, kRecord + 1> record{};
    if (!read_exactly(file.get(), record.data(), kRecord)) return nullptr;
    const auto count = static_cast<int32_t>(le32(record.data() + kCountAt));
    // 3. The rows by position; the first with the name wins.  A name fills
    //    at most its 16 bytes, terminated or not.
    uint32_t offset = 0, length = 0;
    bool found = false;
    for (int32_t row = 1; row <= count && !found; ++row) {
        if (!platform::file_seek64(file.get(), uint64_t{kRecord} * static_cast<uint64_t>(row))) return nullptr;
        record.fill(0);
        if (!read_exactly(file.get(), record.data(), kRecord)) return nullptr;
        char row_name[kNameRoom + 1] = {};
        std::memcpy(row_name, record.data(), kNameRoom);
        if (platform::compare_nocase(row_name, name) == 0) {
            found = true;
            offset = le32(record.data() + kOffsetAt);
            length = le32(record.data() + kSizeAt);
        }
    }
    // 4. The data, which must lie inside the package; an empty member is
    //    no member.
    if (!found || length == 0 || uint64_t{offset} + length > file_size) return nullptr;
    platform::MemHandle h = platform::mem_alloc(platform::kMemMoveableZeroInit, length);
    if (!h) return nullptr;
    void* p = platform::mem_lock(h);
    const bool ok = p && platform::file_seek64(file.get(), offset) && read_exactly(file.get(), p, length);
    if (p) platform::mem_unlock(h);
    if (!ok) {
        platform::mem_free(h);
        return nullptr;
    }
    // 5. The size goes out with the unlocked block.
    *size = length;
    return h;
}

}  // namespace
}  // namespace vl::data

extern "C" VL_HGLOBAL VLAPI KELUTIL_GetFileFromPackage(const char* package, const char* name, uint32_t* size) noexcept {
    return static_cast<VL_HGLOBAL>(vl::data::member(package, name, size));
}
