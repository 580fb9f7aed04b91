// The runtime's mathematics on Windows: pow and the _j0 family of msvcrt.

#include <math.h>

#include "platform/platform.h"

// The runtime's header hides these in strict standard mode; they are
// ordinary exports of the C runtime all the same.
extern "C" {
double __cdecl _j0(double x);
double __cdecl _j1(double x);
double __cdecl _jn(int n, double x);
double __cdecl _y0(double x);
double __cdecl _y1(double x);
double __cdecl _yn(int n, double x);
// The import slot of msvcrt's pow: the compiler kit links a pow of its own
// under the plain name.
extern double(__cdecl* __MINGW_IMP_SYMBOL(pow))(double, double);
}

namespace vl::platform {

double runtime_pow(double x, double y) noexcept { return (*__MINGW_IMP_SYMBOL(pow))(x, y); }

double bessel_j0(double x) noexcept { return ::_j0(x); }
double bessel_j1(double x) noexcept { return ::_j1(x); }
double bessel_jn(int n, double x) noexcept { return ::_jn(n, x); }
double bessel_y0(double x) noexcept { return ::_y0(x); }
double bessel_y1(double x) noexcept { return ::_y1(x); }
double bessel_yn(int n, double x) noexcept { return ::_yn(n, x); }

}  // namespace vl::platform
