// The clock natively.

#include <ctime>

#include "platform/platform.h"

namespace vl::platform {
Instant now() noexcept {
    if (Instant pinned{}; pinned_now(pinned)) return pinned;
    timespec ts{};
    clock_gettime(CLOCK_REALTIME, &ts);
    return {static_cast<int64_t>(ts.tv_sec), static_cast<int32_t>(ts.tv_nsec / 1000000)};
}

}  // namespace vl::platform
