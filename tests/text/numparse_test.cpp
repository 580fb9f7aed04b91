// Reading integers and reals from text.

#include <cmath>
#include <string>

#include "support.h"
#include "text/text_rows.h"
#include "vlcore.h"

using vltest::bits;
using vltest::writable;

namespace {

constexpr double kMissing = VL_MISSING_VALUE;

TEST(NumberTexts, ReadBothWays) {
    vltest::each_row("text/numparse.tsv", "number", 4, [](const auto& f) {
        const bool int_good = f[1] == "1";
        const auto int_value = static_cast<int32_t>(vltest::integer(f[2]));
        const double real = vltest::value(f[3]);
        EXPECT_EQ(KELUTIL_str2int(f[0].c_str()), int_value);
        int32_t out = 0x5A5A5A5A;
        EXPECT_EQ(KELUTIL_cvtstr2int(f[0].c_str(), &out), int_good ? 1 : 0);
        EXPECT_EQ(out, int_good ? int_value : 0x5A5A5A5A) << "out is untouched on failure";

        auto buf = writable(f[0]);
        const double v = KELUTIL_str2real(buf.data());
        EXPECT_EQ(bits(v), bits(real)) << "read " << v << ", want " << real;
        buf = writable(f[0]);
        const auto before = buf;
        double out_real = 99.0;
        const int32_t ok = KELUTIL_cvtstr2real(buf.data(), &out_real);
        EXPECT_EQ(ok, real == kMissing ? 0 : 1);
        if (ok)
            EXPECT_EQ(buf, before) << "success leaves the text as it was";
        else
            EXPECT_EQ(out_real, 99.0) << "out is untouched on failure";
    });
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

// The runtime's pow(10, n), which the reader uses; not folded into a
// correctly rounded constant by the compiler.
double ten(int n) { return vltest::runtime_pow(10.0, n); }

TEST(Str2Real, ArithmeticIsPartsThenOneMultiplication) {
    // The integer part and the fraction are formed apart, added, and the
    // exponent applied by one multiplication: not always the nearest double.
    const struct {
        const char* text;
        double value;
    } cases[] = {
        {"0.1", 1.0 / ten(1)},
        {"123.456", 123.0 + 456.0 / ten(3)},
        {"1.23456789", 1.0 + 23456789.0 / ten(8)},
        {"0.123456789", 1.0 / ten(1) + 2.0 / ten(2) + 3.0 / ten(3) + 4.0 / ten(4) + 5.0 / ten(5) + 6.0 / ten(6) +
                            7.0 / ten(7) + 8.0 / ten(8) + 9.0 / ten(9)},
        {"123456789.5", 1e8 + 2e7 + 3e6 + 4e5 + 5e4 + 6e3 + 7e2 + 8e1 + 9.0 + 0.5},
        {"3.3e-5", (3.0 + 3.0 / ten(1)) * ten(-5)},
        {"-7.25E2", -(7.0 + 25.0 / ten(2)) * ten(2)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        auto buf = writable(c.text);
        EXPECT_EQ(bits(KELUTIL_str2real(buf.data())), bits(c.value));
    }
}

TEST(HexStr2Int, Table) {
    vltest::each_row("text/numparse.tsv", "hex", 3, [](const auto& f) {
        auto buf = writable(f[0]);
        EXPECT_EQ(KELUTIL_hexstr2int(buf.data()), static_cast<int32_t>(vltest::integer(f[1])));
        EXPECT_EQ(std::string(buf.data()), f[2]);
    });
}

}  // namespace
