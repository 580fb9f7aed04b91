// The file dialogs for real: the platform's common dialogs with the
// library's templates and hooks, in real directories, driven by a thread
// timer as a user would (typing, picking list rows, changing the type,
// pressing buttons).  A watchdog cancels any dialog that outlives its
// steps and fails the test.

#include <windows.h>

#include <commctrl.h>
#include <commdlg.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "filedlg_rows.h"
#include "support.h"
#include "vlcore.h"
#include "win32_support.h"

namespace {

namespace fs = std::filesystem;

constexpr int kComment = 103;
constexpr int kShowInfo = 104;
constexpr int kReadOnlyBox = 1040;
constexpr int kDirectoryLabel = 1088;
constexpr int kFiles = 1120;
constexpr int kTypes = 1136;
constexpr int kName = 1152;
constexpr int kExplorerName = 0x47c;
constexpr int kChosen = 1537;
constexpr int kAddFile = 1538;
constexpr int kRemove = 1539;
constexpr int kOption = 3004;
constexpr int kPartial = 3007;
constexpr DWORD kPatience = 20000;  // ms a dialog may take in all

// ---- The driver -----------------------------------------------------------------

using vltest::control;

// One step: runs on the topmost dialog and answers true when done, false
// to be tried again on the next tick.
using Step = std::function<bool(HWND)>;

// Runs `show` (which opens a dialog) with `steps` played on the dialog.
// The last `optional` steps need not run: the dialog may have ended before.
template <class Show>
auto drive(std::vector<Step> steps, Show show, std::size_t optional = 0) {
    vltest::DialogDriver driver(kPatience);
    for (std::size_t i = 0; i < steps.size(); ++i)
        driver.then("step " + std::to_string(i + 1), [step = std::move(steps[i])] {
            HWND const dialog = vltest::top_dialog();
            return dialog && step(dialog);
        });
    decltype(show()) result{};
    driver.run([&] { result = show(); }, optional);
    return result;
}

// ---- What a user does -------------------------------------------------------------

std::string text_of(HWND window) { return window ? vltest::window_text(window) : std::string(); }

// Types `text` into an edit control, character by character, after
// emptying it.
void type(HWND edit, const std::string& text) {
    SendMessageA(edit, EM_SETSEL, 0, -1);
    SendMessageA(edit, WM_CHAR, VK_BACK, 0);
    for (const char c : text) SendMessageA(edit, WM_CHAR, static_cast<unsigned char>(c), 0);
}

// Makes a row the selection of a list or combo box and tells its dialog.
void pick(HWND dialog, int id, int row) {
    HWND const box = control(dialog, id);
    char cls[32] = {};
    GetClassNameA(box, cls, sizeof cls);
    const bool combo = _stricmp(cls, "ComboBox") == 0;
    const LONG style = GetWindowLongA(box, GWL_STYLE);
    if (combo) {
        // A pick in a drop-down list: the selection changes, then ends well.
        SendMessageA(box, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
        SendMessageA(GetParent(box), WM_COMMAND, MAKEWPARAM(id, CBN_SELCHANGE), reinterpret_cast<LPARAM>(box));
        SendMessageA(GetParent(box), WM_COMMAND, MAKEWPARAM(id, CBN_SELENDOK), reinterpret_cast<LPARAM>(box));
        return;
    }
    if (style & (LBS_EXTENDEDSEL | LBS_MULTIPLESEL))
        SendMessageA(box, LB_SETSEL, TRUE, row);
    else
        SendMessageA(box, LB_SETCURSEL, static_cast<WPARAM>(row), 0);
    SendMessageA(GetParent(box), WM_COMMAND, MAKEWPARAM(id, LBN_SELCHANGE), reinterpret_cast<LPARAM>(box));
}

int row_of(HWND dialog, int id, const std::string& text) {
    return static_cast<int>(SendMessageA(control(dialog, id), LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                         reinterpret_cast<LPARAM>(text.c_str())));
}

void press(HWND dialog, int id) { SendMessageA(control(dialog, id), BM_CLICK, 0, 0); }
void press_later(HWND dialog, int id) { PostMessageA(control(dialog, id), BM_CLICK, 0, 0); }

std::vector<std::string> list_rows(HWND dialog, int id) {
    std::vector<std::string> rows;
    HWND const list = control(dialog, id);
    const LRESULT n = SendMessageA(list, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < n; ++i) {
        char row[512] = {};
        if (SendMessageA(list, LB_GETTEXTLEN, static_cast<WPARAM>(i), 0) < static_cast<LRESULT>(sizeof row))
            SendMessageA(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(row));
        rows.push_back(row);
    }
    return rows;
}

std::string lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// ---- The host's side ----------------------------------------------------------------

struct HostCall {
    HWND window;
    UINT message;
    std::string text;
};
std::vector<HostCall> g_host_calls;
VL_LRESULT VLAPI option_host(VL_HWND window, VL_UINT message, VL_WPARAM first, VL_LPARAM) {
    g_host_calls.push_back({window, message, first ? reinterpret_cast<const char*>(first) : ""});
    return 0;
}

VL_FILE_DIALOG_OPTIONS read_options() {
    VL_FILE_DIALOG_OPTIONS block{};
    KELUTIL_FileDialog(nullptr, reinterpret_cast<char*>(&block), nullptr, 0x20);
    return block;
}

class FileDialogs : public ::testing::Test {
  protected:
    void SetUp() override {
        char cwd[MAX_PATH] = {};
        GetCurrentDirectoryA(MAX_PATH, cwd);
        start_dir_ = cwd;
        base_ = fs::temp_directory_path() / ("vlcore_dialogs_" + std::to_string(GetCurrentProcessId()));
        fs::remove_all(base_);
        fs::create_directories(base_ / "one");
        fs::create_directories(base_ / "two");
        write("one\\a.dat", "#first comment\n1 2 3\n");
        write("one\\b.dat", "no comment here\n");
        write("one\\notes.txt", "# text notes\n");
        write("one\\book.xls", "#sheet\n");
        write("two\\c.dat", "#from two\n");
        reset();
    }
    void TearDown() override {
        reset();
        SetCurrentDirectoryA(start_dir_.c_str());
        std::error_code ignored;
        fs::remove_all(base_, ignored);
    }
    void reset() {
        filedlg_test::reset_through_entries();
        for (int r = 1; r <= 25; ++r) KELUTIL_Fdlog_Str(nullptr, r, 19);
        KELUTIL_Fdlog_Str(nullptr, 1, 17);
        g_host_calls.clear();
    }
    void write(const std::string& relative, const std::string& text) {
        std::ofstream(base_ / relative, std::ios::binary) << text;
    }
    std::string dir(const char* sub) const { return (base_ / sub).string() + "\\"; }
    static void types(std::initializer_list<const char*> rows) {
        int r = 1;
        for (const char* row : rows) KELUTIL_Fdlog_Str(const_cast<char*>(row), r++, 19);
    }
    void preset(const std::string& directory) {
        std::string d = directory;
        char none[] = "";
        ASSERT_EQ(KELUTIL_FileDialog(nullptr, d.data(), none, 0x200), 0);
    }
    static std::string working_directory() {
        char cwd[MAX_PATH] = {};
        GetCurrentDirectoryA(MAX_PATH, cwd);
        std::string s = cwd;
        if (s.back() != '\\') s += '\\';
        return s;
    }
    std::string start_dir_;
    fs::path base_;
};

// ---- Open -----------------------------------------------------------------------------

// The old-style open dialog: it opens on the preset directory and the
// remembered type; picking a file shows its comment; typing a name and OK
// give the short name, move the working directory there and remember the
// directory and row for the extension.
TEST_F(FileDialogs, OpenTypedNameAndComment) {
    types({"Text *.TXT", "Data *.DAT"});
    // The registry's first row never chooses a type: DAT comes second.
    char first_dir[] = "C:\\";
    char first_key[] = "XYZ";
    KELUTIL_PathControl(1, first_dir, first_key, 0);
    preset(dir("one"));
    std::string seen_dir, comment, no_comment, first_type;
    char name[300] = {};
    const int32_t result = drive({[&](HWND d) {
                                      seen_dir = text_of(control(d, kDirectoryLabel));
                                      first_type = std::to_string(SendMessageA(control(d, kTypes), CB_GETCURSEL, 0, 0));
                                      pick(d, kTypes, 1);  // Data
                                      SendMessageA(d, WM_COMMAND, MAKEWPARAM(kTypes, CBN_CLOSEUP), 0);
                                      return true;
                                  },
                                  [&](HWND d) {
                                      const int a = row_of(d, kFiles, "a.dat");
                                      if (a < 0) return false;
                                      pick(d, kFiles, a);
                                      comment = text_of(control(d, kComment));
                                      pick(d, kFiles, row_of(d, kFiles, "b.dat"));
                                      no_comment = text_of(control(d, kComment));
                                      type(control(d, kName), "a.dat");
                                      press(d, IDOK);
                                      return true;
                                  }},
                                 [&] { return KELUTIL_FileDialog(nullptr, name, nullptr, 0); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(lower(seen_dir), lower(dir("one").substr(0, dir("one").size() - 1))) << "the preset's directory";
    EXPECT_EQ(first_type, "0");
    EXPECT_EQ(comment, "first comment");
    EXPECT_EQ(no_comment, "");
    EXPECT_EQ(lower(name), "a.dat");
    EXPECT_EQ(lower(working_directory()), lower(dir("one")));
    // The short name opens from there.
    EXPECT_NE(KELUTIL_32FileTest(name), -1);
    // What it leaves: the directory and the row for DAT, the selected row.
    char remembered[300] = {};
    char key[] = "DAT";
    ASSERT_EQ(KELUTIL_PathControl(0, remembered, key, 0), 1);
    EXPECT_EQ(lower(remembered), lower(dir("one")));
    char ext[8] = {};
    EXPECT_EQ(KELUTIL_PathControl(5, remembered, ext, 1), 2);
    EXPECT_EQ(lower(ext), "dat");
    EXPECT_EQ(KELUTIL_Fdlog_Str(nullptr, 0, 18), 2);
    EXPECT_EQ(read_options().dwReadOnly, 0u);
    // The next dialog opens on DAT in that directory, without a preset.
    char next[300] = "";
    KELUTIL_FileDialog(nullptr, next, nullptr, 0x10);
    EXPECT_EQ(lower(next), lower(dir("one")));
    std::string again_dir, again_type;
    drive({[&](HWND d) {
              again_dir = text_of(control(d, kDirectoryLabel));
              again_type = std::to_string(SendMessageA(control(d, kTypes), CB_GETCURSEL, 0, 0));
              press(d, IDCANCEL);
              return true;
          }},
          [&] { return KELUTIL_FileDialog(nullptr, name, nullptr, 0); });
    EXPECT_EQ(lower(again_dir), lower(dir("one").substr(0, dir("one").size() - 1)));
    EXPECT_EQ(again_type, "1");
}

// Flag 1 opens the chosen file; cancel answers -1 and changes nothing.
TEST_F(FileDialogs, OpenFileHandleAndCancel) {
    preset(dir("two"));
    char name[300] = {};
    char spec[] = "*.DAT";
    const int32_t handle = drive({[&](HWND d) {
                                     type(control(d, kName), "c.dat");
                                     press(d, IDOK);
                                     return true;
                                 }},
                                 [&] { return KELUTIL_FileDialog(nullptr, name, spec, 1); });
    ASSERT_NE(handle, -1);
    ASSERT_NE(handle, 0);
    ASSERT_NE(handle, 1);
    char line[64] = {};
    EXPECT_STREQ(KELUTIL_fgets(line, sizeof line, handle), "#from two\n");
    CloseHandle(reinterpret_cast<HANDLE>(static_cast<intptr_t>(handle)));
    // With a pattern list nothing is remembered for the extension.
    EXPECT_EQ(KELUTIL_PathControl(4, nullptr, nullptr, 0), 0);

    char kept[300] = "KEPT";
    const std::string before = working_directory();
    const int32_t cancelled = drive({[&](HWND d) {
                                        press(d, IDCANCEL);
                                        return true;
                                    }},
                                    [&] { return KELUTIL_FileDialog(nullptr, kept, nullptr, 0); });
    EXPECT_EQ(cancelled, -1);
    EXPECT_STREQ(kept, "KEPT");
    EXPECT_EQ(working_directory(), before);
}

// A name longer than the dialog's buffer: the platform refuses it, and the
// entry answers a clear -1 with the caller's buffer untouched.
TEST_F(FileDialogs, OpenNameLongerThanBuffer) {
    preset(dir("one"));
    vltest::Poisoned name(300);
    const int32_t result = drive(
        {[&](HWND d) {
             type(control(d, kName), std::string(280, 'x') + ".dat");
             press_later(d, IDOK);
             return true;
         },
         [&](HWND d) {
             // Whatever the platform said about it, the user gives up.
             if (!control(d, kName)) {  // a message box stands on top
                 PostMessageA(d, WM_COMMAND, IDOK, 0);
                 return false;
             }
             press_later(d, IDCANCEL);
             return true;
         }},
        [&] { return KELUTIL_FileDialog(nullptr, name.data(), nullptr, 0); }, 1);
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(name.clean_from(0));
}

// The Option button reaches the host with its command text; the partial
// import box takes the host's label and state, and its new state goes back.
TEST_F(FileDialogs, OptionButtonAndPartialImport) {
    VL_FILE_DIALOG_OPTIONS block{};
    std::strcpy(block.szOptionName, "impascii");
    std::strcpy(block.szPartialLabel, "Rows 1 to 10 only");
    block.dwPartialImport = 1;
    std::strcpy(block.szTitle, "Import ASCII");
    HWND const owner_stand_in = GetDesktopWindow();
    KELUTIL_FileDialog(owner_stand_in, reinterpret_cast<char*>(&block), reinterpret_cast<char*>(&option_host), 8);
    preset(dir("one"));
    bool option_shown = false, partial_shown = false, partial_checked = false;
    std::string partial_label, title;
    char name[300] = {};
    drive({[&](HWND d) {
              title = text_of(d);
              option_shown = IsWindowVisible(control(d, kOption));
              partial_shown = IsWindowVisible(control(d, kPartial));
              partial_label = text_of(control(d, kPartial));
              partial_checked = SendMessageA(control(d, kPartial), BM_GETCHECK, 0, 0) == BST_CHECKED;
              press(d, kOption);
              press(d, kPartial);
              press(d, IDCANCEL);
              return true;
          }},
          [&] { return KELUTIL_FileDialog(nullptr, name, nullptr, 0); });
    EXPECT_EQ(title, "Import ASCII");
    EXPECT_TRUE(option_shown);
    EXPECT_TRUE(partial_shown);
    EXPECT_EQ(partial_label, "Rows 1 to 10 only");
    EXPECT_TRUE(partial_checked);
    ASSERT_EQ(g_host_calls.size(), 1u);
    EXPECT_EQ(g_host_calls[0].window, owner_stand_in);
    EXPECT_EQ(g_host_calls[0].message, 4100u);
    EXPECT_EQ(g_host_calls[0].text, "worksheet -edit ascii");
    const VL_FILE_DIALOG_OPTIONS after = read_options();
    EXPECT_STREQ(after.szOptionName, "IMPASCII");
    EXPECT_EQ(after.dwPartialImport, 0u);
}

// "EXPASCII" shows the button and pressing it asks nobody; an empty label
// hides the partial import box whatever its state; another name hides the
// button.
TEST_F(FileDialogs, OptionButtonRows) {
    struct Case {
        const char* option;
        const char* partial;
        bool option_shown;
        bool partial_shown;
    };
    for (const Case& c :
         {Case{"EXPASCII", "", true, false}, Case{"", "Part", false, true}, Case{"OTHER", "", false, false}}) {
        SCOPED_TRACE(std::string(c.option) + "/" + c.partial);
        VL_FILE_DIALOG_OPTIONS block{};
        std::strcpy(block.szOptionName, c.option);
        std::strcpy(block.szPartialLabel, c.partial);
        block.dwPartialImport = 1;
        KELUTIL_FileDialog(nullptr, reinterpret_cast<char*>(&block), reinterpret_cast<char*>(&option_host), 8);
        g_host_calls.clear();
        bool option_shown = true, partial_shown = true;
        char name[300] = {};
        drive({[&](HWND d) {
                  option_shown = IsWindowVisible(control(d, kOption));
                  partial_shown = IsWindowVisible(control(d, kPartial));
                  SendMessageA(d, WM_COMMAND, kOption, 0);
                  press(d, IDCANCEL);
                  return true;
              }},
              [&] { return KELUTIL_FileDialog(nullptr, name, nullptr, 0); });
        EXPECT_EQ(option_shown, c.option_shown);
        EXPECT_EQ(partial_shown, c.partial_shown);
        EXPECT_TRUE(g_host_calls.empty());
    }
}

// Show Info closes and opens the Comments line; with the feature off the
// box is hidden and the line cut off from the start.
TEST_F(FileDialogs, ShowInfoAndTheCommentsLine) {
    preset(dir("one"));
    int full = 0, closed = 0, reopened = 0;
    bool box_checked = false;
    char name[300] = {};
    auto height = [](HWND w) {
        RECT r{};
        GetWindowRect(w, &r);
        return static_cast<int>(r.bottom - r.top);
    };
    drive({[&](HWND d) {
              full = height(d);
              box_checked = IsDlgButtonChecked(d, kShowInfo) == BST_CHECKED;
              press(d, kShowInfo);
              closed = height(d);
              press(d, kShowInfo);
              reopened = height(d);
              press(d, kShowInfo);  // leaves it closed for the next dialog
              press(d, IDCANCEL);
              return true;
          }},
          [&] { return KELUTIL_FileDialog(nullptr, name, nullptr, 0); });
    EXPECT_TRUE(box_checked);
    EXPECT_LT(closed, full);
    EXPECT_EQ(reopened, full);
    // The choice lasts to the next dialog: it starts closed, and a picked
    // file shows nothing.
    int next = 0;
    std::string comment = "x";
    drive({[&](HWND d) {
              next = height(d);
              const int a = row_of(d, kFiles, "a.dat");
              if (a < 0) return false;
              pick(d, kFiles, a);
              comment = text_of(control(d, kComment));
              press(d, IDCANCEL);
              return true;
          }},
          [&] { return KELUTIL_FileDialog(nullptr, name, nullptr, 0); });
    EXPECT_EQ(next, closed);
    EXPECT_EQ(comment, "");
    // The feature off: the box hidden, the line cut off.
    char off[] = "\x00";
    KELUTIL_FileSaveAs(nullptr, off, nullptr, 1536);
    bool box_shown = true;
    int without = 0;
    drive({[&](HWND d) {
              box_shown = IsWindowVisible(control(d, kShowInfo));
              without = height(d);
              press(d, IDCANCEL);
              return true;
          }},
          [&] { return KELUTIL_FileDialog(nullptr, name, nullptr, 0); });
    EXPECT_FALSE(box_shown);
    EXPECT_EQ(without, closed);
}

// ---- Save -----------------------------------------------------------------------------

// The old-style save dialog: the proposed name fitted to the type, a change
// of type renaming it, the comment typed in kept for the host, the whole
// path as the result and the working directory unmoved.
TEST_F(FileDialogs, SaveTypeChangeAndComment) {
    types({"Text *.TXT", "Data *.DAT"});
    preset(dir("two"));
    char name[400] = "REPORT";
    std::string first_name, renamed;
    const std::string before = working_directory();
    const int32_t result = drive({[&](HWND d) {
                                      first_name = text_of(control(d, kName));
                                      pick(d, kTypes, 1);
                                      return true;
                                  },
                                  [&](HWND d) {
                                      // What the user sees once the pick is through.
                                      renamed = text_of(control(d, kName));
                                      type(control(d, kComment), "calibration run");
                                      press(d, IDOK);
                                      return true;
                                  }},
                                 [&] { return KELUTIL_FileSaveAs(nullptr, name, nullptr, 0); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(first_name, "REPORT.TXT");
    EXPECT_EQ(renamed, "REPORT.DAT");
    EXPECT_EQ(lower(name), lower(dir("two") + "REPORT.DAT"));
    EXPECT_EQ(working_directory(), before);
    char comment[200] = {};
    KELUTIL_FileSaveAs(nullptr, comment, nullptr, 1024);
    EXPECT_STREQ(comment, "calibration run");
    // The registry remembers the directory for DAT.
    char remembered[300] = {};
    char key[] = "DAT";
    ASSERT_GE(KELUTIL_PathControl(0, remembered, key, 0), 0);
    EXPECT_EQ(lower(remembered), lower(dir("two")));
    // OK on a name with an extension of its own keeps it.
    char other[400] = "A";
    const int32_t kept = drive({[&](HWND d) {
                                   type(control(d, kName), "A.XYZ");
                                   press(d, IDOK);
                                   return true;
                               }},
                               [&] { return KELUTIL_FileSaveAs(nullptr, other, nullptr, 0); });
    EXPECT_EQ(kept, 0);
    EXPECT_EQ(lower(fs::path(other).filename().string()), "a.xyz");
    // Cancel answers 1 and leaves the name.
    char cancelled[400] = "SAME";
    EXPECT_EQ(drive({[&](HWND d) {
                        press(d, IDCANCEL);
                        return true;
                    }},
                    [&] { return KELUTIL_FileSaveAs(nullptr, cancelled, nullptr, 0); }),
              1);
    EXPECT_STREQ(cancelled, "SAME");
}

// The export dialog: the host's options shown, the user's changes back in
// the block.
TEST_F(FileDialogs, ExportOptions) {
    VL_FILE_DIALOG_OPTIONS block{};
    block.dwIncludeHeader = 1;
    std::strcpy(block.szSeparator, ",\t");
    KELUTIL_FileSaveAs(nullptr, reinterpret_cast<char*>(&block), nullptr, 0x10);
    // With a pattern list the name's own directory is where the dialog opens.
    char name[400] = {};
    std::strcpy(name, (dir("one") + "OUT").c_str());
    char spec[] = "*.CSV";
    std::string title, separator_shown;
    bool header = false;
    std::vector<std::string> offered;
    const int32_t result =
        drive({[&](HWND d) {
                  title = text_of(d);
                  header = IsDlgButtonChecked(d, 1001) == BST_CHECKED;
                  HWND const combo = control(d, 1003);
                  for (int i = 0; i < SendMessageA(combo, CB_GETCOUNT, 0, 0); ++i) {
                      char row[32] = {};
                      SendMessageA(combo, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(row));
                      offered.push_back(row);
                  }
                  separator_shown = text_of(combo);
                  press(d, 1001);
                  press(d, 1002);
                  pick(d, 1003, 4);
                  press(d, IDOK);
                  return true;
              }},
              [&] { return KELUTIL_FileSaveAs(nullptr, name, spec, 0x80); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(title, "Export ASCII");
    EXPECT_TRUE(header);
    EXPECT_EQ(offered, (std::vector<std::string>{"TAB", ",", "SPACE", ",TAB", ",SPACE"}));
    EXPECT_EQ(separator_shown, ",TAB");
    EXPECT_EQ(lower(name), lower(dir("one") + "OUT.CSV"));
    const VL_FILE_DIALOG_OPTIONS after = read_options();
    EXPECT_EQ(after.dwIncludeHeader, 0u);
    EXPECT_EQ(after.dwExportSection, 1u);
    EXPECT_STREQ(after.szSeparator, ", ");
}

// ---- Explorer style ------------------------------------------------------------------------

// The platform's own dialog with the library's part inside: the read-only
// box follows the type, the Option button reaches the host, a typed name
// opens.
TEST_F(FileDialogs, ExplorerOpen) {
    types({"Data *.DAT", "Book *.XLS", "Project *.VLP"});
    VL_FILE_DIALOG_OPTIONS block{};
    std::strcpy(block.szOptionName, "IMPASCII");
    KELUTIL_FileDialog(nullptr, reinterpret_cast<char*>(&block), reinterpret_cast<char*>(&option_host), 8);
    preset(dir("one"));
    char name[300] = {};
    bool enabled_dat = true, enabled_xls = false, enabled_vlp = false, has_comment = false;
    std::string label_dat, label_xls, label_vlp;
    const int32_t result = drive({[&](HWND d) {
                                      has_comment = control(d, kComment) != nullptr;
                                      HWND const box = GetDlgItem(d, kReadOnlyBox);
                                      pick(d, kTypes, 0);
                                      enabled_dat = IsWindowEnabled(box);
                                      label_dat = text_of(box);
                                      pick(d, kTypes, 1);
                                      enabled_xls = IsWindowEnabled(box);
                                      label_xls = text_of(box);
                                      pick(d, kTypes, 2);
                                      enabled_vlp = IsWindowEnabled(box);
                                      label_vlp = text_of(box);
                                      // Open this one read-only.
                                      press(d, kReadOnlyBox);
                                      press(d, kOption);
                                      return true;
                                  },
                                  [&](HWND d) {
                                      HWND edit = GetDlgItem(d, kExplorerName);
                                      if (!edit) edit = GetDlgItem(d, kName);
                                      SetWindowTextA(edit, "a.dat");
                                      press_later(d, IDOK);
                                      return true;
                                  }},
                                 [&] { return KELUTIL_FileDialog(nullptr, name, nullptr, 0x2000); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(lower(name), "a.dat");
    EXPECT_TRUE(has_comment);
    EXPECT_FALSE(enabled_dat);
    EXPECT_EQ(label_dat, "Open as read-only");
    EXPECT_TRUE(enabled_xls);
    EXPECT_EQ(label_xls, "Do not Automatically Update");
    EXPECT_TRUE(enabled_vlp);
    EXPECT_EQ(label_vlp, "Open as read-only");
    ASSERT_EQ(g_host_calls.size(), 1u);
    EXPECT_EQ(g_host_calls[0].text, "worksheet -edit ascii");
    EXPECT_EQ(read_options().dwReadOnly, 1u);
    EXPECT_EQ(KELUTIL_Fdlog_Str(nullptr, 0, 18), 3);
}

BOOL CALLBACK find_list_view(HWND child, LPARAM found) {
    char cls[32] = {};
    GetClassNameA(child, cls, sizeof cls);
    if (std::strcmp(cls, "SysListView32") != 0) return TRUE;
    *reinterpret_cast<HWND*>(found) = child;
    return FALSE;
}

// Selects the row of the platform's file view whose text begins with
// `name`, as a click does; false while the view has no such row yet.
bool select_in_view(HWND dialog, const std::string& name) {
    HWND view = nullptr;
    EnumChildWindows(dialog, find_list_view, reinterpret_cast<LPARAM>(&view));
    if (!view) return false;
    const int count = static_cast<int>(SendMessageA(view, LVM_GETITEMCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
        char text[MAX_PATH] = {};
        LVITEMA item{};
        item.iSubItem = 0;
        item.pszText = text;
        item.cchTextMax = sizeof text;
        SendMessageA(view, LVM_GETITEMTEXTA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        if (lower(text).rfind(name, 0) != 0) continue;
        LVITEMA state{};
        state.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        state.state = LVIS_SELECTED | LVIS_FOCUSED;
        SendMessageA(view, LVM_SETITEMSTATE, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&state));
        return true;
    }
    return false;
}

// The Explorer-style open dialog: its Comments line starts closed, Show
// Info opens it, and a file picked in the platform's view shows its
// comment.
TEST_F(FileDialogs, ExplorerShowInfo) {
    types({"Data *.DAT"});
    preset(dir("one"));
    char name[300] = {};
    int closed = 0, opened = 0;
    bool box_checked = true;
    std::string comment;
    auto height = [](HWND w) {
        RECT r{};
        GetWindowRect(w, &r);
        return static_cast<int>(r.bottom - r.top);
    };
    drive({[&](HWND d) {
               if (!control(d, kShowInfo)) return false;
               closed = height(d);
               box_checked = SendMessageA(control(d, kShowInfo), BM_GETCHECK, 0, 0) == BST_CHECKED;
               press(d, kShowInfo);
               opened = height(d);
               return true;
           },
           [&](HWND d) { return select_in_view(d, "a"); },
           [&](HWND d) {
               comment = text_of(control(d, kComment));
               if (comment.empty()) return false;
               press_later(d, IDCANCEL);
               return true;
           }},
          [&] { return KELUTIL_FileDialog(nullptr, name, nullptr, 0x2000); });
    EXPECT_FALSE(box_checked);
    EXPECT_GT(opened, closed);
    EXPECT_EQ(comment, "first comment");
}

// The Explorer-style export: the library's part holds the export options,
// and the platform's read-only box is hidden.
TEST_F(FileDialogs, ExplorerExport) {
    VL_FILE_DIALOG_OPTIONS block{};
    block.dwExportSection = 1;
    std::strcpy(block.szSeparator, "\t");
    KELUTIL_FileSaveAs(nullptr, reinterpret_cast<char*>(&block), nullptr, 0x10);
    char name[400] = {};
    std::strcpy(name, (dir("two") + "TABLE").c_str());
    char spec[] = "*.TXT";
    bool read_only_shown = true, section = false;
    std::string separator;
    const int32_t result = drive({[&](HWND d) {
                                     HWND const combo = control(d, 1003);
                                     if (!combo) return false;
                                     read_only_shown = IsWindowVisible(GetDlgItem(d, kReadOnlyBox));
                                     section = SendMessageA(control(d, 1002), BM_GETCHECK, 0, 0) == BST_CHECKED;
                                     separator = text_of(combo);
                                     press(d, 1001);
                                     pick(d, 1003, 2);
                                     press_later(d, IDOK);
                                     return true;
                                 }},
                                 [&] { return KELUTIL_FileSaveAs(nullptr, name, spec, 0x2080); });
    EXPECT_EQ(result, 0);
    EXPECT_FALSE(read_only_shown);
    EXPECT_TRUE(section);
    EXPECT_EQ(separator, "TAB");
    // An export dialog gets no default extension, and its part of the
    // dialog is no save template: the name stays as the user left it.
    EXPECT_EQ(lower(name), lower(dir("two") + "TABLE"));
    const VL_FILE_DIALOG_OPTIONS after = read_options();
    EXPECT_EQ(after.dwIncludeHeader, 1u);
    EXPECT_EQ(after.dwExportSection, 1u);
    EXPECT_STREQ(after.szSeparator, " ");
}

// A proposed name longer than the dialog takes: it comes up with the name
// cut to what the platform reads, its type kept, and a cancel leaves the
// caller's text as it was.
TEST_F(FileDialogs, SaveNameLongerThanBuffer) {
    types({"Data *.DAT"});
    preset(dir("one"));
    std::string proposed(300, 'n');
    std::vector<char> name(proposed.begin(), proposed.end());
    name.resize(400, '\0');
    std::string shown;
    const int32_t result = drive({[&](HWND d) {
                                     shown = text_of(control(d, kName));
                                     press(d, IDCANCEL);
                                     return true;
                                 }},
                                 [&] { return KELUTIL_FileSaveAs(nullptr, name.data(), nullptr, 0); });
    EXPECT_EQ(result, 1);
    EXPECT_EQ(std::string(name.data()), proposed);
    EXPECT_EQ(shown, std::string(261, 'n') + ".DAT");
}

// OK with an empty Files to Open list: no rows, and the old list is gone.
TEST_F(FileDialogs, MultipleFilesOkWithEmptyList) {
    char old[] = "OLD\r";
    KELUTIL_MultiFile(nullptr, old, 1, 3);
    preset(dir("one"));
    char spec[] = "*.DAT";
    const int32_t count = drive({[&](HWND d) {
                                    type(control(d, kName), "a.dat");
                                    press(d, IDOK);
                                    return true;
                                }},
                                [&] { return KELUTIL_MultiFile(nullptr, spec, 0, 1); });
    EXPECT_EQ(count, 0);
    char row[300] = {};
    KELUTIL_MultiFile(nullptr, row, 0, 2);
    EXPECT_STREQ(row, "error");
}

// A separator outside the table selects nothing and stays until the user
// chooses one.
TEST_F(FileDialogs, ExportSeparatorOutsideTheTable) {
    VL_FILE_DIALOG_OPTIONS block{};
    std::strcpy(block.szSeparator, ";");
    KELUTIL_FileSaveAs(nullptr, reinterpret_cast<char*>(&block), nullptr, 0x10);
    char name[400] = {};
    std::strcpy(name, (dir("one") + "OUT").c_str());
    char spec[] = "*.CSV";
    LRESULT selection = 0;
    const int32_t result = drive({[&](HWND d) {
                                     selection = SendMessageA(control(d, 1003), CB_GETCURSEL, 0, 0);
                                     press(d, IDOK);
                                     return true;
                                 }},
                                 [&] { return KELUTIL_FileSaveAs(nullptr, name, spec, 0x80); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(selection, CB_ERR);
    EXPECT_STREQ(read_options().szSeparator, ";");
}

// The Files to Open list stops at its limit: Add File on a full list adds
// nothing, and OK hands all of it to the host.
TEST_F(FileDialogs, MultipleFilesListLimit) {
    preset(dir("one"));
    char spec[] = "*.DAT";
    LRESULT after_add = 0;
    const int32_t count = drive({[&](HWND d) {
                                    const int a = row_of(d, kFiles, "a.dat");
                                    if (a < 0) return false;
                                    HWND const chosen = control(d, kChosen);
                                    for (int i = 0; i < VL_FILE_LIST_ROWS; ++i) {
                                        const std::string row = "C:\\F" + std::to_string(i);
                                        SendMessageA(chosen, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(row.c_str()));
                                    }
                                    pick(d, kFiles, a);
                                    press(d, kAddFile);
                                    after_add = SendMessageA(chosen, LB_GETCOUNT, 0, 0);
                                    type(control(d, kName), "a.dat");
                                    press(d, IDOK);
                                    return true;
                                }},
                                [&] { return KELUTIL_MultiFile(nullptr, spec, 0, 1); });
    EXPECT_EQ(after_add, VL_FILE_LIST_ROWS);
    EXPECT_EQ(count, VL_FILE_LIST_ROWS);
    char last[300] = {};
    KELUTIL_MultiFile(nullptr, last, VL_FILE_LIST_ROWS - 1, 2);
    EXPECT_EQ(std::string(last), "C:\\F" + std::to_string(VL_FILE_LIST_ROWS - 1));
}

// The Explorer-style save: the comment line's text comes back, and the
// typed name gets the type's extension.
TEST_F(FileDialogs, ExplorerSave) {
    types({"Data *.DAT"});
    char comment[] = "from the host";
    KELUTIL_FileSaveAs(nullptr, comment, nullptr, 1280);
    preset(dir("two"));
    char name[400] = "RESULT";
    std::string shown;
    const int32_t result = drive({[&](HWND d) {
                                     HWND const line = control(d, kComment);
                                     if (!line) return false;
                                     shown = text_of(line);
                                     SetWindowTextA(line, "changed by the user");
                                     press_later(d, IDOK);
                                     return true;
                                 }},
                                 [&] { return KELUTIL_FileSaveAs(nullptr, name, nullptr, 0x2000); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(shown, "from the host");
    EXPECT_EQ(lower(name), lower(dir("two") + "RESULT.DAT"));
    char back[200] = {};
    KELUTIL_FileSaveAs(nullptr, back, nullptr, 1024);
    EXPECT_STREQ(back, "changed by the user");
}

// ---- Multiple files ---------------------------------------------------------------------------

// Files from two directories gathered into one list: Add File, a double
// click, Remove, a change of directory, OK; the host reads full paths.
TEST_F(FileDialogs, MultipleFilesFromTwoDirectories) {
    preset(dir("one"));
    char spec[] = "*.DAT";
    std::vector<std::string> before_ok;
    const int32_t count = drive({[&](HWND d) {
                                     const int a = row_of(d, kFiles, "a.dat");
                                     const int b = row_of(d, kFiles, "b.dat");
                                     if (a < 0 || b < 0) return false;
                                     pick(d, kFiles, a);
                                     pick(d, kFiles, b);
                                     press(d, kAddFile);
                                     // Added twice, then one taken out again.
                                     press(d, kAddFile);
                                     SendMessageA(control(d, kChosen), LB_SETSEL, FALSE, -1);
                                     SendMessageA(control(d, kChosen), LB_SETSEL, TRUE, 3);
                                     press(d, kRemove);
                                     // To the other directory, as a user types it.
                                     type(control(d, kName), (base_ / "two").string());
                                     press(d, IDOK);
                                     return true;
                                 },
                                 [&](HWND d) {
                                     const int c = row_of(d, kFiles, "c.dat");
                                     if (c < 0) return false;
                                     SendMessageA(control(d, kFiles), LB_SETSEL, FALSE, -1);
                                     SendMessageA(control(d, kFiles), LB_SETSEL, TRUE, c);
                                     // A double click adds and leaves the dialog open.
                                     SendMessageA(d, WM_COMMAND, MAKEWPARAM(kFiles, LBN_DBLCLK),
                                                  reinterpret_cast<LPARAM>(control(d, kFiles)));
                                     before_ok = list_rows(d, kChosen);
                                     type(control(d, kName), "c.dat");
                                     press(d, IDOK);
                                     return true;
                                 }},
                                [&] { return KELUTIL_MultiFile(nullptr, spec, 0, 1); });
    const std::vector<std::string> expected{dir("one") + "a.dat", dir("one") + "b.dat", dir("one") + "a.dat",
                                            dir("two") + "c.dat"};
    ASSERT_EQ(before_ok.size(), expected.size());
    ASSERT_EQ(count, 4);
    for (int i = 0; i < count; ++i) {
        char row[300] = {};
        KELUTIL_MultiFile(nullptr, row, i, 2);
        EXPECT_EQ(lower(row), lower(expected[static_cast<std::size_t>(i)])) << "row " << i;
        EXPECT_EQ(lower(before_ok[static_cast<std::size_t>(i)]), lower(expected[static_cast<std::size_t>(i)]));
    }
    char past[300] = {};
    KELUTIL_MultiFile(nullptr, past, 4, 2);
    EXPECT_STREQ(past, "error");
    // Cancel keeps the list.
    EXPECT_EQ(drive({[&](HWND d) {
                        press(d, IDCANCEL);
                        return true;
                    }},
                    [&] { return KELUTIL_MultiFile(nullptr, spec, 0, 1); }),
              -1);
    char first[300] = {};
    KELUTIL_MultiFile(nullptr, first, 0, 2);
    EXPECT_EQ(lower(first), lower(expected[0]));
}

// A directory that no longer exists: the dialog opens somewhere that does,
// and choosing there works.
TEST_F(FileDialogs, DirectoryThatNoLongerExists) {
    preset((base_ / "gone").string() + "\\");
    char name[300] = {};
    std::string shown;
    const int32_t result = drive({[&](HWND d) {
                                     shown = text_of(control(d, kDirectoryLabel));
                                     type(control(d, kName), (base_ / "one" / "b.dat").string());
                                     press(d, IDOK);
                                     return true;
                                 }},
                                 [&] { return KELUTIL_FileDialog(nullptr, name, nullptr, 0); });
    EXPECT_EQ(result, 0);
    EXPECT_FALSE(shown.empty());
    EXPECT_EQ(lower(shown).find("gone"), std::string::npos);
    EXPECT_EQ(lower(name), "b.dat");
}

}  // namespace
