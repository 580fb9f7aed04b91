// Appending to a caller's buffer: the few pieces date and time texts are
// made of, written without the runtime's printf (every target prints the
// same, and a date is printed in a few dozen instructions).
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace vl::datetime {

// "00" to "99" one after the other: two digits by one look-up instead of
// a division and a remainder.
inline constexpr char kDigitPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

class TextSink {
  public:
    explicit TextSink(char* out) noexcept : start_(out), p_(out) { *p_ = '\0'; }
    // Continues a text already in the buffer.
    static TextSink behind(char* text) noexcept { return TextSink(text, text + std::strlen(text)); }
    // The same when the end of that text is already known.
    static TextSink behind(char* text, char* end) noexcept { return TextSink(text, end); }

    void text(std::string_view s) noexcept {
        // The pieces of a date are a few characters long: a plain loop is
        // cheaper than a call to the runtime's copy.
        for (const char c : s) *p_++ = c;
        *p_ = '\0';
    }
    void text(std::string_view s, std::size_t most) noexcept { text(s.substr(0, most)); }
    void ch(char c) noexcept {
        *p_++ = c;
        *p_ = '\0';
    }
    // The number with at least `width` characters, zeros in front, in front
    // of a minus sign too ("%d" with width 0, "%02d" for others but for the
    // place of the sign).
    void number(int64_t v, int width = 0) noexcept {
        // Most numbers of a date are a day, a month or a year.
        if (v >= 0 && v < 100 && width <= 2) {
            const char* pair = kDigitPairs + 2 * v;
            if (v >= 10 || width == 2) *p_++ = pair[0];
            *p_++ = pair[1];
            *p_ = '\0';
            return;
        }
        if (v >= 1000 && v < 10000 && width <= 4) {
            const auto u = static_cast<uint32_t>(v);
            const char* high = kDigitPairs + 2 * (u / 100);
            const char* low = kDigitPairs + 2 * (u % 100);
            p_[0] = high[0];
            p_[1] = high[1];
            p_[2] = low[0];
            p_[3] = low[1];
            p_ += 4;
            *p_ = '\0';
            return;
        }
        char digits[24];
        int n = 0;
        const bool negative = v < 0;
        uint64_t u = negative ? 0 - static_cast<uint64_t>(v) : static_cast<uint64_t>(v);
        do {
            digits[n++] = static_cast<char>('0' + u % 10);
            u /= 10;
        } while (u);
        if (negative) digits[n++] = '-';
        for (int i = n; i < width; ++i) *p_++ = '0';
        while (n) *p_++ = digits[--n];
        *p_ = '\0';
    }
    char* start() const noexcept { return start_; }
    char* end() const noexcept { return p_; }
    std::size_t size() const noexcept { return static_cast<std::size_t>(p_ - start_); }

  private:
    TextSink(char* start, char* p) noexcept : start_(start), p_(p) {}
    char* start_;
    char* p_;
};

}  // namespace vl::datetime
