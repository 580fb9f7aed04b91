// Format-directed output: KELUTIL_sprintf and the digit-row converter.

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

#include "support.h"
#include "vlcore.h"

using vltest::Poisoned;

namespace {

struct SprintfCase {
    const char* format;
    double value;
    const char* text;
    int32_t result;
};

std::string row_name(const char* format, double value) {
    char v[40];
    std::snprintf(v, sizeof v, "%.17g", value);
    return std::string("format <") + format + "> value " + v;
}

void expect_sprintf(const SprintfCase& c) {
    SCOPED_TRACE(row_name(c.format, c.value));
    Poisoned dst(VL_FORMAT_ROOM);
    EXPECT_EQ(KELUTIL_sprintf(dst.data(), c.format, c.value), c.result);
    EXPECT_EQ(dst.text(), c.text);
    EXPECT_TRUE(dst.clean_from(std::strlen(c.text) + 1)) << "wrote past the terminator";
}

// The examples, worked out from the converter's steps: one rounding term,
// digits from the mantissa, the point placed by the form.
const SprintfCase kExamples[] = {
    {"%7.3g", 1234.5678, "1234.568", 0},
    {"%7.3e", 1234.5678, "1.235e3", 0},
    {"%7.3E", 1234.5678, "1.235E3", 0},
    {"%7.3g", 123456.789, "1.235e5", 0},
    {"%7.3G", 1e10, "1.000E10", 0},
    {"%7.3g", 0.00123, "0.001", 0},
    {"%7.3g", 0.000123, "1.230e-4", 0},
    {"%7.3g", 0, "0.000", 0},
    {"%7.3e", 0, "0.000e0", 0},
    {"%7.2e", -2.5, "-2.50e0", 0},
    {"%7.3g", 999.9996, "1000.000", 0},
    // 'g' is searched before 'e': "2e k" is a bad number, P is 0, general.
    {"%6.2e kg", 1234.5, "1e3", 0},
    // Nothing in front of the point: the '2' is the conversion, W 7, P 3.
    {"%.2f", 3.14159, "3.142", 0},
    {"%5.f", 1.5, "    2", 5},
    {"%8.3f", 1.5, "   1.500", 8},
};

TEST(Sprintf, Examples) {
    for (const auto& c : kExamples) expect_sprintf(c);
}

// Cases the table cannot show.
const SprintfCase kEdges[] = {
    // The converter rounds half up by adding half a unit; printf would give
    // 1.2e+00 for the exactly representable 1.25.
    {"%7.1e", 1.25, "1.3e0", 0},
    {"%7.0e", 2.5, "3e0", 0},
    {"%10.4e", 12345.678, "1.2346e4", 0},
    {"%12.3e", 1.5, "1.500e0", 0},  // W pads nothing here
    {"%7.3g", 1e-5, "1.000e-5", 0},
    {"%7.3g", 9999.5, "9999.500", 0},  // x = 3, still fixed
    {"%7.3g", 99999.5, "1.000e5", 0},
    {"%7.3g", 0.0001, "1.000e-4", 0},
    {"%7.3g", 0.000999, "9.990e-4", 0},
    {"%7.3g", 0.00099996, "0.001", 0},  // rounding moves it into the fixed range
    {"%7.0g", 5.0, "5", 0},
    // Negative zero keeps its sign bit; subnormals are rows of zeros.
    {"%7.3g", -0.0, "-0.000", 0},
    {"%7.3e", -0.0, "-0.000e0", 0},
    {"%7.3e", 5e-324, "0.000e0", 0},
    {"%7.3e", std::numeric_limits<double>::infinity(), "--", 0},
    {"%7.3g", std::numeric_limits<double>::quiet_NaN(), "--", 0},
    {"%7.3e", 1.7976931348623157e308, "1.798e308", 0},
    {"%7.3e", 2.2250738585072014e-308, "2.225e-308", 0},
    {"%7.3e", VL_MISSING_VALUE, "-1.235e-300", 0},
    // The fixed road prints the whole format with our own digits.
    {"%8.3f m", 1.5, "   1.500 m", 10},
    {"%8.3f kg", 1.5, "2", 0},  // the 'g' of "kg" wins the search: general, P 0
    {"%-8.3f|", -1.5, "-1.500  |", 9},
    {"%.0f", 2.5, "2.500", 0},  // the '0' behind the point is the conversion: general
    // Outside the limits.
    {"", 1.5, "--", -1},
    {"%7d", 1.5, "--", -1},
    {"%7.3d", 1.5, "--", -1},
    {"%7.3f %s", 1.5, "--", -1},
    {"%7.3f%f", 1.5, "--", -1},
    {"%7.3n", 1.5, "--", -1},
    {"%150.1f", 1.5, "--", -1},
};

TEST(Sprintf, Edges) {
    for (const auto& c : kEdges) expect_sprintf(c);
}

TEST(Sprintf, FormatLengthLimit) {
    const std::string ok = "%7.3e" + std::string(114, ' ');  // 119 characters
    expect_sprintf({ok.c_str(), 1.5, "1.500e0", 0});
    const std::string longer = ok + " ";
    expect_sprintf({longer.c_str(), 1.5, "--", -1});
}

// ---- KELUTIL_real_str -----------------------------------------------------

struct RealStrCase {
    double value;
    uint32_t mode;
    uint32_t width;
    uint32_t precision;
    const char* text;
    int32_t result;
};

void expect_real_str(const RealStrCase& c, std::size_t room = VL_REAL_STR_ROOM) {
    char name[120];
    std::snprintf(name, sizeof name, "value %.17g mode %u W %u P %u", c.value, c.mode, c.width, c.precision);
    SCOPED_TRACE(name);
    Poisoned dst(room);
    EXPECT_EQ(KELUTIL_real_str(c.value, c.mode, c.width, c.precision, dst.data()), c.result);
    EXPECT_EQ(dst.text(), c.text);
    EXPECT_TRUE(dst.clean_from(std::strlen(c.text) + 1)) << "wrote past the terminator";
}

const RealStrCase kModes[] = {
    {1.0, VL_REAL_GENERAL | VL_REAL_TRIM, 7, 3, "1", 0},
    {1234.5, VL_REAL_GENERAL | VL_REAL_TRIM, 7, 3, "1234.5", 0},
    {1234.5, VL_REAL_GENERAL | VL_REAL_TRIM | VL_REAL_UPPER, 7, 0, "1E3", 0},
    {0.004, VL_REAL_FIXED, 7, 2, "0.00", 1},
    {0.009, VL_REAL_FIXED, 7, 2, "0.01", 0},
    {-0.004, VL_REAL_FIXED, 7, 2, "0.00", 1},
    {-0.009, VL_REAL_FIXED, 7, 2, "-0.01", 0},
    {0.4, VL_REAL_FIXED, 7, 0, "0", 1},
    {2.5, VL_REAL_FIXED, 7, 0, "3", 0},
    {100.0, VL_REAL_FIXED | VL_REAL_TRIM, 7, 0, "100", 0},  // no point: nothing to trim
    {100.0, VL_REAL_FIXED | VL_REAL_TRIM, 7, 2, "100", 0},
    {1234.5678, VL_REAL_FIXED, 7, 2, "1234.57", 0},
    {1234.5678, VL_REAL_EXPONENT | VL_REAL_UPPER, 7, 1, "1.2E3", 0},
    {1.5e10, VL_REAL_EXPONENT | VL_REAL_TRIM, 7, 4, "1.5e10", 0},
    // Width form: fixed from exponent -3 to 6, decimals from W.
    {1234.5, VL_REAL_WIDTH, 10, 3, "1234.500", 0},
    {1234567.0, VL_REAL_WIDTH, 10, 3, "1234567.000", 0},
    {12345678.0, VL_REAL_WIDTH, 10, 3, "1.235e7", 0},
    {-0.00012, VL_REAL_WIDTH, 10, 3, "-1.200e-4", 0},
    // Other form values act as the general form; the low 8 bits count.
    {1234.5678, 0, 7, 3, "1234.568", 0},
    {1234.5678, 256 + 2, 7, 3, "1234.568", 0},
    {1234.5678, 6, 7, 3, "1234.568", 0},
    {1234.5678, 4, 7, 256 + 1, "1.2e3", 0},
};

TEST(RealStr, Modes) {
    for (const auto& c : kModes) expect_real_str(c);
}

TEST(RealStr, LongestTexts) {
    // 255 places behind the point and no digit reaching them: "0." and 255
    // zeros, unsigned.
    expect_real_str({-1e-300, VL_REAL_FIXED, 7, 255, ("0." + std::string(255, '0')).c_str(), 1});
    // The largest double in fixed form: 309 integer places from a row of 119
    // digits, the rest zeros.
    Poisoned dst(VL_REAL_STR_ROOM);
    EXPECT_EQ(KELUTIL_real_str(-1.7976931348623157e308, VL_REAL_FIXED, 255, 255, dst.data()), 0);
    const std::string text = dst.text();
    EXPECT_EQ(text.size(), 310u);
    EXPECT_EQ(text.substr(0, 17), "-1797693134862315");
    EXPECT_EQ(text.find('.'), std::string::npos);
    EXPECT_LT(text.size() + 1, static_cast<std::size_t>(VL_REAL_STR_ROOM));
    EXPECT_TRUE(dst.clean_from(text.size() + 1));
    // At most 119 digits in exponent form.
    Poisoned e(VL_REAL_STR_ROOM);
    EXPECT_EQ(KELUTIL_real_str(1.0 / 3.0, VL_REAL_EXPONENT, 0, 200, e.data()), 0);
    EXPECT_EQ(e.text().size(), std::string("3.").size() + 118 + std::string("e-1").size());
    EXPECT_EQ(e.text().substr(0, 17), "3.333333333333333");
}

}  // namespace
