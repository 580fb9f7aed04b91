// The bracket scanner: the one process-wide state that the token and search
// entries share to know whether a character lies inside brackets or quotes.

#include "text/bracket.h"

namespace vl::text {

BracketScanner bracket_scanner;

void bracket_reset() noexcept { bracket_scanner = BracketScanner{}; }

bool bracket_open_test(char c) noexcept {
    for (uint8_t kind = 0; kind < kBracketKinds; ++kind) {
        if (c != kBrackets[kind]) continue;
        if (bracket_scanner.depth == 0) {
            bracket_scanner.kind = kind;
            bracket_scanner.depth = 1;
            return true;
        }
        if (kind == bracket_scanner.kind) ++bracket_scanner.depth;
    }
    return false;
}

bool bracket_close_test(char c) noexcept {
    for (uint8_t kind = 0; kind < kBracketKinds; ++kind) {
        if (c != kBrackets[kind + kBracketKinds] || kind != bracket_scanner.kind) continue;
        if (--bracket_scanner.depth == 0) {
            bracket_scanner.kind = kNoBracket;
            return true;
        }
    }
    return false;
}

char bracket_closer_of(char c) noexcept {
    for (int kind = 0; kind < kBracketKinds; ++kind)
        if (c == kBrackets[kind]) return kBrackets[kind + kBracketKinds];
    return 0;
}

}  // namespace vl::text
