// The file dialogs' own tools: extensions, drive roots, remembering a
// choice, the filter strings, and the start-up directory that KELUTIL_Main
// records.

#include <algorithm>
#include <filesystem>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "filedlg/filedlg.h"
#include "filedlg/filedlg_state.h"
#include "filedlg_internal.h"
#include "filedlg_rows.h"
#include "frame/frame.h"
#include "support.h"
#include "vlcore.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

using namespace vl::filedlg;
using filedlg_test::Row;

// Registry row `row` as its key, directory and remembered byte.
std::string registry_row(int32_t row) {
    char dir[kPathRoom] = {}, key[5] = {};
    const int32_t remembered = KELUTIL_PathControl(5, dir, key, row);
    return std::string(key) + " " + dir + " " + std::to_string(remembered);
}

// The host callback, counting what it is asked.
int g_asked = 0;
VL_LRESULT VLAPI counting_host(VL_HWND, VL_UINT, VL_WPARAM first, VL_LPARAM) {
    ++g_asked;
    std::strcpy(reinterpret_cast<char*>(first), "C:\\HOST");
    return 0;
}

// The texts of a filter string, apart by '|', and the bytes it takes with
// its closing zero.
std::pair<std::string, std::size_t> read_filter(std::span<const char> filter) {
    std::string texts;
    std::size_t at = 0;
    while (at < filter.size() && filter[at]) {
        const std::string text(filter.data() + at, strnlen(filter.data() + at, filter.size() - at));
        texts += (at ? "|" : "") + text;
        at += text.size() + 1;
    }
    return {texts, at + 1};
}

class FileDialogState : public ::testing::Test {
  protected:
    void SetUp() override { reset(); }
    void TearDown() override { reset(); }
    static void reset() {
        filedlg_test::reset_dialog_state();
        g_asked = 0;
    }
    static void describe(const std::vector<std::string>& rows) {
        for (int32_t r = 1; const auto& d : rows) KELUTIL_Fdlog_Str(const_cast<char*>(d.c_str()), r++, 19);
    }
    static std::string extension(int32_t row) {
        return file_type_table.rows[static_cast<std::size_t>(row)].extension.data();
    }
    // The filter built from the table, in its room of 1000 bytes.
    static std::string build(int32_t show, uint32_t flags = 0) {
        std::vector<char> filter(kFilterRoom, '\0');
        EXPECT_EQ(FileTypeBuildFilter(filter, flags), show);
        return read_filter(filter).first;
    }
};

TEST(FileExtensionOf, TakesTheFirstExtensionOfThreeCharactersAtMost) {
    filedlg_test::each_row("filedlg/file_extension_of.tsv", [](const Row& row) {
        auto patterns = vltest::writable(row.s(0));
        vltest::Poisoned out(8);
        FileExtensionOf(out.data(), patterns.data());
        EXPECT_STREQ(patterns.data(), row.c(2));
        filedlg_test::expect_written(out, row.s(1));
    });
}

TEST(PathRootExists, NetworkPathsAndDrives) {
#ifdef _WIN32
    char drives[120] = {}, absent = 'Q';
    ASSERT_GE(GetLogicalDriveStringsA(sizeof drives, drives), 4u);
    while (absent < 'Z' && (GetLogicalDrives() & (1u << (absent - 'A')))) ++absent;
    ASSERT_LT(absent, 'Z') << "no drive letter from Q to Y is free";
#endif
    filedlg_test::each_row("filedlg/root_exists.tsv", [&](const Row& row) {
        std::string dir = row.s(1);
#ifdef _WIN32
        if (row.s(0) == "native") return;
        const char letters[] = {drives[0], static_cast<char>(std::tolower(drives[0])), absent};
        for (std::size_t i = 0; i < 3; ++i)
            if (row.s(0) == "win32" && dir.starts_with("PpA"[i])) dir[0] = letters[i];
#else
        if (row.s(0) == "win32") return;
#endif
        EXPECT_EQ(PathRootExists(row.null(1) ? nullptr : dir.c_str()), row.n(2));
    });
}

