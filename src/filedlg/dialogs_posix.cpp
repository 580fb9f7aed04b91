// Natively there is no window system: every file dialog fails at once, as
// the platform's dialog does when it can't be shown, and nothing that a
// dialog would leave for the next one changes.

#include "filedlg/dialogs.h"

namespace vl::filedlg {

bool RunFileDialog(VL_HWND, DialogView&, DialogChoice&) noexcept { return false; }

}  // namespace vl::filedlg
