// printf-style conversions of one double with digits of our own.
//
// The digits come from std::to_chars with a precision, which rounds the exact
// binary value correctly (ties to even), as a standard printf does.  Sign,
// exponent text, padding and the flags are laid out here, so no target's C
// runtime (three exponent digits on some, other rounding on others) shows
// through.

#include "text/digits.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

#include "text/text.h"

namespace vl::text {
namespace {

// Above this many digits every further digit of a double's %g text is a zero
// (a double has at most 767 significant decimal digits), so a larger
// precision only adds zeros that %g removes again.
constexpr int32_t kGeneralPrecisionCap = 800;
// Integer places of the largest double, a point, the precision and an
// exponent text.
constexpr std::size_t kBodyRoom = 309 + 1 + kGeneralPrecisionCap + 8;

bool is_upper_letter(char c) noexcept { return c >= 'A' && c <= 'Z'; }

// The decimal exponent of a text that to_chars wrote in scientific form.
int32_t exponent_of(const char* first, const char* last) noexcept {
    const char* e = std::find(first, last, 'e');
    int32_t x = 0;
    std::from_chars(e + 1 + (e[1] == '+'), last, x);
    return x;
}

// Removes the zeros at the end of the fraction of a fixed text, and the
// point when nothing remains behind it.
char* strip_fraction_zeros(char* first, char* last) noexcept {
    if (std::find(first, last, '.') == last) return last;
    while (last[-1] == '0') --last;
    if (last[-1] == '.') --last;
    return last;
}

// The body of a finite magnitude under conversion `conv`: digits, point and
// exponent text, no sign.  Answers the end of the text.
char* convert_magnitude(double mag, const Conversion& conv, int32_t precision, char* first, char* last) noexcept {
    const char kind = static_cast<char>(conv.letter | 0x20);
    char* end = first;
    if (kind == 'f') {
        // 1. Fixed: the digits with `precision` decimals.
        end = std::to_chars(first, last, mag, std::chars_format::fixed, precision).ptr;
        if (conv.alternate && precision == 0) *end++ = '.';
        return end;
    }
    if (kind == 'e') {
        // 2. Exponent: one digit, `precision` decimals, "e+XX".
        end = std::to_chars(first, last, mag, std::chars_format::scientific, precision).ptr;
        if (conv.alternate && precision == 0) {
            char* e = std::find(first, end, 'e');
            std::memmove(e + 1, e, static_cast<std::size_t>(end - e));
            *e = '.';
            ++end;
        }
        return end;
    }
    // 3. General: P significant digits; fixed form when the exponent X that
    //    the exponent form would show satisfies -4 <= X < P.
    const int32_t p = precision == 0 ? 1 : precision;
    end = std::to_chars(first, last, mag, std::chars_format::scientific, p - 1).ptr;
    const int32_t x = exponent_of(first, end);
    if (x >= -4 && x < p) end = std::to_chars(first, last, mag, std::chars_format::fixed, p - 1 - x).ptr;
    if (conv.alternate) {
        if (std::find(first, end, '.') == end) {
            char* e = std::find(first, end, 'e');
            std::memmove(e + 1, e, static_cast<std::size_t>(end - e));
            *e = '.';
            ++end;
        }
        return end;
    }
    // 4. Without '#', trailing zeros of the fraction go, and a bare point.
    char* e = std::find(first, end, 'e');
    char* kept = strip_fraction_zeros(first, e);
    std::memmove(kept, e, static_cast<std::size_t>(end - e));
    return kept + (end - e);
}

}  // namespace

int32_t convert(double value, const Conversion& conv, std::span<char> out) noexcept {
    // 1. The sign: from the sign bit, so -0.0 and values rounded to zero keep
    //    theirs, as printf shows them.
    const bool negative = std::signbit(value);
    const char sign = negative ? '-' : conv.plus ? '+' : conv.space ? ' ' : '\0';
    const double mag = std::fabs(value);
    const char kind = static_cast<char>(conv.letter | 0x20);
    int32_t precision = conv.precision < 0 ? 6 : conv.precision;
    if (kind == 'g' && !conv.alternate) precision = std::min(precision, kGeneralPrecisionCap);
    // 2. A precision that cannot fit is refused before any digit is made
    //    (only %g without '#' may print fewer digits than its precision).
    if (precision > kGeneralPrecisionCap) return -1;
    const bool keeps_all = kind != 'g' || conv.alternate;
    if (keeps_all && static_cast<std::size_t>(precision) + 2 > out.size()) return -1;

    // 3. The body: digits, point and exponent text; or the words of the
    //    non-numbers.
    char body[kBodyRoom];
    char* end = body;
    const bool finite = std::isfinite(mag);
    if (!finite) {
        const char* word = std::isnan(mag) ? "nan" : "inf";
        end = std::copy(word, word + 3, body);
    } else {
        end = convert_magnitude(mag, conv, precision, body, body + sizeof body);
    }
    if (is_upper_letter(conv.letter))
        for (char* p = body; p != end; ++p)
            if (*p >= 'a' && *p <= 'z') *p = static_cast<char>(*p - 'a' + 'A');

    // 4. Padding to the field width: spaces in front, zeros behind the sign
    //    under '0', spaces behind under '-'.
    const auto body_len = static_cast<std::size_t>(end - body);
    const std::size_t text_len = body_len + (sign ? 1 : 0);
    const std::size_t width = conv.width > 0 ? static_cast<std::size_t>(conv.width) : 0;
    const std::size_t pad = width > text_len ? width - text_len : 0;
    const std::size_t total = text_len + pad;
    if (total + 1 > out.size()) return -1;
    char* p = out.data();
    const bool zeros = conv.zero && !conv.left && finite;
    if (!conv.left && !zeros) p = std::fill_n(p, pad, ' ');
    if (sign) *p++ = sign;
    if (zeros) p = std::fill_n(p, pad, '0');
    p = std::copy(body, end, p);
    if (conv.left) p = std::fill_n(p, pad, ' ');
    *p = '\0';
    return static_cast<int32_t>(total);
}

int32_t decade_of(double x) noexcept {
    // 1. Clamp to 16 bits (a non-number counts as 0).
    if (x != x) return 0;
    if (x > 32767.0) return 32767;
    if (x < -32768.0) return -32768;
    // 2. Round half up by truncation toward zero.
    const auto n = static_cast<int32_t>(x + 0.5);
    // 3. One lower when x lies clearly below n.
    return x - n <= -1e-10 ? n - 1 : n;
}

std::size_t trim_trailing_zeros(char* text, std::size_t len, int32_t limit) noexcept {
    // 1. From the end: a point ends the work and goes with it; zeros go while
    //    the limit lasts.
    while (len > 0) {
        if (text[len - 1] == '.') {
            --len;
            break;
        }
        if (text[len - 1] != '0' || limit <= 0) break;
        --len;
        --limit;
    }
    text[len] = '\0';
    return len;
}

int32_t decimal_exponent(double mag) noexcept {
    // 1. An estimate from the binary exponent (log10(2) = 0.30103), off by
    //    one at most.
    const auto binary = static_cast<int32_t>((std::bit_cast<uint64_t>(mag) >> 52) & 0x7FF) - 1023;
    int32_t x = (binary * 78913) >> 18;
    // 2. Corrected against exactly rounded powers of ten, so that no
    //    runtime's last bit matters.
    while (x < 308 && mag >= pow10(x + 1)) ++x;
    while (x > -324 && mag < pow10(x)) --x;
    return x;
}

int32_t decade_of_magnitude(double mag) noexcept {
    // 1. From 0.1 on, decade_of is the floor of the logarithm unless the
    //    logarithm lies within its tolerance below the next whole number,
    //    that is unless the magnitude lies within about 2.3e-10 (relative)
    //    below the next power of ten.
    constexpr double kBand = 1.0 - 1e-9;
    if (mag >= 0.1 && mag < 1e300) {
        const int32_t x = decimal_exponent(mag);
        if (mag < pow10(x + 1) * kBand) return x;
    }
    // 2. Near a power of ten, and below 0.1 where decade_of rounds by
    //    halves, the logarithm decides.
    return decade_of(std::log10(mag));
}

void trim_trailing_zeros(char* text, int32_t limit) noexcept { trim_trailing_zeros(text, std::strlen(text), limit); }

}  // namespace vl::text
