// The printer block without a printer: the profile's printer line as a
// names record, the moves between a block and the dialog's handles with
// device modes at, above and below the room, the block's fields and the
// test for a changed default printer.

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "output/dib.h"
#include "output/printer.h"
#include "platform/platform.h"
#include "support.h"

namespace {

using namespace vl::output;
using vltest::DataRow;
namespace platform = vl::platform;

std::string field(const std::string& text) { return text == "(empty)" ? std::string() : text; }

// The system profile with `line` as its printer (or without the key): the
// file VLCORE_PROFILE names, natively.  On Windows the profile is the
// machine's, and the profile rows do not run there.
class ProfileLine {
  public:
    explicit ProfileLine(const std::string& line) {
        path_ = testing::TempDir() + "vlcore_printer_block.ini";
        std::ofstream out(path_);
        out << "[windows]\n";
        if (line != "(none)") out << "device=" << field(line) << "\n";
        out.close();
        vltest::set_env("VLCORE_PROFILE", path_.c_str());
    }
    ~ProfileLine() {
        vltest::set_env("VLCORE_PROFILE", nullptr);
        std::remove(path_.c_str());
    }

  private:
    std::string path_;
};

PrinterBlock poisoned_block() {
    PrinterBlock block;
    std::memset(&block, vltest::kPoison, sizeof block);
    return block;
}

std::string text_at(const PrinterBlock& block, std::size_t offset) {
    return reinterpret_cast<const char*>(block.names) + offset;
}

TEST(PrinterBlock, NamesFromTheProfileLine) {
#ifdef _WIN32
    GTEST_SKIP() << "the system profile's printer is the machine's own here";
#endif
    vltest::for_each_row("output/printer_profiles.tsv", [](const DataRow& row) {
        ProfileLine profile(row[0]);
        PrinterBlock block = poisoned_block();
        const auto length = PrinterNamesFromProfile(std::span<uint8_t, kNamesRoom>(block.names));
        EXPECT_EQ(length, row.n(1));
        if (length == 0) {
            for (std::size_t i = 0; i < kNamesRoom; ++i)
                ASSERT_EQ(block.names[i], vltest::kPoison) << "record touched at " << i;
            return;
        }
        const std::string device = field(row[2]), driver = field(row[3]), port = field(row[4]);
        EXPECT_EQ(read_u16(block.names + 2), 8) << "device offset";
        EXPECT_EQ(read_u16(block.names + 0), 8 + device.size() + 1) << "driver offset";
        EXPECT_EQ(read_u16(block.names + 4), 8 + device.size() + 1 + driver.size() + 1) << "port offset";
        EXPECT_EQ(read_u16(block.names + 6), 1) << "the default printer";
        EXPECT_EQ(text_at(block, read_u16(block.names + 2)), device);
        EXPECT_EQ(text_at(block, read_u16(block.names + 0)), driver);
        EXPECT_EQ(text_at(block, read_u16(block.names + 4)), port);
        EXPECT_EQ(block.names[length], vltest::kPoison) << "written past the record's length";
        // The same texts through the block's readers.
        block.wDevNamesSize = length;
        EXPECT_EQ(names_device(block), device);
        EXPECT_EQ(names_driver(block), driver);
        EXPECT_EQ(names_port(block), port);
    });
}

TEST(PrinterBlock, ReadersStayInsideADamagedRecord) {
    PrinterBlock block = poisoned_block();
    block.wDevNamesSize = 12;
    write_u16(block.names + 0, 400);  // past the room
    write_u16(block.names + 2, 8);    // a text without terminator inside the size
    write_u16(block.names + 4, 12);   // at the size
    EXPECT_EQ(names_driver(block), "");
    EXPECT_EQ(names_device(block).size(), 4u);
    EXPECT_EQ(names_port(block), "");
    block.wDevNamesSize = 0;
    EXPECT_EQ(names_device(block), "");
    EXPECT_EQ(names_default(block), 0);
}

// A handle holding `size` bytes counting up from `seed`.
platform::MemHandle filled_handle(std::size_t size, uint8_t seed) {
    platform::MemHandle h = platform::mem_alloc(platform::kMemMoveableZeroInit, size);
    auto* p = static_cast<uint8_t*>(platform::mem_lock(h));
    for (std::size_t i = 0; i < size; ++i) p[i] = static_cast<uint8_t>(seed + i);
    platform::mem_unlock(h);
    return h;
}

TEST(PrinterBlock, SaveCopiesHandlesByTheirRoom) {
    constexpr std::size_t kNone = ~std::size_t{0};
    const struct {
        const char* name;
        std::size_t names_bytes, mode_bytes;
        uint32_t mode;
        uint16_t names_held, mode_held;
        bool warning;
    } rows[] = {
        {"usual sizes", 32, 164, kTransferSave, 32, 164, false},
        {"usual sizes, warning mode", 32, 164, kTransferSaveWarn, 32, 164, false},
        {"device mode at the room", 32, kModeRoom, kTransferSaveWarn, 32, kModeRoom, false},
        {"device mode one byte over", 32, kModeRoom + 1, kTransferSaveWarn, 32, 0, true},
        {"device mode far over", 32, 4096, kTransferSave, 32, 0, false},
        {"one-byte device mode", 32, 1, kTransferSave, 32, 1, false},
        {"no device mode", 32, kNone, kTransferSave, 32, 0, false},
        {"no device mode, warning mode", 32, kNone, kTransferSaveWarn, 32, 0, true},
        {"names at the room", kNamesRoom, 164, kTransferSave, kNamesRoom, 164, false},
        {"names one byte over", kNamesRoom + 1, 164, kTransferSaveWarn, 0, 164, false},
        {"nothing at all", kNone, kNone, kTransferSave, 0, 0, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        DialogHandles handles;
        if (row.names_bytes != kNone) handles.hDevNames = filled_handle(row.names_bytes, 1);
        if (row.mode_bytes != kNone) handles.hDevMode = filled_handle(row.mode_bytes, 100);
        PrinterBlock block = poisoned_block();
        EXPECT_EQ(transfer_handles(handles, block, row.mode), row.warning);
        EXPECT_EQ(handles.hDevNames, nullptr) << "handles are freed";
        EXPECT_EQ(handles.hDevMode, nullptr);
        EXPECT_EQ(block.wDevNamesSize, row.names_held);
        EXPECT_EQ(block.wDevModeSize, row.mode_held);
        for (std::size_t i = 0; i < row.names_held; ++i) ASSERT_EQ(block.names[i], static_cast<uint8_t>(1 + i)) << i;
        for (std::size_t i = row.names_held; i < kNamesRoom; ++i) ASSERT_EQ(block.names[i], vltest::kPoison) << i;
        for (std::size_t i = 0; i < row.mode_held; ++i) ASSERT_EQ(block.mode[i], static_cast<uint8_t>(100 + i)) << i;
        for (std::size_t i = row.mode_held; i < kModeRoom; ++i) ASSERT_EQ(block.mode[i], vltest::kPoison) << i;
    }
}

TEST(PrinterBlock, LoadMakesHandlesOfTheHeldSizesAndRoundTrips) {
    const struct {
        uint16_t names_held, mode_held;
    } rows[] = {{32, 164}, {kNamesRoom, kModeRoom}, {32, 0}, {0, 164}, {0, 0}, {1, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE("names " + std::to_string(row.names_held) + ", mode " + std::to_string(row.mode_held));
        PrinterBlock block{};
        for (std::size_t i = 0; i < kNamesRoom; ++i) block.names[i] = static_cast<uint8_t>(3 * i);
        for (std::size_t i = 0; i < kModeRoom; ++i) block.mode[i] = static_cast<uint8_t>(7 * i);
        block.wDevNamesSize = row.names_held;
        block.wDevModeSize = row.mode_held;
        DialogHandles handles;
        EXPECT_FALSE(transfer_handles(handles, block, kTransferLoad));
        EXPECT_EQ(handles.hDevNames == nullptr, row.names_held == 0);
        EXPECT_EQ(handles.hDevMode == nullptr, row.mode_held == 0);
        EXPECT_EQ(platform::mem_size(handles.hDevNames), row.names_held);
        EXPECT_EQ(platform::mem_size(handles.hDevMode), row.mode_held);
        // Saved back into a fresh block: the same bytes, nothing more.
        PrinterBlock back = poisoned_block();
        transfer_handles(handles, back, kTransferSave);
        EXPECT_EQ(back.wDevNamesSize, row.names_held);
        EXPECT_EQ(back.wDevModeSize, row.mode_held);
        EXPECT_EQ(std::memcmp(back.names, block.names, row.names_held), 0);
        EXPECT_EQ(std::memcmp(back.mode, block.mode, row.mode_held), 0);
        if (row.mode_held < kModeRoom) {
            EXPECT_EQ(back.mode[row.mode_held], vltest::kPoison);
        }
    }
}

TEST(PrinterBlock, LoadOfADamagedHostBlockStaysInItsRoom) {
    PrinterBlock block{};
    block.wDevNamesSize = 0xFFFF;
    block.wDevModeSize = 0xFFFF;
    DialogHandles handles;
    transfer_handles(handles, block, kTransferLoad);
    EXPECT_EQ(platform::mem_size(handles.hDevNames), kNamesRoom);
    EXPECT_EQ(platform::mem_size(handles.hDevMode), kModeRoom);
    transfer_handles(handles, block, kTransferFree);
}

TEST(PrinterBlock, FreeReleasesBothHandles) {
    DialogHandles handles{filled_handle(164, 0), filled_handle(32, 0)};
    platform::mem_lock(handles.hDevMode);  // a handle its owner left locked
    PrinterBlock block = poisoned_block();
    EXPECT_FALSE(transfer_handles(handles, block, kTransferFree));
    EXPECT_EQ(handles.hDevMode, nullptr);
    EXPECT_EQ(handles.hDevNames, nullptr);
    EXPECT_EQ(block.wDevModeSize, 0xCCCC) << "the block is not touched";
    // An unknown mode moves nothing.
    DialogHandles kept{filled_handle(8, 0), nullptr};
    EXPECT_FALSE(transfer_handles(kept, block, 2));
    EXPECT_NE(kept.hDevMode, nullptr);
    transfer_handles(kept, block, kTransferFree);
}

TEST(PrinterBlock, OrientationAndCopiesFieldsOfTheLibraryBlock) {
    const PrinterBlock saved = printer_block;
    printer_block = PrinterBlock{};
    printer_block.wDevModeSize = 156;
    int16_t landscape = 2;
    EXPECT_TRUE(block_field_operation(13, &landscape));
    EXPECT_EQ(read_u16(printer_block.mode + 44), 2);
    uint16_t copies = 3;
    EXPECT_TRUE(block_field_operation(16, &copies));
    EXPECT_EQ(read_u16(printer_block.mode + 54), 3);
    EXPECT_EQ(read_u32(printer_block.mode + 40), 0x101u) << "the driver is told both fields count";
    // Without a device mode only the fields themselves are written.
    printer_block = PrinterBlock{};
    EXPECT_TRUE(block_field_operation(16, &copies));
    EXPECT_EQ(read_u32(printer_block.mode + 40), 0u);
    EXPECT_FALSE(block_field_operation(11, &copies));
    EXPECT_FALSE(block_field_operation(17, &copies));
    printer_block = saved;
}

TEST(PrinterBlock, DeviceNameCopiedOutFitsTheRoomOfAProfileLine) {
    const PrinterBlock saved = printer_block;
    const struct {
        std::size_t device_length;
        std::size_t copied;
    } rows[] = {{0, 0}, {1, 1}, {238, 238}, {239, 239}, {240, 239}, {350, 239}};
    for (const auto& row : rows) {
        SCOPED_TRACE("device name of " + std::to_string(row.device_length));
        printer_block = PrinterBlock{};
        const std::size_t driver_at = 8 + row.device_length + 1;
        write_u16(printer_block.names + 0, static_cast<uint16_t>(driver_at));
        write_u16(printer_block.names + 2, 8);
        write_u16(printer_block.names + 4, static_cast<uint16_t>(driver_at + 1));
        std::memset(printer_block.names + 8, 'd', row.device_length);
        printer_block.wDevNamesSize = static_cast<uint16_t>(driver_at + 2);
        vltest::Poisoned out(kProfileLineRoom + 8);
        EXPECT_TRUE(block_field_operation(14, out.data()));
        EXPECT_EQ(out.text(), std::string(row.copied, 'd'));
        EXPECT_TRUE(out.clean_from(row.copied + 1));
    }
    printer_block = saved;
}

TEST(PrinterBlock, FollowsOnlyAChangedDefaultPrinter) {
#ifdef _WIN32
    GTEST_SKIP() << "the system profile's printer is the machine's own here";
#endif
    PrinterBlock block{};
    {
        ProfileLine first("First,drv,LPT1:");
        read_profile_printer(block);
        EXPECT_EQ(names_device(block), "First");
        EXPECT_FALSE(default_printer_changed(block)) << "the same printer";
    }
    {
        ProfileLine second("Second,drv,LPT2:");
        block.mode[44] = 1;
        write_u16(block.names + 6, 0);
        EXPECT_FALSE(default_printer_changed(block)) << "a block that does not follow the default";
        EXPECT_EQ(names_device(block), "First");
        write_u16(block.names + 6, 1);
        EXPECT_TRUE(default_printer_changed(block));
        EXPECT_EQ(names_device(block), "Second");
        EXPECT_EQ(names_port(block), "LPT2:");
        EXPECT_EQ(block.mode[44], 1) << "the device mode is the default printer's business";
        PrinterBlock empty{};
        EXPECT_FALSE(default_printer_changed(empty)) << "a block without names";
        EXPECT_EQ(empty.wDevNamesSize, 0);
    }
}

TEST(PrinterBlock, BlockWithoutNamesTakesTheProfileAndDropsItsMode) {
#ifdef _WIN32
    GTEST_SKIP() << "the system profile's printer is the machine's own here";
#endif
    ProfileLine profile("Lab,drv,COM1:");
    PrinterBlock block = poisoned_block();
    block.wDevNamesSize = 0;
    ensure_names(block);
    EXPECT_EQ(block.wDevModeSize, 0);
    EXPECT_EQ(block.wDevNamesSize, 22);
    EXPECT_EQ(names_device(block), "Lab");
    // A block with names is left as it is.
    block.wDevModeSize = 100;
    ensure_names(block);
    EXPECT_EQ(block.wDevModeSize, 100);
}

}  // namespace
