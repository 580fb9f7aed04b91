// Numbers to text under the host's short format texts ("*", "*3", ".2",
// "E*3", "S*", "%8.3f"...), and the small companions of that printer.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <span>

#include "internal/values.h"
#include "platform/platform.h"
#include "text/digits.h"
#include "text/text.h"
#include "vlcore.h"

namespace vl::text {
namespace {

// Magnitudes beyond these print as "--" or count as zero.
constexpr double kLargest = 1e290;
constexpr double kSmallest = 1e-290;
// Fixed form lies strictly between these; the host compares its doubles with
// single-precision bounds, and texts stored by earlier versions depend on it.
constexpr float kPlainUpper = 1e12f;
constexpr float kPlainLower = 1e-5f;
constexpr float kDigitsLower = 1e-3f;
// Texts of the `*` and `.` bodies stay below this length; a digit count far
// beyond the useful one (say "*40") could make more, and prints "--".
constexpr std::size_t kShortBodyRoom = 40;
// The copy of a sprintf body, white space removed, and its result share the
// size of the host's work buffers.
constexpr std::size_t kWorkRoom = kFormatLimit + 1;

constexpr int32_t kTrimAll = 100;

char* put_text(char* dst, std::string_view text) noexcept {
    std::copy(text.begin(), text.end(), dst);
    dst[text.size()] = '\0';
    return dst;
}

// 10^n in single precision, as the digit-count thresholds are kept.
float single_power_of_ten(int32_t n) noexcept {
    if (n > 38) return HUGE_VALF;
    if (n < -45) return 0.0f;
    return static_cast<float>(pow10(n));
}

// The `D` prefix hands the value to date printing, whose answer (a status
// word) carries no text: the caller still gets `dst`.
char* print_as_date(double value, int16_t flags, char* dst) noexcept {
    KELUTIL_date2str(value, static_cast<uint32_t>(static_cast<uint16_t>(flags)), dst);
    return dst;
}

// "E+003" -> "E3", "E-005" -> "E-5", "E+000" -> "E0", in place; answers the
// new end.
char* shorten_exponent(char* e, char* end) noexcept {
    char* src = e + 1;
    char* out = e + 1;
    if (*src == '+')
        ++src;
    else if (*src == '-')
        *out++ = *src++;
    while (src + 1 < end && *src == '0') ++src;
    while (src < end) *out++ = *src++;
    *out = '\0';
    return out;
}

// What the body of a `*` or `.` format asks for.
struct ShortBody {
    bool dot;        // a `.` form, else a `*` form
    bool trim_form;  // `*N*`: significant digits, zeros trimmed
    bool has_n;      // N counts (1 to 19)
    int32_t n;       // N, when it counts
    float upper;     // fixed form strictly between lower and upper
    float lower;
};

ShortBody read_short_body(const char* body) noexcept {
    ShortBody b{};
    b.dot = body[0] == '.';
    // 1. N: only when a digit stands behind the mark; `*N*` holds a single
    //    digit, which the integer reader would refuse with its star.
    b.trim_form = !b.dot && is_digit(body[1]) && body[2] == '*';
    const int32_t written = b.trim_form ? body[1] - '0' : (body[1] ? KELUTIL_str2int(body + 1) : 0);
    if (is_digit(body[1])) {
        b.n = written;
        b.has_n = written >= 1 && written <= 19;
    }
    // 2. Thresholds: the plain pair for `*` alone and the `.` forms, else
    //    10^N for whatever N was written.
    if (b.dot || body[1] == '\0') {
        b.upper = kPlainUpper;
        b.lower = kPlainLower;
    } else {
        b.upper = single_power_of_ten(written);
        b.lower = kDigitsLower;
    }
    return b;
}

// Steps 9 to 13 for a non-zero value under a `*` or `.` body: the number text
// without suffix into `out`; answers its length, or -1 when it would not fit.
int32_t print_short(double value, const char* body, bool scientific, std::span<char> out) noexcept {
    // 9. N, thresholds and the form.
    const ShortBody b = read_short_body(body);
    const double mag = std::fabs(value);
    const bool exponent = scientific || mag >= b.upper || mag <= b.lower;

    // 10.-11. The conversion.
    Conversion conv;
    bool trim_fixed = !b.dot && (!b.has_n || b.trim_form);
    if (!exponent) {
        conv.letter = 'f';
        if (b.dot) {
            conv.precision = b.has_n ? b.n : 0;
        } else if (!b.has_n) {
            conv.precision = 5;
        } else {
            const int32_t decimals = b.n - decade_of_magnitude(mag) - 1;
            conv.precision = decimals > 0 ? decimals : 0;
            if (decimals <= 0) trim_fixed = false;
        }
    } else {
        conv.letter = 'E';
        conv.precision = b.dot ? (b.has_n ? b.n : 0) : (b.has_n ? b.n - 1 : 4);
    }

    // 12. The digits, then the exponent in its shortest text, with the zeros
    //     of a `*` form's mantissa trimmed first.
    const int32_t converted = convert(value, conv, out);
    if (converted < 0) return -1;
    char* const text = out.data();
    auto len = static_cast<std::size_t>(converted);
    if (exponent) {
        char* end = text + len;
        char* e = std::find(text, end, 'E');
        if (e == end) return converted;
        if (!b.dot) {
            char exponent_text[8] = {};
            const auto tail = static_cast<std::size_t>(std::min<std::ptrdiff_t>(end - e, 7));
            std::memcpy(exponent_text, e, tail);
            e = text + trim_trailing_zeros(text, static_cast<std::size_t>(e - text), kTrimAll);
            std::memcpy(e, exponent_text, tail + 1);
            end = e + tail;
        }
        return static_cast<int32_t>(shorten_exponent(e, end) - text);
    }
    // 13. Our conversions carry no field width, so there is no white space to
    //     remove; trimming of the automatic and `*N*` fixed forms.
    if (trim_fixed && std::find(text, text + len, '.') != text + len) len = trim_trailing_zeros(text, len, kTrimAll);
    return static_cast<int32_t>(len);
}

}  // namespace

Scaled engineering_scale(double value, char mode) noexcept {
    Scaled s{value, {}};
    // 1. Zero keeps no suffix.
    if (value == 0.0) return {0.0, {}};
    // 2. The decade of the magnitude.
    const int32_t l = decade_of_magnitude(std::fabs(value));
    char* p = s.suffix.data();
    char* const last = p + s.suffix.size() - 1;
    if (mode == 'P') {
        // 3. A power of ten in the host's superscript notation.
        p = std::copy_n("x10\\+(", 6, p);
        p = std::to_chars(p, last, l).ptr;
        *p++ = ')';
        s.value = value / pow10(l);
        return s;
    }
    // 4. Powers of 1000 and their SI letters.
    const int32_t k = l > 0 ? l / 3 : decade_of(l * 0.3333333333333333);
    if (k == 0) return s;
    constexpr std::string_view kUp[] = {"k", "M", "G", "T", "P", "E"};
    constexpr std::string_view kDown[] = {"m", "\xB5", "n", "p", "f", "a"};
    if (k >= 1 && k <= 6) {
        p = std::copy(kUp[k - 1].begin(), kUp[k - 1].end(), p);
    } else if (k <= -1 && k >= -6) {
        p = std::copy(kDown[-k - 1].begin(), kDown[-k - 1].end(), p);
    } else {
        *p++ = 'e';
        p = std::to_chars(p, last, 3 * k).ptr;
    }
    s.value = value / pow10(3 * k);
    return s;
}

}  // namespace vl::text

