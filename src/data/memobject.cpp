// KELUTIL_MemObject: a small growable store of byte strings in one movable
// block, numbered for the host in one of two numberings.

#include <cstring>

#include "platform/platform.h"
#include "vlcore.h"

namespace vl::data {
namespace {

// Layout of the block.  The header fields are 16 bits wide; the offset
// table begins on a 16-byte boundary, so the items start at 2016.
constexpr std::size_t kCountAt = 0;
constexpr std::size_t kFirstBaseAt = 2;
constexpr std::size_t kSecondBaseAt = 4;
constexpr std::size_t kFlagsAt = 6;
constexpr std::size_t kFreeAt = 8;
constexpr std::size_t kBlockSizeAt = 10;
constexpr std::size_t kTableAt = 16;
constexpr uint16_t kMaxItems = VL_MEMOBJ_ITEMS;
constexpr uint16_t kItemsAt = kTableAt + 4 * kMaxItems;
constexpr uint16_t kNewBlockSize = kItemsAt + 4096;
constexpr uint32_t kLargestBlock = 0xFFFF;
constexpr uint16_t kSecondNumbering = 1;

enum Command : uint16_t {
    kCreate = VL_MEMOBJ_CREATE,
    kNeedsObject = VL_MEMOBJ_HANDLE_BIT,
    kAdd = VL_MEMOBJ_ADD,
    kRead = VL_MEMOBJ_READ,
    kFind = VL_MEMOBJ_FIND,
    kFree = VL_MEMOBJ_FREE,
    kNumbering = VL_MEMOBJ_NUMBERING,
};

static_assert(kItemsAt == 2016 && kNewBlockSize == 6112);

// The block's fields, read and written without alignment assumptions.
struct View {
    unsigned char* p;
    uint16_t get(std::size_t at) const noexcept {
        uint16_t v;
        std::memcpy(&v, p + at, sizeof v);
        return v;
    }
    void set(std::size_t at, uint16_t v) const noexcept { std::memcpy(p + at, &v, sizeof v); }
    uint32_t offset(uint16_t item) const noexcept {
        uint32_t v;
        std::memcpy(&v, p + kTableAt + 4u * item, sizeof v);
        return v;
    }
    void set_offset(uint16_t item, uint32_t v) const noexcept { std::memcpy(p + kTableAt + 4u * item, &v, sizeof v); }
};

// Locks for the length of one command.
class Locked {
  public:
    explicit Locked(platform::MemHandle h) : h_(h), p_(static_cast<unsigned char*>(platform::mem_lock(h))) {}
    ~Locked() {
        if (p_) platform::mem_unlock(h_);
    }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
    explicit operator bool() const noexcept { return p_ != nullptr && platform::mem_size(h_) >= kNewBlockSize; }
    View view() const noexcept { return View{p_}; }
    // The item's text, bounded by the block: its length and whether a
    // terminator stands inside the block.
    std::size_t item_length(uint32_t at, bool& terminated) const noexcept {
        const std::size_t end = platform::mem_size(h_);
        if (at >= end) {
            terminated = false;
            return 0;
        }
        const std::size_t len = strnlen(reinterpret_cast<const char*>(p_ + at), end - at);
        terminated = len < end - at;
        return len;
    }

