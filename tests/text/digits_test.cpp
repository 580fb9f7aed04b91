// The internals of number printing: decades, scaling, zero trimming, the
// decimal point of the digit-row converter and the printf-style conversions.

#include "text/digits.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include "support.h"

using namespace vl::text;
using vltest::Poisoned;

namespace {

TEST(DecadeOf, Table) {
    const struct {
        double x;
        int32_t decade;
    } cases[] = {
        {0.0, 0},           {2.5, 2},           {3.0, 3},          {2.99999999999, 3},  // within the tolerance
        {2.9999999998, 2},  {-0.5, -1},         {-1.0, -1},        {-1.398, -1},        // truncation toward zero
        {-1.5, -2},         {-1.6, -2},         {-2.4, -2},        {-2.5, -3},
        {-2.6, -3},         {32767.0, 32767},   {32767.5, 32767},  {40000.0, 32767},
        {-32768.0, -32768}, {-40000.0, -32768}, {std::nan(""), 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("x " + std::to_string(c.x));
        EXPECT_EQ(decade_of(c.x), c.decade);
    }
}

// The shortcut must answer what the logarithm answers, most of all next to
// powers of ten (within and outside the tolerance) and below 0.1.
TEST(DecadeOfMagnitude, AgreesWithTheLogarithm) {
    std::mt19937_64 rng(11);
    std::uniform_real_distribution<double> unit(1.0, 10.0);
    std::uniform_int_distribution<int> exp10(-300, 299);
    for (int i = 0; i < 200000; ++i) {
        const int e = exp10(rng);
        double m = unit(rng) * std::pow(10.0, e);
        if (i % 4 == 1) m = std::pow(10.0, e) * (1.0 - std::ldexp(1.0, -(i % 40)));
        if (i % 4 == 2) m = std::nextafter(std::pow(10.0, e), i % 8 < 4 ? 0.0 : HUGE_VAL);
        SCOPED_TRACE(std::to_string(i));
        ASSERT_EQ(decade_of_magnitude(m), decade_of(std::log10(m))) << m;
    }
    EXPECT_EQ(decade_of_magnitude(1e308), 308);
    EXPECT_EQ(decade_of_magnitude(4.9e-324), -323);
}

TEST(DecimalExponent, Table) {
    const struct {
        double mag;
        int32_t x;
    } cases[] = {{1.0, 0},
                 {9.999999999999998, 0},
                 {10.0, 1},
                 {0.1, -1},
                 {0.09999999999999999, -2},
                 {1e23, 23},
                 {1.7976931348623157e308, 308},
                 {2.2250738585072014e-308, -308},
                 {4.9e-324, -324}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.mag));
        EXPECT_EQ(decimal_exponent(c.mag), c.x);
    }
}

