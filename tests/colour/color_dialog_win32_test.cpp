// The Colour dialog for real: dialog 32002 from the library's resources,
// run by KELUTIL_Color operation 2 and driven through its list, boxes and
// buttons, the system colour chooser and the question after it; the
// table, the settings file and the palette read back afterwards, and the
// sample checked pixel by pixel.

#include <windows.h>

#include <gtest/gtest-spi.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "colour/colour_support.h"
#include "data/data_support.h"
#include "win32_support.h"

namespace {

using namespace vltest;
using namespace vltest::colour_op;

constexpr int kList = 103, kName = 101, kRed = 115, kGreen = 116, kBlue = 117, kEditColour = 110, kUpdate = 111,
              kAdd = 112, kDelete = 113, kSample = 150, kTypeDefault = 32004, kTypePure = 32005, kTypeMono = 32006;
// The red, green and blue boxes of the system colour chooser.
constexpr int kChooserRed = 706, kChooserGreen = 707, kChooserBlue = 708;
constexpr const char* kQuestion = "Do you want to save the color settings for future usage?";

HMODULE library() { return GetModuleHandleA("VLCORE.dll"); }

// ---- The template ---------------------------------------------------------------

TEST(ColourDialogTemplate, IsDialog32002ControlByControl) {
    expect_dialog_template(library(), 32002, "colour/color_dialog_template.tsv");
}

// ---- Driving the dialog ---------------------------------------------------------

// The [section] of a settings file as "key=value" lines apart by '|'.
std::string section_listing(const std::string& text, const std::string& section) {
    std::istringstream in(text);
    std::string out;
    bool inside = false;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.starts_with('[')) {
            inside = line == "[" + section + "]";
        } else if (inside && !line.empty()) {
            out += (out.empty() ? "" : "|") + line;
        }
    }
    return out;
}

std::vector<uint32_t> palette_colours(std::size_t count) {
    const auto palette = reinterpret_cast<HPALETTE>(KELUTIL_Palette(nullptr, 12, 0, 0));
    std::vector<PALETTEENTRY> entries(count);
    EXPECT_EQ(GetPaletteEntries(palette, 0, static_cast<UINT>(count), entries.data()), count);
    std::vector<uint32_t> out;
    for (const auto& e : entries) out.push_back(rgb_of(e.peRed, e.peGreen, e.peBlue));
    return out;
}

std::vector<uint32_t> table_colours() {
    std::vector<uint32_t> out;
    for (const auto& row : current_colours()) out.push_back(row.rgb);
    return out;
}

class ColourDialog : public ColourTable {
  protected:
    static constexpr const char* kSettings = "[Color List]\nOld=1 2 3\n[Other]\nkeep=yes\n";

    void SetUp() override {
        ColourTable::SetUp();
        KELUTIL_Palette(nullptr, 1, 0, 0);
        KELUTIL_Palette(nullptr, 0, 0, 0);
        owner_ = CreateWindowExA(0, "STATIC", "host", WS_OVERLAPPEDWINDOW, 0, 0, 640, 480, nullptr, nullptr,
                                 GetModuleHandleA(nullptr), nullptr);
        ASSERT_NE(owner_, nullptr);
    }
    void TearDown() override {
        DestroyWindow(owner_);
        ColourTable::TearDown();
    }

    // KELUTIL_Color operation 2 on `file` while the driver plays.
    void edit(DialogDriver& driver, const ScratchFile& file) {
        int32_t result = -1;
        driver.run([&] { result = colour(kEdit, 0, text_arg(file.path()), owner_); });
        EXPECT_EQ(result, 0);
    }

