// The string table on Windows: the DLL's own string resources.

#include <windows.h>

#include "platform/platform.h"

namespace vl::platform {

int32_t load_string(uint32_t id, std::span<char> out) noexcept {
    if (out.empty()) return 0;
    out[0] = '\0';
    const int size = out.size() > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<int>(out.size());
    return LoadStringA(reinterpret_cast<HINSTANCE>(module_handle()), id, out.data(), size);
}

}  // namespace vl::platform
