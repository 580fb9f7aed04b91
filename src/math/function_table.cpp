// KelMath_function: the table of named functions and the command entry
// through which the host finds, evaluates, lists and describes its rows and
// reaches the generators.

#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <span>

#include "math/math.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::math {

namespace {

// Class bits of a row.
enum ClassBits : uint16_t {
    kAngleArgument = 0x01,
    kAngleResult = 0x02,
    kNotNegative = 0x04,
    kPlain = 0x08,
    kPositive = 0x10,
    kUnitRange = 0x20,
    kNoShownName = 0x40,
};

using Unary = double (*)(double) noexcept;
using Nary = double (*)(const double*) noexcept;

// One row.  A row of one argument calls `unary` with the double itself,
// the others call `nary` with the array of arguments.
struct math_function_row {
    const char* name;
    uint8_t kind;
    int8_t argument_count;
    Unary unary;
    Nary nary;
    uint16_t class_bits;
    const char* second_name;
    uint32_t help_id;
};

// The runtime's own functions, wrapped so that the table holds only
// functions of this library.
double rt_acos(double x) noexcept { return std::acos(x); }
double rt_asin(double x) noexcept { return std::asin(x); }
double rt_atan(double x) noexcept { return std::atan(x); }
double rt_cos(double x) noexcept { return std::cos(x); }
double rt_cosh(double x) noexcept { return std::cosh(x); }
double rt_sin(double x) noexcept { return std::sin(x); }
double rt_sinh(double x) noexcept { return std::sinh(x); }
double rt_sqrt(double x) noexcept { return std::sqrt(x); }
double rt_tan(double x) noexcept { return std::tan(x); }
double rt_tanh(double x) noexcept { return std::tanh(x); }
double rt_log(double x) noexcept { return std::log(x); }
double rt_log10(double x) noexcept { return std::log10(x); }

// Rows whose arguments come in another order or shape than the routine's.
double beta_row(const double* z_w) noexcept { return beta_func(z_w[0], z_w[1]); }
double incgamma_row(const double* x_a) noexcept { return incomp_gamma(x_a[1], x_a[0]); }

constexpr math_function_row unary(const char* name, Unary f, uint16_t cls, uint32_t help, const char* shown = nullptr) {
    return {name, 1, 1, f, nullptr, cls, shown, help};
}
constexpr math_function_row nary(const char* name, int8_t args, Nary f, uint16_t cls, uint32_t help,
                                 const char* shown = nullptr) {
    return {name, 1, args, nullptr, f, cls, shown, help};
}

constexpr std::array<math_function_row, 44> math_function_table = {{
    unary("ABS", abs_value, kPlain, 30001),        unary("ACOS", rt_acos, kUnitRange | kAngleResult, 30002),
    nary("ANGLE", 2, angle, kPlain, 30003),        unary("ASIN", rt_asin, kUnitRange | kAngleResult, 30004),
    unary("ATAN", rt_atan, kAngleResult, 30005),   unary("J0", bessel_j0, kPlain, 30006, "J0"),
    unary("J1", bessel_j1, kPlain, 30007, "J1"),   nary("JN", 2, bessel_jn, kPlain, 30008, "JN"),
    nary("BETA", 2, beta_row, kPlain, 30043),      unary("COS", rt_cos, kAngleArgument, 30009),
    unary("COSH", rt_cosh, kAngleArgument, 30010), unary("ERF", error_func, kPlain, 30011),
    unary("EXP", exponential, 0, 30012),           nary("FTABLE", 3, F_dist, kPlain, 30013),
    unary("GAMMALN", gammln, kPlain, 30014),       nary("INCBETA", 3, incomp_beta, kPlain, 30015),
    nary("INCF", 3, F_upper_tail, kPlain, 30016),  nary("INCGAMMA", 2, incgamma_row, kPlain, 30017),
    unary("INT", integer_part, kPlain, 30018),     unary("INVERF", inv_erf, kPlain, 30019),
    nary("INVF", 3, F_cumulative, kPlain, 30020),  unary("INVPROB", inv_prob, kPlain, 30021),
    nary("INVT", 2, t_cumulative, kPlain, 30022),  unary("LN", rt_log, kPositive, 30023),
    unary("LOG", rt_log10, kPositive, 30024),      nary("MOD", 2, int_mod, kPlain, 30025),
    unary("NINT", nearest_integer, kPlain, 30026), nary("PREC", 2, precision, kPlain, 30027),
    unary("PROB", cum_gauss, kPlain, 30028),       unary("QCD2", qc_d2, kPlain, 30029),
    unary("QCD3", qc_d3, kPlain, 30030),           unary("QCD4", qc_d4, kPlain, 30031),
    nary("RMOD", 2, real_mod, kPlain, 30032),      nary("ROUND", 2, round_places, kPlain, 30033),
    unary("SIN", rt_sin, kAngleArgument, 30034),   unary("SINH", rt_sinh, kAngleArgument, 30035),
    unary("SQRT", rt_sqrt, kNotNegative, 30036),   unary("TAN", rt_tan, kAngleArgument, 30037),
    unary("TANH", rt_tanh, kAngleArgument, 30038), nary("TTABLE", 2, t_dist, kPlain, 30039),
    unary("Y0", bessel_y0, kPlain, 30040, "Y0"),   unary("Y1", bessel_y1, kPlain, 30041, "Y1"),
    nary("YN", 2, bessel_yn, kPlain, 30042, "YN"), {"0", 0, 0, nullptr, nullptr, 0, nullptr, 0},
}};

constexpr int32_t kEndRow = static_cast<int32_t>(math_function_table.size()) - 1;
static_assert(math_function_table[kEndRow].name[0] == '0');

// Angle conversions with pi taken as 3.1415926.
constexpr double kDegreesToRadians = 0.017453292222222222;
constexpr double kGradsToRadians = 0.015707963000000002;
constexpr double kRadiansToDegrees = 57.295780490442965;
constexpr double kRadiansToGrads = 63.66197832271441;

// The help buffer holds 266 bytes: at most 265 characters of text.
constexpr std::size_t kHelpBuffer = 266;

enum Operation : uint16_t {
    kFind = 0,
    kEvaluate = 1,
    kSeed = 10,
    kUniform = 11,
    kNormal = 12,
    kPoisson = 15,
    kCumGauss = 20,
    kGaussInv = 21,
    kTableSize = 25,
    kShownName = 26,
    kName = 27,
    kHelp = 28,
    kPrecision = 100,
};

enum Unit : uint16_t { kDegrees = VL_MATH_DEGREES, kGrads = VL_MATH_GRADS };

int32_t find(const char* name, void* output) noexcept {
    // 1. The last find costs one comparison.
    if (std::strcmp(name, last_find.name) != 0) {
        // 2. Scan to the end row; compare whole names only when the first
        //    characters agree.
        int32_t row = 0;
        for (;; ++row) {
            const char* candidate = math_function_table[static_cast<std::size_t>(row)].name;
            if (candidate[0] == '0') return 0;
            if (candidate[0] == name[0] && std::strcmp(candidate, name) == 0) break;
        }
        last_find = {math_function_table[static_cast<std::size_t>(row)].name, row};
    }
    // 3. Hand over the row.
    const uint16_t row16 = static_cast<uint16_t>(last_find.row);
    std::memcpy(output, &row16, sizeof row16);
    return math_function_table[static_cast<std::size_t>(last_find.row)].argument_count;
}

int32_t fail_with(double value, void* output) noexcept {
    math_error_flag = 1;
    std::memcpy(output, &value, sizeof value);
    return math_error_flag;
}

int32_t evaluate(int32_t row_number, void* input, void* output, uint16_t unit) noexcept {
    // Rows outside the table fail instead of reading beyond it.
    if (row_number < 0 || row_number >= kEndRow) return fail_with(0.0, output);
    const math_function_row& row = math_function_table[static_cast<std::size_t>(row_number)];
    // 1. Start clean: a host sharing the runtime may read errno afterwards.
    errno = 0;
    // 2. Rows of several arguments take the array as it is.
    if (row.argument_count != 1) {
        const double value = row.nary(static_cast<const double*>(input));
        std::memcpy(output, &value, sizeof value);
        return math_error_flag;
    }
    // 3. Angles to radians, written back for the caller to see.
    double x = 0.0;
    std::memcpy(&x, input, sizeof x);
    if (row.class_bits & kAngleArgument) {
        if (unit == kDegrees)
            x = std::fmod(x, 360.0) * kDegreesToRadians;
        else if (unit == kGrads)
            x = std::fmod(x, 400.0) * kGradsToRadians;
        std::memcpy(input, &x, sizeof x);
    }
    // 4. Range of the argument.
    if ((row.class_bits & kUnitRange) && (x > 1.0 || x < -1.0)) return fail_with(0.0, output);
    if ((row.class_bits & kNotNegative) && x < 0.0) return fail_with(0.0, output);
    if ((row.class_bits & kPositive) && x <= 0.0) return fail_with(0.0, output);
    // 5. The function.
    double value = row.unary(x);
    // 6. Radians to the caller's unit.
    if (row.class_bits & kAngleResult) {
        if (unit == kDegrees)
            value *= kRadiansToDegrees;
        else if (unit == kGrads)
            value *= kRadiansToGrads;
    }
    // 7. The value, and whether anything failed on the way.
    std::memcpy(output, &value, sizeof value);
    return math_error_flag;
}

void put_double(void* where, double value) noexcept { std::memcpy(where, &value, sizeof value); }

double get_double(const void* where) noexcept {
    double value = 0.0;
    std::memcpy(&value, where, sizeof value);
    return value;
}

// Operations 26 and 27: a name into `output`, the argument count over the
// row number.  Rows outside the table give an empty name and 0.
void name_of(void* input, char* output, bool shown) noexcept {
    const int32_t row_number = truncate_to_int32(get_double(input));
    if (row_number < 0 || row_number > kEndRow) {
        output[0] = '\0';
        put_double(input, 0.0);
        return;
    }
    const math_function_row& row = math_function_table[static_cast<std::size_t>(row_number)];
    const char* text = row.name;
    if (shown) {
        if (row.class_bits & kNoShownName)
            text = "";
        else if (row.second_name)
            text = row.second_name;
    }
    std::memcpy(output, text, std::strlen(text) + 1);
    put_double(input, row.argument_count);
}

void help_of(const void* input, char* output) noexcept {
    const int32_t row_number = truncate_to_int32(get_double(input));
    if (row_number < 0 || row_number > kEndRow) {
        output[0] = '\0';
        return;
    }
    platform::load_string(math_function_table[static_cast<std::size_t>(row_number)].help_id,
                          std::span<char>(output, kHelpBuffer));
}

int32_t seed(const void* input) noexcept {
    const int32_t s = truncate_to_int32(get_double(input));
    if (s <= 0) return 1;
    int32_t idum = -s;
    ran1(&idum);
    return 0;
}

}  // namespace

}  // namespace vl::math

