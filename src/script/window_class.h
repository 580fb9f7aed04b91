// The window class of the script window, registered when the library loads.
#pragma once

#include <windows.h>

namespace vl::script {

inline constexpr char kScriptWindowClass[] = "VORLAN_SW";

// True when RegisterClassA gave an atom.
bool register_window_class(HINSTANCE instance);

}  // namespace vl::script
