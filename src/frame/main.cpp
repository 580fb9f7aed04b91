// KELUTIL_Main: start, end and control of the library for the host.

#include "frame/frame.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::frame {

FrameState frame_state;

// The date printer's reload: time zone, "intl" settings, month and day names.
constexpr uint32_t kReloadRegionalTables = 32768;
constexpr uint32_t kAskLanguageFlag = 24576;
// The path registry's operation that records the start-up directory.
constexpr uint32_t kRecordStartDir = 2;
// The printer device's operations: take the default printer into the
// library's block, and follow a default printer that changed.
constexpr uint32_t kPrinterTakeDefault = 11;
constexpr uint32_t kPrinterFollowDefault = 7;
// KELUTIL_Color's load, and its end, which deletes the palette.
constexpr uint32_t kColourLoad = 0;
constexpr uint32_t kColourEnd = 1;

void library_attach() { KELUTIL_date2str(0.0, kReloadRegionalTables, nullptr); }

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

uintptr_t start(VL_HWND window, uint16_t version, intptr_t settings) {
    // 1. A host newer than this library gets nothing started.
    if (version > kNewestHostVersion) return 0;
    // 2. The regional settings may have changed since load.
    KELUTIL_date2str(0.0, kReloadRegionalTables, nullptr);
    // 3. The colour names, the user's colour list and the palette.
    KELUTIL_Color(window, version, settings, kColourLoad);
    // 4. The directory the host was started in, for the file dialogs.
    KELUTIL_PathControl(kRecordStartDir, nullptr, nullptr, 0);
    // 5. The default printer, as the library's printer block.
    KELUTIL_PrinterDC(window, kPrinterTakeDefault, nullptr);
    // 6. The host's vocabulary, class by class.
    KELUTIL_Names(0, 0, 1);
    // 7. The library's version.
    return kLibraryVersion;
}

}  // namespace
}  // namespace vl::frame

using namespace vl;
using namespace vl::frame;

extern "C" uintptr_t VLAPI KELUTIL_Main(VL_HWND window, uint32_t version, intptr_t value, uint32_t operation) noexcept {
    switch (static_cast<uint16_t>(operation)) {
        case kStart: return start(window, static_cast<uint16_t>(version), value);
        case kEnd: KELUTIL_Color(window, version, value, kColourEnd); return 0;
        case kSettingsChanged:
            KELUTIL_date2str(0.0, kReloadRegionalTables, nullptr);
            KELUTIL_PrinterDC(window, kPrinterFollowDefault, nullptr);
            return 0;
        case kQuery: return kLibraryVersion;
        case kLanguageFlag: return KELUTIL_date2str(0.0, kAskLanguageFlag, nullptr);
        case kModuleHandle: return platform::module_handle();
        case kSetFileCallback: frame_state.lpfnFileHost = reinterpret_cast<host::HostProc>(value); return 0;
        default: return 0;
    }
}
