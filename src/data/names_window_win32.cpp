// Listings of name classes go to a host window as script lines.  The one
// place in the text data subsystem that talks to windows directly.

#include <windows.h>

#include "data/names.h"
#include "internal/host.h"

namespace vl::data {

bool window_alive(VL_HWND window) noexcept { return window && IsWindow(window); }

void send_to_window(VL_HWND window, const char* text) noexcept {
    SendMessageA(window, host::SWM_EXECUTE, 0, reinterpret_cast<LPARAM>(text));
}

}  // namespace vl::data
