// The script window on a real window system: KelText, the record, the menu,
// the accelerators, and Enter as the user presses it.

#include <memory>
#include <sstream>

#include "script_window_support.h"

namespace {

using namespace scripttest;

std::string field(const std::string& s) { return s == "<>" ? std::string() : vltest::unescape(s); }

std::string joined(const std::vector<std::string>& texts) {
    std::string out;
    for (std::size_t i = 0; i < texts.size(); ++i) out += (i ? "|" : "") + texts[i];
    return out;
}

// Every row of the Enter table, with the host answering and writing.
TEST_F(ScriptWindowTest, EnterRunsTheLineAsTabled) {
    vltest::for_each_row("script/enter_rows.tsv", [this](const vltest::DataRow& row) {
        log_.executed.clear();
        log_.answer = row.n(3);
        const std::string output = field(row[4]);
        log_.during = [this, output](const std::string&) {
            if (!output.empty())
                KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>(output.c_str()), 14);
        };
        set_text(field(row[0]));
        select(static_cast<int>(row.n(1)), static_cast<int>(row.n(2)));
        enter();
        std::vector<std::string> expected;
        if (row[5] != "<>") {
            std::stringstream cut(row[5]);
            for (std::string part; std::getline(cut, part, '|');) expected.push_back(field(part));
        }
        EXPECT_EQ(joined(log_.executed), joined(expected));
        const std::string after = field(row[6]);
        EXPECT_EQ(text(), after);
        const int at = row[7] == "end" ? static_cast<int>(after.size()) : static_cast<int>(row.n(7));
        EXPECT_EQ(selection(), std::make_pair(at, at));
    });
    log_.during = nullptr;
}

// Lines typed one after another, as a session at the console goes.
TEST_F(ScriptWindowTest, ASessionOfTypedLines) {
    log_.during = [this](const std::string& line) {
        const std::string echo = "= " + line + "\r\n";
        KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>(echo.c_str()), 14);
    };
    type("a=1\r");
    type("b=(\r");
    type("2)\r");
    type("c=3;\r");
    EXPECT_EQ(joined(log_.executed), "a=1|2)");
    EXPECT_EQ(text(), "a=1;\r\n= a=1\r\nb=(\r\n2);\r\n= 2)\r\nc=3;\r\n");
    // The block typed over two lines runs when selected.
    log_.during = nullptr;
    const std::string t = text();
    const int from = static_cast<int>(t.find("b=("));
    select(from, from + 8);
    enter();
    EXPECT_EQ(log_.executed.back(), "b=(\r\n2);");
    log_.during = nullptr;
}

// The key-down posted as the keyboard would; the system's own translation
// queues the character 13 behind it.
TEST_F(ScriptWindowTest, EnterThroughTheMessageLoop) {
    set_text("x=1");
    PostMessageA(edit_, WM_KEYDOWN, VK_RETURN, 0x001C0001);
    pump();
    ASSERT_EQ(log_.executed.size(), 1u);
    EXPECT_EQ(log_.executed[0], "x=1");
    EXPECT_EQ(text(), "x=1;\r\n");
    EXPECT_EQ(selection(), std::make_pair(6, 6));
}

TEST_F(ScriptWindowTest, EndOfSessionAsksToo) {
    type("x");
    boxes_.yes_no = IDNO;
    EXPECT_NE(SendMessageA(window_, WM_QUERYENDSESSION, 0, 0), 0);
    ASSERT_EQ(boxes_.seen.size(), 1u);
    EXPECT_EQ(boxes_.seen[0].text, "Save Changes? ");
    EXPECT_EQ(word(kPosModified), 0);
    EXPECT_TRUE(IsWindow(window_));
}

TEST_F(ScriptWindowTest, HostGetsTheOwnerWindow) {
    type("x\r");
    ASSERT_FALSE(log_.windows.empty());
    EXPECT_EQ(log_.windows.back(), owner_);
}

