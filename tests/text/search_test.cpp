// Searching for characters, texts and names.

#include <string>

#include "support.h"
#include "vlcore.h"

namespace {

struct StrchrCase {
    const char* name;
    const char* text;
    int32_t ch;
    uint32_t flags;
    int found;  // index of the answer, -1 for null
};

TEST(Strchr, Table) {
    const StrchrCase cases[] = {
        {"aware: comma behind the brackets", "a(b,c),d", ',', 0, 6},
        {"plain: comma inside the brackets", "a(b,c),d", ',', 1, 3},
        {"aware: quotes hide", "\"a,b\",c", ',', 0, 5},
        {"aware: sought opener found at top", "x(y)", '(', 0, 1},
        {"aware: closer of an open bracket never found", "(a)", ')', 0, -1},
        {"aware: nested same kind", "((a,b),c),d", ',', 0, 9},
        {"aware: other kinds are plain inside", "([a),b", ',', 0, 4},
        {"aware: close inside quote inside parens", "(a\"b)c\",d", ',', 0, -1},
        {"aware: unterminated bracket hides the rest", "(a,b", ',', 0, -1},
        {"aware: ch 0 finds the terminator", "(ab", 0, 0, 3},
        {"aware: upper flag", "xEy", 'e', 32, 1},
        {"aware: flags 2 4 16 have no effect", ".a.", '.', 2 | 4 | 16, 0},
        {"plain: first", "a.b.c", '.', 1, 1},
        {"plain: last", "C:\\dir\\file.txt", '\\', 3, 6},
        {"plain: last dot", "a.b.c", '.', 3, 3},
        {"plain: last, none", "abc", '.', 3, -1},
        {"plain: inside runs", ".a.b.", '.', 5, 2},
        {"plain: inside, all sought", "...", '.', 5, -1},
        {"plain: inside, only ends", "..a..", '.', 5, -1},
        {"plain: trim blanks", "  a b  ", ' ', 17, 3},
        {"plain: trim, all blank", " \t ", ' ', 17, -1},
        {"plain: trim wins over inside", " .a. ", '.', 1 | 4 | 16, 1},
        {"plain: trim wins over last", " a.b.c ", '.', 1 | 2 | 16, 2},
        {"plain: inside wins over last", ".a.b.", '.', 1 | 2 | 4, 2},
        {"plain: upper finds E", "12E5", 'e', 33, 2},
        {"plain: upper finds e first", "1e2E3", 'e', 33, 1},
        {"plain: E does not find e", "12e5", 'E', 33, -1},
        {"plain: ch 0 finds terminator", "abc", 0, 1, 3},
        {"plain: empty text, ch 0", "", 0, 1, -1},
        {"plain: empty text", "", 'a', 1, -1},
        {"plain: 0xE9 never matches", "caf\xE9", 0xE9, 1, -1},
        {"plain: sign-extended twin matches", "caf\xE9", -23, 1, 3},
        {"aware: 0xE9 never matches", "caf\xE9", 0xE9, 0, -1},
        {"plain: high bits of ch ignored", "abc", 0x10000 + 'b', 1, 1},
        {"plain: low byte only of flags", "a.b.c", '.', 0x100 | 3, 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const char* hit = KELUTIL_strchr(c.text, c.ch, c.flags);
        if (c.found < 0)
            EXPECT_EQ(hit, nullptr);
        else
            EXPECT_EQ(hit, c.text + c.found);
    }
}

TEST(Strchr, NullTextAnswersNull) {
    EXPECT_EQ(KELUTIL_strchr(nullptr, 'a', 0), nullptr);
    EXPECT_EQ(KELUTIL_strchr(nullptr, 0, 1), nullptr);
}

TEST(Strchr, NoStateSurvivesBetweenCalls) {
    // An unterminated bracket in one call must not hide text in the next.
    EXPECT_EQ(KELUTIL_strchr("(((", ',', 0), nullptr);
    const char* text = "a,b";
    EXPECT_EQ(KELUTIL_strchr(text, ',', 0), text + 1);
}

struct SisCase {
    const char* name;
    const char* needle;
    const char* text;
    uint32_t flags;
    int found;
};

TEST(StringInString, Table) {
    const SisCase cases[] = {
        {"case-blind", "DEF", "abcdef", 0, 3},
        {"exact refuses other case", "DEF", "abcdef", 32768, -1},
        {"exact", "def", "abcdef", 32768, 3},
        {"empty needle answers text", "", "abc", 0, 0},
        {"empty text answers null", "", "", 0, -1},
        {"empty text, needle", "a", "", 0, -1},
        {"prefix only: at start", "AB", "abc", 16384, 0},
        {"prefix only: not at start", "bc", "abc", 16384, -1},
        {"needle longer than text", "abcd", "abc", 0, -1},
        {"needle at the end", "c", "abc", 0, 2},
        {"first of several", "an", "banana", 0, 1},
        {"accented letters fold", "\xC9T\xC9", "\xE9t\xE9", 0, 0},
        {"partial then full", "aab", "aaab", 0, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const char* hit = KELUTIL_string_in_string(c.needle, c.text, c.flags);
        if (c.found < 0)
            EXPECT_EQ(hit, nullptr);
        else
            EXPECT_EQ(hit, c.text + c.found);
    }
}

TEST(FindString, Table) {
    const VL_NAME_ROW table[] = {
        {1, "ADDCOL"}, {0x2001, "COL"}, {0x12345, "WIDE"}, {7, "JOIN"}, {0, nullptr}, {9, "HIDDEN"},
    };
    const struct {
        const char* name;
        uint16_t id;
    } cases[] = {
        {"ADDCOL", 1}, {"COL", 0x2001}, {"JOIN", 7}, {"WIDE", 0x2345},  {"col", 32764},
        {"CO", 32764}, {"COLS", 32764}, {"", 32764}, {"HIDDEN", 32764},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(KELUTIL_FindString(table, c.name), c.id);
    }
    const VL_NAME_ROW empty[] = {{5, nullptr}};
    EXPECT_EQ(KELUTIL_FindString(empty, "X"), 32764);
}

}  // namespace
