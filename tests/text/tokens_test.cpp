// Splitting script lines into tokens.

#include <cstring>
#include <string>
#include <vector>

#include "support.h"
#include "text/text_rows.h"
#include "vlcore.h"

using vltest::Poisoned;

namespace {

// Each token buffer is exactly strlen(text)+1 long: the promised room.
void check_token(const std::vector<std::string>& f, char*(VLAPI* entry)(char*, const char*)) {
    const std::string& text = f[0];
    Poisoned token(text.size() + 1);
    const char* rest = entry(token.data(), text.c_str());
    EXPECT_EQ(token.text(), f[1]);
    ASSERT_GE(rest, text.c_str());
    ASSERT_LE(rest, text.c_str() + text.size());
    EXPECT_EQ(std::string(rest), f[2]);
}

TEST(NextToken, ScriptLines) {
    vltest::each_row("text/tokens.tsv", "token", 3, [](const auto& f) { check_token(f, KELUTIL_next_token); });
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
    vltest::each_row("text/tokens.tsv", "word", 3, [](const auto& f) { check_token(f, KELUTIL_next_word); });
}

TEST(TokenSep, FirstSeparatorOfTheSetWins) {
    vltest::each_row("text/tokens.tsv", "sep", 4, [](const auto& f) {
        const std::string& source = f[0];
        const bool found = f[3] != "(null)";
        std::vector<char> text(source.c_str(), source.c_str() + source.size() + 1);
        text.resize(text.size() + 8, static_cast<char>(vltest::kPoison));  // to see writes behind the text
        const std::vector<char> before = text;
        Poisoned token(source.size() + 1);
        char* rest = get_next_token_sep(token.data(), text.data(), f[1].c_str());
        EXPECT_EQ(text, before) << "text must be unchanged";
        if (!found) {
            EXPECT_EQ(rest, nullptr);
            EXPECT_TRUE(token.clean_from(0)) << "token must be untouched";
        } else {
            ASSERT_NE(rest, nullptr);
            EXPECT_EQ(std::string(rest), f[3]);
            EXPECT_EQ(token.text(), f[2]);
        }

        Poisoned whole(source.size() + 1);
        char* rest2 = KELUTIL_next_token_sep(whole.data(), text.data(), f[1].c_str());
        ASSERT_NE(rest2, nullptr);
        if (!found) {
            EXPECT_EQ(whole.text(), source);
            EXPECT_EQ(rest2, text.data() + source.size()) << "must point at the terminator";
        } else {
            EXPECT_EQ(rest2, rest);
            EXPECT_EQ(whole.text(), f[2]);
        }
    });
}

}  // namespace
