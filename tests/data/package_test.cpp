// Packages and the thin file wrappers.  The table-driven cases are in
// package.tsv.

#include <cstdio>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "data/data_support.h"
#include "support.h"
#include "vlcore.h"

namespace {

using vltest::ScratchFile;

// The package file a row of package.tsv describes.
std::string package(const vltest::Case& c) {
    if (!c.text(0)) return *c.text(2);
    std::string s = "header bytes unread.";
    const auto put32 = [&s](unsigned long v) {
        for (int i = 0; i < 4; ++i) s += static_cast<char>(v >> (8 * i));
    };
    put32(static_cast<unsigned long>(c.number(0)));
    std::istringstream rows(*c.text(1));
    for (std::string row; rows >> row;) {
        const std::size_t a = row.find(':'), b = row.rfind(':');
        s += row.substr(0, a) + std::string(16 - a, '\0');
        put32(std::stoul(row.substr(a + 1, b - a - 1), nullptr, 0));
        put32(std::stoul(row.substr(b + 1), nullptr, 0));
    }
    return s + *c.text(2);
}

TEST(Package, Members) {
    ScratchFile f("package");
    vltest::each_case("data/package.tsv", "member", [&](const vltest::Case& c) {
        f.write(package(c));
        uint32_t size = 0xCCCCCCCC;
        VL_HGLOBAL h = KELUTIL_GetFileFromPackage(f.path(), c.c_str(3), &size);
        const auto& got = c.text(4);
        if (!got) {
            EXPECT_EQ(h, nullptr);
            EXPECT_EQ(size, 0xCCCCCCCC);
            return;
        }
        ASSERT_NE(h, nullptr);
        EXPECT_EQ(size, got->size());
        EXPECT_EQ(vltest::take_block(h).substr(0, size), *got);
    });
    uint32_t size = 0;
    EXPECT_EQ(KELUTIL_GetFileFromPackage(f.path(), "data.txt", nullptr), nullptr);
    EXPECT_EQ(KELUTIL_GetFileFromPackage("/no/such/package", "data.txt", &size), nullptr);
}

int32_t create(const char* path) { return KELUTIL_32FileCreate(path, vltest::kGenericWrite, 0); }
int32_t open_read(const char* path) { return KELUTIL_32FileOpen(path, vltest::kGenericRead, 3, 3); }

TEST(Files, CreateEmptiesOrMakes) {
    ScratchFile f("create", std::string(100, 'x')), g("made");
    std::remove(g.path());
    for (const ScratchFile* file : {&f, &g}) {
        const int32_t h = create(file->path());
        ASSERT_NE(h, -1);
        EXPECT_EQ(KELUTIL_JustFileSize(h), 0u);
        EXPECT_EQ(KELUTIL_32WriteFile(h, "hello", 5), 5u);
        EXPECT_EQ(KELUTIL_JustFileSize(h), 5u);
        vltest::close_file(h);
        EXPECT_EQ(file->read(), "hello");
        EXPECT_EQ(KELUTIL_FileSizeFromName(file->path()), 5u);
    }
    EXPECT_EQ(create("/no/such/dir/x"), -1);
}

TEST(Files, TestOpenAndMissingFiles) {
    ScratchFile f("test", "abc");
    // Many tests in a row leave no handle behind to run out of.
    for (int i = 0; i < 3000; ++i) ASSERT_NE(KELUTIL_32FileTest(f.path()), -1) << i;
    EXPECT_EQ(KELUTIL_32FileOpen(f.path(), vltest::kGenericWrite, 0, 1), -1);  // create new: exists
    const int32_t h = open_read(f.path());
    ASSERT_NE(h, -1);
    EXPECT_EQ(KELUTIL_JustFileSize(h), 3u);
    vltest::close_file(h);
    std::remove(f.path());
    EXPECT_EQ(KELUTIL_32FileTest(f.path()), -1);
    EXPECT_EQ(open_read(f.path()), -1);
    EXPECT_EQ(KELUTIL_FileSizeFromName(f.path()), 0u);
    EXPECT_EQ(KELUTIL_JustFileSize(-1), 0u);
}

TEST(Files, Fgets) {
    vltest::each_case("data/package.tsv", "fgets", [](const vltest::Case& c) {
        ScratchFile f("fgets", *c.text(0));
        const int32_t h = open_read(f.path());
        ASSERT_NE(h, -1);
        for (std::size_t call = 0; call < static_cast<std::size_t>(c.number(2)); ++call) {
            const auto& want = c.text(3 + call);
            vltest::Poisoned buf(24);
            char* got = KELUTIL_fgets(buf.data(), static_cast<uint32_t>(c.number(1)), h);
            EXPECT_EQ(got, want ? buf.data() : nullptr);
            EXPECT_EQ(buf.text(), want.value_or(""));
            EXPECT_TRUE(buf.clean_from(want.value_or("").size() + 1));
        }
        vltest::close_file(h);
    });
    vltest::Poisoned buf(4);
    EXPECT_EQ(KELUTIL_fgets(buf.data(), 0, -1), nullptr);
    EXPECT_TRUE(buf.clean_from(0));
}

std::string pattern(std::size_t n) {
    std::string s(n, '\0');
    for (std::size_t i = 0; i < n; ++i) s[i] = static_cast<char>(i * 7 + i / 251);
    return s;
}

TEST(Files, Write64KHugeWriteAndRead64K) {
    for (int32_t count : {0, 1, 32767, 32768, 65535, 65536, 70000, 300000}) {
        SCOPED_TRACE(count);
        const std::string data = pattern(static_cast<std::size_t>(count));
        ScratchFile f("big"), huge("huge");
        const int32_t w = create(f.path()), hw = create(huge.path());
        ASSERT_NE(w, -1);
        ASSERT_NE(hw, -1);
        EXPECT_EQ(Write64K(w, data.data(), count), 0);
        EXPECT_EQ(KELUTIL_HugeWrite(hw, data.data(), count), count);
        vltest::close_file(w);
        vltest::close_file(hw);
        EXPECT_EQ(f.read(), data);
        EXPECT_EQ(huge.read(), data);
        const int32_t r = open_read(f.path());
        ASSERT_NE(r, -1);
        std::string back(static_cast<std::size_t>(count) + 4, '\xCC');
        EXPECT_EQ(Read64K(r, back.data(), count), 0);
        EXPECT_EQ(back, data + "\xCC\xCC\xCC\xCC");
        // Nothing more to read: a short read.
        EXPECT_EQ(Read64K(r, back.data(), 1), 1);
        vltest::close_file(r);
    }
}

TEST(Files, ShortReadsAndWrites) {
    ScratchFile f("short", pattern(65535 + 10));
    const int32_t r = open_read(f.path());
    ASSERT_NE(r, -1);
    std::string back(70000, '\0');
    EXPECT_EQ(Read64K(r, back.data(), 70000), 1);
    EXPECT_EQ(back.substr(0, 65545), pattern(65545));
    vltest::close_file(r);
    EXPECT_EQ(Read64K(-1, back.data(), 10), 1);
    EXPECT_EQ(Write64K(-1, back.data(), 10), 1);
}

TEST(Files, Copy) {
    ScratchFile src("src", "contents"), dst("dst", "old and longer");
    EXPECT_EQ(KELUTIL_CopyFile(src.path(), dst.path(), 0), 0u);
    EXPECT_EQ(dst.read(), "contents");
    EXPECT_NE(KELUTIL_CopyFile("/no/such/file", dst.path(), 0), 0u);
    EXPECT_EQ(dst.read(), "contents");
    // A read-only source gives a writable copy unless asked to keep it.
    std::filesystem::permissions(src.path(), std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::remove);
    ScratchFile plain("plain"), kept("kept");
    EXPECT_EQ(KELUTIL_CopyFile(src.path(), plain.path(), 0), 0u);
    EXPECT_EQ(KELUTIL_CopyFile(src.path(), kept.path(), 1), 0u);
    using std::filesystem::perms;
    EXPECT_NE(std::filesystem::status(plain.path()).permissions() & perms::owner_write, perms::none);
#ifndef _WIN32
    // What a kept copy carries on Windows is the system copy's business
    // (Wine drops the mark); natively the mode comes along.
    EXPECT_EQ(std::filesystem::status(kept.path()).permissions() & perms::owner_write, perms::none);
#endif
}

}  // namespace
