// KELUTIL_PrinterDC on real devices: display contexts, the default printer
// taken at start-up and followed, the old driver route, and the print setup
// dialog answered by a timer as a user would, with the owner window
// recording the font change it is told of.

#include <windows.h>

#include <cstring>
#include <string>

#include "output/print_support.h"
#include "support.h"
#include "vlcore.h"
#include "win32_support.h"

namespace {

constexpr uint32_t kDisplayDC = 0, kDisplayIC = 1, kProfileDC = 2, kBlockDC = 3, kBlockIC = 4, kSetup = 5,
                   kOldDriver = 6, kFollow = 7, kProfileIC = 10, kTakeDefault = 11, kGetOrientation = 12,
                   kSetOrientation = 13, kDeviceName = 14;

int font_changes = 0;

LRESULT CALLBACK OwnerProc(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_FONTCHANGE) ++font_changes;
    return DefWindowProcA(window, message, first, second);
}

class Owner {
  public:
    Owner() {
        WNDCLASSA wc{};
        wc.lpfnWndProc = OwnerProc;
        wc.hInstance = GetModuleHandleA(nullptr);
        wc.lpszClassName = "VlcorePrinterTestOwner";
        RegisterClassA(&wc);
        window_ = CreateWindowA(wc.lpszClassName, "owner", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr, nullptr,
                                wc.hInstance, nullptr);
        font_changes = 0;
    }
    ~Owner() { DestroyWindow(window_); }
    HWND window() const { return window_; }

  private:
    HWND window_ = nullptr;
};

int32_t orientation() {
    int32_t value = 0;
    KELUTIL_PrinterDC(nullptr, kGetOrientation, &value);
    return value;
}

void set_orientation(int16_t value) { KELUTIL_PrinterDC(nullptr, kSetOrientation, &value); }

std::string library_device() {
    char name[240];
    KELUTIL_PrinterDC(nullptr, kDeviceName, name);
    return name;
}

// Answers the next modal dialog of this thread with the button `answer`
// (IDOK or IDCANCEL), from a timer that runs inside the dialog's own loop.
// After 30 seconds without a dialog to answer the timer gives up, so a
// call that never shows one still returns; one that shows a dialog and
// hangs would be cancelled.
struct DialogAnswer {
    static inline int answer = IDOK;
    static inline int answered = 0;
    static inline DWORD started = 0;
    static inline std::string caption;

    static void CALLBACK tick(HWND, UINT, UINT_PTR id, DWORD) {
        if (HWND dialog = vltest::top_dialog()) {
            caption = vltest::window_text(dialog);
            ++answered;
            PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(answer, BN_CLICKED),
                         reinterpret_cast<LPARAM>(GetDlgItem(dialog, answer)));
            KillTimer(nullptr, id);
        } else if (GetTickCount() - started > 30000) {
            KillTimer(nullptr, id);
        }
    }
    static UINT_PTR arm(int button) {
        answer = button;
        answered = 0;
        caption.clear();
        started = GetTickCount();
        return SetTimer(nullptr, 0, 100, tick);
    }
};

#define REQUIRE_PRINTER()                                       \
    do {                                                        \
        const vltest::PrintState state = vltest::print_state(); \
        if (!state.ready) GTEST_SKIP() << state.reason;         \
    } while (0)

