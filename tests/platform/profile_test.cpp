// The same table, profile_cases.tsv, runs natively and, in the Windows build
// under Wine, against the system's own profile calls: that is what keeps the
// native reader answering exactly like the real one, truncation quirks
// included.

#include <cstdio>
#include <deque>
#include <filesystem>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "data/data_support.h"
#include "platform/platform.h"
#include "support.h"

namespace vl::platform {
namespace {

using vltest::Case;

// Runs `read` on a poisoned buffer of `size` bytes: the answer must be
// `expected` plus one zero, and every later byte, up to a guard zone past
// the end of the buffer, must be left alone.
template <typename Read>
void expect_read(std::size_t size, std::string_view expected, Read read) {
    ASSERT_TRUE(size == 0 ? expected.empty() : expected.size() < size) << "bad row";
    vltest::Poisoned buf(size + 4);
    EXPECT_EQ(read(std::span<char>(buf.data(), size)), expected.size());
    const std::size_t written = size > 0 ? expected.size() + 1 : 0;
    EXPECT_EQ(std::string(buf.data(), written), size > 0 ? std::string(expected) + '\0' : "");
    EXPECT_TRUE(buf.clean_from(written));
}

// Under Windows GetPrivateProfileIntA reads the numbers, as the oracle for
// profile_int's conversion; natively the file becomes the system profile.
int32_t number(const std::string& file, const char* section, const char* key, int32_t def) {
#ifdef _WIN32
    return static_cast<int32_t>(GetPrivateProfileIntA(section, key, def, file.c_str()));
#else
    vltest::set_env("VLCORE_PROFILE", file.c_str());
    const int32_t n = profile_int(section, key, def);
    vltest::set_env("VLCORE_PROFILE", nullptr);
    return n;
#endif
}

// The system profile through its own calls and through a null file name.
void check_system([[maybe_unused]] const Case& c, [[maybe_unused]] const char* variable) {
#ifndef _WIN32
    vltest::set_env("VLCORE_PROFILE", variable);
    const char *section = c.c_str(1), *key = c.c_str(2);
    expect_read(64, c.text(3).value(), [&](std::span<char> out) { return profile_string(section, key, "dflt", out); });
    expect_read(64, c.text(3).value(),
                [&](std::span<char> out) { return private_profile_string(section, key, "dflt", out, nullptr); });
    if (key) {
        EXPECT_EQ(profile_int(section, key, -1), c.number(4));
    }
    vltest::set_env("VLCORE_PROFILE", nullptr);
#endif
}

TEST(Profile, Cases) {
    // Every file gets a name of its own: the Windows calls cache files by
    // name and time stamp, which a rewrite within the same clock tick can
    // fool.  Without contents a file is left off the disk.
    std::deque<vltest::ScratchFile> scratch;
    const auto make = [&](const std::string& name, const std::optional<std::string>& text) -> std::string {
        const auto& f = scratch.emplace_back(name, text.value_or(""));
        if (!text) std::remove(f.path());
        return f.path();
    };
    std::map<std::string, std::vector<std::pair<std::string, std::string>>> files;  // name: line ends, path
    const auto paths_of = [&](const std::string& name) {
        if (!files.contains(name)) files[name] = {{"no file", make(name, std::nullopt)}};
        return files[name];
    };
    for (const Case& c : vltest::cases("platform/profile_cases.tsv")) {
        SCOPED_TRACE(c.kind + ": " + c.what);
        const std::string name = c.text(0).value_or("");
        if (c.kind == "file") {
            std::istringstream ends(name);
            for (std::string end; ends >> end;) {
                const std::string eol = end == "crlf" ? "\r\n" : end == "cr" ? "\r" : "\n";
                std::string text;
                for (char ch : c.text(1).value()) text += ch == '\n' ? eol : std::string(1, ch);
                files[c.what].emplace_back(end, make(c.what, text));
            }
        } else if (c.kind == "read") {
            for (const auto& [end, path] : paths_of(name)) {
                SCOPED_TRACE("line ends " + end);
                expect_read(c.number(4), c.text(5).value(), [&](std::span<char> out) {
                    return private_profile_string(c.c_str(1), c.c_str(2), c.c_str(3), out, path.c_str());
                });
                EXPECT_TRUE(end != "no file" || !std::filesystem::exists(path)) << "a read makes no file";
            }
        } else if (c.kind == "write") {
            const std::string path = make(name, c.text(1));
            EXPECT_EQ(write_private_profile_string(c.c_str(2), c.c_str(3), c.c_str(4), path.c_str()), c.number(5) != 0);
            if (const auto& left = c.text(6))
                EXPECT_NE(vltest::read_file(path).find(*left), std::string::npos)
                    << testing::PrintToString(vltest::read_file(path));
            else
                EXPECT_FALSE(std::filesystem::exists(path));
            files[name] = {{"as written", path}};
        } else if (c.kind == "int") {
            const std::string path = paths_of(name).front().second;
            EXPECT_EQ(number(path, c.c_str(1), c.c_str(2), static_cast<int32_t>(c.number(3))), c.number(4));
        } else {
            ASSERT_EQ(c.kind, "system");
            check_system(c, c.text(0) && !name.empty() ? paths_of(name).front().second.c_str() : c.c_str(0));
        }
    }
}

TEST(SystemProfile, MissingEntriesTakeDefault) {
    const char* section = "VLCORE test: no such section";
    expect_read(64, "dflt", [&](std::span<char> out) { return profile_string(section, "no key", "dflt  ", out); });
    expect_read(3, "df", [&](std::span<char> out) { return profile_string(section, "no key", "dflt", out); });
    expect_read(64, "dflt", [&](std::span<char> out) { return profile_string(section, nullptr, "dflt", out); });
    EXPECT_EQ(profile_int(section, "no key", -9), -9);
    EXPECT_EQ(profile_int("windows", "VLCORE test: no such key", 5), 5);
}

}  // namespace
}  // namespace vl::platform
