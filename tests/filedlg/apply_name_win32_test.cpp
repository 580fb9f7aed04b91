// Fitting the name of a file dialog to its chosen type, on real controls.

#include <windows.h>

#include <string>

#include "filedlg/filedlg.h"
#include "filedlg/filedlg_state.h"
#include "filedlg_rows.h"
#include "support.h"

namespace {

using namespace vl::filedlg;

class ApplyToName : public ::testing::Test {
  protected:
    void SetUp() override {
        file_type_table = FileTypeTable{};
        szLastExt.fill('\0');
        for (int32_t r = 1; const char* row : {"Data *.DAT", "All *.*", "Text *.TXT"})
            KELUTIL_Fdlog_Str(const_cast<char*>(row), r++, 19);
        std::array<char, kFilterRoom> filter{};
        FileTypeBuildFilter(filter, 0x1000);
        dialog_ = CreateWindowExA(0, "STATIC", "dialog", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr, nullptr, nullptr,
                                  nullptr);
        combo_ = CreateWindowExA(0, "COMBOBOX", "", WS_CHILD | CBS_DROPDOWNLIST, 0, 0, 200, 100, dialog_,
                                 reinterpret_cast<HMENU>(1136), nullptr, nullptr);
        edit_ = CreateWindowExA(0, "EDIT", "", WS_CHILD | ES_AUTOHSCROLL, 0, 40, 200, 20, dialog_,
                                reinterpret_cast<HMENU>(1152), nullptr, nullptr);
        ASSERT_TRUE(dialog_ && combo_ && edit_);
        SendMessageA(edit_, EM_LIMITTEXT, 0, 0);
        for (const char* label : {"Data", "All", "Text"})
            SendMessageA(combo_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(label));
    }
    void TearDown() override {
        if (dialog_) DestroyWindow(dialog_);
        file_type_table = FileTypeTable{};
        szLastExt.fill('\0');
    }
    std::string name() const {
        char buffer[400] = {};
        GetWindowTextA(edit_, buffer, sizeof buffer);
        return buffer;
    }
    HWND dialog_ = nullptr, combo_ = nullptr, edit_ = nullptr;
};

// The cases of FitNameToType, on a dialog: a name written back no longer
// counts as the user's edit.
TEST_F(ApplyToName, TheNameFollowsTheType) {
    filedlg_test::each_row("filedlg/fit_name.tsv", [this](const filedlg_test::Row& row) {
        if (row.n(0) >= 3) return;  // the combo box has no such item
        const bool chosen = row.n(0) >= 0;
        std::strcpy(szLastExt.data(), "before");
        SendMessageA(combo_, CB_SETCURSEL, static_cast<WPARAM>(row.n(0)), 0);
        SetWindowTextA(edit_, row.c(1));
        SendMessageA(edit_, EM_SETMODIFY, TRUE, 0);
        FileTypeApplyToName(dialog_, row.n(2) != 0);
        EXPECT_EQ(name(), row.s(4));
        EXPECT_STREQ(szLastExt.data(), chosen ? row.c(5) : "before");
        EXPECT_EQ(SendMessageA(edit_, EM_GETMODIFY, 0, 0) != 0, row.n(3) == 0);
    });
}

}  // namespace
