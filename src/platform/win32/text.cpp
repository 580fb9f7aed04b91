// Single-byte text on Windows: the system's own case mapping and
// comparison.  Upper-casing goes through a table filled once from
// CharUpperBuffA, so per-character searches make no system call.

#include <windows.h>

#include <array>

#include "platform/platform.h"

namespace vl::platform {
namespace {

const std::array<char, 256>& upper_table() {
    static const std::array<char, 256> table = [] {
        std::array<char, 256> t{};
        for (int c = 0; c < 256; ++c) t[c] = static_cast<char>(c);
        // Byte 0 would end the buffer early; it maps to itself anyway.
        CharUpperBuffA(t.data() + 1, 255);
        return t;
    }();
    return table;
}

}  // namespace

char upper(char c) noexcept { return upper_table()[static_cast<unsigned char>(c)]; }

void upper_in_place(char* text, std::size_t count) noexcept {
    const auto& t = upper_table();
    for (std::size_t i = 0; i < count; ++i) text[i] = t[static_cast<unsigned char>(text[i])];
}

bool is_alpha(char c) noexcept { return IsCharAlphaA(c) != FALSE; }

int compare(const char* a, const char* b) noexcept { return lstrcmpA(a, b); }
int compare_nocase(const char* a, const char* b) noexcept { return lstrcmpiA(a, b); }

}  // namespace vl::platform
