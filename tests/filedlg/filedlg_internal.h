// The file dialogs' process-wide state set back to a fresh start, for the
// tests that reach inside.
#pragma once

#include "filedlg/filedlg_state.h"
#include "frame/frame.h"
#include "vlcore.h"

namespace filedlg_test {

inline void reset_dialog_state() {
    using namespace vl::filedlg;
    KELUTIL_PathControl(3, nullptr, nullptr, 0);
    file_type_table = FileTypeTable{};
    szCurrentDir.fill('\0');
    szLastExt.fill('\0');
    bPresetActive = bExtPreset = false;
    FileDialogOptions = VL_FILE_DIALOG_OPTIONS{};
    dwNoTitle = 0;
    vl::frame::frame_state.lpfnFileHost = nullptr;
}

}  // namespace filedlg_test