TEST_F(FileDialogState, RememberingAChoice) {
    std::strcpy(szCurrentDir.data(), "C:\\CHOSEN");
    std::strcpy(szLastExt.data(), "OLD");
    // Only a name with an extension of three characters at most.
    for (const char* name : {"A.DATA", "NOEXT", "C:\\A.DIR\\FILE", ""}) PathRememberChoice(name, 5);
    EXPECT_EQ(KELUTIL_PathControl(4, nullptr, nullptr, 0), 0);
    EXPECT_STREQ(szLastExt.data(), "OLD");

    PathRememberChoice("C:\\A.DIR\\REPORT.DA", 3);
    EXPECT_EQ(registry_row(0), "DA C:\\CHOSEN 3");
    EXPECT_STREQ(szLastExt.data(), "DA");

    // Another extension takes over the remembered row.
    std::strcpy(szCurrentDir.data(), "C:\\TEXTS");
    PathRememberChoice("NOTE.txt", 2);
    EXPECT_EQ(registry_row(0), "DA C:\\CHOSEN 0");
    EXPECT_EQ(registry_row(1), "txt C:\\TEXTS 2");
    EXPECT_STREQ(szLastExt.data(), "txt");

    // The same extension again, in other case: its row stays.
    PathRememberChoice("OTHER.TXT", 4);
    EXPECT_EQ(registry_row(1), "txt C:\\TEXTS 4");
    EXPECT_STREQ(szLastExt.data(), "TXT");
}

TEST_F(FileDialogState, FilterFromTheTable) {
    describe({"\"Data files\" *.DAT", "Text *.TXT", "\"All files\" *.*"});
    EXPECT_EQ(build(1), "Data files|*.DAT|Text|*.TXT|All files|*.*");
    EXPECT_EQ(extension(1) + extension(2) + extension(3), ".DAT.TXT.*");

    // A pattern without a dot ends the filter; rows behind it are not read.
    reset();
    describe({"Data *.DAT", "Broken NODOT", "Text *.TXT"});
    EXPECT_EQ(build(1), "Data|*.DAT|Broken|NODOT");
    EXPECT_EQ(extension(3), "");
}

TEST_F(FileDialogState, FilterStopsAtAnEmptyRowAndAtTheTwentyFifth) {
    std::string rows_1_to_24;
    for (int32_t r = 1; r <= 25; ++r) {
        const std::string n = std::to_string(r);
        KELUTIL_Fdlog_Str(const_cast<char*>(("T" + n + " *.E" + n).c_str()), r, 19);
        if (r < 25) rows_1_to_24 += (r > 1 ? "|T" : "T") + n + "|*.E" + n;
    }
    EXPECT_EQ(build(1), rows_1_to_24);
    EXPECT_EQ(extension(24) + extension(25), ".E24") << "row 25 is never taken";

    KELUTIL_Fdlog_Str(nullptr, 3, 19);
    EXPECT_EQ(build(1), "T1|*.E1|T2|*.E2");

    KELUTIL_Fdlog_Str(nullptr, 1, 19);
    std::vector<char> filter(kFilterRoom, 'x');
    EXPECT_EQ(FileTypeBuildFilter(filter, 0), 1);
    EXPECT_EQ(filter[0], '\0') << "an empty first row leaves an empty filter";

    // A row that would pass the room ends the filter with the rows that fit.
    for (int32_t r = 1; r <= 24; ++r) {
        const std::string d = "\"" + std::string(50, static_cast<char>('a' + r)) + "\" *." + std::string(60, 'X');
        KELUTIL_Fdlog_Str(const_cast<char*>(d.c_str()), r, 19);
    }
    filter.assign(kFilterRoom + 64, 'p');
    std::fill_n(filter.begin(), kFilterRoom, '\0');
    EXPECT_EQ(FileTypeBuildFilter(std::span<char>(filter.data(), kFilterRoom), 0), 1);
    const auto [texts, length] = read_filter(filter);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), '|'), 15) << "eight pairs of 114 bytes fit 1000";
    EXPECT_LE(length, kFilterRoom);
    for (std::size_t i = kFilterRoom; i < filter.size(); ++i) EXPECT_EQ(filter[i], 'p') << "byte " << i;
}

TEST_F(FileDialogState, TheRowToShowFollowsTheRegistryOrThePreset) {
    describe({"A *.TXT", "B *.DAT", "C *.CSV", "D *.DAT"});
    filedlg_test::each_row("filedlg/row_to_show.tsv", [](const Row& row) {
        KELUTIL_PathControl(3, nullptr, nullptr, 0);
        std::istringstream keys(row.s(0));
        for (std::string key, dir; keys >> key;) {
            dir = "C:\\" + std::to_string(KELUTIL_PathControl(4, nullptr, nullptr, 0));
            KELUTIL_PathControl(1, dir.data(), key.data(), 0);
        }
        szCurrentDir.fill('\0');
        std::strcpy(szLastExt.data(), row.null(2) ? "" : row.c(2));
        bExtPreset = !row.null(2);
        build(row.n(3), static_cast<uint32_t>(row.n(1)));
        EXPECT_STREQ(szLastExt.data(), row.c(4));
        EXPECT_STREQ(szCurrentDir.data(), row.c(5));
        EXPECT_FALSE(bExtPreset) << "the preset is used up";
    });
}

