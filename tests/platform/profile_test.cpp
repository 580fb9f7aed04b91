// The same tables run natively and, in the Windows build under Wine, against
// the system's own profile calls: that is what keeps the native reader
// answering exactly like the real one, truncation quirks included.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif

namespace vl::platform {
namespace {

using namespace std::string_view_literals;
namespace fs = std::filesystem;

constexpr char kPoison = '\xCC';
constexpr std::size_t kGuard = 4;

std::string shown(std::string_view bytes) {
    std::string s;
    for (char c : bytes) {
        switch (c) {
            case '\0': s += "\\0"; break;
            case kPoison: s += '.'; break;
            case '\r': s += "\\r"; break;
            case '\t': s += "\\t"; break;
            default: s += c;
        }
    }
    return s;
}

// Runs `read` on a poisoned buffer of `size` bytes: the answer must be
// `expected` plus one zero, and every later byte, up to a guard zone past
// the end of the buffer, must be left alone.
template <typename Read>
void expect_read(std::size_t size, std::string_view expected, Read read) {
    ASSERT_TRUE(size == 0 ? expected.empty() : expected.size() < size) << "bad row";
    std::string buf(size + kGuard, kPoison);
    const uint32_t count = read(std::span<char>(buf.data(), size));
    std::string want(size + kGuard, kPoison);
    if (size > 0) want.replace(0, expected.size() + 1, std::string(expected) + '\0');
    EXPECT_EQ(count, expected.size());
    EXPECT_EQ(shown(buf), shown(want));
}

struct ReadRow {
    const char* name;
    const char* section;
    const char* key;
    const char* def;
    std::size_t size;
    std::string_view expected;  // everything before the final zero, separators included
};

class ProfileTest : public ::testing::Test {
  protected:
    void SetUp() override {
        static std::atomic<int> serial{0};
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        dir_ = fs::temp_directory_path() / ("vlcore_profile_" + std::to_string(stamp) + "_" + std::to_string(serial++));
        fs::create_directories(dir_);
    }
    void TearDown() override {
        std::error_code ec;
        fs::remove_all(dir_, ec);
    }