    // ---- Steps of a driver --------------------------------------------------------
    void opens(DialogDriver& d) {
        d.then("the dialog opens", [this] {
            dialog_ = nullptr;
            for (HWND h : thread_dialogs())
                if (GetDlgItem(h, kSample) && GetDlgItem(h, kTypeDefault)) dialog_ = h;
            return dialog_ != nullptr;
        });
    }
    void select(DialogDriver& d, int row) {
        d.then("select row " + std::to_string(row), [this, row] {
            HWND list = GetDlgItem(dialog_, kList);
            EXPECT_NE(SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(row), 0), LB_ERR) << row;
            SendMessageA(dialog_, WM_COMMAND, MAKEWPARAM(kList, LBN_SELCHANGE), reinterpret_cast<LPARAM>(list));
            return true;
        });
    }
    void type(DialogDriver& d, int id, std::string text) {
        d.then("type \"" + text + "\" into " + std::to_string(id), [this, id, text] {
            EXPECT_TRUE(SetDlgItemTextA(dialog_, id, text.c_str()));
            return true;
        });
    }
    void type_row(DialogDriver& d, const std::string& name, const char* red, const char* green, const char* blue) {
        type(d, kName, name);
        type(d, kRed, red);
        type(d, kGreen, green);
        type(d, kBlue, blue);
    }
    void click(DialogDriver& d, int id, const std::string& label) {
        d.then("press " + label, [this, id] {
            HWND button = GetDlgItem(dialog_, id);
            EXPECT_NE(button, nullptr);
            SendMessageA(button, BM_CLICK, 0, 0);
            return true;
        });
    }
    void check(DialogDriver& d, const std::string& label, std::function<void()> checks) {
        d.then("check " + label, [checks] {
            checks();
            return true;
        });
    }
    // The question after OK: waits for it, checks it and answers.
    void answer(DialogDriver& d, bool yes) {
        d.then(std::string("answer ") + (yes ? "Yes" : "No"), [this, yes] {
            HWND box = nullptr;
            for (HWND h : thread_dialogs())
                if (window_text(h) == "Warning") box = h;
            if (box == nullptr) return false;
            EXPECT_NE(child_texts(box).find(kQuestion), std::string::npos) << child_texts(box);
            EXPECT_NE(GetDlgItem(box, IDYES), nullptr);
            EXPECT_NE(GetDlgItem(box, IDNO), nullptr);
            EXPECT_EQ(GetDlgItem(box, IDCANCEL), nullptr) << "Yes and No only";
            EXPECT_EQ(GetWindow(box, GW_OWNER), nullptr) << "no owner";
            EXPECT_FALSE(IsWindowEnabled(owner_)) << "task modal: the host's windows wait";
            constexpr int kIcon = 1088;  // the message box's icon control
            EXPECT_EQ(SendDlgItemMessageA(box, kIcon, STM_GETICON, 0, 0),
                      reinterpret_cast<LRESULT>(LoadIconA(nullptr, reinterpret_cast<LPCSTR>(IDI_QUESTION))))
                << "the question icon";
            SendMessageA(GetDlgItem(box, yes ? IDYES : IDNO), BM_CLICK, 0, 0);
            return true;
        });
    }
    // The system colour chooser over the dialog: waits for it, types the
    // colour and presses OK, or Cancel.
    void choose(DialogDriver& d, uint32_t rgb, bool ok) {
        d.then(std::string("choose a colour and press ") + (ok ? "OK" : "Cancel"), [this, rgb, ok] {
            HWND chooser = nullptr;
            for (HWND h : thread_dialogs())
                if (h != dialog_ && GetWindow(h, GW_OWNER) == dialog_) chooser = h;
            if (chooser == nullptr) return false;
            EXPECT_TRUE(IsWindowVisible(GetDlgItem(chooser, kChooserRed))) << "the full chooser";
            SetDlgItemInt(chooser, kChooserRed, rgb & 0xFF, FALSE);
            SetDlgItemInt(chooser, kChooserGreen, rgb >> 8 & 0xFF, FALSE);
            SetDlgItemInt(chooser, kChooserBlue, rgb >> 16 & 0xFF, FALSE);
            SendMessageA(GetDlgItem(chooser, ok ? IDOK : IDCANCEL), BM_CLICK, 0, 0);
            return true;
        });
    }

    // ---- What the dialog shows ----------------------------------------------------
    std::string box(int id) const {
        char text[64] = {};
        GetDlgItemTextA(dialog_, id, text, sizeof text);
        return text;
    }
    std::string boxes() const { return box(kName) + "|" + box(kRed) + "|" + box(kGreen) + "|" + box(kBlue); }
    std::vector<std::string> items() const {
        std::vector<std::string> out;
        const auto n = SendDlgItemMessageA(dialog_, kList, LB_GETCOUNT, 0, 0);
        for (LRESULT i = 0; i < n; ++i) {
            char text[64] = {};
            SendDlgItemMessageA(dialog_, kList, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
            out.push_back(text);
        }
        return out;
    }
    LRESULT selection() const { return SendDlgItemMessageA(dialog_, kList, LB_GETCURSEL, 0, 0); }
    // The sample's pixels at its centre and just inside its outline, after
    // the paint the system still owed the dialog.
    std::array<uint32_t, 2> sample_pixels() const {
        UpdateWindow(dialog_);
        HWND sample = GetDlgItem(dialog_, kSample);
        RECT r{};
        GetClientRect(sample, &r);
        HDC dc = GetDC(sample);
        const std::array<uint32_t, 2> out = {GetPixel(dc, r.right / 2, r.bottom / 2), GetPixel(dc, 2, 2)};
        ReleaseDC(sample, dc);
        return out;
    }
    void sample_is(uint32_t rgb) const {
        const auto pixels = sample_pixels();
        EXPECT_EQ(pixels[0], rgb) << "centre";
        EXPECT_EQ(pixels[1], rgb) << "inside the outline";
    }
    static std::string names(const std::vector<ColourRow>& rows) {
        std::string out;
        for (const auto& r : rows) out += r.name + "|";
        return out;
    }
    std::string item_names() const {
        std::string out;
        for (const auto& s : items()) out += s + "|";
        return out;
    }

    HWND owner_ = nullptr;
    HWND dialog_ = nullptr;
};

