// The small functions of the function table: absolute value, exponential,
// truncation and rounding, remainders, significant figures, the angle of a
// point and the Bessel rows that go straight to the runtime.

#include <cmath>

#include "math/math.h"
#include "platform/platform.h"

namespace vl::math {

namespace {

constexpr double kInt32Max = 2147483647.0;
constexpr double kInt32Min = -2147483648.0;
// The largest argument of EXP; larger ones would overflow the host's range.
constexpr double kExpLimit = 667.0;

// The stored decimals of the angle constants.
constexpr double kPi = 3.14159265359;
constexpr double kTwoPi = 6.28318530718;
constexpr double kHalfPi = 1.570796326795;

}  // namespace

bool fits_int32(double x) noexcept { return x > -2147483649.0 && x < 2147483648.0; }

int32_t truncate_to_int32(double x) noexcept { return fits_int32(x) ? static_cast<int32_t>(x) : INT32_MIN; }

double abs_value(double x) noexcept { return x < 0.0 ? -x : x; }

double exponential(double x) noexcept {
    if (x > kExpLimit) {
        math_error_flag = 1;
        return 0.0;
    }
    return std::exp(x);
}

double integer_part(double x) noexcept {
    if (x > kInt32Max) return kInt32Max;
    if (x < kInt32Min) return kInt32Min;
    return std::trunc(x);
}

double nearest_integer(double x) noexcept {
    if (x > kInt32Max) return kInt32Max;
    if (x < kInt32Min) return kInt32Min;
    // Halves go away from zero.
    const double n = std::trunc(std::fabs(x) + 0.5);
    return x < 0.0 ? -n : n;
}

double int_mod(const double* x_y) noexcept {
    // 1. Both arguments as 32-bit integers; one that does not fit fails like
    //    a zero divisor.
    if (!fits_int32(x_y[0]) || !fits_int32(x_y[1])) {
        math_error_flag = 1;
        return 1.0;
    }
    const int64_t x = static_cast<int32_t>(x_y[0]);
    const int64_t y = static_cast<int32_t>(x_y[1]);
    if (y == 0) {
        math_error_flag = 1;
        return 1.0;
    }
    // 2. The remainder of truncating division, sign of x (64 bits, so that
    //    -2147483648 mod -1 is 0 rather than a trap).
    return static_cast<double>(x % y);
}

double real_mod(const double* x_y) noexcept {
    if (x_y[1] == 0.0) {
        math_error_flag = 1;
        return 1.0;
    }
    return std::fmod(x_y[0], x_y[1]);
}

double round_places(const double* x_p) noexcept {
    // 1. Scale by 10^p.
    const double x = x_p[0];
    const double s = std::pow(10.0, static_cast<double>(truncate_to_int32(x_p[1])));
    // 2. Round the scaled value half away from zero.
    const double v = s * x + (x >= 0.0 ? 0.5 : -0.5);
    // 3. The rounding goes through a 32-bit integer; a value beyond it
    //    cannot be rounded there and fails.
    if (!fits_int32(v)) {
        math_error_flag = 1;
        return 0.0;
    }
    // 4. Scale back.
    return static_cast<double>(static_cast<int32_t>(v)) / s;
}

double precision(const double* x_p) noexcept {
    // 1. Digits wanted, and the magnitude to work on.
    const int32_t p = truncate_to_int32(x_p[1]);
    const double x = x_p[0];
    if (x == 0.0) return 0.0;
    const double mag = std::fabs(x);
    // 2. The decade of the leading digit: floor(log10 |x|) by truncation.
    const double lg = std::log10(mag);
    int32_t n = truncate_to_int32(lg);
    if (n > lg) --n;
    // 3. Ten or more digits are more than the rounding below can carry.
    if (std::pow(10.0, static_cast<double>(p)) > kInt32Max) return 1.0;
    // 4. Round at the p-th significant digit.
    const double a = std::pow(10.0, static_cast<double>(n));
    const double b = std::pow(10.0, static_cast<double>(p) - 1.0);
    const double r = nearest_integer(mag / a * b) / b * a;
    return x < 0.0 ? -r : r;
}

double angle_of(double x, double y) noexcept {
    // The order of the tests decides the axes: straight down stays -pi/2.
    if (x == 0.0) {
        if (y == 0.0) {
            math_error_flag = 1;
            return -1.0;
        }
        return y > 0.0 ? kHalfPi : -kHalfPi;
    }
    if (y == 0.0) return x < 0.0 ? kPi : std::atan(0.0);
    if (x < 0.0) return std::atan(y / x) + kPi;
    if (y > 0.0) return std::atan(y / x);
    return std::atan(y / x) + kTwoPi;
}

double angle(const double* x_y) noexcept { return angle_of(x_y[0], x_y[1]); }

double bessel_j0(double x) noexcept { return platform::bessel_j0(x); }
double bessel_j1(double x) noexcept { return platform::bessel_j1(x); }
double bessel_y0(double x) noexcept { return platform::bessel_y0(x); }
double bessel_y1(double x) noexcept { return platform::bessel_y1(x); }

double bessel_jn(const double* x_n) noexcept { return platform::bessel_jn(truncate_to_int32(x_n[1]), x_n[0]); }

double bessel_yn(const double* x_n) noexcept {
    if (x_n[0] <= 0.0) {
        math_error_flag = 1;
        return 0.0;
    }
    return platform::bessel_yn(truncate_to_int32(x_n[1]), x_n[0]);
}

}  // namespace vl::math
