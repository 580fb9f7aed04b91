// The host's name tables and the delivery of listings to a window.
#pragma once

#include <cstdint>

#include "vlcore.h"

namespace vl::data {

// A class index with its table, as the constant data holds them.
struct ClassTable {
    uint32_t class_index;
    const VL_NAME_ROW* rows;
};

// Window side of a listing.  Only the Windows build has windows: natively
// no window is ever alive, so nothing is sent.
bool window_alive(VL_HWND window) noexcept;
void send_to_window(VL_HWND window, const char* text) noexcept;

}  // namespace vl::data
