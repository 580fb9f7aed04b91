// KELUTIL_dateinc: dates moved by steps that mean calendar units, steps
// snapped to weeks, months and quarters, and dates aligned to weekdays and
// month starts.

#include <algorithm>
#include <cmath>

#include "datetime/date_parse.h"
#include "datetime/state.h"
#include "datetime/step_units.h"
#include "vlcore.h"

namespace vl::datetime {
namespace {

enum Operation : uint16_t {
    kAdd = VL_STEP_DAYS,
    kCalendarStep = VL_STEP_CALENDAR,
    kSnapStep = VL_STEP_SNAP,
    kStepKind = VL_STEP_KIND,
    kToWeekday = VL_STEP_WEEKDAY,
    kByText = VL_STEP_READ_DAY,
    kMonthStart17 = VL_STEP_MONTH_START,
    kMonthStart15 = VL_STEP_MONTH_START_15,
};

// Step kinds that snapping leaves.
enum StepKind : int { kNoKind = 0, kWeekKind = VL_STEP_IS_WEEK, kMonthKind = VL_STEP_IS_MONTH, kQuarterKind = VL_STEP_IS_QUARTER };
constexpr double kDaySeconds = 86400.0, kWeekSeconds = 604800.0, kMonthSeconds = 2678400.0, kQuarterSeconds = 7862400.0;
// Units of DateTime_UnitValue's index answer.
enum Unit : int32_t { kMonthUnit = 5, kQuarterUnit = 6, kYearUnit = 7 };

bool leap(int32_t y) noexcept { return y % 4 == 0 && (y % 100 != 0 || y % 400 == 0); }

int32_t month_length(int32_t year, int32_t month) noexcept {
    constexpr int32_t kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 1 && leap(year) ? 29 : kDays[month];
}

// A day its month lacks stops at the month's last day.
void clamp_day(DateRecord& r) noexcept {
    if (r.tm_mon >= 0 && r.tm_mon < 12) r.tm_mday = std::min(r.tm_mday, month_length(r.tm_year, r.tm_mon));
}

// The record back into `date`, a day before the 1st or past the month's end
// falling in the neighbouring month.  A record that gives no date leaves
// `date` alone, so a refused conversion's fixed number never reaches it.
void store(double* date, DateRecord& r) noexcept {
    const int32_t day = r.tm_mday;
    r.tm_mday = 1;
    double first = 0.0;
    const bool ok = DateTime_CvtDouble(&first, &r, VL_CVT_TO_VALUE) == 0;
    r.tm_mday = day;
    if (!ok) return;
    const double value = first + (day - 1);
    DateRecord moved{};
    if (!DateTime_FromValue(value, moved, 0)) return;
    r = moved;
    *date = value;
    last_step = value;
}

// Moves the record to weekday `w` of its week.
void to_weekday(DateRecord& r, int32_t w) noexcept {
    r.tm_mday += w - r.tm_wday;
    r.tm_wday = w;
}

void calendar_step(double* date, double step) noexcept {
    // 1. The date into the working record.
    DateTime_CvtDouble(date, &working_record, VL_CVT_TO_RECORD);
    // 2.-3. Steps that are no whole months, quarters or years are days.
    double count = step;
    const int32_t unit = DateTime_UnitValue(&count, kUnitInDays | kUnitIndex, nullptr);
    if (unit == 0) {
        // Added as days, as operation 0 adds: the date does not pass through
        // the last-step double, which keeps what it held.
        *date += step;
        return;
    }
    // 4.-5. Months and years move; the year takes the months' carry.
    DateRecord& r = working_record;
    double month = r.tm_mon, year = r.tm_year;
    if (unit == kMonthUnit) month = std::trunc(month + count);
    if (unit == kQuarterUnit) month = std::trunc(month + 3 * count);
    if (unit == kYearUnit) year = std::trunc(year + count);
    year += std::floor(month / 12);
    month -= 12 * std::floor(month / 12);
    if (!(year >= 0 && year <= 9999)) return;
    r.tm_year = static_cast<int32_t>(year);
    r.tm_mon = static_cast<int32_t>(month);
    // 6. The day of the month and the time of day stay, within the month.
    clamp_day(r);
    store(date, r);
}

void snap_step(double* date) noexcept {
    // 1.-2. A whole count of a unit near the step.
    last_step = kNoKind;
    double count = *date;
    const double x = DateTime_UnitValue(&count, kUnitInDays | kUnitNice, nullptr) * count;
    // 3. Near a week, a month or a quarter: exactly that.
    double snapped = x;
    if (std::fabs(x - kWeekSeconds) < kDaySeconds) {
        snapped = kWeekSeconds;
        last_step = kWeekKind;
    } else if (std::fabs(x - kMonthSeconds) < kWeekSeconds) {
        snapped = kMonthSeconds;
        last_step = kMonthKind;
    } else if (std::fabs(x - kQuarterSeconds) < 2 * kWeekSeconds) {
        snapped = kQuarterSeconds;
        last_step = kQuarterKind;
    }
    // 4. Back to days.
    *date = snapped;
    DateTime_CvtDouble(date, nullptr, VL_CVT_SECONDS_TO_DAYS);
}

void by_text(double* date, char* text) noexcept {
    DateRecord& r = working_record;
    DateTime_CvtDouble(date, &r, VL_CVT_TO_RECORD);
    int32_t n = 0;
    // 1.-3. A day of the month, or a weekday of the week, at midnight.
    if (KELUTIL_cvtstr2int(text, &n) && n >= 1 && n <= 31) {
        r.tm_mday = n;
        clamp_day(r);
    } else if (Name_Lookup(text, n, regional_date_tables.weekday_names, 7, -1)) {
        to_weekday(r, n);
    } else {
        // 4. Anything else is a date.
        *date = KELUTIL_str2date(text, 0, 0);
        return;
    }
    DateTime_ResetTimeOfDay(&r);
    store(date, r);
}

void month_start(double* date, int32_t day, uint32_t margin) noexcept {
    DateRecord& r = working_record;
    DateTime_CvtDouble(date, &r, VL_CVT_TO_RECORD);
    // 1. Past the margin (or before the day), the next month.
    if (static_cast<uint32_t>(r.tm_mday) - static_cast<uint32_t>(day) > margin && ++r.tm_mon > 11) {
        r.tm_mon = 0;
        ++r.tm_year;
    }
    // 2. Its first day, the time of day kept.
    r.tm_mday = 1;
    store(date, r);
}

}  // namespace
}  // namespace vl::datetime

