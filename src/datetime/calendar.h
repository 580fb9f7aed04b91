// The calendar core: date values, date records and the conversions between
// them.  A date value counts days, with 2415018.0 on 30 December 1899 and
// the time of day as the fraction above the whole number.
#pragma once

#include <cstdint>

#include "vlcore.h"

namespace vl::datetime {

using DateRecord = VL_DATE_RECORD;

// The first and last values a record can hold: 31 December of year 99 and
// 31 December 9999 at midnight.
inline constexpr double kFirstDateValue = 1757583.0;
inline constexpr double kLastDateValue = 5373483.0;
// 30 December 1899, the origin of the day count the conversions work in.
inline constexpr double kDayZero = 2415018.0;
// The double nearest 1/86400: seconds become days by this multiplication.
inline constexpr double kDaysPerSecond = 1.1574074074074073e-5;
inline constexpr double kSecondsPerDay = 86400.0;
// What a refused conversion to a value leaves behind.
inline constexpr double kRefusedValue = 2451323.4653704;

// The current local date and time.  tm_year is the full year and tm_yday
// the runtime's 0-based count.
DateRecord DateTime_Now() noexcept;

// Date value to record: exact 0 rounds the time to the second, any other
// value truncates.  False (record untouched) for a value out of range or
// not a number.  tm_isdst is not written.
bool DateTime_FromValue(double value, DateRecord& record, int exact) noexcept;

// Mode 0 of DateTime_CvtDouble for the library's own callers, called
// directly rather than through the exported entry: the record of `value`
// (0, or 1 when refused) with the seconds, zone and daylight flag left as
// that mode leaves them.
int32_t record_of_value(double value, DateRecord& record) noexcept;

// Fields to value (month 1 to 12); a year below 100 is widened (0-44 ->
// 2000s, 45-99 -> 1900s).  False for a date that does not exist, with
// kRefusedValue in `value`.
bool DateTime_ToValue(uint16_t year, uint16_t month, uint16_t day, uint16_t hour, uint16_t minute, uint16_t second,
                      double& value) noexcept;

}  // namespace vl::datetime
