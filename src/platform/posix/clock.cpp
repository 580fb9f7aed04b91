// Local time and time zone natively, with the meaning the Windows runtime
// gives them: the breakdown is standard time once the daylight flag has
// been cleared, and the zone is the one TZ names, or the system's.

#include <cstdlib>
#include <ctime>

#include "platform/platform.h"

namespace vl::platform {
namespace {
// The runtime's _daylight after _tzset is the zone's own flag; the library
// clears it, and from then on localtime ignores daylight saving.
bool g_daylight_cleared = false;

void copy_fields(const std::tm& t, int32_t (&fields)[9]) noexcept {
    fields[0] = t.tm_sec, fields[1] = t.tm_min, fields[2] = t.tm_hour;
    fields[3] = t.tm_mday, fields[4] = t.tm_mon, fields[5] = t.tm_year;
    fields[6] = t.tm_wday, fields[7] = t.tm_yday, fields[8] = t.tm_isdst;
}
}  // namespace

ClockReading clock_reading() noexcept {
    // 1. The instant, pinned or real.
    const Instant t = now();
    // 2. Daylight saving as the system zone has it at that instant.
    std::tm local{};
    const auto secs = static_cast<std::time_t>(t.seconds);
    const bool dst = localtime_r(&secs, &local) != nullptr && local.tm_isdst > 0;
    return {t.seconds, dst};
}

bool environment_has(const char* name) noexcept { return std::getenv(name) != nullptr; }

bool local_time(int64_t seconds, int32_t (&fields)[9]) noexcept {
    std::tm t{};
    if (g_daylight_cleared) {
        // Standard time of the zone: UTC less the zone's standard offset, as
        // the last refresh (time_zone_refresh) left it, like the Windows
        // runtime's _timezone.
        const auto secs = static_cast<std::time_t>(seconds - timezone);
        if (!gmtime_r(&secs, &t)) return false;
        t.tm_isdst = 0;
    } else {
        const auto secs = static_cast<std::time_t>(seconds);
        if (!localtime_r(&secs, &t)) return false;
    }
    copy_fields(t, fields);
    return true;
}

int32_t time_zone_refresh() noexcept {
    tzset();
    g_daylight_cleared = false;
    return static_cast<int32_t>(timezone);
}

void clear_daylight() noexcept {
    daylight = 0;
    g_daylight_cleared = true;
}

}  // namespace vl::platform
