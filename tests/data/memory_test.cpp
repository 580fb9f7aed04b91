// Memory objects, multi-line text and the raw memory routines.  The
// table-driven cases are in memory.tsv.

#include <algorithm>
#include <string>
#include <vector>

#include "data/data_support.h"
#include "support.h"
#include "vlcore.h"

namespace {

constexpr uint32_t kCreate = 0, kAdd = 4096, kRead = 4097, kFind = 4098, kFree = 4100, kNumbering = 4101;
using vltest::Case;

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
    vltest::each_case("data/memory.tsv", "read", [&](const Case& c) {
        const auto size = static_cast<uint32_t>(c.number(0));
        const std::string want = *c.text(2);
        vltest::Poisoned buf(12);
        EXPECT_EQ(KELUTIL_MemObject(&o.slot, kRead, 1, buf.data(), size), c.number(1));
        EXPECT_EQ(std::string(buf.data(), want.size()), want);
        EXPECT_TRUE(buf.clean_from(want.size()));
    });
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
    vltest::each_case("data/memory.tsv", "lines", [&](const Case& c) {
        auto text = vltest::writable(*c.text(0));
        uint16_t n = 0xCCCC;
        EXPECT_EQ(KELUTIL_MultiLineControl(text.data(), &n, 0), nullptr);
        EXPECT_EQ(n, c.number(1));
    });
}

TEST(MultiLine, NextLine) {
    vltest::each_case("data/memory.tsv", "next", [](const Case& c) {
        auto text = vltest::writable(*c.text(0));
        vltest::Poisoned line(8);
        EXPECT_EQ(KELUTIL_MultiLineControl(line.data(), text.data(), 2), text.data() + c.number(2));
        EXPECT_EQ(line.text(), *c.text(1));
        EXPECT_TRUE(line.clean_from(c.text(1)->size() + 1));
        EXPECT_EQ(std::string(text.data()), *c.text(0)) << "the text is left as it was";
    });
    vltest::Poisoned line(8);
    EXPECT_EQ(KELUTIL_MultiLineControl(line.data(), nullptr, 2), nullptr);
    EXPECT_EQ(line.text(), "");
}

TEST(MultiLine, Reverse) {
    vltest::each_case("data/memory.tsv", "reverse", [&](const Case& c) {
        const std::string& before = *c.text(0);
        const std::string& after = *c.text(1);
        auto text = vltest::writable(before, 16);
        EXPECT_EQ(KELUTIL_MultiLineControl(text.data(), nullptr, 1), nullptr);
        EXPECT_EQ(std::string(text.data()), after);
        // Nothing behind the rebuilt text and the old one.
        for (std::size_t i = std::max(after.size(), before.size()) + 1; i < text.size(); ++i)
            EXPECT_EQ(static_cast<unsigned char>(text[i]), vltest::kPoison) << i;
    });
}

TEST(MultiLine, ReverseBeyondItsLimitsLeavesTheText) {
    const std::string longest(239, 'x'), too_long(240, 'x');
    auto ok = vltest::writable(longest + "\nb");
    KELUTIL_MultiLineControl(ok.data(), nullptr, 1);
    EXPECT_EQ(std::string(ok.data()), "b\r\n" + longest);
    auto wide = vltest::writable(too_long + "\nb");
    KELUTIL_MultiLineControl(wide.data(), nullptr, 1);
    EXPECT_EQ(std::string(wide.data()), too_long + "\nb");
    std::string many;
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
    vltest::each_case("data/memory.tsv", "rowcol", [&](const Case& c) {
        std::string d = *c.text(0);
        const auto field = [&](std::size_t i) { return static_cast<uint32_t>(c.number(i)); };
        EXPECT_EQ(KELUTIL_RowColChange(d.data(), field(1), field(2), field(3)), 0);
        EXPECT_EQ(d, *c.text(4));
    });
    // A size beyond all memory has no work block.
    char one = 'x';
    EXPECT_EQ(KELUTIL_RowColChange(&one, 0xFFFF, 0xFFFF, 0xFFFFFFFF), 1);
    EXPECT_EQ(one, 'x');
}

}  // namespace
