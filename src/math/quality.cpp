// The quality-control factors D2, D3 and D4 as polynomials in the sample
// size n.  Fitted to the tabulated factors, so they hold only over the
// sizes the tables cover; past that they are returned all the same.

#include <span>

#include "math/math.h"

namespace vl::math {

namespace {

// Coefficients from the constant term up.
constexpr double kD2Small[] = {-1.49833333,    2.19281795,     -0.617714083,     0.1093821387,
                               -0.01145245726, 0.000648397436, -1.5277777778e-05};
constexpr double kD2Medium[] = {1.89216106,     0.0706717,       0.01830591746, -0.002237777634,
                                0.000114336925, -2.83549682e-06, 2.7949779e-08};
constexpr double kD2Large[] = {2.310923,       0.11285485,     -0.00283,       4.6202667e-05,
                               -4.5175941e-07, 2.40311183e-09, -5.33883723e-12};
constexpr double kD3[] = {-2.010753108,    0.8368107404,   -0.1452502258,  0.01429297692,
                          -0.000796117969, 2.33890017e-05, -2.81647751e-07};
constexpr double kD4[] = {8.006967301,     -4.46840014,    1.522534209,    -0.2981209578, 0.03560745439,
                          -0.002634270518, 0.000117689628, -2.9058722e-06, 3.04202933e-08};

// D2 of 120 and more samples.
constexpr double kD2Limit = 5.12;

double polynomial(std::span<const double> c, double n) noexcept {
    double v = 0.0;
    for (auto it = c.rbegin(); it != c.rend(); ++it) v = v * n + *it;
    return v;
}

}  // namespace

double qc_d2(double n) noexcept {
    if (n < 11.0) return polynomial(kD2Small, n);
    if (n <= 25.0) return polynomial(kD2Medium, n);
    if (n < 120.0) return polynomial(kD2Large, n);
    return kD2Limit;
}

double qc_d3(double n) noexcept { return n < 7.0 ? 0.0 : polynomial(kD3, n); }

double qc_d4(double n) noexcept { return polynomial(kD4, n); }

}  // namespace vl::math
