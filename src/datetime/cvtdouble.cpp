// The exported calendar entries: checking a record, and the conversions
// between date values, records, days and seconds.

#include <cmath>

#include "datetime/calendar.h"
#include "datetime/state.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::datetime {
namespace {

enum CheckFlag : int32_t {
    kFill = VL_CHECK_FILL,
    kRepair = VL_CHECK_REPAIR,
    kClearTime = VL_CHECK_CLEAR_TIME,
    kMonthStart = VL_CHECK_MONTH_START,
};

// The largest count of seconds last seconds holds.
constexpr double kMaxSeconds = 4294967295.0;
// What mode 4 hands back; callers use it as a marker.
constexpr double kMarker = 0.666666;

// A double cut to an unsigned 32-bit number as the host's conversion
// wraps it; non-numbers and the far ends give 0.
uint32_t to_u32(double x) noexcept {
    if (!(std::fabs(x) < 9.2e18)) return 0;
    return static_cast<uint32_t>(static_cast<int64_t>(x));
}

// Step 1 of modes 0 and 1: the value's seconds, clamped to 32 bits.
void leave_seconds(const double* value) noexcept {
    const double s = value ? *value * kSecondsPerDay : 0.0;
    last_seconds = s > kMaxSeconds ? kMaxSeconds : s >= 0.0 ? std::trunc(s) : 0.0;
}

}  // namespace

int32_t record_of_value(double value, DateRecord& record) noexcept {
    // 1. The value's seconds are left behind first, whatever follows.
    leave_seconds(&value);
    // 2. The record; a refused value stops before the zone and the flag.
    if (!DateTime_FromValue(value, record, 0)) return 1;
    // 3. The seconds move to the zone, and daylight saving is off.
    last_seconds += time_zone_offset;
    platform::clear_daylight();
    return 0;
}

}  // namespace vl::datetime

using namespace vl;
using namespace vl::datetime;

extern "C" {

void VLAPI DateTime_ResetTimeOfDay(VL_DATE_RECORD* record) noexcept {
    if (!record) return;
    record->tm_sec = record->tm_min = record->tm_hour = record->tm_isdst = 0;
}

int32_t VLAPI DateTime_CheckDate(VL_DATE_RECORD* record, int32_t flags) noexcept {
    if (!record) return 0;
    // 1. Month start wins over everything: from the 16th on, the first of
    //    the next month.
    if (flags & kMonthStart) {
        if (record->tm_mday < 16) return 1;
        record->tm_mday = 1;
        if (++record->tm_mon > 11) {
            record->tm_mon = 0;
            ++record->tm_year;
        }
        return 1;
    }
    // 2. Fill: the record becomes now, and nothing else happens.
    if (flags & kFill) {
        *record = DateTime_Now();
        return 1;
    }
    // 3. The three fields a record cannot do without; repair takes a bad one
    //    from now, yet the answer still reports it.
    const bool mon_ok = record->tm_mon >= 0 && record->tm_mon <= 11;
    const bool mday_ok = record->tm_mday >= 1 && record->tm_mday <= 31;
    const bool year_ok = record->tm_year >= 0 && record->tm_year <= 9999;
    if ((flags & kRepair) && !(mon_ok && mday_ok && year_ok)) {
        const DateRecord now = DateTime_Now();
        if (!mon_ok) record->tm_mon = now.tm_mon;
        if (!mday_ok) record->tm_mday = now.tm_mday;
        if (!year_ok) record->tm_year = now.tm_year;
    }
    // 4. Clearing the time does not depend on the test.
    if (flags & kClearTime) DateTime_ResetTimeOfDay(record);
    return mon_ok && mday_ok && year_ok ? 1 : 0;
}

int32_t VLAPI DateTime_CvtDouble(double* value, VL_DATE_RECORD* record, uint32_t mode) noexcept {
    const auto m = static_cast<uint16_t>(mode);
    // 1. Modes 0 and 1 first leave the value's seconds, clamped to 32 bits.
    if (m == VL_CVT_SECONDS) leave_seconds(value);
    // 2. The mode itself; mode 0 leaves its seconds on its own.
    switch (m) {
        case VL_CVT_TO_RECORD:
            if (!value || !record) {
                leave_seconds(value);
                return 1;
            }
            return record_of_value(*value, *record);
        case VL_CVT_SECONDS: return static_cast<int32_t>(to_u32(last_seconds));
        case VL_CVT_DAYS_TO_SECONDS:
            if (value) *value *= kSecondsPerDay;
            return 0;
        case VL_CVT_SECONDS_TO_DAYS:
            if (value) *value *= kDaysPerSecond;
            return 0;
        case VL_CVT_MARKER:
            if (value) *value = kMarker;
            return 0;
        case VL_CVT_TIME_ZONE:
            time_zone_offset = platform::time_zone_refresh();
            platform::clear_daylight();
            return 0;
        case VL_CVT_TO_VALUE:
        case VL_CVT_TO_VALUE_TOO: {
            if (!record) return 1;
            scratch_record = *record;
            record->tm_isdst = 0;
            double v = 0.0;
            const bool ok =
                DateTime_ToValue(static_cast<uint16_t>(record->tm_year), static_cast<uint16_t>(record->tm_mon + 1),
                                 static_cast<uint16_t>(record->tm_mday), static_cast<uint16_t>(record->tm_hour),
                                 static_cast<uint16_t>(record->tm_min), static_cast<uint16_t>(record->tm_sec), v);
            if (value) *value = v;
            return ok ? 0 : 1;
        }
        case VL_CVT_SET_SECONDS:
            if (value) last_seconds = *value;
            [[fallthrough]];
        default:
            if (value) *value = static_cast<double>(to_u32(last_seconds)) * kDaysPerSecond;
            return 0;
    }
}

}  // extern "C"
