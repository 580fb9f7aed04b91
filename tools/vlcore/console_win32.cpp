// vlcore console [SCRIPT]: the script window with a small host behind it.
// Each line run comes back as the line and its tokens; a line that begins
// with "fail" answers with an error.  Open and Save As ask for a file name
// with the system's file dialogs, as the host's script would.

#include <windows.h>
// The dialog declarations need <windows.h> first.
#include <commdlg.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "vlcore.h"

namespace {

constexpr UINT kExecute = 1024;
constexpr UINT kClosed = 1039;
HWND console = nullptr;

void append(const std::string& text) {
    KelText(nullptr, reinterpret_cast<intptr_t>(console), reinterpret_cast<intptr_t>(text.c_str()), 14);
}

void setting(const std::string& text) {
    KelText(nullptr, reinterpret_cast<intptr_t>(console), reinterpret_cast<intptr_t>(text.c_str()), 2);
}

// The file dialog the host's script shows for Open and Save As.
void ask_file(bool save) {
    char name[MAX_PATH] = {};
    OPENFILENAMEA ofn{};
    ofn.lStructSize = sizeof ofn;
    ofn.hwndOwner = console;
    ofn.lpstrFilter = "Scripts (*.txt)\0*.txt\0All files (*.*)\0*.*\0";
    ofn.lpstrFile = name;
    ofn.nMaxFile = sizeof name;
    ofn.Flags = save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST;
    if (save ? GetSaveFileNameA(&ofn) : GetOpenFileNameA(&ofn)) setting(std::string(save ? "S " : "O ") + name);
}

LRESULT run(const char* line) {
    const std::string text = line;
    if (text == "Run.Section(File.VLX,ScriptOpen);") {
        ask_file(false);
        return 0;
    }
    if (text == "Run.Section(File.VLX,ScriptSaveAs);") {
        ask_file(true);
        return 0;
    }
    std::string out = "> " + text + "\r\n";
    std::vector<char> token(text.size() + 1);
    const char* p = text.c_str();
    for (int count = 1; *p; ++count) {
        p = KELUTIL_next_token(token.data(), p);
        if (token[0] == '\0') {
            if (*p != ';') break;
            ++p;
            while (*p == ' ' || *p == '\t' || *p == '\r' || *p == '\n') ++p;
            out += "  " + std::to_string(count) + ": ;\r\n";
            continue;
        }
        out += "  " + std::to_string(count) + ": " + token.data() + "\r\n";
    }
    append(out);
    return text.rfind("fail", 0) == 0 ? 1 : 0;
}

LRESULT CALLBACK host(HWND, UINT message, WPARAM, LPARAM second) {
    if (message == kExecute) return run(reinterpret_cast<const char*>(second));
    if (message == kClosed) PostQuitMessage(0);
    return 0;
}

}  // namespace

int cmd_console(int argc, char** argv) {
    if (argc > 3) {
        std::fputs("vlcore: 'console' takes an optional SCRIPT file\n", stderr);
        return 2;
    }
    // The window opens the script by a path of at most MAX_PATH - 1 characters.
    if (argc == 3 && std::strlen(argv[2]) >= MAX_PATH) {
        std::fprintf(stderr, "vlcore: SCRIPT is longer than %d characters\n", MAX_PATH - 1);
        return 2;
    }
    const auto accelerators = reinterpret_cast<HACCEL>(KelText(nullptr, 0, 0, 0));
    console = reinterpret_cast<HWND>(KelText(nullptr, SYSTEM_FIXED_FONT, reinterpret_cast<intptr_t>(&host), 1));
    if (!console) {
        std::fputs("vlcore: the script window could not be made\n", stderr);
        return 1;
    }
    if (argc == 3) setting(std::string("O ") + argv[2]);
    ShowWindow(console, SW_SHOW);
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
        if (accelerators && TranslateAcceleratorA(console, accelerators, &msg)) continue;
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    KelText(nullptr, 0, 0, 3);
    return 0;
}
