#include "script/window_class.h"

namespace vl::script {
namespace {

// The script window's procedure proper arrives with the script window
// itself; until then windows of the class behave as plain windows.
LRESULT CALLBACK script_window_proc(HWND window, UINT message, WPARAM first, LPARAM second) {
    return DefWindowProcA(window, message, first, second);
}

constexpr UINT kStyle = CS_VREDRAW | CS_HREDRAW;
constexpr int kWindowExtraBytes = 24;
constexpr int kBackgroundBrush = COLOR_APPWORKSPACE + 1;  // system colour 12 given as a brush

}  // namespace

bool register_window_class(HINSTANCE instance) {
    WNDCLASSA wc{};
    wc.style = kStyle;
    wc.lpfnWndProc = script_window_proc;
    wc.cbClsExtra = 0;
    wc.cbWndExtra = kWindowExtraBytes;
    wc.hInstance = instance;
    wc.hIcon = LoadIconA(nullptr, MAKEINTRESOURCEA(32512));
    wc.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
    wc.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(kBackgroundBrush));
    wc.lpszMenuName = "IDR_SCRIPT_MENU";
    wc.lpszClassName = kScriptWindowClass;
    return RegisterClassA(&wc) != 0;
}

}  // namespace vl::script
