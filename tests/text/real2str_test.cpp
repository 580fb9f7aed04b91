// Numbers to text under the short format texts, and the small companions.

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include "support.h"
#include "vlcore.h"

using vltest::bits;
using vltest::Poisoned;

namespace {

struct Case {
    const char* format;
    double value;
    const char* text;
};

std::string row_name(const Case& c) {
    char v[40];
    std::snprintf(v, sizeof v, "%.17g", c.value);
    return std::string("format <") + c.format + "> value " + v;
}

// Prints into a poisoned buffer of `room` bytes and checks that exactly the
// text and its terminator were written.
void expect_prints(const Case& c, std::size_t room) {
    SCOPED_TRACE(row_name(c));
    Poisoned dst(room);
    char* result = KELUTIL_real2str(c.value, dst.data(), c.format);
    EXPECT_EQ(result, dst.data());
    EXPECT_EQ(dst.text(), c.text);
    EXPECT_TRUE(dst.clean_from(std::strlen(c.text) + 1)) << "wrote past the terminator";
}

// The examples of the format texts, each worked out by hand from the rules:
// thresholds, digit counts, zero trimming and exponent shortening.
const Case kExamples[] = {
    {"*", 3.14159265, "3.14159"},
    {"*", 1234.5, "1234.5"},
    {"*", 100, "100"},
    {"*", -2.5, "-2.5"},
    {"*", 123456789012, "123456789012"},
    {"*", 1e12, "1E12"},
    {"*", 0.00001, "0.00001"},
    {"*", 0.000001, "1E-6"},
    {"*", 1.5e-7, "1.5E-7"},
    {"*3", 12.345, "12.3"},
    {"*3", 1.5, "1.50"},
    {"*3", 999, "999"},
    {"*3", 999.9, "1000"},
    {"*3", 1234, "1.23E3"},
    {"*3", 0.5, "0.500"},
    {"*3", 0.0123, "0.0123"},
    {"*3", 0.04, "0.040"},
    {"*3", 0.001, "1E-3"},
    {"*3*", 1.5, "1.5"},
    {"*3*", 0.04, "0.04"},
    {"*6", 1234.5, "1234.50"},
    {"*6", 1000000, "1E6"},
    {".2", 3.14159, "3.14"},
    {".2", 1234.5, "1234.50"},
    {".2", 100, "100.00"},
    {".2", 1e12, "1.00E12"},
    {".2", 0.000001, "1.00E-6"},
    {".0", 3.6, "4"},
    {"S*", 1234, "1.234E3"},
    {"S*3", 1234, "1.23E3"},
    {"S*3", 0.5, "5E-1"},
    {"S.2", 0.5, "5.00E-1"},
    {"E*3", 1234, "1.23k"},
    {"E*3", 1000000, "1.00M"},
    {"E*3", 0.5, "500m"},
    {"E*3", 0.00123, "1.23m"},
    {"E*3", 0.0001, "0.100m"},
    {"E*3", 999, "999"},
    {"E*3", 1e21, "1.00e21"},
    {"E*3", 1e-21, "1.00e-21"},
    {"E.2", 1500, "1.50k"},
    {"E*", 2000000, "2M"},
    {"P*3", 1234, "1.23x10\\+(3)"},
    {"P*3", 0.00123, "1.23x10\\+(-3)"},
    {"P*3", 1000, "10\\+(3)"},
    {"P*", -1000, "-10\\+(3)"},
    {"P*", 1, "10\\+(0)"},
    {"P*", 1500, "1.5x10\\+(3)"},
    {",*", 1234.5, "1234.5"},
    {"%8.3f", 1.5, "   1.500"},
    {"%5.2f kg", 1.5, " 1.50kg"},
};

TEST(Real2Str, Examples) {
    for (const auto& c : kExamples) expect_prints(c, VL_FORMAT_ROOM);
}

// Values the table cannot show: zero and the reserved values, in the order
// the printer tests them.
const Case kSpecial[] = {
    {"*3", 0.0, "0"},
    {".2", 0.0, "0"},
    {"E*3", 0.0, "0"},
    {"P*3", 0.0, "0"},
    {"S*", 0.0, "0"},
    {"%f", 0.0, "0.000000"},
    {"*", -0.0, "0"},
    // Tiny magnitudes become +0.0, so not even a sign survives.
    {"%f", -0.0, "0.000000"},
    {"%f", -1e-300, "0.000000"},
    {"*", 1e-300, "0"},
    {"*", 9.99e-291, "0"},
    {"*", 1.01e-290, "1.01E-290"},
    {"*", 1e291, "--"},
    {"*", 1e290, "1E290"},
    {"*", -1e291, "--"},
    {"*", VL_MISSING_VALUE, "--"},
    {"%f", VL_MISSING_VALUE, "--"},
    {"*", VL_DIV_ZERO_VALUE, "/0"},
    {"E*3", VL_DIV_ZERO_VALUE, "/0"},
    {"*", std::numeric_limits<double>::quiet_NaN(), "/0"},
    {"*", std::numeric_limits<double>::infinity(), "--"},
    {"*", -std::numeric_limits<double>::infinity(), "--"},
    // Reserved values never reach date printing.
    {"D", VL_MISSING_VALUE, "--"},
    {"D3", VL_DIV_ZERO_VALUE, "/0"},
    {"D3", 1e300, "--"},
};

TEST(Real2Str, ZeroAndReservedValues) {
    for (const auto& c : kSpecial) expect_prints(c, VL_FORMAT_ROOM);
}

// The `D` prefix prints what date printing prints for the number behind it.
TEST(Real2Str, DatePrefixHandsOver) {
    const struct {
        const char* format;
        uint32_t date_format;
    } cases[] = {{"D", 0}, {"D3", 3}, {"D 5", 5}, {"D65539", 3}, {"Dx", 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.format);
        Poisoned expected(VL_FORMAT_ROOM), dst(VL_FORMAT_ROOM);
        KELUTIL_date2str(2451545.25, c.date_format, expected.data());
        EXPECT_EQ(KELUTIL_real2str(2451545.25, dst.data(), c.format), dst.data());
        EXPECT_EQ(dst.text(), expected.text());
        EXPECT_EQ(dst.untouched_from(), expected.untouched_from());
    }
}

// Each threshold from both sides.  The bounds are single-precision numbers:
// 1e12f is 999999995904 and 1e-5f is 9.99999974737875e-06, so a value just
// below 1e12 already takes the exponent form.
const Case kThresholds[] = {
    {"*", 999999995904.0, "1E12"},
    {"*", 999999995903.9998779296875, "999999995903.99988"},
    {"*", 999999999999.0, "1E12"},
    {".1", 999999995904.0, "1.0E12"},
    {".1", 999999995903.9998779296875, "999999995904.0"},
    {"*", static_cast<double>(1e-5f), "1E-5"},
    {"*", std::nextafter(static_cast<double>(1e-5f), 1.0), "0.00001"},
    {"*", -static_cast<double>(1e-5f), "-1E-5"},
    {".3", static_cast<double>(1e-5f), "1.000E-5"},
    // 10^N for "*N"; just below 1000 the decade counts as 3 (tolerance), so
    // no decimals remain.
    {"*3", 1000.0, "1E3"},
    {"*3", std::nextafter(1000.0, 0.0), "1000"},
    {"*3*", -1000.0, "-1E3"},
    {"*6", 999999.0, "999999"},
    {"*6", 1000000.0, "1E6"},
    {"*3", static_cast<double>(1e-3f), "1E-3"},
    {"*3", std::nextafter(static_cast<double>(1e-3f), 1.0), "0.00100"},
    {"*3*", std::nextafter(static_cast<double>(1e-3f), 1.0), "0.001"},
    // "*0": bounds 1 and 0.001 with automatic digits.
    {"*0", 0.5, "0.5"},
    {"*0", 1.0, "1E0"},
    {"*0", 0.001, "1E-3"},
    {"*0", 0.0011, "0.0011"},
    // "*12*" is no trimming form: "12*" is a bad number, N is 0.
    {"*12*", 0.5, "0.5"},
    {"*12*", 2.0, "2E0"},
};

TEST(Real2Str, ThresholdsFromBothSides) {
    for (const auto& c : kThresholds) expect_prints(c, VL_REAL2STR_SHORT_ROOM);
}

// Halfway cases: fixed and exponent digits round the exact binary value to
// even, as a standard printf does (0.125 and 2.5 are exact; 2.675 and 1.005
// lie below their apparent halves).
const Case kRounding[] = {
    {".0", 0.5, "0"},
    {".0", 1.5, "2"},
    {".0", 2.5, "2"},
    {".0", -2.5, "-2"},
    {".0", -0.4, "-0"},
    {".2", 0.125, "0.12"},
    {".2", 0.375, "0.38"},
    {".2", 2.675, "2.67"},
    {"*3", 1.005, "1.00"},
    {"*3", 1.125, "1.12"},
    {"S.0", 2.5, "2E0"},
    {"S.0", 3.5, "4E0"},
    {"S*2", 1.25, "1.2E0"},
    {"S*2", 9.5, "9.5E0"},
    {"S*1", 9.5, "1E1"},
    {"*", 0.000015, "0.00002"},
    {"*", 2.5e-6, "2.5E-6"},
    {"*", 9.999995, "10"},
    {"*", 99999.999995, "100000"},
    {"E*3", -999999.5, "-1000k"},  // the decade is taken before rounding
    {"E*3", 999499.0, "999k"},
};

TEST(Real2Str, HalfwayCases) {
    for (const auto& c : kRounding) expect_prints(c, VL_REAL2STR_SHORT_ROOM);
}

// Every SI letter, and the power-of-ten form for a value that is no exact
// power.  -2.5e-7 lies in decade -7, and the power of 1000 of that decade,
// -7/3 rounded half up by truncation, is -2: micro, not nano.
const Case kScales[] = {
    {"E*", 1e3, "1k"},
    {"E*", 1e6, "1M"},
    {"E*", 1e9, "1G"},
    {"E*", 1e12, "1T"},
    {"E*", 1e15, "1P"},
    {"E*", 1e18, "1E"},
    {"E*", 1e21, "1e21"},
    {"E*", 1e-3, "1m"},
    {"E*", 1e-6, "1\xB5"},
    {"E*", 1e-9, "1n"},
    {"E*", 1e-12, "1p"},
    {"E*", 1e-15, "1f"},
    {"E*", 1e-18, "1a"},
    {"E*", 1e-21, "1e-21"},
    {"E*", -2.5e-7, "-0.25\xB5"},
    {"E*3", 999.9, "1000"},
    {"E*3", -1234, "-1.23k"},
    {"P*", 0.5, "5x10\\+(-1)"},
    {"P.1", 25, "2.5x10\\+(1)"},
    {"P*3", -0.001, "-10\\+(-3)"},
    {"E%.1f", 1500, "1.5k"},
    {"P%.2e", 1234, "1.23e+00x10\\+(3)"},
};

TEST(Real2Str, ScaledForms) {
    for (const auto& c : kScales) expect_prints(c, VL_REAL2STR_SHORT_ROOM);
}

// Digit counts and decimals at their limits: N counts from 1 to 19 only,
// but the thresholds keep the N that was written.
const Case kLimits[] = {
    {".19", 1.5, "1.5000000000000000000"},
    {".20", 1.5, "2"},
    {"*19", 1.5, "1.500000000000000000"},
    {"*19", -0.0011, "-0.001100000000000000066"},
    {"*1", 1.5, "2"},
    {"*1", 12.0, "1E1"},
    {"*20", 1.5, "1.5"},
    {"*20", 1e15, "1000000000000000"},
    {"*40", 1e30, "1000000000000000019884624838656"},
    {"*40", 1e40, "--"},
    {"*-5", 0.5, "5E-1"},
    {"*x", 0.5, "0.5"},
    {".19", -9.25e-200, "-9.2499999999999999795E-200"},
    {".", 2.5, "2"},
};

TEST(Real2Str, DigitCountsAtTheirLimits) {
    for (const auto& c : kLimits) expect_prints(c, VL_REAL2STR_SHORT_ROOM);
}

// Bodies that are printf formats, read by the library itself.
const Case kPrintf[] = {
    {"%e", 1.5, "1.500000e+00"},
    {"%E", 12345.678, "1.234568E+04"},
    {"%g", 1e-5, "1e-05"},
    {"%G", 1234567.0, "1.23457E+06"},
    {"%g", 100000.0, "100000"},
    {"%#g", 1.5, "1.50000"},
    {"%.200g", 0.5, "0.5"},
    {"%+.1f", 2.25, "+2.2"},
    {"%010.2f", -3.14159, "-000003.14"},
    {"%-8.2f|", 1.5, "1.50    |"},
    {"%#.0f", 3.0, "3."},
    {"%#.0e", 3.0, "3.e+00"},
    {"%lf", 0.25, "0.250000"},
    {"% 5.1f", 1.5, "  1.5"},
    {"%.1f%%", 12.34, "12.3%"},
    {"value=%.3e", -1e-100, "value=-1.000e-100"},
    {"abc", 1.5, "abc"},
    {"", 1.5, ""},
    {"%d", 1.5, "--"},
    {"%s", 1.5, "--"},
    {"%n", 1.5, "--"},
    {"%x", 1.5, "--"},
    {"%f%f", 1.5, "--"},
    {"%*f", 1.5, "--"},
    {"%Lf", 1.5, "--"},
    {"%", 1.5, "--"},
    {"%5", 1.5, "--"},
};

TEST(Real2Str, PrintfBodies) {
    for (const auto& c : kPrintf) expect_prints(c, VL_FORMAT_ROOM);
}

TEST(Real2Str, PrintfBodyLimits) {
    // Output of exactly 119 characters fits; one more prints "--".
    expect_prints({"%119.1f", 1.5, (std::string(116, ' ') + "1.5").c_str()}, VL_FORMAT_ROOM);
    expect_prints({"%120.1f", 1.5, "--"}, VL_FORMAT_ROOM);
    const std::string exact = "%.0f" + std::string(115, 'x');  // body of 119 characters
    expect_prints({exact.c_str(), 1.0, ("1" + std::string(115, 'x')).c_str()}, VL_FORMAT_ROOM);
    const std::string longer = exact + "x";  // 120 characters, output still short
    expect_prints({longer.c_str(), 1.0, "--"}, VL_FORMAT_ROOM);
    // White space does not count against the body.
    const std::string spaced = exact + "   ";
    expect_prints({spaced.c_str(), 1.0, ("1" + std::string(115, 'x')).c_str()}, VL_FORMAT_ROOM);
    // The suffix counts against the output.
    const std::string with_suffix = "%.0f" + std::string(114, 'x');  // 115 characters out
    expect_prints({("E" + with_suffix).c_str(), 1000.0, ("1" + std::string(114, 'x') + "k").c_str()}, VL_FORMAT_ROOM);
    expect_prints({"%.150f", 1.5, "--"}, VL_FORMAT_ROOM);
}

// ---- KELUTIL_real2real ----------------------------------------------------

struct RoundCase {
    double value;
    int32_t places;
    double result;
};

TEST(Real2Real, Table) {
    const RoundCase cases[] = {
        {2.5, 0, 3.0},
        {-2.5, 0, -3.0},
        {1234.0, -2, 1200.0},
        {1250.0, -2, 1300.0},
        {0.125, 2, 0.13},
        {-0.125, 2, -0.13},
        {1.005, 2, 1.0},  // 1.005 lies below its half
        {-0.4, 0, 0.0},
        {2147483647.4, 0, 2147483647.0},
        {1e10, 0, 1410065408.0},  // 10^10 mod 2^32
        {-1e10, 0, -1410065408.0},
        {1.25, 65537, 1.3},  // places use their low 16 bits: 1
        {123.456, 1, 123.5},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("value " + std::to_string(c.value) + " places " + std::to_string(c.places));
        EXPECT_EQ(KELUTIL_real2real(c.value, c.places), c.result);
    }
}

// ---- KELUTIL_int2str, KELUTIL_int2fixstr -----------------------------------

TEST(Int2Str, TextAndStaticBuffer) {
    const struct {
        int32_t value;
        const char* text;
    } cases[] = {{0, "0"}, {42, "42"}, {-7, "-7"}, {INT32_MAX, "2147483647"}, {INT32_MIN, "-2147483648"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_STREQ(KELUTIL_int2str(c.value), c.text);
    }
    char* first = KELUTIL_int2str(1);
    char* second = KELUTIL_int2str(22);
    EXPECT_EQ(first, second) << "one static buffer";
    EXPECT_STREQ(first, "22");
}

TEST(Int2FixStr, Table) {
    const struct {
        int32_t value;
        int32_t width;
        const char* text;
    } cases[] = {
        {7, 3, "007"},        {-5, 4, "00-5"},
        {12345, 3, "12345"},  {12345, 5, "12345"},
        {12345, 6, "012345"}, {0, 0, "0"},
        {-5, -3, "-5"},       {INT32_MIN, 12, "0-2147483648"},
        {0, 1, "0"},          {9, 20, "00000000000000000009"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.value) + " width " + std::to_string(c.width));
        Poisoned dst(32);
        KELUTIL_int2fixstr(c.value, c.width, dst.data());
        EXPECT_EQ(dst.text(), c.text);
        EXPECT_TRUE(dst.clean_from(std::strlen(c.text) + 1));
    }
}

// ---- KELUTIL_GetPrivateProfileReal ---------------------------------------

class ProfileReal : public ::testing::Test {
  protected:
    void SetUp() override {
        path_ = std::filesystem::temp_directory_path() /
                ("vlcore_real_" + std::to_string(reinterpret_cast<uintptr_t>(this)) + ".ini");
        std::ofstream(path_) << "[Plot]\nScale = 2.5\nBad=abc\nExp=1e3\nEmpty=\nNeg=-0.125\n[Other]\nScale=7\n";
    }
    void TearDown() override { std::filesystem::remove(path_); }
    double read(const char* section, const char* key, double def) {
        return KELUTIL_GetPrivateProfileReal(section, key, def, path_.string().c_str());
    }
    std::filesystem::path path_;
};

TEST_F(ProfileReal, StoredTexts) {
    EXPECT_EQ(read("Plot", "Scale", 9.0), 2.5);
    EXPECT_EQ(read("plot", "SCALE", 9.0), 2.5) << "names match without regard to case";
    EXPECT_EQ(read("Other", "Scale", 9.0), 7.0);
    EXPECT_EQ(read("Plot", "Exp", 9.0), 1000.0);
    EXPECT_EQ(read("Plot", "Neg", 9.0), -0.125);
    EXPECT_EQ(read("Plot", "Empty", 9.0), 0.0) << "an empty text reads as zero";
    EXPECT_EQ(bits(read("Plot", "Bad", 9.0)), bits(VL_MISSING_VALUE));
}

TEST_F(ProfileReal, DefaultTravelsAsText) {
    EXPECT_EQ(read("Plot", "Absent", 1.25), 1.25);
    EXPECT_EQ(read("Plot", "Absent", 3.14159265), 3.0 + 14159.0 / 100000.0) << "five decimals of \"*\"";
    EXPECT_EQ(read("Plot", "Absent", 1e12), 1e12) << "via \"1E12\"";
    EXPECT_EQ(read("Absent", "Scale", -2.5), -2.5);
    EXPECT_EQ(read("Plot", "Absent", VL_MISSING_VALUE), 0.0) << "\"--\" reads as zero";
    EXPECT_EQ(KELUTIL_GetPrivateProfileReal("Plot", "Scale", 4.5, (path_.string() + ".none").c_str()), 4.5);
}

}  // namespace
