// The date module's process-wide state: the working record, the last seconds,
// the time zone offset, the wrapping period and the last step, one copy each.

#include "datetime/state.h"

#include "datetime/custom.h"

namespace vl::datetime {

DateRecord working_record{};
double last_seconds = 0.0;
int32_t time_zone_offset = 0;
DateRecord scratch_record{};
double period = 0.0;
double last_step = 0.0;
CustomSlot custom_slots[2] = {};
RegionalDateTables regional_date_tables;

}  // namespace vl::datetime
