// vlcore_host_window: the example host as a Windows program.  It opens the
// library's script window and runs what the user types there; output goes
// back into the window with KelText code 14, progress through the status
// window of KELUTIL_Status.
//
//   vlcore_host_window [--library NAME] [--settings FILE]
//                      [--demo SCRIPT --transcript FILE [--screenshot FILE.bmp]]
//
// Without --library it loads VLCORE.dll, which Windows looks for in the
// program's own directory first.
//
// With --demo the lines of SCRIPT are typed into the edit control as key
// messages, one line after the other finishes; then the window's text is
// written to the transcript, the window is captured as a bitmap file, and
// the program ends.

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "interpreter.h"

namespace {

// The script window's commands of the library, found by name.
using KelTextProc = decltype(&KelText);
using StatusProc = decltype(&KELUTIL_Status);

struct Host {
    host::Library vl;
    KelTextProc kel_text = nullptr;
    StatusProc status = nullptr;
    host::Interpreter* interpreter = nullptr;
    HWND script = nullptr;
    // The demonstration: lines still to type, and where the results go.
    std::vector<std::string> demo;
    std::size_t next_line = 0;
    bool typing = false;
    std::string transcript, screenshot;
};

Host app;

void append(const std::string& text) {
    app.kel_text(nullptr, reinterpret_cast<intptr_t>(app.script), reinterpret_cast<intptr_t>(text.c_str()), 14);
}

// The host callback: script lines arrive as SWM_EXECUTE.
VL_LRESULT VLAPI host_proc(VL_HWND, VL_UINT message, VL_WPARAM, VL_LPARAM second) {
    switch (message) {
        case 1024: {  // SWM_EXECUTE
            if (!second) return 0;
            std::vector<std::string> out;
            const int result = app.interpreter->run(reinterpret_cast<const char*>(second), out);
            for (const auto& line : out) append(line + "\r\n");
            return result;
        }
        case 1035:  // SWM_QUERYSAVE: a demonstration asks nothing
            return app.demo.empty() ? 0 : 1;
        case 1039:  // SWM_CLOSED
            PostQuitMessage(0);
            return 0;
        default: return 0;
    }
}

// Progress in the status window: opened at the first step, closed at the
// last or when the user stops it with ESC or its button.
bool progress(int step, int total) {
    if (!app.status) return true;
    if (step == 1) app.status(app.script, 0, 0, "Working...");
    app.status(nullptr, 1, step * 100 / total, nullptr);
    const bool stop = app.status(nullptr, 2, 0, nullptr) != 0;
    if (stop || step == total) app.status(app.script, 3, 0, nullptr);
    return !stop;
}

// The window as it stands on the screen, as a bottom-up 24-bit BMP file.
bool capture(HWND window, const std::string& path) {
    RECT r;
    GetWindowRect(window, &r);
    const int width = r.right - r.left, height = r.bottom - r.top;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    const HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, r.left, r.top, SRCCOPY);
    SelectObject(memory, old);
    BITMAPINFOHEADER info{};
    info.biSize = sizeof info;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = 24;
    info.biCompression = BI_RGB;
    const int stride = (width * 3 + 3) & ~3;
    std::vector<char> pixels(static_cast<std::size_t>(stride) * height);
    const int rows = GetDIBits(memory, bitmap, 0, height, pixels.data(), reinterpret_cast<BITMAPINFO*>(&info),
                               DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    if (rows != height) return false;
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof info;
    file.bfSize = file.bfOffBits + static_cast<DWORD>(pixels.size());
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof file);
    out.write(reinterpret_cast<const char*>(&info), sizeof info);
    out.write(pixels.data(), static_cast<std::streamsize>(pixels.size()));
    return static_cast<bool>(out);
}

