// The first view of the file dialogs, decided before the platform's dialog
// comes up: types, the row shown, directory, name, default extension,
// template and the record's flags.

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "filedlg/dialogs.h"
#include "filedlg/filedlg_state.h"
#include "filedlg_internal.h"
#include "filedlg_rows.h"
#include "frame/frame.h"
#include "support.h"
#include "vlcore.h"

namespace {

using namespace vl::filedlg;
using filedlg_test::Row;

// The texts of a filter string apart by '|'.
std::string filter_texts(const char* filter) {
    std::string texts;
    for (const char* at = filter; at && *at; at += std::strlen(at) + 1)
        texts += (texts.empty() ? "" : "|") + std::string(at);
    return texts;
}

int g_asked = 0;
VL_LRESULT VLAPI counting_host(VL_HWND, VL_UINT, VL_WPARAM, VL_LPARAM) {
    ++g_asked;
    return 0;
}

class FirstView : public ::testing::Test {
  protected:
    void SetUp() override { reset(); }
    void TearDown() override { reset(); }
    static void reset() {
        filedlg_test::reset_dialog_state();
        g_asked = 0;
    }
    static void set(std::array<char, kPathRoom>& to, const std::string& text) {
        to.fill('\0');
        text.copy(to.data(), to.size() - 1);
    }
};

TEST_F(FirstView, EachRowOfTheTable) {
    filedlg_test::each_row("filedlg/first_view.tsv", [](const Row& row) {
        reset();
        for (int32_t r = 1; const char* d : {"A *.TXT", "B *.DAT", "C *.CSV"})
            KELUTIL_Fdlog_Str(const_cast<char*>(d), r++, 19);
        std::istringstream registry(row.s(1));
        for (std::string pair; registry >> pair;) {
            const auto eq = pair.find('=');
            KELUTIL_PathControl(1, pair.data() + eq + 1, pair.substr(0, eq).data(), 0);
        }
        set(szCurrentDir, row.s(2));
        set(szLastExt, row.s(3));
        if (row.s(4) != "-") {
            std::string dir = row.s(4), ext = row.s(5);
            KELUTIL_FileDialog(nullptr, dir.data(), ext.data(), 0x200);
        }
        std::vector<char> spec;
        if (!row.null(6)) spec.assign(row.c(6), row.c(6) + row.s(6).size() + 1);
        char* const spec_arg = row.null(6) ? nullptr : spec.data();
        const auto flags = static_cast<uint32_t>(row.n(8));
        DialogView view;
        if (row.s(0) == "open")
            PrepareOpen(spec_arg, flags, view);
        else if (row.s(0) == "save")
            PrepareSave(row.c(7), spec_arg, flags, view);
        else
            PrepareMulti(spec_arg, view);
        EXPECT_EQ(view.show, row.n(9));
        EXPECT_EQ(filter_texts(view.filter), row.s(10));
        ASSERT_NE(view.directory, nullptr);
        EXPECT_STREQ(view.directory, row.c(11));
        EXPECT_STREQ(view.file.data(), row.c(12));
        if (row.null(13))
            EXPECT_EQ(view.default_ext, nullptr) << view.default_ext;
        else
            EXPECT_STREQ(view.default_ext ? view.default_ext : "(null)", row.c(13));
        EXPECT_EQ(view.template_id, row.n(14));
        EXPECT_EQ(view.flags, static_cast<uint32_t>(row.n(15)));
        EXPECT_EQ(view.save, row.s(0) == "save");
    });
}

// The pattern list's extension becomes row 1's, cut to four characters
// with its dot, and the list itself keeps only three behind it.
TEST_F(FirstView, SpecWritesRowOneAndIsCut) {
    char spec[] = "*.LONGER *.TXT";
    DialogView view;
    PrepareOpen(spec, 0, view);
    EXPECT_STREQ(file_type_table.rows[1].extension.data(), ".LON");
    EXPECT_STREQ(spec, "*.LON");
}

// The host is asked for an unknown extension's directory, except while a
// preset is active.
TEST_F(FirstView, HostAskedUnlessPreset) {
    vl::frame::frame_state.lpfnFileHost = counting_host;
    char spec[] = "*.DAT";
    DialogView view;
    PrepareOpen(spec, 0, view);
    EXPECT_EQ(g_asked, 1);
    char dir[] = "C:\\P";
    char ext[] = "";
    EXPECT_EQ(KELUTIL_FileDialog(nullptr, dir, ext, 0x200), 0);
    char spec2[] = "*.DAT";
    PrepareOpen(spec2, 0, view);
    EXPECT_EQ(g_asked, 1);
    EXPECT_STREQ(view.directory, "C:\\P");
}

// The title: the host's, unless the next open dialog was told to keep its
// template's; that lasts one dialog.
TEST_F(FirstView, Title) {
    std::strcpy(FileDialogOptions.szTitle, "Import data");
    DialogView view;
    PrepareOpen(nullptr, 0, view);
    EXPECT_STREQ(view.title, "Import data");
    EXPECT_EQ(KELUTIL_FileDialog(nullptr, reinterpret_cast<char*>(uintptr_t{0x8000}), nullptr, 0), 0);
    PrepareOpen(nullptr, 0, view);
    EXPECT_EQ(view.title, nullptr);
    PrepareOpen(nullptr, 0, view);
    EXPECT_STREQ(view.title, "Import data");
    PrepareSave("A", nullptr, 0, view);
    EXPECT_STREQ(view.title, "Import data");
    EXPECT_STREQ(szSaveTitle.data(), "Import data");
}

// What the dialog is shown fits the 265 characters the platform reads,
// with the extension kept.
TEST_F(FirstView, NameFitsTheRecord) {
    struct Case {
        std::string in, out;
    };
    const std::string n265(265, 'n'), n266(266, 'n');
    for (const Case& c : {Case{n265, n265}, Case{n266, n265}, Case{n266 + ".TXT", std::string(261, 'n') + ".TXT"},
                          Case{std::string(261, 'n') + ".TXT", std::string(261, 'n') + ".TXT"},
                          Case{"A." + std::string(300, 'e'), "A." + std::string(263, 'e')}, Case{"", ""}}) {
        SCOPED_TRACE(std::to_string(c.in.size()) + " characters");
        std::array<char, kSaveFileRoom> file{};
        c.in.copy(file.data(), file.size() - 1);
        FitToRecord(file);
        EXPECT_EQ(std::string(file.data()), c.out);
    }
}

// What a dialog that ended well leaves for the next one: the chosen
// directory, the type row, the registry row of the extension (only without
// a pattern list), the read-only state; a drive that does not exist fails it.
TEST_F(FirstView, WhatAChoiceLeaves) {
    struct Case {
        const char* label;
        bool save;
        const char* path;
        int32_t index;
        bool read_only;
        bool spec;
        int32_t result;
        const char* name;     // what the host's buffer holds afterwards
        const char* current;  // szCurrentDir
        const char* last;     // szLastExt
        int32_t rows;         // registry rows
        bool windows_only;    // needs drive C:
    };
    const Case cases[] = {
        {"open, missing drive", false, "Q:\\DIR\\A.DAT", 2, true, false, 1, "before", "C:\\OLD\\", "TXT", 0, false},
        {"save, missing drive", true, "Q:\\DIR\\A.DAT", 2, false, false, 1, "before", "C:\\OLD\\", "TXT", 0, false},
        {"open", false, "C:\\A.DAT", 2, true, false, 0, "A.DAT", "C:\\", "DAT", 1, true},
        {"open with patterns", false, "C:\\A.DAT", 1, false, true, 0, "A.DAT", "C:\\", "TXT", 0, true},
        {"save", true, "C:\\B.CSV", 3, false, false, 0, "C:\\B.CSV", "C:\\", "CSV", 1, true},
        {"long extension", true, "C:\\B.DATA", 3, false, false, 0, "C:\\B.DATA", "C:\\", "TXT", 0, true},
    };
    // A good open moves the working directory; the test puts it back.
    const std::filesystem::path working = std::filesystem::current_path();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
#ifndef _WIN32
        if (c.windows_only) continue;
#endif
        reset();
        set(szCurrentDir, "C:\\OLD\\");
        set(szLastExt, "TXT");
        KELUTIL_Fdlog_Str(nullptr, 1, 17);
        DialogChoice choice;
        std::strcpy(choice.path.data(), c.path);
        choice.filter_index = c.index;
        choice.read_only = c.read_only;
        char name[300] = "before";
        const int32_t result = c.save ? FinishSave(choice, c.spec, name) : FinishOpen(choice, c.spec, 0, name);
        EXPECT_EQ(result, c.result);
        EXPECT_STREQ(name, c.name);
        EXPECT_STREQ(szCurrentDir.data(), c.current);
        EXPECT_STREQ(szLastExt.data(), c.last);
        EXPECT_EQ(KELUTIL_PathControl(4, nullptr, nullptr, 0), c.rows);
        EXPECT_EQ(KELUTIL_Fdlog_Str(nullptr, 0, 18), c.result == 0 ? c.index : 1);
        if (!c.save) {
            EXPECT_EQ(FileDialogOptions.dwReadOnly, c.read_only ? 1u : 0u);
        }
        if (c.rows == 1) {
            char dir[kPathRoom] = {}, key[8] = {};
            EXPECT_EQ(KELUTIL_PathControl(5, dir, key, 0), c.index);
            EXPECT_STREQ(dir, c.current);
            EXPECT_STREQ(key, c.last);
        }
    }
    std::filesystem::current_path(working);
}

}  // namespace
