// The function table: finding rows, evaluating them with angle units and
// range classes, the small functions, listing and help texts.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "support.h"
#include "vlcore.h"

namespace {

// Finds a row by name; -1 when absent.
int row_of(const char* name) {
    uint16_t row = 0xBEEF;
    const int32_t args = KelMath_function(0, VL_MATH_FIND, const_cast<char*>(name), &row, 0);
    return args == 0 ? -1 : row;
}

struct Eval {
    int32_t flag;
    double value;
};

// Evaluates a named row on its arguments (one double or an array).
Eval eval(const char* name, std::initializer_list<double> args, uint32_t unit = 0) {
    const int row = row_of(name);
    EXPECT_GE(row, 0) << name;
    double in[3] = {};
    std::copy(args.begin(), args.end(), in);
    double out = -777.0;
    const int32_t flag = KelMath_function(0, (static_cast<uint32_t>(row) << 16) | VL_MATH_EVAL, in, &out, unit);
    return {flag, out};
}

TEST(FunctionTable, FindsRowsByExactName) {
    struct Row {
        const char* name;
        int32_t args;
        int row;
    };
    const Row rows[] = {{"SIN", 1, 34},  {"INCBETA", 3, 15}, {"ABS", 1, 0},  {"YN", 2, 42},     {"BETA", 2, 8},
                        {"J0", 1, 5},    {"TTABLE", 2, 39},  {"EXP", 1, 12}, {"FTABLE", 3, 13}, {"sin", 0, -1},
                        {"SINX", 0, -1}, {"", 0, -1},        {"S", 0, -1},   {"ACOS", 1, 1}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        uint16_t out = 0xBEEF;
        EXPECT_EQ(KelMath_function(0, VL_MATH_FIND, const_cast<char*>(r.name), &out, 0), r.args);
        EXPECT_EQ(out, r.args ? r.row : 0xBEEF);
    }
}

TEST(FunctionTable, HighBitsOfCodeAreIgnoredByFind) {
    uint16_t out = 0;
    EXPECT_EQ(KelMath_function(0, 0x00070000u | VL_MATH_FIND, const_cast<char*>("LN"), &out, 0), 1);
    EXPECT_EQ(out, 23);
}

TEST(FunctionTable, DegreesAreWrittenBackAndWrapped) {
    double x = 30.0, out = 0.0;
    EXPECT_EQ(KelMath_function(0, (34u << 16) | 1, &x, &out, VL_MATH_DEGREES), 0);
    EXPECT_EQ(x, 0.5235987666666666);
    EXPECT_NEAR(out, 0.5, 1e-7);
    const struct {
        const char* name;
        double a, b;
        uint32_t unit;
    } same[] = {{"SIN", 390, 30, VL_MATH_DEGREES},
                {"SINH", 390, 30, VL_MATH_DEGREES},
                {"COS", 450, 50, VL_MATH_GRADS},
                {"TAN", -370, -10, VL_MATH_DEGREES}};
    for (const auto& s : same) {
        SCOPED_TRACE(s.name);
        EXPECT_EQ(eval(s.name, {s.a}, s.unit).value, eval(s.name, {s.b}, s.unit).value);
    }
    // Radians and unknown units leave the argument alone.
    EXPECT_EQ(eval("SIN", {1.0}, 0).value, std::sin(1.0));
    EXPECT_EQ(eval("SIN", {1.0}, 3).value, std::sin(1.0));
    EXPECT_EQ(eval("SIN", {1.0}, 0x10000).value, std::sin(1.0));  // only the low 16 bits count
}

// Rows evaluated on arguments from function_rows.tsv: argument ranges,
// result units, rounding, the two-argument functions, the Bessel functions.
TEST(FunctionTable, RowsGiveTheirFlagAndValue) {
    const vltest::DataTable table("math/function_rows.tsv");
    EXPECT_EQ(table.size(), 70u);
    for (std::size_t i = 0; i < table.size(); ++i) {
        const auto& r = table.row(i);
        SCOPED_TRACE("row " + std::to_string(i + 1) + ": " + r[0] + "(" + r[2] + ", " + r[3] + ") in " + r[1]);
        ASSERT_EQ(r.size(), 7u);
        const uint32_t unit = r[1] == "deg" ? VL_MATH_DEGREES : r[1] == "grad" ? VL_MATH_GRADS : 0;
        EXPECT_TRUE(unit != 0 || r[1] == "rad");
        const double value = vltest::number(r[5]);
        const Eval e = eval(r[0].c_str(), {vltest::number(r[2]), r[3] == "-" ? 0.0 : vltest::number(r[3])}, unit);
        EXPECT_EQ(e.flag, std::stoi(r[4]));
        if (r[6] == "4ulp")
            EXPECT_DOUBLE_EQ(e.value, value);
        else
            EXPECT_NEAR(e.value, value, vltest::number(r[6]) * std::max(1.0, std::fabs(value)));
    }
}

TEST(FunctionTable, ListsNamesAndHelp) {
    double size = 0.0;
    EXPECT_EQ(KelMath_function(0, VL_MATH_TABLE_SIZE, nullptr, &size, 0), 0);
    EXPECT_EQ(size, 44.0);
    struct Case {
        double row;
        const char* name;
        double args;
        const char* help;
    };
    const Case cases[] = {
        {0.0, "ABS", 1.0, "Abs(x) :\nAbsolute value"},
        {5.9, "J0", 1.0, "J0(x) : \nZero order Bessel function"},
        {8.0, "BETA", 2.0, "beta(z,w):\nBeta function with z  > 0, w > 0"},
        {15.0, "INCBETA", 3.0, "incbeta(x,a,b) :\nIncomplete Beta function"},
        {39.0, "TTABLE", 2.0, "ttable(x,n) :\nStudent's t-distribution with n degrees of freedom"},
        {42.0, "YN", 2.0, "Yn(x,n) :\nOrder n Bessel function of the second kind"},
        {43.0, "0", 0.0, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        for (uint32_t op : {VL_MATH_NAME, VL_MATH_SHOW_NAME}) {
            vltest::Poisoned buf(64);
            double in = c.row;
            EXPECT_EQ(KelMath_function(0, op, &in, buf.data(), 0), 0);
            EXPECT_EQ(buf.text(), c.name);
            EXPECT_EQ(in, c.args);
        }
        vltest::Poisoned help(266);
        double in = c.row;
        EXPECT_EQ(KelMath_function(0, VL_MATH_HELP, &in, help.data(), 0), 0);
        EXPECT_EQ(help.text(), c.help);
        EXPECT_EQ(in, c.row);
    }
}

TEST(FunctionTable, DirectOperations) {
    double in[2] = {1234.0, 10.0}, out = 0.0;
    EXPECT_EQ(KelMath_function(0, VL_MATH_PREC, in, &out, 0), 0);
    EXPECT_EQ(out, 1.0);
    double x = 1.0;
    EXPECT_EQ(KelMath_function(0, VL_MATH_CUM_GAUSS, &x, &out, 0), 0);
    EXPECT_NEAR(out, 0.68268949, 1e-8);
    x = 0.975;
    EXPECT_EQ(KelMath_function(0, VL_MATH_GAUSS_INV, &x, &out, 0), 0);
    EXPECT_NEAR(out, 1.95996400, 1e-7);
    x = 1.0;
    EXPECT_EQ(KelMath_function(0, VL_MATH_GAUSS_INV, &x, &out, 0), 1);
    EXPECT_EQ(out, 0.0);
}

TEST(FunctionTable, UnknownOperationsClearTheFlagAndEchoTheCode) {
    for (uint32_t code : {2u, 7u, 13u, 99u, 101u, 0xFFFFu, 0x12340007u}) {
        SCOPED_TRACE(code);
        EXPECT_EQ(eval("LN", {0.0}).flag, 1);  // leaves the flag set
        double out = 5.0;
        EXPECT_EQ(KelMath_function(0, code, nullptr, &out, 0), static_cast<int32_t>(code & 0xFFFF));
        EXPECT_EQ(out, 5.0);
        // The flag is clear again: a good evaluation through an entry that
        // does not clear it would still see it set otherwise.
        EXPECT_EQ(eval("ABS", {1.0}).flag, 0);
    }
}

TEST(FunctionTable, FailuresInsideRowsReachTheResult) {
    EXPECT_EQ(eval("GAMMALN", {0.0}).flag, 1);
    EXPECT_EQ(eval("INCBETA", {1.5, 2, 3}).flag, 1);
    EXPECT_EQ(eval("INCBETA", {0.4, 20000, 30000}).flag, 1);
    EXPECT_EQ(eval("FTABLE", {0.95, 4, 0}).flag, 1);
    EXPECT_EQ(eval("INVPROB", {1.0}).flag, 1);
    EXPECT_EQ(eval("INCGAMMA", {0.0, 2.0}).flag, 0);
    EXPECT_EQ(eval("INCGAMMA", {-1.0, 2.0}).flag, 1);
}

TEST(FunctionTable, RowsOutsideTheTableFail) {
    double in = 1.0, out = 5.0;
    EXPECT_EQ(KelMath_function(0, (43u << 16) | 1, &in, &out, 0), 1);
    EXPECT_EQ(out, 0.0);
    EXPECT_EQ(KelMath_function(0, (500u << 16) | 1, &in, &out, 0), 1);
    vltest::Poisoned buf(16);
    double row = 44.0;
    EXPECT_EQ(KelMath_function(0, VL_MATH_NAME, &row, buf.data(), 0), 0);
    EXPECT_EQ(buf.text(), "");
    EXPECT_EQ(row, 0.0);
    row = -1.0;
    EXPECT_EQ(KelMath_function(0, VL_MATH_HELP, &row, buf.data(), 0), 0);
    EXPECT_EQ(buf.text(), "");
}

}  // namespace
