// KELUTIL_Main: start, end and control of the library for the host.

#include "datetime/regional.h"
#include "frame/frame.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::frame {

FrameState frame_state;

void library_attach() { datetime::regional_tables_load(); }

namespace {

enum Operation : uint16_t {
    kStart = 0,
    kEnd = 1,
    kSettingsChanged = 2,
    kQuery = 3,
    kLanguageFlag = 4,
    kModuleHandle = 5,
    kSetFileCallback = 6,
};

uintptr_t start(uint16_t version) {
    // 1. A host newer than this library gets nothing started.
    if (version > kNewestHostVersion) return 0;
    // 2. The regional settings may have changed since load.
    datetime::regional_tables_load();
    return kLibraryVersion;
}

}  // namespace
}  // namespace vl::frame

using namespace vl;
using namespace vl::frame;

extern "C" uintptr_t VLAPI KELUTIL_Main(VL_HWND /*window*/, uint32_t version, intptr_t value, uint32_t operation) {
    switch (static_cast<uint16_t>(operation)) {
        case kStart: return start(static_cast<uint16_t>(version));
        case kEnd: return 0;
        case kSettingsChanged: datetime::regional_tables_load(); return 0;
        case kQuery: return kLibraryVersion;
        case kLanguageFlag: return static_cast<uint16_t>(datetime::regional_date_tables.language_flag);
        case kModuleHandle: return platform::module_handle();
        case kSetFileCallback: frame_state.lpfnFileHost = reinterpret_cast<host::HostProc>(value); return 0;
        default: return 0;
    }
}
