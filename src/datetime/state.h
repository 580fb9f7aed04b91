// The process-wide state of the date and time code, all in one place.
// One copy per process, used from the host's one thread.
#pragma once

#include "datetime/calendar.h"
#include "datetime/regional.h"

namespace vl::datetime {

// The shared record of the date functions: the last date printed or read
// stands in it between calls.
extern DateRecord working_record;
// A count of seconds left by DateTime_CvtDouble for its later modes.
extern double last_seconds;
// Seconds west of UTC, as the runtime's _timezone gave them at the last
// refresh; 0 until then.
extern int32_t time_zone_offset;
// A copy of the record being turned into a value; nothing reads it.
extern DateRecord scratch_record;
// Days at which printed times wrap; 0 means no wrapping.
extern double period;
// What KELUTIL_dateinc passes on: a step kind after snapping a step, a
// date value after the other operations.
extern double last_step;
// custom_slots is declared in custom.h.
// regional_date_tables (with the language flag) is declared in regional.h.

}  // namespace vl::datetime
