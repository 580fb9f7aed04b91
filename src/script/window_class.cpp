// The script window's class VORLAN_SW, registered when the library is
// loaded, so that KelText can make windows of it.

#include "script/window_class.h"

#include "script/script_win32.h"
#include "vlcore.h"

namespace vl::script {
namespace {

constexpr UINT kStyle = CS_VREDRAW | CS_HREDRAW;
constexpr int kBackgroundBrush = COLOR_APPWORKSPACE + 1;  // system colour 12 given as a brush

}  // namespace

bool register_window_class(HINSTANCE instance) {
    WNDCLASSA wc{};
    wc.style = kStyle;
    wc.lpfnWndProc = EditWndProc;
    wc.cbClsExtra = 0;
    wc.cbWndExtra = kRecordBytes;
    wc.hInstance = instance;
    wc.hIcon = LoadIconA(nullptr, MAKEINTRESOURCEA(32512));
    wc.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
    wc.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(kBackgroundBrush));
    wc.lpszMenuName = "IDR_SCRIPT_MENU";
    wc.lpszClassName = kScriptWindowClass;
    return RegisterClassA(&wc) != 0;
}

}  // namespace vl::script
