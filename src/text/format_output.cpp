// Format-directed output of one double: KELUTIL_sprintf and the digit-row
// converter KELUTIL_real_str behind its exponent and general conversions.
//
// The converter makes its digits from a mantissa between 1 and 10, rounded
// once by adding half a unit of the last place wanted.  The mantissa is the
// magnitude divided by an exactly rounded power of ten rather than ten to the
// fractional part of the logarithm: the division is the same on every target,
// where the runtime's logarithm and power functions are not.

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

#include "internal/values.h"
#include "text/digits.h"
#include "text/text.h"
#include "vlcore.h"

namespace vl::text {
namespace {

constexpr int32_t kMaxDigits = 119;
constexpr int32_t kTrimAll = 100;
// Below this decade the power of ten would be subnormal and inexact.
constexpr int32_t kNormalDecade = -290;
constexpr int32_t kLift = 30;

enum Mode : uint32_t {
    kFixed = 1,
    kGeneral = 2,
    kExponent = 4,
    kWidth = 8,
    kTrim = 16,
    kUpper = 128,
};

// The decimal exponent x of a finite, normal magnitude and its mantissa,
// 1 <= mantissa < 10.
double split_decimal(double mag, int32_t& x) noexcept {
    // 1. The decimal exponent, exactly.
    x = decimal_exponent(mag);
    // 2. The mantissa by one division (lifted first where the power would be
    //    subnormal); a quotient rounded up to 10 moves on one decade.
    double mantissa = x >= kNormalDecade ? mag / pow10(x) : (mag * pow10(kLift)) / pow10(x + kLift);
    if (mantissa >= 10.0) {
        mantissa /= 10.0;
        ++x;
    } else if (mantissa < 1.0) {
        mantissa *= 10.0;
        --x;
    }
    return mantissa;
}

// The exponent of the last place kept, as step 3 of the converter chooses it.
int32_t rounding_place(uint32_t kind, int32_t p, int32_t x, bool negative) noexcept {
    switch (kind) {
        case kExponent: return -p;
        case kWidth: return (x > 6 || (!negative && x < -4) || (negative && x < -3)) ? -p : -(p + x);
        case kFixed: return -(p + x);
        default: return (x > p || x <= -4) ? -p : -(p + x);
    }
}

// Writes the first `count` digits of `mantissa` (0 <= mantissa < 10) and a
// terminator.  Up to 15 digits come from one product with an exact power of
// ten, whose integer part a double holds exactly; any further digits (past
// the precision of a double) one by one from the remainder.
void make_digits(double mantissa, char* row, int32_t count) noexcept {
    constexpr int32_t kChunk = 15;
    // A rounding term far above the mantissa (a fixed form asked for places
    // far above the value) leaves no digit that can show: nines, as the
    // digits of a row clamp to 9.
    if (!(mantissa < 10.0)) mantissa = std::nextafter(10.0, 0.0);
    const int32_t head = std::min(count, kChunk);
    const double scaled = mantissa * pow10(head - 1);
    auto whole = static_cast<uint64_t>(scaled);
    const uint64_t limit = static_cast<uint64_t>(pow10(head)) - 1;
    if (whole > limit) whole = limit;
    for (int32_t i = head - 1; i >= 0; --i) {
        row[i] = static_cast<char>('0' + whole % 10);
        whole /= 10;
    }
    double rest = (scaled - std::floor(scaled)) * 10.0;
    for (int32_t i = head; i < count; ++i) {
        const int digit = std::clamp(static_cast<int>(rest), 0, 9);
        row[i] = static_cast<char>('0' + digit);
        rest = (rest - digit) * 10.0;
    }
    row[count] = '\0';
}

// The arguments of place_point, and whether an exponent text follows.
struct Layout {
    int32_t n;
    int32_t decimals;
    int32_t e;
    bool exponent;
};

// How many digits of the row place_point can show under `layout`.
int32_t digits_used(const Layout& layout) noexcept {
    if (layout.e >= 0) {
        const int32_t decimals = layout.decimals < 0 ? layout.n - layout.e - 1 : layout.decimals;
        return layout.e + 1 + std::max(decimals, 0);
    }
    const int32_t decimals = layout.decimals < 0 ? layout.n - 2 : layout.decimals;
    return std::max(decimals + layout.e + 1, 1);
}

}  // namespace

bool place_point(std::span<char> text, int32_t n, int32_t decimals, int32_t e) noexcept {
    char* row = text.data();
    const auto room = static_cast<int32_t>(text.size());
    auto len = static_cast<int32_t>(strnlen(row, text.size()));
    bool ok = true;
    if (e >= 0) {
        // 1. The point behind digit e, the text cut behind the decimals; a
        //    row too short for the integer places is filled with zeros.
        if (decimals < 0) decimals = std::max(n - e - 1, 0);
        e = std::min(e, room - 3);
        if (len < e + 1) {
            std::fill(row + len, row + e + 1, '0');
            len = e + 1;
        }
        const int32_t frac = std::min({decimals, len - (e + 1), room - e - 3});
        std::memmove(row + e + 2, row + e + 1, static_cast<std::size_t>(frac));
        row[e + 1] = '.';
        row[e + 2 + frac] = '\0';
    } else {
        // 2. "0." and zeros: 1 - e characters, at most the places plus one.
        int32_t places = decimals + 1;
        if (decimals < 0) {
            decimals = n - 2;
            places = n;
        }
        const int32_t lead = std::clamp(std::min(1 - e, places + 1), 1, room - 1);
        // 3. The digits that fit behind the zeros, or none: a bare zero.
        const int32_t fit = decimals + e + 1;
        const int32_t take = fit < 1 ? 0 : std::min({fit, len, room - 1 - lead});
        ok = fit >= 1;
        std::memmove(row + lead, row, static_cast<std::size_t>(take));
        row[0] = '0';
        if (lead > 1) row[1] = '.';
        std::fill(row + std::min(lead, 2), row + lead, '0');
        row[lead + take] = '\0';
    }
    // 4. No point stays at the end.
    const std::size_t end = std::strlen(row);
    if (end > 0 && row[end - 1] == '.') row[end - 1] = '\0';
    return ok;
}

}  // namespace vl::text