TEST_F(ColourDialog, OpensOnTheTableAndShowsEveryRow) {
    ScratchFile file("dialog.ini", kSettings);
    DialogDriver d;
    opens(d);
    check(d, "the opening", [this] {
        EXPECT_EQ(window_text(dialog_), "Color");
        EXPECT_EQ(GetWindow(dialog_, GW_OWNER), owner_) << "modal over the host's window";
        EXPECT_FALSE(IsWindowEnabled(owner_)) << "modal";
        EXPECT_EQ(item_names(), names(builtin_colours())) << "the rows in table order";
        EXPECT_EQ(selection(), 0);
        EXPECT_EQ(boxes(), "Black|0|0|0");
        sample_is(0x000000);
        EXPECT_EQ(IsDlgButtonChecked(dialog_, kTypeDefault), BST_CHECKED);
        EXPECT_EQ(IsDlgButtonChecked(dialog_, kTypePure), BST_UNCHECKED);
        EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog_, kTypeMono)));
    });
    const auto rows = builtin_colours();
    for (int i = static_cast<int>(rows.size()) - 1; i >= 0; --i) {
        select(d, i);
        check(d, "row " + rows[static_cast<std::size_t>(i)].name, [this, row = rows[static_cast<std::size_t>(i)]] {
            EXPECT_EQ(boxes(), row.name + "|" + std::to_string(row.rgb & 0xFF) + "|" +
                                   std::to_string(row.rgb >> 8 & 0xFF) + "|" + std::to_string(row.rgb >> 16 & 0xFF));
            sample_is(row.rgb);
        });
    }
    click(d, IDCANCEL, "Cancel");
    edit(d, file);
    EXPECT_EQ(listing(current_colours()), listing(builtin_colours()));
    EXPECT_EQ(file.read(), kSettings) << "nothing saved";
    EXPECT_TRUE(IsWindowEnabled(owner_));
}

