// Splitting a line of the host's script language into tokens.

#include <cstring>

#include "internal/values.h"
#include "text/bracket.h"
#include "text/text.h"
#include "vlcore.h"

namespace vl::text {
namespace {

const char* skip_space(const char* p) noexcept {
    while (is_space(*p)) ++p;
    return p;
}

// Copies `text` up to `end` into `token` and terminates it.
void copy_range(char* token, const char* text, const char* end) noexcept {
    const auto n = static_cast<std::size_t>(end - text);
    std::memmove(token, text, n);
    token[n] = '\0';
}

}  // namespace

const char* find_any_separator(const char* text, const char* separators) noexcept {
    for (const char* s = separators; *s; ++s)
        if (const char* hit = std::strchr(text, *s)) return hit;
    return nullptr;
}

char* DateText_Split(char* text, char* token, const char* delimiters) noexcept {
    char* cut = const_cast<char*>(find_any_separator(text, delimiters));
    if (!cut) {
        const std::size_t n = std::strlen(text);
        std::memmove(token, text, n + 1);
        return text + n;
    }
    *cut = '\0';
    copy_range(token, text, cut);
    return cut + 1;
}

}  // namespace vl::text

using namespace vl;
using namespace vl::text;

extern "C" {

char* VLAPI KELUTIL_next_token(char* token, const char* text) noexcept {
    // 1. Skip white space; at the end the token is empty.
    const char* p = skip_space(text);
    std::size_t n = 0;
    if (*p) {
        // 2. Reset the bracket scanner; the token starts here.
        bracket_reset();
        const char* const start = p;
        bool open = false;
        bool outer = false;  // the bracket opened at the token's start and is dropped
        // 3. Take characters until one ends the token.
        for (;;) {
            const char c = *p;
            if (c == '\0') break;
            if (!open && is_breaker(c)) {
                // 4. An operator character alone makes a token, and one
                // behind a digit and an exponent letter belongs to the number.
                if (!is_operator(c)) break;
                if (n == 0) {
                    token[n++] = c;
                    ++p;
                    break;
                }
                const bool exponent = n >= 2 && (token[n - 1] == 'e' || token[n - 1] == 'E') && is_digit(token[n - 2]);
                if (!exponent) break;
                token[n++] = c;
                ++p;
                continue;
            }
            if (open && bracket_close_test(c)) {
                // A closing bracket always ends the token.
                if (!outer) token[n++] = c;
                ++p;
                break;
            }
            if (bracket_open_test(c)) {
                open = true;
                if (p == start) {
                    outer = true;
                    ++p;
                    continue;
                }
                if (c == '{' || c == '"') break;  // left for the next token
            }
            token[n++] = c;
            ++p;
        }
    }
    // 5. Terminate and skip the white space behind.
    token[n] = '\0';
    return const_cast<char*>(skip_space(p));
}

char* VLAPI KELUTIL_next_word(char* word, const char* text) noexcept {
    const char* p = skip_space(text);
    const char* end = p;
    while (*end && !is_space(*end)) ++end;
    copy_range(word, p, end);
    return const_cast<char*>(skip_space(end));
}

char* VLAPI get_next_token_sep(char* token, const char* text, const char* separators) noexcept {
    const char* hit = find_any_separator(text, separators);
    if (!hit) return nullptr;
    copy_range(token, text, hit);
    return const_cast<char*>(hit + 1);
}

char* VLAPI KELUTIL_next_token_sep(char* token, const char* text, const char* separators) noexcept {
    if (char* next = get_next_token_sep(token, text, separators)) return next;
    const std::size_t n = std::strlen(text);
    std::memmove(token, text, n + 1);
    return const_cast<char*>(text + n);
}

}  // extern "C"
