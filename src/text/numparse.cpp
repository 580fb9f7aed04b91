// Reading numbers from text.  Plain hand-written parsers: no locale and no
// runtime conversion, only the runtime's power of ten.  Numbers saved by
// earlier releases were read with exactly these steps, so the double is
// formed in their order, not correctly rounded.

#include <array>
#include <cmath>
#include <cstring>

#include "internal/values.h"
#include "platform/platform.h"
#include "text/text.h"
#include "vlcore.h"

namespace vl::text {

uint8_t number_error_flag = 0;

namespace {

// The runtime's pow(10.0, n) for the exponents that a double can show,
// taken once when the library loads: the parser and the converters multiply
// by exactly what pow gives, including the few n where pow is not correctly
// rounded, without paying for a pow call per number.
constexpr int kPow10Min = -330;
constexpr int kPow10Max = 310;
const std::array<double, kPow10Max - kPow10Min + 1> kPow10 = [] {
    std::array<double, kPow10Max - kPow10Min + 1> table{};
    for (int n = kPow10Min; n <= kPow10Max; ++n) table[static_cast<std::size_t>(n - kPow10Min)] = platform::runtime_pow(10.0, n);
    return table;
}();

enum class Part { integer, fraction };

// A part of more than this many characters is read digit by digit.
constexpr std::size_t kShortPart = 8;

// Reads the integer part or the fraction digits of a real number.
double read_part(const char* digits, Part part) noexcept {
    const std::size_t len = std::strlen(digits);
    if (len <= kShortPart) {
        const int32_t n = KELUTIL_str2int(digits);
        if (number_error_flag) return 0.0;
        return part == Part::integer ? static_cast<double>(n)
                                     : static_cast<double>(n) / pow10(static_cast<int32_t>(len));
    }
    double sum = 0.0;
    for (std::size_t i = 0; i < len; ++i) {
        if (!is_digit(digits[i])) {
            number_error_flag = 1;
            return 0.0;
        }
        const double d = digits[i] - '0';
        if (part == Part::integer)
            sum += d * pow10(static_cast<int32_t>(len - i - 1));
        else
            sum += d / pow10(static_cast<int32_t>(i + 1));
    }
    return sum;
}

int hex_digit(char c) noexcept {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

double pow10(int32_t e) noexcept {
    if (e < kPow10Min || e > kPow10Max) return platform::runtime_pow(10.0, e);
    return kPow10[static_cast<std::size_t>(e - kPow10Min)];
}

}  // namespace vl::text

using namespace vl;
using namespace vl::text;

extern "C" {

int32_t VLAPI KELUTIL_str2int(const char* text) noexcept {
    // 1. Clear the flag, skip white space.
    number_error_flag = 0;
    const char* p = text;
    while (is_space(*p)) ++p;
    // 2. One optional sign.
    bool negative = false;
    if (*p == '-' || *p == '+') negative = *p++ == '-';
    // 3.-5. Digits in 32 bits with wrap-around, up to the end or a blank.
    uint32_t n = 0;
    for (; is_digit(*p); ++p) n = n * 10u + static_cast<uint32_t>(*p - '0');
    if (*p != '\0' && !is_space(*p)) {
        // 6. Anything else makes the whole text a bad number.
        number_error_flag = 1;
        return 0;
    }
    return static_cast<int32_t>(negative ? 0u - n : n);
}

int32_t VLAPI KELUTIL_cvtstr2int(const char* text, int32_t* out) noexcept {
    const int32_t n = KELUTIL_str2int(text);
    if (number_error_flag) return 0;
    *out = n;
    return 1;
}

int32_t VLAPI KELUTIL_cvtstr2real(char* text, double* out) noexcept {
    // 1. Skip white space; a minus is the sign, a plus stays with the digits.
    char* p = text;
    while (is_space(*p)) ++p;
    double sign = 1.0;
    if (*p == '-') {
        sign = -1.0;
        ++p;
    }
    // 2. Cut off the exponent at the first 'e' or 'E'.
    char* e = KELUTIL_strchr(p, 'e', VL_STRCHR_PLAIN | VL_STRCHR_UPPER);
    const char e_char = e ? *e : '\0';
    if (e) *e = '\0';
    // 3. Cut off the fraction at the first '.'.
    char* dot = std::strchr(p, '.');
    if (dot) *dot = '\0';
    // 4. The integer part.
    number_error_flag = 0;
    double value = read_part(p, Part::integer);
    if (number_error_flag) return 0;
    // 5. The fraction: its leading digits only, whatever follows them.
    if (dot) {
        char* end = dot + 1;
        while (is_digit(*end)) ++end;
        const char kept = *end;
        *end = '\0';
        value += read_part(dot + 1, Part::fraction);
        *end = kept;
        *dot = '.';
    }
    // 6. The exponent, applied by one multiplication.
    if (e) {
        const int32_t exponent = KELUTIL_str2int(e + 1);
        if (number_error_flag) return 0;
        *e = e_char;
        if (exponent != 0) value *= pow10(exponent);
    }
    // 7. Done.
    *out = sign * value;
    return 1;
}

double VLAPI KELUTIL_str2real(char* text) noexcept {
    double value;
    return KELUTIL_cvtstr2real(text, &value) ? value : MISSING_VALUE;
}

int32_t VLAPI KELUTIL_hexstr2int(char* text) noexcept {
    char* p = text;
    while (is_space(*p)) ++p;
    bool negative = false;
    if (*p == '-') {
        negative = true;
        ++p;
    }
    platform::upper_in_place(p, std::strlen(p));
    uint32_t n = 0;
    for (int d; (d = hex_digit(*p)) >= 0; ++p) n = n * 16u + static_cast<uint32_t>(d);
    return static_cast<int32_t>(negative ? 0u - n : n);
}

}  // extern "C"
