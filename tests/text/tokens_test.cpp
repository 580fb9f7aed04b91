// Splitting script lines into tokens.

#include <string>

#include "support.h"
#include "vlcore.h"

using vltest::Poisoned;

namespace {

struct TokenCase {
    const char* text;
    const char* token;
    const char* rest;
};

// Each token buffer is exactly strlen(text)+1 long: the promised room.
void check_token(const TokenCase& c, char*(VLAPI* entry)(char*, const char*)) {
    SCOPED_TRACE(std::string("text <") + c.text + ">");
    Poisoned token(std::strlen(c.text) + 1);
    const char* rest = entry(token.data(), c.text);
    EXPECT_EQ(token.text(), c.token);
    EXPECT_STREQ(rest, c.rest);
    EXPECT_GE(rest, c.text);
    EXPECT_LE(rest, c.text + std::strlen(c.text));
}

TEST(NextToken, ScriptLines) {
    const TokenCase cases[] = {
        {"abc def", "abc", "def"},
        {"a+b", "a", "+b"},
        {"+b", "+", "b"},
        {"a*b c", "a*b", "c"},
        {"1.5e-3+2", "1.5e-3", "+2"},
        {"Xe-3", "Xe", "-3"},
        {"\"a b\" c", "a b", "c"},
        {"(x + y)*2", "x + y", "*2"},
        {"f(1, 2) g", "f(1, 2)", "g"},
        {"a[1]+2", "a[1]", "+2"},
        {"abc{d}", "abc", "{d}"},
        {"abc\"d\"", "abc", "\"d\""},
        {"((a)b)c", "(a)b", "c"},
        {"a;b", "a", ";b"},
        {";x", "", ";x"},
        {"", "", ""},
        {" \t\r\n ", "", ""},
        {"  lead", "lead", ""},
        {"2e=3", "2e=3", ""},
        {"2E^3 x", "2E^3", "x"},
        {"2e/3", "2e/3", ""},
        {"e-3", "e", "-3"},
        {"-3", "-", "3"},
        {"1e--3", "1e-", "-3"},
        {"(a+b)", "a+b", ""},
        {"\"unterminated text", "unterminated text", ""},
        {"(a\"b)c\"", "a\"b", "c\""},
        {"[a b]c", "a b", "c"},
        {"{a;b} c", "a;b", "c"},
        {"(a(b)", "a(b)", ""},
        {"x=1", "x", "=1"},
        {"=1", "=", "1"},
        {"a  ;  b", "a", ";  b"},
        {"f[(x]) y", "f[(x]", ") y"},
    };
    for (const auto& c : cases) check_token(c, KELUTIL_next_token);
}

TEST(NextToken, LoopOverALineStepsOverSemicolons) {
    const char* p = "x = sin(a+b); y=2e+3";
    std::string joined;
    std::vector<char> token(std::strlen(p) + 1);
    while (*p) {
        p = KELUTIL_next_token(token.data(), p);
        if (token[0] == '\0' && *p == ';') ++p;
        joined += std::string("[") + token.data() + "]";
    }
    EXPECT_EQ(joined, "[x][=][sin(a+b)][][y][=][2e+3]");
}

TEST(NextWord, StopsOnlyAtWhiteSpace) {
    const TokenCase cases[] = {
        {"abc def", "abc", "def"}, {"  a+b(c d) e", "a+b(c", "d) e"}, {"\"a b\"", "\"a", "b\""}, {"", "", ""},
        {" \t ", "", ""},          {"x;y\n\nz", "x;y", "z"},
    };
    for (const auto& c : cases) check_token(c, KELUTIL_next_word);
}

struct SepCase {
    const char* text;
    const char* separators;
    const char* token;  // null: token untouched
    const char* rest;   // null: no separator occurs
};

TEST(TokenSep, FirstSeparatorOfTheSetWins) {
    const SepCase cases[] = {
        {"a;b,c", ",;", "a;b", "c"},   {"a;b,c", ";,", "a", "b,c"},    {"key=value", "=", "key", "value"},
        {"=x", "=", "", "x"},          {"abc", ",", nullptr, nullptr}, {"", ",", nullptr, nullptr},
        {"a,b", "", nullptr, nullptr}, {"trail,", ",", "trail", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string("text <") + c.text + "> separators <" + c.separators + ">");
        std::vector<char> text = vltest::writable(c.text);
        const std::vector<char> before = text;
        Poisoned token(std::strlen(c.text) + 1);
        char* rest = get_next_token_sep(token.data(), text.data(), c.separators);
        EXPECT_EQ(text, before) << "text must be unchanged";
        if (!c.rest) {
            EXPECT_EQ(rest, nullptr);
            EXPECT_TRUE(token.clean_from(0)) << "token must be untouched";
        } else {
            ASSERT_NE(rest, nullptr);
            EXPECT_STREQ(rest, c.rest);
            EXPECT_EQ(token.text(), c.token);
        }

        Poisoned whole(std::strlen(c.text) + 1);
        char* rest2 = KELUTIL_next_token_sep(whole.data(), text.data(), c.separators);
        ASSERT_NE(rest2, nullptr);
        if (!c.rest) {
            EXPECT_EQ(whole.text(), c.text);
            EXPECT_EQ(rest2, text.data() + std::strlen(c.text)) << "must point at the terminator";
        } else {
            EXPECT_EQ(rest2, rest);
            EXPECT_EQ(whole.text(), c.token);
        }
    }
}

}  // namespace
