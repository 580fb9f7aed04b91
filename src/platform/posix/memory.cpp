// Movable memory blocks natively.  Every live block is registered, so a
// foreign, freed or null handle is refused instead of being dereferenced.

#include <cstdlib>
#include <cstring>
#include <new>
#include <unordered_set>

#include "platform/platform.h"
#include "vlcore.h"

namespace vl::platform {
namespace {

struct alignas(16) BlockHeader {
    std::size_t size;
    uint32_t locks;
};

std::unordered_set<const void*>& live_blocks() {
    static std::unordered_set<const void*> blocks;
    return blocks;
}

BlockHeader* header_of(MemHandle h) noexcept {
    return (h && live_blocks().contains(h)) ? static_cast<BlockHeader*>(h) : nullptr;
}

}  // namespace

MemHandle mem_alloc(uint32_t /*flags: blocks are always movable and zero-filled natively*/, std::size_t bytes) noexcept {
    if (bytes > SIZE_MAX - sizeof(BlockHeader)) return nullptr;
    void* raw = std::calloc(1, sizeof(BlockHeader) + bytes);
    if (!raw) return nullptr;
    auto* b = ::new (raw) BlockHeader{bytes, 0};
    try {
        live_blocks().insert(b);
    } catch (const std::bad_alloc&) {
        std::free(raw);
        return nullptr;
    }
    return b;
}

void* mem_lock(MemHandle h) noexcept {
    BlockHeader* b = header_of(h);
    if (!b) return nullptr;
    ++b->locks;
    return b + 1;
}

bool mem_unlock(MemHandle h) noexcept {
    BlockHeader* b = header_of(h);
    if (!b || b->locks == 0) return false;
    return --b->locks != 0;
}

std::size_t mem_size(MemHandle h) noexcept {
    const BlockHeader* b = header_of(h);
    return b ? b->size : 0;
}

MemHandle mem_free(MemHandle h) noexcept {
    BlockHeader* b = header_of(h);
    if (!b) return h;
    live_blocks().erase(b);
    std::free(b);
    return nullptr;
}

}  // namespace vl::platform

extern "C" {

VL_HGLOBAL vl_global_alloc(uint32_t flags, size_t bytes) {
    return static_cast<VL_HGLOBAL>(vl::platform::mem_alloc(flags, bytes));
}
void* vl_global_lock(VL_HGLOBAL block) { return vl::platform::mem_lock(block); }
int vl_global_unlock(VL_HGLOBAL block) { return vl::platform::mem_unlock(block) ? 1 : 0; }
size_t vl_global_size(VL_HGLOBAL block) { return vl::platform::mem_size(block); }
VL_HGLOBAL vl_global_free(VL_HGLOBAL block) { return static_cast<VL_HGLOBAL>(vl::platform::mem_free(block)); }

}  // extern "C"
