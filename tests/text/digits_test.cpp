// The internals of number printing: decades, scaling, zero trimming, the
// decimal point of the digit-row converter and the printf-style conversions.

#include "text/digits.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include "support.h"
#include "text/text_rows.h"

using namespace vl::text;
using vltest::Poisoned;

namespace {

const char* const kData = "text/digits.tsv";

int32_t int_of(const std::string& field) { return static_cast<int32_t>(vltest::integer(field)); }

TEST(DecadeOf, Table) {
    vltest::each_row(kData, "decade", 2,
                     [](const auto& f) { EXPECT_EQ(decade_of(vltest::value(f[0])), int_of(f[1])); });
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
    vltest::each_row(kData, "exponent", 2,
                     [](const auto& f) { EXPECT_EQ(decimal_exponent(vltest::value(f[0])), int_of(f[1])); });
}

TEST(EngineeringScale, Table) {
    vltest::each_row(kData, "scale", 4, [](const auto& f) {
        const Scaled s = engineering_scale(vltest::value(f[0]), f[1][0]);
        EXPECT_DOUBLE_EQ(s.value, vltest::value(f[2]));
        EXPECT_EQ(std::string(s.suffix.data()), f[3]);
    });
}

TEST(TrimTrailingZeros, Table) {
    vltest::each_row(kData, "trim", 3, [](const auto& f) {
        auto buf = vltest::writable(f[0]);
        trim_trailing_zeros(buf.data(), int_of(f[1]));
        EXPECT_EQ(std::string(buf.data()), f[2]);
    });
}

TEST(PlacePoint, Table) {
    vltest::each_row(kData, "place", 6, [](const auto& f) {
        Poisoned buf(kPlacedRoom);
        std::memcpy(buf.data(), f[0].c_str(), f[0].size() + 1);
        EXPECT_EQ(place_point({buf.data(), buf.size()}, int_of(f[1]), int_of(f[2]), int_of(f[3])), f[5] == "1");
        EXPECT_EQ(buf.text(), f[4]);
    });
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
    vltest::each_row(kData, "convert", 5, [](const auto& f) {
        EXPECT_EQ(converted(vltest::value(f[0]), conv_of(f[1][0], int_of(f[2]), int_of(f[3]))), f[4]);
    });
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
