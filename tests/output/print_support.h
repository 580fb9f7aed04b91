// Helpers of the printing tests under Wine: the verdict of the print
// server's set-up, and Unix programs run from inside Wine.
#pragma once

#include <windows.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <thread>

namespace vltest {

struct PrintState {
    bool ready = false;
    std::string directory;  // where the PDF queue writes, ready only
    std::string reason;     // why the printing tests skip, not ready only
};

// Reads the file tools/start-cups.sh --state wrote: "ready" and the PDF
// directory, or "unavailable" and the reason.
inline PrintState print_state() {
    PrintState state;
    const char* file = std::getenv("VLCORE_PRINT_STATE");
    if (!file) {
        state.reason =
            "VLCORE_PRINT_STATE is not set: run the tests through ctest, whose fixture runs "
            "tools/start-cups.sh";
        return state;
    }
    std::ifstream in(file);
    std::string verdict, detail;
    if (!in || !std::getline(in, verdict)) {
        state.reason = std::string("tools/start-cups.sh left no verdict in ") + file;
        return state;
    }
    std::getline(in, detail);
    if (verdict == "ready") {
        state.ready = true;
        state.directory = detail;
    } else {
        state.reason = "the print server is unavailable: " + detail;
    }
    return state;
}

// Runs a Unix command line through /bin/sh and answers what it wrote to
// standard output and standard error, or nothing when it did not finish
// within `limit`.  Wine starts Unix programs but gives them no Windows
// pipes and no exit code, so the output goes through a file that appears
// under its final name only when the command is done.
inline std::optional<std::string> run_unix(const std::string& command, std::chrono::seconds limit) {
    static int serial = 0;
    const std::string out = "/tmp/vlcore-run-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++serial);
    std::string line = "Z:\\bin\\sh -c \"" + command + " >" + out + ".part 2>&1; mv " + out + ".part " + out + "\"";
    STARTUPINFOA start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process))
        return std::nullopt;
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < deadline) {
        std::ifstream in(out, std::ios::binary);
        if (in) {
            std::ostringstream text;
            text << in.rdbuf();
            in.close();
            std::remove(out.c_str());
            return text.str();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return std::nullopt;
}

}  // namespace vltest
