// Searching for characters, texts and names.

#include <string>

#include "support.h"
#include "text/text_rows.h"
#include "vlcore.h"

namespace {

const char* const kData = "text/search.tsv";

// The answer as an index into `text`, -1 for null.
long long index_in(const char* hit, const std::string& text) { return hit ? hit - text.c_str() : -1; }

TEST(Strchr, Table) {
    vltest::each_row(kData, "strchr", 5, [](const auto& f) {
        const auto ch = f[2].size() == 1 ? static_cast<unsigned char>(f[2][0]) : vltest::integer(f[2]);
        const char* hit =
            KELUTIL_strchr(f[1].c_str(), static_cast<int32_t>(ch), static_cast<uint32_t>(vltest::integer(f[3])));
        EXPECT_EQ(index_in(hit, f[1]), vltest::integer(f[4]));
    });
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

TEST(StringInString, Table) {
    vltest::each_row(kData, "sis", 5, [](const auto& f) {
        const char* hit =
            KELUTIL_string_in_string(f[1].c_str(), f[2].c_str(), static_cast<uint32_t>(vltest::integer(f[3])));
        EXPECT_EQ(index_in(hit, f[2]), vltest::integer(f[4]));
    });
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
