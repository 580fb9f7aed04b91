// The internal splitters and the keyword comparison other subsystems use.

#include <string>

#include "support.h"
#include "text/text.h"

using namespace vl::text;

namespace {

TEST(FindAnySeparator, TheSetsOrderWinsOverTheTexts) {
    const struct {
        const char* text;
        const char* separators;
        int found;
    } cases[] = {
        {"a;b,c", ",;", 3}, {"a;b,c", ";,", 1}, {"abc", ",;", -1}, {"", ",", -1}, {"a,b", "", -1}, {",", ",", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.text) + " / " + c.separators);
        const char* hit = find_any_separator(c.text, c.separators);
        EXPECT_EQ(hit, c.found < 0 ? nullptr : c.text + c.found);
    }
}

TEST(DateTextSplit, CutsForGood) {
    const struct {
        const char* text;
        const char* delimiters;
        const char* token;
        const char* rest;
        const char* left;  // what the caller's text reads afterwards
    } cases[] = {
        {"12/31/99", "/", "12", "31/99", "12"},
        {"MM-dd-yy-", "/-", "MM", "dd-yy-", "MM"},
        {"a.b/c", "/.", "a.b", "c", "a.b"},
        {"whole", "/", "whole", "", "whole"},
        {"", "/", "", "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto text = vltest::writable(c.text);
        vltest::Poisoned token(std::strlen(c.text) + 1);
        char* rest = DateText_Split(text.data(), token.data(), c.delimiters);
        EXPECT_EQ(token.text(), c.token);
        EXPECT_STREQ(rest, c.rest);
        EXPECT_STREQ(text.data(), c.left);
    }
}

TEST(StrPrefixCmpi, KeywordsAtTheStart) {
    const struct {
        const char* prefix;
        const char* text;
        bool match;
    } cases[] = {
        {"TOD", "today", true}, {"today", "TODAY+1", true}, {"", "x", true},       {"x", "", false},
        {"now", "no", false},   {"abc", "abd", false},      {"\xE9t\xE9", "\xC9T\xC9s", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.prefix) + " / " + c.text);
        auto text = vltest::writable(c.text);
        const auto before = text;
        EXPECT_EQ(str_prefix_cmpi(c.prefix, text.data()) == 0, c.match);
        EXPECT_EQ(text, before) << "the text is left as it was";
    }
}

}  // namespace
