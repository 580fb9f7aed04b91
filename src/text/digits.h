// The library's own number printing: decimal digits of a double made here,
// never by the C runtime, so every target prints the same text (runtimes
// differ in rounding and in the number of exponent digits).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace vl::text {

// ---- printf-style conversions ----------------------------------------------

// One conversion of a double as the standard printf family writes it: flags
// '-', '+', ' ', '#', '0', a field width, a precision (-1: the default 6) and
// one of f F e E g G.  Exponents take at least two digits.
struct Conversion {
    bool left = false;
    bool plus = false;
    bool space = false;
    bool alternate = false;
    bool zero = false;
    int32_t width = 0;
    int32_t precision = -1;
    char letter = 'f';
};

// Writes the converted value and a terminator into `out`; answers the length,
// or -1 when the text and its terminator do not fit.
int32_t convert(double value, const Conversion& conv, std::span<char> out) noexcept;

// The longest text the interpreter below writes, terminator excluded.
inline constexpr std::size_t kFormatLimit = 119;

// Interprets a caller's format text for one double: literal text, `%%`, and
// exactly one conversion of f F e E g G (an `l` length mark is allowed).
// Writes the text and `suffix` behind it into `out` and answers true; answers
// false when the format holds any other conversion or a second one, or when
// the text would pass kFormatLimit characters.  A format with no conversion
// at all is copied as it stands.
bool format_one_double(std::string_view format, double value, std::string_view suffix, std::span<char> out) noexcept;

// ---- Helpers of the short format texts ---------------------------------------

// The whole number of a base-10 logarithm `x`, with a tolerance of 1e-10 so
// that 2.99999999999 gives 3; clamped to 16 bits.
int32_t decade_of(double x) noexcept;

// The decimal exponent x of a finite, positive magnitude, 10^x <= mag <
// 10^(x+1), against exactly rounded powers of ten.
int32_t decimal_exponent(double mag) noexcept;

// decade_of(log10(mag)) for a positive magnitude, without the logarithm
// where the exact decimal exponent decides it.
int32_t decade_of_magnitude(double mag) noexcept;

// A value scaled for the `E` (SI letters) or `P` (power of ten) prefix and
// the text that goes behind it.
struct Scaled {
    double value;
    std::array<char, 21> suffix;
};
Scaled engineering_scale(double value, char mode) noexcept;

// Removes up to `limit` '0' characters from the end of `text`; a '.' reached
// that way goes too and ends the work.
void trim_trailing_zeros(char* text, int32_t limit) noexcept;
// The same for a text of known length; answers the new length.
std::size_t trim_trailing_zeros(char* text, std::size_t len, int32_t limit) noexcept;

// ---- The digit-row converter ------------------------------------------------

// Room that place_point may need, terminator included: a row of at most 119
// digits, a point, and up to 309 integer places or 255 places behind the
// point.
inline constexpr std::size_t kPlacedRoom = 320;

// Turns the zero-terminated row of digits at the start of `text` into a
// number text in place, the decimal point behind the digit of index `e`
// (e >= 0) or in front of -e - 1 zeros (e < 0).  A negative `decimals`
// asks for n - e - 1 decimals (e >= 0) or n - 2 decimals (e < 0).  Answers
// false when no digit fits behind the point: the text is then a bare zero
// such as "0.00".
bool place_point(std::span<char> text, int32_t n, int32_t decimals, int32_t e) noexcept;

}  // namespace vl::text