TEST(PrinterWin32, DisplayContexts) {
    const struct {
        uint32_t op;
        const char* name;
    } rows[] = {{kDisplayDC, "device context"}, {kDisplayIC, "information context"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        HDC dc = KELUTIL_PrinterDC(nullptr, row.op, nullptr);
        ASSERT_NE(dc, nullptr);
        EXPECT_EQ(GetDeviceCaps(dc, TECHNOLOGY), DT_RASDISPLAY);
        DeleteDC(dc);
    }
}

TEST(PrinterWin32, DefaultPrinterIsTakenLandscape) {
    REQUIRE_PRINTER();
    set_orientation(1);
    EXPECT_EQ(KELUTIL_PrinterDC(nullptr, kTakeDefault, nullptr), nullptr);
    EXPECT_EQ(orientation(), 2);
    set_orientation(1);
    EXPECT_EQ(orientation(), 1);
    char profile[240] = "";
    GetProfileStringA("windows", "device", "", profile, sizeof profile);
    EXPECT_EQ(library_device(), std::string(profile).substr(0, std::string(profile).find(',')));
}

TEST(PrinterWin32, SameDefaultPrinterIsNotTakenAgain) {
    REQUIRE_PRINTER();
    KELUTIL_PrinterDC(nullptr, kTakeDefault, nullptr);
    set_orientation(1);
    // The default did not change: no dialog call, the host's orientation
    // stays.
    EXPECT_EQ(KELUTIL_PrinterDC(nullptr, kFollow, nullptr), nullptr);
    EXPECT_EQ(orientation(), 1);
    // The same through KELUTIL_Main's settings change, and its start takes
    // the default again.
    EXPECT_EQ(KELUTIL_Main(nullptr, 0, 0, 2), 0u);
    EXPECT_EQ(orientation(), 1);
    EXPECT_EQ(KELUTIL_Main(nullptr, 0, reinterpret_cast<intptr_t>("no-such-settings.ini"), 0), 3783u);
    EXPECT_EQ(orientation(), 2);
}

// Puts the machine's default printer back, whatever the test did.
class DefaultPrinterGuard {
  public:
    DefaultPrinterGuard() {
        char name[256] = "";
        DWORD size = sizeof name;
        if (GetDefaultPrinterA(name, &size)) original_ = name;
    }
    ~DefaultPrinterGuard() {
        if (!original_.empty()) SetDefaultPrinterA(original_.c_str());
    }
    const std::string& original() const { return original_; }

  private:
    std::string original_;
};

TEST(PrinterWin32, ChangedDefaultPrinterIsFollowed) {
    REQUIRE_PRINTER();
    DefaultPrinterGuard guard;
    ASSERT_FALSE(guard.original().empty()) << "no default printer";
    KELUTIL_PrinterDC(nullptr, kTakeDefault, nullptr);
    ASSERT_EQ(library_device(), guard.original());
    set_orientation(1);
    // The second queue of tools/start-cups.sh becomes the default behind
    // the library's back.
    const char* other = guard.original() == "PDF2" ? "PDF" : "PDF2";
    if (!SetDefaultPrinterA(other)) GTEST_SKIP() << "no printer " << other << " to switch to (tools/start-cups.sh)";
    EXPECT_EQ(KELUTIL_PrinterDC(nullptr, kFollow, nullptr), nullptr);
    EXPECT_EQ(library_device(), other);
    EXPECT_EQ(orientation(), 2) << "the new default's device mode, landscape again";
    // The block prints on the new default.
    HDC dc = KELUTIL_PrinterDC(nullptr, kBlockDC, nullptr);
    ASSERT_NE(dc, nullptr);
    DeleteDC(dc);
    // And back, now through KELUTIL_Main's settings change.
    ASSERT_TRUE(SetDefaultPrinterA(guard.original().c_str()));
    set_orientation(1);
    EXPECT_EQ(KELUTIL_Main(nullptr, 0, 0, 2), 0u);
    EXPECT_EQ(library_device(), guard.original());
    EXPECT_EQ(orientation(), 2);
}

TEST(PrinterWin32, PrinterContextsForBlocksAndProfile) {
    REQUIRE_PRINTER();
    const struct {
        uint32_t op;
        const char* name;
    } rows[] = {{kProfileDC, "profile, device"},
                {kProfileIC, "profile, information"},
                {kBlockDC, "library block, device"},
                {kBlockIC, "library block, information"},
                {kOldDriver, "old driver route"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        HDC dc = KELUTIL_PrinterDC(nullptr, row.op, nullptr);
        ASSERT_NE(dc, nullptr);
        EXPECT_EQ(GetDeviceCaps(dc, TECHNOLOGY), DT_RASPRINTER);
        DeleteDC(dc);
    }
    // A host block without a device mode gets a context of the driver's
    // own settings.
    VL_PRINTER_BLOCK block;
    std::memset(&block, 0, sizeof block);
    HDC dc = KELUTIL_PrinterDC(nullptr, kBlockDC, &block);
    ASSERT_NE(dc, nullptr);
    EXPECT_GT(block.wDevNamesSize, 8);
    EXPECT_EQ(block.wDevModeSize, 0);
    DeleteDC(dc);
}

TEST(PrinterWin32, SetupDialogConfirmedWithoutChangeSendsNoFontChange) {
    REQUIRE_PRINTER();
    Owner owner;
    KELUTIL_PrinterDC(owner.window(), kTakeDefault, nullptr);
    const std::string device = library_device();
    const UINT_PTR timer = DialogAnswer::arm(IDOK);
    HDC dc = KELUTIL_PrinterDC(owner.window(), kSetup, nullptr);
    KillTimer(nullptr, timer);
    EXPECT_EQ(DialogAnswer::answered, 1) << "the setup dialog was shown once";
    ASSERT_NE(dc, nullptr);
    EXPECT_EQ(GetDeviceCaps(dc, TECHNOLOGY), DT_RASPRINTER);
    DeleteDC(dc);
    EXPECT_EQ(font_changes, 0);
    EXPECT_EQ(library_device(), device);
}

TEST(PrinterWin32, SetupDialogCancelledKeepsTheBlock) {
    REQUIRE_PRINTER();
    Owner owner;
    VL_PRINTER_BLOCK block;
    std::memset(&block, 0, sizeof block);
    DeleteDC(KELUTIL_PrinterDC(nullptr, kBlockDC, &block));  // the profile's printer, no mode
    VL_PRINTER_BLOCK before;
    std::memcpy(&before, &block, sizeof block);
    const UINT_PTR timer = DialogAnswer::arm(IDCANCEL);
    EXPECT_EQ(KELUTIL_PrinterDC(owner.window(), kSetup, &block), nullptr);
    KillTimer(nullptr, timer);
    EXPECT_EQ(DialogAnswer::answered, 1);
    EXPECT_EQ(std::memcmp(&before, &block, sizeof block), 0) << "the block changed";
    EXPECT_EQ(font_changes, 0);
}

TEST(PrinterWin32, SetupDialogOnAnotherPrinterTellsTheOwnerOfNewFonts) {
    REQUIRE_PRINTER();
    Owner owner;
    // A host block that names a printer this machine lacks: the dialog
    // refuses its settings, is shown once more without them, and the
    // printer chosen there replaces the block's.
    VL_PRINTER_BLOCK block;
    std::memset(&block, 0, sizeof block);
    const char texts[] = "Elsewhere\0wineps.drv\0LPT9:";
    const uint16_t header[4] = {18, 8, 30, 0};
    std::memcpy(block.names, header, sizeof header);
    std::memcpy(block.names + 8, texts, sizeof texts);
    block.wDevNamesSize = 8 + sizeof texts;
    const UINT_PTR timer = DialogAnswer::arm(IDOK);
    HDC dc = KELUTIL_PrinterDC(owner.window(), kSetup, &block);
    KillTimer(nullptr, timer);
    ASSERT_NE(dc, nullptr);
    DeleteDC(dc);
    EXPECT_GE(DialogAnswer::answered, 1);
    EXPECT_EQ(font_changes, 1);
    EXPECT_STRNE(reinterpret_cast<char*>(block.names + 8), "Elsewhere");
    EXPECT_GT(block.wDevModeSize, 0) << "the chosen printer's device mode is kept";
    // The block now prints with that device mode.
    dc = KELUTIL_PrinterDC(nullptr, kBlockDC, &block);
    ASSERT_NE(dc, nullptr);
    EXPECT_EQ(GetDeviceCaps(dc, TECHNOLOGY), DT_RASPRINTER);
    DeleteDC(dc);
}

}  // namespace
