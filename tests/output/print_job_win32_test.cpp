// Printing for real: a page through KELUTIL_PrinterDC to the machine's
// default printer, a PDF queue of the print server, and the PDF read back
// with the poppler tools.  tools/start-cups.sh sets the queue up and
// leaves its verdict in the file VLCORE_PRINT_STATE names.

#include <windows.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <thread>

#include "output/print_support.h"
#include "support.h"
#include "vlcore.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr uint32_t kTakeDefault = 11, kBlockDC = 3, kProfileDC = 2, kGetOrientation = 12;

// The PDFs the queue has written so far.
std::set<std::string> pdfs_in(const std::string& dir) {
    std::set<std::string> names;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(dir, ec))
        if (entry.path().extension() == ".pdf") names.insert(entry.path().filename().string());
    return names;
}

// The new PDF whose name holds `title`, once the back end has finished it
// (pdfinfo reads it); waits at most `limit`.
std::optional<std::string> wait_for_pdf(const std::string& dir, const std::string& title, std::chrono::seconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < deadline) {
        for (const std::string& name : pdfs_in(dir)) {
            if (name.find(title) == std::string::npos) continue;
            const std::string path = dir + "/" + name;
            if (auto info = vltest::run_unix("pdfinfo " + path, 20s); info && info->find("Pages:") != std::string::npos)
                return path;
        }
        std::this_thread::sleep_for(250ms);
    }
    return std::nullopt;
}

// The number behind "Pages:" in pdfinfo's report, -1 without one.
int page_count(const std::string& report) {
    const auto at = report.find("Pages:");
    if (at == std::string::npos) return -1;
    return std::atoi(report.c_str() + at + 6);
}

// Width and height in points from "Page size:   842 x 595 pts".
std::pair<double, double> page_size(const std::string& report) {
    const auto at = report.find("Page size:");
    if (at == std::string::npos) return {0, 0};
    double w = 0, h = 0;
    std::istringstream in(report.substr(at + 10));
    std::string by;
    in >> w >> by >> h;
    return {w, h};
}

// The degrees behind "Page rot:", 0 without them.
int page_rotation(const std::string& report) {
    const auto at = report.find("Page rot:");
    return at == std::string::npos ? 0 : std::atoi(report.c_str() + at + 9);
}

TEST(PrintJob, PageOfTextReachesThePdfPrinter) {
    const vltest::PrintState state = vltest::print_state();
    if (!state.ready) GTEST_SKIP() << state.reason;

    // The default printer as the application takes it at start-up:
    // landscape, whatever the driver says.
    EXPECT_EQ(KELUTIL_PrinterDC(nullptr, kTakeDefault, nullptr), nullptr);
    int32_t orientation = 0;
    KELUTIL_PrinterDC(nullptr, kGetOrientation, &orientation);
    EXPECT_EQ(orientation, 2);

    HDC dc = KELUTIL_PrinterDC(nullptr, kBlockDC, nullptr);
    ASSERT_NE(dc, nullptr) << "no device context for the default printer";
    EXPECT_EQ(GetDeviceCaps(dc, TECHNOLOGY), DT_RASPRINTER);

    const std::string title =
        "vlcoreprint" + std::to_string(GetCurrentProcessId()) + "x" + std::to_string(GetTickCount());
    const std::string line = "VLCORE printed this page";
    DOCINFOA doc{};
    doc.cbSize = sizeof doc;
    doc.lpszDocName = title.c_str();
    ASSERT_GT(StartDocA(dc, &doc), 0);
    ASSERT_GT(StartPage(dc), 0);
    EXPECT_TRUE(TextOutA(dc, 200, 200, line.c_str(), static_cast<int>(line.size())));
    ASSERT_GT(EndPage(dc), 0);
    ASSERT_GT(EndDoc(dc), 0);
    DeleteDC(dc);

    const auto pdf = wait_for_pdf(state.directory, title, 90s);
    ASSERT_TRUE(pdf) << "no PDF named after " << title << " in " << state.directory << " within 90 s";
    const auto info = vltest::run_unix("pdfinfo " + *pdf, 20s);
    ASSERT_TRUE(info);
    EXPECT_EQ(page_count(*info), 1) << *info;
    // The PostScript driver turns a landscape page by a rotation of the
    // page, not by its size.
    const auto [width, height] = page_size(*info);
    const int rotation = page_rotation(*info);
    EXPECT_TRUE(width > height ? rotation % 180 == 0 : rotation % 180 == 90)
        << "the page should be landscape: " << *info;
    const auto text = vltest::run_unix("pdftotext " + *pdf + " -", 20s);
    ASSERT_TRUE(text);
    EXPECT_NE(text->find(line), std::string::npos) << "pdftotext gave: " << *text;
}

TEST(PrintJob, ProfilePrinterGivesAPrinterContext) {
    const vltest::PrintState state = vltest::print_state();
    if (!state.ready) GTEST_SKIP() << state.reason;
    HDC dc = KELUTIL_PrinterDC(nullptr, kProfileDC, nullptr);
    ASSERT_NE(dc, nullptr);
    EXPECT_EQ(GetDeviceCaps(dc, TECHNOLOGY), DT_RASPRINTER);
    DeleteDC(dc);
}

}  // namespace
