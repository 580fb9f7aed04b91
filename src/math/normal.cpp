// The normal integral and its inverse.

#include <array>
#include <cmath>

#include "math/math.h"
#include "vlcore.h"

namespace vl::math {

namespace {

constexpr double kInvSqrt2 = 0.707106781186595;
// Below this tail probability the quantile is not attempted.
constexpr double kSmallestTail = 1e-20;

// The rational approximation of the normal quantile (Odeh and Evans),
// coefficients from the constant term up.
constexpr std::array<double, 5> kQuantileNumerator = {-0.322232431088, -1.0, -0.342242088547, -0.0204231210245,
                                                      -4.53642210148e-05};
constexpr std::array<double, 5> kQuantileDenominator = {0.099348462606, 0.588581570495, 0.531103462366, 0.10353775285,
                                                        0.0038560700634};

double polynomial(const std::array<double, 5>& c, double y) noexcept {
    double v = c[4];
    for (int i = 3; i >= 0; --i) v = v * y + c[static_cast<std::size_t>(i)];
    return v;
}

}  // namespace

double cum_gauss(double x) noexcept {
    const double t = x * kInvSqrt2;
    const double p = incomp_gamma(0.5, t * t);
    return t < 0.0 ? -p : p;
}

double gauss_inv(double p) noexcept {
    // 1. The centre is exact.
    if (p == 0.5) return 0.0;
    // 2. Work on the smaller tail.
    const bool upper = p > 0.5;
    const double q = upper ? 1.0 - p : p;
    // 3. The ends, and anything outside 0 to 1, have no quantile.
    if (!(q >= kSmallestTail)) {
        math_error_flag = 1;
        return 0.0;
    }
    // 4. The rational approximation in y = sqrt(-2 ln q).
    const double y = std::sqrt(-2.0 * std::log(q));
    const double z = y + polynomial(kQuantileNumerator, y) / polynomial(kQuantileDenominator, y);
    return upper ? z : -z;
}

double inv_prob(double y) noexcept { return gauss_inv((y + 1.0) * 0.5); }

double inv_erf(double y) noexcept { return gauss_inv((y + 1.0) * 0.5) * kInvSqrt2; }

}  // namespace vl::math

using namespace vl::math;

extern "C" {

double VLAPI cum_gauss_export(double x) noexcept { return cum_gauss(x); }

int32_t VLAPI norm_prob_export_ptr(double x, double* out) noexcept {
    *out = cum_gauss(x);
    return 0;
}

double VLAPI gauss_inv_export(double p) noexcept { return gauss_inv(p); }

double VLAPI inv_prob_export(double y) noexcept { return inv_prob(y); }

int32_t VLAPI inv_prob_export_ptr(double y, double* out) noexcept {
    *out = inv_prob(y);
    return 0;
}

double VLAPI inv_erf_export(double y) noexcept { return inv_erf(y); }

}  // extern "C"
