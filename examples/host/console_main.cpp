// vlcore_host: runs script lines on the library from a file or standard
// input and writes a transcript: each line behind "> ", then its output,
// then "#Command Error!" when it failed, as the script window would show it.
// A failed line is the script's business, not the host's: the host ends
// with 0 once it has run every line, 1 when it could not start.
//
//   vlcore_host [--library NAME] [--settings FILE] [SCRIPT]
//
// Without --library it loads the library that lies beside the program.

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

#include "interpreter.h"

#ifdef _WIN32
constexpr const char* kDefaultLibrary = "VLCORE.dll";
#else
constexpr const char* kDefaultLibrary = "libvlcore.so";
#endif

int main(int argc, char** argv) {
    const char* library = kDefaultLibrary;
    std::string settings;
    const char* script = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--library") && i + 1 < argc) {
            library = argv[++i];
        } else if (!std::strcmp(argv[i], "--settings") && i + 1 < argc) {
            settings = argv[++i];
        } else if (argv[i][0] == '-' && argv[i][1] != '\0') {
            std::fprintf(stderr, "usage: vlcore_host [--library NAME] [--settings FILE] [SCRIPT]\n");
            return 2;
        } else {
            script = argv[i];
        }
    }
    host::Library vl;
    if (!vl.load(library)) {
        std::fprintf(stderr, "vlcore_host: %s\n", vl.error.c_str());
        return 1;
    }
    // 1. Start-up: the host's version and its settings file.
    const uintptr_t answer = vl.main(nullptr, 6000, reinterpret_cast<intptr_t>(settings.c_str()), 0);
    if (answer == 0) {
        std::fprintf(stderr, "vlcore_host: the library refused to start\n");
        return 1;
    }
    std::ifstream file;
    if (script) {
        file.open(script, std::ios::binary);
        if (!file) {
            std::fprintf(stderr, "vlcore_host: cannot read %s\n", script);
            return 1;
        }
    }
    std::istream& in = script ? file : std::cin;
    // 2. Progress shows as a line per step.
    host::Interpreter interpreter(vl, [](int step, int total) {
        std::cout << "  step " << step << " of " << total << '\n';
        return true;
    });
    host::transcript(interpreter, in, std::cout);
    // 3. The end.
    vl.main(nullptr, 6000, 0, 1);
    return 0;
}
