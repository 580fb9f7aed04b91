// The commands of the open and save entries, the option block and the
// list of chosen files: everything of them that shows no dialog.

#include <cstring>
#include <string>
#include <vector>

#include "filedlg_rows.h"
#include "support.h"
#include "vlcore.h"
#ifdef _WIN32
#include "win32_support.h"
#endif

namespace {

using vltest::Poisoned;

int g_asked = 0;
VL_LRESULT VLAPI counting_host(VL_HWND, VL_UINT, VL_WPARAM first, VL_LPARAM) {
    ++g_asked;
    std::strcpy(reinterpret_cast<char*>(first), "C:\\HOST\\");
    return 0;
}

#ifdef _WIN32
void CALLBACK cancel_dialogs(HWND, UINT, UINT_PTR, DWORD) {
    for (HWND dialog : vltest::thread_dialogs()) PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
}
#endif

// A preset lasts until a dialog ends: one that is cancelled at once (or,
// natively, fails at once) ends it.
void end_preset() {
    char name[300] = "";
#ifdef _WIN32
    const UINT_PTR timer = SetTimer(nullptr, 0, 50, cancel_dialogs);
#endif
    KELUTIL_FileDialog(nullptr, name, nullptr, 0);
#ifdef _WIN32
    KillTimer(nullptr, timer);
#endif
}

class FileCommands : public ::testing::Test {
  protected:
    void SetUp() override { reset(); }
    void TearDown() override {
        end_preset();
        reset();
    }
    static void reset() {
        filedlg_test::reset_through_entries();
        g_asked = 0;
    }
    static std::string directory() {
        char dir[300] = "x";
        KELUTIL_FileDialog(nullptr, dir, nullptr, 0x10);
        return dir;
    }
    static std::string row(int32_t i) {
        Poisoned out(300);
        EXPECT_EQ(KELUTIL_MultiFile(nullptr, out.data(), i, 2), 0);
        EXPECT_TRUE(out.clean_from(out.text().size() + 1)) << "row " << i << " written past its end";
        return out.text();
    }
};

// The block goes in whole and comes out whole, both ways, and nothing is
// written past its 1052 bytes.
TEST_F(FileCommands, OptionBlockRoundTrip) {
    std::vector<unsigned char> in(sizeof(VL_FILE_DIALOG_OPTIONS));
    for (std::size_t i = 0; i < in.size(); ++i) in[i] = static_cast<unsigned char>(i * 7 + 3);
    for (const bool save : {false, true}) {
        SCOPED_TRACE(save ? "KELUTIL_FileSaveAs 0x10" : "KELUTIL_FileDialog 8");
        const int32_t set = save ? KELUTIL_FileSaveAs(nullptr, reinterpret_cast<char*>(in.data()), nullptr, 0x10)
                                 : KELUTIL_FileDialog(nullptr, reinterpret_cast<char*>(in.data()), nullptr, 8);
        EXPECT_EQ(set, 0);
        Poisoned out(1052 + 16);
        EXPECT_EQ(save ? KELUTIL_FileSaveAs(nullptr, out.data(), nullptr, 0x20)
                       : KELUTIL_FileDialog(nullptr, out.data(), nullptr, 0x20),
                  0);
        EXPECT_EQ(std::memcmp(out.data(), in.data(), in.size()), 0);
        EXPECT_TRUE(out.clean_from(1052));
        in[0] ^= 0xFF;
    }
}

// The layout the host relies on.
TEST_F(FileCommands, OptionBlockLayout) {
    EXPECT_EQ(sizeof(VL_FILE_DIALOG_OPTIONS), 1052u);
    EXPECT_EQ(offsetof(VL_FILE_DIALOG_OPTIONS, dwReadOnly), 548u);
    EXPECT_EQ(offsetof(VL_FILE_DIALOG_OPTIONS, szSeparator), 568u);
    EXPECT_EQ(offsetof(VL_FILE_DIALOG_OPTIONS, dwPartialImport), 1048u);
}

// Flag 0x10 with a directory in `name` gives the current one without any
// lookup; with an empty one the last extension is looked up first, which
// may ask the host.
TEST_F(FileCommands, DirectoryQuery) {
    KELUTIL_Main(nullptr, 0, reinterpret_cast<intptr_t>(&counting_host), 6);
    char dir[] = "C:\\KEEP\\";
    char none[] = "";
    EXPECT_EQ(KELUTIL_FileDialog(nullptr, dir, none, 0x200), 0);  // preset: the directory
    char name[300] = "not empty";
    EXPECT_EQ(KELUTIL_FileDialog(nullptr, name, nullptr, 0x10), 0);
    EXPECT_STREQ(name, "C:\\KEEP\\");
    EXPECT_EQ(g_asked, 0);
}

// The preset: an extension that no row knows, without a directory, answers
// 1 and asks nobody; with a row it answers 0 and takes its directory.
TEST_F(FileCommands, Preset) {
    KELUTIL_Main(nullptr, 0, reinterpret_cast<intptr_t>(&counting_host), 6);
    char ext[] = "QQQ";
    EXPECT_EQ(KELUTIL_FileDialog(nullptr, nullptr, ext, 0x200), 1);
    EXPECT_EQ(g_asked, 0);
    char path[] = "C:\\DATA\\";
    char key[] = "DAT";
    KELUTIL_PathControl(1, path, key, 0);
    char dat[] = "dat";
    EXPECT_EQ(KELUTIL_FileDialog(nullptr, nullptr, dat, 0x200), 0);
    EXPECT_EQ(directory(), "C:\\DATA\\");
    char empty[] = "";
    EXPECT_EQ(KELUTIL_FileDialog(nullptr, empty, empty, 0x200), 0);
}

// The comment requests: set, read, empty, cut, and the switch.
TEST_F(FileCommands, CommentRequests) {
    struct Case {
        const char* label;
        std::string set;
        bool null;
        std::string read;
    };
    const std::string long_text(200, 'c');
    for (const Case& c : std::vector<Case>{{"a comment", "Run 12, calibrated", false, "Run 12, calibrated"},
                                           {"null empties", "", true, ""},
                                           {"cut to 119", long_text, false, long_text.substr(0, 119)},
                                           {"empty", "", false, ""}}) {
        SCOPED_TRACE(c.label);
        std::vector<char> text(c.set.begin(), c.set.end());
        text.push_back('\0');
        EXPECT_EQ(KELUTIL_FileSaveAs(nullptr, c.null ? nullptr : text.data(), nullptr, 1280), 0);
        Poisoned out(200);
        EXPECT_EQ(KELUTIL_FileSaveAs(nullptr, out.data(), nullptr, 1024), 0);
        filedlg_test::expect_written(out, c.read);
    }
    // 1536 with null changes nothing and answers 0; an unknown request too.
    EXPECT_EQ(KELUTIL_FileSaveAs(nullptr, nullptr, nullptr, 1536), 0);
    EXPECT_EQ(KELUTIL_FileSaveAs(nullptr, nullptr, nullptr, 0x4FF), 0);
}

// op 3 and op 2: rows cut at carriage returns, empty rows past the text's
// end, "error" past the list's end and after op 0.
TEST_F(FileCommands, ListFromText) {
    struct Case {
        const char* label;
        std::string text;
        int32_t count;
        std::vector<std::string> rows;
    };
    const std::string longest(265, 'p'), too_long(300, 'q');
    for (const Case& c : std::vector<Case>{
             {"two rows", "C:\\A\\ONE.DAT\rD:\\TWO.DAT\r", 2, {"C:\\A\\ONE.DAT", "D:\\TWO.DAT"}},
             {"fewer than the count", "A\r", 3, {"A", "", ""}},
             {"no final return", "A\rB", 2, {"A", "B"}},
             {"fewer than the text", "A\rB\rC\r", 1, {"A"}},
             {"none", "A\r", 0, {}},
             {"longest row", longest + "\r", 1, {longest}},
             {"longer rows cut", too_long + "\rB\r", 2, {too_long.substr(0, 265), "B"}},
         }) {
        SCOPED_TRACE(c.label);
        std::vector<char> text(c.text.begin(), c.text.end());
        text.push_back('\0');
        EXPECT_EQ(KELUTIL_MultiFile(nullptr, text.data(), c.count, 3), 0);
        for (std::size_t i = 0; i < c.rows.size(); ++i) EXPECT_EQ(row(static_cast<int32_t>(i)), c.rows[i]) << i;
        EXPECT_EQ(row(c.count), "error");
        EXPECT_EQ(row(-1), "error");
    }
    EXPECT_EQ(KELUTIL_MultiFile(nullptr, nullptr, 0, 0), 0);
    EXPECT_EQ(row(0), "error");
}

// A count the list can't hold is refused and the list stays; other
// operations answer themselves.
TEST_F(FileCommands, ListLimits) {
    char text[] = "KEEP\r";
    ASSERT_EQ(KELUTIL_MultiFile(nullptr, text, 1, 3), 0);
    char other[] = "OTHER\r";
    EXPECT_EQ(KELUTIL_MultiFile(nullptr, other, VL_FILE_LIST_ROWS + 1, 3), 1);
    EXPECT_EQ(KELUTIL_MultiFile(nullptr, other, -1, 3), 1);
    EXPECT_EQ(row(0), "KEEP");
    EXPECT_EQ(KELUTIL_MultiFile(nullptr, other, 4, 4), 4);
    EXPECT_EQ(KELUTIL_MultiFile(nullptr, other, 4, 0x10003), 0);  // op in 16 bits: 3
    EXPECT_EQ(row(0), "OTHER");
    EXPECT_EQ(row(3), "");
    // The most rows it holds.
    std::string many;
    for (int i = 0; i < VL_FILE_LIST_ROWS; ++i) many += "F" + std::to_string(i) + "\r";
    std::vector<char> all(many.begin(), many.end());
    all.push_back('\0');
    EXPECT_EQ(KELUTIL_MultiFile(nullptr, all.data(), VL_FILE_LIST_ROWS, 3), 0);
    EXPECT_EQ(row(VL_FILE_LIST_ROWS - 1), "F" + std::to_string(VL_FILE_LIST_ROWS - 1));
    EXPECT_EQ(row(VL_FILE_LIST_ROWS), "error");
}

#ifndef _WIN32
// Without a window system the dialogs fail as a cancelled dialog does, and
// what they would leave for the next one stays.
TEST_F(FileCommands, NativeDialogsFail) {
    char list[] = "KEEP\r";
    KELUTIL_MultiFile(nullptr, list, 1, 3);
    char dir[] = "/tmp/";
    char none[] = "";
    KELUTIL_FileDialog(nullptr, dir, none, 0x200);
    char name[300] = "";
    EXPECT_EQ(KELUTIL_FileDialog(nullptr, name, nullptr, 0), -1);
    char save_name[300] = "REPORT";
    EXPECT_EQ(KELUTIL_FileSaveAs(nullptr, save_name, nullptr, 0), 1);
    EXPECT_STREQ(save_name, "REPORT");
    char spec[] = "*.DAT";
    EXPECT_EQ(KELUTIL_MultiFile(nullptr, spec, 0, 1), -1);
    EXPECT_EQ(row(0), "KEEP");
    EXPECT_EQ(directory(), "/tmp/");
}
#endif

}  // namespace
