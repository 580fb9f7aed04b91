// Quantiles and tails of t, F, chi-square and the normal distribution,
// against tables computed independently (distribution_*.tsv), and the
// smaller statistics.

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "support.h"
#include "vlcore.h"

namespace {

// The searches stop when the probability misses p by less than 3e-7 (on
// top of the seven figures of the functions they invert), so quantiles are
// checked in probability: the miss, scaled by the density, stays below
// this.
constexpr double kProbabilityTolerance = 1e-6;

std::string where(const char* what, double a, double b, double c) {
    return std::string(what) + "(" + std::to_string(a) + ", " + std::to_string(b) + ", " + std::to_string(c) + ")";
}

std::string named(std::size_t i, const std::vector<std::string>& fields) {
    std::string text = "row " + std::to_string(i + 1) + ":";
    for (const std::string& field : fields) text += " " + field;
    return text;
}

// Evaluates a row of the function table by name.
double row(const char* name, double a, double b = 0.0, double c = 0.0) {
    uint16_t r = 0;
    EXPECT_GT(KelMath_function(0, VL_MATH_FIND, const_cast<char*>(name), &r, 0), 0);
    double in[3] = {a, b, c}, out = 0.0;
    KelMath_function(0, (static_cast<uint32_t>(r) << 16) | 1, in, &out, 0);
    return out;
}

TEST(Distributions, QuantileTable) {
    const vltest::DataTable table("math/distribution_quantiles.tsv");
    EXPECT_EQ(table.size(), 348u);
    for (std::size_t i = 0; i < table.size(); ++i) {
        const auto& r = table.row(i);
        SCOPED_TRACE(named(i, r));
        const double p = vltest::number(r[1]), q = vltest::number(r[4]);
        if (r[0] == "normal") {
            // The rational approximation is good to 1.5e-8 in the quantile.
            EXPECT_NEAR(gauss_inv_export(p), q, 1.5e-8);
            // Through 2p - 1 the far tails lose their digits to rounding.
            if (p < 1e-3 || p > 0.999) continue;
            EXPECT_NEAR(inv_prob_export(2.0 * p - 1.0), q, 1.5e-8);
            EXPECT_NEAR(inv_erf_export(2.0 * p - 1.0), q / std::numbers::sqrt2, 1.5e-8);
            EXPECT_EQ(row("INVPROB", 2.0 * p - 1.0), inv_prob_export(2.0 * p - 1.0));
            EXPECT_EQ(row("INVERF", 2.0 * p - 1.0), inv_erf_export(2.0 * p - 1.0));
            continue;
        }
        const double m = vltest::number(r[2]), tolerance = kProbabilityTolerance / vltest::number(r[5]);
        double out = 0.0;
        if (r[0] == "t") {
            const double up[2] = {p, m}, down[2] = {1.0 - p, m};
            EXPECT_NEAR(t_dist_export(up), q, tolerance);
            EXPECT_NEAR(t_dist_export(down), -q, tolerance);
            EXPECT_EQ(t_dist_export_ptr(up, &out), 0);
            EXPECT_EQ(out, t_dist_export(up));
        } else if (r[0] == "F") {
            const double n = vltest::number(r[3]), args[3] = {p, m, n};
            // The search stops on a step below 1e-5 in u = m f / (m f + n), which
            // bounds small quantiles of one degree of freedom more than the
            // probability does: allow a miss of 1e-6 in u as well.
            const double u = m * q / (m * q + n);
            EXPECT_NEAR(F_dist_export(args), q, std::max(tolerance, 1e-6 * n / (m * (1.0 - u) * (1.0 - u))));
            EXPECT_EQ(F_dist_export_ptr(args, &out), 0);
            EXPECT_EQ(out, F_dist_export(args));
        } else if (r[0] == "chi2") {
            const double args[2] = {p, m};
            EXPECT_NEAR(Chisqr_dist_export(args), q, tolerance);
            EXPECT_EQ(Chisqr_dist_export_ptr(args, &out), 0);
            EXPECT_EQ(out, Chisqr_dist_export(args));
        } else {
            ADD_FAILURE() << "unknown distribution";
        }
    }
}

TEST(Distributions, TailTable) {
    const vltest::DataTable table("math/distribution_tails.tsv");
    EXPECT_EQ(table.size(), 159u);
    for (std::size_t i = 0; i < table.size(); ++i) {
        const auto& r = table.row(i);
        SCOPED_TRACE(named(i, r));
        const double x = vltest::number(r[1]), value = vltest::number(r[4]);
        double out = 0.0;
        if (r[0] == "t") {
            const double n = vltest::number(r[2]);
            EXPECT_NEAR(row("INVT", x, n), value, 3e-7);
            EXPECT_EQ(row("INVT", -x, n), row("INVT", x, n));
        } else if (r[0] == "F") {
            const double m = vltest::number(r[2]), n = vltest::number(r[3]);
            EXPECT_NEAR(row("INCF", x, m, n), value, 3e-7);
            EXPECT_NEAR(row("INVF", x, m, n), 1.0 - value, 3e-7);
        } else if (r[0] == "chi2") {
            EXPECT_EQ(chisquare_prob_Q_export_ptr(&out, x, vltest::number(r[2])), 0);
            EXPECT_NEAR(out, value, 3e-7);
        } else if (r[0] == "normal") {
            EXPECT_NEAR(cum_gauss_export(x), value, 3e-8);
            EXPECT_EQ(norm_prob_export_ptr(x, &out), 0);
            EXPECT_EQ(out, cum_gauss_export(x));
            EXPECT_EQ(row("PROB", x), out);
        } else {
            ADD_FAILURE() << "unknown distribution";
        }
    }
}

// Points the tables leave out: the median of t lands just below zero, the
// search for t of one degree of freedom far out in the tail ends near 636,
// and F(1, 1).
TEST(Distributions, PointsOutsideTheTables) {
    const double t_median[2] = {0.5, 5}, t_far[2] = {0.9999999, 1}, f_one[3] = {0.95, 1, 1};
    EXPECT_LT(t_dist_export(t_median), 0.0);
    EXPECT_GT(t_dist_export(t_median), -1e-6);
    EXPECT_NEAR(t_dist_export(t_far), 636.0, 1e-3);
    EXPECT_NEAR(F_dist_export(f_one), 161.448, 1e-3);
    EXPECT_NEAR(row("INVF", 3, 4, 5), 0.870297, 1e-6);
    EXPECT_EQ(row("INVPROB", 0.0), 0.0);
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
    // QCD2 of 120 and QCD3 of 6 are rows of function_rows.tsv, checked exactly there.
    const Case cases[] = {{"QCD2", 2, 1.12803},  {"QCD2", 5, 2.32541},  {"QCD2", 10, 3.07797},  {"QCD2", 25, 3.93102},
                          {"QCD2", 26, 3.96459}, {"QCD2", 200, 5.12},   {"QCD3", 7, 0.0806362}, {"QCD3", 25, 0.118869},
                          {"QCD4", 2, 3.26793},  {"QCD4", 10, 1.77586}, {"QCD4", 25, 12.1561}};
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
