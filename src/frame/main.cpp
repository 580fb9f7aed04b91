// KELUTIL_Main: start, end and control of the library for the host.

#include "frame/frame.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::frame {

FrameState frame_state;

// The date printer's reload: time zone, "intl" settings, month and day names.
void library_attach() { KELUTIL_date2str(0.0, VL_DATE_RELOAD, nullptr); }

namespace {

uintptr_t start(VL_HWND window, uint16_t version, intptr_t settings) {
    // 1. A host newer than this library gets nothing started.
    if (version > VL_MAIN_NEWEST_HOST) return 0;
    // 2. The regional settings may have changed since load.
    KELUTIL_date2str(0.0, VL_DATE_RELOAD, nullptr);
    // 3. The colour names, the user's colour list and the palette.
    KELUTIL_Color(window, version, settings, VL_COLOR_LOAD);
    // 4. The directory the host was started in, for the file dialogs.
    KELUTIL_PathControl(VL_PATH_START_DIRECTORY, nullptr, nullptr, 0);
    // 5. The default printer, as the library's printer block.
    KELUTIL_PrinterDC(window, VL_PRINTER_TAKE_DEFAULT, nullptr);
    // 6. The host's vocabulary, class by class.
    KELUTIL_Names(0, 0, VL_NAMES_FILL_CLASSES);
    // 7. The library's version.
    return VL_MAIN_VERSION;
}

}  // namespace
}  // namespace vl::frame

using namespace vl;
using namespace vl::frame;

extern "C" uintptr_t VLAPI KELUTIL_Main(VL_HWND window, uint32_t version, intptr_t value, uint32_t operation) noexcept {
    switch (static_cast<uint16_t>(operation)) {
        case VL_MAIN_START: return start(window, static_cast<uint16_t>(version), value);
        case VL_MAIN_END: KELUTIL_Color(window, version, value, VL_COLOR_DELETE_PALETTE); return 0;
        case VL_MAIN_SETTINGS_CHANGED:
            KELUTIL_date2str(0.0, VL_DATE_RELOAD, nullptr);
            KELUTIL_PrinterDC(window, VL_PRINTER_FOLLOW_DEFAULT, nullptr);
            return 0;
        case VL_MAIN_QUERY: return VL_MAIN_VERSION;
        case VL_MAIN_LANGUAGE: return KELUTIL_date2str(0.0, VL_DATE_ASK_LANGUAGE, nullptr);
        case VL_MAIN_MODULE: return platform::module_handle();
        case VL_MAIN_SET_FILE_CALLBACK: frame_state.lpfnFileHost = reinterpret_cast<host::HostProc>(value); return 0;
        default: return 0;
    }
}