using namespace vl::datetime;

extern "C" int32_t VLAPI KELUTIL_dateinc(double* date, intptr_t argument, uint32_t operation) noexcept {
    const auto op = static_cast<uint16_t>(operation);
    if (op == kStepKind) {
        // Truncated as an integer; a value no integer holds gives the
        // integer indefinite rather than undefined behaviour.
        const double t = std::trunc(last_step);
        return t >= -2147483648.0 && t < 2147483648.0 ? static_cast<int32_t>(t) : INT32_MIN;
    }
    if (!date) return 0;
    switch (op) {
        case kAdd:
            if (argument) *date += *reinterpret_cast<const double*>(argument);
            break;
        case kCalendarStep:
            if (argument) calendar_step(date, *reinterpret_cast<const double*>(argument));
            break;
        case kSnapStep: snap_step(date); break;
        case kToWeekday:
            DateTime_CvtDouble(date, &working_record, VL_CVT_TO_RECORD);
            to_weekday(working_record, static_cast<int8_t>(argument & 0xFF));
            store(date, working_record);
            break;
        case kByText:
            if (argument) by_text(date, reinterpret_cast<char*>(argument));
            break;
        case kMonthStart17: month_start(date, static_cast<int32_t>(argument), 17); break;
        case kMonthStart15: month_start(date, static_cast<int32_t>(argument), 15); break;
        default: break;
    }
    return 0;
}
