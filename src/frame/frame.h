// The library frame: what happens at load and the control entry.
#pragma once

#include "internal/host.h"

namespace vl::frame {

// The process-wide state of the frame itself; the other subsystems keep
// theirs beside their own code.
struct FrameState {
    host::HostProc lpfnFileHost = nullptr;  // asked for paths no registration knows
};
extern FrameState frame_state;

// The platform-free half of process attach: everything but registering the
// script window's class, which only the Windows build has.
void library_attach();

// Answer of KELUTIL_Main at start and query.
constexpr uint32_t kLibraryVersion = 3783;
// The newest host version this library starts for.
constexpr uint32_t kNewestHostVersion = 6100;

}  // namespace vl::frame
