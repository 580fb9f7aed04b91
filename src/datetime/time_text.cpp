// KELUTIL_time2str and KELUTIL_str2time: the time of day held in the
// fraction of a value, or a length of time in days, to text and back.

#include <cmath>
#include <cstring>

#include "datetime/state.h"
#include "datetime/text_out.h"
#include "datetime/time_text.h"
#include "internal/values.h"
#include "vlcore.h"

namespace vl::datetime {
namespace {

constexpr uint16_t kTimeFormats[] = {1, 32, 3, 7, 8, 9, 19, 23, 33, 35, 71, 263, 519};

// The question of KELUTIL_time2str with no buffer, and its answer.
constexpr uint16_t kFinestQuestion = 4096;
constexpr int32_t kFinestFormat = kTimeThousandths;

constexpr double kDaysPerHour = 0.041666666666666664;
constexpr double kPerMinute = 0.016666666666666666;  // minutes to hours, seconds to minutes
// Within a hundredth of a second of a period counts as the period itself.
constexpr double kPeriodTolerance = 1.1574074074074074e-7;
constexpr double kNudge = 1e-11;
constexpr double kPow10[] = {1.0, 10.0, 100.0, 1000.0, 10000.0};
// Beyond this many hours a length of time isn't printed as one.
constexpr double kMostHours = 2147483647.0;
// Lengths of 1 to 239 days print as total hours; date values don't.
constexpr double kMostDaysAsHours = 239.0;
constexpr std::size_t kTokenRoom = 10;  // 9 characters
// How near a whole half hundredth of a second print_clock leaves to the
// exact chain: far above the chain's error, and rarely met.
constexpr double kHalvesMargin = 1e-6;

int32_t decimals_of(uint16_t style) noexcept {
    if (!(style & kTimeDecimals)) return 2;
    if (style & kTimeThreeDecimals) return 3;
    if (style & kTimeOneDecimal) return 1;
    if (style & kTimeFourDecimals) return 4;
    return 2;
}

// Seconds given as k / 10^d: two integer digits, a point and d decimals,
// "%0*.*f" with width d + 3.
void put_decimal_seconds(TextSink& out, int64_t k, int32_t d) noexcept {
    const auto scale = static_cast<int64_t>(kPow10[d]);
    const bool negative = k < 0;
    const int64_t u = negative ? -k : k;
    char digits[32];
    TextSink body(digits);
    body.number(u / scale);
    body.ch('.');
    body.number(u % scale, d);
    const auto len = static_cast<int32_t>(body.size()) + (negative ? 1 : 0);
    if (negative) out.ch('-');
    for (int32_t i = len; i < d + 3; ++i) out.ch('0');
    out.text(std::string_view(digits, body.size()));
}

// A token of a time text, at most 9 characters.
void keep_token(char (&token)[kTokenRoom], const char* from, std::size_t n) noexcept {
    if (n > kTokenRoom - 1) n = kTokenRoom - 1;
    std::memcpy(token, from, n);
    token[n] = '\0';
}

}  // namespace

uint16_t time_style(uint16_t format) noexcept {
    if (format > 0xFF) return format & 0xFF;
    return format < std::size(kTimeFormats) ? kTimeFormats[format] : 0;
}

char* print_time(double value, uint16_t word, char* out) noexcept {
    TextSink text(out);
    // 1. No value.
    if (value == MISSING_VALUE) {
        text.text("--");
        return text.end();
    }
    const uint16_t style = time_style(word);
    // 2. Colons only between parts, and not in the plain form.
    const std::string_view sep = (style & kTimeMinutes) && !(style & kTimePlain) ? std::string_view(":") : "";
    // 3.-5. The whole days, and what is left of the value: a wrapped value
    //       keeps a whole period rather than falling to zero.
    double days = std::trunc(value);
    double r = 0.0;
    if (period > 0.0) {
        r = std::fmod(value, period);
        days = 0.0;
        if (r >= 0.0 && r < kPeriodTolerance && value > 0.0) r = period;
    } else {
        r = value - days;
    }
    // 6. Hours, minutes and seconds, the seconds with their fraction.
    double x = (r + kNudge) * 24.0;
    if (!(std::fabs(x) <= kMostHours)) {
        text.text("--");
        return text.end();
    }
    auto hours = static_cast<int64_t>(x);
    x = (x - static_cast<double>(hours)) * 60.0;
    auto minutes = static_cast<int64_t>(x);
    const double seconds = (x - static_cast<double>(minutes)) * 60.0 + kNudge;
    // 7. Rounded to d decimals, kept as the whole number k of 10^-d units.
    const int32_t d = decimals_of(style);
    auto k = static_cast<int64_t>(seconds * kPow10[d] + 0.5);
    const auto minute_units = static_cast<int64_t>(60 * kPow10[d]);
    // 8. The carry from the seconds: with decimals at a full minute,
    //    without them from 59.5 on, where the seconds print as 00.
    bool seconds_zero = false;
    if (style & kTimeDecimals) {
        if (k >= minute_units) k -= minute_units, ++minutes;
    } else if (k + static_cast<int64_t>(kPow10[d]) / 2 >= minute_units) {
        seconds_zero = true;
        ++minutes;
    }
    // 9. The carry from the minutes; the hours may reach 24.
    if (minutes >= 60) minutes -= 60, ++hours;
    const int64_t hour_of_day = hours;
    // 10. A length of time of 1 to 239 days shows its total hours.
    if (days >= 1.0 && days <= kMostDaysAsHours) hours += static_cast<int64_t>(days) * 24;
    // 11. The 12-hour clock has no hour 0.
    if (style & kTimeTwelve) {
        hours %= 12;
        if (hours == 0) hours = 12;
    }
    // 12. The text.
    if (!(style & kTimeNoHours)) {
        text.number(hours, 2);
        text.text(sep);
    }
    if (style & kTimeMinutes) text.number(minutes, 2);
    if (style & kTimeSeconds) {
        text.text(sep);
        if (style & kTimeDecimals)
            put_decimal_seconds(text, k, d);
        else
            text.number(seconds_zero ? 0 : k / static_cast<int64_t>(kPow10[d]), 2);
    }
    // 13. Morning or afternoon by the hour of the day.
    if (style & kTimeTwelve) text.text(hour_of_day < 12 ? " AM" : " PM");
    return text.end();
}

char* print_clock(double value, char* out) noexcept {
    // 1. A period, a value that could be a length of time (hours totalled,
    //    or a negative remainder), or one too large for a date takes the
    //    general road.
    if (period > 0.0 || !(value > kMostDaysAsHours + 1.0 && value < kMostHours))
        return print_time(value, kTimeHoursMinutesSeconds, out);
    // 2. The time of day in half hundredths of a second, by one product.
    //    print_time's chain of steps 6 to 9 rounds several times, but its
    //    total error stays below 1e-8 hundredths; its truncations and its
    //    rounding to hundredths then decide as the exact product does
    //    unless that lies near a whole or half hundredth.  There (one
    //    value in a few hundred thousand) the chain itself prints.
    //    The value is positive and below 2^31, so its whole day is the
    //    conversion to an integer and back, exactly.
    const double r = value - static_cast<double>(static_cast<int64_t>(value));
    const double halves = (r + kNudge) * (2 * 8640000.0);
    const auto whole_halves = static_cast<int64_t>(halves);
    const double off = halves - static_cast<double>(whole_halves);
    if (!(off > kHalvesMargin && off < 1.0 - kHalvesMargin)) return print_time(value, kTimeHoursMinutesSeconds, out);
    // 3. Whole minutes, and the seconds in hundredths rounded to nearest.
    int64_t minutes = (whole_halves >> 1) / 6000;
    const int64_t k = ((whole_halves + 1) >> 1) - 6000 * minutes;
    //    Seconds from 59.5 on print as 00 of the next minute.
    const bool seconds_zero = k + 50 >= 6000;
    minutes += seconds_zero ? 1 : 0;
    const int64_t hours = minutes / 60;
    minutes %= 60;
    const int64_t whole_seconds = seconds_zero ? 0 : k / 100;
    // 4. "HH:MM:SS": every number is below 100, so a digit pair each.
    std::memcpy(out, kDigitPairs + 2 * hours, 2);
    out[2] = ':';
    std::memcpy(out + 3, kDigitPairs + 2 * minutes, 2);
    out[5] = ':';
    std::memcpy(out + 6, kDigitPairs + 2 * whole_seconds, 2);
    out[8] = '\0';
    return out + 8;
}

}  // namespace vl::datetime

