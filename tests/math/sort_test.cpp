// Sorting keys with their tags.

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "support.h"
#include "vlcore.h"

namespace {

struct SortCase {
    const char* name;
    std::vector<double> keys;
    std::vector<int32_t> tags;
    uint32_t flags;
    std::vector<double> sorted_keys;
    std::vector<int32_t> sorted_tags;
};

TEST(Sort, SmallCases) {
    const SortCase cases[] = {
        {"descending", {3, 1, 2}, {30, 10, 20}, 0, {3, 2, 1}, {30, 20, 10}},
        {"ascending", {3, 1, 2}, {30, 10, 20}, 32, {1, 2, 3}, {10, 20, 30}},
        {"only bit 0x20 counts", {3, 1, 2}, {30, 10, 20}, 0xFFDF, {3, 2, 1}, {30, 20, 10}},
        {"empty", {}, {}, 32, {}, {}},
        {"one", {5}, {50}, 0, {5}, {50}},
        {"missing value is a tiny negative",
         {0.0, VL_MISSING_VALUE, -1.0},
         {1, 2, 3},
         32,
         {-1.0, VL_MISSING_VALUE, 0.0},
         {3, 2, 1}},
        {"twelve, partitioned",
         {5, 3, 9, 1, 12, 7, 8, 2, 11, 4, 10, 6},
         {5, 3, 9, 1, 12, 7, 8, 2, 11, 4, 10, 6},
         32,
         {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12},
         {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}},
    };
    for (const SortCase& c : cases) {
        SCOPED_TRACE(c.name);
        auto keys = c.keys;
        auto tags = c.tags;
        EXPECT_EQ(KelMath_Sort(static_cast<uint32_t>(keys.size()), tags.data(), keys.data(), c.flags), 0);
        EXPECT_EQ(keys, c.sorted_keys);
        EXPECT_EQ(tags, c.sorted_tags);
    }
}

TEST(Sort, ZeroCountTouchesNothing) {
    double key = 2.0;
    int32_t tag = 9;
    EXPECT_EQ(KelMath_Sort(0, &tag, &key, 32), 0);
    EXPECT_EQ(key, 2.0);
    EXPECT_EQ(tag, 9);
}

// Keys drawn from few values; each tag names its original position, so the
// pairing can be checked against the input.
void check_large(std::size_t n, int distinct, uint32_t flags, uint32_t seed) {
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> value(0, distinct - 1);
    std::vector<double> keys(n), original(n);
    std::vector<int32_t> tags(n);
    for (std::size_t i = 0; i < n; ++i) {
        keys[i] = original[i] = value(rng) * 0.5 - 3.0;
        tags[i] = static_cast<int32_t>(i);
    }
    ASSERT_EQ(KelMath_Sort(static_cast<uint32_t>(n), tags.data(), keys.data(), flags), 0);
    const bool ascending = flags & VL_SORT_ASCENDING;
    for (std::size_t i = 1; i < n; ++i)
        ASSERT_TRUE(ascending ? keys[i - 1] <= keys[i] : keys[i - 1] >= keys[i]) << "at " << i;
    std::vector<char> seen(n, 0);
    for (std::size_t i = 0; i < n; ++i) {
        ASSERT_GE(tags[i], 0);
        ASSERT_LT(static_cast<std::size_t>(tags[i]), n);
        ASSERT_EQ(original[static_cast<std::size_t>(tags[i])], keys[i]) << "tag left its key at " << i;
        ASSERT_FALSE(seen[static_cast<std::size_t>(tags[i])]) << "tag twice at " << i;
        seen[static_cast<std::size_t>(tags[i])] = 1;
    }
}

TEST(Sort, LargeWithRepeats) {
    struct Case {
        std::size_t n;
        int distinct;
        uint32_t flags;
    };
    const Case cases[] = {{2000, 7, 32},   {2000, 7, 0},   {100000, 50, 32},     {100000, 50, 0},
                          {100000, 1, 32}, {100000, 2, 0}, {100000, 100000, 32}, {8, 3, 32}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.n) + " keys, " + std::to_string(c.distinct) + " values, flags " +
                     std::to_string(c.flags));
        check_large(c.n, c.distinct, c.flags, static_cast<uint32_t>(c.n + c.distinct));
    }
}

TEST(Sort, AlreadyOrderedAndReversed) {
    for (uint32_t flags : {0u, 32u}) {
        SCOPED_TRACE(flags);
        std::vector<double> keys(50000);
        std::vector<int32_t> tags(keys.size());
        for (std::size_t i = 0; i < keys.size(); ++i)
            keys[i] = static_cast<double>(i), tags[i] = -static_cast<int32_t>(i);
        ASSERT_EQ(KelMath_Sort(static_cast<uint32_t>(keys.size()), tags.data(), keys.data(), flags), 0);
        for (std::size_t i = 0; i < keys.size(); ++i) {
            const double want = flags ? static_cast<double>(i) : static_cast<double>(keys.size() - 1 - i);
            ASSERT_EQ(keys[i], want);
            ASSERT_EQ(tags[i], -static_cast<int32_t>(want));
        }
    }
}

TEST(Sort, SameInputSameOrderOfEqualKeys) {
    std::mt19937 rng(3);
    std::vector<double> keys(5000);
    std::vector<int32_t> tags(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i)
        keys[i] = static_cast<double>(rng() % 10), tags[i] = static_cast<int32_t>(i);
    auto k1 = keys, k2 = keys;
    auto t1 = tags, t2 = tags;
    ASSERT_EQ(KelMath_Sort(static_cast<uint32_t>(keys.size()), t1.data(), k1.data(), 0), 0);
    ASSERT_EQ(KelMath_Sort(static_cast<uint32_t>(keys.size()), t2.data(), k2.data(), 0), 0);
    EXPECT_EQ(t1, t2);
}

}  // namespace