using namespace vl;
using namespace vl::text;

extern "C" {

char* VLAPI KELUTIL_real2str(double value, char* dst, const char* format) noexcept {
    // 1.-3. Reserved values, non-numbers and the far ends of the range.  A
    //       NaN goes with DIV_ZERO_VALUE: the host's comparison finds them
    //       equal.
    if (value == DIV_ZERO_VALUE || value != value) return put_text(dst, "/0");
    if (value == MISSING_VALUE) return put_text(dst, "--");
    if (std::fabs(value) > kLargest) return put_text(dst, "--");
    if (std::fabs(value) < kSmallest) value = 0.0;

    // 4.-5. One prefix character at most.
    const char* body = format;
    Scaled scaled{value, {}};
    bool scientific = false;
    switch (format[0]) {
        case 'E':
        case 'P': scaled = engineering_scale(value, format[0]), ++body; break;
        case 'S': scientific = true, ++body; break;
        case ',': ++body; break;
        case 'D': {
            const int16_t flags = format[1] ? static_cast<int16_t>(KELUTIL_str2int(format + 1)) : 0;
            return print_as_date(value, flags, dst);
        }
        default: break;
    }
    const std::string_view suffix = scaled.suffix[0] ? std::string_view(scaled.suffix.data()) : std::string_view();

    // 6. A power of ten alone: "10\+(3)", not one times it.
    if (format[0] == 'P' && body[0] == '*' && std::fabs(scaled.value) == 1.0) {
        char* p = dst;
        if (scaled.value < 0) *p++ = '-';
        put_text(p, suffix.substr(1));
        return dst;
    }

    // 7. Any other body is a printf format for the value, white space
    //    removed; read by our own interpreter, never by the runtime.
    if (body[0] != '*' && body[0] != '.') {
        char stripped[kWorkRoom];
        std::size_t n = 0;
        for (const char* p = body; *p; ++p) {
            if (is_space(*p)) continue;
            if (n + 1 >= sizeof stripped) return put_text(dst, "--");
            stripped[n++] = *p;
        }
        char text[kWorkRoom];
        if (!format_one_double(std::string_view(stripped, n), scaled.value, suffix, text)) return put_text(dst, "--");
        return put_text(dst, text);
    }

    // 8. Zero is "0" whatever the body asks.
    if (scaled.value == 0.0) return put_text(dst, "0");

    // 9.-14. Digits by the body, then the suffix.
    char text[kPlacedRoom];
    const int32_t len = print_short(scaled.value, body, scientific, text);
    if (len < 0 || static_cast<std::size_t>(len) + suffix.size() >= kShortBodyRoom) return put_text(dst, "--");
    std::memcpy(dst, text, static_cast<std::size_t>(len));
    put_text(dst + len, suffix);
    return dst;
}

double VLAPI KELUTIL_real2real(double value, int32_t places) noexcept {
    // 1. Scale, and round half away from zero.
    const double p = pow10(static_cast<int16_t>(places));
    const double t = std::trunc(value * p + (value >= 0 ? 0.5 : -0.5));
    // 2. Through a 32-bit integer: high bits are lost, as the host's
    //    conversion loses them; a non-number becomes the integer indefinite.
    int32_t n = INT32_MIN;
    if (std::isfinite(t))
        n = static_cast<int32_t>(static_cast<uint32_t>(static_cast<int64_t>(std::fmod(t, 4294967296.0))));
    // 3. Back to the scale of the value.
    return n / p;
}

char* VLAPI KELUTIL_int2str(int32_t value) noexcept {
    static char buffer[30];
    *std::to_chars(buffer, buffer + sizeof buffer - 1, value).ptr = '\0';
    return buffer;
}

void VLAPI KELUTIL_int2fixstr(int32_t value, int32_t width, char* dst) noexcept {
    // 1. The plain number.
    char digits[16];
    const auto len = static_cast<int32_t>(std::to_chars(digits, digits + sizeof digits, value).ptr - digits);
    // 2. Zeros in front, before a minus sign too, up to the width.
    const int32_t fill = width > len ? width - len : 0;
    std::memset(dst, '0', static_cast<std::size_t>(fill));
    std::memcpy(dst + fill, digits, static_cast<std::size_t>(len));
    dst[fill + len] = '\0';
}

double VLAPI KELUTIL_GetPrivateProfileReal(const char* section, const char* key, double def, const char* file) noexcept {
    // 1. The default travels as text, at the precision of the "*" format.
    char def_text[kShortBodyRoom];
    KELUTIL_real2str(def, def_text, "*");
    // 2. The stored text, or the default's.
    char buffer[119];
    platform::private_profile_string(section, key, def_text, buffer, file);
    // 3. Read as a real; a bad number is the missing value.
    return KELUTIL_str2real(buffer);
}

}  // extern "C"
