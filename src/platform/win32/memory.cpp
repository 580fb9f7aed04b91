// Movable memory blocks on Windows are the real GlobalAlloc blocks, so the
// host can free what the library hands out with GlobalFree.

#include <windows.h>

#include "platform/platform.h"

namespace vl::platform {

MemHandle mem_alloc(uint32_t flags, std::size_t bytes) noexcept { return GlobalAlloc(flags, bytes); }
void* mem_lock(MemHandle h) noexcept { return h ? GlobalLock(h) : nullptr; }
bool mem_unlock(MemHandle h) noexcept { return h && GlobalUnlock(h) != 0; }
std::size_t mem_size(MemHandle h) noexcept { return h ? GlobalSize(h) : 0; }
MemHandle mem_free(MemHandle h) noexcept { return h ? GlobalFree(h) : nullptr; }

}  // namespace vl::platform
