// KelMath_Sort: quicksort with pseudo-random pivots and insertion sort for
// short ranges, moving a tag with every key.  The pivot seed starts afresh
// on every call, so the same input always gives the same order of equal
// keys.

#include <array>
#include <cstdint>

#include "vlcore.h"

namespace vl::math {

namespace {

// Ranges shorter than this (h - l below it) are sorted by insertion.
constexpr int64_t kInsertionSpan = 7;
// The stack of pending ranges holds 50 numbers, two per range.
constexpr std::size_t kStackNumbers = 50;
// The pivot sequence.
constexpr int64_t kPivotMultiplier = 211;
constexpr int64_t kPivotIncrement = 1663;
constexpr int64_t kPivotModulus = 7875;

enum Result : int32_t { kSorted = 0, kStackFull = 1 };

// Positions count from 1, as the pivot sequence does; key(i) is keys[i - 1].
template <bool kAscending>
struct Sorter {
    double* keys;
    int32_t* tags;
    int64_t n;

    // True when key `a` belongs nearer the front than `b`.
    static bool before(double a, double b) noexcept { return kAscending ? a < b : a > b; }
    static bool after(double a, double b) noexcept { return kAscending ? a > b : a < b; }

    double& key(int64_t i) const noexcept { return keys[i - 1]; }
    int32_t& tag(int64_t i) const noexcept { return tags[i - 1]; }
    void move(int64_t to, int64_t from) const noexcept {
        key(to) = key(from);
        tag(to) = tag(from);
    }

    void insertion(int64_t l, int64_t h) const noexcept {
        for (int64_t j = l + 1; j <= h; ++j) {
            const double a = key(j);
            const int32_t t = tag(j);
            int64_t i = j - 1;
            for (; i >= 1 && before(a, key(i)); --i) move(i + 1, i);
            key(i + 1) = a;
            tag(i + 1) = t;
        }
    }

    int32_t run() const noexcept {
        std::array<int64_t, kStackNumbers> stack{};
        std::size_t top = 0;
        int64_t l = 1, h = n, f = 0;
        for (;;) {
            // 1. Short ranges by insertion, then the next pending range.
            if (h - l < kInsertionSpan) {
                insertion(l, h);
                if (top == 0) return kSorted;
                h = stack[--top];
                l = stack[--top];
                continue;
            }
            // 2. A pseudo-random pivot; its place takes the pair at l, and
            //    the gap stands at l.
            f = (kPivotMultiplier * f + kPivotIncrement) % kPivotModulus;
            const int64_t q = l + ((h - l + 1) * f) / kPivotModulus;
            const double a = key(q);
            const int32_t a_tag = tag(q);
            move(q, l);
            // 3. Partition around it, moving the gap from side to side.
            int64_t i = l, j = h;
            for (;;) {
                while (j > 0 && before(a, key(j))) --j;
                if (j <= i) {
                    key(i) = a;
                    tag(i) = a_tag;
                    break;
                }
                move(i, j);
                ++i;
                while (i <= n && after(a, key(i))) ++i;
                if (j <= i) {
                    key(j) = a;
                    tag(j) = a_tag;
                    i = j;
                    break;
                }
                move(j, i);
                --j;
            }
            // 4. Go on with the smaller side, keep the larger for later;
            //    that keeps the stack short.
            if (top + 2 > kStackNumbers) return kStackFull;
            if (h - i >= i - l) {
                stack[top++] = i + 1;
                stack[top++] = h;
                h = i - 1;
            } else {
                stack[top++] = l;
                stack[top++] = i - 1;
                l = i + 1;
            }
        }
    }
};

}  // namespace

}  // namespace vl::math

using namespace vl::math;

extern "C" int32_t VLAPI KelMath_Sort(uint32_t n, int32_t* tags, double* keys, uint32_t flags) noexcept {
    // Only the order bit is read.
    if (flags & VL_SORT_ASCENDING) return Sorter<true>{keys, tags, n}.run();
    return Sorter<false>{keys, tags, n}.run();
}