TEST_F(ScriptWindowTest, ExecutionOffIsAPlainEditor) {
    command(571);
    EXPECT_EQ(word(kPosExecute), 0);
    type("x=1\r");
    EXPECT_TRUE(log_.executed.empty());
    EXPECT_EQ(text(), "x=1\r\n");
    command(571);
    EXPECT_EQ(word(kPosExecute), 1);
    // The host's setting E: a blank before the 1 counts, "E1" is one token.
    KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>("E1"), 2);
    EXPECT_EQ(word(kPosExecute), 0);
    KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>("E 1"), 2);
    EXPECT_EQ(word(kPosExecute), 1);
}

TEST_F(ScriptWindowTest, EditPopupMarksScriptExecution) {
    const HMENU menu = GetMenu(window_);
    ASSERT_NE(menu, nullptr);
    const HMENU file = GetSubMenu(menu, 0), edit = GetSubMenu(menu, 1);
    auto marked = [menu] { return (GetMenuState(menu, 571, MF_BYCOMMAND) & MF_CHECKED) != 0; };
    SendMessageA(window_, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(edit), MAKELPARAM(1, 0));
    EXPECT_TRUE(marked());
    command(571);
    SendMessageA(window_, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(file), MAKELPARAM(0, 0));
    EXPECT_TRUE(marked());  // the File popup leaves the mark alone
    SendMessageA(window_, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(edit), MAKELPARAM(1, 0));
    EXPECT_FALSE(marked());
}

TEST_F(ScriptWindowTest, RecordAtCreation) {
    EXPECT_EQ(GetWindowLongPtrA(window_, kPosFileName), 0);
    EXPECT_NE(GetWindowLongPtrA(window_, kPosEditProc), 0);
    // The kept procedure is the control's own, and no longer its current one.
    EXPECT_NE(GetWindowLongPtrA(window_, kPosEditProc), GetWindowLongPtrA(edit_, GWLP_WNDPROC));
    EXPECT_EQ(GetWindowLongPtrA(window_, kPosHost), reinterpret_cast<LONG_PTR>(&test_host));
    EXPECT_EQ(word(kPosTabChars), 15);
    EXPECT_EQ(word(kPosLeftMargin), 0);
    EXPECT_EQ(word(kPosTopMargin), 75);
    EXPECT_EQ(word(kPosModified), 0);
    EXPECT_EQ(word(kPosExecute), 1);
    EXPECT_EQ(vltest::window_text(window_), "Script Window ");
    char cls[32] = {};
    GetClassNameA(window_, cls, sizeof cls);
    EXPECT_STREQ(cls, "VORLAN_SW");
    EXPECT_EQ(GetParent(window_), owner_);
    EXPECT_EQ(GetWindow(window_, GW_CHILD), edit_);
    EXPECT_EQ(GetWindow(edit_, GW_HWNDNEXT), nullptr);  // the only child
    // The control takes its border over from the window style and draws it.
    EXPECT_EQ((static_cast<uint32_t>(GetWindowLongA(edit_, GWL_STYLE)) | WS_BORDER) & 0xFFFF00FFu, 0x50B000C4u);
    EXPECT_EQ(KelText(nullptr, 0, 0, 30), SYSTEM_FIXED_FONT);
    EXPECT_EQ(reinterpret_cast<HFONT>(SendMessageA(edit_, WM_GETFONT, 0, 0)), GetStockObject(SYSTEM_FIXED_FONT));
}

