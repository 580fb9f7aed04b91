// Memory objects, multi-line text and the raw memory routines.  The
// table-driven cases are in memory.tsv.

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "data/data_support.h"
#include "support.h"
#include "vlcore.h"

namespace {

constexpr uint32_t kCreate = 0, kAdd = 4096, kRead = 4097, kFind = 4098, kFree = 4100, kNumbering = 4101;
using vltest::Case;

// A 16-bit field of the object's header: the count at 0, the two bases
// at 2 and 4, the free offset at 8 and the block size at 10.
unsigned header(VL_HGLOBAL h, int at) {
    const auto* p = static_cast<const unsigned char*>(vltest::block_lock(h));
    const unsigned n = p[at] | p[at + 1] << 8;
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
    const std::pair<int, unsigned> layout[] = {{0, 0}, {2, 7}, {4, 9}, {8, 2016}, {10, 6112}};
    for (const auto& [at, want] : layout) EXPECT_EQ(header(o.slot, at), want) << "at " << at;
    const auto* p = static_cast<const unsigned char*>(vltest::block_lock(o.slot));
    EXPECT_TRUE(std::all_of(p + 2016, p + 6112, [](unsigned char b) { return b == 0; }));
    vltest::block_unlock(o.slot);
}

TEST(MemObject, Numbering) {
    vltest::each_case("data/memory.tsv", "numbering", [](const Case& c) {
        Object o(static_cast<uint32_t>(c.number(0)), static_cast<uint32_t>(c.number(1)));
        std::istringstream steps(*c.text(2));
        for (std::string step; steps >> step;) {
            SCOPED_TRACE(step);
            const std::size_t colon = step.find(':'), equals = step.find('=');
            const std::string verb = step.substr(0, colon), arg = step.substr(colon + 1, equals - colon - 1);
            const std::string want = step.substr(equals + 1);
            if (verb == "add")
                EXPECT_EQ(o.add(arg), std::stoi(want));
            else if (verb == "read")
                EXPECT_EQ(o.read(static_cast<uint32_t>(std::stoul(arg))), want);
            else if (verb == "find")
                EXPECT_EQ(o.find(arg.c_str()), std::stoi(want));
            else if (verb == "mode")
                EXPECT_EQ(KELUTIL_MemObject(&o.slot, kNumbering, std::stoul(arg), nullptr, 0), std::stoi(want));
            else
                ADD_FAILURE() << "unknown step";
        }
    });
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
    EXPECT_EQ(header(o.slot, 10), 6112u);
    const std::string more(200, 'b');
    ASSERT_EQ(o.add(more), 2);  // 6017 + 201 >= 6112: grows to 6017 + 5 * 201
    EXPECT_EQ(header(o.slot, 10), 6017u + 5 * 201);
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
    EXPECT_EQ(header(o.slot, 10), 65535u);
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

void expect_reversed(const std::string& before, const std::string& after) {
    auto text = vltest::writable(before, 16);
    EXPECT_EQ(KELUTIL_MultiLineControl(text.data(), nullptr, 1), nullptr);
    EXPECT_EQ(std::string(text.data()), after);
    // Nothing behind the rebuilt text and the old one.
    EXPECT_TRUE(std::all_of(text.begin() + std::max(after.size(), before.size()) + 1, text.end(),
                            [](char b) { return b == static_cast<char>(vltest::kPoison); }));
}

TEST(MultiLine, Reverse) {
    vltest::each_case("data/memory.tsv", "reverse", [](const Case& c) { expect_reversed(*c.text(0), *c.text(1)); });
    // Beyond its limits, 239 characters a line and 500 lines, it leaves the
    // text as it was.
    const std::string longest(239, 'x'), too_long(240, 'x');
    expect_reversed(longest + "\nb", "b\r\n" + longest);
    expect_reversed(too_long + "\nb", too_long + "\nb");
    std::string many;
    for (int i = 0; i < 501; ++i) many += "l\n";
    expect_reversed(many, many);
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
