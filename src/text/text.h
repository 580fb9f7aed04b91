// Internal text routines shared with the other subsystems.  The exported
// ones are declared in vlcore.h.
#pragma once

#include <cstdint>

namespace vl::text {

// Classes of characters in a script line.
constexpr bool is_operator(char c) noexcept { return c == '+' || c == '-' || c == '/' || c == '=' || c == '^'; }
constexpr bool is_breaker(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || is_operator(c) || c == ';';
}

// The first of `separators`, in their own order, that occurs anywhere in
// `text`, at its first position; null when none does.
const char* find_any_separator(const char* text, const char* separators) noexcept;

// Cuts the next token off `text` at the first delimiter (chosen as
// find_any_separator chooses) by writing a terminator there, copies the
// part in front to `token` and answers the text behind the cut, or the end
// of the text when no delimiter occurs.
char* DateText_Split(char* text, char* token, const char* delimiters) noexcept;

// 0 when `text` begins with `prefix`, case ignored; otherwise the sign of
// the case-blind comparison of `prefix` with as much of `text`.
int str_prefix_cmpi(const char* prefix, const char* text) noexcept;

// The number error flag: 0 good, 1 bad number.
extern uint8_t number_error_flag;

// 10.0 to the power `e` exactly as the runtime's pow(10.0, e) gives it (not
// always correctly rounded): 0 below the smallest subnormal, infinity above
// the largest double.
double pow10(int32_t e) noexcept;

}  // namespace vl::text
