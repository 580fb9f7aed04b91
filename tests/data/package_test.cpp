// Packages and the thin file wrappers.

#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "data/data_support.h"
#include "support.h"
#include "vlcore.h"

namespace {

using vltest::ScratchFile;

void put32(std::string& s, std::size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) s[at + i] = static_cast<char>(v >> (8 * i));
}

struct Member {
    std::string name;  // up to 16 bytes; 16 leave no terminator
    uint32_t offset;
    uint32_t size;
};

// A package whose header gives `count` rows and whose rows are `members`;
// the data area follows the rows.
std::string package(int32_t count, const std::vector<Member>& members, const std::string& data) {
    std::string s(24 + 24 * members.size(), '\0');
    std::memcpy(s.data(), "header bytes unread.", 20);
    put32(s, 20, static_cast<uint32_t>(count));
    for (std::size_t i = 0; i < members.size(); ++i) {
        std::memcpy(s.data() + 24 + 24 * i, members[i].name.data(), std::min<std::size_t>(16, members[i].name.size()));
        put32(s, 24 + 24 * i + 16, members[i].offset);
        put32(s, 24 + 24 * i + 20, members[i].size);
    }
    return s + data;
}

TEST(Package, Members) {
    // Rows at 24, 48, 72, 96; data from 120.
    const std::string data = "first-data|second|dup-two";
    const std::vector<Member> rows = {
        {"data.txt", 120, 10}, {"second.bin", 131, 6}, {"dup", 138, 3}, {"DUP", 142, 3}};
    const std::string pkg = package(4, rows, data);
    ScratchFile f("package", pkg);
    struct Case {
        const char* what;
        std::string file;
        const char* name;
        std::optional<std::string> got;
    };
    const Case cases[] = {
        {"first row", pkg, "data.txt", "first-data"},
        {"case ignored", pkg, "DATA.TXT", "first-data"},
        {"row at the last position", pkg, "Dup", "dup"},
        {"last row of two", package(2, rows, data), "second.bin", "second"},
        {"first equal row wins", pkg, "dup", "dup"},
        {"absent", pkg, "none", std::nullopt},
        {"count 0 finds nothing", package(0, rows, data), "data.txt", std::nullopt},
        {"negative count finds nothing", package(-1, rows, data), "data.txt", std::nullopt},
        {"count beyond the rows: short row read", package(9, rows, data), "zz", std::nullopt},
        {"row beyond the end", package(1, {{"far", 1000, 4}}, data), "far", std::nullopt},
        {"row running past the end", package(1, {{"far", 140, 10}}, data), "far", std::nullopt},
        {"offset plus size overflows", package(1, {{"far", 0xFFFFFFF0u, 0x20}}, data), "far", std::nullopt},
        {"size 0", package(1, {{"empty", 120, 0}}, data), "empty", std::nullopt},
        {"huge size", package(1, {{"huge", 120, 0xFFFFFFFFu}}, data), "huge", std::nullopt},
        {"16-byte name", package(1, {{"sixteen-bytes.xy", 48, 5}}, "abcde"), "sixteen-bytes.xy", "abcde"},
        {"short header", "tiny", "data.txt", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        f.write(c.file);
        uint32_t size = 0xCCCCCCCC;
        VL_HGLOBAL h = KELUTIL_GetFileFromPackage(f.path(), c.name, &size);
        if (!c.got) {
            EXPECT_EQ(h, nullptr);
            EXPECT_EQ(size, 0xCCCCCCCC);
            continue;
        }
        ASSERT_NE(h, nullptr);
        EXPECT_EQ(size, c.got->size());
        EXPECT_EQ(vltest::take_block(h).substr(0, size), *c.got);
    }
    uint32_t size = 0;
    EXPECT_EQ(KELUTIL_GetFileFromPackage(f.path(), "data.txt", nullptr), nullptr);
    EXPECT_EQ(KELUTIL_GetFileFromPackage("/no/such/package", "data.txt", &size), nullptr);
}

TEST(Files, CreateEmptiesOrMakes) {
    ScratchFile f("create", std::string(100, 'x'));
    const int32_t h = KELUTIL_32FileCreate(f.path(), vltest::kGenericWrite, 0);
    ASSERT_NE(h, -1);
    vltest::close_file(h);
    EXPECT_EQ(f.read(), "");
    ScratchFile g("made");
    std::remove(g.path());
    const int32_t m = KELUTIL_32FileCreate(g.path(), vltest::kGenericWrite, 0);
    ASSERT_NE(m, -1);
    EXPECT_EQ(KELUTIL_32WriteFile(m, "hello", 5), 5u);
    EXPECT_EQ(KELUTIL_JustFileSize(m), 5u);
    vltest::close_file(m);
    EXPECT_EQ(g.read(), "hello");
    EXPECT_EQ(KELUTIL_FileSizeFromName(g.path()), 5u);
    EXPECT_EQ(KELUTIL_32FileCreate("/no/such/dir/x", vltest::kGenericWrite, 0), -1);
}

TEST(Files, TestOpensAndCloses) {
    ScratchFile f("test", "abc");
    // Many tests in a row leave no handle behind to run out of.
    for (int i = 0; i < 3000; ++i) ASSERT_NE(KELUTIL_32FileTest(f.path()), -1) << i;
    std::remove(f.path());
    EXPECT_EQ(KELUTIL_32FileTest(f.path()), -1);
    EXPECT_EQ(KELUTIL_FileSizeFromName(f.path()), 0u);
    EXPECT_EQ(KELUTIL_JustFileSize(-1), 0u);
}

TEST(Files, OpenDispositions) {
    ScratchFile f("open", "abc");
    EXPECT_EQ(KELUTIL_32FileOpen(f.path(), vltest::kGenericWrite, 0, 1), -1);  // create new: exists
    const int32_t h = KELUTIL_32FileOpen(f.path(), vltest::kGenericRead, 3, 3);
    ASSERT_NE(h, -1);
    EXPECT_EQ(KELUTIL_JustFileSize(h), 3u);
    vltest::close_file(h);
    std::remove(f.path());
    EXPECT_EQ(KELUTIL_32FileOpen(f.path(), vltest::kGenericRead, 3, 3), -1);
}

int32_t open_read(const ScratchFile& f) { return KELUTIL_32FileOpen(f.path(), vltest::kGenericRead, 3, 3); }

TEST(Files, Fgets) {
    struct Case {
        const char* what;
        std::string file;
        uint32_t size;
        std::vector<std::optional<std::string>> lines;
    };
    const Case cases[] = {
        {"no final line feed", "ab", 16, {"ab", std::nullopt}},
        {"size 3 cuts", "abcd", 3, {"ab", "cd", std::nullopt}},
        {"line ends stay", "a\r\nb\n", 16, {"a\r\n", "b\n", std::nullopt}},
        {"exact fit", "abc\n", 5, {"abc\n", std::nullopt}},
        {"one byte short", "abc\n", 4, {"abc", "\n", std::nullopt}},
        {"size 1 holds the empty text", "abc", 1, {"", ""}},
        {"size counts 16 bits", "abcd", 0x10003, {"ab", "cd", std::nullopt}},
        {"empty file", "", 8, {std::nullopt}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ScratchFile f("fgets", c.file);
        const int32_t h = open_read(f);
        ASSERT_NE(h, -1);
        for (const auto& want : c.lines) {
            vltest::Poisoned buf(24);
            char* got = KELUTIL_fgets(buf.data(), c.size, h);
            if (!want) {
                EXPECT_EQ(got, nullptr);
                EXPECT_EQ(buf.data()[0], '\0');
                EXPECT_TRUE(buf.clean_from(1));
                continue;
            }
            EXPECT_EQ(got, buf.data());
            EXPECT_EQ(buf.text(), *want);
            EXPECT_TRUE(buf.clean_from(want->size() + 1));
        }
        vltest::close_file(h);
    }
    vltest::Poisoned buf(4);
    EXPECT_EQ(KELUTIL_fgets(buf.data(), 0, -1), nullptr);
    EXPECT_TRUE(buf.clean_from(0));
}

std::string pattern(std::size_t n) {
    std::string s(n, '\0');
    for (std::size_t i = 0; i < n; ++i) s[i] = static_cast<char>(i * 7 + i / 251);
    return s;
}

TEST(Files, Write64KAndRead64K) {
    for (int32_t count : {0, 1, 32767, 32768, 65535, 65536, 70000, 200000}) {
        SCOPED_TRACE(count);
        const std::string data = pattern(static_cast<std::size_t>(count));
        ScratchFile f("big");
        const int32_t w = KELUTIL_32FileCreate(f.path(), vltest::kGenericWrite, 0);
        ASSERT_NE(w, -1);
        EXPECT_EQ(Write64K(w, data.data(), count), 0);
        vltest::close_file(w);
        EXPECT_EQ(f.read(), data);
        const int32_t r = open_read(f);
        ASSERT_NE(r, -1);
        std::string back(static_cast<std::size_t>(count) + 4, '\xCC');
        EXPECT_EQ(Read64K(r, back.data(), count), 0);
        EXPECT_EQ(back.substr(0, data.size()), data);
        EXPECT_EQ(back.substr(data.size()), "\xCC\xCC\xCC\xCC");
        // Nothing more to read: a short read.
        if (count > 0) {
            EXPECT_EQ(Read64K(r, back.data(), 1), 1);
        }
        vltest::close_file(r);
    }
}

TEST(Files, ShortReadsAndWrites) {
    ScratchFile f("short", pattern(65535 + 10));
    const int32_t r = open_read(f);
    ASSERT_NE(r, -1);
    std::string back(70000, '\0');
    EXPECT_EQ(Read64K(r, back.data(), 70000), 1);
    EXPECT_EQ(back.substr(0, 65545), pattern(65545));
    vltest::close_file(r);
    EXPECT_EQ(Read64K(-1, back.data(), 10), 1);
    EXPECT_EQ(Write64K(-1, back.data(), 10), 1);
    EXPECT_EQ(Write64K(-1, back.data(), -5), 1);
}

TEST(Files, HugeWrite) {
    const std::string data = pattern(300000);
    ScratchFile f("huge");
    const int32_t w = KELUTIL_32FileCreate(f.path(), vltest::kGenericWrite, 0);
    ASSERT_NE(w, -1);
    EXPECT_EQ(KELUTIL_HugeWrite(w, data.data(), 300000), 300000);
    vltest::close_file(w);
    EXPECT_EQ(f.read(), data);
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