// Update keeps 24 characters of the name and 8 bits of each number; OK
// asks, and only Yes writes the file and brings the palette along.
TEST_F(ColourDialog, UpdateThenOkAsksAndEitherAnswerKeepsTheEdit) {
    const std::string long_name = "Very Long Colour Name 30 chars";
    ASSERT_EQ(long_name.size(), 30u);
    const std::string kept = long_name.substr(0, 24);
    for (const bool yes : {true, false}) {
        SCOPED_TRACE(yes ? "answer Yes" : "answer No");
        reset_colour_table();
        KELUTIL_Palette(nullptr, 6, 0, 0);
        ScratchFile file("dialog.ini", kSettings);
        DialogDriver d;
        opens(d);
        select(d, 1);
        type_row(d, long_name, "300", "5", "x");
        click(d, kUpdate, "Update");
        check(d, "the updated list", [this, kept] {
            EXPECT_EQ(items().at(1), kept);
            EXPECT_EQ(items().size(), 24u);
            EXPECT_EQ(selection(), 1) << "the same row again";
        });
        select(d, 2);
        select(d, 1);
        check(d, "the row shown again", [this, kept] {
            EXPECT_EQ(boxes(), kept + "|44|5|0");
            sample_is(0x00052C);
        });
        click(d, IDOK, "OK");
        answer(d, yes);
        edit(d, file);

        std::vector<ColourRow> want = builtin_colours();
        want[1] = {kept, 0x00052C};
        EXPECT_EQ(listing(current_colours()), listing(want)) << "the table takes the edit";
        if (yes) {
            EXPECT_EQ(section_listing(file.read(), "Color List"), listing(want)) << file.read();
            EXPECT_EQ(section_listing(file.read(), "Other"), "keep=yes");
            EXPECT_EQ(palette_colours(24), table_colours()) << "the palette follows";
        } else {
            EXPECT_EQ(file.read(), kSettings) << "nothing saved";
            EXPECT_EQ(palette_colours(2)[1], 0x0000FFu) << "the palette keeps the old red";
        }
    }
}

TEST_F(ColourDialog, AddAppendsTheBoxesUpToFortyRows) {
    ScratchFile file("dialog.ini", kSettings);
    DialogDriver d;
    opens(d);
    std::vector<ColourRow> want = builtin_colours();
    for (int row = 24; row <= 40; ++row) {
        const std::string name = "Extra " + std::to_string(row);
        const uint32_t rgb = rgb_of(static_cast<unsigned>(row), static_cast<unsigned>(2 * row), 7);
        type_row(d, name, std::to_string(row).c_str(), std::to_string(2 * row).c_str(), "7");
        click(d, kAdd, "Add " + name);
        if (row < 40) {
            want.push_back({name, rgb});
            check(d, "the new row " + name, [this, row, name, rgb] {
                EXPECT_EQ(static_cast<int>(items().size()), row + 1);
                EXPECT_EQ(items().back(), name);
                EXPECT_EQ(selection(), row) << "the new row stays selected";
                // Add paints nothing itself; the next paint of the dialog
                // shows the new row.
                InvalidateRect(dialog_, nullptr, TRUE);
                sample_is(rgb);
            });
        } else {
            check(d, "the 41st Add", [this] {
                EXPECT_EQ(items().size(), 40u) << "a full table only beeps";
                EXPECT_EQ(items().back(), "Extra 39");
                EXPECT_EQ(selection(), 39);
            });
            // OK reads the boxes into the selected row before the table
            // takes the rows.
            want.back() = {name, rgb};
        }
    }
    click(d, IDOK, "OK");
    answer(d, true);
    edit(d, file);
    EXPECT_EQ(colour(kCount), 40);
    EXPECT_EQ(listing(current_colours()), listing(want));
    EXPECT_EQ(section_listing(file.read(), "Color List"), listing(want));
    EXPECT_EQ(palette_colours(40), table_colours());
}

TEST_F(ColourDialog, ARefusedAddStillCountsAsAnEdit) {
    colour(kSetCount, 0, 40);
    ScratchFile file("dialog.ini", kSettings);
    DialogDriver d;
    opens(d);
    click(d, kAdd, "Add");
    check(d, "the list", [this] { EXPECT_EQ(items().size(), 40u); });
    click(d, IDOK, "OK");
    answer(d, false);
    edit(d, file);
    EXPECT_EQ(colour(kCount), 40);
}

// The colour type is offered but cannot be changed: OK hands the choice to
// the palette, which keeps the default colours.
TEST_F(ColourDialog, TheColourTypeStaysDefault) {
    ScratchFile file("dialog.ini", kSettings);
    DialogDriver d;
    opens(d);
    click(d, kTypePure, "Pure Color");
    check(d, "the choice", [this] {
        EXPECT_EQ(IsDlgButtonChecked(dialog_, kTypePure), BST_CHECKED);
        EXPECT_EQ(IsDlgButtonChecked(dialog_, kTypeDefault), BST_UNCHECKED);
    });
    click(d, kUpdate, "Update");
    click(d, IDOK, "OK");
    answer(d, true);
    edit(d, file);
    EXPECT_EQ(KELUTIL_Palette(nullptr, 5, 0, 0), 0);
    EXPECT_EQ(KELUTIL_Palette(nullptr, 10, 0, 0x123456), 0x123456);
}

