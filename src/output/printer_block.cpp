// The printer block: the library's copy, the profile's printer line, the
// names record and the moves between the block and a dialog's handles.

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "output/dib.h"
#include "output/printer.h"

namespace vl::output {

PrinterBlock printer_block{};

namespace {

uint16_t names_field(const PrinterBlock& block, std::size_t at) noexcept { return read_u16(block.names + at); }

// The text at `offset` of the names record, cut at the record's end so a
// damaged offset or a missing terminator never reads past it.
std::string_view names_text(const PrinterBlock& block, uint16_t offset) noexcept {
    const std::size_t held = std::min<std::size_t>(block.wDevNamesSize, kNamesRoom);
    if (held == 0 || offset >= held) return {};
    const auto* start = reinterpret_cast<const char*>(block.names) + offset;
    return {start, strnlen(start, held - offset)};
}

}  // namespace

uint16_t PrinterNamesFromProfile(std::span<uint8_t, kNamesRoom> names) noexcept {
    std::array<char, kProfileLineRoom> line{};
    platform::profile_string("windows", "device", "", line);
    // Each token can be as long as the line; the commas are found in the
    // order device, driver, and the rest is the port.
    std::array<char, kProfileLineRoom> device{}, driver{};
    const char* rest = get_next_token_sep(device.data(), line.data(), ",");
    if (!rest) return 0;
    rest = get_next_token_sep(driver.data(), rest, ",");
    if (!rest) return 0;

    const std::size_t device_len = std::strlen(device.data());
    const std::size_t driver_len = std::strlen(driver.data());
    const std::size_t port_len = std::strlen(rest);
    const auto device_at = static_cast<uint16_t>(devnames::kTexts);
    const auto driver_at = static_cast<uint16_t>(device_at + device_len + 1);
    const auto port_at = static_cast<uint16_t>(driver_at + driver_len + 1);
    const std::size_t total = port_at + port_len + 1;
    static_assert(devnames::kTexts + kProfileLineRoom < kNamesRoom, "a whole profile line fits the record");

    write_u16(names.data() + devnames::kDeviceOffset, device_at);
    write_u16(names.data() + devnames::kDriverOffset, driver_at);
    write_u16(names.data() + devnames::kOutputOffset, port_at);
    write_u16(names.data() + devnames::kDefault, devnames::kDefaultPrinter);
    std::memcpy(names.data() + device_at, device.data(), device_len + 1);
    std::memcpy(names.data() + driver_at, driver.data(), driver_len + 1);
    std::memcpy(names.data() + port_at, rest, port_len + 1);
    return static_cast<uint16_t>(total);
}

std::string_view names_device(const PrinterBlock& block) noexcept {
    return names_text(block, names_field(block, devnames::kDeviceOffset));
}
std::string_view names_driver(const PrinterBlock& block) noexcept {
    return names_text(block, names_field(block, devnames::kDriverOffset));
}
std::string_view names_port(const PrinterBlock& block) noexcept {
    return names_text(block, names_field(block, devnames::kOutputOffset));
}
uint16_t names_default(const PrinterBlock& block) noexcept {
    return block.wDevNamesSize ? names_field(block, devnames::kDefault) : 0;
}

void read_profile_printer(PrinterBlock& block) noexcept {
    block.wDevNamesSize = PrinterNamesFromProfile(std::span<uint8_t, kNamesRoom>(block.names));
}

void ensure_names(PrinterBlock& block) noexcept {
    if (block.wDevNamesSize != 0) return;
    block.wDevModeSize = 0;
    read_profile_printer(block);
}

int16_t block_orientation(const PrinterBlock& block) noexcept {
    return static_cast<int16_t>(read_u16(block.mode + devmode::kOrientation));
}

// The field is written whether or not the block holds a device mode, so a
// later device mode read back keeps the host's wish; the field mask tells
// the driver that the value counts.
void set_block_orientation(PrinterBlock& block, int16_t orientation) noexcept {
    write_u16(block.mode + devmode::kOrientation, static_cast<uint16_t>(orientation));
    if (block.wDevModeSize > devmode::kFields)
        write_u32(block.mode + devmode::kFields, read_u32(block.mode + devmode::kFields) | devmode::kOrientationField);
}

void set_block_copies(PrinterBlock& block, uint16_t copies) noexcept {
    write_u16(block.mode + devmode::kCopies, copies);
    if (block.wDevModeSize > devmode::kFields)
        write_u32(block.mode + devmode::kFields, read_u32(block.mode + devmode::kFields) | devmode::kCopiesField);
}

bool block_field_operation(uint16_t op, void* argument) noexcept {
    enum : uint16_t {
        kGetOrientation = VL_PRINTER_GET_ORIENTATION,
        kSetOrientation = VL_PRINTER_SET_ORIENTATION,
        kDeviceName = VL_PRINTER_DEVICE_NAME,
        kPortName = VL_PRINTER_PORT,
        kSetCopies = VL_PRINTER_SET_COPIES
    };
    if (op < kGetOrientation || op > kSetCopies) return false;
    if (!argument) return true;
    switch (op) {
        case kGetOrientation: {
            const int32_t value = block_orientation(printer_block);
            std::memcpy(argument, &value, sizeof value);
            break;
        }
        case kSetOrientation: {
            int16_t value;
            std::memcpy(&value, argument, sizeof value);
            set_block_orientation(printer_block, value);
            break;
        }
        case kDeviceName:
        case kPortName: {
            ensure_names(printer_block);
            // The caller's room is that of a profile line; a longer name
            // from a dialog's record is cut to it.
            const std::string_view text = (op == kDeviceName ? names_device(printer_block) : names_port(printer_block))
                                              .substr(0, kProfileLineRoom - 1);
            auto* out = static_cast<char*>(argument);
            std::memcpy(out, text.data(), text.size());
            out[text.size()] = '\0';
            break;
        }
        case kSetCopies: {
            uint16_t value;
            std::memcpy(&value, argument, sizeof value);
            set_block_copies(printer_block, value);
            break;
        }
        default: break;
    }
    return true;
}

bool default_printer_changed(PrinterBlock& block) noexcept {
    if (block.wDevNamesSize == 0 || (names_default(block) & 1) == 0) return false;
    // The name lies in the block's names, so a copy of that room holds it.
    std::array<char, kNamesRoom> room{};
    const std::string_view name = names_device(block);
    const std::size_t n = std::min(name.size(), room.size());
    std::copy_n(name.begin(), n, room.begin());
    read_profile_printer(block);
    return std::string_view(room.data(), n) != names_device(block);
}

namespace {

// Copies a handle's contents into `room`; answers the size, or 0 for a
// missing handle.  `too_big` is set, and nothing copied, when the handle
// holds more than the room.
uint16_t save_handle(platform::MemHandle handle, std::span<unsigned char> room, bool& too_big) noexcept {
    too_big = false;
    if (!handle) return 0;
    const std::size_t size = platform::mem_size(handle);
    if (size > room.size()) {
        too_big = true;
        return 0;
    }
    const void* data = platform::mem_lock(handle);
    if (!data) return 0;
    std::memcpy(room.data(), data, size);
    platform::mem_unlock(handle);
    return static_cast<uint16_t>(size);
}

platform::MemHandle load_handle(std::span<const unsigned char> held) noexcept {
    if (held.empty()) return nullptr;
    platform::MemHandle handle = platform::mem_alloc(platform::kMemMoveableZeroInit, held.size());
    if (!handle) return nullptr;
    if (void* data = platform::mem_lock(handle)) {
        std::memcpy(data, held.data(), held.size());
        platform::mem_unlock(handle);
    }
    return handle;
}

void free_handle(platform::MemHandle& handle) noexcept {
    if (!handle) return;
    // A handle still locked by its owner is unlocked down to zero first.
    while (platform::mem_unlock(handle)) {
    }
    platform::mem_free(handle);
    handle = nullptr;
}

}  // namespace

bool transfer_handles(DialogHandles& record, PrinterBlock& block, uint32_t mode) noexcept {
    switch (mode) {
        case kTransferSave:
        case kTransferSaveWarn: {
            bool names_too_big = false, mode_too_big = false;
            block.wDevNamesSize = save_handle(record.hDevNames, block.names, names_too_big);
            block.wDevModeSize = save_handle(record.hDevMode, block.mode, mode_too_big);
            const bool mode_missing = record.hDevMode == nullptr || mode_too_big;
            free_handle(record.hDevNames);
            free_handle(record.hDevMode);
            return mode == kTransferSaveWarn && mode_missing;
        }
        case kTransferLoad: {
            const auto names = std::min<std::size_t>(block.wDevNamesSize, kNamesRoom);
            const auto mode_bytes = std::min<std::size_t>(block.wDevModeSize, kModeRoom);
            record.hDevNames = load_handle({block.names, names});
            record.hDevMode = load_handle({block.mode, mode_bytes});
            return false;
        }
        case kTransferFree:
            free_handle(record.hDevNames);
            free_handle(record.hDevMode);
            return false;
        default: return false;
    }
}

}  // namespace vl::output