// Types the next demonstration line as a user would: its characters, then
// Enter.  The line runs inside the Enter key's message.
void CALLBACK type_next(HWND, UINT, UINT_PTR timer, DWORD) {
    if (app.typing) return;  // a nested message loop (the status window) ticked
    app.typing = true;
    const HWND edit = GetDlgItem(app.script, 4);
    if (app.next_line < app.demo.size()) {
        for (const char c : app.demo[app.next_line++]) SendMessageA(edit, WM_CHAR, static_cast<unsigned char>(c), 0);
        // The key-down, and the character 13 that the system's translation
        // would queue behind it: the line break stands after the line ran.
        SendMessageA(edit, WM_KEYDOWN, VK_RETURN, 0x001C0001);
        SendMessageA(edit, WM_CHAR, '\r', 0x001C0001);
        SendMessageA(edit, WM_KEYUP, VK_RETURN, 0xC01C0001);
    } else {
        KillTimer(nullptr, timer);
        const int length = GetWindowTextLengthA(edit);
        std::string text(static_cast<std::size_t>(length) + 1, '\0');
        GetWindowTextA(edit, text.data(), length + 1);
        text.resize(static_cast<std::size_t>(length));
        std::ofstream(app.transcript, std::ios::binary) << text;
        UpdateWindow(app.script);
        if (!app.screenshot.empty() && !capture(app.script, app.screenshot))
            std::fprintf(stderr, "vlcore_host_window: no screenshot\n");
        // The text is the demonstration's, not the user's: no save question.
        app.kel_text(app.script, 0, 0, 20);
        PostMessageA(app.script, WM_CLOSE, 0, 0);
    }
    app.typing = false;
}

std::vector<std::string> read_lines(const char* path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

int main(int argc, char** argv) {
    const char* library = "VLCORE.dll";
    std::string settings;
    const char* demo = nullptr;
    for (int i = 1; i < argc; i += 2) {
        const std::string option = argv[i];
        if (i + 1 == argc) {
            std::fprintf(stderr, "vlcore_host_window: %s wants a value\n", argv[i]);
            return 2;
        }
        if (option == "--library") library = argv[i + 1];
        else if (option == "--settings") settings = argv[i + 1];
        else if (option == "--demo") demo = argv[i + 1];
        else if (option == "--transcript") app.transcript = argv[i + 1];
        else if (option == "--screenshot") app.screenshot = argv[i + 1];
        else {
            std::fprintf(stderr, "vlcore_host_window: unknown option %s\n", argv[i]);
            return 2;
        }
    }
    if (demo && app.transcript.empty()) {
        std::fprintf(stderr, "vlcore_host_window: --demo needs --transcript\n");
        return 2;
    }
    if (!app.vl.load(library)) {
        std::fprintf(stderr, "vlcore_host_window: %s\n", app.vl.error.c_str());
        return 1;
    }
    app.kel_text = reinterpret_cast<KelTextProc>(app.vl.entry("KelText"));
    app.status = reinterpret_cast<StatusProc>(app.vl.entry("KELUTIL_Status"));
    if (!app.kel_text) {
        std::fprintf(stderr, "vlcore_host_window: the library has no script window\n");
        return 1;
    }
    if (app.vl.main(nullptr, 6000, reinterpret_cast<intptr_t>(settings.c_str()), 0) == 0) return 1;
    host::Interpreter interpreter(app.vl, progress);
    app.interpreter = &interpreter;

    // 1. The script window, with a fixed font, talking to our callback.
    const auto accelerators = reinterpret_cast<HACCEL>(app.kel_text(nullptr, 0, 0, 0));
    app.script = reinterpret_cast<HWND>(
        app.kel_text(nullptr, SYSTEM_FIXED_FONT, reinterpret_cast<intptr_t>(&host_proc), 1));
    if (!app.script) return 1;
    app.kel_text(nullptr, reinterpret_cast<intptr_t>(app.script), reinterpret_cast<intptr_t>("W \"Vorlan host\""), 2);
    MoveWindow(app.script, 20, 20, 620, 440, TRUE);
    ShowWindow(app.script, SW_SHOW);
    SetFocus(GetDlgItem(app.script, 4));
    if (demo) {
        app.demo = read_lines(demo);
        SetTimer(nullptr, 0, 20, type_next);
    }
    // 2. The host's message loop; the accelerators are the host's to apply.
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
        if (accelerators && TranslateAcceleratorA(app.script, accelerators, &msg)) continue;
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    app.kel_text(nullptr, 0, 0, 3);
    app.vl.main(nullptr, 6000, 0, 1);
    return 0;
}
