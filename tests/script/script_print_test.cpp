// Printing the script window's text for real: the PDF queue of the print
// server is the default printer (tools/start-cups.sh), and the PDFs it
// writes are read back with the poppler tools.

#include <chrono>
#include <filesystem>
#include <set>
#include <sstream>
#include <thread>

#include "output/print_support.h"
#include "script_window_support.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using namespace scripttest;

constexpr uint32_t kTakeDefault = 11, kBlockDC = 3;

std::set<std::string> pdfs_in(const std::string& dir) {
    std::set<std::string> names;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(dir, ec))
        if (entry.path().extension() == ".pdf") names.insert(entry.path().filename().string());
    return names;
}

// The first PDF of the script window's job that was not there before, once
// the back end has finished it.
std::optional<std::string> wait_for_new_pdf(const std::string& dir, const std::set<std::string>& before) {
    const auto deadline = std::chrono::steady_clock::now() + 90s;
    while (std::chrono::steady_clock::now() < deadline) {
        for (const std::string& name : pdfs_in(dir)) {
            if (before.count(name) || name.find("Vorlan") == std::string::npos) continue;
            const std::string path = dir + "/" + name;
            if (auto info = vltest::run_unix("pdfinfo " + path, 20s); info && info->find("Pages:") != std::string::npos)
                return path;
        }
        std::this_thread::sleep_for(250ms);
    }
    return std::nullopt;
}

int page_count(const std::string& pdf) {
    const auto info = vltest::run_unix("pdfinfo " + pdf, 20s);
    if (!info) return -1;
    const auto at = info->find("Pages:");
    return at == std::string::npos ? -1 : std::atoi(info->c_str() + at + 6);
}

// The text of one page, its lines without blank ones.
std::vector<std::string> page_lines(const std::string& pdf, int page) {
    const auto text = vltest::run_unix(
        "pdftotext -layout -f " + std::to_string(page) + " -l " + std::to_string(page) + " " + pdf + " -", 20s);
    std::vector<std::string> lines;
    if (!text) return lines;
    std::istringstream in(*text);
    for (std::string line; std::getline(in, line);) {
        while (!line.empty() && (line.back() == ' ' || line.back() == '\f' || line.back() == '\r')) line.pop_back();
        const auto first = line.find_first_not_of(" \f");
        if (first != std::string::npos) lines.push_back(line.substr(first));
    }
    return lines;
}

// The top of the first word of each page, in points (pdftotext -bbox).
std::vector<double> first_word_tops(const std::string& pdf) {
    std::vector<double> tops;
    const auto html = vltest::run_unix("pdftotext -bbox " + pdf + " -", 20s);
    if (!html) return tops;
    std::size_t at = 0;
    while ((at = html->find("<page", at)) != std::string::npos) {
        const auto word = html->find("<word", at);
        const auto next = html->find("<page", at + 5);
        if (word != std::string::npos && (next == std::string::npos || word < next)) {
            const auto y = html->find("yMin=\"", word);
            tops.push_back(std::atof(html->c_str() + y + 6));
        }
        at += 5;
    }
    return tops;
}

class ScriptPrintTest : public ScriptWindowTest {
  protected:
    void SetUp() override {
        state_ = vltest::print_state();
        if (!state_.ready) GTEST_SKIP() << state_.reason;
        ScriptWindowTest::SetUp();
        EXPECT_EQ(KELUTIL_PrinterDC(nullptr, kTakeDefault, nullptr), nullptr);
        KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>("M 0"), 2);
        // The page as the window lays it out: 12 points of a fixed-pitch
        // font at the printer's resolution, a line position left blank.
        const HDC dc = KELUTIL_PrinterDC(nullptr, kBlockDC, nullptr);
        ASSERT_NE(dc, nullptr);
        LOGFONTA font{};
        font.lfHeight = GetDeviceCaps(dc, LOGPIXELSY) * 12 / 72;
        font.lfQuality = DRAFT_QUALITY;
        font.lfPitchAndFamily = FIXED_PITCH;
        const HFONT f = CreateFontIndirectA(&font);
        const HGDIOBJ old = SelectObject(dc, f);
        TEXTMETRICA tm{};
        GetTextMetricsA(dc, &tm);
        SelectObject(dc, old);
        DeleteObject(f);
        char_width_ = tm.tmAveCharWidth;
        lines_per_page_ = GetDeviceCaps(dc, VERTRES) / (tm.tmHeight + tm.tmExternalLeading) - 1;
        DeleteDC(dc);
        ASSERT_GT(lines_per_page_, 5);
    }
    void TearDown() override {
        if (state_.ready) ScriptWindowTest::TearDown();
    }
    // Prints by setting P and answers the PDF.  The top margin is left at
    // 0: with the default 75 the last line of a full page would stand below
    // the page's end, as the page counts its lines without the margin.
    std::string print(const std::string& script) {
        SetWindowTextA(edit_, script.c_str());
        const auto before = pdfs_in(state_.directory);
        KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>("P"), 2);
        const auto pdf = wait_for_new_pdf(state_.directory, before);
        EXPECT_TRUE(pdf) << "no new PDF of the script window in " << state_.directory;
        return pdf.value_or("");
    }
    vltest::PrintState state_;
    int char_width_ = 0, lines_per_page_ = 0;
};

