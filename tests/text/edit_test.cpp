// In-place edits: unwrapping, stripping, prepending, escapes, trailing
// numbers and comma lists.

#include <string>

#include "support.h"
#include "vlcore.h"

using vltest::writable;

namespace {

TEST(StrInside, Table) {
    const struct {
        const char* text;
        uint32_t mode;
        const char* inside;
        int offset;  // where the answer points into the buffer
    } cases[] = {
        {"  \"a b\"  ", 0, "a b", 3},
        {"(a(b)c)", 0, "a(b)c", 1},
        {"(a)(b)", 0, "(a)(b)", 0},
        {"(a", 0, "(a", 0},
        {"[x]", 0, "x", 1},
        {"{x} ", 0, "x", 1},
        {"()", 0, "", 1},
        {"", 0, "", 0},
        {"   ", 0, "", 3},
        {"   ", 1, "", 0},
        {"  (a)  ", 1, "  (a)", 0},
        {"  (a)  ", 0x10000, "a", 3},  // only the low 16 bits of mode count
        {"(a\"b)c\")", 0, "a\"b)c\"", 1},
        {"plain  ", 0, "plain", 0},
        {"\"a\"b\"", 0, "\"a\"b\"", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string("text <") + c.text + "> mode " + std::to_string(c.mode));
        auto buf = writable(c.text);
        char* inside = KELUTIL_str_inside(buf.data(), c.mode);
        EXPECT_STREQ(inside, c.inside);
        EXPECT_EQ(inside - buf.data(), c.offset);
        EXPECT_EQ(static_cast<unsigned char>(buf[std::strlen(c.text) + 1]), vltest::kPoison);
    }
}

TEST(Strip, RemovesAllWhiteSpace) {
    const struct {
        const char* text;
        const char* stripped;
    } cases[] = {
        {" a b\tc\r\nd ", "abcd"}, {"", ""}, {" \t\r\n", ""}, {"abc", "abc"}, {"a\vb", "a\vb"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto buf = writable(c.text);
        KELUTIL_strip(buf.data());
        EXPECT_STREQ(buf.data(), c.stripped);
    }
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
    const struct {
        const char* text;
        std::string bytes;
    } cases[] = {
        {"a\\x41b", "aAb"},
        {"\\q", "\\q"},
        {"\\n\\r\\t\\d", std::string("\n\r\t\b")},
        {"a\\0b", std::string("a\0b", 3)},
        {"\\x00", std::string(1, '\0')},
        {"\\XfF", "\xFF"},
        {"\\x4", "\x04"},
        {"\\x", std::string(1, '\0')},
        {"end\\", "end\\"},
        {"\\\\n", "\\\\n"},
        {"\\b", "\\b"},
        {"\\N", "\\N"},
        {"\\x414", "A4"},
        {"", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto buf = writable(c.text);
        const int32_t n = KELUTIL_str2ascii(buf.data());
        ASSERT_EQ(n, static_cast<int32_t>(c.bytes.size()));
        EXPECT_EQ(std::string(buf.data(), n), c.bytes);
        EXPECT_EQ(buf[n], '\0') << "terminator follows the result";
    }
}

TEST(EndNumber, Table) {
    const struct {
        const char* text;
        const char* stem;
        int32_t number;
    } cases[] = {
        {"Data12", "Data", 12},
        {"Data105", "Data", 105},
        {"Data1234", "Data1", 234},
        {"12", "1", 2},
        {"Data05", "Data0", 5},
        {"A1", "A", 1},
        {"7", "7", 0},
        {"", "", 0},
        {"Data", "Data", 0},
        {"X105", "X", 105},
        {"105", "10", 5},
        {"A00", "A0", 0},
        {"Ab9", "Ab", 9},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        vltest::Poisoned stem(std::strlen(c.text) + 1);
        EXPECT_EQ(KELUTIL_End_Number(stem.data(), c.text), c.number);
        EXPECT_EQ(stem.text(), c.stem);
    }
}

TEST(GetParsedArguments, Table) {
    const struct {
        const char* name;
        const char* text;
        int32_t max;
        uint32_t flags;
        std::vector<std::string> args;
    } cases[] = {
        {"max 2 leaves the tail", "a,b,c,d", 2, 0, {"a", "b", "c,d"}},
        {"all", "a,b,c", 10, 0, {"a", "b", "c"}},
        {"empty pieces", ",,", 5, 0, {"", "", ""}},
        {"no split with max 0", "a,b", 0, 0, {"a,b"}},
        {"blanks kept", " a , b", 5, 0, {" a ", " b"}},
        {"blanks stripped", " a , b", 5, 1, {"a", "b"}},
        {"stripped to nothing", "   ", 5, 1, {""}},
        {"brackets do not protect", "f(a,b)", 5, 0, {"f(a", "b)"}},
        {"trailing comma", "a,", 5, 0, {"a", ""}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto buf = writable(c.text);
        std::vector<char*> slots(static_cast<std::size_t>(std::max(c.max, 0)) + 1, nullptr);
        const int32_t n = KELUTIL_GetParsedArguments(buf.data(), slots.data(), c.max, c.flags);
        ASSERT_EQ(n, static_cast<int32_t>(c.args.size()));
        for (int32_t i = 0; i < n; ++i) EXPECT_EQ(std::string(slots[i]), c.args[i]) << "slot " << i;
    }
    char* slot = nullptr;
    EXPECT_EQ(KELUTIL_GetParsedArguments(nullptr, &slot, 3, 0), 0);
    char empty[1] = {0};
    EXPECT_EQ(KELUTIL_GetParsedArguments(empty, &slot, 3, 0), 0);
    EXPECT_EQ(slot, nullptr) << "no slot is written for an empty text";
}

}  // namespace
