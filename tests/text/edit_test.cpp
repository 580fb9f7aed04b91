// In-place edits: unwrapping, stripping, prepending, escapes, trailing
// numbers and comma lists.

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "support.h"
#include "text/text_rows.h"
#include "vlcore.h"

using vltest::writable;

namespace {

const char* const kData = "text/edit.tsv";

TEST(StrInside, Table) {
    vltest::each_row(kData, "inside", 4, [](const auto& f) {
        auto buf = writable(f[0]);
        char* inside = KELUTIL_str_inside(buf.data(), static_cast<uint32_t>(vltest::integer(f[1])));
        EXPECT_EQ(std::string(inside), f[2]);
        EXPECT_EQ(inside - buf.data(), vltest::integer(f[3]));
        EXPECT_EQ(static_cast<unsigned char>(buf[f[0].size() + 1]), vltest::kPoison);
    });
}

TEST(Strip, RemovesAllWhiteSpace) {
    vltest::each_row(kData, "strip", 2, [](const auto& f) {
        auto buf = writable(f[0]);
        KELUTIL_strip(buf.data());
        EXPECT_EQ(std::string(buf.data()), f[1]);
    });
}

TEST(PrependString, Table) {
    const std::string long_text(150, 'x');
    const struct {
        std::string text;
        char ch;
        int32_t count;
        std::string result;
    } cases[] = {
        {"abc", '*', 3, "***abc"},
        {"abc", '*', 0, "abc"},
        {"abc", '*', -2, "abc"},
        {"", ' ', 2, "  "},
        {std::string(119, 'y'), '-', 0, std::string(119, 'y')},
        {long_text, '-', 1, "-" + std::string(119, 'x')},
        {long_text, '-', 0, std::string(119, 'x')},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text.substr(0, 10) + " count " + std::to_string(c.count));
        const std::size_t room = std::max(c.text.size(), c.result.size()) + 1;
        std::vector<char> buf(room + 4, static_cast<char>(vltest::kPoison));
        std::memcpy(buf.data(), c.text.c_str(), c.text.size() + 1);
        EXPECT_EQ(KELUTIL_prepend_string(buf.data(), static_cast<unsigned char>(c.ch), c.count), 0);
        EXPECT_EQ(std::string(buf.data()), c.result);
        EXPECT_EQ(static_cast<unsigned char>(buf[room]), vltest::kPoison);
    }
    EXPECT_EQ(KELUTIL_prepend_string(nullptr, 'x', 3), 1);
}

TEST(Str2Ascii, Table) {
    vltest::each_row(kData, "ascii", 2, [](const auto& f) {
        auto buf = writable(f[0]);
        const int32_t n = KELUTIL_str2ascii(buf.data());
        ASSERT_EQ(n, static_cast<int32_t>(f[1].size()));
        EXPECT_EQ(std::string(buf.data(), n), f[1]);
        EXPECT_EQ(buf[n], '\0') << "terminator follows the result";
    });
}

TEST(EndNumber, Table) {
    vltest::each_row(kData, "end_number", 3, [](const auto& f) {
        vltest::Poisoned stem(f[0].size() + 1);
        EXPECT_EQ(KELUTIL_End_Number(stem.data(), f[0].c_str()), vltest::integer(f[2]));
        EXPECT_EQ(stem.text(), f[1]);
    });
}

TEST(GetParsedArguments, Table) {
    vltest::each_row(kData, "args", 4, [](const auto& f) {
        auto buf = writable(f[1]);
        const auto max = static_cast<int32_t>(vltest::integer(f[2]));
        std::vector<char*> slots(static_cast<std::size_t>(std::max(max, 0)) + 1, nullptr);
        const int32_t n =
            KELUTIL_GetParsedArguments(buf.data(), slots.data(), max, static_cast<uint32_t>(vltest::integer(f[3])));
        ASSERT_EQ(n, static_cast<int32_t>(f.size() - 4));
        for (int32_t i = 0; i < n; ++i) EXPECT_EQ(std::string(slots[i]), f[4 + i]) << "slot " << i;
    });
    char* slot = nullptr;
    EXPECT_EQ(KELUTIL_GetParsedArguments(nullptr, &slot, 3, 0), 0);
    char empty[1] = {0};
    EXPECT_EQ(KELUTIL_GetParsedArguments(empty, &slot, 3, 0), 0);
    EXPECT_EQ(slot, nullptr) << "no slot is written for an empty text";
}

}  // namespace