TEST_F(ColourDialog, DeleteSelectsTheFirstRow) {
    ScratchFile file("dialog.ini", kSettings);
    DialogDriver d;
    opens(d);
    select(d, 5);
    click(d, kDelete, "Delete");
    check(d, "the list after Delete", [this] {
        EXPECT_EQ(items().size(), 23u);
        EXPECT_EQ(items().at(5), "Yellow") << "the row after the old row 5";
        EXPECT_EQ(selection(), 0);
        EXPECT_EQ(boxes(), "Black|0|0|0");
        sample_is(0x000000);
    });
    click(d, IDOK, "OK");
    answer(d, false);
    edit(d, file);
    std::vector<ColourRow> want = builtin_colours();
    want.erase(want.begin() + 5);
    EXPECT_EQ(listing(current_colours()), listing(want));
    EXPECT_EQ(file.read(), kSettings);
}

TEST_F(ColourDialog, DeleteKeepsTheOnlyRowLeft) {
    colour(kSetCount, 0, 2);
    ScratchFile file("dialog.ini", kSettings);
    DialogDriver d;
    opens(d);
    click(d, kDelete, "Delete of Black");
    check(d, "one row left", [this] { EXPECT_EQ(item_names(), "Red|"); });
    click(d, kDelete, "Delete of the only row");
    check(d, "the row stays", [this] {
        EXPECT_EQ(item_names(), "Red|");
        EXPECT_EQ(selection(), 0);
        EXPECT_EQ(boxes(), "Red|255|0|0");
        sample_is(0x0000FF);
    });
    click(d, IDOK, "OK");
    answer(d, true);
    edit(d, file);
    EXPECT_EQ(listing(current_colours()), "Red=255 0 0");
    EXPECT_EQ(section_listing(file.read(), "Color List"), "Red=255 0 0");
}

// A table the host emptied opens with no row: the steps that need one do
// nothing, and Add makes the first.
TEST_F(ColourDialog, AnEmptyTableOpensWithoutARow) {
    colour(kSetCount, 0, 0);
    ScratchFile file("dialog.ini", kSettings);
    DialogDriver d;
    opens(d);
    check(d, "no row", [this] {
        EXPECT_TRUE(items().empty());
        EXPECT_EQ(selection(), LB_ERR);
        EXPECT_EQ(boxes(), "|||");
    });
    click(d, kDelete, "Delete");
    click(d, kEditColour, "Edit Color...");
    check(d, "no chooser", [this] {
        EXPECT_EQ(thread_dialogs().size(), 1u);
        EXPECT_TRUE(items().empty());
    });
    type_row(d, "First", "1", "2", "3");
    click(d, kAdd, "Add");
    check(d, "the first row", [this] {
        EXPECT_EQ(item_names(), "First|");
        EXPECT_EQ(selection(), 0);
    });
    click(d, IDOK, "OK");
    answer(d, true);
    edit(d, file);
    EXPECT_EQ(listing(current_colours()), "First=1 2 3");
    EXPECT_EQ(section_listing(file.read(), "Color List"), "First=1 2 3");
}

// A colour from the chooser is shown at once, but only an Update, Add or
// Delete makes OK keep it.
TEST_F(ColourDialog, EditColorAloneIsDropped) {
    ScratchFile file("dialog.ini", kSettings);
    DialogDriver d;
    opens(d);
    select(d, 2);
    click(d, kEditColour, "Edit Color...");
    choose(d, 0x1E140A, true);
    check(d, "the chosen colour", [this] {
        EXPECT_EQ(boxes(), "Green|10|20|30");
        sample_is(0x1E140A);
    });
    click(d, IDOK, "OK");
    edit(d, file);
    EXPECT_EQ(listing(current_colours()), listing(builtin_colours()));
    EXPECT_EQ(file.read(), kSettings);
}

