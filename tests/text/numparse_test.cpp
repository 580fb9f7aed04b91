// Reading integers and reals from text.

#include <cmath>
#include <string>

#include "support.h"
#include "vlcore.h"

using vltest::bits;
using vltest::writable;

namespace {

constexpr double kMissing = VL_MISSING_VALUE;

TEST(ReservedValues, BitPatterns) {
    EXPECT_EQ(bits(VL_MISSING_VALUE), 0x81AA74FE1C132C0Eull);
    EXPECT_EQ(bits(VL_DIV_ZERO_VALUE), 0x7C29562E7A40495Full);
}

struct NumberCase {
    const char* text;
    bool int_good;
    int32_t int_value;
    double real;  // kMissing for a bad real
};

// The reference table: each text read both ways.
const NumberCase kNumbers[] = {
    {"", true, 0, 0.0},
    {"   ", true, 0, 0.0},
    {"-", true, 0, -0.0},
    {"+", true, 0, 0.0},
    {"--", false, 0, -0.0},
    {"12", true, 12, 12.0},
    {"+12", true, 12, 12.0},
    {"-12", true, -12, -12.0},
    {" 12 x", true, 12, 12.0},
    {"\t\r\n7\n", true, 7, 7.0},
    {"12x", false, 0, kMissing},
    {"1.5", false, 0, 1.5},
    {".5", false, 0, 0.5},
    {"1.", false, 0, 1.0},
    {"1.5abc", false, 0, 1.5},
    {"1.2.3", false, 0, 1.2},
    {"2E3", false, 0, 2000.0},
    {"2e+3", false, 0, 2000.0},
    {"2e", false, 0, 2.0},
    {"2e3x", false, 0, kMissing},
    {"1e2e3", false, 0, kMissing},
    {"abc", false, 0, kMissing},
    {"+123456789", true, 123456789, kMissing},
    {"-123456789", true, -123456789, -123456789.0},
    {"12345678", true, 12345678, 12345678.0},
    {"123456789012", true, -1097262572, 123456789012.0},  // integers wrap in 32 bits
    {"4294967297", true, 1, 4294967297.0},
    {"-2147483648", true, INT32_MIN, -2147483648.0},
    {"1e-3", false, 0, 1.0 * 1e-3},
    {"-0", true, 0, -0.0},
    {"0.000000001", false, 0, 1.0 / 1e9},
    {"1e400", false, 0, HUGE_VAL},
    {"1e-400", false, 0, 0.0},
    {"- 5", true, 0, -5.0},
    {"+.5", false, 0, 0.5},
    {"1.-5", false, 0, 1.0},
    {"1e 3", false, 0, 1000.0},
};

TEST(Str2Int, Table) {
    for (const auto& c : kNumbers) {
        SCOPED_TRACE(std::string("text <") + c.text + ">");
        EXPECT_EQ(KELUTIL_str2int(c.text), c.int_value);
        int32_t out = 0x5A5A5A5A;
        EXPECT_EQ(KELUTIL_cvtstr2int(c.text, &out), c.int_good ? 1 : 0);
        EXPECT_EQ(out, c.int_good ? c.int_value : 0x5A5A5A5A) << "out is untouched on failure";
    }
}

TEST(Str2Real, Table) {
    for (const auto& c : kNumbers) {
        SCOPED_TRACE(std::string("text <") + c.text + ">");
        auto buf = writable(c.text);
        const double v = KELUTIL_str2real(buf.data());
        EXPECT_EQ(bits(v), bits(c.real)) << "read " << v << ", want " << c.real;
    }
}

TEST(CvtStr2Real, SuccessLeavesTheTextAsItWas) {
    for (const auto& c : kNumbers) {
        SCOPED_TRACE(std::string("text <") + c.text + ">");
        auto buf = writable(c.text);
        const auto before = buf;
        double out = 99.0;
        const int32_t ok = KELUTIL_cvtstr2real(buf.data(), &out);
        EXPECT_EQ(ok, c.real == kMissing ? 0 : 1);
        if (ok)
            EXPECT_EQ(buf, before);
        else
            EXPECT_EQ(out, 99.0) << "out is untouched on failure";
    }
}

TEST(CvtStr2Real, FailureLeavesTheCut) {
    auto buf = writable("2e3x");
    double out = 0;
    EXPECT_EQ(KELUTIL_cvtstr2real(buf.data(), &out), 0);
    EXPECT_EQ(buf[1], '\0') << "the exponent letter stays cut";
    auto buf2 = writable("1.5e2");
    EXPECT_EQ(KELUTIL_cvtstr2real(buf2.data(), &out), 1);
    EXPECT_EQ(out, 150.0);
}

TEST(Str2Real, ArithmeticIsPartsThenOneMultiplication) {
    // The integer part and the fraction are formed apart, added, and the
    // exponent applied by one multiplication: not always the nearest double.
    const struct {
        const char* text;
        double value;
    } cases[] = {
        {"0.1", 1.0 / 10.0},
        {"123.456", 123.0 + 456.0 / 1000.0},
        {"1.23456789", 1.0 + 23456789.0 / 1e8},
        {"0.123456789",
         1.0 / 1e1 + 2.0 / 1e2 + 3.0 / 1e3 + 4.0 / 1e4 + 5.0 / 1e5 + 6.0 / 1e6 + 7.0 / 1e7 + 8.0 / 1e8 + 9.0 / 1e9},
        {"123456789.5", 1e8 + 2e7 + 3e6 + 4e5 + 5e4 + 6e3 + 7e2 + 8e1 + 9.0 + 0.5},
        {"3.3e-5", (3.0 + 3.0 / 10.0) * 1e-5},
        {"-7.25E2", -(7.0 + 25.0 / 100.0) * 1e2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto buf = writable(c.text);
        EXPECT_EQ(bits(KELUTIL_str2real(buf.data())), bits(c.value));
    }
}

TEST(Str2Real, ParsersDoNotReadTheReservedTexts) {
    auto dashes = writable("--");
    EXPECT_EQ(KELUTIL_str2real(dashes.data()), 0.0);
    auto div0 = writable("/0");
    EXPECT_EQ(bits(KELUTIL_str2real(div0.data())), bits(kMissing));
}

TEST(HexStr2Int, Table) {
    const struct {
        const char* text;
        int32_t value;
        const char* after;
    } cases[] = {
        {" -ff", -255, " -FF"},
        {"12G4", 18, "12G4"},
        {"0x1F", 0, "0X1F"},
        {"", 0, ""},
        {"abc", 0xABC, "ABC"},
        {"FFFFFFFF", -1, "FFFFFFFF"},
        {"100000001", 1, "100000001"},
        {"+5", 0, "+5"},
        {"7fffffff", INT32_MAX, "7FFFFFFF"},
        {"-80000000", INT32_MIN, "-80000000"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto buf = writable(c.text);
        EXPECT_EQ(KELUTIL_hexstr2int(buf.data()), c.value);
        EXPECT_STREQ(buf.data(), c.after);
    }
}

}  // namespace