using namespace vl::math;

extern "C" int32_t VLAPI KelMath_function(int32_t /*reserved*/, uint32_t code, void* input, void* output,
                                          uint32_t unit) noexcept {
    math_error_flag = 0;
    const auto operation = static_cast<uint16_t>(code);
    // Each generator call brings its own argument of 1, which restarts
    // nothing.
    int32_t idum = 1;
    switch (operation) {
        case kFind: return find(static_cast<const char*>(input), output);
        case kEvaluate: return evaluate(static_cast<int32_t>(code >> 16), input, output, static_cast<uint16_t>(unit));
        case kSeed: return seed(input);
        case kUniform: put_double(output, ran1(&idum)); return 0;
        case kNormal: put_double(output, gasdevex(&idum, 0)); return 0;
        case kPoisson: put_double(output, poisson_dev(get_double(input), &idum)); return 0;
        case kCumGauss: put_double(output, cum_gauss(get_double(input))); return math_error_flag;
        case kGaussInv: put_double(output, gauss_inv(get_double(input))); return math_error_flag;
        case kTableSize: put_double(output, static_cast<double>(math_function_table.size())); return 0;
        case kShownName: name_of(input, static_cast<char*>(output), true); return 0;
        case kName: name_of(input, static_cast<char*>(output), false); return 0;
        case kHelp: help_of(input, static_cast<char*>(output)); return 0;
        case kPrecision: put_double(output, precision(static_cast<const double*>(input))); return math_error_flag;
        default: return operation;
    }
}
