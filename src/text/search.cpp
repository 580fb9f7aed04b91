// Searching texts: for one character, with or without regard for brackets,
// for a text inside a text, and for a name in a name table.

#include <cstring>

#include "internal/values.h"
#include "platform/platform.h"
#include "text/bracket.h"
#include "text/text.h"
#include "vlcore.h"

namespace vl::text {
namespace {

// The characters a search accepts.  Text characters compare sign-extended
// against the 16-bit sought value, so a sought value of 0x80..0xFF never
// matches while its sign-extended twin (-128..-1) does.
struct Sought {
    int16_t ch;
    int16_t upper;

    Sought(int32_t raw, bool with_upper) noexcept : ch(static_cast<int16_t>(raw)), upper(ch) {
        if (with_upper && ch >= -128 && ch <= 127)
            upper = static_cast<signed char>(platform::upper(static_cast<char>(ch)));
    }
    bool matches(char c) const noexcept {
        const int16_t v = static_cast<signed char>(c);
        return v == ch || v == upper;
    }
};

const char* bracket_aware_search(const char* text, const Sought& sought) noexcept {
    bracket_reset();
    bool open = false;
    const char* p = text;
    for (; *p; ++p) {
        if (!open && sought.matches(*p)) return p;
        if (open && bracket_close_test(*p))
            open = false;
        else if (bracket_open_test(*p))
            open = true;
    }
    return sought.ch == 0 ? p : nullptr;
}

const char* forward(const char* first, const char* last, const Sought& sought) noexcept {
    for (const char* p = first; p <= last; ++p)
        if (sought.matches(*p)) return p;
    return nullptr;
}

const char* plain_search(const char* text, const Sought& sought, uint32_t flags) noexcept {
    if (*text == '\0') return nullptr;
    const char* last = text + std::strlen(text) - 1;
    const char* first = text;
    // 1. Trimming white space wins over trimming runs of the sought character.
    if (flags & VL_STRCHR_TRIM) {
        while (is_space(*first)) ++first;
        if (*first == '\0') return nullptr;
        while (is_space(*last)) --last;
        return forward(first, last, sought);
    }
    // 2. Only an occurrence strictly inside the text counts.
    if (flags & VL_STRCHR_INSIDE) {
        while (*first && sought.matches(*first)) ++first;
        if (*first == '\0') return nullptr;
        while (sought.matches(*last)) --last;
        return forward(first, last, sought);
    }
    // 3. The last occurrence.
    if (flags & VL_STRCHR_LAST) {
        for (const char* p = last; p >= text; --p)
            if (sought.matches(*p)) return p;
        return nullptr;
    }
    // 4. The first occurrence; a sought 0 finds the terminator.
    if (const char* hit = forward(first, last, sought)) return hit;
    return sought.ch == 0 ? last + 1 : nullptr;
}

}  // namespace

int str_prefix_cmpi(const char* prefix, const char* text) noexcept {
    // Compares as much of `text` as `prefix` is long, without cutting the
    // caller's text: a text that ends early differs at its terminator.
    for (std::size_t i = 0; prefix[i]; ++i) {
        const auto a = static_cast<unsigned char>(platform::upper(prefix[i]));
        const auto b = static_cast<unsigned char>(platform::upper(text[i]));
        if (a != b) return a < b ? -1 : 1;
    }
    return 0;
}

}  // namespace vl::text

using namespace vl;
using namespace vl::text;

extern "C" {

char* VLAPI KELUTIL_strchr(const char* text, int32_t ch, uint32_t flags) noexcept {
    if (!text) return nullptr;
    const Sought sought(ch, flags & VL_STRCHR_UPPER);
    const char* hit =
        (flags & VL_STRCHR_PLAIN) ? plain_search(text, sought, flags) : bracket_aware_search(text, sought);
    return const_cast<char*>(hit);
}

char* VLAPI KELUTIL_string_in_string(const char* needle, const char* text, uint32_t flags) noexcept {
    if (*text == '\0') return nullptr;
    const bool exact = flags & VL_SIS_EXACT;
    const bool prefix_only = flags & VL_SIS_PREFIX;
    for (const char* p = text; *p; ++p) {
        std::size_t i = 0;
        for (; needle[i]; ++i) {
            const char a = needle[i], b = p[i];
            if (b == '\0') break;
            if (a != b && (exact || platform::upper(a) != platform::upper(b))) break;
        }
        if (needle[i] == '\0') return const_cast<char*>(p);
        if (prefix_only) return nullptr;
    }
    return nullptr;
}

uint16_t VLAPI KELUTIL_FindString(const VL_NAME_ROW* table, const char* name) noexcept {
    for (const VL_NAME_ROW* row = table; row->name; ++row)
        if (platform::compare(row->name, name) == 0) return static_cast<uint16_t>(row->id);
    return VL_NO_NAME;
}

}  // extern "C"
