// The date and time pictures on Windows: the system's own operations.

#include <windows.h>

#include "platform/platform.h"

namespace vl::platform {
namespace {

SYSTEMTIME to_system(const SystemTime& t) noexcept {
    return SYSTEMTIME{t.year, t.month, t.day_of_week, t.day, t.hour, t.minute, t.second, t.milliseconds};
}

int room(std::span<char> out) noexcept { return out.size() > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<int>(out.size()); }

}  // namespace

int32_t date_picture(const SystemTime& t, const char* picture, std::span<char> out) noexcept {
    const SYSTEMTIME st = to_system(t);
    return GetDateFormatA(LOCALE_USER_DEFAULT, 0, &st, picture, out.data(), room(out));
}

int32_t time_picture(const SystemTime& t, const char* picture, std::span<char> out) noexcept {
    const SYSTEMTIME st = to_system(t);
    return GetTimeFormatA(LOCALE_USER_DEFAULT, 0, &st, picture, out.data(), room(out));
}

}  // namespace vl::platform
