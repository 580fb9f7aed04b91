// Quantiles and tails of t, F, chi-square and the normal distribution,
// against tables computed independently, and the smaller statistics.

#include <algorithm>
#include <cmath>
#include <string>

#include "support.h"
#include "vlcore.h"

namespace {

struct QuantileRow {
    double p, df1, df2, quantile, density;
};
struct TailRow {
    double x, df1, df2, value;
};
struct PairRow {
    double x, value;
};

#include "math/distribution_tables.inc"

// The searches stop when the probability misses p by less than 3e-7 (on
// top of the seven figures of the functions they invert), so quantiles are
// checked in probability: the miss, scaled by the density, stays below
// this.
constexpr double kProbabilityTolerance = 1e-6;

std::string where(const char* what, double a, double b, double c) {
    return std::string(what) + "(" + std::to_string(a) + ", " + std::to_string(b) + ", " + std::to_string(c) + ")";
}

TEST(Distributions, TQuantileTable) {
    for (const QuantileRow& r : kTQuantiles) {
        SCOPED_TRACE(where("TTABLE", r.p, r.df1, 0));
        const double up[2] = {r.p, r.df1}, down[2] = {1.0 - r.p, r.df1};
        EXPECT_NEAR(t_dist_export(up), r.quantile, kProbabilityTolerance / r.density);
        EXPECT_NEAR(t_dist_export(down), -r.quantile, kProbabilityTolerance / r.density);
        double out = 0.0;
        EXPECT_EQ(t_dist_export_ptr(up, &out), 0);
        EXPECT_EQ(out, t_dist_export(up));
    }
}

TEST(Distributions, FQuantileTable) {
    for (const QuantileRow& r : kFQuantiles) {
        SCOPED_TRACE(where("FTABLE", r.p, r.df1, r.df2));
        const double args[3] = {r.p, r.df1, r.df2};
        // The search stops on a step below 1e-5 in u = m f / (m f + n), which
        // bounds small quantiles of one degree of freedom more than the
        // probability does: allow a miss of 1e-6 in u as well.
        const double u = r.df1 * r.quantile / (r.df1 * r.quantile + r.df2);
        const double u_tolerance = 1e-6 * r.df2 / (r.df1 * (1.0 - u) * (1.0 - u));
        EXPECT_NEAR(F_dist_export(args), r.quantile, std::max(kProbabilityTolerance / r.density, u_tolerance));
        double out = 0.0;
        EXPECT_EQ(F_dist_export_ptr(args, &out), 0);
        EXPECT_EQ(out, F_dist_export(args));
    }
}

TEST(Distributions, ChiSquareQuantileTable) {
    for (const QuantileRow& r : kChiQuantiles) {
        SCOPED_TRACE(where("Chisqr", r.p, r.df1, 0));
        const double args[2] = {r.p, r.df1};
        EXPECT_NEAR(Chisqr_dist_export(args), r.quantile, kProbabilityTolerance / r.density);
        double out = 0.0;
        EXPECT_EQ(Chisqr_dist_export_ptr(args, &out), 0);
        EXPECT_EQ(out, Chisqr_dist_export(args));
    }
}

TEST(Distributions, NormalQuantileTable) {
    for (const PairRow& r : kNormalQuantiles) {
        SCOPED_TRACE(where("gauss_inv", r.x, 0, 0));
        // The rational approximation is good to 1.5e-8 in the quantile.
        EXPECT_NEAR(gauss_inv_export(r.x), r.value, 1.5e-8);
        // Through 2p - 1 the far tails lose their digits to rounding.
        if (r.x < 1e-3 || r.x > 0.999) continue;
        EXPECT_NEAR(inv_prob_export(2.0 * r.x - 1.0), r.value, 1.5e-8);
        EXPECT_NEAR(inv_erf_export(2.0 * r.x - 1.0), r.value * 0.707106781186595, 1.5e-8);
    }
}

// Evaluates a row of the function table by name.
double row(const char* name, double a, double b = 0.0, double c = 0.0) {
    uint16_t r = 0;
    EXPECT_GT(KelMath_function(0, VL_MATH_FIND, const_cast<char*>(name), &r, 0), 0);
    double in[3] = {a, b, c}, out = 0.0;
    KelMath_function(0, (static_cast<uint32_t>(r) << 16) | 1, in, &out, 0);
    return out;
}

TEST(Distributions, TailTables) {
    for (const TailRow& r : kTTails) {
        SCOPED_TRACE(where("INVT", r.x, r.df1, 0));
        EXPECT_NEAR(row("INVT", r.x, r.df1), r.value, 3e-7);
        EXPECT_EQ(row("INVT", -r.x, r.df1), row("INVT", r.x, r.df1));
    }
    for (const TailRow& r : kFTails) {
        SCOPED_TRACE(where("INCF", r.x, r.df1, r.df2));
        EXPECT_NEAR(row("INCF", r.x, r.df1, r.df2), r.value, 3e-7);
        EXPECT_NEAR(row("INVF", r.x, r.df1, r.df2), 1.0 - r.value, 3e-7);
    }
    for (const TailRow& r : kChiTails) {
        SCOPED_TRACE(where("chisquare_Q", r.x, r.df1, 0));
        double out = 0.0;
        EXPECT_EQ(chisquare_prob_Q_export_ptr(&out, r.x, r.df1), 0);
        EXPECT_NEAR(out, r.value, 3e-7);
    }
    for (const PairRow& r : kNormalTails) {
        SCOPED_TRACE(where("PROB", r.x, 0, 0));
        EXPECT_NEAR(cum_gauss_export(r.x), r.value, 3e-8);
        double out = 0.0;
        EXPECT_EQ(norm_prob_export_ptr(r.x, &out), 0);
        EXPECT_EQ(out, cum_gauss_export(r.x));
    }
}

TEST(Distributions, DocumentedPoints) {
    const double t1[2] = {0.975, 5}, t2[2] = {0.025, 5}, t3[2] = {0.95, 10}, t4[2] = {0.5, 5}, t5[2] = {0.9999999, 1};
    EXPECT_NEAR(t_dist_export(t1), 2.57058, 1e-5);
    EXPECT_NEAR(t_dist_export(t2), -2.57058, 1e-5);
    EXPECT_NEAR(t_dist_export(t3), 1.81246, 1e-5);
    EXPECT_LT(t_dist_export(t4), 0.0);
    EXPECT_GT(t_dist_export(t4), -1e-6);
    EXPECT_NEAR(t_dist_export(t5), 636.0, 1e-3);
    const double f1[3] = {0.95, 4, 5}, f2[3] = {0.05, 4, 5}, f3[3] = {0.95, 1, 1};
    EXPECT_NEAR(F_dist_export(f1), 5.19217, 1e-5);
    EXPECT_NEAR(F_dist_export(f2), 0.159845, 1e-6);
    EXPECT_NEAR(F_dist_export(f3), 161.448, 1e-3);
    const struct {
        double p, df, x;
    } chi[] = {{0.95, 1, 3.84145},  {0.95, 2, 5.99146}, {0.95, 5, 11.0705},
               {0.95, 10, 18.3070}, {0.5, 10, 9.34182}, {0.05, 10, 3.94030}};
    for (const auto& c : chi) {
        SCOPED_TRACE(where("Chisqr", c.p, c.df, 0));
        const double args[2] = {c.p, c.df};
        EXPECT_NEAR(Chisqr_dist_export(args), c.x, 1e-4);
    }
    EXPECT_NEAR(row("INVT", 2, 5), 0.949030, 1e-6);
    EXPECT_NEAR(row("INVF", 3, 4, 5), 0.870297, 1e-6);
    EXPECT_NEAR(row("INCF", 3, 4, 5), 0.129703, 1e-6);
    EXPECT_NEAR(row("INVPROB", 0.95), 1.95996400, 1e-7);
    EXPECT_NEAR(row("INVPROB", -0.95), -1.95996400, 1e-7);
    EXPECT_EQ(row("INVPROB", 0.0), 0.0);
    EXPECT_NEAR(row("INVERF", 0.95), 1.38590383, 1e-7);
    EXPECT_NEAR(row("PROB", -1.96), -0.95000420, 1e-8);
}

TEST(Distributions, FailureValues) {
    // Arguments for which the F search could not end fail at once.
    const double bad_f[][3] = {{0.95, 4, 0}, {0.95, 0, 5}, {1.5, 4, 5}, {-0.1, 4, 5}, {NAN, 4, 5}, {0.95, -1, 5}};
    for (const auto& a : bad_f) {
        SCOPED_TRACE(where("FTABLE", a[0], a[1], a[2]));
        EXPECT_EQ(F_dist_export(a), 0.0);
        double out = 7.0;
        EXPECT_EQ(F_dist_export_ptr(a, &out), 0);
        EXPECT_EQ(out, 0.0);
    }
    // Chi-square: no quantile, or too many degrees of freedom for the
    // incomplete gamma function's 80 rounds.
    const double bad_chi[][2] = {{1.5, 5}, {0.0, 5}, {0.5, 600}, {0.95, 0}};
    for (const auto& a : bad_chi) {
        SCOPED_TRACE(where("Chisqr", a[0], a[1], 0));
        EXPECT_EQ(Chisqr_dist_export(a), -1.0);
        double out = 7.0;
        EXPECT_EQ(Chisqr_dist_export_ptr(a, &out), 0);
        EXPECT_EQ(out, -1.0);
    }
    for (double p : {0.0, 1.0, 1e-25, 1.0 - 1e-25, -0.5, 2.0}) {
        SCOPED_TRACE(p);
        EXPECT_EQ(gauss_inv_export(p), 0.0);
    }
    EXPECT_EQ(gauss_inv_export(0.5), 0.0);
    double out = 3.0;
    EXPECT_EQ(inv_prob_export_ptr(1.0, &out), 0);
    EXPECT_EQ(out, 0.0);
    EXPECT_EQ(inv_erf_export(-1.0), 0.0);
}

TEST(Distributions, QualityControlFactors) {
    struct Case {
        const char* name;
        double n, value;
    };
    const Case cases[] = {{"QCD2", 2, 1.12803},   {"QCD2", 5, 2.32541},   {"QCD2", 10, 3.07797}, {"QCD2", 25, 3.93102},
                          {"QCD2", 26, 3.96459},  {"QCD2", 120, 5.12},    {"QCD2", 200, 5.12},   {"QCD3", 6, 0.0},
                          {"QCD3", 7, 0.0806362}, {"QCD3", 25, 0.118869}, {"QCD4", 2, 3.26793},  {"QCD4", 10, 1.77586},
                          {"QCD4", 25, 12.1561}};
    for (const Case& c : cases) {
        SCOPED_TRACE(where(c.name, c.n, 0, 0));
        EXPECT_NEAR(row(c.name, c.n), c.value, 5e-6 * std::max(1.0, c.value));
    }
}

TEST(Distributions, LognormalBell) {
    double out = 0.0;
    EXPECT_EQ(lognorm_prob_export_ptr(2.5, 2.5, 0.3, 7.0, &out), 0);
    EXPECT_EQ(out, 7.0);
    EXPECT_EQ(lognorm_prob_export_ptr(5.0, 2.5, 0.5, 2.0, &out), 0);
    const double t = std::log(2.0) / (0.5 * 1.414213562373);
    EXPECT_NEAR(out, 2.0 * std::exp(-t * t), 1e-15);
    const double bads[][3] = {{0.0, 1, 1}, {1, -1, 1}, {1, 1, 0}, {NAN, 1, 1}};
    for (const auto& bad : bads) {
        SCOPED_TRACE(where("lognorm", bad[0], bad[1], bad[2]));
        out = 0.0;
        EXPECT_EQ(lognorm_prob_export_ptr(bad[0], bad[1], bad[2], 1.0, &out), 1);
        EXPECT_EQ(vltest::bits(out), vltest::bits(VL_MISSING_VALUE));
    }
}

TEST(Distributions, PoissonProbability) {
    double out = 0.0;
    EXPECT_EQ(poisson_prob_ptr(2.9, 3.0, 1.0, &out), 0);
    EXPECT_NEAR(out, 0.22404180765538775, 1e-12);
    EXPECT_EQ(poisson_prob_ptr(0.0, 3.0, 2.0, &out), 0);
    EXPECT_NEAR(out, 2.0 * std::exp(-3.0), 1e-15);
    EXPECT_EQ(poisson_prob_ptr(-1.0, 3.0, 1.0, &out), 0);
    EXPECT_EQ(out, 0.0);
    out = 5.0;
    EXPECT_EQ(poisson_prob_ptr(1.0, 0.0, 1.0, &out), 1);
    EXPECT_EQ(out, 5.0);
    EXPECT_EQ(poisson_prob_ptr(100.0, 100.0, 1.0, &out), 0);
    EXPECT_NEAR(out, 0.03986099680914713, 1e-7);
    EXPECT_EQ(poisson_prob_ptr(99.0, 100.0, 1.0, &out), 0);
    EXPECT_NEAR(out, 0.03986099680914713, 1e-12);  // P(99) = P(100) at mean 100
}

TEST(Distributions, AngleEntry) {
    double args[3] = {0, 0, 5};
    EXPECT_EQ(angle_export_ptr(args), 0);
    EXPECT_EQ(args[2], -1.0);
    double good[3] = {-1, 0, 5};
    EXPECT_EQ(angle_export_ptr(good), 1);
    EXPECT_EQ(good[2], 3.14159265359);
}

}  // namespace