    // Every file gets its own name: the Windows calls cache files by name
    // and time stamp, which a rewrite within the same clock tick can fool.
    std::string path(std::string_view name) const { return (dir_ / name).string(); }
    std::string file(std::string_view name, std::string_view content) const {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }
    static std::string content(const std::string& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    static void check(const std::string& file, const ReadRow& row) {
        SCOPED_TRACE(row.name);
        expect_read(row.size, row.expected, [&](std::span<char> out) {
            return private_profile_string(row.section, row.key, row.def, out, file.c_str());
        });
    }

    fs::path dir_;
};

const std::string kLongText = [] {
    std::string s;
    for (int i = 0; i < 30; ++i) s += "0123456789";
    return s;
}();
const std::string_view kLong = kLongText;

std::string settings(std::string_view eol) {
    const std::string lines =
        "; settings for the test\n[Colors]\n  Window  =  white  \nText=\"  black  \"\nFrame='x'\n"
        "Half=\"open\nEmpty=\nBlank=   \nwindow=second\nNoEquals\n; Hidden=1\nEq=a=b\n"
        "\tTabbed\t=\tt\tv\t\nLong=" +
        kLongText +
        "\n[ Spaced Name ]\nk=spaced\n[colors]\n"
        "Later=unseen\n[Empty Section]\n\n[Last]\nz=end";  // no line end after the last line
    std::string text;
    for (char c : lines) text += c == '\n' ? std::string(eol) : std::string(1, c);
    return text;
}

TEST_F(ProfileTest, ReadsEntries) {
    // clang-format off
    const ReadRow rows[] = {
        {"exact names", "Colors", "Window", "dflt", 64, "white"},
        {"names ignore case", "COLORS", "WINDOW", "dflt", 64, "white"},
        {"blanks around names", "  colors  ", "  window ", "dflt", 64, "white"},
        {"first of duplicate keys", "Colors", "window", "dflt", 64, "white"},
        {"first of duplicate sections", "colors", "Later", "dflt", 64, "dflt"},
        {"double quotes keep inner blanks", "Colors", "Text", "dflt", 64, "  black  "},
        {"single quotes", "Colors", "Frame", "dflt", 64, "x"},
        {"unbalanced quote stays", "Colors", "Half", "dflt", 64, "\"open"},
        {"empty value is no default", "Colors", "Empty", "dflt", 64, ""},
        {"blank value", "Colors", "Blank", "dflt", 64, ""},
        {"line without '=' is no key", "Colors", "NoEquals", "dflt", 64, "dflt"},
        {"comment is no key", "Colors", "Hidden", "dflt", 64, "dflt"},
        {"value keeps later '='", "Colors", "Eq", "dflt", 64, "a=b"},
        {"tabs trimmed, inner tab kept", "Colors", "Tabbed", "dflt", 64, "t\tv"},
        {"long value cut", "Colors", "Long", "dflt", 16, kLong.substr(0, 15)},
        {"long value exact fit", "Colors", "Long", "dflt", kLong.size() + 1, kLong},
        {"long value one short", "Colors", "Long", "dflt", kLong.size(), kLong.substr(0, kLong.size() - 1)},
        {"blanks inside brackets", "Spaced Name", "K", "dflt", 64, "spaced"},
        {"last line unterminated", "last", "z", "dflt", 64, "end"},
        {"missing key", "Colors", "Nope", "dflt", 64, "dflt"},
        {"missing section", "Nope", "Window", "dflt", 64, "dflt"},
        {"empty key", "Colors", "", "dflt", 64, "dflt"},
        {"default loses trailing spaces", "Colors", "Nope", "dflt   ", 64, "dflt"},
        {"default keeps leading blanks and tabs", "Colors", "Nope", "  dflt\t ", 64, "  dflt\t"},
        {"default of spaces keeps one", "Colors", "Nope", "   ", 64, " "},
        {"default loses quotes", "Colors", "Nope", "\"dflt\"", 64, "dflt"},
        {"null default", "Colors", "Nope", nullptr, 64, ""},
        {"key list", "colors", nullptr, "dflt", 128,
         "Window\0Text\0Frame\0Half\0Empty\0Blank\0window\0Eq\0Tabbed\0Long\0"sv},
        {"key list of empty section", "Empty Section", nullptr, "dflt", 64, "dflt"},
        {"key list of missing section", "Nope", nullptr, "dflt", 64, "dflt"},
        {"key list does not trim the section", " Colors ", nullptr, "dflt", 64, "dflt"},
        {"key list of missing section, null default", "Nope", nullptr, nullptr, 64, ""},
        {"section list", nullptr, nullptr, "dflt", 128, "Colors\0Spaced Name\0colors\0Empty Section\0Last\0"sv},
        {"section list ignores the key", nullptr, "Window", "dflt", 128,
         "Colors\0Spaced Name\0colors\0Empty Section\0Last\0"sv},
    };
    // clang-format on
    for (const auto& [name, eol] : {std::pair{"crlf", "\r\n"}, {"lf", "\n"}, {"cr", "\r"}}) {
        SCOPED_TRACE(name);
        const std::string ini = file(std::string("settings_") + name + ".ini", settings(eol));
        for (const ReadRow& row : rows) check(ini, row);
    }
}

TEST_F(ProfileTest, ReadsOddLines) {
    const std::string ini = file("odd.ini",
                                 "\xEF\xBB\xBF[First]\nk=signed\n[a]b]\nk=ab\n[x] trailing words\nk=x\n[open=1\n"
                                 "[]\nk=unnamed\n");
    const std::string empty = file("empty.ini", "");
    // clang-format off
    const ReadRow rows[] = {
        {"signature skipped", "First", "k", "dflt", 64, "signed"},
        {"last bracket closes", "a]b", "k", "dflt", 64, "ab"},
        {"words after bracket", "x", "k", "dflt", 64, "x"},
        {"unclosed bracket is a key", "x", "[open", "dflt", 64, "1"},
        {"sections, unnamed left out", nullptr, nullptr, "dflt", 64, "First\0a]b\0x\0"sv},
    };
    // clang-format on
    for (const ReadRow& row : rows) check(ini, row);
    check(empty, {"empty file, key", "a", "k", "dflt", 64, "dflt"});
    check(empty, {"empty file, sections", nullptr, nullptr, "dflt", 64, ""});
}

TEST_F(ProfileTest, TruncatesLikeWindows) {
    const std::string ini = file("small.ini", "[s]\nabc=hello\nq=\"quoted\"\n[t]\nk1=1\nk22=2\nk333=3\n[u]\n");
    // clang-format off
    const ReadRow rows[] = {
        {"value, room to spare", "s", "abc", "dflt", 8, "hello"},
        {"value, exact fit", "s", "abc", "dflt", 6, "hello"},
        {"value, one short", "s", "abc", "dflt", 5, "hell"},
        {"value, size 2", "s", "abc", "dflt", 2, "h"},
        {"value, size 1", "s", "abc", "dflt", 1, ""},
        {"value, size 0", "s", "abc", "dflt", 0, ""},
        {"quoted, room to spare", "s", "q", "dflt", 8, "quoted"},
        // Cutting the closing quote costs the last kept character too.
        {"quoted, exact fit of the quotes", "s", "q", "dflt", 7, "quote"},
        {"quoted, one short", "s", "q", "dflt", 6, "quote"},
        {"quoted, two short", "s", "q", "dflt", 5, "quot"},
        {"quoted default, fits", "s", "nope", "\"defaultval\"", 12, "defaultval"},
        {"quoted default, one short", "s", "nope", "\"defaultval\"", 11, "defaultva"},
        {"quoted default, cut", "s", "nope", "\"defaultval\"", 8, "default"},
        {"keys, room to spare", "t", nullptr, "dflt", 20, "k1\0k22\0k333\0"sv},
        {"keys, exact fit", "t", nullptr, "dflt", 14, "k1\0k22\0k333\0"sv},
        {"keys, one short", "t", nullptr, "dflt", 13, "k1\0k22\0k333"sv},
        {"keys, last cut", "t", nullptr, "dflt", 12, "k1\0k22\0k33"sv},
        {"keys, last dropped", "t", nullptr, "dflt", 9, "k1\0k22\0"sv},
        {"keys, room for one", "t", nullptr, "dflt", 5, "k1\0"sv},
        {"keys, first one short", "t", nullptr, "dflt", 4, "k1"},
        {"keys, first cut", "t", nullptr, "dflt", 3, "k"},
        {"keys, no room: default", "t", nullptr, "dflt", 2, "d"},
        {"keys, size 1", "t", nullptr, "dflt", 1, ""},
        {"keys, size 0", "t", nullptr, "dflt", 0, ""},
        {"sections, exact fit", nullptr, nullptr, "dflt", 8, "s\0t\0u\0"sv},
        {"sections, one short", nullptr, nullptr, "dflt", 7, "s\0t\0u"sv},
        {"sections, last dropped", nullptr, nullptr, "dflt", 6, "s\0t\0"sv},
        {"sections, first cut", nullptr, nullptr, "dflt", 3, "s"},
        {"sections, size 2", nullptr, nullptr, "dflt", 2, ""},
        {"sections, size 1", nullptr, nullptr, "dflt", 1, ""},
        {"sections, size 0", nullptr, nullptr, "dflt", 0, ""},
    };
    // clang-format on
    for (const ReadRow& row : rows) check(ini, row);
}

TEST_F(ProfileTest, MissingFileGivesDefault) {
    const std::string missing = path("missing.ini");
    const std::string unreachable = path("no such dir/missing.ini");
    // clang-format off
    const std::pair<const std::string&, ReadRow> rows[] = {
        {missing, {"missing file", "a", "k", "dflt  ", 64, "dflt"}},
        {missing, {"missing file, quoted default", "a", "k", "\"dflt\"", 64, "dflt"}},
        {missing, {"missing file, key list", "a", nullptr, "dflt", 64, "dflt"}},
        {missing, {"missing file, sections", nullptr, nullptr, "dflt", 64, ""}},
        // A file that can't even be opened gets the default without unquoting.
        {unreachable, {"missing dir, quoted default", "a", "k", "\"dflt\"  ", 64, "\"dflt\""}},
        {unreachable, {"missing dir, cut default", "a", "k", "dflt", 3, "df"}},
        {unreachable, {"missing dir, key list", "a", nullptr, "dflt", 64, "dflt"}},
        {unreachable, {"missing dir, sections", nullptr, nullptr, "dflt", 64, ""}},
    };
    // clang-format on
    for (const auto& [file, row] : rows) check(file, row);
    EXPECT_FALSE(fs::exists(missing));
}

struct After {
    const char* section;
    const char* key;
    std::string_view expected;  // "?" when the default answers
};

struct WriteRow {
    const char* name;
    std::optional<std::string_view> before;  // file content; none: no file
    const char* section;
    const char* key;
    const char* value;
    bool ok;
    std::vector<After> after;   // reads that must hold afterwards
    std::string_view survives;  // text still in the file afterwards, byte for byte
};

TEST_F(ProfileTest, WritesAndReadsBack) {
    // clang-format off
    const WriteRow rows[] = {
        {"creates the file", std::nullopt, "Sec", "Key", "value", true,
         {{"sec", "key", "value"}, {nullptr, nullptr, "Sec\0"sv}}, "Key=value"},
        {"replaces ignoring case", "[Sec]\nKey=old\nother=1\n", "SEC", "KEY", "new", true,
         {{"Sec", "Key", "new"}, {"Sec", nullptr, "Key\0other\0"sv}}, "other=1"},
        {"adds key to its section", "[a]\nx=1\n\n[b]\ny=2\n", "a", "z", "3", true,
         {{"a", nullptr, "x\0z\0"sv}, {"b", "y", "2"}}, ""},
        {"appends a section", "[a]\nx=1\n", "c", "k", "v", true, {{nullptr, nullptr, "a\0c\0"sv}, {"c", "k", "v"}}, ""},
        {"after an unterminated line", "[a]\nk=1", "a", "j", "2", true, {{"a", "k", "1"}, {"a", "j", "2"}}, ""},
        {"section after an unterminated line", "[a]\nk=1", "b", "j", "2", true, {{"a", "k", "1"}, {"b", "j", "2"}}, ""},
        {"crlf file", "[a]\r\nk=1\r\n", "a", "j", "2", true, {{"a", "k", "1"}, {"a", "j", "2"}}, ""},
        {"names trimmed, blanks of value dropped", std::nullopt, "  a  ", "  k  ", "   v v  ", true,
         {{"a", "k", "v v"}}, ""},
        {"quotes removed on reading", std::nullopt, "a", "k", "\"q\"", true, {{"a", "k", "q"}}, ""},
        {"empty value", "[a]\nk=1\n", "a", "k", "", true, {{"a", "k", ""}}, ""},
        {"line without '=' gets a value", "[a]\nflag\n", "a", "flag", "on", true, {{"a", "flag", "on"}}, ""},
        {"comments survive", "; top\n[a]\n; inner\nk=1\n", "a", "k", "2", true, {{"a", "k", "2"}}, "; inner"},
        {"same value leaves the file alone", "[a]\nk=1\n", "a", "k", "1", true, {{"a", "k", "1"}}, "[a]\nk=1\n"},
        {"null value deletes the key", "[a]\nk=1\nj=2\n", "a", "K", nullptr, true,
         {{"a", "k", "?"}, {"a", nullptr, "j\0"sv}}, ""},
        {"deletes the first duplicate key", "[a]\nk=1\nk=2\n", "a", "k", nullptr, true, {{"a", "k", "2"}}, ""},
        {"null key deletes the section", "[a]\nk=1\n[b]\nj=2\n", "A", nullptr, nullptr, true,
         {{"a", "k", "?"}, {nullptr, nullptr, "b\0"sv}, {"b", "j", "2"}}, ""},
        {"deletes the first duplicate section", "[a]\nk=1\n[a]\nk=3\n", "a", nullptr, "ignored", true,
         {{"a", "k", "3"}}, ""},
        {"deleting from a missing file", std::nullopt, "a", "k", nullptr, true, {{"a", "k", "?"}}, ""},
        {"null section fails", "[a]\nk=1\n", nullptr, "k", "2", false, {{"a", "k", "1"}}, "[a]\nk=1\n"},
    };
    // clang-format on
    int serial = 0;
    for (const WriteRow& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string name = "write" + std::to_string(serial++) + ".ini";
        const std::string ini = path(name);
        if (row.before) file(name, *row.before);
        EXPECT_EQ(write_private_profile_string(row.section, row.key, row.value, ini.c_str()), row.ok);
        for (const After& a : row.after) {
            check(ini, {a.section ? a.section : "(sections)", a.section, a.key, "?", 64, a.expected});
        }
        if (!row.before && row.value == nullptr) {
            EXPECT_FALSE(fs::exists(ini));
        } else {
            EXPECT_NE(content(ini).find(row.survives), std::string::npos) << shown(content(ini));
        }
    }
    EXPECT_FALSE(write_private_profile_string("a", "k", "v", path("no such dir/x.ini").c_str()));
}

// Under Windows GetPrivateProfileIntA reads the numbers, as the oracle for
// profile_int's conversion; natively the file becomes the system profile.
int32_t number(const std::string& file, const char* section, const char* key, int32_t def) {
#ifdef _WIN32
    return static_cast<int32_t>(GetPrivateProfileIntA(section, key, def, file.c_str()));
#else
    setenv("VLCORE_PROFILE", file.c_str(), 1);
    const int32_t n = profile_int(section, key, def);
    unsetenv("VLCORE_PROFILE");
    return n;
#endif
}

TEST_F(ProfileTest, ConvertsNumbers) {
    const std::string ini = file("numbers.ini",
                                 "[n]\nplain=12\njunk=  12abc\nneg=-5\nhex=0x10\nHEXUP=0X10\nbin=0b101\noct=0o17\n"
                                 "lead0=08\nempty=\nplus=+7\nword=abc\nwrap=4294967295\nquoted=\" 5\"\nfrac=1.5\n"
                                 "long=123456789012345678901234567890123\n");
    // clang-format off
    const std::pair<const char*, int32_t> rows[] = {
        {"plain", 12}, {"junk", 12}, {"neg", -5}, {"hex", 16}, {"HEXUP", 0}, {"bin", 5}, {"oct", 15}, {"lead0", 8},
        {"empty", 77}, {"plus", 7}, {"word", 0}, {"wrap", -1}, {"quoted", 5}, {"frac", 1}, {"missing", 77},
        {"long", 1849262357},  // only the first 29 digits count, wrapped to 32 bits
    };
    // clang-format on
    for (const auto& [key, expected] : rows) EXPECT_EQ(number(ini, "n", key, 77), expected) << key;
    EXPECT_EQ(number(ini, "missing", "plain", -3), -3);
}

TEST(SystemProfile, MissingEntriesTakeDefault) {
    const char* section = "VLCORE test: no such section";
    expect_read(64, "dflt", [&](std::span<char> out) { return profile_string(section, "no key", "dflt  ", out); });
    expect_read(3, "df", [&](std::span<char> out) { return profile_string(section, "no key", "dflt", out); });
    expect_read(64, "dflt", [&](std::span<char> out) { return profile_string(section, nullptr, "dflt", out); });
    EXPECT_EQ(profile_int(section, "no key", -9), -9);
    EXPECT_EQ(profile_int("windows", "VLCORE test: no such key", 5), 5);
}

TEST_F(ProfileTest, SystemProfileComesFromEnvironment) {
#ifdef _WIN32
    GTEST_SKIP() << "the system profile is the real one on Windows";
#else
    const std::string ini = file("system.ini", "[intl]\nsCountry=Iceland\niCountry=354\n[windows]\nload=\n");
    const struct {
        const char* name;
        std::optional<std::string> variable;  // none: unset
        const char* section;
        const char* key;
        std::string_view expected;
        int32_t number;
    } rows[] = {
        {"value", ini, "intl", "sCountry", "Iceland", 0},
        {"number", ini, "INTL", "iCountry", "354", 354},
        {"key list", ini, "windows", nullptr, "load\0"sv, 0},
        {"missing key", ini, "intl", "sLanguage", "dflt", -1},
        {"unset", std::nullopt, "intl", "sCountry", "dflt", -1},
        {"empty", "", "intl", "sCountry", "dflt", -1},
        {"missing file", path("none.ini"), "intl", "sCountry", "dflt", -1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        if (row.variable) {
            setenv("VLCORE_PROFILE", row.variable->c_str(), 1);
        } else {
            unsetenv("VLCORE_PROFILE");
        }
        const auto system = [&](std::span<char> out) { return profile_string(row.section, row.key, "dflt", out); };
        const auto null_file = [&](std::span<char> out) {
            return private_profile_string(row.section, row.key, "dflt", out, nullptr);
        };
        expect_read(64, row.expected, system);
        expect_read(64, row.expected, null_file);
        if (row.key != nullptr) {
            EXPECT_EQ(profile_int(row.section, row.key, -1), row.number);
        }
    }
    unsetenv("VLCORE_PROFILE");
#endif
}

}  // namespace
}  // namespace vl::platform
