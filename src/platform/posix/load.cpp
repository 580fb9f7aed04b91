// Process attach natively: a constructor stands in for the DLL entry.
// There is no window system, so nothing here can refuse the load.

#include <dlfcn.h>

#include "frame/frame.h"
#include "platform/platform.h"

namespace {

__attribute__((constructor)) void vlcore_attach() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&vlcore_attach), &info) && info.dli_fbase)
        vl::platform::set_module_handle(reinterpret_cast<uintptr_t>(info.dli_fbase));
    vl::frame::library_attach();
}

}  // namespace
