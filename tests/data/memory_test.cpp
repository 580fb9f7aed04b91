// Memory objects, multi-line text and the raw memory routines.

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "data/data_support.h"
#include "support.h"
#include "vlcore.h"

namespace {

constexpr uint32_t kCreate = 0, kAdd = 4096, kRead = 4097, kFind = 4098, kFree = 4100, kNumbering = 4101;

// The block size the object records for itself.
unsigned recorded_size(VL_HGLOBAL h) {
    const auto* p = static_cast<const unsigned char*>(vltest::block_lock(h));
    const unsigned n = p[10] | p[11] << 8;
    vltest::block_unlock(h);
    return n;
}

// An object that frees itself.
class Object {
  public:
    Object(uint32_t first_base, uint32_t second_base) {
        EXPECT_EQ(KELUTIL_MemObject(&slot, kCreate, first_base, nullptr, second_base), 1);
    }
    ~Object() {
        if (slot) KELUTIL_MemObject(&slot, kFree, 0, nullptr, 0);
    }
    uint16_t add(const std::string& s) {
        return KELUTIL_MemObject(&slot, kAdd, 0, const_cast<char*>(s.c_str()), static_cast<uint32_t>(s.size() + 1));
    }
    std::string read(uint32_t index) {
        std::vector<char> buf(20000);
        const uint16_t n = KELUTIL_MemObject(&slot, kRead, index, buf.data(), static_cast<uint32_t>(buf.size()));
        if (n == 0) return "<none>";
        EXPECT_EQ(buf[n - 1], '\0');
        return std::string(buf.data(), n - 1);
    }
    uint16_t find(const char* s) { return KELUTIL_MemObject(&slot, kFind, 0, const_cast<char*>(s), 0); }
    VL_HGLOBAL slot = nullptr;
};

TEST(MemObject, NewBlockIsZeroFilledWithItsLayout) {
    Object o(7, 9);
    ASSERT_NE(o.slot, nullptr);
    ASSERT_GE(vltest::block_size(o.slot), 6112u);
    const auto* p = static_cast<const unsigned char*>(vltest::block_lock(o.slot));
    auto u16 = [p](int at) { return static_cast<unsigned>(p[at] | p[at + 1] << 8); };
    EXPECT_EQ(u16(0), 0u);     // count
    EXPECT_EQ(u16(2), 7u);     // first base
    EXPECT_EQ(u16(4), 9u);     // second base
    EXPECT_EQ(u16(8), 2016u);  // free offset
    EXPECT_EQ(u16(10), 6112u);
    for (int i = 2016; i < 6112; ++i) ASSERT_EQ(p[i], 0) << i;
    vltest::block_unlock(o.slot);
}

TEST(MemObject, FirstNumbering) {
    Object o(100, 0);
    EXPECT_EQ(o.add("alpha"), 100);
    EXPECT_EQ(o.add("beta"), 101);
    EXPECT_EQ(o.read(101), "beta");
    EXPECT_EQ(o.read(100), "alpha");
    EXPECT_EQ(o.read(102), "<none>");
    EXPECT_EQ(o.read(99), "<none>");
    EXPECT_EQ(o.find("BETA"), 101);
    EXPECT_EQ(o.find("gamma"), 0);
    // The numbering command needs a second base to turn anything on.
    EXPECT_EQ(KELUTIL_MemObject(&o.slot, kNumbering, 1, nullptr, 0), 0);
    EXPECT_EQ(o.add("gamma"), 102);
}

TEST(MemObject, SecondNumbering) {
    Object o(100, 1000);
    EXPECT_EQ(o.add("zero"), 100);
    EXPECT_EQ(KELUTIL_MemObject(&o.slot, kNumbering, 1, nullptr, 0), 0);
    EXPECT_EQ(o.add("one"), 1001);
    EXPECT_EQ(o.read(1000), "zero");
    EXPECT_EQ(o.read(100), "zero");
    EXPECT_EQ(o.read(1001), "one");
    // Find answers in the first numbering whatever the flag.
    EXPECT_EQ(o.find("one"), 101);
    EXPECT_EQ(KELUTIL_MemObject(&o.slot, kNumbering, 0, nullptr, 0), 0);
    EXPECT_EQ(o.add("two"), 102);
}

TEST(MemObject, ShortReadHasNoTerminator) {
    Object o(1, 0);
    ASSERT_EQ(o.add("hello"), 1);
    struct Case {
        const char* what;
        uint32_t size;
        uint16_t copied;
        std::string bytes;
    };
    const Case cases[] = {
        {"room to spare", 10, 6, std::string("hello\0", 6)},
        {"exact fit", 6, 6, std::string("hello\0", 6)},
        {"one byte short", 5, 5, "hello"},
        {"empty buffer", 0, 0, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        vltest::Poisoned buf(12);
        EXPECT_EQ(KELUTIL_MemObject(&o.slot, kRead, 1, buf.data(), c.size), c.copied);
        EXPECT_EQ(std::string(buf.data(), c.copied), c.bytes);
        EXPECT_TRUE(buf.clean_from(c.copied));
    }
    EXPECT_EQ(KELUTIL_MemObject(&o.slot, kRead, 1, nullptr, 10), 0);
}

TEST(MemObject, FullObjectRefuses) {
    Object o(1, 0);
    for (int i = 0; i < 500; ++i) ASSERT_EQ(o.add("x" + std::to_string(i)), i + 1) << i;
    const VL_HGLOBAL before = o.slot;
    EXPECT_EQ(o.add("one too many"), 0);
    EXPECT_EQ(o.slot, before);
    EXPECT_EQ(o.read(500), "x499");
    EXPECT_EQ(o.find("one too many"), 0);
}

TEST(MemObject, GrowsByFiveTimesTheItem) {
    Object o(1, 0);
    const std::string big(4000, 'a');
    ASSERT_EQ(o.add(big), 1);  // 2016 + 4001 < 6112: no growth
    EXPECT_EQ(recorded_size(o.slot), 6112u);
    const std::string more(200, 'b');
    ASSERT_EQ(o.add(more), 2);  // 6017 + 201 >= 6112: grows to 6017 + 5 * 201
    EXPECT_EQ(recorded_size(o.slot), 6017u + 5 * 201);
    EXPECT_EQ(o.read(1), big);
    EXPECT_EQ(o.read(2), more);
}

TEST(MemObject, NeverPastSixteenBits) {
    Object o(1, 0);
    const std::string item(9000, 'q');
    int added = 0;
    while (o.add(item) != 0) ++added;
    ASSERT_NE(o.slot, nullptr);
    // (65535 - 2016) / 9001 items fit below the limit.
    EXPECT_EQ(added, 7);
    EXPECT_EQ(recorded_size(o.slot), 65535u);
    EXPECT_EQ(o.read(7), item);
    EXPECT_EQ(o.add("small"), 8);
}

TEST(MemObject, NullHandleAndUnknownCommands) {
    VL_HGLOBAL none = nullptr;
    char text[] = "x";
    for (uint32_t cmd : {kAdd, kRead, kFind, kFree, kNumbering, 4099u}) {
        SCOPED_TRACE(cmd);
        EXPECT_EQ(KELUTIL_MemObject(&none, cmd, 0, text, 2), 0);
        EXPECT_EQ(none, nullptr);
    }
    Object o(1, 0);
    EXPECT_EQ(KELUTIL_MemObject(&o.slot, kAdd, 0, nullptr, 4), 0);
    // High bits of the command don't count.
    EXPECT_EQ(KELUTIL_MemObject(&o.slot, 0x10000 + kAdd, 0, text, 2), 1);
    EXPECT_EQ(KELUTIL_MemObject(&o.slot, kFree, 0, nullptr, 0), 1);
    EXPECT_EQ(o.slot, nullptr);
}

TEST(MultiLine, CountLines) {
    struct Case {
        const char* text;
        uint16_t lines;
    };
    const Case cases[] = {{"", 1}, {"a", 1}, {"a\nb", 2}, {"a\nb\n", 2}, {"a\n\n", 2}, {"\n", 1}, {"a\r\nb\r\n", 2}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto text = vltest::writable(c.text);
        uint16_t n = 0xCCCC;
        EXPECT_EQ(KELUTIL_MultiLineControl(text.data(), &n, 0), nullptr);
        EXPECT_EQ(n, c.lines);
    }
}

TEST(MultiLine, NextLine) {
    auto text = vltest::writable("a\r\nb");
    vltest::Poisoned line(8);
    char* p = KELUTIL_MultiLineControl(line.data(), text.data(), 2);
    EXPECT_EQ(line.text(), "a");
    EXPECT_TRUE(line.clean_from(2));
    ASSERT_EQ(p, text.data() + 3);
    p = KELUTIL_MultiLineControl(line.data(), p, 2);
    EXPECT_EQ(line.text(), "b");
    EXPECT_EQ(p, text.data() + 4);
    EXPECT_EQ(std::string(text.data()), "a\r\nb");  // unchanged
    p = KELUTIL_MultiLineControl(line.data(), p, 2);
    EXPECT_EQ(line.text(), "");
    EXPECT_EQ(p, text.data() + 4);
    // Carriage returns at the end of the last line are all cut; inside a
    // line feed's line only the one in front of it.
    auto tail = vltest::writable("x\r\r");
    EXPECT_EQ(KELUTIL_MultiLineControl(line.data(), tail.data(), 2), tail.data() + 3);
    EXPECT_EQ(line.text(), "x");
    auto twice = vltest::writable("y\r\r\nz");
    EXPECT_EQ(KELUTIL_MultiLineControl(line.data(), twice.data(), 2), twice.data() + 4);
    EXPECT_EQ(line.text(), "y\r");
    EXPECT_EQ(KELUTIL_MultiLineControl(line.data(), nullptr, 2), nullptr);
    EXPECT_EQ(line.text(), "");
}

TEST(MultiLine, Reverse) {
    struct Case {
        const char* text;
        std::string reversed;
    };
    const Case cases[] = {
        {"a\nb\nc", "c\r\nb\r\na"},
        {"a\nb\nc\n", "c\r\nb\r\na"},
        {"a\r\nb\r\n", "b\r\na"},
        {"one", "one"},
        {"", ""},
        {"a\n\nb", "b\r\n\r\na"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto text = vltest::writable(c.text, 16);
        EXPECT_EQ(KELUTIL_MultiLineControl(text.data(), nullptr, 1), nullptr);
        EXPECT_EQ(std::string(text.data()), c.reversed);
        // Nothing behind the rebuilt text and the old one.
        for (std::size_t i = std::max(c.reversed.size(), std::strlen(c.text)) + 1; i < text.size(); ++i)
            EXPECT_EQ(static_cast<unsigned char>(text[i]), vltest::kPoison) << i;
    }
}

TEST(MultiLine, ReverseBeyondItsLimitsLeavesTheText) {
    const std::string longest(239, 'x'), too_long(240, 'x');
    auto ok = vltest::writable(longest + "\nb");
    KELUTIL_MultiLineControl(ok.data(), nullptr, 1);
    EXPECT_EQ(std::string(ok.data()), "b\r\n" + longest);
    auto wide = vltest::writable(too_long + "\nb");
    KELUTIL_MultiLineControl(wide.data(), nullptr, 1);
    EXPECT_EQ(std::string(wide.data()), too_long + "\nb");
    std::string many, many_reversed;
    for (int i = 0; i < 501; ++i) many += "l\n";
    auto tall = vltest::writable(many);
    KELUTIL_MultiLineControl(tall.data(), nullptr, 1);
    EXPECT_EQ(std::string(tall.data()), many);
}

TEST(RawMemory, MemCopyIsForwardAndSourceFirst) {
    char buf[] = "abcdef";
    EXPECT_EQ(KELUTIL_MemCopy(buf, buf + 1, 4), 0);
    EXPECT_STREQ(buf, "aaaaaf");  // a forward byte copy repeats the first byte
    char to[4] = {'x', 'x', 'x', 'x'};
    EXPECT_EQ(KELUTIL_MemCopy("pq", to, 2), 0);
    EXPECT_EQ(std::string(to, 4), "pqxx");
    EXPECT_EQ(KELUTIL_MemCopy("pq", to, -1), 0);
    EXPECT_EQ(std::string(to, 4), "pqxx");
}

TEST(RawMemory, StructCompare) {
    EXPECT_EQ(KELUTIL_StructCompare("abc", "abd", 0), 0);
    EXPECT_EQ(KELUTIL_StructCompare("abc", "abd", 2), 0);
    EXPECT_EQ(KELUTIL_StructCompare("abc", "abd", 3), 1);
    EXPECT_EQ(KELUTIL_StructCompare("abd", "abc", 3), 1);
}

TEST(RawMemory, RowColChange) {
    struct Case {
        const char* what;
        std::string data;
        uint32_t rows, columns, item;
        std::string result;
    };
    const Case cases[] = {
        {"2x3 bytes", "abcdef", 2, 3, 1, "adbecf"},
        {"3x2 bytes", "adbecf", 3, 2, 1, "abcdef"},
        {"2x2 of two bytes", "AaBbCcDd", 2, 2, 2, "AaCcBbDd"},
        {"one row", "abc", 1, 3, 1, "abc"},
        {"zero rows", "abc", 0, 3, 1, "abc"},
        {"rows use 16 bits", "abcdef", 0x10002, 3, 1, "adbecf"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        std::string d = c.data;
        EXPECT_EQ(KELUTIL_RowColChange(d.data(), c.rows, c.columns, c.item), 0);
        EXPECT_EQ(d, c.result);
    }
    // A size beyond all memory has no work block.
    char one = 'x';
    EXPECT_EQ(KELUTIL_RowColChange(&one, 0xFFFF, 0xFFFF, 0xFFFFFFFF), 1);
    EXPECT_EQ(one, 'x');
}

}  // namespace