TEST_F(ScriptWindowTest, CreatedHiddenAtItsPlace) {
    const auto other = reinterpret_cast<HWND>(KelText(owner_, 0, 0, 1));
    ASSERT_NE(other, nullptr);
    EXPECT_FALSE(IsWindowVisible(other));
    // The system adds WS_CLIPSIBLINGS to every top-level window.
    EXPECT_EQ(static_cast<uint32_t>(GetWindowLongA(other, GWL_STYLE)) & ~static_cast<uint32_t>(WS_CLIPSIBLINGS),
              0x80CC0000u);
    RECT r{};
    GetWindowRect(other, &r);
    EXPECT_EQ(r.left, 350);
    EXPECT_EQ(r.top, 250);
    EXPECT_EQ(r.right - r.left, 290);
    EXPECT_EQ(r.bottom - r.top, 220);
    // Font 0: the edit control keeps the system font.
    EXPECT_EQ(KelText(nullptr, 0, 0, 30), 0);
    EXPECT_EQ(SendMessageA(GetDlgItem(other, 4), WM_GETFONT, 0, 0), 0);
    EXPECT_EQ(GetWindowLongPtrA(other, kPosHost), 0);
    DestroyWindow(other);
}

TEST_F(ScriptWindowTest, CodesOutsideTheTable) {
    for (const uint32_t code : {4u, 13u, 15u, 19u, 21u, 29u, 31u, 1000u, 0xFFFFFFFFu})
        EXPECT_EQ(KelText(owner_, reinterpret_cast<intptr_t>(window_), 0, code), 0) << code;
    // Code 14 with no window or a dead one does nothing.
    const std::string before = text();
    EXPECT_EQ(KelText(nullptr, 0, reinterpret_cast<intptr_t>("lost"), 14), 0);
    const auto dead = reinterpret_cast<HWND>(KelText(owner_, 0, 0, 1));
    DestroyWindow(dead);
    EXPECT_EQ(KelText(nullptr, reinterpret_cast<intptr_t>(dead), reinterpret_cast<intptr_t>("lost"), 14), 0);
    EXPECT_EQ(text(), before);
}

// Codes that name a window leave windows of other classes alone, even one
// with room in its extra bytes and a child numbered 4.
TEST_F(ScriptWindowTest, OtherWindowsAreLeftAlone) {
    const HWND dialog =
        CreateWindowExA(0, "#32770", "other", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(dialog, nullptr);
    const HWND child = CreateWindowExA(0, "Edit", "child", WS_CHILD, 0, 0, 50, 20, dialog,
                                       reinterpret_cast<HMENU>(static_cast<INT_PTR>(4)), nullptr, nullptr);
    ASSERT_NE(child, nullptr);
    const LONG_PTR before = GetWindowLongPtrA(dialog, DWLP_MSGRESULT);
    for (const char* setting : {"E 0", "M L9", "T 60", "W caption", "N", "S out.txt", "O in.txt"})
        EXPECT_EQ(KelText(nullptr, reinterpret_cast<intptr_t>(dialog), reinterpret_cast<intptr_t>(setting), 2), 0);
    EXPECT_EQ(KelText(nullptr, reinterpret_cast<intptr_t>(dialog), reinterpret_cast<intptr_t>("more"), 14), 0);
    EXPECT_EQ(KelText(dialog, 5, 0, 20), 0);
    EXPECT_EQ(KelText(nullptr, 0, reinterpret_cast<intptr_t>("E 0"), 2), 0);
    EXPECT_EQ(vltest::window_text(dialog), "other");
    EXPECT_EQ(vltest::window_text(child), "child");
    EXPECT_EQ(GetWindowLongPtrA(dialog, DWLP_MSGRESULT), before);
    EXPECT_TRUE(log_.executed.empty());
    DestroyWindow(dialog);
}

TEST_F(ScriptWindowTest, AppendLandsAtTheEnd) {
    set_text("abc");
    caret(1);
    KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>("XY\r\n"), 14);
    EXPECT_EQ(text(), "abcXY\r\n");
    EXPECT_EQ(selection(), std::make_pair(7, 7));
    // The insertion can't be undone.
    EXPECT_EQ(SendMessageA(edit_, EM_CANUNDO, 0, 0), 0);
}

TEST_F(ScriptWindowTest, ModifiedMark) {
    EXPECT_EQ(word(kPosModified), 0);
    type("a");
    EXPECT_EQ(word(kPosModified), 1);
    KelText(window_, 0x10000, 0, 20);  // only the low 16 bits count
    EXPECT_EQ(word(kPosModified), 0);
    KelText(window_, 7, 0, 20);
    EXPECT_EQ(word(kPosModified), 7);
}

