// Process attach on Windows.  Registering the script window's class is the
// one step that can refuse the load.

#include <windows.h>

#include "frame/frame.h"
#include "platform/platform.h"
#include "script/window_class.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
    if (reason != DLL_PROCESS_ATTACH) return TRUE;
    vl::platform::set_module_handle(reinterpret_cast<uintptr_t>(instance));
    vl::frame::library_attach();
    return vl::script::register_window_class(instance) ? TRUE : FALSE;
}
