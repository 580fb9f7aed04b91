// The runtime's mathematics natively: the C library's pow and its POSIX j0
// family.

#include <math.h>

#include "platform/platform.h"

namespace vl::platform {

double runtime_pow(double x, double y) noexcept { return ::pow(x, y); }

double bessel_j0(double x) noexcept { return ::j0(x); }
double bessel_j1(double x) noexcept { return ::j1(x); }
double bessel_jn(int n, double x) noexcept { return ::jn(n, x); }
double bessel_y0(double x) noexcept { return ::y0(x); }
double bessel_y1(double x) noexcept { return ::y1(x); }
double bessel_yn(int n, double x) noexcept { return ::yn(n, x); }

}  // namespace vl::platform