TEST_F(ScriptWindowTest, AcceleratorTable) {
    const auto table = reinterpret_cast<HACCEL>(KelText(nullptr, 0, 0, 0));
    ASSERT_NE(table, nullptr);
    ACCEL entries[16] = {};
    const int count = CopyAcceleratorTableA(table, entries, 16);
    struct Want {
        BYTE flags;
        WORD key, cmd;
    };
    const Want want[] = {
        {FVIRTKEY | FCONTROL, 'C', 512},     {FVIRTKEY | FCONTROL, 'V', 513},     {FVIRTKEY | FALT, VK_BACK, 510},
        {FVIRTKEY, VK_DELETE, 514},          {FVIRTKEY | FSHIFT, VK_DELETE, 511}, {FVIRTKEY | FCONTROL, VK_INSERT, 512},
        {FVIRTKEY | FSHIFT, VK_INSERT, 513}, {FVIRTKEY | FCONTROL, 'X', 511},     {FVIRTKEY | FCONTROL, 'Z', 510}};
    ASSERT_EQ(count, 9);
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(entries[i].fVirt & ~0x80, want[i].flags) << "entry " << i;
        EXPECT_EQ(entries[i].key, want[i].key) << "entry " << i;
        EXPECT_EQ(entries[i].cmd, want[i].cmd) << "entry " << i;
    }
    // The host's loop translates Ctrl+X into command 511 for the window.
    set_text("cut me");
    select(0, 4);
    BYTE keys[256] = {};
    GetKeyboardState(keys);
    keys[VK_CONTROL] = 0x80;
    SetKeyboardState(keys);
    MSG msg{edit_, WM_KEYDOWN, 'X', 0x002D0001, 0, {}};
    EXPECT_NE(TranslateAcceleratorA(window_, table, &msg), 0);
    keys[VK_CONTROL] = 0;
    SetKeyboardState(keys);
    EXPECT_EQ(text(), "me");
    EXPECT_EQ(KelText(nullptr, 0, 0, 3), 0);
}

TEST_F(ScriptWindowTest, MenuAsTabled) {
    const HMENU menu = GetMenu(window_);
    ASSERT_NE(menu, nullptr);
    auto label = [](HMENU m, UINT at) {
        char s[64] = {};
        GetMenuStringA(m, at, s, sizeof s, MF_BYPOSITION);
        return std::string(s);
    };
    ASSERT_EQ(GetMenuItemCount(menu), 3);
    EXPECT_EQ(label(menu, 0), "&File(Text)");
    EXPECT_EQ(label(menu, 1), "&Edit");
    EXPECT_EQ(label(menu, 2), "&Hide");
    EXPECT_EQ(GetMenuItemID(menu, 2), 509u);
    struct Item {
        int popup;
        UINT id;
        const char* text;
    };
    const Item items[] = {{0, 500, "&New"},
                          {0, 502, "&Open..."},
                          {0, 505, "&Save"},
                          {0, 506, "Save &As..."},
                          {0, 508, "&Print..."},
                          {1, 510, "&Undo\tCtrl+Z"},
                          {1, 0, ""},
                          {1, 511, "Cu&t\tCtrl+X"},
                          {1, 512, "&Copy\tCtrl+C"},
                          {1, 513, "&Paste\tCtrl+V"},
                          {1, 514, "&Delete\tDel"},
                          {1, 0, ""},
                          {1, 571, "&Script Execution"}};
    int place[2] = {0, 0};
    for (const Item& item : items) {
        const HMENU popup = GetSubMenu(menu, item.popup);
        const int at = place[item.popup]++;
        EXPECT_EQ(GetMenuItemID(popup, at), item.id) << item.text;
        EXPECT_EQ(label(popup, static_cast<UINT>(at)), item.text);
    }
    EXPECT_EQ(GetMenuItemCount(GetSubMenu(menu, 0)), place[0]);
    EXPECT_EQ(GetMenuItemCount(GetSubMenu(menu, 1)), place[1]);
}

