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

}  // namespace vl::frame
