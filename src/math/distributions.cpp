// Quantiles and tails of Student's t, F and chi-square.

#include <cmath>

#include "math/math.h"
#include "vlcore.h"

namespace vl::math {

namespace {

constexpr double kTolerance = 3e-7;
constexpr int kSearchRounds = 80;
// The t search brackets the quantile in [0, 636].
constexpr double kTBracket = 636.0;
// The F search stops when the Newton step is this small.
constexpr double kFStep = 1e-5;
// The F search has no natural end for hopeless arguments; this many rounds
// are far more than any good argument takes.
constexpr int kFRounds = 1000;
// Halving a finite step 1100 times brings it below every double.
constexpr int kMaxHalvings = 1100;
// Below this density the chi-square Newton step means nothing.
constexpr double kTinyDensity = 1.7e-307;

// P(T <= |x|) of Student's t with n degrees of freedom.
double t_lower(double x, double n) noexcept {
    const double args[3] = {n / (x * x + n), n / 2.0, 0.5};
    return 1.0 - 0.5 * incomp_beta(args);
}

// P(F > x) for m and n degrees of freedom.
double f_upper(double x, double m, double n) noexcept {
    const double args[3] = {n / (m * x + n), n / 2.0, m / 2.0};
    return incomp_beta(args);
}

// The Wilson-Hilferty approximation of the chi-square quantile; it lies
// close enough for Newton's method to stay on course at many degrees of
// freedom.
double chi_square_start(double p, double df) noexcept {
    const int32_t saved = math_error_flag;
    const double z = gauss_inv(p);
    math_error_flag = saved;
    const double c = 2.0 / (9.0 * df);
    const double v = 1.0 - c + z * std::sqrt(c);
    return v > 0.0 ? df * v * v * v : 2.0;
}

}  // namespace

double t_dist(const double* p_n) noexcept {
    const double p = p_n[0], n = p_n[1];
    // 1. The search runs on the upper half; the sign comes back at the end.
    const bool plus = p > 0.5;
    const double q = plus ? p : 1.0 - p;
    // 2. Bisection on [0, 636].
    double lo = 0.0, hi = kTBracket, mid = 0.0;
    for (int round = 0; round < kSearchRounds; ++round) {
        mid = (hi + lo) * 0.5;
        if (hi - lo < kTolerance) break;
        const double v = t_lower(mid, n) - q;
        if (std::fabs(v) < kTolerance) break;
        if (v > 0.0)
            hi = mid;
        else
            lo = mid;
    }
    return plus ? mid : -mid;
}

double t_cumulative(const double* x_n) noexcept { return t_lower(x_n[0], x_n[1]); }

double F_dist(const double* p_m_n) noexcept {
    const double p = p_m_n[0], m = p_m_n[1], n = p_m_n[2];
    // 1. Arguments for which the search cannot end fail at once.
    if (!(n > 0.0) || !(m > 0.0) || !(p >= 0.0 && p <= 1.0)) {
        math_error_flag = 1;
        return 0.0;
    }
    // 2. Newton's method on u = m f / (m f + n), where I_u(m/2, n/2) = p;
    //    one degree of freedom below starts further down.
    const double a = m / 2.0, b = n / 2.0;
    const double g = n < 1.5 ? 10.0 : 1.0;
    double u = m / (g * n + m);
    for (int round = 0; round < kFRounds; ++round) {
        // 3. The Newton step from the beta density.
        const double diff = p - incomp_beta_scalar(a, b, u);
        const double density = std::pow(1.0 - u, b - 1.0) * std::pow(u, a - 1.0) / beta_func(a, b);
        const double delta = diff / density;
        if (!std::isfinite(delta)) break;
        // 4. Halve it until u stays inside (0, 1).
        double step = delta;
        for (int h = 0; h < kMaxHalvings && (u + step >= 1.0 || u + step <= 0.0); ++h) step *= 0.5;
        u += step;
        // 5. Done when the whole step was small.
        if (std::fabs(delta) <= kFStep) return 1.0 / ((m / u - m) / n);
    }
    // 6. No convergence.
    math_error_flag = 1;
    return 0.0;
}

double F_upper_tail(const double* x_m_n) noexcept { return f_upper(x_m_n[0], x_m_n[1], x_m_n[2]); }

double F_cumulative(const double* x_m_n) noexcept { return 1.0 - f_upper(x_m_n[0], x_m_n[1], x_m_n[2]); }

// Newton's method on P(df/2, x/2) = p from `x`; true with the quantile in
// `x` when it settles within the tolerance.
bool chi_square_search(double p, double a, double gamma_a, double& x) noexcept {
    for (int round = 0; round < kSearchRounds; ++round) {
        // 1. The miss in probability, and done when it is small enough.
        const double h = x / 2.0;
        const double e = p - incomp_gamma(a, h);
        if (std::fabs(e) < kTolerance * p) return true;
        // 2. A vanishing density leaves nothing to steer by: the search has
        //    gone out into a tail.
        const double density = std::pow(h, a - 1.0) * std::exp(-h) / gamma_a;
        if (std::fabs(density) < kTinyDensity) return false;
        // 3. Halve the step until x stays at or above 0.
        double step = e / density;
        for (int k = 0; k < kMaxHalvings && x + step < 0.0; ++k) step *= 0.5;
        x += step;
    }
    return false;
}

double Chisqr_dist(const double* p_df) noexcept {
    const double p = p_df[0], df = p_df[1];
    const double a = df / 2.0;
    const double gamma_a = std::exp(gammln(a));
    // 1. The search from 2.0.
    double x = 2.0;
    if (chi_square_search(p, a, gamma_a, x)) return x;
    // 2. From 2.0 the first step can throw the search into a tail, where it
    //    would stop on a density of nothing; with more degrees of freedom it
    //    always does.  A second search starts from the approximation.
    x = chi_square_start(p, df);
    if (chi_square_search(p, a, gamma_a, x)) return x;
    // 3. No quantile.
    return -1.0;
}

}  // namespace vl::math

using namespace vl::math;

extern "C" {

double VLAPI t_dist_export(const double* p_n) noexcept { return t_dist(p_n); }

int32_t VLAPI t_dist_export_ptr(const double* p_n, double* out) noexcept {
    *out = t_dist(p_n);
    return 0;
}

double VLAPI F_dist_export(const double* p_m_n) noexcept { return F_dist(p_m_n); }

int32_t VLAPI F_dist_export_ptr(const double* p_m_n, double* out) noexcept {
    *out = F_dist(p_m_n);
    return 0;
}

double VLAPI Chisqr_dist_export(const double* p_df) noexcept { return Chisqr_dist(p_df); }

int32_t VLAPI Chisqr_dist_export_ptr(const double* p_df, double* out) noexcept {
    *out = Chisqr_dist(p_df);
    return 0;
}

}  // extern "C"
