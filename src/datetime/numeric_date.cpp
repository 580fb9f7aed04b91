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

// The time behind the date when it is "h:mm" or "h:mm:ss" in one or two
// digits each and nothing else, in days as KELUTIL_str2time reads it with
// the hours-and-minutes format: no 12-hour marks, whole days of the hours
// counting above 24.
bool read_plain_time(const char* p, double& days) noexcept {
    // 1. Two or three numbers with a colon between each.
    int32_t part[3] = {};
    int count = 0;
    while (count < 3) {
        const Number n = take_number(p, kMostTimeDigits);
        if (!n.end) return false;
        part[count++] = n.value;
        p = n.end;
        if (*p != ':') break;
        ++p;
    }
    if (*p || count < 2) return false;
    // 2. The hours split into days and the hour of the day, put together
    //    in the order of the time reader's own sum.
    const int32_t q = part[0] / 24, h = part[0] % 24;
    double result = h * kDaysPerHour + static_cast<double>(part[1]) * kPerMinute * kDaysPerHour +
                    static_cast<double>(part[2]) * kPerMinute * kPerMinute * kDaysPerHour;
    result += q;
    days = result;
    return true;
}

}  // namespace

bool Date_ReadNumeric(const char* text, double& value) noexcept {
    // 1. Three numbers with a single separator between each.  A digit to
    //    begin with also rules out the leading weekday, the empty text and
    //    the negative number.
    const Number first = take_number(text, kMostDateDigits);
    if (!first.end || !is_date_separator(*first.end)) return false;
    const Number second = take_number(first.end + 1, kMostDateDigits);
    if (!second.end || !is_date_separator(*second.end)) return false;
    const Number third = take_number(second.end + 1, kMostDateDigits);
    if (!third.end) return false;
    // 2. What follows: the end, or a blank.  The date holds neither blank
    //    nor colon, so the general reader cuts the time off at this blank
    //    exactly when a colon comes later; without one the words behind
    //    are tokens past the picture, which don't count.
    const char* p = third.end;
    const char* tail = nullptr;
    if (*p == ' ') {
        for (const char* q = p + 1; *q; ++q)
            if (*q == ':') tail = p + 1;
    } else if (*p) {
        return false;
    }
    double time = 0.0;
    if (tail && !read_plain_time(tail, time)) return false;
    // 3. The short picture's three parts take the numbers in order.  Unless
    //    they name day, month and year once each, a part is taken from
    //    today or twice: that is the general reader's business.
    const auto& picture = regional_date_tables.short_picture;
    const int kind[3] = {part_kind(picture[0][0]), part_kind(picture[2][0]), part_kind(picture[4][0])};
    if (kind[0] == 3 || kind[1] == 3 || kind[2] == 3 || kind[0] == kind[1] || kind[0] == kind[2] || kind[1] == kind[2])
        return false;
    int32_t field[3] = {};
    field[kind[0]] = first.value;
    field[kind[1]] = second.value;
    field[kind[2]] = third.value;
    const int32_t day = field[0], month = field[1], year = field[2];
    // 4. The reading's trace: a full date at midnight in the working
    //    record, and the number error flag clear after good numbers.  The
    //    record is put together aside and stored whole: reading it back
    //    field by field just after storing it stalls the processor longer
    //    than the rest of the reading takes.
    DateRecord r = working_record;
    r.tm_sec = r.tm_min = r.tm_hour = 0;
    r.tm_mday = day;
    r.tm_mon = month - 1;
    r.tm_year = year;
    text::number_error_flag = 0;
    // 5. Fields out of range give no date (numbers of four digits are
    //    never negative nor past 9999).
    value = MISSING_VALUE;
    if (r.tm_mon < 0 || r.tm_mon > 11 || r.tm_mday < 1 || r.tm_mday > 31) {
        working_record = r;
        return true;
    }
    // 6. The check of the record, which finds it whole, clears the time
    //    and the daylight flag; the conversion to a value keeps a copy.
    r.tm_isdst = 0;
    working_record = r;
    scratch_record = r;
    // 7. Two-digit years widened, and no date when the day doesn't exist.
    double date = 0.0;
    if (!DateTime_ToValue(static_cast<uint16_t>(year), static_cast<uint16_t>(month), static_cast<uint16_t>(day), 0, 0,
                          0, date))
        return true;
    // 8. The time of day behind it.
    value = tail ? date + time : date;
    return true;
}

}  // namespace vl::datetime