using namespace vl;
using namespace vl::datetime;

extern "C" {

int32_t VLAPI KELUTIL_time2str(double value, uint32_t format, char* out) noexcept {
    const auto word = static_cast<uint16_t>(format);
    // Without a buffer the word is a command: 0 sets the period (in hours),
    // 4096 asks for the finest time format.
    if (!out) {
        if (word == 0) period = value * kDaysPerHour;
        return word == kFinestQuestion ? kFinestFormat : 0;
    }
    print_time(value, word, out);
    return 0;
}

double VLAPI KELUTIL_str2time(char* text, uint32_t format) noexcept {
    // 1. Nothing to read.
    if (!text || !*text) return MISSING_VALUE;
    const uint16_t style = time_style(static_cast<uint16_t>(format));
    // 2. Morning and afternoon marks anywhere; afternoon wins.
    const bool afternoon = std::strpbrk(text, "Pp") != nullptr;
    const bool morning = !afternoon && std::strpbrk(text, "Aa") != nullptr;
    // 3. Hours, minutes and seconds tokens.
    char tokens[3][kTokenRoom] = {};
    int first = 0;
    if (style & kTimeNoHours) {
        keep_token(tokens[0], "0", 1);
        first = 1;
    }
    char* rest = text;
    for (int i = first; i < 3; ++i) {
        if (style & kTimePlain) {
            // Digit pairs; a text that has run out gives "00".
            const std::size_t n = strnlen(rest, 2);
            if (n == 0)
                keep_token(tokens[i], "00", 2);
            else
                keep_token(tokens[i], rest, n);
            rest += n;
        } else if (*rest) {
            // Cut at the next colon, the cut becoming a string end.
            char* colon = std::strchr(rest, ':');
            char* behind = colon ? colon + 1 : rest + std::strlen(rest);
            if (colon) *colon = '\0';
            keep_token(tokens[i], rest, std::strlen(rest));
            rest = behind;
        }
    }
    // 4. Whole hours, split into days and hours of the day.
    const double hours_read = KELUTIL_str2real(tokens[0]);
    const auto n = static_cast<int32_t>(std::fabs(hours_read) < 2147483647.0 ? std::trunc(hours_read) : 0.0);
    const int32_t q = n / 24;
    int32_t h = n % 24;
    // 5. The 12-hour clock: 12 PM stays 12, 12 AM is 0.
    if (afternoon && h != 12) h += 12;
    if (morning && h == 12) h = 0;
    // 6. The time of day in days.
    double result = h * kDaysPerHour + KELUTIL_str2real(tokens[1]) * kPerMinute * kDaysPerHour +
                    KELUTIL_str2real(tokens[2]) * kPerMinute * kPerMinute * kDaysPerHour;
    // 7. Whole days of an hour count above 24.
    if (!(style & kTimeNoHours)) result += q;
    return result;
}

}  // extern "C"
