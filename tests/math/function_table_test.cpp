// The function table: finding rows, evaluating them with angle units and
// range classes, the small functions, listing and help texts.

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
    const Row rows[] = {{"SIN", 1, 34}, {"INCBETA", 3, 15}, {"ABS", 1, 0},  {"YN", 2, 42},     {"BETA", 2, 8},
                        {"J0", 1, 5},   {"TTABLE", 2, 39},  {"EXP", 1, 12}, {"FTABLE", 3, 13}, {"SIN", 1, 34},
                        {"sin", 0, -1}, {"SINX", 0, -1},    {"", 0, -1},    {"S", 0, -1},      {"ACOS", 1, 1}};
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

TEST(FunctionTable, ClassRangesAndResultUnits) {
    struct Case {
        const char* name;
        double x;
        uint32_t unit;
        int32_t flag;
        double value;
    };
    const Case cases[] = {
        {"ACOS", 1.5, 0, 1, 0.0},
        {"ACOS", -1.0000001, 0, 1, 0.0},
        {"ACOS", 1.0, VL_MATH_DEGREES, 0, 0.0},
        {"ACOS", 0.0, VL_MATH_GRADS, 0, std::acos(0.0) * 63.66197832271441},
        {"ASIN", 1.0, VL_MATH_DEGREES, 0, std::asin(1.0) * 57.295780490442965},
        {"ATAN", 1.0, 0, 0, std::atan(1.0)},
        {"LN", 0.0, 0, 1, 0.0},
        {"LN", -2.0, 0, 1, 0.0},
        {"LOG", 1000.0, 0, 0, 3.0},
        {"SQRT", 0.0, 0, 0, 0.0},
        {"SQRT", -1.0, 0, 1, 0.0},
        {"SQRT", 2.0, 0, 0, std::sqrt(2.0)},
        {"EXP", 667.0, 0, 0, std::exp(667.0)},
        {"EXP", 667.0000001, 0, 1, 0.0},
        {"ABS", -2.5, 0, 0, 2.5},
        {"ABS", VL_MISSING_VALUE, 0, 0, -VL_MISSING_VALUE},
        {"INT", -2.7, 0, 0, -2.0},
        {"INT", -10000000000.0, 0, 0, -2147483648.0},
        {"INT", 10000000000.0, 0, 0, 2147483647.0},
        {"NINT", 10000000000.0, 0, 0, 2147483647.0},
        {"NINT", 2.5, 0, 0, 3.0},
        {"NINT", -2.5, 0, 0, -3.0},
        {"NINT", 0.5, 0, 0, 1.0},
        {"NINT", -0.5, 0, 0, -1.0},
        {"NINT", 2.4999, 0, 0, 2.0},
        {"QCD2", 120.0, 0, 0, 5.12},
        {"QCD3", 6.0, 0, 0, 0.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + "(" + std::to_string(c.x) + ")");
        const Eval e = eval(c.name, {c.x}, c.unit);
        EXPECT_EQ(e.flag, c.flag);
        EXPECT_DOUBLE_EQ(e.value, c.value);
    }
}

TEST(FunctionTable, TwoArgumentSmallFunctions) {
    struct Case {
        const char* name;
        double x, y;
        int32_t flag;
        double value;
    };
    const Case cases[] = {
        {"MOD", -7.9, 3.2, 0, -1.0},
        {"MOD", 5, -3, 0, 2.0},
        {"MOD", 7, 0.5, 1, 1.0},
        {"MOD", -2147483648.0, -1.0, 0, 0.0},
        {"MOD", 3e9, 7, 1, 1.0},  // outside 32 bits: fails like a zero divisor
        {"MOD", 7, -3e9, 1, 1.0},
        {"RMOD", -7.9, 3.2, 0, std::fmod(-7.9, 3.2)},
        {"RMOD", 1, 0, 1, 1.0},
        {"ROUND", 1234.5, -2, 0, 1200.0},
        {"ROUND", 2.345, 2, 0, 2.35},
        {"ROUND", -2.5, 0, 0, -3.0},
        {"ROUND", 0.5, 0, 0, 1.0},
        {"ROUND", 21474836.47, 2, 0, 21474836.47},
        {"ROUND", 1e12, 0, 1, 0.0},  // beyond the 32-bit rounding: failure
        {"ROUND", -1e12, 0, 1, 0.0},
        {"PREC", 1234, 2, 0, 1200.0},
        {"PREC", 999.6, 2, 0, 1000.0},
        {"PREC", 0.00123456, 3, 0, 0.00123},
        {"PREC", 1234, 0, 0, 0.0},
        {"PREC", 9999, 0, 0, 10000.0},
        {"PREC", -1234, 2, 0, -1200.0},
        {"PREC", 0, 5, 0, 0.0},
        {"PREC", 1234, 10, 0, 1.0},
        {"ANGLE", -1, -1, 0, std::atan(1.0) + 3.14159265359},
        {"ANGLE", 1, -1, 0, std::atan(-1.0) + 6.28318530718},
        {"ANGLE", 0, -1, 0, -1.570796326795},
        {"ANGLE", 0, 2, 0, 1.570796326795},
        {"ANGLE", -3, 0, 0, 3.14159265359},
        {"ANGLE", 3, 0, 0, 0.0},
        {"ANGLE", 1, 1, 0, std::atan(1.0)},
        {"ANGLE", 0, 0, 1, -1.0},
        {"YN", 0, 1, 1, 0.0},
        {"YN", -1, 1, 1, 0.0},
        {"BETA", 2, 3, 0, 1.0 / 12.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + "(" + std::to_string(c.x) + ", " + std::to_string(c.y) + ")");
        const Eval e = eval(c.name, {c.x, c.y});
        EXPECT_EQ(e.flag, c.flag);
        EXPECT_NEAR(e.value, c.value, 1e-9 * std::max(1.0, std::fabs(c.value)));
    }
}

TEST(FunctionTable, UnitDoesNotReachRowsOfSeveralArguments) {
    EXPECT_EQ(eval("ANGLE", {-1, 0}, VL_MATH_DEGREES).value, 3.14159265359);
}

// Reference values of the runtime's Bessel functions (computed with an
// arbitrary-precision library); the runtimes agree to their rounding.
TEST(FunctionTable, BesselRows) {
    struct Case {
        const char* name;
        double x, n, value;
    };
    const Case cases[] = {
        {"J0", 1.0, 0, 0.76519768655796655},   {"J0", 10.0, 0, -0.24593576445134834},
        {"J1", 2.5, 0, 0.49709410246427404},   {"Y0", 1.0, 0, 0.088256964215676958},
        {"Y1", 3.0, 0, 0.32467442479179998},   {"JN", 5.0, 3, 0.36483123061366699},
        {"JN", 5.0, 3.9, 0.36483123061366699}, {"YN", 2.0, 2, -0.61740810419068267},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + "(" + std::to_string(c.x) + ")");
        const Eval e = c.n == 0 ? eval(c.name, {c.x}) : eval(c.name, {c.x, c.n});
        EXPECT_EQ(e.flag, 0);
        EXPECT_NEAR(e.value, c.value, 1e-13);
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