TEST_F(ScriptWindowTest, EditCommands) {
    set_text("abcdef");
    select(0, 3);
    command(511);  // cut
    EXPECT_EQ(text(), "def");
    caret(3);
    command(513);  // paste
    EXPECT_EQ(text(), "defabc");
    select(0, 1);
    command(512);  // copy
    caret(6);
    command(513);
    EXPECT_EQ(text(), "defabcd");
    select(0, 3);
    command(514);  // delete
    EXPECT_EQ(text(), "abcd");
    command(510);  // undo
    EXPECT_EQ(text(), "defabcd");
    // The whole first value counts for the file commands; a high word
    // makes another command, which the edit commands read by the low word.
    select(0, 3);
    command(MAKEWPARAM(514, 1));
    EXPECT_EQ(text(), "abcd");
    command(12345);
    EXPECT_EQ(text(), "abcd");
}

TEST_F(ScriptWindowTest, HideKeepsTheWindow) {
    ShowWindow(window_, SW_SHOW);
    ASSERT_TRUE(IsWindowVisible(window_));
    command(509);
    EXPECT_FALSE(IsWindowVisible(window_));
    EXPECT_TRUE(IsWindow(window_));
}

TEST_F(ScriptWindowTest, SizeMovesTheEditControl) {
    MoveWindow(window_, 100, 100, 400, 300, TRUE);
    RECT client{}, edit{};
    GetClientRect(window_, &client);
    GetWindowRect(edit_, &edit);
    EXPECT_EQ(edit.right - edit.left, client.right);
    EXPECT_EQ(edit.bottom - edit.top, client.bottom);
}

TEST_F(ScriptWindowTest, MarginTabAndCaptionSettings) {
    auto setting = [this](const char* s) {
        EXPECT_EQ(KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>(s), 2), 0) << s;
    };
    setting("M L50");
    EXPECT_EQ(word(kPosLeftMargin), 50);
    EXPECT_EQ(word(kPosTopMargin), 75);
    setting("M 40");
    EXPECT_EQ(word(kPosLeftMargin), 50);
    EXPECT_EQ(word(kPosTopMargin), 40);
    setting("TC 30");
    EXPECT_EQ(word(kPosTabChars), 30);
    setting("T 60");
    EXPECT_NE(word(kPosTabChars), 0);
    setting("W \"Console two\"");
    EXPECT_EQ(vltest::window_text(window_), "Console two");
    setting("W");
    EXPECT_EQ(vltest::window_text(window_), "");
    setting("Q whatever");
    setting("");
    EXPECT_EQ(KelText(nullptr, reinterpret_cast<intptr_t>(window_), 0, 2), 0);
}

// A tab stop of 60 dialog units shows a tab 60 units wide: the text behind
// it starts where 8 columns of 7.5 units would.
TEST_F(ScriptWindowTest, TabStopMovesText) {
    auto x_of_second = [this](const char* setting) {
        KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>(setting), 2);
        set_text("\tX");
        const LRESULT pos = SendMessageA(edit_, EM_POSFROMCHAR, 1, 0);
        return static_cast<int>(static_cast<int16_t>(LOWORD(pos)));
    };
    const int narrow = x_of_second("T 16");
    const int wide = x_of_second("T 64");
    EXPECT_GT(wide, narrow);
}

