// KELUTIL_PrinterDC from outside: the block operations, the profile's
// printer in a host block, and the codes that do nothing.  Natively the
// profile is a file the test writes; on Windows it is the system's, and
// the expectations are read from it.

#include <cstring>
#include <fstream>
#include <string>

#include "support.h"
#include "vlcore.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

constexpr uint32_t kBlockDC = 3, kBlockIC = 4, kGetOrientation = 12, kSetOrientation = 13, kDeviceName = 14,
                   kPortName = 15, kSetCopies = 16;
constexpr std::size_t kTextRoom = 240;

// The printer line of the profile: natively written to a file that
// VLCORE_PROFILE names for the life of the object, on Windows read.
class ProfilePrinter {
  public:
    ProfilePrinter() {
#ifdef _WIN32
        char line[240] = "";
        GetProfileStringA("windows", "device", "", line, sizeof line);
        line_ = line;
#else
        line_ = "Office Laser,winspool,LPT1:";
        path_ = testing::TempDir() + "vlcore_printer_profile.ini";
        std::ofstream(path_) << "[windows]\ndevice=" << line_ << "\n";
        vltest::set_env("VLCORE_PROFILE", path_.c_str());
#endif
    }
    ~ProfilePrinter() {
#ifndef _WIN32
        vltest::set_env("VLCORE_PROFILE", nullptr);
        std::remove(path_.c_str());
#endif
    }
    // Device, driver and port as the line gives them; all empty when the
    // line has fewer than two commas.
    struct Parts {
        bool present = false;
        std::string device, driver, port;
    };
    Parts parts() const {
        Parts p;
        const auto first = line_.find(',');
        if (first == std::string::npos) return p;
        const auto second = line_.find(',', first + 1);
        if (second == std::string::npos) return p;
        p.present = true;
        p.device = line_.substr(0, first);
        p.driver = line_.substr(first + 1, second - first - 1);
        p.port = line_.substr(second + 1);
        return p;
    }

  private:
    std::string line_;
    std::string path_;
};

uint16_t u16_at(const unsigned char* p) {
    uint16_t v;
    std::memcpy(&v, p, 2);
    return v;
}

void release(VL_HDC dc) {
#ifdef _WIN32
    if (dc) DeleteDC(dc);
#else
    EXPECT_EQ(dc, nullptr) << "natively no context is ever made";
#endif
}

TEST(PrinterDC, LayoutSharedWithTheHost) {
    EXPECT_EQ(sizeof(VL_PRINTER_BLOCK), 884u);
    EXPECT_EQ(offsetof(VL_PRINTER_BLOCK, names), 4u);
    EXPECT_EQ(offsetof(VL_PRINTER_BLOCK, mode), 372u);
}

TEST(PrinterDC, OrientationWrittenAndReadBackSignExtended) {
    const struct {
        int16_t set;
        int32_t read;
    } rows[] = {{1, 1}, {2, 2}, {-3, -3}, {0x7FFF, 0x7FFF}, {-32768, -32768}};
    for (const auto& row : rows) {
        SCOPED_TRACE("orientation " + std::to_string(row.set));
        int16_t value = row.set;
        EXPECT_EQ(KELUTIL_PrinterDC(nullptr, kSetOrientation, &value), nullptr);
        unsigned char out[8];
        std::memset(out, vltest::kPoison, sizeof out);
        EXPECT_EQ(KELUTIL_PrinterDC(nullptr, kGetOrientation, out), nullptr);
        int32_t got;
        std::memcpy(&got, out, 4);
        EXPECT_EQ(got, row.read);
        for (std::size_t i = 4; i < sizeof out; ++i) EXPECT_EQ(out[i], vltest::kPoison) << "byte " << i;
    }
}

