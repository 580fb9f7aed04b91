// Fitting the name in a file dialog to the type chosen in it.

#include <windows.h>

#include <array>
#include <cstring>

#include "filedlg/filedlg.h"

namespace vl::filedlg {
namespace {

constexpr int kTypeCombo = 1136;
constexpr int kNameEdit = 1152;
constexpr WORD kNameChars = 265;

}  // namespace

void FileTypeApplyToName(VL_HWND dialog, bool replace) noexcept {
    // 1. The chosen type; none chosen, no change.
    const LRESULT selection = SendDlgItemMessageA(dialog, kTypeCombo, CB_GETCURSEL, 0, 0);
    if (LOWORD(selection) == 65535) return;
    // The name is read here, before the type's extension is looked at, since
    // reading it changes nothing; the steps that follow keep their order.
    std::array<char, kNameRoom> name{};
    std::memcpy(name.data(), &kNameChars, sizeof kNameChars);
    const LRESULT got = SendDlgItemMessageA(dialog, kNameEdit, EM_GETLINE, 0, reinterpret_cast<LPARAM>(name.data()));
    name[static_cast<std::size_t>(got > 0 && got <= kNameChars ? got : 0)] = '\0';
    // 2. to 6.
    if (!FitNameToType(static_cast<int32_t>(LOWORD(selection)), name, replace)) return;
    // 7. The fitted name goes back, not counted as the user's edit.
    SendDlgItemMessageA(dialog, kNameEdit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.data()));
    SendDlgItemMessageA(dialog, kNameEdit, EM_SETMODIFY, 0, 0);
}

}  // namespace vl::filedlg
