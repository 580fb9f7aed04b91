// The parts of the platform layer that both platforms share.

#include <cstdlib>

#include "platform/platform.h"

namespace vl::platform {
namespace {
uintptr_t g_module_handle = 0;
}

uintptr_t module_handle() noexcept { return g_module_handle; }
void set_module_handle(uintptr_t h) noexcept { g_module_handle = h; }

// VLCORE_NOW pins "now", so that tests of date code never read the real date.
bool pinned_now(Instant& out) noexcept {
    const char* pinned = std::getenv("VLCORE_NOW");
    if (!pinned) return false;
    char* end = nullptr;
    const double t = std::strtod(pinned, &end);
    if (end == pinned) return false;
    const auto whole = static_cast<int64_t>(t);
    out = {whole, static_cast<int32_t>((t - static_cast<double>(whole)) * 1000.0)};
    return true;
}

}  // namespace vl::platform
