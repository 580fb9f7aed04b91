// Raw memory routines: a forward byte copy, a byte comparison and the
// transposition of an array of items.

#include <cstring>

#include "platform/platform.h"
#include "vlcore.h"

extern "C" int32_t VLAPI KELUTIL_MemCopy(const void* source, void* target, int32_t count) noexcept {
    if (!source || !target) return 0;
    // One byte at a time, upward: an overlapping target repeats the source.
    const auto* from = static_cast<const volatile unsigned char*>(source);
    auto* to = static_cast<volatile unsigned char*>(target);
    for (int32_t i = 0; i < count; ++i) to[i] = from[i];
    return 0;
}

extern "C" int32_t VLAPI KELUTIL_StructCompare(const void* first, const void* second, uint32_t count) noexcept {
    if (count == 0) return 0;
    if (!first || !second) return first == second ? 0 : 1;
    return std::memcmp(first, second, count) == 0 ? 0 : 1;
}

extern "C" int32_t VLAPI KELUTIL_RowColChange(void* data, uint32_t rows, uint32_t columns, uint32_t item_size) noexcept {
    using namespace vl;
    // 1. The array's size; one that does not fit in memory has no work block.
    const uint64_t r = static_cast<uint16_t>(rows), c = static_cast<uint16_t>(columns);
    const uint64_t total = r * c * item_size;
    if (total == 0 || !data) return 0;
    if (total > SIZE_MAX) return 1;
    // 2. A copy in a work block.
    platform::MemHandle work = platform::mem_alloc(platform::kMemMoveableZeroInit, static_cast<std::size_t>(total));
    if (!work) return 1;
    auto* copy = static_cast<unsigned char*>(platform::mem_lock(work));
    if (!copy) {
        platform::mem_free(work);
        return 1;
    }
    std::memcpy(copy, data, static_cast<std::size_t>(total));
    // 3. Item (row, column) goes to (column, row) of the array, which then
    //    has `columns` rows of `rows` items.
    auto* out = static_cast<unsigned char*>(data);
    for (uint64_t i = 0; i < r; ++i)
        for (uint64_t j = 0; j < c; ++j)
            std::memcpy(out + (j * r + i) * item_size, copy + (i * c + j) * item_size, item_size);
    // 4. The work block goes.
    platform::mem_unlock(work);
    platform::mem_free(work);
    return 0;
}
