// The quick road of the date reader.  Format 0 meets three plain numbers
// far more often than anything else; the general reader copies such a
// text, scans it for its shape, cuts and upper-cases its tokens and calls
// the exported number and calendar entries for each part.  Here the text is
// read once, in place, and each step does what the general reader's does to
// the shared state, so the two can't be told apart.  Anything unusual is
// left to the general reader.

#include "datetime/numeric_date.h"

#include <cstdint>

#include "datetime/calendar.h"
#include "datetime/regional.h"
#include "datetime/state.h"
#include "datetime/time_text.h"
#include "internal/values.h"
#include "text/text.h"

namespace vl::datetime {
namespace {

// Four digits reach every year a record holds; longer numbers are rare
// enough to leave to the general reader.
constexpr int kMostDateDigits = 4;
constexpr int kMostTimeDigits = 2;
// The time reader's factors: hours to days, and minutes to hours or
// seconds to minutes.  The same doubles, or the sums would differ.
constexpr double kDaysPerHour = 0.041666666666666664;
constexpr double kPerMinute = 0.016666666666666666;

constexpr bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }
constexpr bool is_date_separator(char c) noexcept { return c == '/' || c == '-' || c == '.'; }

// A number read from the text: its value, and where the text goes on
// behind it; `end` is null when there was no number of the length asked.
struct Number {
    int32_t value;
    const char* end;
};

// A run of one to `most` digits at `p`.  Columns mix one- and two-digit
// days and months at random, so the second digit is taken without a
// branch: a mispredicted one costs more than the whole number.
inline Number take_number(const char* p, int most) noexcept {
    // 1. The first digit.
    const auto d0 = static_cast<uint32_t>(p[0] - '0');
    if (d0 > 9) return {0, nullptr};
    // 2. The second, counted by multiplying with 0 or 1.  p[1] can be read:
    //    p[0] is a digit, so the text goes on.
    const auto d1 = static_cast<uint32_t>(p[1] - '0');
    const uint32_t two = d1 <= 9 ? 1 : 0;
    uint32_t n = d0 + (d0 * 9 + d1) * two;
    p += 1 + two;
    // 3. More digits only behind a second one; p stands on a character
    //    that was not a digit otherwise.
    int count = 1 + static_cast<int>(two);
    if (two & static_cast<uint32_t>(is_digit(*p)))
        for (; is_digit(*p); ++p, ++count) n = n * 10 + static_cast<uint32_t>(*p - '0');
    if (count > most) return {0, nullptr};
    return {static_cast<int32_t>(n), p};
}

// Which of day (0), month (1) and year (2) a picture part stands for, by
// its first letter as the general reader tells them apart; 3 for none.
constexpr int part_kind(char letter) noexcept {
    if (letter == 'd' || letter == 'D') return 0;
    if (letter == 'm' || letter == 'M') return 1;
    return letter == 'y' ? 2 : 3;
}

// The three terms of the time reader's sum for every number of two digits
// or fewer, worked out once at compile time by the same double products,
// so the sum below adds exactly what it would otherwise multiply out.
struct TimeTerms {
    double hour[100];    // the hour of the day, in days
    int32_t whole[100];  // the whole days among the hours
    double minute[100];
    double second[100];
};

constexpr TimeTerms make_time_terms() noexcept {
    TimeTerms t{};
    for (int32_t n = 0; n < 100; ++n) {
        t.hour[n] = (n % 24) * kDaysPerHour;
        t.whole[n] = n / 24;
        t.minute[n] = static_cast<double>(n) * kPerMinute * kDaysPerHour;
        t.second[n] = static_cast<double>(n) * kPerMinute * kPerMinute * kDaysPerHour;
    }
    return t;
}

constexpr TimeTerms kTimeTerms = make_time_terms();

// A time of day in days, for parts of at most two digits each: the hours
// split into days and the hour of the day, put together in the order of
// the time reader's own sum.
inline double time_in_days(int32_t hours, int32_t minutes, int32_t seconds) noexcept {
    double result = kTimeTerms.hour[hours] + kTimeTerms.minute[minutes] + kTimeTerms.second[seconds];
    result += kTimeTerms.whole[hours];
    return result;
}

// The time behind the date when it is "h:mm" or "h:mm:ss" in one or two
// digits each and nothing else, in days as KELUTIL_str2time reads it with
// the hours-and-minutes format: no 12-hour marks, whole days of the hours
// counting above 24.
inline bool read_plain_time(const char* p, double& days) noexcept {
    // 1. Hours and minutes with a colon between, then the end or a colon
    //    and the seconds.
    const Number hours = take_number(p, kMostTimeDigits);
    if (!hours.end || *hours.end != ':') return false;
    const Number minutes = take_number(hours.end + 1, kMostTimeDigits);
    if (!minutes.end) return false;
    int32_t seconds = 0;
    if (*minutes.end) {
        if (*minutes.end != ':') return false;
        const Number s = take_number(minutes.end + 1, kMostTimeDigits);
        if (!s.end || *s.end) return false;
        seconds = s.value;
    }
    // 2. In days.
    days = time_in_days(hours.value, minutes.value, seconds);
    return true;
}

// Which field (0 day, 1 month, 2 year) each of the short picture's three
// parts names, packed two bits a part, or kNoOrder.  The picture changes
// only when the regional settings are loaded again, so the answer is kept
// together with the three letters it was found from and worked out again
// only when they differ.
constexpr uint32_t kNoOrder = 0x40;
// Month, day, year and year, month, day, the commonest two.
constexpr uint32_t kMonthDayYear = 1 | 0 << 2 | 2 << 4;
constexpr uint32_t kYearMonthDay = 2 | 1 << 2 | 0 << 4;

uint32_t order_of(uint32_t letters) noexcept {
    // 1. Each part's kind by its first letter.
    int kind[3];
    for (int i = 0; i < 3; ++i) kind[i] = part_kind(static_cast<char>(letters >> (8 * i)));
    // 2. Day, month and year once each, or the general reader's business:
    //    a part would be taken from today or twice.
    if (kind[0] == 3 || kind[1] == 3 || kind[2] == 3 || kind[0] == kind[1] || kind[0] == kind[2] || kind[1] == kind[2])
        return kNoOrder;
    return static_cast<uint32_t>(kind[0] | kind[1] << 2 | kind[2] << 4);
}

inline uint32_t picture_order() noexcept {
    // 1. The three letters as one number: the key of the kept answer.
    const auto& picture = regional_date_tables.short_picture;
    const uint32_t letters = static_cast<uint8_t>(picture[0][0]) | static_cast<uint8_t>(picture[2][0]) << 8 |
                             static_cast<uint32_t>(static_cast<uint8_t>(picture[4][0])) << 16;
    // 2. Letters and answer share one word, so they are always read as a
    //    pair; nothing is kept before the first call.
    static uint32_t kept = 0;
    if ((kept & 0xFFFFFF) == letters && kept >> 24) return (kept >> 24) - 1;
    const uint32_t order = order_of(letters);
    kept = letters | (order + 1) << 24;
    return order;
}

// Days before each month of a common year; the 13th entry is the year.
constexpr int32_t kDaysBefore[13] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
// The value of 1 January of year 0 less one day, as the calendar counts.
constexpr int32_t kValueOfYear0 = 1721059;

// The value of a midnight as DateTime_ToValue gives it, for a month
// already known to be 1 to 12 and a day 1 to 31; false where it refuses
// the date.  Its own copy here, so that nothing is called: a call and its
// checks cost a good part of a whole reading.
inline bool midnight_value(uint32_t year, uint32_t month, uint32_t day, double& value) noexcept {
    // 1. Two-digit years: 0-44 are 2000s, 45-99 1900s.  Four digits never
    //    pass 9999.
    uint32_t y = year;
    if (y < 100) y += y < 45 ? 2000 : 1900;
    // 2. The day within its month.
    //    Leap years come at random in a column; the test is worked out
    //    rather than branched on.
    const uint32_t leap = static_cast<uint32_t>(y % 4 == 0) & static_cast<uint32_t>(y % 100 != 0 || y % 400 == 0);
    const uint32_t length =
        static_cast<uint32_t>(kDaysBefore[month] - kDaysBefore[month - 1]) + (static_cast<uint32_t>(month == 2) & leap);
    if (day > length) return false;
    // 3. Whole days, the leap day not yet passed in January and February.
    int32_t days = static_cast<int32_t>(y * 365 + y / 4 - y / 100 + y / 400 + day) + kDaysBefore[month - 1];
    days -= static_cast<int32_t>(leap & static_cast<uint32_t>(month <= 2));
    value = static_cast<double>(days + kValueOfYear0);
    return true;
}

// The three numbers and the time of a text of the quick road's shape.
struct Shape {
    int32_t number[3];
    bool timed;
    double time;
};

enum Verdict : int { kTaken = 1, kDeclined = 0 };

// The shape read a character at a time: any text, any length.
Verdict scalar_shape(const char* text, Shape& shape) noexcept {
    // 1. Three numbers with a single separator between each.  A digit to
    //    begin with also rules out the leading weekday, the empty text and
    //    the negative number.
    const Number first = take_number(text, kMostDateDigits);
    if (!first.end || !is_date_separator(*first.end)) return kDeclined;
    const Number second = take_number(first.end + 1, kMostDateDigits);
    if (!second.end || !is_date_separator(*second.end)) return kDeclined;
    const Number third = take_number(second.end + 1, kMostDateDigits);
    if (!third.end) return kDeclined;
    shape.number[0] = first.value;
    shape.number[1] = second.value;
    shape.number[2] = third.value;
    // 2. What follows: the end, or a blank.  The date holds neither blank
    //    nor colon, so the general reader cuts the time off at this blank
    //    exactly when a colon comes later; without one the words behind
    //    are tokens past the picture, which don't count.  A plain time is
    //    tried first, and the rest looked through for a colon only when it
    //    isn't one.
    const char* p = third.end;
    shape.timed = false;
    shape.time = 0.0;
    if (*p == ' ') {
        shape.timed = read_plain_time(p + 1, shape.time);
        if (!shape.timed)
            for (const char* q = p + 1; *q; ++q)
                if (*q == ':') return kDeclined;
    } else if (*p) {
        return kDeclined;
    }
    return kTaken;
}

// The digit at `p` as 0-9, or above 9 for any other character.
inline uint32_t digit_at(const char* p) noexcept { return static_cast<uint32_t>(p[0] - '0'); }

// Two digits at `p` and their number; false for anything else.  The
// second byte is read only behind a digit: the first may be the text's end.
inline bool two_at(const char* p, int32_t& number) noexcept {
    const uint32_t tens = digit_at(p);
    if (tens > 9) return false;
    const uint32_t units = digit_at(p + 1);
    number = static_cast<int32_t>(tens * 10 + units);
    return units <= 9;
}

// "yyyy-mm-dd hh:mm", with or without ":ss", the usual timestamp of data
// files.  Every part sits at a known place, so the numbers are read side
// by side instead of each waiting to learn where the previous one ended.
// False for any other text, which scalar_shape then reads; for these texts
// the two give the same shape.
bool fixed_shape(const char* t, Shape& shape) noexcept {
    // 1. The year's four digits and the separators behind it and the month
    //    (the checks go in text order, so nothing is read past its end).
    int32_t high = 0, low = 0, month = 0, day = 0, hours = 0, minutes = 0, seconds = 0;
    if (!two_at(t, high) || !two_at(t + 2, low) || !is_date_separator(t[4]) || !two_at(t + 5, month) ||
        !is_date_separator(t[7]) || !two_at(t + 8, day))
        return false;
    // 2. A blank, "hh:mm" and the end, or ":ss" and the end.
    if (t[10] != ' ' || !two_at(t + 11, hours) || t[13] != ':' || !two_at(t + 14, minutes)) return false;
    if (t[16] && (t[16] != ':' || !two_at(t + 17, seconds) || t[19])) return false;
    shape.number[0] = high * 100 + low;
    shape.number[1] = month;
    shape.number[2] = day;
    shape.timed = true;
    shape.time = time_in_days(hours, minutes, seconds);
    return true;
}

}  // namespace

