// Small in-place edits of texts: unwrapping brackets, stripping blanks,
// prepending, escapes, trailing numbers and comma lists.

#include <cstring>

#include "internal/values.h"
#include "text/bracket.h"
#include "vlcore.h"

using namespace vl;
using namespace vl::text;

namespace {

// How much of a text KELUTIL_prepend_string keeps behind the new characters.
constexpr std::size_t kPrependKeep = 119;

// The byte a two-character escape stands for, or -1 when the pair stays.
int simple_escape(char c) noexcept {
    switch (c) {
        case '0': return 0;
        case 'd': return 8;
        case 'n': return 10;
        case 'r': return 13;
        case 't': return 9;
        default: return -1;
    }
}

}  // namespace

extern "C" {

char* VLAPI KELUTIL_str_inside(char* text, uint32_t mode) noexcept {
    // 1. Leading white space goes only in mode 0.
    if ((mode & 0xFFFF) == 0) {
        while (is_space(*text)) ++text;
        if (*text == '\0') return text;
    }
    // 2. Trailing white space goes always.
    std::size_t n = std::strlen(text);
    while (n > 0 && is_space(text[n - 1])) --n;
    text[n] = '\0';
    // 3. Unwrap only when the opener's own closer is the last character.
    if (const char closer = bracket_closer_of(text[0])) {
        char* end = KELUTIL_strchr(text + 1, closer, 0);
        if (end && end[1] == '\0') {
            *end = '\0';
            return text + 1;
        }
    }
    // 4. Anything else comes back trimmed.
    return text;
}

void VLAPI KELUTIL_strip(char* text) noexcept {
    char* out = text;
    for (const char* p = text; *p; ++p)
        if (!is_space(*p)) *out++ = *p;
    *out = '\0';
}

int32_t VLAPI KELUTIL_prepend_string(char* text, uint32_t ch, int32_t count) noexcept {
    if (!text) return 1;
    char kept[kPrependKeep + 1];
    const std::size_t n = strnlen(text, kPrependKeep);
    std::memcpy(kept, text, n);
    std::size_t at = 0;
    if (count > 0) {
        at = static_cast<std::size_t>(count);
        std::memset(text, static_cast<unsigned char>(ch), at);
    }
    std::memcpy(text + at, kept, n);
    text[at + n] = '\0';
    return 0;
}

int32_t VLAPI KELUTIL_str2ascii(char* text) noexcept {
    char* out = text;
    const char* p = text;
    while (*p) {
        if (*p != '\\' || p[1] == '\0') {
            *out++ = *p++;
            continue;
        }
        const char kind = p[1];
        if (kind == 'x' || kind == 'X') {
            // Up to two digit characters, read as KELUTIL_hexstr2int would.
            char digits[3] = {};
            std::size_t taken = 0;
            while (taken < 2 && p[2 + taken]) {
                digits[taken] = p[2 + taken];
                ++taken;
            }
            *out++ = static_cast<char>(KELUTIL_hexstr2int(digits) & 0xFF);
            p += 2 + taken;
            continue;
        }
        const int byte = simple_escape(kind);
        if (byte < 0) {
            *out++ = *p++;
            *out++ = *p++;
            continue;
        }
        *out++ = static_cast<char>(byte);
        p += 2;
    }
    *out = '\0';
    return static_cast<int32_t>(out - text);
}

int32_t VLAPI KELUTIL_End_Number(char* stem, const char* text) noexcept {
    const std::size_t len = std::strlen(text);
    std::memmove(stem, text, len + 1);
    // 1. A short text or one that ends in no digit stays whole.
    if (len < 2 || !is_digit(text[len - 1])) return 0;
    // 2. The units digit, and the tens digit when the text is long enough.
    const int d1 = text[len - 1] - '0';
    const int d2 = (len > 2 && is_digit(text[len - 2])) ? text[len - 2] - '0' : 0;
    // 3. A zero tens digit stays on the stem.
    std::size_t cut = d2 ? 2 : 1;
    int number = d2 * 10 + d1;
    // 4. A hundreds digit takes the tens digit with it, zero or not.
    if (len >= 4 && is_digit(text[len - 3])) {
        cut = 3;
        number += (text[len - 3] - '0') * 100;
    }
    stem[len - cut] = '\0';
    return number;
}

int32_t VLAPI KELUTIL_GetParsedArguments(char* text, char** slots, int32_t max, uint32_t flags) noexcept {
    if (!text || *text == '\0') return 0;
    if (flags & 1) KELUTIL_strip(text);
    slots[0] = text;
    if (*text == '\0') return 1;
    int32_t turned = 0;
    for (char* p = text; *p && turned < max; ++p) {
        if (*p != ',') continue;
        *p = '\0';
        slots[++turned] = p + 1;
    }
    return turned + 1;
}

}  // extern "C"
