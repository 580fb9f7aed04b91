// The printer device block and everything about it that needs no window
// system: the profile's printer line, the device names record, the two
// fields of the device mode that the library reads and writes, and the
// moves between the block and the print dialog's memory handles.  The
// Windows half (printer_win32.cpp) adds the device contexts and the print
// setup dialog; the native half (printer_posix.cpp) has no printers and
// answers as for a machine without one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/platform.h"
#include "vlcore.h"

namespace vl::output {

using PrinterBlock = VL_PRINTER_BLOCK;

constexpr std::size_t kNamesRoom = VL_PRINTER_NAMES_ROOM;  // 368
constexpr std::size_t kModeRoom = VL_PRINTER_MODE_ROOM;    // 512

// The layout shared with the host.
static_assert(offsetof(PrinterBlock, wDevModeSize) == 0);
static_assert(offsetof(PrinterBlock, wDevNamesSize) == 2);
static_assert(offsetof(PrinterBlock, names) == 4);
static_assert(offsetof(PrinterBlock, mode) == 372);
static_assert(sizeof(PrinterBlock) == 884);

// The device names record: four 16-bit fields, then the texts.
namespace devnames {
constexpr std::size_t kDriverOffset = 0, kDeviceOffset = 2, kOutputOffset = 4, kDefault = 6, kTexts = 8;
constexpr uint16_t kDefaultPrinter = 1;  // DN_DEFAULTPRN
}  // namespace devnames

// Offsets of the fields of the device mode record that the library touches.
namespace devmode {
constexpr std::size_t kFields = 40, kOrientation = 44, kCopies = 54;
constexpr uint32_t kOrientationField = 0x1, kCopiesField = 0x100;  // DM_ORIENTATION, DM_COPIES
constexpr int16_t kLandscape = 2;
}  // namespace devmode

// Room of the buffer the profile's printer line is read into.
constexpr std::size_t kProfileLineRoom = 240;

// The library's own block, empty at load.
extern PrinterBlock printer_block;

// Reads section "windows", key "device" ("device,driver,port") into a
// device names record and answers its length in bytes, or 0, leaving the
// record alone, when there is no printer: no line, or fewer than two
// commas.  The record always has room: a line of 239 characters makes at
// most 8 + 239 + 1 bytes.
uint16_t PrinterNamesFromProfile(std::span<uint8_t, kNamesRoom> names) noexcept;

// The three texts of a block's names record; empty when the block holds
// none or an offset points outside the record.
std::string_view names_device(const PrinterBlock& block) noexcept;
std::string_view names_driver(const PrinterBlock& block) noexcept;
std::string_view names_port(const PrinterBlock& block) noexcept;
uint16_t names_default(const PrinterBlock& block) noexcept;

// The profile's printer into `block`'s names; the size field takes the
// length, 0 when the profile names none.
void read_profile_printer(PrinterBlock& block) noexcept;
// For operations 3, 4, 14 and 15: a block without names drops its device
// mode and takes the profile's printer.
void ensure_names(PrinterBlock& block) noexcept;

int16_t block_orientation(const PrinterBlock& block) noexcept;
void set_block_orientation(PrinterBlock& block, int16_t orientation) noexcept;
void set_block_copies(PrinterBlock& block, uint16_t copies) noexcept;

// Operations 12 to 16, the same on every platform.  Answers false for
// any other operation.  A null `argument` does nothing.
bool block_field_operation(uint16_t op, void* argument) noexcept;

// Operation 7's test: true when `block` follows the default printer and
// the profile now names another device; the block's names are renewed
// from the profile either way (when it follows the default).
bool default_printer_changed(PrinterBlock& block) noexcept;

// The two memory handles of the print dialog's record.
struct DialogHandles {
    platform::MemHandle hDevMode = nullptr;
    platform::MemHandle hDevNames = nullptr;
};

// PrinterBlockTransfer's modes.
enum TransferMode : uint32_t {
    kTransferSave = 0,
    kTransferLoad = 1,
    kTransferFree = 4,
    kTransferSaveWarn = 0x1000,
};

// The moves between a dialog's handles and a block.  Answers true when the
// warning about an old driver is due: with kTransferSaveWarn, a device mode
// handle that is missing, or that holds more than the block's room (it is
// then refused, wDevModeSize 0, never copied in part).  A names record
// longer than its room is refused the same way, without a warning.
bool transfer_handles(DialogHandles& record, PrinterBlock& block, uint32_t mode) noexcept;

}  // namespace vl::output