TEST(PrinterDC, CodesOutsideTheTableAnswerNullAndChangeNothing) {
    int16_t landscape = 2;
    KELUTIL_PrinterDC(nullptr, kSetOrientation, &landscape);
    for (uint32_t op : {8u, 9u, 17u, 100u, 0xFFFFu, 0x10008u}) {
        SCOPED_TRACE("op " + std::to_string(op));
        int16_t garbage = 7;
        EXPECT_EQ(KELUTIL_PrinterDC(nullptr, op, &garbage), nullptr);
        int32_t orientation = 0;
        KELUTIL_PrinterDC(nullptr, kGetOrientation, &orientation);
        EXPECT_EQ(orientation, 2);
        EXPECT_EQ(garbage, 7);
    }
    // The high 16 bits do not count: 0x1000D is 13.
    int16_t portrait = 1;
    KELUTIL_PrinterDC(nullptr, 0x1000D, &portrait);
    int32_t orientation = 0;
    KELUTIL_PrinterDC(nullptr, kGetOrientation, &orientation);
    EXPECT_EQ(orientation, 1);
}

TEST(PrinterDC, BlockOperationsWithNullArgumentDoNothing) {
    for (uint32_t op : {kGetOrientation, kSetOrientation, kDeviceName, kPortName, kSetCopies}) {
        SCOPED_TRACE("op " + std::to_string(op));
        EXPECT_EQ(KELUTIL_PrinterDC(nullptr, op, nullptr), nullptr);
    }
}

TEST(PrinterDC, HostBlockWithoutNamesTakesTheProfilePrinter) {
    ProfilePrinter profile;
    const auto parts = profile.parts();
    for (uint32_t op : {kBlockDC, kBlockIC}) {
        SCOPED_TRACE("op " + std::to_string(op));
        VL_PRINTER_BLOCK block;
        std::memset(&block, vltest::kPoison, sizeof block);
        block.wDevNamesSize = 0;
        block.wDevModeSize = 200;  // dropped with the names it went with
        release(KELUTIL_PrinterDC(nullptr, op, &block));
        EXPECT_EQ(block.wDevModeSize, 0);
        if (!parts.present) {
            EXPECT_EQ(block.wDevNamesSize, 0);
            EXPECT_EQ(block.names[0], vltest::kPoison) << "a profile without printer leaves the record alone";
            continue;
        }
        const std::size_t driver_at = 8 + parts.device.size() + 1;
        const std::size_t port_at = driver_at + parts.driver.size() + 1;
        EXPECT_EQ(block.wDevNamesSize, port_at + parts.port.size() + 1);
        EXPECT_EQ(u16_at(block.names + 0), driver_at);
        EXPECT_EQ(u16_at(block.names + 2), 8);
        EXPECT_EQ(u16_at(block.names + 4), port_at);
        EXPECT_EQ(u16_at(block.names + 6), 1);
        EXPECT_STREQ(reinterpret_cast<char*>(block.names + 8), parts.device.c_str());
        EXPECT_STREQ(reinterpret_cast<char*>(block.names + driver_at), parts.driver.c_str());
        EXPECT_STREQ(reinterpret_cast<char*>(block.names + port_at), parts.port.c_str());
        EXPECT_EQ(block.names[block.wDevNamesSize], vltest::kPoison) << "nothing written behind the record";
    }
}

TEST(PrinterDC, DeviceNameAndPortCopiedOut) {
    ProfilePrinter profile;
    const auto parts = profile.parts();
    // The library's block may hold names from an earlier test: the profile
    // printer is read afresh by operation 2 (the context aside).
    release(KELUTIL_PrinterDC(nullptr, 2, nullptr));
    const struct {
        uint32_t op;
        std::string expected;
    } rows[] = {{kDeviceName, parts.device}, {kPortName, parts.port}};
    for (const auto& row : rows) {
        SCOPED_TRACE("op " + std::to_string(row.op));
        vltest::Poisoned out(kTextRoom);
        EXPECT_EQ(KELUTIL_PrinterDC(nullptr, row.op, out.data()), nullptr);
        EXPECT_EQ(out.text(), row.expected);
        EXPECT_TRUE(out.clean_from(row.expected.size() + 1));
    }
}

}  // namespace
