// Calendar units hidden in lengths of time: a month is 31 days, a quarter
// 91, a year 365.  The one place that knows them.
#pragma once

#include <cstdint>

namespace vl::datetime {

enum UnitMode : uint16_t {
    kUnitRead = 0,
    kUnitInDays = 4096,  // the value comes in days
    kUnitIndex = 1024,   // answer the unit index if 5 or more, else 0
    kUnitStyle = 2048,   // answer a date style word for the length
    kUnitPrint = 8192,   // print the quantity and its unit
    kUnitNice = 16384,   // make the value a whole count for a step
};

// Mode 0 reads a quantity such as "3 weeks" from `text` (changed in place)
// into days, answering 1 when no unit fitted.  Other modes classify the
// length in `value` (seconds, or days with kUnitInDays), as the mode bits
// say.
int32_t DateTime_UnitValue(double* value, uint16_t mode, char* text) noexcept;

}  // namespace vl::datetime
