// Matrix inverse: documented cases, random well-conditioned matrices up to
// the largest order checked by multiplication, singular ones.

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "support.h"
#include "vlcore.h"

namespace {

using Matrix = std::vector<double>;

struct SmallCase {
    const char* name;
    uint32_t n, mode;
    Matrix in;
    int32_t result;
    Matrix out;
};

TEST(Inverse, SmallCases) {
    const SmallCase cases[] = {
        {"2x2", 2, 0, {1, 2, 3, 4}, 0, {-2, 1, 1.5, -0.5}},
        {"2x2 on copy", 2, 1, {1, 2, 3, 4}, 0, {-2, 1, 1.5, -0.5}},
        {"exchange", 2, 0, {0, 1, 1, 0}, 0, {0, 1, 1, 0}},
        {"singular on copy", 2, 1, {1, 2, 2, 4}, 3, {1, 2, 2, 4}},
        {"1x1", 1, 0, {5}, 0, {0.2}},
        {"1x1 zero", 1, 0, {0}, 3, {0}},
        {"tiny diagonal", 2, 1, {1e-19, 0, 0, 1e-19}, 3, {1e-19, 0, 0, 1e-19}},
        {"limit passes", 2, 0, {1e-18, 0, 0, 1e-18}, 0, {1e18, 0, 0, 1e18}},
        {"high bits of n and mode", 0x10002, 0x10001, {1, 2, 2, 4}, 3, {1, 2, 2, 4}},
        {"permutation 3x3", 3, 0, {0, 0, 2, 1, 0, 0, 0, 4, 0}, 0, {0, 1, 0, 0, 0, 0.25, 0.5, 0, 0}},
        {"n = 0", 0, 0, {}, 0, {}},
    };
    for (const SmallCase& c : cases) {
        SCOPED_TRACE(c.name);
        Matrix m = c.in;
        EXPECT_EQ(KelMath_Inverse(c.n, m.data(), c.mode), c.result);
        for (std::size_t i = 0; i < m.size(); ++i) EXPECT_NEAR(m[i], c.out[i], 1e-12 * std::fabs(c.out[i])) << i;
    }
}

TEST(Inverse, SingularInPlaceLeavesWorkingValues) {
    Matrix m = {1, 2, 2, 4};
    EXPECT_EQ(KelMath_Inverse(2, m.data(), 0), 3);
    EXPECT_NE(m, (Matrix{1, 2, 2, 4}));
}

TEST(Inverse, OrderAbove128IsRefused) {
    Matrix m(129 * 129, 1.0);
    EXPECT_EQ(KelMath_Inverse(129, m.data(), 0), 1);
    EXPECT_EQ(KelMath_Inverse(129, m.data(), 1), 1);
    EXPECT_EQ(m, Matrix(129 * 129, 1.0));
}

// A * inverse is the identity to within a few ulps times the order.
void expect_inverse(const Matrix& a, const Matrix& inv, std::size_t n, double tolerance) {
    double worst = 0.0;
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j) {
            double s = 0.0;
            for (std::size_t k = 0; k < n; ++k) s += a[i * n + k] * inv[k * n + j];
            worst = std::max(worst, std::fabs(s - (i == j ? 1.0 : 0.0)));
        }
    EXPECT_LT(worst, tolerance);
}

TEST(Inverse, RandomWellConditionedMatrices) {
    std::mt19937 rng(20240611);
    std::uniform_real_distribution<double> entry(-1.0, 1.0);
    for (std::size_t n : {2u, 3u, 7u, 16u, 50u, 100u, 128u}) {
        for (uint32_t mode : {0u, 1u}) {
            SCOPED_TRACE("n " + std::to_string(n) + " mode " + std::to_string(mode));
            // Diagonally dominant, so the condition stays small.
            Matrix a(n * n);
            for (std::size_t i = 0; i < n; ++i)
                for (std::size_t j = 0; j < n; ++j) a[i * n + j] = entry(rng) + (i == j ? 2.0 * n : 0.0);
            // Rows shuffled, so the pivots must move.
            for (std::size_t i = n - 1; i > 0; --i) {
                const std::size_t r = std::uniform_int_distribution<std::size_t>(0, i)(rng);
                for (std::size_t j = 0; j < n; ++j) std::swap(a[i * n + j], a[r * n + j]);
            }
            Matrix inv = a;
            ASSERT_EQ(KelMath_Inverse(static_cast<uint32_t>(n), inv.data(), mode), 0);
            expect_inverse(a, inv, n, 1e-12);
        }
    }
}

TEST(Inverse, SingularAndNearSingular) {
    const std::size_t n = 20;
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> entry(-1.0, 1.0);
    Matrix a(n * n);
    for (double& v : a) v = entry(rng);
    // A matrix of rank one is refused and, inverted on a copy, left as it
    // was; so is a matrix with a row of zeros.
    Matrix rank_one(n * n);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j) rank_one[i * n + j] = (i + 1.0) * (j % 4 == 0 ? 2.0 : 0.5 * j);
    Matrix m = rank_one;
    EXPECT_EQ(KelMath_Inverse(n, m.data(), 1), 3);
    EXPECT_EQ(m, rank_one);
    Matrix zero_row = a;
    for (std::size_t j = 0; j < n; ++j) zero_row[9 * n + j] = 0.0;
    m = zero_row;
    EXPECT_EQ(KelMath_Inverse(n, m.data(), 1), 3);
    // Nearly singular but above the limit: inverted, and still an inverse.
    Matrix nearly = a;
    for (std::size_t j = 0; j < n; ++j) nearly[13 * n + j] = nearly[2 * n + j] + 1e-9 * entry(rng);
    m = nearly;
    ASSERT_EQ(KelMath_Inverse(n, m.data(), 0), 0);
    expect_inverse(nearly, m, n, 1e-4);
}

}  // namespace