// A page's last line is followed by a page break: the next line stands at
// the first line position of the next page.
TEST_F(ScriptPrintTest, PagesBreakBehindTheirLastLine) {
    const int total = lines_per_page_ + 3;
    std::string script;
    for (int i = 1; i <= total; ++i) script += "line " + std::to_string(i) + ";\r\n";
    const std::string pdf = print(script.substr(0, script.size() - 2));
    ASSERT_FALSE(pdf.empty());
    ASSERT_EQ(page_count(pdf), 2);
    const auto first = page_lines(pdf, 1), second = page_lines(pdf, 2);
    ASSERT_EQ(static_cast<int>(first.size()), lines_per_page_);
    EXPECT_EQ(first.front(), "line 1;");
    EXPECT_EQ(first.back(), "line " + std::to_string(lines_per_page_) + ";");
    ASSERT_EQ(second.size(), 3u);
    EXPECT_EQ(second.front(), "line " + std::to_string(lines_per_page_ + 1) + ";");
    const auto tops = first_word_tops(pdf);
    ASSERT_EQ(tops.size(), 2u);
    EXPECT_DOUBLE_EQ(tops[0], tops[1]);
    EXPECT_TRUE(boxes_.seen.empty());
}

// A text that fills its last page exactly still breaks behind it: the job
// ends with an empty page.  An empty text is a job of one page.
TEST_F(ScriptPrintTest, FullPageAndEmptyText) {
    std::string script;
    for (int i = 1; i <= lines_per_page_; ++i)
        script += "row " + std::to_string(i) + (i < lines_per_page_ ? "\r\n" : "");
    const std::string full = print(script);
    ASSERT_FALSE(full.empty());
    EXPECT_EQ(page_count(full), 2);
    EXPECT_EQ(static_cast<int>(page_lines(full, 1).size()), lines_per_page_);
    EXPECT_TRUE(page_lines(full, 2).empty());
    const std::string empty = print("");
    ASSERT_FALSE(empty.empty());
    EXPECT_EQ(page_count(empty), 1);
    EXPECT_TRUE(page_lines(empty, 1).empty());
}

// A line of 200 characters prints its first 128.  The page is moved left by
// a negative left margin, so that the end of the cut line lies on paper.
TEST_F(ScriptPrintTest, LongLinesAreCutAt128) {
    const std::string line =
        std::string(100, 'x') + "KEEP" + std::string(20, 'y') + "EDGE" + "LOST" + std::string(68, 'z');
    ASSERT_EQ(line.size(), 200u);
    const std::string margin = "M L" + std::to_string(-char_width_ * 100);
    KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>(margin.c_str()), 2);
    const std::string pdf = print(line);
    ASSERT_FALSE(pdf.empty());
    const auto lines = page_lines(pdf, 1);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("KEEP"), std::string::npos) << lines[0];
    EXPECT_NE(lines[0].find("EDGE"), std::string::npos) << lines[0];
    EXPECT_EQ(lines[0].find("LOST"), std::string::npos) << lines[0];
    EXPECT_EQ(lines[0].find('z'), std::string::npos) << lines[0];
}

// The menu's Print shows the print setup dialog; cancelled, there is no
// printer and the user is told.
TEST_F(ScriptPrintTest, MenuPrintCancelledInTheDialog) {
    boxes_.ok = IDCANCEL;
    const auto before = pdfs_in(state_.directory);
    command(508);
    ASSERT_EQ(boxes_.seen.size(), 2u);
    EXPECT_EQ(boxes_.seen[1].text, "Printing is aborted");
    EXPECT_EQ(pdfs_in(state_.directory), before);
}

// Confirmed in the dialog, the menu's Print prints on the chosen printer.
TEST_F(ScriptPrintTest, MenuPrintConfirmedInTheDialog) {
    SetWindowTextA(edit_, "menu print;");
    const auto before = pdfs_in(state_.directory);
    command(508);
    ASSERT_EQ(boxes_.seen.size(), 1u);  // the print setup dialog, answered OK
    const auto pdf = wait_for_new_pdf(state_.directory, before);
    ASSERT_TRUE(pdf);
    const auto lines = page_lines(*pdf, 1);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], "menu print;");
}

}  // namespace