TEST_F(FileDialogState, OnlyLookupsWithoutAPresetAskTheHost) {
    describe({"A *.TXT", "B *.DAT"});
    vl::frame::frame_state.lpfnFileHost = &counting_host;
    build(1);
    EXPECT_EQ(g_asked, 1) << "once, for the directory of the extension";
    EXPECT_STREQ(szCurrentDir.data(), "C:\\HOST");

    // A preset's directory stays and nobody is asked, by the filter or by
    // a lookup; the row's extension with its dot becomes the default.
    g_asked = 0;
    std::strcpy(szCurrentDir.data(), "C:\\PRESET");
    bPresetActive = true;
    build(1);
    EXPECT_EQ(KELUTIL_PathControl(0, szCurrentDir.data(), const_cast<char*>("DAT"), 0), -1);
    EXPECT_EQ(g_asked, 0);
    EXPECT_STREQ(szCurrentDir.data(), "C:\\PRESET");
    EXPECT_STREQ(szLastExt.data(), ".TXT");
}

TEST(FilterFromPatterns, EachPatternIsItsOwnLabel) {
    filedlg_test::each_row("filedlg/filter_from_patterns.tsv", [](const Row& row) {
        const auto room = static_cast<std::size_t>(row.n(1));
        vltest::Poisoned filter(room + 16);
        FilterFromSpec(std::span<char>(filter.data(), room), row.c(0));
        const auto [texts, used] = read_filter(std::span<const char>(filter.data(), filter.size()));
        EXPECT_EQ(texts, row.s(2));
        EXPECT_LE(used, room);
        EXPECT_TRUE(filter.clean_from(used)) << "written past the filter";
    });
}

TEST_F(FileDialogState, FittingTheNameToTheChosenType) {
    describe({"Data *.DAT", "All *.*", "Text *.TXT"});
    build(1, kIgnoreRemembered);
    filedlg_test::each_row("filedlg/fit_name.tsv", [](const Row& row) {
        std::strcpy(szLastExt.data(), "before");
        vltest::Poisoned name(kNameRoom + 8);
        std::strcpy(name.data(), row.c(1));
        EXPECT_EQ(FitNameToType(row.n(0), std::span<char>(name.data(), kNameRoom), row.n(2) != 0), row.n(3) != 0);
        EXPECT_EQ(name.text(), row.s(4));
        EXPECT_TRUE(name.clean_from(kNameRoom)) << "written past the room";
        EXPECT_STREQ(szLastExt.data(), row.c(5));
    });
}

// The start-up directory that KELUTIL_Main records.
class StartDirectory : public ::testing::Test {
  protected:
    void SetUp() override {
        saved_ = std::filesystem::current_path();
        root_ = std::filesystem::temp_directory_path() / ("vlcore_start_" + std::to_string(std::random_device{}()));
        std::filesystem::create_directories(root_);
        std::filesystem::current_path(root_);
        szStartDir.fill('\0');
    }
    void TearDown() override {
        std::filesystem::current_path(saved_);
        std::error_code ec;
        std::filesystem::remove_all(root_, ec);
        szStartDir.fill('\0');
    }
    static uintptr_t start(uint32_t version) {
        return KELUTIL_Main(nullptr, version, reinterpret_cast<intptr_t>("no-such-settings.ini"), 0);
    }
    std::filesystem::path saved_, root_;
};

TEST_F(StartDirectory, IsTheWorkingDirectoryAtStart) {
    const std::string here = std::filesystem::current_path().string();
    ASSERT_LT(here.size(), kStartDirRoom) << "the temporary directory is too deep for this test";
    EXPECT_EQ(start(6101), 0u);
    EXPECT_STREQ(szStartDir.data(), "") << "a refused start records nothing";
    EXPECT_EQ(start(6100), 3783u);
    EXPECT_EQ(std::string(szStartDir.data()), here);

    // Recorded again by the operation itself.
    std::filesystem::create_directory(root_ / "sub");
    std::filesystem::current_path(root_ / "sub");
    EXPECT_EQ(KELUTIL_PathControl(2, nullptr, nullptr, 0), -1);
    const std::string sub = std::filesystem::current_path().string();
    EXPECT_EQ(std::string(szStartDir.data()), sub);

    // A directory too deep to record leaves the old one, also at a start.
    auto deep = root_;
    while (deep.string().size() < kStartDirRoom + 10) deep /= std::string(20, 'd');
    std::filesystem::create_directories(deep);
    std::filesystem::current_path(deep);
    EXPECT_EQ(start(6100), 3783u);
    EXPECT_EQ(std::string(szStartDir.data()), sub);
}

}  // namespace
