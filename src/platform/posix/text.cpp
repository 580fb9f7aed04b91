// Single-byte text natively: the Western code page's case mapping, so that
// native builds upper-case accented letters as the Windows build does.

#include <array>

#include "platform/platform.h"

namespace vl::platform {
namespace {

constexpr std::array<unsigned char, 256> make_upper_table() {
    std::array<unsigned char, 256> t{};
    for (int c = 0; c < 256; ++c) t[c] = static_cast<unsigned char>(c);
    for (int c = 'a'; c <= 'z'; ++c) t[c] = static_cast<unsigned char>(c - 32);
    for (int c = 0xE0; c <= 0xFE; ++c)
        if (c != 0xF7) t[c] = static_cast<unsigned char>(c - 32);  // 0xF7 is the division sign
    t[0x9A] = 0x8A;                                                // s caron
    t[0x9C] = 0x8C;                                                // oe ligature
    t[0x9E] = 0x8E;                                                // z caron
    t[0xFF] = 0x9F;                                                // y diaeresis
    return t;
}
constexpr auto kUpper = make_upper_table();

int compare_with(const char* a, const char* b, bool fold) noexcept {
    for (;; ++a, ++b) {
        auto x = static_cast<unsigned char>(*a), y = static_cast<unsigned char>(*b);
        if (fold) x = kUpper[x], y = kUpper[y];
        if (x != y) return x < y ? -1 : 1;
        if (x == 0) return 0;
    }
}

}  // namespace

char upper(char c) noexcept { return static_cast<char>(kUpper[static_cast<unsigned char>(c)]); }

void upper_in_place(char* text, std::size_t count) noexcept {
    for (std::size_t i = 0; i < count; ++i) text[i] = upper(text[i]);
}

// A letter is a character that has another case, or one of the few
// letters of the Western code page that have none.
constexpr std::array<bool, 256> make_alpha_table() {
    std::array<bool, 256> t{};
    for (int c = 0; c < 256; ++c)
        if (kUpper[c] != c) t[c] = t[kUpper[c]] = true;
    for (int c : {0x83, 0xAA, 0xB5, 0xBA, 0xDF}) t[c] = true;
    return t;
}
constexpr auto kAlpha = make_alpha_table();

bool is_alpha(char c) noexcept { return kAlpha[static_cast<unsigned char>(c)]; }

int compare(const char* a, const char* b) noexcept { return compare_with(a, b, false); }
int compare_nocase(const char* a, const char* b) noexcept { return compare_with(a, b, true); }

}  // namespace vl::platform
