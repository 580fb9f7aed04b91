// The host's name tables: lookup, listing, and the tables' shape.  The
// lookup cases are in names.tsv.

#include <set>
#include <string>
#include <vector>

#include "data/data_support.h"
#include "support.h"
#include "vlcore.h"

namespace {

constexpr int32_t kNotFound = 32764;

// Listings arrive here from the library.
std::vector<std::string>* g_received = nullptr;
VL_LRESULT VLAPI receive(VL_HWND window, VL_UINT message, VL_WPARAM first, VL_LPARAM second) {
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(message, 1024u);
    EXPECT_EQ(first, 0u);
    g_received->emplace_back(reinterpret_cast<const char*>(second));
    return 0;
}

std::vector<std::string> listing(uint32_t class_index) {
    std::vector<std::string> got;
    g_received = &got;
    EXPECT_EQ(KELUTIL_Names(class_index, reinterpret_cast<intptr_t>(&receive), 6), 0);
    g_received = nullptr;
    return got;
}

class Names : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(KELUTIL_Names(0, 0, 1), 0); }
};

int32_t lookup(uint32_t class_index, const char* name, uint32_t operation = 0) {
    return KELUTIL_Names(class_index, reinterpret_cast<intptr_t>(name), operation);
}

TEST_F(Names, Lookup) {
    vltest::each_case("data/names.tsv", "lookup", [](const vltest::Case& c) {
        EXPECT_EQ(lookup(static_cast<uint32_t>(c.number(0)), c.c_str(1), static_cast<uint32_t>(c.number(2))),
                  c.number(3));
    });
}

TEST_F(Names, ListingGoesInRowOrder) {
    EXPECT_EQ(listing(7), (std::vector<std::string>{"type INCLUDE", "type PLOTXY"}));
    EXPECT_EQ(listing(33), (std::vector<std::string>{"type AUTOMATE"}));
    EXPECT_TRUE(listing(9).empty());
    // A null function is told nothing and the answer is still 0.
    EXPECT_EQ(KELUTIL_Names(7, 0, 6), 0);
}

TEST_F(Names, ListingToAWindowNeedsALiveWindow) {
    VL_HWND none = nullptr;
    EXPECT_EQ(KELUTIL_Names(7, reinterpret_cast<intptr_t>(&none), 2), 1);
    EXPECT_EQ(KELUTIL_Names(7, 0, 2), 1);
#ifndef _WIN32
    // Natively no handle names a window.
    auto fake = reinterpret_cast<VL_HWND>(static_cast<uintptr_t>(0x1234));
    EXPECT_EQ(KELUTIL_Names(7, reinterpret_cast<intptr_t>(&fake), 2), 1);
#endif
}

// All tables through the listing: 68 classes, 523 names, no name twice in
// a table, every listed name found again, no id twice in a table, and the
// verb classes numbering every entry from 0x8000 up.
TEST_F(Names, TablesHaveTheirShape) {
    const std::set<uint32_t> without = {0,  9,  11, 17, 19, 23, 25, 28, 30, 34, 36, 38, 40, 42, 44, 48, 50, 52,
                                        54, 56, 58, 60, 62, 64, 66, 68, 72, 74, 76, 82, 83, 85, 87, 95, 101};
    const std::set<uint32_t> verbs = {3, 13, 15, 21, 32, 78, 81, 89, 91, 93};
    int classes = 0, names = 0;
    for (uint32_t k = 0; k <= 102; ++k) {
        SCOPED_TRACE("class " + std::to_string(k));
        const auto rows = listing(k);
        EXPECT_EQ(rows.empty(), without.contains(k));
        if (!rows.empty()) ++classes;
        names += static_cast<int>(rows.size());
        std::set<std::string> seen;
        std::set<int32_t> ids;
        for (const auto& line : rows) {
            ASSERT_EQ(line.rfind("type ", 0), 0u) << line;
            const std::string name = line.substr(5);
            EXPECT_TRUE(seen.insert(name).second) << name;
            const int32_t id = lookup(k, name.c_str());
            EXPECT_NE(id, kNotFound) << name;
            EXPECT_TRUE(ids.insert(id).second) << name;
            EXPECT_TRUE(!verbs.contains(k) || id >= 0x8000) << name << " " << id;
        }
    }
    EXPECT_EQ(classes, 68);
    EXPECT_EQ(names, 523);
}

// The start of the library fills the table.
TEST(NamesStart, MainFillsTheTable) {
    ASSERT_EQ(KELUTIL_Main(nullptr, 6100, 0, 0), 3783u);
    EXPECT_EQ(lookup(1, "ADDCOL"), 1);
}

}  // namespace