TEST_F(ScriptWindowTest, CloseAsksAndGoesWhateverTheAnswer) {
    for (const int answer : {IDNO, IDYES}) {
        SCOPED_TRACE(answer == IDYES ? "Yes" : "No");
        if (!IsWindow(window_)) {
            window_ = reinterpret_cast<HWND>(KelText(owner_, 0, reinterpret_cast<intptr_t>(&test_host), 1));
            edit_ = GetDlgItem(window_, 4);
        }
        log_ = HostLog{};
        boxes_.seen.clear();
        boxes_.yes_no = answer;
        type("x");
        ASSERT_EQ(word(kPosModified), 1);
        SendMessageA(window_, WM_CLOSE, 0, 0);
        pump();
        ASSERT_EQ(boxes_.seen.size(), 1u);
        EXPECT_EQ(boxes_.seen[0].caption, "Script Window");
        EXPECT_EQ(boxes_.seen[0].text, "Save Changes? ");
        EXPECT_TRUE(boxes_.seen[0].question);
        EXPECT_FALSE(IsWindow(window_));
        EXPECT_EQ(log_.query_saves, 1);
        EXPECT_EQ(log_.closed, 1);
        // Yes with no file name hands the naming to the host's script.
        EXPECT_EQ(joined(log_.executed), answer == IDYES ? "Run.Section(File.VLX,ScriptSaveAs);" : "");
    }
}

TEST_F(ScriptWindowTest, HostThatTakesCareOfSavingGetsNoQuestion) {
    log_.query_answer = 1;
    type("x");
    SendMessageA(window_, WM_CLOSE, 0, 0);
    pump();
    EXPECT_TRUE(boxes_.seen.empty());
    EXPECT_EQ(log_.query_saves, 1);
    EXPECT_FALSE(IsWindow(window_));
}

TEST_F(ScriptWindowTest, OutOfRoomEmptiesTheText) {
    type("abc");
    SendMessageA(window_, WM_COMMAND, MAKEWPARAM(4, EN_ERRSPACE), reinterpret_cast<LPARAM>(edit_));
    ASSERT_EQ(boxes_.seen.size(), 1u);
    EXPECT_EQ(boxes_.seen[0].text, "Out of local memory");
    EXPECT_EQ(text(), "");
    EXPECT_EQ(word(kPosModified), 0);
}

// Without a callback the owner window gets the messages.
std::vector<std::pair<UINT, std::string>> owner_messages;
LRESULT CALLBACK owner_proc(HWND w, UINT m, WPARAM f, LPARAM s) {
    if (m == kExecute) {
        owner_messages.emplace_back(m, reinterpret_cast<const char*>(s));
        return 1;
    }
    if (m == kClosed || m == kQuerySave) owner_messages.emplace_back(m, "");
    return DefWindowProcA(w, m, f, s);
}

TEST(ScriptWindowOwner, MessagesGoToTheOwnerWithoutACallback) {
    WNDCLASSA wc{};
    wc.lpfnWndProc = owner_proc;
    wc.lpszClassName = "ScriptTestOwner";
    RegisterClassA(&wc);
    const HWND owner = CreateWindowExA(0, "ScriptTestOwner", "owner", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr,
                                       nullptr, nullptr, nullptr);
    ASSERT_NE(owner, nullptr);
    const auto window = reinterpret_cast<HWND>(KelText(owner, 0, 0, 1));
    ASSERT_NE(window, nullptr);
    const HWND edit = GetDlgItem(window, 4);
    owner_messages.clear();
    SetWindowTextA(edit, "go");
    SendMessageA(edit, EM_SETSEL, 2, 2);
    SendMessageA(edit, WM_KEYDOWN, VK_RETURN, 0x001C0001);
    SendMessageA(edit, WM_CHAR, '\r', 0x001C0001);
    ASSERT_EQ(owner_messages.size(), 1u);
    EXPECT_EQ(owner_messages[0].second, "go");
    // The owner answered 1: the command failed.
    EXPECT_EQ(vltest::window_text(edit), "go;\r\n#Command Error!\r\n");
    // No save question reaches the owner; with the mark cleared the window
    // goes unasked, and the owner hears of it.
    KelText(window, 0, 0, 20);
    SendMessageA(window, WM_CLOSE, 0, 0);
    ASSERT_EQ(owner_messages.size(), 2u);
    EXPECT_EQ(owner_messages[1].first, kClosed);
    DestroyWindow(owner);
}

}  // namespace
