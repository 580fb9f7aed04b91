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

}  // namespace vl::filedlg
