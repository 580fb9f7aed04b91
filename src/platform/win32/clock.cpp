// Local time and time zone on Windows: the runtime's own _ftime,
// localtime, _tzset, _timezone and _daylight.

#include <sys/timeb.h>
#include <windows.h>

#include <cstdlib>
#include <ctime>

#include "platform/platform.h"

namespace vl::platform {

ClockReading clock_reading() noexcept {
    // 1. _ftime gives the instant and the system's daylight flag.
    __timeb64 tb{};
    _ftime64(&tb);
    // 2. A pinned instant replaces the seconds, never the flag's source.
    int64_t seconds = static_cast<int64_t>(tb.time);
    if (Instant pinned{}; pinned_now(pinned)) seconds = pinned.seconds;
    return {seconds, tb.dstflag == 1};
}

bool environment_has(const char* name) noexcept { return std::getenv(name) != nullptr; }

bool local_time(int64_t seconds, int32_t (&fields)[9]) noexcept {
    const __time64_t t = seconds;
    const std::tm* r = _localtime64(&t);
    if (!r) return false;
    fields[0] = r->tm_sec, fields[1] = r->tm_min, fields[2] = r->tm_hour;
    fields[3] = r->tm_mday, fields[4] = r->tm_mon, fields[5] = r->tm_year;
    fields[6] = r->tm_wday, fields[7] = r->tm_yday, fields[8] = r->tm_isdst;
    return true;
}

int32_t time_zone_refresh() noexcept {
    _tzset();
    return static_cast<int32_t>(_timezone);
}

void clear_daylight() noexcept { _daylight = 0; }

}  // namespace vl::platform
