// KELUTIL_PrinterDC on Windows: contexts of the display and the printers,
// the print setup dialog on a device block, the old driver route and the
// default printer that the library's block follows.

#include <windows.h>
// The dialog declarations need <windows.h> first.
#include <commdlg.h>

#include <cstddef>
#include <string>

#include "output/printer.h"
#include "platform/platform.h"
#include "internal/guard.h"
#include "vlcore.h"

namespace vl::output {

// The records the system reads, at the offsets the block logic uses.
static_assert(offsetof(DEVNAMES, wDriverOffset) == devnames::kDriverOffset);
static_assert(offsetof(DEVNAMES, wDeviceOffset) == devnames::kDeviceOffset);
static_assert(offsetof(DEVNAMES, wOutputOffset) == devnames::kOutputOffset);
static_assert(offsetof(DEVNAMES, wDefault) == devnames::kDefault);
static_assert(offsetof(DEVMODEA, dmFields) == devmode::kFields);
static_assert(offsetof(DEVMODEA, dmOrientation) == devmode::kOrientation);
static_assert(offsetof(DEVMODEA, dmCopies) == devmode::kCopies);
static_assert(sizeof(DEVMODEA) <= kModeRoom);
static_assert(offsetof(PrinterBlock, mode) % alignof(DEVMODEA) == 0, "the block's mode is handed to the system as is");
// The dialog record is 66 bytes on 32-bit Windows; 64-bit Windows widens
// its handles and pads it.
static_assert(sizeof(void*) != 4 || sizeof(PRINTDLGA) == 66);

namespace {

// The record of the print dialog, shared by the operations that ask for
// the default printer and the setup dialog.
PRINTDLGA print_dialog_record;

constexpr DWORD kAskDefault = PD_RETURNDEFAULT | PD_PRINTSETUP | PD_NOSELECTION;  // 0x444
constexpr DWORD kShowSetup = PD_RETURNDC | PD_PRINTSETUP | PD_NOSELECTION;        // 0x144
static_assert(kAskDefault == 0x444 && kShowSetup == 0x144);

constexpr char kWarningTitle[] = "Attention!";
constexpr char kWarningText[] =
    "The selected printer driver is from an older version of Windows. To use this driver, set it to be the default "
    "printer from Control Panel and choose Page Setup from Vorlan again.";
constexpr UINT kWarningStyle = MB_TASKMODAL | MB_ICONINFORMATION;  // 0x2040

enum Operation : uint16_t {
    kDisplayDC = 0,
    kDisplayIC = 1,
    kProfileDC = 2,
    kBlockDC = 3,
    kBlockIC = 4,
    kSetupDialog = 5,
    kOldDriver = 6,
    kFollowDefault = 7,
    kProfileIC = 10,
    kTakeDefault = 11,
};

// The system of version 3.0 lacks the device mode calls of the dialog.
bool is_version_3_0() {
    const DWORD version = GetVersion();
    return LOBYTE(LOWORD(version)) == 3 && HIBYTE(LOWORD(version)) == 0;
}

void fresh_record(HWND owner, DWORD flags) {
    print_dialog_record = PRINTDLGA{};
    print_dialog_record.lStructSize = sizeof(PRINTDLGA);
    print_dialog_record.hwndOwner = owner;
    print_dialog_record.Flags = flags;
}

void PrinterBlockTransfer(HWND owner, PRINTDLGA& record, PrinterBlock& block, uint32_t mode) {
    DialogHandles handles{record.hDevMode, record.hDevNames};
    const bool warn = transfer_handles(handles, block, mode);
    record.hDevMode = static_cast<HGLOBAL>(handles.hDevMode);
    record.hDevNames = static_cast<HGLOBAL>(handles.hDevNames);
    if (warn) MessageBoxA(owner, kWarningText, kWarningTitle, kWarningStyle);
}

// The block's device mode, when it holds a whole one: a record whose own
// sizes reach past what the block holds is not handed to the driver.
const DEVMODEA* held_mode(const PrinterBlock& block) {
    if (block.wDevModeSize < offsetof(DEVMODEA, dmFields)) return nullptr;
    const auto* mode = reinterpret_cast<const DEVMODEA*>(block.mode);
    if (static_cast<std::size_t>(mode->dmSize) + mode->dmDriverExtra > block.wDevModeSize) return nullptr;
    return mode;
}

// A context for the block's printer.  A block without names is the empty
// record of a profile without a printer, for which no context is made.
HDC context_for(const PrinterBlock& block, bool information, bool with_mode) {
    if (block.wDevNamesSize == 0) return nullptr;
    const std::string driver(names_driver(block)), device(names_device(block)), port(names_port(block));
    const DEVMODEA* mode = with_mode ? held_mode(block) : nullptr;
    return information ? CreateICA(driver.c_str(), device.c_str(), port.c_str(), mode)
                       : CreateDCA(driver.c_str(), device.c_str(), port.c_str(), mode);
}

// The driver's own setup entry of old drivers.
using DeviceModeProc = void(WINAPI*)(HWND, HMODULE, LPSTR, LPSTR);

HDC old_driver_route(HWND owner) {
    read_profile_printer(printer_block);
    std::string device(names_device(printer_block)), port(names_port(printer_block));
    const std::string file = std::string(names_driver(printer_block)) + ".DRV";
    HMODULE driver = LoadLibraryA(file.c_str());
    if (reinterpret_cast<uintptr_t>(driver) >= 32) {
        if (FARPROC entry = GetProcAddress(driver, "DEVICEMODE"))
            reinterpret_cast<DeviceModeProc>(reinterpret_cast<void*>(entry))(owner, driver, device.data(), port.data());
        FreeLibrary(driver);
    }
    return context_for(printer_block, false, false);
}

void take_default_printer(HWND owner) {
    fresh_record(owner, kAskDefault);
    PrintDlgA(&print_dialog_record);
    if (!print_dialog_record.hDevMode) {
        PrinterBlockTransfer(owner, print_dialog_record, printer_block, kTransferFree);
        return;
    }
    PrinterBlockTransfer(owner, print_dialog_record, printer_block, kTransferSaveWarn);
    // The application prints landscape unless the user says otherwise.
    set_block_orientation(printer_block, devmode::kLandscape);
}

HDC print_setup(HWND owner, PrinterBlock& block) {
    // 1-3. Ask for the default printer without showing anything; a printer
    // that gives no device mode has an old driver.
    fresh_record(owner, kAskDefault);
    PrintDlgA(&print_dialog_record);
    if (!print_dialog_record.hDevMode) {
        PrinterBlockTransfer(owner, print_dialog_record, block, kTransferFree);
        return old_driver_route(owner);
    }
    // 4-5. Show the dialog on the block's saved settings.
    PrinterBlockTransfer(owner, print_dialog_record, block, kTransferFree);
    const std::string device_before(names_device(block));
    print_dialog_record.Flags = kShowSetup;
    PrinterBlockTransfer(owner, print_dialog_record, block, kTransferLoad);
    // 6. Settings that don't suit the printer get one retry without them.
    BOOL confirmed = PrintDlgA(&print_dialog_record);
    if (CommDlgExtendedError() != 0) {
        PrinterBlockTransfer(owner, print_dialog_record, block, kTransferFree);
        confirmed = PrintDlgA(&print_dialog_record);
    }
    // 7. Cancelled: the block keeps what it had.
    if (!confirmed) {
        PrinterBlockTransfer(owner, print_dialog_record, block, kTransferFree);
        return nullptr;
    }
    // 8-10.
    PrinterBlockTransfer(owner, print_dialog_record, block, kTransferSaveWarn);
    if (device_before != names_device(block)) SendMessageA(owner, WM_FONTCHANGE, 0, 0);
    return print_dialog_record.hDC;
}

HDC printer_dc(HWND owner, uint16_t op, void* argument) {
    if (block_field_operation(op, argument)) return nullptr;
    if (is_version_3_0()) {
        if (op == kBlockDC)
            op = kProfileDC;
        else if (op == kBlockIC)
            op = kProfileIC;
        else if (op == kSetupDialog)
            op = kOldDriver;
    }
    auto& block = argument && (op == kBlockDC || op == kBlockIC || op == kSetupDialog)
                      ? *static_cast<PrinterBlock*>(argument)
                      : printer_block;
    switch (op) {
        case kDisplayDC: return CreateDCA("DISPLAY", nullptr, nullptr, nullptr);
        case kDisplayIC: return CreateICA("DISPLAY", nullptr, nullptr, nullptr);
        case kProfileDC:
        case kProfileIC:
            read_profile_printer(printer_block);
            return context_for(printer_block, op == kProfileIC, false);
        case kBlockDC:
        case kBlockIC: ensure_names(block); return context_for(block, op == kBlockIC, true);
        case kSetupDialog: return print_setup(owner, block);
        case kOldDriver: return old_driver_route(owner);
        case kFollowDefault:
            if (default_printer_changed(printer_block)) take_default_printer(owner);
            return nullptr;
        case kTakeDefault: take_default_printer(owner); return nullptr;
        default: return nullptr;
    }
}

}  // namespace
}  // namespace vl::output

extern "C" HDC VLAPI KELUTIL_PrinterDC(HWND owner, uint32_t op, void* block) noexcept {
    return vl::guarded<HDC>(nullptr, [&] { return vl::output::printer_dc(owner, static_cast<uint16_t>(op), block); });
}
