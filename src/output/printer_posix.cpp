// KELUTIL_PrinterDC without a window system: no display and no printer
// driver, so no context is ever made.  The block, the profile's printer and
// the dialog steps that need no device still run, and each operation
// answers as on a machine where the device is missing.

#include "output/printer.h"
#include "vlcore.h"

using namespace vl;
using namespace vl::output;

extern "C" VL_HDC VLAPI KELUTIL_PrinterDC(VL_HWND /*owner*/, uint32_t op, void* block) noexcept {
    const auto code = static_cast<uint16_t>(op);
    if (block_field_operation(code, block)) return nullptr;
    switch (code) {
        case 2:  // the profile's printer, then a context no driver can give
        case 6:  // the old driver route: no driver file to load
        case 10: read_profile_printer(printer_block); break;
        case 3:
        case 4: ensure_names(block ? *static_cast<PrinterBlock*>(block) : printer_block); break;
        case 5:
            // The default printer is asked for first; with none, the old
            // driver route follows.
            read_profile_printer(printer_block);
            break;
        case 7:
            // A changed default would be taken by operation 11, which finds
            // no default printer here.
            default_printer_changed(printer_block);
            break;
        default: break;
    }
    return nullptr;
}
