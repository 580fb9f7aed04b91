// Format-directed output of one double: KELUTIL_sprintf and the digit-row
// converter KELUTIL_real_str behind its exponent and general conversions.
//
// The converter makes its digits itself, the way saved files of earlier
// releases were printed: ten to the fractional part of the logarithm gives a
// mantissa between 1 and 10, half a unit of the last place wanted rounds it
// once, and repeated multiplication by ten gives the digits.  The digits are
// not correctly rounded (9.5 to no decimals gives "9"); they are the ones the
// host has always written.

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

#include "internal/values.h"
#include "platform/platform.h"
#include "text/digits.h"
#include "text/text.h"
#include "vlcore.h"

namespace vl::text {
namespace {

constexpr int32_t kMaxDigits = 119;
constexpr int32_t kTrimAll = 100;

enum Mode : uint32_t {
    kFixed = 1,
    kGeneral = 2,
    kExponent = 4,
    kWidth = 8,
    kTrim = 16,
    kUpper = 128,
};

// The exponent of the last place kept, as step 3 of the converter chooses it.
int32_t rounding_place(uint32_t kind, int32_t p, int32_t x, bool negative) noexcept {
    switch (kind) {
        case kExponent: return -p;
        case kWidth: return (x > 6 || (!negative && x < -4) || (negative && x < -3)) ? -p : -(p + x);
        case kFixed: return -(p + x);
        default: return (x > p || x <= -4) ? -p : -(p + x);
    }
}

// Writes `count` digits of `mantissa` and a terminator: the whole part is
// the digit, the rest is multiplied by ten for the next.  No rounding here,
// the rounding term has done it.  Where a large rounding term has pushed the
// mantissa past 10 (a fixed form with places far above the value), the first
// "digit" is that whole number, cut to a byte as it always was; only the
// width form can show it.
void make_digits(double mantissa, char* row, int32_t count) noexcept {
    for (int32_t i = 0; i < count; ++i) {
        // A mantissa that overflowed to infinity or beyond int range stops
        // at its first digit rather than converting out of range.
        const auto digit = mantissa < 1e9 ? static_cast<int32_t>(mantissa) : 0;
        row[i] = static_cast<char>('0' + digit);
        mantissa = (mantissa - digit) * 10.0;
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

// How many digits of the row place_point can show under `layout`, at most.
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
        // 1. The point behind digit e, the text cut behind the decimals.  A
        //    negative count left after n - e - 1 cuts in front of the point,
        //    into the integer digits, down to nothing; a row too short for
        //    the integer places is filled with zeros.
        if (decimals < 0) decimals = n - e - 1;
        e = std::min(e, room - 3);
        if (len < e + 1) {
            std::fill(row + len, row + e + 1, '0');
            len = e + 1;
        }
        if (decimals >= 0) {
            const int32_t frac = std::min({decimals, len - (e + 1), room - e - 3});
            std::memmove(row + e + 2, row + e + 1, static_cast<std::size_t>(frac));
            row[e + 1] = '.';
            row[e + 2 + frac] = '\0';
        } else {
            row[std::max(e + 2 + decimals, 0)] = '\0';
        }
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

int32_t VLAPI KELUTIL_real_str(double value, uint32_t mode, uint32_t width, uint32_t precision, char* dst) noexcept {
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
        // 2. Decimal exponent and mantissa from the logarithm: x is its
        //    whole part (16 bits, one less below zero), f what is left.
        const double l = std::log10(std::fabs(value));
        x = static_cast<int16_t>(l);
        if (l < 0.0) --x;
        double f = l - x;
        if (f >= 1.0) {
            f -= 1.0;
            ++x;
        } else if (f < 0.0) {
            f += 1.0;
            --x;
        }
        mantissa = platform::runtime_pow(10.0, f);
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
        // The trim runs on the digits as they stand, point or none: a row
        // without a point loses the zeros of its integer part too.
        if (mode & kTrim) len = trim_trailing_zeros(row, len, kTrimAll);
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

int32_t VLAPI KELUTIL_sprintf(char* dst, const char* format, double value) noexcept {
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