TEST(EngineeringScale, Table) {
    const struct {
        double value;
        char mode;
        double scaled;
        const char* suffix;
    } cases[] = {
        {0.0, 'E', 0.0, ""},
        {0.0, 'P', 0.0, ""},
        {999.0, 'E', 999.0, ""},
        {1234.0, 'E', 1.234, "k"},
        {-2e6, 'E', -2.0, "M"},
        {1e18, 'E', 1.0, "E"},
        {1e21, 'E', 1.0, "e21"},
        {1e-21, 'E', 1.0, "e-21"},
        {1e-300, 'E', 1.0, "e-300"},
        {0.5, 'E', 500.0, "m"},
        {1234.0, 'P', 1.234, "x10\\+(3)"},
        {0.00123, 'P', 1.23, "x10\\+(-3)"},
        {-7.0, 'P', -7.0, "x10\\+(0)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(1, c.mode) + " " + std::to_string(c.value));
        const Scaled s = engineering_scale(c.value, c.mode);
        EXPECT_DOUBLE_EQ(s.value, c.scaled);
        EXPECT_STREQ(s.suffix.data(), c.suffix);
    }
}

TEST(TrimTrailingZeros, Table) {
    const struct {
        const char* in;
        int32_t limit;
        const char* out;
    } cases[] = {
        {"1.500", 100, "1.5"}, {"1.000", 100, "1"}, {"100", 100, "1"},  // no point: zeros of the integer go too
        {"0.0", 100, "0"},     {"", 100, ""},       {"1.500", 1, "1.50"}, {"1.00", 2, "1"},
        {"1.5", 100, "1.5"},   {"10.", 100, "10"},  {"2.50", 0, "2.50"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string("<") + c.in + "> limit " + std::to_string(c.limit));
        auto buf = vltest::writable(c.in);
        trim_trailing_zeros(buf.data(), c.limit);
        EXPECT_STREQ(buf.data(), c.out);
    }
}

TEST(PlacePoint, Table) {
    const struct {
        const char* digits;
        int32_t n, decimals, e;
        const char* text;
        bool ok;
    } cases[] = {
        {"1235", 4, -1, 0, "1.235", true}, {"1234568", 7, 3, 3, "1234.568", true}, {"900", 7, 2, -3, "0.00", false},
        {"140", 7, 2, -2, "0.01", true},   {"1730", 7, 3, -3, "0.001", true},      {"5", 1, 0, 0, "5", true},
        {"12", 7, 5, 4, "12000", true},    {"1234", 5, -1, -2, "0.012", true},     {"9", 7, 0, -1, "0", false},
        {"123", 0, -1, 0, "1", true},      {"123", 3, 9, 0, "1.23", true},         {"4", 0, -1, -1, "0", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string("<") + c.digits + "> n " + std::to_string(c.n) + " decimals " +
                     std::to_string(c.decimals) + " e " + std::to_string(c.e));
        Poisoned buf(kPlacedRoom);
        std::memcpy(buf.data(), c.digits, std::strlen(c.digits) + 1);
        EXPECT_EQ(place_point({buf.data(), buf.size()}, c.n, c.decimals, c.e), c.ok);
        EXPECT_EQ(buf.text(), c.text);
    }
}

// ---- printf-style conversions -----------------------------------------------

std::string converted(double v, Conversion conv, std::size_t room = 200) {
    std::string out(room, '\xCC');
    const int32_t n = convert(v, conv, {out.data(), out.size()});
    if (n < 0) return "<refused>";
    EXPECT_EQ(out[static_cast<std::size_t>(n)], '\0');
    return out.substr(0, static_cast<std::size_t>(n));
}

Conversion conv_of(char letter, int32_t precision, int32_t width = 0) {
    Conversion c;
    c.letter = letter;
    c.precision = precision;
    c.width = width;
    return c;
}

TEST(Convert, TableOfTheStandardTexts) {
    // Texts of a standard printf: two exponent digits at least, ties to even
    // on the exact binary value.
    const struct {
        double v;
        Conversion conv;
        const char* text;
    } cases[] = {
        {1.5, conv_of('e', 6), "1.500000e+00"}, {1e100, conv_of('E', 2), "1.00E+100"},
        {1e-5, conv_of('e', 0), "1e-05"},       {0.125, conv_of('f', 2), "0.12"},
        {0.375, conv_of('f', 2), "0.38"},       {2.5, conv_of('f', 0), "2"},
        {-0.0, conv_of('f', 1), "-0.0"},        {1e-5, conv_of('g', -1), "1e-05"},
        {123456.0, conv_of('g', -1), "123456"}, {1234567.0, conv_of('g', -1), "1.23457e+06"},
        {0.0001, conv_of('g', -1), "0.0001"},   {0.5, conv_of('g', 0), "0.5"},
        {1.5, conv_of('f', 1, 6), "   1.5"},    {INFINITY, conv_of('f', 2, 5), "  inf"},
        {-INFINITY, conv_of('E', 2), "-INF"},   {NAN, conv_of('g', 2), "nan"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(converted(c.v, c.conv), c.text);
    }
}

TEST(Convert, RefusesWhatDoesNotFit) {
    EXPECT_EQ(converted(1.5, conv_of('f', 1), 4), "1.5");
    EXPECT_EQ(converted(1.5, conv_of('f', 1), 3), "<refused>");
    EXPECT_EQ(converted(1.5, conv_of('f', 1, 10), 10), "<refused>");
    EXPECT_EQ(converted(1.5, conv_of('f', 1, 10), 11), "       1.5");
    EXPECT_EQ(converted(1.5, conv_of('f', 5000), 200), "<refused>");
    EXPECT_EQ(converted(0.5, conv_of('g', 5000), 200), "0.5");
}

#ifndef _WIN32
// Natively the C runtime's printf rounds correctly and writes the standard
// texts, so it serves as an independent oracle for random values, flags,
// widths and precisions.  (On Windows the runtime is the thing we must not
// resemble.)
TEST(Convert, AgreesWithACorrectlyRoundingPrintf) {
    std::mt19937_64 rng(7);
    std::uniform_int_distribution<int> exp10(-30, 30), prec(0, 20), width(0, 30), letter(0, 5), flag(0, 31);
    std::uniform_real_distribution<double> mant(-10.0, 10.0);
    const char letters[] = "fFeEgG";
    for (int i = 0; i < 20000; ++i) {
        double v = mant(rng) * std::pow(10.0, exp10(rng));
        if (i % 7 == 0) v = std::round(v * 8) / 8;  // exact binary halves
        Conversion c;
        c.letter = letters[letter(rng)];
        c.precision = i % 5 == 0 ? -1 : prec(rng);
        c.width = width(rng);
        const int f = flag(rng);
        c.left = f & 1;
        c.plus = f & 2;
        c.space = f & 4;
        c.alternate = f & 8;
        c.zero = f & 16;
        std::string fmt = "%";
        if (c.left) fmt += '-';
        if (c.plus) fmt += '+';
        if (c.space) fmt += ' ';
        if (c.alternate) fmt += '#';
        if (c.zero) fmt += '0';
        fmt += std::to_string(c.width);
        if (c.precision >= 0) fmt += "." + std::to_string(c.precision);
        fmt += c.letter;
        char expected[512];
        std::snprintf(expected, sizeof expected, fmt.c_str(), v);
        SCOPED_TRACE(fmt + " of " + std::to_string(v));
        ASSERT_EQ(converted(v, c, 512), expected);
    }
}
#endif

TEST(FormatOneDouble, SuffixAndLimit) {
    char out[kFormatLimit + 1];
    ASSERT_TRUE(format_one_double("%.1f", 2.25, "k", out));
    EXPECT_STREQ(out, "2.2k");
    ASSERT_TRUE(format_one_double("a%%b", 2.25, "", out));
    EXPECT_STREQ(out, "a%b");
    const std::string full(kFormatLimit, 'x');
    EXPECT_TRUE(format_one_double(full, 0.0, "", out));
    EXPECT_FALSE(format_one_double(full, 0.0, "k", out)) << "the suffix counts";
    char small[4];
    EXPECT_TRUE(format_one_double("%.1f", 2.25, "", small));
    EXPECT_FALSE(format_one_double("%.2f", 2.25, "", small)) << "the caller's room counts too";
}

}  // namespace
