// KelMath_Inverse: Gauss-Jordan elimination in place with full pivoting.
// The pivot rule and the sign changes of the exchanges are part of the
// result: they decide which rounding the inverse carries.

#include <array>
#include <cmath>
#include <cstring>
#include <new>
#include <span>
#include <vector>

#include "vlcore.h"

namespace vl::math {

namespace {

// The pivot bookkeeping holds one byte per step.
constexpr uint16_t kMaxOrder = VL_INVERSE_MAX;
constexpr double kSingular = 1e-18;

enum Result : int32_t { kInverted = 0, kRefused = 1, kSingularMatrix = 3 };

int32_t invert(std::span<double> a, std::size_t n) noexcept {
    std::array<uint8_t, kMaxOrder> pivot_row{}, pivot_col{};
    auto at = [&a, n](std::size_t i, std::size_t j) -> double& { return a[i * n + j]; };
    for (std::size_t k = 0; k < n; ++k) {
        // 1. The largest remaining element; on equal magnitudes the later
        //    one wins.
        double big = 0.0;
        std::size_t p = k, q = k;
        for (std::size_t i = k; i < n; ++i)
            for (std::size_t j = k; j < n; ++j)
                if (std::fabs(at(i, j)) >= std::fabs(big)) {
                    big = at(i, j);
                    p = i;
                    q = j;
                }
        pivot_row[k] = static_cast<uint8_t>(p);
        pivot_col[k] = static_cast<uint8_t>(q);
        // 2. Nothing left to divide by.
        if (std::fabs(big) < kSingular) return kSingularMatrix;
        // 3. Bring the pivot row up, changing the sign of the row sent down.
        if (p > k)
            for (std::size_t j = 0; j < n; ++j) {
                const double t = at(k, j);
                at(k, j) = at(p, j);
                at(p, j) = -t;
            }
        // 4. The same for the pivot column.
        if (q > k)
            for (std::size_t i = 0; i < n; ++i) {
                const double t = at(i, k);
                at(i, k) = at(i, q);
                at(i, q) = -t;
            }
        // 5. The pivot column, divided by minus the pivot.
        for (std::size_t i = 0; i < n; ++i)
            if (i != k) at(i, k) /= -big;
        // 6. Eliminate.
        for (std::size_t i = 0; i < n; ++i) {
            if (i == k) continue;
            const double f = at(i, k);
            double* row_i = &at(i, 0);
            const double* row_k = &at(k, 0);
            for (std::size_t j = 0; j < n; ++j)
                if (j != k) row_i[j] += f * row_k[j];
        }
        // 7. The pivot row, divided by the pivot.
        for (std::size_t j = 0; j < n; ++j)
            if (j != k) at(k, j) /= big;
        // 8. The pivot itself.
        at(k, k) = 1.0 / big;
    }
    // 9. Undo the exchanges, last first.
    for (std::size_t k = n; k-- > 0;) {
        const std::size_t p = pivot_row[k], q = pivot_col[k];
        if (p > k)
            for (std::size_t i = 0; i < n; ++i) {
                const double t = at(i, k);
                at(i, k) = -at(i, p);
                at(i, p) = t;
            }
        if (q > k)
            for (std::size_t j = 0; j < n; ++j) {
                const double t = at(k, j);
                at(k, j) = -at(q, j);
                at(q, j) = t;
            }
    }
    return kInverted;
}

}  // namespace

}  // namespace vl::math

using namespace vl::math;

extern "C" int32_t VLAPI KelMath_Inverse(uint32_t n32, double* matrix, uint32_t mode) noexcept {
    const uint16_t n = static_cast<uint16_t>(n32);
    // 1. The bookkeeping has room for 128 steps.
    if (n > kMaxOrder) return kRefused;
    const std::size_t count = static_cast<std::size_t>(n) * n;
    std::span<double> caller(matrix, count);
    if (static_cast<uint16_t>(mode) != 1) return invert(caller, n);
    // 2. On a copy, so that a singular matrix leaves the caller's as it was.
    std::vector<double> work;
    try {
        work.assign(caller.begin(), caller.end());
    } catch (const std::bad_alloc&) {
        return kRefused;
    }
    const int32_t result = invert(work, n);
    if (result == kInverted) std::memcpy(matrix, work.data(), count * sizeof(double));
    return result;
}
