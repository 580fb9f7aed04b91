// The bracket scanner: which kind of bracket encloses the current position
// of a scan, and how deeply.  Only the kind that opened the outer pair
// nests or closes, so inside "(...)" square brackets, braces and quotes are
// ordinary characters.  The state is process-wide and every scan resets it
// first, so nothing survives between two calls.
#pragma once

#include <cstdint>

namespace vl::text {

// Openers, closers, and the openers again, so that a closer maps back to
// its opener by adding four.
inline constexpr char kBrackets[12] = {'(', '{', '"', '[', ')', '}', '"', ']', '(', '{', '"', '['};
constexpr int kBracketKinds = 4;
constexpr uint8_t kNoBracket = 255;

struct BracketScanner {
    uint8_t kind = kNoBracket;
    uint8_t depth = 0;
};
extern BracketScanner bracket_scanner;

void bracket_reset() noexcept;
// Yes when `c` opens an outer pair; an opener of the kind already open
// only deepens the nesting.
bool bracket_open_test(char c) noexcept;
// Yes when `c` closes the outer pair.
bool bracket_close_test(char c) noexcept;
// The closer that ends a pair opened by `c`, or 0 when `c` is no opener.
char bracket_closer_of(char c) noexcept;

}  // namespace vl::text