TEST_F(ColourDialog, EditColorThenUpdateIsKept) {
    ScratchFile file("dialog.ini", kSettings);
    DialogDriver d;
    opens(d);
    select(d, 2);
    type(d, kName, "Moss");  // Edit Color reads the boxes first
    click(d, kEditColour, "Edit Color...");
    choose(d, 0x1E140A, true);
    click(d, kUpdate, "Update");
    click(d, IDOK, "OK");
    answer(d, true);
    edit(d, file);
    std::vector<ColourRow> want = builtin_colours();
    want[2] = {"Moss", 0x1E140A};
    EXPECT_EQ(listing(current_colours()), listing(want));
    EXPECT_EQ(section_listing(file.read(), "Color List"), listing(want));
    EXPECT_EQ(palette_colours(3)[2], 0x1E140Au);
}

TEST_F(ColourDialog, ACancelledChooserChangesNothing) {
    ScratchFile file("dialog.ini", kSettings);
    DialogDriver d;
    opens(d);
    select(d, 3);
    click(d, kEditColour, "Edit Color...");
    choose(d, 0x636363, false);
    check(d, "the colour as it was", [this] {
        EXPECT_EQ(boxes(), "Blue|0|0|255");
        sample_is(0xFF0000);
    });
    click(d, IDCANCEL, "Cancel");
    edit(d, file);
    EXPECT_EQ(listing(current_colours()), listing(builtin_colours()));
}

TEST_F(ColourDialog, CancelAfterUpdateLeavesTheTable) {
    ScratchFile file("dialog.ini", kSettings);
    DialogDriver d;
    opens(d);
    type_row(d, "Soot", "1", "1", "1");
    click(d, kUpdate, "Update");
    click(d, IDCANCEL, "Cancel");
    edit(d, file);
    EXPECT_EQ(listing(current_colours()), listing(builtin_colours()));
    EXPECT_EQ(file.read(), kSettings);
}

// The dialog procedure on its own: the dialog ends with 1 only after an
// edit, whatever the boxes hold.
TEST_F(ColourDialog, EndsWithOneOnlyAfterAnEdit) {
    struct Case {
        const char* label;
        int button;  // pressed before OK; 0 for none
        INT_PTR result;
    };
    for (const Case& c : {Case{"OK alone", 0, 2}, Case{"Update, OK", kUpdate, 1}, Case{"Add, OK", kAdd, 1},
                          Case{"Delete, OK", kDelete, 1}, Case{"Cancel", IDCANCEL, 2}}) {
        SCOPED_TRACE(c.label);
        reset_colour_table();
        DialogDriver d;
        opens(d);
        type(d, kName, "Changed");
        if (c.button) click(d, c.button, c.label);
        if (c.button != IDCANCEL) click(d, IDOK, "OK");
        INT_PTR result = -1;
        d.run([&] { result = DialogBoxParamA(library(), MAKEINTRESOURCEA(32002), owner_, myColorDlg, 0); });
        EXPECT_EQ(result, c.result);
        const bool changed = listing(current_colours()) != listing(builtin_colours());
        EXPECT_EQ(changed, c.result == 1) << "the table changes only at an OK after an edit";
    }
}

}  // namespace

namespace {

// A dialog that never gets what the driver waits for is closed by the
// watchdog, and the run fails instead of hanging.
HWND watchdog_owner = nullptr;
INT_PTR watchdog_result = 0;

void run_into_the_watchdog() {
    vltest::DialogDriver d(1000);
    d.then("wait for a window that never comes", [] { return false; });
    d.run([] { watchdog_result = DialogBoxParamA(library(), MAKEINTRESOURCEA(32002), watchdog_owner, myColorDlg, 0); });
}

TEST_F(ColourDialog, AStuckDialogFailsAndIsClosed) {
    watchdog_owner = owner_;
    watchdog_result = 0;
    EXPECT_NONFATAL_FAILURE(run_into_the_watchdog(), "watchdog: the dialogs were closed at the step \"wait for");
    EXPECT_EQ(watchdog_result, 2) << "closed as cancelled";
    EXPECT_TRUE(vltest::thread_dialogs().empty());
}

}  // namespace
