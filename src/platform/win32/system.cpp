// The clock on Windows.

#include <sys/timeb.h>
#include <windows.h>

#include "platform/platform.h"

namespace vl::platform {
Instant now() noexcept {
    if (Instant pinned{}; pinned_now(pinned)) return pinned;
    __timeb64 tb{};
    _ftime64(&tb);
    return {static_cast<int64_t>(tb.time), static_cast<int32_t>(tb.millitm)};
}

}  // namespace vl::platform
