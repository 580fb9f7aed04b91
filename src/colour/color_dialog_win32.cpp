// The Colour dialog on the window system: dialog 32002 with its list of
// colours, the name and number boxes, the sample and the system colour
// chooser.  The edits themselves are made on the working copy by
// color_editor.cpp; here they meet the list box and the edit boxes.
//
// Choices of this library where the dialog sets no rule:
//  - Delete of the only row left is refused with a beep, so that the list
//    always has a row to select; like a full Add, it still counts as an
//    edit.
//  - The name box gives a row at most 24 characters; the rest is cut.
//  - The 41st Add only beeps.
//  - With no row selected (a table emptied by the host before the dialog
//    opened) the steps that start from the selected row do nothing, the
//    chooser is not run and no sample is painted; Add makes the first row.

#include <windows.h>

#include <commdlg.h>

#include <array>
#include <cstddef>

#include "colour/colour.h"
#include "colour_ids.h"
#include "platform/platform.h"

namespace vl::colour {

// The chooser's record is handed to the system as its own.
static_assert(sizeof(ColorChooser) == sizeof(CHOOSECOLORA));
static_assert(offsetof(ColorChooser, owner) == offsetof(CHOOSECOLORA, hwndOwner));
static_assert(offsetof(ColorChooser, instance) == offsetof(CHOOSECOLORA, hInstance));
static_assert(offsetof(ColorChooser, result) == offsetof(CHOOSECOLORA, rgbResult));
static_assert(offsetof(ColorChooser, custom) == offsetof(CHOOSECOLORA, lpCustColors));
static_assert(offsetof(ColorChooser, flags) == offsetof(CHOOSECOLORA, Flags));
static_assert(offsetof(ColorChooser, custom_data) == offsetof(CHOOSECOLORA, lCustData));
static_assert(offsetof(ColorChooser, hook) == offsetof(CHOOSECOLORA, lpfnHook));
static_assert(offsetof(ColorChooser, template_name) == offsetof(CHOOSECOLORA, lpTemplateName));
static_assert(kChooserFullOpen == CC_FULLOPEN);
#ifndef _WIN64
static_assert(sizeof(ColorChooser) == 36);
#endif

// The ten steps of the dialog; `place` is the colour of steps 7 and 8.
void color_dialog_step(HWND dialog, uint32_t* place, int step);

namespace {

enum DialogStep : int {
    kStepLoad = 0,
    kStepFill = 1,
    kStepCommit = 2,
    kStepAdd = 3,
    kStepShow = 4,
    kStepRead = 5,
    kStepDelete = 6,
    kStepGet = 7,
    kStepSet = 8,
    kStepPaint = 9,
};

// The dialog's ends.
constexpr INT_PTR kEdited = 1, kUnchanged = 2;
// KELUTIL_Palette operations of the dialog.
constexpr uint32_t kPaletteSelect = VL_PALETTE_SELECT, kPaletteDefault = VL_PALETTE_SELECT_DEFAULT, kPaletteSetType = 4, kPaletteType = VL_PALETTE_TYPE, kPaletteColour = VL_PALETTE_DRAWING_COLOUR;
constexpr UINT kMessageBoxType = MB_YESNO | MB_ICONQUESTION | MB_TASKMODAL;  // 8228
static_assert(kMessageBoxType == 8228);
constexpr std::size_t kTextRoom = 120;

LRESULT to_list(HWND dialog, UINT message, WPARAM first = 0, LPARAM second = 0) {
    return SendDlgItemMessageA(dialog, IDC_COLOR_LIST, message, first, second);
}

int32_t selected_row(HWND dialog) { return static_cast<int32_t>(to_list(dialog, LB_GETCURSEL)); }

void select_row(HWND dialog, int32_t row) { to_list(dialog, LB_SETCURSEL, static_cast<WPARAM>(row)); }

void fill_list(HWND dialog) {
    to_list(dialog, LB_RESETCONTENT);
    for (int32_t i = 0; i < color_work.count; ++i)
        to_list(dialog, LB_ADDSTRING, 0,
                reinterpret_cast<LPARAM>(color_work.rows[static_cast<std::size_t>(i)].name.data()));
}

uint32_t box_number(HWND dialog, int id) { return GetDlgItemInt(dialog, id, nullptr, FALSE); }

void paint_sample(HWND dialog) {
    HWND sample = GetDlgItem(dialog, IDC_COLOR_SAMPLE);
    if (sample == nullptr) return;
    uint32_t rgb = 0;
    if (!work_rgb(selected_row(dialog), rgb)) return;
    HDC dc = GetDC(sample);
    if (dc == nullptr) return;
    HBRUSH brush =
        CreateSolidBrush(static_cast<COLORREF>(KELUTIL_Palette(nullptr, kPaletteColour, 0, static_cast<int32_t>(rgb))));
    RECT area{};
    GetClientRect(sample, &area);
    KELUTIL_Palette(dc, kPaletteSelect, 0, 0);
    if (brush) {
        SelectObject(dc, brush);
        Rectangle(dc, area.left, area.top, area.right, area.bottom);
    }
    KELUTIL_Palette(dc, kPaletteDefault, 0, 0);
    SelectObject(dc, GetStockObject(HOLLOW_BRUSH));
    if (brush) DeleteObject(brush);
    ReleaseDC(sample, dc);
}

void show_row(HWND dialog) {
    const int32_t row = selected_row(dialog);
    if (!has_work_row(row)) return;
    const color_entry& entry = color_work.rows[static_cast<std::size_t>(row)];
    SetDlgItemTextA(dialog, IDC_COLOR_NAME, entry.name.data());
    SetDlgItemInt(dialog, IDC_COLOR_RED, entry.rgb & 0xFF, FALSE);
    SetDlgItemInt(dialog, IDC_COLOR_GREEN, entry.rgb >> 8 & 0xFF, FALSE);
    SetDlgItemInt(dialog, IDC_COLOR_BLUE, entry.rgb >> 16 & 0xFF, FALSE);
    paint_sample(dialog);
}

void read_row(HWND dialog) {
    const int32_t row = selected_row(dialog);
    if (!has_work_row(row)) return;
    // Room for the characters a row takes from the box and the terminator:
    // the system cuts a longer name itself.
    std::array<char, kDialogNameChars + 1> name{};
    GetDlgItemTextA(dialog, IDC_COLOR_NAME, name.data(), static_cast<int>(name.size()));
    update_work_row(row, name.data(), box_number(dialog, IDC_COLOR_RED), box_number(dialog, IDC_COLOR_GREEN),
                    box_number(dialog, IDC_COLOR_BLUE));
    fill_list(dialog);
    select_row(dialog, row);
}

void add_row(HWND dialog) {
    const int32_t row = add_work_row();
    if (row == kNoRow) {
        MessageBeep(0);
        return;
    }
    to_list(dialog, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(""));
    select_row(dialog, row);
    read_row(dialog);
}

void delete_row(HWND dialog) {
    if (!delete_work_row(selected_row(dialog))) {
        MessageBeep(0);
        return;
    }
    fill_list(dialog);
    select_row(dialog, 0);
    show_row(dialog);
}

// The system colour chooser on `colour`: 1 and the choice written back, or
// 2 and `colour` as it was.
int run_chooser(uint32_t& colour) {
    color_chooser.result = colour;
    if (!ChooseColorA(reinterpret_cast<CHOOSECOLORA*>(&color_chooser))) return 2;
    colour = color_chooser.result;
    return 1;
}

void open(HWND dialog) {
    reset_chooser(dialog);
    color_dialog_step(dialog, nullptr, kStepLoad);
    color_dialog_step(dialog, nullptr, kStepFill);
    select_row(dialog, 0);
    color_dialog_step(dialog, nullptr, kStepShow);
    const int type = static_cast<int>(KELUTIL_Palette(nullptr, kPaletteType, 0, 0));
    CheckRadioButton(dialog, IDC_COLOR_TYPE_DEFAULT, IDC_COLOR_TYPE_MONO, IDC_COLOR_TYPE_DEFAULT + type);
    color_modified = 0;
}

void confirm(HWND dialog) {
    const uint32_t type = IsDlgButtonChecked(dialog, IDC_COLOR_TYPE_DEFAULT) == BST_CHECKED ? 0
                          : IsDlgButtonChecked(dialog, IDC_COLOR_TYPE_PURE) == BST_CHECKED  ? 1
                                                                                            : 2;
    KELUTIL_Palette(nullptr, kPaletteSetType, type, 0);
    if (!color_modified) {
        EndDialog(dialog, kUnchanged);
        return;
    }
    color_dialog_step(dialog, nullptr, kStepRead);
    color_dialog_step(dialog, nullptr, kStepCommit);
    EndDialog(dialog, kEdited);
}

// A colour picked in the chooser lands in the row but is no edit of its
// own: only Update, Add or Delete make OK keep it.
void edit_colour(HWND dialog) {
    color_dialog_step(dialog, nullptr, kStepRead);
    if (!has_work_row(selected_row(dialog))) return;
    uint32_t colour = 0;
    color_dialog_step(dialog, &colour, kStepGet);
    if (run_chooser(colour) != 1) return;
    color_dialog_step(dialog, &colour, kStepSet);
    color_dialog_step(dialog, nullptr, kStepShow);
}

void command(HWND dialog, WORD id, WORD notification) {
    switch (id) {
        case IDOK: confirm(dialog); break;
        case IDCANCEL: EndDialog(dialog, kUnchanged); break;
        case IDC_COLOR_LIST:
            if (notification == LBN_SELCHANGE || notification == LBN_DBLCLK)
                color_dialog_step(dialog, nullptr, kStepShow);
            break;
        case IDC_COLOR_EDIT: edit_colour(dialog); break;
        case IDC_COLOR_UPDATE:
            color_dialog_step(dialog, nullptr, kStepRead);
            color_modified = 1;
            break;
        case IDC_COLOR_ADD:
            color_dialog_step(dialog, nullptr, kStepAdd);
            color_modified = 1;
            break;
        case IDC_COLOR_DELETE:
            color_dialog_step(dialog, nullptr, kStepDelete);
            color_modified = 1;
            break;
        default: break;  // 0, the radio buttons and anything past 113
    }
}

}  // namespace

void color_dialog_step(HWND dialog, uint32_t* place, int step) {
    switch (step) {
        case kStepLoad: load_work(); break;
        case kStepFill: fill_list(dialog); break;
        case kStepCommit: commit_work(); break;
        case kStepAdd: add_row(dialog); break;
        case kStepShow: show_row(dialog); break;
        case kStepRead: read_row(dialog); break;
        case kStepDelete: delete_row(dialog); break;
        case kStepGet:
            if (place) work_rgb(selected_row(dialog), *place);
            break;
        case kStepSet:
            if (place) set_work_rgb(selected_row(dialog), *place);
            break;
        case kStepPaint: paint_sample(dialog); break;
        default: break;
    }
}

namespace dialog {

intptr_t run(void* owner) noexcept {
    return DialogBoxParamA(reinterpret_cast<HINSTANCE>(platform::module_handle()), MAKEINTRESOURCEA(IDD_COLOR),
                           static_cast<HWND>(owner), myColorDlg, 0);
}

bool ask_to_save() noexcept {
    std::array<char, kTextRoom> title{}, text{};
    platform::load_string(IDS_COLOR_SAVE_TITLE, title);
    platform::load_string(IDS_COLOR_SAVE_TEXT, text);
    return MessageBoxA(nullptr, text.data(), title.data(), kMessageBoxType) == IDYES;
}

}  // namespace dialog
}  // namespace vl::colour

using namespace vl::colour;

extern "C" INT_PTR VLAPI myColorDlg(HWND dialog, UINT message, WPARAM first, LPARAM /*second*/) noexcept {
    switch (message) {
        case WM_PAINT: {
            // The dialog does not clip its children, so its background,
            // erased while it paints, would cover the sample: the dialog
            // paints first and the sample comes on top.
            PAINTSTRUCT paint;
            if (BeginPaint(dialog, &paint)) EndPaint(dialog, &paint);
            color_dialog_step(dialog, nullptr, kStepPaint);
            return 0;
        }
        case WM_INITDIALOG: open(dialog); return 1;
        case WM_COMMAND: command(dialog, LOWORD(first), HIWORD(first)); return 1;
        default: return 0;
    }
}