NumericReading Date_ReadNumericValue(const char* text) noexcept {
    // 1.-2. The numbers and the time.
    Shape shape;
    //    Timestamps have a second digit where short dates mostly have a separator.
    const bool fixed = digit_at(text + (text[0] ? 1 : 0)) <= 9 && fixed_shape(text, shape);
    if (!fixed && scalar_shape(text, shape) != kTaken) return {0.0, false};
    // 3. The short picture's three parts take the numbers in order.
    const uint32_t order = picture_order();
    if (order == kNoOrder) return {0.0, false};
    //    The usual pictures are named outright: the order is the same on
    //    every reading, so the branch is free, whereas numbers put in
    //    places by index go through memory and wait there.
    int32_t day = 0, month = 0, year = 0;
    if (order == kMonthDayYear) {
        month = shape.number[0], day = shape.number[1], year = shape.number[2];
    } else if (order == kYearMonthDay) {
        year = shape.number[0], month = shape.number[1], day = shape.number[2];
    } else {
        int32_t field[3] = {};
        field[order & 3] = shape.number[0];
        field[order >> 2 & 3] = shape.number[1];
        field[order >> 4] = shape.number[2];
        day = field[0], month = field[1], year = field[2];
    }
    // 4. The reading's trace: a full date at midnight in the working
    //    record, and the number error flag clear after good numbers.  Only
    //    the fields the reading sets are written; the record is not read
    //    back, as reading just-stored fields stalls the processor longer
    //    than the rest of the reading takes.
    DateRecord& r = working_record;
    r.tm_sec = r.tm_min = r.tm_hour = 0;
    r.tm_mday = day;
    r.tm_mon = month - 1;
    r.tm_year = year;
    text::number_error_flag = 0;
    // 5. Fields out of range give no date (numbers of four digits are
    //    never negative nor past 9999).
    if (static_cast<uint32_t>(month - 1) > 11 || static_cast<uint32_t>(day - 1) > 30) return {MISSING_VALUE, true};
    // 6. The check of the record, which finds it whole, clears the daylight
    //    flag; the conversion to a value keeps a copy, the weekday and day
    //    of the year as they stood.
    r.tm_isdst = 0;
    scratch_record = DateRecord{0, 0, 0, day, month - 1, year, r.tm_wday, r.tm_yday, 0};
    // 7. Two-digit years widened, and no date when the day doesn't exist.
    double date = 0.0;
    if (!midnight_value(static_cast<uint32_t>(year), static_cast<uint32_t>(month), static_cast<uint32_t>(day), date))
        return {MISSING_VALUE, true};
    // 8. The time of day behind it.
    return {shape.timed ? date + shape.time : date, true};
}

bool Date_ReadNumeric(const char* text, double& value) noexcept {
    const NumericReading reading = Date_ReadNumericValue(text);
    if (reading.taken) value = reading.value;
    return reading.taken;
}

}  // namespace vl::datetime