  private:
    platform::MemHandle h_;
    unsigned char* p_;
};

uint16_t create(VL_HGLOBAL* slot, uint16_t first_base, uint16_t second_base) {
    platform::MemHandle h = platform::mem_alloc(platform::kMemMoveableZeroInit, kNewBlockSize);
    if (!h) return 0;
    {
        Locked block(h);
        if (!block) {
            platform::mem_free(h);
            return 0;
        }
        const View v = block.view();
        v.set(kFirstBaseAt, first_base);
        v.set(kSecondBaseAt, second_base);
        v.set(kFreeAt, kItemsAt);
        v.set(kBlockSizeAt, kNewBlockSize);
        v.set_offset(0, kItemsAt);
    }
    *slot = static_cast<VL_HGLOBAL>(h);
    return 1;
}

// Moves the object into a larger zero-filled block; the old one is freed.
platform::MemHandle grow(platform::MemHandle old, std::size_t used, std::size_t new_size) {
    platform::MemHandle h = platform::mem_alloc(platform::kMemMoveableZeroInit, new_size);
    if (!h) return nullptr;
    void* to = platform::mem_lock(h);
    void* from = platform::mem_lock(old);
    if (!to || !from) {
        if (to) platform::mem_unlock(h);
        if (from) platform::mem_unlock(old);
        platform::mem_free(h);
        return nullptr;
    }
    std::memcpy(to, from, used);
    platform::mem_unlock(h);
    platform::mem_unlock(old);
    platform::mem_free(old);
    return h;
}

uint16_t add(VL_HGLOBAL* slot, const void* data, uint32_t size) {
    if (!data) return 0;
    platform::MemHandle h = *slot;
    uint16_t count, free_at, block_size;
    {
        Locked block(h);
        if (!block) return 0;
        const View v = block.view();
        count = v.get(kCountAt);
        free_at = v.get(kFreeAt);
        block_size = v.get(kBlockSizeAt);
    }
    // 1. A full object refuses.
    if (count >= kMaxItems) return 0;
    // 2. Grow to the free offset plus five times the size, but never past
    //    16 bits; an item that would not fit below that is refused.
    const uint64_t needed = uint64_t{free_at} + size;
    if (needed >= block_size) {
        const uint64_t wanted = uint64_t{free_at} + 5ull * size;
        const uint32_t new_size = static_cast<uint32_t>(wanted < kLargestBlock ? wanted : kLargestBlock);
        if (needed >= new_size) return 0;
        platform::MemHandle grown = grow(h, block_size, new_size);
        if (!grown) {
            // The old block is given up, so that later commands answer 0.
            platform::mem_free(h);
            *slot = nullptr;
            return 0;
        }
        h = grown;
        *slot = static_cast<VL_HGLOBAL>(h);
        block_size = static_cast<uint16_t>(new_size);
    }
    Locked block(h);
    if (!block) return 0;
    const View v = block.view();
    v.set(kBlockSizeAt, block_size);
    // 3. The data goes in at the free offset, which the table records.
    std::memcpy(v.p + free_at, data, size);
    v.set_offset(count, free_at);
    // 4. Advance.
    v.set(kFreeAt, static_cast<uint16_t>(free_at + size));
    v.set(kCountAt, static_cast<uint16_t>(count + 1));
    // 5. The number in the chosen numbering.
    const uint16_t base = (v.get(kFlagsAt) & kSecondNumbering) ? v.get(kSecondBaseAt) : v.get(kFirstBaseAt);
    return static_cast<uint16_t>(count + base);
}

uint16_t read(VL_HGLOBAL slot, uint16_t index, void* data, uint32_t size) {
    if (!data) return 0;
    Locked block(slot);
    if (!block) return 0;
    const View v = block.view();
    // 1. The second numbering applies from its base up, whatever the flag.
    const uint16_t second = v.get(kSecondBaseAt);
    const int32_t item = (second != 0 && index >= second) ? index - second : index - v.get(kFirstBaseAt);
    if (item < 0 || item >= v.get(kCountAt)) return 0;
    // 2. Length plus one, but no more than the buffer.
    const uint32_t at = v.offset(static_cast<uint16_t>(item));
    bool terminated = false;
    const std::size_t len = block.item_length(at, terminated);
    std::size_t n = len + (terminated ? 1 : 0);
    if (n > size) n = size;
    std::memcpy(data, v.p + at, n);
    return static_cast<uint16_t>(n);
}

uint16_t find(VL_HGLOBAL slot, const char* text) {
    if (!text) return 0;
    Locked block(slot);
    if (!block) return 0;
    const View v = block.view();
    const uint16_t count = v.get(kCountAt);
    for (uint16_t i = 0; i < count; ++i) {
        const uint32_t at = v.offset(i);
        bool terminated = false;
        block.item_length(at, terminated);
        if (!terminated) continue;
        if (platform::compare_nocase(reinterpret_cast<const char*>(v.p + at), text) == 0)
            return static_cast<uint16_t>(i + v.get(kFirstBaseAt));
    }
    return 0;
}

uint16_t numbering(VL_HGLOBAL slot, uint16_t index) {
    Locked block(slot);
    if (!block) return 0;
    const View v = block.view();
    uint16_t flags = v.get(kFlagsAt);
    if (index != 0 && v.get(kSecondBaseAt) != 0)
        flags |= kSecondNumbering;
    else
        flags &= static_cast<uint16_t>(~kSecondNumbering);
    v.set(kFlagsAt, flags);
    return 0;
}

}  // namespace
}  // namespace vl::data

using namespace vl;
using namespace vl::data;

extern "C" uint16_t VLAPI KELUTIL_MemObject(VL_HGLOBAL* slot, uint32_t command, uint32_t index, void* data,
                                            uint32_t size) noexcept {
    if (!slot) return 0;
    const auto cmd = static_cast<uint16_t>(command);
    const auto idx = static_cast<uint16_t>(index);
    if ((cmd & kNeedsObject) && !*slot) return 0;
    switch (cmd) {
        case kCreate: return create(slot, idx, static_cast<uint16_t>(size));
        case kAdd: return add(slot, data, size);
        case kRead: return read(*slot, idx, data, size);
        case kFind: return find(*slot, static_cast<const char*>(data));
        case kFree:
            platform::mem_free(*slot);
            *slot = nullptr;
            return 1;
        case kNumbering: return numbering(*slot, idx);
        default: return 0;
    }
}
