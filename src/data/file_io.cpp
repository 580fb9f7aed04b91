// Whole-stretch reads over the platform's _lread.

#include "data/file_io.h"

namespace vl::data {

bool read_exactly(platform::FileHandle file, void* data, uint64_t count) noexcept {
    constexpr uint64_t kPiece = 1u << 30;
    auto* p = static_cast<unsigned char*>(data);
    while (count > 0) {
        const auto want = static_cast<uint32_t>(count < kPiece ? count : kPiece);
        const int32_t got = platform::file_lread(file, p, want);
        if (got < 0 || static_cast<uint32_t>(got) != want) return false;
        p += want;
        count -= want;
    }
    return true;
}

}  // namespace vl::data
