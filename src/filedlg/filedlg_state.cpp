// Storage of the file dialogs' process-wide state.

#include "filedlg/filedlg_state.h"

namespace vl::filedlg {

PathRegistry path_registry{};
std::array<char, kPathRoom> szCurrentDir{};
std::array<char, kPathRoom> szLastExt{};
std::array<char, kStartDirRoom> szStartDir{};
bool bPresetActive = false;
bool bExtPreset = false;
FileTypeTable file_type_table{};

VL_FILE_DIALOG_OPTIONS FileDialogOptions{};
host::HostProc lpfnOptionHost = nullptr;
VL_HWND hOptionOwner = nullptr;
std::array<char, kPathRoom> szFileName{};
uint32_t dwNoTitle = 0;
std::array<char, kTextRoom> szOpenTitle{};
std::array<char, kTextRoom> szSaveTitle{};
std::array<char, kTextRoom> szSpecFilter{};
std::array<char, kTextRoom> szSpecPattern{};

int32_t bInfoShown = 1;
int32_t bInfoEnabled = 1;
std::array<char, kTextRoom> szFileComment{};
DialogRect rcDialogFull{};
bool bExplorerDialog = false;
bool bSaveExplorer = false;
int32_t dwOptionAction = 0;

platform::MemHandle hFileList = nullptr;
int32_t nFileList = 0;

}  // namespace vl::filedlg
