// Entries that evaluate a whole expression for the host: a lognormal bell,
// a scaled Poisson probability and the angle of a point.

#include <cerrno>
#include <cmath>

#include "internal/values.h"
#include "math/math.h"
#include "vlcore.h"

namespace vl::math {

namespace {

constexpr double kSqrt2 = 1.414213562373;
// Below this count the probability is built from 1/c! directly.
constexpr int32_t kDirectPoisson = 100;

// 1/c!, 1.0 for c of 0 or below.
double inv_factorial(int32_t c) noexcept {
    double v = 1.0;
    for (int32_t i = 1; i <= c; ++i) v *= 1.0 / i;
    return v;
}

}  // namespace

}  // namespace vl::math

using namespace vl;
using namespace vl::math;

extern "C" {

int32_t VLAPI lognorm_prob_export_ptr(double x, double center, double width, double height, double* out) noexcept {
    // 1. Logarithms of the three need them above 0.
    if (!(x > 0.0) || !(center > 0.0) || !(width > 0.0)) {
        errno = 0;
        *out = MISSING_VALUE;
        return 1;
    }
    // 2. The bell in ln x.
    const double t = (std::log(x) - std::log(center)) / (width * kSqrt2);
    *out = height * std::exp(-t * t);
    return 0;
}

int32_t VLAPI poisson_prob_ptr(double k, double mean, double height, double* out) noexcept {
    // 1. Only a positive mean has a distribution.
    if (!(mean > 0.0)) return 1;
    // 2. No probability below 0.
    if (k < 0.0) {
        *out = 0.0;
        return 0;
    }
    // 3. Whole counts only; small ones directly, large ones by logarithms.
    const int32_t c = truncate_to_int32(k);
    if (c < kDirectPoisson)
        *out = inv_factorial(c) * std::pow(mean, c) * std::exp(-mean) * height;
    else
        *out = std::exp(c * std::log(mean) - mean - gammln(c + 1.0)) * height;
    return 0;
}

int32_t VLAPI angle_export_ptr(double* x_y_out) noexcept {
    // The sense of this result is the reverse of the other entries: 1 good.
    math_error_flag = 0;
    x_y_out[2] = angle_of(x_y_out[0], x_y_out[1]);
    if (math_error_flag) {
        math_error_flag = 0;
        return 0;
    }
    return 1;
}

}  // extern "C"