using namespace vl;
using namespace vl::text;

extern "C" {

int32_t VLAPI KELUTIL_real_str(double value, uint32_t mode, uint32_t width, uint32_t precision, char* dst) {
    mode &= 0xFF;
    const uint32_t kind = mode & 15;
    const auto w = static_cast<int32_t>(width & 0xFF);
    const auto p = static_cast<int32_t>(precision & 0xFF);

    // 1. Sign bit and exponent field.  Zero and subnormals are rows of zeros;
    //    infinities and non-numbers have no digits and print as "--".
    const uint64_t raw = std::bit_cast<uint64_t>(value);
    const bool negative = (raw >> 63) != 0;
    const auto field = static_cast<uint32_t>((raw >> 52) & 0x7FF);
    if (field == 0x7FF) {
        std::memcpy(dst, "--", 3);
        return 0;
    }
    char row[kPlacedRoom];
    int32_t x = 0;
    int32_t count = p + 1;
    double mantissa = 0.0;
    if (field != 0) {
        // 2. Decimal exponent and mantissa.
        mantissa = split_decimal(std::fabs(value), x);
        // 3.-4. Round once, by half a unit of the last place kept.
        mantissa += 0.5 * pow10(rounding_place(kind, p, x, negative));
        if (mantissa >= 10.0) {
            mantissa *= 0.1;
            ++x;
        } else if (mantissa < 1.0) {
            mantissa *= 10.0;
            --x;
        }
        // 5. The number of digits.
        count = x >= 0 ? p + x + 1 : p + 1;
    }
    count = std::min(count, kMaxDigits);

    // 6. The layout by form: fixed, or exponent form with its text.  It is
    //    chosen before the digits, so that no digit is made only to be cut.
    Layout layout{w, p, x, false};
    if (kind == kExponent) {
        layout = {p + 1, -1, 0, true};
    } else if (kind != kFixed) {
        const int32_t limit = kind == kWidth ? 6 : p;
        if (x > -4 && x <= limit) {
            layout.decimals = kind != kWidth ? p : x > 0 ? w - x : w - 1;
        } else {
            layout = {kind == kWidth ? w - 6 : p + 1, -1, 0, true};
        }
    }
    count = std::min(count, digits_used(layout));

    // 7. The digits of the mantissa, truncated: the rounding term has done
    //    all rounding.
    make_digits(mantissa, row, count);
    const bool ok = place_point(row, layout.n, layout.decimals, layout.e);
    const bool exponent = layout.exponent;
    // 8. A row with no digit behind the zeros: the zero text, unsigned.
    char* out = dst;
    std::size_t len = std::strlen(row);
    if (ok) {
        // 9. Sign, digits with the fraction's zeros trimmed on request.
        if (negative) *out++ = '-';
        if ((mode & kTrim) && std::memchr(row, '.', len)) len = trim_trailing_zeros(row, len, kTrimAll);
    }
    std::memcpy(out, row, len);
    out += len;
    if (exponent) {
        *out++ = (mode & kUpper) ? 'E' : 'e';
        out = std::to_chars(out, out + 8, x).ptr;
    }
    *out = '\0';
    return ok ? 0 : 1;
}

int32_t VLAPI KELUTIL_sprintf(char* dst, const char* format, double value) {
    auto refuse = [dst] {
        std::memcpy(dst, "--", 3);
        return -1;
    };
    // 1. W and P to begin with; formats past the work buffer are refused.
    int32_t w = 7;
    int32_t p = 3;
    char work[kFormatLimit + 1];
    const std::size_t len = strnlen(format, sizeof work);
    if (len == 0 || len >= sizeof work) return refuse();
    std::memcpy(work, format, len + 1);

    // 2. The text in front of the first point, behind the first character.
    char token[kFormatLimit + 1];
    const char* rest = get_next_token_sep(token, work + 1, ".");
    if (!rest) return refuse();
    char conversion;
    if (token[0] == '\0') {
        // 3. "%.2f": the character behind the point is the conversion.
        conversion = rest[0];
    } else {
        // 4. W, then P in front of the first of "GgFfEe" that occurs.
        w = KELUTIL_str2int(token) & 0xFF;
        const char* behind = get_next_token_sep(token, rest, "GgFfEe");
        if (!behind) return refuse();
        if (token[0]) p = KELUTIL_str2int(token) & 0xFF;
        conversion = behind[-1];
    }

    // 5. Fixed conversions print the whole format; the others go to the
    //    digit-row converter.
    char text[kPlacedRoom];
    if (conversion == 'f' || conversion == 'F') {
        if (!format_one_double(format, value, {}, std::span(text, kFormatLimit + 1))) return refuse();
        std::strcpy(dst, text);
        return static_cast<int32_t>(std::strlen(text));
    }
    uint32_t mode = (conversion == 'e' || conversion == 'E') ? kExponent : kGeneral;
    if (conversion >= 'A' && conversion <= 'Z') mode += kUpper;
    const int32_t result = KELUTIL_real_str(value, mode, static_cast<uint32_t>(w), static_cast<uint32_t>(p), text);
    if (std::strlen(text) > kFormatLimit) return refuse();
    std::strcpy(dst, text);
    return result;
}

}  // extern "C"
