// Internal routines and state of the mathematics subsystem.  The exported
// entries are declared in vlcore.h.
#pragma once

#include <array>
#include <cstdint>

namespace vl::math {

// ---- Process-wide state (state.cpp) ----------------------------------------

// 1 after any failure in the subsystem; only KelMath_function (on entry) and
// angle_export_ptr clear it.
extern int32_t math_error_flag;

// The row found by the last successful name search.
struct LastFind {
    const char* name;
    int32_t row;
};
extern LastFind last_find;

// The uniform generator: three congruential sequences and a shuffle table
// whose positions 1 to 97 are used (slot 0 stays unused, so the indices
// read as the generator's own).
struct UniformState {
    int32_t started;
    int32_t ix1, ix2, ix3;
    std::array<double, 98> r;
};
extern UniformState uniform_state;

// The spare deviate of the polar normal method.
struct NormalState {
    int32_t spare_present;
    double spare;
};
extern NormalState normal_state;

// Values that depend only on the Poisson mean, kept while it stays the same.
struct PoissonState {
    double last_mean;
    double g;
    double sq;
    double alxm;
};
extern PoissonState poisson_state;

// ---- Conversions -----------------------------------------------------------

// Truncation toward zero to 32 bits.  A NaN or a value outside the range
// gives -2147483648, which is what the x86 conversion answers, so every
// target takes the same integer from the same double.
int32_t truncate_to_int32(double x) noexcept;
// True when x truncates to a 32-bit integer without leaving the range.
bool fits_int32(double x) noexcept;

// ---- Small functions of the table (small_functions.cpp) ------------------

double abs_value(double x) noexcept;
double exponential(double x) noexcept;
double integer_part(double x) noexcept;
double nearest_integer(double x) noexcept;
double int_mod(const double* x_y) noexcept;
double real_mod(const double* x_y) noexcept;
double round_places(const double* x_p) noexcept;
double precision(const double* x_p) noexcept;
double angle(const double* x_y) noexcept;
double angle_of(double x, double y) noexcept;
double bessel_j0(double x) noexcept;
double bessel_j1(double x) noexcept;
double bessel_jn(const double* x_n) noexcept;
double bessel_y0(double x) noexcept;
double bessel_y1(double x) noexcept;
double bessel_yn(const double* x_n) noexcept;

// ---- Gamma, beta and error functions (gamma_functions.cpp) ------------------------

double gammln(double x) noexcept;
double incomp_beta(const double* x_a_b) noexcept;
double beta_cont_frac(double a, double b, double x) noexcept;
double incomp_beta_scalar(double a, double b, double x) noexcept;
double beta_cont_frac_scalar(double a, double b, double x) noexcept;
double beta_func(double z, double w) noexcept;
double incomp_gamma(double a, double x) noexcept;
double gamma_series(double a, double x) noexcept;
double gamma_cont_frac(double a, double x) noexcept;
double error_func(double x) noexcept;
double log_factorial(int32_t n) noexcept;

// ---- Distributions (distributions.cpp, quality.cpp) -----------------------

double cum_gauss(double x) noexcept;
double gauss_inv(double p) noexcept;
double inv_prob(double y) noexcept;
double inv_erf(double y) noexcept;
double t_dist(const double* p_n) noexcept;
double t_cumulative(const double* x_n) noexcept;
double F_dist(const double* p_m_n) noexcept;
double F_upper_tail(const double* x_m_n) noexcept;
double F_cumulative(const double* x_m_n) noexcept;
double Chisqr_dist(const double* p_df) noexcept;
double qc_d2(double n) noexcept;
double qc_d3(double n) noexcept;
double qc_d4(double n) noexcept;

// ---- Random deviates (random.cpp) -----------------------------------------

double ran1(int32_t* idum) noexcept;
double gasdevex(int32_t* idum, uint32_t reset) noexcept;
double poisson_dev(double mean, int32_t* idum) noexcept;

}  // namespace vl::math
